// The application's own store among the profile entries.
#include <tov310/application.h>
#include <tov310/path.h>
#include <tov310/profile.h>

#include "vesk/file.h"

namespace tov {

CString CWinApp::GetProfilePath() const {
    if (!m_profilePath.empty()) return m_profilePath;
    CString drive;
    CString directory;
    CString name;
    CString extension;
    TovSplitPath(ExecutableName().c_str(), drive, directory, name, extension);
    return TovMakePath(nullptr, UserConfigFolder().c_str(), name.c_str(), ".INI");
}

void CWinApp::SetProfilePath(char const* path) {
    m_profilePath = path != nullptr ? path : "";
    TovRemoveTrailingBackslash(m_profilePath);
}

CString CWinApp::GetProfileString(char const* section, char const* entry, char const* defaultValue) {
    return CTovProfileEntries::ReadProfileString(GetProfilePath().c_str(), section, entry, defaultValue);
}

int CWinApp::WriteProfileString(char const* section, char const* entry, char const* value) {
    return CTovProfileEntries::WriteProfileStringA(GetProfilePath().c_str(), section, entry, value);
}

}  // namespace tov
