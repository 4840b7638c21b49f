// The order in which the focus goes round, also among widgets that take none.
#pragma once

#include <QWidget>

namespace tov {

// The focus reaches the widget next behind the other one. Both stand in one top-level window, which may be
// `before` itself.
void PutBehindInFocus(QWidget& before, QWidget& widget);

}  // namespace tov
