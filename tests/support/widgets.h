// What tests of widgets need. Mouse clicks go through the window, as a user's do.
#pragma once

#define QTEST_QPA_MOUSE_HANDLING

#include <QTest>
#include <QtWidgets>

namespace tov::test {

inline bool Activate(QWidget& window) {
    window.show();
    window.activateWindow();
    return QTest::qWaitForWindowActive(&window) && QTest::qWaitForWindowExposed(&window);
}

// From the screen, on whatever thread; nobody hears of it before the events are pumped.
inline void Mouse(QWidget const& widget, QEvent::Type type, Qt::MouseButtons buttons) {
    QPoint const middle = widget.rect().center();
    qt_handleMouseEvent(widget.window()->windowHandle(), widget.mapTo(widget.window(), middle),
                        widget.mapToGlobal(middle), buttons, Qt::LeftButton, type, {}, 0);
}
inline void Press(QWidget const& widget) {
    Mouse(widget, QEvent::MouseButtonPress, Qt::LeftButton);
}
inline void Release(QWidget const& widget) {
    Mouse(widget, QEvent::MouseButtonRelease, {});
}

// In its middle, unless another place is told.
inline void ClickOn(QWidget const& widget, QPoint place = {}, Qt::MouseButton button = Qt::LeftButton) {
    if (place.isNull()) place = widget.rect().center();
    QTest::mouseClick(widget.window()->windowHandle(), button, {}, widget.mapTo(widget.window(), place));
}

inline void Wheel(QWidget& widget, int delta) {
    QWidget& window = *widget.window();
    QPointF const place = widget.mapTo(&window, widget.rect().center());
    QWheelEvent event(place, window.mapToGlobal(place), {}, {0, delta}, {}, {}, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(window.windowHandle(), &event);
}

// As an input method does.
inline void Commit(QWidget& widget, char const* text) {
    QInputMethodEvent commit;
    commit.setCommitString(QString::fromUtf8(text));
    QCoreApplication::sendEvent(&widget, &commit);
}

}  // namespace tov::test
