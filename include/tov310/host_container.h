// Dialogs, pages and forms that keep their OK true: it can be pressed as long as no field that must be filled
// is empty, in the host and in all that stands in it, and a click on it when it cannot shows what is missing.
//
// Hosts stand in one another: a dialog shows one of its child dialogs and any number of forms. Whatever asks
// for all fields asks the host's own first, then the child dialog that is shown, then the forms in the order
// of Tab; that a field was emptied or filled is told upwards to the host around.
#pragma once

#include <tov310/dialog_extensions.h>
#include <tov310/input_control_container.h>

#include <concepts>
#include <utility>

namespace tov {

class TOV_CORE_API CTovHostContainer : public CTovInputControlContainer {
 public:
    enum eKind { eKindDialog, eKindPage, eKindForm };

    // The window that it serves, and what it has as a host; a form has no extensions of a dialog. All are
    // commonly the object that it is a base of: borrowed, and they live as long.
    CTovHostContainer(eKind kind, CWnd* window, CTovOkHost* host, CTovDialogExtensions* extensions);
    ~CTovHostContainer() override;

    // Null where the window is none, and for null.
    static CTovHostContainer* Of(CWnd* window);

    // Whether all controls are guarded once the host stands (1, at first). A host that hooks them by itself
    // says 0 before.
    void SetHookAllAutomatically(int automatically) { m_hooksAll = automatically; }

    int FocusIsBlocked() override;
    CWnd* ValidateAllDlgCtrls(int ignoreEmpty, int command, unsigned long& data, CString& message) override;
    CWnd* GetFirstEmptyDlgItem(unsigned long& data) override;
    void OnDlgCtrlEmptyChanged(unsigned int id, int empty) override;
    int OnDlgItemGainFocus(HWND window) override;
    void OnShowValidationText(HWND window, unsigned int id, unsigned long data, CString* message) override;
    void OnHideValidationText() override;
    void OnEmptyFieldsChanged(int emptyFields) override;

    // A dialog and all dialogs and forms in it have one active container.
    CTovInputControlContainer* GetActiveContainer() override;
    void SetActiveContainer(CTovInputControlContainer* container) override;

 protected:
    // The user has pressed OK (1) or Apply (12321) while it is disabled. Here: the field that he is in is
    // checked and, if it is wrong, its words are shown beside it; else the first empty field is shown.
    virtual void OnDisabledOkButtonClicked(unsigned id);

    // Shows a tip with its left top corner at a point of the screen, and hides it.
    virtual void ShowHostTip(char const* text, int x, int y, unsigned milliseconds);
    virtual void HideHostTip();

    // Brings the host itself to the front before a field of it is shown: for a page among others.
    virtual void RevealHost() {}

    // The window around that is told of fields that were emptied or filled; 0 for none.
    virtual HWND GetWindowAbove() const;

    // Shows the text under a control for 3 seconds.
    void ShowTipUnder(CWnd& control, char const* text);

    // The steps of a host's life: OnInitDialog, the post after it, a switch of child dialogs, a message that
    // the window has dealt with.
    void BeginHost();
    void HostIsReady();
    void ChildDialogSwitched();
    void OnHostMessage(unsigned message, LPARAM lParam);

    // What OnEnableOkButton answers.
    int EnableOkOfHost(int quiet);

 private:
    template <class Ask>
    bool AskInner(Ask&& ask);
    CTovHostContainer* GetSafeCurrentChildTovDialogCV() const;
    CTovHostContainer* KeeperOfActive() const;
    unsigned DisabledOkAt(CPoint const& place) const;
    int ShowFirstEmpty();

    eKind const m_kind;
    CTovOkHost& m_host;
    CTovDialogExtensions* const m_extensions;  // null for a form
    int m_hooksAll = 1;
    int m_wasHooked = 0;
    int m_isReady = 0;
};

// A dialog or page with all that: Dialog is made of CTovDialogOf.
template <class Dialog, CTovHostContainer::eKind Kind = CTovHostContainer::eKindDialog>
class CTovDialogCVOf : public Dialog, public CTovHostContainer {
 public:
    template <class... Arguments>
    requires std::constructible_from<Dialog, Arguments...>
    explicit CTovDialogCVOf(Arguments&&... arguments)
        : Dialog(std::forward<Arguments>(arguments)...), CTovHostContainer(Kind, this, this, this) {}

    int OnEnableOkButton(int quiet) override { return EnableOkOfHost(quiet); }
    int SwitchChildDialog(unsigned key, int keyIsId) override {
        int const result = Dialog::SwitchChildDialog(key, keyIsId);
        ChildDialogSwitched();
        return result;
    }

 protected:
    int OnInitDialog() override {
        HWND const self = this->GetSafeHwnd();
        Dialog::OnInitDialog();
        if (IsWindow(self)) BeginHost();
        return 1;
    }
    void OnPostInitDialog() override {
        HWND const self = this->GetSafeHwnd();
        Dialog::OnPostInitDialog();
        if (IsWindow(self)) HostIsReady();
    }
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        HWND const self = this->GetSafeHwnd();
        LRESULT const result = Dialog::WindowProc(message, wParam, lParam);
        if (IsWindow(self)) OnHostMessage(message, lParam);
        return result;
    }
};

// A form with all that: Form is a view with CTovViewExtensions (view_extensions.h) and a CTovOkHost.
template <class Form>
class CTovFormViewCVOf : public Form, public CTovHostContainer {
 public:
    template <class... Arguments>
    requires std::constructible_from<Form, Arguments...>
    explicit CTovFormViewCVOf(Arguments&&... arguments)
        : Form(std::forward<Arguments>(arguments)...), CTovHostContainer(eKindForm, this, this, nullptr) {}

    int OnEnableOkButton(int quiet) override { return EnableOkOfHost(quiet); }

 protected:
    void OnInitialUpdate() override {
        HWND const self = this->GetSafeHwnd();
        Form::OnInitialUpdate();
        if (IsWindow(self)) BeginHost();
    }
    void OnPostInitialUpdate() override {
        HWND const self = this->GetSafeHwnd();
        Form::OnPostInitialUpdate();
        if (IsWindow(self)) HostIsReady();
    }
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        HWND const self = this->GetSafeHwnd();
        LRESULT const result = Form::WindowProc(message, wParam, lParam);
        if (IsWindow(self)) OnHostMessage(message, lParam);
        return result;
    }
    void ShowHostTip(char const* text, int x, int y, unsigned milliseconds) override {
        this->ShowToolTipLeftTop(text, x, y, milliseconds);
    }
    void HideHostTip() override { this->HideTooltip(); }
};

}  // namespace tov
