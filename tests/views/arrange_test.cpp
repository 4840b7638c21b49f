#include <tov310/arrange.h>

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <random>

namespace tov {
namespace {

using Places = std::map<unsigned, CRect>;

Places Arranged(CTovArrangement& items, CSize current, CSize original, CSize minimum = {}) {
    Places places;
    items.Arrange(current, original, minimum, [&places](ARRANGE_ITEM const& item, int dx, int dy) {
        places[item.id] = CTovArrangement::Place(item, dx, dy);
    });
    return places;
}

TEST(Arrange, EdgesTakeTheirShareCutTowardsZero) {
    static_assert(sizeof(ARRANGE_ITEM) == 9 * sizeof(int));
    struct {
        int moveX, sizeX, moveY, sizeY, dx, dy;
        CRect placed;
    } const cases[] = {
        {33, 0, 0, 0, 10, 0, {13, 20, 33, 40}},
        {33, 0, 0, 0, -10, 0, {7, 20, 27, 40}},
        {33, 33, 0, 0, 10, 10, {13, 20, 36, 40}},  // 66 of 10 are 6, not twice 3
        {0, 50, 0, 150, -3, 3, {10, 20, 29, 44}},
        {-100, 200, 0, -100, 7, 7, {3, 20, 37, 33}},
        {100, 0, 100, 0, -50, -50, {-40, -30, -20, -10}},
        {100, 0, 0, 0, 30'000'000, 0, {10 - 12'949'672, 20, 30 - 12'949'672, 40}},  // leaves 32 bits
        {std::numeric_limits<int>::max(),
         1,
         0,
         0,
         std::numeric_limits<int>::min(),
         0,
         {10 - 21474836, 20, 30, 40}},
    };
    for (auto const& c : cases) {
        ARRANGE_ITEM const item{c.moveX, c.sizeX, c.moveY, c.sizeY, 5, 10, 20, 30, 40};
        EXPECT_EQ(CTovArrangement::Place(item, c.dx, c.dy), c.placed)
            << c.moveX << ' ' << c.sizeX << " by " << c.dx;
    }
}

TEST(Arrange, WhatIsSizedAndMovedIsSizedOnly) {
    CRect const rect{0, 0, 10, 10};
    for (int flags = 0; flags < 16; ++flags) {
        CTovArrangement items;
        items.Add(flags, 1, rect);
        CRect const placed = Arranged(items, {130, 140}, {100, 100})[1];
        int const left = (flags & 3) == ARRANGE_MOVE_X ? 30 : 0;
        int const top = (flags & 12) == ARRANGE_MOVE_Y ? 40 : 0;
        int const right = 10 + ((flags & 3) != 0 ? 30 : 0);
        int const bottom = 10 + ((flags & 12) != 0 ? 40 : 0);
        EXPECT_EQ(placed, (CRect{left, top, right, bottom})) << flags;
    }
}

TEST(Arrange, RandomSizesLeaveNoTraceAndStopAtTheMinimum) {
    std::mt19937 random(9);
    auto const pick = [&random](int low, int high) {
        return std::uniform_int_distribution(low, high)(random);
    };
    CTovArrangement items;
    for (unsigned id = 1; id <= 20; ++id)
        items.Add(pick(0, 100), pick(0, 100), pick(0, 100), pick(0, 100), id, {pick(0, 50), 5, 70, 80});
    CSize const original{400, 300};
    CSize const minimum{350, 280};
    Places const start = Arranged(items, original, original, minimum);
    Places const least = Arranged(items, minimum, original, minimum);
    for (int i = 0; i < 10'000; ++i) {
        CSize const size{pick(0, 2000), pick(0, 280)};
        Places const places = Arranged(items, size, original, minimum);
        ASSERT_EQ(places == least, size.cx <= 350) << size.cx;
    }
    EXPECT_EQ(Arranged(items, original, original, minimum), start);
    items.Remove(7);
    items.Remove(70);
    EXPECT_EQ(Arranged(items, original, original).size(), 19u);
}

TEST(Arrange, PlacesAreCarriedOverToOtherFontsAndBack) {
    CTovArrangement items;
    items.SetUnits(1.5, 2.0);
    items.Add(ARRANGE_SIZE_X, 1, {10, 20, 101, 41});
    Places const before = Arranged(items, {200, 100}, {150, 100}, {120, 90});
    items.SetUnits(0, 4);
    EXPECT_EQ(Arranged(items, {200, 100}, {150, 100}, {120, 90}), before);
    items.SetUnits(3.0, 3.0);
    items.Add(ARRANGE_MOVE_X, 2, {7, 7, 9, 9});
    Places after;
    items.ArrangeAgain({350, 1}, [&after](ARRANGE_ITEM const& item, int dx, int dy) {
        after[item.id] = CTovArrangement::Place(item, dx, dy);
        EXPECT_EQ(dy, 135 - 150);
    });
    EXPECT_EQ(after, (Places{{1, {20, 30, 252, 62}}, {2, {57, 7, 59, 9}}}));
    for (int i = 1; i < 1000; ++i)
        items.SetUnits(i / 7.0, i / 3.0);
    items.SetUnits(1.5, 2.0);
    EXPECT_EQ(Arranged(items, {200, 100}, {150, 100}, {120, 90})[1], before.at(1));
}

}  // namespace
}  // namespace tov
