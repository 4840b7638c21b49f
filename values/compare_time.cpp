#include <tov310/compare.h>
#include <tov310/time_helper.h>
#include <tov310/tov_time.h>

namespace tov {
namespace {

template <class T>
int CompareDateParts(T const& a, T const& b) {
    return CTovTimeHelper::DatePartEqual(a, b) ? 0 : CTovTimeHelper::DatePartLess(a, b) ? -1 : 1;
}

template <class T>
int CompareTimeParts(T const& a, T const& b) {
    return CTovTimeHelper::TimePartEqual(a, b) ? 0 : CTovTimeHelper::TimePartLess(a, b) ? -1 : 1;
}

// What is no date comes before all dates.
bool IsDate(COleDateTime const& date) {
    return date.GetStatus() == COleDateTime::valid;
}

}  // namespace

int TovCompare(CTovTime const& a, CTovTime const& b) {
    return TovCompare(a.MjdUTC(), b.MjdUTC());
}

int TovCompare(CTovTime const& a, CTime const& b) {
    return TovCompare(a, CTovTime(b));
}

int TovCompare(CTime const& a, CTovTime const& b) {
    return TovCompare(CTovTime(a), b);
}

int TovCompare(CTime const& a, CTime const& b) {
    return (a > b) - (a < b);
}

int TovCompare(COleDateTime const& a, COleDateTime const& b) {
    if (!IsDate(a) || !IsDate(b)) return static_cast<int>(IsDate(a)) - static_cast<int>(IsDate(b));
    return TovCompare(CTovTimeHelper::GetMjd(a), CTovTimeHelper::GetMjd(b));
}

int TovCompareDatePart(CTovTime const& a, CTovTime const& b) {
    return CompareDateParts(a, b);
}

int TovCompareDatePart(CTime const& a, CTime const& b) {
    return CompareDateParts(a, b);
}

int TovCompareDatePart(COleDateTime const& a, COleDateTime const& b) {
    return CompareDateParts(a, b);
}

int TovCompareTimePart(CTovTime const& a, CTovTime const& b) {
    return CompareTimeParts(a, b);
}

int TovCompareTimePart(CTime const& a, CTime const& b) {
    return CompareTimeParts(a, b);
}

int TovCompareTimePart(COleDateTime const& a, COleDateTime const& b) {
    return CompareTimeParts(a, b);
}

}  // namespace tov
