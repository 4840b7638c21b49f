#include <tov310/packed_angle.h>

#include "vesk/cpu.h"
#include "vesk/packed_split.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tov {
namespace {

// Factors as a sum of two doubles, so that a conversion errs by its last rounding only.
struct Factor {
    double high;
    double low;
};
constexpr Factor degreesPerRadian{57.29577951308232, -1.9878495670576283e-15};   // 180 / pi
constexpr Factor gonPerRadian{63.66197723675813, 9.492459733141914e-16};         // 200 / pi
constexpr Factor radiansPerSecond{4.84813681109536e-06, 9.320078015422868e-23};  // pi / 648000
constexpr Factor radiansPerGon{0.015707963267948967, -7.754553812077691e-19};    // pi / 200

constexpr double exactIntegers = 9007199254740992.0;  // 2^53

// An unevaluated sum; low is small against high.
struct Sum {
    double high;
    double low;
};

TOV_INLINE Sum Product(double a, double b) {
    double const high = a * b;
    return {high, std::fma(a, b, -high)};
}

TOV_INLINE Sum Product(double a, Factor const& b) {
    Sum const product = Product(a, b.high);
    return {product.high, std::fma(a, b.low, product.low)};
}

// The same value with the low part within half a unit of the high one; a value below 0 by less than rounding
// is 0.
TOV_INLINE Sum Normalized(Sum const& value) {
    double const high = value.high + value.low;
    if (high < 0) return {0, 0};
    return {high, value.low - (high - value.high)};
}

TOV_INLINE Sum Quotient(Sum const& value, double divisor) {
    double const high = value.high / divisor;
    return {high, (std::fma(-high, divisor, value.high) + value.low) / divisor};
}

// Nearest whole number of a normalised value that is not negative, half away from zero; exact, given that the
// value is below 2^63.
TOV_INLINE std::uint64_t RoundHalfUp(Sum const& value) {
    if (value.high >= exactIntegers) {
        // Here the high part is a whole number.
        auto const low = static_cast<std::int64_t>(std::floor(value.low + 0.5));
        return static_cast<std::uint64_t>(value.high) + static_cast<std::uint64_t>(low);
    }
    double const whole = std::floor(value.high);
    // This difference is exact, and unless it is 0 it outweighs the low part.
    double const aboveHalf = (value.high - whole) - 0.5;
    bool const up = aboveHalf > 0 || (aboveHalf == 0 && value.low >= 0);
    return static_cast<std::uint64_t>(whole) + (up ? 1 : 0);
}

TOV_INLINE double Signed(bool negative, double magnitude) {
    return negative && magnitude != 0 ? -magnitude : magnitude;
}

TOV_INLINE int LimitToInt(double value) {
    constexpr int most = std::numeric_limits<int>::max();
    return value >= most ? most : static_cast<int>(value);
}

TOV_INLINE double PowerOfTen(int exponent) {
    return static_cast<double>(powersOfTen[exponent]);
}

TOV_INLINE double WithinCircle(double whole, bool limit, AngleSystem const& system) {
    return limit && whole >= system.circle ? std::fmod(whole, system.circle) : whole;
}

// An angle so large that its double has no minutes; one that overflows is the largest.
TOV_INLINE double WholeUnits(double whole, bool limit, AngleSystem const& system) {
    return WithinCircle(std::min(whole, std::numeric_limits<double>::max()), limit, system);
}

// An angle as whole units and an exact rest of them, 0 <= rest < 1.
struct WholeAndRest {
    double whole;
    Sum rest;
};

TOV_INLINE WholeAndRest CutWhole(Sum const& value) {
    double whole = std::floor(value.high);
    double rest = value.high - whole;
    if (rest + value.low < 0) {
        whole -= 1;
        rest += 1;
    } else if (rest + value.low >= 1) {
        whole += 1;
        rest -= 1;
    }
    return {whole, {rest, value.low}};
}

// whole + fraction / 10^digits as the nearest double.
TOV_INLINE double JoinDigits(double whole, std::uint64_t fraction, int digits) {
    double const power = PowerOfTen(digits);
    double const all = whole * power + static_cast<double>(fraction);
    if (all < exactIntegers) return all / power;
    return whole + static_cast<double>(fraction) / power;
}

// whole + (minutes * 100 + seconds) / 10000 with one rounding.
TOV_INLINE double JoinPacked(double whole, double minutes, double seconds) {
    double const digits = minutes * 100 + seconds;
    double const lost = seconds - (digits - minutes * 100);
    double const quotient = digits * 1e-4;  // what it lacks is in the rest
    double const rest = (std::fma(-quotient, 10000.0, digits) + lost) * 1e-4;
    double const sum = whole + quotient;
    return sum + (quotient - (sum - whole) + rest);
}

TOV_INLINE double JoinCarried(int sign, double whole, double minutes, double seconds,
                              AngleSystem const& system) {
    double const fullMinutes = std::floor(seconds / system.seconds);
    if (fullMinutes > 0) {
        minutes += fullMinutes;
        seconds = std::fmod(seconds, system.seconds);
    }
    double const fullUnits = std::floor(minutes / system.minutes);
    if (fullUnits > 0) {
        whole += fullUnits;
        minutes = std::fmod(minutes, system.minutes);
    }
    return Signed(sign < 0, JoinPacked(whole, minutes, seconds));
}

// The parts of a packed sexagesimal number without rounding: the digits of degrees and minutes from the
// number rounded to 10 decimals, the seconds the exact rest, which may fall below 0 by less than the
// rounding.
struct ExactParts {
    double degrees;
    double minutes;
    double seconds;
};

TOV_INLINE ExactParts CutExactly(double magnitude) {
    double degrees = std::floor(magnitude);
    double const rest = magnitude - degrees;
    std::uint64_t const digits = RoundHalfUp(Product(rest, 1e10));
    double minutes = static_cast<double>(digits / 100000000);
    double seconds = std::fma(rest, 100.0, -minutes) * 100;
    if (minutes >= 100) {
        degrees += 1;
        minutes = 0;
    }
    return {degrees, minutes, seconds};
}

}  // namespace

TOV_FUSED_CLONE PackedParts SplitPacked(double packed, int decimals, bool limit, AngleSystem const& system) {
    PackedParts parts;
    parts.decimals = std::clamp(decimals, 0, maxSplitDecimals);
    if (!std::isfinite(packed)) return parts;
    double const magnitude = std::fabs(packed);
    double whole = std::floor(magnitude);
    double rest = magnitude - whole;
    int const digits = 4 + parts.decimals;
    std::uint64_t count = RoundHalfUp(Product(rest, PowerOfTen(digits)));
    std::uint64_t const perSecond = powersOfTen[parts.decimals];

    if (count >= powersOfTen[digits]) {
        count = 0;
        rest = 0;
        whole += 1;
    }
    // Multiplying is faster than dividing and errs by one at the most.
    std::uint64_t const perMinute = 100 * perSecond;
    auto minutes = static_cast<unsigned>(rest * 100);
    if (count < minutes * perMinute) --minutes;
    std::uint64_t seconds = count - minutes * perMinute;
    if (seconds >= perMinute) {
        seconds -= perMinute;
        ++minutes;
    }
    if (seconds >= system.seconds * perSecond) {
        seconds -= system.seconds * perSecond;
        ++minutes;
    }
    if (minutes >= system.minutes) {
        minutes -= system.minutes;
        whole += 1;
    }
    whole = WithinCircle(whole, limit, system);
    parts.whole = LimitToInt(whole);
    parts.minutes = static_cast<int>(minutes);
    parts.seconds = seconds;
    parts.negative = packed < 0 && (parts.whole != 0 || minutes != 0 || seconds != 0);
    return parts;
}

TOV_FUSED_CLONE double VeskPackedDmsToRad(double packed) {
    if (!std::isfinite(packed)) return packed;
    // Whole degrees beyond all minutes; their seconds might overflow.
    if (std::fabs(packed) >= exactIntegers) return packed * 0.017453292519943295;
    ExactParts const parts = CutExactly(std::fabs(packed));
    double const fullSeconds = parts.degrees * 3600 + parts.minutes * 60;
    double const all = fullSeconds + parts.seconds;
    double const lost = parts.seconds - (all - fullSeconds);
    Sum const radians = Product(all, radiansPerSecond);
    return Signed(packed < 0, radians.high + (radians.low + lost * radiansPerSecond.high));
}

TOV_FUSED_CLONE double VeskRadToPackedDms(double radians, int decimals, unsigned long limit) {
    if (!std::isfinite(radians)) return radians;
    Sum const value = Product(std::fabs(radians), degreesPerRadian);
    if (!(value.high < exactIntegers))
        return Signed(radians < 0, WholeUnits(value.high, limit != 0, sexagesimal));
    WholeAndRest const angle = CutWhole(value);
    double degrees = angle.whole;
    Sum seconds = Product(angle.rest.high, 3600.0);
    seconds.low += angle.rest.low * 3600;

    double packed = 0;
    int const digits = std::min(decimals, 4 + maxSplitDecimals);
    // Digits that the packed double cannot hold are not rounded to: it would come out as "60" then.
    if (digits < 0 || (degrees + 1) * PowerOfTen(digits) >= exactIntegers) {
        // The factor errs upwards, so that the minutes are right or one too many.
        double minutes = static_cast<int>(seconds.high * 0.016666666666666670);
        double rest = (seconds.high - minutes * 60) + seconds.low;
        if (rest < 0 && minutes > 0) {
            minutes -= 1;
            rest += 60;
        }
        // What the packed double cannot tell from a full minute is one: there it jumps from 59.99... to 100.
        double const resolution = 10000 * std::numeric_limits<double>::epsilon() * (degrees + 1);
        if (rest >= 60 - resolution) {
            rest = 0;
            minutes += 1;
        }
        if (minutes >= 60) {
            minutes -= 60;
            degrees += 1;
        }
        degrees = WithinCircle(degrees, limit != 0, sexagesimal);
        packed = JoinPacked(degrees, minutes, std::max(rest, 0.0));
    } else {
        // Below four digits the unit of rounding is a step of the angle, not of the decimal number.
        static constexpr unsigned steps[] = {3600, 600, 60, 10};
        std::uint64_t const perSecond = digits > 4 ? powersOfTen[digits - 4] : 1;
        std::uint64_t count = 0;
        if (digits >= 4) {
            Sum const scaled = Product(seconds.high, static_cast<double>(perSecond));
            count = RoundHalfUp(
                Normalized({scaled.high, scaled.low + seconds.low * static_cast<double>(perSecond)}));
        } else {
            unsigned const step = steps[digits];
            count = step * RoundHalfUp(Normalized(Quotient(seconds, step)));
        }
        std::uint64_t minutes = count / (60 * perSecond);
        count %= 60 * perSecond;
        if (minutes >= 60) {
            minutes -= 60;
            degrees += 1;
        }
        degrees = WithinCircle(degrees, limit != 0, sexagesimal);
        packed = JoinDigits(degrees, minutes * 100 * perSecond + count, std::max(digits, 4));
    }
    return Signed(radians < 0, packed);
}

TOV_FUSED_CLONE double VeskPackedGonToRad(double gon) {
    Sum const radians = Product(gon, radiansPerGon);
    return std::isfinite(gon) ? radians.high + radians.low : gon;
}

TOV_FUSED_CLONE double VeskRadToPackedGon(double radians, int decimals, unsigned long limit) {
    if (!std::isfinite(radians)) return radians;
    Sum const value = Product(std::fabs(radians), gonPerRadian);
    if (!(value.high < exactIntegers))
        return Signed(radians < 0, WholeUnits(value.high, limit != 0, centesimal));
    if (decimals < 0) {
        double const gon = value.high + value.low;
        return Signed(radians < 0, WithinCircle(gon, limit != 0, centesimal));
    }
    int const digits = std::min(decimals, 4 + maxSplitDecimals);
    WholeAndRest const angle = CutWhole(value);
    double const power = PowerOfTen(digits);
    Sum const scaled = Product(angle.rest.high, power);
    std::uint64_t count = RoundHalfUp(Normalized({scaled.high, scaled.low + angle.rest.low * power}));
    double whole = angle.whole + static_cast<double>(count / powersOfTen[digits]);
    count %= powersOfTen[digits];
    whole = WithinCircle(whole, limit != 0, centesimal);
    return Signed(radians < 0, JoinDigits(whole, count, digits));
}

TOV_FUSED_CLONE void VeskSplitPackedDms(double packed, int& sign, int& degrees, int& minutes, double& seconds,
                                        int decimals, int limit) {
    if (decimals < 0 && std::isfinite(packed)) {
        ExactParts parts = CutExactly(std::fabs(packed));
        parts.seconds = std::max(parts.seconds, 0.0);
        if (parts.seconds >= 60) {
            parts.seconds -= 60;
            parts.minutes += 1;
        }
        if (parts.minutes >= 60) {
            parts.minutes -= 60;
            parts.degrees += 1;
        }
        parts.degrees = WithinCircle(parts.degrees, limit != 0, sexagesimal);
        degrees = LimitToInt(parts.degrees);
        minutes = static_cast<int>(parts.minutes);
        seconds = parts.seconds;
        sign = packed < 0 && (degrees != 0 || minutes != 0 || seconds != 0) ? -1 : 1;
        return;
    }
    PackedParts const parts = SplitPacked(packed, decimals, limit != 0, sexagesimal);
    sign = parts.negative ? -1 : 1;
    degrees = parts.whole;
    minutes = parts.minutes;
    seconds = static_cast<double>(parts.seconds) / PowerOfTen(parts.decimals);
}

TOV_FUSED_CLONE void VeskSplitPackedGon(double packed, int& sign, int& gon, int& c, double& cc, int decimals,
                                        int limit) {
    // Without rounding every digit of a gon number is told apart by the most decimals.
    PackedParts const parts =
        SplitPacked(packed, decimals < 0 ? maxSplitDecimals : decimals, limit != 0, centesimal);
    sign = parts.negative ? -1 : 1;
    gon = parts.whole;
    c = parts.minutes;
    cc = static_cast<double>(parts.seconds) / PowerOfTen(parts.decimals);
}

TOV_FUSED_CLONE double VeskJoinPackedDms(int sign, int degrees, int minutes, double seconds) {
    return JoinCarried(sign, degrees, minutes, seconds, sexagesimal);
}

TOV_FUSED_CLONE double VeskJoinPackedGon(int sign, int gon, int c, double cc) {
    return JoinCarried(sign, gon, c, cc, centesimal);
}

TOV_FUSED_CLONE double VeskJoinDecimalDeg(int sign, int degrees, int minutes, double seconds) {
    return Signed(sign < 0, degrees + (minutes * 60.0 + seconds) / 3600);
}

}  // namespace tov
