#include "platform/logical_tree.h"

#include "platform/window_registry.h"

#include <QDialogButtonBox>
#include <QFocusFrame>
#include <QGroupBox>
#include <QRubberBand>
#include <QScrollArea>
#include <QScrollBar>
#include <QSizeGrip>
#include <QSplitter>
#include <QStackedWidget>
#include <QTabWidget>
#include <QToolBox>

namespace tov {
namespace {

bool IsExactly(QWidget const& widget, QMetaObject const& kind) {
    return widget.metaObject() == &kind;
}

// The bars of a scroll area belong to it, as the frame of a window does.
bool IsBarOfArea(QWidget const& widget) {
    if (qobject_cast<QScrollBar const*>(&widget) == nullptr) return false;
    QWidget const* const holder = widget.parentWidget();
    return holder != nullptr && qobject_cast<QAbstractScrollArea const*>(holder->parentWidget()) != nullptr;
}

// Parts of other widgets that are no controls of their own.
bool IsNoControl(QWidget const& widget) {
    return widget.isWindow() || IsBarOfArea(widget) || qobject_cast<QRubberBand const*>(&widget) != nullptr ||
           qobject_cast<QFocusFrame const*>(&widget) != nullptr ||
           qobject_cast<QSizeGrip const*>(&widget) != nullptr ||
           qobject_cast<QSplitterHandle const*>(&widget) != nullptr;
}

}  // namespace

QAbstractScrollArea* AreaOfViewport(QWidget const* widget) {
    if (widget == nullptr) return nullptr;
    auto* const area = qobject_cast<QAbstractScrollArea*>(widget->parentWidget());
    return area != nullptr && area->viewport() == widget ? area : nullptr;
}

bool IsTransparent(QWidget const& widget) {
    if (widget.isWindow()) return false;
    if (AreaOfViewport(&widget) != nullptr) return true;
    WindowRegistry const& registry = WindowRegistry::Instance();
    if (registry.Find(&widget) != nullptr && !registry.IsForeign(widget)) return false;
    return IsExactly(widget, QWidget::staticMetaObject) || IsExactly(widget, QFrame::staticMetaObject) ||
           IsExactly(widget, QScrollArea::staticMetaObject) ||
           qobject_cast<QGroupBox const*>(&widget) != nullptr ||
           qobject_cast<QStackedWidget const*>(&widget) != nullptr ||
           qobject_cast<QTabWidget const*>(&widget) != nullptr ||
           qobject_cast<QToolBox const*>(&widget) != nullptr ||
           qobject_cast<QSplitter const*>(&widget) != nullptr ||
           qobject_cast<QDialogButtonBox const*>(&widget) != nullptr;
}

QWidget* LogicalParent(QWidget const& widget) {
    if (widget.isWindow()) return nullptr;
    QWidget* parent = widget.parentWidget();
    while (parent != nullptr && IsTransparent(*parent))
        parent = parent->parentWidget();
    return parent;
}

std::vector<QWidget*> LogicalChildren(QWidget const& widget) {
    std::vector<QWidget*> children;
    QWidget const* const top = widget.window();
    if (widget.children().isEmpty()) return children;
    // The chain goes round all widgets of the top-level window, beginning behind itself.
    for (QWidget* w = top->nextInFocusChain(); w != nullptr && w != top; w = w->nextInFocusChain()) {
        if (w == &widget || IsNoControl(*w) || IsTransparent(*w)) continue;
        if (LogicalParent(*w) == &widget) children.push_back(w);
    }
    return children;
}

bool IsShownInParent(QWidget const& widget) {
    QWidget const* const around = LogicalParent(widget);
    for (QWidget const* w = &widget; w != nullptr && w != around; w = w->parentWidget()) {
        bool const isPage = qobject_cast<QStackedWidget const*>(w->parentWidget()) != nullptr;
        if (w->isHidden() && !isPage) return false;
    }
    return true;
}

void RevealPages(QWidget& widget) {
    for (QWidget* w = &widget; w != nullptr && !w->isWindow(); w = w->parentWidget()) {
        auto* const stack = qobject_cast<QStackedWidget*>(w->parentWidget());
        if (stack == nullptr) continue;
        // The tabs know of a page that they turn to themselves only.
        if (auto* const tabs = qobject_cast<QTabWidget*>(stack->parentWidget()))
            tabs->setCurrentWidget(w);
        else
            stack->setCurrentWidget(w);
    }
}

}  // namespace tov
