// Keys that stand for commands, at work on a window.
#pragma once

#include <tov310/accelerator.h>
#include <tov310/export.h>

class QWidget;

namespace tov {

// Has each key of the table, pressed anywhere in the top-level window that the widget stands in, send its
// command to the widget's window; a command whose state says that it is disabled is not sent. An edit that
// has the focus keeps the keys with which it works itself. The table takes the place of the one before; an
// empty one ends it. A key without a number in Qt is left out.
TOV_UI_API void TovSetAccelerators(QWidget* window, HACCEL const& keys);

// The table in force there; an empty one where there is none.
TOV_UI_API HACCEL TovGetAccelerators(QWidget const* window);

}  // namespace tov
