// Clock readings and moments in the zones of the world, held against the run-time library and std::chrono.
// The limits of times are those of the zone at their first use, so every case has a process of its own.
#include <tov310/time_helper.h>
#include <tov310/tov_time.h>

#include "support/child.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <numeric>
#include <string>
#include <vector>

namespace {

using namespace tov;
using namespace std::chrono;
using Helper = CTovTimeHelper;
using Seconds = std::int64_t;

constexpr Seconds day = 86400;
constexpr sys_days mjdEpoch = 1858y / 11 / 17;

// Readings are counted like moments, from 1970 on.
constexpr Seconds firstReading = day;  // 2 January 1970, 00:00:00
constexpr Seconds lastReading = sys_days{2030y / 1 / 19}.time_since_epoch().count() * day - 1;
constexpr Seconds stride = 9973;
static_assert(std::gcd(stride, day) == 1, "it comes to every second of a day");

std::tm LocalFields(Seconds moment) {
    std::time_t const time = moment;
    std::tm fields{};
    ::localtime_r(&time, &fields);
    return fields;
}

Seconds OffsetAt(Seconds moment) {
    return LocalFields(moment).tm_gmtoff;
}

// The last second before each change of the clock.
std::vector<Seconds> ClockChanges() {
    std::vector<Seconds> changes;
    for (Seconds from = firstReading - day; from < lastReading + day; from += 21600) {
        Seconds low = from;
        for (Seconds high = from + 21600; OffsetAt(low) != OffsetAt(high) && high - low > 1;) {
            Seconds const middle = std::midpoint(low, high);
            (OffsetAt(middle) == OffsetAt(low) ? low : high) = middle;
        }
        if (OffsetAt(low) != OffsetAt(low + 1)) changes.push_back(low);
    }
    return changes;
}

double MjdOf(Seconds reading, double fraction = 0) {
    Seconds const days = reading / day;
    return static_cast<double>(days + 40587) + (static_cast<double>(reading % day) + fraction) / 86400.0;
}

SYSTEMTIME SystemTimeOf(std::tm const& fields) {
    auto const word = [](int number) { return static_cast<unsigned short>(number); };
    return {word(fields.tm_year + 1900), word(fields.tm_mon + 1), word(fields.tm_wday), word(fields.tm_mday),
            word(fields.tm_hour),        word(fields.tm_min),     word(fields.tm_sec),  0};
}

// As mktime takes it; of two moments the earlier one.
Seconds MomentOf(std::tm fields) {
    fields.tm_isdst = -1;
    Seconds const found = std::mktime(&fields);
    Seconds const shown = found + OffsetAt(found);
    Seconds const earlier = shown - OffsetAt(found - day);
    return earlier + OffsetAt(earlier) == shown ? earlier : found;
}

// Gives a clock reading to everything that takes one, and its moment to everything that gives one. Answers
// what differs.
std::string Differences(Seconds reading) {
    std::tm asked{};
    ::gmtime_r(&reading, &asked);
    SYSTEMTIME const system = SystemTimeOf(asked);
    Seconds const moment = MomentOf(asked);
    Seconds const read = moment + OffsetAt(moment);  // another reading where the clock has left that one out
    std::string different;
    auto const expect = [&](bool isRight, char const* what) {
        if (!isRight) different.append(what).append("; ");
    };

    CTovTime time;
    time.Mjd(MjdOf(reading, 0.5));
    bool const isHalf = time.GetTime() == moment && time.GetFracSecond() == 0.5;
    expect(isHalf || reading == lastReading, "set half a second");
    time.Mjd(MjdOf(reading));
    expect(time.GetTime() == moment && time.GetFracSecond() == 0, "set MJD");
    CTime plain;
    Helper::SetMjd(MjdOf(reading), plain);
    expect(plain.GetTime() == moment, "set MJD of CTime");
    CTime const fields(system.wYear, system.wMonth, system.wDay, system.wHour, system.wMinute,
                       system.wSecond);
    expect(fields.GetTime() == moment, "set fields");
    expect(CTovTime(system).GetTime() == moment, "set SYSTEMTIME");
    if (system.wYear >= 1980) {
        CTime const dos(
            static_cast<unsigned short>((system.wYear - 1980) << 9 | system.wMonth << 5 | system.wDay),
            static_cast<unsigned short>(system.wHour << 11 | system.wMinute << 5 | system.wSecond / 2));
        asked.tm_sec &= ~1;
        expect(dos.GetTime() == MomentOf(asked), "set DOS");
    }
    constexpr Seconds gpsEpoch = (44244 - 40587) * day, weekSeconds = 7 * day;
    if (reading >= gpsEpoch) {
        CTovTime const gps(static_cast<int>((reading - gpsEpoch) / weekSeconds),
                           static_cast<double>((reading - gpsEpoch) % weekSeconds));
        expect(gps.GetTime() == moment && gps.GetFracSecond() == 0, "set GPS");
    }

    expect(double{time} == MjdOf(read) && Helper::GetMjd(plain) == MjdOf(read), "get MJD");
    int week = 0;
    double second = -1;
    expect(time.GetGpsTime(week, second) == (read >= gpsEpoch), "GPS result");
    expect(second == static_cast<double>(read - gpsEpoch - week * weekSeconds) && second >= 0 &&
               second < static_cast<double>(weekSeconds),
           "get GPS");
    SYSTEMTIME got;
    expect(plain.GetAsSystemTime(got) && got == SystemTimeOf(LocalFields(moment)), "get SYSTEMTIME");
    FILETIME file;
    expect(plain.GetAsFileTime(file) &&
               file.ticks == static_cast<std::uint64_t>(moment + 11'644'473'600) * 10'000'000 &&
               CTovTime(file).GetTime() == moment,
           "FILETIME");
    return different;
}

struct TimeZones : testing::TestWithParam<char const*> {};

void CheckZone() {
    auto const check = [](Seconds from, Seconds to, Seconds step) {
        Seconds const end = std::min(to, lastReading);
        for (Seconds reading = std::max(from, firstReading); reading <= end && !testing::Test::HasFailure();
             reading += step)
            EXPECT_EQ(Differences(reading), "") << reading;
    };
    // With this in the environment it takes all seconds, and half an hour.
    bool const takesAll = std::getenv("TOV_TEST_EVERY_SECOND") != nullptr;
    // Some seconds of all days, all seconds around midnight at the ends of months, and the last ones.
    check(firstReading, lastReading, stride);
    for (year_month month = 1970y / January; month <= 2030y / January; month += months{1}) {
        Seconds const midnight = sys_days{month / 1}.time_since_epoch().count() * day;
        check(midnight - (takesAll ? day : 10), midnight + (takesAll ? day : 10), 1);
    }
    check(lastReading - 100, lastReading, 1);
    // Around each change the readings that are left out or come twice, and what is beside them.
    for (Seconds const change : ClockChanges()) {
        Seconds const before = change + OffsetAt(change);
        Seconds const behind = change + OffsetAt(change + 1);
        auto const [low, high] = std::minmax(before, behind);
        for (Seconds const edge : {low, high})
            check(edge - 70, edge + 70, 1);
        check(low - day, high + day, takesAll ? 1 : 61);
    }
}

TEST_P(TimeZones, ReadingsAndMomentsComeBack) {
    if (!std::filesystem::exists(std::filesystem::path("/usr/share/zoneinfo") / GetParam()))
        GTEST_SKIP() << "the zone is not installed";
    pid_t const child = test::StartChild([] {
        ::setenv("TZ", GetParam(), 1);
        ::tzset();
        CheckZone();
        std::fflush(stdout);
        return !HasFailure();
    });
    EXPECT_EQ(test::EndChild(child), 0);
}

INSTANTIATE_TEST_SUITE_P(World, TimeZones,
                         testing::Values("UTC", "Europe/Berlin", "Asia/Kolkata", "Asia/Shanghai",
                                         "America/St_Johns", "Pacific/Apia", "Australia/Lord_Howe",
                                         "Africa/Casablanca"),
                         [](auto const& zone) {
                             std::string name = zone.param;
                             std::erase_if(name, [](char c) { return c == '/' || c == '_'; });
                             return name;
                         });

// The Gregorian calendar alone, which knows no zones: all days, and all seconds of the days of leap seconds
// and at the ends of months.
TEST(Calendar, IsThatOfTheStandardLibrary) {
    auto const isRight = [](double mjd, year_month_day const& date, Seconds second) {
        long y = 0, m = 0, d = 0, h = 0, min = 0, s = 0;
        double fraction = -1;
        Helper::Mjd2Ymd(mjd, y, m, d, h, min, s, fraction);
        return date == year(static_cast<int>(y)) / static_cast<int>(m) / static_cast<int>(d) &&
               (h * 60 + min) * 60 + s == second && fraction == 0;
    };
    for (sys_days at = 1y / 1 / 1; at <= sys_days{9999y / 12 / 31}; at += days{1}) {
        year_month_day const date{at};
        auto const whole = static_cast<double>((at - mjdEpoch).count());
        ASSERT_EQ(CTovTime::Mjd(int{date.year()}, static_cast<int>(unsigned{date.month()}),
                                static_cast<int>(unsigned{date.day()}), 0, 0, 0),
                  whole);
        ASSERT_TRUE(isRight(whole, date, 0)) << whole;
        if (date != date.year() / date.month() / last || date.year() < 1970y || date.year() > 2029y) continue;
        for (Seconds second = 0; second < day; ++second)
            ASSERT_TRUE(isRight(whole + static_cast<double>(second) / 86400, date, second))
                << whole << ' ' << second;
    }
}

}  // namespace
