#include <tov310/list_ctrl.h>

#include <tov310/list_stored.h>
#include <tov310/painter_dc.h>
#include <tov310/qt_values.h>
#include <tov310/window_messages.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOption>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <utility>

namespace tov {
namespace {

constexpr int bandInterval = 25;  // milliseconds
constexpr int rowGap = 2;         // above and below a text

int KeyNumber(int key) {
    switch (key) {
        case Qt::Key_PageUp:
            return VK_PRIOR;
        case Qt::Key_PageDown:
            return VK_NEXT;
        case Qt::Key_Home:
            return VK_HOME;
        case Qt::Key_End:
            return VK_END;
        case Qt::Key_Left:
            return VK_LEFT;
        case Qt::Key_Up:
            return VK_UP;
        case Qt::Key_Right:
            return VK_RIGHT;
        case Qt::Key_Down:
            return VK_DOWN;
        default:
            return 0;
    }
}

}  // namespace

// Rows that the control keeps, with the actions on them.
class CTovListCtrlQuickDraw::Stored final : public CTovStoredActions {
 public:
    explicit Stored(CTovListCtrlQuickDraw& list) : m_list(list) {}
    int ShowCheckboxes() const override { return m_list.ShowCheckboxes(); }

 private:
    void Changed(unsigned int first, unsigned int last) override { m_list.InvalidateRows(first, last); }
    void Show(unsigned int item) override { m_list.EnsureRowVisible(item); }
    CTovListCtrlQuickDraw& m_list;
};

CTovListCtrlQuickDraw::CTovListCtrlQuickDraw(QWidget* parent)
    : CWndOn(parent),
      m_stored(std::make_unique<Stored>(*this)),
      m_source(&m_stored->items),
      m_actions(m_stored.get()),
      m_header(new CTovHeaderCtrlSort(this)),  // the parent's
      m_input(m_layout, *m_stored),
      m_band(std::make_unique<CTovListBand>(m_layout, *m_stored)) {
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    connect(m_header, &QHeaderView::sectionResized, this, &CTovListCtrlQuickDraw::TakeColumns);
    connect(m_header, &QHeaderView::sectionMoved, this, &CTovListCtrlQuickDraw::TakeColumns);
    connect(m_header, &QHeaderView::sectionCountChanged, this, &CTovListCtrlQuickDraw::TakeColumns);
    connect(m_header, &CTovHeaderCtrl::columnClicked, this, &CTovListCtrlQuickDraw::headerClicked);
    LayOut();
}

CTovListCtrlQuickDraw::~CTovListCtrlQuickDraw() {
    disconnect(m_header, nullptr, this, nullptr);
}

void CTovListCtrlQuickDraw::SetSource(ITovListSource* source, ITovListActions* actions) {
    m_source = source != nullptr ? source : &m_stored->items;
    m_actions = actions != nullptr ? actions : m_stored.get();
    m_band = std::make_unique<CTovListBand>(m_layout, *m_actions);
    m_input.SetActions(*m_actions);
    RowsChanged();
}

CTovStoredItems& CTovListCtrlQuickDraw::Items() {
    return m_stored->items;
}

void CTovListCtrlQuickDraw::SetViewType(unsigned long style) {
    m_layout.SetStyle(style);
    LayOut();
}

void CTovListCtrlQuickDraw::SetImageList(CImageList const* images) {
    m_images = images;
    LayOut();
}

int CTovListCtrlQuickDraw::StopWindowUpdate() {
    viewport()->setUpdatesEnabled(false);
    return m_nStopCount++;
}

void CTovListCtrlQuickDraw::ContinueWindowUpdate(int before) {
    m_nStopCount = std::max(before, 0);
    if (m_nStopCount == 0) viewport()->setUpdatesEnabled(true);
}

CString CTovListCtrlQuickDraw::GetItemText(unsigned int item, unsigned int col) const {
    TOV_DISPINFO info;
    info.mask = LVIF_TEXT;
    info.iItem = item;
    info.iSubItem = col;
    return m_source->GetDispInfo(info) != 0 ? info.strText : CString();
}

// --- What is where

void CTovListCtrlQuickDraw::LayOut() {
    CSize const image = m_images != nullptr ? m_images->GetImageSize() : CSize{};
    int const check = m_showCheckboxes != 0
                          ? style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, this) + 2 * rowGap
                          : 0;
    m_layout.SetRowHeight(std::max({fontMetrics().height() + 2 * rowGap, image.cy, check}));
    m_layout.SetCheckWidth(check);
    m_layout.SetImageSize(image);
    PlaceHeader();
    RowsChanged();
}

void CTovListCtrlQuickDraw::PlaceHeader() {
    bool const isReport = GetViewType() == LVS_REPORT;
    int const height = isReport ? m_header->sizeHint().height() : 0;
    setViewportMargins(0, height, 0, 0);
    QRect const rows = viewport()->geometry();
    m_header->setGeometry(rows.left(), rows.top() - height, rows.width(), height);
    m_header->setVisible(isReport);
    m_layout.SetArea({viewport()->width(), viewport()->height()});
}

void CTovListCtrlQuickDraw::TakeColumns() {
    std::vector<int> widths(m_header->GetColumns());
    for (unsigned int col = 0; col < widths.size(); ++col)
        widths[col] = m_header->GetColumnWidth(col);
    m_layout.SetColumns(widths, m_header->GetColumnOrder());
    // The first column brings the header's height.
    if (GetViewType() == LVS_REPORT && m_header->height() != m_header->sizeHint().height()) PlaceHeader();
    ShowPosition();
    viewport()->update();
}

void CTovListCtrlQuickDraw::ShowPosition() {
    m_isMoving = true;
    for (bool const vertical : {false, true}) {
        CTovListLayout::Bar const bar = m_layout.GetBar(vertical);
        QScrollBar* const widget = vertical ? verticalScrollBar() : horizontalScrollBar();
        widget->setRange(0, bar.most);
        widget->setPageStep(bar.page);
        widget->setSingleStep(bar.line);
        widget->setValue(bar.position);
    }
    m_isMoving = false;
    if (GetViewType() == LVS_REPORT) m_header->setOffset(-m_layout.GetLeft());
}

void CTovListCtrlQuickDraw::RowsChanged() {
    m_layout.SetItemCount(m_source->GetItemCount());
    ShowPosition();
    viewport()->update();
}

void CTovListCtrlQuickDraw::InvalidateRows(unsigned int first, unsigned int last) {
    unsigned int const count = m_layout.GetItemCount();
    if (first >= count || last < first) return;
    if (GetViewType() != LVS_REPORT && last != first) return viewport()->update();
    int const top = m_layout.GetItemRect(first).top;
    CRect const end = m_layout.GetItemRect(std::min(last, count - 1));
    QRect const rows = TovQRect({GetViewType() == LVS_REPORT ? 0 : end.left, std::max(top, 0),
                                 GetViewType() == LVS_REPORT ? viewport()->width() : end.right,
                                 std::min(end.bottom, viewport()->height())});
    if (rows.isValid()) viewport()->update(rows);
}

void CTovListCtrlQuickDraw::InvalidateStrip(int left, int right) {
    viewport()->update(left, 0, right - left, viewport()->height());
}

CRect CTovListCtrlQuickDraw::GetRowsRect() {
    return TovRect(viewport()->rect());
}

int CTovListCtrlQuickDraw::GetTextWidth(char const* text) {
    return fontMetrics().horizontalAdvance(TovQString(text));
}

int CTovListCtrlQuickDraw::GetCharacterWidth(char32_t character) {
    return fontMetrics().horizontalAdvance(QString::fromUcs4(&character, 1));
}

int CTovListCtrlQuickDraw::GetImageWidth() {
    return m_images != nullptr ? m_images->GetImageSize().cx : 0;
}

int CTovListCtrlQuickDraw::GetImageHeight() const {
    return m_images != nullptr ? m_images->GetImageSize().cy : 0;
}

// --- Scrolling

CPoint CTovListCtrlQuickDraw::Origin() const {
    CRect const rect = m_layout.GetItemRect(0);
    return {m_layout.GetLeft(), rect.top};
}

// What stays in sight is moved, and only what comes into it is painted.
void CTovListCtrlQuickDraw::MoveBy(CPoint const& before) {
    CPoint const after = Origin();
    if (after == before) return;
    ShowPosition();
    std::int64_t const dx = std::int64_t{after.x} - before.x;
    std::int64_t const dy = std::int64_t{after.y} - before.y;
    bool const isNear = std::abs(dx) < viewport()->width() && std::abs(dy) < viewport()->height();
    if (isNear && m_nStopCount == 0 && !m_band->IsDragged())
        viewport()->scroll(static_cast<int>(dx), static_cast<int>(dy));
    else
        viewport()->update();
    if (dx != 0) Q_EMIT scrolled(true);
    if (dy != 0) Q_EMIT scrolled(false);
}

void CTovListCtrlQuickDraw::Scroll(int dx, int dy) {
    CPoint const before = Origin();
    m_layout.Scroll(dx, dy);
    MoveBy(before);
}

int CTovListCtrlQuickDraw::EnsureRowVisible(unsigned int row) {
    CPoint const before = Origin();
    int const isVisible = m_layout.EnsureItemVisible(row);
    MoveBy(before);
    return isVisible;
}

int CTovListCtrlQuickDraw::EnsureColumnVisible(unsigned int col) {
    CPoint const before = Origin();
    int const isVisible = m_layout.EnsureColVisible(col, m_header->GetColumnAlignment(col));
    MoveBy(before);
    return isVisible;
}

void CTovListCtrlQuickDraw::scrollContentsBy(int, int) {
    if (m_isMoving) return;
    CPoint const before = Origin();
    m_layout.SetBar(false, horizontalScrollBar()->value());
    m_layout.SetBar(true, verticalScrollBar()->value());
    MoveBy(before);
}

void CTovListCtrlQuickDraw::resizeEvent(QResizeEvent*) {
    PlaceHeader();
    ShowPosition();
}

void CTovListCtrlQuickDraw::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) LayOut();
    CWndOn::changeEvent(event);
}

// --- Painting

struct CTovListCtrlQuickDraw::Row {
    unsigned int item;
    unsigned int state;
    COLORREF text;
    COLORREF background;
    QPalette::ColorGroup group;
};

void CTovListCtrlQuickDraw::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    painter.setFont(font());
    QRect const part = event->rect();
    painter.fillRect(part, palette().base());
    CTovPainterDC dc(painter);
    CTovPoint<std::int64_t> const begin = m_layout.ToContent({part.left(), part.top()});
    for (unsigned int const item :
         m_layout.GetItemsIn({begin.x, begin.y, begin.x + part.width(), begin.y + part.height()}))
        PaintRow(painter, dc, item, part);
    CRect const band = m_band->GetRect();
    if (band.Width() <= 0 || band.Height() <= 0) return;
    QColor color = palette().color(QPalette::Highlight);
    painter.setPen(color);
    color.setAlpha(64);
    painter.setBrush(color);
    painter.drawRect(TovQRect(band).adjusted(0, 0, -1, -1));
}

void CTovListCtrlQuickDraw::PaintRow(QPainter& painter, CDC& dc, unsigned int item, QRect const& part) {
    TOV_DISPINFO info;
    info.mask = LVIF_STATE;
    info.iItem = item;
    if (m_source->GetDispInfo(info) == 0) return;
    bool const isSelected = (info.nState & LVIS_SELECTED) != 0;
    QPalette::ColorGroup const group = !isEnabled() ? QPalette::Disabled
                                       : hasFocus() ? QPalette::Active
                                                    : QPalette::Inactive;
    QPalette::ColorGroup const textGroup =
        (info.nState & LVIS_CUT) != 0 && !isSelected ? QPalette::Disabled : group;
    Row row{item, info.nState, TovColorRef(palette().color(textGroup, QPalette::Text)),
            TovColorRef(palette().color(group, QPalette::Base)), group};
    if (m_source->HasItemColors() == eListColorsPerItem)
        m_source->GetItemColors(item, tovNoIndex, row.text, row.background);
    if (GetViewType() == LVS_REPORT) {
        for (unsigned int const col : m_layout.GetColumnOrder()) {
            CRect const cell = m_layout.GetPartRect(item, col, eListPartCell);
            if (cell.Width() > 0 && cell.left <= part.right() && cell.right > part.left())
                PaintCell(painter, dc, row, col);
        }
    } else {
        PaintCell(painter, dc, row, 0);
    }
    if (hasFocus() && m_actions->GetFocusedItem() == item) {
        QStyleOptionFocusRect option;
        option.initFrom(this);
        option.rect =
            TovQRect(m_layout.GetItemRect(item)).intersected(viewport()->rect().adjusted(-1, 0, 1, 0));
        option.backgroundColor = palette().color(group, isSelected ? QPalette::Highlight : QPalette::Base);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
    }
}

void CTovListCtrlQuickDraw::PaintCell(QPainter& painter, CDC& dc, Row const& row, unsigned int col) {
    TOV_DISPINFO info;
    info.mask = LVIF_TEXT | LVIF_IMAGE;
    info.iItem = row.item;
    info.iSubItem = col;
    CRect const cell = m_layout.GetPartRect(row.item, col, eListPartCell);
    if (m_source->DrawItem(dc, row.item, col, cell, row.state) != 0 || m_source->GetDispInfo(info) == 0)
        return;
    Row colors = row;
    if (m_source->HasItemColors() == eListColorsPerCell)
        m_source->GetItemColors(row.item, col, colors.text, colors.background);
    bool const isReport = GetViewType() == LVS_REPORT;
    bool const hasImage = m_images != nullptr && info.nImage < tovUsualImage;
    QRect const label = TovQRect(m_layout.GetPartRect(row.item, col, eListPartLabel, hasImage));
    bool const isSelected =
        (row.state & LVIS_SELECTED) != 0 && (!isReport || col == 0 || FullRowSelect() != 0);
    painter.fillRect(TovQRect(cell), TovQColor(colors.background));
    QRect const marked = isReport && FullRowSelect() != 0 ? TovQRect(cell) : label;
    if (isSelected) painter.fillRect(marked, palette().color(row.group, QPalette::Highlight));
    if (m_showCheckboxes != 0 && col == 0) {
        QStyleOptionButton box;
        box.initFrom(this);
        CRect const place = m_layout.GetPartRect(row.item, col, eListPartCheck, hasImage);
        QSize const size(style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, this),
                         style()->pixelMetric(QStyle::PM_IndicatorHeight, nullptr, this));
        box.rect = QStyle::alignedRect(layoutDirection(), Qt::AlignCenter, size, TovQRect(place))
                       .intersected(TovQRect(cell));
        box.state |= (row.state & tovStateChecked) != 0 ? QStyle::State_On : QStyle::State_Off;
        if ((row.state & LVIS_CUT) != 0) box.state &= ~QStyle::State_Enabled;
        style()->drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &box, &painter, this);
    }
    if (hasImage) {
        CRect const place = m_layout.GetPartRect(row.item, col, eListPartImage, true);
        int const top = place.top + (place.Height() - GetImageHeight()) / 2;
        painter.setOpacity((row.state & LVIS_CUT) != 0 ? 0.5 : 1);
        m_images->Draw(&dc, static_cast<int>(info.nImage), {place.left, top}, ILD_TRANSPARENT);
        painter.setOpacity(1);
    }
    if (m_showGridlines != 0 && isReport) {
        QStyleOptionViewItem option;
        option.initFrom(this);
        int const line = style()->styleHint(QStyle::SH_Table_GridLineColor, &option, this);
        painter.setPen(QColor::fromRgba(static_cast<QRgb>(line)));
        painter.drawLine(cell.right - 1, cell.top, cell.right - 1, cell.bottom - 1);
        painter.drawLine(cell.left, cell.bottom - 1, cell.right - 1, cell.bottom - 1);
    }
    if (info.strText.empty()) return;
    int const alignment = isReport && col != 0        ? m_header->GetColumnAlignment(col)
                          : GetViewType() == LVS_ICON ? LVCFMT_CENTER
                                                      : LVCFMT_LEFT;
    int const gap = style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 1;
    QRect const place = label.adjusted(gap, 0, -gap, 0);
    QString text = TovQString(info.strText);
    text.replace(QLatin1Char('\n'), QLatin1Char(' '));
    int width = fontMetrics().horizontalAdvance(text);
    if (width > place.width()) {
        text = fontMetrics().elidedText(text, Qt::ElideRight, std::max(place.width(), 0));
        width = fontMetrics().horizontalAdvance(text);
        if (width > place.width()) return;
    }
    int const free = place.width() - width;
    int const left = place.left() + (alignment == LVCFMT_RIGHT    ? free
                                     : alignment == LVCFMT_CENTER ? free / 2
                                                                  : 0);
    int const height = GetViewType() == LVS_ICON ? fontMetrics().height() : place.height();
    int const base = place.top() + (height - fontMetrics().height()) / 2 + fontMetrics().ascent();
    painter.setPen(isSelected ? palette().color(row.group, QPalette::HighlightedText)
                              : TovQColor(colors.text));
    painter.drawText(left, base, text);
}

// --- Keys and the mouse

void CTovListCtrlQuickDraw::keyPressEvent(QKeyEvent* event) {
    TOV_LISTKEYS const keys{event->modifiers().testFlag(Qt::ShiftModifier),
                            event->modifiers().testFlag(Qt::ControlModifier)};
    int const key = KeyNumber(event->key());
    if (key != 0 && !event->modifiers().testFlag(Qt::AltModifier)) {
        CSize const step = CTovListInput::GetScrollStep(key, GetRowHeight(), height());
        if (m_scrollWithoutSelchange != 0)
            Scroll(step.cx, step.cy);
        else
            m_input.HandleNavigation(key, keys);
        return;
    }
    unsigned int const focused = m_actions->GetFocusedItem();
    if (event->key() == Qt::Key_Space) {
        m_input.HandleSpace(keys);
    } else if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
               focused < m_layout.GetItemCount()) {
        Q_EMIT itemActivated(focused);
    } else {
        event->ignore();  // a dialog's own
    }
}

void CTovListCtrlQuickDraw::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    m_pressedAt = event->position().toPoint();
    TOV_LISTHIT const hit = m_layout.HitTest(TovPoint(m_pressedAt));
    TOV_LISTKEYS const keys{event->modifiers().testFlag(Qt::ShiftModifier),
                            event->modifiers().testFlag(Qt::ControlModifier)};
    eTovListPress const press = m_input.OnLButtonDown(hit, keys);
    m_pressedItem = press == eListPressRow ? hit.item : tovNoIndex;
    if (press == eListPressBand) {
        m_band->Begin(TovPoint(m_pressedAt), keys);
        m_bandTimer.start(bandInterval, this);
    }
    if (hit.item != tovNoIndex) Q_EMIT itemClicked(hit.item, hit.col);
}

void CTovListCtrlQuickDraw::mouseMoveEvent(QMouseEvent* event) {
    QPoint const point = event->position().toPoint();
    if (m_band->IsActive()) return TrackBand(point);
    if (m_pressedItem == tovNoIndex || !event->buttons().testFlag(Qt::LeftButton)) return;
    if ((point - m_pressedAt).manhattanLength() < QApplication::startDragDistance()) return;
    Q_EMIT dragStarted(std::exchange(m_pressedItem, tovNoIndex));
}

void CTovListCtrlQuickDraw::TrackBand(QPoint const& point) {
    m_band->Track(TovPoint(point), QApplication::startDragDistance());
    viewport()->update();
}

void CTovListCtrlQuickDraw::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    m_pressedItem = tovNoIndex;
    if (!m_band->IsActive()) return;
    m_bandTimer.stop();
    bool const wasDragged = m_band->IsDragged();
    m_band->End();
    if (!wasDragged) m_input.OnBackgroundClick();
    viewport()->update();
}

void CTovListCtrlQuickDraw::mouseDoubleClickEvent(QMouseEvent* event) {
    TOV_LISTHIT const hit = m_layout.HitTest(TovPoint(event->position().toPoint()));
    mousePressEvent(event);
    m_pressedItem = tovNoIndex;
    bool const isOnBox = hit.flags == LVHT_ONITEMSTATEICON;
    if (event->button() == Qt::LeftButton && hit.item != tovNoIndex && !isOnBox)
        Q_EMIT itemActivated(hit.item);
}

void CTovListCtrlQuickDraw::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_bandTimer.timerId()) return CWndOn::timerEvent(event);
    QPoint const point = viewport()->mapFromGlobal(QCursor::pos());
    CSize const lines = m_band->GetScrollLines(TovPoint(point));
    if (!m_band->IsDragged() || lines == CSize{}) return;
    CPoint const before = Origin();
    for (bool const vertical : {false, true}) {
        CTovListLayout::Bar const bar = m_layout.GetBar(vertical);
        m_layout.SetBar(vertical, bar.position + (vertical ? lines.cy : lines.cx) * bar.line);
    }
    MoveBy(before);
    TrackBand(point);
}

void CTovListCtrlQuickDraw::focusInEvent(QFocusEvent* event) {
    CWndOn::focusInEvent(event);
    viewport()->update();
}

void CTovListCtrlQuickDraw::focusOutEvent(QFocusEvent* event) {
    CWndOn::focusOutEvent(event);
    viewport()->update();
}

}  // namespace tov
