// The hooks that a container of input controls puts on its own window and on every window in it.
#pragma once

#include <tov310/hooks.h>
#include <tov310/input_control_container.h>

#include <memory>

namespace tov {

// In the place of what a control tells (WM_TOV_INPUT_CONTROL_EMPTY_CHANGED).
inline constexpr LPARAM checkAllFields = -1;

class CTovInputControlContainer::CTovSubclassContainer
    : public CTovSubclassWnd,
      public std::enable_shared_from_this<CTovSubclassContainer> {
 public:
    explicit CTovSubclassContainer(CTovInputControlContainer& container) : m_container(&container) {}
    void Leave();  // the container ends
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;

 private:
    CTovInputControlContainer* m_container;
};

// On one window in the container. Its owner lets go of it when the window dies or is unhooked, which may
// happen in the middle of a message; it keeps itself alive where it goes on after asking others.
class CTovInputControlContainer::CTovSubclassDlgItem
    : public CTovSubclassWnd,
      public std::enable_shared_from_this<CTovSubclassDlgItem> {
 public:
    // The window is the control, a direct child of the container, or stands in it.
    CTovSubclassDlgItem(CTovInputControlContainer& container, HWND window, HWND control);

    HWND Control() const { return m_hWndDlgCtrl; }

    // The container is done with it.
    void Leave();

    void OnDestroyWindow() override;
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;

 private:
    bool IsTabOfTheContainer(unsigned message, WPARAM wParam) const;

    // Has the container say whether this control may have the focus. False: the container is gone.
    bool AskForFocus();

    HWND const m_hWndDlgCtrl;
    int const m_nDlgCtrlID;
    CTovInputControlContainer* m_pContainer;  // null when it is done with this
    int m_bGainFocusResult = 1;               // what it said last
    CString const m_sDlgCtrlClass;
    CString const m_sWndClass;
};

}  // namespace tov
