// Operations one pixel after the other, and what tests of pixels draw by lot.
#pragma once

#include "imaging/pixel_rows.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <utility>
#include <vector>

namespace tov::test {

using Pixels = std::vector<std::uint32_t>;

inline std::mt19937& Random() {
    static std::mt19937 random(51);
    return random;
}

inline int Between(int least, int most) {
    return std::uniform_int_distribution(least, most)(Random());
}

constexpr std::uint32_t keyPixel = 0x302010;

// One colour often, so that keys are met.
inline std::uint32_t AnyPixel() {
    return static_cast<std::uint32_t>(Between(0, 255)) << 24 |
           (Between(0, 2) == 0 ? keyPixel : static_cast<std::uint32_t>(Between(0, 0xFFFFFF)));
}

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
inline Pixels WalkOneByOne(CTovPixels const& to, CTovPixels const& from, PixelWalk const& first,
                           PixelStretch const& how) {
    Pixels made(to.GetBits(), to.GetBits() + to.GetCount());
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
