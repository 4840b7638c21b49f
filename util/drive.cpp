// Drives, places of the system, and what a file is by its name.
#include <tov310/file.h>
#include <tov310/path.h>

#include "frame/resource_module.h"
#include "util/file_facts.h"
#include "util/name_pattern.h"
#include "vesk/file_handle.h"
#include "vesk/module.h"
#include "vesk/volume.h"

#include <initializer_list>
#include <random>
#include <string_view>

namespace tov {
namespace {

bool IsFileThere(std::string const& path) {
    EntryFacts facts;
    return !FactsOfPath(path.c_str(), true, facts) && facts.kind != EntryKind::kDirectory;
}

bool HasExtension(std::string_view path, std::string_view extension) {
    return path.size() > extension.size() &&
           IsSameName(path.substr(path.size() - extension.size()), extension);
}

// "libproj.so.25": a module with the number of its version behind the extension.
bool IsVersionedModule(std::string_view path) {
    std::size_t const numbers = path.find_last_not_of("0123456789.");
    if (numbers == std::string_view::npos || numbers + 2 >= path.size() || path[numbers + 1] != '.')
        return false;
    return path.back() != '.' && HasExtension(path.substr(0, numbers + 1), ".so");
}

// Tries the name itself and then with the extensions; puts what is found in the argument.
template <class Accept>
int FindExecutable(CString& path, std::initializer_list<char const*> extensions, Accept accept) {
    std::string const system = SystemPath(path.c_str());
    if (IsFileThere(system) && accept(system)) return 1;
    for (char const* const extension : extensions) {
        if (!IsFileThere(system + extension)) continue;
        path += extension;
        return 1;
    }
    return 0;
}

}  // namespace

int TovPathExists(char const* path) {
    EntryFacts facts;
    return !FactsOfPath(SystemPath(path).c_str(), true, facts);
}

int TovFileIsEXE(CString& path) {
    return FindExecutable(path, {".EXE", ".exe"}, [](std::string const& system) {
        return HasExtension(system, ".exe") || MayRun(system.c_str());
    });
}

int TovFileIsDLL(CString& path) {
    return FindExecutable(path, {".DLL", ".dll", ".so"}, [](std::string const& system) {
        return HasExtension(system, ".dll") || HasExtension(system, ".so") || IsVersionedModule(system);
    });
}

int TovFileIsExecutable(CString& path) {
    return TovFileIsEXE(path) != 0 || TovFileIsDLL(path) != 0;
}

CString TovTempDirectory() {
    CString folder = TemporaryFolderPath();
    TovEnsureTrailingBackslash(folder);
    return folder;
}

CString TovTempFilename(char const* directory, char const* prefix) {
    CString const start = prefix != nullptr ? prefix : "";
    if (start.find_first_of("/\\") != CString::npos) return {};
    CString folder = directory != nullptr && *directory != '\0' ? SystemPath(directory) : TovTempDirectory();
    TovEnsureTrailingBackslash(folder);
    OpenRequest request;
    request.writes = true;
    request.isPrivate = true;
    request.disposition = OpenRequest::kCreateNew;
    std::random_device random;
    constexpr int mostTries = 100;  // two names alike are as good as impossible; a faulty volume may say so
    for (int i = 0; i < mostTries; ++i) {
        CString const path = folder + start + std::to_string(random()) + std::to_string(random()) + ".tmp";
        void* file = nullptr;
        auto const failure = OpenFileHandle(path.c_str(), request, file);
        if (failure == std::errc::file_exists) continue;
        if (failure) return {};
        CloseFileHandle(file);
        return path;
    }
    return {};
}

void TovGetAvailableDrives(unsigned int types, std::vector<CString>& drives) {
    drives.clear();
    for (Volume const& volume : MountedVolumes()) {
        if ((types >> static_cast<unsigned>(volume.kind) & 1) == 0) continue;
        drives.push_back(volume.folder);
        TovEnsureTrailingBackslash(drives.back());
    }
}

int TovDriveIsEqual(char const* a, char const* b) {
    unsigned long first = 0;
    unsigned long second = 0;
    return VolumeOf(SystemPath(a), first) && VolumeOf(SystemPath(b), second) && first == second;
}

CString TovGetDriveString(unsigned int drive) {
    return drive >= 1 && drive <= 26 ? CString{static_cast<char>('A' + drive - 1), ':'} : CString();
}

unsigned int TovGetDriveInteger(char const* path) {
    CString drive, directory, name, extension;
    TovSplitPath(path, drive, directory, name, extension);
    return drive.empty() ? 0 : (static_cast<unsigned>(drive.front()) | 0x20u) - 'a' + 1;
}

CString TovBuildShortPathname(char const* path) {
    return SystemPath(path);
}

int TovGetModulePath(HINSTANCE module, CString& path) {
    static char const here = 0;  // an address in the library
    if (module == nullptr) {
        path = VeskModulePath(nullptr);
    } else {
        path = module == TovBuiltInResourceModule() ? VeskModulePath(&here) : module->Path();
    }
    return !path.empty();
}

}  // namespace tov
