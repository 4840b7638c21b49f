// Exact decimals of a double in 128-bit integers: the oracle for everything that rounds.
#pragma once

#include <cmath>
#include <cstdint>

namespace tov::test {

__extension__ using Wide = unsigned __int128;

// The magnitude of the value times 10^digits, rounded half up; for magnitudes below 2^20 and at most 13
// digits.
inline std::uint64_t ExactScaled(double value, int digits) {
    int exponent = 0;
    auto mantissa = static_cast<std::uint64_t>(std::ldexp(std::frexp(std::fabs(value), &exponent), 53));
    exponent -= 53;
    Wide scaled = mantissa;
    for (int i = 0; i < digits; ++i)
        scaled *= 10;
    if (exponent >= 0) return static_cast<std::uint64_t>(scaled << exponent);
    if (exponent < -126) return 0;
    Wide const half = Wide{1} << (-exponent - 1);
    return static_cast<std::uint64_t>((scaled + half) >> -exponent);
}

}  // namespace tov::test
