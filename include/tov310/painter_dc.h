// Devices of the toolkit: a CDC on a QPainter.
//
// Pixels are the painter's units, so that painting on a fine screen or in a scaled painter works as on a
// plain one; what is drawn pixel by pixel or read goes by the dots of the device and loses nothing. Images,
// pixmaps and windows (while they are painted) can be read as long as the painter is not rotated. What is
// drawn on a printer or in a QPicture goes there as it is, and raster operations that ask for what was there
// draw nothing.
#pragma once

#include <tov310/device_context.h>
#include <tov310/dib.h>
#include <tov310/export.h>

#include <QFont>
#include <QImage>
#include <QPainter>
#include <QRegion>

#include <memory>

namespace tov {

class TOV_UI_API CTovPainterDC : public CDC {
    TOV_DYNAMIC(CTovPainterDC, CDC)
 public:
    // On a painter that is active already; it must outlive the device, which puts its state back at the end.
    explicit CTovPainterDC(QPainter& painter);

    // With a painter of its own: on a QImage, QPixmap, QPrinter, or a widget within its paintEvent. Where
    // painting is not possible all functions answer 0.
    explicit CTovPainterDC(QPaintDevice& device);

    // The same on the pixels of an image, whose alpha bytes become 255 where it is drawn on. An image whose
    // rows run bottom-up gets what was drawn when the device ends.
    explicit CTovPainterDC(CTovDib& dib);

    ~CTovPainterDC() override;

    QPainter& Native() const { return *m_painter; }

    int SetDIBitsToDevice(int x, int y, int width, int height, std::uint32_t const* bits,
                          BITMAPINFOHEADER const& header) override;
    int StretchDIBits(int x, int y, int width, int height, int xSrc, int ySrc, int widthSrc, int heightSrc,
                      std::uint32_t const* bits, BITMAPINFOHEADER const& header,
                      std::uint32_t operation) override;
    int GetDIBits(int x, int y, CTovPixels& to) override;
    HBITMAP Read(CRect const& rect) override;
    int BitBlt(int x, int y, int width, int height, CDC* source, int xSrc, int ySrc,
               std::uint32_t operation) override;
    int PatBlt(int x, int y, int width, int height, std::uint32_t operation) override;
    int FillSolidRect(CRect const& rect, COLORREF color) override;
    int AlphaBlend(CRect const& to, CTovPixels const& block) override;
    int GetClipBox(CRect* box) const override;
    int IntersectClipRect(CRect const& rect) override;
    int SetClipRect(CRect const* rect) override;
    int HasAttributeDC() const override;
    double GetPixelRatio() const override;
    int GetDeviceCaps(int index) const override;
    CSize GetTextExtent(char const* text) const override;
    int TextOut(int x, int y, char const* text) override;
    HFONT SelectFont(HFONT font) override;

 private:
    void Begin();
    bool HasDots() const;
    QRect DotsOf(CRect const& rect) const;
    QRect ClipInDots() const;
    HBITMAP ReadDots(QRect const& dots) const;
    int Combine(QRect const& dots, CTovPixels const* source, std::uint32_t operation);
    void DrawDots(QRect const& dots, QImage const& image, QRect const& from);
    int DrawScaled(CRect const& to, QImage const& image, QRect const& from);

    std::unique_ptr<QPainter> m_own;  // null where the painter is borrowed
    QPainter* m_painter;
    QImage m_view;     // of a software image
    HBITMAP m_turned;  // its rows in the other order
    HBITMAP m_target;  // the block that gets them
    QFont m_usualFont;
    QRegion m_givenClip;
    bool m_hasGivenClip = false;
};

}  // namespace tov
