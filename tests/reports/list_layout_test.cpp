// Where rows stand and what scrolls: all styles against a list of rectangles that is searched from end to
// end.
#include <tov310/list_layout.h>
#include <tov310/list_port.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace tov::test {
namespace {

using Rows = std::vector<unsigned>;

bool IsIn(CRect const& rect, CPoint const& point) {
    return point.x >= rect.left && point.x < rect.right && point.y >= rect.top && point.y < rect.bottom;
}

// The rectangles of all rows, laid one behind the other as a reader would.
struct Mirror {
    CSize area;
    unsigned long style = 0;
    int row = 0;
    CSize cell;
    std::vector<int> widths;
    std::vector<CRect> rects;

    void Lay(unsigned count) {
        rects.clear();
        int x = 0;
        int y = 0;
        int reportWidth = 0;
        for (int const width : widths)
            reportWidth += width;
        int const height = style == LVS_ICON ? cell.cy : row;
        int const width = style == LVS_REPORT ? reportWidth : cell.cx;
        for (unsigned i = 0; i < count; ++i) {
            if (style == LVS_LIST && i > 0 && y + height > area.cy) y = 0, x += width;
            if (style != LVS_LIST && style != LVS_REPORT && i > 0 && x + width > area.cx) x = 0, y += height;
            rects.push_back({x, y, x + width, y + height});
            if (style == LVS_REPORT || style == LVS_LIST) {
                y += height;
            } else {
                x += width;
            }
        }
    }
    CRect Moved(unsigned item, CPoint const& by) const {
        CRect const r = rects.at(item);
        return {r.left + by.x, r.top + by.y, r.right + by.x, r.bottom + by.y};
    }
};

TEST(ListLayout, RowsHitsNeighboursAndScrollingAreThoseOfTheMirror) {
    std::mt19937 random(11);
    auto const any = [&random](int from, int to) {
        return from + static_cast<int>(random() % static_cast<unsigned>(to - from + 1));
    };
    for (int round = 0; round < 400; ++round) {
        Mirror mirror;
        CTovListLayout layout;
        mirror.style = static_cast<unsigned long>(round % 4);
        mirror.area = {any(0, 160), any(0, 120)};
        mirror.row = any(5, 20);
        mirror.cell = {any(8, 40), any(8, 40)};
        mirror.widths = {any(0, 60), any(0, 60), any(0, 60)};
        auto const count = static_cast<unsigned>(any(0, 60));
        mirror.Lay(count);
        layout.SetStyle(mirror.style);
        layout.SetArea(mirror.area);
        layout.SetRowHeight(mirror.row);
        layout.SetCellSize(mirror.cell);
        layout.SetColumns(mirror.widths, {2, 0, 1});
        layout.SetItemCount(count);
        for (int step = 0; step < 20; ++step) {
            layout.Scroll(any(-100, 100), any(-100, 100));
            if (count == 0) {
                EXPECT_EQ(layout.HitTest({0, 0}), TOV_LISTHIT{});
                continue;
            }
            // All rows have moved by the same, never beyond the ends and never off their grid.
            CRect const first = layout.GetItemRect(0);
            CPoint const by{first.left, first.top};
            EXPECT_LE(by.x, 0);
            EXPECT_LE(by.y, 0);
            if (mirror.style == LVS_REPORT) {
                EXPECT_EQ(by.y % mirror.row, 0);
            }
            if (mirror.style == LVS_LIST) {
                EXPECT_EQ(by.x % mirror.cell.cx, 0);
            }
            for (unsigned i = 0; i < count; ++i)
                ASSERT_EQ(layout.GetItemRect(i), mirror.Moved(i, by)) << i;

            CPoint const at{any(-5, 165), any(-5, 125)};
            TOV_LISTHIT const hit = layout.HitTest(at);
            unsigned wanted = tovNoIndex;
            for (unsigned i = 0; i < count; ++i)
                if (IsIn({0, 0, mirror.area.cx, mirror.area.cy}, at) && IsIn(mirror.Moved(i, by), at))
                    wanted = i;
            ASSERT_EQ(hit.item, wanted);
            if (mirror.style == LVS_REPORT && wanted != tovNoIndex) {
                EXPECT_TRUE(IsIn(layout.GetPartRect(wanted, hit.col, eListPartCell), at));
            }

            // Neighbours are the nearest rows that stand exactly beside.
            auto const item = static_cast<unsigned>(any(0, static_cast<int>(count) - 1));
            CRect const self = mirror.rects[item];
            auto const beside = [&](int dx, int dy) {
                for (unsigned i = 0; i < count; ++i)
                    if (i != item && self.Height() > 0 &&
                        mirror.rects[i].left == self.left + dx * self.Width() &&
                        mirror.rects[i].top == self.top + dy * self.Height() && (dx == 0 || self.Width() > 0))
                        return i;
                return tovNoIndex;
            };
            EXPECT_EQ(layout.GetNextItem(item, eListWayLeft), beside(-1, 0));
            EXPECT_EQ(layout.GetNextItem(item, eListWayRight), beside(1, 0));
            bool const goesOn = mirror.style == LVS_LIST;
            EXPECT_EQ(layout.GetNextItem(item, eListWayUp), goesOn ? item - 1 : beside(0, -1));
            EXPECT_EQ(layout.GetNextItem(item, eListWayDown),
                      goesOn ? item + 1 < count ? item + 1 : tovNoIndex : beside(0, 1));

            // What a rectangle touches, with and without the borders of rows.
            for (int const inset : {0, 2}) {
                CTovRect<std::int64_t> const band{any(-20, 100), any(-20, 200), any(0, 160), any(0, 400)};
                Rows touched;
                for (unsigned i = 0; i < count; ++i) {
                    CRect const r = mirror.rects[i];
                    if (band.left < band.right && band.top < band.bottom && r.Width() > 2 * inset &&
                        band.left < r.right - inset && band.right > r.left + inset &&
                        band.top < r.bottom - inset && band.bottom > r.top + inset)
                        touched.push_back(i);
                }
                EXPECT_EQ(layout.GetItemsIn(band, inset), touched);
            }

            // Whatever fits is whole in sight, and what was in sight does not move.
            bool const wasIn = mirror.style == LVS_REPORT && layout.GetItemRect(item).top >= 0 &&
                               layout.GetItemRect(item).bottom <= mirror.area.cy;
            EXPECT_EQ(layout.EnsureItemVisible(item), 1);
            CRect const shown = layout.GetItemRect(item);
            if (wasIn) {
                EXPECT_EQ(layout.GetItemRect(0).top, first.top);
            }
            EXPECT_GE(mirror.style == LVS_LIST ? shown.left : shown.top, 0);
            if (mirror.style == LVS_LIST && shown.Width() <= mirror.area.cx) {
                EXPECT_LE(shown.right, mirror.area.cx);
            }
            if (mirror.style != LVS_LIST && shown.Height() <= mirror.area.cy) {
                EXPECT_LE(shown.bottom, mirror.area.cy);
            }

            // The ends: a bar at its end and as far as it can are the same, and show the last row.
            bool const vertical = mirror.style != LVS_LIST;
            layout.Scroll(2'147'483'647, 2'147'483'647);
            CRect const end = layout.GetItemRect(count - 1);
            CTovListLayout::Bar const bar = layout.GetBar(vertical);
            EXPECT_EQ(bar.position, bar.most);
            EXPECT_FALSE(layout.SetBar(vertical, bar.most));
            EXPECT_FALSE(layout.SetBar(vertical, 2'147'483'647));
            if (end.Height() <= mirror.area.cy && vertical) {
                EXPECT_LE(end.bottom, mirror.area.cy);
            }
            layout.SetBar(vertical, any(0, bar.most));
        }
    }
}

TEST(ListLayout, HoldsTenMillionRowsAndLosesNoneOfThem) {
    CTovListLayout layout;
    layout.SetArea({300, 205});
    layout.SetRowHeight(200);  // 2,000,000,000 pixels
    layout.SetColumns({100, 100}, {0, 1});
    layout.SetItemCount(10'000'000);
    EXPECT_EQ(layout.EnsureItemVisible(9'999'999), 1);
    EXPECT_EQ(layout.GetTopRow(), 9'999'999u);
    EXPECT_EQ(layout.HitTest({150, 199}).item, 9'999'999u);
    EXPECT_EQ(layout.HitTest({150, 200}).item, tovNoIndex);
    layout.SetRowHeight(20);  // the same row stays on top as far as rows are left
    EXPECT_EQ(layout.GetTopRow(), 9'999'990u);
    layout.SetItemCount(5);
    EXPECT_EQ(layout.GetTopRow(), 0u);
    EXPECT_EQ(layout.EnsureItemVisible(5), 0);
    layout.SetStyle(LVS_LIST);
    EXPECT_EQ(layout.HitTest({0, 20}).col, tovNoIndex);
}

TEST(ListLayout, PartsOfACellAreHitFromTheLeft) {
    CTovListLayout layout;
    layout.SetArea({300, 100});
    layout.SetRowHeight(20);
    layout.SetItemCount(3);
    layout.SetColumns({80, 50}, {1, 0});
    layout.SetCheckWidth(16);
    layout.SetImageSize({18, 18});
    struct Case {
        int x;
        unsigned col;
        unsigned flags;
    };
    for (auto const& [x, col, flags] :
         {Case{0, 1, LVHT_ONITEMLABEL}, Case{49, 1, LVHT_ONITEMLABEL}, Case{50, 0, LVHT_ONITEMSTATEICON},
          Case{65, 0, LVHT_ONITEMSTATEICON}, Case{66, 0, LVHT_ONITEMICON}, Case{83, 0, LVHT_ONITEMICON},
          Case{84, 0, LVHT_ONITEMLABEL}, Case{129, 0, LVHT_ONITEMLABEL}})
        EXPECT_EQ(layout.HitTest({x, 25}), (TOV_LISTHIT{1, col, flags})) << x;
    EXPECT_EQ(layout.HitTest({130, 25}), TOV_LISTHIT{});
    EXPECT_EQ(layout.GetPartRect(0, 1, eListPartImage, true), (CRect{0, 0, 18, 20}));
    layout.SetColumns({80, 50}, {1, 1, 7});  // what is none, or twice, is passed over
    EXPECT_EQ(layout.GetColumnOrder(), Rows{1});
}

TEST(ListLayout, AColumnIsShownByItsAlignment) {
    struct Case {
        int left, right, alignment, step;
    };
    for (auto const& [left, right, alignment, step] : {
             Case{10, 90, LVCFMT_LEFT, 0},
             Case{-30, 20, LVCFMT_LEFT, -30},
             Case{80, 130, LVCFMT_LEFT, 30},
             Case{20, 190, LVCFMT_LEFT, 20},  // its left edge at most
             Case{-10, 190, LVCFMT_LEFT, -10},
             Case{80, 130, LVCFMT_RIGHT, 30},
             Case{20, 190, LVCFMT_RIGHT, 90},
             Case{-30, 20, LVCFMT_RIGHT, -30},
             Case{-50, 110, LVCFMT_RIGHT, 10},
             Case{20, 190, LVCFMT_CENTER, 55},
             Case{-90, 80, LVCFMT_CENTER, -55},
             Case{80, 130, LVCFMT_CENTER, 30},
         })
        EXPECT_EQ(TovColumnScrollStep(left, right, 100, alignment), step) << left << ' ' << right;
    CTovListLayout layout;
    layout.SetArea({100, 40});
    layout.SetColumns({80, 0, 80}, {0, 1, 2});
    EXPECT_EQ(layout.EnsureColVisible(0, LVCFMT_LEFT), 0);  // no rows
    layout.SetItemCount(1);
    EXPECT_EQ(layout.EnsureColVisible(1, LVCFMT_LEFT), 0);
    EXPECT_EQ(layout.EnsureColVisible(2, LVCFMT_LEFT), 1);
    EXPECT_EQ(layout.GetLeft(), -60);
}

}  // namespace
}  // namespace tov::test
