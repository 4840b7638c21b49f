#include <tov310/compare.h>
#include <tov310/time_helper.h>
#include <tov310/tov_time.h>

#include "values/calendar_readings.h"
#include "values/tov_time_format.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>
#include <string_view>

namespace tov {
namespace {

constexpr double maxZoneHours = 1e10;  // keeps within the calendar

constexpr CTovTimeHelper::eRoundFlag RoundFlag(int round) {
    return static_cast<CTovTimeHelper::eRoundFlag>(round);
}

// Seconds by which the clock that the fields tell is ahead of UTC.
int SecondsEast(CTime time, std::tm const& local) {
    std::tm utc{};
    if (time.GetGmtTm(&utc) == nullptr) return 0;
    int const days =
        local.tm_year != utc.tm_year ? (local.tm_year > utc.tm_year ? 1 : -1) : local.tm_yday - utc.tm_yday;
    return ((days * 24 + local.tm_hour - utc.tm_hour) * 60 + local.tm_min - utc.tm_min) * 60 + local.tm_sec -
           utc.tm_sec;
}

// Of the zone's standard time: while daylight saving time is in force, that of the last moment without it.
int StandardSecondsEast(CTime now, std::tm const& local) {
    for (int week = 1; local.tm_isdst > 0 && week <= 54; ++week) {
        CTime const then = now - CTimeSpan(7 * week, 0, 0, 0);
        std::tm fields{};
        if (then.GetLocalTm(&fields) != nullptr && fields.tm_isdst <= 0) return SecondsEast(then, fields);
    }
    return SecondsEast(now, local) - (local.tm_isdst > 0 ? 3600 : 0);
}

struct SystemZone {
    double daylight = 0;  // hours
    double hours = CTovTime::LocalTimeZone(daylight);

    static SystemZone const& Instance() {
        static SystemZone const zone;
        return zone;
    }
};

// What every new time begins with.
double FirstZone() {
    EnsureCurrentTimeFormat();
    return SystemZone::Instance().hours;
}

struct FileStamp {
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    double second = 0;
};

bool SplitStamp(double stamp, FileStamp& fields) {
    if (!(stamp >= 0 && stamp < 1e8)) return false;
    double whole = 0;
    double const part = std::modf(stamp, &whole);
    // Digits cut from the number as it stands would miss the fields of one stamp in sixty, so the time of the
    // day is counted in what the number resolves: thousandths of a second, hundredths with a long year.
    auto date = static_cast<int>(whole);
    long long time = date < 1'000'000 ? std::llround(part * 1e9) : 10 * std::llround(part * 1e8);
    date += static_cast<int>(time / 1'000'000'000);
    time %= 1'000'000'000;
    fields.year = date / 10'000;
    fields.month = date / 100 % 100;
    fields.day = date % 100;
    fields.hour = static_cast<int>(time / 10'000'000);
    fields.minute = static_cast<int>(time / 100'000 % 100);
    fields.second = static_cast<double>(time % 100'000) / 1000;
    return true;
}

}  // namespace

CTovTime::CTovTime() : CTovTime(CTime::GetCurrentTime()) {}

CTovTime::CTovTime(CTime const& time) : CTime(time), m_dTimezone(FirstZone()) {}

CTovTime::CTovTime(std::int64_t seconds) : CTovTime(CTime(seconds)) {}

CTovTime::CTovTime(int year, int month, int day, int hour, int minute, int second, int isDst)
    : CTovTime(CTime(year, month, day, hour, minute, second, isDst)) {}

CTovTime::CTovTime(unsigned short dosDate, unsigned short dosTime, int isDst)
    : CTovTime(CTime(dosDate, dosTime, isDst)) {}

CTovTime::CTovTime(SYSTEMTIME const& time, int isDst) : CTovTime(CTime(time, isDst)) {}

CTovTime::CTovTime(FILETIME const& time, int isDst) : CTovTime(CTime(time, isDst)) {}

CTovTime::CTovTime(CString const& text, CString const& format) : CTovTime(CTime()) {
    ScanTime(text, format);
}

CTovTime::CTovTime(int gpsWeek, double seconds) : CTovTime(CTime()) {
    SetGpsTime(gpsWeek, seconds);
}

CTovTime::CTovTime(double mjd) : CTovTime(CTime()) {
    Mjd(mjd);
}

CTovTime& CTovTime::operator=(CTime const& time) {
    CTime::operator=(time);
    m_dFracSecond = 0;
    return *this;
}

CTovTime& CTovTime::operator=(double const& mjd) {
    Mjd(mjd);
    return *this;
}

CTovTime::operator double() const {
    return CTovTimeHelper::GetMjd(*this);
}

int CTovTime::Compare(CTovTime const& a, CTovTime const& b) {
    return TovCompare(a.MjdUTC(), b.MjdUTC());
}

double CTovTime::SystemTimezone(int includeDaylight) {
    SystemZone const& zone = SystemZone::Instance();
    return zone.hours + (includeDaylight != 0 ? zone.daylight : 0);
}

double CTovTime::SystemTimezoneMjd(int includeDaylight) {
    return SystemTimezone(includeDaylight) / 24.0;
}

double CTovTime::SystemDaylight() {
    return SystemZone::Instance().daylight;
}

double CTovTime::SystemDaylightMjd() {
    return SystemDaylight() / 24.0;
}

double CTovTime::LocalTimeZone(double& daylight) {
    daylight = 0;
    CTime const now = CTime::GetCurrentTime();
    std::tm local{};
    if (now.GetLocalTm(&local) == nullptr) return 0;
    daylight = local.tm_isdst > 0 ? 1 : 0;
    std::div_t const west = std::div(-StandardSecondsEast(now, local), 3600);
    double const zone = std::abs(west.quot) + std::abs(west.rem / 60) / 60.0;
    return west.quot >= 0 ? 0.0 - zone : zone;
}

void CTovTime::Mjd(double mjd) {
    CTovTimeHelper::SetMjd(mjd, *this);
}

void CTovTime::Mjd(unsigned long day, double fraction, double secondDivisor, double& second) {
    CTovTimeHelper::SetMjd(day, fraction, secondDivisor, *this, second);
}

double CTovTime::Mjd(int year, int month, int day, int hour, int minute, double second) {
    unsigned long wholeDay = 0;
    double dayFraction = 0;
    return Mjd(year, month, day, hour, minute, second, wholeDay, dayFraction);
}

double CTovTime::Mjd(int year, int month, int day, int hour, int minute, double second,
                     unsigned long& wholeDay, double& dayFraction) {
    std::int64_t years = year;
    std::int64_t months = month;
    CarryMonths(years, months);
    auto const date = static_cast<double>(MjdOfDate(years, static_cast<int>(months), day));
    double const time = hour * 3600.0 + minute * 60.0 + second;
    double const carried = std::floor(time / secondsPerDay);
    double const mjd = date + time / secondsPerDay;
    bool const divisible = mjd >= 0 && date + carried < 4294967296.0;
    wholeDay = divisible ? static_cast<unsigned long>(date + carried) : 0;
    dayFraction = divisible ? (time - carried * secondsPerDay) / secondsPerDay : mjd;
    return mjd;
}

double CTovTime::MjdUTC() const {
    std::optional<ClockReading> reading = LocalReading(GetTime());
    if (!reading) return 0;
    reading->fraction = m_dFracSecond;
    return reading->Mjd() + m_dTimezone / 24.0;
}

void CTovTime::MjdUTC(double mjd) {
    Mjd(mjd - m_dTimezone / 24.0);
}

double CTovTime::CurrentTime() {
    return CTovTimeHelper::GetMjd(CTime::GetCurrentTime());
}

double CTovTime::CurrentTimeUTC(int includeDaylight) {
    return CurrentTime() - SystemTimezoneMjd(includeDaylight);
}

double CTovTime::SetGpsTime(int week, double seconds) {
    double const mjd = GpsTime(week, seconds);
    Mjd(mjd);
    return mjd;
}

double CTovTime::GpsTime(int week, double seconds) {
    return week * 7.0 + mjdOfGpsEpoch + seconds / secondsPerDay;
}

int CTovTime::GetGpsTime(int& week, double& seconds) const {
    week = 0;
    seconds = 0;
    std::optional<ClockReading> const reading = LocalReading(GetTime());
    if (!reading) return 0;
    // Counted in whole seconds, so that nothing of them is lost in a number of days.
    std::int64_t const days = reading->day - mjdOfGpsEpoch;
    std::int64_t const weeks = days / 7 - (days % 7 < 0 ? 1 : 0);
    if (weeks < std::numeric_limits<int>::min() || weeks > std::numeric_limits<int>::max()) return 0;
    week = static_cast<int>(weeks);
    seconds = static_cast<double>((days - 7 * weeks) * secondsPerDay + reading->second) + m_dFracSecond;
    seconds = std::min(seconds, std::nextafter(7.0 * secondsPerDay, 0));  // the sum may be rounded up
    return week >= 0 ? 1 : 0;
}

double CTovTime::CduFilestamp(double stamp) {
    FileStamp fields;
    if (!SplitStamp(stamp, fields)) return 0;
    if (fields.year < 100) fields.year += fields.year < 50 ? 2000 : 1900;
    return Mjd(fields.year, fields.month, fields.day, fields.hour, fields.minute, fields.second);
}

double CTovTime::SetCduFilestamp(double stamp) {
    FileStamp fields;
    if (!SplitStamp(stamp, fields)) return 0;
    fields.year += fields.year < 71 ? 2000 : 1900;
    unsigned long day = 0;
    double fraction = 0;
    double second = 0;
    double const mjd =
        Mjd(fields.year, fields.month, fields.day, fields.hour, fields.minute, fields.second, day, fraction);
    Mjd(day, fraction, 0.001, second);
    return mjd;
}

CString CTovTime::Format(int round) const {
    return CTovTimeHelper::Format(*this, RoundFlag(round));
}

CString CTovTime::Format(char const* format, int round) const {
    return CTovTimeHelper::Format(*this, format, RoundFlag(round));
}

CString CTovTime::Format(eTimeFormat format, int round) const {
    return Format(TimeFormat(format), round);
}

CString CTovTime::Format(HINSTANCE module, unsigned int id, int round) const {
    return Format(FormatFromResource(module, id).c_str(), round);
}

CString CTovTime::FormatDate(int round) const {
    return CTovTimeHelper::FormatDate(*this, RoundFlag(round));
}

CString CTovTime::FormatTime(int round) const {
    return CTovTimeHelper::FormatTime(*this, RoundFlag(round));
}

CTovTime CTovTime::InZone(double hours) const {
    CTovTime time(*this);
    std::optional<ClockReading> const reading = LocalReading(GetTime());
    if (!reading || !(std::abs(hours) < maxZoneHours)) return time;
    std::int64_t const shifted = reading->Seconds() + std::llround(hours * 3600);
    if (auto const moment = MomentOfLocal(ClockReading::OfSeconds(shifted, 0))) {
        time = CTime(*moment);
        time.m_dFracSecond = m_dFracSecond;
    }
    return time;
}

CString CTovTime::FormatUTC(int round) const {
    return InZone(m_dTimezone).Format(round);
}

CString CTovTime::FormatUTC(char const* format, int round) const {
    return InZone(m_dTimezone).Format(format, round);
}

CString CTovTime::FormatUTC(eTimeFormat format, int round) const {
    return InZone(m_dTimezone).Format(format, round);
}

CString CTovTime::FormatUTC(double hours, int round) const {
    return InZone(hours).Format(round);
}

CString CTovTime::FormatDateUTC(int round) const {
    return InZone(m_dTimezone).FormatDate(round);
}

CString CTovTime::FormatDateUTC(double hours, int round) const {
    return InZone(hours).FormatDate(round);
}

CString CTovTime::FormatTimeUTC(int round) const {
    return InZone(m_dTimezone).FormatTime(round);
}

CString CTovTime::FormatTimeUTC(double hours, int round) const {
    return InZone(hours).FormatTime(round);
}

CString CTovTime::FormatFracSec(int round) const {
    CTovTime rounded(*this);
    rounded.Round(round);
    int const flag = round & 0x7F;
    int const decimals = flag == CTovTimeHelper::eRoundToTenth       ? 1
                         : flag == CTovTimeHelper::eRoundToHundredth ? 2
                                                                     : 3;
    double fraction = rounded.m_dFracSecond;
    if (flag == CTovTimeHelper::eRoundToMicrosecond) fraction = std::floor(fraction * 1000) / 1000;
    char text[8];  // like "0.125"
    auto const end =
        std::to_chars(text, text + sizeof text, fraction, std::chars_format::fixed, decimals).ptr;
    std::string_view printed(text, end);
    if (printed.front() != '0') printed = std::string_view("0.999").substr(0, printed.size());
    return CString(printed.substr(1));
}

double CTovTime::Round(int round) {
    return CTovTimeHelper::Round(*this, RoundFlag(round));
}

}  // namespace tov
