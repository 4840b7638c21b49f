// The way of a message through the hooks of a window.
#pragma once

#include <tov310/hooks.h>

namespace tov {

// Has the window of the hooks answer a message.
LRESULT SendThroughHooks(CTovSubclassWnd& newest, HWND window, unsigned message, WPARAM wParam,
                         LPARAM lParam);

// Tells all hooks of the window that it dies, and takes those off that stay.
void TellHooksOfDeath(HWND window);

}  // namespace tov
