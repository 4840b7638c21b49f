#include "platform/focus_guard.h"

#include "platform/keys_down.h"
#include "platform/logical_tree.h"
#include "platform/window_registry.h"

#include <tov310/messages.h>
#include <tov310/wnd_on.h>

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QTabBar>
#include <QTabWidget>
#include <QTouchEvent>
#include <QWheelEvent>
#include <QWindow>

#include <memory>

namespace tov {
namespace {

// A change of the focus that is being decided. Whoever is asked may run a loop, in which others follow.
class FocusChange {
 public:
    FocusChange(QWidget const& leaving, QWidget const& next)
        : m_leaving(&leaving), m_next(&next), m_outer(innermost) {
        innermost = this;
    }
    FocusChange(FocusChange const&) = delete;
    FocusChange& operator=(FocusChange const&) = delete;
    ~FocusChange() { innermost = m_outer; }

    // The one that is under way; null for none. It is over as soon as the focus is back.
    static FocusChange* Current() {
        return innermost != nullptr && !innermost->m_isOver ? innermost : nullptr;
    }

    bool ComesBackTo(QWidget const& widget) {
        if (&widget != m_leaving) return false;
        m_isOver = true;
        return true;
    }
    bool GoesTo(QWidget const& widget) const { return &widget == m_next; }

 private:
    static constinit inline FocusChange* innermost = nullptr;

    QWidget const* m_leaving;
    QWidget const* m_next;
    bool m_isOver = false;
    FocusChange* m_outer;
};

// The window that a press was let pass to, until the press ends: it is not asked again for the focus.
constinit HWND allowedByPress;

constinit QPoint lastPress;

// The window that what happens on the widget belongs to.
CWnd* Reached(QWidget const* widget) {
    return WindowRegistry::Instance().Nearest(widget);
}

// A press on a button that takes none is the window's around it. Of all others the toolkit hands it on
// itself.
void TellOfPressOnDisabled(QWidget& control, CPoint const& global) {
    if (qobject_cast<QAbstractButton*>(&control) == nullptr) return;
    QWidget* around = LogicalParent(control);
    while (around != nullptr && !around->isEnabled())
        around = LogicalParent(*around);
    CWnd* const window = Reached(around);
    if (window == nullptr) return;
    TovSendMessage(window->GetSafeHwnd(), WM_LBUTTONDOWN, MK_LBUTTON,
                   TovPackPoint(window->ScreenToClient(global)));
}

// Tabs take a key for their next page from the control that would be hidden by it.
bool MayTurnPage(QKeyEvent const& key) {
    bool const isTab = key.key() == Qt::Key_Tab || key.key() == Qt::Key_Backtab;
    if (!isTab || (key.modifiers() & Qt::ControlModifier) == 0) return true;
    QWidget const* around =
        QApplication::activePopupWidget() == nullptr ? QApplication::focusWidget() : nullptr;
    for (; around != nullptr && !around->isWindow(); around = around->parentWidget()) {
        auto const* const tabs = qobject_cast<QTabWidget const*>(around);
        if (tabs == nullptr || tabs->count() < 2) continue;
        CWnd* const bar = Reached(tabs->tabBar());
        return bar == nullptr || MayBeReached(*bar, 0);
    }
    return true;
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
                QPointer<TopLevelGate> const alive(this);
                bool const passes = LetPass(mouse.position(), PressMessage(mouse.button()));
                if (!alive) return true;
                m_isRefused = !passes;
                return m_isRefused;
            }
            case QEvent::KeyPress:
                NoteKey(static_cast<QKeyEvent const&>(*event));
                return !MayTurnPage(static_cast<QKeyEvent const&>(*event));
            case QEvent::KeyRelease:
                NoteKey(static_cast<QKeyEvent const&>(*event));
                return false;
            case QEvent::FocusOut:
                ForgetKeys();
                return false;
            case QEvent::MouseMove:
            case QEvent::MouseButtonRelease: {
                bool const wasRefused = m_isRefused;
                if (static_cast<QMouseEvent const&>(*event).buttons() == Qt::NoButton) {
                    m_isRefused = false;
                    allowedByPress = {};
                }
                return wasRefused;
            }
            case QEvent::Wheel:
                return !LetPass(static_cast<QWheelEvent const&>(*event).position(), WM_MOUSEWHEEL);
            case QEvent::TouchBegin: {
                auto const& points = static_cast<QTouchEvent const&>(*event).points();
                QPointer<TopLevelGate> const alive(this);
                bool const passes = points.isEmpty() || LetPass(points.first().position(), WM_LBUTTONDOWN);
                if (!alive) return true;
                m_isTouchRefused = !passes;
                event->setAccepted(!passes);  // or it would come again as a press
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
        if (window == nullptr) return true;
        HWND const handle = window->GetSafeHwnd();
        QWidget const* const reached = TovWidget(window);
        bool const isGround = GroundTakesFocus(*target, reached, message);
        if (reached->isWindow() && !isGround) return true;
        QPointer<QAbstractButton> const button(qobject_cast<QAbstractButton*>(target));
        if (MayBeReached(*window, isGround ? 0 : message)) {
            allowedByPress = handle;
            return true;
        }
        // Help is for whoever does not know what is wrong: the press reaches it, and the focus stays.
        CWnd const* const still = CWnd::FromHandlePermanent(handle);
        if (button && message == WM_LBUTTONDOWN && still != nullptr && still->GetDlgCtrlID() == IDHELP)
            button->click();
        return false;
    }

    // Whether something on the way to the window that only groups or scrolls would get the focus.
    static bool GroundTakesFocus(QWidget const& target, QWidget const* reached, unsigned message) {
        int const policy = message == WM_MOUSEWHEEL ? Qt::WheelFocus & ~Qt::StrongFocus : Qt::ClickFocus;
        for (QWidget const* w = &target; w != nullptr && w != reached; w = w->parentWidget()) {
            if (IsTransparent(*w) && (w->focusPolicy() & policy) != 0) return true;
        }
        return false;
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

bool IsFocusOfPopup(CWnd const& window, unsigned message) {
    auto const* const event = static_cast<QFocusEvent const*>(TovEventOf(window, message));
    return event != nullptr &&
           (event->reason() == Qt::PopupFocusReason || event->reason() == Qt::MenuBarFocusReason);
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
    // A widget with a window of the desktop's of its own hears of presses there.
    for (QWidget* w = &widget; w != nullptr; w = w->isWindow() ? nullptr : w->parentWidget()) {
        QWindow* const window = w->windowHandle();
        if (window == nullptr || window->property(gateProperty).isValid()) continue;
        window->setProperty(gateProperty, true);
        std::make_unique<TopLevelGate>(*window, *w).release();  // its window's child
    }
}

bool IsGuardingFocus(QWidget const& widget) {
    FocusChange* const change = FocusChange::Current();
    return change != nullptr && change->ComesBackTo(widget);
}

bool RefuseFocusOut(QWidget& leaving, QFocusEvent const& event) {
    QWidget* const next = QApplication::focusWidget();
    // The focus goes back from a widget that has not heard of it yet.
    if (FocusChange const* const change = FocusChange::Current();
        change != nullptr && change->GoesTo(leaving))
        return true;
    Qt::FocusReason const reason = event.reason();
    if (reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason ||
        reason == Qt::MenuBarFocusReason)
        return false;
    if (next == nullptr || next == &leaving || next->window() != leaving.window()) return false;
    CWnd* const window = Reached(next);
    if (window == nullptr || window == Reached(&leaving)) return false;
    if (reason == Qt::MouseFocusReason && window->GetSafeHwnd() == allowedByPress) return false;

    QPointer<QWidget> const alive(&leaving);
    QPointer<QWidget> const wanted(next);
    FocusChange const change(leaving, *next);
    if (MayBeReached(*window, 0)) return !alive;
    if (!alive) return true;
    QWidget const* const now = QApplication::focusWidget();
    if (now == wanted.get() && now != nullptr) leaving.setFocus(Qt::OtherFocusReason);
    // Whoever is wrong may be another than the one that is left, and have the focus now.
    return QApplication::focusWidget() == &leaving;
}

}  // namespace tov
