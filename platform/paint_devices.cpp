// Devices of windows, and devices in memory like them.
#include "platform/paint_devices.h"

#include "platform/screen.h"

#include <tov310/painter_dc.h>
#include <tov310/qt_values.h>
#include <tov310/quick_draw.h>
#include <tov310/window_messages.h>
#include <tov310/wnd_on.h>

#include <QPaintEvent>

#include <cmath>
#include <utility>

namespace tov {
namespace {

struct ImageOfMemory {
    QImage image;
};

// The image outlives the painter on it.
class MemoryDC final : private ImageOfMemory, public CTovPainterDC {
 public:
    explicit MemoryDC(QImage made)
        : ImageOfMemory{std::move(made)}, CTovPainterDC(static_cast<QPaintDevice&>(image)) {}
    ~MemoryDC() override = default;
};

// Where a window paints itself.
QWidget* PaintedWidget(HWND window) {
    QWidget* const widget = TovWidget(window);
    auto* const area = qobject_cast<QAbstractScrollArea*>(widget);
    return area != nullptr ? area->viewport() : widget;
}

}  // namespace

std::unique_ptr<CDC> Screen::CreateMemoryDC(HWND window, CSize const& size) {
    QWidget const* const widget = PaintedWidget(window);
    if (widget == nullptr || size.cx <= 0 || size.cy <= 0) return nullptr;
    double const ratio = widget->devicePixelRatioF();
    auto const dots = [ratio](int pixels) { return static_cast<int>(std::ceil(pixels * ratio)); };
    QImage image(dots(size.cx), dots(size.cy), QImage::Format_RGB32);
    if (image.isNull()) return nullptr;
    image.setDevicePixelRatio(ratio);
    QPalette const& palette = widget->palette();
    image.fill(palette.color(widget->backgroundRole()));
    auto dc = std::make_unique<MemoryDC>(std::move(image));
    dc->SetBkColor(TovColorRef(palette.color(widget->backgroundRole())));
    dc->SetTextColor(TovColorRef(palette.color(widget->foregroundRole())));
    dc->SelectFont(TovFont(widget->font()));
    return dc;
}

std::unique_ptr<CDC> Screen::CreatePaintDC(HWND window, CRect* part) {
    if (part != nullptr) *part = {};
    QWidget* const widget = PaintedWidget(window);
    CWnd const* const told = CWnd::FromHandlePermanent(window);
    QEvent const* const event = told != nullptr ? TovEventOf(*told, WM_PAINT) : nullptr;
    if (widget == nullptr || event == nullptr || event->type() != QEvent::Paint) return nullptr;
    if (part != nullptr) *part = TovRect(static_cast<QPaintEvent const*>(event)->region().boundingRect());
    return std::make_unique<CTovPainterDC>(*widget);
}

HBITMAP Screen::GetPicture(HWND window) {
    QWidget* const widget = PaintedWidget(window);
    if (widget == nullptr || widget->size().isEmpty()) return nullptr;
    QImage image = widget->grab().toImage().convertToFormat(QImage::Format_RGB32);
    image.setDevicePixelRatio(1);
    CTovPainterDC dc(static_cast<QPaintDevice&>(image));
    return dc.Read({0, 0, image.width(), image.height()});
}

void CopyPainted(CWnd const& window, CDC& to) {
    CPaintDC const paint(window);
    CRect const& part = paint.GetPaintRect();
    to.BitBlt(part.left, part.top, part.Width(), part.Height(), paint.GetDC(), part.left, part.top, SRCCOPY);
}

}  // namespace tov
