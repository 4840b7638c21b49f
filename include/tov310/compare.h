// Comparisons for sorting. Every function answers a negative number, zero or a positive one.
#pragma once

#include <tov310/export.h>

namespace tov {

// By bytes, as strcmp does, which for UTF-8 is by code points. Null counts as empty.
TOV_CORE_API int TovCompare(char const* a, char const* b);

TOV_CORE_API int TovCompare(int a, int b);

// Equal when |a - b| < e * max(|a|, |b|) + e with e = 2^-52. A NaN equals a NaN and comes behind every
// number. The tolerance makes this relation not transitive: sort with it by merging (std::stable_sort).
TOV_CORE_API int TovCompare(double a, double b);

}  // namespace tov
