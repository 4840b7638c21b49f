// Columns: how they come, go and stand in the header.
#include <tov310/menu.h>
#include <tov310/report_view_host.h>

#include "reports/report_rows.h"

#include <algorithm>
#include <climits>
#include <iterator>
#include <utility>

namespace tov {
namespace {

constexpr int usualColumnWidth = 50;
constexpr int widthOfLostColumn = 10;  // of one that is shown again and has none
constexpr int storedDeleted = -2;
constexpr int storedHidden = -1;

template <class Value>
Value ValueAt(std::vector<Value> const* values, std::size_t index, Value usual) {
    return values != nullptr && index < values->size() ? (*values)[index] : usual;
}

}  // namespace

void CTovReportTable::AddRealCol(CTovReportViewCol* col) {
    if (col == nullptr || !m_vecScreenItems->empty()) return;
    m_vecRealCols.push_back(std::unique_ptr<CTovReportViewCol>(col));
}

void CTovReportTable::AddRealCols(std::vector<CString> const& labels, ColumnLists const& lists) {
    AddRealCols(labels, lists, [](CTovReportViewCol&, unsigned int) {});
}

void CTovReportTable::AddRealCols(HINSTANCE instance, std::vector<unsigned int> const& stringIds,
                                  ColumnLists const& lists) {
    std::vector<CString> labels(stringIds.size());
    for (std::size_t i = 0; i < labels.size(); ++i)
        TovLoadResourceString(instance, stringIds[i], labels[i]);
    AddRealCols(labels, lists);
}

void CTovReportTable::AddRealCols(HINSTANCE instance, unsigned int menuId, bool nested,
                                  ColumnLists const& lists) {
    CMenu menu;
    if (instance == nullptr || menuId == 0 || menu.LoadMenu(instance, menuId) == 0) return;
    std::vector<CString> labels(menu.GetMenuItemCount());
    for (unsigned int i = 0; i < labels.size(); ++i) {
        menu.GetMenuString(i, labels[i], MF_BYPOSITION);
        if (std::size_t const at = labels[i].find("&&"); at != CString::npos) labels[i].erase(at, 1);
    }
    CMenu const* const first = menu.GetSubMenu(0);
    bool const hasMenus = first != nullptr && (!nested || first->GetSubMenu(0) != nullptr);
    AddRealCols(labels, lists, [&menu, instance, menuId, hasMenus](CTovReportViewCol& col, unsigned int i) {
        if (hasMenus) col.SetMenu(instance, menuId, menu.GetSubMenu(i) != nullptr ? static_cast<int>(i) : 0);
    });
}

template <class SetUp>
void CTovReportTable::AddRealCols(std::vector<CString> const& labels, ColumnLists const& lists,
                                  SetUp const& setUp) {
    bool const isEmpty = m_vecScreenCols.empty() && m_vecRealCols.empty() && m_vecScreenItems->empty();
    if (!isEmpty) return;
    for (unsigned int i = 0; i < labels.size(); ++i) {
        auto col = std::make_unique<CTovReportViewCol>(
            &m_host, i == 0 ? 0 : ValueAt(lists.hidden, i, 0), labels[i].c_str(),
            static_cast<int>(ValueAt(lists.alignments, i, 0u)), ValueAt(lists.widths, i, usualColumnWidth),
            nullptr, tovNoIndex, 0);
        setUp(*col, i);
        m_host.AddRealCol(col.release());
    }
    m_host.DisplayRealCols(1);
}

// --- Into the header

void CTovReportTable::DisplayRealCols(int notify) {
    if (!m_vecScreenCols.empty() || !m_vecRealItems.empty() || m_vecRealCols.empty()) return;
    Operation const operation(*this);
    ApplyStoredCols();
    SetUnsortedState();
    RefreshHeaderSortedState();
    ITovListPort* const port = Port();
    unsigned int const generation = m_colGeneration;
    for (unsigned int real = 0; real < m_vecRealCols.size(); ++real) {
        CTovReportViewCol& col = *m_vecRealCols[real];
        if (col.IsDeleted() != 0) continue;
        bool const isRefused = notify != 0 && m_host.OnInsertRealCol(real, PlaceInHeader(real)) == 0;
        if (isRefused && generation == m_colGeneration && col.DeleteCol(1) != 0) continue;
        if (generation != m_colGeneration) return;
        if (col.IsVisible() != 0 && !IsInHeader(real)) InsertIntoHeader(real);
    }
    int left = 0;
    for (unsigned int const real : m_vecScreenCols) {
        m_vecRealCols[real]->m_nLeft = left;
        left += m_vecRealCols[real]->m_nWidth;
    }
    std::vector<unsigned int> order(m_vecScreenCols.size());
    for (unsigned int i = 0; i < order.size(); ++i)
        order[i] = i;
    std::stable_sort(order.begin(), order.end(), [this](unsigned int a, unsigned int b) {
        return GetCol(a)->m_nOrder < GetCol(b)->m_nOrder;
    });
    if (port != nullptr) port->Header().SetColumnOrder(order);
    HoldAllColInfos();
}

// The leftmost column is always shown.
void CTovReportTable::ApplyStoredCols() {
    std::vector<int> values;
    bool const ordered = m_host.SerializeColOrder() != 0 && LoadColOrder(values) != 0;
    for (std::size_t real = 0; real < m_vecRealCols.size(); ++real)
        m_vecRealCols[real]->m_nOrder = ordered ? values[real] : static_cast<int>(real);
    if (m_host.SerializeColWidthAndHidden() == 0 || LoadColWidthAndHidden(values) == 0) return;
    bool leftmost = true;
    for (std::size_t real = 0; real < m_vecRealCols.size(); ++real) {
        CTovReportViewCol& col = *m_vecRealCols[real];
        int const value = values[real];
        if (value == storedDeleted) continue;
        if (value >= 0) {
            col.HideCol(0, 0);
            col.m_nWidth = value;
        } else {
            if (value != storedHidden) col.m_nWidth = value == INT_MIN ? INT_MAX : -value;
            if (!leftmost) col.HideCol(1, 0);
        }
        leftmost = false;
    }
}

unsigned int CTovReportTable::PlaceInHeader(unsigned int real) const {
    auto const place = std::lower_bound(m_vecScreenCols.begin(), m_vecScreenCols.end(), real);
    return static_cast<unsigned int>(place - m_vecScreenCols.begin());
}

bool CTovReportTable::IsInHeader(unsigned int real) const {
    return std::binary_search(m_vecScreenCols.begin(), m_vecScreenCols.end(), real);
}

void CTovReportTable::HoldAllColInfos() {
    ITovListPort* const port = Port();
    if (port == nullptr) return;
    int place = 0;
    int left = 0;
    for (unsigned int const screen : port->Header().GetColumnOrder()) {
        CTovReportViewCol* const col = GetCol(screen);
        if (col == nullptr) continue;
        col->m_nOrder = place++;
        col->m_nWidth = port->Header().GetColumnWidth(screen);
        col->m_nLeft = left;
        left += col->m_nWidth;
    }
}

void CTovReportTable::CleanupRealCols() {
    if (!m_vecScreenItems->empty()) return;
    Operation const operation(*this);
    ++m_colGeneration;
    std::move(m_vecRealCols.begin(), m_vecRealCols.end(), std::back_inserter(m_goneCols));
    m_vecRealCols.clear();
    std::size_t const shown = std::exchange(m_vecScreenCols, {}).size();
    ITovListPort* const port = Port();
    for (std::size_t i = 0; port != nullptr && i < shown; ++i)
        port->Header().DeleteColumn(0);
    SetUnsortedState();
    RefreshHeaderSortedState();
}

void CTovReportTable::HoldRealColsDefaults() {
    for (auto const& col : m_vecRealCols) {
        col->m_bHiddenDefault = col->m_bHidden;
        col->m_nWidthDefault = col->m_nWidth;
    }
}

int CTovReportTable::SetRealColHoldItemText(unsigned int real, int hold) {
    if (!m_vecRealItems.empty() || real >= m_vecRealCols.size()) return 0;
    m_vecRealCols[real]->m_bHoldItemText = hold;
    unsigned int next = 0;
    for (auto const& col : m_vecRealCols)
        col->m_nHoldIndex = col->m_bHoldItemText != 0 ? next++ : tovNoIndex;
    return 1;
}

// --- Hiding and deleting

int CTovReportTable::HideRealCol(unsigned int real, int hide, int notify) {
    Operation const operation(*this);
    if (m_host.HideRealColInternal(real, hide, notify) == 0) return 0;
    if (hide == 0) InvalidateHeldColumn(*m_vecRealCols[real]);
    HoldAllColInfos();
    ITovListPort* const port = Port();
    if (hide != 0 && port != nullptr) port->Header().Invalidate();
    return 1;
}

int CTovReportTable::HideRealColInternal(unsigned int real, int hide, int notify) {
    hide = hide != 0;
    CTovReportViewCol* const col = GetRealCol(real);
    if (col == nullptr || col->IsDeleted() != 0 || (col->m_bHidden != 0) == (hide != 0)) return 0;
    if (RealColToScreen(real, 1) == 0) return 0;
    Operation const operation(*this);
    if (notify != 0 && m_host.GetSuppressHideNotifications() == 0 &&
        m_host.OnHideRealCol(real, RealColToScreen(real, 1), hide) == 0)
        return 0;
    // What was told may have changed the columns.
    if (GetRealCol(real) != col || col->IsDeleted() != 0 || (col->m_bHidden != 0) == (hide != 0)) return 0;
    if (RealColToScreen(real, 1) == 0) return 0;
    if (col->HideCol(hide, notify) == 0 || GetRealCol(real) != col) return 0;
    if (IsInHeader(real) != (hide != 0)) return 1;  // it is done already
    HideHeaderSortedState();
    if (hide == 0) {
        if (col->m_nWidth < 1) col->m_nWidth = widthOfLostColumn;
        InsertIntoHeader(real);
    } else {
        RemoveFromHeader(real);
    }
    return 1;
}

void CTovReportTable::InsertIntoHeader(unsigned int real) {
    CTovReportViewCol const& col = *m_vecRealCols[real];
    unsigned int const screen = PlaceInHeader(real);
    m_vecScreenCols.insert(m_vecScreenCols.begin() + static_cast<std::ptrdiff_t>(screen), real);
    if (ITovListPort* const port = Port())
        port->Header().InsertColumn(screen, col.m_nAlignment, col.m_nWidth, col.m_strLabel.c_str());
    OnHeaderColumnsChanged();
}

// What was sorted by the column is not sorted any more.
void CTovReportTable::RemoveFromHeader(unsigned int real) {
    unsigned int const screen = PlaceInHeader(real);
    m_vecScreenCols.erase(m_vecScreenCols.begin() + static_cast<std::ptrdiff_t>(screen));
    if (ITovListPort* const port = Port()) {
        m_vecRealCols[real]->m_nWidth = port->Header().GetColumnWidth(screen);
        port->Header().DeleteColumn(screen);
    }
    if (std::any_of(m_vecSortState.begin(), m_vecSortState.end(),
                    [real](SORT_STATE_REALCOL const& key) { return key.nCol == real; }))
        SetUnsortedState();
    OnHeaderColumnsChanged();
}

void CTovReportTable::OnHeaderColumnsChanged() {
    UpdateSortStateScreen();
    RefreshHeaderSortedState();
    MarkAllRows();
}

int CTovReportTable::DeleteRealCol(unsigned int real, int notify) {
    CTovReportViewCol* const col = GetRealCol(real);
    if (col == nullptr || col->IsDeleted() != 0) return 0;
    unsigned int const screen = RealColToScreen(real, 0);
    if (screen == 0) return 0;
    Operation const operation(*this);
    if (notify != 0 && m_host.OnDeleteRealCol(real, screen) == 0) return 0;
    if (GetRealCol(real) != col || col->IsDeleted() != 0) return 0;
    if (col->DeleteCol(notify) == 0 || GetRealCol(real) != col) return 0;
    if (IsInHeader(real)) {
        HideHeaderSortedState();
        RemoveFromHeader(real);
    }
    HoldAllColInfos();
    return 1;
}

unsigned int CTovReportTable::HideAllCols(int hide, int skipExcluded, int notify) {
    Operation const operation(*this);
    unsigned int const spared = ScreenColToReal(0);
    unsigned int changed = 0;
    for (unsigned int real = 0; real < m_vecRealCols.size(); ++real) {
        CTovReportViewCol const& col = *m_vecRealCols[real];
        if (real == spared || col.IsDeleted() != 0) continue;
        if (skipExcluded != 0 && m_host.GetExcludeRealColFromViewHide(real) != 0) continue;
        if ((col.m_bHidden != 0) == (hide != 0)) continue;
        if (m_host.HideRealColInternal(real, hide, notify) == 0) continue;
        ++changed;
        if (hide == 0) InvalidateHeldColumn(*m_vecRealCols[real]);
    }
    HoldAllColInfos();
    ITovListPort* const port = Port();
    if (hide != 0 && port != nullptr) port->Header().Invalidate();
    return changed;
}

void CTovReportTable::ResetColumnSettings() {
    Operation const operation(*this);
    for (unsigned int real = 0; real < m_vecRealCols.size(); ++real) {
        if (m_vecRealCols[real]->IsDeleted() != 0) continue;
        m_host.HideRealCol(real, m_vecRealCols[real]->m_bHiddenDefault, 1);
        if (real < m_vecRealCols.size()) SetRealColWidth(real, m_vecRealCols[real]->m_nWidthDefault);
    }
    ITovListPort* const port = Port();
    if (port != nullptr) {
        std::vector<unsigned int> order(m_vecScreenCols.size());
        for (unsigned int i = 0; i < order.size(); ++i)
            order[i] = i;
        if (port->Header().GetColumnOrder() != order) port->Header().SetColumnOrder(order);
    }
    HoldAllColInfos();
}

// --- Single columns

void CTovReportTable::PushColLabel(unsigned int real) {
    unsigned int const screen = RealColToScreen(real, 0);
    ITovListPort* const port = Port();
    if (screen < m_vecScreenCols.size() && port != nullptr)
        port->Header().SetColumnLabel(screen, m_vecRealCols[real]->m_strLabel.c_str());
}

void CTovReportTable::PushColAlignment(unsigned int real) {
    unsigned int const screen = RealColToScreen(real, 0);
    ITovListPort* const port = Port();
    if (screen < m_vecScreenCols.size() && port != nullptr)
        port->Header().SetColumnAlignment(screen, m_vecRealCols[real]->m_nAlignment);
}

int CTovReportTable::ShowRealItemImage(unsigned int real) const {
    if (settings.hasItemImages == 0) return 0;
    if (real == 0 && ScreenColToReal(0) == 0) return 1;
    auto const found = m_mapShowRealItemImage.find(real);
    return found != m_mapShowRealItemImage.end() ? found->second : 0;
}

void CTovReportTable::ShowRealItemImage(unsigned int real, int show) {
    if (settings.hasItemImages != 0) m_mapShowRealItemImage[real] = show;
}

int CTovReportTable::GetExcludeRealColFromViewHide(unsigned int real) const {
    auto const found = m_mapExcludeRealColFromViewHide.find(real);
    return found != m_mapExcludeRealColFromViewHide.end() ? found->second : 0;
}

void CTovReportTable::SetExcludeRealColFromViewHide(unsigned int real, int exclude) {
    m_mapExcludeRealColFromViewHide[real] = exclude;
}

}  // namespace tov
