#include "controls/input_control_items.h"

#include <tov310/messages.h>
#include <tov310/styles.h>
#include <tov310/system.h>

namespace tov {
namespace {

int ControlIdOf(HWND window) {
    CWnd const* const wnd = CWnd::FromHandlePermanent(window);
    return wnd != nullptr ? wnd->GetDlgCtrlID() : -1;
}

CString ClassNameOf(HWND window) {
    CWnd const* const wnd = CWnd::FromHandlePermanent(window);
    return wnd != nullptr ? wnd->GetClassName() : CString();
}

}  // namespace

void CTovInputControlContainer::CTovSubclassContainer::Leave() {
    m_container = nullptr;
    UnhookWindow();
}

LRESULT CTovInputControlContainer::CTovSubclassContainer::WindowProc(unsigned message, WPARAM wParam,
                                                                     LPARAM lParam) {
    if (m_container == nullptr) return CTovSubclassWnd::WindowProc(message, wParam, lParam);
    // The host is asked below and may have the container end.
    std::shared_ptr<CTovSubclassContainer> const keep = shared_from_this();
    HWND const other{static_cast<std::uint64_t>(lParam)};
    switch (message) {
        case WM_TOV_INPUT_CONTROL_EMPTY_CHANGED:
            if (lParam == checkAllFields)
                m_container->CheckEmptyFields();
            else
                m_container->OnDlgCtrlEmptyChanged(static_cast<unsigned>(wParam), static_cast<int>(lParam));
            return 0;
        case WM_TOV_INPUT_CONTROL_CHILD_ADDED:
            m_container->AddDlgCtrlChild(HWND{wParam}, other);
            return 0;
        case WM_TOV_INPUT_CONTROL_HOOK_DLG_CTRL:
            m_container->HookDlgCtrl(other);
            return 0;
        case WM_TOV_INPUT_CONTROL_UNHOOK_DLG_CTRL:
            m_container->DeleteDlgCtrlInternal(other);
            return 0;
        case WM_PAINT: {
            HWND const self = GetHookedWindow();
            LRESULT const result = CTovSubclassWnd::WindowProc(message, wParam, lParam);
            return IsWindow(self) && m_container != nullptr ? m_container->PaintTransparent(result) : result;
        }
        case WM_MOUSEACTIVATE:
            // The focus would come to the ground of the form; a press without the focus is none of its
            // business.
            if (lParam == 0 && m_container->OnDlgItemGainFocus({}) == 0) return 0;
            break;
        case WM_NEXTDLGCTL:
            if (m_container->OnNextDlgCtl(static_cast<int>(wParam)) != 0) return 0;
            break;
        case WM_COMMAND:
            if (!m_container->LetCommandPass(wParam, lParam)) return 0;
            break;
        default:
            break;
    }
    return CTovSubclassWnd::WindowProc(message, wParam, lParam);
}

CTovInputControlContainer::CTovSubclassDlgItem::CTovSubclassDlgItem(CTovInputControlContainer& container,
                                                                    HWND window, HWND control)
    : m_hWndDlgCtrl(control),
      m_nDlgCtrlID(ControlIdOf(control)),
      m_pContainer(&container),
      m_sDlgCtrlClass(ClassNameOf(control)),
      m_sWndClass(ClassNameOf(window)) {
    HookWindow(window);
}

void CTovInputControlContainer::CTovSubclassDlgItem::Leave() {
    m_pContainer = nullptr;
    UnhookWindow();
}

void CTovInputControlContainer::CTovSubclassDlgItem::OnDestroyWindow() {
    CTovInputControlContainer* const container = m_pContainer;
    Leave();
    if (container != nullptr) container->OnSubclassDlgItemDestroyWindow(*this);
}

bool CTovInputControlContainer::CTovSubclassDlgItem::IsTabOfTheContainer(unsigned message,
                                                                         WPARAM wParam) const {
    if (m_pContainer->m_bHandleTabKey == 0 || message != WM_KEYDOWN || wParam != VK_TAB) return false;
    return GetHookedWindow() == m_hWndDlgCtrl || m_sWndClass != "Edit" || m_sDlgCtrlClass == "ComboBox";
}

bool CTovInputControlContainer::CTovSubclassDlgItem::AskForFocus() {
    int const answer = m_pContainer->OnDlgItemGainFocus(m_hWndDlgCtrl);
    m_bGainFocusResult = answer;
    return m_pContainer != nullptr;
}

LRESULT CTovInputControlContainer::CTovSubclassDlgItem::WindowProc(unsigned message, WPARAM wParam,
                                                                   LPARAM lParam) {
    if (m_pContainer == nullptr) return CTovSubclassWnd::WindowProc(message, wParam, lParam);
    // Others are asked below, and any of them may have this hook or the container end.
    std::shared_ptr<CTovSubclassDlgItem> const keep = shared_from_this();
    if (message == WM_SHOWWINDOW) m_pContainer->CheckEmptyFieldsSoon();
    if (m_nDlgCtrlID == IDCANCEL) {
        if (message == WM_SETFOCUS) {
            if (CTovInputControlContainer* const active = m_pContainer->GetActiveContainer())
                active->OnHideValidationText();
            if (m_pContainer != nullptr) m_pContainer->SetActiveContainer(m_pContainer);
        }
        return CTovSubclassWnd::WindowProc(message, wParam, lParam);
    }
    if (IsTabOfTheContainer(message, wParam)) {
        if (m_pContainer->OnNextDlgCtl(TovGetSystem()->IsKeyDown(VK_SHIFT) != 0) != 0) return 0;
        if (m_pContainer == nullptr) return CTovSubclassWnd::WindowProc(message, wParam, lParam);
    }
    bool const isActive = m_pContainer->GetActiveContainer() == m_pContainer;
    bool const hasFocus = m_pContainer->m_hWndTopmostFocus == m_hWndDlgCtrl;
    if (isActive && hasFocus) return CTovSubclassWnd::WindowProc(message, wParam, lParam);
    switch (message) {
        case WM_SETFOCUS:
            if (hasFocus) {
                m_bGainFocusResult = 1;
            } else {
                bool const goesOn = AskForFocus();
                if (m_bGainFocusResult == 0) return 0;
                if (!goesOn) break;
            }
            m_pContainer->SetActiveContainer(m_pContainer);
            if (m_pContainer != nullptr) m_pContainer->m_hWndTopmostFocus = m_hWndDlgCtrl;
            break;
        case WM_KILLFOCUS:
        case WM_LBUTTONDOWN:
        case WM_LBUTTONUP:
        case WM_LBUTTONDBLCLK:
        case WM_RBUTTONDOWN:
        case WM_RBUTTONUP:
        case WM_RBUTTONDBLCLK:
            if (m_bGainFocusResult == 0) return 0;
            break;
        case WM_MOUSEACTIVATE:
            AskForFocus();
            if (m_bGainFocusResult == 0) return 0;
            break;
        case WM_NOTIFY:
            if (auto const* const header = reinterpret_cast<NMHDR const*>(lParam);
                header != nullptr && header->code == CDN_FILEOK && !m_pContainer->ValidateCommand(IDOK))
                return 0;
            break;
        case BM_SETSTYLE:
            if (m_pContainer->FocusIsBlocked() != 0) return 0;
            break;
        default:
            break;
    }
    return CTovSubclassWnd::WindowProc(message, wParam, lParam);
}

}  // namespace tov
