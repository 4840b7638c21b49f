#include "dorn200/dorn200.h"

#include "dorn200/image_pixels.h"
#include "dorn200/image_source.h"

#include <cstdint>

namespace {

// A picture may take 1 GiB of memory.
constexpr std::uint64_t mostPixels = std::uint64_t{1} << 28;

bool IsSmallEnough(tov::ImageFacts const& facts) {
    return std::uint64_t{facts.width} * facts.height <= mostPixels;
}

}  // namespace

#define DORN_EXPORT extern "C" __attribute__((visibility("default")))

DORN_EXPORT DornCreateBitmapFromFileCall DornCreateBitmapFromFile;
DORN_EXPORT DornTellFromFileCall DornTellFromFile;
DORN_EXPORT DornCreateFromBitmapCall DornCreateFromBitmap;

DornBitmap* DornCreateBitmapFromFile(void const*, char const* path, int) try {
    if (path == nullptr) return nullptr;
    tov::ImageSource source(path);
    tov::ImageFacts header;
    if (!source.Tell(header) || !IsSmallEnough(header)) return nullptr;
    auto image = source.Load();
    if (image == nullptr) return nullptr;
    tov::ImageFacts const found{FreeImage_GetWidth(image.get()), FreeImage_GetHeight(image.get()), 0};
    return IsSmallEnough(found) ? tov::PixelsOfImage(std::move(image)) : nullptr;
} catch (...) {
    return nullptr;
}

int DornTellFromFile(char const* path, int* width, int* height, int* bitsPerPixel) try {
    tov::ImageFacts facts;
    int const told = path != nullptr && tov::ImageSource(path).Tell(facts) && facts.width <= INT32_MAX &&
                     facts.height <= INT32_MAX;
    if (!told) facts = {};
    if (width != nullptr) *width = static_cast<int>(facts.width);
    if (height != nullptr) *height = static_cast<int>(facts.height);
    if (bitsPerPixel != nullptr) *bitsPerPixel = static_cast<int>(facts.bitsPerPixel);
    return told;
} catch (...) {
    return 0;
}

void* DornCreateFromBitmap(void const*, DornBitmap const* bitmap) try {
    if (bitmap == nullptr || bitmap->pixels == nullptr || bitmap->width < 1 || bitmap->height < 1)
        return nullptr;
    return tov::ImageOfPixels(*bitmap).release();
} catch (...) {
    return nullptr;
}
