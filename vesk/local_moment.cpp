// From a reading of the local clock to the moment. The run-time library finds it by trying, and looks at the
// file of the zone each time. On nearly all days the clock is ahead of UTC by one number of seconds, and what
// is ahead by it is found by a subtraction.
#include "vesk/clock.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
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

// The steps in which it is looked whether the zone of the machine is another one, of a second.
std::int64_t SecondsOfClock() {
#ifdef CLOCK_MONOTONIC_COARSE
    constexpr clockid_t clock = CLOCK_MONOTONIC_COARSE;
#else
    constexpr clockid_t clock = CLOCK_MONOTONIC;
#endif
    std::timespec now{};
    clock_gettime(clock, &now);
    return now.tv_sec;
}

// A day of the local calendar around which the clock does not change.
class SteadyDay {
 public:
    long East() const { return m_east; }

    // Whether this is the day, in the zone that there is now. Somebody may have chosen another one for the
    // process, which is seen at once, or for the machine.
    bool Is(std::int64_t day, std::int64_t reading) {
        if (!IsSameZone()) {
            NoteZone();
            return false;
        }
        if (m_day != day) return false;
        std::int64_t const now = SecondsOfClock();
        if (now == m_looked) return true;
        m_looked = now;
        return SecondsEastAt(reading - m_east) == m_east;
    }

    // No clock changes there and back within three days: three looks see what changes from a day before to a
    // day after.
    bool Find(std::int64_t wanted) {
        m_day = noDay;
        m_looked = SecondsOfClock();
        for (int attempt = 0; attempt < 2; ++attempt) {
            std::int64_t const begin = wanted * daySeconds - m_east;
            long const noon = SecondsEastAt(begin + daySeconds / 2);
            bool const steady = noon == m_east && SecondsEastAt(begin - daySeconds) == m_east &&
                                SecondsEastAt(begin + 2 * daySeconds) == m_east;
            if (steady) m_day = wanted;
            if (steady || noon == m_east) return steady;
            m_east = noon;
        }
        return false;
    }

 private:
    // Plain bytes need no guard in a thread; what does not fit is never the same.
    bool IsSameZone() const {
        char const* const zone = std::getenv("TZ");
        return zone != nullptr ? std::strcmp(zone, m_zone) == 0 : m_zone[0] == unset[0];
    }

    // The run-time library may not have looked yet.
    void NoteZone() {
        VeskReadTimeZone();
        m_day = noDay;
        char const* const zone = std::getenv("TZ");
        std::snprintf(m_zone, sizeof m_zone, "%s", zone != nullptr ? zone : unset);
    }

    static constexpr std::int64_t noDay = std::numeric_limits<std::int64_t>::min();
    static constexpr char unset[] = "\n";

    std::int64_t m_day = noDay;
    std::int64_t m_looked = 0;
    long m_east = 0;
    char m_zone[64] = "\r";  // none yet
};

}  // namespace

std::optional<std::int64_t> VeskLocalMoment(std::tm const& fields, long* east) {
    if (fields.tm_isdst >= 0 || !IsClockTime(fields)) return TryMoments(fields, east);
    constinit thread_local SteadyDay steady;
    std::int64_t const day = DayNumber(fields);
    std::int64_t const reading =
        day * daySeconds + (fields.tm_hour * 60 + fields.tm_min) * 60 + fields.tm_sec;
    if (!steady.Is(day, reading) && !steady.Find(day)) return TryMoments(fields, east);
    if (east != nullptr) *east = steady.East();
    return reading - steady.East();
}

}  // namespace tov
