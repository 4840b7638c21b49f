#include <tov310/compare.h>

#include "values/time_helper_kinds.h"

#include <cmath>
#include <stdexcept>

namespace tov {
namespace {

CTime LimitOfReading(ClockReading const& reading) {
    auto const seconds = MomentOfLocal(reading);
    if (!seconds) throw std::invalid_argument("the time zone cannot represent the limits of CTime");
    return CTime(*seconds);
}

template <class T>
double MjdOf(T const& time) {
    auto const reading = TimeKind<T>::Reading(time);
    return reading ? reading->Mjd() : 0;
}

template <class T>
void SetToMjd(T& time, double mjd, CTovTimeHelper::eRangeType range) {
    if (auto const reading = ReadingWithin(ReadingsOf(range), mjd)) TimeKind<T>::SetReading(time, *reading);
}

template <class T, class Part>
int CompareParts(T const& a, T const& b, Part part) {
    auto const first = TimeKind<T>::Reading(a);
    auto const second = TimeKind<T>::Reading(b);
    if (!first || !second) return static_cast<int>(first.has_value()) - static_cast<int>(second.has_value());
    return TovCompare(part(*first), part(*second));
}

template <class T>
int CompareDatesOf(T const& a, T const& b) {
    return CompareParts(a, b, [](ClockReading const& reading) { return static_cast<double>(reading.day); });
}

template <class T>
int CompareTimesOf(T const& a, T const& b) {
    return CompareParts(a, b, [](ClockReading const& reading) { return reading.second + reading.fraction; });
}

constexpr int secondsOfFlag[] = {1, 60, 3600};

template <class T>
void RoundToSeconds(T& time, int flag, SecondsRange const& range) {
    using Kind = TimeKind<T>;
    auto seconds = Kind::Seconds(time);
    double const fraction = Kind::Fraction(time);
    int const unit = secondsOfFlag[flag];
    auto const below = [unit](std::int64_t at) {
        auto const reading = Kind::ReadingOfSeconds(at);
        return reading ? reading->second % unit : 0;
    };
    // Near the ends of the range, and beyond them, a time stays as it is.
    if (!seconds || *seconds > range.to || *seconds < range.from) return;
    int const rest = below(*seconds);
    if (*seconds - rest < range.from + unit) return;
    if (!SecondsRange{range.from, range.to - unit}.Holds(*seconds, fraction)) return;
    if (flag == CTovTimeHelper::eRoundToSecond ? fraction >= 0.5 : rest >= unit / 2) *seconds += unit;
    Kind::SetSeconds(time, *seconds - below(*seconds), 0);
}

template <class T>
void RoundToUnit(T& time, double unit, SecondsRange const& range) {
    using Kind = TimeKind<T>;
    auto const seconds = Kind::Seconds(time);
    auto const rounded = RoundFraction(Kind::Fraction(time), unit);
    if (!seconds || !rounded) return;
    if (!rounded->full) {
        Kind::SetSeconds(time, *seconds, rounded->fraction);
    } else if (range.Holds(*seconds, 0) && *seconds < range.to) {
        Kind::SetSeconds(time, *seconds + 1, 0);
    }
}

template <class T>
double RoundByFlag(T& time, int flag, SecondsRange const& range) {
    flag &= roundFlagMask;
    if (flag <= CTovTimeHelper::eRoundToHour) {
        RoundToSeconds(time, flag, range);
    } else if (double const unit = UnitOfFlag(flag); unit > 0) {
        RoundToUnit(time, unit, range);
    }
    return MjdOf(time);
}

}  // namespace

SecondsRange LocalRange() {
    return {CTovTimeHelper::MinCTime().GetTime(), CTovTimeHelper::MaxCTime().GetTime()};
}

double UnitOfFlag(int flag) {
    switch (flag) {
        case CTovTimeHelper::eRoundToMillisecond:
            return 0.001;
        case CTovTimeHelper::eRoundToTenth:
            return 0.1;
        case CTovTimeHelper::eRoundToHundredth:
            return 0.01;
        case CTovTimeHelper::eRoundToMicrosecond:
            return 1e-6;
        default:
            return 0;
    }
}

std::optional<CountedFraction> RoundFraction(double fraction, double unit) {
    if (!(unit > 0 && unit <= 1)) return std::nullopt;
    double const perSecond = 1 / unit;
    if (!std::isfinite(perSecond)) return std::nullopt;
    double const count = std::rint(fraction / unit);
    if (count >= std::rint(perSecond)) return CountedFraction{true, 0};
    return CountedFraction{false, count / perSecond};
}

CTime CTovTimeHelper::MinCTime() {
    static CTime const limit = LimitOfReading(ReadingsOf(eRangeCTime).from);
    return limit;
}

CTime CTovTimeHelper::MaxCTime() {
    static CTime const limit = LimitOfReading(ReadingsOf(eRangeCTime).to);
    return limit;
}

COleDateTime CTovTimeHelper::MinOleDateTime() {
    return OleOfReading(minOleReading);
}

COleDateTime CTovTimeHelper::MaxOleDateTime() {
    return OleOfReading(maxOleReading);
}

COleDateTime CTovTimeHelper::MinDateTimeCtrlAsOleDateTime() {
    return OleOfReading(ReadingsOf(eRangeDateTimeCtrl).from);
}

COleDateTime CTovTimeHelper::MaxDateTimeCtrlAsOleDateTime() {
    return OleOfReading(ReadingsOf(eRangeDateTimeCtrl).to);
}

double CTovTimeHelper::MinCTimeAsMjd() {
    return ReadingsOf(eRangeCTime).from.Mjd();
}

double CTovTimeHelper::MaxCTimeAsMjd() {
    return ReadingsOf(eRangeCTime).to.Mjd();
}

double CTovTimeHelper::MinOleDateTimeAsMjd() {
    return minOleReading.Mjd();
}

double CTovTimeHelper::MaxOleDateTimeAsMjd() {
    return maxOleReading.Mjd();
}

double CTovTimeHelper::MinDateTimeCtrlAsMjd() {
    return ReadingsOf(eRangeDateTimeCtrl).from.Mjd();
}

double CTovTimeHelper::MaxDateTimeCtrlAsMjd() {
    return ReadingsOf(eRangeDateTimeCtrl).to.Mjd();
}

void CTovTimeHelper::GetPhysicalRange(CTime& from, CTime& to) {
    from = MinCTime();
    to = MaxCTime();
}

void CTovTimeHelper::GetPhysicalRange(CTovTime& from, CTovTime& to) {
    from = MinCTime();
    to = MaxCTime();
}

void CTovTimeHelper::GetPhysicalRange(COleDateTime& from, COleDateTime& to, eRangeType range) {
    from = OleOfReading(ReadingsOf(range).from);
    to = OleOfReading(ReadingsOf(range).to);
}

void CTovTimeHelper::GetPhysicalRange(double& fromMjd, double& toMjd, eRangeType range) {
    fromMjd = ReadingsOf(range).from.Mjd();
    toMjd = ReadingsOf(range).to.Mjd();
}

void CTovTimeHelper::GetPhysicalRange(SYSTEMTIME& from, SYSTEMTIME& to, eRangeType range) {
    OleOfReading(ReadingsOf(range).from).GetAsSystemTime(from);
    OleOfReading(ReadingsOf(range).to).GetAsSystemTime(to);
}

int CTovTimeHelper::CompareDates(CTime const& a, CTime const& b) {
    return CompareDatesOf(a, b);
}

int CTovTimeHelper::CompareDates(COleDateTime const& a, COleDateTime const& b) {
    return CompareDatesOf(a, b);
}

int CTovTimeHelper::CompareDates(CTovTime const& a, CTovTime const& b) {
    return CompareDatesOf(a, b);
}

int CTovTimeHelper::CompareTimes(CTime const& a, CTime const& b) {
    return CompareTimesOf(a, b);
}

int CTovTimeHelper::CompareTimes(COleDateTime const& a, COleDateTime const& b) {
    return CompareTimesOf(a, b);
}

int CTovTimeHelper::CompareTimes(CTovTime const& a, CTovTime const& b) {
    return CompareTimesOf(a, b);
}

double CTovTimeHelper::GetMjd(CTime const& time) {
    return MjdOf(time);
}

double CTovTimeHelper::GetMjd(COleDateTime const& time) {
    return MjdOf(time);
}

double CTovTimeHelper::GetMjd(CTovTime const& time) {
    return MjdOf(time);
}

void CTovTimeHelper::SetMjd(double mjd, CTime& time) {
    SetToMjd(time, mjd, eRangeCTime);
}

void CTovTimeHelper::SetMjd(double mjd, COleDateTime& time) {
    SetToMjd(time, mjd, eRangeOleDateTime);
}

void CTovTimeHelper::SetMjd(double mjd, CTovTime& time) {
    SetToMjd(time, mjd, eRangeCTime);
}

void CTovTimeHelper::SetMjd(unsigned long day, double fraction, double secondDivisor, CTovTime& time,
                            double& second) {
    second = 0;
    ReadingRange const& range = ReadingsOf(eRangeCTime);
    double const whole = std::floor(fraction);
    double const days = static_cast<double>(day) + whole;
    if (!(days >= static_cast<double>(range.from.day) && days <= static_cast<double>(range.to.day))) return;
    double const seconds = (fraction - whole) * secondsPerDay;
    double const fullSeconds = std::floor(seconds);
    auto const rounded = RoundFraction(seconds - fullSeconds, secondDivisor);
    if (!rounded) return;
    ClockReading const reading =
        ClockReading::OfSeconds(static_cast<std::int64_t>(days) * secondsPerDay +
                                    static_cast<int>(fullSeconds) + (rounded->full ? 1 : 0),
                                rounded->fraction);
    if (range.Holds(reading) && TimeKind<CTovTime>::SetReading(time, reading))
        second = reading.second % 60 + reading.fraction;
}

void CTovTimeHelper::Mjd2Ymd(double const& mjd, long& year, long& month, long& day, long& hour, long& minute,
                             long& second, double& fraction) {
    if (!(std::abs(mjd) <= maxCalendarDays)) {
        year = month = day = hour = minute = second = 0;
        fraction = 0;
        return;
    }
    ClockReading const reading = SplitMjd(mjd);
    CalendarDate const date = DateOfMjd(reading.day);
    year = date.year;
    month = date.month;
    day = date.day;
    hour = reading.Hour();
    minute = reading.Minute();
    second = reading.second % 60;
    fraction = reading.fraction;
}

double CTovTimeHelper::GetSecond(CTovTime const& time) {
    return time.GetSecond() + time.GetFracSecond();
}

double CTovTimeHelper::Round(CTime& time, eRoundFlag flag) {
    return RoundByFlag(time, flag, LocalRange());
}

double CTovTimeHelper::Round(COleDateTime& time, eRoundFlag flag) {
    return RoundByFlag(time, flag, ReadingsOf(eRangeOleDateTime).Seconds());
}

double CTovTimeHelper::Round(CTovTime& time, eRoundFlag flag) {
    return RoundByFlag(time, flag, LocalRange());
}

double CTovTimeHelper::Round(CTovTime& time, double unit) {
    RoundToUnit(time, unit, LocalRange());
    return MjdOf(time);
}

}  // namespace tov
