// links: objects
#include "frame/string_table.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace tov {
namespace {

TEST(StringTable, ReadsTextsByTheirIds) {
    StringTable table = {{1, "of an earlier table"}};
    std::string reason = "of an earlier table";
    ASSERT_TRUE(ParseStringTable(
        "\xEF\xBB\xBF {\"26000\": \"\\u53d1\\n%d\", \"0\": \"\", \"4294967295\": \"字\"}\n", table, reason))
        << reason;
    EXPECT_EQ(table, (StringTable{{26000, "发\n%d"}, {0, ""}, {4294967295, "字"}}));
    EXPECT_EQ(reason, "");
    EXPECT_TRUE(ParseStringTable("{}", table, reason));
    EXPECT_TRUE(table.empty());
}

TEST(StringTable, EveryFaultIsToldWithItsLine) {
    std::string const deep(100'000, '[');
    struct {
        std::string_view json;
        int line;
        char const* reason;
    } const rows[] = {
        // clang-format off
        {{}, 1, "unexpected end of input"}, {"{\n\"1\": \"a\",\n\n", 3, "unexpected end of input"},
        {"{\n\"1\" \"a\"}", 2, "syntax error"}, {"{\"1\": \"a\",}", 1, "syntax error"},
        {"{\"1\": \"a\"}\n{}", 2, "expected end of input"}, {"{\"1\": \"a\nb\"}", 1, "must be escaped"},
        {"{\n\n\"1\": \"a\xff\"}", 3, "ill-formed UTF-8"}, {"{\"1\": \"\xe5\xad\"}", 1, "ill-formed UTF-8"},
        {"{\n\"1\": \xc3\xa4}", 2, "invalid literal"}, {"{\"1\": \"a\",\n\"2\": 1e999}", 2, "number overflow"},
        {"{\"1\": \"a\",\n\"2\": 7\n}", 2, "not a text"}, {"{\n\"1\": -7\n\n}", 2, "not a text"},
        {"{\n\"1\": -7.5\n\n}", 2, "not a text"}, {"{\n\"1\": true\n}", 2, "not a text"},
        {"{\"1\":\n\nnull}", 3, "not a text"}, {"{\"1\":\n{}}", 2, "object stands where a text"},
        {"{\"1\":\n[\"a\"]}", 2, "list"}, {deep, 1, "list"}, {"\n\"a\"", 2, "not an object"},
        {"{\"1\": \"a\",\n\"01\": \"b\"}", 2, "01 stands twice"}, {"{\"\": \"a\"}", 1, "\"\" is not an id"},
        {"{\"-1\": \"a\"}", 1, "not an id"}, {"{\"1x\": \"a\"}", 1, "not an id"},
        {"{\" 1\": \"a\"}", 1, "not an id"}, {"{\"4294967296\": \"a\"}", 1, "not an id"},
        // clang-format on
    };
    for (auto const& [json, line, words] : rows) {
        StringTable table = {{1, "of an earlier table"}};
        std::string reason;
        EXPECT_FALSE(ParseStringTable(json, table, reason)) << json.substr(0, 40);
        EXPECT_THAT(reason, testing::StartsWith("line " + std::to_string(line) + ": "));
        EXPECT_THAT(reason, testing::HasSubstr(words));
        EXPECT_TRUE(std::ranges::all_of(reason, isprint)) << "it is text whatever the file holds";
        EXPECT_TRUE(table.empty());
    }
}

}  // namespace
}  // namespace tov
