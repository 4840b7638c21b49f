#include <tov310/geometry.h>

#include <gtest/gtest.h>

#include <limits>

namespace tov {
namespace {

TEST(Geometry, NormalisingSwapsOnlyWhatIsTurnedRound) {
    struct {
        CTovRect<double> rect;
        CTovRect<double> normal;
    } const rows[] = {
        {{1, 2, 3, 4}, {1, 2, 3, 4}}, {{3, 2, 1, 4}, {1, 2, 3, 4}},     {{1, 4, 3, 2}, {1, 2, 3, 4}},
        {{3, 4, 1, 2}, {1, 2, 3, 4}}, {{-1, 0, -1, 0}, {-1, 0, -1, 0}},
    };
    for (auto [rect, normal] : rows) {
        rect.Normalize();
        EXPECT_EQ(rect, normal);
    }
}

TEST(Geometry, ARectangleContainsItsFourSides) {
    CTovRect<double> const rect{1, 2, 3, 4};
    for (double const x : {0.999, 1.0, 2.0, 3.0, 3.001}) {
        for (double const y : {1.999, 2.0, 3.0, 4.0, 4.001}) {
            bool const inside = x > 0.9999 && x < 3.0001 && y > 1.9999 && y < 4.0001;
            EXPECT_EQ(rect.Contains(x, y), inside) << x << ' ' << y;
            EXPECT_EQ(rect.Contains(CTovPoint<double>{x, y}), inside);
        }
    }
    EXPECT_TRUE((CTovRect<int>{5, 5, 5, 5}.Contains(5, 5)));
}

TEST(Geometry, CoordinatesAreRoundedToTheNearestPixelAHalfToTheEvenOne) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr int least = std::numeric_limits<int>::min();
    constexpr int most = std::numeric_limits<int>::max();
    struct {
        double coordinate;
        int pixel;
    } const rows[] = {
        {0.0, 0},
        {-0.4, 0},
        {0.5, 0},
        {1.5, 2},
        {2.5, 2},
        {-0.5, 0},
        {-1.5, -2},
        {0.50001, 1},
        {1.99, 2},
        {-1.99, -2},
        {1e300, most},
        {-1e300, least},
        {infinity, most},
        {-infinity, least},
        {2147483646.5, 2147483646},
        {2147483647.0, most},
        {2147483647.5, most},
        {-2147483648.0, least},
        {-2147483648.6, least},
        {std::numeric_limits<double>::quiet_NaN(), 0},
    };
    for (auto const& row : rows)
        EXPECT_EQ(TovRoundToPixel(row.coordinate), row.pixel) << row.coordinate;
    EXPECT_EQ(TovRoundToPixel(CTovPoint<double>{1.6, -1.6}), (CTovPoint<int>{2, -2}));
    EXPECT_EQ(TovRoundToPixel(CTovRect<double>{0.6, 1.6, 2.6, 3.6}), (CTovRect<int>{1, 2, 3, 4}));
    EXPECT_EQ(TovRoundToPixel(CTovSegment<double>{{0.6, 1.6}, {2.6, 3.6}}),
              (CTovSegment<int>{{1, 2}, {3, 4}}));
}

}  // namespace
}  // namespace tov
