// Drawing software images: through the DrawDib service where it is open, else by a plain stretch.
#pragma once

#include <tov310/bitmap.h>
#include <tov310/dib.h>

#include <memory>

namespace tov {

// What the service is told with a drawing; others are hints that it does not need.
inline constexpr unsigned DDF_DONTDRAW = 0x0010;  // everything is checked and nothing drawn
inline constexpr unsigned DDF_HALFTONE = 0x1000;  // pixels are made fewer by their mean

// What the service can do with an image.
inline constexpr unsigned PD_CAN_DRAW_DIB = 1;
inline constexpr unsigned PD_CAN_STRETCHDIB = 2;

// How often the service was asked to draw since it was opened or asked this before, and how long it took.
struct DRAWDIBTIME {
    long timeCount = 0;  // drawings
    long timeDraw = 0;   // milliseconds
    long timeDIB = 0;    // always 0, as are the next three: nothing is unpacked or copied on the way
    long timeDecompress = 0;
    long timeDither = 0;
    long timeStretch = 0;
    long timeSetDIBits = 0;
};

// Draws images of 32-bit pixels (CTovDib). The service answers 0 to everything until it is open; a device has
// the last word about what can be drawn on it. An object is used by one thread.
class TOV_CORE_API CTovDrawDib {
 public:
    CTovDrawDib();
    CTovDrawDib(CTovDrawDib const&) = delete;
    CTovDrawDib& operator=(CTovDrawDib const&) = delete;
    virtual ~CTovDrawDib();

    // Whether the service is tried first; 1 at first.
    int GetUseDrawDib() const { return m_bUseDrawDib; }
    void SetUseDrawDib(int use) { m_bUseDrawDib = use; }
    // The stretch mode of plain stretches (device_context.h); COLORONCOLOR at first.
    int GetStretchMode() const { return m_nStretchMode; }
    void SetStretchMode(int mode) { m_nStretchMode = mode; }

    // Draw the picture, or the part of it that is left of a rectangle when it has been cut to the image, into
    // a rectangle of the device. The source is counted from the top of the picture. What is printed or
    // previewed is always drawn by a plain stretch. Answer non-zero, or 0 where nothing was drawn.
    int DrawDib(CDC* dc, CTovDib const* dib, int x, int y, int w, int h, unsigned flags = 0);
    int DrawDib(CDC* dc, CTovDib const* dib, CRect const& to, unsigned flags = 0) {
        return DrawDib(dc, dib, to.left, to.top, to.Width(), to.Height(), flags);
    }
    int DrawDibRect(CDC* dc, CTovDib const* dib, int xSrc, int ySrc, int wSrc, int hSrc, int x, int y, int w,
                    int h, unsigned flags = 0);
    int DrawDibRect(CDC* dc, CTovDib const* dib, CRect const& from, CRect const& to, unsigned flags = 0) {
        return DrawDibRect(dc, dib, from.left, from.top, from.Width(), from.Height(), to.left, to.top,
                           to.Width(), to.Height(), flags);
    }

    // The service.

    int Open();  // 0 where it is open, or where memory is refused
    int Close();
    // Prepares for drawings of an image in a size; -1 for a size of the destination is that of the source. 1
    // where the image can be drawn. End undoes it. Draw does without.
    int Begin(CDC const* dc, int wDst, int hDst, BITMAPINFOHEADER const* header, int wSrc, int hSrc,
              unsigned flags);
    int End();
    // Draws a part of an image, counted from its top, into a rectangle of the device; -1 for a size of the
    // destination is that of the source. 0 where the part does not lie inside of the image.
    int Draw(CDC* dc, int x, int y, int w, int h, BITMAPINFOHEADER const* header, void const* bits, int xSrc,
             int ySrc, int wSrc, int hSrc, unsigned flags);
    // Pixels are drawn as they stand, so there is no buffer: null.
    void* GetBuffer();
    // PD_CAN_... for an image.
    unsigned ProfileDisplay(BITMAPINFOHEADER const* header);
    // Images of 32 bits have no palette: null, and 0.
    HPALETTE GetPalette();
    int SetPalette(HPALETTE palette);
    int ChangePalette(int start, int count, RGBQUAD const* colors);
    unsigned RealizePalette(CDC* dc, int background);
    // Tell that a film begins, with so many microseconds a picture, and that it ends.
    int Start(long rate);
    int Stop();
    int Time(DRAWDIBTIME* time);

 private:
    struct Service;

    std::unique_ptr<Service> m_hDrawDib;
    int m_bUseDrawDib = 1;
    int m_nStretchMode = 3;
};

}  // namespace tov
