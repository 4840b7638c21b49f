// What every operation on a report stands on: indexes, rows that come and go, focus, and what the control and
// other windows are told.
#include <tov310/report_model.h>

#include <tov310/report_view_host.h>
#include <tov310/window.h>

#include "reports/report_async_sort.h"
#include "reports/report_rows.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tov {

CTovReportSettings& CTovReportSettings::Defaults() {
    static CTovReportSettings defaults;
    return defaults;
}

CTovReportTable::CTovReportTable(CTovReportViewHost& host)
    : settings(CTovReportSettings::Defaults()),
      m_host(host),
      m_vecScreenItems(std::make_unique<CTovReportRows>()) {}

CTovReportTable::~CTovReportTable() = default;

ITovListPort* CTovReportTable::Port() const {
    return m_host.ListPort();
}

// The end of the outermost operation.
void CTovReportTable::Finish() {
    unsigned int const first = std::exchange(m_firstMarked, tovNoIndex);
    unsigned int const last = std::exchange(m_lastMarked, 0);
    ITovListPort* const port = Port();
    if (port != nullptr && !m_rowsChanged && first <= last) port->InvalidateRows(first, last);
    TellRowsChanged();
    auto const items = std::exchange(m_goneItems, {});
    auto const cols = std::exchange(m_goneCols, {});
}

void CTovReportTable::TellRowsChanged() {
    if (!std::exchange(m_rowsChanged, false)) return;
    if (ITovListPort* const port = Port()) port->RowsChanged();
}

void CTovReportTable::MarkRow(unsigned int screen) {
    if (screen == tovNoIndex) return;
    m_firstMarked = std::min(m_firstMarked, screen);
    m_lastMarked = std::max(m_lastMarked, screen);
}

// --- Indexes

unsigned int CTovReportTable::GetItemCount() const {
    return static_cast<unsigned int>(m_vecScreenItems->size());
}

unsigned int CTovReportTable::ScreenItemToReal(unsigned int screen) const {
    return screen < m_vecScreenItems->size() ? (*m_vecScreenItems)[screen] : tovNoIndex;
}

bool CTovReportTable::IsRealItemVisible(unsigned int real) const {
    return real < m_vecRealItems.size() && m_vecRealItems[real]->IsVisible() != 0;
}

// Rows in the order of their real indexes are found by halving. Otherwise the first few questions walk; who
// asks more often has an index made, which lasts until a row comes, goes or moves.
unsigned int CTovReportTable::RealItemToScreen(unsigned int real) const {
    if (!IsRealItemVisible(real)) return tovNoIndex;
    CTovReportRows const& rows = *m_vecScreenItems;
    if (m_indexed != rows.Stamp()) {
        if (m_inOrder && m_vecSortState.empty()) {
            std::size_t const at = rows.PartitionPoint([real](unsigned int row) { return row >= real; });
            return at < rows.size() && rows[at] == real ? static_cast<unsigned int>(at) : tovNoIndex;
        }
        constexpr unsigned int walksBeforeIndex = 12;
        if (std::exchange(m_walked, rows.Stamp()) != rows.Stamp()) m_walks = 0;
        if (++m_walks < walksBeforeIndex) {
            std::size_t const at = rows.Find(real);
            return at != CTovReportRows::none ? static_cast<unsigned int>(at) : tovNoIndex;
        }
        m_screenOfReal.assign(m_vecRealItems.size(), tovNoIndex);
        unsigned int screen = 0;
        rows.Walk([this, &screen](unsigned int row) {
            m_screenOfReal[row] = screen++;
            return false;
        });
        m_indexed = rows.Stamp();
    }
    return real < m_screenOfReal.size() ? m_screenOfReal[real] : tovNoIndex;
}

// The same for somebody who knows where the row was a moment ago, and for rows that are leaving.
unsigned int CTovReportTable::Locate(unsigned int real, unsigned int near) const {
    CTovReportRows const& rows = *m_vecScreenItems;
    if (near < rows.size() && rows[near] == real) return near;
    constexpr unsigned int reach = 64;
    for (unsigned int i = 1; near != tovNoIndex && i <= reach; ++i) {
        if (near >= i && near - i < rows.size() && rows[near - i] == real) return near - i;
        if (near + i < rows.size() && rows[near + i] == real) return near + i;
    }
    if (IsRealItemVisible(real)) return RealItemToScreen(real);
    std::size_t const found = rows.Find(real);
    return found != CTovReportRows::none ? static_cast<unsigned int>(found) : tovNoIndex;
}

void CTovReportTable::ScreenItemsToReal(std::vector<unsigned int> const& screen,
                                        std::vector<unsigned int>& real) const {
    std::vector<unsigned int> rows(screen.size());
    std::transform(screen.begin(), screen.end(), rows.begin(),
                   [this](unsigned int row) { return ScreenItemToReal(row); });
    real = std::move(rows);
}

void CTovReportTable::RealItemsToScreen(std::vector<unsigned int> const& real,
                                        std::vector<unsigned int>& screen) const {
    std::vector<unsigned int> rows(real.size());
    std::transform(real.begin(), real.end(), rows.begin(),
                   [this](unsigned int row) { return RealItemToScreen(row); });
    screen = std::move(rows);
}

void CTovReportTable::CompleteItemFromScreen(std::vector<unsigned int> const& screen,
                                             std::vector<COMPLETE_ITEM>& items) const {
    items.clear();
    items.reserve(screen.size());
    for (unsigned int const row : screen)
        items.push_back({ScreenItemToReal(row), row});
}

void CTovReportTable::CompleteItemFromReal(std::vector<unsigned int> const& real,
                                           std::vector<COMPLETE_ITEM>& items) const {
    items.clear();
    items.reserve(real.size());
    for (unsigned int const row : real)
        items.push_back({row, RealItemToScreen(row)});
}

// Makes pairs of unknown origin right, and drops those that name no row.
void CTovReportTable::Complete(std::vector<COMPLETE_ITEM>& items) const {
    std::erase_if(items, [this](COMPLETE_ITEM const& item) { return item.nReal >= m_vecRealItems.size(); });
    for (COMPLETE_ITEM& item : items)
        item.nScreen = IsRealItemVisible(item.nReal) ? Locate(item.nReal, item.nScreen) : tovNoIndex;
}

unsigned int CTovReportTable::ScreenColToReal(unsigned int screen) const {
    return screen < m_vecScreenCols.size() ? m_vecScreenCols[screen] : tovNoIndex;
}

unsigned int CTovReportTable::RealColToScreen(unsigned int real, int evenIfInvisible) const {
    if (real >= m_vecRealCols.size()) return tovNoIndex;
    if (evenIfInvisible == 0 && m_vecRealCols[real]->IsVisible() == 0) return tovNoIndex;
    auto const end = m_vecRealCols.begin() + static_cast<std::ptrdiff_t>(real);
    return static_cast<unsigned int>(
        std::count_if(m_vecRealCols.begin(), end, [](auto const& col) { return col->IsVisible() != 0; }));
}

CTovReportViewCol* CTovReportTable::GetRealCol(unsigned int real) const {
    return real < m_vecRealCols.size() ? m_vecRealCols[real].get() : nullptr;
}

// --- Rows that come and go

void CTovReportTable::InsertRow(unsigned int real) {
    m_vecScreenItems->Insert(GetInsertPos(real), real);
    MarkAllRows();
}

void CTovReportTable::RemoveRow(unsigned int screen) {
    CTovReportRows& rows = *m_vecScreenItems;
    unsigned int const real = rows[screen];
    rows.Erase(screen);
    MarkAllRows();
    if (rows.empty()) SetInOrder(true);
    if (real == m_nAnchorRealItem) m_nAnchorRealItem = tovNoIndex;
    if (real == m_nFocusedRealItem)
        m_nFocusedRealItem = rows.empty() ? tovNoIndex : rows[std::min<std::size_t>(screen, rows.size() - 1)];
}

// Before m_vecRealItems would double: it stays close to what is needed among millions.
void CTovReportTable::AddRealItem(CTovReportViewItem* item) {
    if (item == nullptr) return;
    std::unique_ptr<CTovReportViewItem> owned(item);
    if (m_vecRealItems.size() == m_vecRealItems.capacity())
        ReserveRealItems(m_vecRealItems.size() + m_vecRealItems.size() / 2 + 16);
    m_vecRealItems.push_back(std::move(owned));
}

void CTovReportTable::ReserveRealItems(std::size_t count) {
    m_vecRealItems.reserve(count);
}

void CTovReportTable::AppendRealItem(CTovReportViewItem* item, int notify) {
    if (item == nullptr) return;
    Operation const operation(*this);
    unsigned int const real = GetRealItemCount();
    AddRealItem(item);
    unsigned int screen = tovNoIndex;
    if (item->IsVisible() != 0) {
        screen = GetInsertPos(real);
        m_vecScreenItems->Insert(screen, real);
        m_host.HoldVScroll();
        MarkAllRows();
        TellRowsChanged();
        m_host.RestoreVScroll();
    }
    if (notify != 0) m_host.OnAppendRealItem(real, screen);
    m_host.OnItemNotice(WM_TOV_REPORTVIEW_ITEM_APPEND, real);
}

void CTovReportTable::DisplayRealItems(int notify) {
    if (!m_vecScreenItems->empty()) return;
    Operation const operation(*this);
    SetUnsortedState();
    RefreshHeaderSortedState();
    if (notify != 0) m_host.OnDisplayItemsBegin(GetRealItemCount());
    std::vector<unsigned int> rows;
    rows.reserve(m_vecRealItems.size());
    for (unsigned int real = 0; real < m_vecRealItems.size(); ++real) {
        if (m_vecRealItems[real]->IsVisible() != 0) rows.push_back(real);
    }
    m_vecScreenItems->Assign(rows);
    SetInOrder(m_vecSortState.empty());
    MarkAllRows();
    TellRowsChanged();
    std::vector<SORT_STATE_REALCOL> keys;
    if (m_host.SerializeSortState() != 0 && LoadSortState(keys) != 0) {
        bool const shown = std::none_of(keys.begin(), keys.end(), [this](SORT_STATE_REALCOL const& key) {
            CTovReportViewCol const* const col = GetRealCol(key.nCol);
            return col != nullptr && col->IsVisible() == 0;
        });
        if (shown) m_host.SortList(keys);
    }
    if ((m_host.AutoRestore() & 1) != 0) m_host.RestoreVScroll();
    if ((m_host.AutoRestore() & 2) != 0) m_host.RestoreHScroll();
    if (notify != 0) m_host.OnDisplayItemsEnd(GetItemCount());
}

void CTovReportTable::CleanupRealItems(int notify) {
    Operation const operation(*this);
    if (Port() != nullptr && !m_vecScreenItems->empty()) {
        if ((m_host.AutoRestore() & 1) != 0) m_host.HoldVScroll();
        if ((m_host.AutoRestore() & 2) != 0) m_host.HoldHScroll();
    }
    ++m_generation;
    CancelSort();
    if (m_goneItems.empty()) {
        m_goneItems.swap(m_vecRealItems);
    } else {
        std::move(m_vecRealItems.begin(), m_vecRealItems.end(), std::back_inserter(m_goneItems));
        m_vecRealItems.clear();
    }
    m_vecScreenItems->Clear();
    m_screenOfReal.clear();
    SetInOrder(true);
    m_nFocusedRealItem = tovNoIndex;
    m_nAnchorRealItem = tovNoIndex;
    MarkAllRows();
    TellRowsChanged();
    SetUnsortedState();
    RefreshHeaderSortedState();
    if (notify != 0) m_host.OnCleanupRealItems();
    m_host.OnItemNotice(WM_TOV_REPORTVIEW_ITEM_CLEANUP, tovNoIndex);
}

// --- Focus

int CTovReportTable::FocusItem(unsigned int screen, int ensureVisible) {
    unsigned int const real = ScreenItemToReal(screen);
    if (real == tovNoIndex) return 0;
    Operation const operation(*this);
    if (real != m_nFocusedRealItem) MarkRow(Locate(std::exchange(m_nFocusedRealItem, real), tovNoIndex));
    MarkRow(screen);
    if (ensureVisible != 0) m_host.EnsureItemVisible(screen, tovNoIndex);
    return 1;
}

void CTovReportTable::SetAnchor(unsigned int screen) {
    m_nAnchorRealItem = ScreenItemToReal(screen);
}

// --- Scrolling

void CTovReportTable::HoldVScroll() {
    ITovListPort* const port = Port();
    bool const has = port != nullptr && !m_vecScreenItems->empty();
    m_nHoldVScroll = has ? static_cast<int>(port->GetTopRow()) * port->GetRowHeight() : 0;
}

int CTovReportTable::RestoreVScroll() {
    ITovListPort* const port = Port();
    if (port == nullptr || m_nHoldVScroll < 1) return 1;
    TellRowsChanged();
    port->Scroll(0, m_nHoldVScroll - static_cast<int>(port->GetTopRow()) * port->GetRowHeight());
    if (m_host.GetSuppressScrollNotifications() == 0) m_host.OnScrolledVert();
    return 1;
}

void CTovReportTable::HoldHScroll() {
    ITovListPort* const port = Port();
    m_nHoldHScroll = port != nullptr && !m_vecScreenItems->empty() ? -port->GetRowLeft() : 0;
}

int CTovReportTable::RestoreHScroll() {
    ITovListPort* const port = Port();
    if (port == nullptr || m_nHoldHScroll < 1) return 1;
    port->Scroll(m_nHoldHScroll + port->GetRowLeft(), 0);
    InvalidateScrollPosHorz();
    if (m_host.GetSuppressScrollNotifications() == 0) m_host.OnScrolledHorz();
    return 1;
}

// --- Who is told

void CTovReportTable::SetSuppressAllNotifications(int suppress) {
    m_host.SetSuppressDeletionNotifications(suppress);
    m_host.SetSuppressSelectionNotifications(suppress);
    m_host.SetSuppressCheckNotifications(suppress);
    m_host.SetSuppressScrollNotifications(suppress);
    m_host.SetSuppressHideNotifications(suppress);
    m_host.SetSuppressRefreshNotifications(suppress);
    m_host.SetSuppressDisableNotifications(suppress);
}

int CTovReportTable::GetSuppressAllNotifications() const {
    CTovReportSettings const& s = settings;
    std::array const gates{s.suppressDeletion, s.suppressSelection, s.suppressCheck,  s.suppressScroll,
                           s.suppressHide,     s.suppressRefresh,   s.suppressDisable};
    return std::none_of(gates.begin(), gates.end(), [](int gate) { return gate == 0; });
}

void CTovReportTable::SaveAllSuppressNotifications() {
    CTovReportSettings const& s = settings;
    m_savedSuppress = {s.suppressDeletion, s.suppressSelection, s.suppressCheck,
                       s.suppressScroll,   s.suppressHide,      s.suppressRefresh};
}

int CTovReportTable::RestoreAllSuppressNotifications() {
    if (m_savedSuppress.empty()) return 0;
    std::vector<int> const saved = std::exchange(m_savedSuppress, {});
    settings.suppressDeletion = saved[0];
    settings.suppressSelection = saved[1];
    settings.suppressCheck = saved[2];
    settings.suppressScroll = saved[3];
    settings.suppressHide = saved[4];
    settings.suppressRefresh = saved[5];
    return 1;
}

void CTovReportTable::AddItemNotification(HWND window, long mask) {
    for (NOTIFY_ITEM& entry : m_vecNotifyItems) {
        if (entry.hWnd == window) {
            entry.nMask |= mask;
            return;
        }
    }
    if (window && mask != 0) m_vecNotifyItems.push_back({window, mask});
}

// While messages are being sent, entries keep their places.
void CTovReportTable::RemoveItemNotification(HWND window, long mask) {
    for (NOTIFY_ITEM& entry : m_vecNotifyItems) {
        if (entry.hWnd == window) entry.nMask &= eNotifyItemAll - mask;
    }
    if (m_sending == 0) std::erase_if(m_vecNotifyItems, [](NOTIFY_ITEM const& e) { return e.nMask == 0; });
}

void CTovReportTable::SendNotificationToNotifyItems(eNotifyItem bit, unsigned int message, LPARAM lParam) {
    if (m_vecNotifyItems.empty()) return;
    auto const view = reinterpret_cast<WPARAM>(m_host.ViewPointer());
    ++m_sending;
    std::size_t const count = m_vecNotifyItems.size();
    for (std::size_t i = 0; i < count; ++i) {
        NOTIFY_ITEM const entry = m_vecNotifyItems[i];
        if ((entry.nMask & bit) != 0 && IsWindow(entry.hWnd) != 0)
            TovSendMessage(entry.hWnd, message, view, lParam);
    }
    if (--m_sending == 0) std::erase_if(m_vecNotifyItems, [](NOTIFY_ITEM const& e) { return e.nMask == 0; });
}

}  // namespace tov
