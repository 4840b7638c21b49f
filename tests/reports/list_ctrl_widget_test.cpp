// Lists and headers on the screen, by keys and the mouse.
#include "support/widgets.h"

#include <tov310/dialog_metrics.h>
#include <tov310/list_ctrl.h>
#include <tov310/qt_values.h>

#include <gtest/gtest.h>
#include <QSignalSpy>

#include <random>
#include <string>
#include <vector>

namespace tov {
namespace {

// A million rows of four columns that count what they are asked.
struct Many : ITovListSource {
    unsigned GetItemCount() override { return count; }
    int GetDispInfo(TOV_DISPINFO& info) override {
        if (info.iItem >= count) return 0;
        if ((info.mask & LVIF_TEXT) != 0) {
            ++texts;
            info.strText = std::to_string(info.iItem * 10 + info.iSubItem);
        }
        if ((info.mask & LVIF_STATE) != 0) info.nState = info.iItem % 3 == 0 ? LVIS_SELECTED : 0;
        return 1;
    }
    eTovListColors HasItemColors() override { return eListColorsPerCell; }
    void GetItemColors(unsigned item, unsigned col, COLORREF& text, COLORREF& background) override {
        if (col == 1) text = 0xFF, background = item % 2 == 0 ? 0x00FFFF : background;
    }
    unsigned count = 1'000'000;
    int texts = 0;
};

struct ShownList {
    ShownList() {
        for (unsigned col = 0; col < 4; ++col)
            Header().InsertColumn(col, static_cast<int>(col % 3), 90,
                                  std::to_string(col).insert(0, "Col").c_str());
        list.resize(300, 220);
    }
    void Show() {
        list.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&list));
        list.activateWindow();
        list.setFocus();
        QTest::qWait(1);
    }
    CTovHeaderCtrlSort& Header() { return list.GetHeaderCtrl(); }
    QPoint At(unsigned item, int x = 40) const {
        CRect const rect = list.GetItemRect(item);
        return {rect.left + x, (rect.top + rect.bottom) / 2};
    }
    void Click(QPoint const& at, Qt::KeyboardModifiers keys = {}) {
        QTest::mouseClick(list.viewport(), Qt::LeftButton, keys, at);
    }
    void Fill(unsigned count) {
        for (unsigned i = 0; i < count; ++i)
            list.Items().InsertItem(i, std::to_string(i).insert(0, "Row ").c_str());
        list.RowsChanged();
    }
    std::vector<unsigned> Selected() {
        std::vector<unsigned> rows;
        for (unsigned i = 0; i < list.Items().GetItemCount(); ++i)
            if (list.Items().GetItemState(i, LVIS_SELECTED) != 0) rows.push_back(i);
        return rows;
    }
    CTovListCtrlQuickDraw list;
};
using Rows = std::vector<unsigned>;

// What is on the screen after any scrolling is what painting all anew gives.
TEST(ListCtrl, AMillionRowsScrollByMovingWhatIsThere) {
    Many many;
    ShownList shown;
    shown.list.SetSource(&many, nullptr);
    shown.Show();
    std::mt19937 random(2);
    auto const any = [&random](int from, int to) {
        return from + static_cast<int>(random() % static_cast<unsigned>(to - from + 1));
    };
    QTest::qWait(10);
    many.texts = 0;
    shown.list.Scroll(0, shown.list.GetRowHeight());
    QTest::qWait(10);
    EXPECT_GT(many.texts, 0);
    EXPECT_LE(many.texts, 2 * 4);  // the row that came into sight, and perhaps half of one before
    for (int step = 0; step < 60; ++step) {
        switch (any(0, 6)) {
            case 0:
                shown.list.EnsureRowVisible(static_cast<unsigned>(any(0, 999'999)));
                break;
            case 1:
                shown.list.verticalScrollBar()->setValue(any(0, 1'000'000));
                break;
            case 2:
                shown.Header().SetColumnWidth(static_cast<unsigned>(any(0, 3)), any(0, 200));
                break;
            case 3:
                shown.Header().moveSection(any(0, 3), any(0, 3));
                break;
            case 4:
                EXPECT_EQ(shown.list.EnsureColumnVisible(static_cast<unsigned>(any(0, 3))) != 0, true);
                break;
            default:
                shown.list.Scroll(any(-150, 150), any(-100, 100));
        }
        QTest::qWait(5);
        many.texts = 0;
        QImage const anew = shown.list.grab().toImage().convertToFormat(QImage::Format_RGB32);
        EXPECT_LE(many.texts, 80);
        QImage const there = shown.list.screen()
                                 ->grabWindow(shown.list.winId())
                                 .toImage()
                                 .convertToFormat(QImage::Format_RGB32);
        ASSERT_EQ(there.copy(shown.list.viewport()->geometry()), anew.copy(shown.list.viewport()->geometry()))
            << step;
        ASSERT_EQ(shown.Header().sectionViewportPosition(0),
                  shown.list.GetLayout().GetPartRect(shown.list.GetTopRow(), 0, eListPartCell).left);
    }
}

TEST(ListCtrl, KeysAndClicksSelectFocusCheckAndActivate) {
    ShownList shown;
    shown.Fill(100);
    shown.list.ShowCheckboxes(1);
    shown.Show();
    QSignalSpy const activated(&shown.list, &CTovListCtrlQuickDraw::itemActivated);
    QSignalSpy const dragged(&shown.list, &CTovListCtrlQuickDraw::dragStarted);
    shown.Click(shown.At(2));
    shown.Click(shown.At(5), Qt::ShiftModifier);
    EXPECT_EQ(shown.Selected(), (Rows{2, 3, 4, 5}));
    shown.Click(shown.At(3), Qt::ControlModifier);
    EXPECT_EQ(shown.Selected(), (Rows{2, 4, 5}));
    shown.Click(shown.At(4, 8));  // its box: all that are selected
    EXPECT_NE(shown.list.Items().GetItemState(2, tovStateChecked), 0u);
    EXPECT_EQ(shown.list.Items().GetItemState(3, tovStateChecked), 0u);
    QTest::keyClick(&shown.list, Qt::Key_End);
    EXPECT_EQ(shown.Selected(), Rows{99});
    EXPECT_LE(shown.list.GetItemRect(99).bottom, shown.list.GetRowsRect().bottom);
    QTest::keyClick(&shown.list, Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(shown.Selected(), (Rows{98, 99}));
    QTest::keyClick(&shown.list, Qt::Key_Return);
    QTest::mouseDClick(shown.list.viewport(), Qt::LeftButton, {}, shown.At(97));
    ASSERT_EQ(activated.size(), 2);
    EXPECT_EQ(activated[0][0].toUInt(), 98u);
    EXPECT_EQ(activated[1][0].toUInt(), 97u);
    shown.list.ScrollWithoutSelchange(1);
    QTest::keyClick(&shown.list, Qt::Key_Home);
    EXPECT_EQ(shown.list.GetTopRow(), 0u);
    EXPECT_EQ(shown.Selected(), Rows{97});

    QTest::mousePress(shown.list.viewport(), Qt::LeftButton, {}, shown.At(1));
    QTest::mouseMove(shown.list.viewport(), shown.At(3));
    QTest::mouseMove(shown.list.viewport(), shown.At(4));
    QTest::mouseRelease(shown.list.viewport(), Qt::LeftButton, {}, shown.At(4));
    ASSERT_EQ(dragged.size(), 1);
    EXPECT_EQ(dragged[0][0].toUInt(), 1u);
}

TEST(ListCtrl, TheRubberBandSelectsBesideTheColumnsAndAClickThereDeselects) {
    ShownList shown;
    for (unsigned col = 1; col < 4; ++col)
        shown.Header().SetColumnWidth(col, 10);
    shown.Fill(8);
    shown.Show();
    QWidget* const rows = shown.list.viewport();
    QPoint const from = shown.At(1, 200);
    QTest::mousePress(rows, Qt::LeftButton, {}, from);
    QTest::mouseMove(rows, from - QPoint(30, 0));
    QTest::mouseMove(rows, shown.At(4, 60));
    EXPECT_EQ(shown.Selected(), (Rows{1, 2, 3, 4}));
    QTest::mouseMove(rows, shown.At(2, 60));
    EXPECT_EQ(shown.Selected(), (Rows{1, 2}));
    QTest::mouseRelease(rows, Qt::LeftButton, {}, shown.At(2, 60));
    EXPECT_EQ(shown.Selected(), (Rows{1, 2}));
    shown.Click(from);
    EXPECT_EQ(shown.Selected(), Rows{});
    shown.list.MultilineSelection(0);
    shown.Click(shown.At(3));
    shown.Click(shown.At(5), Qt::ControlModifier);
    EXPECT_EQ(shown.Selected(), Rows{5});
}

TEST(ListCtrl, PaintsInEveryStyleAndOnlyWhenItIsAllowedTo) {
    Many many;
    many.count = 500;
    ShownList shown;
    shown.list.SetSource(&many, nullptr);
    shown.list.SetCellSize({80, 60});
    shown.Show();
    for (unsigned long const style : {LVS_ICON, LVS_LIST, LVS_SMALLICON, LVS_REPORT}) {
        shown.list.SetViewType(style);
        many.texts = 0;
        shown.list.grab();
        EXPECT_GT(many.texts, 8) << style;
        EXPECT_LT(many.texts, 150) << style;
        EXPECT_EQ(shown.Header().isHidden(), style != LVS_REPORT);
        EXPECT_EQ(shown.list.EnsureRowVisible(499), 1);
        EXPECT_TRUE(shown.list.viewport()->rect().intersects(TovQRect(shown.list.GetItemRect(499))));
    }
    QTest::qWait(10);
    int const before = shown.list.StopWindowUpdate();
    int const nested = shown.list.StopWindowUpdate();
    many.texts = 0;
    shown.list.RowsChanged();
    shown.list.ContinueWindowUpdate(nested);
    QTest::qWait(10);
    EXPECT_EQ(many.texts, 0);
    shown.list.ContinueWindowUpdate(before);
    QTest::qWait(10);
    EXPECT_GT(many.texts, 0);
}

TEST(ListCtrl, HeightsAreThoseOfListsInTheFontOfDialogs) {
    QFont const usual = QApplication::font();
    for (int const points : {9, 24}) {
        QFont font = usual;
        font.setPointSize(points);
        QApplication::setFont(font);
        ShownList shown;
        shown.Show();
        EXPECT_EQ(CTovDialogMetrics::ListCtrlHeaderHeight(), shown.Header().height());
        EXPECT_GE(shown.Header().height(), QFontMetrics(font).height());
        EXPECT_EQ(CTovDialogMetrics::ListCtrlRVItemHeight(), shown.list.GetRowHeight());
        EXPECT_EQ(CTovDialogMetrics::ListCtrlRVItemHeightIcon(), shown.list.GetRowHeight());
        shown.list.ShowCheckboxes(1);
        EXPECT_EQ(CTovDialogMetrics::ListCtrlRVItemHeightCheck(), shown.list.GetRowHeight());
        EXPECT_EQ(CTovDialogMetrics::ListCtrlRVItemHeightCheckAndIcon(), shown.list.GetRowHeight());
    }
    QApplication::setFont(usual);
    CTovListCtrlQuickDraw late;  // the columns come when it is shown already
    late.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&late));
    late.GetHeaderCtrl().InsertColumn(0, LVCFMT_LEFT, 90, "Late");
    EXPECT_EQ(late.GetHeaderCtrl().height(), CTovDialogMetrics::ListCtrlHeaderHeight());
    EXPECT_EQ(late.viewport()->y() - late.GetHeaderCtrl().y(), late.GetHeaderCtrl().height());
}

TEST(HeaderCtrl, ColumnsComeGoAndAreDraggedWithTheirMarks) {
    ShownList shown;
    CTovHeaderCtrlSort& header = shown.Header();
    shown.Show();
    header.SetSortColumns({{2, 0}, {1, 1}});
    header.SetColumnOrder({3, 2, 1, 0});
    header.SetColumnOrder({3, 3, 1, 0});  // none
    header.InsertColumn(1, LVCFMT_RIGHT, 30, "New");
    EXPECT_EQ(header.GetColumnOrder(), (Rows{4, 1, 3, 2, 0}));
    EXPECT_EQ(header.GetColumnWidth(1), 30);
    EXPECT_EQ(header.GetColumnLabel(3), "Col2");
    eInbuildIcon icon = eInbuildIconNone;
    unsigned number = 0;
    EXPECT_EQ(header.GetInbuildIcon(3, icon, number), 1);
    EXPECT_EQ(icon, eInbuildIconDescending);
    EXPECT_EQ(number, 1u);
    EXPECT_EQ(header.GetHeaderWidth(3) - header.GetHeaderIconExtent(),
              header.GetHeaderTextExtent("Col2").cx + header.GetHeaderWidth(1) -
                  header.GetHeaderTextExtent("New").cx);
    header.DeleteColumn(4);
    EXPECT_EQ(header.GetColumnOrder(), (Rows{1, 3, 2, 0}));
    EXPECT_EQ(header.GetHeaderWidth(4), -1);

    QSignalSpy const clicked(&shown.list, &CTovListCtrlQuickDraw::headerClicked);
    auto const click = [&header] {
        QTest::mouseClick(header.viewport(), Qt::LeftButton, {},
                          {header.sectionViewportPosition(3) + 40, header.height() / 2});
    };
    click();
    header.IgnoreLButtonClick(1);
    click();
    header.IgnoreLButtonClick(0);
    header.SortAllowed(0);
    click();
    ASSERT_EQ(clicked.size(), 1);
    EXPECT_EQ(clicked[0][0].toUInt(), 3u);
    header.ColSizingAllowed(0);
    int const edge = header.sectionViewportPosition(3) + header.GetColumnWidth(3) - 1;
    QTest::mousePress(header.viewport(), Qt::LeftButton, {}, {edge, 5});
    QTest::mouseMove(header.viewport(), {edge + 30, 5});
    QTest::mouseRelease(header.viewport(), Qt::LeftButton, {}, {edge + 30, 5});
    EXPECT_EQ(header.GetColumnWidth(3), 90);
}

}  // namespace
}  // namespace tov
