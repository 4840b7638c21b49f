// links: objects
#include "frame/string_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tov {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

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
        char const* line;
        char const* reason;
    } const rows[] = {
        {{}, "line 1: ", "unexpected end of input"},
        {"", "line 1: ", "unexpected end of input"},
        {"{\n\"1\": \"a\",\n\n", "line 3: ", "unexpected end of input"},
        {"{\n\"1\" \"a\"}", "line 2: ", "syntax error"},
        {"{\"1\": \"a\",}", "line 1: ", "syntax error"},
        {"{\"1\": \"a\"}\n{}", "line 2: ", "expected end of input"},
        {"{\"1\": \"a\nb\"}", "line 1: ", "must be escaped"},
        {"{\n\n\"1\": \"a\xff\"}", "line 3: ", "ill-formed UTF-8"},
        {"{\n\"1\": \xc3\xa4}", "line 2: ", "invalid literal"},
        {"{\"1\": \"a\",\n\"2\": 1e999}", "line 2: ", "number overflow"},
        {"{\"1\": \"a\",\n\"2\": 7\n}", "line 2: ", "not a text"},
        {"{\n\"1\": -7.5\n\n}", "line 2: ", "not a text"},
        {"{\n\"1\": true\n}", "line 2: ", "not a text"},
        {"{\"1\":\n\nnull}", "line 3: ", "not a text"},
        {"{\"1\":\n[\"a\"]}", "line 2: ", "list"},
        {"{\"1\":\n{}}", "line 2: ", "object stands where a text"},
        {"[\"a\"]", "line 1: ", "list"},
        {deep, "line 1: ", "list"},
        {"\n\"a\"", "line 2: ", "not an object"},
        {"{\"1\": \"a\",\n\"01\": \"b\"}", "line 2: ", "01 stands twice"},
        {"{\"\": \"a\"}", "line 1: ", "\"\" is not an id"},
        {"{\"-1\": \"a\"}", "line 1: ", "not an id"},
        {"{\"1x\": \"a\"}", "line 1: ", "not an id"},
        {"{\" 1\": \"a\"}", "line 1: ", "not an id"},
        {"{\"4294967296\": \"a\"}", "line 1: ", "not an id"},
    };
    for (auto const& row : rows) {
        StringTable table = {{1, "of an earlier table"}};
        std::string reason;
        EXPECT_FALSE(ParseStringTable(row.json, table, reason)) << row.json.substr(0, 40);
        EXPECT_THAT(reason, AllOf(StartsWith(row.line), HasSubstr(row.reason))) << row.json.substr(0, 40);
        EXPECT_TRUE(table.empty());
    }
}

TEST(StringTable, TheReasonIsTextWhateverTheFileHolds) {
    StringTable table;
    std::string reason;
    for (char const* json : {"{\"1\": \"\xff\"}", "{\"1\": \xc3\xa4}", "\xff", "{\"1\": \"\xe5\xad\"}"}) {
        ASSERT_FALSE(ParseStringTable(json, table, reason));
        for (char const c : reason)
            EXPECT_LT(static_cast<unsigned char>(c), 0x80) << reason;
    }
}

}  // namespace
}  // namespace tov
