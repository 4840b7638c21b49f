#include <tov310/time_helper.h>
#include <tov310/tov_time.h>

#include "support/time_zone.h"

#include <gtest/gtest.h>

#include <clocale>
#include <random>
#include <string>
#include <tuple>

namespace tov {
namespace {

using test::TimeZone;

constexpr char const* shown = "%Y-%m-%d %H:%M:%S";

CString Shown(CTovTime const& time) {
    return time.Format(shown, -1) + (time.GetFracSecond() != 0 ? time.FormatFracSec(3) : CString());
}

TEST(ScanTime, ReadsWhatTheCodesAskFor) {
    TimeZone const zone("UTC0");
    std::tuple<char const*, char const*, char const*> const rows[] = {
        {"1.2.03", "%d.%m.%y", "2003-02-01 00:00:00"},
        {"12:00:00 AM", "%H:%M:%S %p", "2000-01-01 12:00:00"},
        {"", "%d.%m.%Y", "2000-01-01 00:00:00"},
        {" \t 21.11.2026 12:30:15", "  %d.%m.%Y %H:%M:%S", "2026-11-21 12:30:15"},
        {"+21 11 2026", "%#d %#m %##Y", "2026-11-21 00:00:00"},
        {"2026-11-21T12:30:15.25Z", "%Y-%m-%dT%H:%M:%sZ", "2026-11-21 12:30:15.250"},
        {"21/11/2026 - 12h30P", "%d%m%Y%H%M%S", "2026-11-21 12:30:00"},
        {"1x2 3A30.4", "%% %q %d.%m.%y %H", "2003-02-01 04:00:00"},
        {"15.5 12", "%s %H", "2000-01-01 12:00:15.500"},
        {"29 2 2023", "%d %m %Y", ""},
        {"1 70", "%d %y", "2070-01-01 00:00:00"},
        {"1 71", "%d %y", "1971-01-01 00:00:00"},
        {"60.5", "%s", "2000-01-01 00:01:00.500"},
        {"23:59:60", "%H:%M:%S", "2000-01-02 00:00:00"},
        {"21.75 11 2026", "%D %m %Y", "2026-11-21 18:00:00"},
        {"11 21.520833333333333 2026", "%m %D %Y", "2026-11-21 12:30:00"},
        {"2.25 3.5", "%D %s", "2000-01-02 06:00:03.500"},
        {"1 1999", "%d %y", "1999-01-01 00:00:00"},
        {"1 26", "%d %Y", ""},
        {"1:30:15 PM", "%I:%M:%S %p", "2000-01-01 13:30:15"},
        {"1:30PM 7", "%I:%M %p %S", "2000-01-01 13:30:07"},
        {"1:30:15.25 pm", "%I:%M:%S %p", "2000-01-01 13:30:15"},
        {"PM 1:30", "%p %I:%M", "2000-01-01 13:30:00"},
        {"XX 1:30", "%p %I:%M", "2000-01-01 01:30:00"},
        {"21. Nov 2026", "%#d. %b %Y", "2026-11-21 00:00:00"},
        {"21-NOVEMBER-2026", "%#d-%b-%Y", "2026-11-21 00:00:00"},
        {"1 may 26 2:03:04 PM", "%d %B %y %I:%M:%S %p", "2026-05-01 14:03:04"},
        {"21 Nonsense 2026", "%d %b %Y", "2026-01-21 00:00:00"},
        {"325 2026", "%j %Y", "2026-11-21 00:00:00"},
        {"366 2026", "%j %Y", ""},
        {"5 3", "%j %m", "2000-03-05 00:00:00"},
        {"-1 2 2024", "%d %m %Y", ""},
        {"99999999999999999999", "%d", ""},
        {"24:00", "%H:%M", ""},
        {"61", "%s", ""},
        {"1e999", "%s", ""},
        {"1e-400", "%s", "2000-01-01 00:00:00"},
        {"on 5.6.2026", "%d.%m.%Y", "2000-01-01 00:00:00"},
        {"5. Aug 2026", "%d %Y %m", "2000-01-05 00:00:00"},
        {"nan", "%s", "2000-01-01 00:00:00"},
        {"1e300", "%D", ""},
    };
    for (auto const& [text, format, expected] : rows) {
        CTovTime time(1987, 6, 5, 4, 3, 2);
        time.SetFracSecond(0.5);
        double const mjd = time.ScanTime(text, format);
        if (*expected == 0) {
            EXPECT_EQ(mjd, 0) << text;
            EXPECT_EQ(Shown(time), "1987-06-05 04:03:02.500") << text;
        } else {
            EXPECT_EQ(Shown(time), expected) << text;
            EXPECT_EQ(mjd, time) << text;
        }
    }
}

// A day that was read in another zone is another one.
TEST(ScanTime, SeesAnotherZoneAtOnce) {
    for (char const* name : {"UTC0", "AAA-5", "Europe/Berlin", "AAA-5BBB", "UTC0"}) {
        TimeZone const zone(name);
        for (int hour : {1, 2}) {
            CTovTime const time(std::to_string(hour) + ":00 21 11 2026", "%H:%M %d %m %Y");
            EXPECT_EQ(time, CTime(2026, 11, 21, hour, 0, 0, 0)) << name;
        }
    }
}

struct ScanTimeIn : testing::TestWithParam<char const*> {
    ~ScanTimeIn() override { std::setlocale(LC_TIME, "C"); }
};
INSTANTIATE_TEST_SUITE_P(Locales, ScanTimeIn,
                         testing::Values("C", "de_DE.UTF-8", "en_US.UTF-8", "zh_CN.UTF-8"),
                         [](auto const& locale) { return std::string(locale.param).substr(0, 2); });

// All but midnight on a clock of 12 hours, locales without names for the halves of a day, and 1970 as "70".
TEST_P(ScanTimeIn, ReadsBackWhatIsPrinted) {
    if (std::setlocale(LC_TIME, GetParam()) == nullptr) GTEST_SKIP() << "there is no locale " << GetParam();
    for (char const* name : {"UTC0", "Europe/Berlin", "Pacific/Apia"}) {
        TimeZone const zone(name);
        bool const hasHalves = !CTime(43200).Format("%p").empty();
        std::mt19937 random(8);
        for (int i = 0; i < 20'000; ++i) {
            CTovTime const time(CTime(172'800 + static_cast<std::int64_t>(random() % 1'890'000'000)));
            auto const format = random() % 32;
            if ((format & 2) != 0 && (time.GetHour() == 0 || !hasHalves)) continue;
            if ((format & 4) != 0 && time.GetYear() == 1970) continue;
            auto const index = static_cast<eTimeFormat>(format);
            CTovTime read(0);
            ASSERT_EQ(read.ScanTime(time.Format(index), CTovTime::TimeFormat(index)), time)
                << name << " " << time.Format(index);
            ASSERT_EQ(read.Format(shown), time.Format(shown));
        }
    }
}

}  // namespace
}  // namespace tov
