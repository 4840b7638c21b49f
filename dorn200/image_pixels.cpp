#include "dorn200/image_pixels.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>

namespace tov {
namespace {

constexpr std::uint32_t opaque = 0xFF000000;

std::uint32_t Pixel(unsigned red, unsigned green, unsigned blue, unsigned alpha = 255) {
    return alpha << 24 | red << 16 | green << 8 | blue;
}

// The colours of an image with a palette.
std::array<std::uint32_t, 256> Palette(FIBITMAP* image) {
    std::array<std::uint32_t, 256> colours{};
    colours.fill(opaque);
    RGBQUAD const* const palette = FreeImage_GetPalette(image);
    BYTE const* const alpha = FreeImage_GetTransparencyTable(image);
    for (unsigned i = 0; palette != nullptr && i < std::min(256u, FreeImage_GetColorsUsed(image)); ++i) {
        bool const hasAlpha = alpha != nullptr && i < FreeImage_GetTransparencyCount(image);
        colours[i] =
            Pixel(palette[i].rgbRed, palette[i].rgbGreen, palette[i].rgbBlue, hasAlpha ? alpha[i] : 255);
    }
    return colours;
}

// Calls convert(row of pixels, bytes of the same row) from the top to the bottom.
template <class Convert>
void EachRow(FIBITMAP* image, DornBitmap const& to, Convert convert) {
    for (int y = 0; y < to.height; ++y) {
        BYTE* const line = FreeImage_GetScanLine(image, to.height - 1 - y);  // stored from bottom to top
        auto const width = static_cast<std::size_t>(to.width);
        convert(std::span(to.pixels + width * static_cast<std::size_t>(y), width), line);
    }
}

void ConvertPalette(FIBITMAP* image, unsigned bits, DornBitmap const& to) {
    auto const colours = Palette(image);
    EachRow(image, to, [&](std::span<std::uint32_t> row, BYTE const* line) {
        unsigned const perByte = 8 / bits;
        for (std::size_t x = 0; x < row.size(); ++x) {
            auto const place = static_cast<unsigned>(x % perByte) + 1;
            row[x] = colours[unsigned{line[x / perByte]} >> (8 - bits * place) & ((1u << bits) - 1)];
        }
    });
}

// Samples of 16 bits as PNG and TIFF have them; the high byte of each is kept.
void ConvertDeep(FIBITMAP* image, std::size_t samples, DornBitmap const& to) {
    EachRow(image, to, [&](std::span<std::uint32_t> row, BYTE const* line) {
        for (std::size_t x = 0; x < row.size(); ++x) {
            std::array<std::uint16_t, 4> s{0, 0, 0, 0xFFFF};
            std::memcpy(s.data(), line + x * samples * 2, samples * 2);
            if (samples == 1) s[1] = s[2] = s[0];
            row[x] = Pixel(s[0] / 256u, s[1] / 256u, s[2] / 256u, s[3] / 256u);
        }
    });
}

void ConvertColours(FIBITMAP* image, unsigned bits, DornBitmap const& to) {
    bool const is565 = FreeImage_GetGreenMask(image) == FI16_565_GREEN_MASK;
    EachRow(image, to, [&](std::span<std::uint32_t> row, BYTE* line) {
        auto* const target = reinterpret_cast<BYTE*>(row.data());
        int const width = static_cast<int>(row.size());
        if (bits == 16 && is565) {
            FreeImage_ConvertLine16To32_565(target, line, width);
        } else if (bits == 16) {
            FreeImage_ConvertLine16To32_555(target, line, width);
        } else if (bits == 32) {
            std::memcpy(target, line, row.size_bytes());
        } else {
            for (std::uint32_t& pixel : row) {
                pixel = Pixel(line[FI_RGBA_RED], line[FI_RGBA_GREEN], line[FI_RGBA_BLUE]);
                line += 3;
            }
        }
    });
}

bool Convert(FIBITMAP* image, DornBitmap const& to) {
    unsigned const bits = FreeImage_GetBPP(image);
    switch (FreeImage_GetImageType(image)) {
        case FIT_BITMAP:
            if (bits <= 8) {
                ConvertPalette(image, bits, to);
            } else {
                ConvertColours(image, bits, to);
            }
            return true;
        case FIT_UINT16:
            ConvertDeep(image, 1, to);
            return true;
        case FIT_RGB16:
            ConvertDeep(image, 3, to);
            return true;
        case FIT_RGBA16:
            ConvertDeep(image, 4, to);
            return true;
        default:
            return false;
    }
}

}  // namespace

// FreeImage keeps 32 bits in the order of its platform's bitmaps, which is ours.
static_assert(std::endian::native == std::endian::little && FI_RGBA_BLUE == 0 && FI_RGBA_ALPHA == 3);

DornBitmap* PixelsOfImage(FreeImagePtr image) {
    // Heights and other measures: from black for the least one to white for the greatest.
    FREE_IMAGE_TYPE const type = FreeImage_GetImageType(image.get());
    if (type == FIT_INT16 || type == FIT_UINT32 || type == FIT_INT32 || type == FIT_FLOAT ||
        type == FIT_DOUBLE) {
        image.reset(FreeImage_ConvertToStandardType(image.get(), TRUE));
        if (image == nullptr) return nullptr;
    }
    auto const width = FreeImage_GetWidth(image.get());
    auto const height = FreeImage_GetHeight(image.get());
    constexpr std::size_t header = 64;  // keeps the pixels aligned
    static_assert(sizeof(DornBitmap) <= header);
    auto* const bitmap =
        static_cast<DornBitmap*>(std::malloc(header + std::size_t{width} * height * sizeof(std::uint32_t)));
    if (bitmap == nullptr) return nullptr;
    *bitmap = {static_cast<int>(width), static_cast<int>(height),
               reinterpret_cast<std::uint32_t*>(reinterpret_cast<char*>(bitmap) + header)};
    if (Convert(image.get(), *bitmap)) return bitmap;
    std::free(bitmap);
    return nullptr;
}

FreeImagePtr ImageOfPixels(DornBitmap const& bitmap) {
    std::span const pixels(bitmap.pixels,
                           static_cast<std::size_t>(bitmap.width) * static_cast<std::size_t>(bitmap.height));
    std::uint32_t any = 0, all = opaque;
    for (std::uint32_t const pixel : pixels) {
        any |= pixel;
        all &= pixel;
    }
    bool const hasAlpha = (any & opaque) != 0 && all != opaque;
    FreeImagePtr image(FreeImage_Allocate(bitmap.width, bitmap.height, hasAlpha ? 32 : 24));
    if (image == nullptr) return nullptr;
    EachRow(image.get(), bitmap, [&](std::span<std::uint32_t> row, BYTE* line) {
        if (hasAlpha) {
            std::memcpy(line, row.data(), row.size_bytes());
            return;
        }
        for (std::uint32_t const pixel : row) {
            line[FI_RGBA_BLUE] = static_cast<BYTE>(pixel);
            line[FI_RGBA_GREEN] = static_cast<BYTE>(pixel >> 8);
            line[FI_RGBA_RED] = static_cast<BYTE>(pixel >> 16);
            line += 3;
        }
    });
    return image;
}

}  // namespace tov
