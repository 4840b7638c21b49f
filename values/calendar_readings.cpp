#include "values/calendar_readings.h"

#include "vesk/clock.h"

#include <cmath>

namespace tov {

std::optional<ClockReading> LocalReading(std::int64_t seconds) {
    std::tm fields;
    if (!VeskLocalFields(seconds, fields)) return std::nullopt;
    return ClockReading{MjdOfDate(fields.tm_year + std::int64_t{1900}, fields.tm_mon + 1, fields.tm_mday),
                        fields.tm_hour * 3600 + fields.tm_min * 60 + fields.tm_sec, 0};
}

std::optional<std::int64_t> MomentOfLocal(ClockReading const& reading) {
    CalendarDate const date = DateOfMjd(reading.day);
    std::int64_t const year = date.year - 1900;
    if (year != static_cast<int>(year)) return std::nullopt;
    std::tm fields{};
    fields.tm_year = static_cast<int>(year);
    fields.tm_mon = date.month - 1;
    fields.tm_mday = date.day;
    fields.tm_hour = reading.Hour();
    fields.tm_min = reading.Minute();
    fields.tm_sec = reading.second % 60;
    fields.tm_isdst = -1;
    return VeskLocalMoment(fields);
}

std::optional<ClockReading> OleReading(COleDateTime const& date) {
    if (date.m_status != COleDateTime::valid || !IsOleDate(date.m_dt)) return std::nullopt;
    auto const whole = static_cast<std::int64_t>(date.m_dt);
    ClockReading reading = SplitDays(whole, std::abs(date.m_dt - static_cast<double>(whole)), date.m_dt);
    reading.day += mjdOfOleEpoch;
    return reading;
}

COleDateTime OleOfReading(ClockReading const& reading) {
    auto const day = static_cast<double>(reading.day - mjdOfOleEpoch);
    double const part = (reading.second + reading.fraction) / secondsPerDay;
    double date = day >= 0 ? day + part : day - part;
    // Before the epoch the part lies on the wrong side, so it must not be rounded to a whole day.
    if (day < 0 && date == day - 1) date = day + 1;
    return COleDateTime(date);
}

SpanReading SpanReading::OfDays(double days) {
    if (std::isnan(days)) return {};
    double const size = std::fmin(std::abs(days), maxSpanDays);
    ClockReading const reading = SplitMjd(size);
    SpanReading const span{reading.Seconds(), reading.fraction};
    return days < 0 ? -span : span;
}

double SpanReading::Days() const {
    return static_cast<double>(seconds / secondsPerDay) +
           (static_cast<double>(seconds % secondsPerDay) + fraction) / secondsPerDay;
}

SpanReading SpanReading::operator-() const {
    return {(CTimeSpan() - CTimeSpan(seconds)).GetTimeSpan(), 0 - fraction};
}

SpanReading operator+(SpanReading const& a, SpanReading const& b) {
    CTimeSpan seconds = CTimeSpan(a.seconds) + CTimeSpan(b.seconds);
    double fraction = a.fraction + b.fraction;
    auto const carry = [&](int second) {
        seconds += CTimeSpan(second);
        fraction -= second;
    };
    if (std::abs(fraction) >= 1) carry(fraction < 0 ? -1 : 1);
    if (seconds.GetTimeSpan() > 0 && fraction < 0) carry(-1);
    if (seconds.GetTimeSpan() < 0 && fraction > 0) carry(1);
    if (std::abs(fraction) >= 1) carry(fraction < 0 ? -1 : 1);  // by rounding
    return {seconds.GetTimeSpan(), fraction};
}

double SumOfDays(double a, double b) {
    if (!HasSeconds(a) || !HasSeconds(b) || !HasSeconds(a + b)) return a + b;
    return (SpanReading::OfDays(a) + SpanReading::OfDays(b)).Days();
}

}  // namespace tov
