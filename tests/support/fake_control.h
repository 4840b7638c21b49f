// An input control and a button without a screen.
#pragma once

#include "support/fake_window.h"

#include <tov310/input_control.h>

namespace tov::test {

// Its content is right as long as it is not the word "wrong".
struct FakeControl : FakeWindow, CTovInputControl {
    FakeControl(FakeDesk& desk, CWnd& around, int id) : FakeWindow(desk, &around, id) {
        className = "Edit";
        HookControl();
    }
    int IsEmpty() override { return content.empty(); }
    CString GetString() override { return content; }
    using CTovInputControl::operator=;
    using CTovInputControl::SetString;
    int SetString(CString const& text) override {
        CTovNotifyEmptyChanged const scope(*this);
        content = text;
        return 1;
    }
    int SetReadOnlyMode(int readOnly) override { return CTovInputControl::SetReadOnlyMode(readOnly); }
    eState OnValidate(CString* message) override {
        if (OnValidateEmpty() != 0) return eStateEmpty;
        if (content != "wrong") return eStateValid;
        if (message != nullptr) message->assign("it is ").append(content);
        return eStateInvalid;
    }
    CWnd* GetWnd() override { return this; }
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_LBUTTONDOWN) SetFocus();
        return FakeWindow::WindowProc(message, wParam, lParam);
    }
    // As if the user typed it.
    void Type(char const* text) {
        SetString(text);
        if (CWnd const* const container = GetContainer())
            TovSendMessage(container->GetSafeHwnd(), WM_COMMAND,
                           EN_CHANGE << 16 | static_cast<unsigned>(GetDlgCtrlID()),
                           static_cast<LPARAM>(GetSafeHwnd().id));
    }
    CString content = "right";
};

// A button that sends its command where it is pressed.
struct FakeButton : FakeWindow {
    FakeButton(FakeDesk& desk, CWnd& around, int id) : FakeWindow(desk, &around, id) {
        className = "Button";
        dialogCode = DLGC_BUTTON;
    }
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_LBUTTONDOWN) SetFocus();
        if (message == WM_LBUTTONUP)
            TovSendMessage(GetParent()->GetSafeHwnd(), WM_COMMAND, static_cast<WPARAM>(GetDlgCtrlID()));
        return FakeWindow::WindowProc(message, wParam, lParam);
    }
};

}  // namespace tov::test
