#include <tov310/compare.h>
#include <tov310/time_helper.h>
#include <tov310/tov_time.h>

#include "values/calendar_readings.h"
#include "values/tov_time_format.h"

namespace tov {

CTovTimeSpan::CTovTimeSpan(std::int64_t seconds) : CTimeSpan(seconds) {}

CTovTimeSpan::CTovTimeSpan(long days, int hours, int minutes, int seconds)
    : CTimeSpan(days, hours, minutes, seconds) {}

CTovTimeSpan::CTovTimeSpan(double days) {
    Mjd(days);
}

CTovTimeSpan::CTovTimeSpan(int gpsWeeks, double const& seconds) {
    SetGpsTimeSpan(gpsWeeks, seconds);
}

CTovTimeSpan& CTovTimeSpan::operator=(CTimeSpan const& span) {
    CTimeSpan::operator=(span);
    m_dFracSecond = 0;
    return *this;
}

CTovTimeSpan::operator double() const {
    return CTovTimeSpanHelper::GetMjd(*this);
}

int CTovTimeSpan::Compare(CTovTimeSpan const& a, CTovTimeSpan const& b) {
    return TovCompare(CTovTimeSpanHelper::GetMjd(a), CTovTimeSpanHelper::GetMjd(b));
}

void CTovTimeSpan::Mjd(double mjd) {
    if (!HasSeconds(mjd)) return;
    long days = 0;
    long hours = 0;
    long minutes = 0;
    long seconds = 0;
    double fraction = 0;
    CTovTimeSpanHelper::Mjd2Hms(mjd, days, hours, minutes, seconds, fraction);
    *this = CTimeSpan(days, static_cast<int>(hours), static_cast<int>(minutes), static_cast<int>(seconds));
    SetFracSecond(fraction);
}

void CTovTimeSpan::SetGpsTimeSpan(int week, double const& seconds) {
    Mjd(week * 7.0 + seconds / 86400.0);
}

int CTovTimeSpan::GetGpsTimeSpan(int& week, double& seconds) const {
    constexpr std::int64_t secondsOfWeek = 7 * secondsPerDay;
    std::int64_t const weeks = GetTimeSpan() / secondsOfWeek;
    week = 0;
    seconds = 0;
    if (weeks != static_cast<int>(weeks)) return 0;
    week = static_cast<int>(weeks);
    seconds = static_cast<double>(GetTimeSpan() % secondsOfWeek) + m_dFracSecond;
    return 1;
}

double CTovTimeSpan::Round(int round) {
    return CTovTimeSpanHelper::Round(*this, static_cast<CTovTimeSpanHelper::eRoundFlag>(round));
}

CString CTovTimeSpan::Format(char const* format, int round) const {
    return CTovTimeSpanHelper::Format(*this, format, static_cast<CTovTimeSpanHelper::eRoundFlag>(round));
}

CString CTovTimeSpan::Format(HINSTANCE module, unsigned int id, int round) const {
    return Format(FormatFromResource(module, id).c_str(), round);
}

}  // namespace tov
