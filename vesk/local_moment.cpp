// From a reading of the local clock to the moment. The run-time library finds it by trying, and looks at the
// file of the zone each time. On nearly all days the clock is ahead of UTC by one number of seconds, and what
// is ahead by it is found by a subtraction.
#include "vesk/clock.h"

#include <limits>

namespace tov {
namespace {

constexpr std::int64_t daySeconds = 86400;

// Seconds by which the local clock is ahead of UTC.
long SecondsEastAt(std::int64_t moment) {
    std::tm fields;
    return VeskLocalFields(moment, fields) ? fields.tm_gmtoff : 0;
}

std::optional<std::int64_t> TryMoments(std::tm fields, long* east) {
    bool const isOpen = fields.tm_isdst < 0;
    // The second before 1970 is the same number as a failure, but only success tells the day of the week.
    fields.tm_wday = -1;
    std::int64_t moment = mktime(&fields);
    if (moment == -1 && fields.tm_wday == -1) return std::nullopt;
    long ahead = fields.tm_gmtoff;
    // Which one of two moments mktime finds depends on what it was asked before.
    long const before = isOpen ? SecondsEastAt(moment - daySeconds) : ahead;
    if (before > ahead && SecondsEastAt(moment + ahead - before) == before) {
        moment += ahead - before;
        ahead = before;
    }
    if (east != nullptr) *east = ahead;
    return moment;
}

bool IsClockTime(std::tm const& fields) {
    auto const within = [](int number, int from, int to) { return number >= from && number <= to; };
    return within(fields.tm_sec, 0, 59) && within(fields.tm_min, 0, 59) && within(fields.tm_hour, 0, 23) &&
           within(fields.tm_mday, 1, 31) && within(fields.tm_mon, 0, 11) &&
           within(fields.tm_year, -2000, 10'000);
}

// Since 1 January 1970. Months count from March, so that the leap day ends a year, and years from -2000.
std::int64_t DayNumber(std::tm const& fields) {
    bool const previous = fields.tm_mon < 2;
    auto const year = static_cast<std::uint32_t>(fields.tm_year + 1900 + 2000 - (previous ? 1 : 0));
    auto const month = static_cast<std::uint32_t>(fields.tm_mon + (previous ? 10 : -2));
    std::uint32_t const century = year / 100;
    std::uint32_t const days = year * 1461 / 4 - century + century / 4 + (153 * month + 2) / 5;
    return static_cast<std::int64_t>(days) + fields.tm_mday - 1 - 719468 - 5 * 146097;
}

// A day of the local calendar around which the clock does not change.
struct SteadyDay {
    std::int64_t day = std::numeric_limits<std::int64_t>::min();
    long east = 0;

    // No clock changes there and back within three days: three looks see what changes from a day before to a
    // day after.
    bool Find(std::int64_t wanted) {
        for (int attempt = 0; attempt < 2; ++attempt) {
            std::int64_t const begin = wanted * daySeconds - east;
            long const noon = SecondsEastAt(begin + daySeconds / 2);
            bool const steady = noon == east && SecondsEastAt(begin - daySeconds) == east &&
                                SecondsEastAt(begin + 2 * daySeconds) == east;
            day = steady ? wanted : std::numeric_limits<std::int64_t>::min();
            if (steady || noon == east) return steady;
            east = noon;
        }
        return false;
    }
};

}  // namespace

std::optional<std::int64_t> VeskLocalMoment(std::tm const& fields, long* east) {
    if (fields.tm_isdst >= 0 || !IsClockTime(fields)) return TryMoments(fields, east);
    thread_local SteadyDay steady;
    std::int64_t const day = DayNumber(fields);
    std::int64_t const reading =
        day * daySeconds + (fields.tm_hour * 60 + fields.tm_min) * 60 + fields.tm_sec;
    // Somebody may have chosen another zone.
    bool const known = steady.day == day && SecondsEastAt(reading - steady.east) == steady.east;
    if (!known && !steady.Find(day)) return TryMoments(fields, east);
    if (east != nullptr) *east = steady.east;
    return reading - steady.east;
}

}  // namespace tov
