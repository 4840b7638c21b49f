// A control takes the place of another in a form.
#include "platform/event_routing.h"
#include "platform/window_registry.h"

#include <QGridLayout>
#include <QLabel>
#include <QLayout>
#include <QTabWidget>

namespace tov {
namespace {

// The layout that holds the widget, looked for from the layout down; null for none.
QLayout* LayoutOf(QLayout* layout, QWidget* widget) {
    if (layout == nullptr || layout->indexOf(widget) >= 0) return layout;
    for (int i = 0; i < layout->count(); ++i) {
        QLayout* const inner = layout->itemAt(i)->layout();
        if (QLayout* const found = inner != nullptr ? LayoutOf(inner, widget) : nullptr) return found;
    }
    return nullptr;
}

void TakeStates(QWidget& from, QWidget& to) {
    to.setObjectName(from.objectName());
    to.setGeometry(from.geometry());
    to.setMinimumSize(from.minimumSize());
    to.setMaximumSize(from.maximumSize());
    to.setSizePolicy(from.sizePolicy());
    to.setFont(from.font());
    to.setToolTip(from.toolTip());
    to.setStatusTip(from.statusTip());
    to.setWhatsThis(from.whatsThis());
    to.setAccessibleName(from.accessibleName());
    to.setAccessibleDescription(from.accessibleDescription());
    if (from.testAttribute(Qt::WA_ForceDisabled)) to.setEnabled(false);
}

}  // namespace

namespace detail {

int TakePlace(QWidget& widget, CWnd& window, unsigned id, CWnd* parent) {
    if (window.GetSafeHwnd() || parent == nullptr) return 0;
    QWidget* const placeholder = TovWidget(parent->GetDlgItem(static_cast<int>(id)));
    if (placeholder == nullptr || placeholder == &widget) return 0;
    QWidget* const around = placeholder->parentWidget();
    bool const isHidden = placeholder->isHidden();
    bool const hadFocus = placeholder->hasFocus();
    widget.setParent(around);
    TakeStates(*placeholder, widget);
    if (QLayout* const layout = LayoutOf(around->layout(), placeholder))
        delete layout->replaceWidget(placeholder, &widget, Qt::FindDirectChildrenOnly);
    for (QLabel* const label : around->window()->findChildren<QLabel*>()) {
        if (label->buddy() == placeholder) label->setBuddy(&widget);
    }
    QWidget* const before = placeholder->previousInFocusChain();
    QWidget::setTabOrder(before, &widget);
    widget.stackUnder(placeholder);
    window.SetDlgCtrlID(static_cast<int>(id));
    delete placeholder;
    widget.setVisible(!isHidden);
    GiveBirth(window, widget);
    if (hadFocus) widget.setFocus(Qt::OtherFocusReason);
    return 1;
}

}  // namespace detail

}  // namespace tov
