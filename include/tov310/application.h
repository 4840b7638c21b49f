// The application object of a host.
#pragma once

#include <tov310/window.h>

namespace tov {

// Holds what belongs to the application as a whole: its main window, its help, and the place of its own
// settings, beside those that the library keeps. A host derives from it and may keep its settings elsewhere
// by overriding the two operations.
class TOV_CORE_API CWinApp : public CCmdTarget {
    TOV_DYNCREATE(CWinApp, CCmdTarget)
 public:
    CWinApp();  // is the one of TovGetApp when there is none yet
    ~CWinApp() override;

    // The window that stands for the application; 0 for none and when it is dead. To be set on the
    // user-interface thread, which asks for it.
    HWND GetMainWnd() const;
    void SetMainWnd(HWND window);

    // Shows a topic of the host's help. Answers 1, or 0 as here, where there is no help.
    virtual int WinHelp(unsigned long topic);

    // Where the settings are, as CTovProfileEntries understands paths. By default the file "<program>.INI" in
    // the user's configuration folder, named for the running program without its extension; null or an empty
    // path brings that back.
    CString GetProfilePath() const;
    void SetProfilePath(char const* path);

    // The value of an entry, or the default where there is none; null counts as an empty text.
    virtual CString GetProfileString(char const* section, char const* entry,
                                     char const* defaultValue = nullptr);

    // Answers 1, or 0 when nothing was written. A null value deletes the entry, a null entry the section.
    virtual int WriteProfileString(char const* section, char const* entry, char const* value);

 private:
    CString m_profilePath;
    HWND m_mainWnd;
};

// The application of the process: the first of the living CWinApp objects to be made; null where there is
// none.
TOV_CORE_API CWinApp* TovGetApp();

}  // namespace tov
