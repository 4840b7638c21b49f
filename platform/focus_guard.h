// The focus stays with a control whose content is wrong. Before a press, a wheel, a touch, a mnemonic or a
// change of the focus reaches a window, that is asked by WM_MOUSEACTIVATE; if it does not want it, nothing
// has happened.
#pragma once

#include <tov310/window.h>

#include <QFocusEvent>
#include <QPoint>
#include <QWidget>

namespace tov {

// Whether the window, or a hook of it, agrees to be reached; `mouseMessage` is the press, 0 for none.
bool MayBeReached(CWnd& window, unsigned mouseMessage);

// Where the mouse was pressed last, on the screen: who gets the focus by that hears of the focus first.
QPoint LastPress();

// Whether the focus only goes to a menu or another popup, or comes back from one: to the user the control
// still has it. The message is WM_SETFOCUS or WM_KILLFOCUS.
bool IsFocusOfPopup(CWnd const& window, unsigned message);

// Looks at presses, wheel and touches on the top-level window around the widget, before the toolkit does.
void GuardTopLevelOf(QWidget& widget);

// Asks the window that gets the focus. True: it came back, or is coming back, and the widget is to hear
// nothing.
bool RefuseFocusOut(QWidget& leaving, QFocusEvent const& event);

// Whether the focus is just coming back to the widget, which never lost it as far as it knows.
bool IsGuardingFocus(QWidget const& widget);

}  // namespace tov
