#include <tov310/device_context.h>

#include "imaging/pixel_over.h"

#include <algorithm>
#include <span>
#include <utility>

namespace tov {
namespace {

// The first pixel of a block and its device lie apart, which the pattern of a brush follows.
CPoint BrushOriginIn(CRect const& rect, CPoint const& origin, int dots) {
    auto const parity = [dots](int from, int to) { return ((from ^ to) & 1) * dots; };
    return {parity(origin.x, rect.left), parity(origin.y, rect.top)};
}

// A device covers all of what is behind it.
std::uint32_t OverDevice(std::uint32_t below, std::uint32_t above) {
    constexpr std::uint32_t alpha = 0xFF000000;
    return (PixelOver(below | alpha, above) & ~alpha) | (below & alpha);
}

}  // namespace

CDC::~CDC() = default;

int CDC::SetDIBitsToDevice(int, int, int, int, std::uint32_t const*, BITMAPINFOHEADER const&) {
    return 0;
}

int CDC::StretchDIBits(int, int, int, int, int, int, int, int, std::uint32_t const*, BITMAPINFOHEADER const&,
                       std::uint32_t) {
    return 0;
}

int CDC::GetDIBits(int, int, CTovPixels&) {
    return 0;
}

HBITMAP CDC::Read(CRect const& rect) {
    int const height = rect.Height();
    HBITMAP block = height > 0 ? CTovPixels::Create(rect.Width(), -height) : nullptr;
    return block && GetDIBits(rect.left, rect.top, *block) ? block : nullptr;
}

int CDC::BitBlt(int x, int y, int width, int height, CDC* source, int xSrc, int ySrc,
                std::uint32_t operation) {
    if (!TovNeedsSource(operation)) return PatBlt(x, y, width, height, operation);
    HBITMAP const block =
        source != nullptr ? source->Read({xSrc, ySrc, xSrc + width, ySrc + height}) : nullptr;
    return block ? StretchDIBits(x, y, width, height, 0, 0, block->GetWidth(), block->GetHeight(),
                                 block->GetBits(), TovHeaderOf(*block), operation)
                 : 0;
}

int CDC::PatBlt(int x, int y, int width, int height, std::uint32_t operation) {
    if (TovNeedsSource(operation) || width <= 0 || height <= 0) return 0;
    CRect const rect{x, y, x + width, y + height};
    HBITMAP const block = TovNeedsDestination(operation) ? Read(rect) : CTovPixels::Create(width, -height);
    if (!block) return 0;
    int const dots = std::max(block->GetWidth() / width, 1);
    TovRasterOperation(*block, nullptr, m_brush, BrushOriginIn(rect, m_brushOrigin, dots), dots, operation);
    return StretchDIBits(x, y, width, height, 0, 0, block->GetWidth(), block->GetHeight(), block->GetBits(),
                         TovHeaderOf(*block), SRCCOPY);
}

int CDC::FillSolidRect(CRect const& rect, COLORREF color) {
    CTovBrush const before = SelectBrush({color});
    int const filled = PatBlt(rect.left, rect.top, rect.Width(), rect.Height(), PATCOPY);
    SelectBrush(before);
    return filled;
}

int CDC::AlphaBlend(CRect const& to, CTovPixels const& block) {
    HBITMAP const below = Read(to);
    if (!below) return 0;
    int const width = below->GetWidth();
    int const height = below->GetHeight();
    HBITMAP const above =
        TovStretchPixels(block.GetBits(), TovHeaderOf(block), {0, 0, block.GetWidth(), block.GetHeight()},
                         width, height, {0, 0, width, height}, m_nStretchMode);
    if (!above) return 0;
    std::span const pixels(below->GetBits(), below->GetCount());
    std::ranges::transform(pixels, std::span(above->GetBits(), above->GetCount()), pixels.begin(),
                           OverDevice);
    return StretchDIBits(to.left, to.top, to.Width(), to.Height(), 0, 0, width, height, below->GetBits(),
                         TovHeaderOf(*below), SRCCOPY);
}

CTovBrush CDC::SelectBrush(CTovBrush const& brush) {
    return std::exchange(m_brush, brush);
}

int CDC::GetClipBox(CRect* box) const {
    if (box != nullptr) *box = {};
    return 0;
}

int CDC::IntersectClipRect(CRect const&) {
    return 0;
}

int CDC::SetClipRect(CRect const*) {
    return 0;
}

int CDC::SetStretchBltMode(int mode) {
    if (mode < BLACKONWHITE || mode > HALFTONE) return 0;
    return std::exchange(m_nStretchMode, mode);
}

CPoint CDC::SetBrushOrg(CPoint const& origin) {
    return std::exchange(m_brushOrigin, origin);
}

double CDC::GetPixelRatio() const {
    return 1;
}

int CDC::GetDeviceCaps(int) const {
    return 0;
}

CSize CDC::GetTextExtent(char const*) const {
    return {};
}

int CDC::TextOut(int, int, char const*) {
    return 0;
}

HFONT CDC::SelectFont(HFONT font) {
    return std::exchange(m_font, font);
}

COLORREF CDC::SetTextColor(COLORREF color) {
    return std::exchange(m_textColor, color);
}

COLORREF CDC::SetBkColor(COLORREF color) {
    return std::exchange(m_bkColor, color);
}

int CDC::SetBkMode(int mode) {
    if (mode != TRANSPARENT && mode != OPAQUE) return 0;
    return std::exchange(m_bkMode, mode);
}

int CDC::HasAttributeDC() const {
    return 0;
}

}  // namespace tov
