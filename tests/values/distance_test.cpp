#include <tov310/distance.h>
#include <tov310/profile.h>
#include <tov310/value.h>

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace tov {
namespace {

CString Text(CTovValue& value) {
    CString text;
    value.GetString(text);
    return text;
}

// Definitions: a US survey foot is 1200/3937 m and an international foot 0.3048 m (NIST SP 811, appendix
// B.6); a full turn is 360 degrees, 400 gon, 2 pi radians.
TEST(Convert, KnowsTheDefinitions) {
    constexpr long double turn = 6.283185307179586476925286766559L;
    struct {
        long from;
        double in;
        long to;
        long double out;
    } const rows[] = {
        // clang-format off
        {22, 3937, 21, 1200.0L}, {21, 1200, 22, 3937.0L}, {23, 1, 21, 0.3048L}, {21, 0.3048, 23, 1.0L},
        {22, 1e6, 23, 1e6L * 1200 / 3937 / 0.3048L}, {11, 180, 18, turn / 2}, {14, 100, 18, turn / 4},
        {17, 1, 18, turn}, {17, 0.125, 11, 45.0L}, {11, 45, 14, 50.0L}, {18, 1, 11, 360 / turn},
        {12, 12.3, 11, 12.5L}, {11, 12.5, 12, 12.3L}, {13, -12.3, 15, -12.5L / 0.9L}, {16, 50, 11, 45.0L},
        {15, -99.5, 14, -99.5L}, {14, 50, 13, 45.0L},
        // clang-format on
    };
    for (auto const& row : rows) {
        double out = -1;
        EXPECT_EQ(CTovValue::Convert(row.in, row.from, out, row.to, -1, 0), 0);
        EXPECT_NEAR(out, static_cast<double>(row.out), std::fabs(static_cast<double>(row.out)) * 4e-16)
            << row.from << " to " << row.to;
    }
}

TEST(Convert, RefusesUnknownUnitsOnly) {
    double out = 7;
    EXPECT_EQ(CTovValue::Convert(1.23456789, 12, out, 12, 2, 1), 0);  // no rounding between equal units
    EXPECT_EQ(out, 1.23456789);
    EXPECT_EQ(CTovValue::Convert(5, 999, out, 999, -1, 0), 0);
    EXPECT_EQ(out, 5);
    for (long const bad : {0L, 2L, 10L, 19L, 20L, 24L, -1L, 1L << 40}) {
        for (long const good : {12L, 21L}) {
            out = 7;
            EXPECT_EQ(CTovValue::Convert(1, bad, out, good, -1, 0), 1);
            EXPECT_EQ(out, 0);
            out = 7;
            EXPECT_EQ(CTovValue::Convert(1, good, out, bad, -1, 0), 1);
            EXPECT_EQ(out, 0);
        }
    }
    EXPECT_EQ(CTovValue::Convert(1, 21, out, 11, -1, 0), 0);  // metres are taken for radians
    EXPECT_NEAR(out, 57.29577951308232, 1e-13);
    EXPECT_EQ(CTovValue::Convert(2 * 3.141592653589793, 18, out, 12, 6, 1), 0);
    EXPECT_EQ(out, 0);
}

// There and back in plain units differs by roundings only.
TEST(Convert, ComesBack) {
    std::mt19937_64 random(4);
    std::uniform_real_distribution<double> any(-1e6, 1e6);
    for (int i = 0; i < 200'000; ++i) {
        double const in = any(random);
        long const from = 21 + static_cast<long>(random() % 3);
        long const to = 21 + static_cast<long>(random() % 3);
        double there = 0;
        double back = 0;
        CTovValue::Convert(in, from, there, to);
        CTovValue::Convert(there, to, back, from);
        ASSERT_NEAR(back, in, std::fabs(in) * 5e-16);
    }
}

TEST(Distance, ReadsAndPrints) {
    CTovValueDistance feet("3937", 22, "%.3f %U");
    EXPECT_DOUBLE_EQ(feet.GetDouble(), 1200);
    EXPECT_EQ(Text(feet), "3937.000 fts");
    CString text;
    feet.StdFormat(text);
    EXPECT_EQ(text, "3937.000 fts fts");
    EXPECT_EQ(feet.ConvertStdTo(text, 23L, 0, 0UL), 0);
    EXPECT_EQ(text, "3937.008 fts");  // the number of the other unit in the manner of its own
    EXPECT_EQ(feet.ConvertStdTo(text, 5L, 0, 0UL), 1);
    CTovValueDistance broken("not a number", 21, nullptr);
    EXPECT_EQ(broken.GetDouble(), 0);
    EXPECT_EQ(Text(broken), " 0.000000");
    broken = 1.23456789012345;  // only the printed decimals limit a distance
    double number = 0;
    EXPECT_EQ(broken.ConvertStdTo(number, 1, 1), 0);
    EXPECT_EQ(number, 1.23456789012345);
    EXPECT_EQ(broken.ConvertToStd("2", 23L, 0, 0UL), 0);
    EXPECT_DOUBLE_EQ(broken.GetDouble(), 0.6096);
    EXPECT_EQ(CTovValueDistance(1.0, 99, nullptr).IsValid(), 0);
}

TEST(Distance, TextsComeBack) {
    std::mt19937_64 random(9);
    for (int i = 0; i < 300'000; ++i) {
        CTovUnitSettingsDistance settings(21 + static_cast<long>(random() % 3), nullptr);
        settings.Precision(1 + static_cast<int>(random() % 7));
        settings.TrimTrailingZeros(random() % 2 == 0);
        CTovValueDistance value(&settings);
        value = std::ldexp(static_cast<double>(static_cast<std::int64_t>(random())),
                           static_cast<int>(random() % 40) - 80);
        CString const text = Text(value);
        CTovValueDistance back(text.c_str(), &settings);
        ASSERT_EQ(Text(back), text);
    }
}

}  // namespace
}  // namespace tov
