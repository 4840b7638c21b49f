// The application object of a host.
#pragma once

#include <tov310/window.h>

namespace tov {

// Holds what belongs to the application as a whole: here the place of its own settings, beside those that the
// library keeps. A host derives from it and may keep its settings elsewhere by overriding the two operations.
class TOV_CORE_API CWinApp : public CCmdTarget {
    TOV_DYNCREATE(CWinApp, CCmdTarget)
 public:
    CWinApp() = default;
    ~CWinApp() override;

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
};

}  // namespace tov
