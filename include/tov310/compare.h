// Comparisons for sorting. Every function answers a negative number, zero or a positive one.
#pragma once

#include <tov310/export.h>

namespace tov {

class COleDateTime;
class CTime;
class CTovTime;

// By bytes, as strcmp does, which for UTF-8 is by code points. Null counts as empty.
TOV_CORE_API int TovCompare(char const* a, char const* b);

// The order in which numbers within a text sort by value: runs of the digits 0 to 9 compare as numbers, of
// any length; numbers of equal value are equal however many zeros they begin with; everything else compares
// by bytes. So "a9" < "a10" and "a01" = "a1". Null counts as empty. An order (transitive) of classes of equal
// texts: sort with any algorithm.
TOV_CORE_API int TovStringCompareIS(char const* const& a, char const* const& b);
TOV_CORE_API int TovCompareIS(char const* a, char const* b);

// The same without regard to the case of letters: characters compare as their small letters, in all scripts
// and whatever the locale (simple case folding of Unicode). Bytes that are no UTF-8 come behind all
// characters.
TOV_CORE_API int TovStringCompareNoCaseIS(char const* const& a, char const* const& b);
TOV_CORE_API int TovCompareNoCaseIS(char const* a, char const* b);

TOV_CORE_API int TovCompare(int a, int b);

// Equal when |a - b| < e * max(|a|, |b|) + e with e = 2^-52. A NaN equals a NaN and comes behind every
// number. The tolerance makes this relation not transitive: sort with it by merging (std::stable_sort).
TOV_CORE_API int TovCompare(double a, double b);

// By time: those of CTovTime by their MjdUTC, which like the number of a COleDateTime compares with the
// tolerance. A COleDateTime that is not valid comes before all that are.
TOV_CORE_API int TovCompare(CTovTime const& a, CTovTime const& b);
TOV_CORE_API int TovCompare(CTovTime const& a, CTime const& b);
TOV_CORE_API int TovCompare(CTime const& a, CTovTime const& b);
TOV_CORE_API int TovCompare(CTime const& a, CTime const& b);
TOV_CORE_API int TovCompare(COleDateTime const& a, COleDateTime const& b);

// By the date alone, or by the time of the day alone, of the local reading. What has none comes before all.
TOV_CORE_API int TovCompareDatePart(CTovTime const& a, CTovTime const& b);
TOV_CORE_API int TovCompareDatePart(CTime const& a, CTime const& b);
TOV_CORE_API int TovCompareDatePart(COleDateTime const& a, COleDateTime const& b);
TOV_CORE_API int TovCompareTimePart(CTovTime const& a, CTovTime const& b);
TOV_CORE_API int TovCompareTimePart(CTime const& a, CTime const& b);
TOV_CORE_API int TovCompareTimePart(COleDateTime const& a, COleDateTime const& b);

}  // namespace tov
