// Angle text from outside: any text gives a number in the range of its kind, and what that prints as reads
// back.
#include <tov310/angle.h>
#include <tov310/distance.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size < 2) return 0;
    std::string const text(reinterpret_cast<char const*>(data) + 2, size - 2);
    tov::CTovUnitSettingsAngleLatLon settings;
    settings.Unit(11 + data[0] % 8);
    settings.UseSecOnly(data[1] & 1);
    settings.TrimLeadingZeros(data[1] & 2);
    tov::CTovValueAngleLon longitude(&settings);
    longitude = text;
    if (!(std::fabs(longitude.GetDouble()) <= 3.141592653589793)) std::abort();
    tov::CTovValueAngle angle(text.c_str(), &settings);
    if (!(std::fabs(angle.GetDouble()) < 6.283185307179586)) std::abort();
    tov::CString printed;
    angle.GetString(printed);
    tov::CTovValueDistance const distance(text.c_str(), 21L, nullptr);
    if (!std::isfinite(distance.GetDouble())) std::abort();
    return 0;
}
