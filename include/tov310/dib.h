// A software image with 32 bits a pixel: direct access, copies, a rotating and scaling resampler, fills and
// compositing, all in plain arithmetic and without a toolkit. Files and resources reach it through CTovBitmap
// (bitmap.h), devices through CDC (device_context.h).
#pragma once

#include <tov310/export.h>
#include <tov310/geometry.h>
#include <tov310/pixels.h>
#include <tov310/resources.h>

#include <concepts>
#include <cstddef>
#include <cstdint>

namespace tov {

class CBitmap;
class CDC;

// An image of 32-bit pixels, 0xAARRGGBB, or none. Coordinates are columns and memory rows: row 0 is the first
// row in memory, the top of the picture in an image that runs top-down and its bottom in one that runs
// bottom-up. Only CopyToDCStretchRect counts from the top in both.
//
// Copying an object shares its pixels: what one draws the other shows. They live until the last object that
// has them is gone or has been given others. An image is used by one thread at a time.
//
// Functions answer 1, or 0 with nothing changed: for null, for an image without pixels, and where nothing is
// left of a rectangle when it has been clipped to the images. Colours are 0x00BBGGRR; amounts and alphas are
// 0 to 255 and limited to that.
class TOV_CORE_API CTovDib {
 public:
    CTovDib() = default;
    CTovDib(CTovDib const&) = default;
    CTovDib& operator=(CTovDib const&) = default;
    virtual ~CTovDib();

    // Size.

    int GetWidth() const { return m_nWidth; }    // pixels; 0 without pixels
    int GetHeight() const { return m_nHeight; }  // rows; 0 without pixels
    int IsTopDown() const { return m_info.bmiHeader.biHeight < 0; }
    HBITMAP GetBitmap() const { return m_bitmap; }
    BITMAPINFO const* GetBitmapInfo() const { return &m_info; }  // all 0 without pixels; never null
    // The pixels, row after row without gaps: that at column x of memory row y has the index y * width + x.
    // Null without pixels.
    std::uint32_t* GetCrBits() { return m_bitmap ? m_bitmap->GetBits() : nullptr; }
    std::uint32_t const* GetCrBits() const { return m_bitmap ? m_bitmap->GetBits() : nullptr; }

    int IsEqualWidth(int width) const { return width == m_nWidth; }
    int IsEqualWidth(CTovDib const* other) const { return other != nullptr && IsEqualWidth(other->m_nWidth); }
    int IsEqualHeight(int height) const { return height == m_nHeight; }
    int IsEqualHeight(CTovDib const* other) const {
        return other != nullptr && IsEqualHeight(other->m_nHeight);
    }
    int IsEqualSize(int width, int height) const { return IsEqualWidth(width) && IsEqualHeight(height); }
    int IsEqualSize(CTovDib const* other) const { return IsEqualWidth(other) && IsEqualHeight(other); }

    // Creating.

    // Makes new, zeroed pixels: rows run bottom-up for a positive height, top-down for a negative one. A
    // width below 1, a height of 0 and sizes of 2 GiB and more are refused and leave the old pixels; where
    // memory is refused the image has none afterwards.
    int Create(int width, int height);
    int Create(SIZE const& size) { return Create(size.cx, size.cy); }
    // Makes pixels of the size of a bitmap, a bitmap resource or an image file, with rows as told, and copies
    // its picture. The device may be null.
    int Create(CDC* dc, CBitmap* bitmap, int topDown);
    int Create(CDC* dc, HINSTANCE module, unsigned int id, int topDown);
    int Create(CDC* dc, char const* path, int topDown);
    // Resize, and a copy of the pixels.
    int Create(CTovDib const* from);
    // Create where the size differs (a negative height differs from every size); otherwise nothing happens.
    // The second takes the size and the direction of rows of another image.
    int Resize(int width, int height);
    int Resize(CTovDib const* like);
    // Gives the pixels up.
    void Destroy();

    // Clipping.

    int IsValidX(int x) const { return x >= 0 && x < m_nWidth; }
    int IsValidY(int y) const { return y >= 0 && y < m_nHeight; }
    // Move a coordinate to the nearest that the image has; 0 without pixels.
    void ClipX(int& x) const;
    void ClipY(int& y) const;
    // Cuts a rectangle to the image. 1 where at least one pixel is left; otherwise the values are of no use.
    int ClipXYWH(int& x, int& y, int& w, int& h) const;
    // Cut a horizontal and a vertical line. 1 where its ends differ and its row or column is one of the
    // image. The second end may be left at the width or the height, which no pixel has.
    int ClipX1YX2(int& x1, int y, int& x2) const;
    int ClipXY1Y2(int x, int& y1, int& y2) const;

 private:
    HBITMAP m_bitmap;
    BITMAPINFO m_info{};
    int m_nWidth = 0;
    int m_nHeight = 0;
};

}  // namespace tov
