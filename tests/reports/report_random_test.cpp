// Reports under random operations: against their mirror, and with handlers that change the report meanwhile.
#include "support/report_mirror.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <set>

namespace tov::test {
namespace {

using Rows = std::vector<unsigned>;
using Keys = std::vector<SORT_STATE_REALCOL>;
constexpr unsigned none = tovNoIndex;

// A report and its mirror, to which the same happens.
class Twins {
    using Kind = ReportMirror::Kind;

 public:
    explicit Twins(unsigned seed) : m_random(seed) { Refill(true); }

    void Step(unsigned step) {
        m_report.log.entries.clear();
        m_mirror.log.entries.clear();
        m_report.log.step = m_mirror.log.step = step;
        m_report.log.vetoOneIn = m_mirror.log.vetoOneIn = Chance(2) ? 6 : 0;
        bool const isStale = m_mirror.rows.size() > 30 || m_mirror.screen.size() < 4;
        return isStale && Chance(12) ? Refill(Chance(4)) : Act();
    }

    // What differs, or an empty text.
    std::string Difference() {
        if (m_report.log.entries != m_mirror.log.entries)
            return Print("told", m_report.log.entries) + Print("instead of", m_mirror.log.entries);
        std::vector<long> own{m_report.GetItemCount(), m_report.GetFocusedRealItem(), m_report.list.top,
                              m_report.table.AnchorRealItem()};
        std::vector<long> wanted{std::ssize(m_mirror.screen), m_mirror.focus, m_mirror.list.top,
                                 m_mirror.anchor};
        for (unsigned i = 0; i < m_mirror.screen.size(); ++i) {
            own.push_back(m_report.ScreenItemToReal(i));
            wanted.push_back(m_mirror.screen[i]);
        }
        for (unsigned real = 0; real < m_mirror.rows.size(); ++real) {
            MirrorRow const& row = m_mirror.rows[real];
            auto const& item = static_cast<FakeRow const&>(*m_report.GetRealItem(real));
            own.insert(own.end(), {item.id, item.IsHidden(), item.IsDeleted(), item.IsSelected(),
                                   item.IsChecked(), item.IsDisabled(), m_report.RealItemToScreen(real)});
            wanted.insert(wanted.end(), {row.id, row.hidden, row.deleted, m_mirror.Is(Kind::selecting, real),
                                         m_mirror.Is(Kind::checking, real), m_mirror.Disabled(real),
                                         m_mirror.ScreenOf(real)});
        }
        for (unsigned real = 0; real < m_mirror.cols.size(); ++real) {
            MirrorCol const& col = m_mirror.cols[real];
            CTovReportViewCol const& shown = *m_report.GetRealCol(real);
            bool const visible = col.Visible();
            own.insert(own.end(), {shown.IsHidden(), shown.IsDeleted(), shown.GetWidth(),
                                   visible ? shown.GetOrder() : 0, visible ? shown.GetLeft() : 0});
            wanted.insert(wanted.end(), {col.hidden, col.deleted, col.width, visible ? col.order : 0,
                                         visible ? col.left : 0});
        }
        bool const same = m_report.table.SortState() == m_mirror.keys &&
                          m_report.list.marks == m_mirror.Marks() &&
                          m_report.list.order == m_mirror.list.order;
        return own == wanted && same ? "" : Print("state", own) + Print("instead of", wanted);
    }

 private:
    template <class What>
    static std::string Print(char const* name, What const& what) {
        return std::string(name) + "\n" + testing::PrintToString(what) + "\n";
    }
    unsigned Below(std::size_t count) { return count == 0 ? 0 : static_cast<unsigned>(m_random() % count); }
    bool Chance(unsigned oneIn) { return Below(oneIn) == 0; }
    unsigned AnyRow() { return Below(m_mirror.rows.size() + 1); }
    Rows SomeRows() {
        Rows rows(Below(6));
        for (unsigned& row : rows)
            row = AnyRow();
        return rows;
    }
    Rows Screens(Rows const& reals) {
        Rows screens;
        for (unsigned const real : reals)
            if (m_mirror.ScreenOf(real) != none) screens.push_back(m_mirror.ScreenOf(real));
        return screens;
    }
    Rows Reals(Rows const& screens) {
        Rows reals;
        for (unsigned const at : screens)
            reals.push_back(m_mirror.screen[at]);
        return reals;
    }
    Keys SomeKeys() {
        Keys keys(Below(9) == 0 ? 4 : Below(4));
        for (auto& key : keys)
            key = {Chance(12) ? none : Below(m_mirror.cols.size()), Chance(2) ? 1 : 0};
        return keys;
    }
    MirrorRow NewRow() {
        unsigned const states = Chance(2) ? 0 : Below(16);
        return {m_nextId++,
                {static_cast<int>(Below(5)), static_cast<int>(Below(12)), static_cast<int>(Below(3))},
                (states & 1) != 0,
                (states & 2) != 0,
                (states & 4) != 0,
                (states & 8) != 0};
    }
    FakeRow* Twin(MirrorRow const& row) {
        return new FakeRow(&m_report, row.id, row.keys,
                           row.hidden * 1u | row.checked * 2u | row.selected * 4u | row.disabled * 8u);
    }

    void Refill(bool columns) {
        bool const notify = Chance(2);
        m_report.CleanupRealItems(notify);
        m_mirror.Cleanup(notify);
        EXPECT_EQ(FakeRow::alive, 0);
        if (columns) {
            m_report.CleanupRealCols();
            m_mirror.list.columns.clear();
            m_mirror.list.order.clear();
            m_mirror.cols.clear();
            m_report.stored["ColWidth"].clear();
            m_report.stored["ColOrder"].clear();
            for (unsigned real = 0; real < 5; ++real) {
                MirrorCol const col{real, static_cast<int>(Below(90)), real != 0 && Chance(4)};
                m_mirror.cols.push_back(col);
                m_report.AddRealCol(new FakeCol(&m_report, real, col.hidden, col.width));
            }
            m_report.DisplayRealCols(0);
            for (unsigned const real : m_mirror.ScreenCols())
                m_mirror.list.InsertColumn(m_mirror.ColsBefore(real), 0, m_mirror.cols[real].width, "");
            m_mirror.HoldCols();
        }
        if (Chance(4)) m_report.stored["SortState"] = {1, 1, Chance(2) ? 4 : 0, 0, Chance(9) ? -3 : 2, 1};
        m_mirror.stored = m_report.stored;
        m_report.tellsKeys = Chance(2);
        for (unsigned i = Below(24); i > 0; --i) {
            m_mirror.rows.push_back(NewRow());
            m_report.AddRealItem(Twin(m_mirror.rows.back()));
        }
        m_report.DisplayRealItems(notify);
        m_mirror.Display(notify);
    }

    void SetGates() {
        unsigned const bits = Chance(2) ? 0 : Below(1u << gateCount);
        for (std::size_t i = 0; i < gateCount; ++i)
            m_mirror.gates[i] = static_cast<int>(bits >> i & 1);
        m_report.SetSuppressDeletionNotifications(m_mirror.gates[gateDelete]);
        m_report.SetSuppressSelectionNotifications(m_mirror.gates[gateSelect]);
        m_report.SetSuppressCheckNotifications(m_mirror.gates[gateCheck]);
        m_report.SetSuppressScrollNotifications(m_mirror.gates[gateScroll]);
        m_report.SetSuppressHideNotifications(m_mirror.gates[gateHide]);
        m_report.SetSuppressRefreshNotifications(m_mirror.gates[gateRefresh]);
        m_report.SetSuppressDisableNotifications(m_mirror.gates[gateDisable]);
        EXPECT_EQ(m_report.GetSuppressAllNotifications(), bits == (1u << gateCount) - 1);
        m_mirror.boxes = !Chance(3);
        m_report.ShowCheckboxes(m_mirror.boxes);
        m_mirror.disableEnabled = !Chance(3);
        m_report.DisableRealItemsEnabled(m_mirror.disableEnabled);
        long const mask = static_cast<long>(Below(1024));
        bool const adds = Chance(2);
        adds ? m_report.AddItemNotification(m_window.GetSafeHwnd(), mask)
             : m_report.RemoveItemNotification(m_window.GetSafeHwnd(), mask);
        long const before = m_mirror.masks.empty() ? 0 : m_mirror.masks[0];
        m_mirror.masks.assign(1, adds ? before | mask : before & (1023 - mask));
    }

    void Act() {
        bool const notify = !Chance(3);
        bool const on = Chance(2);
        bool const even = Chance(3);
        unsigned const row = AnyRow();
        Rows rows = SomeRows();
        if (Chance(4)) return ActOnStates(row, rows, on, notify, even);
        if (Chance(5)) {
            MirrorRow const added = NewRow();
            m_report.AppendRealItem(Twin(added), notify);
            return m_mirror.Append(added, notify);
        }
        switch (Below(17)) {
            case 0:
                return SetGates();
            case 1:
                return Same(
                    static_cast<unsigned>(m_report.DeleteItem(row, notify)),
                    m_mirror.Delete({row < m_mirror.screen.size() ? m_mirror.screen[row] : none}, notify));
            case 2: {
                std::vector<COMPLETE_ITEM> items;
                m_report.CompleteItemFromReal(rows, items);
                if (!items.empty() && Chance(4)) items[0].nScreen = Below(40);  // out of date
                return Same(m_report.HideRealItems(items, on, notify), m_mirror.Hide(rows, on, notify));
            }
            case 3: {
                Rows reals = m_mirror.screen;
                if (!on) {
                    reals.clear();
                    for (unsigned real = 0; real < m_mirror.rows.size(); ++real)
                        if (m_mirror.rows[real].hidden && !m_mirror.rows[real].deleted) reals.push_back(real);
                }
                return Same(m_report.HideAllItems(on, notify), m_mirror.Hide(reals, on, notify));
            }
            case 4:
                return Same(m_report.DeleteRealItems(rows, notify), m_mirror.Delete(rows, notify));
            case 5: {
                Rows screens = Screens(rows);
                Rows const reals = Reals(screens);
                return Same(m_report.DeleteItems(screens, notify), m_mirror.Delete(reals, notify));
            }
            case 6:
                if (on)
                    return Same(m_report.DeleteSelectedItems(notify),
                                m_mirror.Delete(m_mirror.RowsThat(Kind::selecting), notify));
                return Same(m_report.DeleteDisabledItems(notify),
                            m_mirror.Delete(m_mirror.RowsThat(Kind::disabling), notify));
            case 7: {
                unsigned const other = AnyRow();
                unsigned const count = Below(5);
                return Same(m_report.SwapRealItems(row, other, count, notify),
                            m_mirror.Swap(row, other, count, notify));
            }
            case 8: {
                Keys const keys = SomeKeys();
                m_report.SortList(keys);
                return m_mirror.Sort(keys);
            }
            case 9: {
                unsigned const col = Below(m_mirror.cols.size());
                bool const flips = m_mirror.keys.size() == 1 && m_mirror.keys[0].nCol == col;
                m_report.OnHeaderClick(col, 0);
                m_mirror.Sort({{col, flips && m_mirror.keys[0].bAscending != 0 ? 0 : 1}});
                EXPECT_EQ(m_report.stored["SortState"].size(), 2u);
                m_mirror.stored["SortState"] = m_report.stored["SortState"];
                return;
            }
            case 10: {
                unsigned const count = m_report.GetItemCount();
                unsigned const a = Below(count);
                unsigned const b = Below(count);
                Rows range;
                for (unsigned at = std::min(a, b); at <= std::max(a, b) && at < count; ++at)
                    range.push_back(m_mirror.screen[at]);
                unsigned const done = m_report.SetItemSelection(a, b, notify);
                m_mirror.All(Kind::selecting, false, notify, false);
                return Same(done, m_mirror.ChangeListed(Kind::selecting, range, true, notify, true));
            }
            case 11: {  // a row is edited
                if (row >= m_mirror.rows.size()) return;
                m_mirror.rows[row].keys[0] = static_cast<int>(Below(5));
                static_cast<FakeRow*>(m_report.GetRealItem(row))->keys = m_mirror.rows[row].keys;
                if (on && m_mirror.ScreenOf(row) != none) {
                    m_report.RefreshItem(m_mirror.ScreenOf(row), notify);
                } else {
                    m_report.RefreshRealItem(row, notify);
                }
                return m_mirror.Refresh(row, notify);
            }
            case 12: {
                on ? m_report.RefreshAllItems(notify) : m_report.RefreshColItems(0, notify);
                for (unsigned const real : m_mirror.screen)
                    m_mirror.Refresh(real, notify);
                return;
            }
            case 13: {
                unsigned const col = Below(m_mirror.cols.size());
                if (even)
                    return Same(m_report.DeleteRealCol(col, notify), int{m_mirror.DeleteCol(col, notify)});
                return Same(static_cast<unsigned>(m_report.HideRealCol(col, on, notify)),
                            m_mirror.HideCols({col}, on, notify));
            }
            case 14: {
                unsigned const excluded = 1 + Below(m_mirror.cols.size() - 1);
                m_report.SetExcludeRealColFromViewHide(excluded, 1);
                Rows cols;
                for (unsigned col = 1; col < m_mirror.cols.size(); ++col)
                    if (!(even && col == excluded)) cols.push_back(col);
                Same(m_report.HideAllCols(on, even, notify), m_mirror.HideCols(cols, on, notify));
                return m_report.SetExcludeRealColFromViewHide(excluded, 0);
            }
            case 15: {  // the user drags a column, or its edge
                std::vector<unsigned>& order = m_mirror.list.order;
                std::swap(order[Below(order.size())], order[Below(order.size())]);
                unsigned const col = Below(order.size());
                m_mirror.list.columns[col].width = m_report.list.columns[col].width =
                    static_cast<int>(Below(200));
                m_report.list.order = order;
                m_report.table.OnColumnOrderChanged();
                m_report.table.OnColumnWidthChanged();
                return m_mirror.HoldCols();
            }
            default:
                if (m_mirror.screen.empty()) return;
                unsigned const at = Below(m_mirror.screen.size());
                if (on) {
                    m_report.table.SetAnchor(at);
                    m_mirror.anchor = m_mirror.screen[at];
                } else {
                    m_report.FocusItem(at, 1);
                    m_mirror.focus = m_mirror.screen[at];
                }
                m_report.list.top = m_mirror.list.top = at;
        }
    }

    void ActOnStates(unsigned row, Rows const& rows, bool on, bool notify, bool even) {
        auto const kind = static_cast<Kind>(Below(3));
        auto const byKind = [kind](auto const& select, auto const& check, auto const& disable) {
            return kind == Kind::selecting ? select() : kind == Kind::checking ? check() : disable();
        };
        switch (Below(4)) {
            case 0:
                return Same(byKind([&] { return m_report.SelectRealItem(row, on, notify, even); },
                                   [&] { return m_report.CheckRealItem(row, on, notify); },
                                   [&] { return m_report.DisableRealItem(row, on, notify); }),
                            m_mirror.One(kind, row, on, notify, even));
            case 1:
                return Same(byKind([&] { return m_report.SelectRealItems(rows, on, notify, even); },
                                   [&] { return m_report.CheckRealItems(rows, on, notify); },
                                   [&] { return m_report.DisableRealItems(rows, on, notify); }),
                            m_mirror.Listed(kind, rows, on, notify, even));
            case 2:
                return Same(byKind([&] { return m_report.SelectAllItems(on, notify, even); },
                                   [&] { return m_report.CheckAllItems(on, notify); },
                                   [&] { return m_report.DisableAllItems(on, notify); }),
                            m_mirror.All(kind, on, notify, even));
            default: {
                bool const selects = kind != Kind::checking;
                if (!selects && !m_mirror.boxes) return Same(m_report.InvertChecked(notify), none);
                if (even && !m_mirror.boxes) return Same(m_report.SelectCheckedItems(notify), none);
                auto const wanted = [&](unsigned real) {
                    MirrorRow const& its = m_mirror.rows[real];
                    bool const state = !selects ? !its.checked : even ? its.checked : !its.selected;
                    return its.disabled ? -1 : int{state};
                };
                unsigned const done = !selects ? m_report.InvertChecked(notify)
                                      : even   ? m_report.SelectCheckedItems(notify)
                                               : m_report.InvertSelection(notify);
                return Same(done,
                            m_mirror.ChangeAll(selects ? Kind::selecting : Kind::checking, notify, wanted));
            }
        }
    }

    template <class Answer>
    void Same(Answer own, std::type_identity_t<Answer> mirrored) {
        EXPECT_EQ(own, mirrored);
    }

    std::mt19937 m_random;
    FakeReport m_report;
    ReportMirror m_mirror;
    ToldWindow m_window{m_report.log};
    int m_nextId = 0;
};

TEST(ReportRandom, AMillionRandomOperationsLeaveWhatTheirMirrorSays) {
    char const* const asked = std::getenv("TOV_REPORT_STEPS");
    unsigned const steps =
        asked != nullptr ? static_cast<unsigned>(std::strtoul(asked, nullptr, 10)) : 1'000'000;
    for (unsigned seed = 1; seed <= 10; ++seed) {
        Twins twins(seed);
        for (unsigned step = 0; step < steps / 10; ++step) {
            twins.Step(step);
            std::string const difference = twins.Difference();
            ASSERT_TRUE(difference.empty() && !testing::Test::HasFailure())
                << "seed " << seed << " step " << step << ": " << difference;
        }
    }
    EXPECT_EQ(FakeRow::alive, 0);
}

// --- Handlers that change the report in the middle of what tells them

// What must be true of every report at any time.
std::string Broken(FakeReport& report) {
    Rows screen;
    for (unsigned i = 0; i < report.GetItemCount(); ++i)
        screen.push_back(report.ScreenItemToReal(i));
    std::set<unsigned> const shown(screen.begin(), screen.end());
    if (shown.size() != screen.size()) return "a row twice";
    for (unsigned real = 0; real < report.GetRealItemCount(); ++real) {
        bool const visible = report.GetRealItem(real)->IsVisible() != 0;
        if (visible != shown.contains(real))
            return "row " + std::to_string(real) + (visible ? " is not" : " is still") + " on the screen";
        if (visible && screen.at(report.RealItemToScreen(real)) != real) return "a wrong index";
    }
    unsigned const focus = report.GetFocusedRealItem();
    if (focus != none && !shown.contains(focus)) return "focus on a row that is not shown";
    Rows cols;
    for (unsigned real = 0; real < report.GetRealColumns(); ++real)
        if (report.GetRealCol(real)->IsVisible() != 0) cols.push_back(real);
    if (report.list.columns.size() != cols.size() || report.GetColumns() != cols.size()) return "columns";
    for (std::size_t i = 0; i < cols.size(); ++i)
        if (report.GetCol(static_cast<unsigned>(i))->GetLabel() != report.list.columns[i].label)
            return "labels";
    if (report.list.marks.size() != report.table.SortState().size()) return "marks";
    for (std::size_t i = 0; i < report.list.marks.size(); ++i)
        if (report.list.marks[i].nCol != report.RealColToScreen(report.table.SortState()[i].nCol, 0))
            return "marks";
    return "";
}

std::string Tail(ToldLog const& log) {
    auto const first = log.entries.end() - std::min<std::ptrdiff_t>(30, std::ssize(log.entries));
    return testing::PrintToString(std::vector<Told>(first, log.entries.end()));
}

TEST(ReportRandom, HandlersMayChangeTheReportInsideTheirEvents) {
    std::mt19937 random(7);
    auto const below = [&random](unsigned count) {
        return count == 0 ? 0 : static_cast<unsigned>(random() % count);
    };
    for (unsigned round = 0; round < 1500; ++round) {
        FakeReport report;
        ToldWindow window(report.log);
        int id = 0;
        unsigned depth = 0;
        bool ends = false;
        auto const newRow = [&] {
            return new FakeRow(&report, id++, {static_cast<int>(below(5)), static_cast<int>(below(5)), 0},
                               below(16));
        };
        auto const fill = [&] {
            report.AddRealCols({"A", "B", "C", "D"});
            report.CleanupRealItems(0);  // rows that came while columns were told of
            for (unsigned i = 0; i < 12; ++i)
                report.AddRealItem(newRow());
            report.DisplayRealItems(1);
        };
        auto const any = [&] { return below(report.GetRealItemCount()); };
        auto const flag = [&] { return static_cast<int>(below(2)); };
        Rows rows(3);
        std::vector<std::function<void()>> const acts{
            [&] { report.AppendRealItem(newRow(), 1); },
            [&] {
                report.SortList(Keys{{below(4), flag()}, {below(4), 1}});
            },
            [&] { report.HideRealItem(any(), flag(), 1); },
            [&] { report.HideAllItems(flag(), 1); },
            [&] { report.DeleteRealItems(rows, 1); },
            [&] { report.SwapRealItems(any(), any(), 2, 1); },
            [&] { report.SelectAllItems(flag(), 1, 0); },
            [&] { report.CheckAllItems(flag(), 1); },
            [&] { report.DisableRealItems(rows, flag(), 1); },
            [&] { report.SelectRealItems(rows, flag(), 1, 0); },
            [&] { report.CheckRealItem(any(), flag(), 1); },
            [&] { report.InvertSelection(1); },
            [&] { report.HideRealCol(below(4), flag(), 1); },
            [&] { report.DeleteRealCol(below(4), 1); },
            [&] { report.RefreshAllItems(1); },
            [&] { report.RefreshRealItem(any(), 1); },
            [&] { report.FocusRealItem(any(), 1); },
            [&] { report.RemoveItemNotification(window.GetSafeHwnd(), eNotifyItemAll); },
            [&] { report.AddItemNotification(window.GetSafeHwnd(), eNotifyItemAll); },
            [&] {
                if (below(4) != 0) return;
                report.CleanupRealItems(1);
                report.CleanupRealItems(0);  // rows that came while that was told of
                report.CleanupRealCols();
                fill();
            }};
        auto const act = [&] {
            for (unsigned& row : rows)
                row = any();
            acts[below(static_cast<unsigned>(acts.size()))]();
        };
        report.log.meddle = [&] {
            if (ends || depth > 2 || below(6) != 0) return;
            ++depth;
            act();
            --depth;
        };
        report.ShowCheckboxes(1);
        report.DisableRealItemsEnabled(1);
        report.SetSuppressAllNotifications(0);
        report.AddItemNotification(window.GetSafeHwnd(), eNotifyItemAll);
        fill();
        for (unsigned step = 0; step < 60; ++step) {
            act();
            ASSERT_EQ(Broken(report), "") << "round " << round << " step " << step << '\n'
                                          << Tail(report.log);
            report.log.entries.clear();
        }
        ends = true;
    }
    EXPECT_EQ(FakeRow::alive, 0);
}

}  // namespace
}  // namespace tov::test
