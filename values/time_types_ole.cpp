#include <tov310/time_types.h>

#include "values/calendar_readings.h"
#include "values/time_format.h"

#include <cmath>
#include <utility>

namespace tov {
namespace {

// The status of what is made of two.
template <class A, class B>
auto JoinedStatus(A const& a, B const& b) {
    using Status = decltype(a.m_status);
    if (a.m_status == A::null || b.m_status == B::null) return Status(A::null);
    return a.m_status == A::valid && b.m_status == B::valid ? Status(A::valid) : Status(A::invalid);
}

// From 0, Sunday; the epoch was a Wednesday.
int DayOfWeek(std::int64_t mjd) {
    return static_cast<int>(((mjd + 3) % 7 + 7) % 7);
}

bool OleFields(COleDateTime const& date, std::tm& fields) {
    auto const reading = OleReading(date);
    fields = {};
    if (!reading) return false;
    CalendarDate const day = DateOfMjd(reading->day);
    fields.tm_year = static_cast<int>(day.year) - 1900;
    fields.tm_mon = day.month - 1;
    fields.tm_mday = day.day;
    fields.tm_hour = reading->Hour();
    fields.tm_min = reading->Minute();
    fields.tm_sec = reading->second % 60;
    fields.tm_wday = DayOfWeek(reading->day);
    fields.tm_yday = static_cast<int>(reading->day - MjdOfDate(day.year, 1, 1));
    fields.tm_isdst = -1;
    return true;
}

int OleField(COleDateTime const& date, int std::tm::*field, int from) {
    std::tm fields;
    return OleFields(date, fields) ? fields.*field + from : static_cast<int>(COleDateTime::error);
}

COleDateTime OleOfLocal(CTime const& time, double fraction) {
    COleDateTime date;
    auto reading = LocalReading(time.GetTime());
    if (!reading || reading->day < minOleReading.day || reading->day > maxOleReading.day) {
        date.SetStatus(COleDateTime::invalid);
        return date;
    }
    reading->fraction = fraction;
    return OleOfReading(*reading);
}

}  // namespace

COleDateTimeSpan::COleDateTimeSpan(double days)
    : m_span(days), m_status(std::isfinite(days) ? valid : invalid) {}

void COleDateTimeSpan::SetDateTimeSpan(long days, int hours, int minutes, int seconds) {
    std::int64_t const rest = std::int64_t{hours} * 3600 + std::int64_t{minutes} * 60 + seconds;
    *this = COleDateTimeSpan(static_cast<double>(days) + static_cast<double>(rest) / secondsPerDay);
}

std::int64_t COleDateTimeSpan::GetDays() const {
    return SpanReading::OfDays(m_span).seconds / secondsPerDay;
}

int COleDateTimeSpan::GetHours() const {
    return CTimeSpan(SpanReading::OfDays(m_span).seconds).GetHours();
}

int COleDateTimeSpan::GetMinutes() const {
    return CTimeSpan(SpanReading::OfDays(m_span).seconds).GetMinutes();
}

int COleDateTimeSpan::GetSeconds() const {
    return CTimeSpan(SpanReading::OfDays(m_span).seconds).GetSeconds();
}

CString COleDateTimeSpan::Format(char const* format) const {
    if (format == nullptr || m_status != valid) return {};
    return FormatSpan(SpanReading::OfDays(m_span).seconds, format);
}

COleDateTimeSpan& COleDateTimeSpan::operator+=(COleDateTimeSpan const& span) {
    DateTimeSpanStatus const status = JoinedStatus(*this, span);
    *this = COleDateTimeSpan(SumOfDays(m_span, span.m_span));
    if (status != valid) m_status = status;
    return *this;
}

COleDateTimeSpan& COleDateTimeSpan::operator-=(COleDateTimeSpan const& span) {
    return *this += -span;
}

COleDateTimeSpan COleDateTimeSpan::operator-() const {
    COleDateTimeSpan negative = *this;
    negative.m_span = 0 - m_span;
    return negative;
}

COleDateTime::COleDateTime(SYSTEMTIME const& time) {
    SetDateTime(time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond);
    auto reading = OleReading(*this);
    if (time.wMilliseconds > 999) {
        m_dt = 0;
        m_status = invalid;
    } else if (reading) {
        reading->fraction = time.wMilliseconds / 1000.0;
        *this = OleOfReading(*reading);
    }
}

COleDateTime::COleDateTime(CTime const& time) : COleDateTime(OleOfLocal(time, 0)) {}

COleDateTime::COleDateTime(FILETIME const& time)
    : COleDateTime(OleOfLocal(CTime(time), static_cast<double>(time.ticks % 10000000) / 1e7)) {}

COleDateTime::COleDateTime(unsigned short dosDate, unsigned short dosTime) {
    int const month = dosDate >> 5 & 15;
    std::int64_t year = (dosDate >> 9) + 1980;
    std::int64_t carried = month != 0 ? month : 1;
    CarryMonths(year, carried);
    std::int64_t const day = MjdOfDate(year, static_cast<int>(carried), dosDate & 31);
    int const second = (dosTime >> 11) * 3600 + (dosTime >> 5 & 63) * 60 + (dosTime & 31) * 2;
    *this = OleOfReading(ClockReading::OfSeconds(day * secondsPerDay + second, 0));
}

COleDateTime& COleDateTime::operator=(double date) {
    m_dt = date;
    m_status = IsOleDate(date) ? valid : invalid;
    return *this;
}

int COleDateTime::SetDateTime(int year, int month, int day, int hour, int minute, int second) {
    auto const within = [](int number, int from, int to) { return number >= from && number <= to; };
    if (within(year, 100, 9999) && within(month, 1, 12) && within(day, 1, DaysOfMonth(year, month)) &&
        within(hour, 0, 23) && within(minute, 0, 59) && within(second, 0, 59)) {
        *this = OleOfReading({MjdOfDate(year, month, day), hour * 3600 + minute * 60 + second, 0});
    } else {
        m_dt = 0;
        m_status = invalid;
    }
    return m_status;
}

int COleDateTime::GetYear() const {
    return OleField(*this, &std::tm::tm_year, 1900);
}

int COleDateTime::GetMonth() const {
    return OleField(*this, &std::tm::tm_mon, 1);
}

int COleDateTime::GetDay() const {
    return OleField(*this, &std::tm::tm_mday, 0);
}

int COleDateTime::GetHour() const {
    return OleField(*this, &std::tm::tm_hour, 0);
}

int COleDateTime::GetMinute() const {
    return OleField(*this, &std::tm::tm_min, 0);
}

int COleDateTime::GetSecond() const {
    return OleField(*this, &std::tm::tm_sec, 0);
}

int COleDateTime::GetDayOfWeek() const {
    return OleField(*this, &std::tm::tm_wday, 1);
}

int COleDateTime::GetDayOfYear() const {
    return OleField(*this, &std::tm::tm_yday, 1);
}

bool COleDateTime::GetAsSystemTime(SYSTEMTIME& time) const {
    time = {};
    auto const reading = OleReading(*this);
    if (!reading) return false;
    CalendarDate const date = DateOfMjd(reading->day);
    // What was set as a millisecond is that one, though its double may be a little less.
    double const resolution = std::nextafter(std::abs(m_dt), HUGE_VAL) - std::abs(m_dt);
    double const milliseconds = (reading->fraction + resolution * secondsPerDay) * 1000;
    auto const word = [](auto number) { return static_cast<unsigned short>(number); };
    time = {word(date.year),
            word(date.month),
            word(DayOfWeek(reading->day)),
            word(date.day),
            word(reading->Hour()),
            word(reading->Minute()),
            word(reading->second % 60),
            word(std::min(milliseconds, 999.0))};
    return true;
}

CString COleDateTime::Format(char const* format) const {
    std::tm fields;
    if (format == nullptr || !OleFields(*this, fields)) return {};
    return FormatFields(fields, format);
}

COleDateTime& COleDateTime::operator+=(COleDateTimeSpan const& span) {
    DateTimeStatus const status = JoinedStatus(*this, span);
    if (status != valid) {
        m_status = status;
        return *this;
    }
    auto const reading = OleReading(*this);
    if (!reading) {
        m_status = invalid;
        return *this;
    }
    SpanReading const sum = SpanReading{reading->Seconds(), reading->fraction} + SpanReading::OfDays(span);
    ClockReading result = ClockReading::OfSeconds(sum.seconds, sum.fraction);
    if (result.fraction < 0) result = ClockReading::OfSeconds(sum.seconds - 1, sum.fraction + 1);
    if (result.day < minOleReading.day || result.day > maxOleReading.day) {
        m_status = invalid;
    } else {
        *this = OleOfReading(result);
    }
    return *this;
}

COleDateTimeSpan operator-(COleDateTime const& a, COleDateTime const& b) {
    COleDateTimeSpan span;
    if (auto const from = OleReading(b), to = OleReading(a); from && to) {
        span = COleDateTimeSpan(
            (SpanReading{to->Seconds(), to->fraction} + -SpanReading{from->Seconds(), from->fraction})
                .Days());
    } else {
        bool const isNull = a.m_status == COleDateTime::null || b.m_status == COleDateTime::null;
        span.SetStatus(isNull ? COleDateTimeSpan::null : COleDateTimeSpan::invalid);
    }
    return span;
}

std::partial_ordering operator<=>(COleDateTime const& a, COleDateTime const& b) {
    auto const first = OleReading(a);
    auto const second = OleReading(b);
    if (!first || !second) return std::partial_ordering::unordered;
    return *first <=> *second;
}

}  // namespace tov
