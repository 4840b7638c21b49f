// What dialogs have beside their base, without a screen.
#include "support/dialogs_module.h"
#include "support/fake_window.h"
#include "support/faults.h"

#include <tov310/application.h>
#include <tov310/dialog_extensions.h>
#include <tov310/dialog_template.h>

#include <gmock/gmock.h>

#include <memory>

namespace tov {
namespace {

using test::FakeDesk;
using test::FakeWindowOf;
using testing::ElementsAre;

using Control = test::Placed<test::FakeWindow>;

FakeDesk* theDesk = nullptr;

// Notes what its handlers are called for.
struct Dialog : test::Placed<FakeWindowOf<CTovDialogOf<CDialog>>> {
    TOV_DYNCREATE(Dialog, CDialog)

    Dialog() : Placed(*theDesk) {}
    int CreateIndirect(CTovDialogTemplate const& dialog, CWnd* around) override {
        style = dialog.style;
        ModifyStyle(0, dialog.style);
        parent = around->GetSafeHwnd();
        dynamic_cast<FakeFamily&>(*around).children.push_back(GetSafeHwnd());
        return InitDialog();
    }
    std::unique_ptr<CDialog> MakePlainDialog() override { return std::make_unique<Dialog>(); }
    void OnPostInitDialog() override { log += "post "; }
    void OnComboBoxSelChange(unsigned id) override { log += "combo" + std::to_string(id) + " "; }
    void OnComboBoxEditChange(unsigned id) override { log += "edit" + std::to_string(id) + " "; }
    void OnListBoxSelChange(unsigned id) override { log += "list" + std::to_string(id) + " "; }
    void OnSetDialogDocument() override {
        log += "set ";
        CTovDialogOf::OnSetDialogDocument();
    }
    void OnUnsetDialogDocument() override {
        log.append(GetDialogDocument() ? "unset " : "late ");
        CTovDialogOf::OnUnsetDialogDocument();
    }
    CRect GetClientRect() const override { return {0, 0, 7, 5}; }
    unsigned long GetHelpTopic() const override { return 500; }

    using CTovDialogOf::AddItemToArrange;
    using CTovDialogOf::ArrangeItems;
    using CTovDialogOf::GetNextFreeDlgItemID;
    using CTovDialogOf::ShiftDlgItem;
    std::string log;
    unsigned long style = 0;
};

bool IsShown(CWnd const* window) {
    return (window->GetStyle() & WS_VISIBLE) != 0;
}

struct Extensions : testing::Test {
    Control& Add(CWnd& around, int id, CRect const& rect, char const* kind = "Static") {
        Control& control = *controls.emplace_back(std::make_unique<Control>(desk, &around, id));
        control.rect = rect;
        control.className = kind;
        return control;
    }

    FakeDesk desk;
    FakeDesk* const shared = theDesk = &desk;
    std::vector<std::unique_ptr<Control>> controls;
    Dialog dialog;
};

TEST_F(Extensions, ChildDialogsTakeTurnsAtOnePlace) {
    Control& placeholder = Add(dialog, 50, {10, 20, 110, 220});
    Add(dialog, IDOK, {}, "Button").ModifyStyle(0, BS_DEFPUSHBUTTON);
    dialog.ExchangeChildDialogId(50, 1);
    dialog.AddChildDialog(test::DialogsModule(), 1000);
    dialog.AddChildDialog(&Dialog::classDialog, test::DialogsModule(), 2000, 1);
    dialog.AddChildDialog(&CWinApp::classCWinApp, test::DialogsModule(), 2000);  // is no dialog
    dialog.AddChildDialog(nullptr, test::DialogsModule(), 2000);
    dialog.AddChildDialog(test::DialogsModule(), 4040);  // there is no such template
    ASSERT_EQ(dialog.GetChildDialogCount(), 3u);
    auto* const first = dynamic_cast<Dialog*>(dialog.ChildDialog(1000, 1));
    auto* const second = dynamic_cast<Dialog*>(dialog.ChildDialog(1, 0));
    ASSERT_TRUE(first != nullptr && second != nullptr);
    Control& ownDefault = Add(*first, IDOK, {}, "Button");
    ownDefault.ModifyStyle(0, BS_DEFPUSHBUTTON);
    Control& check = Add(*first, 7, {}, "Button");
    check.ModifyStyle(0, BS_AUTOCHECKBOX);
    EXPECT_EQ(dialog.CurrentChildDialog(), nullptr);
    dialog.InitDialog();
    TovDispatchPosts();

    EXPECT_THAT(test::TakeFaults(), ElementsAre(testing::HasSubstr("4040")));
    EXPECT_FALSE(placeholder.GetSafeHwnd());
    EXPECT_EQ(dialog.log, "post ");
    EXPECT_EQ(dialog.IsChildDialog(), 0);
    EXPECT_EQ(first->IsChildDialog(), 1);
    EXPECT_EQ(first->log, "post ");
    // "visible" and "resize" of the template are not for a part of a dialog.
    EXPECT_EQ(second->style, WS_CHILD | WS_CLIPSIBLINGS | WS_VISIBLE | DS_CONTROL);
    EXPECT_EQ(first->rect, (CRect{10, 20, 110, 220}));
    EXPECT_EQ(dialog.ChildDialogRectOriginal(1000, 1), (CRect{0, 0, 7, 5}));
    EXPECT_EQ(dialog.ChildDialogRectOriginal(999, 1), CRect());
    EXPECT_EQ(ownDefault.GetStyle() & BS_TYPEMASK, BS_PUSHBUTTON);
    EXPECT_EQ(check.GetStyle() & BS_TYPEMASK, BS_AUTOCHECKBOX);

    EXPECT_EQ(dialog.CurrentChildDialog(), second);
    EXPECT_FALSE(IsShown(first));
    second->redrawn = 0;
    EXPECT_EQ(dialog.SwitchChildDialog(2000, 1), 1);  // nothing new
    EXPECT_EQ(second->redrawn, 0u);
    EXPECT_EQ(dialog.SwitchChildDialog(0, 0), 1);
    EXPECT_TRUE(IsShown(first) && !IsShown(second));
    EXPECT_EQ(first->redrawn, RDW_UPDATENOW);
    EXPECT_EQ(dialog.SwitchChildDialog(5, 0), 0);
    EXPECT_EQ(dialog.SwitchChildDialog(999, 1), 0);
    EXPECT_EQ(dialog.ChildDialog(5, 0), nullptr);
    EXPECT_EQ(dialog.ChildDialogIndex(4040, 1), 2u);
    EXPECT_EQ(dialog.IsCurrentChildDialogValid(), 1);
    EXPECT_EQ(dialog.CurrentChildDialog(), first);

    // All of them move for the placeholder.
    dialog.AddItemToArrange(ARRANGE_SIZE_X, 50);
    Control& edit = Add(dialog, 8, {0, 0, 30, 10});
    dialog.AddItemToArrange(33, 0, 0, 100, 8);
    dialog.ArrangeItems({110, 90}, {100, 100}, {0, 95});
    EXPECT_EQ(first->rect, (CRect{10, 20, 120, 220}));
    EXPECT_EQ(second->rect, first->rect);
    EXPECT_EQ(edit.rect, (CRect{3, 0, 33, 5}));
    dialog.ShiftDlgItem(8, 4, 100);  // down, then to the right
    EXPECT_EQ(edit.rect, (CRect{103, 4, 133, 9}));
    int const free = static_cast<int>(dialog.GetNextFreeDlgItemID());
    Add(dialog, free, {});
    EXPECT_NE(static_cast<int>(dialog.GetNextFreeDlgItemID()), free);
}

struct File : CTovDocument {
    explicit File(int what) : number(what) {}
    int Compare(CTovDocument* other) override {
        auto const* const file = dynamic_cast<File*>(other);
        return file != nullptr && file->number == number;
    }
    int number;
};

TEST_F(Extensions, DocumentsAreSharedWithChildDialogs) {
    CTovPtrSmart<CTovDocument> const a(new File(1)), sameAsA(new File(1)), b(new File(2));
    dialog.AddChildDialog(test::DialogsModule(), 1000);
    auto& child = dynamic_cast<Dialog&>(*dialog.ChildDialog(0, 0));
    for (auto const& document : {a, sameAsA, b})
        dialog.SetDialogDocument(document);
    EXPECT_EQ(dialog.log, "set unset set ");
    EXPECT_EQ(child.log, dialog.log);
    EXPECT_EQ(child.GetDialogDocument(), b);
    dialog.AddChildDialog(&Dialog::classDialog, test::DialogsModule(), 1000);
    EXPECT_EQ(dynamic_cast<Dialog&>(*dialog.ChildDialog(1, 0)).GetDialogDocument(), b);
    dialog.UnsetDialogDocument();
    dialog.UnsetDialogDocument();
    EXPECT_EQ(dialog.log, "set unset set unset ");
    EXPECT_EQ(b.Count(), 1);
}

struct HelpApp : CWinApp {
    int WinHelp(unsigned long topic) override { return topics.push_back(topic), 1; }
    std::vector<unsigned long> topics;
};

TEST_F(Extensions, TellsOfControlsAndShowsHelp) {
    HWND const combo = Add(dialog, 5, {}, "ComboBox").GetSafeHwnd();
    HWND const list = Add(dialog, 6, {}, "ListBox").GetSafeHwnd();
    HWND const other = Add(dialog, 7, {}, "Edit").GetSafeHwnd();
    for (HWND const control : {combo, list, other, HWND{}}) {
        unsigned const id =
            control ? static_cast<unsigned>(CWnd::FromHandlePermanent(control)->GetDlgCtrlID()) : 9;
        for (unsigned const code : {1u, 5u, 2u})
            TovSendMessage(dialog.GetSafeHwnd(), WM_COMMAND, TovCommandParam(id, code),
                           static_cast<LPARAM>(control.id));
    }
    EXPECT_EQ(dialog.log, "combo5 edit5 list6 ");

    HELPINFO const ofControl{.dwContextId = 77};
    EXPECT_EQ(dialog.OnHelpInfo(ofControl), 1);  // without an application
    HelpApp app;
    Add(dialog, 50, {});
    dialog.ExchangeChildDialogId(50, 1);
    dialog.AddChildDialog(test::DialogsModule(), 1000);
    dialog.InitDialog();
    auto& child = dynamic_cast<Dialog&>(*dialog.ChildDialog(0, 0));
    child.OnHelpInfo(ofControl);
    child.NoteHelpButton(1);
    child.OnHelpInfo(ofControl);
    dialog.OnHelpInfo(ofControl);  // once for a press
    desk.keys = {VK_SHIFT};
    dialog.OnHelpInfo(ofControl);
    dialog.OnHelpInfo({.iContextType = 2, .dwContextId = 77});
    EXPECT_THAT(app.topics, ElementsAre(0x201F4, 77, 0x201F4, 77, 0x201F4));
}

}  // namespace
}  // namespace tov
