// Bitmap resources with their companions for fine screens.
#pragma once

#include <tov310/pixels.h>
#include <tov310/resources.h>

namespace tov {

struct PictureResource {
    HBITMAP plain;  // bitmaps/ID; null where it is missing
    HBITMAP fine;   // bitmaps/ID@2x of the same module, if it has just twice the size; else null
};

// The current module's for null. The blocks are nobody else's.
PictureResource LoadPicture(HINSTANCE module, unsigned int id);

}  // namespace tov
