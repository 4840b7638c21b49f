#include "platform/focus_guard.h"

#include "platform/keys_down.h"
#include "platform/logical_tree.h"
#include "platform/window_registry.h"

#include <tov310/messages.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QTouchEvent>
#include <QWheelEvent>
#include <QWindow>

#include <memory>

namespace tov {
namespace {

// A change of the focus that is being decided.
struct FocusChange {
    QWidget const* leaving;
    QWidget const* next;
};
constinit FocusChange const* undecided = nullptr;

constinit QPoint lastPress;

// The window that what happens on the widget belongs to.
CWnd* Reached(QWidget const* widget) {
    return WindowRegistry::Instance().Nearest(widget);
}

// A press on a control that takes none is the window's around it.
void TellOfPressOnDisabled(QWidget& control, CPoint const& global) {
    QWidget* const around = LogicalParent(control);
    CWnd* const window = Reached(around);
    if (window == nullptr) return;
    TovSendMessage(window->GetSafeHwnd(), WM_LBUTTONDOWN, MK_LBUTTON,
                   TovPackPoint(window->ScreenToClient(global)));
}

class TopLevelGate : public QObject {
 public:
    TopLevelGate(QWindow& window, QWidget& widget) : QObject(&window), m_widget(&widget) {
        window.installEventFilter(this);
    }

    bool eventFilter(QObject*, QEvent* event) override {
        switch (event->type()) {
            case QEvent::MouseButtonPress:
            case QEvent::MouseButtonDblClick: {
                auto const& mouse = static_cast<QMouseEvent const&>(*event);
                lastPress = mouse.globalPosition().toPoint();
                m_isRefused = !LetPass(mouse.position(), PressMessage(mouse.button()));
                return m_isRefused;
            }
            case QEvent::KeyPress:
            case QEvent::KeyRelease:
                NoteKey(static_cast<QKeyEvent const&>(*event));
                return false;
            case QEvent::FocusOut:
                ForgetKeys();
                return false;
            case QEvent::MouseMove:
            case QEvent::MouseButtonRelease: {
                bool const wasRefused = m_isRefused;
                if (static_cast<QMouseEvent const&>(*event).buttons() == Qt::NoButton) m_isRefused = false;
                return wasRefused;
            }
            case QEvent::Wheel:
                return !LetPass(static_cast<QWheelEvent const&>(*event).position(), WM_MOUSEWHEEL);
            case QEvent::TouchBegin: {
                auto const& points = static_cast<QTouchEvent const&>(*event).points();
                m_isTouchRefused = !points.isEmpty() && !LetPass(points.first().position(), WM_LBUTTONDOWN);
                return m_isTouchRefused;
            }
            case QEvent::TouchUpdate:
            case QEvent::TouchEnd:
            case QEvent::TouchCancel:
                return m_isTouchRefused;
            default:
                return false;
        }
    }

 private:
    static unsigned PressMessage(Qt::MouseButton button) {
        return button == Qt::LeftButton    ? WM_LBUTTONDOWN
               : button == Qt::RightButton ? WM_RBUTTONDOWN
                                           : WM_MBUTTONDOWN;
    }

    bool LetPass(QPointF const& place, unsigned message) {
        if (m_widget == nullptr || QApplication::activePopupWidget() != nullptr ||
            QWidget::mouseGrabber() != nullptr)
            return true;
        QWidget* const target = m_widget->childAt(place.toPoint());
        if (target == nullptr) return true;
        if (!target->isEnabled()) {
            if (message != WM_LBUTTONDOWN) return true;
            QPoint const global = m_widget->mapToGlobal(place.toPoint());
            TellOfPressOnDisabled(*target, {global.x(), global.y()});
            return true;
        }
        CWnd* const window = Reached(target);
        if (window == nullptr || TovWidget(window) == m_widget) return true;
        if (window->GetDlgCtrlID() != IDHELP) return MayBeReached(*window, message);
        // Help is for whoever does not know what is wrong: the press reaches it, and the focus stays.
        int const policy = target->focusPolicy();
        target->setFocusPolicy(static_cast<Qt::FocusPolicy>(policy & ~Qt::ClickFocus));
        return true;
    }

    QPointer<QWidget> m_widget;
    bool m_isRefused = false;  // the press, until it is released
    bool m_isTouchRefused = false;
};

constexpr char const* gateProperty = "tovGate";

}  // namespace

QPoint LastPress() {
    return lastPress;
}

bool MayBeReached(CWnd& window, unsigned mouseMessage) {
    HWND const self = window.GetSafeHwnd();
    if (!self) return true;
    QWidget const* const widget = TovWidget(&window);
    CWnd const* const top = widget != nullptr ? WindowRegistry::Instance().Find(widget->window()) : nullptr;
    HWND const topHandle = top != nullptr ? top->GetSafeHwnd() : HWND{};
    return TovSendMessage(self, WM_MOUSEACTIVATE, topHandle.id, static_cast<LPARAM>(mouseMessage)) != 0;
}

void GuardTopLevelOf(QWidget& widget) {
    QWidget* const top = widget.window();
    QWindow* const window = top->windowHandle();
    if (window == nullptr || window->property(gateProperty).isValid()) return;
    window->setProperty(gateProperty, true);
    std::make_unique<TopLevelGate>(*window, *top).release();  // its window's child
}

bool IsGuardingFocus(QWidget const& widget) {
    return undecided != nullptr && undecided->leaving == &widget;
}

bool RefuseFocusOut(QWidget& leaving, QFocusEvent const& event) {
    QWidget* const next = QApplication::focusWidget();
    if (undecided != nullptr) {
        // The focus goes back from a widget that has not heard of it yet.
        return undecided->next == &leaving && next == undecided->leaving;
    }
    Qt::FocusReason const reason = event.reason();
    if (reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason ||
        reason == Qt::MenuBarFocusReason)
        return false;
    if (next == nullptr || next == &leaving || next->window() != leaving.window()) return false;
    CWnd* const window = Reached(next);
    if (window == nullptr || window == Reached(&leaving)) return false;

    QPointer<QWidget> const alive(&leaving);
    FocusChange const change{&leaving, next};
    undecided = &change;
    bool const passes = MayBeReached(*window, 0);
    if (!passes && alive && Reached(QApplication::focusWidget()) != Reached(&leaving))
        leaving.setFocus(Qt::OtherFocusReason);
    undecided = nullptr;
    return !passes || !alive;
}

}  // namespace tov
