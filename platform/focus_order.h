// The order in which the focus goes round, also among widgets that take none.
#pragma once

#include <QPushButton>

namespace tov {

// The button that Enter presses in a window; null for none that is shown. Dialogs that belong to the window
// have their own.
QPushButton* DefaultButtonOf(QWidget const& window);

// The focus reaches the widget next behind the other one. Both stand in one top-level window, which may be
// `before` itself.
void PutBehindInFocus(QWidget& before, QWidget& widget);

}  // namespace tov
