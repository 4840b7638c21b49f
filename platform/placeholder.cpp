// A control takes the place of another in a form.
#include "platform/event_routing.h"
#include "platform/focus_order.h"
#include "platform/window_registry.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QButtonGroup>
#include <QComboBox>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QSplitter>
#include <QStackedWidget>
#include <QTabWidget>
#include <QVariant>

#include <utility>

namespace tov {
namespace {

// The layout that holds the widget itself, however deep; null for none.
QLayout* LayoutOf(QLayout* layout, QWidget* widget) {
    if (layout == nullptr || layout->indexOf(widget) >= 0) return layout;
    for (int i = 0; i < layout->count(); ++i) {
        QLayout* const inner = layout->itemAt(i)->layout();
        if (QLayout* const found = inner != nullptr ? LayoutOf(inner, widget) : nullptr) return found;
    }
    return nullptr;
}

// What belongs to the place in the form, whatever stands there.
void TakeStates(QWidget& from, QWidget& to) {
    if (!from.objectName().isEmpty()) to.setObjectName(from.objectName());
    to.setGeometry(from.geometry());
    to.setMinimumSize(from.minimumSize());
    to.setMaximumSize(from.maximumSize());
    to.setSizePolicy(from.sizePolicy());
    if (from.testAttribute(Qt::WA_SetFont)) to.setFont(from.font());
    to.setToolTip(from.toolTip());
    to.setStatusTip(from.statusTip());
    to.setWhatsThis(from.whatsThis());
    to.setAccessibleName(from.accessibleName());
    to.setAccessibleDescription(from.accessibleDescription());
    to.setEnabled(!from.testAttribute(Qt::WA_ForceDisabled));
    if (from.focusPolicy() == Qt::NoFocus) return;  // a label keeps the place of something else
    auto const stop = static_cast<int>(Qt::TabFocus);
    auto const others = static_cast<int>(to.focusPolicy()) & ~stop;
    to.setFocusPolicy(static_cast<Qt::FocusPolicy>(others | (static_cast<int>(from.focusPolicy()) & stop)));
}

// What the form has stated about what is shown, where the control knows the like. What it has left as usual
// says nothing: the control may have been set up by its owner.
void TakeContent(QWidget& from, QWidget& to) {
    static std::pair<char const*, QVariant> const usual[] = {
        {"text", QString()},
        {"plainText", QString()},
        {"placeholderText", QString()},
        {"inputMask", QString()},
        {"maxLength", 32767},
        {"readOnly", false},
        {"echoMode", QVariant::fromValue(QLineEdit::Normal)},
        {"alignment", static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter)},
        {"checkable", false},
        {"tristate", false},
        {"checked", false},
        {"editable", false},
        {"default", false},
    };
    for (auto const& [name, value] : usual) {
        QVariant stated = from.property(name);
        if (!stated.isValid() || stated == value || !to.property(name).isValid()) continue;
        if (value.typeId() == QMetaType::Int && stated.toInt() == value.toInt()) continue;
        to.setProperty(name, stated);
    }
    auto const* const fromCombo = qobject_cast<QComboBox*>(&from);
    auto* const toCombo = qobject_cast<QComboBox*>(&to);
    if (fromCombo != nullptr && toCombo != nullptr && fromCombo->count() != 0 && toCombo->count() == 0) {
        for (int i = 0; i < fromCombo->count(); ++i)
            toCombo->addItem(fromCombo->itemIcon(i), fromCombo->itemText(i), fromCombo->itemData(i));
        toCombo->setCurrentIndex(fromCombo->currentIndex());
        if (fromCombo->isEditable() && toCombo->isEditable()) toCombo->setEditText(fromCombo->currentText());
    }
    auto* const fromButton = qobject_cast<QAbstractButton*>(&from);
    auto* const toButton = qobject_cast<QAbstractButton*>(&to);
    if (fromButton == nullptr || toButton == nullptr) return;
    if (!fromButton->icon().isNull()) toButton->setIcon(fromButton->icon());
    if (QButtonGroup* const group = fromButton->group()) {
        int const number = group->id(fromButton);
        bool const isChecked = fromButton->isChecked();
        group->removeButton(fromButton);
        group->addButton(toButton, number);
        if (isChecked) toButton->setChecked(true);
    }
}

// Containers that are no layouts hold it by themselves. False: none does.
bool ReplaceInContainer(QWidget& from, QWidget& to) {
    QWidget* const around = from.parentWidget();
    if (auto* const splitter = qobject_cast<QSplitter*>(around)) {
        QList<int> const sizes = splitter->sizes();
        splitter->replaceWidget(splitter->indexOf(&from), &to);
        splitter->setSizes(sizes);
        return true;
    }
    if (auto* const area = qobject_cast<QScrollArea*>(around != nullptr ? around->parentWidget() : nullptr);
        area != nullptr && area->widget() == &from) {
        area->takeWidget();
        area->setWidget(&to);
        return true;
    }
    auto* const stack = qobject_cast<QStackedWidget*>(around);
    if (stack == nullptr) return false;
    auto* const tabs = qobject_cast<QTabWidget*>(stack->parentWidget());
    int const place = stack->indexOf(&from);
    int const current = stack->currentIndex();
    if (tabs == nullptr) {
        stack->insertWidget(place, &to);
        stack->removeWidget(&from);
        stack->setCurrentIndex(current);
        return true;
    }
    QString const text = tabs->tabText(place);
    QString const tip = tabs->tabToolTip(place);
    QIcon const icon = tabs->tabIcon(place);
    bool const isEnabled = tabs->isTabEnabled(place);
    tabs->removeTab(place);
    tabs->insertTab(place, &to, icon, text);
    tabs->setTabToolTip(place, tip);
    tabs->setTabEnabled(place, isEnabled);
    tabs->setCurrentIndex(current);
    return true;
}

// Answers whether it is for the window to say if it shows; pages are shown by whatever turns them.
bool PutInPlace(QWidget& from, QWidget& to) {
    QWidget* const around = from.parentWidget();
    bool const isPage = qobject_cast<QStackedWidget*>(around) != nullptr;
    if (ReplaceInContainer(from, to)) return !isPage;
    to.setParent(around);
    to.setGeometry(from.geometry());
    if (QLayout* const layout = LayoutOf(around->layout(), &from))
        delete layout->replaceWidget(&from, &to, Qt::FindDirectChildrenOnly);
    to.stackUnder(&from);
    return true;
}

// The other window of that number in the parent.
QWidget* PlaceholderOf(CWnd const& parent, int id, QWidget const& except) {
    for (HWND const child : parent.GetChildren()) {
        CWnd const* const window = CWnd::FromHandlePermanent(child);
        if (window == nullptr || window->GetDlgCtrlID() != id) continue;
        QWidget* const widget = TovWidget(window);
        if (widget != nullptr && widget != &except) return widget;
    }
    return nullptr;
}

}  // namespace

namespace detail {

int TakePlace(QWidget& widget, CWnd& window, unsigned id, CWnd* parent) {
    if (window.GetSafeHwnd() || parent == nullptr) return 0;
    WindowRegistry::Instance().NoteDeath(widget);  // not born yet, wherever it stands
    QWidget* const placeholder = PlaceholderOf(*parent, static_cast<int>(id), widget);
    if (placeholder == nullptr || placeholder->isAncestorOf(&widget)) {
        WindowRegistry::Instance().NoteBirth(widget);
        return 0;
    }
    bool const isHidden = placeholder->isHidden();
    QWidget* const top = placeholder->window();
    bool const hadFocus = top->focusWidget() == placeholder;
    QWidget* before = placeholder->previousInFocusChain();
    if (before == &widget) before = widget.previousInFocusChain();
    TakeStates(*placeholder, widget);
    TakeContent(*placeholder, widget);
    bool const decides = PutInPlace(*placeholder, widget);
    for (QLabel* const label : top->findChildren<QLabel*>()) {
        if (label->buddy() == placeholder) label->setBuddy(&widget);
    }
    PutBehindInFocus(*before, widget);
    window.SetDlgCtrlID(static_cast<int>(id));
    delete placeholder;
    if (decides) widget.setVisible(!isHidden);
    GiveBirth(window, widget);
    if (hadFocus) widget.setFocus(Qt::OtherFocusReason);
    return 1;
}

}  // namespace detail

}  // namespace tov
