// How angles count in the unit that an edit shows.
#include <tov310/angle.h>
#include <tov310/edit_angle_mask.h>
#include <tov310/packed_angle.h>

#include "frame/resource_module.h"

#include <cmath>

namespace tov {
namespace {

constexpr unsigned secondsAbbreviationText = 26133;
constexpr unsigned mgonsAbbreviationText = 26134;

// What SecOnly counts: how many are in a degree or gon, how many of these in a radian, and, as it always was,
// after how many the limit begins again. Nothing for units that have no such form.
struct SmallUnit {
    double perRadian = 0;
    double perWhole = 0;
    double circle = 0;
    unsigned text = 0;

    double Count(double radians) const { return radians * perRadian * perWhole; }
    double Radians(double count) const { return count / perWhole / perRadian; }
};

SmallUnit SmallUnitOf(long unit) {
    switch (unit) {
        case TOV_UNIT_DEGREES:
        case TOV_UNIT_DMS:
        case TOV_UNIT_PACKED_DMS:
            return {57.29577951308232, 3600.0, 360.0, secondsAbbreviationText};
        case TOV_UNIT_GON:
        case TOV_UNIT_PACKED_GON:
            return {63.66197723675813, 1000.0, 400.0, mgonsAbbreviationText};
        default:
            return {};
    }
}

}  // namespace

double CTovEditAngleMask::ConvertStdTo(double radians, int usePrecision, int useLimit) {
    bool const isLimited = m_bLimitToCircle != 0 && useLimit != 0;
    SmallUnit const small = m_bSecOnly != 0 ? SmallUnitOf(Settings().Unit()) : SmallUnit();
    if (small.perRadian != 0) {
        double const count = small.Count(radians);
        if (!isLimited) return count;
        double const power = std::pow(10.0, m_displayDecimals);
        // A number without decimals is round already, and must not overflow.
        double const rounded = std::fabs(count) < 1e15 ? std::round(count * power) / power : count;
        return rounded < small.circle ? rounded : std::fmod(rounded, small.circle);
    }
    if (!isLimited) return m_units.Host().CTovEditValueHost::ConvertStdTo(radians, usePrecision, useLimit);
    CTovValue& value = *m_units.Host().TovValue();
    double shown = 0;
    value.SetDouble(radians);
    value.ConvertStdTo(shown, TOV_UNIT_ANGLE, usePrecision != 0 ? m_displayDecimals : -1, 1UL);
    return shown;
}

double CTovEditAngleMask::ConvertToStd(double shown, int usePrecision, int useLimit) {
    if (m_bSecOnly != 0) {
        int const sign = shown > 0 ? 1 : -1;
        switch (Settings().Unit()) {
            case TOV_UNIT_DMS:
            case TOV_UNIT_PACKED_DMS:
                shown = VeskJoinPackedDms(sign, 0, 0, std::fabs(shown));
                break;
            case TOV_UNIT_DEGREES:
                shown = VeskJoinDecimalDeg(sign, 0, 0, std::fabs(shown));
                break;
            // The join counts ten-thousandths.
            case TOV_UNIT_GON:
            case TOV_UNIT_PACKED_GON:
                shown = VeskJoinPackedGon(sign, 0, 0, std::fabs(shown)) * 10;
                break;
            default:
                break;
        }
    }
    return m_units.Host().CTovEditValueHost::ConvertToStd(shown, usePrecision, useLimit);
}

double CTovEditAngleMask::BoundToShown(double radians) {
    SmallUnit const small = m_bSecOnly != 0 ? SmallUnitOf(Settings().Unit()) : SmallUnit();
    return small.perRadian != 0 ? small.Count(radians)
                                : m_units.Host().CTovEditValueHost::BoundToShown(radians);
}

double CTovEditAngleMask::BoundToStd(double shown) {
    SmallUnit const small = m_bSecOnly != 0 ? SmallUnitOf(Settings().Unit()) : SmallUnit();
    return small.perRadian != 0 ? small.Radians(shown) : m_units.Host().CTovEditValueHost::BoundToStd(shown);
}

void CTovEditAngleMask::GetUnitAbbreviationText(CString& text) {
    text.clear();
    if (IsSplit()) return;
    SmallUnit const small = m_bSecOnly != 0 ? SmallUnitOf(Settings().Unit()) : SmallUnit();
    if (small.text != 0) {
        text = LibraryString(small.text);
    } else {
        m_units.Host().CTovEditValueHost::GetUnitAbbreviationText(text);
    }
}

}  // namespace tov
