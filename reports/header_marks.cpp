#include <tov310/header_marks.h>

#include <algorithm>

namespace tov {
namespace {

constexpr int leastPadding = 5;
constexpr int roomyPadding = 5;
constexpr int iconBorder = 6;

bool IsSameColumns(CTovHeaderMarks::Keys const& a, CTovHeaderMarks::Keys const& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](auto const& one, auto const& other) { return one.nCol == other.nCol; });
}

bool IsInside(CRect const& rect, CPoint const& point) {
    return point.x >= rect.left && point.x < rect.right && point.y >= rect.top && point.y < rect.bottom;
}

}  // namespace

TOV_HEADERMEASURES TOV_HEADERMEASURES::Of(CSize const& letter, bool isRoomy) {
    int const extent = std::max(letter.cy - iconBorder, 0);
    return {std::max(letter.cx, leastPadding) + (isRoomy ? roomyPadding : 0), extent, extent};
}

void CTovHeaderMarks::InsertColumn(unsigned int col) {
    col = std::min(col, GetColumns());
    m_columns.insert(m_columns.begin() + col, TOV_HEADERCOLUMN{});
    for (SORT_STATE_SCREENCOL& key : m_keys)
        if (key.nCol != tovNoIndex && key.nCol >= col) ++key.nCol;
}

void CTovHeaderMarks::DeleteColumn(unsigned int col) {
    if (col >= m_columns.size()) return;
    m_columns.erase(m_columns.begin() + col);
    for (SORT_STATE_SCREENCOL& key : m_keys) {
        if (key.nCol == tovNoIndex || key.nCol < col) continue;
        key.nCol = key.nCol == col ? tovNoIndex : key.nCol - 1;
    }
}

bool CTovHeaderMarks::SetInbuildIcon(unsigned int col, eInbuildIcon icon, unsigned int number) {
    TOV_HEADERCOLUMN* const column = GetColumn(col);
    if (column == nullptr || (column->icon == icon && column->number == number)) return false;
    column->icon = icon;
    column->number = number;
    return true;
}

bool CTovHeaderMarks::NoSort() {
    bool hasChanged = false;
    for (SORT_STATE_SCREENCOL& key : m_keys) {
        if (key.nCol == tovNoIndex) continue;
        hasChanged |= SetInbuildIcon(key.nCol, eInbuildIconNone, 0);
        key.nCol = tovNoIndex;
    }
    return hasChanged;
}

bool CTovHeaderMarks::UpdateCurrentSortedColumns() {
    bool hasChanged = false;
    for (unsigned int place = 0; place < m_keys.size(); ++place) {
        SORT_STATE_SCREENCOL const& key = m_keys[place];
        if (key.nCol == tovNoIndex) continue;
        hasChanged |=
            SetInbuildIcon(key.nCol, key.bAscending != 0 ? eInbuildIconAscending : eInbuildIconDescending,
                           m_keys.size() >= 2 ? place + 1 : 0);
    }
    return hasChanged;
}

bool CTovHeaderMarks::SetSortColumns(Keys const& keys) {
    if (keys.empty()) return NoSort();
    if (keys.size() > tovMostSortKeys) return false;
    if (std::any_of(keys.begin(), keys.end(), [this](auto const& key) { return key.nCol >= GetColumns(); }))
        return false;
    if (keys == m_keys) return false;
    // A column that stays marked is never shown without its mark.
    bool const hasChanged = !IsSameColumns(keys, m_keys) && NoSort();
    m_keys = keys;
    return UpdateCurrentSortedColumns() || hasChanged;
}

int CTovHeaderMarks::GetWidth(unsigned int col, int textWidth, TOV_HEADERMEASURES const& measures,
                              bool listBoxes) const {
    if (col >= m_columns.size()) return -1;
    TOV_HEADERCOLUMN const& column = m_columns[col];
    int width = textWidth + 2 * measures.textPadding;
    if (column.icon != eInbuildIconNone) width += measures.iconExtent;
    if (listBoxes && column.status != eListBoxIconNone) width += measures.listBoxExtent;
    return width;
}

void CTovHeaderMarks::CalcDrawingInfos(unsigned int col, CRect const& cell, int textWidth, int numberWidth,
                                       int alignment, TOV_HEADERMEASURES const& measures, bool listBoxes) {
    TOV_HEADERCOLUMN* const column = GetColumn(col);
    if (column == nullptr) return;
    auto const centred = [&cell](int left, int extent) {
        int const top = cell.top + (cell.Height() - extent) / 2;
        return CRect{left, top, left + extent, top + extent};
    };
    column->mark = column->listBox = {};
    int const padding = measures.textPadding;
    int right = cell.right;
    if (listBoxes && column->status != eListBoxIconNone) {
        // It stays in the cell, at least with its left part, however narrow that is.
        int const left = std::max(right - padding / 2 - measures.listBoxExtent, cell.left);
        column->listBox = centred(left, measures.listBoxExtent);
        column->listBox.right = std::min(column->listBox.right, cell.right);
        right = left;
    } else {
        right -= padding;
    }
    int const left = std::min(cell.left + padding, std::max(right, cell.left));
    int const room = std::max(right - left, 0);
    bool const hasMark = column->icon != eInbuildIconNone && room >= measures.iconExtent + numberWidth;
    int const mark = hasMark ? measures.iconExtent + numberWidth : 0;
    int const text = std::clamp(textWidth, 0, room - mark);
    int const free = room - mark - text;
    int const begin = left + (alignment == LVCFMT_RIGHT ? free : alignment == LVCFMT_CENTER ? free / 2 : 0);
    column->text = {begin, cell.top, begin + text, cell.bottom};
    if (hasMark) {
        column->mark = centred(begin + text, measures.iconExtent);
        column->mark.right += numberWidth;
    }
}

unsigned int CTovHeaderMarks::PtInListBoxIcon(CPoint const& point) const {
    for (unsigned int col = 0; col < m_columns.size(); ++col)
        if (IsInside(m_columns[col].listBox, point)) return col;
    return tovNoIndex;
}

}  // namespace tov
