#include "platform/help_request.h"

#include <tov310/qt_values.h>
#include <tov310/tov_dialog.h>
#include <tov310/wnd_on.h>

namespace tov {

HELPINFO HelpRequest(QWidget* about, QWidget const& host, QPoint const& place) {
    HELPINFO info;
    info.MousePos = TovPoint(place);
    if (CWnd const* const control = about != &host ? TovWnd(about) : nullptr) {
        info.hItemHandle = control->GetSafeHwnd();
        info.iCtrlId = control->GetDlgCtrlID();
    }
    for (QWidget const* w = about; w != nullptr && w != &host && info.dwContextId == 0; w = w->parentWidget())
        info.dwContextId = w->property(tovHelpIdProperty).toUInt();
    return info;
}

}  // namespace tov
