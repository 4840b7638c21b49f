// A moment as a user writes it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace survey {

inline constexpr std::int64_t gpsEpoch = 315'964'800;  // 6 January 1980, in seconds since 1970
inline constexpr double unixEpochMjd = 40587;          // 1 January 1970

struct Moment {
    std::int64_t seconds = 0;   // since 1970, UTC, without leap seconds
    double fraction = 0;        // of a second, in whole microseconds
    bool isLeapSecond = false;  // the second 23:59:60 that follows this one
    std::string readAs;         // what the text was taken for

    double Mjd() const { return unixEpochMjd + (static_cast<double>(seconds) + fraction) / 86400; }  // UTC
};

// GPS time minus UTC in seconds. `since` gets the modified Julian date from which on it holds, or 0.
int LeapSecondsAt(std::int64_t seconds, double* since = nullptr);

// Reads one of these, in the range of the library's times:
//
//   2026-11-21 12:30:15.25   local time, or UTC with a "Z" behind it
//   21.11.2026 12:30:15.25   local time in the current format, else in any of the 32
//   2400 345600.5            week and second of GPS
//   61365.521                modified Julian date, UTC
//
// The seconds, or the whole time of the day, may be missing. Throws UsageError.
Moment ReadMoment(std::string const& text);

}  // namespace survey
