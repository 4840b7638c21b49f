#include <tov310/painter_dc.h>

#include <tov310/dib_image.h>
#include <tov310/qt_values.h>
#include <tov310/wnd_on.h>

#include <QFontMetrics>
#include <QPagedPaintDevice>
#include <QPaintEngine>
#include <QPixmap>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace tov {
namespace {

// The picture that a painter paints on; a window's is that of the whole screen window.
QImage const* ImageUnder(QPainter const& painter) {
    QPaintEngine const* const engine = painter.paintEngine();
    QPaintDevice const* const device = engine != nullptr ? engine->paintDevice() : nullptr;
    return device != nullptr && device->devType() == QInternal::Image ? static_cast<QImage const*>(device)
                                                                      : nullptr;
}

QPixmap const* PixmapUnder(QPainter const& painter) {
    QPaintEngine const* const engine = painter.paintEngine();
    QPaintDevice const* const device = engine != nullptr ? engine->paintDevice() : nullptr;
    return device != nullptr && device->devType() == QInternal::Pixmap ? static_cast<QPixmap const*>(device)
                                                                       : nullptr;
}

// Pixels of others, for as long as the call lasts.
QImage ViewOf(std::uint32_t const* bits, BITMAPINFOHEADER const& header, QImage::Format format) {
    constexpr int bytesOfPixel = 4;
    return {reinterpret_cast<uchar const*>(bits), header.biWidth, std::abs(header.biHeight),
            qsizetype{header.biWidth} * bytesOfPixel, format};
}

bool IsInside(BITMAPINFOHEADER const& header, int x, int y, int width, int height) {
    return CTovPixels::IsPossible(header.biWidth, header.biHeight) && x >= 0 && y >= 0 && width > 0 &&
           height > 0 && width <= header.biWidth - x && height <= std::abs(header.biHeight) - y;
}

CRect RectAt(int x, int y, int width, int height) {
    return {x, y, x + width, y + height};
}

}  // namespace

CTovPainterDC::CTovPainterDC(QPainter& painter) : m_painter(&painter) {
    if (painter.isActive()) painter.save();
    Begin();
}

CTovPainterDC::CTovPainterDC(QPaintDevice& device)
    : m_own(std::make_unique<QPainter>(&device)), m_painter(m_own.get()) {
    Begin();
}

CTovPainterDC::CTovPainterDC(CTovDib& dib) : m_own(std::make_unique<QPainter>()), m_painter(m_own.get()) {
    HBITMAP const block = dib.GetBitmap();
    if (!block) return;
    if (!block->IsTopDown()) {
        m_turned = CTovPixels::Create(block->GetWidth(), -block->GetHeight());
        if (!m_turned) return;
        m_turned->CopyFrom(*block);
        m_target = block;
    }
    m_view = TovImageView(m_turned ? m_turned : block);
    m_own->begin(&m_view);
    Begin();
}

CTovPainterDC::~CTovPainterDC() {
    if (!m_painter->isActive()) return;
    if (m_own != nullptr)
        m_own->end();
    else
        m_painter->restore();
    if (m_target) m_target->CopyFrom(*m_turned);
}

void CTovPainterDC::Begin() {
    if (!m_painter->isActive()) return;
    m_usualFont = m_painter->font();
    m_hasGivenClip = m_painter->hasClipping();
    if (m_hasGivenClip) m_givenClip = m_painter->clipRegion();
    SetTextColor(TovColorRef(m_painter->pen().color()));
    SetBkColor(TovColorRef(m_painter->background().color()));
}

// Whether pixels are squares of dots that can be told one by one.
bool CTovPainterDC::HasDots() const {
    if (!m_painter->isActive() || HasAttributeDC()) return false;
    QTransform const& transform = m_painter->deviceTransform();
    return transform.type() <= QTransform::TxScale && transform.m11() > 0 && transform.m22() > 0;
}

// Rectangles side by side have dots side by side, whatever the scale.
QRect CTovPainterDC::DotsOf(CRect const& rect) const {
    QTransform const& transform = m_painter->deviceTransform();
    auto const dot = [](double place) { return static_cast<int>(std::floor(place + 0.5)); };
    QPoint const first(dot(transform.m11() * rect.left + transform.dx()),
                       dot(transform.m22() * rect.top + transform.dy()));
    QPoint const end(dot(transform.m11() * rect.right + transform.dx()),
                     dot(transform.m22() * rect.bottom + transform.dy()));
    return {first, end - QPoint(1, 1)};
}

QRect CTovPainterDC::ClipInDots() const {
    CRect box;
    GetClipBox(&box);
    return DotsOf(box);
}

HBITMAP CTovPainterDC::ReadDots(QRect const& dots) const {
    if (QImage const* const image = ImageUnder(*m_painter)) return TovPixels(image->copy(dots));
    QPixmap const* const pixmap = PixmapUnder(*m_painter);
    return pixmap != nullptr ? TovPixels(pixmap->toImage().copy(dots)) : nullptr;
}

void CTovPainterDC::DrawDots(QRect const& dots, QImage const& image, QRect const& from) {
    QImage const* const target = ImageUnder(*m_painter);
    if (image.format() == QImage::Format_RGB32 && (target == nullptr || target->format() != image.format())) {
        // Where the target has alpha bytes, those of the image would get there, whatever they are.
        DrawDots(dots, image.copy(from).convertToFormat(QImage::Format_ARGB32_Premultiplied),
                 QRect(QPoint(), from.size()));
        return;
    }
    QTransform const& transform = m_painter->deviceTransform();
    if (transform.type() <= QTransform::TxTranslate && transform.dx() == std::floor(transform.dx()) &&
        transform.dy() == std::floor(transform.dy())) {
        m_painter->drawImage(
            dots.topLeft() - QPoint(static_cast<int>(transform.dx()), static_cast<int>(transform.dy())),
            image, from);
        return;
    }
    bool const wasSmooth = m_painter->testRenderHint(QPainter::SmoothPixmapTransform);
    m_painter->setRenderHint(QPainter::SmoothPixmapTransform, false);
    m_painter->drawImage(transform.inverted().mapRect(QRectF(dots)), image, QRectF(from));
    m_painter->setRenderHint(QPainter::SmoothPixmapTransform, wasSmooth);
}

// As the painter scales, for devices without dots.
int CTovPainterDC::DrawScaled(CRect const& to, QImage const& image, QRect const& from) {
    bool const wasSmooth = m_painter->testRenderHint(QPainter::SmoothPixmapTransform);
    m_painter->setRenderHint(QPainter::SmoothPixmapTransform, GetStretchBltMode() == HALFTONE);
    QImage const shown = image.copy(from);
    bool const hasFourth = image.format() == QImage::Format_RGB32;  // a byte that says nothing
    m_painter->drawImage(TovQRect(to), hasFourth ? shown.convertToFormat(QImage::Format_RGB888) : shown);
    m_painter->setRenderHint(QPainter::SmoothPixmapTransform, wasSmooth);
    return from.height();
}

int CTovPainterDC::SetDIBitsToDevice(int x, int y, int width, int height, std::uint32_t const* bits,
                                     BITMAPINFOHEADER const& header) {
    if (!CTovPixels::IsPossible(header.biWidth, header.biHeight)) return 0;
    int const columns = std::min(width, header.biWidth);
    int const rows = std::min(height, std::abs(header.biHeight));
    int const top = header.biHeight < 0 ? y : y + height - rows;
    return StretchDIBits(x, top, columns, rows, 0, 0, columns, rows, bits, header, SRCCOPY);
}

int CTovPainterDC::StretchDIBits(int x, int y, int width, int height, int xSrc, int ySrc, int widthSrc,
                                 int heightSrc, std::uint32_t const* bits, BITMAPINFOHEADER const& header,
                                 std::uint32_t operation) {
    if (!m_painter->isActive() || bits == nullptr || width <= 0 || height <= 0 ||
        !IsInside(header, xSrc, ySrc, widthSrc, heightSrc))
        return 0;
    CRect const to = RectAt(x, y, width, height);
    CRect const from = RectAt(xSrc, ySrc, widthSrc, heightSrc);
    bool const isPlain = operation == SRCCOPY && header.biHeight < 0;
    if (!HasDots()) {
        if (TovNeedsDestination(operation)) return 0;
        if (isPlain) return DrawScaled(to, ViewOf(bits, header, QImage::Format_RGB32), TovQRect(from));
        HBITMAP const block = TovStretchPixels(bits, header, from, widthSrc, heightSrc,
                                               {0, 0, widthSrc, heightSrc}, COLORONCOLOR);
        if (!block || !TovRasterOperation(*block, block.get(), GetBrush(), {}, 1, operation)) return 0;
        return DrawScaled(to, TovImageView(block), QRect(0, 0, widthSrc, heightSrc));
    }
    QRect const dots = DotsOf(to);
    QRect const seen = dots & ClipInDots();
    if (seen.isEmpty()) return heightSrc;
    QPoint const within = seen.topLeft() - dots.topLeft();
    if (isPlain && dots.width() == widthSrc && dots.height() == heightSrc) {
        DrawDots(seen, ViewOf(bits, header, QImage::Format_RGB32),
                 QRect(QPoint(xSrc, ySrc) + within, seen.size()));
        return heightSrc;
    }
    HBITMAP block = TovStretchPixels(bits, header, from, dots.width(), dots.height(),
                                     TovRect(QRect(within, seen.size())), GetStretchBltMode());
    if (!block) return 0;
    if (operation != SRCCOPY) return Combine(seen, block.get(), operation) ? heightSrc : 0;
    DrawDots(seen, TovImageView(block), QRect(QPoint(), seen.size()));
    return heightSrc;
}

// What the operation makes of these dots. Patterns go by the dots of the whole device, so that parts of them
// fit together.
int CTovPainterDC::Combine(QRect const& dots, CTovPixels const* source, std::uint32_t operation) {
    HBITMAP const there =
        TovNeedsDestination(operation) ? ReadDots(dots) : CTovPixels::Create(dots.width(), -dots.height());
    QPoint const origin =
        DotsOf({GetBrushOrg().x, GetBrushOrg().y, GetBrushOrg().x, GetBrushOrg().y}).topLeft() -
        dots.topLeft();
    int const perPixel = std::max(TovRoundToPixel(GetPixelRatio()), 1);
    if (!there || !TovRasterOperation(*there, source, GetBrush(), TovPoint(origin), perPixel, operation))
        return 0;
    DrawDots(dots, TovImageView(there), QRect(QPoint(), dots.size()));
    return 1;
}

int CTovPainterDC::GetDIBits(int x, int y, CTovPixels& to) {
    HBITMAP block = Read(RectAt(x, y, to.GetWidth(), to.GetHeight()));
    if (block && (block->GetWidth() != to.GetWidth() || block->GetHeight() != to.GetHeight()))
        block = TovStretchPixels(block->GetBits(), TovHeaderOf(*block),
                                 {0, 0, block->GetWidth(), block->GetHeight()}, to.GetWidth(), to.GetHeight(),
                                 {0, 0, to.GetWidth(), to.GetHeight()}, HALFTONE);
    return block && to.CopyFrom(*block) ? to.GetHeight() : 0;
}

HBITMAP CTovPainterDC::Read(CRect const& rect) {
    return HasDots() && rect.Width() > 0 && rect.Height() > 0 ? ReadDots(DotsOf(rect)) : nullptr;
}

int CTovPainterDC::BitBlt(int x, int y, int width, int height, CDC* source, int xSrc, int ySrc,
                          std::uint32_t operation) {
    auto const* const other = dynamic_cast<CTovPainterDC const*>(source);
    QImage const* const image =
        other != nullptr && other != this && other->HasDots() ? ImageUnder(*other->m_painter) : nullptr;
    if (image != nullptr && image != ImageUnder(*m_painter) && operation == SRCCOPY && HasDots() &&
        width > 0 && height > 0) {
        QRect const to = DotsOf(RectAt(x, y, width, height));
        QRect const from = other->DotsOf(RectAt(xSrc, ySrc, width, height));
        if (to.size() == from.size() && image->rect().contains(from) && !image->hasAlphaChannel()) {
            DrawDots(to, *image, from);
            return 1;
        }
    }
    return CDC::BitBlt(x, y, width, height, source, xSrc, ySrc, operation);
}

int CTovPainterDC::PatBlt(int x, int y, int width, int height, std::uint32_t operation) {
    if (!m_painter->isActive() || width <= 0 || height <= 0 || TovNeedsSource(operation)) return 0;
    CRect const rect = RectAt(x, y, width, height);
    if (operation == PATCOPY && GetBrush().halftone == 0) return FillSolidRect(rect, GetBrush().color);
    if (!HasDots()) return CDC::PatBlt(x, y, width, height, operation);
    QRect const seen = DotsOf(rect) & ClipInDots();
    return seen.isEmpty() || Combine(seen, nullptr, operation);
}

int CTovPainterDC::FillSolidRect(CRect const& rect, COLORREF color) {
    if (!m_painter->isActive() || rect.Width() <= 0 || rect.Height() <= 0) return 0;
    QRectF const area = HasDots() ? m_painter->deviceTransform().inverted().mapRect(QRectF(DotsOf(rect)))
                                  : QRectF(TovQRect(rect));
    m_painter->fillRect(area, TovQColor(color));
    return 1;
}

int CTovPainterDC::AlphaBlend(CRect const& to, CTovPixels const& block) {
    if (!m_painter->isActive() || to.Width() <= 0 || to.Height() <= 0) return 0;
    QImage image = ViewOf(block.GetBits(), TovHeaderOf(block), QImage::Format_ARGB32);
    if (!block.IsTopDown()) image = image.mirrored();
    if (HasDots() && DotsOf(to).size() == image.size()) {
        DrawDots(DotsOf(to), image, image.rect());
        return 1;
    }
    return DrawScaled(to, image, image.rect());
}

int CTovPainterDC::GetClipBox(CRect* box) const {
    if (box != nullptr) *box = {};
    if (!m_painter->isActive()) return 0;
    QPaintEngine const& engine = *m_painter->paintEngine();
    QPaintDevice const* const device = engine.paintDevice();
    if (device == nullptr || device->devType() == QInternal::Picture)
        return 0;                                // it grows with what is drawn
    QRegion const bounds = engine.systemClip();  // of a window, what is to be painted
    QRect whole(0, 0, device->width(), device->height());
    if (!bounds.isEmpty()) whole &= bounds.boundingRect();
    QRectF seen = m_painter->deviceTransform().inverted().mapRect(QRectF(whole));
    bool isSimple = bounds.rectCount() <= 1;
    if (m_painter->hasClipping()) {
        QRegion const clip = m_painter->clipRegion();
        seen &= clip.boundingRect();
        isSimple = isSimple && clip.rectCount() <= 1;
    }
    QRect const around = seen.toAlignedRect();
    if (around.isEmpty()) return NULLREGION;
    if (box != nullptr) *box = TovRect(around);
    return isSimple ? SIMPLEREGION : COMPLEXREGION;
}

int CTovPainterDC::IntersectClipRect(CRect const& rect) {
    if (!m_painter->isActive()) return 0;
    m_painter->setClipRect(TovQRect(rect), Qt::IntersectClip);
    return GetClipBox(nullptr);
}

int CTovPainterDC::SetClipRect(CRect const* rect) {
    if (!m_painter->isActive()) return 0;
    if (m_hasGivenClip)
        m_painter->setClipRegion(m_givenClip);
    else
        m_painter->setClipping(false);
    return rect != nullptr ? IntersectClipRect(*rect) : GetClipBox(nullptr);
}

int CTovPainterDC::HasAttributeDC() const {
    QPaintDevice const* const device = m_painter->device();
    return device != nullptr && (device->devType() == QInternal::Picture ||
                                 dynamic_cast<QPagedPaintDevice const*>(device) != nullptr);
}

double CTovPainterDC::GetPixelRatio() const {
    return HasDots() ? m_painter->deviceTransform().m11() : 1;
}

int CTovPainterDC::GetDeviceCaps(int index) const {
    QPaintDevice const* const device = m_painter->device();
    if (device == nullptr) return 0;
    switch (index) {
        case HORZRES:
            return device->width();
        case VERTRES:
            return device->height();
        case LOGPIXELSX:
            return device->logicalDpiX();
        case LOGPIXELSY:
            return device->logicalDpiY();
        default:
            return 0;
    }
}

CSize CTovPainterDC::GetTextExtent(char const* text) const {
    if (!m_painter->isActive()) return {};
    QFontMetrics const metrics(m_painter->font(), m_painter->device());
    return {metrics.horizontalAdvance(TovQString(text)), metrics.height()};
}

int CTovPainterDC::TextOut(int x, int y, char const* text) {
    if (!m_painter->isActive()) return 0;
    if (GetBkMode() == OPAQUE) {
        CSize const extent = GetTextExtent(text);
        FillSolidRect(RectAt(x, y, extent.cx, extent.cy), GetBkColor());
    }
    QPen const before = m_painter->pen();
    m_painter->setPen(TovQColor(GetTextColor()));
    QFontMetrics const metrics(m_painter->font(), m_painter->device());
    m_painter->drawText(QPoint(x, y + metrics.ascent()), TovQString(text));
    m_painter->setPen(before);
    return 1;
}

HFONT CTovPainterDC::SelectFont(HFONT font) {
    if (m_painter->isActive()) m_painter->setFont(font != nullptr ? TovQFont(font) : m_usualFont);
    return CDC::SelectFont(font);
}

}  // namespace tov
