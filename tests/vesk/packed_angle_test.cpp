#include <tov310/packed_angle.h>

#include "support/exact_decimal.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace tov {
namespace {

struct Split {
    int sign;
    int whole;
    int minutes;
    double seconds;
    bool operator==(Split const&) const = default;
};

std::ostream& operator<<(std::ostream& out, Split const& s) {
    return out << s.sign << " * " << s.whole << ' ' << s.minutes << ' ' << s.seconds;
}

Split Dms(double packed, int decimals, int limit = 0) {
    Split s{};
    VeskSplitPackedDms(packed, s.sign, s.whole, s.minutes, s.seconds, decimals, limit);
    return s;
}

Split Gon(double packed, int decimals, int limit = 0) {
    Split s{};
    VeskSplitPackedGon(packed, s.sign, s.whole, s.minutes, s.seconds, decimals, limit);
    return s;
}

constexpr long double exactPi = 3.14159265358979323846L;
constexpr double pi = 3.14159265358979323846;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

TEST(PackedAngle, SplitsRoundsAndCarries) {
    struct {
        double packed;
        int decimals;
        int limit;
        Split dms;
    } const rows[] = {
        // clang-format off
        {12.3456789, 3, 0, {1, 12, 34, 56.789}},
        {1.15, 5, 0, {1, 1, 15, 0}},  // stored a little below
        {-12.3456789, 0, 0, {-1, 12, 34, 57}},
        {0.595999999999, 5, 0, {1, 1, 0, 0}},  // carries through both fields
        {359.59599999999, 5, 0, {1, 360, 0, 0}}, {359.59599999999, 5, 1, {1, 0, 0, 0}},
        {-359.59599999999, 5, 1, {1, 0, 0, 0}},  // zero is not negative
        {725.3, 2, 1, {1, 5, 30, 0}}, {-0.00000000001, 2, 0, {1, 0, 0, 0}}, {-0.0, 2, 0, {1, 0, 0, 0}},
        {12.75, 2, 0, {1, 13, 15, 0}},    // more minutes than a degree has
        {12.5985, 2, 0, {1, 13, 0, 25}},  // more seconds than a minute has
        {12.9999, 2, 0, {1, 13, 40, 39}}, {1e300, 2, 0, {1, std::numeric_limits<int>::max(), 0, 0}},
        {nan, 2, 0, {1, 0, 0, 0}}, {12.3456789, -1, 0, {1, 12, 34, 56.789}},
        // clang-format on
    };
    for (auto const& row : rows) {
        Split const got = Dms(row.packed, row.decimals, row.limit);
        if (row.decimals >= 0) {
            EXPECT_EQ(got, row.dms) << row.packed;
        } else {
            EXPECT_NEAR(got.seconds, row.dms.seconds, 1e-10);
        }
    }
    EXPECT_EQ(Dms(359.9999999999, 15).whole, 360);  // the largest count of digits
    EXPECT_EQ(Gon(99.99999999, 1), (Split{1, 100, 0, 0}));
    EXPECT_EQ(Gon(-399.999999999, 3, 1), (Split{1, 0, 0, 0}));
    EXPECT_EQ(Gon(-12.34567, 1), (Split{-1, 12, 34, 56.7}));
}

// Rounding is that of the stored number itself: the exact integer decides every digit.
TEST(PackedAngle, RoundsEveryDigitAsTheStoredNumberDemands) {
    std::mt19937_64 random(310);
    std::uniform_real_distribution<double> degrees(-720, 720);
    for (int i = 0; i < 2'000'000; ++i) {
        double packed = degrees(random);
        int const decimals = static_cast<int>(random() % 9);
        // Half of the numbers are decimal ties or lie beside one.
        if (i % 2 == 0) {
            double const power = std::pow(10.0, 4 + decimals);
            packed = (std::floor(packed * power) + 0.5) / power;
            if (i % 4 == 0) packed = std::nextafter(packed, i % 8 == 0 ? 1e9 : -1e9);
        }
        std::uint64_t const power = static_cast<std::uint64_t>(std::llround(std::pow(10.0, decimals)));
        std::uint64_t const count = test::ExactScaled(packed, 4 + decimals);
        std::uint64_t seconds = count % (100 * power);
        std::uint64_t minutes = count / (100 * power) % 100;
        std::uint64_t whole = count / (10000 * power);
        Split const gon = Gon(packed, decimals);
        bool const ok = gon.whole == static_cast<int>(whole) && gon.minutes == static_cast<int>(minutes) &&
                        gon.seconds == static_cast<double>(seconds) / static_cast<double>(power);
        if (seconds >= 60 * power) {
            seconds -= 60 * power;
            ++minutes;
        }
        if (minutes >= 60) {
            minutes -= 60;
            ++whole;
        }
        Split const dms = Dms(packed, decimals);
        ASSERT_TRUE(ok && dms.whole == static_cast<int>(whole) && dms.minutes == static_cast<int>(minutes) &&
                    dms.seconds == static_cast<double>(seconds) / static_cast<double>(power))
            << std::hexfloat << packed << " at " << decimals << ": " << dms << ", " << gon;
    }
}

TEST(PackedAngle, RoundsAnglesFromRadians) {
    double const almost = (59 + 59.9999999 / 60) / 60;  // of a degree
    struct {
        double degrees;
        int decimals;
        unsigned long limit;
        double packed;
    } const rows[] = {
        // clang-format off
        {12.582441388888889, 7, 0, 12.3456789}, {12.582441388888889, 4, 0, 12.3457},
        {12.582441388888889, 3, 0, 12.350}, {12.582441388888889, 2, 0, 12.35},
        {12.582441388888889, 1, 0, 12.3}, {12.582441388888889, 0, 0, 13}, {12 + almost, 6, 0, 13},
        {12 + almost, 3, 0, 13}, {12 + almost, 1, 0, 13}, {359 + almost, 5, 1, 0}, {-359 - almost, 5, 1, 0},
        {-359 - almost, 5, 0, -360}, {-12.5, 25, 0, -12.3}, {725.5, 4, 1, 5.3},
        // clang-format on
    };
    for (auto const& row : rows) {
        double const packed = VeskRadToPackedDms(row.degrees * pi / 180, row.decimals, row.limit);
        EXPECT_EQ(packed, row.packed) << row.degrees << " at " << row.decimals;
        EXPECT_FALSE(packed == 0 && std::signbit(packed));
    }
    EXPECT_EQ(VeskRadToPackedGon(pi, 4, 0), 200);
    EXPECT_EQ(VeskRadToPackedGon(2 * pi, 4, 1), 0);
    EXPECT_EQ(VeskRadToPackedGon(-0.5, 6, 0), -31.830989);
    EXPECT_TRUE(std::isnan(VeskRadToPackedDms(nan, 3, 1)));
    for (double const huge : {1e17, 1e307, -1.7e308}) {
        EXPECT_LT(std::fabs(VeskRadToPackedDms(huge, 5, 1)), 360);
        EXPECT_TRUE(std::isfinite(VeskRadToPackedDms(huge, -1, 0)) &&
                    std::isfinite(VeskRadToPackedGon(huge, 3, 0)));
    }
    EXPECT_EQ(VeskPackedDmsToRad(HUGE_VAL), HUGE_VAL);
    EXPECT_TRUE(std::isfinite(VeskPackedDmsToRad(std::numeric_limits<double>::max())));
}

// A packed number with the digits of a real angle comes back from radians as it was, rounded and unrounded.
TEST(PackedAngle, ComesBackFromRadians) {
    std::mt19937_64 random(11);
    for (int i = 0; i < 1'000'000; ++i) {
        int const degrees = static_cast<int>(random() % 360);
        int const minutes = static_cast<int>(random() % 60);
        double const seconds = static_cast<double>(random() % 6'000'000) / 1e5;
        int const sign = random() % 2 != 0 ? 1 : -1;
        double const packed = VeskJoinPackedDms(sign, degrees, minutes, seconds);
        double const radians = VeskPackedDmsToRad(packed);
        // Half a unit of the radians is up to 1.6e-13 seconds of packed number for each degree.
        ASSERT_NEAR(VeskRadToPackedDms(radians, -1, 0), packed, 2e-13) << packed;
        ASSERT_DOUBLE_EQ(VeskRadToPackedDms(radians, 9, 0), packed);
        Split const back = Dms(packed, 5);
        ASSERT_EQ(back.whole * 3600.0 + back.minutes * 60 + back.seconds,
                  degrees * 3600.0 + minutes * 60 + seconds);
        ASSERT_NEAR(
            radians,
            static_cast<double>(sign * (degrees + minutes / 60.0L + seconds / 3600.0L) * exactPi / 180),
            2e-15);
        double const gon = VeskJoinPackedGon(sign, degrees, minutes, seconds);
        ASSERT_DOUBLE_EQ(VeskRadToPackedGon(VeskPackedGonToRad(gon), 9, 0), gon);
    }
}

TEST(PackedAngle, JoinsCarryWhatIsTooLarge) {
    EXPECT_EQ(VeskJoinPackedDms(-1, 12, 34, 56.789), -12.3456789);
    EXPECT_EQ(VeskJoinPackedDms(1, 0, 0, 45296.789), 12.3456789);
    EXPECT_EQ(VeskJoinPackedDms(1, 12, 75, 0), 13.15);
    EXPECT_EQ(VeskJoinPackedDms(-1, 0, 0, 0), 0);
    EXPECT_FALSE(std::signbit(VeskJoinPackedDms(-1, 0, 0, 0)));
    EXPECT_EQ(VeskJoinPackedGon(1, 0, 0, 12345.6), 1.23456);
    EXPECT_EQ(VeskJoinPackedGon(-1, 99, 99, 100), -100);
    EXPECT_DOUBLE_EQ(VeskJoinDecimalDeg(-1, 12, 30, 36), -12.51);
}

}  // namespace
}  // namespace tov
