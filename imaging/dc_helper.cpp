// Tools for drawing on devices.
#include <tov310/device_context.h>
#include <tov310/paper.h>
#include <tov310/system.h>

#include <algorithm>
#include <utility>

namespace tov {

CRect CTovCDCHelper::SelectClipRect(CDC* dc, CRect const& rect) {
    CRect before;
    if (dc == nullptr) return before;
    dc->GetClipBox(&before);
    dc->IntersectClipRect(rect);
    return before;
}

void CTovCDCHelper::DrawRubberBand(CDC* dc, CRect const& rect) {
    auto const [left, right] = std::minmax(rect.left, rect.right);
    auto const [top, bottom] = std::minmax(rect.top, rect.bottom);
    if (dc == nullptr || left == right || top == bottom) return;
    int const width = CRect{left, top, right, bottom}.Width();
    int const height = CRect{left, top, right, bottom}.Height();
    // Each line leaves out the corner that the one before it has drawn.
    CTovBrush const before = dc->SelectBrush({.halftone = 1});
    dc->PatBlt(left, top, width, 1, PATINVERT);
    dc->PatBlt(right, top, 1, height, PATINVERT);
    dc->PatBlt(left + 1, bottom, width, 1, PATINVERT);
    dc->PatBlt(left, top + 1, 1, height, PATINVERT);
    dc->SelectBrush(before);
}

void CTovCDCHelper::MakeDlgDisabled(CDC* dc, CRect const& rect) {
    if (dc == nullptr || rect.Width() <= 0 || rect.Height() <= 0) return;
    CRect seen{rect.left, rect.top, rect.right + 1, rect.bottom + 1};
    HBITMAP picture = dc->Read(seen);
    if (!picture) picture = dc->Read(seen = rect);
    if (!picture) return;
    // Of the dots that a device has for a pixel.
    auto const scaled = [](int length, int dots, int pixels) {
        return static_cast<int>(std::int64_t{length} * dots / pixels);
    };
    int const width = scaled(rect.Width(), picture->GetWidth(), seen.Width());
    int const height = scaled(rect.Height(), picture->GetHeight(), seen.Height());
    ITovSystem& system = *TovGetSystem();
    TovMakeDisabled(*picture, width, height, std::max(width / rect.Width(), 1),
                    system.GetSysColor(COLOR_BTNFACE), system.GetSysColor(COLOR_BTNHIGHLIGHT),
                    system.GetSysColor(COLOR_BTNSHADOW));
    dc->StretchDIBits(seen.left, seen.top, seen.Width(), seen.Height(), 0, 0, picture->GetWidth(),
                      picture->GetHeight(), picture->GetBits(), TovHeaderOf(*picture), SRCCOPY);
}

}  // namespace tov
