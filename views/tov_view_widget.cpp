#include <tov310/tov_scroll_view.h>
#include <tov310/tov_view.h>

#include "views/view_signals.h"

#include <tov310/painter_dc.h>
#include <tov310/styles.h>

#include <QMainWindow>
#include <QMdiSubWindow>
#include <QScrollArea>

#include <algorithm>

namespace tov {

namespace detail {

int CreateView(QWidget& widget, CView& view, unsigned long style, CRect const& rect, CWnd* parent,
               unsigned id, CCreateContext const* context) {
    if (view.GetSafeHwnd()) return 0;
    QWidget* const around = TovWidget(parent);
    if (auto* const frame = qobject_cast<QMainWindow*>(around))
        frame->setCentralWidget(&widget);
    else if (auto* const child = qobject_cast<QMdiSubWindow*>(around))
        child->setWidget(&widget);
    else if (auto* const form = qobject_cast<QScrollArea*>(around);
             form != nullptr && form->widget() != nullptr)
        widget.setParent(form->widget());
    else if (auto* const area = qobject_cast<QAbstractScrollArea*>(around))
        widget.setParent(area->viewport());
    else
        widget.setParent(around);
    view.SetDlgCtrlID(static_cast<int>(id));
    if (rect.Width() > 0 && rect.Height() > 0) view.MoveWindow(rect);
    if (!view.NeedHandle()) return 0;
    HWND const self = view.GetSafeHwnd();
    constexpr unsigned long usual = WS_CHILD | WS_VISIBLE | WS_BORDER;
    unsigned long const wanted = style != 0 ? style : usual;
    if (context != nullptr && context->m_pCurrentDoc != nullptr) context->m_pCurrentDoc->AddView(&view);
    view.ModifyStyle(0, wanted & ~WS_VISIBLE);
    if (IsWindow(self)) view.ShowWindow((wanted & WS_VISIBLE) != 0 ? SW_SHOW : SW_HIDE);
    return IsWindow(self);
}

}  // namespace detail

CTovView::CTovView(QWidget* parent) : CTovViewOn(parent) {}

CPoint CTovView::GetScrollPosition() const {
    return ScrolledBy(*this);
}

void CTovView::OnNotice(eTovViewNotice notice) {
    EmitViewNotice(*this, notice);
}

void CTovView::OnSlowDoubleClick(WPARAM, CPoint const& place) {
    Q_EMIT slowDoubleClicked(TovQPoint(place));
}

void CTovView::paintEvent(QPaintEvent*) {
    CTovPainterDC dc(static_cast<QPaintDevice&>(*viewport()));
    OnEraseBkgnd(&dc);
    OnPrepareDC(&dc);
    OnDraw(&dc);
}

CTovScrollView::CTovScrollView(QWidget* parent) : CTovViewOn(parent) {}

CPoint CTovScrollView::GetScrollPosition() const {
    return ScrolledBy(*this);
}

void CTovScrollView::SetScrollSizes(CSize total) {
    CScrollView::SetScrollSizes(total);
    SetRanges();
    viewport()->update();
}

void CTovScrollView::ScrollToPosition(CPoint place) {
    horizontalScrollBar()->setValue(place.x);
    verticalScrollBar()->setValue(place.y);
}

void CTovScrollView::SetRanges() {
    // The room without bars decides whether there are any; a bar may bring the other one along.
    QSize const room = maximumViewportSize();
    int const bar = horizontalScrollBar()->sizeHint().height();
    CSize const total = GetTotalSize();
    bool const isWide = total.cx > room.width() - (total.cy > room.height() ? bar : 0);
    bool const isHigh = total.cy > room.height() - (isWide ? bar : 0);
    int const width = room.width() - (isHigh ? bar : 0);
    int const height = room.height() - (isWide ? bar : 0);
    auto const set = [](QScrollBar& scroller, int extent, int page) {
        constexpr int linesOfPage = 10;
        scroller.setRange(0, std::max(0, extent - page));
        scroller.setPageStep(page);
        scroller.setSingleStep(std::max(1, page / linesOfPage));
    };
    set(*horizontalScrollBar(), total.cx, width);
    set(*verticalScrollBar(), total.cy, height);
}

void CTovScrollView::OnNotice(eTovViewNotice notice) {
    EmitViewNotice(*this, notice);
}

void CTovScrollView::OnSlowDoubleClick(WPARAM, CPoint const& place) {
    Q_EMIT slowDoubleClicked(TovQPoint(place));
}

void CTovScrollView::paintEvent(QPaintEvent*) {
    QPainter painter(viewport());
    {
        CTovPainterDC ground(painter);
        OnEraseBkgnd(&ground);
    }
    CPoint const scrolled = GetScrollPosition();
    painter.translate(-scrolled.x, -scrolled.y);
    CTovPainterDC dc(painter);
    OnPrepareDC(&dc);
    OnDraw(&dc);
}

void CTovScrollView::resizeEvent(QResizeEvent* event) {
    CTovViewOn::resizeEvent(event);
    SetRanges();
}

void CTovScrollView::scrollContentsBy(int dx, int dy) {
    viewport()->scroll(dx, dy);
}

}  // namespace tov
