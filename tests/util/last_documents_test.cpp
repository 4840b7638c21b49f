#include <tov310/last_documents.h>
#include <tov310/messages.h>
#include <tov310/profile.h>

#include "support/menu_text.h"
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

TEST_P(LastDocumentsTest, TextsComeBackAsTheyWereOrAsTheFormatOfTheListDemands) {
    Documents documents(Store().c_str(), 9);
    Texts names = {" leading;",     "blank behind; ", "\"quoted\";\"", "'a;'",     "; ",
                   "字 度\u00B0;x", "[a]=b;#",        "%d%s&;",        "\xFF\x80;"};
    for (auto name = names.rbegin(); name != names.rend(); ++name)
        EXPECT_EQ(documents.AddDocument(name->c_str()), 1);
    EXPECT_EQ(documents.All(), names);
    documents.AddDocument("b\n1\t2\r");
    documents.AddDocument("b\n1\t2\r;x");
    names.pop_back();
    names.insert(names.begin(), "b\u00B01 2 ;x");
    EXPECT_EQ(documents.All(), names);
    EXPECT_EQ(documents.RemoveDocument("b\n1\t2\r;9", 0), 0) << "the whole text is asked for";
    EXPECT_EQ(documents.RemoveDocument("b\n1\t2\r;9", 1), 1);
    for (auto name = names.begin() + 1; name != names.end(); ++name)
        EXPECT_EQ(documents.RemoveDocument(name->c_str(), 0), 1) << *name;
    for (char const* nothing : {static_cast<char const*>(nullptr), ""})
        EXPECT_EQ(documents.AddDocument(nothing) + documents.RemoveDocument(nothing, 1), 0);
    EXPECT_EQ(documents.All(), Texts(9));
}

TEST_P(LastDocumentsTest, RandomOperationsAgreeWithAList) {
    std::mt19937 random(310);
    for (unsigned capacity : {1u, 5u}) {
        Documents documents(Store().c_str(), capacity);
        documents.RemoveAllDocuments();
        Texts list;
        for (int step = 0; step < 60; ++step) {
            CString const name(1, "abcdABCD"[random() % 8]);
            CString const added = name + std::array{"", ";+", ";++"}[random() % 3];
            CString const whole = added == name ? name + ";" : added;
            auto const same = [&](CString const& entry) { return entry[0] == name[0]; };
            if (auto const operation = random() % 6; operation == 0) {
                EXPECT_EQ(documents.RemoveDocument(name.c_str(), 1), std::erase_if(list, same) > 0);
            } else if (operation == 1) {
                EXPECT_EQ(documents.RemoveDocument(added.c_str(), 0), std::erase(list, whole) > 0);
            } else {
                EXPECT_EQ(documents.AddDocument(added.c_str()), 1);
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

using test::Told;

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
    EXPECT_EQ(Told(menu), "Open=1 &1  b=100 &2  /home/me/site && co.svy=101 Exit=2 ");
    EXPECT_EQ(Chosen(101), "/home/me/site & co.svy|x");
    EXPECT_EQ(Chosen(102), "none");

    documents.AddDocument("c");
    documents.AddDocument("d");
    EXPECT_EQ(Chosen(100), "b|") << "what the menu shows, not what the list has become";
    EXPECT_EQ(documents.ModifyLastDocItem(100, &menu), 3);
    EXPECT_EQ(Told(menu), "Open=1 &1  d=100 &2  c=101 &3  b=102 Exit=2 ");
    CString name;
    std::pair<MSG, int> const messages[] = {{{{}, WM_COMMAND, 100, 0}, 1},
                                            {{{}, WM_COMMAND, 100, 1}, 0},
                                            {{{}, WM_COMMAND, 0x10000 + 100, 0}, 0},
                                            {{{}, WM_COMMAND + 1, 100, 0}, 0}};
    for (auto const& [message, isFound] : messages) {
        EXPECT_EQ(documents.GetCurrentDocument(message, name), isFound);
        EXPECT_EQ(name, isFound != 0 ? "d" : "");
    }
    menu.InsertMenu(4, MF_BYPOSITION | MF_STRING, 103, "Next");
    documents.RemoveDocument("c", 1);
    documents.RemoveDocument("b", 1);
    EXPECT_EQ(documents.ModifyLastDocItem(100, &menu), 1);
    EXPECT_EQ(Chosen(101), "none");
    documents.RemoveAllDocuments();
    EXPECT_EQ(documents.ModifyLastDocItem(100, &menu), 0);
    EXPECT_EQ(Told(menu), "Open=1 Next=103 Exit=2 ");
}

TEST_F(LastDocumentsMenuTest, APopupHoldsThemAndIsFoundAgain) {
    EXPECT_EQ(documents.CreateLastDocMenu(&command, &menu, "Recent", 1), 0);
    EXPECT_EQ(Told(menu), "Open=1 Exit=2 ") << "no popup for nothing";
    documents.AddDocument("a");
    command = 100;
    HINSTANCE const module = TovBuiltInResourceModule();
    CString text;
    TovLoadResourceString(module, 26021, text);
    EXPECT_EQ(documents.CreateLastDocMenu(module, 1, &command, &menu), 0);
    EXPECT_EQ(documents.CreateLastDocMenu(&command, &menu, "Recent", 1), 1);
    EXPECT_EQ(documents.CreateLastDocMenu(module, 26021, &command, &menu), 1);
    documents.AddDocument("b");
    EXPECT_EQ(documents.ModifyLastDocItem(103, &menu), 2);
    EXPECT_EQ(Told(menu), "Open=1 Recent( &1  a=100 ) Exit=2 " + text + "( &1  b=103 &2  a=104 ) ");
    EXPECT_EQ(Chosen(100), "a|");
}

TEST_F(LastDocumentsMenuTest, TextsAreShortenedToTheirFileName) {
    std::tuple<unsigned, char const*, char const*> const cases[] = {
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
    for (auto const& [length, name, expected] : cases) {
        documents.SetMenuItemLength(length);
        documents.AddDocument(name);
        CMenu shown;
        command = 100;
        documents.CreateLastDocItem(&command, &shown);
        EXPECT_TRUE(Told(shown).starts_with(CString(expected) + "=100 ")) << Told(shown) << " in " << length;
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
    EXPECT_TRUE(told.starts_with("&1 <a>=100 &2 [b>=101 &3 <c>=102 ")) << told;
    EXPECT_TRUE(told.ends_with(" 1&0 <j>=109 11 <k>=110 ")) << told;
    many.SetMenuPrompt(TovBuiltInResourceModule(), 26021, 26021);
    EXPECT_EQ(many.GetMenuPromptPrefix(2), many.GetMenuPromptSuffix(7)) << "for all, whatever they had";
    EXPECT_NE(many.GetMenuPromptPrefix(2), "");
}

}  // namespace
}  // namespace tov
