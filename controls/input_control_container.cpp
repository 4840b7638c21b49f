#include <tov310/input_control_container.h>

#include "controls/input_control_items.h"
#include "frame/handle_of.h"
#include "frame/resource_module.h"
#include "vesk/immortal.h"

#include <tov310/input_control.h>
#include <tov310/messages.h>
#include <tov310/requirements.h>
#include <tov310/styles.h>
#include <tov310/system.h>

#include <algorithm>

namespace tov {
namespace {

constexpr unsigned textOfEmptyField = 26079;

// All that live, so that none is left pointing to one that is gone.
std::vector<CTovInputControlContainer*>& LivingContainers() {
    static Immortal<std::vector<CTovInputControlContainer*>> containers;
    return *containers;
}

unsigned IdOf(HWND control) {
    CWnd const* const window = CWnd::FromHandlePermanent(control);
    return window != nullptr ? static_cast<unsigned>(window->GetDlgCtrlID()) : 0;
}

bool CanTakeFocus(HWND control) {
    CWnd const* const window = CWnd::FromHandlePermanent(control);
    return window != nullptr && (window->GetStyle() & WS_DISABLED) == 0;
}

void GiveFocusTo(HWND control) {
    if (CWnd* const window = CWnd::FromHandlePermanent(control)) window->SetFocus();
}

// A form that hooks itself in its constructor is born by that. One that cannot be would take wrong input
// without a word.
HWND Born(CWnd* window) {
    HWND const handle = window != nullptr ? window->NeedHandle() : HWND{};
    if (!handle)
        TovReportFault("the window of a container of input controls is to be created before it is hooked");
    return handle;
}

}  // namespace

CTovInputControlContainer::CTovInputControlContainer(CWnd* window)
    : m_pWnd(window), m_SubclassContainer(std::make_shared<CTovSubclassContainer>(*this)) {
    LivingContainers().push_back(this);
}

CTovInputControlContainer::~CTovInputControlContainer() {
    UnhookAllDlgCtrls();
    m_SubclassContainer->Leave();
    std::erase(LivingContainers(), this);
    for (CTovInputControlContainer* const other : LivingContainers()) {
        if (other->m_pActiveContainer == this) other->m_pActiveContainer = nullptr;
    }
}

std::vector<HWND> CTovInputControlContainer::DirectChildren() const {
    return HandleOf(m_pWnd) ? m_pWnd->GetChildren() : std::vector<HWND>();
}

int CTovInputControlContainer::FocusIsBlocked() {
    return m_bFocusBlocked;
}

CWnd* CTovInputControlContainer::ValidateAllDlgCtrls(int ignoreEmpty, int, unsigned long& data,
                                                     CString& message) {
    std::vector<HWND> controls = DirectChildren();
    controls.insert(controls.begin(), m_hWndTopmostFocus);  // whose words win
    for (HWND const control : controls) {
        if (OnValidateDlgItem(ignoreEmpty, control, IdOf(control), data, &message) != 0) continue;
        // One that dies of the question fails no more.
        if (CWnd* const failing = CWnd::FromHandlePermanent(control)) return failing;
    }
    return nullptr;
}

CWnd* CTovInputControlContainer::GetFirstEmptyDlgItem(unsigned long& data) {
    for (HWND const child : DirectChildren()) {
        if (OnValidateEmptyDlgItem(child, IdOf(child), data) != 0) return CWnd::FromHandlePermanent(child);
    }
    return nullptr;
}

void CTovInputControlContainer::OnDlgCtrlEmptyChanged(unsigned int, int empty) {
    if (m_bIgnoreEmptyChanged != 0 || m_bDlgCtrlsHooked == 0) return;
    if ((empty != 0) == (m_bEmptyFields != 0)) {
        // One field more is empty, or one field of a form without empty ones is filled.
        return;
    }
    if (empty == 0) {
        unsigned long data = 0;
        if (GetFirstEmptyDlgItem(data) != nullptr) return;
    }
    m_bEmptyFields = empty != 0;
    OnEmptyFieldsChanged(m_bEmptyFields);
}

int CTovInputControlContainer::OnDlgItemGainFocus(HWND) {
    int const wasBlocked = m_bFocusBlocked;
    HWND const left = m_hWndTopmostFocus;
    // What cannot take the focus back would lock the user out of the whole form.
    if (CanTakeFocus(left)) {
        unsigned const id = IdOf(left);
        unsigned long data = 0;
        CString message;
        std::weak_ptr<void const> const life = m_life;
        int const isRight = OnValidateDlgItem(!m_bEmptyBlocksFocus, left, id, data, &message);
        if (life.expired()) return 0;
        if (isRight == 0) {
            SetActiveContainer(this);
            OnPrepareShowValidationText(left, id, data, &message);
            if (life.expired()) return 0;
            m_bFocusBlocked = 1;
            GiveFocusTo(left);
            if (life.expired()) return 0;
            OnShowValidationText(left, id, data, &message);
            if (!life.expired() && m_bFocusBlocked != wasBlocked) OnFocusBlockedChanged(m_bFocusBlocked);
            return 0;
        }
    }
    m_bFocusBlocked = 0;
    if (wasBlocked != 0) OnFocusBlockedChanged(0);
    return 1;
}

int CTovInputControlContainer::OnValidateDlgItem(int ignoreEmpty, HWND window, unsigned int,
                                                 unsigned long& data, CString* message) {
    data = 0;
    LRESULT const state =
        TovSendMessage(window, WM_TOV_INPUT_CONTROL_VALIDATE, reinterpret_cast<WPARAM>(message));
    if (state == CTovInputControl::eStateValid) return 1;
    if (state == CTovInputControl::eStateInvalid) return 0;
    if (ignoreEmpty != 0) return 1;
    if (message != nullptr) *message = LibraryString(textOfEmptyField);
    return 0;
}

int CTovInputControlContainer::OnValidateEmptyDlgItem(HWND window, unsigned int, unsigned long&) {
    return static_cast<int>(TovSendMessage(window, WM_TOV_INPUT_CONTROL_VALIDATE_EMPTY));
}

void CTovInputControlContainer::OnPrepareShowValidationText(HWND, unsigned int, unsigned long, CString*) {}

void CTovInputControlContainer::OnShowValidationText(HWND, unsigned int, unsigned long, CString*) {}

void CTovInputControlContainer::OnHideValidationText() {}

void CTovInputControlContainer::OnFocusBlockedChanged(int) {}

void CTovInputControlContainer::OnEmptyFieldsChanged(int) {}

int CTovInputControlContainer::OnNextDlgCtl(int) {
    return 0;
}

CTovInputControlContainer* CTovInputControlContainer::GetActiveContainer() {
    return m_pActiveContainer;
}

void CTovInputControlContainer::SetActiveContainer(CTovInputControlContainer* container) {
    m_pActiveContainer = container;
}

int CTovInputControlContainer::MakePushlikeIfNotStandardButton(HWND window) {
    CWnd* const button = CWnd::FromHandlePermanent(window);
    if (button == nullptr) return 0;
    constexpr int standard[] = {IDOK, IDCANCEL, ID_APPLY_NOW, ID_WIZBACK, ID_WIZNEXT, ID_WIZFINISH};
    if (std::ranges::find(standard, button->GetDlgCtrlID()) != std::end(standard)) return 0;
    if ((TovSendMessage(window, WM_GETDLGCODE) & DLGC_BUTTON) == 0) return 0;
    if ((button->GetStyle() & BS_TYPEMASK) != BS_PUSHBUTTON) return 0;
    button->ModifyStyle(BS_DEFPUSHBUTTON, BS_PUSHLIKE | BS_CHECKBOX);
    return 1;
}

void CTovInputControlContainer::HookContainer() {
    m_SubclassContainer->HookWindow(Born(m_pWnd));
}

void CTovInputControlContainer::HookAllDlgCtrls(CRuntimeClass const* exclude) {
    Born(m_pWnd);
    m_bDlgCtrlsHooked = 1;
    // Children are asked for first: a control of the toolkit's own is a window only then.
    std::vector<HWND> const children = DirectChildren();
    HWND const focus = TovGetFocus();
    std::vector<HWND> hookedBefore;
    for (auto const& item : m_DlgItems)
        hookedBefore.push_back(item->GetHookedWindow());
    for (HWND const child : children) {
        if (child == focus) m_hWndTopmostFocus = child;
        CWnd const* const window = CWnd::FromHandlePermanent(child);
        if (window == nullptr || (exclude != nullptr && window->IsKindOf(exclude))) continue;
        auto const pending = std::ranges::find(m_PendingChildren, child, &std::pair<HWND, HWND>::second);
        if (pending != m_PendingChildren.end()) {
            HWND const control = pending->first;
            m_PendingChildren.erase(pending);
            AddDlgCtrlChild(control, child);
            continue;
        }
        if (std::ranges::find(hookedBefore, child) != hookedBefore.end()) continue;
        HookDlgCtrlInternal(child);
    }
}

void CTovInputControlContainer::UnhookAllDlgCtrls() {
    for (auto const& item : std::exchange(m_DlgItems, {}))
        item->Leave();
    m_PendingChildren.clear();
    m_bDlgCtrlsHooked = 0;
}

void CTovInputControlContainer::HookDlgCtrl(HWND window) {
    if (m_bDlgCtrlsHooked == 0) return;
    DeleteDlgCtrlInternal(window);
    HookDlgCtrlInternal(window);
}

void CTovInputControlContainer::HookNewDlgCtrl(HWND window) {
    auto const isOnWindow = [window](auto const& item) { return item->GetHookedWindow() == window; };
    if (m_bDlgCtrlsHooked != 0 && IsWindow(window) && std::ranges::none_of(m_DlgItems, isOnWindow))
        HookDlgCtrlInternal(window);
}

void CTovInputControlContainer::UnhookDlgCtrl(HWND window) {
    DeleteDlgCtrlInternal(window);
}

void CTovInputControlContainer::AddDlgCtrlChild(HWND control, HWND child) {
    if (m_bDlgCtrlsHooked == 0) {
        std::pair const pair(control, child);
        if (std::ranges::find(m_PendingChildren, pair) == m_PendingChildren.end())
            m_PendingChildren.push_back(pair);
        return;
    }
    DeleteDlgCtrlInternal(child);
    auto const isOnControl = [control](auto const& item) { return item->GetHookedWindow() == control; };
    if (std::ranges::none_of(m_DlgItems, isOnControl)) return;
    AddItem(child, control);
    HookAllChildWindowsOfDlgCtrlInternal(child, control);
}

void CTovInputControlContainer::AddItem(HWND window, HWND control) {
    if (IsWindow(window)) m_DlgItems.push_back(std::make_shared<CTovSubclassDlgItem>(*this, window, control));
}

void CTovInputControlContainer::HookDlgCtrlInternal(HWND window) {
    MakePushlikeIfNotStandardButton(window);
    AddItem(window, window);
    HookAllChildWindowsOfDlgCtrlInternal(window, window);
}

void CTovInputControlContainer::HookAllChildWindowsOfDlgCtrlInternal(HWND parent, HWND control) {
    CWnd const* const window = CWnd::FromHandlePermanent(parent);
    if (window == nullptr) return;
    for (HWND const child : window->GetChildren()) {
        MakePushlikeIfNotStandardButton(child);
        AddItem(child, control);
        HookAllChildWindowsOfDlgCtrlInternal(child, control);
    }
}

void CTovInputControlContainer::DeleteDlgCtrlInternal(HWND control) {
    // Taken out before they are let go of: a hook may be in the middle of a message.
    auto const rest =
        std::stable_partition(m_DlgItems.begin(), m_DlgItems.end(),
                              [control](auto const& item) { return item->Control() != control; });
    std::vector const gone(rest, m_DlgItems.end());
    m_DlgItems.erase(rest, m_DlgItems.end());
    for (auto const& item : gone)
        item->Leave();
}

void CTovInputControlContainer::OnSubclassDlgItemDestroyWindow(CTovSubclassDlgItem const& item) {
    std::erase_if(m_DlgItems, [&item](auto const& owned) { return owned.get() == &item; });
    CheckEmptyFieldsSoon();
}

void CTovInputControlContainer::CheckEmptyFieldsSoon() {
    HWND const self = HandleOf(m_pWnd);
    if (m_bDlgCtrlsHooked == 0 || self == m_checksSoon) return;
    if (TovPostMessage(self, WM_TOV_INPUT_CONTROL_EMPTY_CHANGED, 0, checkAllFields) != 0) m_checksSoon = self;
}

void CTovInputControlContainer::CheckEmptyFields() {
    m_checksSoon = {};
    unsigned long data = 0;
    std::weak_ptr<void const> const life = m_life;
    int const emptyFields = GetFirstEmptyDlgItem(data) != nullptr;
    if (!life.expired() && emptyFields != m_bEmptyFields) OnDlgCtrlEmptyChanged(0, emptyFields);
}

int CTovInputControlContainer::ValidateCommand(int command) {
    unsigned long data = 0;
    CString message;
    CWnd* const failing = ValidateAllDlgCtrls(0, command, data, message);
    if (failing == nullptr) return 1;
    HWND const window = failing->GetSafeHwnd();
    unsigned const id = IdOf(window);
    std::weak_ptr<void const> const life = m_life;
    OnPrepareShowValidationText(window, id, data, &message);
    GiveFocusTo(window);
    if (!life.expired()) OnShowValidationText(window, id, data, &message);
    return 0;
}

LRESULT CTovInputControlContainer::PaintTransparent(LRESULT result) {
    if (TovIsComCtlXP() == 0) return result;
    std::vector<HWND> windows;
    for (auto const& item : m_DlgItems)
        windows.push_back(item->GetHookedWindow());
    for (HWND const handle : windows) {
        CWnd* const window = CWnd::FromHandlePermanent(handle);
        if (window != nullptr && (window->GetExStyle() & WS_EX_TRANSPARENT) != 0 &&
            (window->GetStyle() & 7) != 0)
            window->RedrawWindow(RDW_INVALIDATE | RDW_NOERASE | RDW_UPDATENOW);
    }
    return result;
}

bool CTovInputControlContainer::LetCommandPass(WPARAM wParam, LPARAM lParam) {
    auto const id = static_cast<int>(wParam & 0xFFFF);
    auto const code = static_cast<unsigned>(wParam >> 16 & 0xFFFF);
    HWND const sender{static_cast<std::uint64_t>(lParam)};
    std::weak_ptr<void const> const life = m_life;
    if (code == EN_CHANGE || code == CBN_SELCHANGE || code == CBN_EDITCHANGE) {
        // The focus of a compound control is on a window in it.
        HWND const focus = TovGetFocus();
        CWnd const* const control = CWnd::FromHandlePermanent(sender);
        if (control != nullptr && (focus == sender || control->IsChild(focus) != 0)) OnHideValidationText();
    }
    if (life.expired() || m_bIsFileDialog != 0) return true;
    bool const needsAll = id == IDOK || id == ID_APPLY_NOW || id == ID_WIZFINISH || id == ID_WIZNEXT;
    return !needsAll || ValidateCommand(id) != 0;
}

}  // namespace tov
