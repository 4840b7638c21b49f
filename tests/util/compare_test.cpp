#include <tov310/compare.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace tov {
namespace {

int Sign(int value) {
    return (value > 0) - (value < 0);
}

TEST(Compare, TextsCompareByBytes) {
    struct {
        char const* a;
        char const* b;
        int sign;
    } const rows[] = {
        {"a", "b", -1}, {"b", "a", 1},    {"a", "a", 0},         {"", "a", -1},      {"a10", "a9", -1},
        {"Z", "a", -1}, {nullptr, "", 0}, {nullptr, nullptr, 0}, {nullptr, "a", -1}, {"\x7f", "\xc3\xa4", -1},
        {"ab", "a", 1},
    };
    for (auto const& row : rows) {
        EXPECT_EQ(Sign(TovCompare(row.a, row.b)), row.sign) << (row.a ? row.a : "null") << ' ' << row.b;
        EXPECT_EQ(Sign(TovCompare(row.b, row.a)), -row.sign);
    }
}

TEST(Compare, IntegersAtTheEndsOfTheirRangeDoNotOverflow) {
    int const ordered[] = {std::numeric_limits<int>::min(), std::numeric_limits<int>::min() + 1, -1, 0, 1,
                           std::numeric_limits<int>::max()};
    for (int const& a : ordered) {
        for (int const& b : ordered)
            EXPECT_EQ(Sign(TovCompare(a, b)), (&a > &b) - (&a < &b)) << a << ' ' << b;
    }
}

constexpr double e = 2.220446049250313e-16;
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double huge = std::numeric_limits<double>::max();

TEST(Compare, DoublesWithinTheToleranceAreEqual) {
    struct {
        double a;
        double b;
        int sign;
    } const rows[] = {
        {1.0, 2.0, -1},
        {1.0, 1.0 + e, 0},      // e < e * (1 + e) + e
        {1.0, 1.0 + 2 * e, 0},  // 2e < e * (1 + 2e) + e, by a hair
        {1.0, 1.0 + 3 * e, -1},
        {0.0, e, 0},
        {0.0, e * (1 + e), -1},  // the bound is exactly this difference, and it is strict
        {0.0, 3 * e, -1},
        {-e / 2, e / 2, -1},  // likewise, since the bound rounds to e
        {-e / 4, e / 4, 0},
        {0.0, -0.0, 0},
        {1e300, 1e300 * (1 + e), 0},
        {1e300, 1e300 * (1 + 4 * e), -1},
        {-huge, huge, -1},  // the difference is infinite
        {huge, infinity, -1},
        {-infinity, -huge, -1},
        {-infinity, infinity, -1},
        {infinity, infinity, 0},
        {-infinity, -infinity, 0},
        {infinity, nan, -1},  // no number stands behind it
        {0.0, nan, -1},
        {-infinity, nan, -1},
        {nan, nan, 0},
        {nan, -nan, 0},
    };
    for (auto const& row : rows) {
        EXPECT_EQ(TovCompare(row.a, row.b), row.sign) << row.a << ' ' << row.b;
        EXPECT_EQ(TovCompare(row.b, row.a), -row.sign) << row.b << ' ' << row.a;
    }
}

TEST(Compare, MissingNumbersSortBehindAllOthers) {
    std::vector<double> column = {nan, 3.0, -infinity, nan, infinity, 1.0, 2.0};
    std::stable_sort(column.begin(), column.end(), [](double a, double b) { return TovCompare(a, b) < 0; });
    EXPECT_EQ((std::vector<double>(column.begin(), column.end() - 2)),
              (std::vector<double>{-infinity, 1.0, 2.0, 3.0, infinity}));
    EXPECT_TRUE(std::isnan(column[5]) && std::isnan(column[6]));
}

}  // namespace
}  // namespace tov
