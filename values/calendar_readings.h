// How the values of time are read as calendar and clock, and written back.
#pragma once

#include <tov310/time_types.h>

#include "values/calendar.h"

#include <cmath>
#include <cstdint>
#include <optional>

namespace tov {

// The reading of the local clock at a moment; nothing where its year fits no int.
std::optional<ClockReading> LocalReading(std::int64_t seconds);
// The moment of a reading of the local clock without its fraction, as mktime takes it; nothing where there is
// none.
std::optional<std::int64_t> MomentOfLocal(ClockReading const& reading);

// The range of COleDateTime.
inline constexpr ClockReading minOleReading{MjdOfDate(100, 1, 1), 0, 0};
inline constexpr ClockReading maxOleReading{MjdOfDate(9999, 12, 31), secondsPerDay - 1, 0};

// Whether a number is a date in the range of COleDateTime. The last double before its end is the midnight
// behind it.
inline bool IsOleDate(double date) {
    constexpr auto first = static_cast<double>(minOleReading.day - mjdOfOleEpoch);
    constexpr auto behind = static_cast<double>(maxOleReading.day - mjdOfOleEpoch + 1);
    return date > first - 1 && date < std::nextafter(behind, first);
}

// The reading of a valid date; nothing for another one.
std::optional<ClockReading> OleReading(COleDateTime const& date);
// A valid date. The reading must lie in the range of COleDateTime.
COleDateTime OleOfReading(ClockReading const& reading);

// A span as whole seconds and the rest, both with its sign.
struct SpanReading {
    std::int64_t seconds = 0;
    double fraction = 0;

    static SpanReading OfDays(double days);
    double Days() const;

    // Sums in 64 bits stop at their ends.
    friend SpanReading operator+(SpanReading const& a, SpanReading const& b);
    SpanReading operator-() const;
};

// More days are not cut into seconds.
inline constexpr double maxSpanDays = 1e14;
inline bool HasSeconds(double days) {
    return days > -maxSpanDays && days < maxSpanDays;
}

// The sum of two numbers of days, in which whole seconds stay whole.
double SumOfDays(double a, double b);

}  // namespace tov
