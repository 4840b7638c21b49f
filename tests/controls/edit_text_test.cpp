#include <tov310/compare.h>
#include <tov310/dialog.h>
#include <tov310/edit_host.h>
#include <tov310/menu_edit.h>
#include <tov310/requirements.h>
#include <tov310/resources.h>

#include "support/fake_edit.h"
#include "support/menu_text.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <tuple>

namespace tov {
namespace {

using test::EditInForm;
using test::FakeEdit;
using test::Narrow;
using test::Wide;

TEST(EditFilter, TakesTheLettersAndDigitsOfAllScripts) {
    EditInForm<> f;
    f.Enter();
    CString custom = "°'\"0123456789";
    struct {
        eTovAllowedChars allowed;
        char const* refused;
        int conversion;
        char const* keys;
        char const* text;
        int beeps;
    } const cases[] = {
        {eAllowedCharsAll, "", 0, "aß漢😀 1\t\x7F", "aß漢😀 1", 0},
        {eAllowedCharsAlpha, "", 0, "aZé漢яe\xCC\x81 1_٣", "aZé漢яe\xCC\x81", 4},
        {eAllowedCharsDigits, "", 0, "12٣a-", "12", 3},
        {eAllowedCharsAlphaNumeric, "", 0, "a٣9漢+", "a٣9漢", 1},
        {eAllowedCharsCustom, "", 0, "12°30'x漢", "12°30'", 2},
        {eAllowedCharsCustom, "0'", 0, "12°30'", "12°3", 2},
        {eAllowedCharsAll, "漢ß", 0, "a漢ßb", "ab", 2},
        {eAllowedCharsAll, "", tovConvertToUpper, "aéßяçǆ1", "AÉßЯÇǄ1", 0},
        {eAllowedCharsAll, "", tovConvertToLower, "AÉЯÇΣİ1", "aéяçσi1", 0},
        {eAllowedCharsAll, "A", tovConvertToUpper, "ab", "B", 1},  // converted first
        {static_cast<eTovAllowedChars>(9), "", 0, "x1°", "x1°", 0},
    };
    for (auto const& c : cases) {
        f.edit.Empty();
        f.edit.beeps = 0;
        f.edit.SetAllowedChars(c.allowed, &custom);
        f.edit.SetNotAllowedChars(c.refused);
        f.edit.SetConversion(c.conversion);
        f.edit.Type(c.keys);
        EXPECT_EQ(std::tuple(f.edit.text, f.edit.beeps), std::tuple(c.text, c.beeps)) << c.keys;
    }
}

// The tables of cases were made apart from the one by which texts compare without regard to case.
TEST(EditFilter, ChangesNothingButTheCase) {
    EditInForm<> f;
    std::u32string others;
    for (int const conversion : {tovConvertToUpper, tovConvertToLower}) {
        f.edit.SetConversion(conversion);
        for (char32_t c = 0x20; c < 0x110000; ++c) {
            if (c == 0xD800) c = 0xE000;
            char32_t converted = c;
            f.edit.engine.Convert(converted);
            if (converted == c) continue;
            if (TovCompareNoCaseIS(Narrow({&c, 1}).c_str(), Narrow({&converted, 1}).c_str()) != 0)
                others += c;
            char32_t again = converted;
            f.edit.engine.Convert(again);
            EXPECT_TRUE(again == converted) << std::hex << static_cast<unsigned>(c);
        }
    }
    // The two letters i of Turkish belong to two pairs.
    EXPECT_EQ(Narrow(others), "\u0131\u0130");
}

TEST(EditText, CountsCharactersAndSaysWhatIsWrongInBothLanguages) {
    EditInForm<> f;
    HINSTANCE const english = TovLoadResourceModule(TOV_TEST_SOURCE_DIR "/res/en");
    ASSERT_NE(english, nullptr);
    f.edit.SetMinChars(2);
    f.edit.SetMaxChars(4);
    using enum CTovInputControl::eState;
    struct {
        char const* text;
        CTovInputControl::eState state;
        char const* chinese;
        char const* words;
    } const cases[] = {
        {"", eStateEmpty, "", ""},
        {nullptr, eStateEmpty, "", ""},
        {"漢", eStateInvalid, "字段包含 1 字符， 最小字符数为2字符",
         "The field contains 1 characters, the minimum is 2 characters"},
        {"漢😀", eStateValid, "", ""},
        {"漢字漢字", eStateValid, "", ""},
        {"漢字漢字😀", eStateInvalid, "字段包含 5 字符， 最大值是 4 字符",
         "The field contains 5 characters, the maximum is 4 characters"},
    };
    for (auto const& c : cases) {
        CString message = "old";
        EXPECT_EQ(f.edit.InternalValidate(c.text, nullptr), c.state);
        EXPECT_EQ(f.edit.InternalValidate(c.text, &message), c.state);
        EXPECT_EQ(message, c.chinese);
        TovSetTovResourceHandle(english);
        f.edit.InternalValidate(c.text, &message);
        TovSetTovResourceHandle(nullptr);
        EXPECT_EQ(message, c.words);
    }
    f.edit.SetEmptyAllowed(1);
    EXPECT_EQ(f.edit.InternalValidate("", nullptr), eStateValid);
}

TEST(EditText, PastesAndAcceptsOneLineCutAtItsEnd) {
    struct {
        char const* before;
        int start, end;
        char const* pasted;
        char const* after;  // null: refused
        int caret;
    } const cases[] = {
        {"abcd", 2, 2, "漢字漢", "ab漢字cd", 4},
        {"abcd", 1, 3, "12345", "a1234d", 5},
        {"abcdef", 3, 3, "1", nullptr, 3},
        {"abcdef", 3, 4, "12", "abc1ef", 4},
        {"", 0, 0, "\r\n12\n34", "12", 2},
        {"a", 1, 1, "1\t2\x01", "a1 2", 4},
        {"ab", 2, 2, "xx", nullptr, 2},
        {"ab", 0, 2, "x1x2", "12", 2},
        {"ab", 2, 2, "", nullptr, 2},
        {"ab", 0, 0, "\n", nullptr, 0},
    };
    EditInForm<> f;
    f.edit.SetMaxChars(6);
    f.edit.SetNotAllowedChars("x");
    f.Enter();
    for (auto const& c : cases) {
        f.edit.SetString(c.before);
        f.edit.SetEditSel(c.start, c.end);
        f.edit.clipboard = c.pasted;
        f.edit.beeps = 0;
        auto proposed = Wide(c.before).replace(static_cast<std::size_t>(c.start),
                                               static_cast<std::size_t>(c.end - c.start), Wide(c.pasted));
        CString accepted = Narrow(proposed);
        int caret = c.start + static_cast<int>(Wide(c.pasted).size());
        bool const isAccepted = f.edit.engine.AcceptInput(accepted, caret) != 0;
        bool const can = f.edit.CanPaste() != 0;
        f.edit.Paste();
        bool const wanted = c.after != nullptr;
        EXPECT_EQ(can, wanted) << c.pasted;
        EXPECT_EQ(f.edit.beeps, wanted ? 0 : 1);
        EXPECT_EQ(f.edit.text, wanted ? c.after : c.before);
        EXPECT_EQ(std::pair(f.edit.start, f.edit.end),
                  wanted ? std::pair(c.caret, c.caret) : std::pair(c.start, c.end));
        if (*c.pasted != '\0') {
            EXPECT_EQ(std::tuple(isAccepted, accepted), std::tuple(wanted, f.edit.text)) << c.pasted;
            if (wanted) {
                EXPECT_EQ(caret, c.caret);
            }
        }
    }
    f.edit.clipboardWorks = 0;
    f.edit.SelectAll();
    f.edit.Cut();
    EXPECT_EQ(f.edit.text, "ab");  // what did not reach the clipboard stays
    EXPECT_EQ(f.edit.CanPaste(), 0);
}

// An edit by its rules alone: what the window holds, the state before the next change, and two stacks.
struct UndoModel {
    struct State {
        std::u32string text;
        int start = CTovEditUndoRedoItem::noSelection;
        int end = CTovEditUndoRedoItem::noSelection;
    };
    State now{{}, 0, 0};
    State item;
    std::vector<State> undo, redo;

    static std::u32string Trimmed(std::u32string text) {
        text.erase(0, std::min(text.find_first_not_of(U' '), text.size()));
        text.erase(text.find_last_not_of(U' ') + 1);
        return text;
    }
    void Show(std::u32string const& text, int start, int end) {
        int const length = static_cast<int>(text.size());
        now = {text, std::min(start, length), std::min(end, length)};
    }
    void Change(std::u32string const& text, int start, int end) {
        undo.push_back(item);
        redo.clear();
        Show(text, start, end);
        item = now;
    }
    void Replace(int start, int end, std::u32string_view by) {
        auto text = now.text;
        text.replace(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start), by);
        int const caret = start + static_cast<int>(by.size());
        Change(text, caret, caret);
    }
    void Step(std::vector<State>& from, std::vector<State>& to) {
        if (from.empty()) return;
        State const state = from.back();
        from.pop_back();
        to.push_back(now);
        bool const known = state.start != CTovEditUndoRedoItem::noSelection;
        Show(Trimmed(state.text), known ? state.start : now.start, known ? state.end : now.end);
        item = now;
    }
};

struct ForgetfulEdit : FakeEdit {
    using FakeEdit::FakeEdit;
    void AddCurrentToLastItems() override {}
};

TEST(EditUndo, FollowsTheModelThroughRandomEdits) {
    constexpr std::size_t most = 9;
    std::u32string const alphabet = U"aZ\u00DF\u6F22\U0001F600\u0301 ";
    std::mt19937 random(7);
    auto const below = [&](std::size_t n) { return static_cast<std::size_t>(random() % n); };
    for (int run = 0; run < 400; ++run) {
        EditInForm<ForgetfulEdit> f;
        FakeEdit& edit = f.edit;
        edit.SetMaxChars(most);
        f.Enter();
        UndoModel model;
        for (int step = 0; step < 300; ++step) {
            auto const& now = model.now;
            bool const selects = now.start != now.end;
            int const length = static_cast<int>(now.text.size());
            std::u32string some;
            for (std::size_t n = 1 + below(4); n > 0; --n)
                some += alphabet[below(alphabet.size())];
            auto const operation = below(13);
            std::string const before = edit.text;
            int const told = edit.told;
            switch (operation) {
                case 0:
                    edit.Undo();
                    model.Step(model.undo, model.redo);
                    break;
                case 1:
                    edit.Redo();
                    model.Step(model.redo, model.undo);
                    break;
                case 2:
                    edit.Backspace();
                    if (selects) {
                        model.Replace(now.start, now.end, {});
                    } else if (now.start > 0) {
                        model.Replace(now.start - 1, now.start, {});
                    }
                    break;
                case 3:
                    edit.Delete();
                    if (selects) {
                        model.Replace(now.start, now.end, {});
                    } else if (now.start < length) {
                        model.Replace(now.start, now.start + 1, {});
                    }
                    break;
                case 4:
                    edit.clipboard = Narrow(some);
                    edit.Paste();
                    some.resize(std::min(
                        some.size(), most - now.text.size() + static_cast<std::size_t>(now.end - now.start)));
                    if (!some.empty()) model.Replace(now.start, now.end, some);
                    break;
                case 5:
                    edit.Cut();
                    if (!selects) break;
                    EXPECT_EQ(Wide(edit.clipboard),
                              now.text.substr(static_cast<std::size_t>(now.start),
                                              static_cast<std::size_t>(now.end - now.start)));
                    model.Replace(now.start, now.end, {});
                    break;
                case 6:
                    edit.SetString(Narrow(some));
                    EXPECT_EQ(edit.GetChangedByUser(), 0);
                    if (some != now.text) model.Change(some, 0, 0);
                    model.item = model.now;
                    break;
                case 7: {
                    f.Leave();
                    f.Enter();
                    auto const trimmed = UndoModel::Trimmed(now.text);
                    if (trimmed == now.text) break;
                    model.Show(trimmed, now.start, now.end);
                    model.item = model.now;
                    break;
                }
                case 8:
                case 9: {
                    int const a = static_cast<int>(below(static_cast<std::size_t>(length) + 1));
                    int const b = static_cast<int>(below(static_cast<std::size_t>(length) + 1));
                    edit.SetEditSel(std::min(a, b), std::max(a, b));
                    model.now.start = std::min(a, b);
                    model.now.end = std::max(a, b);
                    break;
                }
                default:
                    some.resize(1);
                    edit.Type(Narrow(some));
                    if (now.text.size() - static_cast<std::size_t>(now.end - now.start) < most)
                        model.Replace(now.start, now.end, some);
            }
            ASSERT_EQ(std::tuple(Wide(edit.text), edit.start, edit.end),
                      std::tuple(model.now.text, model.now.start, model.now.end))
                << "run " << run << " step " << step << " operation " << operation;
            ASSERT_EQ(edit.GetRawString(), edit.text);
            if (operation != 6 && operation != 7 && before != edit.text) {
                ASSERT_EQ(edit.told, told + 1);
            }
            ASSERT_EQ(std::pair(edit.CanUndo() != 0, edit.CanRedo() != 0),
                      std::pair(!model.undo.empty(), !model.redo.empty()));
        }
    }
}

// Notes what it is asked to do.
struct NotingEdit : FakeEdit {
    using FakeEdit::FakeEdit;
    void Undo() override { done = "Undo"; }
    void Redo() override { done = "Redo"; }
    void Cut() override { done = "Cut"; }
    void Copy() override { done = "Copy"; }
    void Paste() override { done = "Paste"; }
    void Delete() override { done = "Delete"; }
    void Backspace() override { done = "Backspace"; }
    void SelectAll() override { done = "SelectAll"; }
    void Insert(unsigned index) override { done = "Insert" + std::to_string(index); }
    unsigned CanInsert() override { return 3; }
    int CanDelete() override { return can; }
    int CanBackspace() override { return can; }
    int CanRedo() override { return can; }
    void OnSpinDeltapos(int up, int delta) override { done = (up ? "Up" : "Down") + std::to_string(delta); }
    std::string Take() { return std::exchange(done, ""); }
    std::string done;
    int can = 1;
};

TEST(EditKeys, DoWhatTheTableSays) {
    EditInForm<NotingEdit> f;
    f.edit.SetSpinDelta(5);
    std::map<int, std::string> const control = {
        {0x5A, "Undo"},  {0x7A, "Undo"},  {0x59, "Redo"},      {0x79, "Redo"},
        {0x58, "Cut"},   {0x78, "Cut"},   {0x43, "Copy"},      {0x63, "Copy"},
        {0x56, "Paste"}, {0x76, "Paste"}, {0x41, "SelectAll"}, {0x61, "SelectAll"},
    };
    std::map<int, std::string> const plain = {{VK_DELETE, "Delete"}, {VK_BACK, "Backspace"}};
    std::map<int, std::string> const steps = {{VK_UP, "Up-5"}, {VK_DOWN, "Down5"}};
    auto const at = [](std::map<int, std::string> const& keys, int key) {
        return keys.contains(key) ? keys.at(key) : std::string();
    };
    for (int key = 0; key < 256; ++key) {
        for (bool const spin : {false, true}) {
            f.edit.engine.companions.spinWidth = spin ? 16 : 0;
            std::string const alone = !at(plain, key).empty() ? at(plain, key) : spin ? "" : at(steps, key);
            EXPECT_EQ(f.edit.Key(key), !alone.empty()) << key;
            EXPECT_EQ(f.edit.Take(), alone) << key;
            f.edit.Key(key, {VK_CONTROL});
            EXPECT_EQ(f.edit.Take(), at(control, key).empty() ? alone : at(control, key)) << key;
            f.edit.Key(key, {VK_SHIFT});
            EXPECT_EQ(f.edit.Take(), key == VK_INSERT ? "Paste" : alone) << key;
        }
    }
    f.edit.can = 0;
    EXPECT_EQ(f.edit.Key(VK_DELETE) + f.edit.Key(VK_BACK), 2);
    EXPECT_EQ(f.edit.Take(), "");
    f.edit.SetReadOnlyMode(1);
    f.edit.Key(VK_UP);
    EXPECT_EQ(f.edit.Take(), "");
}

TEST(EditKeys, AnswerCommandsAndTellTheirState) {
    EditInForm<NotingEdit> f;
    struct State : CCmdUI {
        void Enable(int on) override { enabled = on != 0; }
        int enabled = -1;
    };
    std::tuple<unsigned, char const*, int> const commands[] = {
        {0xE12B, "Undo", 0},      {0x304, "Undo", 0},
        {0xC7, "Undo", 0},        {0xE12C, "Redo", 1},
        {0x454, "Redo", 1},       {0xE123, "Cut", 0},
        {0x300, "Cut", 0},        {0xE122, "Copy", 0},
        {0x301, "Copy", 0},       {0xE125, "Paste", 0},
        {0x302, "Paste", 0},      {0xE120, "Delete", 1},
        {0xE12A, "SelectAll", 0}, {WM_TOV_EDIT_DELETE, "Delete", 1},
        {2024, "Insert0", 1},     {WM_TOV_EDIT_SELECT_ALL, "SelectAll", 0},
        {2026, "Insert2", 1},     {2034, "Insert10", 0},
        {2023, "", -1},           {2035, "", -1},
        {0x303, "", -1},
    };
    for (auto const& [id, done, enabled] : commands) {
        State state;
        state.m_nID = id;
        f.edit.engine.UpdateCommand(state);
        EXPECT_EQ(state.enabled, enabled) << id;
        EXPECT_EQ(f.edit.engine.DoCommand(id), *done != '\0') << id;
        EXPECT_EQ(f.edit.Take(), done);
    }
    for (auto const& [delta, done] : {std::pair(-1, "Up-1"), std::pair(3, "Down1")}) {
        f.edit.engine.OnSpinNotification(delta);
        EXPECT_EQ(f.edit.Take(), done);
    }
}

struct ShownMenu : ITovMenuPort {
    ShownMenu() { TovSetMenuPort(this); }
    ~ShownMenu() override { TovSetMenuPort(nullptr); }
    int Track(CMenu& menu, POINT const& point, unsigned flags, CWnd&) override {
        told = test::Told(menu);
        return point == POINT{0, 0} && flags == 2;
    }
    void FillRect(CDC*, CRect const&, unsigned long) override {}
    std::string told;
};

TEST(EditMenu, ShowsWhatCanBeDone) {
    ShownMenu shown;
    EditInForm<> f;
    f.edit.SetLastItemsSection("menu");
    f.Enter();
    for (char const* const value : {"a&b", "c;d", "%3B", "100%"}) {
        f.edit.Empty();
        f.edit.Type(value);
        f.Leave();
        f.Enter();
    }
    EXPECT_EQ(f.edit.GetAllLastItems(), (std::vector<CString>{"100%", "%3B", "c;d", "a&b"}));
    f.edit.engine.OnContextMenu({-1, -1});
    EXPECT_EQ(
        shown.told,
        "插入(&i)( 100%=2024 %3B=2025 c;d=2026 a&&b=2027 ) - 撤消\tCtrl+Z(&U)=772 重做\tCtrl+Y(&R)=1108! - "
        "剪切(&t)\tCtrl+X=768! 复制\tCtrl+C(&c)=769! 粘贴\tCtrl+V(&P)=770! 删除\t删除(&D)=" +
            std::to_string(WM_TOV_EDIT_DELETE) +
            "! - 全部选择(&S)=" + std::to_string(WM_TOV_EDIT_SELECT_ALL) + " ");
    f.edit.Insert(2);
    EXPECT_EQ(std::tuple(f.edit.text, f.edit.start), std::tuple("c;d", 3));
    f.edit.ReadOnlyKeepsFocus(1);
    f.edit.SetReadOnlyMode(1);
    f.edit.SelectAll();
    f.edit.Insert(1);
    EXPECT_EQ(f.edit.ContextMenu(nullptr, {0, 0}), 1);
    EXPECT_EQ(shown.told,
              "复制\tCtrl+C(&c)=769 - 全部选择(&S)=" + std::to_string(WM_TOV_EDIT_SELECT_ALL) + " ");
    EXPECT_EQ(std::tuple(f.edit.text, f.edit.beeps), std::tuple("c;d", 1));
    f.edit.SetMenu(nullptr, 0);
    EXPECT_EQ(f.edit.ContextMenu(nullptr, {0, 0}), 0);

    // Without an edit nothing is off; tokens count in any case, and separators without neighbours go.
    CTovMenuPopUpEdit menu;
    menu.AppendMenu(MF_SEPARATOR);
    menu.AppendMenu(MF_STRING, 1, "%insert");
    menu.AppendMenu(MF_SEPARATOR);
    menu.AppendMenu(MF_STRING, 2, "%Copy");
    menu.CustomizeMenu();
    EXPECT_EQ(test::Told(menu), "复制\tCtrl+C(&c)=769 ");
}

TEST(EditLastItems, KeepAValueOnceAndNoPassword) {
    EditInForm<> f;
    f.edit.RemoveAllLastItems();
    auto const enter = [&](char const* value) {
        f.Enter();
        f.edit.Empty();
        f.edit.Type(value);
        f.Leave();
    };
    EXPECT_EQ(f.edit.engine.GetLastItemsSection(), "CWnd::FakeEdit::7");
    for (char const* const value : {"one", "two ", " two", "   ", "one"})
        enter(value);
    EXPECT_EQ(f.edit.GetAllLastItems(), (std::vector<CString>{"one", "two"}));
    for (int i = 0; i < 12; ++i)
        enter(std::to_string(i).c_str());
    EXPECT_EQ(f.edit.GetAllLastItems().size(), 10u);
    f.edit.RemoveAllLastItems();
    EXPECT_EQ(f.edit.GetLastItem(0), "");

    EditInForm<> secret(ES_PASSWORD);
    secret.Enter();
    secret.edit.Type("secret");
    secret.edit.SelectAll();
    EXPECT_EQ(secret.edit.CanCopy() + secret.edit.CanCut(), 0);
    secret.Leave();
    EXPECT_EQ(secret.edit.GetLastItem(0), "");
}

// Shows its text in brackets while it has no focus.
struct BracketEdit : FakeEdit {
    using FakeEdit::FakeEdit;
    void ShowDisplayValue() override { engine.ShowText("[" + GetRawString() + "]"); }
    void ConvertDisplayToInputPos(int& position) override { position = std::max(0, position - 1); }
};

TEST(EditFocus, ShowsInputWithTheFocusAndSelectsAsTold) {
    EditInForm<BracketEdit> f;
    f.edit.SetMaxChars(20);
    f.edit.SetDisplayFormat("[%s]");
    f.edit.SetString(" 漢字 ");
    EXPECT_EQ(std::tuple(f.edit.text, f.edit.limit), std::tuple("[ 漢字 ]", tovNoMaxChars));
    f.desk.keys = {VK_TAB};
    f.Enter();
    EXPECT_EQ(std::tuple(f.edit.text, f.edit.limit, f.edit.start, f.edit.end),
              std::tuple(" 漢字 ", 20u, 0, 4));
    f.Leave();
    EXPECT_EQ(std::tuple(f.edit.text, f.edit.GetRawString(), f.edit.GetChangedByUser()),
              std::tuple("[漢字]", "漢字", 0));
    f.edit.engine.BeginLeftButton(2);
    f.Enter();
    f.edit.engine.EndLeftButton();
    EXPECT_EQ(std::pair(f.edit.start, f.edit.end), std::pair(1, 1));
    f.edit.IgnoreKillFocusAction(1);
    f.edit.Type(" ");
    f.Leave();
    EXPECT_EQ(f.edit.text, "漢 字");

    // Without a display format only the fields of dialogs are selected.
    for (bool const inDialog : {false, true}) {
        test::FakeDesk desk;
        test::FakeWindow form{desk};
        test::FakeWindowOf<CDialog> dialog{desk};
        FakeEdit edit{desk, inDialog ? static_cast<CWnd*>(&dialog) : &form, 3};
        edit.InitializeEdit();
        edit.SetString("abc");
        edit.IsInline(1);
        EXPECT_EQ(edit.engine.DialogCode(), inDialog ? DLGC_WANTTAB : DLGC_WANTALLKEYS);
        desk.MoveFocus(edit.GetSafeHwnd());
        EXPECT_EQ(edit.end, inDialog ? 3 : 0);
        edit.SetEditSel(1, 1);
        desk.MoveFocus({});
        desk.MoveFocus(edit.GetSafeHwnd());
        EXPECT_EQ(edit.end, 1);  // once only
    }
}

TEST(EditFocus, WithoutItAndReadOnlyNothingChanges) {
    EditInForm<> f;
    f.edit.SetString("abc");
    f.edit.SetString("abcd");
    f.edit.SetEditSel(1, 3);
    f.edit.clipboard = "x";
    auto const tryAll = [&] {
        for (unsigned const id : {0x304u, 0x454u, 0x300u, 0x302u, 0xE120u, 2024u})
            f.edit.engine.DoCommand(id);
        f.edit.Backspace();
        return f.edit.text;
    };
    EXPECT_EQ(tryAll(), "abcd");
    EXPECT_EQ(f.edit.beeps, 0);
    f.Enter();
    f.edit.SetReadOnlyMode(1);
    EXPECT_EQ((f.edit.GetStyle() & (ES_READONLY | WS_DISABLED)),
              ES_READONLY | (TovIsComCtlXP() ? WS_DISABLED : 0));
    EXPECT_EQ(tryAll(), "abcd");
    EXPECT_EQ(std::tuple(f.edit.beeps, f.edit.companionsEnabled), std::tuple(7, 0));
    f.edit.SetReadOnlyMode(0);
    EXPECT_EQ(std::tuple(f.edit.GetStyle() & (ES_READONLY | WS_DISABLED), f.edit.companionsEnabled),
              std::tuple(0UL, 1));
    f.edit.Undo();
    EXPECT_EQ(f.edit.text, "abc");
    f.edit.SetString("   \u3000");
    EXPECT_EQ(f.edit.IsEmpty(), 1);
    f.edit.SetTrimRight(0);
    EXPECT_EQ(f.edit.IsEmpty(), 1);  // the left end takes all of it
    f.edit.SetTrimLeft(0);
    EXPECT_EQ(f.edit.IsEmpty(), 0);

    EXPECT_EQ(f.edit.ResetAttributes(), 0);
    EXPECT_EQ(f.edit.GetTrimLeft(), 0);
    f.edit.UnhookControl();
    f.edit.DestroyWindow();
    EXPECT_EQ(f.edit.ResetAttributes(), 1);
    EXPECT_EQ(std::tuple(f.edit.GetTrimLeft(), f.edit.engine.GetLastItemsSection()), std::tuple(1, ""));
}

TEST(EditPlaces, CompanionsColoursAndCells) {
    CRect const whole{10, 20, 110, 40};
    CTovEditCompanions both;
    both.spinWidth = 18;
    both.buttonWidth = CTovEditCompanions::ButtonWidth({8, 13});
    EXPECT_EQ(std::tuple(both.buttonWidth, both.MinWidth()), std::tuple(20, 36));
    EXPECT_EQ(both.Edit(whole), (CRect{10, 20, 74, 40}));
    EXPECT_EQ(both.Spin(whole), (CRect{72, 20, 90, 40}));
    EXPECT_EQ(both.Button(whole), (CRect{90, 20, 110, 40}));
    EXPECT_EQ(CTovEditCompanions::BoundsForButton(whole, 120, true), (CRect{10, 20, 131, 40}));
    EXPECT_EQ(CTovEditCompanions::BoundsForSpin({0, 0, 10, 30}, {17, 17}), (CRect{0, 0, 27, 30}));

    EditInForm<> f;
    CRect container{0, 100, 20, 110};
    CRect control;
    EXPECT_EQ(f.edit.engine.SetupInlineRect(container, control, nullptr), 1);
    EXPECT_EQ(control, (CRect{0, 96, 85, 113}));

    f.edit.SetColorText(0x0000FF);
    f.edit.SetColorBkReadOnly(0x00FF00);
    EXPECT_EQ(std::pair(f.edit.engine.CtlColor().text, f.edit.engine.CtlColor().back),
              std::pair(COLORREF{0xFF}, TovGetSystem()->GetSysColor(COLOR_WINDOW)));
    f.edit.ReadOnlyKeepsFocus(1);
    f.edit.SetReadOnlyMode(1);
    EXPECT_EQ(std::pair(f.edit.engine.CtlColor().text, f.edit.engine.CtlColor().back),
              std::pair(tovPlatformColor, COLORREF{0xFF00}));
    f.edit.ModifyStyle(0, WS_DISABLED);
    EXPECT_EQ(f.edit.engine.CtlColor().back, tovPlatformColor);
}

}  // namespace
}  // namespace tov
