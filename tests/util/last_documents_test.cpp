#include <tov310/last_documents.h>
#include <tov310/messages.h>
#include <tov310/profile.h>

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <array>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace tov {
namespace {

using Texts = std::vector<CString>;

// The list with a write that fails on demand.
struct Documents : CTovLastDocuments {
    TOV_DYNAMIC(Documents, CTovLastDocuments)
    using CTovLastDocuments::CTovLastDocuments;
    int WriteProfileStringA(int number, char const* text) override {
        // One write fails; those that repair the list go through.
        return failIn-- == 0 ? 0 : CTovLastDocuments::WriteProfileStringA(number, text);
    }
    int failIn = -1;

    Texts All() {
        Texts texts;
        for (unsigned number = 1; number <= GetCapacity(); ++number)
            texts.push_back(GetDocument(number));
        return texts;
    }
};

class LastDocumentsTest : public testing::TestWithParam<bool> {
 protected:
    CString Store() const { return GetParam() ? m_folder.File("Recent.ini") : CString("Tov310\\Recent"); }
    LastDocumentsTest() {
        Documents all(Store().c_str(), 20);
        all.RemoveAllDocuments();
    }
    test::TemporaryFolder m_folder;
};

TEST_P(LastDocumentsTest, TheEntriesOfTheProfileAreTheList) {
    CTovLastDocuments documents(Store().c_str(), 3);
    auto const stored = [&](char const* section, char const* entry) {
        return CTovProfileEntries::ReadProfileString(Store().c_str(), section, entry, "none");
    };
    documents.AddDocument("a.svy");
    documents.AddDocument("b.svy;zoom=2");
    EXPECT_EQ(stored("CTovLastDocuments", "Doc_1"), "b.svy;zoom=2");
    EXPECT_EQ(stored("CTovLastDocuments", "Doc_2"), "a.svy;");
    EXPECT_EQ(documents.GetDocument(0) + documents.GetDocument(4), "");
    documents.Section("Files");
    documents.Entry("Item");
    documents.AddDocument("c");
    EXPECT_EQ(stored("Files", "Item1"), "c;");
    EXPECT_EQ(Documents(Store().c_str(), 3).Section(), "Documents") << "the name of the class at hand";
}

TEST_P(LastDocumentsTest, ADocumentComesFirstAndStandsOnce) {
    struct {
        char const* added;
        Texts list;
    } const steps[] = {
        {"a", {"a;", "", "", ""}},
        {"b;1", {"b;1", "a;", "", ""}},
        {"a;2;3", {"a;2;3", "b;1", "", ""}},
        {"A", {"A;", "a;2;3", "b;1", ""}},
        {"b\n1\t2\r", {"b\u00B01 2 ;", "A;", "a;2;3", "b;1"}},
        {"b\n1\t2\r;x", {"b\u00B01 2 ;x", "A;", "a;2;3", "b;1"}},
    };
    Documents documents(Store().c_str(), 0);
    for (auto const& step : steps) {
        EXPECT_EQ(documents.AddDocument(step.added), 1);
        EXPECT_EQ(documents.All(), step.list) << step.added;
    }
    for (char const* nothing : {static_cast<char const*>(nullptr), ""}) {
        EXPECT_EQ(documents.AddDocument(nothing), 0);
        EXPECT_EQ(documents.RemoveDocument(nothing, 1), 0);
    }
    EXPECT_EQ(documents.RemoveDocument("b\n1\t2\r;9", 0), 0) << "the whole text is asked for";
    EXPECT_EQ(documents.RemoveDocument("b\n1\t2\r;9", 1), 1);
    EXPECT_EQ(documents.RemoveDocument("A", 0), 1) << "as it was added";
    EXPECT_EQ(documents.All(), (Texts{"a;2;3", "b;1", "", ""}));
}

TEST_P(LastDocumentsTest, TextsComeBackAsTheyWere) {
    Documents documents(Store().c_str(), 9);
    Texts const names = {" leading;",     "blank behind; ", "\"quoted\";\"", "'a;'",     "; ",
                         "字 度\u00B0;x", "[a]=b;#",        "%d%s&;",        "\xFF\x80;"};
    for (auto name = names.rbegin(); name != names.rend(); ++name)
        documents.AddDocument(name->c_str());
    EXPECT_EQ(documents.All(), names);
    for (CString const& name : names)
        EXPECT_EQ(documents.RemoveDocument(name.c_str(), 0), 1) << name;
    EXPECT_EQ(documents.All(), Texts(9));
}

TEST_P(LastDocumentsTest, RandomOperationsAgreeWithAList) {
    std::mt19937 random(310);
    for (unsigned capacity : {1u, 5u}) {
        Documents documents(Store().c_str(), capacity);
        documents.RemoveAllDocuments();
        Texts list;
        for (int step = 0; step < 60; ++step) {
            CString const name(1, static_cast<char>('a' + random() % 8));
            CString const whole = name + std::array{";", ";+", ";++"}[random() % 3];
            auto const same = [&](CString const& entry) { return entry[0] == name[0]; };
            if (auto const operation = random() % 6; operation == 0) {
                EXPECT_EQ(documents.RemoveDocument(name.c_str(), 1), std::erase_if(list, same) > 0);
            } else if (operation == 1) {
                EXPECT_EQ(documents.RemoveDocument(whole.c_str(), 0), std::erase(list, whole) > 0);
            } else {
                EXPECT_EQ(documents.AddDocument(whole.c_str()), 1);
                std::erase_if(list, same);
                list.insert(list.begin(), whole);
            }
            list.resize(std::min<std::size_t>(list.size(), capacity));
            Texts expected = list;
            expected.resize(capacity);
            ASSERT_EQ(documents.All(), expected) << "capacity " << capacity << ", step " << step;
        }
    }
}

TEST_P(LastDocumentsTest, AStoreThatFailsLeavesTheListAsItWas) {
    Documents documents(Store().c_str(), 6);
    for (char const* name : {"f", "e", "d", "c", "b", "a"})
        documents.AddDocument(name);
    auto const before = documents.All();
    for (int failAfter = 0; failAfter < 5; ++failAfter) {
        for (auto const& attempt : {+[](Documents& list) { return list.AddDocument("new"); },
                                    +[](Documents& list) { return list.RemoveDocument("a", 1); },
                                    +[](Documents& list) { return list.RemoveAllDocuments(); }}) {
            Documents failing(Store().c_str(), 6);
            failing.failIn = failAfter;
            EXPECT_EQ(attempt(failing), 0);
            ASSERT_EQ(documents.All(), before) << "write " << failAfter;
        }
    }
    documents.failIn = 0;
    EXPECT_EQ(documents.AddDocument("a"), 1) << "is first already: nothing is to be written";
    EXPECT_EQ(documents.AddDocument("b"), 0);
    EXPECT_EQ(documents.All(), before);
}

INSTANTIATE_TEST_SUITE_P(Stores, LastDocumentsTest, testing::Bool(),
                         [](auto const& test) { return test.param ? "File" : "Registry"; });

// Menus as texts: entries with command and text, popups in braces.
CString Told(CMenu const& menu) {
    CString told;
    for (unsigned position = 0; position < menu.GetMenuItemCount(); ++position) {
        CString text;
        menu.GetMenuString(position, text, MF_BYPOSITION);
        if (CMenu const* const popup = menu.GetSubMenu(position)) {
            told += text + "{" + Told(*popup) + "}";
        } else {
            told += std::to_string(menu.GetMenuItemID(position)) + "=" + text + "|";
        }
    }
    return told;
}

class LastDocumentsMenuTest : public testing::Test {
 protected:
    LastDocumentsMenuTest() {
        menu.AppendMenu(MF_STRING, 1, "Open");
        menu.AppendMenu(MF_STRING, 2, "Exit");
    }
    test::TemporaryFolder m_folder;
    CTovLastDocuments documents{m_folder.File("Recent.ini").c_str(), 3};
    CMenu menu;
    int command = 100;

    CString Chosen(unsigned chosen) const {
        CString name, rest;
        bool const found = documents.GetCurrentDocument(chosen, name, &rest) != 0;
        return found ? name + "|" + rest : name + rest + "none";
    }
};

TEST_F(LastDocumentsMenuTest, EntriesFollowTheListAndItsNeighboursStay) {
    EXPECT_EQ(documents.CreateLastDocItem(&command, &menu, 1), 0);
    documents.AddDocument("/home/me/site & co.svy;x");
    documents.AddDocument("b");
    command = 100;
    EXPECT_EQ(documents.CreateLastDocItem(&command, &menu, 1), 2);
    EXPECT_EQ(command, 103) << "the list can grow to three";
    EXPECT_EQ(Told(menu), "1=Open|100=&1  b|101=&2  /home/me/site && co.svy|2=Exit|");
    EXPECT_EQ(Chosen(101), "/home/me/site & co.svy|x");
    EXPECT_EQ(Chosen(102), "none");

    documents.AddDocument("c");
    documents.AddDocument("d");
    EXPECT_EQ(Chosen(100), "b|") << "what the menu shows, not what the list has become";
    EXPECT_EQ(documents.ModifyLastDocItem(100, &menu), 3);
    EXPECT_EQ(Told(menu), "1=Open|100=&1  d|101=&2  c|102=&3  b|2=Exit|");
    EXPECT_EQ(Chosen(100), "d|");
    menu.InsertMenu(4, MF_BYPOSITION | MF_STRING, 103, "Next");

    documents.RemoveDocument("c", 1);
    documents.RemoveDocument("b", 1);
    EXPECT_EQ(documents.ModifyLastDocItem(100, &menu), 1);
    EXPECT_EQ(Chosen(101), "none");
    documents.RemoveAllDocuments();
    EXPECT_EQ(documents.ModifyLastDocItem(100, &menu), 0);
    EXPECT_EQ(Told(menu), "1=Open|103=Next|2=Exit|");
}

TEST_F(LastDocumentsMenuTest, APopupHoldsThemAndIsFoundAgain) {
    EXPECT_EQ(documents.CreateLastDocMenu(&command, &menu, "Recent", 1), 0);
    EXPECT_EQ(Told(menu), "1=Open|2=Exit|") << "no popup for nothing";
    documents.AddDocument("a");
    command = 100;
    CString text;
    TovLoadResourceString(TovBuiltInResourceModule(), 26021, text);
    EXPECT_EQ(documents.CreateLastDocMenu(TovBuiltInResourceModule(), 1, &command, &menu), 0);
    EXPECT_EQ(documents.CreateLastDocMenu(&command, &menu, "Recent", 1), 1);
    EXPECT_EQ(documents.CreateLastDocMenu(TovBuiltInResourceModule(), 26021, &command, &menu), 1);
    documents.AddDocument("b");
    EXPECT_EQ(documents.ModifyLastDocItem(103, &menu), 2);
    EXPECT_EQ(Told(menu), "1=Open|Recent{100=&1  a|}2=Exit|" + text + "{103=&1  b|104=&2  a|}");
    EXPECT_EQ(Chosen(100), "a|");
}

TEST_F(LastDocumentsMenuTest, AChosenCommandComesInAMessage) {
    documents.AddDocument("a");
    documents.CreateLastDocItem(&command, &menu);
    CString name;
    EXPECT_EQ(documents.GetCurrentDocument(MSG{{}, WM_COMMAND, 100, 0}, name), 1);
    EXPECT_EQ(name, "a");
    for (MSG const& other : {MSG{{}, WM_COMMAND, 100, 1}, MSG{{}, WM_COMMAND, 0x10000 + 100, 0},
                             MSG{{}, WM_COMMAND + 1, 100, 0}})
        EXPECT_EQ(documents.GetCurrentDocument(other, name), 0);
}

TEST_F(LastDocumentsMenuTest, TextsAreShortenedToTheirFileName) {
    struct {
        unsigned length;
        char const* name;
        char const* shown;
    } const cases[] = {
        // clang-format off
        {22, "/home/me/work/site.svy", "/home/me/work/site.svy"}, {21, "/home/me/work/site.svy", "/home/me/.../site.svy"},
        {12, "/home/me/work/site.svy", ".../site.svy"},           {11, "/home/me/work/site.svy", "...site.svy"},
        {3, "/home/me/work/site.svy", "svy"},                     {0, "/home/me/work/site.svy", ""},
        {12, "C:\\work\\old\\site", "C:\\w...\\site"},              {10, "/home/me/work/", "/.../work/"},
        {6, "测量控制点坐标文件", "...标文件"},                   {9, "/测量/控制点/坐标.svy", "...坐标.svy"},
        {9, "测量控制点坐标文件", "测量控制点坐标文件"},          {7, "a&b&c&d&e", "...&&d&&e"},
        // clang-format on
    };
    documents.SetItemStyle(CTovLastDocuments::eItemPlain);
    EXPECT_EQ(documents.SetMenuItemLength(9), 64u);
    for (auto const& c : cases) {
        documents.SetMenuItemLength(c.length);
        documents.AddDocument(c.name);
        CMenu shown;
        documents.CreateLastDocItem(&command, &shown);
        CString text;
        shown.GetMenuString(0, text, MF_BYPOSITION);
        EXPECT_EQ(text, c.shown) << c.name << " in " << c.length;
    }
}

TEST_F(LastDocumentsMenuTest, PromptsTabAndNumbersStandAroundTheText) {
    CTovLastDocuments many(m_folder.File("Many.ini").c_str(), 11);
    for (char name = 'k'; name >= 'a'; --name)
        many.AddDocument(CString(1, name).c_str());
    many.SetTab(1);
    many.SetMenuPrompt("<", ">");
    many.SetMenuPrompt(2, "[", nullptr);
    CMenu shown;
    many.CreateLastDocItem(&command, &shown);
    auto const told = Told(shown);
    EXPECT_TRUE(told.starts_with("100=&1 <a>|101=&2 [b>|102=&3 <c>|")) << told;
    EXPECT_TRUE(told.ends_with("|109=1&0 <j>|110=11 <k>|")) << told;
    many.SetMenuPrompt(TovBuiltInResourceModule(), 26021, 26021);
    EXPECT_EQ(many.GetMenuPromptPrefix(2), many.GetMenuPromptSuffix(7)) << "for all, whatever they had";
    EXPECT_NE(many.GetMenuPromptPrefix(2), "");
}

}  // namespace
}  // namespace tov
