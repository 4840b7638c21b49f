// Angles, latitudes and longitudes.
#pragma once

#include <tov310/export.h>
#include <tov310/unit_settings.h>
#include <tov310/value.h>

namespace tov {

// An angle in radians, between -2 pi and 2 pi.
//
// Texts of the units 12 and 15 are read field by field: "12 34 56.7", `-12°34'56.7"` and "12 34 56.7 S" are
// angles of the unit 12; the seconds are read in single precision. Other units are read as one number. The
// letter of a negative hemisphere anywhere in the text makes the angle negative.
class TOV_CORE_API CTovValueAngle : public CTovValue {
 public:
    // What SetFlag takes.
    static constexpr unsigned short flagLatitude = 1;
    static constexpr unsigned short flagLongitude = 2;

    // 0 with the shared settings, or with the given ones, which must outlive the value (null for the shared).
    CTovValueAngle();
    explicit CTovValueAngle(CTovUnitSettingsAngle* settings);
    // A number or text of the unit, with settings of its own.
    CTovValueAngle(double value, long unit, char const* format);
    CTovValueAngle(char const* text, long unit, char const* format);
    // A number or text of the settings' unit.
    CTovValueAngle(double value, CTovUnitSettingsAngle* settings);
    CTovValueAngle(char const* text, CTovUnitSettingsAngle* settings);

    CTovValueAngle(CTovValueAngle const&) = default;
    // Takes number, settings and flag.
    CTovValueAngle& operator=(CTovValueAngle const&) = default;
    ~CTovValueAngle() override;
    using CTovValue::operator=;
    CTovValueAngle& operator=(CTovValue const&) = delete;  // a value of another kind

    void GetString(CString& out) override;
    int SetString(char const* text) override;

    // Stores the rest of the division by 2 pi, with the sign of the value; a latitude or longitude is brought
    // to the half circle on either side of 0. What is not finite becomes NaN. (A latitude is not limited to a
    // quarter.)
    int SetDouble(double value) override;

    // Text and abbreviation as "%s [%s]"; in units 12 and 15 the text alone.
    void StdFormat(CString& out) override;

    using CTovValue::ConvertStdTo;
    using CTovValue::ConvertToStd;
    int ConvertToStd(char const* text, long unit, int precision, unsigned long limit) override;
    int ConvertToStd(double value, long unit, int precision, unsigned long limit) override;
    int ConvertStdTo(CString& out, CTovUnitSettings* other) override;
    // A latitude or longitude is printed without sign and with the letter of its hemisphere: in the place of
    // "%Q" in the settings' format, or behind the number where there is none.
    int ConvertStdTo(CString& out, long unit, int precision, unsigned long limit) override;
    int ConvertStdTo(double& out, long unit, int precision, unsigned long limit) override;
    int ConvertStdTo(CString& out, int usePrecision, int useLimit) override;
    int ConvertStdTo(double& out, int usePrecision, int useLimit) override;

    // flagLatitude, flagLongitude, or 0 for a plain angle.
    void SetFlag(unsigned short flag) { m_wFlag = flag; }
    unsigned short GetFlag() const { return m_wFlag; }

 protected:
    explicit CTovValueAngle(unsigned short flag);
    CTovValueAngle(CTovUnitSettingsAngle* settings, unsigned short flag);

    bool IsLat() const { return (m_wFlag & flagLatitude) != 0; }
    bool IsLon() const { return (m_wFlag & flagLongitude) != 0; }
    bool IsLatOrLon() const { return IsLat() || IsLon(); }

 private:
    void CheckUnit(long& unit);
    void StringToNumber(char const* text, double& out, long unit) const;
    int PrecisionForText(long unit, int precision) const;
    double WithinPrintedCircle(double number) const;
    unsigned HemisphereText(bool positive) const;

    unsigned short m_wFlag = 0;
};

class TOV_CORE_API CTovValueAngleLat : public CTovValueAngle {
 public:
    CTovValueAngleLat();
    CTovValueAngleLat(CTovValueAngleLat const&) = default;
    explicit CTovValueAngleLat(CTovUnitSettingsAngleLatLon* settings);
    using CTovValue::operator=;
    CTovValueAngleLat& operator=(CTovValueAngleLat const&) = default;
    // Takes the number alone.
    CTovValueAngleLat& operator=(CTovValueAngle const& other);
    CTovValueAngleLat& operator=(CTovValue const&) = delete;  // a value of another kind

    int SetDouble(double value) override;
};

class TOV_CORE_API CTovValueAngleLon : public CTovValueAngle {
 public:
    CTovValueAngleLon();
    CTovValueAngleLon(CTovValueAngleLon const&) = default;
    explicit CTovValueAngleLon(CTovUnitSettingsAngleLatLon* settings);
    using CTovValue::operator=;
    CTovValueAngleLon& operator=(CTovValueAngleLon const&) = default;
    // Takes the number alone.
    CTovValueAngleLon& operator=(CTovValueAngle const& other);
    CTovValueAngleLon& operator=(CTovValue const&) = delete;  // a value of another kind

    int SetDouble(double value) override;
};

}  // namespace tov
