// What the date arithmetic needs of each kind of time: the seconds in which it adds, the reading of calendar
// and clock that a user sees, and how both are put back.
#pragma once

#include <tov310/time_helper.h>
#include <tov310/tov_time.h>

#include "values/calendar_readings.h"

#include <concepts>
#include <optional>

namespace tov {

// Two ends, which belong to the range.
struct SecondsRange {
    std::int64_t from;
    std::int64_t to;

    bool Holds(std::int64_t seconds, double fraction) const {
        return seconds >= from && (seconds < to || (seconds == to && fraction <= 0));
    }
};
struct ReadingRange {
    ClockReading from;
    ClockReading to;

    bool Holds(ClockReading const& reading) const { return reading >= from && reading <= to; }
    SecondsRange Seconds() const { return {from.Seconds(), to.Seconds()}; }
};

inline constexpr ReadingRange readingsOfRange[] = {
    {minOleReading, maxOleReading},
    {{MjdOfDate(1601, 1, 1), 0, 0}, maxOleReading},
    {{MjdOfDate(1970, 1, 2), 0, 0}, {MjdOfDate(2030, 1, 18), secondsPerDay - 1, 0}},
};
// An unknown type is the first one.
inline ReadingRange const& ReadingsOf(CTovTimeHelper::eRangeType range) {
    return readingsOfRange[range >= 0 && range <= 2 ? range : 0];
}

// A number of days of which it is known that it lies near the range; others are none.
inline std::optional<ClockReading> ReadingWithin(ReadingRange const& range, double mjd) {
    if (!(mjd > static_cast<double>(range.from.day) - 1 && mjd < static_cast<double>(range.to.day) + 2))
        return std::nullopt;
    ClockReading const reading = SplitMjd(mjd);
    return range.Holds(reading) ? std::optional(reading) : std::nullopt;
}

// CTime and CTovTime: seconds since 1970 UTC.
template <class T>
struct TimeKind {
    static double Fraction(T const& time) {
        if constexpr (std::same_as<T, CTovTime>) return time.GetFracSecond();
        return 0;
    }
    static std::optional<std::int64_t> Seconds(T const& time) { return time.GetTime(); }
    static std::optional<ClockReading> Reading(T const& time) {
        auto reading = LocalReading(time.GetTime());
        if (reading) reading->fraction = Fraction(time);
        return reading;
    }
    static std::optional<ClockReading> ReadingOfSeconds(std::int64_t seconds) {
        return LocalReading(seconds);
    }
    static void SetSeconds(T& time, std::int64_t seconds, double fraction) {
        time = CTime(seconds);
        if constexpr (std::same_as<T, CTovTime>) time.SetFracSecond(fraction);
    }
    static bool SetReading(T& time, ClockReading const& reading) {
        auto const seconds = MomentOfLocal(reading);
        if (seconds) SetSeconds(time, *seconds, reading.fraction);
        return seconds.has_value();
    }
};

// COleDateTime: the seconds are those of the reading.
template <>
struct TimeKind<COleDateTime> {
    static double Fraction(COleDateTime const& time) {
        return OleReading(time).value_or(ClockReading()).fraction;
    }
    static std::optional<std::int64_t> Seconds(COleDateTime const& time) {
        auto const reading = OleReading(time);
        return reading ? std::optional(reading->Seconds()) : std::nullopt;
    }
    static std::optional<ClockReading> Reading(COleDateTime const& time) { return OleReading(time); }
    static std::optional<ClockReading> ReadingOfSeconds(std::int64_t seconds) {
        return ClockReading::OfSeconds(seconds, 0);
    }
    static void SetSeconds(COleDateTime& time, std::int64_t seconds, double fraction) {
        time = OleOfReading(ClockReading::OfSeconds(seconds, fraction));
    }
    static bool SetReading(COleDateTime& time, ClockReading const& reading) {
        time = OleOfReading(reading);
        return true;
    }
};

// The seconds between which CTime may lie.
SecondsRange LocalRange();

// A fraction of a second as a multiple of a unit; `full` when it has become a second. Nothing for a unit
// outside (0, 1] or too small to count.
struct CountedFraction {
    bool full;
    double fraction;
};
std::optional<CountedFraction> RoundFraction(double fraction, double unit);
// The unit of the flags that round to a part of the second, else 0.
double UnitOfFlag(int flag);

inline constexpr int roundFlagMask = 0x7F;
// Takes out of a format what a flag with its bit for cutting rounds off. Answers whether anything was taken.
bool CutRounded(CString& format, int flag);

}  // namespace tov
