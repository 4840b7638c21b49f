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
struct PixelRows;
struct PixelStretch;

// An image of 32-bit pixels, 0xAARRGGBB, or none. Coordinates are columns and memory rows: row 0 is the first
// row in memory, the top of the picture in an image that runs top-down and its bottom in one that runs
// bottom-up. Only CopyToDCStretchRect counts from the top in both.
//
// Copying an object shares its pixels: what one draws the other shows. They live until the last object that
// has them is gone or has been given others. An image is used by one thread at a time.
//
// Functions that draw answer 1, or 0 with nothing changed: for null, for an image without pixels, and where
// nothing is left of a rectangle when it has been clipped to the images. Colours are 0x00BBGGRR; amounts and
// alphas are 0 to 255 and limited to that.
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
    std::uint32_t* GetCrBits() { return m_pCrBits; }
    std::uint32_t const* GetCrBits() const { return m_pCrBits; }

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
    // Resize to the other image, and a copy of its memory rows. Where the sizes are equal no pixels are made:
    // the direction of rows stays, and objects that share this image's pixels show the copy too (one that
    // shares them with `from` still does).
    int Create(CTovDib const* from);
    // Create where the size differs; otherwise nothing happens, and pixels and direction of rows stay. The
    // first compares the height as it is given, so that a negative one always differs, and the size 0, 0 is
    // that of an image without pixels: 1. The second compares the sizes, and where they differ takes the
    // direction of rows too.
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

    // To devices. These refuse negative places on the device.

    // Draws the picture at (x, y), pixel by pixel.
    int CopyToDC(CDC* dc, int x, int y) const { return CopyToDC(dc, x, y, m_nWidth, m_nHeight); }
    int CopyToDC(CDC* dc, CPoint const& to) const { return CopyToDC(dc, to.x, to.y); }
    // The same for as many columns and memory rows.
    int CopyToDC(CDC* dc, int x, int y, int w, int h) const;
    int CopyToDC(CDC* dc, CRect const& to) const {
        return CopyToDC(dc, to.left, to.top, to.Width(), to.Height());
    }
    // Draws the picture into a rectangle, by a raster operation.
    int CopyToDCStretch(CDC* dc, int x, int y, int w, int h, std::uint32_t operation = SRCCOPY) const;
    int CopyToDCStretch(CDC* dc, CRect const& to, std::uint32_t operation = SRCCOPY) const {
        return CopyToDCStretch(dc, to.left, to.top, to.Width(), to.Height(), operation);
    }
    // The same for a part of the picture, which is counted from its top and cut to the image.
    int CopyToDCStretchRect(CDC* dc, int xSrc, int ySrc, int wSrc, int hSrc, int x, int y, int w, int h,
                            std::uint32_t operation = SRCCOPY) const;
    int CopyToDCStretchRect(CDC* dc, CRect const& from, CRect const& to,
                            std::uint32_t operation = SRCCOPY) const {
        return CopyToDCStretchRect(dc, from.left, from.top, from.Width(), from.Height(), to.left, to.top,
                                   to.Width(), to.Height(), operation);
    }
    // Copies the picture into a bitmap of the same size. The device may be null.
    int CopyToBitmap(CDC* dc, CBitmap* bitmap) const;

    // From devices, which must give a picture of exactly the size of the image.

    int CopyFromDC(CDC* dc, int x, int y, int w, int h);
    int CopyFromDC(CDC* dc, CRect const& from) {
        return CopyFromDC(dc, from.left, from.top, from.Width(), from.Height());
    }
    int CopyFromBitmap(CDC* dc, CBitmap* bitmap);  // the device may be null

    // Turns the rows over and changes their direction, so that the picture stays the same: new pixels, which
    // are no longer shared with copies of the object. The device may be null.
    int Invert(CDC* dc);

    // Copies between images. The source may be this image: what comes out is as if it had been copied before.
    //
    // The whole source with its first pixel at (x, y), cut to this image; where it begins in front of this
    // image the copy begins with the first pixel of the source nevertheless. The forms ...Rect copy a part of
    // the source and cut it to both images.

    int CopyFromDib(CTovDib const* src, int x = 0, int y = 0);
    int CopyFromDib(CTovDib const* src, CPoint const& to) { return CopyFromDib(src, to.x, to.y); }
    int CopyFromDibRect(CTovDib const* src, int xSrc, int ySrc, int w, int h, int x, int y);
    int CopyFromDibRect(CTovDib const* src, CRect const& from, CPoint const& to) {
        return CopyFromDibRect(src, from.left, from.top, from.Width(), from.Height(), to.x, to.y);
    }
    // Without the pixels of one colour.
    int CopyFromDibTransparent(CTovDib const* src, int x, int y, COLORREF key);
    int CopyFromDibTransparent(CTovDib const* src, CPoint const& to, COLORREF key) {
        return CopyFromDibTransparent(src, to.x, to.y, key);
    }
    int CopyFromDibTransparentRect(CTovDib const* src, int xSrc, int ySrc, int w, int h, int x, int y,
                                   COLORREF key);
    int CopyFromDibTransparentRect(CTovDib const* src, CRect const& from, CPoint const& to, COLORREF key) {
        return CopyFromDibTransparentRect(src, from.left, from.top, from.Width(), from.Height(), to.x, to.y,
                                          key);
    }
    // Blended by the alpha of each pixel of the source (see Blend); the alpha of this image stays.
    int CopyFromDibAlpha(CTovDib const* src, int x = 0, int y = 0);
    int CopyFromDibAlpha(CTovDib const* src, CPoint const& to) { return CopyFromDibAlpha(src, to.x, to.y); }
    int CopyFromDibAlphaRect(CTovDib const* src, int xSrc, int ySrc, int w, int h, int x, int y);
    int CopyFromDibAlphaRect(CTovDib const* src, CRect const& from, CPoint const& to) {
        return CopyFromDibAlphaRect(src, from.left, from.top, from.Width(), from.Height(), to.x, to.y);
    }

    // Rotating and scaling copies, by the nearest pixel. The source may be this image.
    //
    // Walks this image and, along with it, the source: by (cos(-angle), -sin(-angle)) / scale to the next
    // column and by (sin(-angle), cos(-angle)) / scale to the next row, so that (xDst, yDst) falls on (xSrc,
    // ySrc). The positions accumulate in single precision. Where one is inside the source, 0 < position <
    // size, the pixel there is taken; other pixels get the colour `fillColor` with alpha 0, or stay as they
    // are without `fill`. The angle is in radians; it and the scale must be finite, and the scale not 0.

    int CopyFromDibStretch(CTovDib const* src, float angle, float scale, float xDst, float yDst, float xSrc,
                           float ySrc, int fill, COLORREF fillColor);
    // Pixels of the colour `key` in the source leave this image as it is.
    int CopyFromDibStretchTransparent(CTovDib const* src, float angle, float scale, float xDst, float yDst,
                                      float xSrc, float ySrc, COLORREF key, int fill, COLORREF fillColor);
    // Blends by the alpha of each pixel of the source.
    int CopyFromDibStretchAlpha(CTovDib const* src, float angle, float scale, float xDst, float yDst,
                                float xSrc, float ySrc, int fill, COLORREF fillColor);
    // The same round the centres of the images. With `adjustSize` this image gets the size that holds the
    // whole of the result, rounded to pixels, with rows in the direction of the source's. `corners`, null or
    // an array of four, receives the corners of the source in this image then: those that were at (0, 0),
    // (width, 0), (width, height), (0, height).
    int CopyFromDibStretch(CTovDib const* src, float angle, float scale, int adjustSize, int fill,
                           COLORREF fillColor, CTovPoint<double>* corners = nullptr);
    int CopyFromDibStretchTransparent(CTovDib const* src, float angle, float scale, int adjustSize,
                                      COLORREF key, int fill, COLORREF fillColor,
                                      CTovPoint<double>* corners = nullptr);
    int CopyFromDibStretchAlpha(CTovDib const* src, float angle, float scale, int adjustSize, int fill,
                                COLORREF fillColor, CTovPoint<double>* corners = nullptr);

    // Fills.

    // Gives pixels a colour and an alpha.
    int Fill(COLORREF color, int alpha = 0) { return FillRect(color, Whole(), alpha); }
    int FillRect(COLORREF color, int x, int y, int w, int h, int alpha = 0);
    int FillRect(COLORREF color, CRect const& where, int alpha = 0) {
        return FillRect(color, where.left, where.top, where.Width(), where.Height(), alpha);
    }
    // Blend and Blend50 with a colour.
    int FillBlend(COLORREF color, int amount) { return Blend(color, amount); }
    int FillBlendRect(COLORREF color, int x, int y, int w, int h, int amount) {
        return BlendRect(color, x, y, w, h, amount);
    }
    int FillBlendRect(COLORREF color, CRect const& where, int amount) {
        return BlendRect(color, where, amount);
    }
    int FillBlend50(COLORREF color) { return Blend50(color); }
    int FillBlend50Rect(COLORREF color, int x, int y, int w, int h) { return Blend50Rect(color, x, y, w, h); }
    int FillBlend50Rect(COLORREF color, CRect const& where) { return Blend50Rect(color, where); }
    // Gives every second pixel a colour, whose top byte becomes the alpha: where the sum of column and row,
    // counted from the corner of the rectangle, is odd.
    int FillStippled(COLORREF color) { return FillStippledRect(color, Whole()); }
    int FillStippledRect(COLORREF color, int x, int y, int w, int h);
    int FillStippledRect(COLORREF color, CRect const& where) {
        return FillStippledRect(color, where.left, where.top, where.Width(), where.Height());
    }
    // Sets the alpha.
    int FillAlpha(int alpha) { return FillAlphaRect(Whole(), alpha); }
    int FillAlphaRect(int x, int y, int w, int h, int alpha);
    int FillAlphaRect(CRect const& where, int alpha) {
        return FillAlphaRect(where.left, where.top, where.Width(), where.Height(), alpha);
    }
    // Sets the alpha to values from a1 at the left towards a2 at the right, or from a2 in the first memory
    // row towards a1 in the last, in equal steps over the rectangle as it is cut to the image; each is a sum
    // of steps in single precision, cut to a whole number. (Over hundreds of thousands of pixels the
    // roundings of such a sum add up to whole numbers; what would leave 0 to 255 is limited to it.)
    int FillAlphaGradient(int a1, int a2, int horizontal) {
        return FillAlphaGradientRect(Whole(), a1, a2, horizontal);
    }
    int FillAlphaGradientRect(int x, int y, int w, int h, int a1, int a2, int horizontal);
    int FillAlphaGradientRect(CRect const& where, int a1, int a2, int horizontal) {
        return FillAlphaGradientRect(where.left, where.top, where.Width(), where.Height(), a1, a2,
                                     horizontal);
    }

    // Colours.

    // Gives pixels of one colour another one; their alpha stays, or becomes the one that is given.
    int ExchangeColor(COLORREF from, COLORREF to) { return ExchangeColorRect(Whole(), from, to); }
    int ExchangeColor(COLORREF from, COLORREF to, int alpha) {
        return ExchangeColorRect(Whole(), from, to, alpha);
    }
    int ExchangeColorRect(int x, int y, int w, int h, COLORREF from, COLORREF to);
    int ExchangeColorRect(int x, int y, int w, int h, COLORREF from, COLORREF to, int alpha);
    int ExchangeColorRect(CRect const& where, COLORREF from, COLORREF to) {
        return ExchangeColorRect(where.left, where.top, where.Width(), where.Height(), from, to);
    }
    int ExchangeColorRect(CRect const& where, COLORREF from, COLORREF to, int alpha) {
        return ExchangeColorRect(where.left, where.top, where.Width(), where.Height(), from, to, alpha);
    }
    // Gives pixels their grey, 0.3 red + 0.59 green + 0.11 blue in double precision, cut to a whole number;
    // all of them, or all but those of one colour.
    int GreyScale() { return GreyScaleRect(Whole()); }
    int GreyScaleRect(int x, int y, int w, int h);
    int GreyScaleRect(CRect const& where) {
        return GreyScaleRect(where.left, where.top, where.Width(), where.Height());
    }
    int GreyScaleTransparent(COLORREF key);

    // Compositing, with an image or with a colour in the place of each of its pixels.
    //
    // From a byte d of colour of this image and the byte s of the other, each makes
    //   Blend       ((s - d) * amount + d * 256) >> 8, which is d for 0 but less than s for 255
    //   Blend50     (d >> 1) + (s >> 1); the alpha becomes 0
    //   Darken      the smaller
    //   Lighten     the larger
    //   Screen      255 - ((255 - d) * (255 - s) >> 8)
    //   Add         d + s, at most 255
    //   Difference  abs(s - d)
    //   Multiply    d * s >> 8
    // The alpha of this image stays, but for Blend50. The source may be this image: what comes out is as if
    // it had been copied before.
    //
    // With an image: all of it with its first pixel at a place of this image, where only the part that falls
    // on this image counts (unlike CopyFromDib, which begins with the first pixel of the source
    // nevertheless), or, in the forms ...Rect, a part of it, cut to both images. With a colour, which may be
    // an integer of any type so that 0 is black and no null image: all pixels, or a rectangle.

    int Blend(CTovDib const* src, int amount) { return Blend(src, 0, 0, amount); }
    int Blend(CTovDib const* src, int x, int y, int amount) {
        return Compose(Mode::kBlend, src, x, y, amount);
    }
    int Blend(CTovDib const* src, CPoint const& to, int amount) { return Blend(src, to.x, to.y, amount); }
    int Blend(std::integral auto color, int amount) { return BlendRect(color, Whole(), amount); }
    int BlendRect(CTovDib const* src, int xSrc, int ySrc, int w, int h, int x, int y, int amount) {
        return ComposeRect(Mode::kBlend, src, xSrc, ySrc, w, h, x, y, amount);
    }
    int BlendRect(CTovDib const* src, CRect const& from, CPoint const& to, int amount) {
        return BlendRect(src, from.left, from.top, from.Width(), from.Height(), to.x, to.y, amount);
    }
    int BlendRect(std::integral auto color, int x, int y, int w, int h, int amount) {
        return ComposeColor(Mode::kBlend, static_cast<COLORREF>(color), x, y, w, h, amount);
    }
    int BlendRect(std::integral auto color, CRect const& where, int amount) {
        return BlendRect(color, where.left, where.top, where.Width(), where.Height(), amount);
    }

    int Blend50(CTovDib const* src, int x = 0, int y = 0) { return Compose(Mode::kBlend50, src, x, y); }
    int Blend50(CTovDib const* src, CPoint const& to) { return Blend50(src, to.x, to.y); }
    int Blend50(std::integral auto color) { return Blend50Rect(color, Whole()); }
    int Blend50Rect(CTovDib const* src, int xSrc, int ySrc, int w, int h, int x, int y) {
        return ComposeRect(Mode::kBlend50, src, xSrc, ySrc, w, h, x, y);
    }
    int Blend50Rect(CTovDib const* src, CRect const& from, CPoint const& to) {
        return Blend50Rect(src, from.left, from.top, from.Width(), from.Height(), to.x, to.y);
    }
    int Blend50Rect(std::integral auto color, int x, int y, int w, int h) {
        return ComposeColor(Mode::kBlend50, static_cast<COLORREF>(color), x, y, w, h);
    }
    int Blend50Rect(std::integral auto color, CRect const& where) {
        return Blend50Rect(color, where.left, where.top, where.Width(), where.Height());
    }

    int Darken(CTovDib const* src, int x = 0, int y = 0) { return Compose(Mode::kDarken, src, x, y); }
    int Darken(CTovDib const* src, CPoint const& to) { return Darken(src, to.x, to.y); }
    int Darken(std::integral auto color) { return DarkenRect(color, Whole()); }
    int DarkenRect(CTovDib const* src, int xSrc, int ySrc, int w, int h, int x, int y) {
        return ComposeRect(Mode::kDarken, src, xSrc, ySrc, w, h, x, y);
    }
    int DarkenRect(CTovDib const* src, CRect const& from, CPoint const& to) {
        return DarkenRect(src, from.left, from.top, from.Width(), from.Height(), to.x, to.y);
    }
    int DarkenRect(std::integral auto color, int x, int y, int w, int h) {
        return ComposeColor(Mode::kDarken, static_cast<COLORREF>(color), x, y, w, h);
    }
    int DarkenRect(std::integral auto color, CRect const& where) {
        return DarkenRect(color, where.left, where.top, where.Width(), where.Height());
    }

    int Lighten(CTovDib const* src, int x = 0, int y = 0) { return Compose(Mode::kLighten, src, x, y); }
    int Lighten(CTovDib const* src, CPoint const& to) { return Lighten(src, to.x, to.y); }
    int Lighten(std::integral auto color) { return LightenRect(color, Whole()); }
    int LightenRect(CTovDib const* src, int xSrc, int ySrc, int w, int h, int x, int y) {
        return ComposeRect(Mode::kLighten, src, xSrc, ySrc, w, h, x, y);
    }
    int LightenRect(CTovDib const* src, CRect const& from, CPoint const& to) {
        return LightenRect(src, from.left, from.top, from.Width(), from.Height(), to.x, to.y);
    }
    int LightenRect(std::integral auto color, int x, int y, int w, int h) {
        return ComposeColor(Mode::kLighten, static_cast<COLORREF>(color), x, y, w, h);
    }
    int LightenRect(std::integral auto color, CRect const& where) {
        return LightenRect(color, where.left, where.top, where.Width(), where.Height());
    }

    int Screen(CTovDib const* src, int x = 0, int y = 0) { return Compose(Mode::kScreen, src, x, y); }
    int Screen(CTovDib const* src, CPoint const& to) { return Screen(src, to.x, to.y); }
    int Screen(std::integral auto color) { return ScreenRect(color, Whole()); }
    int ScreenRect(CTovDib const* src, int xSrc, int ySrc, int w, int h, int x, int y) {
        return ComposeRect(Mode::kScreen, src, xSrc, ySrc, w, h, x, y);
    }
    int ScreenRect(CTovDib const* src, CRect const& from, CPoint const& to) {
        return ScreenRect(src, from.left, from.top, from.Width(), from.Height(), to.x, to.y);
    }
    int ScreenRect(std::integral auto color, int x, int y, int w, int h) {
        return ComposeColor(Mode::kScreen, static_cast<COLORREF>(color), x, y, w, h);
    }
    int ScreenRect(std::integral auto color, CRect const& where) {
        return ScreenRect(color, where.left, where.top, where.Width(), where.Height());
    }

    int Add(CTovDib const* src, int x = 0, int y = 0) { return Compose(Mode::kAdd, src, x, y); }
    int Add(CTovDib const* src, CPoint const& to) { return Add(src, to.x, to.y); }
    int Add(std::integral auto color) { return AddRect(color, Whole()); }
    int AddRect(CTovDib const* src, int xSrc, int ySrc, int w, int h, int x, int y) {
        return ComposeRect(Mode::kAdd, src, xSrc, ySrc, w, h, x, y);
    }
    int AddRect(CTovDib const* src, CRect const& from, CPoint const& to) {
        return AddRect(src, from.left, from.top, from.Width(), from.Height(), to.x, to.y);
    }
    int AddRect(std::integral auto color, int x, int y, int w, int h) {
        return ComposeColor(Mode::kAdd, static_cast<COLORREF>(color), x, y, w, h);
    }
    int AddRect(std::integral auto color, CRect const& where) {
        return AddRect(color, where.left, where.top, where.Width(), where.Height());
    }

    int Difference(CTovDib const* src, int x = 0, int y = 0) { return Compose(Mode::kDifference, src, x, y); }
    int Difference(CTovDib const* src, CPoint const& to) { return Difference(src, to.x, to.y); }
    int Difference(std::integral auto color) { return DifferenceRect(color, Whole()); }
    int DifferenceRect(CTovDib const* src, int xSrc, int ySrc, int w, int h, int x, int y) {
        return ComposeRect(Mode::kDifference, src, xSrc, ySrc, w, h, x, y);
    }
    int DifferenceRect(CTovDib const* src, CRect const& from, CPoint const& to) {
        return DifferenceRect(src, from.left, from.top, from.Width(), from.Height(), to.x, to.y);
    }
    int DifferenceRect(std::integral auto color, int x, int y, int w, int h) {
        return ComposeColor(Mode::kDifference, static_cast<COLORREF>(color), x, y, w, h);
    }
    int DifferenceRect(std::integral auto color, CRect const& where) {
        return DifferenceRect(color, where.left, where.top, where.Width(), where.Height());
    }

    int Multiply(CTovDib const* src, int x = 0, int y = 0) { return Compose(Mode::kMultiply, src, x, y); }
    int Multiply(CTovDib const* src, CPoint const& to) { return Multiply(src, to.x, to.y); }
    int Multiply(std::integral auto color) { return MultiplyRect(color, Whole()); }
    int MultiplyRect(CTovDib const* src, int xSrc, int ySrc, int w, int h, int x, int y) {
        return ComposeRect(Mode::kMultiply, src, xSrc, ySrc, w, h, x, y);
    }
    int MultiplyRect(CTovDib const* src, CRect const& from, CPoint const& to) {
        return MultiplyRect(src, from.left, from.top, from.Width(), from.Height(), to.x, to.y);
    }
    int MultiplyRect(std::integral auto color, int x, int y, int w, int h) {
        return ComposeColor(Mode::kMultiply, static_cast<COLORREF>(color), x, y, w, h);
    }
    int MultiplyRect(std::integral auto color, CRect const& where) {
        return MultiplyRect(color, where.left, where.top, where.Width(), where.Height());
    }

 private:
    enum class Mode { kBlend, kBlend50, kDarken, kLighten, kScreen, kAdd, kDifference, kMultiply };

    CRect Whole() const { return {0, 0, m_nWidth, m_nHeight}; }

    int Compose(Mode mode, CTovDib const* src, int x, int y, int amount = 0);
    int ComposeRect(Mode mode, CTovDib const* src, int xSrc, int ySrc, int w, int h, int x, int y,
                    int amount = 0);
    int ComposeColor(Mode mode, COLORREF color, int x, int y, int w, int h, int amount = 0);

    // Checks, and what is left of rectangles.
    int ChkDstSizeRect(int& x, int& y, int& w, int& h) const {
        return m_bitmap != nullptr && ClipXYWH(x, y, w, h);
    }
    static int ChkSrcSize(CTovDib const* src) { return src != nullptr && src->m_bitmap != nullptr; }
    static int ChkSrcSizeRect(CTovDib const* src, int& x, int& y, int& w, int& h);
    int PrepDst(int& x, int& y, int& w, int& h, PixelRows& rows);
    int PrepDstSrc(CTovDib const* src, int xSrc, int ySrc, int w, int h, int x, int y, PixelRows& rows);
    int PrepCopy(CTovDib const* src, int x, int y, PixelRows& rows);
    int Recolor(int x, int y, int w, int h, COLORREF from, COLORREF to, std::uint32_t alpha,
                std::uint32_t taken);
    int AdjustSize(CTovDib const* src, float angle, float scale, CTovPoint<double>* corners);
    int Stretch(CTovDib const* src, float angle, float scale, CTovPoint<float> const& to,
                CTovPoint<float> const& from, PixelStretch const& how);
    int StretchCentred(CTovDib const* src, float angle, float scale, int adjustSize,
                       CTovPoint<double>* corners, PixelStretch const& how);

    BITMAPINFO m_info{};
    int m_nWidth = 0;
    int m_nHeight = 0;
    HBITMAP m_bitmap;
    std::uint32_t* m_pCrBits = nullptr;  // of the bitmap
};

}  // namespace tov
