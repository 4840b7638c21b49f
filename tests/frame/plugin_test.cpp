#include <tov310/plugin.h>
#include <tov310/system_error.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace tov {
namespace {

constexpr char const* module = TOV_TEST_LIBRARY_DIR "/test_plugin.so";

TEST(Plugin, ClassesOfALoadedModuleAreFoundByName) {
    unsigned long error = 1;
    CString message = "of an earlier call";
    CRuntimeClass const* const plain = TovQueryRuntimeClass(module, "Plain", &error, &message);
    ASSERT_NE(plain, nullptr) << error << ' ' << message;
    EXPECT_EQ(error, 0u);
    EXPECT_EQ(message, "");
    EXPECT_STREQ(plain->m_lpszClassName, "Plain");
    EXPECT_TRUE(plain->IsDerivedFrom(&CObject::classCObject));
    auto const object = plain->CreateObject();
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(object->GetRuntimeClass(), plain);

    CRuntimeClass const* const inner = TovQueryRuntimeClass(module, "Inner@Outer");
    ASSERT_NE(inner, nullptr);
    EXPECT_STREQ(inner->m_lpszClassName, "Inner");
    EXPECT_TRUE(inner->IsDerivedFrom(plain));
    EXPECT_FALSE(plain->IsDerivedFrom(inner));
    EXPECT_EQ(inner->CreateObject(), nullptr) << "it cannot be made by name";

    EXPECT_EQ(TovQueryRuntimeClass(module, "Plain"), plain) << "a module is one however often it is asked";
}

TEST(Plugin, WhatIsMissingIsToldByCodeAndText) {
    struct {
        char const* module;
        char const* name;
        unsigned long error;
        char const* words;
    } const rows[] = {
        {nullptr, "Plain", 0, ""},
        {"", "Plain", 0, ""},
        {module, nullptr, 0, ""},
        {module, "", 0, ""},
        {"/nowhere/plugin.so", "Plain", 126, "/nowhere/plugin.so"},
        {TOV_TEST_SOURCE_DIR "/CMakeLists.txt", "Plain", 126, "CMakeLists.txt"},
        {module, "Missing", 127, ""},
        {module, "Outer@Inner", 127, ""},
        {module, "Inner", 127, ""},
        {module, "@", 127, ""},
        {module, "Inner@Outer@", 127, ""},
    };
    for (auto const& row : rows) {
        unsigned long error = 1;
        CString message = "of an earlier call";
        EXPECT_EQ(TovQueryRuntimeClass(row.module, row.name, &error, &message), nullptr);
        EXPECT_EQ(error, row.error) << row.words;
        if (row.error == 0) {
            EXPECT_EQ(message, "");
        } else {
            EXPECT_THAT(message, testing::StartsWith(TovSystemErrorText(row.error)));
            EXPECT_THAT(message, testing::HasSubstr(row.words));
        }
        EXPECT_EQ(TovQueryRuntimeClass(row.module, row.name, nullptr, nullptr), nullptr);
    }
}

}  // namespace
}  // namespace tov
