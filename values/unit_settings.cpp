#include <tov310/profile.h>
#include <tov310/unit_settings.h>

#include "values/stored_unit.h"
#include "vesk/immortal.h"

#include <utility>

namespace tov {
namespace {

constexpr int angleUnits[] = {TOV_UNIT_DEGREES,     TOV_UNIT_DMS,     TOV_UNIT_PACKED_DMS,
                              TOV_UNIT_GRADS,       TOV_UNIT_GON,     TOV_UNIT_PACKED_GON,
                              TOV_UNIT_REVOLUTIONS, TOV_UNIT_RADIANS, -1};
constexpr int distanceUnits[] = {TOV_UNIT_METRES, TOV_UNIT_US_SURVEY_FEET, TOV_UNIT_INTERNATIONAL_FEET, -1};

constexpr int angleDecimals = 5;
constexpr int latLonDecimals = 9;

bool Lists(int const* list, long unit) {
    for (; list != nullptr && *list != -1; ++list) {
        if (*list == unit) return true;
    }
    return false;
}

}  // namespace

StoredUnit StoredAngleUnit(char const* section) {
    return {section, CTovProfileEntries::UnitSettingsAngleEntryFormatNumber(),
            CTovProfileEntries::UnitSettingsAngleEntryFormatString(), angleUnits};
}

StoredUnit StoredDistanceUnit() {
    return {CTovProfileEntries::UnitSettingsDistanceSection(),
            CTovProfileEntries::UnitSettingsDistanceEntryFormatNumber(),
            CTovProfileEntries::UnitSettingsDistanceEntryFormatString(), distanceUnits};
}

long StoredUnit::Read() const {
    auto const stored = static_cast<int>(CTovProfileEntries::ReadTovProfileInt(section, numberEntry, -1));
    return Lists(units, stored) ? stored : -1;
}

void StoredUnit::Choose(CTovUnitSettings& settings, long unit, int const* excluded) const {
    if (!Lists(units, unit) || Lists(excluded, unit)) return;
    long const stored = Read();
    if (stored != -1 && !Lists(excluded, stored)) {
        settings.Unit(stored);
        return;
    }
    CString abbreviation;
    CTovUnitSettings::UnitAbbreviation(unit, abbreviation, 0);
    CTovProfileEntries::WriteTovProfileInt(section, numberEntry, static_cast<int>(unit));
    CTovProfileEntries::WriteTovProfileString(section, textEntry, abbreviation.c_str());
    settings.Unit(unit);
}

CTovUnitSettings::CTovUnitSettings() : CTovUnitSettings(TOV_UNIT_NONE, nullptr) {}

CTovUnitSettings::CTovUnitSettings(long unit, char const* format)
    : m_lUnit(unit), m_pFormat(std::make_unique<CTovFormat>(unit, 0, 0, format)) {}

CTovUnitSettings::CTovUnitSettings(CTovUnitSettings const& other)
    : CObject(other),
      m_lUnit(other.m_lUnit),
      m_nStatus(other.m_nStatus),
      m_pFormat(std::make_unique<CTovFormat>(*other.m_pFormat)) {}

CTovUnitSettings& CTovUnitSettings::operator=(CTovUnitSettings const& other) {
    if (this == &other) return *this;
    m_lUnit = other.m_lUnit;
    m_nStatus = other.m_nStatus;
    m_pFormat = std::make_unique<CTovFormat>(*other.m_pFormat);
    return *this;
}

CTovUnitSettings::~CTovUnitSettings() = default;

int CTovUnitSettings::Unit() const {
    return static_cast<int>(m_lUnit);
}

int CTovUnitSettings::Unit(long unit) {
    m_lUnit = unit;
    m_pFormat->SetUnitAbbreviation(unit);
    return Status();
}

int CTovUnitSettings::Unit(long unit, char const* format) {
    m_lUnit = unit;
    m_pFormat->SetUnitAbbreviation(unit);
    m_pFormat->Format(format);
    return Status();
}

void CTovUnitSettings::GetUnitAbbreviation(CString& abbreviation) const {
    UnitAbbreviation(m_lUnit, abbreviation, m_pFormat->UseSecOnly());
}

CTovFormat* CTovUnitSettings::Format() const {
    return m_pFormat.get();
}

int CTovUnitSettings::Format(char const* format) {
    return Unit(m_lUnit, format);
}

void CTovUnitSettings::Precision(int precision) {
    m_pFormat->Precision(precision);
}

int CTovUnitSettings::Precision() {
    return m_pFormat->Precision();
}

void CTovUnitSettings::TrimTrailingZeros(int trim) {
    m_pFormat->TrimTrailingZeros(trim);
}

int CTovUnitSettings::TrimTrailingZeros() {
    return m_pFormat->TrimTrailingZeros();
}

int CTovUnitSettings::Status() {
    return std::exchange(m_nStatus, 0);
}

void CTovUnitSettings::UnitAbbreviation(long unit, CString& abbreviation, int useSecOnly) {
    CTovFormat(unit, useSecOnly, 0, nullptr).GetUnitAbbreviation(abbreviation);
}

CTovUnitSettingsAngle::CTovUnitSettingsAngle() {
    Format()->Precision(angleDecimals);
}

CTovUnitSettingsAngle::CTovUnitSettingsAngle(long unit, char const* format) : CTovUnitSettings(unit, format) {
    Format()->Precision(angleDecimals);
}

CTovUnitSettingsAngle::CTovUnitSettingsAngle(CTovUnitSettingsAngle const& other) : CTovUnitSettings(other) {}

CTovUnitSettingsAngle& CTovUnitSettingsAngle::operator=(CTovUnitSettingsAngle const& other) {
    CTovUnitSettings::operator=(other);
    return *this;
}

CTovUnitSettingsAngle& CTovUnitSettingsAngle::Default() {
    static Immortal<CTovUnitSettingsAngle> StaticUnitSettingsAngle;
    [[maybe_unused]] static bool const named =
        (StaticUnitSettingsAngle->Section(CTovProfileEntries::UnitSettingsAngleSection()), true);
    return *StaticUnitSettingsAngle;
}

void CTovUnitSettingsAngle::DefaultSettings(long unit, int const* excluded) {
    Default().LoadOrStore(unit, excluded);
}

void CTovUnitSettingsAngle::LoadOrStore(long unit, int const* excluded) {
    StoredAngleUnit(m_strSection.c_str()).Choose(*this, unit, excluded);
}

int const* CTovUnitSettingsAngle::Units() {
    return angleUnits;
}

CTovUnitSettingsAngleLatLon::CTovUnitSettingsAngleLatLon() {
    Section(CTovProfileEntries::UnitSettingsAngleLatLonSection());
    Format()->Precision(latLonDecimals);
}

CTovUnitSettingsAngleLatLon::CTovUnitSettingsAngleLatLon(CTovUnitSettingsAngleLatLon const& other)
    : CTovUnitSettingsAngleLatLon() {
    *this = other;
}

CTovUnitSettingsAngleLatLon& CTovUnitSettingsAngleLatLon::Default() {
    static Immortal<CTovUnitSettingsAngleLatLon> StaticUnitSettingsAngleLatLon;
    return *StaticUnitSettingsAngleLatLon;
}

void CTovUnitSettingsAngleLatLon::DefaultSettings(long unit, int const* excluded) {
    Default().LoadOrStore(unit, excluded);
}

CTovUnitSettingsDistance::CTovUnitSettingsDistance() = default;

CTovUnitSettingsDistance::CTovUnitSettingsDistance(long unit, char const* format)
    : CTovUnitSettings(unit, format) {}

CTovUnitSettingsDistance& CTovUnitSettingsDistance::Default() {
    static Immortal<CTovUnitSettingsDistance> StaticUnitSettingsDistance;
    return *StaticUnitSettingsDistance;
}

void CTovUnitSettingsDistance::DefaultSettings(long unit) {
    StoredDistanceUnit().Choose(Default(), unit, nullptr);
}

int const* CTovUnitSettingsDistance::Units() {
    return distanceUnits;
}

}  // namespace tov
