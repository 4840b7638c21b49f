// Whole angles that are pasted or read.
#include <tov310/edit_angle_mask.h>
#include <tov310/packed_angle.h>

#include "controls/edit_angle_text.h"
#include "controls/pasted_number.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>
#include <utility>

namespace tov {
namespace {

AngleDivision DivisionOfUnit(long unit) {
    switch (unit) {
        case TOV_UNIT_GRADS:
        case TOV_UNIT_GON:
        case TOV_UNIT_PACKED_GON:
            return AngleDivision::kCentesimal;
        case TOV_UNIT_REVOLUTIONS:
            return AngleDivision::kTurns;
        case TOV_UNIT_RADIANS:
            return AngleDivision::kRadians;
        default:
            return AngleDivision::kSexagesimal;
    }
}

// The magnitude of an angle, packed where it is divided into parts.
double JoinWritten(WrittenAngle const& angle) {
    auto const& [first, second, third] = angle.parts;
    double const whole = std::floor(first);
    double const minutes = std::floor(second);
    if (angle.division == AngleDivision::kSexagesimal) {
        return VeskJoinPackedDms(1, static_cast<int>(whole), static_cast<int>(minutes),
                                 (first - whole) * 3600 + (second - minutes) * 60 + third);
    }
    if (angle.division == AngleDivision::kCentesimal) return first + (second + third / 100) / 100;
    return first;
}

double RadiansOf(double joined, AngleDivision division) {
    switch (division) {
        case AngleDivision::kCentesimal:
            return VeskPackedGonToRad(joined);
        case AngleDivision::kRadians:
            return joined;
        case AngleDivision::kTurns:
            return joined * 2 * std::numbers::pi;
        default:
            return VeskPackedDmsToRad(joined);
    }
}

// Reads an angle for a unit and a pair of hemispheres.
std::optional<WrittenAngle> ReadAngleFor(char const* text, long unit, eSignType type, eTovAngleKind kind) {
    auto angle = ReadWrittenAngle(text != nullptr ? text : "");
    if (!angle) return {};
    eSignType const pair = type != eSignPlusMinus       ? type
                           : kind == eTovAngleLatitude  ? eSignNorthSouth
                           : kind == eTovAngleLongitude ? eSignEastWest
                                                        : angle->hemisphere;
    if (angle->hemisphere != eSignPlusMinus && angle->hemisphere != pair) return {};
    auto const& [first, second, third] = angle->parts;
    constexpr double most = 1e9;
    if (first > most || second > most || third > most) return {};
    if (angle->division == AngleDivision::kOfTheUnit) {
        angle->division = DivisionOfUnit(unit);
        double const base = angle->division == AngleDivision::kSexagesimal  ? 60
                            : angle->division == AngleDivision::kCentesimal ? 100
                                                                            : 0;
        if (!angle->isBare && base == 0 && (second != 0 || third != 0)) return {};
        if (base != 0 && (second >= base || third >= base)) return {};
    }
    return angle;
}

}  // namespace

bool CTovEditAngleMask::CanPaste(char const* text) {
    if (!IsSplit() || m_units.Host().InputControl().GetReadOnlyMode() != 0) return false;
    auto const angle = ReadAngleFor(text, m_unit, m_eSignType, m_host.GetAngleKind());
    if (!angle) return false;
    if (!angle->isBare) return true;
    switch (GetChildEditFocus()) {
        case eTovFieldDegrees:
            return angle->hasPoint || (angle->hasSign && m_eSignType != eSignPlusMinus);
        case eTovFieldMinutes:
            return angle->hasPoint || angle->hasSign;
        case eTovFieldSeconds:
            return angle->hasSign;
        default:
            return true;
    }
}

int CTovEditAngleMask::Paste(char const* text) {
    return AsOneChange(true, [&] {
        if (!CanPaste(text)) return 0;
        Whole before = Content();
        PasteFields(text);
        m_pasted = {std::move(before), Content(), false};
        return 1;
    });
}

CTovEditAngleMask::Whole CTovEditAngleMask::Content() {
    Whole whole;
    for (ITovAngleField* const field : m_fields)
        whole.texts.push_back(field->GetText());
    whole.isKnown = IsSplit() && m_bKnown && FieldsShown() == m_shown;
    whole.value = m_dValue;
    return whole;
}

// The fields forget what was undone before, which would bring back one of them alone.
void CTovEditAngleMask::TypeContent(Whole const& whole) {
    CTovInputControl::CTovNotifyEmptyChanged const notify(m_units.Host().InputControl());
    for (std::size_t i = 0; i < m_fields.size(); ++i) {
        m_fields[i]->TypeText(whole.texts[i]);
        m_fields[i]->ForgetUndo();
    }
    m_bKnown = whole.isKnown;
    m_dValue = whole.value;
    m_shown = FieldsShown();
}

int CTovEditAngleMask::UndoPaste() {
    return AsOneChange(true, [&] {
        if (!CanUndoPaste()) return 0;
        TypeContent(m_pasted.before);
        m_pasted.isUndone = true;
        return 1;
    });
}

int CTovEditAngleMask::RedoPaste() {
    return AsOneChange(true, [&] {
        if (!CanRedoPaste()) return 0;
        TypeContent(m_pasted.after);
        m_pasted.isUndone = false;
        return 1;
    });
}

void CTovEditAngleMask::PasteFields(char const* text) {
    auto const angle = ReadAngleFor(text, m_unit, m_eSignType, m_host.GetAngleKind());
    bool const isDms = m_unit == TOV_UNIT_DMS;
    double packed = JoinWritten(*angle);
    if (angle->division != DivisionOfUnit(m_unit)) {
        auto const pack = isDms ? VeskRadToPackedDms : VeskRadToPackedGon;
        packed = pack(RadiansOf(packed, angle->division), -1, 0UL);
    }
    int sign = 1;
    int degrees = 0;
    int minutes = 0;
    double seconds = 0;
    constexpr int mostDecimals = 5;
    auto const split = isDms ? VeskSplitPackedDms : VeskSplitPackedGon;
    split(packed, sign, degrees, minutes, seconds, std::min(m_inputDecimals, mostDecimals), 0);
    CTovInputControl::CTovNotifyEmptyChanged const notify(m_units.Host().InputControl());
    bool isNegative = angle->isNegative || angle->isSouthOrWest;
    if (ITovAngleField* const letter = Field(eTovFieldSign)) {
        letter->TypeText(SignLetter(isNegative));
        isNegative = false;
    }
    Field(eTovFieldDegrees)->TypeNumber(isNegative ? -static_cast<double>(degrees) : degrees);
    Field(eTovFieldMinutes)->TypeNumber(minutes);
    Field(eTovFieldSeconds)->TypeNumber(seconds);
    for (ITovAngleField* const field : m_fields)
        field->ForgetUndo();
}

int CTovEditAngleMask::ReadAngle(char const* text, double& radians) {
    radians = 0;
    auto const angle = ReadAngleFor(text, m_units.Unit(), m_eSignType, m_host.GetAngleKind());
    if (!angle) return 0;
    double magnitude = 0;
    if (angle->isBare && !IsSplit()) {
        // As if it were typed.
        magnitude = m_units.InShownUnit([&] { return m_units.Host().ConvertToStd(angle->parts[0], 0, 0); });
    } else {
        magnitude = RadiansOf(JoinWritten(*angle), angle->division);
    }
    radians = angle->isNegative || angle->isSouthOrWest ? -magnitude : magnitude;
    return 1;
}

int CTovEditAngleMask::ReadQuantity(CString& text, double& radians) {
    radians = 0;
    // The fields take a whole angle by themselves.
    if (IsSplit() || text.find_first_not_of("0123456789+-.,eE \t") == text.npos) {
        std::string const joined = WithThousandsJoined(text);
        if (IsSplit() || !HoldsSeveralNumbers(joined)) return 0;
    }
    return ReadAngle(text.c_str(), radians) != 0 ? 1 : -1;
}

}  // namespace tov
