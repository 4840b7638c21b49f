// Selection, check marks and disabled rows: one row, many rows, all rows. The states are the row objects'
// own.
#include <tov310/report_view_host.h>
#include <tov310/wait_cursor.h>

#include "reports/report_rows.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tov {

// A state with the events around its changes.
struct CTovReportTable::StateKind {
    using Event = void (CTovReportViewHost::*)(unsigned int, unsigned int);

    Predicate is;
    Event begin;
    Event end;
    int (CTovReportViewHost::*suppressed)() const;
    // Answers 0 where somebody keeps the row as it is.
    int (*change)(CTovReportViewHost& host, COMPLETE_ITEM const& row, int state, CTovReportViewItem* item,
                  int notify);
};

CTovReportTable::StateKind const CTovReportTable::selected{
    &CTovReportViewItem::IsSelected, &CTovReportViewHost::OnSelectItemsBegin,
    &CTovReportViewHost::OnSelectItemsEnd, &CTovReportViewHost::GetSuppressSelectionNotifications,
    [](CTovReportViewHost& host, COMPLETE_ITEM const& row, int state, CTovReportViewItem* item, int notify) {
        host.OnSelectRealItemInternal(row.nReal, row.nScreen, state, item, notify);
        return 1;
    }};

CTovReportTable::StateKind const CTovReportTable::checked{
    &CTovReportViewItem::IsChecked, &CTovReportViewHost::OnCheckItemsBegin,
    &CTovReportViewHost::OnCheckItemsEnd, &CTovReportViewHost::GetSuppressCheckNotifications,
    [](CTovReportViewHost& host, COMPLETE_ITEM const& row, int state, CTovReportViewItem* item, int notify) {
        return host.OnCheckRealItemInternal(row.nReal, row.nScreen, state, item, notify);
    }};

CTovReportTable::StateKind const CTovReportTable::disabled{
    &CTovReportViewItem::IsDisabled, &CTovReportViewHost::OnDisableItemsBegin,
    &CTovReportViewHost::OnDisableItemsEnd, &CTovReportViewHost::GetSuppressDisableNotifications,
    [](CTovReportViewHost& host, COMPLETE_ITEM const& row, int state, CTovReportViewItem* item, int notify) {
        host.OnDisableRealItemInternal(row.nReal, row.nScreen, state, item, notify);
        return 1;
    }};

namespace {

constexpr int leaveAsItIs = -1;
constexpr std::size_t rowsAhead = 12;  // that memory is asked for before it is their turn

}  // namespace

// --- One row

int CTovReportTable::ChangeOne(StateKind const& kind, unsigned int screen, int state, int notify) {
    state = state != 0;
    notify = notify != 0 && (m_host.*kind.suppressed)() == 0;
    unsigned int const real = ScreenItemToReal(screen);
    if (real == tovNoIndex || (GetRealItem(real)->*kind.is)() == state) return 0;
    Operation const operation(*this);
    unsigned int const generation = m_generation;
    unsigned int const on = state != 0 ? 1 : 0;
    if (notify != 0) (m_host.*kind.begin)(on, 1 - on);
    if (generation != m_generation || !IsRealItemVisible(real)) return 0;
    CTovReportViewItem* const item = GetRealItem(real);
    if ((item->*kind.is)() == state) return 0;
    if (kind.change(m_host, {real, Locate(real, screen)}, state, item, notify) == 0) return 0;
    if (notify != 0) (m_host.*kind.end)(on, 1 - on);
    return 1;
}

int CTovReportTable::SelectItem(unsigned int screen, int select, int notify, int evenIfDisabled) {
    unsigned int const real = ScreenItemToReal(screen);
    if (real == tovNoIndex || (evenIfDisabled == 0 && GetRealItem(real)->IsDisabled() != 0)) return 0;
    return ChangeOne(selected, screen, select, notify);
}

int CTovReportTable::CheckItem(unsigned int screen, int check, int notify) {
    return m_host.ShowCheckboxes() != 0 ? ChangeOne(checked, screen, check, notify) : 0;
}

int CTovReportTable::SelectRealItem(unsigned int real, int select, int notify, int evenIfDisabled) {
    if (!IsRealItemVisible(real)) return 0;
    CTovReportViewItem const& item = *GetRealItem(real);
    if (item.IsDisabled() != 0 && evenIfDisabled == 0) return 0;
    if (item.IsSelected() == (select != 0)) return 1;
    return m_host.SelectItem(RealItemToScreen(real), select, notify, 0);
}

int CTovReportTable::CheckRealItem(unsigned int real, int check, int notify) {
    if (m_host.ShowCheckboxes() == 0 || !IsRealItemVisible(real)) return 0;
    if (GetRealItem(real)->IsChecked() == (check != 0)) return 1;
    return m_host.CheckItem(RealItemToScreen(real), check, notify);
}

int CTovReportTable::DisableRealItem(unsigned int real, int disable, int notify) {
    if (m_host.DisableRealItemsEnabled() == 0 || !IsRealItemVisible(real)) return 0;
    if (GetRealItem(real)->IsDisabled() == (disable != 0)) return 1;
    return ChangeOne(disabled, RealItemToScreen(real), disable, notify);
}

// --- The change itself. The row object is always told; the view's events obey the gates.

void CTovReportTable::OnSelectRealItemInternal(unsigned int real, unsigned int screen, int select,
                                               CTovReportViewItem* item, int notify) {
    Operation const operation(*this);
    bool const tells = notify != 0 && m_host.GetSuppressSelectionNotifications() == 0;
    item->SelectItem(select, 1);
    MarkRow(screen);
    unsigned int const message =
        select != 0 ? WM_TOV_REPORTVIEW_ITEM_SELECT : WM_TOV_REPORTVIEW_ITEM_DESELECT;
    if (tells) {
        m_host.OnSelectRealItem(real, screen, select);
        m_host.SendNotificationToNotifyItems(eNotifyItemSelect, message, static_cast<LPARAM>(real));
    }
    m_host.OnItemNotice(message, real);
}

int CTovReportTable::OnCheckRealItemInternal(unsigned int real, unsigned int screen, int check,
                                             CTovReportViewItem* item, int notify) {
    Operation const operation(*this);
    bool const tells = notify != 0 && m_host.GetSuppressCheckNotifications() == 0;
    if (tells && m_host.OnCheckingRealItem(real, screen, check) == 0) return 0;
    item->CheckItem(check, 1);
    MarkRow(screen);
    unsigned int const message = check != 0 ? WM_TOV_REPORTVIEW_ITEM_CHECK : WM_TOV_REPORTVIEW_ITEM_UNCHECK;
    if (tells) {
        m_host.OnCheckRealItem(real, screen, check);
        m_host.SendNotificationToNotifyItems(eNotifyItemCheck, message, static_cast<LPARAM>(real));
    }
    m_host.OnItemNotice(message, real);
    return 1;
}

void CTovReportTable::OnDisableRealItemInternal(unsigned int real, unsigned int screen, int disable,
                                                CTovReportViewItem* item, int notify) {
    if (m_host.DisableRealItemsEnabled() == 0) return;
    Operation const operation(*this);
    bool const tells = notify != 0 && m_host.GetSuppressDisableNotifications() == 0;
    item->DisableItem(disable, 1);
    MarkRow(screen);
    unsigned int const message =
        disable != 0 ? WM_TOV_REPORTVIEW_ITEM_DISABLE : WM_TOV_REPORTVIEW_ITEM_ENABLE;
    if (tells) {
        m_host.OnDisableRealItem(real, screen, disable);
        m_host.SendNotificationToNotifyItems(eNotifyItemDisable, message, static_cast<LPARAM>(real));
    }
    m_host.OnItemNotice(message, real);
}

// The gray text of disabled rows is a colour of the row's own.
void CTovReportTable::DisableRealItemsEnabled(int enabled) {
    bool const wasEnabled = settings.disableRealItemsEnabled != 0;
    settings.disableRealItemsEnabled = enabled;
    int const perSubItem = settings.customColorsPerSubItem;
    if (!wasEnabled && enabled != 0) m_host.CustomItemColors(1, perSubItem);
    if (wasEnabled && enabled == 0 && perSubItem == 0) m_host.CustomItemColors(0, 0);
}

// --- All rows on the screen. `wanted` tells for a row its new state, or to leave it.

template <class Wanted>
unsigned int CTovReportTable::ChangeAll(StateKind const& kind, int notify, Wanted const& wanted) {
    notify = notify != 0 && (m_host.*kind.suppressed)() == 0;
    Operation const operation(*this);
    CTovWaitCursor const wait;
    if (notify != 0) {
        std::array<unsigned int, 2> counts{};
        m_vecScreenItems->Walk([this, &kind, &wanted, &counts](unsigned int real) {
            CTovReportViewItem const& item = *m_vecRealItems[real];
            int const state = wanted(item);
            if (state != leaveAsItIs && state != (item.*kind.is)()) ++counts[state != 0 ? 1 : 0];
            return false;
        });
        if (counts[0] == 0 && counts[1] == 0) return 0;
        (m_host.*kind.begin)(counts[1], counts[0]);
    }
    std::vector<unsigned int> const rows = m_vecScreenItems->Copy();
    return ChangeRows(kind, rows, nullptr, notify, wanted);
}

// The rows that are there when it is their turn and need it. `screens` tells where they stood at the
// beginning; without it they stand in the order of the screen.
template <class Wanted>
unsigned int CTovReportTable::ChangeRows(StateKind const& kind, std::vector<unsigned int> const& reals,
                                         std::vector<unsigned int> const* screens, int notify,
                                         Wanted const& wanted) {
    std::array<unsigned int, 2> counts{};
    unsigned int const generation = m_generation;
    std::uint64_t const stamp = m_vecScreenItems->Stamp();
    unsigned int moved = 0;  // as far as rows have moved up or, beyond the range, down
    for (std::size_t i = 0; i < reals.size(); ++i) {
        unsigned int const real = reals[i];
        if (generation != m_generation) break;
        // Rows that were sorted lie all over the memory.
        if (i + 2 * rowsAhead < reals.size()) {
            __builtin_prefetch(m_vecRealItems.data() + reals[i + 2 * rowsAhead]);
            __builtin_prefetch(m_vecRealItems[reals[i + rowsAhead]].get(), 1);
        }
        CTovReportViewItem* const item = m_vecRealItems[real].get();
        int const state = item->IsVisible() != 0 ? wanted(*item) : leaveAsItIs;
        if (state == leaveAsItIs || state == (item->*kind.is)()) continue;
        unsigned int const before = screens != nullptr ? (*screens)[i] : static_cast<unsigned int>(i);
        unsigned int screen = before;
        if (stamp != m_vecScreenItems->Stamp()) {
            screen = Locate(real, before - moved);
            if (screen != tovNoIndex) moved = before - screen;
        }
        if (screens == nullptr && screen == tovNoIndex) continue;
        if (kind.change(m_host, {real, screen}, state, item, notify) != 0) ++counts[state != 0 ? 1 : 0];
    }
    if (notify != 0) (m_host.*kind.end)(counts[1], counts[0]);
    return counts[0] + counts[1];
}

unsigned int CTovReportTable::SelectAllItems(int select, int notify, int evenIfDisabled) {
    int const state = select != 0;
    return ChangeAll(selected, notify, [state, evenIfDisabled](CTovReportViewItem const& item) {
        return evenIfDisabled == 0 && item.IsDisabled() != 0 ? leaveAsItIs : state;
    });
}

unsigned int CTovReportTable::CheckAllItems(int check, int notify) {
    if (m_host.ShowCheckboxes() == 0) return tovNoIndex;
    int const state = check != 0;
    return ChangeAll(checked, notify, [state](CTovReportViewItem const& item) {
        return item.IsDisabled() != 0 ? leaveAsItIs : state;
    });
}

unsigned int CTovReportTable::DisableAllItems(int disable, int notify) {
    if (m_host.DisableRealItemsEnabled() == 0) return 0;
    int const state = disable != 0;
    return ChangeAll(disabled, notify, [state](CTovReportViewItem const&) { return state; });
}

unsigned int CTovReportTable::InvertSelection(int notify) {
    return ChangeAll(selected, notify, [](CTovReportViewItem const& item) {
        return item.IsDisabled() != 0 ? leaveAsItIs : 1 - item.IsSelected();
    });
}

unsigned int CTovReportTable::SelectCheckedItems(int notify) {
    if (m_host.ShowCheckboxes() == 0) return tovNoIndex;
    return ChangeAll(selected, notify, [](CTovReportViewItem const& item) {
        return item.IsDisabled() != 0 ? leaveAsItIs : item.IsChecked();
    });
}

unsigned int CTovReportTable::InvertChecked(int notify) {
    if (m_host.ShowCheckboxes() == 0) return tovNoIndex;
    return ChangeAll(checked, notify, [](CTovReportViewItem const& item) {
        return item.IsDisabled() != 0 ? leaveAsItIs : 1 - item.IsChecked();
    });
}

// --- Listed rows, by the two kinds of indexes. The beginning is told with the length of the list.

unsigned int CTovReportTable::ChangeListed(StateKind const& kind, std::vector<unsigned int> reals,
                                           std::vector<unsigned int> screens, int state, int notify,
                                           bool skipsDisabled) {
    state = state != 0;
    notify = notify != 0 && (m_host.*kind.suppressed)() == 0;
    Operation const operation(*this);
    CTovWaitCursor const wait;
    auto const listed = static_cast<unsigned int>(reals.size());
    unsigned int const generation = m_generation;
    std::uint64_t const stamp = m_vecScreenItems->Stamp();
    if (notify != 0) (m_host.*kind.begin)(state != 0 ? listed : 0, state != 0 ? 0 : listed);
    if (generation != m_generation) reals.clear();
    if (std::any_of(reals.begin(), reals.end(),
                    [this](unsigned int real) { return real >= GetRealItemCount(); })) {
        std::erase_if(reals, [this](unsigned int real) { return real >= GetRealItemCount(); });
        screens.clear();
    }
    if (screens.size() != reals.size() || stamp != m_vecScreenItems->Stamp())
        RealItemsToScreen(reals, screens);
    return ChangeRows(kind, reals, &screens, notify, [state, skipsDisabled](CTovReportViewItem const& item) {
        return skipsDisabled && item.IsDisabled() != 0 ? leaveAsItIs : state;
    });
}

unsigned int CTovReportTable::SelectRealItems(std::vector<unsigned int> const& real, int select, int notify,
                                              int evenIfDisabled) {
    return ChangeListed(selected, real, {}, select, notify, evenIfDisabled == 0);
}

unsigned int CTovReportTable::CheckRealItems(std::vector<unsigned int> const& real, int check, int notify) {
    if (m_host.ShowCheckboxes() == 0) return tovNoIndex;
    return ChangeListed(checked, real, {}, check, notify, true);
}

unsigned int CTovReportTable::DisableRealItems(std::vector<unsigned int> const& real, int disable,
                                               int notify) {
    if (m_host.DisableRealItemsEnabled() == 0) return 0;
    return ChangeListed(disabled, real, {}, disable, notify, false);
}

unsigned int CTovReportTable::SelectItems(std::vector<unsigned int> const& screen, int select, int notify,
                                          int evenIfDisabled) {
    std::vector<unsigned int> real;
    ScreenItemsToReal(screen, real);
    return ChangeListed(selected, std::move(real), screen, select, notify, evenIfDisabled == 0);
}

unsigned int CTovReportTable::CheckItems(std::vector<unsigned int> const& screen, int check, int notify) {
    if (m_host.ShowCheckboxes() == 0) return tovNoIndex;
    std::vector<unsigned int> real;
    ScreenItemsToReal(screen, real);
    return ChangeListed(checked, std::move(real), screen, check, notify, false);
}

// --- Questions

unsigned int CTovReportTable::Count(Predicate is, unsigned int atMost) const {
    unsigned int count = 0;
    m_vecScreenItems->Walk([this, is, atMost, &count](unsigned int real) {
        return (m_vecRealItems[real].get()->*is)() != 0 && ++count == atMost;
    });
    return count;
}

int CTovReportTable::List(Predicate is, std::vector<unsigned int>& screen) const {
    screen.clear();
    unsigned int row = 0;
    m_vecScreenItems->Walk([this, is, &screen, &row](unsigned int real) {
        if ((m_vecRealItems[real].get()->*is)() != 0) screen.push_back(row);
        ++row;
        return false;
    });
    return !screen.empty();
}

int CTovReportTable::ListReal(Predicate is, std::vector<unsigned int>& real) const {
    real.clear();
    for (unsigned int row = 0; row < m_vecRealItems.size(); ++row) {
        if ((m_vecRealItems[row].get()->*is)() != 0) real.push_back(row);
    }
    return !real.empty();
}

}  // namespace tov
