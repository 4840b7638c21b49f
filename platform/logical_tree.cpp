#include "platform/logical_tree.h"

#include "platform/window_registry.h"

#include <QDialogButtonBox>
#include <QFocusFrame>
#include <QGroupBox>
#include <QRubberBand>
#include <QScrollArea>
#include <QScrollBar>
#include <QSet>
#include <QSizeGrip>
#include <QSplitter>
#include <QStackedWidget>
#include <QTabWidget>
#include <QToolBox>

#include <typeinfo>

namespace tov {
namespace {

// Not a class derived from it, with signals or without.
template <class Kind>
bool IsExactly(QWidget const& widget) {
    return typeid(widget) == typeid(Kind);
}

// The page of a tool box that the widget scrolls; -1 for none.
int PageOfToolBox(QWidget const& scroller) {
    auto const* const box = qobject_cast<QToolBox const*>(scroller.parentWidget());
    for (int i = 0; box != nullptr && i < box->count(); ++i) {
        if (scroller.isAncestorOf(box->widget(i))) return i;
    }
    return -1;
}

// The bars of a scroll area belong to it, as the frame of a window does.
bool IsBarOfArea(QWidget const& widget) {
    if (qobject_cast<QScrollBar const*>(&widget) == nullptr) return false;
    QWidget const* const holder = widget.parentWidget();
    return holder != nullptr && qobject_cast<QAbstractScrollArea const*>(holder->parentWidget()) != nullptr;
}

// The toolkit's own holder of the bars of an area.
bool IsScrollBarHolder(QWidget const& widget) {
    return widget.metaObject() == &QWidget::staticMetaObject && widget.parentWidget() != nullptr &&
           qobject_cast<QAbstractScrollArea const*>(widget.parentWidget()) != nullptr;
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
    if (CWnd const* const window = WindowRegistry::Instance().Find(&widget)) {
        // One that somebody means by name is a window, such as the page that a host guards.
        auto const* const foreign = dynamic_cast<ForeignWindow const*>(window);
        if (foreign == nullptr || foreign->IsNamed()) return false;
    }
    return IsExactly<QWidget>(widget) || IsScrollBarHolder(widget) || IsExactly<QFrame>(widget) ||
           IsExactly<QScrollArea>(widget) || qobject_cast<QGroupBox const*>(&widget) != nullptr ||
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

static void CollectChildren(QWidget const& widget, QSet<QWidget*>& children) {
    for (QObject* const object : widget.children()) {
        auto* const child = qobject_cast<QWidget*>(object);
        if (child == nullptr || IsNoControl(*child)) continue;
        if (IsTransparent(*child))
            CollectChildren(*child, children);
        else
            children.insert(child);
    }
}

std::vector<QWidget*> LogicalChildren(QWidget const& widget) {
    QSet<QWidget*> unordered;
    CollectChildren(widget, unordered);
    std::vector<QWidget*> children;
    if (unordered.isEmpty()) return children;
    // The chain goes round all widgets of the top-level window, beginning behind itself.
    QWidget const* const top = widget.window();
    auto const count = static_cast<std::size_t>(unordered.size());
    for (QWidget* w = top->nextInFocusChain(); w != nullptr && w != top && children.size() < count;
         w = w->nextInFocusChain()) {
        if (unordered.contains(w)) children.push_back(w);
    }
    return children;
}

bool IsShownInParent(QWidget const& widget) {
    QWidget const* const around = LogicalParent(widget);
    for (QWidget const* w = &widget; w != nullptr && w != around; w = w->parentWidget()) {
        bool const isPage =
            qobject_cast<QStackedWidget const*>(w->parentWidget()) != nullptr || PageOfToolBox(*w) >= 0;
        if (w->isHidden() && !isPage) return false;
        if (w->isWindow()) break;
    }
    return true;
}

void RevealPages(QWidget& widget) {
    for (QWidget* w = &widget; w != nullptr && !w->isWindow(); w = w->parentWidget()) {
        if (int const page = PageOfToolBox(*w); page >= 0)
            static_cast<QToolBox*>(w->parentWidget())->setCurrentIndex(page);
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
