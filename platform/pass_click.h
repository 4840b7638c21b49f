// Hands a press of the mouse to what lies under a window that has just hidden.
#pragma once

class QMouseEvent;

namespace tov {

// As if it had come there from the screen; nothing happens over the desktop and over a window that a dialog
// blocks.
void PassPressOn(QMouseEvent const& press);

}  // namespace tov
