// The way of an event: translated into a message, through the hooks and the window, and on to the toolkit's
// own handler where it is passed on.
#pragma once

#include <tov310/wnd_on.h>

namespace tov {

// For an event filter. Answers whether the toolkit is to go no further.
bool FilterEvent(CWnd& window, QWidget& widget, QObject& receiver, QEvent& event);

// The window has passed a message on. Answers whether the message told of an event, which the toolkit's own
// handler has had now, or is to have when all hooks are through.
bool PassEvent(CWnd const& window, unsigned message);

// Whether a window is being painted.
bool IsPainting();

// Closes the widget; its hooks and window have been asked already.
void CloseAsked(CWnd const& window, QWidget& widget);

// Says of a widget that the library has made it and deletes it with its window.
inline constexpr char const* madeByFactoryProperty = "tovMadeByFactory";

// The window is about to go; messages that are on their way to it touch it no more.
void ForgetCalls(CWnd const& window);

// Has the window born, if it is not yet.
void GiveBirth(CWnd& window, QWidget& widget);

}  // namespace tov
