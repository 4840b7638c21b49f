// Copies between images, fills and compositing: rectangles are prepared here, rows are worked on in
// pixel_rows.
#include <tov310/dib.h>

#include "imaging/pixel_rows.h"

#include <algorithm>
#include <array>

namespace tov {

namespace {

std::uint32_t AsByte(int amount) {
    return static_cast<std::uint32_t>(std::clamp(amount, 0, 255));
}

std::uint32_t AsPixel(COLORREF color, std::uint32_t alpha = 0) {
    return (TovSwapRedAndBlue(color) & pixelColor) | alpha << 24;
}

PixelArguments WithKey(COLORREF key) {
    return {.key = AsPixel(key)};
}

}  // namespace

// Copies.

int CTovDib::CopyFromDib(CTovDib const* src, int x, int y) {
    PixelRows rows;
    if (!PrepCopy(src, x, y, rows)) return 0;
    CopyRows(rows);
    return 1;
}

int CTovDib::CopyFromDibRect(CTovDib const* src, int xSrc, int ySrc, int w, int h, int x, int y) {
    PixelRows rows;
    if (!PrepDstSrc(src, xSrc, ySrc, w, h, x, y, rows)) return 0;
    CopyRows(rows);
    return 1;
}

int CTovDib::CopyFromDibTransparent(CTovDib const* src, int x, int y, COLORREF key) {
    PixelRows rows;
    if (!PrepCopy(src, x, y, rows)) return 0;
    ComposeRows(rows, PixelOperation::kUnlessKey, WithKey(key));
    return 1;
}

int CTovDib::CopyFromDibTransparentRect(CTovDib const* src, int xSrc, int ySrc, int w, int h, int x, int y,
                                        COLORREF key) {
    PixelRows rows;
    if (!PrepDstSrc(src, xSrc, ySrc, w, h, x, y, rows)) return 0;
    ComposeRows(rows, PixelOperation::kUnlessKey, WithKey(key));
    return 1;
}

int CTovDib::CopyFromDibAlpha(CTovDib const* src, int x, int y) {
    PixelRows rows;
    if (!PrepCopy(src, x, y, rows)) return 0;
    ComposeRows(rows, PixelOperation::kAlpha, {});
    return 1;
}

int CTovDib::CopyFromDibAlphaRect(CTovDib const* src, int xSrc, int ySrc, int w, int h, int x, int y) {
    PixelRows rows;
    if (!PrepDstSrc(src, xSrc, ySrc, w, h, x, y, rows)) return 0;
    ComposeRows(rows, PixelOperation::kAlpha, {});
    return 1;
}

// Compositing. The two enumerations tell the operations in the same order.

static_assert(static_cast<int>(PixelOperation::kBlend) == 0 &&
              static_cast<int>(PixelOperation::kMultiply) == 7);

int CTovDib::Compose(Mode mode, CTovDib const* src, int x, int y, int amount) {
    return ChkSrcSize(src) && ComposeRect(mode, src, 0, 0, src->m_nWidth, src->m_nHeight, x, y, amount);
}

int CTovDib::ComposeRect(Mode mode, CTovDib const* src, int xSrc, int ySrc, int w, int h, int x, int y,
                         int amount) {
    PixelRows rows;
    if (!PrepDstSrc(src, xSrc, ySrc, w, h, x, y, rows)) return 0;
    ComposeRows(rows, static_cast<PixelOperation>(mode), {.amount = AsByte(amount)});
    return 1;
}

int CTovDib::ComposeColor(Mode mode, COLORREF color, int x, int y, int w, int h, int amount) {
    PixelRows rows;
    if (!PrepDst(x, y, w, h, rows)) return 0;
    ComposeRows(rows, static_cast<PixelOperation>(mode), {.amount = AsByte(amount)}, AsPixel(color));
    return 1;
}

// Fills.

int CTovDib::FillRect(COLORREF color, int x, int y, int w, int h, int alpha) {
    PixelRows rows;
    if (!PrepDst(x, y, w, h, rows)) return 0;
    ComposeRows(rows, PixelOperation::kStore, {}, AsPixel(color, AsByte(alpha)));
    return 1;
}

int CTovDib::FillStippledRect(COLORREF color, int x, int y, int w, int h) {
    auto const corner = static_cast<unsigned>(x) + static_cast<unsigned>(y);
    PixelRows rows;
    if (!PrepDst(x, y, w, h, rows)) return 0;
    std::uint32_t const pixel = TovSwapRedAndBlue(color);
    PixelLoops::Compose const everySecond = FastPixelLoops().Still(PixelOperation::kEverySecond);
    auto odd = static_cast<unsigned>(x) + static_cast<unsigned>(y) - corner;
    auto const count = static_cast<std::size_t>(w);
    for (int row = 0; row < h; ++row, ++odd) {
        std::uint32_t* const d = rows.dst + row * rows.dstPitch;
        bool const first = odd % 2 != 0;
        everySecond(d, &pixel, count & ~std::size_t{1}, {.taken = first ? 0xFFFFFFFF : 0});
        if (count % 2 != 0 && first) d[count - 1] = pixel;
    }
    return 1;
}

int CTovDib::FillAlphaRect(int x, int y, int w, int h, int alpha) {
    PixelRows rows;
    if (!PrepDst(x, y, w, h, rows)) return 0;
    ComposeRows(rows, PixelOperation::kTakeAlpha, {}, AsByte(alpha) << 24);
    return 1;
}

int CTovDib::FillAlphaGradientRect(int x, int y, int w, int h, int a1, int a2, int horizontal) {
    PixelRows rows;
    if (!PrepDst(x, y, w, h, rows)) return 0;
    auto const from = static_cast<float>(AsByte(horizontal ? a1 : a2));
    auto const to = static_cast<float>(AsByte(horizontal ? a2 : a1));
    float const step = (to - from) / static_cast<float>(horizontal ? w : h);
    float value = from;
    auto const next = [&value, step] {
        // Over very long rows the roundings carry a sum beyond what a byte holds.
        auto const alpha = AsByte(static_cast<int>(value)) << 24;
        value += step;
        return alpha;
    };
    if (horizontal) {
        // All rows get what the first one gets.
        for (int column = 0; column < w; ++column)
            rows.dst[column] = (rows.dst[column] & pixelColor) | next();
        rows.src = rows.dst;
        ComposeRows(rows, PixelOperation::kTakeAlpha, {});
    } else {
        PixelLoops::Compose const takeAlpha = FastPixelLoops().Still(PixelOperation::kTakeAlpha);
        // Some at once, since each row makes the sum leave its register.
        std::array<std::uint32_t, 8> alphas;
        for (std::size_t row = 0; row < static_cast<std::size_t>(h); ++row) {
            std::size_t const at = row % alphas.size();
            if (at == 0) std::ranges::generate(alphas, next);
            takeAlpha(rows.dst, &alphas[at], static_cast<std::size_t>(w), {});
            rows.dst += rows.dstPitch;
        }
    }
    return 1;
}

// Colours.

int CTovDib::Recolor(int x, int y, int w, int h, COLORREF from, COLORREF to, std::uint32_t alpha,
                     std::uint32_t taken) {
    PixelRows rows;
    if (!PrepDst(x, y, w, h, rows)) return 0;
    ComposeRows(rows, PixelOperation::kExchange, {.key = AsPixel(from), .taken = taken}, AsPixel(to, alpha));
    return 1;
}

int CTovDib::ExchangeColorRect(int x, int y, int w, int h, COLORREF from, COLORREF to) {
    return Recolor(x, y, w, h, from, to, 0, pixelColor);
}

int CTovDib::ExchangeColorRect(int x, int y, int w, int h, COLORREF from, COLORREF to, int alpha) {
    return Recolor(x, y, w, h, from, to, AsByte(alpha), pixelColor | pixelAlpha);
}

int CTovDib::GreyScaleRect(int x, int y, int w, int h) {
    PixelRows rows;
    if (!PrepDst(x, y, w, h, rows)) return 0;
    ComposeRows(rows, PixelOperation::kGrey, {}, 0);
    return 1;
}

int CTovDib::GreyScaleTransparent(COLORREF key) {
    PixelRows rows;
    int x = 0;
    int y = 0;
    int w = m_nWidth;
    int h = m_nHeight;
    if (!PrepDst(x, y, w, h, rows)) return 0;
    ComposeRows(rows, PixelOperation::kGreyUnlessKey, WithKey(key), 0);
    return 1;
}

}  // namespace tov
