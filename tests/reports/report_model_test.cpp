// Worked cases of reports: order, columns, cells, gates, menus.
#include "support/files.h"
#include "support/report_mirror.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <random>

namespace tov::test {
namespace {

using Rows = std::vector<unsigned>;
using Keys = std::vector<SORT_STATE_REALCOL>;
constexpr unsigned none = tovNoIndex;

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
    // clang-format off
    std::vector<std::string> const parts{
        "a", "A", "b", "0", "00", "1", "9", "10", "-", "_", "z", "Z", "点", "é", "É", "\u212A", "k", "\x01", " ",
        "00000000000000000000", std::string(260, '7'), std::string(261, '1')};
    // clang-format on
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

TEST(ReportModel, WhatIsBeyondAllNumbersIsNotSwapped) {
    auto const report = Filled({5, 1, 5, 1, 5});
    for (auto const& [first, second, count] :
         std::vector<std::array<unsigned, 3>>{{0, 0xFFFFFFFF, 1}, {0xFFFFFFFF, 0, 2}, {0, 2, 0xFFFFFFFF}})
        EXPECT_EQ(report->SwapRealItems(first, second, count, 0), 0);
    report->SortList(std::vector<SORT_STATE_SCREENCOL>{{0, 0}});
    EXPECT_EQ(ScreenOf(*report), (Rows{4, 2, 0, 3, 1}));
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
