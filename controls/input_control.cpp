#include <tov310/input_control.h>

#include <tov310/hooks.h>
#include <tov310/messages.h>
#include <tov310/styles.h>

#include "frame/handle_of.h"
#include "util/trim.h"
#include "vesk/immortal.h"

#include <map>

namespace tov {
namespace {

// How many scopes are open for each window.
std::map<HWND, unsigned>& OpenScopes() {
    static Immortal<std::map<HWND, unsigned>> scopes;
    return *scopes;
}

}  // namespace

// Answers the container on the window of the control.
class CTovInputControl::CTovSubclassControl : public CTovSubclassWnd {
 public:
    explicit CTovSubclassControl(CTovInputControl& control) : m_control(control) {}

    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        switch (message) {
            case WM_TOV_INPUT_CONTROL_VALIDATE:
                return m_control.Validate(reinterpret_cast<CString*>(wParam));
            case WM_TOV_INPUT_CONTROL_VALIDATE_EMPTY:
                return m_control.ValidateEmpty();
            default:
                return CTovSubclassWnd::WindowProc(message, wParam, lParam);
        }
    }

 private:
    CTovInputControl& m_control;
};

CTovInputControl::CTovInputControl() : m_SubclassControl(std::make_unique<CTovSubclassControl>(*this)) {}

CTovInputControl::~CTovInputControl() = default;

int CTovInputControl::ResetAttributes() {
    if (m_SubclassControl->IsHooked()) return 0;
    m_bEmptyAllowed = 0;
    m_bReadOnlyMode = 0;
    return 1;
}

int CTovInputControl::SetupInlineRect(CRect&, CRect&, HFONT, unsigned long) {
    return 0;
}

int CTovInputControl::CreateInline(unsigned long, CRect const&, CWnd*, unsigned int, HFONT) {
    return 0;
}

void CTovInputControl::HookControl() {
    CWnd* const window = GetWnd();
    m_SubclassControl->HookWindow(HandleOf(window));
    CWnd* const parent = window != nullptr ? window->GetParent() : nullptr;
    SetContainer(parent);
    m_bContainerIsParent = parent != nullptr && m_container == HandleOf(parent);
}

void CTovInputControl::UnhookControl() {
    m_SubclassControl->UnhookWindow();
}

CString CTovInputControl::GetRawString() {
    return {};
}

CString CTovInputControl::GetString() {
    return {};
}

CString CTovInputControl::GetStringTrimmed() {
    return CString(TrimBlanks(GetString()));
}

int CTovInputControl::SetString(char const* text) {
    return SetString(CString(text != nullptr ? text : ""));
}

int CTovInputControl::SetString(CString const&) {
    return 0;
}

short CTovInputControl::GetShort() {
    return 0;
}

int CTovInputControl::SetShort(short) {
    return 0;
}

unsigned short CTovInputControl::GetUshort() {
    return 0;
}

int CTovInputControl::SetUshort(unsigned short) {
    return 0;
}

long CTovInputControl::GetLong() {
    return 0;
}

int CTovInputControl::SetLong(long) {
    return 0;
}

unsigned long CTovInputControl::GetUlong() {
    return 0;
}

int CTovInputControl::SetUlong(unsigned long) {
    return 0;
}

int CTovInputControl::GetInt() {
    return 0;
}

int CTovInputControl::SetInt(int) {
    return 0;
}

unsigned int CTovInputControl::GetUint() {
    return 0;
}

int CTovInputControl::SetUint(unsigned int) {
    return 0;
}

float CTovInputControl::GetFloat() {
    return 0;
}

int CTovInputControl::SetFloat(float) {
    return 0;
}

double CTovInputControl::GetDouble() {
    return 0;
}

int CTovInputControl::SetDouble(double) {
    return 0;
}

int CTovInputControl::GetEmptyAllowed() const {
    return m_bEmptyAllowed;
}

int CTovInputControl::SetEmptyAllowed(int allowed) {
    return SetAttribute(m_bEmptyAllowed, allowed);
}

int CTovInputControl::GetReadOnlyMode() const {
    return m_bReadOnlyMode;
}

int CTovInputControl::SetReadOnlyMode(int readOnly) {
    return SetAttribute(m_bReadOnlyMode, readOnly);
}

int CTovInputControl::SetAttribute(int& attribute, int value) {
    if (attribute == value) return 1;
    CTovNotifyEmptyChanged const scope(*this);
    attribute = value;
    return 1;
}

int CTovInputControl::GetChangedByUser() const {
    return m_bChangedByUser;
}

void CTovInputControl::SetChangedByUser(int changed) {
    m_bChangedByUser = changed;
}

CWnd* CTovInputControl::GetContainer() const {
    // The control may have moved to another form since it was hooked.
    CWnd const* const window =
        m_bContainerIsParent != 0 ? const_cast<CTovInputControl*>(this)->GetWnd() : nullptr;
    return window != nullptr ? window->GetParent() : CWnd::FromHandlePermanent(m_container);
}

void CTovInputControl::SetContainer(CWnd* container) {
    m_container = container != nullptr ? container->NeedHandle() : HWND{};
    m_bContainerIsParent = 0;
}

int CTovInputControl::GetMinWidth() const {
    return 0;
}

void CTovInputControl::GetWindowBoundingRect(CRect* rect) {
    CWnd const* const window = GetWnd();
    if (rect != nullptr && HandleOf(window)) *rect = window->GetWindowRect();
}

int CTovInputControl::OnValidateEmpty() {
    return IsEmpty() != 0 && GetEmptyAllowed() == 0;
}

int CTovInputControl::ValidateIgnore() {
    if (GetReadOnlyMode() != 0) return 1;
    CWnd const* const window = GetWnd();
    return !HandleOf(window) || (window->GetStyle() & WS_VISIBLE) == 0;
}

void CTovInputControl::SetFocusInputControl() {
    if (CWnd* const window = GetWnd()) window->SetFocus();
}

void CTovInputControl::OnEmptyChanged() {
    CWnd const* const window = GetWnd();
    CWnd const* const container = GetContainer();
    if (window == nullptr || container == nullptr) return;
    TovSendMessage(container->GetSafeHwnd(), WM_TOV_INPUT_CONTROL_EMPTY_CHANGED,
                   static_cast<WPARAM>(window->GetDlgCtrlID()), ValidateEmpty());
}

void CTovInputControl::OnDlgCtrlChildAdded(HWND child) {
    TellContainer(WM_TOV_INPUT_CONTROL_CHILD_ADDED, child);
}

void CTovInputControl::OnHookDlgCtrl(HWND window) {
    TellContainer(WM_TOV_INPUT_CONTROL_HOOK_DLG_CTRL, window);
}

void CTovInputControl::OnUnhookDlgCtrl(HWND window) {
    TellContainer(WM_TOV_INPUT_CONTROL_UNHOOK_DLG_CTRL, window);
}

void CTovInputControl::TellContainer(unsigned message, HWND window) {
    if (CWnd const* const container = GetContainer())
        TovSendMessage(container->GetSafeHwnd(), message, HandleOf(GetWnd()).id,
                       static_cast<LPARAM>(window.id));
}

void CTovInputControl::GetInlineDimensions(long& height, long& width, long& charUnit, HFONT font,
                                           char const* text) {
    CSize const extent = TovGetSystem()->GetTextExtent(font, text != nullptr ? text : "");
    height = charUnit = extent.cy + 4;
    width = extent.cx;
}

long CTovInputControl::GetInlineMoveUp(long cellHeight, long controlHeight) {
    return cellHeight >= controlHeight ? 0 : (controlHeight - cellHeight + 1) / 2;
}

void CTovInputControl::SetInlineControlContainerDialogBoxPending(int) {}

CTovInputControl::eState CTovInputControl::Validate(CString* message) {
    return ValidateIgnore() != 0 ? eStateValid : OnValidate(message);
}

int CTovInputControl::ValidateEmpty() {
    return ValidateIgnore() != 0 ? 0 : OnValidateEmpty();
}

CTovInputControl& CTovInputControl::operator=(CString const& text) {
    SetString(text);
    return *this;
}

CTovInputControl& CTovInputControl::operator=(char const* text) {
    SetString(text);
    return *this;
}

CTovInputControl& CTovInputControl::operator=(short value) {
    SetShort(value);
    return *this;
}

CTovInputControl& CTovInputControl::operator=(unsigned short value) {
    SetUshort(value);
    return *this;
}

CTovInputControl& CTovInputControl::operator=(long value) {
    SetLong(value);
    return *this;
}

CTovInputControl& CTovInputControl::operator=(unsigned long value) {
    SetUlong(value);
    return *this;
}

CTovInputControl& CTovInputControl::operator=(int value) {
    SetInt(value);
    return *this;
}

CTovInputControl& CTovInputControl::operator=(unsigned int value) {
    SetUint(value);
    return *this;
}

CTovInputControl& CTovInputControl::operator=(float value) {
    SetFloat(value);
    return *this;
}

CTovInputControl& CTovInputControl::operator=(double value) {
    SetDouble(value);
    return *this;
}

CTovInputControl::CTovKeepChangedByUserStatus::CTovKeepChangedByUserStatus(CTovInputControl& control)
    : m_control(control), m_changed(control.GetChangedByUser()) {}

CTovInputControl::CTovKeepChangedByUserStatus::~CTovKeepChangedByUserStatus() {
    m_control.SetChangedByUser(m_changed);
}

CTovInputControl::CTovNotifyEmptyChanged::CTovNotifyEmptyChanged(CTovInputControl& control)
    : m_control(control), m_window(HandleOf(control.GetWnd())), m_wasEmpty(control.ValidateEmpty()) {
    if (m_window) ++OpenScopes()[m_window];
}

CTovInputControl::CTovNotifyEmptyChanged::~CTovNotifyEmptyChanged() {
    auto const scope = OpenScopes().find(m_window);
    if (scope == OpenScopes().end() || --scope->second != 0) return;
    OpenScopes().erase(scope);
    if (IsWindow(m_window) && m_control.ValidateEmpty() != m_wasEmpty) m_control.OnEmptyChanged();
}

}  // namespace tov
