#include "files.h"

#include <tov310/system_error.h>

#include <cerrno>
#include <cstdio>
#include <initializer_list>
#include <memory>
#include <system_error>

namespace survey {
namespace {

namespace fs = std::filesystem;

// No table of places is that long, but a device may never end.
constexpr std::size_t largestFile = std::size_t{64} << 20;

fs::path ProgramFolder() {
    std::error_code failed;
    return fs::read_symlink("/proc/self/exe", failed).parent_path();
}

// From the program to the folder share/tov310 of the same installation.
fs::path SharedFolder() {
    return ProgramFolder() / SURVEY_TO_SHARED_FOLDER;
}

fs::path FirstThatExists(std::initializer_list<fs::path> paths) {
    for (fs::path const& path : paths) {
        std::error_code failed;
        if (fs::exists(path, failed)) return path.lexically_normal();
    }
    return paths.begin()->lexically_normal();
}

unsigned long CodeOf(int error) {
    switch (error) {
        case ENOENT:
            return tov::TOV_ERROR_NOT_FOUND;
        case ENOTDIR:
            return tov::TOV_ERROR_PATH_NOT_FOUND;
        case EACCES:
        case EPERM:
            return tov::TOV_ERROR_ACCESS_DENIED;
        case ENAMETOOLONG:
            return tov::TOV_ERROR_NAME_TOO_LONG;
        case EIO:
            return tov::TOV_ERROR_IO;
        default:
            return tov::TOV_ERROR_SYSTEM_BASE + static_cast<unsigned long>(error);
    }
}

std::string Reason(int error) {
    if (error == EISDIR) return "is a folder, not a file";
    return tov::TovSystemErrorText(CodeOf(error));
}

}  // namespace

fs::path DataFile(std::string const& name) {
    return FirstThatExists({ProgramFolder() / "data" / name, SharedFolder() / "examples/survey/data" / name});
}

fs::path LanguageFolder(std::string const& language) {
    return FirstThatExists({ProgramFolder() / "res" / language, SharedFolder() / "res" / language});
}

std::string ReadFile(fs::path const& path, std::string& bytes) {
    bytes.clear();
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> const file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (!file) return Reason(errno);
    char block[16384];
    for (;;) {
        std::size_t const length = std::fread(block, 1, sizeof block, file.get());
        if (length == 0) break;
        bytes.append(block, length);
        if (bytes.size() > largestFile) return "is larger than any table of places";
    }
    return std::ferror(file.get()) != 0 ? Reason(errno) : "";
}

}  // namespace survey
