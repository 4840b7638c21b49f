#include <tov310/switched_edit.h>

#include <tov310/messages.h>
#include <tov310/styles.h>
#include <tov310/system.h>

#include "platform/control_notices.h"

#include <utility>

namespace tov {
CTovEditSwitched::CTovEditSwitched(eType type, QWidget* parent)
    : CWndOn(parent), m_type(TovSwitchedEdit(type) != nullptr ? type : eTovSwitchedString) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFocusPolicy(Qt::StrongFocus);  // without one it has no place in the order of the focus
}

CTovEditSwitched::~CTovEditSwitched() {
    // The edit still tells this window things while it goes.
    std::unique_ptr<CTovEdit> edit(m_edit.data());
    if (edit == nullptr || !edit->IsAtWork()) return;
    DestroyWindow();
    DetachEditFields();
    CTovEdit::EndSoon(std::move(edit));
}

std::unique_ptr<CTovEdit> CTovEditSwitched::CreateEditField(eType type) {
    int const numberType = TovSwitchedEdit(type)->numberType;
    switch (type) {
        case eTovSwitchedFilename:
            return std::make_unique<CTovEditFilename>();
        case eTovSwitchedShort:
        case eTovSwitchedUshort:
        case eTovSwitchedLong:
        case eTovSwitchedUlong:
        case eTovSwitchedInt:
        case eTovSwitchedUint:
            return std::make_unique<CTovEditInteger>(static_cast<CTovEditInteger::eType>(numberType));
        case eTovSwitchedFloat:
        case eTovSwitchedDouble:
            return std::make_unique<CTovEditFloating>(static_cast<CTovEditFloating::eType>(numberType));
        case eTovSwitchedDistance:
            return std::make_unique<CTovEditValueDistance>();
        case eTovSwitchedAngle:
            return std::make_unique<CTovEditValueAngle>();
        case eTovSwitchedLatitude:
            return std::make_unique<CTovEditLatitude>();
        case eTovSwitchedLongitude:
            return std::make_unique<CTovEditLongitude>();
        default:
            return std::make_unique<CTovEditString>();
    }
}

CTovEdit& CTovEditSwitched::GetEdit() const {
    return m_edit ? *m_edit : const_cast<CTovEditSwitched&>(*this).MakeEdit(0);
}

CTovEdit& CTovEditSwitched::MakeEdit(int emptyAllowed) {
    CTovEdit& edit = *CreateEditField(m_type).release();  // a child from the next line on
    edit.setParent(this);
    m_edit = &edit;
    edit.setGeometry(rect());
    edit.IsInline(IsInline());
    edit.SetEmptyAllowed(emptyAllowed);
    setFocusProxy(nullptr);  // of which the order of the focus would make something else
    QWidget::setTabOrder(this, &edit);
    setFocusProxy(&edit);
    connect(&edit, &CTovEdit::validityChanged, this, &CTovEditSwitched::validityChanged);
    connect(&edit, &CTovEdit::editingDone, this, &CTovEditSwitched::editingDone);
    connect(&edit, &CTovEdit::valueChanged, this, &CTovEditSwitched::valueChanged);
    if (GetSafeHwnd()) BeBorn(edit);
    updateGeometry();
    return edit;
}

void CTovEditSwitched::BeBorn(CTovEdit& edit) {
    edit.SetDlgCtrlID(GetDlgCtrlID());
    edit.setAccessibleName(accessibleName());
    TovHandle(&edit);
    edit.show();
    OnDlgCtrlChildAdded(edit.GetSafeHwnd());
    ShowUnit();
}

void CTovEditSwitched::PreSubclassWindow() {
    CWndOn::PreSubclassWindow();
    HookControl();
    if (m_edit)
        BeBorn(*m_edit);
    else
        MakeEdit(0);
}

int CTovEditSwitched::Switch(eType type) {
    if (TovSwitchedEdit(type) == nullptr) return 0;
    if (std::exchange(m_type, type) == type || !m_edit) return 1;
    CTovNotifyEmptyChanged const scope(*this);
    bool const hadFocus = m_edit->ControlOrChildHasFocus() != 0;
    int const emptyAllowed = m_edit->GetEmptyAllowed();
    int const readOnly = m_edit->GetReadOnlyMode();
    DestroyEditFields();
    CTovEdit& edit = MakeEdit(emptyAllowed);
    edit.SetReadOnlyMode(readOnly);
    if (hadFocus) edit.SetFocusInputControl();
    return 1;
}

void CTovEditSwitched::DestroyEditFields() {
    if (!m_edit) return;
    CTovEdit& edit = *m_edit;
    bool const hasFocus = edit.ControlOrChildHasFocus() != 0;
    edit.IgnoreKillFocusAction(1);
    DetachEditFields();
    edit.disconnect();
    // Otherwise it would go to the next control, for which this one would have to be right.
    if (hasFocus) setFocus();
    CTovEdit::EndSoon(std::unique_ptr<CTovEdit>(&edit));
}

void CTovEditSwitched::DetachEditFields() {
    if (!m_edit) return;
    if (auto* const value = dynamic_cast<CTovEditValue*>(m_edit.data())) value->UnitAbbreviation(HWND{});
    m_edit->disconnect(this);
    setFocusProxy(nullptr);
    m_edit.clear();
}

void CTovEditSwitched::UnitAbbreviation(unsigned id) {
    CWnd const* const around = GetParent();
    m_unitLabel = around != nullptr ? around->GetDlgItem(static_cast<int>(id)) : HWND{};
    ShowUnit();
}

void CTovEditSwitched::ShowUnit() {
    CWnd* const label = CWnd::FromHandlePermanent(m_unitLabel);
    if (label == nullptr) return;
    auto* const value = dynamic_cast<CTovEditValue*>(&GetEdit());
    if (value == nullptr) return label->SetWindowText("");
    value->UnitAbbreviation(m_unitLabel);
    label->ShowWindow((GetStyle() & WS_VISIBLE) != 0);
}

void CTovEditSwitched::OnEmptyChanged() {
    CTovInputControl::OnEmptyChanged();
    Q_EMIT emptyChanged(ValidateEmpty() != 0);
}

// What the edit tells its window concerns the one around, where this window is the control.
// A cell knows this window as its control, and Tab in the edit is Tab in it.
bool CTovEditSwitched::focusNextPrevChild(bool next) {
    CWnd const* const around = IsInline() != 0 ? GetParent() : nullptr;
    if (around == nullptr) return CWndOn::focusNextPrevChild(next);
    TovPostMessage(around->GetSafeHwnd(), WM_NEXTDLGCTL, static_cast<WPARAM>(!next));
    return true;
}

LRESULT CTovEditSwitched::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) {
    HWND const child{static_cast<std::uint64_t>(lParam)};
    switch (message) {
        case WM_TOV_INPUT_CONTROL_EMPTY_CHANGED:
            if (m_edit) OnEmptyChanged();  // and not of one that goes
            return 0;
        case WM_TOV_INPUT_CONTROL_CHILD_ADDED:
            OnDlgCtrlChildAdded(child);
            return 0;
        case WM_TOV_INPUT_CONTROL_HOOK_DLG_CTRL:
            OnHookDlgCtrl(child);
            return 0;
        case WM_TOV_INPUT_CONTROL_UNHOOK_DLG_CTRL:
            OnUnhookDlgCtrl(child);
            return 0;
        case WM_NEXTDLGCTL:
            // Of an angle in fields, past the last of them.
            if (CWnd const* const around = GetParent())
                return TovSendMessage(around->GetSafeHwnd(), message, wParam, lParam);
            break;
        case WM_COMMAND:
            if (!m_edit || child != m_edit->GetSafeHwnd()) break;
            TellParent(*this, TovNotificationOf(wParam));
            return 0;
        default:
            break;
    }
    return CWndOn::WindowProc(message, wParam, lParam);
}

void CTovEditSwitched::resizeEvent(QResizeEvent* event) {
    CWndOn::resizeEvent(event);
    if (m_edit) m_edit->setGeometry(rect());
}

int CTovEditSwitched::ResetAttributes() {
    if (CTovInputControl::ResetAttributes() == 0) return 0;
    m_unitLabel = {};
    return m_edit ? m_edit->ResetAttributes() : 1;
}

int CTovEditSwitched::SetupInlineRect(CRect& container, CRect& control, HFONT font, unsigned long align) {
    return GetEdit().SetupInlineRect(container, control, font, align);
}

int CTovEditSwitched::SubclassDlgItemIntern(unsigned id, CWnd* parent) {
    return CWndOn::SubclassDlgItem(id, parent);
}

int CTovEditSwitched::Create(unsigned long style, CRect const& rect, CWnd* parent, unsigned int id) {
    QWidget* const around = TovWidget(parent);
    if (around == nullptr) return 0;
    if (GetSafeHwnd()) DestroyWindow();
    auto* const area = qobject_cast<QAbstractScrollArea*>(around);
    setParent(area != nullptr ? area->viewport() : around);
    SetDlgCtrlID(static_cast<int>(id));
    MoveWindow(rect);
    TovHandle(this);
    constexpr unsigned long stylesOfEdits = ES_RIGHT | ES_PASSWORD | ES_READONLY;
    GetEdit().ModifyStyle(0, style & stylesOfEdits);
    ModifyStyle(0, style & (WS_DISABLED | WS_VISIBLE));
    return 1;
}

int CTovEditSwitched::CreateInline(unsigned long style, CRect const& rect, CWnd* parent, unsigned int id,
                                   HFONT font) {
    IsInline(1);
    if (m_edit) m_edit->IsInline(1);
    SetFont(font);
    return Create(style | tovInlineEditStyle, rect, parent, id);
}

}  // namespace tov
