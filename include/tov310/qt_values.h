// The library's plain values as Qt's, and back.
#pragma once

#include <tov310/geometry.h>
#include <tov310/pixels.h>
#include <tov310/types.h>

#include <QColor>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>

namespace tov {

inline QString TovQString(CString const& text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
inline QString TovQString(char const* text) {
    return QString::fromUtf8(text);  // null is an empty text
}
inline CString TovText(QString const& text) {
    return text.toStdString();
}

// Opaque; 0x00BBGGRR.
inline COLORREF TovColorRef(QColor const& color) {
    QColor const rgb = color.toRgb();
    auto const part = [](int value) { return static_cast<COLORREF>(value); };
    return part(rgb.blue()) << 16 | part(rgb.green()) << 8 | part(rgb.red());
}
inline QColor TovQColor(COLORREF color) {
    auto const part = [color](int shift) { return static_cast<int>(color >> shift & 0xFF); };
    return {part(0), part(8), part(16)};
}

// The right and the bottom side do not belong to either; an empty one of Qt has no corner there.
inline QRect TovQRect(CRect const& rect) {
    return {rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top};
}
inline CRect TovRect(QRect const& rect) {
    return {rect.x(), rect.y(), rect.x() + rect.width(), rect.y() + rect.height()};
}
inline QPoint TovQPoint(CPoint const& point) {
    return {point.x, point.y};
}
inline CPoint TovPoint(QPoint const& point) {
    return {point.x(), point.y()};
}
inline QSize TovQSize(CSize const& size) {
    return {size.cx, size.cy};
}
inline CSize TovSize(QSize const& size) {
    return {size.width(), size.height()};
}

}  // namespace tov
