// An edit without a screen: holds text, selection and clipboard, and does with keys what a platform would.
#pragma once

#include <tov310/edit_host.h>
#include <tov310/edit_number.h>

#include "support/fake_window.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace tov::test {

// UTF-8 to characters and back, for texts that are valid.
inline std::u32string Wide(std::string_view text) {
    std::u32string wide;
    for (char const byte : text) {
        auto const c = static_cast<unsigned char>(byte);
        if (c < 0x80) {
            wide += c;
        } else if (c >= 0xC0) {
            wide += c & (c < 0xE0 ? 0x1Fu : c < 0xF0 ? 0x0Fu : 0x07u);
        } else {
            wide.back() = wide.back() << 6 | (c & 0x3Fu);
        }
    }
    return wide;
}

inline std::string Narrow(std::u32string_view wide) {
    std::string text;
    for (char32_t const c : wide) {
        int const more = c < 0x80 ? 0 : c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
        constexpr unsigned leads[] = {0, 0xC0, 0xE0, 0xF0};
        text += static_cast<char>(leads[more] | c >> 6 * more);
        for (int i = more; i-- > 0;)
            text += static_cast<char>(0x80 | (c >> 6 * i & 0x3F));
    }
    return text;
}

class FakeEdit : public FakeWindowOf<CWnd>, public CTovInputControl, public CTovEditHost {
    TOV_DYNAMIC(FakeEdit, CWnd)
 public:
    using FakeWindowOf<CWnd>::FakeWindowOf;
    ~FakeEdit() override { UnhookControl(); }

    // What a user does.
    void Type(std::string_view keys) {
        for (char32_t character : Wide(keys)) {
            if (engine.OnChar(character) == 0 || GetReadOnlyMode() != 0) continue;
            std::u32string wide = Wide(text);
            auto const selected = static_cast<std::size_t>(end - start);
            if (wide.size() - selected >= limit) continue;
            wide.replace(static_cast<std::size_t>(start), selected, 1, character);
            start = end = start + 1;
            text = Narrow(wide);
            TellEditChanged(static_cast<unsigned>(GetDlgCtrlID()));
        }
    }
    int Key(int virtualKey, std::set<int> const& held = {}) {
        m_desk->keys = held;
        int const done = engine.OnKeyDown(virtualKey);
        m_desk->keys.clear();
        return done;
    }
    void SetWindowText(char const* words) override { SetEditText(words); }
    void Leave() { m_desk->MoveFocus({}); }

    CTovInputControl& InputControl() override { return *this; }
    CString GetEditText() override { return text; }
    void SetEditText(CString const& words) override {
        if (text == words) return;
        text = words;
        start = end = 0;
        if (IgnoreEditChanged() == 0) TellEditChanged(static_cast<unsigned>(GetDlgCtrlID()));
    }
    void GetEditSel(int& from, int& to) override { from = start, to = end; }
    void SetEditSel(int from, int to) override { start = from, end = to; }
    void LimitEditText(unsigned most) override { limit = most; }
    void ApplyReadOnly(int readOnly, int enabled) override {
        ModifyStyle(readOnly ? 0 : ES_READONLY, readOnly ? ES_READONLY : 0);
        ModifyStyle(enabled ? WS_DISABLED : 0, enabled ? 0 : WS_DISABLED);
    }
    void EnableCompanions(int enable) override { companionsEnabled = enable; }
    void TellEditChanged(unsigned id) override {
        ++told;
        OnEditChanged(id);
    }
    int ReadClipboard(CString& words) override { return words = clipboard, clipboardWorks; }
    int WriteClipboard(CString const& words) override {
        if (clipboardWorks) clipboard = words;
        return clipboardWorks;
    }
    void Beep() override { ++beeps; }

    CString GetRawString() override { return engine.GetRawString(); }
    int IsEmpty() override { return engine.IsEmpty(); }
    int SetReadOnlyMode(int readOnly) override { return engine.SetReadOnlyMode(readOnly); }
    int ResetAttributes() override { return engine.ResetAttributes(); }
    int GetMinWidth() const override { return engine.companions.MinWidth(); }
    CWnd* GetWnd() override { return this; }
    int SetString(CString const& words) override { return engine.SetString(words); }
    using CTovInputControl::SetString;
    eState OnValidate(CString* message) override {
        return CTovEditHost::InternalValidate(engine.GetRawString().c_str(), message);
    }
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_SETFOCUS) engine.OnSetFocus();
        if (message == WM_KILLFOCUS) engine.OnKillFocus();
        return FakeWindowOf<CWnd>::WindowProc(message, wParam, lParam);
    }

    std::string text;
    int start = 0;
    int end = 0;
    unsigned limit = tovNoMaxChars;
    CString clipboard;
    int clipboardWorks = 1;
    int beeps = 0;
    int told = 0;  // changes
    int companionsEnabled = -1;
    CTovEditText engine{*this};
};

using FakeIntegerEdit = CTovEditIntegerOn<FakeEdit>;
using FakeFloatingEdit = CTovEditFloatingOn<FakeEdit>;

// An edit that is born, in a form.
template <class Edit = FakeEdit>
struct EditInForm {
    FakeDesk desk;
    FakeWindow form{desk};
    Edit edit{desk, &form, 7};

    explicit EditInForm(unsigned long style = 0) {
        edit.ModifyStyle(0, style);
        edit.InitializeEdit();
    }
    ~EditInForm() { edit.UnhookControl(); }
    void Enter() { desk.MoveFocus(edit.GetSafeHwnd()); }
    void Leave() { desk.MoveFocus(form.GetSafeHwnd()); }
};

}  // namespace tov::test
