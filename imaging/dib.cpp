#include <tov310/dib.h>

#include "imaging/pixel_rows.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

namespace tov {

CTovDib::~CTovDib() = default;

int CTovDib::Create(int width, int height) {
    if (!CTovPixels::IsPossible(width, height)) return 0;
    Destroy();  // before, since both may be large
    HBITMAP bitmap = CTovPixels::Create(width, height);
    if (bitmap == nullptr) return 0;
    m_bitmap = std::move(bitmap);
    m_pCrBits = m_bitmap->GetBits();
    m_nWidth = m_bitmap->GetWidth();
    m_nHeight = m_bitmap->GetHeight();
    BITMAPINFOHEADER& header = m_info.bmiHeader;
    header.biSize = sizeof(BITMAPINFOHEADER);
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = 32;
    header.biCompression = BI_RGB;
    header.biSizeImage = width * height * 4;
    return 1;
}

int CTovDib::Create(CTovDib const* from) {
    if (from == nullptr || !from->m_bitmap) return 0;
    CTovDib const kept = *from;  // which may be this one
    if (!Resize(&kept)) return 0;
    if (m_bitmap != kept.m_bitmap) std::copy_n(kept.GetCrBits(), m_bitmap->GetCount(), GetCrBits());
    return 1;
}

int CTovDib::Resize(int width, int height) {
    return IsEqualSize(width, height) || Create(width, height);
}

int CTovDib::Resize(CTovDib const* like) {
    if (like == nullptr) return 0;
    return IsEqualSize(like) ||
           Create(like->m_nWidth, like->IsTopDown() ? -like->m_nHeight : like->m_nHeight);
}

void CTovDib::Destroy() {
    m_bitmap.reset();
    m_pCrBits = nullptr;
    m_info = {};
    m_nWidth = 0;
    m_nHeight = 0;
}

namespace {

// Cuts a stretch of columns or rows to an image of the given size. Wide
// numbers, since sums of coordinates need not fit.
bool ClipStretch(int& start, int& length, int size) {
    std::int64_t first = start;
    std::int64_t count = length;
    if (first + count >= size) count = size - first;
    if (first < 0) {
        count += first;
        first = 0;
    }
    start = static_cast<int>(first);
    length = static_cast<int>(std::max<std::int64_t>(count, std::numeric_limits<int>::min()));
    return count >= 1;
}

// Cuts a line from a first to a second coordinate; whether the two differ.
bool ClipLine(int& from, int& to, int size) {
    if (to > size) to = size - 1;
    if (from < 0) from = 0;
    return from != to;
}

// Whether the sum is a coordinate.
bool Move(int& coordinate, std::int64_t by) {
    std::int64_t const moved = coordinate + by;
    if (moved > std::numeric_limits<int>::max() || moved < std::numeric_limits<int>::min()) return false;
    coordinate = static_cast<int>(moved);
    return true;
}

void ClipCoordinate(int& coordinate, int size) {
    coordinate = std::max(0, std::min(coordinate, size - 1));
}

}  // namespace

void CTovDib::ClipX(int& x) const {
    ClipCoordinate(x, m_nWidth);
}

void CTovDib::ClipY(int& y) const {
    ClipCoordinate(y, m_nHeight);
}

int CTovDib::ClipXYWH(int& x, int& y, int& w, int& h) const {
    bool const columns = ClipStretch(x, w, m_nWidth);
    return ClipStretch(y, h, m_nHeight) && columns;
}

int CTovDib::ClipX1YX2(int& x1, int y, int& x2) const {
    return ClipLine(x1, x2, m_nWidth) && IsValidY(y);
}

int CTovDib::ClipXY1Y2(int x, int& y1, int& y2) const {
    return ClipLine(y1, y2, m_nHeight) && IsValidX(x);
}

int CTovDib::ChkSrcSizeRect(CTovDib const* src, int& x, int& y, int& w, int& h) {
    return ChkSrcSize(src) && src->ClipXYWH(x, y, w, h);
}

int CTovDib::PrepDst(int& x, int& y, int& w, int& h, PixelRows& rows) {
    if (!ChkDstSizeRect(x, y, w, h)) return 0;
    rows.dst = m_bitmap->GetRow(y) + x;
    rows.dstPitch = m_nWidth;
    rows.width = w;
    rows.height = h;
    return 1;
}

int CTovDib::PrepDstSrc(CTovDib const* src, int xSrc, int ySrc, int w, int h, int x, int y, PixelRows& rows) {
    int const firstX = xSrc;
    int const firstY = ySrc;
    if (!ChkSrcSizeRect(src, xSrc, ySrc, w, h)) return 0;
    // What was cut off in front of the source is missing in front of the destination too.
    if (!Move(x, xSrc - std::int64_t{firstX}) || !Move(y, ySrc - std::int64_t{firstY})) return 0;
    int const movedX = x;
    int const movedY = y;
    if (!PrepDst(x, y, w, h, rows)) return 0;
    // The other way round. What is left of the source then holds what is left of the destination.
    if (!Move(xSrc, x - std::int64_t{movedX}) || !Move(ySrc, y - std::int64_t{movedY})) return 0;
    if (!ChkSrcSizeRect(src, xSrc, ySrc, w, h)) return 0;
    rows.src = src->m_bitmap->GetRow(ySrc) + xSrc;
    rows.srcPitch = src->m_nWidth;
    return 1;
}

int CTovDib::PrepCopy(CTovDib const* src, int x, int y, PixelRows& rows) {
    if (!ChkSrcSize(src)) return 0;
    int w = src->m_nWidth;
    int h = src->m_nHeight;
    if (!PrepDst(x, y, w, h, rows)) return 0;
    rows.src = src->GetCrBits();
    rows.srcPitch = src->m_nWidth;
    return 1;
}

}  // namespace tov
