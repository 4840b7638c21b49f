// Angles from the clipboard: any text is an angle or none, and what is one has parts within their bounds.
#include "controls/edit_angle_text.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    auto const angle = tov::ReadWrittenAngle({reinterpret_cast<char const*>(data), size});
    if (!angle) return 0;
    for (double const part : angle->parts) {
        if (!std::isfinite(part) || part < 0) std::abort();
    }
    if (angle->hasSign && angle->hemisphere != tov::eSignPlusMinus) std::abort();
    if (angle->isBare && (angle->parts[1] != 0 || angle->parts[2] != 0)) std::abort();
    return 0;
}
