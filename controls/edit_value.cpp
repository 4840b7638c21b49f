#include <tov310/edit_value.h>

#include "controls/edit_messages.h"

#include "util/code_points.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace tov {
namespace {

bool SameBits(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

// Whether the two differ by what a conversion there and back may cost.
bool IsRounding(double value, double bound) {
    return std::fabs(value - bound) <= 4 * std::numeric_limits<double>::epsilon() * std::fabs(bound);
}

}  // namespace

CTovEditValueHost::~CTovEditValueHost() = default;

double CTovEditValueHost::ConvertStdTo(double standard, int usePrecision, int useLimit) {
    double shown = 0;
    TovValue()->SetDouble(standard);
    TovValue()->ConvertStdTo(shown, usePrecision, useLimit);
    return shown;
}

double CTovEditValueHost::ConvertToStd(double shown, int usePrecision, int useLimit) {
    TovValue()->ConvertToStd(shown, usePrecision, useLimit);
    return TovValue()->GetDouble();
}

double CTovEditValueHost::BoundToShown(double standard) {
    CTovValue& value = *TovValue();
    value.SetDouble(standard);
    double shown = 0;
    if (SameBits(value.GetDouble(), standard)) {
        shown = ConvertStdTo(standard, 0, 0);
    } else {
        CTovValue::Convert(standard, TOV_UNIT_RADIANS, shown, value.UnitSettings()->Unit());
    }
    return std::clamp(shown, -std::numeric_limits<double>::max(), std::numeric_limits<double>::max());
}

double CTovEditValueHost::BoundToStd(double shown) {
    CTovValue& value = *TovValue();
    double standard = 0;
    CTovValue::Convert(shown, value.UnitSettings()->Unit(), standard, TOV_UNIT_RADIANS);
    value.SetDouble(standard);
    return SameBits(value.GetDouble(), standard) ? ConvertToStd(shown, 0, 0) : standard;
}

void CTovEditValueHost::GetUnitAbbreviationText(CString& text) {
    TovValue()->GetUnitAbbreviation(text);
}

void CTovEditValueHost::DisplayUnitAbbreviation() {}

int CTovEditValueHost::ReadQuantity(CString&, double&) {
    return 0;
}

bool TovIsUnitOf(CTovUnitSettings const& settings, long unit) {
    int const* known = nullptr;
    if (dynamic_cast<CTovUnitSettingsAngle const*>(&settings) != nullptr)
        known = CTovUnitSettingsAngle::Units();
    else if (dynamic_cast<CTovUnitSettingsDistance const*>(&settings) != nullptr)
        known = CTovUnitSettingsDistance::Units();
    if (known == nullptr) return true;
    while (*known != -1 && *known != unit)
        ++known;
    return *known != -1;
}

CTovEditValueUnits::UnitScope::UnitScope(CTovEditValueUnits& units)
    : m_settings(units.Settings()), m_unit(m_settings.Unit()), m_shownUnit(units.Unit()) {
    if (m_unit != m_shownUnit) m_settings.Unit(m_shownUnit);
}

CTovEditValueUnits::UnitScope::~UnitScope() {
    if (m_unit != m_shownUnit) m_settings.Unit(m_unit);
}

long CTovEditValueUnits::Unit() {
    return m_lUnit != TOV_UNIT_NONE ? m_lUnit : Settings().Unit();
}

void CTovEditValueUnits::Typed() {
    HoldUnit();
    m_bKnown = false;
}

void CTovEditValueUnits::Restored() {
    m_bKnown = m_bShown && SameBits(m_host.GetShownNumber(), m_dShown);
}

void CTovEditValueUnits::TakeUnit() {
    m_lUnit = Settings().Unit();
    m_bShown = m_bKnown = false;
}

void CTovEditValueUnits::HoldUnit() {
    if (m_lUnit == TOV_UNIT_NONE) TakeUnit();
}

void CTovEditValueUnits::Reset() {
    m_lUnit = TOV_UNIT_NONE;
    m_bShown = m_bKnown = m_bRangeKnown = false;
}

double CTovEditValueUnits::GetValue() {
    return ToStandard(m_host.GetShownNumber());
}

double CTovEditValueUnits::ToStandard(double shown) {
    if (m_bKnown && SameBits(shown, m_dShown)) return m_dStandard;
    double const standard = InShownUnit([&] { return m_host.ConvertToStd(shown, 1, 1); });
    if (!m_bRangeKnown || shown < m_minimum.shown || shown > m_maximum.shown) return standard;
    // What lies within the range as a number that is typed lies within it as a value.
    for (Bound const& bound : {m_minimum, m_maximum}) {
        if (shown == bound.shown && IsRounding(standard, bound.standard)) return bound.standard;
    }
    if (standard < m_minimum.standard && IsRounding(standard, m_minimum.standard)) return m_minimum.standard;
    if (standard > m_maximum.standard && IsRounding(standard, m_maximum.standard)) return m_maximum.standard;
    return standard;
}

int CTovEditValueUnits::SetValue(double standard) {
    return Put(standard, false);
}

int CTovEditValueUnits::SafeSetValue(double standard) {
    return Put(standard, true);
}

int CTovEditValueUnits::Put(double standard, bool safe) {
    if (!std::isfinite(standard)) return 0;
    CTovValue& value = *m_host.TovValue();
    value.SetDouble(standard);
    double const normalised = value.GetDouble();
    HoldUnit();
    double const shown = InShownUnit([&] { return m_host.ConvertStdTo(normalised, 1, 1); });
    // Before anybody is told, who may ask for it, or put another one in.
    m_dStandard = normalised;
    m_dShown = shown;
    m_bShown = m_bKnown = true;
    if (safe) {
        m_host.SafeSetShownNumber(shown);
    } else {
        m_host.SetShownNumber(shown);
    }
    return 1;
}

double CTovEditValueUnits::BoundToStandard(double shown, Bound const& known) {
    if (m_bRangeKnown && SameBits(shown, known.shown)) return known.standard;
    if (std::fabs(shown) == std::numeric_limits<double>::max()) return shown;  // no bound in any unit
    return InShownUnit([&] { return m_host.BoundToStd(shown); });
}

int CTovEditValueUnits::SetRange(double minimum, double maximum) {
    if (!(minimum <= maximum)) return 0;
    HoldUnit();
    auto const both = [&](double standard) {
        return Bound{standard, InShownUnit([&] { return m_host.BoundToShown(standard); })};
    };
    Bound const least = both(minimum);
    Bound const most = both(maximum);
    if (m_host.SetShownRange(least.shown, most.shown) == 0) return 0;
    m_minimum = least;
    m_maximum = most;
    m_bRangeKnown = true;
    return 1;
}

void CTovEditValueUnits::GetRange(double& minimum, double& maximum) {
    double least = 0;
    double most = 0;
    m_host.GetShownRange(least, most);
    minimum = BoundToStandard(least, m_minimum);
    maximum = BoundToStandard(most, m_maximum);
}

int CTovEditValueUnits::SetUnit(long unit) {
    HoldUnit();
    if (!TovIsUnitOf(Settings(), unit)) return 0;
    Settings().Unit(unit);
    UnitChanged();
    return 1;
}

void CTovEditValueUnits::ReadInput(CString& text) {
    if (CharacterCount(text) < 2) return;  // typed
    double standard = 0;
    int const kind = m_host.ReadQuantity(text, standard);
    if (kind == 0) return;
    double const shown = kind > 0 ? InShownUnit([&] { return m_host.ConvertStdTo(standard, 0, 0); }) : 0;
    if (kind < 0 || !std::isfinite(shown)) return text.clear();
    // What the conversion costs is not to be seen.
    constexpr int digits = std::numeric_limits<double>::digits10;
    std::array<char, 40> number{};
    auto const end = std::to_chars(number.data(), number.data() + number.size(), shown,
                                   std::chars_format::general, digits);
    text.assign(number.data(), end.ptr);
}

int CTovEditValueUnits::UnitChanged() {
    HoldUnit();
    if (Settings().Unit() == m_lUnit) return 0;
    CTovInputControl& control = m_host.InputControl();
    CTovInputControl::CTovNotifyEmptyChanged const notify(control);
    CTovInputControl::CTovKeepChangedByUserStatus const keep(control);
    bool const isEmpty = control.IsEmpty() != 0;
    double const value = GetValue();
    double minimum = 0;
    double maximum = 0;
    GetRange(minimum, maximum);
    TakeUnit();
    if (!isEmpty) SafeSetValue(value);
    SetRange(minimum, maximum);
    m_host.DisplayUnitAbbreviation();
    return 1;
}

CTovInputControl::eState CTovEditValueUnits::InternalValidate(double shown, CString* message) {
    if (message != nullptr) message->clear();
    CTovInputControl& control = m_host.InputControl();
    if (control.GetEmptyAllowed() != 0 && control.IsEmpty() != 0) return CTovInputControl::eStateValid;
    double minimum = 0;
    double maximum = 0;
    m_host.GetShownRange(minimum, maximum);
    bool isWithin = shown >= minimum && shown <= maximum;
    bool const isKnown = m_bKnown && SameBits(shown, m_dShown);
    if (isKnown || (isWithin && m_bRangeKnown)) {
        // Rounding for the eye makes no value wrong, nor right; and a packed number may have more than 60
        // minutes.
        double least = 0;
        double most = 0;
        GetRange(least, most);
        double const standard = ToStandard(shown);
        isWithin = standard >= least && standard <= most;
    }
    if (isWithin) return CTovInputControl::eStateValid;
    if (message != nullptr) {
        CString unit;
        m_host.GetUnitAbbreviationText(unit);
        if (!unit.empty()) unit.insert(unit.begin(), ' ');
        *message = RangeMessage(m_host.FormatNumber(minimum) + unit, m_host.FormatNumber(maximum) + unit);
    }
    return CTovInputControl::eStateInvalid;
}

}  // namespace tov
