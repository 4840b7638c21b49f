#include <tov310/format.h>

#include "support/exact_decimal.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdio>
#include <functional>
#include <limits>
#include <random>

namespace tov {
namespace {

using Change = std::function<void(CTovFormat&)>;

CString Print(double value, long unit, Change const& setup = nullptr, CString before = "before") {
    CTovFormat format;
    format.Precision(5);
    if (setup) setup(format);
    EXPECT_EQ(format.ConvertToString(value, unit, before), 0);
    return before;
}

Change Precision(int precision) {
    return [precision](CTovFormat& f) { f.Precision(precision); };
}

Change Seconds(int precision) {
    return [precision](CTovFormat& f) { f.UseSecOnly(1), f.Precision(precision); };
}

struct Row {
    double value;
    long unit;
    Change setup;
    char const* text;
};

TEST(Format, PrintsFieldsAndNumbersAsTheTableSays) {
    auto const plain = [](int precision, bool signs, bool trim, bool trailing) {
        return [=](CTovFormat& f) {
            f.Precision(precision);
            f.UseDmsSymbols(signs);
            f.TrimLeadingZeros(trim);
            f.TrimTrailingZeros(trailing);
        };
    };
    Row const rows[] = {
        // clang-format off
        {12.3456789, 12, Precision(5), "  12° 34' 56.78900\""}, {12.3456789, 12, Precision(9), "  12° 34' 56.7890\""},
        {12.3456789, 12, Precision(0), "  12° 34' 56.78900\""}, {12.3456789, 12, Precision(6), "  12° 34' 56.8\""},
        {-12.3456789, 15, Precision(7), "- 12g 34c 56.79cc"},
        {-0.0000001, 12, Precision(6), "   0° 00' 00.0\""},  // zero has no minus sign
        {359.59599999999, 12, Precision(5), " 360° 00' 00.00000\""},
        {12.3456789, 12, plain(9, false, false, false), "  12 34 56.7890"},
        {-0.0456789, 12, plain(9, false, true, false), "- 4 56.7890"}, {0.00056, 12, plain(5, false, true, false), "  5.60000"},
        {0.1056, 12, plain(9, true, true, false), " 10' 56.0000\""},   {-0.00056, 12, plain(9, true, true, false), "- 5.6000\""},
        {0, 12, plain(5, true, true, true), "  0.0\""}, {12.3456789, 12, plain(5, true, false, true), "  12° 34' 56.789\""},
        {12.34, 15, plain(9, true, false, true), "  12g 34c 00.0cc"},
        {12.3456789, 12, Precision(24), "  12° 34' 56.7889999999934500000\""},
        {1.5, 11, nullptr, " 1.50000"}, {1.5, 11, Precision(0), " 1.500000"}, {1.5, 11, Precision(-3), " 1.500000"},
        {-1.25, 21, Precision(1), "-1.2"}, {-0.04, 21, Precision(1), " 0.0"}, {-0.0, 18, Precision(2), " 0.00"},
        {1.0, 21, plain(3, false, false, true), " 1.0"}, {1200.0, 21, plain(5, false, false, true), " 1200.0"},
        {std::numeric_limits<double>::quiet_NaN(), 12, nullptr, " nan"}, {-HUGE_VAL, 12, nullptr, "-inf"},
        {HUGE_VAL, 21, nullptr, " inf"},
        {1.5, 11, Seconds(1), " 5400.0"}, {-1.3030, 12, Seconds(2), "-5430.00"}, {0.00005, 13, Seconds(1), " 0.5"},
        {0.000004999996, 12, Seconds(2), " 0.05"},  // not 0.05 by way of 0.05000
        {0.000000449999996, 12, Seconds(2), " 0.00"}, {1.25, 14, Seconds(1), " 1250.0"}, {1.25, 15, Seconds(1), " 1250.0"},
        {1.25, 16, Seconds(1), " 1250.0"},
        // clang-format on
    };
    for (auto const& row : rows)
        EXPECT_EQ(Print(row.value, row.unit, row.setup), row.text);
    CTovFormat format;
    format.UseSecOnly(1);
    CString text;
    format.ConvertToString(1, 21, text);
    EXPECT_EQ(format.UseSecOnly(), 0) << "a length has no seconds";
}

TEST(Format, PrintsOneNumberAsPrintfDoes) {
    std::mt19937_64 random(5);
    for (int i = 0; i < 200'000; ++i) {
        double const value = std::ldexp(static_cast<double>(static_cast<std::int64_t>(random())),
                                        static_cast<int>(random() % 80) - 90);
        int const precision = 1 + static_cast<int>(random() % 20);
        char expected[64];
        std::snprintf(expected, sizeof expected, "% .*f", precision, value);
        if (std::string(expected).find_first_of("123456789") == std::string::npos) expected[0] = ' ';
        ASSERT_EQ(Print(value, 11, Precision(precision)), expected);
    }
}

TEST(Format, ReplacesTokensInOnePass) {
    auto const trim = [](CTovFormat& f) { f.TrimLeadingZeros(1); };
    auto const letter = [](CTovFormat& f) { f.CustomFormat("%Q", "%DegOrG"); };
    std::tuple<double, long, char const*, Change, char const*> const rows[] = {
        // clang-format off
        {12.3456789, 12, "%DegOrG|%MinOrC|%SecOrCC", nullptr, "  12|34|56.78900"},
        {12.3456789, 12, "%degOrG%minOrC%secOrCC", Precision(9), "  12°34'56.7890\""},
        {-12.3456789, 15, "%degOrG%minOrC%secOrCC", nullptr, "- 12g34c56.78900cc"},
        {-0.0456789, 12, "<%degOrG%MinOrC:%SecOrCC>", trim, "<- 4:56.78900>"},
        {-0.0056789, 12, "<%degOrG%MinOrC:%SecOrCC>", trim, "<:-56.78900>"},
        {-12.0056789, 12, "<%degOrG%MinOrC:%SecOrCC>", trim, "<- 12° 0:56.78900>"},
        {1, 12, "no token", nullptr, "before"}, {1, 12, "%DegOrG%DegOrG %%", nullptr, "   1   1 %%"},
        {1, 12, "%Q%DegOrG", letter, "%DegOrG   1"},  // what was put in is not searched
        {1.5, 11, "%.2f %U, %U", [](CTovFormat& f) { f.SetUnitAbbreviation(11); }, "1.50 dec, dec"},
        {1.5, 11, "%08.3f", nullptr, "0001.500"},
        {1.5, 11, "%-8.1f|%+g", nullptr, "1.5     |%+g"},  // the second conversion has no argument
        {1.5, 11, "%s%n%d%x%.*f", Precision(2), "%s%n%d%x1.50"},
        {1.5, 11, "%.*f", Precision(0), "1.500000"},
        {1.5, 11, "%*f %5$f %hf 100%% %", nullptr, "%*f %5$f %hf 100% %"},
        {-0.001, 11, "%.1f", nullptr, "0.0"}, {1.5, 11, "%8.2lf|", nullptr, "    1.50|"},
        {2.0, 11, "%#.0f", nullptr, "2."}, {0.0001, 11, "%#.3g", nullptr, "0.000100"},
        {99999.5, 11, "%#.5g", nullptr, "1.0000e+05"}, {3.0, 11, "%#.0e", nullptr, "3.e+00"},
        {12.3456789, 12, "%U", nullptr, "  12° 34' 56.78900\""},  // nothing is no format
        {12345.678, 21, "%.2e %U", [](CTovFormat& f) { f.SetUnitAbbreviation("%f"); }, "1.23e+04 %f"},
        // Sections: only behind the third character, and the first of two goes.
        {1.5, 11, "abc%?%[x%]%[%.1f%]", nullptr, "abc1.5"},
        {1.5, 11, "ab%?%[x%]%[%.1f%]", nullptr, "ab%[x%]%[1.5%]"},
        {1.5, 11, "度度度%?%[x%]%.1f", nullptr, "度度度1.5"}, {1.5, 11, "度度%?%[x%]%.1f", nullptr, "度度%[x%]1.5"},
        {1.5, 11, "%?abc%?%[x%.1f", nullptr, "abc%[x1.5"},
        {1.5, 11, "abc%?%[x%U%]%[%.1f", nullptr, "abc%[1.5"},
        // clang-format on
    };
    for (auto const& [value, unit, format, setup, text] : rows) {
        auto const all = [&setup = setup, format = format](CTovFormat& f) {
            if (setup) setup(f);
            f.Format(format);
        };
        EXPECT_EQ(Print(value, unit, all), text) << format;
    }
    EXPECT_EQ(Print(1, 11, [](CTovFormat& f) { f.Format("%99999999999f"); }).size(), 1024u);
    EXPECT_EQ(Print(1, 11, [](CTovFormat& f) { f.Precision(1 << 30); }).size(), 1027u);
}

TEST(Format, KeepsItsTexts) {
    CTovFormat format(12, 0, 1, "%DegOrG");
    EXPECT_EQ(format.LimitToCircle(), 1);
    format.Format("");
    format.Format(nullptr);
    EXPECT_EQ(format.Format(), "%DegOrG");
    format.SetUnitAbbreviation(21);
    format.SetUnitAbbreviation("");
    CString text;
    format.GetUnitAbbreviation(text);
    EXPECT_EQ(text, "m");
    // A text that is set by hand reaches the format at its next change only.
    format.Format("%g %U");
    format.SetUnitAbbreviation("ell");
    format.ConvertToString(2, 21, text);
    EXPECT_EQ(text, "2 m");
    format.SetUnitAbbreviation(22);
    format.ConvertToString(2, 22, text);
    EXPECT_EQ(text, "2 fts");
}

TEST(Format, IgnoresTheLocale) {
    if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr) GTEST_SKIP() << "no locale with a decimal comma";
    EXPECT_EQ(Print(1.5, 11), " 1.50000");
    EXPECT_EQ(Print(1.5, 11, [](CTovFormat& f) { f.Format("%.1f"); }), "1.5");
    std::setlocale(LC_ALL, "C");
}

// Every digit of the printed fields is that of the stored number, rounded once.
TEST(Format, PrintsNoMisroundedField) {
    std::mt19937_64 random(77);
    std::uniform_real_distribution<double> degrees(-360, 360);
    for (int i = 0; i < 500'000; ++i) {
        double const packed = degrees(random);
        int const precision = 6 + static_cast<int>(random() % 8);
        int const decimals = precision - 5;
        std::uint64_t const power = static_cast<std::uint64_t>(std::llround(std::pow(10.0, decimals)));
        std::uint64_t const count = test::ExactScaled(packed, 4 + decimals);
        std::uint64_t whole = count / (10000 * power), minutes = count / (100 * power) % 100,
                      seconds = count % (100 * power);
        if (seconds >= 60 * power) seconds -= 60 * power, ++minutes;
        if (minutes >= 60) minutes -= 60, ++whole;
        char expected[64];
        std::snprintf(expected, sizeof expected, "%c%3d° %02d' %02d.%0*llu\"",
                      packed < 0 && count != 0 ? '-' : ' ', static_cast<int>(whole),
                      static_cast<int>(minutes), static_cast<int>(seconds / power), decimals,
                      static_cast<unsigned long long>(seconds % power));
        ASSERT_EQ(Print(packed, 12, Precision(precision)), expected);
    }
}

}  // namespace
}  // namespace tov
