// Bitmaps out of bytes in memory, without any help. The bytes may come from anywhere: whatever is damaged,
// cut short or larger than a picture may be gives null.
#pragma once

#include <tov310/pixels.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace tov {

inline constexpr std::int64_t mostBitmapPixels = std::int64_t{1} << 28;  // 1 GiB of them

inline constexpr std::string_view bmpSignature = "BM";
inline constexpr std::string_view pngSignature = "\x89PNG\r\n\x1A\n";

inline bool IsBitmapSize(std::int64_t width, std::int64_t height) {
    return width > 0 && height > 0 && width <= mostBitmapPixels && height <= mostBitmapPixels / width;
}

// Bitmap files with 1 to 32 bits, packed or not, with masks, in both directions.
HBITMAP ReadBmp(std::string_view bytes);

// Portable Network Graphics (ISO/IEC 15948) of every kind; one picture with all checks of sums.
HBITMAP ReadPng(std::string_view bytes);

// How many bytes at the beginning of a file belong to its picture, at most; 0 where it can have none. Judged
// by the first bytes of the file, of which bitmapHeadSize are enough, and by the size of the whole.
inline constexpr std::size_t bitmapHeadSize = 14 + 256;
std::uint64_t BmpExtent(std::string_view head, std::uint64_t fileSize);
std::uint64_t PngExtent(std::string_view head, std::uint64_t fileSize);

// Unpacks a stream of RFC 1951 (deflate). Answers its length when the output was filled to the last byte and
// the stream ended there; else 0.
std::size_t Inflate(std::span<unsigned char const> packed, std::span<unsigned char> output);

}  // namespace tov
