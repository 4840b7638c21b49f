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
    return [copy = std::shared_ptr<QEvent>(event.clone())] { return std::unique_ptr<QEvent>(copy->clone()); };
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
    bool const isOutermost = !std::exchange(m_isPumping, true);
    if (isOutermost && m_held.empty()) QCoreApplication::instance()->installEventFilter(this);
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
    if (m_held.empty())
        QCoreApplication::instance()->removeEventFilter(this);
    else
        ReleaseSoon();
}

bool WindowPump::eventFilter(QObject* receiver, QEvent* event) {
    if (event == m_released || !IsHoldable(*receiver, event->type())) return false;
    if (!m_isPumping) {
        // The main loop has its turn, and this comes after what was held.
        if (receiver->isWindowType()) Release();
        return false;
    }
    if (IsOfPumped(*receiver, *event)) return false;
    if (IsDrag(event->type()))
        event->ignore();
    else
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
    if (whose == Pointer::kNobodys) {
        bool const isThere = &receiver == top.windowHandle() && pointer.pointCount() > 0 &&
                             (m_pumped->isWindow() ||
                              IsIn(*m_pumped, top.childAt(pointer.points().first().position().toPoint())));
        whose = isThere ? Pointer::kPumped : Pointer::kOthers;
    }
    bool const isDown = event.isSinglePointEvent()
                            ? static_cast<QSinglePointEvent const&>(event).buttons() != Qt::NoButton
                            : event.type() == QEvent::TouchBegin || event.type() == QEvent::TouchUpdate;
    m_pointer = isDown ? whose : Pointer::kNobodys;
    return whose == Pointer::kPumped;
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
        if (m_held.empty())
            QCoreApplication::instance()->removeEventFilter(this);
        else
            ReleaseSoon();
        if (next.receiver == nullptr) continue;
        std::unique_ptr<QEvent> const event = next.make();
        QEvent const* const around = std::exchange(m_released, event.get());
        QCoreApplication::sendEvent(next.receiver, event.get());
        m_released = around;
    }
    m_pointer = Pointer::kNobodys;
}

}  // namespace tov
