#include "platform/window_registry.h"

#include "platform/event_routing.h"
#include "platform/logical_tree.h"
#include "platform/startup.h"

#include <tov310/hooks.h>

#include <QChildEvent>

#include <unordered_map>

namespace tov {

ForeignWindow::ForeignWindow(QWidget& widget) : m_widget(widget) {
    widget.installEventFilter(this);
    if (auto* const area = qobject_cast<QAbstractScrollArea*>(&widget))
        area->viewport()->installEventFilter(this);
    connect(&widget, &QObject::destroyed, this, [gone = &widget] { WindowRegistry::Instance().Drop(*gone); });
}

ForeignWindow::~ForeignWindow() {
    TovWindowLife::End(*this);
}

bool ForeignWindow::eventFilter(QObject* receiver, QEvent* event) {
    // An area may get another viewport.
    if (receiver == &m_widget && event->type() == QEvent::ChildPolished) {
        auto const* const area = qobject_cast<QAbstractScrollArea*>(&m_widget);
        if (area != nullptr && area->viewport() != nullptr) area->viewport()->installEventFilter(this);
    }
    return FilterEvent(*this, m_widget, *receiver, *event);
}

WindowRegistry& WindowRegistry::Instance() {
    // Widgets may be the last to go.
    static WindowRegistry& registry = *std::make_unique<WindowRegistry>().release();
    return registry;
}

CWnd* WindowRegistry::Find(QWidget const* widget) const {
    if (QAbstractScrollArea const* const area = AreaOfViewport(widget)) widget = area;
    return m_windows.value(widget, nullptr);
}

CWnd* WindowRegistry::Of(QWidget* widget) {
    if (widget == nullptr) return nullptr;
    if (QAbstractScrollArea* const area = AreaOfViewport(widget)) widget = area;
    CWnd* window = m_windows.value(widget, nullptr);
    if (window == nullptr && m_ending.contains(widget)) return nullptr;
    if (window == nullptr) {
        auto foreign = std::make_unique<ForeignWindow>(*widget);
        window = foreign.get();
        m_foreign[widget] = std::move(foreign);
        Add(*widget, *window);
    }
    GiveBirth(*window, *widget);
    return window;
}

QWidget* WindowRegistry::WidgetOf(CWnd const* window) const {
    return m_widgets.value(window, nullptr);
}

CWnd* WindowRegistry::Nearest(QWidget const* widget) const {
    for (; widget != nullptr; widget = widget->isWindow() ? nullptr : widget->parentWidget()) {
        // What only groups or scrolls may have got a window while it stood alone.
        CWnd* const window = m_windows.value(widget, nullptr);
        if (window != nullptr && window->GetSafeHwnd() && !IsTransparent(*widget)) return window;
    }
    return nullptr;
}

void WindowRegistry::Add(QWidget& widget, CWnd& window) {
    StartPlatform();
    m_ending.remove(&widget);
    m_windows[&widget] = &window;
    m_widgets[&window] = &widget;
}

void WindowRegistry::Remove(QWidget const& widget, CWnd const& window) {
    m_windows.remove(&widget);
    m_widgets.remove(&window);
    m_dead.remove(&widget);
    m_givenIds.remove(&widget);
    // What still happens as the widget's own classes and its children go must not make a window of it again.
    // The last child ends that.
    m_ending.insert(&widget);
    auto* const end = std::make_unique<QObject>(const_cast<QWidget*>(&widget)).release();
    QObject::connect(end, &QObject::destroyed, [this, ended = &widget] { m_ending.remove(ended); });
}

void WindowRegistry::Drop(QWidget const& widget) {
    auto const found = m_foreign.find(&widget);
    if (found == m_foreign.end()) return;
    // Its hooks are told while it still can be found.
    std::unique_ptr<ForeignWindow> const window = std::move(found->second);
    ForgetCalls(*window);
    TovWindowLife::End(*window);
    m_foreign.erase(&widget);
    Remove(widget, *window);
}

CWnd* TovWnd(QWidget* widget) {
    CWnd* const window = WindowRegistry::Instance().Of(widget);
    if (auto* const foreign = dynamic_cast<ForeignWindow*>(window)) foreign->Name();
    return window;
}

HWND TovHandle(QWidget* widget) {
    CWnd const* const window = TovWnd(widget);
    return window != nullptr ? window->GetSafeHwnd() : HWND{};
}

QWidget* TovWidget(CWnd const* window) {
    return WindowRegistry::Instance().WidgetOf(window);
}

QWidget* TovWidget(HWND window) {
    return TovWidget(CWnd::FromHandlePermanent(window));
}

namespace detail {

void RegisterWidget(QWidget& widget, CWnd& window) {
    WindowRegistry::Instance().Add(widget, window);
}

void BearWindow(CWnd& window, QWidget& widget) {
    GiveBirth(window, widget);
}

void ForgetWidget(QWidget& widget, CWnd& window) {
    ForgetCalls(window);
    TovWindowLife::End(window);
    WindowRegistry::Instance().Remove(widget, window);
}

}  // namespace detail

}  // namespace tov
