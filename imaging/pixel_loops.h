// Loops over pixels, written for several kinds of processor. All give the same pixels.
#pragma once

#include "imaging/pixel_formulas.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace tov {

// Positions in a source of several rows of a destination, side by side: the state of the walk and, of the
// columns that were walked last, what was found in them.
struct PixelBand {
    static constexpr std::size_t mostRows = 16;
    static constexpr std::size_t mostColumns = 128;

    float u[mostRows] = {};
    float v[mostRows] = {};
    std::int32_t before[mostRows];  // columns in front of the first inside
    std::int32_t inside[mostRows];  // columns inside: they follow each other, since a walk is straight
    std::uint32_t
        index[mostColumns * mostRows];  // of pixels in the source: rows of one column, then the next
};

struct PixelLoops {
    // Makes `count` new pixels of d and s.
    using Compose = void (*)(std::uint32_t* d, std::uint32_t const* s, std::size_t count,
                             PixelArguments const& arguments);
    Compose moving[pixelOperations];  // with as many pixels of s
    Compose still[pixelOperations];   // all with the one at s

    // Walks `columns` on in all rows of the band.
    void (*walk)(PixelBand& band, PixelWalk const& walk, std::size_t columns);
    std::size_t rows;  // that a band has

    Compose Moving(PixelOperation operation) const { return moving[static_cast<std::size_t>(operation)]; }
    Compose Still(PixelOperation operation) const { return still[static_cast<std::size_t>(operation)]; }
};

// The loops that this processor can run, the fastest last.
std::span<PixelLoops const> AllPixelLoops();

inline PixelLoops const& FastPixelLoops() {
    return AllPixelLoops().back();
}

}  // namespace tov
