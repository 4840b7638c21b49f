#include <tov310/prop_page.h>

#include "platform/child_ground.h"
#include "platform/dialog_builder.h"

#include <tov310/dlg_tool_bar.h>
#include <tov310/messages.h>
#include <tov310/prop_sheet.h>
#include <tov310/qt_values.h>
#include <tov310/styles.h>
#include <tov310/tov_dialog.h>

#include <QLayout>

#include <utility>

namespace tov {

CTovPropPage::CTovPropPage(QWidget* parent) : CWndOn(parent) {}

CTovPropPage::CTovPropPage(HINSTANCE module, unsigned id, unsigned caption) : CTovPropPage() {
    Construct(module, id, caption);
}

CTovPropPage::CTovPropPage(HINSTANCE module, char const* name, unsigned caption) : CTovPropPage() {
    Construct(module, name, caption);
}

CTovPropPage::~CTovPropPage() {
    LeaveSheet();
}

void CTovPropPage::Construct(HINSTANCE module, unsigned id, unsigned caption) {
    Construct(module, std::to_string(id).c_str(), caption);
    m_helpTopic = id;
    SetDlgCtrlID(static_cast<int>(id));
}

void CTovPropPage::Construct(HINSTANCE module, char const* name, unsigned caption) {
    m_module = module;
    m_template = name != nullptr ? name : "";
    m_caption.clear();
    if (caption != 0) TovLoadResourceString(module, caption, m_caption);
    CTovDialogTemplate dialog;
    // The tab has its words before the page is made.
    if (m_caption.empty() && TovLoadDialogTemplate(m_module, m_template.c_str(), dialog) != 0)
        m_caption = dialog.title;
    SetWindowText(m_caption.c_str());
}

int CTovPropPage::CreateToolbar(HINSTANCE module, unsigned bitmapId, unsigned controlId,
                                unsigned arrangeFlags) {
    if (m_toolbar == nullptr) m_toolbar = std::make_shared<CTovDlgToolBar>(this);
    return m_toolbar->Create(module, bitmapId, controlId, static_cast<int>(arrangeFlags), 0);
}

int CTovPropPage::Make() {
    if (m_isReady) return 1;
    TovWnd(this);  // is born now
    if (!m_template.empty() && !MakeControls()) return 0;
    m_isReady = true;
    QPointer<CTovPropPage> const alive(this);
    InitDialog();
    return alive && m_isReady;
}

bool CTovPropPage::MakeControls() {
    CTovDialogTemplate dialog;
    if (TovLoadDialogTemplate(m_module, m_template.c_str(), dialog) == 0) return false;
    if (!FillDialog(*this, dialog, m_made, nullptr)) return false;
    SetWindowText(m_caption.c_str());
    m_size = size();
    CWnd::ModifyStyle(0, dialog.style);
    if ((dialog.style & WS_DISABLED) != 0) setEnabled(false);
    return true;
}

int CTovPropPage::DestroyWindow() {
    QPointer<CTovPropPage> const alive(this);
    int const result = CWndOn::DestroyWindow();
    if (!alive || GetSafeHwnd()) return result;  // or somebody is told of its end, further out
    m_isReady = false;
    // One of them may be what has asked for it.
    for (QPointer<QObject> const& object : std::exchange(m_made, {})) {
        if (!object) continue;
        if (auto* const widget = qobject_cast<QWidget*>(object.data()))
            widget->setParent(nullptr);
        else
            object->setParent(nullptr);
        object->deleteLater();
    }
    return result;
}

QSize CTovPropPage::sizeHint() const {
    return layout() == nullptr && m_size.isValid() ? m_size : CWndOn::sizeHint();
}

QSize CTovPropPage::minimumSizeHint() const {
    return layout() == nullptr && m_size.isValid() ? m_size : CWndOn::minimumSizeHint();
}

CString CTovPropPage::GetWindowText() const {
    return TovText(windowTitle());
}

void CTovPropPage::SetWindowText(char const* text) {
    setWindowTitle(TovQString(text));
}

CTovPropSheet* CTovPropPage::GetSafeParentTovPropSheet() const {
    return dynamic_cast<CTovPropSheet*>(GetParentSheet());
}

int CTovPropPage::IsActive() {
    CPropertySheet const* const sheet = GetParentSheet();
    if (sheet != nullptr && sheet->GetSafeHwnd()) m_isActive = sheet->GetActivePage() == this;
    return m_isActive;
}

int CTovPropPage::Modeless() const {
    CTovPropSheet const* const sheet = GetSafeParentTovPropSheet();
    return sheet != nullptr && sheet->Modeless() != 0;
}

int CTovPropPage::OnSetActive() {
    m_isActive = 1;
    QPointer<CTovPropPage> const alive(this);
    Q_EMIT activated();
    return alive && CTovPageOf::OnSetActive() != 0;
}

int CTovPropPage::OnKillActive() {
    m_isActive = 0;
    int const mayLeave = CTovPageOf::OnKillActive();
    if (mayLeave != 0) Q_EMIT deactivated();
    return mayLeave;
}

void CTovPropPage::TakePlaceholder(CWnd& placeholder) {
    m_childGround = std::make_unique<ChildGround>(*this, placeholder);
    CTovPageOf::TakePlaceholder(placeholder);
}

void CTovPropPage::PrepareChildDialog(CDialog& child) {
    if (m_childGround != nullptr) m_childGround->Prepare(child);
}

std::unique_ptr<CDialog> CTovPropPage::MakePlainDialog() {
    return std::make_unique<CTovDialog>();
}

LRESULT CTovPropPage::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) {
    HWND const self = GetSafeHwnd();
    LRESULT const result = CTovPageOf::WindowProc(message, wParam, lParam);
    if (message == WM_TOV_POST_INITDIALOG && IsWindow(self)) Q_EMIT initialized();
    return result;
}

CTovPropPageCV::~CTovPropPageCV() = default;

void CTovPropPageCV::OnEmptyFieldsChanged(int emptyFields) {
    QPointer<CTovPropPageCV> const alive(this);
    CTovPageCVOf::OnEmptyFieldsChanged(emptyFields);
    if (alive) Q_EMIT emptyFieldsChanged(emptyFields != 0);
}

}  // namespace tov
