// The comparison of numbers as one for sorts that do it by the million.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

namespace tov {

// TovCompare(double, double); compare.h says how.
inline int CompareDoubles(double a, double b) {
    constexpr double e = std::numeric_limits<double>::epsilon();
    if (a == b) return 0;  // also two infinities, which have no difference
    if (std::isnan(a) || std::isnan(b))
        return static_cast<int>(std::isnan(a)) - static_cast<int>(std::isnan(b));
    if (std::abs(a - b) < e * std::max(std::abs(a), std::abs(b)) + e) return 0;
    return a < b ? -1 : 1;
}

}  // namespace tov
