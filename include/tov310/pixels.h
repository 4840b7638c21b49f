// Pixels in memory, as software images and bitmaps share them, and colours.
//
// A pixel is 32 bits, 0xAARRGGBB: in memory blue, green, red, alpha. Colours of drawing code come as
// 0x00BBGGRR.
#pragma once

#include <tov310/export.h>

#include <cstddef>
#include <cstdint>
#include <memory>

namespace tov {

// A colour of drawing code: 0x00BBGGRR.
using COLORREF = std::uint32_t;

// Red, green and blue from 0 to 255 as a colour.
constexpr COLORREF TovRgb(unsigned red, unsigned green, unsigned blue) {
    return (red & 0xFF) | (green & 0xFF) << 8 | (blue & 0xFF) << 16;
}

// A colour as a pixel, and a pixel as a colour: red and blue change places. The top byte stays as it is.
constexpr std::uint32_t TovSwapRedAndBlue(std::uint32_t value) {
    return (value & 0xFF00FF00) | (value & 0xFF) << 16 | (value >> 16 & 0xFF);
}

// What an image header says, as drawing code and image files know it.
struct BITMAPINFOHEADER {
    std::uint32_t biSize = 0;   // of this structure, 40 bytes
    std::int32_t biWidth = 0;   // pixels
    std::int32_t biHeight = 0;  // rows; negative where they run top-down
    std::uint16_t biPlanes = 0;
    std::uint16_t biBitCount = 0;
    std::uint32_t biCompression = 0;  // BI_RGB
    std::int32_t biSizeImage = 0;     // bytes, with the sign of the height
    std::int32_t biXPelsPerMeter = 0;
    std::int32_t biYPelsPerMeter = 0;
    std::uint32_t biClrUsed = 0;
    std::uint32_t biClrImportant = 0;
};

struct RGBQUAD {
    std::uint8_t rgbBlue = 0;
    std::uint8_t rgbGreen = 0;
    std::uint8_t rgbRed = 0;
    std::uint8_t rgbReserved = 0;
};

struct BITMAPINFO {
    BITMAPINFOHEADER bmiHeader;
    RGBQUAD bmiColors[1];
};

inline constexpr std::uint32_t BI_RGB = 0;            // pixels as they stand
inline constexpr unsigned DIB_RGB_COLORS = 0;         // colours are values, not numbers in a palette
inline constexpr std::uint32_t SRCCOPY = 0x00CC0020;  // the raster operation that replaces pixels

class CTovPixels;

// Names a block of pixels and keeps it alive together with all copies of the name; null names none.
using HBITMAP = std::shared_ptr<CTovPixels>;

// A block of pixels: height rows of width pixels without padding, aligned to 64 bytes. It has its size for
// life. Row 0 is the top one of the picture where the rows run top-down, else the bottom one.
//
// A block is used by one thread at a time.
class TOV_CORE_API CTovPixels {
 public:
    // Whether there are blocks of this size: a positive width, any height but 0, less than 2 GiB together.
    static bool IsPossible(int width, int height);

    // Makes a block of zeroed pixels. A positive height makes rows that run bottom-up, a negative one rows
    // that run top-down. Null for sizes that are not possible, and where memory is refused.
    static HBITMAP Create(int width, int height);

    int GetWidth() const { return m_nWidth; }    // pixels, at least 1
    int GetHeight() const { return m_nHeight; }  // rows, at least 1
    bool IsTopDown() const { return m_bTopDown; }
    std::size_t GetCount() const;  // pixels of all rows

    // The pixels from row 0 on.
    std::uint32_t* GetBits() { return m_pBits; }
    std::uint32_t const* GetBits() const { return m_pBits; }

    // The pixels of a memory row, 0 to height - 1.
    std::uint32_t* GetRow(int row) { return m_pBits + Offset(row); }
    std::uint32_t const* GetRow(int row) const { return m_pBits + Offset(row); }

    // Copies the picture of a block of the same size; rows change places where the directions differ. Answers
    // 1, or 0 with nothing changed where the sizes differ.
    int CopyFrom(CTovPixels const& from);

 private:
    struct Release {
        void operator()(void* memory) const;
    };
    using Memory = std::unique_ptr<void, Release>;

    CTovPixels(Memory memory, std::uint32_t* bits, int width, int height, bool topDown);
    std::ptrdiff_t Offset(int row) const { return std::ptrdiff_t{row} * m_nWidth; }

    Memory m_memory;
    std::uint32_t* m_pBits;
    int m_nWidth;
    int m_nHeight;
    bool m_bTopDown;
};

}  // namespace tov
