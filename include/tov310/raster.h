// Pixels in memory combined, stretched and made to look disabled.
#pragma once

#include <tov310/export.h>
#include <tov310/geometry.h>
#include <tov310/pixels.h>

#include <cstdint>

namespace tov {

// What areas are filled with.
struct CTovBrush {
    COLORREF color = 0xFFFFFF;
    int halftone = 0;  // 1: instead of the colour, white and black pixels in turn

    friend bool operator==(CTovBrush const&, CTovBrush const&) = default;
};

// Raster operations say, bit by bit of a colour, what becomes of brush (P), source (S) and what is there (D).
// Their bits 16 to 23 are the truth table: bit number 4 P + 2 S + D is the outcome. All 256 tables work;
// these have names. SRCCOPY is in pixels.h.
inline constexpr std::uint32_t BLACKNESS = 0x00000042;
inline constexpr std::uint32_t NOTSRCCOPY = 0x00330008;
inline constexpr std::uint32_t DSTINVERT = 0x00550009;
inline constexpr std::uint32_t PATINVERT = 0x005A0049;  // D ^ P
inline constexpr std::uint32_t SRCINVERT = 0x00660046;  // D ^ S
inline constexpr std::uint32_t SRCAND = 0x008800C6;     // D & S
inline constexpr std::uint32_t SRCPAINT = 0x00EE0086;   // D | S
inline constexpr std::uint32_t PATCOPY = 0x00F00021;
inline constexpr std::uint32_t WHITENESS = 0x00FF0062;

// Whether an operation asks for the brush, the source, or what is there.
constexpr bool TovNeedsBrush(std::uint32_t operation) {
    return ((operation >> 20 ^ operation >> 16) & 0x0F) != 0;
}
constexpr bool TovNeedsSource(std::uint32_t operation) {
    return ((operation >> 18 ^ operation >> 16) & 0x33) != 0;
}
constexpr bool TovNeedsDestination(std::uint32_t operation) {
    return ((operation >> 17 ^ operation >> 16) & 0x55) != 0;
}

// Applies an operation to a block. A source must have its size, and its rows its direction; null is a black
// one. Of a halftone brush those pixels are white whose distances from `origin` add up to an odd number, each
// counted in squares of `dots` by `dots` from the first pixel in memory. The alpha bytes of the block stay.
// Answers 1, or 0 with nothing changed.
TOV_CORE_API int TovRasterOperation(CTovPixels& to, CTovPixels const* source, CTovBrush const& brush,
                                    CPoint const& origin, int dots, std::uint32_t operation);

// The rectangle `from` of a source (columns and memory rows, inside of it), stretched to width by height
// pixels; of that picture the rectangle `part`, in rows that run top-down. Modes are those of
// device_context.h. With COLORONCOLOR, and wherever a picture gets larger but for HALFTONE, a pixel is the
// one of the source at its centre; with HALFTONE the mean of what it covers there, alpha bytes included. Null
// where nothing is left, for a faulty source, and where memory is refused.
TOV_CORE_API HBITMAP TovStretchPixels(std::uint32_t const* bits, BITMAPINFOHEADER const& header,
                                      CRect const& from, int width, int height, CRect const& part, int mode);

// The header of a block of pixels.
TOV_CORE_API BITMAPINFOHEADER TovHeaderOf(CTovPixels const& block);

// How a picture of controls looks when they are disabled: what is neither `face` nor `highlight` becomes
// `shadow`, and what lies `aside` pixels to the right and below of that `highlight`. Looked at are the first
// `width` columns of the first `height` rows; what falls aside of them may lie beyond. For rows that run
// top-down.
TOV_CORE_API void TovMakeDisabled(CTovPixels& picture, int width, int height, int aside, COLORREF face,
                                  COLORREF highlight, COLORREF shadow);

}  // namespace tov
