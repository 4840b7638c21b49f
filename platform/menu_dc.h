// What entries of menus are drawn on.
#pragma once

#include <tov310/device_context.h>

#include <QPainter>

namespace tov {

// Borrows the painter.
class MenuDc final : public CDC {
 public:
    explicit MenuDc(QPainter& painter) : m_painter(painter) {}

    QPainter& Painter() const { return m_painter; }

 private:
    QPainter& m_painter;
};

}  // namespace tov
