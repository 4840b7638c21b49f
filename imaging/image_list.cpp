#include <tov310/image_list.h>

#include <tov310/device_context.h>
#include <tov310/raster.h>
#include <tov310/system.h>

#include "imaging/picture_resource.h"
#include "imaging/pixel_over.h"

#include <algorithm>
#include <span>
#include <utility>

namespace tov {
namespace {

constexpr std::uint32_t colourOfPixel = 0x00FFFFFF;
constexpr std::uint32_t covering = 0xFF000000;

int ScaledUp(int length, double ratio) {
    return std::max(TovRoundToPixel(length * ratio), 1);
}

// A copy whose rows run top-down and whose alpha bytes say what covers.
HBITMAP Masked(CTovPixels const& picture, CTovPixels const* mask, COLORREF maskColor) {
    int const width = picture.GetWidth();
    int const height = picture.GetHeight();
    HBITMAP masked = CTovPixels::Create(width, -height);
    if (!masked) return nullptr;
    masked->CopyFrom(picture);
    std::span const pixels(masked->GetBits(), masked->GetCount());
    if (maskColor != CLR_NONE) {
        std::uint32_t const key =
            (maskColor == CLR_DEFAULT ? pixels.front() : TovSwapRedAndBlue(maskColor)) & colourOfPixel;
        for (std::uint32_t& pixel : pixels)
            pixel = (pixel & colourOfPixel) == key ? 0 : pixel | covering;
        return masked;
    }
    if (std::ranges::none_of(pixels, [](std::uint32_t pixel) { return (pixel & covering) != 0; })) {
        for (std::uint32_t& pixel : pixels)
            pixel |= covering;
    }
    if (mask == nullptr) return masked;
    for (int y = 0; y < height; ++y) {
        int const row = static_cast<int>(std::int64_t{y} * mask->GetHeight() / height);
        for (int x = 0; x < width; ++x) {
            int const column = static_cast<int>(std::int64_t{x} * mask->GetWidth() / width);
            std::uint32_t const* const from =
                mask->GetRow(mask->IsTopDown() ? row : mask->GetHeight() - 1 - row);
            if ((from[column] & colourOfPixel) == colourOfPixel) masked->GetRow(y)[x] = 0;
        }
    }
    return masked;
}

// One image out of a row of them; what the picture does not reach covers nothing.
HBITMAP Cut(CTovPixels const& row, int left, int width, int height) {
    HBITMAP cut = CTovPixels::Create(width, -height);
    if (!cut) return nullptr;
    for (int y = 0; y < std::min(height, row.GetHeight()); ++y)
        std::copy_n(row.GetRow(y) + left, std::min(width, row.GetWidth() - left), cut->GetRow(y));
    return cut;
}

class IconOverIcon final : public CTovIcon {
 public:
    IconOverIcon(CSize const& size, HICON below, HICON above, CPoint const& place)
        : m_size(size), m_below(std::move(below)), m_above(std::move(above)), m_place(place) {}
    ~IconOverIcon() override = default;

    CSize GetSize() const override { return m_size; }

    HBITMAP GetPixels(CSize const& dots) const override {
        if (dots.cx <= 0 || dots.cy <= 0) return nullptr;
        double const across = static_cast<double>(dots.cx) / m_size.cx;
        double const down = static_cast<double>(dots.cy) / m_size.cy;
        HBITMAP both = CTovPixels::Create(dots.cx, -dots.cy);
        auto const lay = [&](CTovIcon const& icon, CPoint const& place) {
            CSize const size = icon.GetSize();
            HBITMAP const picture =
                both ? icon.GetPixels({ScaledUp(size.cx, across), ScaledUp(size.cy, down)}) : nullptr;
            if (!picture) return;
            int const left = TovRoundToPixel(place.x * across);
            int const top = TovRoundToPixel(place.y * down);
            for (int y = std::max(top, 0); y < std::min(top + picture->GetHeight(), dots.cy); ++y) {
                for (int x = std::max(left, 0); x < std::min(left + picture->GetWidth(), dots.cx); ++x) {
                    std::uint32_t& pixel = both->GetRow(y)[x];
                    pixel = PixelOver(pixel, picture->GetRow(y - top)[x - left]);
                }
            }
        };
        lay(*m_below, {});
        lay(*m_above, m_place);
        return both;
    }

 private:
    CSize m_size;
    HICON m_below;
    HICON m_above;
    CPoint m_place;
};

// How an image looks in a style. The block is changed only where it is not shared.
HBITMAP Styled(HBITMAP picture, unsigned style) {
    unsigned const parts = (style & ILD_BLEND50) != 0 ? 2 : (style & ILD_BLEND25) != 0 ? 1 : 0;
    bool const isMask = (style & ILD_MASK) != 0;
    if (!picture || (parts == 0 && !isMask)) return picture;
    HBITMAP styled = CTovPixels::Create(picture->GetWidth(), -picture->GetHeight());
    if (!styled) return nullptr;
    std::uint32_t const tint = TovSwapRedAndBlue(TovGetSystem()->GetSysColor(COLOR_HIGHLIGHT));
    auto const restyle = [&](std::uint32_t pixel) {
        if (isMask) return (pixel & covering) != 0 ? covering : ~0U;
        std::uint32_t mixed = pixel & covering;
        for (unsigned shift = 0; shift < 24; shift += 8)
            mixed |= ((pixel >> shift & 0xFF) * (4 - parts) + (tint >> shift & 0xFF) * parts) / 4 << shift;
        return mixed;
    };
    std::transform(picture->GetBits(), picture->GetBits() + picture->GetCount(), styled->GetBits(), restyle);
    return styled;
}

HBITMAP PixelsOf(CBitmap const* bitmap) {
    return bitmap != nullptr ? bitmap->GetSafeHandle() : nullptr;
}

}  // namespace

int CImageList::Create(int width, int height, unsigned, int, int) {
    if (m_size.cx != 0 || height <= 0 || !CTovPixels::IsPossible(width, height)) return 0;
    m_size = {width, height};
    return 1;
}

int CImageList::Create(CImageList const& first, int index, CImageList const& second, int other, int right,
                       int below) {
    HICON const under = first.ExtractIcon(index);
    HICON const over = second.ExtractIcon(other);
    if (!under || !over || !Create(first.m_size.cx, first.m_size.cy, ILC_COLOR32, 1, 1)) return 0;
    m_images.push_back(std::make_shared<IconOverIcon>(m_size, under, over, CPoint{right, below}));
    return 1;
}

int CImageList::Create(CImageList const* copied) {
    if (copied == nullptr || !Create(copied->m_size.cx, copied->m_size.cy, ILC_COLOR32, 0, 1)) return 0;
    m_bkColor = copied->m_bkColor;
    m_images = copied->m_images;
    return 1;
}

int CImageList::AddPictures(HBITMAP const& picture, HBITMAP const& finer, HBITMAP const& mask,
                            COLORREF maskColor) {
    int const count = picture && m_size.cx != 0 ? picture->GetWidth() / m_size.cx : 0;
    HBITMAP const row = count > 0 ? Masked(*picture, mask.get(), maskColor) : nullptr;
    if (!row) return -1;
    HBITMAP const fineRow = finer ? Masked(*finer, mask.get(), maskColor) : nullptr;
    int const fineness = fineRow ? fineRow->GetWidth() / row->GetWidth() : 0;
    int const first = GetImageCount();
    for (int i = 0; i < count; ++i) {
        HBITMAP const fine =
            fineness > 1 ? Cut(*fineRow, i * m_size.cx * fineness, m_size.cx * fineness, m_size.cy * fineness)
                         : nullptr;
        m_images.push_back(TovIconOf(Cut(*row, i * m_size.cx, m_size.cx, m_size.cy), fine));
        if (m_images.back()) continue;
        m_images.resize(static_cast<std::size_t>(first));
        return -1;
    }
    return first;
}

int CImageList::Add(CBitmap const* bitmap, CBitmap const* mask) {
    return AddPictures(PixelsOf(bitmap), nullptr, PixelsOf(mask), CLR_NONE);
}

int CImageList::Add(CBitmap const* bitmap, COLORREF maskColor) {
    return AddPictures(PixelsOf(bitmap), nullptr, nullptr, maskColor);
}

int CImageList::Add(HICON icon) {
    if (!icon || m_size.cx == 0) return -1;
    m_images.push_back(std::move(icon));
    return GetImageCount() - 1;
}

int CImageList::Remove(int index) {
    if (m_size.cx == 0 || index < -1 || index >= GetImageCount()) return 0;
    if (index == -1) {
        m_images.clear();
    } else {
        m_images.erase(m_images.begin() + index);
    }
    return 1;
}

int CImageList::DeleteImageList() {
    m_images.clear();
    m_bkColor = CLR_NONE;
    return std::exchange(m_size, {}).cx != 0;
}

int CImageList::Draw(CDC* dc, int index, POINT const& point, unsigned style) const {
    HICON const icon = ExtractIcon(index);
    if (dc == nullptr || !icon) return 0;
    double const ratio = dc->GetPixelRatio();
    HBITMAP const picture =
        Styled(icon->GetPixels({ScaledUp(m_size.cx, ratio), ScaledUp(m_size.cy, ratio)}), style);
    if (!picture) return 0;
    CRect const place{point.x, point.y, point.x + m_size.cx, point.y + m_size.cy};
    if (m_bkColor != CLR_NONE && (style & (ILD_TRANSPARENT | ILD_MASK)) == 0)
        dc->FillSolidRect(place, m_bkColor);
    return dc->AlphaBlend(place, *picture);
}

COLORREF CImageList::SetBkColor(COLORREF color) {
    return std::exchange(m_bkColor, color);
}

HICON CImageList::ExtractIcon(int index) const {
    return index >= 0 && index < GetImageCount() ? m_images[static_cast<std::size_t>(index)] : nullptr;
}

int CTovImageList::Create(CBitmap const* bitmap, unsigned flags, int initial, int grow, COLORREF maskColor) {
    HBITMAP const picture = PixelsOf(bitmap);
    return picture && CImageList::Create(picture->GetWidth(), picture->GetHeight(), flags, initial, grow) &&
           Add(bitmap, maskColor) == 0;
}

int CTovImageList::Create(HINSTANCE module, unsigned int id, int width, int grow, COLORREF maskColor) {
    PictureResource const picture = LoadPicture(module, id);
    return picture.plain && CImageList::Create(width, picture.plain->GetHeight(), ILC_COLOR32, 0, grow) &&
           AddPictures(picture.plain, picture.fine, nullptr, maskColor) == 0;
}

int CTovImageList::Add(HINSTANCE module, unsigned int id) {
    return Add(module, id, CLR_NONE);
}

int CTovImageList::Add(HINSTANCE module, unsigned int id, CTovMaskId const& mask) {
    CTovBitmap maskBitmap;
    return maskBitmap.LoadBitmap(module, mask.id) ? Add(module, id, &maskBitmap) : -1;
}

int CTovImageList::Add(HINSTANCE module, unsigned int id, COLORREF maskColor) {
    PictureResource const picture = LoadPicture(module, id);
    return AddPictures(picture.plain, picture.fine, nullptr, maskColor);
}

int CTovImageList::Add(HINSTANCE module, unsigned int id, COLORREF maskColor, COLORREF oldColor,
                       COLORREF newColor) {
    PictureResource const picture = LoadPicture(module, id);
    CTovBitmap::ChangeBitmapColor(picture.plain, oldColor, newColor, nullptr);
    CTovBitmap::ChangeBitmapColor(picture.fine, oldColor, newColor, nullptr);
    return AddPictures(picture.plain, picture.fine, nullptr, maskColor);
}

int CTovImageList::Add(HINSTANCE module, unsigned int id, CBitmap const* mask) {
    PictureResource const picture = LoadPicture(module, id);
    return AddPictures(picture.plain, picture.fine, PixelsOf(mask), CLR_NONE);
}

CSize CTovImageList::GetImageDimension(int index) const {
    return ExtractIcon(index) ? GetImageSize() : CSize{};
}

}  // namespace tov
