#include <tov310/geometry.h>

#include <gtest/gtest.h>

#include <limits>

namespace tov {
namespace {

TEST(Geometry, NormalisingSwapsOnlyWhatIsTurnedRound) {
    for (CTovRect<double> rect : {CTovRect<double>{1, 2, 3, 4}, {3, 2, 1, 4}, {1, 4, 3, 2}, {3, 4, 1, 2}}) {
        rect.Normalize();
        EXPECT_EQ(rect, (CTovRect<double>{1, 2, 3, 4}));
    }
}

TEST(Geometry, ARectangleContainsItsFourSides) {
    CTovRect<int> const rect{1, 12, 3, 14};
    for (int x = 0; x < 5; ++x) {
        for (int y = 11; y < 16; ++y)
            EXPECT_EQ(rect.Contains({x, y}), x != 0 && x != 4 && y != 11 && y != 15) << x << ' ' << y;
    }
}

TEST(Geometry, CoordinatesAreRoundedToTheNearestPixelAHalfToTheEvenOne) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr int least = std::numeric_limits<int>::min();
    constexpr int most = std::numeric_limits<int>::max();
    struct {
        double coordinate;
        int pixel;
    } const rows[] = {
        // clang-format off
        {-0.4, 0}, {0.5, 0}, {1.5, 2}, {2.5, 2}, {-0.5, 0}, {-1.5, -2}, {0.50001, 1}, {-1.99, -2},
        {1e300, most}, {-1e300, least}, {infinity, most}, {-infinity, least},
        {2147483646.5, 2147483646}, {2147483647.5, most}, {-2147483647.0, -2147483647}, {-2147483648.6, least},
        {std::numeric_limits<double>::quiet_NaN(), 0},
        // clang-format on
    };
    for (auto const& [coordinate, pixel] : rows)
        EXPECT_EQ(TovRoundToPixel(coordinate), pixel) << coordinate;
    EXPECT_EQ(TovRoundToPixel(CTovRect<double>{0.6, 1.6, 2.6, 3.6}), (CTovRect<int>{1, 2, 3, 4}));
    EXPECT_EQ(TovRoundToPixel(CTovSegment<double>{{0.6, 1.6}, {2.6, -3.6}}),
              (CTovSegment<int>{{1, 2}, {3, -4}}));
}

}  // namespace
}  // namespace tov
