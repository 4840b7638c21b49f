// The window around input controls: the focus cannot leave a control whose content is wrong. A container is a
// dialog, form or page plus this mix-in; it hooks every window that stands in it.
//
// The control that is left is asked before another gets the focus. If it is wrong, the focus goes back to it,
// the press that wanted to move it reaches nobody, and OnShowValidationText is called with the control's own
// words. Cancel is never blocked; OK, Apply, Next and Finish ask all controls and are swallowed while one of
// them fails. CTovDialogCV (tov_dialog.h) does all that follows by itself.
//
//   class NewPoint : public tov::CTovDialog, public tov::CTovInputControlContainer {
//    public:
//       explicit NewPoint(QWidget* parent) : CTovDialog(parent), CTovInputControlContainer(this) { ... }
//    protected:
//       int OnInitDialog() override {  // all controls stand
//           HookContainer();
//           HookAllDlgCtrls(nullptr);
//           return 1;
//       }
//       void OnShowValidationText(tov::HWND window, unsigned id, unsigned long data,
//                                 tov::CString* message) override;  // shows the words, in a tool tip say
//   };
#pragma once

#include <tov310/export.h>
#include <tov310/types.h>
#include <tov310/window.h>

#include <memory>
#include <utility>
#include <vector>

namespace tov {

class TOV_CORE_API CTovInputControlContainer {
 public:
    // The window that it serves, commonly the object that it is a base of. Borrowed, and it lives as long.
    explicit CTovInputControlContainer(CWnd* window);
    CTovInputControlContainer(CTovInputControlContainer const&) = delete;
    CTovInputControlContainer& operator=(CTovInputControlContainer const&) = delete;
    virtual ~CTovInputControlContainer();  // unhooks all

    // Whether the last change of the focus was refused.
    virtual int FocusIsBlocked();

    // Asks all controls, first the one with the focus, then the direct children in their order. Null: all are
    // right. Otherwise the first one that is not, and its words. `command` is the command that wants to know,
    // 0 for none; `data` is what OnValidateDlgItem makes of it, 0 here.
    virtual CWnd* ValidateAllDlgCtrls(int ignoreEmpty, int command, unsigned long& data, CString& message);

    // Asks all controls for a command, as OK does; a failing one gets the focus and its words are shown. 1:
    // all are right. A window that is not the library's asks it where it accepts
    // what was typed (IDOK), applies it (ID_APPLY_NOW) or turns to the next page (ID_WIZNEXT):
    //
    //   MyDialog::MyDialog() : CTovInputControlContainer(tov::TovWnd(this)) { ... }
    //   void MyDialog::accept() { if (ValidateCommand(tov::IDOK)) QDialog::accept(); }
    int ValidateCommand(int command);

    // The first control that is wrongly empty; null for none.
    virtual CWnd* GetFirstEmptyDlgItem(unsigned long& data);

    // A control has become wrongly empty, or is so no longer. Keeps the flag of empty fields.
    virtual void OnDlgCtrlEmptyChanged(unsigned int id, int empty);

    // Asked before a control (a direct child) gets the focus; what is checked is the one that is left, unless
    // it is disabled and so cannot take the focus back. 0: the focus was given back.
    virtual int OnDlgItemGainFocus(HWND window);

    // Asks one control. 1: it is right, or empty and that is to be ignored; 0: it is not, and `message` (may
    // be null) has the words.
    virtual int OnValidateDlgItem(int ignoreEmpty, HWND window, unsigned int id, unsigned long& data,
                                  CString* message);

    // Asks one control whether it is wrongly empty.
    virtual int OnValidateEmptyDlgItem(HWND window, unsigned int id, unsigned long& data);

    // Hosts show the words beside the control: the first call comes before the focus goes back, the second
    // after it.
    virtual void OnPrepareShowValidationText(HWND window, unsigned int id, unsigned long data,
                                             CString* message);
    virtual void OnShowValidationText(HWND window, unsigned int id, unsigned long data, CString* message);
    virtual void OnHideValidationText();
    virtual void OnFocusBlockedChanged(int blocked);
    virtual void OnEmptyFieldsChanged(int emptyFields);

    // Tab, forward or backward. Not 0: the container has dealt with it.
    virtual int OnNextDlgCtl(int previous);

    // In a tree of containers: the one that the user works in. Not owned; null once it is gone.
    virtual CTovInputControlContainer* GetActiveContainer();
    virtual void SetActiveContainer(CTovInputControlContainer* container);

    // The direct child that holds the focus as far as the container knows.
    HWND GetWndTopmostFocus() const { return m_hWndTopmostFocus; }
    void SetWndTopmostFocus(HWND window) { m_hWndTopmostFocus = window; }

    // For applications: an empty control, too, holds the focus (off); what controls tell of emptiness is
    // dropped (off).
    void SetEmptyBlocksFocus(int blocks) { m_bEmptyBlocksFocus = blocks; }
    void SetIgnoreEmptyChanged(int ignore) { m_bIgnoreEmptyChanged = ignore; }

    // Has Tab in a child ask OnNextDlgCtl; for editors in cells.
    void SetHandleTabKey(int handle) { m_bHandleTabKey = handle; }

    // A push button that is none of OK, Cancel, Apply, Back, Next and Finish becomes one that cannot be the
    // default button, so that a click on it does not change which button Enter presses. 1 when it did.
    static int MakePushlikeIfNotStandardButton(HWND window);

 protected:
    // Hooks the container's own window, which is born by that where it is a widget's. A window that has ended
    // and is born again is hooked anew, as it is in the OnInitDialog of a dialog.
    void HookContainer();

    // Hooks all that stand in it now, but not direct children of the excluded class; a second call hooks what
    // is new.
    void HookAllDlgCtrls(CRuntimeClass const* exclude);
    void UnhookAllDlgCtrls();

    // One direct child with all that stands in it, once HookAllDlgCtrls has run.
    void HookDlgCtrl(HWND window);
    void UnhookDlgCtrl(HWND window);

    // The same unless it is hooked already.
    void HookNewDlgCtrl(HWND window);

    // A window that came into a control; remembered until HookAllDlgCtrls runs.
    void AddDlgCtrlChild(HWND control, HWND child);

    int GetEmptyFields() const { return m_bEmptyFields; }
    void SetEmptyFields(int emptyFields) { m_bEmptyFields = emptyFields; }

    // A control has gone, or is shown or hidden by whatever stands around it: asks all soon (by a post)
    // whether one is wrongly empty.
    void CheckEmptyFieldsSoon();

    // The window is a file dialog, which asks for the validation itself.
    void SetIsFileDialog(int isFileDialog) { m_bIsFileDialog = isFileDialog; }

    CWnd* GetContainerWnd() const { return m_pWnd; }

 private:
    class CTovSubclassContainer;
    class CTovSubclassDlgItem;

    void HookDlgCtrlInternal(HWND window);
    void HookAllChildWindowsOfDlgCtrlInternal(HWND parent, HWND control);
    void DeleteDlgCtrlInternal(HWND control);
    void OnSubclassDlgItemDestroyWindow(CTovSubclassDlgItem const& item);
    void AddItem(HWND window, HWND control);
    std::vector<HWND> DirectChildren() const;

    LRESULT PaintTransparent(LRESULT result);
    bool LetCommandPass(WPARAM wParam, LPARAM lParam);
    void CheckEmptyFields();

    CWnd* const m_pWnd;
    std::shared_ptr<void const> m_life = std::make_shared<char>();  // asked for after calls to the host
    int m_bIsFileDialog = 0;
    HWND m_hWndTopmostFocus;
    int m_bFocusBlocked = 0;
    int m_bDlgCtrlsHooked = 0;
    int m_bIgnoreEmptyChanged = 0;
    int m_bEmptyFields = 0;
    HWND m_checksSoon;  // the window that the post is on its way to
    int m_bHandleTabKey = 0;
    int m_bEmptyBlocksFocus = 0;
    CTovInputControlContainer* m_pActiveContainer = nullptr;
    std::shared_ptr<CTovSubclassContainer> m_SubclassContainer;
    std::vector<std::shared_ptr<CTovSubclassDlgItem>> m_DlgItems;
    std::vector<std::pair<HWND, HWND>> m_PendingChildren;  // control and child
};

}  // namespace tov
