// Who shows help.
#pragma once

#include <tov310/export.h>

namespace tov {

class CWinApp;

// The application that serves the help requests of the library's windows; null stands for the application
// itself (TovGetApp). It stays the caller's, and is forgotten when it dies.
TOV_CORE_API void TovSetHelpApp(CWinApp* app);

class TOV_CORE_API CTovHelpApp {
 public:
    // The one that is asked now; null when there is no application at all.
    static CWinApp* Get();

    // Has it show a topic (CWinApp::WinHelp) and gives its answer; 0 without an application.
    static int ShowHelp(unsigned long topic);
};

}  // namespace tov
