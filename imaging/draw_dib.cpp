#include <tov310/draw_dib.h>

#include <tov310/device_context.h>

#include <chrono>
#include <cstdlib>
#include <new>
#include <utility>

namespace tov {

struct CTovDrawDib::Service {
    using Clock = std::chrono::steady_clock;

    long drawings = 0;
    Clock::duration drawing{};
};

namespace {

bool IsDrawable(BITMAPINFOHEADER const* header) {
    return header != nullptr && header->biSize == sizeof *header && header->biPlanes == 1 &&
           header->biBitCount == 32 && header->biCompression == BI_RGB &&
           CTovPixels::IsPossible(header->biWidth, header->biHeight);
}

// Sets how a device stretches, for as long as it lives.
class StretchModeFor {
 public:
    StretchModeFor(CDC& dc, int mode) : m_dc(dc), m_mode(dc.SetStretchBltMode(mode)) {
        // The mean of pixels is made in patterns, which have to begin somewhere.
        if (mode == HALFTONE) m_origin = dc.SetBrushOrg({0, 0});
    }
    ~StretchModeFor() {
        if (m_origin != CPoint(0, 0)) m_dc.SetBrushOrg(m_origin);
        m_dc.SetStretchBltMode(m_mode);
    }
    StretchModeFor(StretchModeFor const&) = delete;
    StretchModeFor& operator=(StretchModeFor const&) = delete;

 private:
    CDC& m_dc;
    int m_mode;
    CPoint m_origin;
};

}  // namespace

CTovDrawDib::CTovDrawDib() = default;

CTovDrawDib::~CTovDrawDib() = default;

int CTovDrawDib::DrawDib(CDC* dc, CTovDib const* dib, int x, int y, int w, int h, unsigned flags) {
    return dib != nullptr && DrawDibRect(dc, dib, 0, 0, dib->GetWidth(), dib->GetHeight(), x, y, w, h, flags);
}

int CTovDrawDib::DrawDibRect(CDC* dc, CTovDib const* dib, int xSrc, int ySrc, int wSrc, int hSrc, int x,
                             int y, int w, int h, unsigned flags) {
    if (dc == nullptr || dib == nullptr || !dib->ClipXYWH(xSrc, ySrc, wSrc, hSrc)) return 0;
    if (m_bUseDrawDib && !dc->HasAttributeDC() &&
        Draw(dc, x, y, w, h, &dib->GetBitmapInfo()->bmiHeader, dib->GetCrBits(), xSrc, ySrc, wSrc, hSrc,
             flags))
        return m_bUseDrawDib;
    StretchModeFor const stretching(*dc, m_nStretchMode);
    return dib->CopyToDCStretchRect(dc, xSrc, ySrc, wSrc, hSrc, x, y, w, h, SRCCOPY);
}

int CTovDrawDib::Open() {
    if (m_hDrawDib) return 0;
    m_hDrawDib.reset(new (std::nothrow) Service);
    return m_hDrawDib != nullptr;
}

int CTovDrawDib::Close() {
    return std::exchange(m_hDrawDib, nullptr) != nullptr;
}

int CTovDrawDib::Begin(CDC const* dc, int, int, BITMAPINFOHEADER const* header, int, int, unsigned) {
    return m_hDrawDib && dc != nullptr && IsDrawable(header);
}

int CTovDrawDib::End() {
    return m_hDrawDib != nullptr;
}

int CTovDrawDib::Draw(CDC* dc, int x, int y, int w, int h, BITMAPINFOHEADER const* header, void const* bits,
                      int xSrc, int ySrc, int wSrc, int hSrc, unsigned flags) {
    if (!m_hDrawDib || dc == nullptr || bits == nullptr || !IsDrawable(header)) return 0;
    int const rows = std::abs(header->biHeight);
    if (xSrc < 0 || ySrc < 0 || wSrc <= 0 || hSrc <= 0 || wSrc > header->biWidth - xSrc || hSrc > rows - ySrc)
        return 0;
    if ((flags & DDF_DONTDRAW) != 0) return 1;
    int const row = header->biHeight < 0 ? ySrc : rows - ySrc - hSrc;
    int const mode = (flags & DDF_HALFTONE) != 0 ? HALFTONE : dc->GetStretchBltMode();
    auto const start = Service::Clock::now();
    StretchModeFor const stretching(*dc, mode);
    int const drawn = dc->StretchDIBits(x, y, w == -1 ? wSrc : w, h == -1 ? hSrc : h, xSrc, row, wSrc, hSrc,
                                        static_cast<std::uint32_t const*>(bits), *header, SRCCOPY);
    ++m_hDrawDib->drawings;
    m_hDrawDib->drawing += Service::Clock::now() - start;
    return drawn != 0;
}

void* CTovDrawDib::GetBuffer() {
    return nullptr;
}

unsigned CTovDrawDib::ProfileDisplay(BITMAPINFOHEADER const* header) {
    return m_hDrawDib && IsDrawable(header) ? PD_CAN_DRAW_DIB | PD_CAN_STRETCHDIB : 0;
}

HPALETTE CTovDrawDib::GetPalette() {
    return nullptr;
}

int CTovDrawDib::SetPalette(HPALETTE) {
    return 0;
}

int CTovDrawDib::ChangePalette(int, int, RGBQUAD const*) {
    return 0;
}

unsigned CTovDrawDib::RealizePalette(CDC*, int) {
    return 0;
}

int CTovDrawDib::Start(long) {
    return m_hDrawDib != nullptr;
}

int CTovDrawDib::Stop() {
    return m_hDrawDib != nullptr;
}

int CTovDrawDib::Time(DRAWDIBTIME* time) {
    if (time == nullptr) return 0;
    *time = {};
    if (!m_hDrawDib) return 0;
    using std::chrono::duration_cast;
    time->timeCount = std::exchange(m_hDrawDib->drawings, 0);
    auto const drawing = std::exchange(m_hDrawDib->drawing, {});
    time->timeDraw = static_cast<long>(duration_cast<std::chrono::milliseconds>(drawing).count());
    return 1;
}

}  // namespace tov
