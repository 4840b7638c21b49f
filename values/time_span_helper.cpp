#include <tov310/time_helper.h>

#include "values/time_format.h"
#include "values/time_helper_kinds.h"

#include <cmath>
#include <limits>

namespace tov {
namespace {

constexpr std::int64_t maxSpanSeconds = 2147483647;
constexpr double maxSpanAsMjd = 2147483647.0;

SpanReading ReadingOfSpan(CTimeSpan const& span) {
    return {span.GetTimeSpan(), 0};
}

SpanReading ReadingOfSpan(CTovTimeSpan const& span) {
    return {span.GetTimeSpan(), span.GetFracSecond()};
}

SpanReading ReadingOfSpan(COleDateTimeSpan const& span) {
    return SpanReading::OfDays(span.m_status == COleDateTimeSpan::valid ? span.m_span : 0);
}

void SetReadingOfSpan(CTimeSpan& span, SpanReading const& reading) {
    span = CTimeSpan(reading.seconds);
}

void SetReadingOfSpan(CTovTimeSpan& span, SpanReading const& reading) {
    span = CTimeSpan(reading.seconds);
    span.SetFracSecond(reading.fraction);
}

void SetReadingOfSpan(COleDateTimeSpan& span, SpanReading const& reading) {
    span = COleDateTimeSpan(reading.Days());
}

// The end of the whole seconds that a kind may have.
template <class T>
constexpr std::int64_t lastSecondOf = maxSpanSeconds;
template <>
constexpr std::int64_t lastSecondOf<COleDateTimeSpan> = std::numeric_limits<std::int64_t>::max();

template <class T>
void RoundSpan(T& span, int flag) {
    SpanReading reading = ReadingOfSpan(span);
    bool const negative = reading.seconds < 0 || reading.fraction < 0;
    if (negative) reading = -reading;
    constexpr std::int64_t last = lastSecondOf<T>;
    if (flag <= CTovTimeHelper::eRoundToHour) {
        std::int64_t const unit = flag == 0 ? 1 : flag == 1 ? 60 : 3600;
        if (!SecondsRange{0, last - unit}.Holds(reading.seconds, reading.fraction)) return;
        std::int64_t const rest = reading.seconds % unit;
        if (flag == 0 ? reading.fraction >= 0.5 : rest >= unit / 2) reading.seconds += unit;
        reading = {reading.seconds - reading.seconds % unit, 0};
    } else {
        auto const rounded = RoundFraction(reading.fraction, UnitOfFlag(flag));
        if (!rounded || (rounded->full && reading.seconds >= last)) return;
        reading = {reading.seconds + (rounded->full ? 1 : 0), rounded->fraction};
    }
    SetReadingOfSpan(span, negative ? -reading : reading);
}

template <class T>
int AddToSpan(T& span, SpanReading const& other) {
    SpanReading const sum = ReadingOfSpan(span) + other;
    if (sum.fraction < 0 || !SecondsRange{0, maxSpanSeconds}.Holds(sum.seconds, sum.fraction)) return 0;
    SetReadingOfSpan(span, sum);
    return 1;
}

template <class T>
int AddCountToSpan(T& span, long n, long unit) {
    if (n == 0) return 1;
    std::int64_t seconds = 0;
    if (__builtin_mul_overflow(std::int64_t{n}, std::int64_t{unit}, &seconds)) return 0;
    return AddToSpan(span, {seconds, 0});
}

template <class T>
CString PrintSpan(T span, char const* format, CTovTimeHelper::eRoundFlag flag) {
    if (format == nullptr || *format == 0) return {};
    CTovTimeSpanHelper::Round(span, flag);
    CString left = format;
    bool const cut = CutRounded(left, flag);
    bool const has = FindFormatCode(left, 'D').letter == 'D';
    char const code = FindFormatCode(left, 'h').letter == 'h' ? 'h' : 'H';
    CString text = FormatSpan(ReadingOfSpan(span).seconds, left, {code, !has, false});
    if (cut && text.ends_with(':')) text.pop_back();
    return text;
}

}  // namespace

CTimeSpan CTovTimeSpanHelper::MinCTimeSpan() {
    return CTimeSpan();
}

CTimeSpan CTovTimeSpanHelper::MaxCTimeSpan() {
    return CTimeSpan(maxSpanSeconds);
}

COleDateTimeSpan CTovTimeSpanHelper::MinOleDateTimeSpan() {
    return COleDateTimeSpan();
}

COleDateTimeSpan CTovTimeSpanHelper::MaxOleDateTimeSpan() {
    return COleDateTimeSpan(MaxOleDateTimeSpanAsMjd());
}

COleDateTimeSpan CTovTimeSpanHelper::MinDateTimeSpanCtrlAsOleDateTimeSpan() {
    return COleDateTimeSpan();
}

COleDateTimeSpan CTovTimeSpanHelper::MaxDateTimeSpanCtrlAsOleDateTimeSpan() {
    return COleDateTimeSpan(MaxDateTimeSpanCtrlAsMjd());
}

double CTovTimeSpanHelper::MinCTimeSpanAsMjd() {
    return 0;
}

double CTovTimeSpanHelper::MaxCTimeSpanAsMjd() {
    return maxSpanAsMjd;
}

double CTovTimeSpanHelper::MinOleDateTimeSpanAsMjd() {
    return 0;
}

double CTovTimeSpanHelper::MaxOleDateTimeSpanAsMjd() {
    return std::numeric_limits<double>::max();
}

double CTovTimeSpanHelper::MinDateTimeSpanCtrlAsMjd() {
    return 0;
}

double CTovTimeSpanHelper::MaxDateTimeSpanCtrlAsMjd() {
    return SpanReading{secondsPerDay - 1, 0}.Days();
}

void CTovTimeSpanHelper::GetPhysicalRange(CTimeSpan& from, CTimeSpan& to) {
    from = MinCTimeSpan();
    to = MaxCTimeSpan();
}

void CTovTimeSpanHelper::GetPhysicalRange(CTovTimeSpan& from, CTovTimeSpan& to) {
    from = MinCTimeSpan();
    to = MaxCTimeSpan();
}

void CTovTimeSpanHelper::GetPhysicalRange(COleDateTimeSpan& from, COleDateTimeSpan& to, eRangeType range) {
    from = COleDateTimeSpan();
    to = range == CTovTimeHelper::eRangeCTime ? COleDateTimeSpan(SpanReading{maxSpanSeconds, 0}.Days())
         : range == CTovTimeHelper::eRangeDateTimeCtrl ? MaxDateTimeSpanCtrlAsOleDateTimeSpan()
                                                       : MaxOleDateTimeSpan();
}

void CTovTimeSpanHelper::GetPhysicalRangeMjd(double& from, double& to, eRangeType range) {
    from = 0;
    to = range == CTovTimeHelper::eRangeCTime          ? MaxCTimeSpanAsMjd()
         : range == CTovTimeHelper::eRangeDateTimeCtrl ? MaxDateTimeSpanCtrlAsMjd()
                                                       : MaxOleDateTimeSpanAsMjd();
}

double CTovTimeSpanHelper::GetMjd(CTimeSpan const& span) {
    return ReadingOfSpan(span).Days();
}

double CTovTimeSpanHelper::GetMjd(COleDateTimeSpan const& span) {
    return span.m_status == COleDateTimeSpan::valid ? span.m_span : 0;
}

double CTovTimeSpanHelper::GetMjd(CTovTimeSpan const& span) {
    return ReadingOfSpan(span).Days();
}

void CTovTimeSpanHelper::SetMjd(double days, CTimeSpan& span) {
    if (days >= 0 && days <= maxSpanAsMjd) SetReadingOfSpan(span, SpanReading::OfDays(days));
}

void CTovTimeSpanHelper::SetMjd(double days, COleDateTimeSpan& span) {
    if (days >= 0 && std::isfinite(days)) span = COleDateTimeSpan(days);
}

void CTovTimeSpanHelper::SetMjd(double days, CTovTimeSpan& span) {
    if (days >= 0 && days <= maxSpanAsMjd) SetReadingOfSpan(span, SpanReading::OfDays(days));
}

void CTovTimeSpanHelper::Mjd2Hms(double const& mjd, long& days, long& hours, long& minutes, long& seconds,
                                 double& fraction) {
    SpanReading const reading = SpanReading::OfDays(mjd);
    CTimeSpan const span(reading.seconds);
    days = span.GetDays();
    hours = span.GetHours();
    minutes = span.GetMinutes();
    seconds = span.GetSeconds();
    fraction = reading.fraction;
}

double CTovTimeSpanHelper::Round(CTimeSpan& span, eRoundFlag flag) {
    RoundSpan(span, flag & roundFlagMask);
    return GetMjd(span);
}

double CTovTimeSpanHelper::Round(COleDateTimeSpan& span, eRoundFlag flag) {
    if (span.m_status == COleDateTimeSpan::valid && HasSeconds(span)) RoundSpan(span, flag & roundFlagMask);
    return GetMjd(span);
}

double CTovTimeSpanHelper::Round(CTovTimeSpan& span, eRoundFlag flag) {
    RoundSpan(span, flag & roundFlagMask);
    return GetMjd(span);
}

CString CTovTimeSpanHelper::Format(CTimeSpan const& span, char const* format, eRoundFlag flag) {
    return PrintSpan(span, format, flag);
}

CString CTovTimeSpanHelper::Format(COleDateTimeSpan const& span, char const* format, eRoundFlag flag) {
    return span.m_status == COleDateTimeSpan::valid ? PrintSpan(span, format, flag) : CString();
}

CString CTovTimeSpanHelper::Format(CTovTimeSpan const& span, char const* format, eRoundFlag flag) {
    return PrintSpan(span, format, flag);
}

int CTovTimeSpanHelper::AddTimeSpan(CTimeSpan& span, CTimeSpan const& other) {
    return AddToSpan(span, ReadingOfSpan(other));
}

int CTovTimeSpanHelper::AddTimeSpan(CTovTimeSpan& span, CTovTimeSpan const& other) {
    return AddToSpan(span, ReadingOfSpan(other));
}

int CTovTimeSpanHelper::AddTimeSpan(COleDateTimeSpan& span, COleDateTimeSpan const& other, eRangeType range) {
    COleDateTimeSpan from;
    COleDateTimeSpan to;
    GetPhysicalRange(from, to, range);
    COleDateTimeSpan const sum = span + other;
    if (!(sum >= from && sum <= to)) return 0;
    span = sum;
    return 1;
}

int CTovTimeSpanHelper::SubtractTimeSpan(CTimeSpan& span, CTimeSpan const& other) {
    return AddToSpan(span, -ReadingOfSpan(other));
}

int CTovTimeSpanHelper::SubtractTimeSpan(CTovTimeSpan& span, CTovTimeSpan const& other) {
    return AddToSpan(span, -ReadingOfSpan(other));
}

int CTovTimeSpanHelper::SubtractTimeSpan(COleDateTimeSpan& span, COleDateTimeSpan const& other,
                                         eRangeType range) {
    return AddTimeSpan(span, -other, range);
}

int CTovTimeSpanHelper::Add(CTimeSpan& span, long n, long unit) {
    return AddCountToSpan(span, n, unit);
}

int CTovTimeSpanHelper::Add(CTovTimeSpan& span, long n, long unit) {
    return AddCountToSpan(span, n, unit);
}

int CTovTimeSpanHelper::Add(COleDateTimeSpan& span, long n, long unit, eRangeType range) {
    if (n == 0) return 1;
    return AddTimeSpan(
        span, COleDateTimeSpan(static_cast<double>(n) * static_cast<double>(unit) / secondsPerDay), range);
}

}  // namespace tov
