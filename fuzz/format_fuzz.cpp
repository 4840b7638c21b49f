// Format strings from outside: whatever stands in them, printing reads no memory that is not its own and
// ends.
#include <tov310/angle.h>
#include <tov310/format.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size < 12) return 0;
    double value = 0;
    std::memcpy(&value, data, sizeof value);
    long const unit = 10 + data[8] % 14;
    auto const flags = data[9];
    auto const precision = static_cast<signed char>(data[10]);
    std::size_t const tokenLength = data[11] % 8;
    std::string const rest(reinterpret_cast<char const*>(data) + 12, size - 12);
    std::string const token = rest.substr(0, tokenLength);
    std::string const format = rest.substr(std::min(tokenLength, rest.size()));

    tov::CTovFormat printer(unit, flags & 1, flags & 2, format.c_str());
    printer.CustomFormat(token.c_str(), format.c_str());
    printer.UseDmsSymbols(flags & 4);
    printer.TrimLeadingZeros(flags & 8);
    printer.TrimTrailingZeros(flags & 16);
    printer.Precision(precision);
    tov::CString text;
    printer.ConvertToString(value, unit, text);

    tov::CTovUnitSettingsAngleLatLon settings;
    settings.Unit(unit);
    settings.Format(format.c_str());
    tov::CTovValueAngleLat latitude(&settings);
    latitude = value;
    latitude.StdFormat(text);
    return 0;
}
