// One pixel laid over another; alpha bytes say what of each covers.
#pragma once

#include <cstdint>

namespace tov {

// Porter and Duff, "Compositing digital images" (1984), operation over, with colours that are not multiplied
// by their alpha.
inline std::uint32_t PixelOver(std::uint32_t below, std::uint32_t above) {
    std::uint32_t const ofAbove = (above >> 24) * 255;
    std::uint32_t const ofBelow = (below >> 24) * (255 - (above >> 24));
    std::uint32_t const sum = ofAbove + ofBelow;
    if (sum == 0) return 0;
    std::uint32_t result = (sum + 127) / 255 << 24;
    for (unsigned shift = 0; shift < 24; shift += 8) {
        std::uint32_t const mixed = (above >> shift & 0xFF) * ofAbove + (below >> shift & 0xFF) * ofBelow;
        result |= (mixed + sum / 2) / sum << shift;
    }
    return result;
}

}  // namespace tov
