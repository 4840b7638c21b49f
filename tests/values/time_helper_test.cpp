// links: objects
#include <tov310/profile.h>
#include <tov310/time_helper.h>
#include <tov310/tov_time.h>

#include "support/temporary_folder.h"
#include "support/time_zone.h"
#include "values/time_helper_kinds.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <limits>
#include <random>
#include <thread>
#include <tuple>
#include <vector>

namespace tov {
namespace {

using H = CTovTimeHelper;
using S = CTovTimeSpanHelper;
using Flag = H::eRoundFlag;

// Daylight saving time begins on 31 March 2024, 02:00, and ends on 27 October 2024, 03:00.
test::TimeZone const zone("Europe/Berlin");

constexpr char full[] = "%Y-%m-%d %H:%M:%S";

CTovTime Moment(CTime const& whole, double fraction = 0) {
    CTovTime time(whole);
    time.SetFracSecond(fraction);
    return time;
}

// Far from the years that the standard library knows: the calendar repeats every 400 years.
TEST(Calendar, RepeatsEvery400Years) {
    std::mt19937_64 random(1);
    std::uniform_int_distribution<std::int64_t> any(-499'000'000'000, 499'000'000'000);
    for (int i = 0; i < 200'000; ++i) {
        std::int64_t const mjd = any(random);
        std::int64_t const cycles = mjd / 146097 - (mjd % 146097 < 0 ? 1 : 0);
        std::chrono::year_month_day const known{
            std::chrono::sys_days(std::chrono::days(mjd - cycles * 146097 - mjdOfUnixEpoch))};
        CalendarDate const date{int{known.year()} + cycles * 400, static_cast<int>(unsigned{known.month()}),
                                static_cast<int>(unsigned{known.day()})};
        ASSERT_EQ(DateOfMjd(mjd), date) << mjd;
        ASSERT_EQ(MjdOfDate(date.year, date.month, date.day), mjd);
    }
}

TEST(Mjd, SplitsIntoDateAndTime) {
    struct {
        double mjd;
        long fields[6];
        double fraction;
    } const rows[] = {
        // clang-format off
        {51544, {2000, 1, 1, 0, 0, 0}, 0}, {0, {1858, 11, 17, 0, 0, 0}, 0},
        {-0.25, {1858, 11, 16, 18, 0, 0}, 0}, {-1e-20, {1858, 11, 17, 0, 0, 0}, 0},
        {51544.5 + 1.25 / 86400, {2000, 1, 1, 12, 0, 1}, 0.25},
        {std::nextafter(51545, 0), {2000, 1, 2, 0, 0, 0}, 0},
        {51545 - 2e-6 / 86400, {2000, 1, 1, 23, 59, 59}, 0.999998}, {-678575, {1, 1, 1, 0, 0, 0}, 0},
        {2973483, {9999, 12, 31, 0, 0, 0}, 0}, {-569309, {300, 3, 1, 0, 0, 0}, 0},
        {1e12, {0, 0, 0, 0, 0, 0}, 0}, {-HUGE_VAL, {0, 0, 0, 0, 0, 0}, 0},
        {std::nan(""), {0, 0, 0, 0, 0, 0}, 0},
        // clang-format on
    };
    for (auto const& row : rows) {
        long f[6];
        double fraction = 0;
        H::Mjd2Ymd(row.mjd, f[0], f[1], f[2], f[3], f[4], f[5], fraction);
        EXPECT_TRUE(std::equal(f, f + 6, row.fields))
            << row.mjd << ": " << f[0] << " " << f[1] << " " << f[2];
        EXPECT_NEAR(fraction, row.fraction, 7e-7) << row.mjd;
    }
}

// A whole second comes back from a double as itself, a half one is rounded up, and a fraction comes back
// within the resolution.
TEST(Mjd, KeepsWholeAndHalfSeconds) {
    std::mt19937_64 random(2);
    auto const any = [&random](SecondsRange const& range) {
        return range.from +
               static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(range.to - range.from));
    };
    for (int i = 0; i < 100'000; ++i) {
        CTime const moment(any(LocalRange()));
        double const fraction = static_cast<double>(random() % 1000) / 1000;
        CTovTime time;
        H::SetMjd(H::GetMjd(Moment(moment, fraction)), time);
        ASSERT_EQ(time.CTime::Format(full), moment.Format(full));
        ASSERT_NEAR(time.GetFracSecond(), fraction, 7e-7);
        ASSERT_EQ(H::GetMjd(time), H::GetMjd(Moment(moment, fraction)));

        std::int64_t const second = any(ReadingsOf(H::eRangeOleDateTime).Seconds());
        double const next = ClockReading::OfSeconds(second + 1, 0).Mjd();
        COleDateTime date;
        H::SetMjd(ClockReading::OfSeconds(second, 0.5).Mjd(), date);
        ASSERT_EQ(date.GetSecond(), ((second % 60) + 60) % 60);
        ASSERT_EQ(H::Round(date, H::eRoundToSecond), next);
        date = COleDateTime(date);
        ASSERT_EQ(H::GetMjd(date), next);

        auto const size = static_cast<std::int64_t>(random() % 2147483646);
        CTovTimeSpan span(static_cast<double>(size) / 86400);
        ASSERT_TRUE(span.GetTimeSpan() == size && span.GetFracSecond() == 0);
        span.Mjd(SpanReading{size, 0.5}.Days());
        ASSERT_EQ(S::Round(span, H::eRoundToSecond), SpanReading({size + 1, 0}).Days());
    }
    CTovTime kept = Moment(CTime(2000, 1, 1, 0, 0, 0), 0.5);
    for (double const outside :
         {H::MinCTimeAsMjd() - 1e-5, H::MaxCTimeAsMjd() + 1e-5, 0.0, 1e300, std::nan("")})
        H::SetMjd(outside, kept);
    EXPECT_EQ(H::GetMjd(kept), 51544 + 0.5 / 86400);
}

TEST(Mjd, TakesFinerMoments) {
    CTovTime const before = Moment(CTime(2001, 2, 3, 4, 5, 6), 0.5);
    std::tuple<unsigned long, double, double, char const*, double> const rows[] = {
        // clang-format off
        {51544, (3661 + 0.123456789) / 86400, 1e-9, "2000-01-01 01:01:01", 1.123456789},
        {51544, (3661 + 0.123456789) / 86400, 1e-3, "2000-01-01 01:01:01", 1.123},
        {51544, (3661 + 0.9996) / 86400, 1e-3, "2000-01-01 01:01:02", 2},
        {51544, 0.999999999, 0.1, "2000-01-02 00:00:00", 0},
        {51544, 59.6 / 86400, 1, "2000-01-01 00:01:00", 0}, {51544, -0.5, 1, "1999-12-31 12:00:00", 0},
        {60400, 43200.25 / 86400, 0.01, "2024-03-31 12:00:00", 0.25},  // a day of 23 hours
        {51544, 0.5, 0, nullptr, 0}, {51544, 0.5, 1.5, nullptr, 0}, {51544, 0.5, std::nan(""), nullptr, 0},
        {51544, std::nan(""), 0.1, nullptr, 0}, {51544, 0.5, 1e-320, nullptr, 0},
        {62519, 86399.96 / 86400, 0.1, nullptr, 0}, {40587, 0.9, 0.1, nullptr, 0},
        {~0UL, 0.5, 0.1, nullptr, 0},
        // clang-format on
    };
    for (auto const& [day, fraction, divisor, text, expected] : rows) {
        CTovTime time = before;
        double second = -1;
        H::SetMjd(day, fraction, divisor, time, second);
        EXPECT_NEAR(second, expected, 1e-10) << day << " " << fraction;
        EXPECT_EQ(time.CTime::Format(full), text != nullptr ? text : before.CTime::Format(full));
        EXPECT_NEAR(time.GetFracSecond(), text != nullptr ? expected - std::floor(expected) : 0.5, 1e-10);
    }
}

// Each row holds for the kinds that can have the moment, a second of 2000, and the fraction; the flag also
// with the bit that cuts.
TEST(Round, AtEveryBoundary) {
    constexpr int day = 86400;
    struct {
        int second;
        double fraction;
        int flag, rounded;
        double left;
    } const rows[] = {
        // clang-format off
        {366 * day - 1, 0.5, 0, 366 * day, 0}, {366 * day - 1, 0.49, 0, 366 * day - 1, 0},
        {59 * day - 30, 0, 1, 59 * day, 0}, {59 * day - 31, 0.9, 1, 59 * day - 60, 0},
        {59 * day - 1800, 0, 2, 59 * day, 0}, {59 * day - 1801, 0.9, 2, 59 * day - 3600, 0},
        {0, 0.9996, 3, 1, 0}, {0, 0.9994, 3, 0, 0.999}, {0, 0.25, 4, 0, 0.2}, {0, 0.96, 4, 1, 0},
        {0, 0.994, 5, 0, 0.99}, {0, 0.9999996, 6, 1, 0}, {31, 0.7, 7, 31, 0.7}, {31, 0.7, 127, 31, 0.7},
        // clang-format on
    };
    CTime const start(2000, 1, 1, 0, 0, 0);
    for (auto const& [second, fraction, flags, rounded, left] : rows) {
        for (int const cut : {0, 0x80}) {
            SCOPED_TRACE(std::to_string(second) + " " + std::to_string(flags));
            auto const flag = static_cast<Flag>(flags | cut);
            double const days = (rounded + left) / day;
            CTime plain = start + CTimeSpan(second);
            CTovTime time = Moment(plain, fraction);
            COleDateTime date = COleDateTime(plain) + COleDateTimeSpan(fraction / day);
            CTovTimeSpan span(second);
            span.SetFracSecond(fraction);
            EXPECT_NEAR(H::Round(time, flag), 51544 + days, 2e-11);
            EXPECT_TRUE(time == Moment(start + CTimeSpan(rounded), left) && time.GetFracSecond() == left);
            EXPECT_NEAR(H::Round(date, flag), 51544 + days, 2e-11);
            EXPECT_EQ(date.Format(full), time.CTime::Format(full));
            EXPECT_NEAR(S::Round(span, flag), days, 2e-11);
            bool const isCoarse = flags == H::eRoundToMinute || flags == H::eRoundToHour;
            H::Round(plain, flag);
            EXPECT_EQ((plain - start).GetTimeSpan(), isCoarse ? rounded : second);
        }
    }
    // Units that count nothing, and one that does not divide the second.
    for (double const unit : {0.0, -0.1, 1.5, 1e-310, std::nan("")}) {
        CTovTime time = Moment(CTime(1000000), 0.7);
        H::Round(time, unit);
        EXPECT_EQ(time.GetFracSecond(), 0.7) << unit;
    }
    CTovTime time = Moment(CTime(1000000), 0.8);
    H::Round(time, 0.3);
    EXPECT_EQ(time.GetTime(), 1000001);
    H::Round(time, H::eRoundToMinute | 0x80);
    EXPECT_EQ(time.GetTime(), 1000020);
    H::Round(time, 2);
    EXPECT_EQ(time.GetTime(), 1000800) << "a flag, not a unit of two seconds";
}

TEST(Round, StaysWithinTheLimits) {
    CTime const first = H::MinCTime();
    CTime const last = H::MaxCTime();
    std::tuple<CTime, double, int, bool> const rows[] = {
        // clang-format off
        {first, 0.7, 0, false}, {first + CTimeSpan(1), 0.7, 0, true}, {last, 0.7, 0, false},
        {last - CTimeSpan(1), 0.7, 0, false}, {last - CTimeSpan(2), 0.7, 0, true},
        {first + CTimeSpan(59), 0, 1, false}, {first + CTimeSpan(61), 0, 1, true},
        {last - CTimeSpan(59), 0, 1, false}, {last - CTimeSpan(60), 0.1, 1, false},
        {last - CTimeSpan(61), 0, 1, true}, {first + CTimeSpan(3599), 0, 2, false},
        {first + CTimeSpan(3601), 0, 2, true}, {last - CTimeSpan(3599), 0, 2, false},
        {last - CTimeSpan(3600), 0, 2, true}, {last, 0.99, 4, false}, {last, 0.94, 4, true},
        {last - CTimeSpan(1), 0.99, 4, true}, {CTime(std::numeric_limits<std::int64_t>::max()), 0.7, 0, false},
        {CTime(std::numeric_limits<std::int64_t>::min()), 0.7, 2, false}, {CTime(0), 0.99, 4, false},
        // clang-format on
    };
    for (auto const& [start, fraction, flag, changes] : rows) {
        CTovTime time = Moment(start, fraction);
        H::Round(time, static_cast<Flag>(flag));
        bool const same = time.GetTime() == start.GetTime() && time.GetFracSecond() == fraction;
        EXPECT_EQ(!same, changes) << start.Format(full) << " " << fraction << " " << flag;
    }
    COleDateTime date(9999, 12, 31, 23, 59, 59);
    EXPECT_EQ(H::Round(date, H::eRoundToHour), H::MaxOleDateTimeAsMjd());
    CTovTimeSpan span(S::MaxCTimeSpan());
    span.SetFracSecond(0.7);
    EXPECT_EQ(S::Round(span, H::eRoundToTenth), 2147483647.7 / 86400);
    S::Round(span, H::eRoundToSecond);
    EXPECT_EQ(span.GetFracSecond(), 0.7);
    CTovTimeSpan negative(-0.0001);  // -8.64 s
    S::Round(negative, H::eRoundToSecond);
    EXPECT_EQ(negative.GetTimeSpan(), -9);
    COleDateTimeSpan null(1.7);
    null.SetStatus(COleDateTimeSpan::null);
    S::Round(null, H::eRoundToHour);
    EXPECT_EQ(null.GetStatus(), COleDateTimeSpan::null);
}

TEST(Format, CutsWhatIsRoundedOff) {
    test::TemporaryFolder const folder;
    TovSetProfilePath(folder.File("Time.ini").c_str());
    CTovTime const time = Moment(CTime(2024, 3, 5, 13, 29, 40), 0.96);
    std::tuple<char const*, int, char const*> const rows[] = {
        // clang-format off
        {"%H:%M:%S", 0x81, "13:30"}, {"%H:%M:%S", 0x82, "13"}, {"%H:%M:%S", 1, "13:30:00"},
        {"%H:%M:%S", 0x80, "13:29:41"}, {"%H:%M:%S", 0x84, "13:29:41"}, {"%H:%M:%S", -1, "13:29:40"},
        {"%#d.%#m. %#I:%M:%S %p", 0x81, "5.3. 1:30 PM"}, {"%#I:%M:%S %p", 0x82, "1 PM"},
        {"%S:%M:%H", 0x81, ":30:13"}, {"%H%M%S", 0x81, "1330"}, {"%H:%#M:%#S ", 0x82, "13"},
        {"%%S %H%%%S", 0x81, "%S 13%"}, {"%H h %M:", 0x82, "13 h"}, {"%S:", 0x82, ""},
        {"at %H: %S", 0x81, "at 13"},
        {"%H\xE7\x82\xB9%M\xE5\x88\x86%S", 0x81, "13\xE7\x82\xB9" "30\xE5\x88\x86"}, {"", 0, ""},
        {nullptr, 0x81, ""}, {"%", 0x81, "%"},
        // clang-format on
    };
    for (auto const& [format, flag, text] : rows)
        EXPECT_EQ(H::Format(time, format, static_cast<Flag>(flag)), text) << flag;
    EXPECT_EQ(H::Format(CTime(time), CString("%M"), H::eRoundNot) +
                  S::Format(CTimeSpan(5), CString("%S"), H::eRoundNot),
              "2905");
    EXPECT_EQ(H::Format(COleDateTime(2024, 3, 5, 23, 59, 59), full, H::eRoundToMinute | H::eRoundCut),
              "2024-03-06 00:00");

    struct {
        eTimeFormat format;
        char const* texts[6];  // date, time, time cut to minutes; pictures of all, date and time
    } const formats[] = {
        // clang-format off
        {eTimeFormat(17), {"05.03.2024", "13:29:41", "13:30", "dd.MM.yyyy HH:mm:ss", "dd.MM.yyyy", "HH:mm:ss"}},
        {eTimeFormat(31), {"5-Mar-24", "1:29:41 PM", "1:30 PM", "dd-MMM-yyyy tt hh:mm:ss", "dd-MMM-yyyy", "tt hh:mm:ss"}},
        {eTimeFormat(24), {"5. Mar 2024", "13:29:41", "13:30", "dd. MMM yyyy HH:mm:ss", "dd. MMM yyyy", "HH:mm:ss"}},
        // clang-format on
    };
    for (auto const& row : formats) {
        CTovTime::SaveSettings(row.format);
        EXPECT_EQ(H::FormatDate(time, H::eRoundToSecond), row.texts[0]);
        EXPECT_EQ(H::FormatTime(CTime(time) + CTimeSpan(1), H::eRoundNot), row.texts[1]);
        EXPECT_EQ(H::FormatTime(time, H::eRoundToMinute | H::eRoundCut), row.texts[2]);
        EXPECT_EQ(H::Format(time, H::eRoundToSecond), CString(row.texts[0]) + " " + row.texts[1]);
        for (int const type : {0, 1, 2})
            EXPECT_EQ(H::GetTovTimeFormat(static_cast<H::eType>(type)), row.texts[3 + type]);
    }
    CString format = "%a%#A%j%%d%p %#B %I%";
    H::ConvertTovTimeFormatToDateTimeCtrl(format);
    EXPECT_EQ(format, "d MMMM tt hh%");
}

// The sum lies in the range or nothing changes.
TEST(Add, StaysWithinTheLimits) {
    auto const [first, last] = LocalRange();
    std::mt19937_64 random(3);
    auto const near = [&random](std::int64_t to) {
        return to + static_cast<std::int64_t>(random() % 2'000'001) - 1'000'000;
    };
    constexpr struct {
        int (*add)(CTovTime&, long);
        int (*date)(COleDateTime&, long, H::eRangeType);
        std::int64_t seconds;
    } units[] = {{H::AddSeconds, H::AddSeconds, 1},
                 {H::AddMinutes, H::AddMinutes, 60},
                 {H::AddHours, H::AddHours, 3600},
                 {H::AddDays, H::AddDays, 86400},
                 {H::AddWeeks, H::AddWeeks, 604800}};
    for (int i = 0; i < 20'000; ++i) {
        auto const& [add, addDate, unit] = units[random() % 5];
        std::int64_t const start = near(random() % 2 == 0 ? first : last);
        std::int64_t const n = random() % 4 == 0 ? (near(random() % 2 == 0 ? first : last) - start) / unit
                                                 : static_cast<std::int64_t>(random() % 2001) - 1000;
        std::int64_t const sum = start + n * unit;
        bool const inside = sum >= first && sum <= last;
        bool const held = n == 0 || (inside && sum != last);  // with a fraction
        CTovTime time = Moment(CTime(start), 0.25);
        ASSERT_EQ(add(time, n), held);
        ASSERT_TRUE(time.GetTime() == (held ? sum : start) && time.GetFracSecond() == 0.25);
        CTovTime back = Moment(CTime(start));
        CTovTimeSpan span(-n * unit);
        span.SetFracSecond(n > 0 ? -0.9 : 0.9);  // does not count
        ASSERT_EQ(H::SubtractTimeSpan(back, span), inside);

        COleDateTime date(2000, 1, 1, 0, 0, 0);
        double const mjd = 51544 + static_cast<double>(n * unit) / 86400;
        double from = 0, to = 0;
        auto const range = static_cast<H::eRangeType>(random() % 3);
        H::GetPhysicalRange(from, to, range);
        ASSERT_EQ(addDate(date, n, range), n == 0 || (mjd >= from && mjd <= to)) << mjd << " " << range;
        ASSERT_NEAR(H::GetMjd(date), mjd >= from && mjd <= to ? mjd : 51544, 1e-9);
    }
    COleDateTime null, date(2000, 1, 1, 0, 0, 0);
    null.SetStatus(COleDateTime::null);
    int added = H::AddSeconds(null, 1) + H::AddMonths(null, 1) +
                H::AddTimeSpan(date, COleDateTimeSpan(HUGE_VAL)) +
                H::SubtractTimeSpan(date, COleDateTimeSpan(1e300));
    for (auto const& unit : units) {
        for (long const n : {std::numeric_limits<long>::max(), std::numeric_limits<long>::min()}) {
            CTovTime time = Moment(CTime(first));
            added += unit.add(time, n) + unit.date(date, n, H::eRangeOleDateTime);
        }
    }
    EXPECT_EQ(added, 0);
    EXPECT_EQ(H::GetMjd(date), 51544);
}

// Months against the standard library's, with its rule that a day behind the last one becomes that.
TEST(Add, MonthsKeepTheClockTime) {
    std::mt19937_64 random(4);
    std::uniform_int_distribution<std::int64_t> any(H::MinCTime().GetTime(), H::MaxCTime().GetTime());
    using namespace std::chrono;
    for (int i = 0; i < 20'000; ++i) {
        CTovTime time = Moment(CTime(any(random)), 0.5);
        COleDateTime date((CTime(time)));
        CTime const before = time;
        int const n = static_cast<int>(random() % 1501) - 750;
        year_month_day sum = year(time.GetYear()) / time.GetMonth() / time.GetDay() + months(n);
        if (!sum.ok()) sum = sum.year() / sum.month() / last;
        bool const changes = n != 0 && sum >= 1970y / 1 / 2 && sum <= 2030y / 1 / 18;
        // A clock time that does not exist that day is another one, as mktime has it.
        CTime const same(int{sum.year()}, static_cast<int>(unsigned{sum.month()}),
                         static_cast<int>(unsigned{sum.day()}), before.GetHour(), before.GetMinute(),
                         before.GetSecond());
        ASSERT_EQ(H::AddMonths(time, n), changes || n == 0) << n << before.Format(full);
        ASSERT_EQ(CTime(time), changes ? same : before) << n << before.Format(full);
        ASSERT_EQ(time.GetFracSecond(), changes ? 0 : 0.5);
        ASSERT_EQ(H::AddMonths(date, n), 1);
        ASSERT_EQ(H::GetMjd(date), CTovTime::Mjd(int{sum.year()}, static_cast<int>(unsigned{sum.month()}),
                                                 static_cast<int>(unsigned{sum.day()}), before.GetHour(),
                                                 before.GetMinute(), before.GetSecond()));
    }
    CTime leap(2024, 2, 29, 1, 2, 3);
    EXPECT_EQ(
        H::AddYears(leap, 1) + H::AddYears(leap, 0) + H::AddYears(leap, std::numeric_limits<int>::min()), 2);
    EXPECT_EQ(leap.Format(full), "2025-02-28 01:02:03");
    COleDateTime end(9999, 10, 31, 12, 0, 0);
    EXPECT_EQ(H::AddMonths(end, 2) + H::AddMonths(end, 1), 1);
    EXPECT_EQ(end.Format(full), "9999-12-31 12:00:00");
}

TEST(Span, SplitsAndFormats) {
    long d = 0, h = 0, m = 0, s = 0;
    double fraction = 0;
    S::Mjd2Hms(-1.75 - 0.5 / 86400, d, h, m, s, fraction);
    EXPECT_EQ(d * 1000000 + h * 10000 + m * 100 + s, -1180000);
    EXPECT_NEAR(fraction, -0.5, 1e-9);
    S::Mjd2Hms(std::nextafter(2.0, 0), d, h, m, s, fraction);
    EXPECT_EQ(d * 1000000 + h * 10000 + m * 100 + s, 2000000);
    S::Mjd2Hms(1e300, d, h, m, s, fraction);
    EXPECT_EQ(d, 100'000'000'000'000);

    CTovTimeSpan span(8, 1, 2, 33);
    span.SetFracSecond(0.6);
    struct {
        char const* format;
        int flag;
        char const* text;
    } const rows[] = {
        // clang-format off
        {"%H:%M:%S", 0, "193:02:34"}, {"%D d %H:%M:%S", 0, "8 d 1:02:34"}, {"%h-%H", 0, "193-01"},
        {"%D %h", 0, "8 1"}, {"%H:%M:%S", 0x81, "193:03"}, {"%H:%M:%S", 2, "193:00:00"},
        {"%%H %H%%u %u", 0, "%H 193%u %u"}, {nullptr, 0, ""},
        // clang-format on
    };
    for (auto const& row : rows)
        EXPECT_EQ(S::Format(span, row.format, static_cast<Flag>(row.flag)), row.text);
    EXPECT_EQ(S::Format(CTimeSpan(-3661), "%H:%M:%S", H::eRoundToSecond), "-1:01:01");
    EXPECT_EQ(S::Format(COleDateTimeSpan(1.5), "%H", H::eRoundToSecond), "36");
}

TEST(Span, AddsWithinItsRange) {
    CTovTimeSpan span(10L);
    CTovTimeSpan half(0L);
    half.SetFracSecond(0.5);
    EXPECT_EQ(S::AddTimeSpan(span, half) + S::AddTimeSpan(span, half) +
                  S::SubtractTimeSpan(span, CTovTimeSpan(11L)),
              3);
    EXPECT_EQ(span.GetTimeSpan() + static_cast<int>(span.GetFracSecond() * 10), 0);
    EXPECT_EQ(S::SubtractTimeSpan(span, half) + S::AddSeconds(span, -1), 0);
    CTimeSpan plain;
    EXPECT_EQ(S::AddHours(plain, 596523) + S::AddSeconds(plain, 847) + S::AddSeconds(plain, 1), 2);
    EXPECT_EQ(plain, S::MaxCTimeSpan());
    EXPECT_EQ(S::AddDays(plain, std::numeric_limits<long>::max()) + S::AddMinutes(plain, 0), 1);
    COleDateTimeSpan date;
    EXPECT_EQ(
        S::AddSeconds(date, 86399, H::eRangeDateTimeCtrl) + S::AddSeconds(date, 1, H::eRangeDateTimeCtrl), 1);
    EXPECT_EQ(date, S::MaxDateTimeSpanCtrlAsOleDateTimeSpan());
    EXPECT_EQ(S::AddTimeSpan(date, S::MaxOleDateTimeSpan()) + S::AddTimeSpan(date, S::MaxOleDateTimeSpan()),
              1);
    CTimeSpan kept(5);
    for (double const outside : {-1e-9, 2147483648.0, std::nan("")})
        S::SetMjd(outside, kept);
    EXPECT_EQ(kept.GetTimeSpan(), 5);
    EXPECT_EQ(S::MaxCTimeSpanAsMjd(), 2147483647.0);
}

TEST(Range, MayBeUsedFirstByAnyThread) {
    std::vector<std::thread> threads;
    std::vector<CTime> limits(4);
    for (CTime& limit : limits)
        threads.emplace_back([&limit] { limit = CTovTime().Format().empty() ? CTime() : H::MaxCTime(); });
    for (std::thread& thread : threads)
        thread.join();
    for (CTime const& limit : limits)
        EXPECT_EQ(limit.Format(full), "2030-01-18 23:59:59");
    SYSTEMTIME from;
    SYSTEMTIME to;
    H::GetPhysicalRange(from, to, H::eRangeOleDateTime);
    EXPECT_TRUE(
        (from == SYSTEMTIME{100, 1, 5, 1, 0, 0, 0, 0} && to == SYSTEMTIME{9999, 12, 5, 31, 23, 59, 59, 0}));
    EXPECT_EQ(H::MinDateTimeCtrlAsOleDateTime().Format(full) + H::MinCTime().Format(full),
              "1601-01-01 00:00:001970-01-02 00:00:00");
}

}  // namespace
}  // namespace tov
