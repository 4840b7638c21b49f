#include <tov310/compare.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace tov {

int TovCompare(char const* a, char const* b) {
    return std::strcmp(a != nullptr ? a : "", b != nullptr ? b : "");
}

int TovCompare(int a, int b) {
    return (a > b) - (a < b);  // the difference itself could overflow
}

int TovCompare(double a, double b) {
    constexpr double e = std::numeric_limits<double>::epsilon();
    if (a == b) return 0;  // also two infinities, which have no difference
    if (std::isnan(a) || std::isnan(b))
        return static_cast<int>(std::isnan(a)) - static_cast<int>(std::isnan(b));
    if (std::abs(a - b) < e * std::max(std::abs(a), std::abs(b)) + e) return 0;
    return a < b ? -1 : 1;
}

}  // namespace tov
