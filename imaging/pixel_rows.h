// Operations on rectangles of pixels: rows of images, and the walk of one image through another.
#pragma once

#include "imaging/pixel_loops.h"

#include <tov310/pixels.h>

#include <cstddef>
#include <cstdint>

namespace tov {

// A rectangle of a destination, and of a source where there is one. Pitches count pixels from row to row.
struct PixelRows {
    std::uint32_t* dst = nullptr;
    std::uint32_t const* src = nullptr;
    std::ptrdiff_t dstPitch = 0;
    std::ptrdiff_t srcPitch = 0;
    int width = 0;
    int height = 0;
};

// The rectangles may lie in the same image and overlap: the source counts as it was at first.
void CopyRows(PixelRows const& rows);
void ComposeRows(PixelRows const& rows, PixelOperation operation, PixelArguments const& arguments);

// Composes all pixels with one; the source is not looked at.
void ComposeRows(PixelRows const& rows, PixelOperation operation, PixelArguments const& arguments,
                 std::uint32_t pixel);

// What becomes of the pixels of a destination that a walk goes through.
struct PixelStretch {
    bool compose = false;  // with the pixels of the source; otherwise those are stored
    PixelOperation operation = PixelOperation::kUnlessKey;
    PixelArguments arguments{};
    bool fill = false;  // those that fall outside of the source become `outside`
    std::uint32_t outside = 0;
};

// Walks all of the destination. (u, v) in `first` belongs to its first pixel; a step along a row is that of
// the walk, a step to the next row (-dv, du). The two blocks are different ones.
void StretchPixels(CTovPixels& to, CTovPixels const& from, PixelWalk const& first, PixelStretch const& how,
                   PixelLoops const& loops = FastPixelLoops());

}  // namespace tov
