// What a report remembers between runs, and the commands that change it.
#include <tov310/profile.h>
#include <tov310/report_view_host.h>

#include "reports/report_rows.h"

namespace tov {
namespace {

using Profile = CTovProfileEntries;

constexpr int widthOfNewColumn = 80;  // of one that was not there when the widths were stored
constexpr unsigned int firstShowCommand = 2024;
constexpr unsigned int firstHideCommand = 3024;
constexpr unsigned int commandsPerRange = 1000;

}  // namespace

void CTovReportTable::StoreColWidthAndHidden() const {
    ITovListPort* const port = Port();
    std::vector<int> values;
    for (unsigned int real = 0; real < m_vecRealCols.size(); ++real) {
        CTovReportViewCol const& col = *m_vecRealCols[real];
        unsigned int const screen = RealColToScreen(real, 0);
        bool const asked = port != nullptr && screen != tovNoIndex;
        values.push_back(col.IsDeleted() != 0  ? -2
                         : col.IsHidden() != 0 ? -1
                         : asked               ? port->Header().GetColumnWidth(screen)
                                               : col.GetWidth());
    }
    m_host.WriteReportViewIntVector(m_host.InifileSection().c_str(), Profile::ReportViewColWidth(), values);
}

void CTovReportTable::StoreColOrder() {
    HoldAllColInfos();
    std::vector<int> values;
    for (unsigned int real = 0; real < m_vecRealCols.size(); ++real) {
        CTovReportViewCol& col = *m_vecRealCols[real];
        if (col.IsVisible() == 0) col.m_nOrder = static_cast<int>(real);
        values.push_back(col.m_nOrder);
    }
    m_host.WriteReportViewIntVector(m_host.InifileSection().c_str(), Profile::ReportViewColOrder(), values);
}

void CTovReportTable::StoreSortState() const {
    std::vector<int> values;
    for (SORT_STATE_REALCOL const& key : m_vecSortState) {
        values.push_back(static_cast<int>(key.nCol));
        values.push_back(key.bAscending);
    }
    m_host.WriteReportViewIntVector(m_host.InifileSection().c_str(), Profile::ReportViewSortState(), values);
}

int CTovReportTable::LoadColWidthAndHidden(std::vector<int>& values) const {
    values.clear();
    if (m_vecRealCols.empty()) return 0;
    m_host.ReadReportViewIntVector(m_host.InifileSection().c_str(), Profile::ReportViewColWidth(), values);
    bool const stored = !values.empty();
    if (stored && values.size() < m_vecRealCols.size()) values.resize(m_vecRealCols.size(), widthOfNewColumn);
    return stored;
}

int CTovReportTable::LoadColOrder(std::vector<int>& values) const {
    values.clear();
    if (m_vecRealCols.empty()) return 0;
    m_host.ReadReportViewIntVector(m_host.InifileSection().c_str(), Profile::ReportViewColOrder(), values);
    while (values.size() < m_vecRealCols.size())
        values.push_back(static_cast<int>(values.size()));
    return 1;
}

int CTovReportTable::LoadSortState(std::vector<SORT_STATE_REALCOL>& keys) const {
    keys.clear();
    std::vector<int> values;
    m_host.ReadReportViewIntVector(m_host.InifileSection().c_str(), Profile::ReportViewSortState(), values);
    if (values.size() % 2 != 0) return 0;
    for (std::size_t i = 0; i < values.size(); i += 2) {
        if (values[i] < 0 || static_cast<std::size_t>(values[i]) > m_vecRealCols.size()) {
            keys.clear();
            return 0;
        }
        keys.push_back({static_cast<unsigned int>(values[i]), values[i + 1] != 0 ? 1 : 0});
    }
    return 1;
}

// While there are no rows a report is being set up, which nobody wants to remember.
void CTovReportTable::StoreColumns(bool sortToo) {
    if (m_vecScreenItems->empty()) return;
    if (m_host.SerializeColWidthAndHidden() != 0) StoreColWidthAndHidden();
    if (m_host.SerializeColOrder() != 0) StoreColOrder();
    if (sortToo && m_host.SerializeSortState() != 0) StoreSortState();
}

void CTovReportTable::OnColumnOrderChanged() {
    Operation const operation(*this);
    HoldAllColInfos();
    MarkAllRows();
    if (m_host.SerializeColOrder() != 0 && !m_vecScreenItems->empty()) StoreColOrder();
}

void CTovReportTable::OnColumnWidthChanged() {
    Operation const operation(*this);
    HoldAllColInfos();
    MarkAllRows();
    if (m_host.SerializeColWidthAndHidden() != 0 && !m_vecScreenItems->empty()) StoreColWidthAndHidden();
}

// --- Commands

int CTovReportTable::SortByContext(int ascending) {
    std::vector<SORT_STATE_REALCOL> const keys{{m_nContextRealCol, ascending}};
    if (GetRealCol(m_nContextRealCol) == nullptr || m_vecSortState == keys) return 1;
    m_host.SortList(keys);
    if (m_host.SerializeSortState() != 0) StoreSortState();
    return 1;
}

int CTovReportTable::DoCommand(unsigned int id) {
    bool const shows = id >= firstShowCommand && id < firstShowCommand + commandsPerRange;
    bool const hides = id >= firstHideCommand && id < firstHideCommand + commandsPerRange;
    Operation const operation(*this);
    if (shows || hides) {
        m_host.HideRealCol(id - (hides ? firstHideCommand : firstShowCommand), hides ? 1 : 0, 1);
        StoreColumns(hides);
        return 1;
    }
    switch (id) {
        case WM_TOV_REPORTVIEW_VIEW_ALL_COLS:
            m_host.HideAllCols(0, 1, 1);
            StoreColumns(false);
            return 1;
        case WM_TOV_REPORTVIEW_HIDE_ALL_COLS:
            m_host.HideAllCols(1, 1, 1);
            StoreColumns(true);
            return 1;
        case WM_TOV_REPORTVIEW_AUTO_ARRANGE:
            m_host.AutoArrangeColumns(1);
            return 1;
        case WM_TOV_REPORTVIEW_SORT_ASCENDING:
            return SortByContext(1);
        case WM_TOV_REPORTVIEW_SORT_DESCENDING:
            return SortByContext(0);
        case WM_TOV_REPORTVIEW_SORT_UNSORTED:
            if (m_vecSortState.empty()) return 1;
            m_host.SortList(std::vector<SORT_STATE_REALCOL>());
            if (m_host.SerializeSortState() != 0) StoreSortState();
            return 1;
        case WM_TOV_REPORTVIEW_DELETE_SELECTED:
            m_host.HandleDelete();
            return 1;
        case WM_TOV_REPORTVIEW_SELECT_ALL:
            m_host.SelectAllItems(1, 1, 0);
            return 1;
        case WM_TOV_REPORTVIEW_INVERT_SELECTION:
            m_host.InvertSelection(1);
            return 1;
        case WM_TOV_REPORTVIEW_SELECT_CHECKED_ITEMS:
            m_host.SelectCheckedItems(1);
            return 1;
        case WM_TOV_REPORTVIEW_CHECK_ALL:
            m_host.CheckAllItems(1, 1);
            return 1;
        case WM_TOV_REPORTVIEW_INVERT_CHECKED:
            m_host.InvertChecked(1);
            return 1;
        default:
            return 0;
    }
}

}  // namespace tov
