// Clock readings and moments in the zones of the world, held against the run-time library and std::chrono.
// The zone of a process is that of its start, so every case starts this program again with its TZ.
#include <tov310/time_helper.h>
#include <tov310/tov_time.h>

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdint>
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

double MjdOf(Seconds reading) {
    Seconds const days = reading / day;
    return static_cast<double>(days + 40587) + static_cast<double>(reading % day) / 86400.0;
}

// Gives a clock reading to everything that takes one, and the moment that mktime makes of it to everything
// that gives one. Answers what differs.
std::string Differences(Seconds reading) {
    year_month_day const date{sys_days{days{reading / day}}};
    auto const year = static_cast<unsigned short>(static_cast<int>(date.year()));
    auto const month = static_cast<unsigned short>(static_cast<unsigned>(date.month()));
    auto const dayOfMonth = static_cast<unsigned short>(static_cast<unsigned>(date.day()));
    auto const hour = static_cast<unsigned short>(reading % day / 3600);
    auto const minute = static_cast<unsigned short>(reading % 3600 / 60);
    auto const second = static_cast<unsigned short>(reading % 60);
    auto const momentOf = [&](int secondThere) {
        std::tm fields{};
        fields.tm_year = year - 1900;
        fields.tm_mon = month - 1;
        fields.tm_mday = dayOfMonth;
        fields.tm_hour = hour;
        fields.tm_min = minute;
        fields.tm_sec = secondThere;
        fields.tm_isdst = -1;
        return Seconds{std::mktime(&fields)};
    };
    Seconds const moment = momentOf(second);
    std::tm const fields = LocalFields(moment);
    Seconds const read = moment + fields.tm_gmtoff;  // another reading where the clock has left that one out
    std::string different;
    auto const expect = [&](bool isRight, char const* what) {
        if (!isRight) different.append(what).append("; ");
    };

    CTovTime time;
    time.SetFracSecond(0.5);
    time.Mjd(MjdOf(reading));
    expect(time.GetTime() == moment && time.GetFracSecond() == 0, "set MJD");
    expect(CTovTime(year, month, dayOfMonth, hour, minute, second).GetTime() == moment, "set fields");
    CTime plain;
    Helper::SetMjd(MjdOf(reading), plain);
    expect(plain.GetTime() == moment, "set MJD of CTime");
    SYSTEMTIME const system{year, month, 0, dayOfMonth, hour, minute, second, 999};
    expect(CTime(system).GetTime() == moment, "set SYSTEMTIME");
    if (year >= 1980) {
        auto const dosDate = static_cast<unsigned short>((year - 1980) << 9 | month << 5 | dayOfMonth);
        auto const dosTime = static_cast<unsigned short>(hour << 11 | minute << 5 | second / 2);
        expect(CTime(dosDate, dosTime).GetTime() == momentOf(second / 2 * 2), "set DOS");
        Seconds const sinceEpoch = reading - (44244 - 40587) * day;
        if (sinceEpoch >= 0) {
            CTovTime const gps(static_cast<int>(sinceEpoch / (7 * day)),
                               static_cast<double>(sinceEpoch % (7 * day)));
            expect(gps.GetTime() == moment && gps.GetFracSecond() == 0, "set GPS");
        }
    }

    expect(double{time} == MjdOf(read) && Helper::GetMjd(plain) == MjdOf(read), "get MJD");
    int week = 0;
    double secondOfWeek = -1;
    int const isGps = time.GetGpsTime(week, secondOfWeek);
    Seconds const sinceEpoch = read - (44244 - 40587) * day;
    expect(isGps == (sinceEpoch >= 0), "GPS result");
    expect(std::llround(secondOfWeek) + week * 7 * day == sinceEpoch && secondOfWeek >= 0 &&
               secondOfWeek < static_cast<double>(7 * day) &&
               std::fabs(secondOfWeek - std::round(secondOfWeek)) < 1e-6,
           "get GPS");
    SYSTEMTIME got;
    expect(plain.GetAsSystemTime(got) && got.wYear == fields.tm_year + 1900 &&
               got.wMonth == fields.tm_mon + 1 && got.wDayOfWeek == fields.tm_wday &&
               got.wDay == fields.tm_mday && got.wHour == fields.tm_hour && got.wMinute == fields.tm_min &&
               got.wSecond == fields.tm_sec && got.wMilliseconds == 0,
           "get SYSTEMTIME");
    FILETIME file;
    expect(plain.GetAsFileTime(file) &&
               file.ticks == static_cast<std::uint64_t>(moment + 11'644'473'600) * 10'000'000 &&
               CTime(file).GetTime() == moment,
           "FILETIME");
    return different;
}

struct TimeZones : testing::TestWithParam<char const*> {};

TEST_P(TimeZones, ReadingsAndMomentsComeBack) {
    if (!std::filesystem::exists(std::filesystem::path("/usr/share/zoneinfo") / GetParam()))
        GTEST_SKIP() << "the zone is not installed";
    if (std::getenv("TOV_TEST_ZONE") == nullptr) {
        testing::TestInfo const& test = *testing::UnitTest::GetInstance()->current_test_info();
        std::string const filter =
            std::string("--gtest_filter=").append(test.test_suite_name()).append(".").append(test.name());
        pid_t const child = ::fork();
        if (child == 0) {
            ::setenv("TZ", GetParam(), 1);
            ::setenv("TOV_TEST_ZONE", "1", 1);
            ::execl("/proc/self/exe", "time_zones_test", filter.c_str(), nullptr);
            ::_exit(2);
        }
        int status = -1;
        ::waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
        return;
    }

    auto const check = [](Seconds from, Seconds to, Seconds step) {
        Seconds const end = std::min(to, lastReading);
        for (Seconds reading = std::max(from, firstReading); reading <= end && !HasFailure(); reading += step)
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
        return y == static_cast<int>(date.year()) &&
               m == static_cast<int>(static_cast<unsigned>(date.month())) &&
               d == static_cast<int>(static_cast<unsigned>(date.day())) &&
               (h * 60 + min) * 60 + s == second && fraction == 0;
    };
    for (sys_days at = 1y / 1 / 1; at <= sys_days{9999y / 12 / 31}; at += days{1}) {
        year_month_day const date{at};
        auto const whole = static_cast<double>((at - mjdEpoch).count());
        ASSERT_EQ(CTovTime::Mjd(static_cast<int>(date.year()),
                                static_cast<int>(static_cast<unsigned>(date.month())),
                                static_cast<int>(static_cast<unsigned>(date.day())), 0, 0, 0),
                  whole);
        ASSERT_TRUE(isRight(whole, date, 0)) << whole;
        if (date != date.year() / date.month() / last || date.year() < 1970y || date.year() > 2029y) continue;
        for (Seconds second = 0; second < day; ++second)
            ASSERT_TRUE(isRight(whole + static_cast<double>(second) / 86400, date, second))
                << whole << ' ' << second;
    }
}

}  // namespace
