// The order of the rows: keys, marks in the header, and the place of a row that comes.
#include <tov310/report_view_host.h>
#include <tov310/wait_cursor.h>

#include "reports/report_rows.h"
#include "reports/report_sort.h"

#include <algorithm>
#include <utility>

namespace tov {
namespace {

constexpr std::size_t mostTouched = 64;  // beyond, one look at all rows is cheaper

}  // namespace

void CTovReportTable::SetInOrder(bool inOrder) const {
    m_inOrder = inOrder;
    m_touchedAll = false;
    m_touched.clear();
}

// What a row sorts by may have changed.
void CTovReportTable::TouchRow(unsigned int real) {
    ++m_edits;
    if (!m_inOrder || m_touchedAll || m_vecSortState.empty()) return;
    if (std::find(m_touched.begin(), m_touched.end(), real) != m_touched.end()) return;
    m_touched.push_back(real);
    if (m_touched.size() > mostTouched) TouchAllRows();
}

void CTovReportTable::TouchAllRows() {
    ++m_edits;
    m_touchedAll = true;
    m_touched.clear();
}

bool CTovReportTable::StandsBefore(unsigned int a, unsigned int b) const {
    for (SORT_STATE_REALCOL const& key : m_vecSortState) {
        if (key.nCol == tovNoIndex) break;
        int const order = m_vecRealItems[a]->OnCompareItem(m_vecRealItems[b].get(), key.nCol);
        if (order != 0) return key.bAscending != 0 ? order < 0 : order > 0;
    }
    return m_vecSortState.empty() || m_vecSortState.front().bAscending != 0 ? a < b : b < a;
}

// Whether every row stands before the one below it; only the neighbours of rows that have changed are asked.
bool CTovReportTable::RowsStandInOrder() const {
    CTovReportRows const& rows = *m_vecScreenItems;
    if (!m_inOrder || m_vecSortState.empty() || (m_touched.empty() && !m_touchedAll)) return m_inOrder;
    bool inOrder = true;
    if (m_touchedAll) {
        unsigned int above = tovNoIndex;
        std::size_t const wrong = rows.Walk([this, &above](unsigned int row) {
            unsigned int const upper = std::exchange(above, row);
            return upper != tovNoIndex && !StandsBefore(upper, row);
        });
        inOrder = wrong == rows.size();
    }
    for (unsigned int const real : m_touched) {
        unsigned int const at = RealItemToScreen(real);
        if (at == tovNoIndex) continue;
        inOrder = inOrder && (at == 0 || StandsBefore(rows[at - 1], real)) &&
                  (at + 1 == rows.size() || StandsBefore(real, rows[at + 1]));
    }
    SetInOrder(inOrder);
    return inOrder;
}

unsigned int CTovReportTable::GetInsertPos(unsigned int real) const {
    CTovReportRows const& rows = *m_vecScreenItems;
    auto const belongsBefore = [this, real](unsigned int row) { return StandsBefore(real, row); };
    // Most rows come at the end.
    bool const inOrder = RowsStandInOrder();
    if (inOrder && (rows.empty() || !belongsBefore(rows[rows.size() - 1]))) return GetItemCount();
    return static_cast<unsigned int>(inOrder ? rows.PartitionPoint(belongsBefore) : rows.Walk(belongsBefore));
}

// --- Sorting

void CTovReportTable::SortList(std::vector<SORT_STATE_REALCOL> const& keys) {
    if (keys.size() > mostSortKeys) return;
    Operation const operation(*this);
    CTovWaitCursor const wait;
    CancelSort();
    std::uint64_t const stamp = m_vecScreenItems->Stamp();
    std::vector<unsigned int> rows = m_vecScreenItems->Copy();
    CTovReportSort(m_vecRealItems, keys).Sort(rows);
    // Comparisons must not change the rows; where they do all the same, rows stay as they have left them.
    if (m_vecScreenItems->Stamp() == stamp) ApplySort(keys, rows);
}

void CTovReportTable::ApplySort(std::vector<SORT_STATE_REALCOL> const& keys,
                                std::vector<unsigned int> const& rows) {
    Operation const operation(*this);
    m_vecSortState = std::vector<SORT_STATE_REALCOL>(keys);
    UpdateSortStateScreen();
    RefreshHeaderSortedState();
    m_vecScreenItems->Assign(rows);
    SetInOrder(true);
    MarkAllRows();
    if (m_nFocusedRealItem != tovNoIndex) {
        TellRowsChanged();
        m_host.FocusItem(RealItemToScreen(m_nFocusedRealItem), 1);
    }
    m_host.OnSortOrderChanged();
    m_host.OnItemNotice(WM_TOV_REPORTVIEW_ITEM_SORT_ORDER, tovNoIndex);
}

void CTovReportTable::OnHeaderClick(unsigned int real) {
    if (m_host.SortAllowed() == 0 || real >= m_vecRealCols.size()) return;
    bool const flips = m_vecSortState.size() == 1 && m_vecSortState.front().nCol == real;
    m_host.SortList(
        std::vector<SORT_STATE_REALCOL>{{real, flips && m_vecSortState.front().bAscending != 0 ? 0 : 1}});
    if (m_host.SerializeSortState() != 0) StoreSortState();
}

// The rows stay as they are, which need not be the order that is asked for from now on.
void CTovReportTable::SetUnsortedState() {
    if (!m_vecSortState.empty() && !m_vecScreenItems->empty()) SetInOrder(false);
    m_vecSortState.clear();
    m_vecSortStateScreen.clear();
}

void CTovReportTable::UpdateSortStateScreen() {
    m_vecSortStateScreen.clear();
    for (SORT_STATE_REALCOL const& key : m_vecSortState)
        m_vecSortStateScreen.push_back({RealColToScreen(key.nCol, 0), key.bAscending});
}

void CTovReportTable::RefreshHeaderSortedState() {
    if (ITovListPort* const port = Port()) port->Header().SetSortColumns(m_vecSortStateScreen);
}

void CTovReportTable::HideHeaderSortedState() {
    if (ITovListPort* const port = Port()) port->Header().SetSortColumns({});
}

}  // namespace tov
