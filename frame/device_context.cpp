#include <tov310/device_context.h>

#include <utility>

namespace tov {

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

int CDC::SetStretchBltMode(int mode) {
    if (mode < BLACKONWHITE || mode > HALFTONE) return 0;
    return std::exchange(m_nStretchMode, mode);
}

CPoint CDC::SetBrushOrg(CPoint const& origin) {
    return std::exchange(m_brushOrigin, origin);
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

COLORREF CDC::SetTextColor(COLORREF color) {
    return std::exchange(m_textColor, color);
}

int CDC::HasAttributeDC() const {
    return 0;
}

}  // namespace tov
