#include <tov310/packed_angle.h>
#include <tov310/value.h>

#include "values/stored_unit.h"

#include <utility>

namespace tov {

int detail::ConvertPacked(double in, long from, double& out, long to, int precision, unsigned long limit) {
    out = 0;
    double standard = 0;
    switch (from) {
        case TOV_UNIT_DMS:
        case TOV_UNIT_PACKED_DMS:
            standard = VeskPackedDmsToRad(in);
            break;
        case TOV_UNIT_GON:
        case TOV_UNIT_PACKED_GON:
            standard = VeskPackedGonToRad(in);
            break;
        default: {
            double const factor = PlainUnitFactor(from);
            if (factor == 0) return 1;
            standard = in * factor;
        }
    }
    switch (to) {
        case TOV_UNIT_DMS:
        case TOV_UNIT_PACKED_DMS:
            out = VeskRadToPackedDms(standard, precision, limit);
            break;
        case TOV_UNIT_GON:
        case TOV_UNIT_PACKED_GON:
            out = VeskRadToPackedGon(standard, precision, limit);
            break;
        default: {
            double const factor = PlainUnitFactor(to);
            if (factor == 0) return 1;
            out = standard / factor;
        }
    }
    return 0;
}

CTovValue::CTovValue(CTovUnitSettings* settings, int own) {
    if (own != 0 || settings == nullptr) {
        m_ownSettings = settings != nullptr ? std::shared_ptr<CTovUnitSettings>(settings)
                                            : std::make_shared<CTovUnitSettings>();
        settings = m_ownSettings.get();
    }
    m_pUnitSettings = settings;
}

CTovValue::~CTovValue() {
    Release();
}

void CTovValue::Release() {
    m_pUnitSettings = nullptr;
    m_ownSettings.reset();
}

short CTovValue::GetShort() const {
    return 0;
}
int CTovValue::SetShort(short) {
    return 0;
}
unsigned short CTovValue::GetUshort() const {
    return 0;
}
int CTovValue::SetUshort(unsigned short) {
    return 0;
}
int CTovValue::GetInt() const {
    return 0;
}
int CTovValue::SetInt(int) {
    return 0;
}
unsigned int CTovValue::GetUint() const {
    return 0;
}
int CTovValue::SetUint(unsigned int) {
    return 0;
}
long CTovValue::GetLong() const {
    return 0;
}
int CTovValue::SetLong(long) {
    return 0;
}
unsigned long CTovValue::GetUlong() const {
    return 0;
}
int CTovValue::SetUlong(unsigned long) {
    return 0;
}
float CTovValue::GetFloat() const {
    return 0;
}
int CTovValue::SetFloat(float) {
    return 0;
}

double CTovValue::GetDouble() const {
    return m_dValue;
}

int CTovValue::SetDouble(double value) {
    m_dValue = value;
    return 1;
}

void CTovValue::UnitSettings(CTovUnitSettings* settings, int own) {
    if (settings == nullptr) return;
    // Settings that are owned already stay so: letting them go would leave nothing to point at.
    if (settings == m_ownSettings.get()) return;
    Release();
    m_pUnitSettings = settings;
    if (own != 0) m_ownSettings.reset(settings);
}

CTovUnitSettings* CTovValue::UnitSettings() {
    return m_pUnitSettings;
}

void CTovValue::GetUnitAbbreviation(CString& abbreviation) {
    m_pUnitSettings->GetUnitAbbreviation(abbreviation);
}

namespace {

struct ConversionRange {
    int precision;
    unsigned long limit;

    // Only settings of angles know of a circle.
    ConversionRange(CTovUnitSettings& settings, int usePrecision, int useLimit)
        : precision(usePrecision != 0 ? RoundingPrecision(settings) : -1),
          limit(useLimit != 0 && settings.IsKindOf(&CTovUnitSettingsAngle::classCTovUnitSettingsAngle)
                    ? static_cast<unsigned long>(settings.Format()->LimitToCircle())
                    : 0) {}
};

}  // namespace

int CTovValue::ConvertToStd(char const* text, int usePrecision, int useLimit) {
    ConversionRange const range(*m_pUnitSettings, usePrecision, useLimit);
    return ConvertToStd(text, m_pUnitSettings->Unit(), range.precision, range.limit);
}

int CTovValue::ConvertToStd(double value, int usePrecision, int useLimit) {
    ConversionRange const range(*m_pUnitSettings, usePrecision, useLimit);
    return ConvertToStd(value, m_pUnitSettings->Unit(), range.precision, range.limit);
}

int CTovValue::ConvertStdTo(CString& out, int usePrecision, int useLimit) {
    ConversionRange const range(*m_pUnitSettings, usePrecision, useLimit);
    return ConvertStdTo(out, m_pUnitSettings->Unit(), range.precision, range.limit);
}

int CTovValue::ConvertStdTo(double& out, int usePrecision, int useLimit) {
    ConversionRange const range(*m_pUnitSettings, usePrecision, useLimit);
    return ConvertStdTo(out, m_pUnitSettings->Unit(), range.precision, range.limit);
}

int CTovValue::Status() {
    return std::exchange(m_nStatus, 0);
}

CTovValue& CTovValue::operator=(double value) {
    SetDouble(value);
    return *this;
}

CTovValue& CTovValue::operator=(char const* text) {
    SetString(text);
    return *this;
}

CTovValue& CTovValue::operator=(short value) {
    SetShort(value);
    return *this;
}

CTovValue& CTovValue::operator=(unsigned short value) {
    SetUshort(value);
    return *this;
}

CTovValue& CTovValue::operator=(int value) {
    SetInt(value);
    return *this;
}

CTovValue& CTovValue::operator=(unsigned int value) {
    SetUint(value);
    return *this;
}

CTovValue& CTovValue::operator=(long value) {
    SetLong(value);
    return *this;
}

CTovValue& CTovValue::operator=(unsigned long value) {
    SetUlong(value);
    return *this;
}

CTovValue& CTovValue::operator=(float value) {
    SetFloat(value);
    return *this;
}

}  // namespace tov
