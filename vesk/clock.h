// Time as the platform keeps it.
#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

namespace tov {

// Reads the time zone of the process into the run-time library.
void VeskReadTimeZone();

// The fields of a moment (seconds since 1970-01-01 00:00 UTC) by the local clock or in UTC. False, with
// zeros, where the year fits no int.
bool VeskLocalFields(std::int64_t seconds, std::tm& fields);
bool VeskUtcFields(std::int64_t seconds, std::tm& fields);

// The moment of a local clock reading, whose fields may be of any size, as mktime takes it; the earlier one
// where the clock shows them twice and they leave that open. Nothing where its year fits no int. `east` gets
// the seconds by which the clock is ahead of UTC then.
std::optional<std::int64_t> VeskLocalMoment(std::tm const& fields, long* east = nullptr);

// Names in the language of LC_TIME at present, in UTF-8; empty where the locale has none. Months and days of
// the week (from Sunday) count from 0. A name lives until the locale changes or the thread asks for the next
// one.
std::string_view VeskMonthName(int month, bool full);
std::string_view VeskDayName(int day, bool full);
std::string_view VeskHalfDayName(bool afternoon);

// What wcsftime says to a short format of its own, in UTF-8.
void VeskAppendTime(std::string& out, wchar_t const* format, std::tm const& fields);

}  // namespace tov
