#include "support/files.h"
#include "support/report_mirror.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <memory>
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

TEST(ReportModel, AMillionRandomOperationsLeaveWhatTheirMirrorSays) {
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

TEST(ReportModel, HandlersMayChangeTheReportInsideTheirEvents) {
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

// --- Worked cases

// Rows 0, 1, 2 ... with these first keys.
std::unique_ptr<FakeReport> Filled(std::vector<int> const& keys,
                                   std::vector<CString> const& cols = {"A", "B", "C"}) {
    auto report = std::make_unique<FakeReport>();
    report->AddRealCols(cols);
    for (int const key : keys)
        report->AddRealItem(
            new FakeRow(report.get(), static_cast<int>(report->GetRealItemCount()), {key, key, 0}));
    report->DisplayRealItems(0);
    report->ShowCheckboxes(1);
    report->DisableRealItemsEnabled(1);
    return report;
}

Rows ScreenOf(FakeReport const& report) {
    Rows rows;
    for (unsigned i = 0; i < report.table.GetItemCount(); ++i)
        rows.push_back(report.ScreenItemToReal(i));
    return rows;
}

std::vector<int> Widths(FakeReport const& report) {
    std::vector<int> widths;
    for (auto const& column : report.list.columns)
        widths.push_back(column.width);
    return widths;
}

TEST(ReportModel, EqualRowsStandByRealIndexInTheDirectionOfTheFirstKey) {
    auto const report = Filled({5, 1, 5, 1, 5});
    report->FocusRealItem(3, 0);
    report->OnHeaderClick(0, 0);
    EXPECT_EQ(ScreenOf(*report), (Rows{1, 3, 0, 2, 4}));
    EXPECT_EQ(report->GetFocusedItem(), 1u);
    report->OnHeaderClick(0, 0);
    EXPECT_EQ(ScreenOf(*report), (Rows{4, 2, 0, 3, 1}));
    report->AppendRealItem(new FakeRow(report.get(), 5, {5, 5, 0}), 0);  // on top of its equals
    EXPECT_EQ(ScreenOf(*report), (Rows{5, 4, 2, 0, 3, 1}));
    Keys const before = report->table.SortState();
    report->SortList(Keys(4));
    EXPECT_EQ(report->table.SortState(), before);
    report->SortList(Keys{{0, 1}, {1, 1}});
    report->OnHeaderClick(1, 1);  // several keys: this column alone, ascending
    EXPECT_EQ(report->table.SortState(), (Keys{{1, 1}}));
    report->SortList(std::vector<SORT_STATE_SCREENCOL>{});
    EXPECT_EQ(ScreenOf(*report), (Rows{0, 1, 2, 3, 4, 5}));
    EXPECT_TRUE(report->list.marks.empty());
}

// Rows come and go one by one anywhere among many, until few are left.
TEST(ReportModel, ManyRowsStayInOrderWhereverOneComesOrGoes) {
    std::mt19937 random(4);
    auto const any = [&random](std::size_t below) { return static_cast<unsigned>(random() % below); };
    for (bool const sorted : {false, true}) {
        auto const report = Filled(std::vector<int>(9000, 3));
        if (sorted) report->SortList(Keys{{0, 0}});
        std::vector<std::array<int, 2>> wanted;  // what rows sort by
        for (int real = 0; real < 9000; ++real)
            wanted.push_back({sorted ? -3 : 0, sorted ? -real : real});
        std::sort(wanted.begin(), wanted.end());
        for (unsigned step = 0; step < 40'000 && wanted.size() > 5; ++step) {
            bool const grows = step < 12'000;
            if (any(3) == 0 ? !grows : grows) {
                int const key = static_cast<int>(any(1000));
                int const real = static_cast<int>(report->GetRealItemCount());
                report->AppendRealItem(new FakeRow(report.get(), 0, {key, 0, 0}), 0);
                std::array<int, 2> const row{sorted ? -key : 0, sorted ? -real : real};
                wanted.insert(std::lower_bound(wanted.begin(), wanted.end(), row), row);
            } else {
                unsigned const at = any(wanted.size());
                EXPECT_EQ(any(2) == 0 ? report->DeleteItem(at, 0)
                                      : report->HideRealItem(report->ScreenItemToReal(at), 1, 0),
                          1);
                wanted.erase(wanted.begin() + static_cast<int>(at));
            }
            unsigned const at = any(wanted.size());
            unsigned const real = static_cast<unsigned>(std::abs(wanted[at][1]));
            ASSERT_EQ(report->ScreenItemToReal(at), real) << step;
            if (step % 8 == 0) {
                ASSERT_EQ(report->RealItemToScreen(real), at) << step;
            }
        }
        EXPECT_EQ(report->GetItemCount(), wanted.size());
        report->HideAllItems(0, 0);
        Rows const screen = ScreenOf(*report);
        EXPECT_TRUE(sorted || std::is_sorted(screen.begin(), screen.end()));
        report->SortList(report->table.SortState());
        EXPECT_EQ(ScreenOf(*report), screen);
    }
}

// Keys that are told sort as comparing does, whatever the texts.
TEST(ReportModel, BeginningsOfTextsStandInTheOrderOfTheTexts) {
    struct TextRow : FakeRow {
        TextRow(FakeReport* itsReport, int itsId, std::string itsText)
            : FakeRow(itsReport, itsId), text(std::move(itsText)) {}
        static int Order(unsigned col, char const* a, char const* b) {
            return col == 0 ? Compare(a, b) : col == 1 ? CompareIS(a, b) : CompareNoCaseIS(a, b);
        }
        int OnCompareItem(CTovReportViewItem const* other, unsigned col) const override {
            return Order(col, text.c_str(), static_cast<TextRow const*>(other)->text.c_str());
        }
        eTovSortKey OnGetItemSortKey(unsigned col, double&, CString& key) const override {
            key = text;
            return !report.tellsKeys ? eSortKeyNone
                   : col == 0        ? eSortKeyText
                   : col == 1        ? eSortKeyTextIS
                                     : eSortKeyTextNoCaseIS;
        }
        std::string text;
    };
    std::vector<std::string> const parts{"a",
                                         "A",
                                         "b",
                                         "0",
                                         "00",
                                         "1",
                                         "9",
                                         "10",
                                         "-",
                                         "_",
                                         "z",
                                         "Z",
                                         "点",
                                         "é",
                                         "É",
                                         "\u212A",
                                         "k",
                                         "\x01",
                                         "00000000000000000000",
                                         std::string(260, '7'),
                                         std::string(261, '1'),
                                         " "};
    std::mt19937 random(11);
    for (unsigned round = 0; round < 60; ++round) {
        FakeReport report;
        report.AddRealCols({"A", "B", "C"});
        for (int i = 0; i < 200; ++i) {
            std::string text;
            for (unsigned n = static_cast<unsigned>(random() % 5); n > 0; --n)
                text += parts[random() % parts.size()];
            if (round % 8 == 7 && i == 50) text += '\xFF';  // no character
            report.AddRealItem(new TextRow(&report, i, text));
        }
        report.DisplayRealItems(0);
        for (unsigned col = 0; col < 3; ++col) {
            int const up = static_cast<int>(random() % 2);
            Keys const keys{{col, up}, {(col + 1) % 3, 1}, {(col + 2) % 3, 0}};
            report.tellsKeys = false;
            report.SortList(keys);
            Rows const compared = ScreenOf(report);
            report.tellsKeys = true;
            report.SortList(keys);
            ASSERT_EQ(ScreenOf(report), compared) << "round " << round << " column " << col;
        }
    }
}

TEST(ReportModel, HiddenRowsKeepTheirBitsAndDeletedOnesTheirPlaces) {
    auto const report = Filled({0, 0, 0, 0, 0, 0});
    CTovReportViewItem& row = *report->GetRealItem(1);
    row.CheckItem(1, 0);
    report->HideRealItem(1, 1, 0);
    row.CheckItem(0, 0);
    EXPECT_EQ(row.IsChecked(), 0);
    report->HideRealItem(1, 0, 0);
    EXPECT_EQ(row.IsChecked(), 1);
    report->FocusRealItem(5, 1);
    report->DeleteRealItem(5, 0);  // the last one: the focus goes to the one above
    EXPECT_EQ(report->GetFocusedItem(), 4u);
    EXPECT_EQ(report->GetRealItemCount(), 6u);
    EXPECT_EQ(report->HideRealItem(5, 0, 0) + report->HideRealItem(99, 1, 0) + report->DeleteRealItem(99, 0),
              0);
    for (auto const& [first, second, count] : std::vector<std::array<unsigned, 3>>{
             {0, 2, 2}, {2, 0, 2}, {0, 4, 2}, {1, 1, 0}, {0, 0xFFFFFFFF, 1}, {0, 2, 0xFFFFFFFF}})
        EXPECT_EQ(report->SwapRealItems(first, second, count, 0), 0);
    report->ShowCheckboxes(0);
    EXPECT_EQ(report->DeleteCheckedItems(0), none);
}

TEST(ReportModel, ColumnsKeepTheirPixels) {
    auto const report = std::make_unique<FakeReport>();
    report->stored["ColWidth"] = {-40, 70, -1, -25};
    report->stored["ColOrder"] = {2, 0, 1, 3};
    std::vector<int> const hidden{1, 0, 0};
    std::vector<unsigned> const alignments{LVCFMT_RIGHT};
    report->AddRealCols({"A", "B", "C", "D", "E"}, &alignments, nullptr, &hidden);
    // The leftmost one takes its width and stays; the fifth was not there yet.
    EXPECT_EQ(Widths(*report), (std::vector<int>{40, 70, 80}));
    EXPECT_EQ(report->list.order, (Rows{1, 0, 2}));
    EXPECT_EQ(report->list.columns[0].alignment, LVCFMT_RIGHT);
    auto const left = [&](unsigned real) { return report->GetRealCol(real)->GetLeft(); };
    EXPECT_EQ((std::array{left(1), left(0), left(4)}), (std::array{0, 70, 110}));
    report->SortList(Keys{{1, 1}, {4, 0}});
    EXPECT_EQ(report->HideRealCol(0, 1, 0) + report->DeleteRealCol(0, 0) + report->HideRealCol(9, 1, 0), 0);
    EXPECT_EQ(report->HideRealCol(3, 0, 0), 1);  // the width that was stored with its hiding
    EXPECT_EQ(report->list.marks, (std::vector<SORT_STATE_SCREENCOL>{{1, 1}, {3, 0}}));
    EXPECT_EQ(report->GetRealCol(3)->GetWidth(), 25);
    report->GetRealCol(2)->SetWidth(0);
    EXPECT_EQ(report->HideRealCol(2, 0, 0), 1);
    EXPECT_EQ(report->GetRealCol(2)->GetWidth(), 10);
    report->GetRealCol(4)->SetLabel("new");
    EXPECT_EQ(report->list.columns[4].label, "new");
    EXPECT_EQ(report->DeleteRealCol(4, 0), 1);
    EXPECT_TRUE(report->table.SortState().empty());
    report->AddRealItem(new FakeRow(report.get(), 0));
    report->DisplayRealItems(0);
    auto late = std::make_unique<FakeCol>(report.get(), 9, 0, 10);
    report->AddRealCol(late.get());  // refused, and still ours
    EXPECT_EQ(report->GetRealColumns(), 5u);
    report->table.DoCommand(3024 + 1);
    EXPECT_EQ(report->stored["ColWidth"], (std::vector<int>{40, -1, 10, 25, -2}));
    report->table.DoCommand(WM_TOV_REPORTVIEW_HIDE_ALL_COLS);
    EXPECT_EQ(report->GetColumns(), 1u);
    report->table.DoCommand(WM_TOV_REPORTVIEW_VIEW_ALL_COLS);
    EXPECT_EQ(report->GetColumns(), 4u);
    report->CleanupRealCols();
    EXPECT_EQ(report->GetColumns(), 4u);  // rows are displayed
}

TEST(ReportModel, ColumnsAreAsWideAsWhatStandsInThem) {
    std::vector<int> keys(10'000);
    for (std::size_t i = 0; i < keys.size(); ++i)
        keys[i] = static_cast<int>(i * 7919 % 10'000);
    auto const report = Filled(keys, {"A", "A long label indeed", "C"});
    report->ShowCheckboxes(0);
    int const text = 5 * 7;  // "P9999"
    EXPECT_EQ(report->GetRealColMaxWidth(0), text + 2u * 7 + 2);
    EXPECT_LT(report->list.measured, 20);
    EXPECT_EQ(report->GetRealColMaxWidth(1), text + 3u * 7 + 3);
    report->ShowCheckboxes(1);
    report->table.settings.hasItemImages = 1;
    EXPECT_EQ(report->GetRealColMaxWidth(0), text + 2u * 7 + 2 + 16 + 18);
    report->table.settings.hasItemImages = 0;
    report->table.DoCommand(WM_TOV_REPORTVIEW_AUTO_ARRANGE);
    EXPECT_EQ(Widths(*report), (std::vector<int>{text + 32, 19 * 9, 2 * 7 + 24}));
    EXPECT_EQ(report->stored["ColWidth"], Widths(*report));
    EXPECT_EQ(report->GetRealCol(2)->GetLeft(), text + 32 + 19 * 9);
    report->AutoArrangeColumns(Rows{1}, 0);
    EXPECT_EQ(report->list.columns[1].width, text + 24);
    EXPECT_EQ(report->SetRealColWidth(1, tovAutoWidth) + report->SetRealColWidth(9, 5), 1);
    EXPECT_EQ(report->list.columns[1].width, 19 * 9);
    report->HideRealCol(1, 1, 0);
    EXPECT_EQ(report->SetRealColWidth(1, tovAutoWidth), 0);
    EXPECT_EQ(report->GetRealColMaxWidth(1), none);
    report->CleanupRealItems(0);
    EXPECT_EQ(report->GetRealColMaxWidth(0), 0u);
}

TEST(ReportModel, MenusAreTablesOfColumns) {
    TemporaryFolder const folder;
    std::filesystem::create_directory(folder.path() / "menus");
    PutFile(folder.File("strings.json"), "{}");
    PutFile(folder.File("menus/7.json"),
            R"([{"text": "A", "items": [{"text": "Item", "items": [{"text": "x", "id": 1}]}]},
                {"text": "B && b && c", "id": 2}, {"text": "C", "items": [{"text": "y", "id": 3}]}])");
    HINSTANCE module = TovLoadResourceModule(folder.path().c_str());
    FakeReport report;
    unsigned const alignments[] = {0, 1, 2};
    int const hidden[] = {1, 1, 0};
    report.AddRealCols(module, 7, alignments, nullptr, hidden);
    ASSERT_EQ(report.GetRealColumns(), 3u);
    EXPECT_EQ(report.GetRealCol(1)->GetLabel(), "B & b && c");
    unsigned id = 0;
    int position = -1;
    report.GetRealCol(1)->GetMenu(module, id, position);
    EXPECT_EQ(id, 7u);
    EXPECT_EQ(position, 0);
    report.GetRealCol(2)->GetMenu(module, id, position);
    EXPECT_EQ(position, 2);
    EXPECT_EQ(report.GetRealColAlignment(2), LVCFMT_CENTER);
    EXPECT_EQ(report.GetRealCol(0)->IsVisible(), 1);
    EXPECT_EQ(report.GetRealCol(1)->IsVisible(), 0);
}

TEST(ReportModel, CellsOutOfSightHaveNoTextUnlessSomebodyReadsThemAll) {
    auto const report = Filled({3, 12}, {"A", "B", "C"});
    report->table.m_rcList = {0, 0, 60, 100};
    report->list.left = -51;  // A has gone to the left; C begins at 49
    auto const text = [&](unsigned row, unsigned col, unsigned most = 0) {
        TOV_DISPINFO info;
        info.iItem = row;
        info.iSubItem = col;
        info.cchTextMax = most;
        return report->GetDispInfo(info) != 0 ? info.strText : CString("none");
    };
    EXPECT_EQ(text(1, 0) + text(1, 1) + text(1, 1, 3) + text(1, 1, 1), "P12P1");
    for (int* const flag :
         {&report->table.m_bArrangingColumns, &report->table.m_bPrinting, &report->table.m_bCachingClipboard,
          &report->table.m_bTrackingHScroll, &report->table.m_bTrackingVScroll, &report->table.m_bSavingAs}) {
        *flag = 1;
        EXPECT_EQ(text(1, 0), "P12");
        *flag = 0;
    }
    report->list.left = 0;
    report->table.InvalidateScrollPosHorz();
    EXPECT_EQ(text(1, 0) + text(1, 2), "P12");  // C begins behind 60
    EXPECT_EQ(text(2, 0) + text(0, 3), "nonenone");
    auto& row = static_cast<FakeRow&>(*report->GetRealItem(0));
    row.noText = true;
    EXPECT_EQ(text(0, 0), "-");

    TOV_DISPINFO info;
    row.SelectItem(1, 0);
    report->GetDispInfo(info);
    EXPECT_EQ(info.nState, LVIS_SELECTED | tovStateUnchecked);
    EXPECT_EQ(info.nImage, tovNoImage);
    report->table.settings.hasItemImages = 1;
    report->table.settings.defaultItemImage = 7;
    report->CheckRealItem(0, 1, 0);
    report->GetDispInfo(info);
    EXPECT_EQ(info.nState, LVIS_SELECTED | tovStateChecked);
    EXPECT_EQ(info.nImage, 7u);
    unsigned long color = 1;
    unsigned long back = 2;
    report->OnGetRealItemColor(0, 0, 0, 0, color, back);
    report->DisableRealItem(0, 1, 0);
    EXPECT_EQ(color, 1u);
    report->OnGetRealItemColor(0, 0, 0, 0, color, back);
    EXPECT_NE(color, 1u);
    EXPECT_EQ(report->table.settings.customItemColors, 1);
}

TEST(ReportModel, HeldTextsAreReadOnceUntilTheirRowIsRefreshed) {
    FakeReport report;
    report.AddRealCols({"A", "B"});
    EXPECT_EQ(report.SetRealColHoldItemText(1, 1), 1);
    EXPECT_EQ(report.SetRealColHoldItemText(2, 1), 0);
    report.AddRealItem(new FakeRow(&report, 0, {1, 2, 3}));
    EXPECT_EQ(report.SetRealColHoldItemText(0, 1), 0);
    report.DisplayRealItems(0);
    auto& row = static_cast<FakeRow&>(*report.GetRealItem(0));
    auto const reads = [&](auto const& change) {
        change();
        int const before = row.reads;
        CString text;
        for (int i = 0; i < 3; ++i)
            report.table.InternalGetItemText(1, 0, &row, text);
        EXPECT_EQ(text, row.noText ? "-" : "P2");
        return row.reads - before;
    };
    EXPECT_EQ(reads([] {}), 1);
    EXPECT_EQ(reads([] {}), 0);
    EXPECT_EQ(reads([&] { report.RefreshRealItem(0, 0); }), 1);
    EXPECT_EQ(reads([&] { report.RefreshAllItems(0); }), 1);
    EXPECT_EQ(reads([&] { report.RefreshColItems(0, 0); }), 0);
    EXPECT_EQ(reads([&] { report.RefreshColItems(1, 0); }), 1);
    EXPECT_EQ(report.list.strip, (std::pair<int, int>{50, 100}));
    EXPECT_EQ(reads([&] {
                  report.HideRealCol(1, 1, 0);
                  report.HideRealCol(1, 0, 0);
              }),
              1);
    row.noText = true;
    EXPECT_EQ(reads([&] {
                  report.HideRealItem(0, 1, 0);
                  report.HideRealItem(0, 0, 0);
              }),
              1);
}

TEST(ReportModel, ControlIsToldOncePerOperationAndComesBackToItsPlace) {
    auto const report = Filled(std::vector<int>(5000, 1));
    auto const calls = [&](auto const& work) {
        int const before = report->list.calls;
        work();
        return report->list.calls - before;
    };
    report->list.top = 3000;
    EXPECT_LE(calls([&] { report->SelectAllItems(1, 0, 0); }), 1);
    EXPECT_EQ(report->list.painted, (std::pair<unsigned, unsigned>{0, 4999}));
    EXPECT_LE(calls([&] { report->SortList(Keys{{0, 0}}); }), 1);
    EXPECT_LE(calls([&] { report->HideAllItems(1, 0); }), 1);
    EXPECT_LE(calls([&] { report->HideAllItems(0, 0); }), 1);
    report->list.top = 3000;
    EXPECT_LE(calls([&] { report->DeleteSelectedItems(0); }), 1);
    report->CleanupRealItems(0);
    for (int i = 0; i < 4000; ++i)
        report->AddRealItem(new FakeRow(report.get(), i));
    report->DisplayRealItems(0);
    report->list.top = 2500;
    report->list.left = -30;
    report->CleanupRealItems(0);
    report->list.left = 0;
    for (int i = 0; i < 4000; ++i)
        report->AddRealItem(new FakeRow(report.get(), i));
    report->DisplayRealItems(0);
    EXPECT_EQ(report->list.top, 2500u);
    EXPECT_EQ(report->list.left, -30);
}

TEST(ReportModel, GatesAreSavedOnceAndWithoutThatOfDisabling) {
    FakeReport report;
    EXPECT_EQ(report.GetSuppressAllNotifications(), 1);
    EXPECT_EQ(report.RestoreAllSuppressNotifications(), 0);
    report.SetSuppressHideNotifications(0);
    report.SaveAllSuppressNotifications();
    report.SetSuppressAllNotifications(0);
    EXPECT_EQ(report.RestoreAllSuppressNotifications(), 1);
    EXPECT_EQ(report.RestoreAllSuppressNotifications(), 0);
    EXPECT_EQ(report.GetSuppressHideNotifications() + report.GetSuppressDisableNotifications(), 0);
    EXPECT_EQ(report.GetSuppressScrollNotifications(), 1);
}

TEST(ReportModel, SortsOnAThreadOfItsOwn) {
    std::mt19937 random(2);
    std::vector<int> keys(60'000);
    for (int& key : keys)
        key = static_cast<int>(random() % 1000);
    auto const report = Filled(keys);
    Keys const wanted{{1, 0}, {0, 1}};
    EXPECT_EQ(report->SortListAsync(wanted), 0);  // the rows do not tell their keys
    report->tellsKeys = true;
    EXPECT_EQ(report->SortListAsync(Keys(4)), 0);
    report->SortList(wanted);
    Rows const sorted = ScreenOf(*report);
    report->SortList(Keys{});
    Rows const unsorted = ScreenOf(*report);
    auto const finish = [&] {
        while (report->table.GetSortProgress() >= 0) {
            TovWaitForPosts(1000);
            TovDispatchPosts();
        }
    };
    EXPECT_EQ(report->SortListAsync(wanted), 1);
    EXPECT_EQ(ScreenOf(*report), unsorted);
    EXPECT_TRUE(report->table.SortState().empty());
    finish();
    EXPECT_EQ(ScreenOf(*report), sorted);
    EXPECT_EQ(report->table.SortState(), wanted);
    EXPECT_EQ(report->list.marks.size(), 2u);

    report->SortList(Keys{});
    report->SortListAsync(wanted);
    report->table.CancelSort();
    finish();
    EXPECT_EQ(ScreenOf(*report), unsorted);

    // What changes meanwhile counts.
    report->SortListAsync(wanted);
    report->AppendRealItem(new FakeRow(report.get(), 0, {500, 1001, 0}), 0);
    static_cast<FakeRow*>(report->GetRealItem(7))->keys = {0, 1002, 0};
    report->RefreshRealItem(7, 0);
    finish();
    EXPECT_EQ(report->ScreenItemToReal(0), 7u);
    EXPECT_EQ(report->ScreenItemToReal(1), 60'000u);
    report->SortListAsync(Keys{});  // ends with the report
}

}  // namespace
}  // namespace tov::test
