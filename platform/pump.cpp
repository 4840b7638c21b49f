#include "platform/pump.h"

#include <tov310/window.h>
#include <tov310/wnd_on.h>

#include <QApplication>
#include <QEvent>
#include <QMouseEvent>
#include <QPointerEvent>
#include <QWheelEvent>
#include <QWidget>
#include <QWindow>

#include <utility>

namespace tov {
namespace {

QEvent::Type ReleaseType() {
    static auto const type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
}

// What the user does, as it comes from the screen to a top-level window, and what the toolkit makes of it
// without asking that window. Everything else follows from these.
bool IsHoldable(QObject const& receiver, QEvent::Type type) {
    switch (type) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::Wheel:
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
        case QEvent::TouchCancel:
        case QEvent::TabletPress:
        case QEvent::TabletMove:
        case QEvent::TabletRelease:
        case QEvent::NativeGesture:
        case QEvent::Enter:
        case QEvent::Leave:
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::ContextMenu:
        case QEvent::DragEnter:
        case QEvent::DragMove:
        case QEvent::DragLeave:
        case QEvent::Drop:
        case QEvent::Close:
        case QEvent::Expose:
            return receiver.isWindowType();
        case QEvent::FocusIn:
        case QEvent::FocusOut:
        case QEvent::WindowActivate:
        case QEvent::WindowDeactivate:
        case QEvent::InputMethod:
        case QEvent::UpdateRequest:
            return receiver.isWidgetType();
        case QEvent::Shortcut:
            return true;  // goes to buttons, labels and commands
        default:
            return false;
    }
}

// What is dragged here is gone by the time when it could be taken.
bool IsDrag(QEvent::Type type) {
    return type == QEvent::DragEnter || type == QEvent::DragMove || type == QEvent::DragLeave ||
           type == QEvent::Drop;
}

bool IsIn(QWidget const& widget, QWidget const* other) {
    return other == &widget || (other != nullptr && widget.isAncestorOf(other));
}

// Makes the event again when its turn has come. Until then only its values are kept: the points of an event,
// copied or not, are the device's and go on with it.
std::function<std::unique_ptr<QEvent>()> Maker(QEvent const& event) {
    if (auto const* const mouse = dynamic_cast<QMouseEvent const*>(&event)) {
        return [type = mouse->type(), local = mouse->position(), scene = mouse->scenePosition(),
                global = mouse->globalPosition(), button = mouse->button(), buttons = mouse->buttons(),
                modifiers = mouse->modifiers(), device = mouse->pointingDevice()] {
            return std::make_unique<QMouseEvent>(type, local, scene, global, button, buttons, modifiers,
                                                 device);
        };
    }
    if (auto const* const wheel = dynamic_cast<QWheelEvent const*>(&event)) {
        return [local = wheel->position(), global = wheel->globalPosition(), pixels = wheel->pixelDelta(),
                angle = wheel->angleDelta(), buttons = wheel->buttons(), modifiers = wheel->modifiers(),
                phase = wheel->phase(), inverted = wheel->inverted(), source = wheel->source(),
                device = wheel->pointingDevice()] {
            return std::make_unique<QWheelEvent>(local, global, pixels, angle, buttons, modifiers, phase,
                                                 inverted, source, device);
        };
    }
    if (auto const* const pen = dynamic_cast<QTabletEvent const*>(&event)) {
        return [type = pen->type(), device = pen->pointingDevice(), place = pen->position(),
                global = pen->globalPosition(), pressure = pen->pressure(),
                tilt = std::pair(static_cast<float>(pen->xTilt()), static_cast<float>(pen->yTilt())),
                tangential = static_cast<float>(pen->tangentialPressure()), rotation = pen->rotation(),
                z = static_cast<float>(pen->z()), modifiers = pen->modifiers(), button = pen->button(),
                buttons = pen->buttons()] {
            return std::make_unique<QTabletEvent>(type, device, place, global, pressure, tilt.first,
                                                  tilt.second, tangential, rotation, z, modifiers, button,
                                                  buttons);
        };
    }
    if (auto const* const gesture = dynamic_cast<QNativeGestureEvent const*>(&event)) {
        return
            [type = gesture->gestureType(), device = gesture->pointingDevice(),
             fingers = gesture->fingerCount(), local = gesture->position(), scene = gesture->scenePosition(),
             global = gesture->globalPosition(), value = gesture->value(), delta = gesture->delta()] {
                return std::make_unique<QNativeGestureEvent>(type, device, fingers, local, scene, global,
                                                             value, delta);
            };
    }
    if (auto const* const enter = dynamic_cast<QEnterEvent const*>(&event)) {
        return [local = enter->position(), scene = enter->scenePosition(), global = enter->globalPosition(),
                device = enter->pointingDevice()] {
            return std::make_unique<QEnterEvent>(local, scene, global, device);
        };
    }
    return [copy = std::shared_ptr<QEvent>(event.clone())] { return std::unique_ptr<QEvent>(copy->clone()); };
}

// Whether an event that nobody waits to see accepted has the points of its device.
bool SharesPoints(QEvent::Type type) {
    switch (type) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::Wheel:
        case QEvent::Enter:
            return true;
        default:
            return false;
    }
}

bool IsTouch(QEvent::Type type) {
    return type == QEvent::TouchBegin || type == QEvent::TouchUpdate || type == QEvent::TouchEnd;
}

bool IsPen(QEvent::Type type) {
    return type == QEvent::TabletPress || type == QEvent::TabletMove || type == QEvent::TabletRelease;
}

// Whether something goes down while nothing else of the same is down.
bool BeginsPress(QEvent const& event) {
    if (event.type() == QEvent::TouchBegin) return true;
    bool const isPress = event.type() == QEvent::MouseButtonPress ||
                         event.type() == QEvent::MouseButtonDblClick || event.type() == QEvent::TabletPress;
    if (!isPress) return false;
    auto const& pointer = static_cast<QSinglePointEvent const&>(event);
    return pointer.buttons() == pointer.button();
}

QWidget const* NearestWidget(QObject const* object) {
    while (object != nullptr && !object->isWidgetType())
        object = object->parent();
    return static_cast<QWidget const*>(object);
}

}  // namespace

void WindowPump::Pump(HWND window) {
    QWidget* const widget = TovIsUserInterfaceThread() ? TovWidget(window) : nullptr;
    if (widget == nullptr) return;
    if (!IsFiltering()) QCoreApplication::instance()->installEventFilter(this);
    bool const isOutermost = !std::exchange(m_isPumping, true);
    QPointer<QWidget> const around = std::exchange(m_pumped, widget);
    {
        CTovPostHold const hold;
        constexpr int longest = 20;  // milliseconds, should somebody flood the loop
        QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers | QEventLoop::X11ExcludeTimers,
                                        longest);
    }
    m_pumped = around;
    if (!isOutermost) return;
    m_isPumping = false;
    if (!m_held.empty()) ReleaseSoon();
    EndFiltering();
}

bool WindowPump::eventFilter(QObject* receiver, QEvent* event) {
    if (event == m_released || !IsHoldable(*receiver, event->type())) return false;
    if (!m_isPumping) {
        // The main loop has its turn, and this comes after what was held.
        QPointer<QObject> const alive(receiver);
        if (!m_held.empty() && receiver->isWindowType()) {
            // Made anew, what was held moves the points of its device, and this event would move with them.
            bool const isLast = SharesPoints(event->type());
            if (isLast) Hold(*receiver, *event);
            Release();
            if (isLast) return true;
        }
        return !alive || (m_isPenMouse && IsPen(event->type()) && TakeAsMouse(*receiver, *event));
    }
    if (IsOfPumped(*receiver, *event)) return false;
    if (IsDrag(event->type()))
        event->ignore();
    else if ((!IsTouch(event->type()) && !IsPen(event->type())) || !TakeAsMouse(*receiver, *event))
        Hold(*receiver, *event);
    return true;
}

bool WindowPump::event(QEvent* event) {
    if (event->type() != ReleaseType()) return QObject::event(event);
    m_isReleaseQueued = false;
    if (!m_isPumping) Release();  // otherwise the end of the pump asks for it again
    return true;
}

bool WindowPump::IsOfPumped(QObject const& receiver, QEvent const& event) {
    if (m_pumped == nullptr) return false;  // it has died while it was pumped
    QWidget const& top = *m_pumped->window();
    if (!receiver.isWindowType()) {
        QWidget const* const widget = NearestWidget(&receiver);
        return widget != nullptr && widget->window() == &top;
    }
    QEvent::Type const type = event.type();
    auto const& window = static_cast<QWindow const&>(receiver);
    bool const isTop = &window == top.windowHandle();
    if (type == QEvent::TouchCancel) return true;  // later nobody could tell whose fingers they were
    if (type == QEvent::Expose || type == QEvent::Enter || type == QEvent::Leave) return isTop;
    if (event.isPointerEvent()) return IsPointerOfPumped(window, event);
    if (!isTop || m_pumped->isWindow()) return isTop;
    bool const isKey = type == QEvent::KeyPress || type == QEvent::KeyRelease;
    return isKey && IsIn(*m_pumped, QApplication::focusWidget());
}

bool WindowPump::IsPointerOfPumped(QWindow const& receiver, QEvent const& event) {
    QWidget const& top = *m_pumped->window();
    auto const& pointer = static_cast<QPointerEvent const&>(event);
    Pointer whose = m_pointer;
    if (whose == Pointer::kNobodys || BeginsPress(event)) {
        bool const isThere = &receiver == top.windowHandle() && pointer.pointCount() > 0 &&
                             (m_pumped->isWindow() ||
                              IsIn(*m_pumped, top.childAt(pointer.points().first().position().toPoint())));
        whose = isThere ? Pointer::kPumped : Pointer::kOthers;
    }
    bool const isDown = event.isSinglePointEvent()
                            ? static_cast<QSinglePointEvent const&>(event).buttons() != Qt::NoButton
                            : IsTouch(event.type());  // a mouse that follows a finger goes up behind it
    m_pointer = isDown ? whose : Pointer::kNobodys;
    return whose == Pointer::kPumped;
}

// Refused, fingers and pens come again as the mouse, which can be kept. What had them before must not miss
// that they went up: the points that did so change no more. Answers whether nothing of the event is to be
// kept as it is.
bool WindowPump::TakeAsMouse(QObject& receiver, QEvent& event) {
    event.ignore();
    if (IsPen(event.type())) {
        if (event.type() == QEvent::TabletPress) m_isPenMouse = true;
        bool const isMouse = m_isPenMouse || event.type() == QEvent::TabletMove;
        if (event.type() == QEvent::TabletRelease) m_isPenMouse = false;
        EndFiltering();
        return isMouse;
    }
    auto const& touch = static_cast<QTouchEvent const&>(event);
    QList<QEventPoint> up;
    for (QEventPoint const& point : touch.points())
        if (point.state() == QEventPoint::Released) up.push_back(point);
    if (up.isEmpty()) return true;
    m_held.push_back(
        {&receiver, QEvent::TouchEnd, [up, device = touch.pointingDevice(), modifiers = touch.modifiers()] {
             return std::make_unique<QTouchEvent>(QEvent::TouchEnd, device, modifiers, up);
         }});
    return true;
}

bool WindowPump::IsFiltering() const {
    return m_isPumping || m_isPenMouse || !m_held.empty();
}

void WindowPump::EndFiltering() {
    if (!IsFiltering()) QCoreApplication::instance()->removeEventFilter(this);
}

void WindowPump::Hold(QObject& receiver, QEvent const& event) {
    // Of the ways of the mouse the ends are enough.
    if (event.type() == QEvent::MouseMove && !m_held.empty() && m_held.back().receiver == &receiver &&
        m_held.back().type == QEvent::MouseMove)
        m_held.pop_back();
    m_held.push_back({&receiver, event.type(), Maker(event)});
}

void WindowPump::ReleaseSoon() {
    if (std::exchange(m_isReleaseQueued, true)) return;
    QCoreApplication::postEvent(this, std::make_unique<QEvent>(ReleaseType()).release(),
                                Qt::HighEventPriority);
}

void WindowPump::Release() {
    // One by one: a handler may begin to pump, or to run a loop that goes on here.
    while (!m_isPumping && !m_held.empty()) {
        Held const next = std::move(m_held.front());
        m_held.pop_front();
        if (!m_held.empty()) ReleaseSoon();
        EndFiltering();
        if (next.receiver == nullptr) continue;
        std::unique_ptr<QEvent> const event = next.make();
        QEvent const* const around = std::exchange(m_released, event.get());
        QCoreApplication::sendEvent(next.receiver, event.get());
        m_released = around;
    }
    m_pointer = Pointer::kNobodys;
}

}  // namespace tov
