#include <tov310/plugin.h>
#include <tov310/system_error.h>

#include <gmock/gmock.h>

namespace tov {
namespace {

constexpr char const* module = TOV_TEST_LIBRARY_DIR "/test_plugin.so";

TEST(Plugin, ClassesOfALoadedModuleAreFoundByName) {
    CRuntimeClass const* const plain = TovQueryRuntimeClass(module, "Plain");
    CRuntimeClass const* const inner = TovQueryRuntimeClass(module, "Inner@Outer");
    ASSERT_TRUE(plain != nullptr && inner != nullptr);
    auto const object = plain->CreateObject();
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(object->GetRuntimeClass(), plain);
    EXPECT_STREQ(inner->m_lpszClassName, "Inner");
    EXPECT_TRUE(inner->IsDerivedFrom(plain));
    EXPECT_FALSE(plain->IsDerivedFrom(inner));
    EXPECT_TRUE(object->IsKindOf(&CObject::classCObject));
    EXPECT_FALSE(object->IsKindOf(inner) || object->IsKindOf(nullptr));
    EXPECT_EQ(inner->CreateObject(), nullptr) << "it cannot be made by name";
}

TEST(Plugin, WhatIsMissingIsToldByCodeAndText) {
    struct {
        char const* module;
        char const* name;
        unsigned long error;
        char const* words;
    } const rows[] = {
        // clang-format off
        {nullptr, "Plain", 0, ""}, {"", "Plain", 0, ""}, {module, nullptr, 0, ""}, {module, "", 0, ""},
        {module, "Missing", 127, ""}, {module, "Outer@Inner", 127, ""}, {module, "Plain", 0, ""},
        {"/nowhere/plugin.so", "Plain", 126, "/nowhere/plugin.so"},
        {TOV_TEST_SOURCE_DIR "/CMakeLists.txt", "Plain", 126, "CMakeLists.txt"},
        // clang-format on
    };
    for (auto const& [path, name, code, words] : rows) {
        unsigned long error = 1;
        CString message = "of an earlier call";
        bool const found = path == module && name != nullptr && name == std::string_view("Plain");
        EXPECT_EQ(TovQueryRuntimeClass(path, name, &error, &message) != nullptr, found);
        EXPECT_EQ(error, code) << words;
        EXPECT_EQ(message.empty(), code == 0) << message;
        EXPECT_THAT(message, testing::StartsWith(TovSystemErrorText(code)));
        EXPECT_THAT(message, testing::HasSubstr(words));
        EXPECT_EQ(TovQueryRuntimeClass(path, name) != nullptr, found) << "without the pair";
    }
}

}  // namespace
}  // namespace tov
