// How images come from devices and bitmaps, and reach them.
#include <tov310/bitmap.h>
#include <tov310/device_context.h>
#include <tov310/dib.h>

#include <utility>

namespace tov {

int CTovDib::Create(CDC* dc, CBitmap* bitmap, int topDown) {
    HBITMAP const from = bitmap != nullptr ? bitmap->GetSafeHandle() : nullptr;
    if (!from || !Create(from->GetWidth(), topDown ? -from->GetHeight() : from->GetHeight())) return 0;
    return CopyFromBitmap(dc, bitmap);
}

int CTovDib::Create(CDC* dc, HINSTANCE module, unsigned int id, int topDown) {
    CTovBitmap bitmap;
    return bitmap.LoadBitmap(module, id) && Create(dc, &bitmap, topDown);
}

int CTovDib::Create(CDC* dc, char const* path, int topDown) {
    CTovBitmap bitmap;
    return bitmap.LoadBitmap(path) && Create(dc, &bitmap, topDown);
}

int CTovDib::CopyToDC(CDC* dc, int x, int y, int w, int h) const {
    if (dc == nullptr || !m_bitmap || x < 0 || y < 0) return 0;
    return dc->SetDIBitsToDevice(x, y, w, h, GetCrBits(), m_info.bmiHeader) != 0;
}

int CTovDib::CopyToDCStretch(CDC* dc, int x, int y, int w, int h, std::uint32_t operation) const {
    return CopyToDCStretchRect(dc, 0, 0, m_nWidth, m_nHeight, x, y, w, h, operation);
}

int CTovDib::CopyToDCStretchRect(CDC* dc, int xSrc, int ySrc, int wSrc, int hSrc, int x, int y, int w, int h,
                                 std::uint32_t operation) const {
    if (dc == nullptr || x < 0 || y < 0 || !ChkSrcSizeRect(this, xSrc, ySrc, wSrc, hSrc)) return 0;
    int const row = IsTopDown() ? ySrc : m_nHeight - ySrc - hSrc;
    return dc->StretchDIBits(x, y, w, h, xSrc, row, wSrc, hSrc, GetCrBits(), m_info.bmiHeader, operation) !=
           0;
}

int CTovDib::CopyToBitmap(CDC*, CBitmap* bitmap) const {
    HBITMAP const to = bitmap != nullptr ? bitmap->GetSafeHandle() : nullptr;
    return to && m_bitmap && to->CopyFrom(*m_bitmap);
}

int CTovDib::CopyFromBitmap(CDC*, CBitmap* bitmap) {
    HBITMAP const from = bitmap != nullptr ? bitmap->GetSafeHandle() : nullptr;
    return from && m_bitmap && m_bitmap->CopyFrom(*from);
}

int CTovDib::CopyFromDC(CDC* dc, int x, int y, int w, int h) {
    return dc != nullptr && m_bitmap && IsEqualSize(w, h) && dc->GetDIBits(x, y, *m_bitmap) != 0;
}

int CTovDib::Invert(CDC*) {
    if (!m_bitmap) return 0;
    BITMAPINFOHEADER& header = m_info.bmiHeader;
    HBITMAP turned = CTovPixels::Create(m_nWidth, -header.biHeight);
    if (!turned) return 0;
    turned->CopyFrom(*m_bitmap);
    m_bitmap = std::move(turned);
    m_pCrBits = m_bitmap->GetBits();
    header.biHeight = -header.biHeight;
    header.biSizeImage = -header.biSizeImage;
    return 1;
}

}  // namespace tov
