// What a report must do, in the plainest and slowest form: vectors, walks, and no handler that interferes.
#pragma once

#include "support/fake_report.h"

namespace tov::test {

struct MirrorRow {
    int id = 0;
    std::array<int, 3> keys{};
    bool hidden = false, checked = false, selected = false, disabled = false, deleted = false;

    bool Visible() const { return !hidden && !deleted; }
};

struct MirrorCol {
    unsigned id = 0;
    int width = 0;
    bool hidden = false, deleted = false;
    int order = 0, left = 0;

    bool Visible() const { return !hidden && !deleted; }
};

enum Gate { gateDelete, gateSelect, gateCheck, gateScroll, gateHide, gateRefresh, gateDisable, gateCount };

struct ReportMirror {
    static constexpr unsigned none = tovNoIndex;
    using Rows = std::vector<unsigned>;
    using Keys = std::vector<SORT_STATE_REALCOL>;

    ReportMirror() {
        list.rows = [this] { return static_cast<unsigned>(screen.size()); };
        gates.fill(1);
    }

    // --- Telling

    bool Open(Gate gate, bool notify) const { return notify && gates[gate] == 0; }
    void Message(long bit, unsigned message, unsigned lParam) {
        for (long const mask : masks)
            if ((mask & bit) != 0) log.Tell("message", message, lParam);
    }

    // --- Rows

    unsigned ScreenOf(unsigned real) const {
        auto const at = std::find(screen.begin(), screen.end(), real);
        bool const shown = real < rows.size() && rows[real].Visible() && at != screen.end();
        return shown ? static_cast<unsigned>(at - screen.begin()) : none;
    }
    bool Visible(unsigned real) const { return real < rows.size() && rows[real].Visible(); }

    // Whether row a belongs in front of row b.
    bool Before(unsigned a, unsigned b) const {
        for (auto const& key : keys) {
            if (key.nCol == none) break;
            if (key.nCol > 2) continue;
            int const x = rows[a].keys[key.nCol];
            int const y = rows[b].keys[key.nCol];
            if (x != y) return key.bAscending != 0 ? x < y : x > y;
        }
        return keys.empty() || keys[0].bAscending != 0 ? a < b : a > b;
    }
    unsigned InsertPos(unsigned real) const {
        unsigned at = 0;
        while (at < screen.size() && !Before(real, screen[at]))
            ++at;
        return at;
    }
    void Insert(unsigned real) { screen.insert(screen.begin() + static_cast<int>(InsertPos(real)), real); }
    void Remove(unsigned at) {
        unsigned const real = screen[at];
        screen.erase(screen.begin() + static_cast<int>(at));
        if (anchor == real) anchor = none;
        if (focus == real)
            focus = screen.empty() ? none : screen[std::min<std::size_t>(at, screen.size() - 1)];
    }
    void HoldV() { held = screen.empty() ? 0 : static_cast<int>(list.top) * 20; }
    void RestoreV() {
        list.RowsChanged();
        if (held < 1) return;
        list.Scroll(0, held - static_cast<int>(list.top) * 20);
        if (gates[gateScroll] == 0) log.Tell("ScrolledVert");
    }

    void Append(MirrorRow const& row, bool notify) {
        rows.push_back(row);
        auto const real = static_cast<unsigned>(rows.size() - 1);
        unsigned at = none;
        if (row.Visible()) {
            at = InsertPos(real);
            Insert(real);
            HoldV();
            RestoreV();
        }
        if (!notify) return;
        log.Tell("AppendRealItem", real, at);
        Message(eNotifyItemAppend, WM_TOV_REPORTVIEW_ITEM_APPEND, real);
    }

    void Display(bool notify) {
        if (!screen.empty()) return;
        keys.clear();
        if (notify) {
            log.Tell("DisplayItemsBegin", static_cast<unsigned>(rows.size()));
            Message(eNotifyItemDisplay, WM_TOV_REPORTVIEW_ITEM_DISPLAY_BEGIN,
                    static_cast<unsigned>(rows.size()));
        }
        for (unsigned real = 0; real < rows.size(); ++real)
            if (rows[real].Visible()) screen.push_back(real);
        list.RowsChanged();
        std::vector<int> const& state = stored["SortState"];
        Keys loaded;
        bool valid = state.size() % 2 == 0;
        bool shown = true;
        for (std::size_t i = 0; valid && i < state.size(); i += 2) {
            valid = state[i] >= 0 && state[i] <= static_cast<int>(cols.size());
            auto const col = static_cast<unsigned>(state[i]);
            loaded.push_back({col, state[i + 1] != 0 ? 1 : 0});
            if (valid && col < cols.size() && !cols[col].Visible()) shown = false;
        }
        if (valid && shown) Sort(loaded);
        RestoreV();
        if (!notify) return;
        log.Tell("DisplayItemsEnd", static_cast<unsigned>(screen.size()));
        Message(eNotifyItemDisplay, WM_TOV_REPORTVIEW_ITEM_DISPLAY_END, static_cast<unsigned>(screen.size()));
    }

    void Cleanup(bool notify) {
        if (!screen.empty()) HoldV();
        rows.clear();
        screen.clear();
        keys.clear();
        focus = anchor = none;
        list.RowsChanged();
        if (!notify) return;
        log.Tell("CleanupRealItems");
        Message(eNotifyItemCleanup, WM_TOV_REPORTVIEW_ITEM_CLEANUP, 0);
    }

    unsigned Hide(Rows reals, bool hide, bool notify) {
        notify = Open(gateHide, notify);
        HoldV();
        if (hide) {
            std::stable_sort(reals.begin(), reals.end(),
                             [this](unsigned a, unsigned b) { return ScreenOf(a) > ScreenOf(b); });
        } else {
            std::stable_sort(reals.begin(), reals.end());
        }
        unsigned changed = 0;
        for (unsigned const real : reals) {
            if (real >= rows.size() || rows[real].deleted || rows[real].hidden == hide) continue;
            unsigned const at = ScreenOf(real);
            if (notify) {
                bool const allowed = log.Tell("HideRealItem", real, at, hide) != 0;
                Message(eNotifyItemHide, hide ? WM_TOV_REPORTVIEW_ITEM_HIDE : WM_TOV_REPORTVIEW_ITEM_VIEW,
                        real);
                if (!allowed) continue;
                if (log.Tell("row hides", static_cast<unsigned>(rows[real].id), hide) == 0) continue;
            }
            rows[real].hidden = hide;
            if (hide) {
                if (at != none) Remove(at);
            } else {
                Insert(real);
            }
            ++changed;
        }
        RestoreV();
        return changed;
    }

    unsigned Delete(Rows reals, bool notify) {
        notify = Open(gateDelete, notify);
        if (notify) log.Tell("DeleteItemsBegin", static_cast<unsigned>(reals.size()));
        HoldV();
        std::stable_sort(reals.begin(), reals.end(),
                         [this](unsigned a, unsigned b) { return ScreenOf(a) > ScreenOf(b); });
        unsigned deleted = 0;
        for (unsigned const real : reals) {
            if (real >= rows.size() || rows[real].deleted) continue;
            unsigned const at = ScreenOf(real);
            if (notify) {
                if (at != none && log.Tell("DeleteItem", at) == 0) continue;
                if (log.Tell("DeleteRealItem", real, at) == 0) continue;
                if (log.Tell("row goes", static_cast<unsigned>(rows[real].id)) == 0) continue;
            }
            rows[real].deleted = true;
            if (at != none) Remove(at);
            if (notify) Message(eNotifyItemDelete, WM_TOV_REPORTVIEW_ITEM_DELETE, real);
            ++deleted;
        }
        RestoreV();
        if (notify) log.Tell("DeleteItemsEnd", deleted);
        return deleted;
    }

    void Refresh(unsigned real, bool notify) {
        if (!Visible(real) || !Open(gateRefresh, notify)) return;
        log.Tell("RefreshRealItem", real);
        Message(eNotifyItemRefresh, WM_TOV_REPORTVIEW_ITEM_REFRESH, real);
    }

    int Swap(unsigned first, unsigned second, unsigned count, bool notify) {
        if (first > second ? first <= second + count : second <= first + count) return 0;
        if (first + count >= rows.size() || second + count >= rows.size()) return 0;
        std::vector<std::pair<unsigned, unsigned>> moves;
        for (unsigned i = 0; i < count; ++i) {
            std::swap(rows[first + i], rows[second + i]);
            bool const a = rows[first + i].Visible();
            bool const b = rows[second + i].Visible();
            if (a != b) moves.emplace_back(a ? second + i : first + i, a ? first + i : second + i);
        }
        // Rows whose objects went out of sight go with the objects that came for them: from the top.
        auto const place = [this](unsigned real) { return std::find(screen.begin(), screen.end(), real); };
        std::sort(moves.begin(), moves.end(),
                  [&](auto const& x, auto const& y) { return place(x.first) < place(y.first); });
        for (auto const& move : moves)
            std::erase(screen, move.first);
        for (auto const& [from, to] : moves) {
            Insert(to);
            if (focus == from) focus = to;
            if (anchor == from) anchor = to;
        }
        for (unsigned i = 0; i < count; ++i)
            Refresh(first + i, notify);
        for (unsigned i = 0; i < count; ++i)
            Refresh(second + i, notify);
        return 1;
    }

    void Sort(Keys const& wanted) {
        if (wanted.size() > 3) return;
        keys = wanted;
        std::sort(screen.begin(), screen.end(),
                  [this](unsigned a, unsigned b) { return a != b && Before(a, b); });
        list.RowsChanged();
        log.Tell("SortOrderChanged");
        Message(eNotifyItemSortOrder, WM_TOV_REPORTVIEW_ITEM_SORT_ORDER, 0);
    }

    // --- States

    enum Kind { selecting, checking, disabling };

    bool Is(Kind kind, unsigned real) const {
        MirrorRow const& row = rows[real];
        return row.Visible() && (kind == selecting  ? row.selected
                                 : kind == checking ? row.checked
                                                    : row.disabled);
    }
    bool Disabled(unsigned real) const { return Is(disabling, real); }
    void Events(Kind kind, bool begin, unsigned on, unsigned off) {
        static constexpr char const* names[3][2] = {{"SelectItemsEnd", "SelectItemsBegin"},
                                                    {"CheckItemsEnd", "CheckItemsBegin"},
                                                    {"DisableItemsEnd", "DisableItemsBegin"}};
        log.Tell(names[kind][begin ? 1 : 0], on, off);
    }

    bool Change(Kind kind, unsigned real, bool on, bool notify) {
        MirrorRow& row = rows[real];
        auto const id = static_cast<unsigned>(row.id);
        unsigned const at = ScreenOf(real);
        if (kind == disabling) {
            if (!disableEnabled) return true;
            if (on && row.selected) {
                log.Tell("row selects", id, 0);
                row.selected = false;
            }
            log.Tell("row disables", id, on);
            row.disabled = on;
        } else if (kind == checking) {
            if (notify && log.Tell("CheckingRealItem", real, at, on) == 0) return false;
            log.Tell("row checks", id, on);
            row.checked = on;
        } else if (!on || !row.disabled) {
            log.Tell("row selects", id, on);
            row.selected = on;
        }
        if (!notify) return true;
        static constexpr char const* names[] = {"SelectRealItem", "CheckRealItem", "DisableRealItem"};
        static constexpr unsigned messages[][2] = {
            {WM_TOV_REPORTVIEW_ITEM_DESELECT, WM_TOV_REPORTVIEW_ITEM_SELECT},
            {WM_TOV_REPORTVIEW_ITEM_UNCHECK, WM_TOV_REPORTVIEW_ITEM_CHECK},
            {WM_TOV_REPORTVIEW_ITEM_ENABLE, WM_TOV_REPORTVIEW_ITEM_DISABLE}};
        log.Tell(names[kind], real, at, on);
        Message(eNotifyItemSelect << kind, messages[kind][on ? 1 : 0], real);
        return true;
    }
    static Gate GateOf(Kind kind) {
        return kind == selecting ? gateSelect : kind == checking ? gateCheck : gateDisable;
    }

    int ChangeOne(Kind kind, unsigned real, bool on, bool notify) {
        notify = Open(GateOf(kind), notify);
        if (Is(kind, real) == on) return 0;
        if (notify) Events(kind, true, on ? 1 : 0, on ? 0 : 1);
        if (!Change(kind, real, on, notify)) return 0;
        if (notify) Events(kind, false, on ? 1 : 0, on ? 0 : 1);
        return 1;
    }

    // `wanted` answers 0 or 1, or -1 to leave a row.
    template <class Wanted>
    unsigned ChangeAll(Kind kind, bool notify, Wanted const& wanted) {
        notify = Open(GateOf(kind), notify);
        std::array<unsigned, 2> counts{};
        auto const need = [&](unsigned real) {
            return wanted(real) >= 0 && (wanted(real) == 1) != Is(kind, real);
        };
        for (unsigned const real : screen)
            if (need(real)) ++counts[static_cast<std::size_t>(wanted(real))];
        if (notify && counts[0] + counts[1] == 0) return 0;
        if (notify) Events(kind, true, counts[1], counts[0]);
        counts = {};
        for (unsigned const real : screen) {
            int const state = wanted(real);
            if (need(real) && Change(kind, real, state == 1, notify))
                ++counts[static_cast<std::size_t>(state)];
        }
        if (notify) Events(kind, false, counts[1], counts[0]);
        return counts[0] + counts[1];
    }
    unsigned ChangeListed(Kind kind, Rows const& reals, bool on, bool notify, bool skipsDisabled) {
        notify = Open(GateOf(kind), notify);
        auto const size = static_cast<unsigned>(reals.size());
        if (notify) Events(kind, true, on ? size : 0, on ? 0 : size);
        unsigned changed = 0;
        for (unsigned const real : reals) {
            if (!Visible(real) || Is(kind, real) == on || (skipsDisabled && Disabled(real))) continue;
            changed += Change(kind, real, on, notify) ? 1u : 0u;
        }
        if (notify) Events(kind, false, on ? changed : 0, on ? 0 : changed);
        return changed;
    }

    // With what may stand against it: no check boxes, no disabling, disabled rows.
    bool IsOff(Kind kind) const { return kind == checking ? !boxes : kind == disabling && !disableEnabled; }
    unsigned WhenOff(Kind kind) const { return kind == checking ? none : 0; }
    bool Skips(Kind kind, bool even) const { return kind == checking || (kind == selecting && !even); }
    unsigned All(Kind kind, bool on, bool notify, bool even) {
        if (IsOff(kind)) return WhenOff(kind);
        return ChangeAll(kind, notify,
                         [&](unsigned real) { return Disabled(real) && Skips(kind, even) ? -1 : int{on}; });
    }
    unsigned Listed(Kind kind, Rows const& reals, bool on, bool notify, bool even) {
        return IsOff(kind) ? WhenOff(kind) : ChangeListed(kind, reals, on, notify, Skips(kind, even));
    }
    int One(Kind kind, unsigned real, bool on, bool notify, bool even) {
        if (IsOff(kind) || !Visible(real) || (kind == selecting && Disabled(real) && !even)) return 0;
        if (Is(kind, real) == on) return 1;
        return kind == selecting && Disabled(real) ? 0 : ChangeOne(kind, real, on, notify);
    }
    Rows RowsThat(Kind kind) const {
        Rows reals;
        std::copy_if(screen.begin(), screen.end(), std::back_inserter(reals),
                     [&](unsigned real) { return Is(kind, real); });
        return reals;
    }

    // --- Columns

    Rows ScreenCols() const {
        Rows shown;
        for (unsigned real = 0; real < cols.size(); ++real)
            if (cols[real].Visible()) shown.push_back(real);
        return shown;
    }
    unsigned ColsBefore(unsigned real) const {
        return static_cast<unsigned>(std::count_if(cols.begin(), cols.begin() + static_cast<int>(real),
                                                   [](MirrorCol const& col) { return col.Visible(); }));
    }
    void HoldCols() {
        Rows const shown = ScreenCols();
        int place = 0;
        int left = 0;
        for (unsigned const at : list.order) {
            MirrorCol& col = cols[shown[at]];
            col.order = place++;
            col.width = list.columns[at].width;
            col.left = left;
            left += col.width;
        }
    }
    void DropSort(unsigned real) {
        if (std::any_of(keys.begin(), keys.end(), [&](auto const& key) { return key.nCol == real; }))
            keys.clear();
    }
    bool HideColInternal(unsigned real, bool hide, bool notify) {
        MirrorCol& col = cols[real];
        unsigned const at = ColsBefore(real);
        if (col.deleted || col.hidden == hide || at == 0) return false;
        if (Open(gateHide, notify) && log.Tell("HideRealCol", real, at, hide) == 0) return false;
        if (notify && log.Tell("col hides", col.id, hide) == 0) return false;
        col.hidden = hide;
        if (hide) {
            col.width = list.columns[at].width;
            list.DeleteColumn(at);
            DropSort(real);
        } else {
            if (col.width < 1) col.width = 10;
            list.InsertColumn(at, 0, col.width, "");
        }
        return true;
    }
    unsigned HideCols(Rows const& reals, bool hide, bool notify) {
        unsigned changed = 0;
        for (unsigned const real : reals)
            changed += HideColInternal(real, hide, notify) ? 1u : 0u;
        HoldCols();
        return changed;
    }
    bool DeleteCol(unsigned real, bool notify) {
        MirrorCol& col = cols[real];
        unsigned const at = col.Visible() ? ColsBefore(real) : none;
        if (col.deleted || at == 0) return false;
        if (notify && (log.Tell("DeleteRealCol", real, at) == 0 || log.Tell("col goes", col.id) == 0))
            return false;
        if (col.Visible()) {
            list.DeleteColumn(at);
            DropSort(real);
        }
        col.deleted = true;
        HoldCols();
        return true;
    }
    std::vector<SORT_STATE_SCREENCOL> Marks() const {
        std::vector<SORT_STATE_SCREENCOL> marks;
        for (auto const& key : keys) {
            bool const shown = key.nCol < cols.size() && cols[key.nCol].Visible();
            marks.push_back({shown ? ColsBefore(key.nCol) : none, key.bAscending});
        }
        return marks;
    }

    ToldLog log;
    FakeList list;
    std::vector<MirrorRow> rows;
    std::vector<MirrorCol> cols;
    Rows screen;
    Keys keys;
    unsigned focus = none;
    unsigned anchor = none;
    std::array<int, gateCount> gates{};
    std::vector<long> masks;
    std::map<std::string, std::vector<int>> stored;
    int held = 0;
    bool boxes = false;
    bool disableEnabled = false;
};

}  // namespace tov::test
