// Between FreeImage's images and plain pixels.
#pragma once

#include "dorn200/dorn200.h"
#include "dorn200/image_source.h"

namespace tov {

// One block of memory for free(); null where there is no memory or the image is of a kind without colours.
DornBitmap* PixelsOfImage(FreeImagePtr image);

// With 32 bits where the alpha bytes say something, else with 24. They say nothing where they are all 255 or,
// as drawing leaves them, all 0.
FreeImagePtr ImageOfPixels(DornBitmap const& bitmap);

}  // namespace tov
