#include <tov310/angle.h>
#include <tov310/packed_angle.h>
#include <tov310/profile.h>

#include "frame/resource_module.h"
#include "values/angle_text.h"
#include "values/number_text.h"
#include "values/stored_unit.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <string_view>

namespace tov {
namespace {

constexpr double pi = 3.141592653589793;
constexpr double twoPi = 6.283185307179586;

constexpr unsigned northText = 26011;
constexpr unsigned southText = 26012;
constexpr unsigned eastText = 26013;
constexpr unsigned westText = 26014;

constexpr char const* hemisphereToken = "%Q";

CTovUnitSettings* OrSharedAngle(CTovUnitSettings* settings) {
    return settings != nullptr ? settings : &CTovUnitSettingsAngle::Default();
}

CTovUnitSettings* OrSharedLatLon(CTovUnitSettings* settings) {
    return settings != nullptr ? settings : &CTovUnitSettingsAngleLatLon::Default();
}

// The decimals of the packed number: four digits of minutes and seconds, and one more.
int PackedPrecision(long unit, int precision) {
    constexpr int more = 5;
    return precision >= 0 && HasFields(unit) ? std::min(precision, maxNumberWidth) + more : precision;
}

// Whether the first character of the word stands anywhere in the text.
bool HasLetterOf(std::string_view text, std::string_view word) {
    if (word.empty()) return false;
    std::size_t length = 1;
    while (length < word.size() && (static_cast<unsigned char>(word[length]) & 0xC0) == 0x80)
        ++length;
    return text.find(word.substr(0, length)) != text.npos;
}

double HalfCircle(double radians) {
    // 200 grads come out one unit of the last place above pi; they are the half circle and stay on their
    // side.
    constexpr double abovePi = 3.1415926535897936;
    double rest = std::fmod(radians, twoPi);
    if (std::fabs(rest) == abovePi) return std::copysign(pi, rest);
    while (rest > pi)
        rest -= twoPi;
    while (rest < -pi)
        rest += twoPi;
    return rest;
}

}  // namespace

CTovValueAngle::CTovValueAngle() : CTovValueAngle(static_cast<CTovUnitSettingsAngle*>(nullptr)) {}

CTovValueAngle::CTovValueAngle(CTovUnitSettingsAngle* settings) : CTovValue(OrSharedAngle(settings)) {
    long unit = m_pUnitSettings->Unit();
    CheckUnit(unit);
}

CTovValueAngle::CTovValueAngle(unsigned short flag)
    : CTovValueAngle(static_cast<CTovUnitSettingsAngle*>(nullptr), flag) {}

CTovValueAngle::CTovValueAngle(CTovUnitSettingsAngle* settings, unsigned short flag)
    : CTovValue(OrSharedLatLon(settings)), m_wFlag(flag) {
    long unit = m_pUnitSettings->Unit();
    CheckUnit(unit);
}

CTovValueAngle::CTovValueAngle(double value, long unit, char const* format)
    : CTovValue(std::make_unique<CTovUnitSettingsAngle>(unit, format).release(), 1) {
    Status(CTovValueAngle::ConvertToStd(value, unit, -1, 0UL));
}

CTovValueAngle::CTovValueAngle(char const* text, long unit, char const* format)
    : CTovValue(std::make_unique<CTovUnitSettingsAngle>(unit, format).release(), 1) {
    Status(CTovValueAngle::ConvertToStd(text, unit, -1, 0UL));
}

CTovValueAngle::CTovValueAngle(double value, CTovUnitSettingsAngle* settings)
    : CTovValue(OrSharedAngle(settings)) {
    Status(CTovValueAngle::ConvertToStd(value, TOV_UNIT_ANGLE, -1, 0UL));
}

CTovValueAngle::CTovValueAngle(char const* text, CTovUnitSettingsAngle* settings)
    : CTovValue(OrSharedAngle(settings)) {
    Status(CTovValueAngle::ConvertToStd(text, TOV_UNIT_ANGLE, -1, 0UL));
}

CTovValueAngle::~CTovValueAngle() = default;

void CTovValueAngle::CheckUnit(long& unit) {
    if (unit != TOV_UNIT_ANGLE && unit != TOV_UNIT_NONE) return;
    unit = m_pUnitSettings->Unit();
    if (unit != TOV_UNIT_NONE) return;
    long const stored = StoredAngleUnit(m_wFlag != 0 ? CTovProfileEntries::UnitSettingsAngleLatLonSection()
                                                     : CTovProfileEntries::UnitSettingsAngleSection())
                            .Read();
    m_pUnitSettings->Unit(stored != -1 ? stored : TOV_UNIT_DMS);
    unit = m_pUnitSettings->Unit();
}

int CTovValueAngle::SetDouble(double value) {
    return CTovValue::SetDouble(std::fmod(value, twoPi));
}

void CTovValueAngle::GetString(CString& out) {
    ConvertStdTo(out, TOV_UNIT_ANGLE, RoundingPrecision(*m_pUnitSettings),
                 static_cast<unsigned long>(m_pUnitSettings->Format()->LimitToCircle()));
}

int CTovValueAngle::SetString(char const* text) {
    ConvertToStd(text, TOV_UNIT_ANGLE, -1, 0UL);
    return 1;
}

void CTovValueAngle::StdFormat(CString& out) {
    GetString(out);
    if (HasFields(m_pUnitSettings->Unit())) return;
    CString abbreviation;
    GetUnitAbbreviation(abbreviation);
    out += " [" + abbreviation + "]";
}

void CTovValueAngle::StringToNumber(char const* text, double& out, long unit) const {
    std::string_view const all = text != nullptr ? text : "";
    if (!HasFields(unit) || m_pUnitSettings->Format()->UseSecOnly() != 0) {
        // A number that no conversion of units makes infinite.
        out = std::clamp(ReadNumber(all), -1e300, 1e300);
    } else {
        AngleFields const fields = ReadAngleFields(all, m_pUnitSettings->Format()->TrimLeadingZeros() != 0);
        auto const join = unit == TOV_UNIT_DMS ? VeskJoinPackedDms : VeskJoinPackedGon;
        out = join(fields.sign, fields.whole, fields.minutes, static_cast<double>(fields.seconds));
    }
    if (HasLetterOf(all, LibraryString(southText)) || HasLetterOf(all, LibraryString(westText))) out = -out;
}

int CTovValueAngle::ConvertToStd(char const* text, long unit, int precision, unsigned long limit) {
    CheckUnit(unit);
    double number = 0;
    StringToNumber(text, number, unit);
    if (m_pUnitSettings->Format()->UseSecOnly() != 0) {
        int const sign = number >= 0 ? 1 : -1;
        double const count = std::fabs(number);
        switch (unit) {
            case TOV_UNIT_DMS:
            case TOV_UNIT_PACKED_DMS:
                number = VeskJoinPackedDms(sign, 0, 0, count);
                break;
            case TOV_UNIT_DEGREES:
                number = VeskJoinDecimalDeg(sign, 0, 0, count);
                break;
            // The join counts ten-thousandths, the text thousandths.
            case TOV_UNIT_GON:
            case TOV_UNIT_PACKED_GON:
                number = VeskJoinPackedGon(sign, 0, 0, count) * 10.0;
                break;
            // Grads are printed as thousandths but have always been read as they stand.
            default:
                break;
        }
    }
    return ConvertToStd(number, unit, precision, limit);
}

int CTovValueAngle::ConvertToStd(double value, long unit, int precision, unsigned long limit) {
    CheckUnit(unit);
    precision = PackedPrecision(unit, precision);
    double radians = 0;
    Status(Convert(value, unit, radians, TOV_UNIT_RADIANS, precision, limit));
    SetDouble(radians);
    return Status();
}

int CTovValueAngle::ConvertStdTo(double& out, long unit, int precision, unsigned long limit) {
    CheckUnit(unit);
    precision = PackedPrecision(unit, precision);
    Status(Convert(m_dValue, TOV_UNIT_RADIANS, out, unit, precision, limit));
    return Status();
}

// A number that is going to be printed is rounded once: where the format cuts the fields it rounds itself,
// and a packed number must be rounded to the very decimals that are printed, lest "59.996" become "60".
int CTovValueAngle::PrecisionForText(long unit, int precision) const {
    CTovFormat& format = *m_pUnitSettings->Format();
    bool const packed = unit == TOV_UNIT_PACKED_DMS || unit == TOV_UNIT_PACKED_GON;
    bool const smallUnits = format.UseSecOnly() != 0 && !format.HasFormat();
    if (HasFields(unit)) return HasFields(m_pUnitSettings->Unit()) ? -1 : precision;
    if (!packed || (precision < 0 && unit == TOV_UNIT_PACKED_GON)) return precision;
    if (smallUnits) return -1;
    int const shown = format.DecimalsShown();
    return precision < 1 ? shown : std::min(precision, shown);
}

int CTovValueAngle::ConvertStdTo(CString& out, long unit, int precision, unsigned long limit) {
    CheckUnit(unit);
    double number = 0;
    int const status = ConvertStdTo(number, unit, PrecisionForText(unit, precision), limit);
    if (status != 0) return status;

    CTovFormat& format = *m_pUnitSettings->Format();
    bool const hasFormat = format.HasFormat();
    if (limit != 0) number = WithinPrintedCircle(number);
    bool positive = number >= 0;
    if (IsLatOrLon()) number = std::fabs(number);
    auto const print = [&](double what, CString& text) {
        if (hasFormat) {
            format.CustomFormat(hemisphereToken,
                                IsLatOrLon() ? LibraryString(HemisphereText(positive)).c_str() : nullptr);
        }
        format.ConvertToString(what, m_pUnitSettings->Unit(), text);
    };
    print(number, out);
    if (IsLatOrLon() && !positive) {
        // What prints as zero reads back as zero, which lies on the positive side. A format may hold digits
        // of its own: there zero itself tells.
        bool zero = out.find_first_of("123456789") == CString::npos;
        if (!zero && hasFormat) {
            CString nothing = out;
            print(0, nothing);
            zero = nothing == out;
        }
        positive = zero;
        if (zero && hasFormat) print(number, out);
    }
    if (!hasFormat && IsLatOrLon()) out += " " + LibraryString(HemisphereText(positive));
    return Status();
}

// With the limit set a number that would be printed as a full circle is 0. Units with fields, and packed
// numbers, are limited where they are cut.
double CTovValueAngle::WithinPrintedCircle(double number) const {
    CTovFormat& format = *m_pUnitSettings->Format();
    bool const small = format.UseSecOnly() != 0 && !format.HasFormat();
    double circle = 0;
    double scale = 1;
    switch (m_pUnitSettings->Unit()) {
        case TOV_UNIT_DEGREES:
            circle = 360, scale = small ? 3600 : 1;
            break;
        case TOV_UNIT_GRADS:
            circle = 400, scale = small ? 1000 : 1;
            break;
        case TOV_UNIT_GON:
        case TOV_UNIT_PACKED_GON:
            circle = small ? 400 : 0, scale = 1000;
            break;
        case TOV_UNIT_REVOLUTIONS:
            circle = 1;
            break;
        case TOV_UNIT_RADIANS:
            circle = twoPi;
            break;
        default:
            break;
    }
    if (circle == 0) return number;
    double const power = std::pow(10.0, std::min(format.DecimalsShown(), 15));
    return std::round(std::fabs(number) * scale * power) / power >= circle * scale ? 0 : number;
}

unsigned CTovValueAngle::HemisphereText(bool positive) const {
    if (IsLat()) return positive ? northText : southText;
    return positive ? eastText : westText;
}

int CTovValueAngle::ConvertStdTo(CString& out, CTovUnitSettings* other) {
    if (other == nullptr) other = m_pUnitSettings;
    return ConvertStdTo(out, other->Unit(), RoundingPrecision(*other),
                        static_cast<unsigned long>(other->Format()->LimitToCircle()));
}

int CTovValueAngle::ConvertStdTo(CString& out, int usePrecision, int useLimit) {
    return ConvertStdTo(
        out, m_pUnitSettings->Unit(), usePrecision != 0 ? RoundingPrecision(*m_pUnitSettings) : -1,
        useLimit != 0 ? static_cast<unsigned long>(m_pUnitSettings->Format()->LimitToCircle()) : 0UL);
}

int CTovValueAngle::ConvertStdTo(double& out, int usePrecision, int useLimit) {
    return ConvertStdTo(
        out, m_pUnitSettings->Unit(), usePrecision != 0 ? RoundingPrecision(*m_pUnitSettings) : -1,
        useLimit != 0 ? static_cast<unsigned long>(m_pUnitSettings->Format()->LimitToCircle()) : 0UL);
}

CTovValueAngleLat::CTovValueAngleLat() : CTovValueAngle(flagLatitude) {}

CTovValueAngleLat::CTovValueAngleLat(CTovUnitSettingsAngleLatLon* settings)
    : CTovValueAngle(settings, flagLatitude) {}

CTovValueAngleLat& CTovValueAngleLat::operator=(CTovValueAngle const& other) {
    SetDouble(other.GetDouble());
    return *this;
}

int CTovValueAngleLat::SetDouble(double value) {
    return CTovValueAngle::SetDouble(HalfCircle(value));
}

CTovValueAngleLon::CTovValueAngleLon() : CTovValueAngle(flagLongitude) {}

CTovValueAngleLon::CTovValueAngleLon(CTovUnitSettingsAngleLatLon* settings)
    : CTovValueAngle(settings, flagLongitude) {}

CTovValueAngleLon& CTovValueAngleLon::operator=(CTovValueAngle const& other) {
    SetDouble(other.GetDouble());
    return *this;
}

int CTovValueAngleLon::SetDouble(double value) {
    return CTovValueAngle::SetDouble(HalfCircle(value));
}

}  // namespace tov
