// A number that knows its unit.
#pragma once

#include <tov310/export.h>
#include <tov310/types.h>
#include <tov310/unit_settings.h>

#include <cstddef>
#include <memory>

namespace tov {

namespace detail {
// What a number in the unit is multiplied by to be in the standard unit; 0 for the packed and unknown units.
inline constexpr double plainUnitFactors[] = {
    0.017453292519943295,  // 11 degrees: pi / 180
    0,
    0,
    0.015707963267948967,  // 14 grads: pi / 200
    0,
    0,
    6.283185307179586,  // 17 revolutions: 2 pi
    1,                  // 18 radians
    0,
    0,
    1,                   // 21 metres
    0.3048006096012192,  // 22 US survey feet: 1200 / 3937 m (NIST SP 811, B.6)
    0.3048,              // 23 international feet: exact (NIST SP 811, B.6)
};

constexpr double PlainUnitFactor(long unit) {
    return unit >= TOV_UNIT_DEGREES && unit <= TOV_UNIT_INTERNATIONAL_FEET
               ? plainUnitFactors[unit - TOV_UNIT_DEGREES]
               : 0;
}

TOV_CORE_API int ConvertPacked(double in, long from, double& out, long to, int precision,
                               unsigned long limit);
}  // namespace detail

// Holds one number in the standard unit of its kind, radians or metres. Unit settings say how it is shown and
// how a text becomes the number again. A value shares its settings; only one that was made from a unit and a
// format has its own, and its copies keep those alive.
//
// Conversions answer the status: 0, or 1 for a unit that is not known, which also makes the number 0; a
// constructor leaves it to be asked with IsValid. What they take:
//
//   unit       the unit of the number or text; 10 or 20 (or 2) means that of the settings
//   precision  decimals to which a sexagesimal or gon number is rounded, -1 for none:
//              in units 12 and 15 one less than the decimals of the seconds, in 13 and 16 those of the
//              number. A text in units 12 and 15 always has the decimals of its format
//   limit      not 0 keeps a sexagesimal or gon number, and the text of any angle, below a full circle
class TOV_CORE_API CTovValue {
 public:
    CTovValue(CTovValue const&) = default;
    virtual ~CTovValue();

    // The text in the unit and format of the settings, without the unit.
    virtual void GetString(CString& out) = 0;
    // Reads a text in the unit of the settings; what cannot be read is 0. Answers 1.
    virtual int SetString(char const* text) = 0;

    // Only a double or a text can be put into a value that has a unit: these give 0 and change nothing.
    virtual short GetShort() const;
    virtual int SetShort(short);
    virtual unsigned short GetUshort() const;
    virtual int SetUshort(unsigned short);
    virtual int GetInt() const;
    virtual int SetInt(int);
    virtual unsigned int GetUint() const;
    virtual int SetUint(unsigned int);
    virtual long GetLong() const;
    virtual int SetLong(long);
    virtual unsigned long GetUlong() const;
    virtual int SetUlong(unsigned long);
    virtual float GetFloat() const;
    virtual int SetFloat(float);

    // The number in the standard unit.
    virtual double GetDouble() const;
    // Answers 1.
    virtual int SetDouble(double value);

    // The text with the unit beside it.
    virtual void StdFormat(CString& out) = 0;

    // Puts other settings in, or changes who owns the present ones; with own not 0 the value deletes them
    // when neither it nor a copy uses them any more. Null is ignored.
    virtual void UnitSettings(CTovUnitSettings* settings, int own);
    virtual CTovUnitSettings* UnitSettings();
    virtual void GetUnitAbbreviation(CString& abbreviation);

    // Take a text or number of the unit into the value.
    virtual int ConvertToStd(char const* text, long unit, int precision, unsigned long limit) = 0;
    virtual int ConvertToStd(double value, long unit, int precision, unsigned long limit) = 0;
    // The same in the unit of the settings, with their precision and limit where asked for.
    virtual int ConvertToStd(char const* text, int usePrecision, int useLimit);
    virtual int ConvertToStd(double value, int usePrecision, int useLimit);

    // Give the value as a text or number of the unit; on failure the text stays. A text of another unit than
    // that of the settings holds the number of that unit, printed in the manner of the settings' unit.
    virtual int ConvertStdTo(CString& out, CTovUnitSettings* other) = 0;
    virtual int ConvertStdTo(CString& out, long unit, int precision, unsigned long limit) = 0;
    virtual int ConvertStdTo(double& out, long unit, int precision, unsigned long limit) = 0;
    virtual int ConvertStdTo(CString& out, int usePrecision, int useLimit);
    virtual int ConvertStdTo(double& out, int usePrecision, int useLimit);

    // The first error since the last call, 0 for none.
    int Status();
    // 1 while there is no error; does not clear it.
    int IsValid() const { return m_nStatus == 0; }

    CTovValue& operator=(double value);
    CTovValue& operator=(char const* text);
    CTovValue& operator=(CString const& text) { return *this = text.c_str(); }
    CTovValue& operator=(short value);
    CTovValue& operator=(unsigned short value);
    CTovValue& operator=(int value);
    CTovValue& operator=(unsigned int value);
    CTovValue& operator=(long value);
    CTovValue& operator=(unsigned long value);
    CTovValue& operator=(float value);
    CTovValue& operator=(char) = delete;
    CTovValue& operator=(bool) = delete;
    CTovValue& operator=(std::nullptr_t) = delete;

    operator double() const { return GetDouble(); }
    operator short() const { return GetShort(); }
    operator unsigned short() const { return GetUshort(); }
    operator int() const { return GetInt(); }
    operator unsigned int() const { return GetUint(); }
    operator long() const { return GetLong(); }
    operator unsigned long() const { return GetUlong(); }
    operator float() const { return GetFloat(); }

    // Converts between two units. `out` is 0 and the answer 1 when one of them is unknown. Equal units give
    // the number as it is, known or not. Angles and distances are not told apart: radians and metres are both
    // the number itself.
    static int Convert(double in, long from, double& out, long to, int precision = -1,
                       unsigned long limit = 0) {
        if (from == to) {
            out = in;
            return 0;
        }
        double const first = detail::PlainUnitFactor(from);
        double const second = detail::PlainUnitFactor(to);
        if (first == 0 || second == 0) return detail::ConvertPacked(in, from, out, to, precision, limit);
        out = in * first / second;
        return 0;
    }

 protected:
    // Takes the settings, and with own not 0 owns them; null gives the value settings of its own without a
    // unit.
    explicit CTovValue(CTovUnitSettings* settings, int own = 0);

    // Takes number, settings and status.
    CTovValue& operator=(CTovValue const&) = default;

    // Keeps the first error.
    void Status(int status) {
        if (m_nStatus == 0) m_nStatus = status;
    }

    // Lets the settings go.
    void Release();

    double m_dValue = 0;
    CTovUnitSettings* m_pUnitSettings = nullptr;

 private:
    std::shared_ptr<CTovUnitSettings> m_ownSettings;  // empty where the settings are shared
    int m_nStatus = 0;
};

}  // namespace tov
