// The image file library Dorn200 as the rest of the system calls it: plain C functions of a module that is
// loaded at run time. A host may put a module of its own in its place.
//
// Besides the three calls below a module offers four of FreeImage under their own names and with their own
// arguments, for the images that DornCreateFromBitmap makes: FreeImage_GetBPP, FreeImage_ConvertTo32Bits,
// FreeImage_Save, FreeImage_Unload.
#pragma once

#include <cstdint>

extern "C" {

// A picture in memory. Pixels are 0xAARRGGBB (not premultiplied) in rows from top to bottom without padding.
struct DornBitmap {
    int width;
    int height;
    std::uint32_t* pixels;
};

// Reads a file. `context` is a device context or null, `flags` 0. The picture is one block of memory, pixels
// included, that is given back by free(); null when the file cannot be read, is damaged or too large.
using DornCreateBitmapFromFileCall = DornBitmap*(void const* context, char const* path, int flags);

// The size and the depth of the picture in a file, from its header alone; any pointer may be null. 1, or 0
// and zeros.
using DornTellFromFileCall = int(char const* path, int* width, int* height, int* bitsPerPixel);

// An image for FreeImage's calls; null on failure.
using DornCreateFromBitmapCall = void*(void const* context, DornBitmap const* bitmap);

using DornGetBppCall = unsigned(void* image);
using DornConvertTo32BitsCall = void*(void* image);
using DornSaveCall = int(int format, void* image, char const* path, int flags);
using DornUnloadCall = void(void* image);
}
