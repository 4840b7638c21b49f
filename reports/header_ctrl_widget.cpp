#include <tov310/header_ctrl.h>

#include <tov310/fitted_text.h>
#include <tov310/painter_dc.h>
#include <tov310/qt_values.h>
#include <tov310/requirements.h>

#include <QAbstractTableModel>
#include <QCursor>
#include <QMouseEvent>
#include <QStyleOptionHeader>

#include <algorithm>
#include <tuple>

namespace tov {
namespace {

constexpr int toolTipDelay = 500;  // milliseconds

}  // namespace

// QHeaderView takes its labels from a model, which is a table without rows.
class CTovHeaderCtrl::Columns final : public QAbstractTableModel {
 public:
    struct Column {
        QString label;
        int alignment = LVCFMT_LEFT;
    };

    int rowCount(QModelIndex const&) const override { return 0; }
    int columnCount(QModelIndex const&) const override { return static_cast<int>(m_columns.size()); }
    QVariant data(QModelIndex const&, int) const override { return {}; }
    QVariant headerData(int section, Qt::Orientation, int role) const override {
        if (role != Qt::DisplayRole) return {};
        return m_columns[static_cast<std::size_t>(section)].label;
    }

    void Insert(unsigned int col, Column column) {
        beginInsertColumns({}, static_cast<int>(col), static_cast<int>(col));
        m_columns.insert(m_columns.begin() + col, std::move(column));
        endInsertColumns();
    }
    void Erase(unsigned int col) {
        beginRemoveColumns({}, static_cast<int>(col), static_cast<int>(col));
        m_columns.erase(m_columns.begin() + col);
        endRemoveColumns();
    }
    Column* At(unsigned int col) { return col < m_columns.size() ? &m_columns[col] : nullptr; }

 private:
    std::vector<Column> m_columns;
};

CTovHeaderCtrlQuickDraw::CTovHeaderCtrlQuickDraw(QWidget* parent) : CWndOn(Qt::Horizontal, parent) {}

int CTovHeaderCtrlQuickDraw::StopWindowUpdate() {
    viewport()->setUpdatesEnabled(false);
    return m_nStopCount++;
}

void CTovHeaderCtrlQuickDraw::ContinueWindowUpdate(int before) {
    m_nStopCount = std::max(before, 0);
    if (m_nStopCount == 0) viewport()->setUpdatesEnabled(true);
}

CTovHeaderCtrl::CTovHeaderCtrl(QWidget* parent)
    : CTovHeaderCtrlQuickDraw(parent), m_columns(std::make_unique<Columns>()) {
    setModel(m_columns.get());
    setSectionsClickable(true);
    setSectionsMovable(true);
    setHighlightSections(false);
    setMinimumSectionSize(0);
    setStretchLastSection(false);
    setMouseTracking(true);
    connect(this, &QHeaderView::sectionClicked, this, [this](int col) {
        if (m_sortAllowed != 0) Q_EMIT columnClicked(static_cast<unsigned int>(col));
    });
}

CTovHeaderCtrl::~CTovHeaderCtrl() {
    setModel(nullptr);
}

void CTovHeaderCtrl::InsertColumn(unsigned int col, int alignment, int width, char const* label) {
    col = std::min(col, GetColumns());
    m_marks.InsertColumn(col);
    m_columns->Insert(col, {TovQString(label), alignment});
    moveSection(visualIndex(static_cast<int>(col)), static_cast<int>(col));
    resizeSection(static_cast<int>(col), std::max(width, 0));
}

void CTovHeaderCtrl::DeleteColumn(unsigned int col) {
    if (col >= GetColumns()) return;
    m_marks.DeleteColumn(col);
    m_columns->Erase(col);
    m_toolTipCol = tovNoIndex;
}

void CTovHeaderCtrl::SetColumnLabel(unsigned int col, char const* label) {
    Columns::Column* const column = m_columns->At(col);
    if (column == nullptr) return;
    column->label = TovQString(label);
    Q_EMIT m_columns->headerDataChanged(Qt::Horizontal, static_cast<int>(col), static_cast<int>(col));
}

CString CTovHeaderCtrl::GetColumnLabel(unsigned int col) const {
    Columns::Column const* const column = m_columns->At(col);
    return column != nullptr ? TovText(column->label) : CString();
}

void CTovHeaderCtrl::SetColumnAlignment(unsigned int col, int alignment) {
    Columns::Column* const column = m_columns->At(col);
    if (column == nullptr) return;
    column->alignment = alignment;
    Q_EMIT m_columns->headerDataChanged(Qt::Horizontal, static_cast<int>(col), static_cast<int>(col));
}

int CTovHeaderCtrl::GetColumnAlignment(unsigned int col) const {
    Columns::Column const* const column = m_columns->At(col);
    return column != nullptr ? column->alignment : LVCFMT_LEFT;
}

int CTovHeaderCtrl::GetColumnWidth(unsigned int col) {
    return col < GetColumns() ? sectionSize(static_cast<int>(col)) : 0;
}

void CTovHeaderCtrl::SetColumnWidth(unsigned int col, int width) {
    if (col < GetColumns()) resizeSection(static_cast<int>(col), std::max(width, 0));
}

std::vector<unsigned int> CTovHeaderCtrl::GetColumnOrder() {
    std::vector<unsigned int> order;
    for (int place = 0; place < count(); ++place)
        order.push_back(static_cast<unsigned int>(logicalIndex(place)));
    return order;
}

void CTovHeaderCtrl::SetColumnOrder(std::vector<unsigned int> const& order) {
    std::vector<unsigned int> present = GetColumnOrder();
    if (!std::is_permutation(order.begin(), order.end(), present.begin(), present.end())) return;
    for (int place = 0; place < count(); ++place)
        moveSection(visualIndex(static_cast<int>(order[static_cast<std::size_t>(place)])), place);
}

void CTovHeaderCtrl::SetSortColumns(std::vector<SORT_STATE_SCREENCOL> const& keys) {
    if (m_marks.SetSortColumns(keys)) Invalidate();
}

void CTovHeaderCtrl::Invalidate() {
    viewport()->update();
}

void CTovHeaderCtrl::ColSizingAllowed(int allowed) {
    m_colSizingAllowed = allowed;
    setSectionResizeMode(allowed != 0 ? QHeaderView::Interactive : QHeaderView::Fixed);
}

int CTovHeaderCtrl::ColumnTooltips(int* longTextOnly) const {
    if (longTextOnly != nullptr) *longTextOnly = m_tooltipsLongTextOnly;
    return m_columnTooltips;
}

void CTovHeaderCtrl::ColumnTooltips(int show, int longTextOnly) {
    m_columnTooltips = show;
    m_tooltipsLongTextOnly = longTextOnly;
    if (show == 0) OnHeaderMouseLeave();
}

void CTovHeaderCtrl::SetInbuildIcon(unsigned int col, eInbuildIcon icon, unsigned int number) {
    if (m_marks.SetInbuildIcon(col, icon, number)) Invalidate();
}

int CTovHeaderCtrl::GetInbuildIcon(unsigned int col, eInbuildIcon& icon, unsigned int& number) const {
    TOV_HEADERCOLUMN const* const column = m_marks.GetColumn(col);
    icon = column != nullptr ? column->icon : eInbuildIconNone;
    number = column != nullptr ? column->number : 0;
    return column != nullptr;
}

TOV_HEADERMEASURES const& CTovHeaderCtrl::Measures() const {
    if (m_measures.textPadding < 0)
        m_measures = TOV_HEADERMEASURES::Of(GetHeaderTextExtent("X"), TovIsComCtlXP() != 0);
    return m_measures;
}

CSize CTovHeaderCtrl::GetHeaderTextExtent(char const* text) const {
    QFontMetrics const metrics = fontMetrics();
    return {metrics.horizontalAdvance(TovQString(text)), metrics.height()};
}

int CTovHeaderCtrl::GetHeaderIconExtent() const {
    return Measures().iconExtent;
}

int CTovHeaderCtrl::GetHeaderWidth(unsigned int col) {
    constexpr int mostCharacters = 259;
    Columns::Column const* const column = m_columns->At(col);
    if (column == nullptr) return -1;
    CString const label = TovText(column->label.left(mostCharacters));
    return m_marks.GetWidth(col, GetHeaderTextExtent(label.c_str()).cx, Measures(), false);
}

// The style draws the cell and the mark, so that a list looks like any other on its desktop.
void CTovHeaderCtrl::paintSection(QPainter* painter, QRect const& rect, int logicalIndex) const {
    auto const col = static_cast<unsigned int>(logicalIndex);
    Columns::Column const* const column = m_columns->At(col);
    if (column == nullptr || !rect.isValid()) return;
    painter->save();
    QStyleOptionHeader option;
    initStyleOption(&option);
    option.rect = rect;
    option.section = logicalIndex;
    option.textAlignment = Qt::AlignLeft | Qt::AlignVCenter;
    int const place = visualIndex(logicalIndex);
    option.position = count() == 1           ? QStyleOptionHeader::OnlyOneSection
                      : place == 0           ? QStyleOptionHeader::Beginning
                      : place == count() - 1 ? QStyleOptionHeader::End
                                             : QStyleOptionHeader::Middle;
    if (isEnabled() && rect.contains(viewport()->mapFromGlobal(QCursor::pos())))
        option.state |= QStyle::State_MouseOver;
    style()->drawControl(QStyle::CE_HeaderSection, &option, painter, this);

    TOV_HEADERCOLUMN const& mark = *m_marks.GetColumn(col);
    QString const number = mark.number != 0 ? QString::number(mark.number) : QString();
    CTovHeaderMarks places = m_marks;
    places.CalcDrawingInfos(col, TovRect(rect), fontMetrics().horizontalAdvance(column->label),
                            fontMetrics().horizontalAdvance(number), column->alignment, Measures(), false);
    TOV_HEADERCOLUMN const& drawn = *places.GetColumn(col);
    painter->setFont(font());
    painter->setPen(option.palette.color(QPalette::ButtonText));
    QRect const text = TovQRect(drawn.text);
    painter->drawText(text, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                      fontMetrics().elidedText(column->label, Qt::ElideRight, text.width()));
    if (drawn.mark.Width() > 0) {
        option.rect = TovQRect(drawn.mark);
        painter->drawText(option.rect, Qt::AlignRight | Qt::AlignVCenter, number);
        option.rect.setWidth(Measures().iconExtent);
        option.sortIndicator =
            mark.icon == eInbuildIconDescending ? QStyleOptionHeader::SortDown : QStyleOptionHeader::SortUp;
        style()->drawPrimitive(QStyle::PE_IndicatorHeaderArrow, &option, painter, this);
    }
    painter->restore();
}

bool CTovHeaderCtrl::IsOnDivider(int x) const {
    int const grip = style()->pixelMetric(QStyle::PM_HeaderGripMargin, nullptr, this);
    for (int col = 0; col < count(); ++col) {
        int const edge = sectionViewportPosition(col) + sectionSize(col);
        if (x >= edge - grip && x < edge + grip) return true;
    }
    return false;
}

void CTovHeaderCtrl::mousePressEvent(QMouseEvent* event) {
    OnHeaderMouseLeave();
    bool const isOnDivider = IsOnDivider(event->position().toPoint().x());
    if (event->button() == Qt::LeftButton && m_ignoreLButtonClick != 0 && !isOnDivider) return;
    if (event->button() == Qt::RightButton && m_ignoreRButtonClick != 0) return;
    CTovHeaderCtrlQuickDraw::mousePressEvent(event);
}

void CTovHeaderCtrl::mouseMoveEvent(QMouseEvent* event) {
    CTovHeaderCtrlQuickDraw::mouseMoveEvent(event);
    if (event->buttons() == Qt::NoButton) OnHeaderMouseMove(TovPoint(event->position().toPoint()));
}

bool CTovHeaderCtrl::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::Leave || event->type() == QEvent::Hide) OnHeaderMouseLeave();
    return CTovHeaderCtrlQuickDraw::viewportEvent(event);
}

void CTovHeaderCtrl::OnHeaderMouseMove(CPoint const& point) {
    int const col = logicalIndexAt(point.x);
    if (col >= 0 && static_cast<unsigned int>(col) == m_toolTipCol) return;
    OnHeaderMouseLeave();
    if (m_columnTooltips != 0 && col >= 0) m_toolTipTimer.start(toolTipDelay, this);
}

void CTovHeaderCtrl::OnHeaderMouseLeave() {
    m_toolTipTimer.stop();
    m_toolTipCol = tovNoIndex;
    m_toolTip.Hide();
}

void CTovHeaderCtrl::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_toolTipTimer.timerId()) return CTovHeaderCtrlQuickDraw::timerEvent(event);
    m_toolTipTimer.stop();
    OnShowColumnToolTip(TovPoint(viewport()->mapFromGlobal(QCursor::pos())));
}

void CTovHeaderCtrl::OnShowColumnToolTip(CPoint const& point) {
    int const col = point.x > 0 && point.y > 0 && point.y < height() ? logicalIndexAt(point.x) : -1;
    if (col < 0) return OnHeaderMouseLeave();
    OnShowColumnToolTip(static_cast<unsigned int>(col));
}

void CTovHeaderCtrl::OnShowColumnToolTip(unsigned int col) {
    CString text;
    if (OnGetColumnToolTip(col, text) == 0 || text.empty()) return OnHeaderMouseLeave();
    m_toolTipCol = col;
    std::ignore = m_toolTip.CreatePopUpNA(TovWnd(this));
    QPoint const place =
        viewport()->mapToGlobal(QPoint(sectionViewportPosition(static_cast<int>(col)), height()));
    m_toolTip.ShowLeftTop(text.c_str(), place.x(), place.y());
}

int CTovHeaderCtrl::OnGetColumnToolTip(unsigned int col, CString& text) {
    text = GetColumnLabel(col);
    return m_tooltipsLongTextOnly == 0 || GetHeaderWidth(col) > GetColumnWidth(col);
}

void CTovHeaderCtrl::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) m_measures = {};
    CTovHeaderCtrlQuickDraw::changeEvent(event);
}

void CTovHeaderCtrlSort::NoSort() {
    if (m_marks.NoSort()) Invalidate();
}

void CTovHeaderCtrlSort::UpdateCurrentSortedColumns() {
    if (m_marks.UpdateCurrentSortedColumns()) Invalidate();
}

void CTovHeaderCtrlSort::SetSortColumn(unsigned int col, int descending) {
    SetSortColumns({{col, descending == 0}});
}

void CTovHeaderCtrlSort::SetSortColumns(std::vector<SORT_STATE_SCREENCOL> const& keys) {
    CTovHeaderCtrl::SetSortColumns(keys);
}

}  // namespace tov
