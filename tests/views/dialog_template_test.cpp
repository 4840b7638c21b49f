// links: objects
#include "support/faults.h"
#include "support/files.h"
#include "support/temporary_folder.h"
#include "views/dialog_resource.h"

#include <tov310/styles.h>
#include <tov310/window.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tov {
namespace {

using testing::ElementsAre;

std::vector<std::string> FaultsOf(std::string const& json) {
    CTovDialogTemplate dialog;
    dialog.name = "d";
    std::vector<std::string> faults;
    bool const isGood = ParseDialogTemplate(json, nullptr, dialog, faults);
    EXPECT_EQ(isGood, faults.empty());
    return faults;
}

// A dialog around one control, whose members stand behind its place.
std::string Around(std::string const& members) {
    std::string json = R"({"cx": 9, "cy": 9, "controls": [{"x": 1, "y": 1, "cx": 1, "cy": 1, )";
    return json.append(members).append("}]}");
}

TEST(DialogTemplate, TellsEveryFaultByControlAndKey) {
    struct Case {
        std::string json;
        std::vector<std::string> faults;
    };
    std::string const edit = R"("class": "Edit", )";
    Case const cases[] = {
        {R"({"cx": 1, "cy": 0, "controls": []})", {}},
        {"[]", {"d: is not an object"}},
        {"{}", {R"(d: "cx" is missing)", R"(d: "cy" is missing)", R"(d: "controls" is missing)"}},
        {R"({"cx": 1.5, "cy": 32768, "x": 1, "controls": {}, "Title": ""})",
         {R"(d: "y" is missing)", R"(d: "cx" is not a whole number from 0 to 32767)",
          R"(d: "cy" is not a whole number from 0 to 32767)", R"(d: "controls" is not a list)",
          R"(d: "Title" is not known here)"}},
        {R"({"cx": 1, "cy": 1, "style": ["child", "tabstop"], "font": {"size": 0, "bold": 1}, "controls": [7]})",
         {R"(d: "style" knows no word "tabstop" here)",
          R"(d: "font": "size" is not a number of points from 1 to 200)",
          R"(d: "font": "bold" is not known here)", "d: control 1: is not an object"}},
        {Around(R"("id": 0)"),
         {R"(d: control 1: "class" is missing)",
          R"(d: control 1: "id" is not a whole number from 1 to 65535)"}},
        {Around(edit + R"("id": 65536, "kind": "drop", "items": ["a"])"),
         {R"(d: control 1: "id" is not a whole number from 1 to 65535)",
          R"(d: control 1 (Edit): "items" are not shown by this class)",
          R"(d: control 1 (Edit): "kind" "drop" is none of this class)"}},
        {Around(edit + R"("id": 7, "style": ["right", "right", "vertical", 1], "text": "a\u0000")"),
         {R"(d: control 1 (Edit 7): "text" holds a zero)",
          R"(d: control 1 (Edit 7): "style" holds the word "right" twice)",
          R"(d: control 1 (Edit 7): "style" knows no word "vertical" here)",
          R"(d: control 1 (Edit 7): "style" holds something that is not a word)"}},
        {Around(R"("class": "Tree", "text": "@4000000000")"),
         {R"(d: control 1 (Tree): "text" names the text 4000000000, which there is not)"}},
        {Around(R"("class": "Tree", "text": "@26006")"),
         {R"(d: control 1 (Tree): "text" is not shown by this class)"}},
        {Around(edit + R"("x": 2)"), {R"(d: control 1: "x" stands twice)"}},
        {Around(edit + R"("style": [[[]]])"),
         {"d: control 1: lists and objects lie too deep in one another"}},
        {R"({"cx": 1e999})", {"d: a number is beyond all bounds"}},
        {R"({"cx": 1, "cy": 1, "controls": [
             {"class": "Button", "kind": "default", "id": 1, "x": 0, "y": 0, "cx": 1, "cy": 1},
             {"class": "Button", "kind": "default", "id": 1, "x": 0, "y": 0, "cx": 1, "cy": 1}]})",
         {"d: the id 1 stands twice", "d: two buttons are the default one"}},
    };
    for (Case const& c : cases)
        EXPECT_EQ(FaultsOf(c.json), c.faults) << c.json;
    // The parser's own words are not ours, but the place is.
    EXPECT_THAT(FaultsOf("{\"cx\": 1,\n \"cy\" 2}"),
                ElementsAre(testing::StartsWith("d: parse error at line 2, column 7: ")));
}

TEST(DialogTemplate, GivesControlsTheStyleOfTheirClassKindAndWords) {
    constexpr unsigned long shown = WS_CHILD | WS_VISIBLE;
    std::pair<char const*, unsigned long> const cases[] = {
        {R"("class": "Static", "style": ["right"])", shown | SS_RIGHT},
        {R"("class": "Static", "kind": "rule", "style": ["hidden"])", WS_CHILD | SS_ETCHEDHORZ},
        {R"("class": "Edit")", shown | WS_TABSTOP | WS_BORDER},
        {R"("class": "Edit", "style": ["noborder", "notabstop", "right", "disabled"])",
         shown | ES_RIGHT | WS_DISABLED},
        {R"("class": "Button")", shown | WS_TABSTOP},
        {R"("class": "Button", "kind": "radio", "style": ["group"])",
         shown | WS_TABSTOP | BS_AUTORADIOBUTTON | WS_GROUP},
        {R"("class": "Button", "kind": "group")", shown | BS_GROUPBOX},
        {R"("class": "ComboBox")", shown | WS_TABSTOP | CBS_DROPDOWN},
        {R"("class": "ComboBox", "kind": "list", "style": ["sort"])",
         shown | WS_TABSTOP | CBS_DROPDOWNLIST | CBS_SORT},
        {R"("class": "ScrollBar", "style": ["vertical", "tabstop"])", shown | WS_TABSTOP | SBS_VERT},
        {R"("class": "HostsOwn", "style": ["number", "sort"])", shown | WS_TABSTOP | ES_NUMBER | CBS_SORT},
    };
    for (auto const& [members, style] : cases) {
        CTovDialogTemplate dialog;
        std::vector<std::string> faults;
        ASSERT_TRUE(ParseDialogTemplate(Around(members), nullptr, dialog, faults)) << faults.front();
        EXPECT_EQ(dialog.controls.at(0).style, style) << members;
    }
}

TEST(DialogTemplate, TakesDialogsAndTextsFromTheModuleFirst) {
    test::TemporaryFolder const folder;
    test::PutFile(folder.path() / "strings.json", R"({"26006": "mine"})");
    std::filesystem::create_directory(folder.path() / "dialogs");
    test::PutFile(
        folder.path() / "dialogs/7.json",
        R"({"title": "@26006", "cx": 20, "cy": 10, "x": -3, "y": 4, "font": {"size": 9.5}, "controls":
                        [{"class": "ListBox", "items": ["@26007", "@a"], "x": 1, "y": 2, "cx": 3, "cy": 4}]})");
    test::PutFile(folder.path() / "dialogs/bad.json", R"({"cx": 1, "controls": [{}]})");
    HINSTANCE const module = TovLoadResourceModule(folder.path().c_str());
    ASSERT_NE(module, nullptr);
    CTovDialogTemplate dialog;
    CString message = "old";
    ASSERT_EQ(TovLoadDialogTemplate(module, 7, dialog, &message), 1);
    EXPECT_EQ(message, "");
    EXPECT_EQ(dialog.title, "mine");
    EXPECT_TRUE(dialog.hasPlace);
    EXPECT_EQ(dialog.rect, (CRect{-3, 4, 17, 14}));
    EXPECT_EQ(dialog.fontSize, 9.5);
    CString ofLibrary;
    TovLoadResourceString(TovBuiltInResourceModule(), 26007, ofLibrary);
    ASSERT_NE(ofLibrary, "");
    EXPECT_THAT(dialog.controls.at(0).items, ElementsAre(ofLibrary, "@a"));
    EXPECT_EQ(dialog.controls[0].rect, (CRect{1, 2, 4, 6}));

    test::TemporaryFolder const other;
    test::PutFile(other.path() / "strings.json", R"({"26007": "another"})");
    for (char const* const text : {"another", ofLibrary.c_str()}) {
        bool const isOther = text != ofLibrary;
        TovSetTovResourceHandle(isOther ? TovLoadResourceModule(other.path().c_str()) : nullptr);
        ASSERT_EQ(TovLoadDialogTemplate(module, 7, dialog, &message), 1);
        EXPECT_THAT(dialog.controls.at(0).items, ElementsAre(text, "@a")) << "as the texts are now";
    }

    EXPECT_EQ(TovLoadDialogTemplate(module, "bad", dialog, &message), 0);
    EXPECT_TRUE(dialog.controls.empty());
    std::vector<std::string> const told = test::TakeFaults();
    ASSERT_EQ(told.size(), 6u);
    EXPECT_THAT(message, testing::StartsWith(told[0] + "\n" + told[1] + "\n"));
    EXPECT_EQ(TovLoadDialogTemplate(nullptr, 7, dialog, nullptr), 0);
    EXPECT_THAT(test::TakeFaults(), ElementsAre("dialogs/7.json: there is no such dialog"));
}

struct OneClass : ITovControlFactory {
    OneClass(std::string known, CWnd* made) : name(std::move(known)), window(made) {}
    CWnd* CreateControl(char const* className, unsigned long, CRect const&, CWnd*) override {
        return name == className ? window : nullptr;
    }
    std::string name;
    CWnd* window;
};

TEST(DialogTemplate, AsksTheNewestFactoryFirst) {
    CTovMessageWindow first;
    CTovMessageWindow second;
    OneClass older("A", &first);
    OneClass newer("A", &second);
    TovAddControlFactory(&older);
    TovAddControlFactory(&newer);
    EXPECT_EQ(TovCreateControl("A", 0, {}, nullptr), &second);
    EXPECT_EQ(TovCreateControl("B", 0, {}, nullptr), nullptr);
    TovRemoveControlFactory(&newer);
    EXPECT_EQ(TovCreateControl("A", 0, {}, nullptr), &first);
    TovRemoveControlFactory(&older);
    EXPECT_EQ(TovCreateControl("A", 0, {}, nullptr), nullptr);
}

}  // namespace
}  // namespace tov
