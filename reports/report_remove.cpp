// Rows hidden, shown, deleted and exchanged, many at a time.
//
// What goes is taken from the bottom up, so that the places of what is still to come stay as they are. Where
// somebody who is told changes the rows, the place is looked up again.
#include <tov310/report_view_host.h>
#include <tov310/wait_cursor.h>

#include "reports/report_rows.h"
#include "reports/report_sort.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <utility>

namespace tov {
namespace {

// Entries without a place on the screen come first.
void SortFromBottom(std::vector<COMPLETE_ITEM>& items) {
    auto const below = [](COMPLETE_ITEM const& a, COMPLETE_ITEM const& b) { return a.nScreen > b.nScreen; };
    if (std::is_sorted(items.begin(), items.end(), below)) return;
    auto const strictlyAbove = [](COMPLETE_ITEM const& a, COMPLETE_ITEM const& b) {
        return a.nScreen >= b.nScreen;
    };
    if (std::adjacent_find(items.begin(), items.end(), strictlyAbove) == items.end()) {
        std::reverse(items.begin(), items.end());
    } else {
        std::stable_sort(items.begin(), items.end(), below);
    }
}

}  // namespace

// Where the object is that was at that index before it was told something; rows may have been exchanged.
unsigned int CTovReportTable::RealOf(CTovReportViewItem const* item, unsigned int real) const {
    if (m_vecRealItems[real].get() == item) return real;
    auto const at = std::find_if(m_vecRealItems.begin(), m_vecRealItems.end(),
                                 [item](auto const& other) { return other.get() == item; });
    return static_cast<unsigned int>(at - m_vecRealItems.begin());
}

unsigned int CTovReportTable::HideRealItems(std::vector<COMPLETE_ITEM>& items, int hide, int notify) {
    hide = hide != 0;
    notify = notify != 0 && m_host.GetSuppressHideNotifications() == 0;
    Operation const operation(*this);
    CTovWaitCursor const wait;
    m_host.HoldVScroll();
    Complete(items);
    if (hide != 0) {
        SortFromBottom(items);
    } else {
        std::stable_sort(items.begin(), items.end(),
                         [](COMPLETE_ITEM const& a, COMPLETE_ITEM const& b) { return a.nReal < b.nReal; });
    }
    unsigned int const generation = m_generation;
    unsigned int changed = 0;
    bool const atOnce = hide == 0 && notify == 0 && RowsStandInOrder();
    std::vector<unsigned int> coming;
    for (COMPLETE_ITEM const& entry : items) {
        if (generation != m_generation) break;
        CTovReportViewItem* item = m_vecRealItems[entry.nReal].get();
        if (item->IsDeleted() != 0 || (item->IsHidden() != 0) == (hide != 0)) continue;
        if (notify != 0) {
            unsigned int const screen = hide != 0 ? Locate(entry.nReal, entry.nScreen) : tovNoIndex;
            if (m_host.OnHideRealItem(entry.nReal, screen, hide) == 0) continue;
            if (generation != m_generation) break;
            item = m_vecRealItems[entry.nReal].get();
            if (item->IsDeleted() != 0 || (item->IsHidden() != 0) == (hide != 0)) continue;
        }
        std::uint64_t const stamp = m_vecScreenItems->Stamp();
        if (item->HideItem(hide, notify) == 0) continue;
        if (generation != m_generation) break;
        unsigned int const real = RealOf(item, entry.nReal);
        if (atOnce) {
            InvalidateHeldTexts(*item);
            coming.push_back(real);
            continue;
        }
        if (hide == 0) {
            InvalidateHeldTexts(*item);
            if (item->IsVisible() == 0) continue;
            bool const hasCome =
                stamp != m_vecScreenItems->Stamp() && m_vecScreenItems->Find(real) != CTovReportRows::none;
            if (!hasCome) InsertRow(real);
        } else if (unsigned int const screen = Locate(real, entry.nScreen); screen != tovNoIndex) {
            RemoveRow(screen);
        }
        ++changed;
        m_host.OnItemNotice(hide != 0 ? WM_TOV_REPORTVIEW_ITEM_HIDE : WM_TOV_REPORTVIEW_ITEM_VIEW, real);
    }
    MarkAllRows();
    if (atOnce) ShowRows(coming);
    m_host.RestoreVScroll();
    return changed + static_cast<unsigned int>(coming.size());
}

// Puts many rows into their places where nobody looks on meanwhile: the same ones that they would come to one
// by one.
void CTovReportTable::ShowRows(std::vector<unsigned int> coming) {
    CTovReportSort(m_vecRealItems, m_vecSortState).Sort(coming);
    std::vector<unsigned int> const rows = m_vecScreenItems->Copy();
    std::vector<unsigned int> merged;
    merged.reserve(rows.size() + coming.size());
    std::merge(rows.begin(), rows.end(), coming.begin(), coming.end(), std::back_inserter(merged),
               [this](unsigned int a, unsigned int b) { return StandsBefore(a, b); });
    m_vecScreenItems->Assign(merged);
    for (unsigned int const real : coming)
        m_host.OnItemNotice(WM_TOV_REPORTVIEW_ITEM_VIEW, real);
}

unsigned int CTovReportTable::HideAllItems(int hide, int notify) {
    std::vector<COMPLETE_ITEM> items;
    if (hide != 0) {
        CompleteItemFromScreen(AllScreenItems(), items);
    } else {
        for (unsigned int real = 0; real < m_vecRealItems.size(); ++real) {
            CTovReportViewItem const& item = *m_vecRealItems[real];
            if (item.IsDeleted() == 0 && item.IsHidden() != 0) items.push_back({real, tovNoIndex});
        }
    }
    return m_host.HideRealItems(items, hide, notify);
}

std::vector<unsigned int> CTovReportTable::AllScreenItems() const {
    std::vector<unsigned int> screen(m_vecScreenItems->size());
    std::iota(screen.begin(), screen.end(), 0u);
    return screen;
}

unsigned int CTovReportTable::DeleteRealItems(std::vector<COMPLETE_ITEM>& items, int notify) {
    notify = notify != 0 && m_host.GetSuppressDeletionNotifications() == 0;
    Operation const operation(*this);
    CTovWaitCursor const wait;
    unsigned int const generation = m_generation;
    if (notify != 0) m_host.OnDeleteItemsBegin(static_cast<unsigned int>(items.size()));
    m_host.HoldVScroll();
    Complete(items);
    SortFromBottom(items);
    unsigned int deleted = 0;
    // Whether the row is still there to be deleted, after somebody was told.
    auto const isThere = [this, generation](unsigned int real) {
        return generation == m_generation && m_vecRealItems[real]->IsDeleted() == 0;
    };
    for (COMPLETE_ITEM const& entry : items) {
        unsigned int real = entry.nReal;
        if (!isThere(real)) continue;
        auto const place = [this, &entry](unsigned int row) {
            return IsRealItemVisible(row) ? Locate(row, entry.nScreen) : tovNoIndex;
        };
        if (notify != 0) {
            unsigned int const screen = place(real);
            if (screen != tovNoIndex && m_host.OnDeleteItem(screen) == 0) continue;
            if (!isThere(real) || m_host.OnDeleteRealItem(real, place(real)) == 0 || !isThere(real)) continue;
        }
        CTovReportViewItem* const item = m_vecRealItems[real].get();
        bool const wasVisible = item->IsVisible() != 0;
        std::uint64_t const stamp = m_vecScreenItems->Stamp();
        if (item->DeleteItem(notify) == 0 || generation != m_generation) continue;
        real = RealOf(item, real);
        bool const mayStand = wasVisible || stamp != m_vecScreenItems->Stamp();
        unsigned int const screen = mayStand ? Locate(real, entry.nScreen) : tovNoIndex;
        if (screen != tovNoIndex) RemoveRow(screen);
        if (notify != 0)
            m_host.SendNotificationToNotifyItems(eNotifyItemDelete, WM_TOV_REPORTVIEW_ITEM_DELETE,
                                                 static_cast<LPARAM>(real));
        m_host.OnItemNotice(WM_TOV_REPORTVIEW_ITEM_DELETE, real);
        ++deleted;
    }
    MarkAllRows();
    m_host.RestoreVScroll();
    if (notify != 0) m_host.OnDeleteItemsEnd(deleted);
    return deleted;
}

// In property mode the row below, or the last one, is shown next.
int CTovReportTable::HandleDelete() {
    if (m_host.DeleteAllowed() == 0) return 0;
    if (m_host.IsPropertyView() == 0) return m_host.DeleteSelectedItems(1) != 0;
    Operation const operation(*this);
    unsigned int const real = m_host.GetPropertyRealItem();
    unsigned int const screen = RealItemToScreen(real);
    if (screen == tovNoIndex || m_host.DeleteRealItem(real, 1) == 0) return 0;
    unsigned int const count = GetItemCount();
    m_host.DisplayRealItemProperties(count != 0 ? ScreenItemToReal(std::min(screen, count - 1)) : tovNoIndex,
                                     nullptr);
    return 1;
}

int CTovReportTable::SwapRealItems(unsigned int first, unsigned int second, unsigned int count, int notify) {
    std::uint64_t const lower = std::min(first, second);
    std::uint64_t const upper = std::max(first, second);
    if (upper <= lower + count || upper + count >= m_vecRealItems.size()) return 0;
    Operation const operation(*this);
    auto const at = [this](unsigned int real) {
        return m_vecRealItems.begin() + static_cast<std::ptrdiff_t>(real);
    };
    std::swap_ranges(at(first), at(first + count), at(second));
    // A row whose new object is not to be seen follows the old one to its new index.
    std::vector<unsigned int> newIndex(m_vecRealItems.size(), tovNoIndex);
    bool moves = false;
    for (unsigned int i = 0; i < count; ++i) {
        unsigned int const a = first + i;
        unsigned int const b = second + i;
        TouchRow(a);
        TouchRow(b);
        if (IsRealItemVisible(a) == IsRealItemVisible(b)) continue;
        newIndex[a] = b;
        newIndex[b] = a;
        moves = true;
    }
    if (moves) MoveRows(newIndex);
    for (unsigned int const range : {first, second}) {
        for (unsigned int i = 0; i < count && range + i < m_vecRealItems.size(); ++i)
            m_host.RefreshRealItem(range + i, notify);
    }
    return 1;
}

void CTovReportTable::MoveRows(std::vector<unsigned int> const& newIndex) {
    std::vector<unsigned int> rows = m_vecScreenItems->Copy();
    std::vector<unsigned int> coming;
    auto const goes = [this, &newIndex, &coming](unsigned int row) {
        if (newIndex[row] == tovNoIndex || IsRealItemVisible(row)) return false;
        coming.push_back(newIndex[row]);
        if (m_nFocusedRealItem == row) m_nFocusedRealItem = newIndex[row];
        if (m_nAnchorRealItem == row) m_nAnchorRealItem = newIndex[row];
        return true;
    };
    rows.erase(std::remove_if(rows.begin(), rows.end(), goes), rows.end());
    m_vecScreenItems->Assign(rows);
    if (rows.empty()) SetInOrder(true);
    for (unsigned int const row : coming)
        InsertRow(row);
}

}  // namespace tov
