// Bitmaps, and how they come from image files and resources and go into files.
//
// A bitmap owns a share in a block of 32-bit pixels (pixels.h). Loaded ones have rows that run top-down and
// alpha bytes of 255 where the file says nothing about transparency.
//
// BMP files and resources are read by the library itself. All other files are read, and all are written, by
// the module Dorn200, which stands on FreeImage and is loaded for the length of a call; where it is missing,
// PNG files can still be read. Files are taken for hostile: what reads them runs in a process of its own with
// limits for memory and time, so that a damaged file costs neither the host nor its data. Resources are the
// host's own and are read within it.
#pragma once

#include <tov310/device_context.h>
#include <tov310/export.h>
#include <tov310/object.h>
#include <tov310/pixels.h>
#include <tov310/resources.h>

#include <cstdint>

namespace tov {

using HDC = CDC*;

// A palette. Bitmaps of 32 bits have none, so null is as good as any.
struct CTovPalette;
using HPALETTE = CTovPalette*;

// What a bitmap is like.
struct BITMAP {
    int bmType = 0;                 // always 0
    int bmWidth = 0;                // pixels
    int bmHeight = 0;               // rows
    int bmWidthBytes = 0;           // from one row to the next
    std::uint16_t bmPlanes = 0;     // 1
    std::uint16_t bmBitsPixel = 0;  // 32
    void* bmBits = nullptr;         // the first row in memory
};

// A bitmap, or none. The pixels live as long as somebody shares them.
class TOV_CORE_API CBitmap : public CObject {
    TOV_DYNCREATE(CBitmap, CObject)
 public:
    CBitmap() = default;
    CBitmap(CBitmap const&) = delete;
    CBitmap& operator=(CBitmap const&) = delete;

    // Makes zeroed pixels in rows that run top-down. The bitmap must have none yet. 0 on failure.
    int CreateBitmap(int width, int height);

    // Takes a share in a block of pixels. 0, and nothing happens, for null and while the bitmap has pixels.
    int Attach(HBITMAP bitmap);

    // Gives its share away; null where it has none.
    HBITMAP Detach();

    // Gives its share up. 0 where it has none.
    int DeleteObject();

    // Null where it has none.
    HBITMAP GetSafeHandle() const { return m_bitmap; }
    operator HBITMAP() const { return m_bitmap; }

    // Tells what the bitmap is like: the size of the record, or 0 with a record of zeros for none.
    int GetBitmap(BITMAP* record) const;

 private:
    HBITMAP m_bitmap;
};

// Kinds of image files, by the numbers of FreeImage (FREE_IMAGE_FORMAT); others of them can be given as
// numbers. What a kind cannot hold is fitted: 24 bits put what is transparent over white, kinds with a
// palette get the best 256 colours (and keep one transparent entry), black and white is dithered.
enum enmImageFormat : int {
    eImageFormatUnknown = -1,
    eImageFormatBmp = 0,
    eImageFormatIco = 1,  // square, 16 to 256 pixels wide
    eImageFormatJpeg = 2,
    eImageFormatPbm = 7,  // black and white
    eImageFormatPbmRaw = 8,
    eImageFormatPgm = 11,  // grey
    eImageFormatPgmRaw = 12,
    eImageFormatPng = 13,
    eImageFormatPpm = 14,
    eImageFormatPpmRaw = 15,
    eImageFormatTiff = 18,
    eImageFormatGif = 25,
    eImageFormatJ2k = 30,  // JPEG 2000, the stream alone
    eImageFormatJp2 = 31,  // JPEG 2000
    eImageFormatWebp = 35,
};

// A bitmap that can be loaded and saved. Nothing here shows a message; failures answer 0.
class TOV_CORE_API CTovBitmap : public CBitmap {
    TOV_DYNAMIC(CTovBitmap, CBitmap)
 public:
    // Loads a bitmap resource: bitmaps/ID.png of the module, else bitmaps/ID.bmp; what the module lacks comes
    // from the built-in one. The bitmap that was there before is gone in any case.
    int LoadBitmap(HINSTANCE module, unsigned int id);

    // Loads an image file, told by its content whatever its name: BMP, GIF and ICO (the first picture), JPEG,
    // JPEG 2000, PNG, PBM, PGM, PPM, TIFF (the first picture; heights and other measures in grey from the
    // least to the greatest), WebP. The bitmap that was there before is gone in any case.
    //
    // 0 for a file that is missing, damaged or cut short, that has more than 2^28 pixels (1 GiB), or whose
    // decoding takes more than a minute or 5 GiB of memory.
    int LoadBitmap(char const* path);

    // Tells size in pixels and depth of an image file from its header; any pointer may be null. 0, and zeros,
    // where that cannot be told, and without Dorn200.
    static int GetImageSize(char const* path, int* width, int* height, int* bitsPerPixel);

    // Writes an image file, whole or not at all: a file that was there stays as it was on failure. Where all
    // alpha bytes are 0, as drawing leaves them, the picture counts as opaque. 0 for null and empty
    // arguments, without Dorn200, and for kinds that cannot be written. The device is only handed on; the
    // second form does without one.
    static int SaveBitmap(HDC dc, HBITMAP bitmap, enmImageFormat format, char const* path);
    static int SaveBitmap(HBITMAP bitmap, enmImageFormat format, char const* path);

    // Gives all pixels of one colour another one; their alpha stays. Colours are 0x00BBGGRR. 0 without
    // pixels.
    static int ChangeBitmapColor(HBITMAP bitmap, COLORREF oldColor, COLORREF newColor, HPALETTE palette);
    int ChangeColor(COLORREF oldColor, COLORREF newColor, HPALETTE palette) const;

    // The same for what stands at the left and top of a device, in the size that the record tells. 0 where
    // the device cannot be read or drawn on, and for a record of one bit a pixel in one plane.
    static int ChangeBitmapColorDC(HDC dc, BITMAP const* bitmap, COLORREF oldColor, COLORREF newColor);

    int GetWidth() const;    // pixels; 0 without pixels
    int GetHeight() const;   // rows; 0 without pixels
    int GetXOffset() const;  // bytes from one row to the next; 0 without pixels
};

// Sets the path of the image module, for a host that keeps its modules in a place of its own. Null or empty
// is the state at the start: "Dorn200.so" beside the library, else where the loader searches. To be set
// before threads start.
TOV_CORE_API void TovSetImageModule(char const* path);

}  // namespace tov
