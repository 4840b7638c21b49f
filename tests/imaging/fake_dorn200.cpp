// An image module that does as the file says, and tells in what it saves how it was called.
#include "dorn200/dorn200.h"

#include <fstream>
#include <iterator>
#include <string>

#define FAKE_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

std::string calls;
int narrow = 16, wide = 32;  // two images

std::string Order(char const* path) {
    std::ifstream in(path);
    return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace

FAKE_EXPORT DornCreateBitmapFromFileCall DornCreateBitmapFromFile;
FAKE_EXPORT DornTellFromFileCall DornTellFromFile;
FAKE_EXPORT DornCreateFromBitmapCall DornCreateFromBitmap;
FAKE_EXPORT DornGetBppCall FreeImage_GetBPP;
FAKE_EXPORT DornConvertTo32BitsCall FreeImage_ConvertTo32Bits;
FAKE_EXPORT DornSaveCall FreeImage_Save;
FAKE_EXPORT DornUnloadCall FreeImage_Unload;

DornBitmap* DornCreateBitmapFromFile(void const*, char const* path, int) {
    static std::uint32_t pixels[] = {1, 2};
    static DornBitmap bitmap{2, 1, pixels};
    std::string const order = Order(path);
    if (order == "lie") bitmap = {-5, 1 << 30, pixels};
    if (order == "huge") bitmap = {1 << 15, 1 << 15, pixels};
    return order == "none" ? nullptr : &bitmap;
}

int DornTellFromFile(char const* path, int* width, int* height, int* bitsPerPixel) {
    std::string const order = Order(path);
    *width = order == "lie" ? -3 : 3;
    *height = 4;
    *bitsPerPixel = order == "huge" ? 500 : 5;
    return order != "none";
}

void* DornCreateFromBitmap(void const*, DornBitmap const* bitmap) {
    calls = std::to_string(bitmap->width) + "x" + std::to_string(bitmap->height) + ":";
    for (int i = 0; i < bitmap->width * bitmap->height; ++i)
        calls += std::to_string(bitmap->pixels[i]) + ",";
    return bitmap->width == 1 ? &wide : &narrow;
}

unsigned FreeImage_GetBPP(void* image) {
    return static_cast<unsigned>(*static_cast<int*>(image));
}

void* FreeImage_ConvertTo32Bits(void* image) {
    calls += image == &narrow ? " widen" : " what?";
    return &wide;
}

void FreeImage_Unload(void* image) {
    calls += " unload" + std::to_string(*static_cast<int*>(image));
}

int FreeImage_Save(int format, void* image, char const* path, int flags) {
    calls += " save" + std::to_string(*static_cast<int*>(image)) + " as " + std::to_string(format) + " " +
             std::to_string(flags);
    std::ofstream(path) << calls;
    return format != 99;
}
