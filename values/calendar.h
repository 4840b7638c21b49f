// The Gregorian calendar and modified Julian dates (MJD) in whole numbers, and the one place where a number
// of days in a double is cut into days and seconds.
#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <compare>
#include <cstdint>
#include <limits>

namespace tov {

inline constexpr int secondsPerDay = 86400;
inline constexpr std::int64_t mjdOfUnixEpoch = 40587;  // 1 January 1970
inline constexpr std::int64_t mjdOfOleEpoch = 15018;   // 30 December 1899
inline constexpr int mjdOfGpsEpoch = 44244;            // 6 January 1980 (IS-GPS-200, 3.3.4)

struct CalendarDate {
    std::int64_t year;
    int month;  // from 1
    int day;    // from 1

    friend constexpr auto operator<=>(CalendarDate const&, CalendarDate const&) = default;
};

// Days and years are counted from this many cycles of 400 years before the year 0, so that all are positive.
inline constexpr std::int64_t calendarCycles = 6'000'000;
inline constexpr std::int64_t mjdOfFirstDay = -678881 - calendarCycles * 146097;

// Dates of years from -2.4 * 10^9 to as many after are told apart; the limit in days stays below that.
inline constexpr double maxCalendarDays = 5e11;

// After C. Neri and L. Schneider, "Euclidean affine functions and their application to calendar algorithms",
// Software: Practice and Experience 53 (2023). Months count from March, so that the leap day ends a year.
constexpr CalendarDate DateOfMjd(std::int64_t mjd) {
    auto const days = static_cast<std::uint64_t>(mjd - mjdOfFirstDay);
    std::uint64_t const century = (4 * days + 3) / 146097;
    auto const dayOfCentury = static_cast<std::uint32_t>((4 * days + 3) % 146097 / 4);
    std::uint64_t const product = std::uint64_t{2939745} * (4 * dayOfCentury + 3);
    auto const yearOfCentury = static_cast<std::uint32_t>(product >> 32);
    std::uint32_t const dayOfYear = static_cast<std::uint32_t>(product) / 2939745 / 4;
    std::uint32_t const scaled = 2141 * dayOfYear + 197913;
    std::uint32_t const month = scaled >> 16;
    bool const next = dayOfYear >= 306;
    return {static_cast<std::int64_t>(100 * century + yearOfCentury + (next ? 1 : 0)) - calendarCycles * 400,
            static_cast<int>(next ? month - 12 : month), static_cast<int>((scaled & 0xFFFF) / 2141 + 1)};
}

// The month is one from 1 to 12; the day may be any.
constexpr std::int64_t MjdOfDate(std::int64_t year, int month, std::int64_t day) {
    bool const previous = month <= 2;
    auto const years = static_cast<std::uint64_t>(year + calendarCycles * 400 - (previous ? 1 : 0));
    auto const months = static_cast<std::uint32_t>(previous ? month + 12 : month);
    std::uint64_t const centuries = years / 100;
    std::uint64_t const days = 1461 * years / 4 - centuries + centuries / 4 + (979 * months - 2919) / 32;
    return static_cast<std::int64_t>(days) + mjdOfFirstDay + day - 1;
}

// Carries a month of any size into the year.
constexpr void CarryMonths(std::int64_t& year, std::int64_t& month) {
    std::int64_t const years = (month - 1) / 12 - ((month - 1) % 12 < 0 ? 1 : 0);
    year += years;
    month -= 12 * years;
}

constexpr int DaysOfMonth(std::int64_t year, int month) {
    if (month == 2) return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0) ? 29 : 28;
    return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

// A reading of calendar and clock: a day, the second of the day and what is beyond it.
struct ClockReading {
    std::int64_t day = 0;  // MJD
    int second = 0;        // 0 to 86399
    double fraction = 0;   // of a second, 0 <= fraction < 1

    static constexpr ClockReading OfSeconds(std::int64_t seconds, double fraction) {
        std::int64_t const day = seconds / secondsPerDay - (seconds % secondsPerDay < 0 ? 1 : 0);
        return {day, static_cast<int>(seconds - day * secondsPerDay), fraction};
    }
    constexpr std::int64_t Seconds() const { return day * secondsPerDay + second; }
    constexpr int Hour() const { return second / 3600; }
    constexpr int Minute() const { return second / 60 % 60; }

    // Rounded once, so that a reading without a fraction comes back as it is.
    constexpr double Mjd() const { return static_cast<double>(day) + (second + fraction) / secondsPerDay; }

    friend constexpr auto operator<=>(ClockReading const&, ClockReading const&) = default;
};

// Cuts days, of which `whole` is whole and 0 <= part <= 1, into a reading. A double that holds a number of
// days of this size resolves one unit of its last place; what lies within that of a whole second is that
// second, and what lies within it of a half one is that, for it must be rounded up.
inline ClockReading SplitDays(std::int64_t whole, double part, double size) {
    constexpr std::uint64_t exponentBits = 0x7FF0000000000000;
    double const power = std::bit_cast<double>(std::bit_cast<std::uint64_t>(size) & exponentBits);
    double const resolution = std::max(power, 1.0) * (std::numeric_limits<double>::epsilon() * secondsPerDay);
    double const seconds = part * secondsPerDay;
    auto const halves = static_cast<int>(2 * seconds + 0.5);
    ClockReading reading{whole, halves / 2, halves % 2 * 0.5};
    if (std::abs(seconds - halves * 0.5) > resolution) {
        reading.second = static_cast<int>(seconds);
        reading.fraction = seconds - reading.second;
    }
    if (reading.second >= secondsPerDay) {
        reading.second = 0;
        ++reading.day;
    }
    return reading;
}

// The reading of a MJD, which must fit 64 bits. Before the epoch the day is the one before.
inline ClockReading SplitMjd(double mjd) {
    auto whole = static_cast<std::int64_t>(mjd);
    if (static_cast<double>(whole) > mjd) --whole;
    return SplitDays(whole, mjd - static_cast<double>(whole), mjd);
}

}  // namespace tov
