#include <tov310/host_container.h>

#include "frame/handle_of.h"
#include "frame/resource_module.h"

#include <tov310/input_control.h>
#include <tov310/messages.h>
#include <tov310/styles.h>

#include <initializer_list>

namespace tov {
namespace {

constexpr unsigned wordsOfEmptyField = 26079;
constexpr unsigned millisecondsOfTip = 3000;

}  // namespace

CTovHostContainer::CTovHostContainer(eKind kind, CWnd* window, CTovOkHost* host,
                                     CTovDialogExtensions* extensions)
    : CTovInputControlContainer(window), m_kind(kind), m_host(*host), m_extensions(extensions) {}

CTovHostContainer::~CTovHostContainer() = default;

CTovHostContainer* CTovHostContainer::Of(CWnd* window) {
    return dynamic_cast<CTovHostContainer*>(window);
}

CTovHostContainer* CTovHostContainer::GetSafeCurrentChildTovDialogCV() const {
    if (m_extensions == nullptr || m_extensions->PlaceholderId() == CTovDialogExtensions::none)
        return nullptr;
    return Of(m_extensions->CurrentChildDialog());
}

// Calls ask(container) for the child dialog that is shown and then for the forms, until it answers true.
template <class Ask>
bool CTovHostContainer::AskInner(Ask&& ask) {
    if (m_extensions == nullptr) return false;
    HWND const self = HandleOf(GetContainerWnd());
    if (CTovHostContainer* const child = GetSafeCurrentChildTovDialogCV(); child != nullptr && ask(*child))
        return true;
    if (!IsWindow(self)) return false;
    for (HWND const handle : GetContainerWnd()->GetChildren()) {
        CTovHostContainer* const form = Of(CWnd::FromHandlePermanent(handle));
        if (form != nullptr && form->m_kind == eKindForm && ask(*form)) return true;
        if (!IsWindow(self)) return false;
    }
    return false;
}

int CTovHostContainer::FocusIsBlocked() {
    if (!HandleOf(GetContainerWnd())) return 0;
    if (CTovInputControlContainer::FocusIsBlocked() != 0) return 1;
    return AskInner([](CTovHostContainer& inner) { return inner.FocusIsBlocked() != 0; });
}

CWnd* CTovHostContainer::ValidateAllDlgCtrls(int ignoreEmpty, int command, unsigned long& data,
                                             CString& message) {
    HWND const self = HandleOf(GetContainerWnd());
    CWnd* failing = CTovInputControlContainer::ValidateAllDlgCtrls(ignoreEmpty, command, data, message);
    if (failing != nullptr || !IsWindow(self)) return failing;
    AskInner([&](CTovHostContainer& inner) {
        failing = inner.ValidateAllDlgCtrls(ignoreEmpty, command, data, message);
        return failing != nullptr;
    });
    return failing;
}

CWnd* CTovHostContainer::GetFirstEmptyDlgItem(unsigned long& data) {
    CWnd* empty = CTovInputControlContainer::GetFirstEmptyDlgItem(data);
    if (empty != nullptr) return empty;
    AskInner([&](CTovHostContainer& inner) {
        empty = inner.GetFirstEmptyDlgItem(data);
        return empty != nullptr;
    });
    return empty;
}

int CTovHostContainer::OnDlgItemGainFocus(HWND window) {
    HWND const self = HandleOf(GetContainerWnd());
    if (CTovInputControlContainer::OnDlgItemGainFocus(window) == 0) return 0;
    if (!IsWindow(self)) return 0;
    // What the focus goes into has a guard of its own, which knows the control within.
    return !AskInner([window](CTovHostContainer& inner) {
        return HandleOf(inner.GetContainerWnd()) != window && inner.OnDlgItemGainFocus(window) == 0;
    });
}

HWND CTovHostContainer::GetWindowAbove() const {
    CWnd const* const window = GetContainerWnd();
    bool const isInside = m_kind == eKindForm ? (window->GetStyle() & WS_CHILD) != 0
                                              : m_extensions != nullptr && m_extensions->IsChildDialog() != 0;
    return isInside ? HandleOf(window->GetParent()) : HWND{};
}

void CTovHostContainer::OnDlgCtrlEmptyChanged(unsigned int id, int empty) {
    HWND const self = HandleOf(GetContainerWnd());
    unsigned long data = 0;
    // It may be one that has come since.
    if (m_isReady != 0 && m_hooksAll != 0)
        HookNewDlgCtrl(GetContainerWnd()->GetDlgItem(static_cast<int>(id)));
    // One that nobody would be led to, such as a field of a child dialog that is not shown, does not count.
    int const counts = empty != 0 && GetFirstEmptyDlgItem(data) != nullptr;
    CTovInputControlContainer::OnDlgCtrlEmptyChanged(id, counts);
    if (!IsWindow(self)) return;
    if (HWND const above = GetWindowAbove())
        TovSendMessage(above, WM_TOV_INPUT_CONTROL_EMPTY_CHANGED, id, empty);
}

void CTovHostContainer::OnEmptyFieldsChanged(int) {
    m_host.EnableOkButton();
}

// ------------------------------------------------------------------------------------- active container

CTovHostContainer* CTovHostContainer::KeeperOfActive() const {
    CWnd const* const window = GetContainerWnd();
    bool const isInside =
        m_kind == eKindForm || (m_kind == eKindDialog && m_extensions->IsChildDialog() != 0);
    CTovHostContainer* const around = isInside ? Of(window->GetParent()) : nullptr;
    return around != nullptr && around->m_kind == eKindDialog ? around : nullptr;
}

CTovInputControlContainer* CTovHostContainer::GetActiveContainer() {
    CTovHostContainer* const keeper = KeeperOfActive();
    return keeper != nullptr ? keeper->GetActiveContainer() : CTovInputControlContainer::GetActiveContainer();
}

void CTovHostContainer::SetActiveContainer(CTovInputControlContainer* container) {
    if (CTovHostContainer* const keeper = KeeperOfActive())
        keeper->SetActiveContainer(container);
    else
        CTovInputControlContainer::SetActiveContainer(container);
}

// ------------------------------------------------------------------------------------------------ words

void CTovHostContainer::ShowHostTip(char const* text, int x, int y, unsigned milliseconds) {
    if (m_extensions != nullptr) m_extensions->ShowToolTipLeftTop(text, x, y, milliseconds);
}

void CTovHostContainer::HideHostTip() {
    if (m_extensions != nullptr) m_extensions->HideTooltip();
}

void CTovHostContainer::ShowTipUnder(CWnd& control, char const* text) {
    CRect const rect = control.GetWindowRect();
    ShowHostTip(text, rect.left, rect.bottom, millisecondsOfTip);
}

void CTovHostContainer::OnShowValidationText(HWND window, unsigned int, unsigned long, CString* message) {
    CWnd* const control = CWnd::FromHandlePermanent(window);
    if (control != nullptr && message != nullptr) ShowTipUnder(*control, message->c_str());
}

// The words may have been shown by the host around, on its way through all that stands in it.
void CTovHostContainer::OnHideValidationText() {
    HideHostTip();
    if (CTovHostContainer* const above = Of(CWnd::FromHandlePermanent(GetWindowAbove())))
        above->OnHideValidationText();
}

// --------------------------------------------------------------------------------------------------- OK

void CTovHostContainer::BeginHost() {
    if (m_wasHooked != 0) UnhookAllDlgCtrls();
    m_wasHooked = 1;
    m_isReady = 0;
    HookContainer();
}

void CTovHostContainer::HostIsReady() {
    if (m_hooksAll != 0) HookAllDlgCtrls(nullptr);
    unsigned long data = 0;
    m_isReady = 1;
    SetEmptyFields(GetFirstEmptyDlgItem(data) != nullptr);
    HWND const self = HandleOf(GetContainerWnd());
    // A form stands later than the host around it, which has heard of none of its fields so far.
    HWND const above = m_kind == eKindForm ? GetWindowAbove() : HWND{};
    if (above)
        TovSendMessage(above, WM_TOV_INPUT_CONTROL_EMPTY_CHANGED, 0, static_cast<LPARAM>(GetEmptyFields()));
    if (!IsWindow(self)) return;
    // Of a page its sheet does it, if that guards its pages.
    if (m_kind != eKindPage || !GetWindowAbove()) m_host.EnableOkButton();
}

void CTovHostContainer::ChildDialogSwitched() {
    unsigned long data = 0;
    CWnd const* const empty = GetFirstEmptyDlgItem(data);
    if ((empty != nullptr) != (GetEmptyFields() != 0)) {
        unsigned const id = empty != nullptr ? static_cast<unsigned>(empty->GetDlgCtrlID()) : 0;
        OnDlgCtrlEmptyChanged(id, empty != nullptr);
    } else if (m_isReady != 0) {
        m_host.EnableOkButton();  // the other one may have a say of its own
    }
}

// Answers 0, or 1 where there is none.
int CTovHostContainer::ShowFirstEmpty() {
    HWND const self = HandleOf(GetContainerWnd());
    unsigned long data = 0;
    CWnd* const empty = GetFirstEmptyDlgItem(data);
    if (empty == nullptr) return 1;
    HWND const handle = HandleOf(empty);
    RevealHost();
    if (CWnd* const control = CWnd::FromHandlePermanent(handle)) control->SetFocus();
    if (!IsWindow(self)) return 0;
    CWnd* const control = CWnd::FromHandlePermanent(handle);
    // A wrong field that has kept the focus tells of itself.
    if (control != nullptr && FocusIsBlocked() == 0)
        ShowTipUnder(*control, LibraryString(wordsOfEmptyField).c_str());
    return 0;
}

int CTovHostContainer::EnableOkOfHost(int quiet) {
    if (GetEmptyFields() != 0) {
        if (quiet != 0 || ShowFirstEmpty() == 0) return 0;
        // The last one has gone without a word.
        SetEmptyFields(0);
        m_host.EnableOkButton();
    }
    if (m_extensions == nullptr) return 1;
    int const isAllowed = m_extensions->OnChildDialogEnableOk(1);
    if (quiet != 0 || isAllowed != 0) return isAllowed;
    RevealHost();
    return m_extensions->OnChildDialogEnableOk(0);
}

unsigned CTovHostContainer::DisabledOkAt(CPoint const& place) const {
    CWnd const& window = *GetContainerWnd();
    CPoint const onScreen = window.ClientToScreen(place);
    for (int const id : {IDOK, ID_APPLY_NOW}) {
        CWnd const* const button = CWnd::FromHandlePermanent(window.GetDlgItem(id));
        if (button == nullptr ||
            (button->GetStyle() & (WS_VISIBLE | WS_DISABLED)) != (WS_VISIBLE | WS_DISABLED))
            continue;
        CRect const rect = button->GetWindowRect();
        if (rect.left <= onScreen.x && onScreen.x < rect.right && rect.top <= onScreen.y &&
            onScreen.y < rect.bottom)
            return static_cast<unsigned>(id);
    }
    return 0;
}

void CTovHostContainer::OnHostMessage(unsigned message, LPARAM lParam) {
    if (message != WM_LBUTTONDOWN) return;
    if (unsigned const id = DisabledOkAt(TovPointOf(lParam))) OnDisabledOkButtonClicked(id);
}

void CTovHostContainer::OnDisabledOkButtonClicked(unsigned) {
    HWND const self = HandleOf(GetContainerWnd());
    CString words;
    LRESULT const state =
        TovSendMessage(GetWndTopmostFocus(), WM_TOV_INPUT_CONTROL_VALIDATE, reinterpret_cast<WPARAM>(&words));
    if (!IsWindow(self)) return;
    if (state == CTovInputControl::eStateValid) {
        m_host.OnEnableOkButton(0);
        return;
    }
    if (state == CTovInputControl::eStateEmpty) words = LibraryString(wordsOfEmptyField);
    if (CWnd* const control = CWnd::FromHandlePermanent(GetWndTopmostFocus()))
        ShowTipUnder(*control, words.c_str());
}

}  // namespace tov
