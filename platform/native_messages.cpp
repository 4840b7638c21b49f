#include "platform/native_messages.h"

#include "platform/window_registry.h"

#include <tov310/window_messages.h>

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMoveEvent>
#include <QResizeEvent>
#include <QWheelEvent>

#include <utility>

namespace tov {
namespace {

bool HappensOnViewport(QEvent::Type type) {
    switch (type) {
        case QEvent::Paint:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::Wheel:
        case QEvent::Leave:
        case QEvent::Resize:
            return true;
        default:
            return false;
    }
}

WPARAM KeysOf(Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers) {
    WPARAM keys = 0;
    if (buttons & Qt::LeftButton) keys |= MK_LBUTTON;
    if (buttons & Qt::RightButton) keys |= MK_RBUTTON;
    if (buttons & Qt::MiddleButton) keys |= MK_MBUTTON;
    if (modifiers & Qt::ShiftModifier) keys |= MK_SHIFT;
    if (modifiers & Qt::ControlModifier) keys |= MK_CONTROL;
    return keys;
}

CPoint PointOf(QPointF const& point) {
    QPoint const whole = point.toPoint();
    return {whole.x(), whole.y()};
}

std::optional<NativeMessage> MouseMessage(QMouseEvent const& event) {
    int action = 0;  // press, release and double click stand in this order
    switch (event.type()) {
        case QEvent::MouseButtonPress:
            break;
        case QEvent::MouseButtonRelease:
            action = 1;
            break;
        case QEvent::MouseButtonDblClick:
            action = 2;
            break;
        default:
            return NativeMessage{WM_MOUSEMOVE, KeysOf(event.buttons(), event.modifiers()),
                                 TovPackPoint(PointOf(event.position()))};
    }
    unsigned first = WM_LBUTTONDOWN;
    if (event.button() == Qt::RightButton)
        first = WM_RBUTTONDOWN;
    else if (event.button() == Qt::MiddleButton)
        first = WM_MBUTTONDOWN;
    else if (event.button() != Qt::LeftButton)
        return std::nullopt;
    return NativeMessage{first + static_cast<unsigned>(action), KeysOf(event.buttons(), event.modifiers()),
                         TovPackPoint(PointOf(event.position()))};
}

NativeMessage WheelMessage(QWheelEvent const& event) {
    auto const notches = static_cast<WPARAM>(static_cast<std::uint32_t>(event.angleDelta().y()));
    return {WM_MOUSEWHEEL, KeysOf(event.buttons(), event.modifiers()) | notches << 16,
            TovPackPoint(PointOf(event.position()))};
}

NativeMessage SizeMessage(QWidget const& widget, QResizeEvent const& event) {
    WPARAM kind = SIZE_RESTORED;
    if (widget.isWindow() && widget.isMinimized())
        kind = SIZE_MINIMIZED;
    else if (widget.isWindow() && widget.isMaximized())
        kind = SIZE_MAXIMIZED;
    return {WM_SIZE, kind, TovPackPoint({event.size().width(), event.size().height()})};
}

HWND WindowWithFocus() {
    CWnd const* const window = WindowRegistry::Instance().Nearest(QApplication::focusWidget());
    return window != nullptr ? window->GetSafeHwnd() : HWND{};
}

}  // namespace

int VirtualKeyOf(int qtKey, bool onKeypad) {
    if (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9)
        return onKeypad ? VK_NUMPAD0 + (qtKey - Qt::Key_0) : '0' + (qtKey - Qt::Key_0);
    if (qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z) return 'A' + (qtKey - Qt::Key_A);
    if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F24) return VK_F1 + (qtKey - Qt::Key_F1);
    static constexpr std::pair<int, int> keys[] = {
        {Qt::Key_Backspace, VK_BACK},  {Qt::Key_Tab, VK_TAB},
        {Qt::Key_Backtab, VK_TAB},     {Qt::Key_Return, VK_RETURN},
        {Qt::Key_Enter, VK_RETURN},    {Qt::Key_Shift, VK_SHIFT},
        {Qt::Key_Control, VK_CONTROL}, {Qt::Key_Alt, VK_MENU},
        {Qt::Key_Escape, VK_ESCAPE},   {Qt::Key_Space, VK_SPACE},
        {Qt::Key_PageUp, VK_PRIOR},    {Qt::Key_PageDown, VK_NEXT},
        {Qt::Key_End, VK_END},         {Qt::Key_Home, VK_HOME},
        {Qt::Key_Left, VK_LEFT},       {Qt::Key_Up, VK_UP},
        {Qt::Key_Right, VK_RIGHT},     {Qt::Key_Down, VK_DOWN},
        {Qt::Key_Insert, VK_INSERT},   {Qt::Key_Delete, VK_DELETE},
        {Qt::Key_Menu, VK_APPS},       {Qt::Key_Asterisk, VK_MULTIPLY},
        {Qt::Key_Plus, VK_ADD},        {Qt::Key_Minus, VK_SUBTRACT},
        {Qt::Key_Slash, VK_DIVIDE},    {Qt::Key_Period, VK_DECIMAL},
        {Qt::Key_Comma, VK_DECIMAL}};
    for (auto const& [key, virtualKey] : keys) {
        if (key != qtKey) continue;
        bool const isOfKeypad = virtualKey >= VK_MULTIPLY && virtualKey <= VK_DIVIDE;
        return isOfKeypad && !onKeypad ? 0 : virtualKey;
    }
    return 0;
}

std::optional<NativeMessage> MessageOf(QWidget const& widget, bool ofViewport, QEvent const& event) {
    QEvent::Type const type = event.type();
    bool const isArea = ofViewport || qobject_cast<QAbstractScrollArea const*>(&widget) != nullptr;
    // The menu is asked for with the mouse on the viewport, from the keyboard on the area.
    bool const onViewport =
        type == QEvent::ContextMenu
            ? static_cast<QContextMenuEvent const&>(event).reason() != QContextMenuEvent::Keyboard
            : HappensOnViewport(type);
    if (isArea && onViewport != ofViewport) return std::nullopt;
    switch (type) {
        case QEvent::Move: {
            QPoint const place = static_cast<QMoveEvent const&>(event).pos();
            return NativeMessage{WM_MOVE, 0, TovPackPoint({place.x(), place.y()})};
        }
        case QEvent::Resize:
            return SizeMessage(widget, static_cast<QResizeEvent const&>(event));
        case QEvent::WindowActivate:
        case QEvent::WindowDeactivate:
            if (!widget.isWindow()) return std::nullopt;
            return NativeMessage{WM_ACTIVATE, type == QEvent::WindowActivate, 0};
        case QEvent::FocusIn:
            return NativeMessage{WM_SETFOCUS, 0, 0};
        case QEvent::FocusOut:
            return NativeMessage{WM_KILLFOCUS, WindowWithFocus().id, 0};
        case QEvent::EnabledChange:
            return NativeMessage{WM_ENABLE, widget.isEnabled(), 0};
        case QEvent::PaletteChange:
        case QEvent::StyleChange:
            return NativeMessage{WM_SYSCOLORCHANGE, 0, 0};
        case QEvent::FontChange:
            return NativeMessage{WM_FONTCHANGE, 0, 0};
        case QEvent::Show:
        case QEvent::Hide:
            return NativeMessage{WM_SHOWWINDOW, type == QEvent::Show, 0};
        case QEvent::Leave:
            return NativeMessage{WM_MOUSELEAVE, 0, 0};
        case QEvent::Close:
            return NativeMessage{WM_CLOSE, 0, 0};
        case QEvent::Paint:
            return NativeMessage{WM_PAINT, 0, 0};
        case QEvent::ContextMenu: {
            auto const& menu = static_cast<QContextMenuEvent const&>(event);
            CPoint const place = menu.reason() == QContextMenuEvent::Keyboard
                                     ? CPoint{-1, -1}
                                     : CPoint{menu.globalX(), menu.globalY()};
            return NativeMessage{WM_CONTEXTMENU, 0, TovPackPoint(place)};
        }
        case QEvent::KeyPress:
        case QEvent::KeyRelease: {
            auto const& key = static_cast<QKeyEvent const&>(event);
            int const number = VirtualKeyOf(key.key(), key.modifiers().testFlag(Qt::KeypadModifier));
            return NativeMessage{type == QEvent::KeyPress ? WM_KEYDOWN : WM_KEYUP,
                                 static_cast<WPARAM>(number), 0};
        }
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
            return MouseMessage(static_cast<QMouseEvent const&>(event));
        case QEvent::Wheel:
            if (static_cast<QWheelEvent const&>(event).angleDelta().y() == 0) return std::nullopt;
            return WheelMessage(static_cast<QWheelEvent const&>(event));
        default:
            return std::nullopt;
    }
}

}  // namespace tov
