#include "files.h"

#include <tov310/file.h>
#include <tov310/system_error.h>

#include <fstream>
#include <initializer_list>
#include <system_error>

namespace survey {
namespace {

namespace fs = std::filesystem;

// No table of places is that long, but a device may never end.
constexpr std::size_t largestFile = std::size_t{64} << 20;

fs::path ProgramFolder() {
    tov::CString program;
    tov::TovGetModulePath(nullptr, program);
    return fs::path(program).parent_path();
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

// Why a file cannot be opened.
std::string Reason(fs::path const& path) {
    if (tov::TovDirectoryExist(path.c_str())) return "is a folder, not a file";
    tov::CString why;
    void* const file = tov::TovFileOpen(path.c_str(), tov::TOV_FILE_READ, tov::TOV_SHARE_READ,
                                        tov::TOV_OPEN_EXISTING, 0, nullptr, &why);
    if (file != nullptr) tov::TovFileClose(file);
    return file == nullptr ? why : "was missing a moment ago";
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
    // A stream, for a table may come through a pipe, whose length nobody knows.
    std::ifstream file(path, std::ios::binary);
    std::error_code failed;
    if (!file || fs::is_directory(path, failed)) return Reason(path);
    char block[16384];
    while (file.read(block, sizeof block), file.gcount() > 0) {
        bytes.append(block, static_cast<std::size_t>(file.gcount()));
        if (bytes.size() > largestFile) return "is larger than any table of places";
    }
    return file.bad() ? tov::TovSystemErrorText(tov::TOV_ERROR_IO) : "";
}

}  // namespace survey
