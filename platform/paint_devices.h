// The picture of a window that the toolkit paints.
#pragma once

#include <tov310/window.h>

namespace tov {

class CDC;

// Copies what the toolkit has just painted, in answer to a WM_PAINT that is still on its way, to another
// device.
void CopyPainted(CWnd const& window, CDC& to);

}  // namespace tov
