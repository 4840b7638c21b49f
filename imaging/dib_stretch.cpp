// Rotating and scaling copies between images.
#include <tov310/dib.h>

#include "imaging/pixel_rows.h"

#include <algorithm>
#include <cmath>

namespace tov {

namespace {

bool CanStretch(float angle, float scale) {
    return std::isfinite(angle) && std::isfinite(scale) && scale != 0;
}

PixelStretch WithOutside(int fill, COLORREF color) {
    return {.fill = fill != 0, .outside = TovSwapRedAndBlue(color) & pixelColor};
}

PixelStretch WithOperation(PixelOperation operation, COLORREF key, int fill, COLORREF fillColor) {
    PixelStretch how = WithOutside(fill, fillColor);
    how.compose = true;
    how.operation = operation;
    how.arguments.key = TovSwapRedAndBlue(key) & pixelColor;
    return how;
}

}  // namespace

int CTovDib::Stretch(CTovDib const* src, float angle, float scale, CTovPoint<float> const& to,
                     CTovPoint<float> const& from, PixelStretch const& how) {
    if (!m_bitmap || !ChkSrcSize(src) || !CanStretch(angle, scale)) return 0;
    HBITMAP source = src->m_bitmap;
    if (source == m_bitmap) {
        HBITMAP const kept = CTovPixels::Create(m_nWidth, m_info.bmiHeader.biHeight);
        if (!kept) return 0;
        kept->CopyFrom(*source);
        source = kept;
    }
    float const sn = std::sin(-angle) / scale;
    float const cs = std::cos(-angle) / scale;
    PixelWalk walk;
    walk.u = from.x - (sn * to.y + cs * to.x);
    walk.v = from.y - (cs * to.y - sn * to.x);
    walk.du = cs;
    walk.dv = -sn;
    walk.width = src->m_nWidth;
    walk.height = src->m_nHeight;
    StretchPixels(*m_bitmap, *source, walk, how);
    return 1;
}

int CTovDib::CopyFromDibStretch(CTovDib const* src, float angle, float scale, float xDst, float yDst,
                                float xSrc, float ySrc, int fill, COLORREF fillColor) {
    return Stretch(src, angle, scale, {xDst, yDst}, {xSrc, ySrc}, WithOutside(fill, fillColor));
}

int CTovDib::CopyFromDibStretchTransparent(CTovDib const* src, float angle, float scale, float xDst,
                                           float yDst, float xSrc, float ySrc, COLORREF key, int fill,
                                           COLORREF fillColor) {
    return Stretch(src, angle, scale, {xDst, yDst}, {xSrc, ySrc},
                   WithOperation(PixelOperation::kUnlessKey, key, fill, fillColor));
}

int CTovDib::CopyFromDibStretchAlpha(CTovDib const* src, float angle, float scale, float xDst, float yDst,
                                     float xSrc, float ySrc, int fill, COLORREF fillColor) {
    return Stretch(src, angle, scale, {xDst, yDst}, {xSrc, ySrc},
                   WithOperation(PixelOperation::kAlpha, 0, fill, fillColor));
}

int CTovDib::StretchCentred(CTovDib const* src, float angle, float scale, int adjustSize,
                            CTovPoint<double>* corners, PixelStretch const& how) {
    if (!ChkSrcSize(src)) return 0;
    CTovDib const source = *src;  // which may be this one, and lose its pixels
    if (adjustSize && !AdjustSize(&source, angle, scale, corners)) return 0;
    auto const centre = [](CTovDib const& dib) {
        return CTovPoint<float>{static_cast<float>(dib.m_nWidth * 0.5),
                                static_cast<float>(dib.m_nHeight * 0.5)};
    };
    return Stretch(&source, angle, scale, centre(*this), centre(source), how);
}

int CTovDib::CopyFromDibStretch(CTovDib const* src, float angle, float scale, int adjustSize, int fill,
                                COLORREF fillColor, CTovPoint<double>* corners) {
    return StretchCentred(src, angle, scale, adjustSize, corners, WithOutside(fill, fillColor));
}

int CTovDib::CopyFromDibStretchTransparent(CTovDib const* src, float angle, float scale, int adjustSize,
                                           COLORREF key, int fill, COLORREF fillColor,
                                           CTovPoint<double>* corners) {
    return StretchCentred(src, angle, scale, adjustSize, corners,
                          WithOperation(PixelOperation::kUnlessKey, key, fill, fillColor));
}

int CTovDib::CopyFromDibStretchAlpha(CTovDib const* src, float angle, float scale, int adjustSize, int fill,
                                     COLORREF fillColor, CTovPoint<double>* corners) {
    return StretchCentred(src, angle, scale, adjustSize, corners,
                          WithOperation(PixelOperation::kAlpha, 0, fill, fillColor));
}

int CTovDib::AdjustSize(CTovDib const* src, float angle, float scale, CTovPoint<double>* corners) {
    if (!CanStretch(angle, scale)) return 0;
    double const cx = src->m_nWidth * 0.5;
    double const cy = src->m_nHeight * 0.5;
    double const s = std::sin(-double{angle}) * scale;
    double const c = std::cos(-double{angle}) * scale;
    CTovPoint<double> const turned[] = {{-c * cx + s * cy, -s * cx - c * cy},
                                        {c * cx + s * cy, s * cx - c * cy},
                                        {c * cx - s * cy, s * cx + c * cy},
                                        {-c * cx - s * cy, -s * cx + c * cy}};
    // The box lies round the origin, as the corners do.
    double const halfWidth = std::max(std::abs(turned[0].x), std::abs(turned[1].x));
    double const halfHeight = std::max(std::abs(turned[0].y), std::abs(turned[1].y));
    int const width = TovRoundToPixel(2 * halfWidth);
    int const height = TovRoundToPixel(2 * halfHeight);
    if (!CTovPixels::IsPossible(width, height)) return 0;
    if (!IsEqualSize(width, height) || IsTopDown() != src->IsTopDown()) {
        if (!Create(width, src->IsTopDown() ? -height : height)) return 0;
    }
    if (corners != nullptr) {
        for (CTovPoint<double> const& corner : turned) {
            *corners++ = {std::clamp(corner.x + halfWidth, 0.0, static_cast<double>(m_nWidth)),
                          std::clamp(corner.y + halfHeight, 0.0, static_cast<double>(m_nHeight))};
        }
    }
    return 1;
}

}  // namespace tov
