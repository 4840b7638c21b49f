// Texts of paths.
#include <tov310/path.h>

#include <string_view>

namespace tov {
namespace {

constexpr std::string_view pathSeparators = "/\\";

constexpr bool IsPathSeparator(char c) {
    return pathSeparators.find(c) != std::string_view::npos;
}

constexpr bool IsDriveLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

constexpr std::string_view PathPart(char const* text) {
    return text != nullptr ? std::string_view(text) : std::string_view();
}

}  // namespace

void TovEnsureTrailingBackslash(CString& path) {
    if (!path.empty() && !IsPathSeparator(path.back())) path += '/';
}

void TovRemoveTrailingBackslash(CString& path) {
    if (path.size() > 1 && IsPathSeparator(path.back())) path.pop_back();
}

void TovSplitPath(char const* path, CString& drive, CString& directory, CString& name, CString& extension) {
    // A copy, since an output may be the very text that the path points into.
    CString const copy(PathPart(path));
    std::string_view rest = copy;
    auto const take = [&rest](CString& part, std::size_t count) {
        part = rest.substr(0, count);
        rest.remove_prefix(part.size());
    };
    take(drive, rest.size() > 1 && IsDriveLetter(rest[0]) && rest[1] == ':' ? 2 : 0);
    take(directory, rest.find_last_of(pathSeparators) + 1);  // npos + 1 is 0
    auto const dot = rest.rfind('.');
    bool const allName = dot == std::string_view::npos || dot == 0 || rest == "..";
    take(name, allName ? rest.size() : dot);
    extension = rest;
}

CString TovMakePath(char const* drive, char const* directory, char const* name, char const* extension) {
    CString path;
    if (auto const part = PathPart(drive); !part.empty()) {
        path = part.front();
        path += ':';
    }
    if (auto const part = PathPart(directory); !part.empty()) {
        path += part;
        TovEnsureTrailingBackslash(path);
    }
    path += PathPart(name);
    if (auto const part = PathPart(extension); !part.empty()) {
        if (part.front() != '.') path += '.';
        path += part;
    }
    return path;
}

}  // namespace tov
