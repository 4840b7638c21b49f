// The protocol between input controls and the container that keeps the focus on a wrong one.
#include "support/fake_control.h"

#include <tov310/input_control_container.h>

#include <gmock/gmock.h>

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <tuple>

namespace tov {
namespace {

using test::FakeButton;
using test::FakeControl;
using test::FakeDesk;
using test::FakeWindow;
using State = CTovInputControl::eState;

struct FakeForm : FakeWindow, CTovInputControlContainer {
    explicit FakeForm(FakeDesk& desk) : FakeWindow(desk), CTovInputControlContainer(this) { HookContainer(); }
    void OnPrepareShowValidationText(HWND, unsigned id, unsigned long, CString*) override {
        told.append("p").append(std::to_string(id)).append(m_desk->focus == GetWndTopmostFocus() ? "" : "<");
    }
    void OnShowValidationText(HWND, unsigned id, unsigned long, CString* message) override {
        told.append("s").append(std::to_string(id));
        text = *message;
    }
    void OnHideValidationText() override { text.clear(); }
    void OnFocusBlockedChanged(int blocked) override { told += blocked != 0 ? "B" : "F"; }
    void OnEmptyFieldsChanged(int empty) override { told += empty != 0 ? "E" : "e"; }
    int OnNextDlgCtl(int previous) override {
        told += previous != 0 ? "<" : ">";
        return 1;
    }
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_COMMAND && wParam >> 16 == 0) commands.push_back(static_cast<int>(wParam));
        return FakeWindow::WindowProc(message, wParam, lParam);
    }
    using CTovInputControlContainer::AddDlgCtrlChild;
    using CTovInputControlContainer::HookAllDlgCtrls;
    using CTovInputControlContainer::SetIsFileDialog;
    using CTovInputControlContainer::UnhookAllDlgCtrls;
    std::string told;
    CString text;
    std::vector<int> commands;
};

constexpr int controls = 3, ok = 3, cancel = 4, nobody = -1;

// The form as a user knows it: what the guard must do, in plain words.
struct Model {
    struct Control {
        bool wrong = false, hidden = false, disabled = false, readOnly = false, gone = false, child = false;
        auto operator<=>(Control const&) const = default;
    };
    Control all[controls];
    int focus = nobody, last = nobody;  // where the focus is, and the last place that was not Cancel
    bool active = false, blocked = false, text = false;
    int accepted = 0, cancelled = 0;
    auto operator<=>(Model const&) const = default;

    bool Fails(int i) const {
        return i >= 0 && i < controls && all[i].wrong && !all[i].hidden && !all[i].readOnly && !all[i].gone;
    }
    bool MayLeave() {
        if (Fails(last) && !all[last].disabled) {
            active = blocked = text = true;
            focus = last;
            return false;
        }
        blocked = false;
        return true;
    }
    void MoveFocus(int to) {
        if (focus == to) return;
        focus = to;
        if (to == cancel) {
            text = text && !active;
            active = true;
        } else if (!(active && last == to) && (last == to || MayLeave())) {
            active = true;
            last = to;
        }
    }
    bool TakesClicks(int i) const {
        return i >= controls || !(all[i].gone || all[i].hidden || all[i].disabled);
    }
    void Click(int i) {
        if (!TakesClicks(i)) return;
        if (i != cancel && !(active && last == i) && !MayLeave()) return;
        MoveFocus(i);
        if (i == cancel) ++cancelled;
        if (i == ok) Accept();
    }
    void Accept() {
        int failing = Fails(last) ? last : 0;
        while (failing < controls && !Fails(failing))
            ++failing;
        if (failing == controls) {
            ++accepted;
        } else {
            if (!all[failing].disabled) MoveFocus(failing);
            text = true;
        }
    }
    void Tab(int by) {
        for (int i = focus, tries = 0; tries < 5; ++tries) {
            i = ((i == nobody ? (by > 0 ? -1 : 5) : i) + by + 5) % 5;
            if (TakesClicks(i)) return MoveFocus(i);
        }
    }
    void Type(bool isWrong) {
        if (focus < 0 || focus >= controls || all[focus].readOnly || all[focus].disabled) return;
        all[focus].wrong = isWrong;
        text = false;
    }
};

// The same with windows, hooks and messages.
struct Form {
    FakeDesk desk;
    FakeForm form{desk};
    std::unique_ptr<FakeControl> all[controls];
    std::vector<std::unique_ptr<FakeWindow>> windows;
    HWND handles[5];

    Form() {
        for (int i = 0; i < controls; ++i) {
            all[i] = std::make_unique<FakeControl>(desk, form, 100 + i);
            handles[i] = all[i]->GetSafeHwnd();
        }
        for (int const id : {IDOK, IDCANCEL})
            handles[ok + id - IDOK] =
                windows.emplace_back(std::make_unique<FakeButton>(desk, form, id))->GetSafeHwnd();
        form.HookAllDlgCtrls(nullptr);
    }
    int IndexOf(HWND window) const {
        for (int i = 0; i < 5; ++i) {
            CWnd const* const control = CWnd::FromHandlePermanent(handles[i]);
            if (window && (handles[i] == window || (control != nullptr && control->IsChild(window))))
                return i;
        }
        return nobody;
    }
    bool TakesClicks(HWND window) const {
        CWnd const* const wnd = CWnd::FromHandlePermanent(window);
        return wnd != nullptr && (wnd->GetStyle() & (WS_VISIBLE | WS_DISABLED)) == WS_VISIBLE;
    }
    void Click(int i, HWND where = {}) {
        if (!TakesClicks(handles[i])) return;
        if (!where) where = handles[i];
        for (unsigned const message : {WM_MOUSEACTIVATE, WM_LBUTTONDOWN, WM_LBUTTONUP})
            TovSendMessage(where, message);
    }
    void Tab(int by) {
        for (int i = IndexOf(desk.focus), tries = 0; tries < 5; ++tries) {
            i = ((i == nobody ? (by > 0 ? -1 : 5) : i) + by + 5) % 5;
            if (TakesClicks(handles[i])) return CWnd::FromHandlePermanent(handles[i])->SetFocus();
        }
    }
    void Type(bool isWrong) {
        int const i = IndexOf(desk.focus);
        if (i < 0 || i >= controls || all[i]->GetReadOnlyMode() != 0 || !IsEnabled(i)) return;
        all[i]->Type(isWrong ? "wrong" : "right");
    }
    bool IsEnabled(int i) const { return (all[i]->GetStyle() & WS_DISABLED) == 0; }
    void Toggle(int i, unsigned long style) {
        if (all[i] == nullptr) return;
        unsigned long const present = all[i]->GetStyle() & style;
        all[i]->ModifyStyle(present, style & ~present);
    }

    // What the model holds, read from the windows.
    Model Seen() const {
        Model seen;
        for (int i = 0; i < controls; ++i) {
            Model::Control& control = seen.all[i];
            control.gone = all[i] == nullptr;
            if (control.gone) continue;
            control.wrong = all[i]->content == "wrong";
            control.hidden = (all[i]->GetStyle() & WS_VISIBLE) == 0;
            control.disabled = !IsEnabled(i);
            control.readOnly = all[i]->GetReadOnlyMode() != 0;
            control.child = !all[i]->children.empty();
        }
        seen.focus = IndexOf(desk.focus);
        seen.last = nobody;
        for (int i = 0; i < 5; ++i) {
            if (handles[i] == form.GetWndTopmostFocus()) seen.last = i;
        }
        auto& self = const_cast<FakeForm&>(form);
        seen.active = self.GetActiveContainer() == &form;
        seen.blocked = self.FocusIsBlocked() != 0;
        seen.text = !form.text.empty();
        seen.accepted = static_cast<int>(std::ranges::count(form.commands, IDOK));
        seen.cancelled = static_cast<int>(std::ranges::count(form.commands, IDCANCEL));
        return seen;
    }
};

struct Step {
    std::string name;
    std::function<void(Model&)> model;
    std::function<void(Form&)> form;
};

std::vector<Step> AllSteps() {
    std::vector<Step> steps = {
        {"Tab", [](Model& m) { m.Tab(1); }, [](Form& f) { f.Tab(1); }},
        {"Shift+Tab", [](Model& m) { m.Tab(-1); }, [](Form& f) { f.Tab(-1); }},
        {"right", [](Model& m) { m.Type(false); }, [](Form& f) { f.Type(false); }},
        {"wrong", [](Model& m) { m.Type(true); }, [](Form& f) { f.Type(true); }},
    };
    for (int i = 0; i <= cancel; ++i)
        steps.push_back({"click", [i](Model& m) { m.Click(i); }, [i](Form& f) { f.Click(i); }});
    for (int i = 0; i < controls; ++i) {
        steps.push_back({"hide", [i](Model& m) { m.all[i].hidden ^= !m.all[i].gone; },
                         [i](Form& f) { f.Toggle(i, WS_VISIBLE); }});
        steps.push_back({"disable", [i](Model& m) { m.all[i].disabled ^= !m.all[i].gone; },
                         [i](Form& f) { f.Toggle(i, WS_DISABLED); }});
        steps.push_back({"read-only", [i](Model& m) { m.all[i].readOnly ^= !m.all[i].gone; },
                         [i](Form& f) {
                             if (f.all[i] != nullptr) f.all[i]->SetReadOnlyMode(!f.all[i]->GetReadOnlyMode());
                         }});
        steps.push_back({"destroy",
                         [i](Model& m) {
                             if (m.focus == i) m.focus = nobody;
                             m.all[i] = {.gone = true};
                         },
                         [i](Form& f) { f.all[i].reset(); }});
        // A window that comes into the control is guarded with it.
        steps.push_back({"child",
                         [i](Model& m) {
                             if (m.all[i].gone) return;
                             m.all[i].child = true;
                             m.Click(i);
                         },
                         [i](Form& f) {
                             if (f.all[i] == nullptr) return;
                             if (f.all[i]->children.empty()) {
                                 auto child = std::make_unique<FakeButton>(f.desk, *f.all[i], 7);
                                 f.all[i]->OnDlgCtrlChildAdded(child->GetSafeHwnd());
                                 f.windows.push_back(std::move(child));
                             }
                             f.Click(i, f.all[i]->children.front());
                         }});
    }
    return steps;
}

std::ostream& operator<<(std::ostream& out, Model const& m) {
    for (auto const& c : m.all)
        out << c.wrong << c.hidden << c.disabled << c.readOnly << c.gone << c.child << ' ';
    return out << "focus " << m.focus << " last " << m.last << " active " << m.active << " blocked "
               << m.blocked << " text " << m.text << " accepted " << m.accepted << " cancelled "
               << m.cancelled;
}

TEST(FocusGuard, EveryStateThatSixStepsReachIsAsTheModelSays) {
    std::vector<Step> const steps = AllSteps();
    // Equal states are walked on from once; what was counted on the way there makes no difference.
    std::set<Model> known = {Model{}};
    std::vector<std::pair<Model, std::vector<std::size_t>>> front = {{Model{}, {}}};
    for (int depth = 0; depth < 6; ++depth) {
        decltype(front) next;
        for (auto const& [from, path] : front) {
            for (std::size_t s = 0; s < steps.size(); ++s) {
                Model model = from;
                steps[s].model(model);
                Model key = model;
                key.accepted = key.cancelled = 0;
                if (!known.insert(key).second && depth > 2) continue;
                Form form;
                std::string walked;
                for (std::size_t const before : path)
                    walked += steps[before].name + ", ", steps[before].form(form);
                form.form.commands.clear();
                steps[s].form(form);
                ASSERT_EQ(form.Seen(), model) << walked << steps[s].name << ' ' << s;
                auto longer = path;
                longer.push_back(s);
                next.emplace_back(key, std::move(longer));
            }
        }
        front = std::move(next);
    }
    RecordProperty("states", static_cast<int>(known.size()));
    EXPECT_GT(known.size(), 10'000u);
}

// One form with two controls, a combo box of a list and an edit, and buttons.
struct FormTest : testing::Test {
    FakeDesk desk;
    FakeForm form{desk};
    FakeControl first{desk, form, 100}, second{desk, form, 101};
    FakeWindow combo{desk, &form, 102}, comboEdit{desk, &combo, 103};
    FakeButton help{desk, form, 9}, next{desk, form, ID_WIZNEXT};

    std::string Told() { return std::exchange(form.told, ""); }
};

TEST_F(FormTest, TellsTheOutermostChangeOfEmptinessOnce) {
    first.content = second.content = "";
    first.SetEmptyAllowed(1);
    EXPECT_EQ(first.ResetAttributes(), 0) << "it is hooked";
    EXPECT_EQ(Told(), "") << "nothing counts before the controls are hooked";
    form.HookAllDlgCtrls(nullptr);
    first.SetEmptyAllowed(0);
    EXPECT_EQ(Told(), "E");
    second.SetReadOnlyMode(1);
    first.SetString("x");
    EXPECT_EQ(Told(), "e");
    second.SetReadOnlyMode(0);
    EXPECT_EQ(Told(), "E");
    first.SetString("");
    first.SetString("x");
    EXPECT_EQ(Told(), "") << "the other one is empty still";
    {
        CTovInputControl::CTovNotifyEmptyChanged const outer(second);
        second.SetString("y");
        second.SetString("");
        second.SetString("z");
        EXPECT_EQ(Told(), "");
    }
    EXPECT_EQ(Told(), "e");
    {
        CTovInputControl::CTovKeepChangedByUserStatus const keep(second);
        CTovInputControl::CTovNotifyEmptyChanged const outer(second);
        second.SetChangedByUser(1);
        second.SetString("");
        second = "again";
    }
    EXPECT_EQ(Told() + CString(second), "again");
    EXPECT_EQ(second.GetChangedByUser(), 0);
    form.SetIgnoreEmptyChanged(1);
    second.SetString("");
    EXPECT_EQ(Told(), "");
}

TEST_F(FormTest, AsksAllControlsBeforeACommand) {
    form.HookAllDlgCtrls(nullptr);
    second.SetFocus();
    first.content = second.content = "";
    struct {
        int command;
        bool isFileDialog, passes;
    } const rows[] = {{IDOK, false, false},         {ID_APPLY_NOW, false, false},
                      {ID_WIZFINISH, false, false}, {ID_WIZNEXT, false, false},
                      {ID_WIZBACK, false, true},    {IDCANCEL, false, true},
                      {ID_WIZNEXT, true, true},     {IDOK, true, true}};
    for (auto const& row : rows) {
        form.SetIsFileDialog(row.isFileDialog);
        form.commands.clear();
        form.text.clear();
        TovSendMessage(form.GetSafeHwnd(), WM_COMMAND, static_cast<WPARAM>(row.command));
        EXPECT_EQ(form.commands.size(), row.passes ? 1u : 0u) << row.command;
        EXPECT_EQ(form.text, row.passes ? "" : "字段不能为空");
        EXPECT_EQ(Told(), row.passes ? "" : "p101s101") << "the one with the focus speaks first";
    }
    NMHDR const fileOk{form.GetSafeHwnd(), 0, CDN_FILEOK};
    combo.log.clear();
    TovSendMessage(combo.GetSafeHwnd(), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&fileOk));
    EXPECT_EQ(Told() + std::to_string(combo.Count(WM_NOTIFY)), "p101s1010");
    first.content = second.content = "x";
    TovSendMessage(combo.GetSafeHwnd(), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&fileOk));
    EXPECT_EQ(combo.Count(WM_NOTIFY), 1);
}

TEST_F(FormTest, RefusesInTheToldOrder) {
    form.HookAllDlgCtrls(nullptr);
    first.SetFocus();
    first.Type("wrong");
    second.SetFocus();
    EXPECT_EQ(Told(), "p100<s100B") << "prepared before the focus goes back, shown after it";
    EXPECT_EQ(form.text, "it is wrong");
    first.Type("wrong");
    EXPECT_EQ(form.text, "");
    TovSendMessage(second.GetSafeHwnd(), WM_MOUSEACTIVATE);
    EXPECT_EQ(Told(), "p100s100");
    help.log.clear();
    TovSendMessage(help.GetSafeHwnd(), BM_SETSTYLE);
    EXPECT_EQ(help.Count(BM_SETSTYLE), 0) << "the frame of the default button stays";
    first.Type("right");
    second.SetFocus();
    EXPECT_EQ(Told(), "F");
    second.Type("");
    first.SetFocus();
    EXPECT_EQ(Told(), "E") << "what is empty may be left";
    form.SetEmptyBlocksFocus(1);
    first.Type("");
    second.SetFocus();
    EXPECT_EQ(Told() + form.text, "p100<s100B字段不能为空");
}

TEST_F(FormTest, PassesTabOnToTheOwnerOfTheCell) {
    form.HookAllDlgCtrls(nullptr);
    FakeWindow inner(desk, &second);
    second.OnDlgCtrlChildAdded(inner.GetSafeHwnd());
    inner.className = comboEdit.className = "Edit";
    form.UnhookAllDlgCtrls();  // the classes are read when the hooks are set
    combo.className = "ComboBox";
    form.HookAllDlgCtrls(nullptr);
    form.SetHandleTabKey(1);
    std::pair<FakeWindow*, bool> const rows[] = {
        {&first, true}, {&combo, true}, {&comboEdit, true}, {&inner, false}};
    for (auto const& [window, toOwner] : rows) {
        window->log.clear();
        TovSendMessage(window->GetSafeHwnd(), WM_KEYDOWN, VK_TAB);
        EXPECT_EQ(Told(), toOwner ? ">" : "");
        EXPECT_EQ(window->Count(WM_KEYDOWN), toOwner ? 0 : 1);
    }
    desk.keys = {VK_SHIFT};
    TovSendMessage(first.GetSafeHwnd(), WM_KEYDOWN, VK_TAB);
    TovSendMessage(form.GetSafeHwnd(), WM_NEXTDLGCTL, 0);
    EXPECT_EQ(Told(), "<>");
}

// What is guarded is seen by where a press is refused.
TEST_F(FormTest, HooksWhatComesAndLetsGoOfWhatLeaves) {
    FakeWindow late(desk, &form, 200), added(desk, &form, 201);
    auto const guarded = [this](FakeWindow& window) {
        first.content = "wrong";
        first.SetFocus();
        form.SetWndTopmostFocus(first.GetSafeHwnd());
        window.log.clear();
        TovSendMessage(window.GetSafeHwnd(), WM_MOUSEACTIVATE);
        return window.Count(WM_MOUSEACTIVATE) == 0;
    };
    form.AddDlgCtrlChild(second.GetSafeHwnd(), added.GetSafeHwnd());
    form.AddDlgCtrlChild(second.GetSafeHwnd(), added.GetSafeHwnd());
    std::erase(form.children, late.GetSafeHwnd());
    form.HookAllDlgCtrls(&FakeControl::classCWnd);
    EXPECT_FALSE(guarded(help)) << "all windows are of the excluded class";
    form.HookAllDlgCtrls(nullptr);
    EXPECT_TRUE(guarded(help) && guarded(comboEdit) && guarded(added));
    form.children.push_back(late.GetSafeHwnd());
    EXPECT_FALSE(guarded(late));
    form.HookAllDlgCtrls(nullptr);
    EXPECT_TRUE(guarded(late));
    second.OnUnhookDlgCtrl(second.GetSafeHwnd());
    EXPECT_FALSE(guarded(second) || guarded(added));
    second.OnHookDlgCtrl(second.GetSafeHwnd());
    EXPECT_TRUE(guarded(second));
    EXPECT_TRUE(help.GetStyle() & BS_PUSHLIKE) << "no default button";
    EXPECT_FALSE(next.GetStyle() & BS_PUSHLIKE);
    combo.ModifyStyle(0, 1);
    for (FakeWindow* const window : {&combo, &comboEdit})
        window->ModifyStyleEx(0, WS_EX_TRANSPARENT);
    TovSendMessage(form.GetSafeHwnd(), WM_PAINT);
    EXPECT_EQ(combo.redrawn, 0x121u);
    EXPECT_EQ(comboEdit.redrawn, 0u);
    form.UnhookAllDlgCtrls();
    EXPECT_FALSE(guarded(help));
    // A container that goes is nobody's active one, and its hooks go with it.
    auto gone = std::make_unique<FakeForm>(desk);
    FakeControl orphan(desk, *gone, 1);
    gone->HookAllDlgCtrls(nullptr);
    form.SetActiveContainer(gone.get());
    gone.reset();
    EXPECT_EQ(form.GetActiveContainer(), nullptr);
    orphan.SetFocus();
    EXPECT_EQ(orphan.GetContainer(), nullptr);
}

TEST_F(FormTest, MeasuresEditorsInCells) {
    long height = 0, width = 0, unit = 0;
    first.GetInlineDimensions(height, width, unit, nullptr, "four");
    EXPECT_EQ(std::tuple(height, width, unit), std::tuple(17L, 28L, 17L));
    EXPECT_EQ(first.GetInlineMoveUp(17, 17), 0);
    EXPECT_EQ(first.GetInlineMoveUp(12, 17), 3);
    first.content = " \t a b\r\n";
    EXPECT_EQ(first.GetStringTrimmed(), "a b");
}

}  // namespace
}  // namespace tov
