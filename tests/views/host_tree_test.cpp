// Hosts in one another without a screen: OK is true to all that stands in them, and a click on it while it is
// disabled shows what is missing.
#include "support/dialogs_module.h"
#include "support/fake_control.h"
#include "support/host_model.h"
#include "support/tip_desk.h"

#include <tov310/application.h>
#include <tov310/dialog_template.h>
#include <tov310/sheet_container.h>

#include <gmock/gmock.h>

#include <map>
#include <memory>

namespace tov {
namespace {

using test::FakeControl;
using test::FakeWindow;
using test::FakeWindowOf;
using test::HostField;
using test::HostNode;
using test::Placed;
using testing::ElementsAre;

using Field = Placed<FakeControl>;
using Button = Placed<FakeWindow>;

struct Tree;

// A dialog or a page, which guards its fields or not.
template <class Base>
struct HostOf : Placed<FakeWindowOf<Base>> {
    HostOf(Tree& tree, HostNode const& node);
    void Enter(CWnd& around);
    int CreateIndirect(CTovDialogTemplate const& dialog, CWnd* around) override;
    std::unique_ptr<CDialog> MakePlainDialog() override;

    Tree& tree;
    HostNode const& node;
    std::size_t childrenMade = 0;
};
using Plain = HostOf<CTovDialogOf<CDialog>>;
using Guarding = CTovDialogCVOf<Plain>;
using Page = CTovPageCVOf<HostOf<CTovPageOf<CPropertyPage>>>;

struct Sheet : FakeWindowOf<CTovSheetCVOf<CTovSheetOf<CPropertySheet>>> {
    using FakeWindowOf::FakeWindowOf;
    ~Sheet() override { pages.clear(); }
    int CreatePage(CPropertyPage& page) override {
        page.InitDialog();
        return 1;
    }
    std::vector<std::unique_ptr<Page>> pages;
};

struct Form : FakeWindow, CTovOkHost, CTovHostContainer {
    Form(Tree& owner, CWnd& around, HostNode const& model);
    int EnableOkButton() override { return EnableOkOfForm(*this, *this); }
    int OnEnableOkButton(int quiet) override { return EnableOkOfHost(quiet); }
    void ShowHostTip(char const* text, int x, int y, unsigned milliseconds) override {
        tip.Create(*this);
        tip.Show(text, x, y, milliseconds, CTovToolTipText::eLeft, CTovToolTipText::eTop);
    }
    CTovTip tip;
};

struct Tree {
    explicit Tree(HostNode const& model) {
        auto* const sheet = model.isSheet ? std::make_unique<Sheet>(desk).release() : nullptr;
        auto* const dialog = sheet == nullptr ? std::make_unique<Guarding>(*this, model).release() : nullptr;
        root.reset(sheet != nullptr ? static_cast<CWnd*>(sheet) : dialog);
        for (int const id : {IDOK, ID_APPLY_NOW}) {
            Button& button = *windows.emplace_back(std::make_unique<Button>(desk, root.get(), id));
            button.className = "Button";
            button.rect = {id, 1000, id + 50, 1020};
        }
        for (auto const& page : model.children) {
            if (sheet == nullptr) break;
            sheet->pages.push_back(std::make_unique<Page>(*this, *page));
            sheet->pages.back()->Enter(*sheet);
            sheet->AddPage(sheet->pages.back().get());
        }
        Fill(*root, model);
        sheet != nullptr ? sheet->InitDialog() : dialog->InitDialog();
        Settle();
    }
    ~Tree() { windows.clear(); }

    void Fill(CWnd& around, HostNode const& node) {
        for (HostField const& field : node.fields) {
            Field& made =
                *fields.emplace(field.number, std::make_unique<Field>(desk, around, 100 + field.number))
                     .first->second;
            made.rect = {field.number, 20 * field.number, 900, 20 * field.number + 15};
        }
        for (auto const& form : node.forms)
            forms.push_back(std::make_unique<Form>(*this, around, *form));
    }

    void SetField(HostField const& wanted) {
        Field& field = *fields.at(wanted.number);
        field.SetString(wanted.isEmpty ? "" : "right");
        field.SetReadOnlyMode(wanted.isReadOnly);
        field.SetEmptyAllowed(wanted.mayBeEmpty);
        CTovInputControl::CTovNotifyEmptyChanged const scope(field);
        field.ShowWindow(!wanted.isHidden);
    }
    void Switch(HostNode const& dialog, unsigned child) {
        if (auto* const sheet = dynamic_cast<Sheet*>(root.get()); sheet != nullptr && dialog.isSheet) {
            EXPECT_EQ(sheet->SetActivePage(static_cast<int>(child)), 1);
            return;
        }
        EXPECT_EQ(dialogs.at(dialog.number)->SwitchChildDialog(child, 0), 1);
    }
    void Settle() { TovDispatchPosts(); }
    bool IsEnabled(int id) {
        return (CWnd::FromHandlePermanent(root->GetDlgItem(id))->GetStyle() & WS_DISABLED) == 0;
    }
    int Focus() {
        auto* const sheet = dynamic_cast<Sheet*>(root.get());
        CWnd* const host = sheet != nullptr ? sheet->GetActivePage() : root.get();
        CWnd const* const window =
            CWnd::FromHandlePermanent(CTovHostContainer::Of(host)->GetWndTopmostFocus());
        auto const* const field = dynamic_cast<Field const*>(window);
        return field != nullptr ? field->GetDlgCtrlID() - 100 : -1;
    }
    int ClickOnDisabled(int id) {
        desk.tip.clear();
        TovSendMessage(root->GetSafeHwnd(), WM_LBUTTONDOWN, 0, TovPackPoint({id + 1, 1001}));
        EXPECT_EQ(desk.tip, "字段不能为空");
        int const shown = desk.place.x;
        EXPECT_EQ(desk.place.y, 20 * shown + 15);
        EXPECT_EQ(desk.focus, fields.at(shown)->GetSafeHwnd());
        return shown;
    }

    test::TipDesk desk;
    std::map<int, CTovDialogExtensions*> dialogs;
    std::map<int, std::unique_ptr<Field>> fields;
    std::vector<std::unique_ptr<Form>> forms;
    std::vector<std::unique_ptr<Button>> windows;
    std::unique_ptr<CWnd> root;
};

template <class Base>
HostOf<Base>::HostOf(Tree& owner, HostNode const& model)
    : Placed<FakeWindowOf<Base>>(owner.desk), tree(owner), node(model) {
    tree.dialogs[node.number] = this;
    Button& placeholder = *tree.windows.emplace_back(std::make_unique<Button>(tree.desk, this, 50));
    placeholder.rect = {10, 20, 30, 40};
    this->ExchangeChildDialogId(50, 1);
    for (std::size_t i = 0; i < node.children.size(); ++i)
        this->AddChildDialog(test::DialogsModule(), 1000);
}

template <class Base>
void HostOf<Base>::Enter(CWnd& around) {
    this->ModifyStyle(0, WS_CHILD);
    this->parent = around.GetSafeHwnd();
    dynamic_cast<test::FakeFamily&>(around).children.push_back(this->GetSafeHwnd());
    tree.Fill(*this, node);
}

template <class Base>
int HostOf<Base>::CreateIndirect(CTovDialogTemplate const& dialog, CWnd* around) {
    EXPECT_EQ(dialog.style & (WS_CHILD | DS_CONTROL | WS_CAPTION | WS_POPUP), WS_CHILD | DS_CONTROL);
    Enter(*around);
    return this->InitDialog();
}

template <class Base>
std::unique_ptr<CDialog> HostOf<Base>::MakePlainDialog() {
    HostNode const& child = *node.children.at(childrenMade++);
    if (child.guards) return std::make_unique<Guarding>(tree, child);
    return std::make_unique<Plain>(tree, child);
}

Form::Form(Tree& owner, CWnd& around, HostNode const& model)
    : FakeWindow(owner.desk, &around), CTovHostContainer(eKindForm, this, this, nullptr) {
    ModifyStyle(0, WS_CHILD);
    owner.dialogs[model.number] = nullptr;
    owner.Fill(*this, model);
    BeginHost();
    HostIsReady();
}

TEST(HostTree, OkIsAsTheModelSaysAfterEveryStep) {
    for (unsigned seed = 1; seed <= 300 && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        test::HostScript script(seed, seed % 2 == 0);
        Tree tree(script.Root());
        script.Run(tree, 60);
    }
}

}  // namespace
}  // namespace tov
