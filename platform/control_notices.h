// What controls tell the window around them.
#pragma once

#include <tov310/window.h>

#include <QWidget>

namespace tov {

// Has the control tell changes of its content (EN_CHANGE, CBN_SELCHANGE) and clicks in WM_COMMAND. The
// buttons that dialogs know tell of clicks only in a window of the library, where they are commands; in any
// other the host's own slots do their work.
void ConnectNotices(QWidget& control, CWnd& window);

// Tells the window around.
void TellParent(CWnd& control, unsigned notification);

}  // namespace tov
