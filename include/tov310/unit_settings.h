// In which unit and with what format values are shown.
#pragma once

#include <tov310/export.h>
#include <tov310/format.h>
#include <tov310/object.h>
#include <tov310/types.h>

#include <memory>

namespace tov {

// Unit ids, a long everywhere.
inline constexpr long TOV_UNIT_NONE = 2;         // not chosen yet: taken from the profile
inline constexpr long TOV_UNIT_ANGLE = 10;       // the unit of the value's angle settings
inline constexpr long TOV_UNIT_DEGREES = 11;     // decimal degrees
inline constexpr long TOV_UNIT_DMS = 12;         // packed degrees, shown as degrees, minutes, seconds
inline constexpr long TOV_UNIT_PACKED_DMS = 13;  // packed degrees, shown as one number
inline constexpr long TOV_UNIT_GRADS = 14;       // a plain factor
inline constexpr long TOV_UNIT_GON = 15;         // gon, shown as gon, c, cc
inline constexpr long TOV_UNIT_PACKED_GON = 16;  // gon, shown as one number
inline constexpr long TOV_UNIT_REVOLUTIONS = 17;
inline constexpr long TOV_UNIT_RADIANS = 18;   // the standard unit of angles
inline constexpr long TOV_UNIT_DISTANCE = 20;  // the unit of the value's distance settings
inline constexpr long TOV_UNIT_METRES = 21;    // the standard unit of distances
inline constexpr long TOV_UNIT_US_SURVEY_FEET = 22;
inline constexpr long TOV_UNIT_INTERNATIONAL_FEET = 23;

// A unit with its format. Values point to settings; those of Default() below are shared by all values that
// have none of their own, and belong to the user-interface thread.
class TOV_CORE_API CTovUnitSettings : public CObject {
    TOV_DYNAMIC(CTovUnitSettings, CObject)
 public:
    CTovUnitSettings();
    CTovUnitSettings(long unit, char const* format);
    CTovUnitSettings(CTovUnitSettings const& other);
    CTovUnitSettings& operator=(CTovUnitSettings const& other);
    ~CTovUnitSettings() override;

    // The unit id; 2 when none is chosen.
    virtual int Unit() const;
    // Takes any id and answers the status.
    virtual int Unit(long unit);
    virtual void GetUnitAbbreviation(CString& abbreviation) const;

    // Never null; belongs to these settings.
    virtual CTovFormat* Format() const;
    virtual int Format(char const* format);

    virtual void Precision(int precision);
    virtual int Precision();
    virtual void TrimTrailingZeros(int trim);
    virtual int TrimTrailingZeros();

    // The first error since the last call, 0 for none.
    virtual int Status();
    // 1 while there is no error; does not clear it.
    int IsValid() const { return m_nStatus == 0; }

    // The abbreviation of any unit, or with useSecOnly that of its small unit.
    static void UnitAbbreviation(long unit, CString& abbreviation, int useSecOnly);

 protected:
    int Unit(long unit, char const* format);
    // Keeps the first error.
    void Status(int status) {
        if (m_nStatus == 0) m_nStatus = status;
    }

 private:
    long m_lUnit = TOV_UNIT_NONE;
    int m_nStatus = 0;
    std::unique_ptr<CTovFormat> m_pFormat;
};

// Settings of angles: Precision 5. Private settings have no section in the profile.
class TOV_CORE_API CTovUnitSettingsAngle : public CTovUnitSettings {
    TOV_DYNAMIC(CTovUnitSettingsAngle, CTovUnitSettings)
 public:
    CTovUnitSettingsAngle();
    CTovUnitSettingsAngle(long unit, char const* format);
    // Copies take unit, status and format; each object keeps its own section.
    CTovUnitSettingsAngle(CTovUnitSettingsAngle const& other);
    CTovUnitSettingsAngle& operator=(CTovUnitSettingsAngle const& other);

    // As in CTovFormat.
    void UseDmsSymbols(int use) { Format()->UseDmsSymbols(use); }
    int UseDmsSymbols() const { return Format()->UseDmsSymbols(); }
    void UseSecOnly(int use) { Format()->UseSecOnly(use); }
    int UseSecOnly() const { return Format()->UseSecOnly(); }
    void TrimLeadingZeros(int trim) { Format()->TrimLeadingZeros(trim); }
    int TrimLeadingZeros() const { return Format()->TrimLeadingZeros(); }
    void LimitToCircle(int limit) { Format()->LimitToCircle(limit); }
    int LimitToCircle() const { return Format()->LimitToCircle(); }

    // The unit that a combo box puts in when the profile has none; -1 until one has set it.
    void DefaultUnit(long unit) { m_lDefaultUnit = unit; }
    long DefaultUnit() const { return m_lDefaultUnit; }

    // The settings that all plain angles share.
    static CTovUnitSettingsAngle& Default();

    // Gives the shared settings a unit at the start of an application: the stored one, or, where the profile
    // holds none or an excluded one, the given one, which is stored then. Placeholders, excluded and unknown
    // units do nothing. `excluded` is a list that ends with -1, or null.
    static void DefaultSettings(long unit, int const* excluded = nullptr);

    // All angle units in the order of their ids, ending with -1.
    static int const* Units();

    // Where the unit is stored; empty for settings that are not shared.
    CString const& Section() const { return m_strSection; }

 protected:
    void Section(char const* section) { m_strSection = section; }
    void LoadOrStore(long unit, int const* excluded);

 private:
    CString m_strSection;
    long m_lDefaultUnit = -1;
};

// Settings of latitudes and longitudes: Precision 9.
class TOV_CORE_API CTovUnitSettingsAngleLatLon : public CTovUnitSettingsAngle {
    TOV_DYNAMIC(CTovUnitSettingsAngleLatLon, CTovUnitSettingsAngle)
 public:
    CTovUnitSettingsAngleLatLon();
    CTovUnitSettingsAngleLatLon(CTovUnitSettingsAngleLatLon const& other);
    CTovUnitSettingsAngleLatLon& operator=(CTovUnitSettingsAngleLatLon const& other) = default;

    static CTovUnitSettingsAngleLatLon& Default();
    static void DefaultSettings(long unit, int const* excluded = nullptr);
};

// Settings of distances: Precision 6.
class TOV_CORE_API CTovUnitSettingsDistance : public CTovUnitSettings {
    TOV_DYNAMIC(CTovUnitSettingsDistance, CTovUnitSettings)
 public:
    CTovUnitSettingsDistance();
    CTovUnitSettingsDistance(long unit, char const* format);

    static CTovUnitSettingsDistance& Default();
    static void DefaultSettings(long unit);

    // All distance units in the order of their ids, ending with -1.
    static int const* Units();
};

}  // namespace tov
