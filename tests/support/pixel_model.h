// Operations one pixel after the other.
#pragma once

#include "imaging/pixel_rows.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace tov::test {

// The pixel that an operation makes, by the plain formulas; `place` counts the pixels of a row.
inline std::uint32_t PixelOf(PixelOperation operation, std::uint32_t d, std::uint32_t s,
                             PixelArguments arguments, std::size_t place = 0) {
    using Formula = std::uint32_t (*)(std::uint32_t, std::uint32_t, PixelArguments const&);
    static constexpr auto formulas = []<std::size_t... i>(std::index_sequence<i...>) {
        return std::array<Formula, pixelOperations>{ComposePixel<static_cast<PixelOperation>(i)>...};
    }
    (std::make_index_sequence<pixelOperations>{});
    if (operation == PixelOperation::kEverySecond && place % 2 != 0) arguments.taken = ~arguments.taken;
    return formulas[static_cast<std::size_t>(operation)](d, s, arguments);
}

// A rotating copy: one row after the other, one pixel after the other.
inline std::vector<std::uint32_t> WalkOneByOne(CTovPixels const& to, CTovPixels const& from,
                                               PixelWalk const& first, PixelStretch const& how) {
    std::vector<std::uint32_t> made(to.GetBits(), to.GetBits() + to.GetCount());
    float rowU = first.u;
    float rowV = first.v;
    auto pixel = made.begin();
    for (int y = 0; y < to.GetHeight(); ++y, rowU -= first.dv, rowV += first.du) {
        float u = rowU;
        float v = rowV;
        for (int x = 0; x < to.GetWidth(); ++x, ++pixel, u += first.du, v += first.dv) {
            if (u > 0 && v > 0 && u < static_cast<float>(first.width) &&
                v < static_cast<float>(first.height)) {
                std::uint32_t const s = from.GetRow(static_cast<int>(v))[static_cast<int>(u)];
                *pixel = how.compose ? PixelOf(how.operation, *pixel, s, how.arguments) : s;
            } else if (how.fill) {
                *pixel = how.outside;
            }
        }
    }
    return made;
}

}  // namespace tov::test
