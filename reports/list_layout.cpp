// All styles are grids of cells that are filled along one direction first; a report has one column of them.
#include <tov310/list_layout.h>

#include <tov310/list_port.h>

#include <algorithm>
#include <limits>

namespace tov {
namespace {

constexpr int labelGap = 2;

int Limited(std::int64_t value) {
    return static_cast<int>(
        std::clamp<std::int64_t>(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

constexpr std::int64_t Ceiling(std::int64_t value, std::int64_t by) {
    return (value + by - 1) / by;
}

constexpr std::int64_t FloorOf(std::int64_t value, std::int64_t by) {
    return value >= 0 ? value / by : -Ceiling(-value, by);
}

}  // namespace

void CTovListLayout::SetStyle(unsigned long style) {
    if (m_style == (style & LVS_TYPEMASK)) return;
    unsigned int const top = GetTopRow();
    m_style = style & LVS_TYPEMASK;
    ContentRect const rect = RectOf(top);
    MoveTo(m_style == LVS_LIST ? rect.left : 0, rect.top);
}

void CTovListLayout::SetItemCount(unsigned int count) {
    m_count = count;
    Settle();
}

void CTovListLayout::SetArea(CSize const& area) {
    unsigned int const top = GetTopRow();
    m_area = {std::max(area.cx, 0), std::max(area.cy, 0)};
    if (m_style == LVS_LIST) m_x = RectOf(top).left;  // other rows stand in other columns then
    Settle();
}

void CTovListLayout::SetRowHeight(int height) {
    unsigned int const top = GetTopRow();
    m_rowHeight = std::max(height, 1);
    if (m_style == LVS_REPORT) m_y = std::int64_t{top} * m_rowHeight;
    Settle();
}

void CTovListLayout::SetCellSize(CSize const& size) {
    m_cell = {std::max(size.cx, 1), std::max(size.cy, 1)};
    Settle();
}

void CTovListLayout::SetColumns(std::vector<int> const& widths, Indexes const& order) {
    m_columns.assign(widths.size(), {});
    m_order.clear();
    m_width = 0;
    std::vector<bool> isPlaced(widths.size());
    for (unsigned int const col : order) {
        if (col >= widths.size() || isPlaced[col]) continue;
        isPlaced[col] = true;
        m_order.push_back(col);
        int const width = std::max(widths[col], 0);
        m_columns[col] = {Limited(m_width), width};
        m_width += width;
    }
    Settle();
}

void CTovListLayout::SetCheckWidth(int width) {
    m_checkWidth = std::max(width, 0);
}

void CTovListLayout::SetImageSize(CSize const& size) {
    m_imageSize = {std::max(size.cx, 0), std::max(size.cy, 0)};
}

CTovListLayout::Grid CTovListLayout::GetGrid() const {
    std::int64_t const count = std::max(m_count, 1u);
    switch (m_style) {
        case LVS_REPORT:
            return {1, count, m_width, m_rowHeight, true};
        case LVS_LIST: {
            std::int64_t const rows = std::max(m_area.cy / m_rowHeight, 1);
            return {Ceiling(count, rows), rows, m_cell.cx, m_rowHeight, true};
        }
        default: {
            std::int64_t const columns = std::max(m_area.cx / m_cell.cx, 1);
            int const height = m_style == LVS_ICON ? m_cell.cy : m_rowHeight;
            return {columns, Ceiling(count, columns), m_cell.cx, height, false};
        }
    }
}

std::pair<std::int64_t, std::int64_t> CTovListLayout::PlaceOf(Grid const& grid, unsigned int item) const {
    std::int64_t const i = item;
    if (grid.isDownFirst) return {i / grid.rows, i % grid.rows};
    return {i % grid.columns, i / grid.columns};
}

unsigned int CTovListLayout::ItemAt(Grid const& grid, std::int64_t column, std::int64_t row) const {
    if (column < 0 || column >= grid.columns || row < 0 || row >= grid.rows) return tovNoIndex;
    std::int64_t const i = grid.isDownFirst ? column * grid.rows + row : row * grid.columns + column;
    return i < m_count ? static_cast<unsigned int>(i) : tovNoIndex;
}

CTovListLayout::ContentRect CTovListLayout::RectOf(unsigned int item) const {
    if (item >= m_count) return {};
    Grid const grid = GetGrid();
    auto const [column, row] = PlaceOf(grid, item);
    return {column * grid.width, row * grid.height, (column + 1) * grid.width, (row + 1) * grid.height};
}

CTovPoint<std::int64_t> CTovListLayout::ToContent(CPoint const& point) const {
    return {point.x + m_x, point.y + m_y};
}

CRect CTovListLayout::FromContent(ContentRect const& rect) const {
    return {Limited(rect.left - m_x), Limited(rect.top - m_y), Limited(rect.right - m_x),
            Limited(rect.bottom - m_y)};
}

CRect CTovListLayout::GetItemRect(unsigned int item) const {
    return item < m_count ? FromContent(RectOf(item)) : CRect{};
}

CRect CTovListLayout::GetPartRect(unsigned int item, unsigned int col, eTovListPart part,
                                  bool hasImage) const {
    if (item >= m_count || (m_style == LVS_REPORT && col >= m_columns.size())) return {};
    CRect cell = GetItemRect(item);
    if (m_style == LVS_REPORT) {
        Column const& column = m_columns[col];
        cell.left = Limited(column.left - m_x);
        cell.right = Limited(std::int64_t{cell.left} + column.width);
    }
    if (part == eListPartCell) return cell;
    int const check = m_style != LVS_REPORT || col == 0 ? m_checkWidth : 0;
    CSize const image = hasImage ? m_imageSize : CSize{};
    if (m_style == LVS_ICON) {
        int const imageLeft = cell.left + std::max((cell.Width() - check - image.cx) / 2, 0) + check;
        int const bottom = std::min(cell.top + labelGap + std::max(image.cy, check), cell.bottom);
        if (part == eListPartCheck) return {imageLeft - check, cell.top + labelGap, imageLeft, bottom};
        if (part == eListPartImage)
            return {imageLeft, cell.top + labelGap, std::min(imageLeft + image.cx, cell.right), bottom};
        return {cell.left, std::min(bottom + labelGap, cell.bottom), cell.right, cell.bottom};
    }
    int const imageLeft = std::min(cell.left + check, cell.right);
    int const imageRight = std::min(imageLeft + image.cx, cell.right);
    if (part == eListPartCheck) return {cell.left, cell.top, imageLeft, cell.bottom};
    if (part == eListPartImage) return {imageLeft, cell.top, imageRight, cell.bottom};
    return {imageRight, cell.top, cell.right, cell.bottom};
}

unsigned int CTovListLayout::GetColumnAt(int x) const {
    std::int64_t const at = x + m_x;
    for (unsigned int const col : m_order) {
        Column const& column = m_columns[col];
        if (at >= column.left && at < std::int64_t{column.left} + column.width) return col;
    }
    return tovNoIndex;
}

TOV_LISTHIT CTovListLayout::HitTest(CPoint const& point) const {
    if (point.x < 0 || point.y < 0 || point.x >= m_area.cx || point.y >= m_area.cy) return {};
    Grid const grid = GetGrid();
    if (grid.width == 0) return {};
    auto const [x, y] = ToContent(point);
    TOV_LISTHIT hit;
    hit.item = ItemAt(grid, FloorOf(x, grid.width), FloorOf(y, grid.height));
    if (hit.item == tovNoIndex) return {};
    if (m_style == LVS_REPORT) hit.col = GetColumnAt(point.x);
    auto const isIn = [&](eTovListPart part) {
        CRect const rect = GetPartRect(hit.item, hit.col, part);
        return point.x >= rect.left && point.x < rect.right && point.y >= rect.top && point.y < rect.bottom;
    };
    hit.flags = isIn(eListPartCheck)   ? LVHT_ONITEMSTATEICON
                : isIn(eListPartImage) ? LVHT_ONITEMICON
                                       : LVHT_ONITEMLABEL;
    return hit;
}

unsigned int CTovListLayout::GetNextItem(unsigned int item, eTovListWay way) const {
    if (item >= m_count) return tovNoIndex;
    Grid const grid = GetGrid();
    bool const isAcross = way == eListWayLeft || way == eListWayRight;
    int const step = way == eListWayUp || way == eListWayLeft ? -1 : 1;
    if (m_style == LVS_LIST && !isAcross) {
        std::int64_t const next = std::int64_t{item} + step;
        return next >= 0 && next < m_count ? static_cast<unsigned int>(next) : tovNoIndex;
    }
    auto const [column, row] = PlaceOf(grid, item);
    return isAcross ? ItemAt(grid, column + step, row) : ItemAt(grid, column, row + step);
}

unsigned int CTovListLayout::GetCountPerPage() const {
    return static_cast<unsigned int>(std::max<std::int64_t>(m_area.cy / GetGrid().height, 1));
}

bool CTovListLayout::IsSameColumn(unsigned int a, unsigned int b) const {
    Grid const grid = GetGrid();
    return PlaceOf(grid, a).first == PlaceOf(grid, b).first;
}

CTovListLayout::Indexes CTovListLayout::GetItemsIn(ContentRect const& content, int inset) const {
    Indexes items;
    Grid const grid = GetGrid();
    if (m_count == 0 || grid.width <= 2 * inset || grid.height <= 2 * inset) return items;
    // The first and the last cell along one direction whose inner part from `inset` on is touched.
    auto const range = [inset](std::int64_t from, std::int64_t to, std::int64_t size, std::int64_t cells) {
        return std::pair(std::max<std::int64_t>(FloorOf(from + inset, size), 0),
                         std::min(FloorOf(to - inset - 1, size), cells - 1));
    };
    auto const [firstColumn, lastColumn] = range(content.left, content.right, grid.width, grid.columns);
    auto const [firstRow, lastRow] = range(content.top, content.bottom, grid.height, grid.rows);
    auto const take = [&](std::int64_t column, std::int64_t row) {
        unsigned int const item = ItemAt(grid, column, row);
        if (item != tovNoIndex) items.push_back(item);
    };
    if (content.left >= content.right || content.top >= content.bottom) return items;
    if (grid.isDownFirst) {
        for (std::int64_t column = firstColumn; column <= lastColumn; ++column)
            for (std::int64_t row = firstRow; row <= lastRow; ++row)
                take(column, row);
    } else {
        for (std::int64_t row = firstRow; row <= lastRow; ++row)
            for (std::int64_t column = firstColumn; column <= lastColumn; ++column)
                take(column, row);
    }
    return items;
}

unsigned int CTovListLayout::GetTopRow() const {
    Grid const grid = GetGrid();
    std::int64_t const column = grid.width > 0 && m_style == LVS_LIST ? m_x / grid.width : 0;
    unsigned int const item = ItemAt(grid, column, m_y / grid.height);
    return item == tovNoIndex ? 0 : item;
}

int CTovListLayout::GetContentWidth() const {
    return Limited(m_width);
}

// In the report and the list style the last row or column is whole in sight at the end.
CTovPoint<std::int64_t> CTovListLayout::Furthest() const {
    Grid const grid = GetGrid();
    auto const whole = [](std::int64_t cells, std::int64_t size, int area) {
        return std::max<std::int64_t>(cells - std::max<std::int64_t>(area / size, 1), 0) * size;
    };
    switch (m_style) {
        case LVS_REPORT:
            return {std::max<std::int64_t>(m_width - m_area.cx, 0), whole(grid.rows, grid.height, m_area.cy)};
        case LVS_LIST:
            return {whole(grid.columns, grid.width, m_area.cx), 0};
        default:
            return {0, std::max<std::int64_t>(grid.rows * grid.height - m_area.cy, 0)};
    }
}

bool CTovListLayout::MoveTo(std::int64_t x, std::int64_t y) {
    Grid const grid = GetGrid();
    auto const most = Furthest();
    x = std::clamp<std::int64_t>(x, 0, most.x);
    y = std::clamp<std::int64_t>(y, 0, most.y);
    if (m_style == LVS_LIST) x -= x % grid.width;
    if (m_style == LVS_REPORT) y -= y % grid.height;
    bool const hasMoved = x != m_x || y != m_y;
    m_x = x;
    m_y = y;
    return hasMoved;
}

bool CTovListLayout::Scroll(int dx, int dy) {
    Grid const grid = GetGrid();
    std::int64_t const across = m_style == LVS_LIST ? dx / grid.width * grid.width : dx;
    std::int64_t const down = m_style == LVS_REPORT ? dy / grid.height * grid.height : dy;
    return MoveTo(m_x + across, m_y + down);
}

CTovListLayout::Bar CTovListLayout::GetBar(bool vertical) const {
    Grid const grid = GetGrid();
    auto const most = Furthest();
    std::int64_t const unit = vertical              ? m_style == LVS_REPORT ? grid.height : 1
                              : m_style == LVS_LIST ? grid.width
                                                    : 1;
    int const area = vertical ? m_area.cy : m_area.cx;
    int const line = unit > 1 ? 1 : vertical ? Limited(grid.height) : 10;
    return {Limited((vertical ? m_y : m_x) / unit), Limited((vertical ? most.y : most.x) / unit),
            Limited(std::max<std::int64_t>(area / unit, 1)), line};
}

bool CTovListLayout::SetBar(bool vertical, int position) {
    Grid const grid = GetGrid();
    if (vertical) return MoveTo(m_x, m_style == LVS_REPORT ? position * grid.height : position);
    return MoveTo(m_style == LVS_LIST ? position * grid.width : position, m_y);
}

int CTovListLayout::EnsureItemVisible(unsigned int item) {
    if (item >= m_count) return 0;
    ContentRect const rect = RectOf(item);
    auto const near = [](std::int64_t at, std::int64_t from, std::int64_t to, std::int64_t area) {
        if (from < at || to - from > area) return from;
        return to > at + area ? to - area : at;
    };
    if (m_style == LVS_REPORT) {
        std::int64_t const whole = std::max(m_area.cy / m_rowHeight, 1) * std::int64_t{m_rowHeight};
        MoveTo(m_x, near(m_y, rect.top, rect.bottom, whole));
    } else if (m_style == LVS_LIST) {
        std::int64_t const whole = std::max(m_area.cx / m_cell.cx, 1) * std::int64_t{m_cell.cx};
        MoveTo(near(m_x, rect.left, rect.right, whole), m_y);
    } else {
        MoveTo(m_x, near(m_y, rect.top, rect.bottom, m_area.cy));
    }
    return 1;
}

int CTovListLayout::EnsureColVisible(unsigned int col, int alignment) {
    if (m_style != LVS_REPORT || m_count == 0 || col >= m_columns.size() || m_columns[col].width == 0)
        return 0;
    int const left = Limited(m_columns[col].left - m_x);
    int const right = Limited(std::int64_t{left} + m_columns[col].width);
    MoveTo(m_x + TovColumnScrollStep(left, right, m_area.cx, alignment), m_y);
    return 1;
}

int TovColumnScrollStep(int left, int right, int width, int alignment) {
    if (left >= 0 && right <= width) return 0;
    bool const isWider = std::int64_t{right} - left > width;
    if (isWider && alignment == LVCFMT_CENTER)
        return Limited(left + (std::int64_t{right} - left - width) / 2);
    if (alignment == LVCFMT_LEFT || !isWider) {
        if (left < 0) return left;
        return Limited(std::min<std::int64_t>(std::int64_t{right} - width, left));
    }
    return Limited(std::int64_t{right} - width);
}

}  // namespace tov
