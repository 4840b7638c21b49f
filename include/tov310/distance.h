// Distances.
#pragma once

#include <tov310/export.h>
#include <tov310/unit_settings.h>
#include <tov310/value.h>

namespace tov {

// A distance in metres. Conversions never round: precision and limit are ignored.
class TOV_CORE_API CTovValueDistance : public CTovValue {
 public:
    // 0 with the given settings, which must outlive the value; null for the shared ones.
    explicit CTovValueDistance(CTovUnitSettingsDistance* settings = nullptr);
    // A number or text of the unit, with settings of its own.
    CTovValueDistance(double value, long unit, char const* format);
    CTovValueDistance(char const* text, long unit, char const* format);
    // A number or text of the settings' unit.
    CTovValueDistance(double value, CTovUnitSettingsDistance* settings);
    CTovValueDistance(char const* text, CTovUnitSettingsDistance* settings);

    CTovValueDistance(CTovValueDistance const&) = default;
    CTovValueDistance& operator=(CTovValueDistance const&) = default;
    using CTovValue::operator=;
    CTovValueDistance& operator=(CTovValue const&) = delete;  // a value of another kind

    void GetString(CString& out) override;
    int SetString(char const* text) override;
    // Text and abbreviation as "%s %s".
    void StdFormat(CString& out) override;
    void GetUnitAbbreviation(CString& abbreviation) override;

    using CTovValue::ConvertStdTo;
    using CTovValue::ConvertToStd;
    int ConvertToStd(char const* text, long unit, int precision, unsigned long limit) override;
    int ConvertToStd(double value, long unit, int precision, unsigned long limit) override;
    int ConvertStdTo(CString& out, CTovUnitSettings* other) override;
    int ConvertStdTo(CString& out, long unit, int precision, unsigned long limit) override;
    int ConvertStdTo(double& out, long unit, int precision, unsigned long limit) override;

 private:
    void CheckUnit(long& unit);
};

}  // namespace tov
