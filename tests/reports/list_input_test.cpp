// Keys, clicks, the rubber band, texts for the clipboard and the marks of headers.
#include <tov310/header_marks.h>
#include <tov310/list_input.h>
#include <tov310/window_messages.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <set>

namespace tov::test {
namespace {

using Set = std::set<unsigned>;
constexpr TOV_LISTKEYS plain{};
constexpr TOV_LISTKEYS shift{true, false};
constexpr TOV_LISTKEYS ctrl{false, true};

struct FakeActions : ITovListActions {
    unsigned GetFocusedItem() const override { return focused; }
    int FocusItem(unsigned item, int) override {
        focused = item;
        return layout.EnsureItemVisible(item);
    }
    unsigned GetSelectionAnchor() const override { return anchor; }
    void SetSelectionAnchor(unsigned item) override { anchor = item; }
    int GetItemSelected(unsigned item) const override { return selected.contains(item); }
    int GetItemDisabled(unsigned item) const override { return disabled.contains(item); }
    int GetItemChecked(unsigned item) const override { return checked.contains(item); }
    int ShowCheckboxes() const override { return hasChecks; }
    int SelectItem(unsigned item, int select, int, int evenIfDisabled) override {
        if (evenIfDisabled == 0 && disabled.contains(item)) return 0;
        ++changes;
        if (select == 0) return static_cast<int>(selected.erase(item));
        return selected.insert(item).second;
    }
    unsigned SelectAllItems(int, int, int) override {
        ++clearings;
        selected.clear();
        return 0;
    }
    int SetItemSelection(unsigned item, int notify) override {
        SelectAllItems(0, notify, 0);
        return SelectItem(item, 1, notify, 0);
    }
    unsigned SetItemSelection(unsigned first, unsigned last, int notify) override {
        SelectAllItems(0, notify, 0);
        for (unsigned i = std::min(first, last); i <= std::max(first, last); ++i)
            SelectItem(i, 1, notify, 0);
        return 0;
    }
    int CheckItem(unsigned item, int check, int) override {
        return check != 0 ? checked.insert(item).second : static_cast<int>(checked.erase(item));
    }
    unsigned CheckSelectedItems(int check, int notify) override {
        for (unsigned const item : selected)
            CheckItem(item, check, notify);
        return 0;
    }

    CTovListLayout layout;
    CTovListInput input{layout, *this};
    unsigned focused = tovNoIndex;
    unsigned anchor = tovNoIndex;
    Set selected, checked, disabled;
    int hasChecks = 0;
    int clearings = 0;
    int changes = 0;
};

// Twenty rows of 10 pixels, five of which are in sight.
struct ListInput : testing::Test, FakeActions {
    ListInput() {
        layout.SetArea({100, 55});
        layout.SetRowHeight(10);
        layout.SetCellSize({30, 10});
        layout.SetColumns({60}, {0});
        layout.SetItemCount(20);
    }
    void Press(unsigned item, TOV_LISTKEYS keys, unsigned flags = LVHT_ONITEMLABEL) {
        EXPECT_EQ(input.OnLButtonDown({item, 0, flags}, keys),
                  flags == LVHT_ONITEMSTATEICON ? eListPressDone : eListPressRow);
    }
};

TEST_F(ListInput, KeysMoveTheFocusAndSelectFromTheAnchor) {
    struct Case {
        int key;
        TOV_LISTKEYS keys;
        unsigned focused, anchor;
        Set selected;
    };
    for (auto const& [key, keys, wantedFocus, wantedAnchor, wanted] : {
             Case{VK_DOWN, plain, 0, 0, {0}},  // none had it
             Case{VK_UP, plain, 0, 0, {0}},
             Case{VK_DOWN, plain, 1, 1, {1}},
             Case{VK_DOWN, shift, 2, 1, {1, 2}},
             Case{VK_NEXT, shift, 6, 1, {1, 2, 3, 4, 5, 6}},
             Case{VK_HOME, shift, 0, 1, {0, 1}},
             Case{VK_DOWN, ctrl, 1, 1, {0, 1}},
             Case{VK_END, ctrl, 19, 1, {0, 1}},
             Case{VK_PRIOR, plain, 15, 15, {15}},
             Case{VK_RIGHT, plain, 15, 15, {15}},
         }) {
        EXPECT_EQ(input.HandleNavigation(key, keys), 1);
        EXPECT_EQ(focused, wantedFocus);
        EXPECT_EQ(anchor, wantedAnchor);
        EXPECT_EQ(selected, wanted);
    }
    EXPECT_EQ(input.HandleNavigation(VK_RETURN, plain), 0);
    anchor = tovNoIndex;
    input.HandleNavigation(VK_UP, shift);  // from the old focus
    EXPECT_EQ(selected, (Set{14, 15}));
    input.multilineSelection = 0;
    input.HandleNavigation(VK_UP, shift);
    EXPECT_EQ(selected, Set{13});
    layout.SetItemCount(0);
    EXPECT_EQ(input.HandleNavigation(VK_END, plain), 1);
    EXPECT_EQ(focused, 13u);
}

TEST_F(ListInput, PagesEndWithTheirColumnAndSingleStepsGoOn) {
    layout.SetStyle(LVS_LIST);  // five rows a column
    focused = 3;
    input.HandleNavigation(VK_NEXT, plain);
    EXPECT_EQ(focused, 4u);
    input.HandleNavigation(VK_DOWN, plain);
    EXPECT_EQ(focused, 5u);
    input.HandleNavigation(VK_RIGHT, plain);
    EXPECT_EQ(focused, 10u);
    input.HandleNavigation(VK_PRIOR, plain);
    EXPECT_EQ(focused, 10u);
}

TEST_F(ListInput, ClicksSelectToggleExtendAndCheck) {
    Press(4, plain);
    Press(7, shift);
    EXPECT_EQ(selected, (Set{4, 5, 6, 7}));
    EXPECT_EQ(anchor, 4u);
    Press(2, shift);  // from the focus, not the anchor
    EXPECT_EQ(selected, (Set{2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(anchor, 7u);
    Press(5, plain);  // to be dragged
    EXPECT_EQ(selected.size(), 6u);
    EXPECT_EQ(focused, 5u);
    Press(5, ctrl);
    EXPECT_EQ(selected, (Set{2, 3, 4, 6, 7}));
}

TEST_F(ListInput, CheckBoxesTurnAllSelectedRowsOrOneAlone) {
    hasChecks = 1;
    selected = {1, 2};
    disabled = {5};
    Press(1, plain, LVHT_ONITEMSTATEICON);
    Press(4, plain, LVHT_ONITEMSTATEICON);
    Press(5, plain, LVHT_ONITEMSTATEICON);
    EXPECT_EQ(checked, (Set{1, 2, 4}));
    EXPECT_EQ(selected, (Set{1, 2}));
    focused = 2;
    input.HandleSpace(plain);
    EXPECT_EQ(checked, Set{4});
    input.HandleSpace(ctrl);
    EXPECT_EQ(selected, Set{1});
    focused = 5;
    input.HandleSpace(plain);
    EXPECT_EQ(checked, Set{4});
}

TEST_F(ListInput, TheBackgroundBeginsABandOrDeselects) {
    selected = {3};
    EXPECT_EQ(input.OnLButtonDown({}, plain), eListPressBand);
    EXPECT_EQ(selected, Set{3});
    input.fullRowSelect = 0;
    EXPECT_EQ(input.OnLButtonDown({2, 1, LVHT_ONITEMLABEL}, plain), eListPressBand);
    input.multilineSelection = 0;
    EXPECT_EQ(input.OnLButtonDown({}, plain), eListPressDone);
    EXPECT_EQ(selected, Set{});
}

TEST_F(ListInput, KeysThatOnlyScrollGoByRowsPagesAndToTheEnds) {
    struct Case {
        int key;
        CSize step;
    };
    for (auto const& [key, step] :
         {Case{VK_LEFT, {-10, 0}}, Case{VK_RIGHT, {10, 0}}, Case{VK_UP, {0, -20}}, Case{VK_DOWN, {0, 20}},
          Case{VK_PRIOR, {0, -160}}, Case{VK_NEXT, {0, 160}},
          Case{VK_HOME, {0, std::numeric_limits<int>::min()}},
          Case{VK_END, {0, std::numeric_limits<int>::max()}}, Case{VK_SPACE, {0, 0}}})
        EXPECT_EQ(CTovListInput::GetScrollStep(key, 20, 200), step) << key;
}

// After each move what is selected is what the band covers, and only rows that changed were touched.
TEST_F(ListInput, TheBandSelectsWhatItCoversInEveryStyleWhileItScrolls) {
    std::mt19937 random(3);
    for (unsigned long const style : {LVS_REPORT, LVS_LIST, LVS_SMALLICON, LVS_ICON}) {
        layout.SetStyle(style);
        layout.Scroll(-10000, -10000);
        selected = {0, 19};
        CTovListBand band(layout, *this);
        CPoint const from{style == LVS_REPORT ? 50 : 5, 25};
        auto const anchorInContent = layout.ToContent(from);
        band.Begin(from, plain);
        band.Track({from.x + 2, from.y}, 4);  // not dragged yet
        EXPECT_EQ(selected.size(), 2u);
        EXPECT_EQ(band.GetRect(), CRect{});
        bool isFirst = true;
        for (int step = 0; step < 200; ++step) {
            CPoint const to{static_cast<int>(random() % 140) - 20, static_cast<int>(random() % 95) - 20};
            CSize const lines = band.GetScrollLines(to);
            if (to.x >= 0 && to.x < 100 && to.y >= 0 && to.y < 55) {
                EXPECT_EQ(lines, CSize{});
            }
            bool const moved = layout.Scroll(lines.cx * 30, lines.cy * 10);
            if (style == LVS_REPORT || style == LVS_LIST) {
                EXPECT_EQ(moved, lines != CSize{});
            }
            Set const before = selected;
            changes = 0;
            band.Track(to, 4);
            auto const end = layout.ToContent({std::clamp(to.x, 0, 100), std::clamp(to.y, 0, 55)});
            Set covered;
            for (unsigned i = 0; i < 20 && band.IsDragged() && style != LVS_ICON; ++i) {
                CRect const rect = layout.GetItemRect(i);
                auto const corner = layout.ToContent({rect.left, rect.top});
                int const inset = style == LVS_REPORT ? 2 : 0;
                auto const meets = [inset](auto a, auto b, auto low, int size) {
                    return std::min(a, b) < low + size - inset && std::max(a, b) > low + inset && a != b;
                };
                if (meets(anchorInContent.x, end.x, corner.x, rect.Width()) &&
                    meets(anchorInContent.y, end.y, corner.y, rect.Height()))
                    covered.insert(i);
            }
            if (!band.IsDragged()) continue;
            ASSERT_EQ(selected, covered) << style << ' ' << step;
            Set changed;
            std::set_symmetric_difference(before.begin(), before.end(), covered.begin(), covered.end(),
                                          std::inserter(changed, changed.end()));
            if (!isFirst) {
                EXPECT_LE(static_cast<std::size_t>(changes), changed.size());
            }
            isFirst = false;
        }
        band.End();
        EXPECT_EQ(band.GetRect(), CRect{});
    }
    clearings = 0;
    layout.SetStyle(LVS_REPORT);
    CTovListBand band(layout, *this);
    band.Begin({5, 5}, ctrl);
    band.Track({40, 40});
    EXPECT_EQ(clearings, 0);
}

TEST(ListSource, StoredRowsKeepTheirTextsAndGiveThemToTheClipboard) {
    CTovStoredItems items;
    EXPECT_EQ(items.InsertItem(7, "b", 3, 20), 0u);
    EXPECT_EQ(items.InsertItem(0, "a", tovNoImage, 10), 0u);
    EXPECT_EQ(items.InsertItem(tovNoIndex, "c", 5, 30), 2u);
    items.SetItemText(0, 2, "x");
    items.SetItemText(1, 2, std::string(600, '7').c_str());
    EXPECT_EQ(items.SetItemText(3, 0, "none"), 0);
    EXPECT_EQ(TovListText(items, {0, 2, 9}, {2, 0}), "x\ta\r\n\tc\r\n\t\r\n");
    EXPECT_EQ(TovListText(items, {1}, {2}), std::string(511, '7').append("\r\n"));
    items.SortItems([](LPARAM a, LPARAM b) { return b < a ? -1 : a < b ? 1 : 0; });
    items.DeleteColumn(0);
    items.InsertColumn(1);
    EXPECT_EQ(items.GetItemText(2, 2), "x");
    EXPECT_EQ(items.GetItemText(2, 1), "");
    EXPECT_EQ(items.GetItemImage(0), 5u);
    items.SetItemState(1, LVIS_SELECTED | LVIS_CUT, LVIS_SELECTED);
    EXPECT_EQ(items.GetItemState(1, 0xFFFF), LVIS_SELECTED);
    EXPECT_EQ(items.DeleteItem(0), 1);
    TOV_DISPINFO info;
    EXPECT_EQ(items.GetDispInfo(info), 1);
    EXPECT_EQ(info.nState, LVIS_SELECTED);
    info.iItem = 2;
    EXPECT_EQ(items.GetDispInfo(info), 0);

    EXPECT_EQ(TovEstimateCacheSize(2048, 0, 4, 3, 1, 512), 0u);
    EXPECT_EQ(TovEstimateCacheSize(2048, 100, 4, 0, 1, 512), 2560u);
    EXPECT_EQ(TovEstimateCacheSize(2048, 100, 4, 1, 3, 512), 2560u);
    EXPECT_EQ(TovEstimateCacheSize(2048, 100, 0, 11, 0, 512), 20992u);
    EXPECT_EQ(TovEstimateCacheSize(2048, 10, 3, 10, 2, 512), 2787u);  // 2275.55 and a step
    EXPECT_EQ(TovEstimateCacheSize(2048, 2, 3, 100, 2, 512), 2560u);
}

TEST(HeaderMarks, FollowTheKeysOfTheSortAndTheColumns) {
    CTovHeaderMarks marks;
    for (unsigned i = 0; i < 4; ++i)
        marks.InsertColumn(i);
    auto const shown = [&marks] {
        std::string text;
        for (unsigned i = 0; i < marks.GetColumns(); ++i) {
            text += "-ad"[marks.GetColumn(i)->icon];
            text += std::to_string(marks.GetColumn(i)->number);
        }
        return text;
    };
    EXPECT_TRUE(marks.SetSortColumns({{2, 1}}));
    EXPECT_EQ(shown(), "-0-0a0-0");
    EXPECT_FALSE(marks.SetSortColumns({{2, 1}}));
    EXPECT_TRUE(marks.SetSortColumns({{2, 0}, {0, 1}}));
    EXPECT_EQ(shown(), "a2-0d1-0");
    EXPECT_FALSE(marks.SetSortColumns({{0, 1}, {1, 1}, {2, 1}, {3, 1}}));
    EXPECT_FALSE(marks.SetSortColumns({{4, 1}}));
    EXPECT_TRUE(marks.SetSortColumns({{2, 1}, {0, 1}}));
    EXPECT_EQ(shown(), "a2-0a1-0");
    marks.InsertColumn(1);
    marks.DeleteColumn(0);
    EXPECT_EQ(shown(), "-0-0a1-0");
    EXPECT_TRUE(marks.SetSortColumns({{1, 0}}));
    EXPECT_EQ(shown(), "-0d0-0-0");
    EXPECT_TRUE(marks.SetSortColumns({}));
    EXPECT_FALSE(marks.SetSortColumns({}));
    EXPECT_EQ(shown(), "-0-0-0-0");
}

TEST(HeaderMarks, LayOutACellAndTellItsWidth) {
    auto const measures = TOV_HEADERMEASURES::Of({4, 16}, false);
    EXPECT_EQ(measures.textPadding, 5);
    EXPECT_EQ(TOV_HEADERMEASURES::Of({8, 16}, true).textPadding, 13);
    CTovHeaderMarks marks;
    marks.InsertColumn(0);
    EXPECT_EQ(marks.GetWidth(1, 30, measures, true), -1);
    EXPECT_EQ(marks.GetWidth(0, 30, measures, false), 40);
    marks.SetInbuildIcon(0, eInbuildIconAscending, 1);
    EXPECT_EQ(marks.GetWidth(0, 30, measures, true), 60);
    TOV_HEADERCOLUMN const& column = *marks.GetColumn(0);
    std::mt19937 random(5);
    for (int i = 0; i < 2000; ++i) {  // nothing leaves the cell or lies over something else, however narrow
        auto const any = [&random](int most) {
            return static_cast<int>(random() % static_cast<unsigned>(most));
        };
        CRect const cell{10, 0, 10 + any(90), 20};
        int const text = any(60);
        bool const lists = any(2) == 1;
        marks.CalcDrawingInfos(0, cell, text, any(9), any(3), measures, lists);
        bool const hasMark = column.mark.Width() > 0;
        EXPECT_LE(column.text.Width(), text);
        EXPECT_GE(column.text.left, cell.left);
        EXPECT_LE(column.text.right, cell.right);
        if (hasMark) {
            EXPECT_EQ(column.mark.left, column.text.right);
        }
        if (hasMark) {
            EXPECT_LE(column.mark.right, lists ? column.listBox.left : cell.right - 5);
        }
        if (lists) {
            EXPECT_GE(column.listBox.left, column.text.right);
        }
        EXPECT_LE(column.listBox.right, std::max(cell.right, 0));
        if (cell.Width() >= text + 60) {
            EXPECT_TRUE(hasMark && column.text.Width() == text);
        }
        CPoint const inIcon{column.listBox.left, 10};
        EXPECT_EQ(marks.PtInListBoxIcon(inIcon), lists && column.listBox.Width() > 0 ? 0 : tovNoIndex);
    }
}

}  // namespace
}  // namespace tov::test
