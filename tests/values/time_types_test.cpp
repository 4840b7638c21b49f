#include <tov310/time_types.h>

#include "support/time_zone.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <tuple>
#include <utility>

namespace tov {
namespace {

// A zone with an odd offset and daylight saving time.
test::TimeZone const zone("America/St_Johns");

constexpr auto most = std::numeric_limits<std::int64_t>::max();
constexpr auto least = std::numeric_limits<std::int64_t>::min();

CString Strftime(char const* format, std::tm const& fields) {
    std::size_t (*const print)(char*, std::size_t, char const*, std::tm const*) = std::strftime;
    char text[256];
    return {text, print(text, sizeof text, format, &fields)};
}

// What the flag "#" leaves of a number.
CString Shortened(CString text) {
    while (text.size() > 1 && (text[0] == '0' || text[0] == ' '))
        text.erase(0, 1);
    return text;
}

struct TimeFormat : testing::TestWithParam<char const*> {
    ~TimeFormat() override { std::setlocale(LC_TIME, "C"); }
};
INSTANTIATE_TEST_SUITE_P(Locales, TimeFormat,
                         testing::Values("C", "de_DE.UTF-8", "en_US.UTF-8", "zh_CN.UTF-8"),
                         [](auto const& locale) { return std::string(locale.param).substr(0, 2); });

// All codes of moments in the years 1000 to 9999, in the language of the process at the time of the call.
TEST_P(TimeFormat, SaysWhatStrftimeSays) {
    if (std::setlocale(LC_TIME, GetParam()) == nullptr) GTEST_SKIP() << "there is no locale " << GetParam();
    std::mt19937_64 random(1);
    std::uniform_int_distribution<std::int64_t> any(-30610000000, 253402300799);
    for (int i = 0; i < 3000; ++i) {
        CTime const time(any(random));
        std::tm local;
        std::tm utc;
        ASSERT_EQ(time.GetLocalTm(&local), &local);
        ASSERT_EQ(time.GetGmtTm(&utc), &utc);
        for (char const code : std::string_view("YyCmdeHIMSpbhBaAjuwUWVGgzZDFTRcxXrnt%")) {
            char const plain[] = {'%', code, 0};
            ASSERT_EQ(time.Format(plain), Strftime(plain, local)) << code << time.GetTime();
            ASSERT_EQ(time.FormatGmt(plain), Strftime(plain, utc)) << code << time.GetTime();
            if (std::string_view("DFTRcx").find(code) != std::string_view::npos) continue;
            bool const number = std::string_view("pbhBaAzZXrnt%").find(code) == std::string_view::npos;
            char const flagged[] = {'%', '#', code, 0};
            ASSERT_EQ(time.Format(flagged), number ? Shortened(time.Format(plain)) : time.Format(plain));
        }
    }
}

TEST(Time, FormatsWhatIsOdd) {
    CTime const time(2005, 3, 4, 0, 5, 6);
    std::pair<char const*, char const*> const rows[] = {
        // clang-format off
        {"%#d.%#m.%#y %#H:%#M:%#S %#I%p", "4.3.5 0:5:6 12AM"}, {"%#j %#e %#U", "63 4 9"},
        {"%#x|%#c", "Friday, 4 March 2005|Friday, 4 March 2005 00:05:06"},
        {"%#D %#F %#T", "3/4/5 2005-3-4 0:5:6"}, {"%", "%"}, {"%#", "%#"}, {"%E", "%E"}, {"%#O", "%#O"},
        {"%Q%#Q%EQ%-d%5d", "%Q%#Q%EQ%-d%5d"}, {"%Ed%Od%#Od", "04044"}, {"%%d%%%d", "%d%04"},
        {"\xC3\xA9%\xC3\xA9\xFF", "\xC3\xA9%\xC3\xA9\xFF"}, {"", ""}, {nullptr, ""},
        // clang-format on
    };
    for (auto const& [format, text] : rows)
        EXPECT_EQ(time.Format(format), text) << (format != nullptr ? format : "null");
    CString format;
    for (int i = 0; i < 100'000; ++i)
        format += "%d-%n";
    EXPECT_EQ(time.Format(format).size(), 400'000u);
}

TEST(Time, TakesAndGivesItsForms) {
    EXPECT_EQ(CTime(0, 0).Format("%F %T"), "1979-12-31 00:00:00");  // the day 0 of January
    EXPECT_EQ(CTime(0x5A21, 0xBF7D).Format("%F %T"), "2025-01-01 23:59:58");
    EXPECT_EQ(CTime(2024, 14, 0, 25, -1, 61).Format("%F %T"), "2025-02-01 01:00:01");
    EXPECT_EQ(CTime(2024, 7, 1, 12, 0, 0, 0).GetHour(), 13);  // told as standard time
    EXPECT_EQ(CTime(1969, 12, 31, 20, 29, 59).GetTime(), -1);
    for (bool const summer : {false, true}) {  // what was asked before makes no difference
        CTime(2020, summer ? 7 : 1, 1, 12, 0, 0, summer ? 1 : 0);
        EXPECT_EQ(CTime(2024, 11, 3, 1, 30, 0).Format("%T%z"), "01:30:00-0230");
        EXPECT_EQ(CTime(2024, 3, 10, 2, 30, 0).Format("%T%z"), "03:30:00-0230");
    }
    for (CTime const none : {CTime(most), CTime(least)}) {
        SYSTEMTIME system{1, 1, 1, 1, 1, 1, 1, 1};
        FILETIME file{1};
        EXPECT_FALSE(none.GetAsSystemTime(system) || none.GetAsFileTime(file));
        EXPECT_TRUE(system == SYSTEMTIME() && file == FILETIME() && none.Format("%Y") == "");
        EXPECT_EQ(none.GetYear() + none.GetMonth() + none.GetDay() + none.GetDayOfWeek() + none.GetHour(), 0);
    }
    EXPECT_EQ(CTime(std::numeric_limits<int>::min(), 1, 1, 0, 0, 0).GetTime(), 0);  // carries to no year
    EXPECT_EQ(CTime(0).GetLocalTm(nullptr), nullptr);
    std::mt19937_64 random(2);
    std::uniform_int_distribution<std::int64_t> any(-11644473600, 253402300799);
    for (int i = 0; i < 20'000; ++i) {
        CTime const time(any(random));
        std::tm local;
        time.GetLocalTm(&local);
        SYSTEMTIME system, same;
        FILETIME file;
        ASSERT_TRUE(time.GetAsSystemTime(system) && time.GetAsFileTime(file));
        ASSERT_EQ(CTime(system, local.tm_isdst), time) << time.Format("%c %Z");
        file.ticks += random() % 10'000'000;
        ASSERT_EQ(CTime(file), time);
        ASSERT_TRUE(COleDateTime(time).GetAsSystemTime(same) && same == system) << time.Format("%c");
    }
}

TEST(Time, SumsStopAtTheEnds) {
    CTimeSpan const large(most), small(least);
    std::pair<std::int64_t, std::int64_t> const rows[] = {
        // clang-format off
        {(CTime(1) + large).GetTime(), most}, {(CTime(-2) - large).GetTime(), least},
        {(CTime(-1) + small).GetTime(), least}, {(CTime(0) - small).GetTime(), most},
        {(CTime(most) - CTime(-1)).GetTimeSpan(), most}, {(CTime(100) - CTime(3700)).GetTimeSpan(), -3600},
        {CTimeSpan(1, -1, 61, -60).GetTimeSpan(), 86400}, {CTimeSpan(most, 0, 0, 0).GetTimeSpan(), most},
        {CTimeSpan(least, 2147483647, 0, 0).GetTimeSpan(), least},
        {CTimeSpan(106751991167300, 15, 30, 8).GetTimeSpan(), most},
        {CTimeSpan(106751991167301, -24, 0, 0).GetTimeSpan(), 106751991167300 * 86400},
        {CTimeSpan(-106751991167301, 8, 29, 51).GetTimeSpan(), least},
        {CTimeSpan(-106751991167301, 8, 29, 53).GetTimeSpan(), least + 1},
        // clang-format on
    };
    for (auto const& [sum, expected] : rows)
        EXPECT_EQ(sum, expected);
}

TEST(TimeSpan, Formats) {
    std::tuple<std::int64_t, char const*, char const*> const rows[] = {
        // clang-format off
        {93784, "%D d %H:%M:%S", "1 d 02:03:04"}, {-93784, "%D d %H:%M:%S", "-1 d 02:03:04"},
        {93784, "%#H:%#M:%#S%%%Q%", "2:3:4%%Q%"}, {-61, "%H:%M:%S", "-00:01:01"}, {5, nullptr, ""},
        {least, "%D %H:%M:%S", "-106751991167300 15:30:08"},
        // clang-format on
    };
    for (auto const& [seconds, format, text] : rows)
        EXPECT_EQ(CTimeSpan(seconds).Format(format), text);
    COleDateTimeSpan const span(-1, -2, -3, -4);
    EXPECT_EQ(span.Format("%D %H:%M:%S"), "-1 02:03:04");
    EXPECT_EQ(
        span.GetDays() * 1000000 + span.GetHours() * 10000 + span.GetMinutes() * 100 + span.GetSeconds(),
        -1020304);
    EXPECT_EQ(COleDateTimeSpan(1e300).GetDays(), 100'000'000'000'000);
    EXPECT_EQ(COleDateTimeSpan(std::nan("")).GetStatus(), COleDateTimeSpan::invalid);
    EXPECT_EQ((COleDateTimeSpan(1e308) += COleDateTimeSpan(1e308)).Format("%D"), "");
}

TEST(OleDateTime, CountsDaysInTheFormOfAutomation) {
    std::pair<double, char const*> const rows[] = {
        // clang-format off
        {0, "1899-12-30 00:00:00 6 364"}, {2, "1900-01-01 00:00:00 1 001"},
        {60.5, "1900-02-28 12:00:00 3 059"}, {36526.999988425925, "2000-01-01 23:59:59 6 001"},
        {-1, "1899-12-29 00:00:00 5 363"}, {-1.25, "1899-12-29 06:00:00 5 363"},
        {-0.25, "1899-12-30 06:00:00 6 364"}, {-1.99999999999, "1899-12-29 23:59:59 5 363"},
        {-657434, "100-01-01 00:00:00 5 001"}, {-657434.75, "100-01-01 18:00:00 5 001"},
        {2958465.9999, "9999-12-31 23:59:51 5 365"}, {-657435, ""}, {2958466, ""},
        {std::nextafter(2958466, 0), ""}, {std::nan(""), ""}, {-HUGE_VAL, ""},
        // clang-format on
    };
    for (auto const& [number, text] : rows) {
        COleDateTime const date(number);
        EXPECT_EQ(date.Format("%Y-%m-%d %T %w %j%z%Z"), text) << number;
        EXPECT_EQ(date.GetStatus() == COleDateTime::valid, text[0] != 0);
    }
    EXPECT_EQ(COleDateTime(0, 0).Format("%F"), "1979-12-31");
    COleDateTime forced(1e300);
    forced.SetStatus(COleDateTime::valid);
    for (COleDateTime const& bad : {COleDateTime(2023, 2, 29, 0, 0, 0), COleDateTime(99, 1, 1, 0, 0, 0),
                                    COleDateTime(2023, 1, 1, 24, 0, 0), COleDateTime(CTime(most)),
                                    COleDateTime(SYSTEMTIME{2023, 1, 0, 1, 0, 0, 0, 1000}), forced}) {
        EXPECT_EQ(bad.GetYear(), -1);
        EXPECT_EQ((bad + COleDateTimeSpan(1)).GetStatus(), COleDateTime::invalid);
        EXPECT_FALSE(bad < COleDateTime() || bad > COleDateTime() || bad == COleDateTime());
    }
    EXPECT_EQ((COleDateTime(2958465) + COleDateTimeSpan(1)).GetStatus(), COleDateTime::invalid);
    COleDateTime null;
    null.SetStatus(COleDateTime::null);
    EXPECT_EQ((null - COleDateTime(7.0)).GetStatus(), COleDateTimeSpan::null);
    EXPECT_LT(COleDateTime(-1.25), COleDateTime(-1.5));
    SYSTEMTIME const system{2024, 2, 4, 29, 12, 34, 56, 789};
    SYSTEMTIME same;
    EXPECT_TRUE(COleDateTime(system).GetAsSystemTime(same) && same == system);
}

// Seconds stay whole through any number of sums, on both sides of the epoch.
TEST(OleDateTime, SumsKeepWholeSeconds) {
    std::mt19937_64 random(3);
    COleDateTime date(1899, 12, 30, 0, 0, 0);
    std::int64_t seconds = 0;
    for (int i = 0; i < 50'000; ++i) {
        auto step = static_cast<std::int64_t>(random() % 20'000'000'000) - 10'000'000'000;
        if (std::abs(seconds + step) > 50'000'000'000) step = -step;
        COleDateTime const old = date;
        date += COleDateTimeSpan(static_cast<double>(step) / 86400);
        seconds += step;
        ASSERT_EQ((date - COleDateTime()).Format("%D %H:%M:%S"), CTimeSpan(seconds).Format("%D %H:%M:%S"));
        ASSERT_EQ((date - old).Format("%D %H:%M:%S"), CTimeSpan(step).Format("%D %H:%M:%S"));
        ASSERT_EQ(date > old, step > 0);
        ASSERT_EQ(COleDateTime(date.GetYear(), date.GetMonth(), date.GetDay(), date.GetHour(),
                               date.GetMinute(), date.GetSecond()),
                  date);
    }
}

}  // namespace
}  // namespace tov
