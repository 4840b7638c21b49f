// Lists of images of one size, as lists, trees and toolbars show them.
//
// The images are icons (icon.h): a device with several dots for a pixel gets them as fine as they are. A
// bitmap resource may have a companion "bitmaps/ID@2x", the same in twice the size, which is used there.
#pragma once

#include <tov310/bitmap.h>
#include <tov310/export.h>
#include <tov310/icon.h>
#include <tov310/object.h>

#include <cstddef>
#include <vector>

namespace tov {

class CDC;

// What covers in the images of a bitmap: all but the pixels of a colour ...
inline constexpr COLORREF CLR_NONE = 0xFFFFFFFF;     // ... or what their alpha bytes say; all if they are 0
inline constexpr COLORREF CLR_DEFAULT = 0xFF000000;  // ... which is that of the pixel at its left and top

// How an image list is made; all have masks and 32 bits.
inline constexpr unsigned ILC_MASK = 0x0001;
inline constexpr unsigned ILC_COLOR32 = 0x0020;

// How an image is drawn.
inline constexpr unsigned ILD_NORMAL = 0x0000;       // over the background colour of the list, if it has one
inline constexpr unsigned ILD_TRANSPARENT = 0x0001;  // over what is there
inline constexpr unsigned ILD_BLEND25 = 0x0002;      // a quarter, or a half, of the colour of selections
inline constexpr unsigned ILD_BLEND50 = 0x0004;
inline constexpr unsigned ILD_MASK = 0x0010;  // black where it covers and white where it does not

// A list without a size is not made yet; adding to it answers -1.
class TOV_CORE_API CImageList : public CObject {
    TOV_DYNCREATE(CImageList, CObject)
 public:
    CImageList() = default;
    CImageList(CImageList const&) = delete;
    CImageList& operator=(CImageList const&) = delete;

    // Makes a list without images. Answer 1, or 0 where it is made already or nothing could be made.
    int Create(int width, int height, unsigned flags, int initial, int grow);
    // One image: that of the second list over that of the first, so many pixels to the right and below.
    int Create(CImageList const& first, int index, CImageList const& second, int other, int right, int below);
    int Create(CImageList const* copied);

    // Add the images of a bitmap, as many as stand side by side in it, or an icon; answer the index of the
    // first, or -1. Of a bitmap of another height the rows at the top count. In a mask, white does not cover
    // and everything else does.
    int Add(CBitmap const* bitmap, CBitmap const* mask);
    int Add(CBitmap const* bitmap, COLORREF maskColor);
    int Add(HICON icon);

    // Answer 1, or 0 where there is no such image, or no list.
    int Remove(int index);  // -1: all
    int DeleteImageList();

    // Draws an image with its left top corner at a point. 0 where it was not drawn.
    int Draw(CDC* dc, int index, POINT const& point, unsigned style) const;

    // CLR_NONE at first. Answers the former one.
    COLORREF SetBkColor(COLORREF color);
    COLORREF GetBkColor() const { return m_bkColor; }

    int GetImageCount() const { return static_cast<int>(m_images.size()); }
    CSize GetImageSize() const { return m_size; }  // pixels; 0 without a list

    // An image of its own; null where there is none.
    HICON ExtractIcon(int index) const;

 protected:
    // The finer bitmap, which may be null, is the same picture in a multiple of the size; the mask may be
    // null too.
    int AddPictures(HBITMAP const& picture, HBITMAP const& finer, HBITMAP const& mask, COLORREF maskColor);

 private:
    CSize m_size;
    COLORREF m_bkColor = CLR_NONE;
    std::vector<HICON> m_images;
};

// Tells the number of a mask from a colour.
struct CTovMaskId {
    unsigned int id = 0;
};

class TOV_CORE_API CTovImageList : public CImageList {
    TOV_DYNCREATE(CTovImageList, CImageList)
 public:
    using CImageList::Add;
    using CImageList::Create;

    // A list of images in the size of a bitmap, with it as its first.
    int Create(CBitmap const* bitmap, unsigned flags, int initial, int grow, COLORREF maskColor);
    // The images of a bitmap resource, each of a width and as high as the bitmap.
    int Create(HINSTANCE module, unsigned int id, int width, int grow, COLORREF maskColor);
    int Create(std::nullptr_t, unsigned int id, int width, int grow, COLORREF maskColor) {
        return Create(HINSTANCE{}, id, width, grow, maskColor);
    }

    // Add the images of a bitmap resource as the other forms add a bitmap; -1 also where it is missing. Old
    // and new colour: first all pixels of the one get the other.
    int Add(HINSTANCE module, unsigned int id);
    int Add(HINSTANCE module, unsigned int id, CTovMaskId const& mask);
    int Add(HINSTANCE module, unsigned int id, COLORREF maskColor);
    int Add(HINSTANCE module, unsigned int id, COLORREF maskColor, COLORREF oldColor, COLORREF newColor);
    int Add(HINSTANCE module, unsigned int id, CBitmap const* mask);

    // Add several resources, each as above with the same last arguments. Answers the index of the first
    // image; at the first resource that cannot be added it stops and answers -1.
    template <class... Last>
    int Add(unsigned int count, HINSTANCE module, unsigned int const* ids, Last const&... last) {
        int first = -1;
        for (unsigned int i = 0; ids != nullptr && i < count; ++i) {
            int const index = Add(module, ids[i], last...);
            if (index == -1) return -1;
            if (i == 0) first = index;
        }
        return first;
    }

    // The images of a block that is there in two sizes.
    using CImageList::AddPictures;

    // Its size in pixels; 0 where there is no such image.
    CSize GetImageDimension(int index) const;
};

}  // namespace tov
