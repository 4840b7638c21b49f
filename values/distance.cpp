#include <tov310/distance.h>

#include "values/number_text.h"
#include "values/stored_unit.h"

#include <memory>

namespace tov {
namespace {

CTovUnitSettings* OrSharedDistance(CTovUnitSettings* settings) {
    return settings != nullptr ? settings : &CTovUnitSettingsDistance::Default();
}

}  // namespace

CTovValueDistance::CTovValueDistance(CTovUnitSettingsDistance* settings)
    : CTovValue(OrSharedDistance(settings)) {
    long unit = m_pUnitSettings->Unit();
    CheckUnit(unit);
}

CTovValueDistance::CTovValueDistance(double value, long unit, char const* format)
    : CTovValue(std::make_unique<CTovUnitSettingsDistance>(unit, format).release(), 1) {
    Status(CTovValueDistance::ConvertToStd(value, unit, -1, 0UL));
}

CTovValueDistance::CTovValueDistance(char const* text, long unit, char const* format)
    : CTovValue(std::make_unique<CTovUnitSettingsDistance>(unit, format).release(), 1) {
    Status(CTovValueDistance::ConvertToStd(text, unit, -1, 0UL));
}

CTovValueDistance::CTovValueDistance(double value, CTovUnitSettingsDistance* settings)
    : CTovValue(OrSharedDistance(settings)) {
    Status(CTovValueDistance::ConvertToStd(value, TOV_UNIT_DISTANCE, -1, 0UL));
}

CTovValueDistance::CTovValueDistance(char const* text, CTovUnitSettingsDistance* settings)
    : CTovValue(OrSharedDistance(settings)) {
    Status(CTovValueDistance::ConvertToStd(text, TOV_UNIT_DISTANCE, -1, 0UL));
}

void CTovValueDistance::CheckUnit(long& unit) {
    if (unit != TOV_UNIT_DISTANCE && unit != TOV_UNIT_NONE) return;
    unit = m_pUnitSettings->Unit();
    if (unit != TOV_UNIT_NONE) return;
    long const stored = StoredDistanceUnit().Read();
    m_pUnitSettings->Unit(stored != -1 ? stored : TOV_UNIT_METRES);
    unit = m_pUnitSettings->Unit();
}

void CTovValueDistance::GetString(CString& out) {
    ConvertStdTo(out, TOV_UNIT_DISTANCE, -1, 0UL);
}

int CTovValueDistance::SetString(char const* text) {
    ConvertToStd(text, TOV_UNIT_DISTANCE, -1, 0UL);
    return 1;
}

void CTovValueDistance::StdFormat(CString& out) {
    GetString(out);
    CString abbreviation;
    GetUnitAbbreviation(abbreviation);
    out += " " + abbreviation;
}

void CTovValueDistance::GetUnitAbbreviation(CString& abbreviation) {
    m_pUnitSettings->Format()->GetUnitAbbreviation(abbreviation);
}

int CTovValueDistance::ConvertToStd(char const* text, long unit, int, unsigned long) {
    return ConvertToStd(ReadNumber(text != nullptr ? text : ""), unit, -1, 0UL);
}

int CTovValueDistance::ConvertToStd(double value, long unit, int, unsigned long) {
    CheckUnit(unit);
    Status(Convert(value, unit, m_dValue, TOV_UNIT_METRES, -1, 0));
    return Status();
}

int CTovValueDistance::ConvertStdTo(double& out, long unit, int, unsigned long) {
    CheckUnit(unit);
    Status(Convert(m_dValue, TOV_UNIT_METRES, out, unit, -1, 0));
    return Status();
}

int CTovValueDistance::ConvertStdTo(CString& out, long unit, int, unsigned long) {
    double number = 0;
    int const status = ConvertStdTo(number, unit, -1, 0UL);
    if (status != 0) return status;
    m_pUnitSettings->Format()->ConvertToString(number, m_pUnitSettings->Unit(), out);
    return Status();
}

int CTovValueDistance::ConvertStdTo(CString& out, CTovUnitSettings* other) {
    return ConvertStdTo(out, (other != nullptr ? other : m_pUnitSettings)->Unit(), -1, 0UL);
}

}  // namespace tov
