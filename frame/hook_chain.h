// The way of a message through the hooks of a window.
#pragma once

#include <tov310/hooks.h>

namespace tov {

// Has the window of the hooks answer a message.
LRESULT SendThroughHooks(CTovSubclassWnd& newest, CWnd& window, unsigned message, WPARAM wParam,
                         LPARAM lParam);

// The window dies; messages on their way to it do not reach it any more.
void ForgetWindowInCalls(CWnd const& window);

// Tells all hooks of the window that it dies, and takes those off that stay.
void TellHooksOfDeath(HWND window);

}  // namespace tov
