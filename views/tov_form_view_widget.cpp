#include <tov310/tov_form_view.h>

#include "platform/dialog_builder.h"
#include "views/view_signals.h"

#include <tov310/styles.h>

#include <QEvent>

#include <utility>

namespace tov {

CTovFormView::CTovFormView(QWidget* parent) : CTovViewOn(parent) {
    MakeForm();
}

CTovFormView::CTovFormView(HINSTANCE module, unsigned id, QWidget* parent)
    : CTovViewOn(parent), m_module(module), m_template(std::to_string(id)) {
    MakeForm();
}

CTovFormView::CTovFormView(HINSTANCE module, char const* name, QWidget* parent)
    : CTovViewOn(parent), m_module(module), m_template(name != nullptr ? name : "") {
    MakeForm();
}

CTovFormView::~CTovFormView() = default;

void CTovFormView::MakeForm() {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus);  // its controls have it
    setWidget(std::make_unique<QWidget>().release());
    widget()->setBackgroundRole(QPalette::Window);
}

QWidget* CTovFormView::Form() const {
    return widget();
}

void CTovFormView::PreSubclassWindow() {
    CTovViewOn::PreSubclassWindow();
    if (m_template.empty() || std::exchange(m_isFilled, true)) return;
    CTovDialogTemplate dialog;
    m_isFaulty = TovLoadDialogTemplate(m_module, m_template.c_str(), dialog) == 0 ||
                 !FillDialog(*Form(), dialog, m_made, nullptr);
    if (m_isFaulty) return;
    m_extent = {0, 0, dialog.rect.Width(), dialog.rect.Height()};
    TakeTemplateSize();
}

void CTovFormView::TakeTemplateSize() {
    SetScrollSizes(TovSize(TovMapDialogRect(Form()->font(), m_extent).size()));
    updateGeometry();
}

void CTovFormView::changeEvent(QEvent* event) {
    CTovViewOn::changeEvent(event);
    if (event->type() == QEvent::FontChange && m_extent.right != 0) TakeTemplateSize();
}

// What the template made ends with the window.
int CTovFormView::DestroyWindow() {
    QPointer<CTovFormView> const alive(this);
    int const result = CTovViewOn::DestroyWindow();
    if (!alive || GetSafeHwnd()) return result;
    m_isFilled = false;
    for (QPointer<QObject> const& object : std::exchange(m_made, {})) {
        if (!object) continue;
        if (auto* const made = qobject_cast<QWidget*>(object.data()))
            made->setParent(nullptr);
        else
            object->setParent(nullptr);
        object->deleteLater();
    }
    return result;
}

int CTovFormView::Create(HINSTANCE module, unsigned long style, CRect const& rect, CWnd* parent, unsigned id,
                         CCreateContext const* context) {
    m_module = module;
    return Create(style, rect, parent, id, context);
}

int CTovFormView::Create(unsigned long style, CRect const& rect, CWnd* parent, unsigned id,
                         CCreateContext const* context) {
    QPointer<CTovFormView> const alive(this);
    if (CTovViewOn::Create(style, rect, parent, id, context) == 0 || !alive) return 0;
    if (DirectParentIsSDIFrameWnd() != 0) setFrameShape(QFrame::StyledPanel);
    if (!m_isFaulty) return 1;
    DestroyWindow();
    return 0;
}

int CTovFormView::SubclassDlgItem(unsigned id, CWnd* parent) {
    return CTovViewOn::SubclassDlgItem(id, parent) != 0 && !m_isFaulty;
}

void CTovFormView::SetScrollSizes(CSize total) {
    CFormView::SetScrollSizes(total);
    Form()->setMinimumSize(TovQSize(total));
}

void CTovFormView::ScrollToPosition(CPoint place) {
    horizontalScrollBar()->setValue(place.x);
    verticalScrollBar()->setValue(place.y);
}

CPoint CTovFormView::GetScrollPosition() const {
    return ScrolledBy(*this);
}

QSize CTovFormView::sizeHint() const {
    int const frame = 2 * frameWidth();
    CSize const total = GetTotalSize();
    return total == CSize{} ? CTovViewOn::sizeHint() : QSize(total.cx + frame, total.cy + frame);
}

void CTovFormView::OnNotice(eTovViewNotice notice) {
    EmitViewNotice(*this, notice);
}

void CTovFormView::OnSlowDoubleClick(WPARAM, CPoint const& place) {
    Q_EMIT slowDoubleClicked(TovQPoint(place));
}

}  // namespace tov
