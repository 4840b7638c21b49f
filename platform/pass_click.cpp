#include "platform/pass_click.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

namespace tov {
namespace {

bool IsBehindDialog(QWidget const& top) {
    QWidget const* const modal = QApplication::activeModalWidget();
    if (modal == nullptr) return false;
    auto const stands = [](QWidget const* widget, QWidget const& in) {
        while (widget != nullptr && widget != &in)
            widget = widget->parentWidget();
        return widget != nullptr;
    };
    if (modal->windowModality() == Qt::ApplicationModal) return !stands(&top, *modal);
    return modal != &top && stands(modal, top);
}

}  // namespace

void PassPressOn(QMouseEvent const& press) {
    QPoint const place = press.globalPosition().toPoint();
    QWidget* const top = QApplication::topLevelAt(place);
    if (top == nullptr || top->windowHandle() == nullptr || IsBehindDialog(*top)) return;
    if (!top->isActiveWindow() && (top->windowFlags() & Qt::ToolTip) != Qt::ToolTip) top->activateWindow();
    QMouseEvent passed(QEvent::MouseButtonPress, top->mapFromGlobal(press.globalPosition()),
                       press.globalPosition(), press.button(), press.buttons(), press.modifiers(),
                       press.pointingDevice());
    QCoreApplication::sendEvent(top->windowHandle(), &passed);
}

}  // namespace tov
