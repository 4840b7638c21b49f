// Device contexts: what the library asks of a window, a printer or a picture that it draws on. The toolkit
// side derives from CDC; without it there is nothing to draw on.
#pragma once

#include <tov310/geometry.h>
#include <tov310/object.h>
#include <tov310/pixels.h>
#include <tov310/raster.h>
#include <tov310/types.h>

#include <cstdint>

namespace tov {

// How pixels are made fewer when a picture is drawn smaller than it is.
inline constexpr int BLACKONWHITE = 1;  // of several the darkest (bit by bit)
inline constexpr int WHITEONBLACK = 2;  // of several the lightest (bit by bit)
inline constexpr int COLORONCOLOR = 3;  // one of several
inline constexpr int HALFTONE = 4;      // their mean

// What GetDeviceCaps tells of a device.
inline constexpr int HORZRES = 8;      // its width in dots; of a printer the printable one
inline constexpr int VERTRES = 10;     // its height in dots, likewise
inline constexpr int LOGPIXELSX = 88;  // dots an inch across
inline constexpr int LOGPIXELSY = 90;  // dots an inch down

// What stands behind a text.
inline constexpr int TRANSPARENT = 1;  // what was there
inline constexpr int OPAQUE = 2;       // the background colour

// Kinds of regions.
inline constexpr int NULLREGION = 1;     // empty
inline constexpr int SIMPLEREGION = 2;   // a rectangle
inline constexpr int COMPLEXREGION = 3;  // anything else

// A device to draw on. Places are pixels of the device, from its left and top.
//
// Drawing functions answer non-zero, or 0 where nothing was drawn, as this class does itself. Pixels are
// handed over as they lie in memory: rows without gaps, a header that says size and direction. Rows of a
// source are counted in memory too. A device may have several dots for a pixel.
//
// A derived class does most of it by StretchDIBits and, if it can be read, GetDIBits.
class TOV_CORE_API CDC : public CObject {
    TOV_DYNAMIC(CDC, CObject)
 public:
    CDC() = default;
    ~CDC() override;
    CDC(CDC const&) = delete;
    CDC& operator=(CDC const&) = delete;

    // Draws the first `width` columns of the first `height` memory rows, as many as there are, pixel by
    // pixel. The rectangle has its left top corner at (x, y); memory row 0 falls on its top row in a source
    // that runs top-down, on its bottom row in one that runs bottom-up.
    virtual int SetDIBitsToDevice(int x, int y, int width, int height, std::uint32_t const* bits,
                                  BITMAPINFOHEADER const& header);

    // Draws a rectangle of a source, which lies inside it, into a rectangle of the device, by the present
    // stretch mode. `operation` is a raster operation.
    virtual int StretchDIBits(int x, int y, int width, int height, int xSrc, int ySrc, int widthSrc,
                              int heightSrc, std::uint32_t const* bits, BITMAPINFOHEADER const& header,
                              std::uint32_t operation);

    // Reads what stands at (x, y), in the size of the block and with rows in its direction. 0, with nothing
    // changed, where the device cannot be read.
    virtual int GetDIBits(int x, int y, CTovPixels& to);

    // What stands in a rectangle, dot by dot, in rows that run top-down; 0 where it reaches beyond the
    // device. Null where the device cannot be read, and for an empty rectangle. Here the dots are pixels, and
    // a rectangle that reaches beyond the device may not be read.
    virtual HBITMAP Read(CRect const& rect);

    // Draws the rectangle of another device, or of this one, whose left top corner is (xSrc, ySrc). Where the
    // operation asks for the source or for what was there, that device must be one that can be read.
    virtual int BitBlt(int x, int y, int width, int height, CDC* source, int xSrc, int ySrc,
                       std::uint32_t operation);

    // Combines the brush with what is there.
    virtual int PatBlt(int x, int y, int width, int height, std::uint32_t operation);
    virtual int FillSolidRect(CRect const& rect, COLORREF color);

    // Draws a block over what is there, stretched to a rectangle; its alpha bytes say how much of it covers.
    virtual int AlphaBlend(CRect const& to, CTovPixels const& block);

    // The brush; white at first. Answers the former one.
    virtual CTovBrush SelectBrush(CTovBrush const& brush);
    CTovBrush const& GetBrush() const { return m_brush; }

    // Where is drawn at all: the rectangle around it, and its kind; 0, and an empty one, where that is not
    // known.
    virtual int GetClipBox(CRect* box) const;
    // Leaves of it what lies in a rectangle, and answers what kind it is now; 0 where nothing is drawn.
    virtual int IntersectClipRect(CRect const& rect);
    // Draws in a rectangle only, or without bounds for null; what holds a painting within bounds of its own
    // stays. Answers as IntersectClipRect does.
    virtual int SetClipRect(CRect const* rect);

    // One of the stretch modes; COLORONCOLOR at first. Answers the former one, or 0 with nothing changed
    // where there is no such mode.
    virtual int SetStretchBltMode(int mode);
    int GetStretchBltMode() const { return m_nStretchMode; }

    // The place from which patterns are laid out; (0, 0) at first. Answers the former one.
    virtual CPoint SetBrushOrg(CPoint const& origin);
    CPoint GetBrushOrg() const { return m_brushOrigin; }

    // 1 where measures come from another device than the one that is drawn on, or the drawing is kept for
    // one: while printing and in a print preview.
    virtual int HasAttributeDC() const;

    // How many dots stand side by side in a pixel; 1 on a plain device.
    virtual double GetPixelRatio() const;

    // A number about the device; 0 where it is not known.
    virtual int GetDeviceCaps(int index) const;

    // The extent of a text in the present font, in pixels; 0 without one.
    virtual CSize GetTextExtent(char const* text) const;

    // Draws a text with its left top corner at (x, y), in the present font and colour of texts.
    virtual int TextOut(int x, int y, char const* text);

    // The font; the usual one of the device for null. Answers the former one.
    virtual HFONT SelectFont(HFONT font);
    HFONT GetFont() const { return m_font; }

    // Black at first. Answers the former one.
    virtual COLORREF SetTextColor(COLORREF color);
    COLORREF GetTextColor() const { return m_textColor; }

    // White at first. Answers the former one.
    virtual COLORREF SetBkColor(COLORREF color);
    COLORREF GetBkColor() const { return m_bkColor; }
    // TRANSPARENT at first. Answers the former one, or 0 with nothing changed where there is no such mode.
    virtual int SetBkMode(int mode);
    int GetBkMode() const { return m_bkMode; }

 private:
    HFONT m_font = nullptr;
    COLORREF m_textColor = 0;
    COLORREF m_bkColor = 0xFFFFFF;
    int m_bkMode = TRANSPARENT;
    CTovBrush m_brush;
    int m_nStretchMode = COLORONCOLOR;
    CPoint m_brushOrigin;
};

}  // namespace tov
