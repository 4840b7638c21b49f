#include "platform/focus_order.h"

#include <QList>

namespace tov {
namespace {

// The toolkit orders only what takes the focus; the order of the others is that of the windows.
class LentFocus {
 public:
    explicit LentFocus(QWidget& widget)
        : m_widget(widget), m_isLent(widget.focusPolicy() == Qt::NoFocus && widget.focusProxy() == nullptr) {
        if (m_isLent) widget.setFocusPolicy(Qt::TabFocus);
    }
    LentFocus(LentFocus const&) = delete;
    LentFocus& operator=(LentFocus const&) = delete;
    ~LentFocus() {
        if (m_isLent) m_widget.setFocusPolicy(Qt::NoFocus);
    }

 private:
    QWidget& m_widget;
    bool m_isLent;
};

void SetOrder(QWidget& first, QWidget& second) {
    LentFocus const lentToFirst(first);
    LentFocus const lentToSecond(second);
    QWidget::setTabOrder(&first, &second);
}

}  // namespace

QPushButton* DefaultButtonOf(QWidget const& window) {
    for (QPushButton* const button : window.findChildren<QPushButton*>()) {
        if (button->isDefault() && button->isVisible() && button->window() == &window) return button;
    }
    return nullptr;
}

void PutBehindInFocus(QWidget& before, QWidget& widget) {
    if (widget.previousInFocusChain() == &before) return;
    // Of a control made of several the toolkit wants to hear the whole.
    QWidget* whole = &before;
    while (whole->focusProxy() != nullptr && whole->focusProxy()->isAncestorOf(whole))
        whole = whole->focusProxy();
    if (!whole->isAncestorOf(&widget)) {
        SetOrder(*whole, widget);
        return;
    }
    // Nothing can be put behind what it stands in; what is between goes behind it instead.
    QList<QWidget*> between;
    for (QWidget* w = before.nextInFocusChain(); w != &widget && !w->isWindow(); w = w->nextInFocusChain())
        between.append(w);
    QWidget* last = &widget;
    for (QWidget* const w : between) {
        SetOrder(*last, *w);
        last = w;
    }
}

}  // namespace tov
