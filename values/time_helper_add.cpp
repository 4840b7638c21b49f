#include "values/time_helper_kinds.h"

#include <algorithm>

namespace tov {
namespace {

template <class T>
int AddSpan(T& time, SpanReading const& span, SecondsRange const& range) {
    using Kind = TimeKind<T>;
    auto const seconds = Kind::Seconds(time);
    if (!seconds) return 0;
    SpanReading sum = SpanReading{*seconds, Kind::Fraction(time)} + span;
    if (sum.fraction < 0) sum = {sum.seconds - 1, sum.fraction + 1};
    if (!range.Holds(sum.seconds, sum.fraction)) return 0;
    Kind::SetSeconds(time, sum.seconds, sum.fraction);
    return 1;
}

template <class T>
int AddCount(T& time, long n, long unit, SecondsRange const& range) {
    if (n == 0) return 1;
    std::int64_t seconds = 0;
    if (__builtin_mul_overflow(std::int64_t{n}, std::int64_t{unit}, &seconds)) return 0;
    return AddSpan(time, {seconds, 0}, range);
}

template <class T>
int AddMonthsTo(T& time, long n, ReadingRange const& range) {
    if (n == 0) return 1;
    auto reading = TimeKind<T>::Reading(time);
    if (!reading) return 0;
    constexpr int commonDays = 28;
    CalendarDate const old = DateOfMjd(reading->day);
    std::int64_t year = old.year + n / 12;
    std::int64_t carried = old.month + n % 12;
    CarryMonths(year, carried);
    CalendarDate const date{year, static_cast<int>(carried), std::min(old.day, commonDays)};
    if (date < DateOfMjd(range.from.day) || date > DateOfMjd(range.to.day)) return 0;

    // The days beyond those that every month has, as far as month and range go.
    reading->fraction = 0;
    reading->day = MjdOfDate(date.year, date.month, std::min(old.day, DaysOfMonth(date.year, date.month)));
    std::int64_t const least = MjdOfDate(date.year, date.month, date.day);
    while (reading->day > least && *reading > range.to)
        --reading->day;
    return TimeKind<T>::SetReading(time, *reading) ? 1 : 0;
}

}  // namespace

int CTovTimeHelper::AddTimeSpan(CTime& time, CTimeSpan const& span) {
    return AddSpan(time, {span.GetTimeSpan(), 0}, LocalRange());
}

int CTovTimeHelper::AddTimeSpan(CTovTime& time, CTovTimeSpan const& span) {
    return AddSpan(time, {span.GetTimeSpan(), 0}, LocalRange());
}

int CTovTimeHelper::AddTimeSpan(COleDateTime& time, COleDateTimeSpan const& span, eRangeType range) {
    if (span.m_status != COleDateTimeSpan::valid) return 0;
    return AddSpan(time, SpanReading::OfDays(span), ReadingsOf(range).Seconds());
}

int CTovTimeHelper::SubtractTimeSpan(CTime& time, CTimeSpan const& span) {
    return AddSpan(time, -SpanReading{span.GetTimeSpan(), 0}, LocalRange());
}

int CTovTimeHelper::SubtractTimeSpan(CTovTime& time, CTovTimeSpan const& span) {
    return AddSpan(time, -SpanReading{span.GetTimeSpan(), 0}, LocalRange());
}

int CTovTimeHelper::SubtractTimeSpan(COleDateTime& time, COleDateTimeSpan const& span, eRangeType range) {
    return AddTimeSpan(time, -span, range);
}

int CTovTimeHelper::Add(CTime& time, long n, long unit) {
    return AddCount(time, n, unit, LocalRange());
}

int CTovTimeHelper::Add(CTovTime& time, long n, long unit) {
    return AddCount(time, n, unit, LocalRange());
}

int CTovTimeHelper::Add(COleDateTime& time, long n, long unit, eRangeType range) {
    return AddCount(time, n, unit, ReadingsOf(range).Seconds());
}

int CTovTimeHelper::AddCalendarMonths(CTime& time, long n) {
    return AddMonthsTo(time, n, ReadingsOf(eRangeCTime));
}

int CTovTimeHelper::AddCalendarMonths(CTovTime& time, long n) {
    return AddMonthsTo(time, n, ReadingsOf(eRangeCTime));
}

int CTovTimeHelper::AddCalendarMonths(COleDateTime& time, long n, eRangeType range) {
    return AddMonthsTo(time, n, ReadingsOf(range));
}

}  // namespace tov
