#include "platform/event_routing.h"

#include "platform/control_notices.h"
#include "platform/focus_guard.h"
#include "platform/keys_down.h"
#include "platform/native_messages.h"
#include "platform/window_registry.h"

#include <tov310/hooks.h>
#include <tov310/messages.h>

#include <QKeyEvent>
#include <QLabel>

#include <utility>

namespace tov {
namespace {

// Opens what the class keeps to itself and its heirs.
struct AreaHandlers : QAbstractScrollArea {
    static constexpr auto OnViewport = &AreaHandlers::viewportEvent;
};

// Runs the handlers of a widget that is not the library's.
bool RunForeign(QWidget& widget, QEvent& event, bool ofViewport) {
    if (!ofViewport) return static_cast<QObject&>(widget).event(&event);
    auto& area = static_cast<QAbstractScrollArea&>(widget);
    return (area.*AreaHandlers::OnViewport)(&event) || static_cast<QObject*>(area.viewport())->event(&event);
}

// A message on its way that tells of an event.
class EventCall {
 public:
    EventCall(CWnd& window, QWidget& widget, unsigned message, QEvent& event, bool ofViewport,
              detail::NativeHandler native)
        : m_window(&window),
          m_widget(widget),
          m_message(message),
          m_event(event),
          m_ofViewport(ofViewport),
          m_native(native),
          m_outer(innermost) {
        innermost = this;
    }
    EventCall(EventCall const&) = delete;
    EventCall& operator=(EventCall const&) = delete;
    ~EventCall() { innermost = m_outer; }

    static EventCall* Of(CWnd const& window, unsigned message) {
        for (EventCall* call = innermost; call != nullptr; call = call->m_outer) {
            if (call->m_window == &window && call->m_message == message) return call;
        }
        return nullptr;
    }

    static bool IsUnderWay(unsigned message) {
        EventCall const* call = innermost;
        while (call != nullptr && call->m_message != message)
            call = call->m_outer;
        return call != nullptr;
    }

    static void Forget(CWnd const& window) {
        for (EventCall* call = innermost; call != nullptr; call = call->m_outer) {
            if (call->m_window == &window) call->m_window = nullptr;
        }
    }

    // The window has passed the message on. It does so once; what comes later is no longer this event.
    void Pass() {
        if (m_passed) return;
        m_passed = true;
        bool const isForeign = m_native == nullptr;
        if (!isForeign)
            m_handled = m_native(m_widget, m_event);
        else if (EndsWithClose() || CTovSubclassWnd::HasHookThatRunsAfter(m_window->GetSafeHwnd()) != 0)
            m_handled = RunForeign(m_widget, m_event, m_ofViewport);
        else
            return;
        m_ran = true;
    }

    // The window dies of it, and is to hear of that while all in it are whole.
    bool EndsWithClose() const {
        return m_event.type() == QEvent::Close && m_widget.testAttribute(Qt::WA_DeleteOnClose);
    }

    bool IsGone() const { return m_window == nullptr; }
    bool Passed() const { return m_passed; }
    bool Ran() const { return m_ran; }
    bool Handled() const { return m_handled; }
    QEvent& Event() const { return m_event; }

 private:
    static constinit inline EventCall* innermost = nullptr;  // of the user-interface thread

    CWnd* m_window;  // null once it is gone
    QWidget& m_widget;
    unsigned m_message;
    QEvent& m_event;
    bool m_ofViewport;
    detail::NativeHandler m_native;  // null for a widget that is not the library's
    bool m_passed = false;
    bool m_ran = false;
    bool m_handled = false;
    EventCall* m_outer;
};

// What does not happen since somebody swallowed it.
void Swallow(QEvent& event) {
    // A window that does not close ignores its event; everything else must not go on to the widgets around.
    event.setAccepted(event.type() != QEvent::Close);
}

// The window whose closing is no question any more.
constinit CWnd const* closing = nullptr;

bool IsAsked(CWnd const& window, QEvent const& event) {
    return event.type() == QEvent::Close && std::exchange(closing, nullptr) == &window;
}

constexpr char const* tellsProperty = "tovTells";

// What is not told by a message but must be seen in passing. True: it goes no further.
bool LookAt(CWnd& window, QWidget& widget, QEvent& event) {
    switch (event.type()) {
        case QEvent::Polish:
            GiveBirth(window, widget);
            return false;
        case QEvent::Show:
        case QEvent::WinIdChange:
            if (event.type() == QEvent::Show) GiveBirth(window, widget);
            GuardTopLevelOf(widget);
            return false;
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
            NoteKey(static_cast<QKeyEvent const&>(event));
            return false;
        case QEvent::FocusIn:
            return IsGuardingFocus(widget);
        case QEvent::FocusOut:
            return RefuseFocusOut(widget, static_cast<QFocusEvent const&>(event));
        case QEvent::Shortcut:
            // A mnemonic presses a button or turns a page without moving the focus. A label hands it on to
            // its buddy, whose turn comes then.
            return qobject_cast<QLabel*>(&widget) == nullptr && !MayBeReached(window, 0);
        default:
            return false;
    }
}

}  // namespace

void GiveBirth(CWnd& window, QWidget& widget) {
    if (window.GetSafeHwnd()) return;
    // Connected now and not before, so that the widget's own class has heard of a change when the window
    // around is told of it.
    if (!widget.property(tellsProperty).toBool()) ConnectNotices(widget, window);
    widget.setProperty(tellsProperty, true);
    WindowRegistry::Instance().NoteBirth(widget);
    TovWindowLife::Begin(window);
    if (widget.isVisible()) GuardTopLevelOf(widget);
}

bool IsPainting() {
    return EventCall::IsUnderWay(WM_PAINT);
}

bool PassEvent(CWnd const& window, unsigned message) {
    EventCall* const call = EventCall::Of(window, message);
    if (call == nullptr) return false;
    call->Pass();
    return true;
}

void CloseAsked(CWnd const& window, QWidget& widget) {
    closing = &window;
    widget.close();
    closing = nullptr;
}

void ForgetCalls(CWnd const& window) {
    EventCall::Forget(window);
}

bool FilterEvent(CWnd& window, QWidget& widget, QObject& receiver, QEvent& event) {
    bool const ofViewport = &receiver != &widget;
    if (LookAt(window, widget, event)) return true;
    HWND const self = window.GetSafeHwnd();
    if (!self || IsAsked(window, event)) return false;
    std::optional<NativeMessage> const native = MessageOf(widget, ofViewport, event);
    if (!native) return false;
    EventCall call(window, widget, native->message, event, ofViewport, nullptr);
    QPointer<QWidget> const alive(&widget);
    QPointer<QObject> const stillReceives(&receiver);
    TovSendMessage(self, native->message, native->wParam, native->lParam);
    if (!alive || !stillReceives) return true;
    if (call.Ran() && call.EndsWithClose() && event.isAccepted() && IsWindow(self)) window.DestroyWindow();
    if (call.Ran()) return true;
    if (call.Passed() || !IsWindow(self)) return false;
    Swallow(event);
    return true;
}

QEvent* TovEventOf(CWnd const& window, unsigned message) {
    EventCall const* const call = EventCall::Of(window, message);
    return call != nullptr ? &call->Event() : nullptr;
}

namespace detail {

bool RouteEvent(CWnd& window, QWidget& widget, bool ofViewport, QEvent& event, NativeHandler native) {
    if (LookAt(window, widget, event)) return true;
    HWND const self = window.GetSafeHwnd();
    std::optional<NativeMessage> message;
    if (self && !IsAsked(window, event)) message = MessageOf(widget, ofViewport, event);
    if (!message) return native(widget, event);
    EventCall call(window, widget, message->message, event, ofViewport, native);
    TovSendMessage(self, message->message, message->wParam, message->lParam);
    if (call.IsGone()) return true;
    if (!call.Passed()) {
        // A window that has ended itself in between is still a widget.
        if (!IsWindow(self)) return native(widget, event);
        Swallow(event);
        return true;
    }
    bool const closes = call.EndsWithClose() && event.isAccepted() && IsWindow(self);
    bool const handled = call.Handled();
    if (closes) window.DestroyWindow();
    return handled;
}

}  // namespace detail

}  // namespace tov
