// Deals with the events of one window while all others wait.
#pragma once

#include <tov310/pump.h>

#include <QEvent>
#include <QObject>
#include <QPointer>

#include <deque>
#include <functional>
#include <memory>

class QWidget;
class QWindow;

namespace tov {

class WindowPump final : public QObject, public ITovPump {
 public:
    ~WindowPump() override = default;

    void Pump(HWND window) override;

    bool eventFilter(QObject* receiver, QEvent* event) override;

 protected:
    bool event(QEvent* event) override;

 private:
    struct Held {
        QPointer<QObject> receiver;
        QEvent::Type type;
        std::function<std::unique_ptr<QEvent>()> make;
    };

    // Whose the mouse is from the first button that goes down to the last that comes up, or a touch.
    enum class Pointer { kNobodys, kPumped, kOthers };

    bool IsOfPumped(QObject const& receiver, QEvent const& event);
    bool IsPointerOfPumped(QWindow const& receiver, QEvent const& event);
    bool TakeAsMouse(QObject& receiver, QEvent& event);
    bool IsFiltering() const;
    void EndFiltering();
    void Hold(QObject& receiver, QEvent const& event);
    void ReleaseSoon();
    void Release();

    bool m_isPumping = false;
    QPointer<QWidget> m_pumped;  // null between pumps, and once it is dead
    Pointer m_pointer = Pointer::kNobodys;
    bool m_isPenMouse = false;  // while a pen is down that comes as the mouse
    std::deque<Held> m_held;
    QEvent const* m_released = nullptr;  // on its way to its receiver
    bool m_isReleaseQueued = false;
};

}  // namespace tov
