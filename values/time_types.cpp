#include <tov310/time_types.h>

#include "values/calendar.h"
#include "values/time_format.h"
#include "vesk/clock.h"

#include <chrono>
#include <limits>

namespace tov {
namespace {

constexpr std::int64_t lastSecond = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t firstSecond = std::numeric_limits<std::int64_t>::min();

// 1 January 1601 to 1 January 1970.
constexpr std::int64_t fileEpoch = 11644473600;
constexpr std::int64_t fileTicks = 10000000;

// Sums that do not fit stop at the ends.
std::int64_t AddedSeconds(std::int64_t a, std::int64_t b) {
    std::int64_t sum = 0;
    if (__builtin_add_overflow(a, b, &sum)) return b < 0 ? firstSecond : lastSecond;
    return sum;
}

std::int64_t SubtractedSeconds(std::int64_t a, std::int64_t b) {
    std::int64_t difference = 0;
    if (__builtin_sub_overflow(a, b, &difference)) return b < 0 ? lastSecond : firstSecond;
    return difference;
}

std::int64_t SecondsOfFields(int year, int month, int day, int hour, int minute, int second, int isDst) {
    // The run-time library counts years from 1900 and months from 0 in an int.
    std::int64_t const monthFrom0 = std::int64_t{month} - 1;
    std::int64_t const carried = std::int64_t{year} - 1900 + monthFrom0 / 12;
    if (carried < std::numeric_limits<int>::min() || carried > std::numeric_limits<int>::max()) return 0;
    std::tm fields{};
    fields.tm_year = static_cast<int>(carried);
    fields.tm_mon = static_cast<int>(monthFrom0 % 12);
    fields.tm_mday = day;
    fields.tm_hour = hour;
    fields.tm_min = minute;
    fields.tm_sec = second;
    fields.tm_isdst = isDst;
    return VeskLocalMoment(fields).value_or(0);
}

std::tm LocalFieldsOf(CTime const& time) {
    std::tm fields{};
    VeskLocalFields(time.GetTime(), fields);
    return fields;
}

}  // namespace

CTimeSpan::CTimeSpan(long days, int hours, int minutes, int seconds) {
    constexpr std::int64_t day = secondsPerDay;
    std::int64_t rest = std::int64_t{hours} * 3600 + std::int64_t{minutes} * 60 + seconds;
    std::int64_t whole = AddedSeconds(days, rest / day);
    rest %= day;
    // With one sign only the sum of both can be too large.
    int const borrowed = whole > 0 && rest < 0 ? 1 : whole < 0 && rest > 0 ? -1 : 0;
    whole -= borrowed;
    rest += borrowed * day;
    m_timeSpan = __builtin_mul_overflow(whole, day, &whole) ? (days < 0 ? firstSecond : lastSecond)
                                                            : AddedSeconds(whole, rest);
}

CString CTimeSpan::Format(char const* format) const {
    return FormatSpan(m_timeSpan, format != nullptr ? format : "");
}

CTimeSpan& CTimeSpan::operator+=(CTimeSpan span) {
    m_timeSpan = AddedSeconds(m_timeSpan, span.m_timeSpan);
    return *this;
}

CTimeSpan& CTimeSpan::operator-=(CTimeSpan span) {
    m_timeSpan = SubtractedSeconds(m_timeSpan, span.m_timeSpan);
    return *this;
}

CTime::CTime(int year, int month, int day, int hour, int minute, int second, int isDst)
    : m_time(SecondsOfFields(year, month, day, hour, minute, second, isDst)) {}

CTime::CTime(unsigned short dosDate, unsigned short dosTime, int isDst) {
    int const month = dosDate >> 5 & 15;
    m_time = SecondsOfFields((dosDate >> 9) + 1980, month != 0 ? month : 1, dosDate & 31, dosTime >> 11,
                             dosTime >> 5 & 63, (dosTime & 31) * 2, isDst);
}

CTime::CTime(SYSTEMTIME const& time, int isDst)
    : m_time(SecondsOfFields(time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond,
                             isDst)) {}

CTime::CTime(FILETIME const& time, int)
    : m_time(static_cast<std::int64_t>(time.ticks / fileTicks) - fileEpoch) {}

CTime CTime::GetCurrentTime() {
    using namespace std::chrono;
    return CTime(floor<seconds>(system_clock::now()).time_since_epoch().count());
}

int CTime::GetYear() const {
    std::tm fields;
    return VeskLocalFields(m_time, fields) ? fields.tm_year + 1900 : 0;
}

int CTime::GetMonth() const {
    std::tm fields;
    return VeskLocalFields(m_time, fields) ? fields.tm_mon + 1 : 0;
}

int CTime::GetDay() const {
    return LocalFieldsOf(*this).tm_mday;
}

int CTime::GetHour() const {
    return LocalFieldsOf(*this).tm_hour;
}

int CTime::GetMinute() const {
    return LocalFieldsOf(*this).tm_min;
}

int CTime::GetSecond() const {
    return LocalFieldsOf(*this).tm_sec;
}

int CTime::GetDayOfWeek() const {
    std::tm fields;
    return VeskLocalFields(m_time, fields) ? fields.tm_wday + 1 : 0;
}

std::tm* CTime::GetLocalTm(std::tm* fields) const {
    return fields != nullptr && VeskLocalFields(m_time, *fields) ? fields : nullptr;
}

std::tm* CTime::GetGmtTm(std::tm* fields) const {
    return fields != nullptr && VeskUtcFields(m_time, *fields) ? fields : nullptr;
}

bool CTime::GetAsSystemTime(SYSTEMTIME& time) const {
    time = {};
    std::tm fields;
    if (!VeskLocalFields(m_time, fields)) return false;
    if (fields.tm_year < -1900 || fields.tm_year > 65535 - 1900) return false;
    auto const word = [](int number) { return static_cast<unsigned short>(number); };
    time = {word(fields.tm_year + 1900), word(fields.tm_mon + 1), word(fields.tm_wday), word(fields.tm_mday),
            word(fields.tm_hour),        word(fields.tm_min),     word(fields.tm_sec),  0};
    return true;
}

bool CTime::GetAsFileTime(FILETIME& time) const {
    constexpr auto most = static_cast<std::int64_t>(std::numeric_limits<std::uint64_t>::max() / fileTicks);
    time = {};
    if (m_time < -fileEpoch || m_time > most - fileEpoch) return false;
    time.ticks = static_cast<std::uint64_t>(m_time + fileEpoch) * fileTicks;
    return true;
}

CString CTime::Format(char const* format) const {
    std::tm fields;
    if (format == nullptr || !VeskLocalFields(m_time, fields)) return {};
    return FormatFields(fields, format);
}

CString CTime::FormatGmt(char const* format) const {
    std::tm fields;
    if (format == nullptr || !VeskUtcFields(m_time, fields)) return {};
    return FormatFields(fields, format);
}

CTime& CTime::operator+=(CTimeSpan span) {
    m_time = AddedSeconds(m_time, span.GetTimeSpan());
    return *this;
}

CTime& CTime::operator-=(CTimeSpan span) {
    m_time = SubtractedSeconds(m_time, span.GetTimeSpan());
    return *this;
}

}  // namespace tov
