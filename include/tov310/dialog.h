// Dialogs, as far as they can be told without a toolkit: their commands and their end.
#pragma once

#include <tov310/window.h>

namespace tov {

struct CTovDialogTemplate;

// Buttons that dialogs, sheets and wizards know.
inline constexpr int IDOK = 1;
inline constexpr int IDCANCEL = 2;
inline constexpr int IDHELP = 9;
inline constexpr int ID_APPLY_NOW = 12321;
inline constexpr int ID_WIZBACK = 12323;
inline constexpr int ID_WIZNEXT = 12324;
inline constexpr int ID_WIZFINISH = 12325;

// A window of controls that ends with a number. Every way to press OK, be it the button, Enter or code, is
// the command IDOK, and the dialog ends where that reaches OnOK; with Cancel, Escape and the closing of the
// window it is the same by IDCANCEL and OnCancel.
class TOV_CORE_API CDialog : public CWnd {
    TOV_DYNCREATE(CDialog, CWnd)
 public:
    CDialog() = default;

    // Shows it, and answers what it ends with once it has ended; meanwhile the windows around it take
    // nothing. -1 where it cannot be shown.
    virtual int DoModal() { return -1; }

    // Makes its window and its controls, not modally: within the parent where the template's style is that of
    // a child, else above it. Answers 1, or 0: it has a window already, there is a control of an unknown
    // class, or no screen.
    virtual int CreateIndirect(CTovDialogTemplate const& /*dialog*/, CWnd* /*parent*/) { return 0; }

    // Ends it with a number. The object stays.
    virtual void EndDialog(int /*result*/) {}

    // The window that it stands in or, on the screen by itself, belongs to; null for none.
    virtual CWnd* GetOwner() const { return GetParent(); }

    int OnCommand(WPARAM wParam, LPARAM lParam) override;

    // Commands from 0x8000 on that the dialog has no handler for go to the window it stands in or belongs to,
    // then to the application; the smaller numbers are its own controls'.
    int OnCmdMsg(unsigned id, int code, void* extra, CTovCommandInfo* info) override;

    // To be called when all controls stand: has OnInitDialog called, and answers what that answers.
    int InitDialog();

 protected:
    // All controls stand, and the dialog is not shown yet. 0: the host has given the focus to a control by
    // itself.
    virtual int OnInitDialog() { return 1; }

    virtual void OnOK() { EndDialog(IDOK); }
    virtual void OnCancel() { EndDialog(IDCANCEL); }

    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;
};

// A number that no window directly in this one has.
TOV_CORE_API unsigned TovFindFreeDlgItemId(CWnd const& window);

}  // namespace tov
