// The handle of a window that may not be there.
#pragma once

#include <tov310/window.h>

namespace tov {

inline HWND HandleOf(CWnd const* window) {
    return window != nullptr ? window->GetSafeHwnd() : HWND{};
}

}  // namespace tov
