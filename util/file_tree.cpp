// Files and directories by their paths.
#include <tov310/file.h>
#include <tov310/file_list.h>
#include <tov310/path.h>

#include "util/file_error.h"
#include "util/file_facts.h"
#include "util/name_pattern.h"
#include "vesk/error_codes.h"
#include "vesk/file_handle.h"
#include "vesk/file_moves.h"

#include <memory>
#include <string_view>

namespace tov {
namespace {

// An open listing.
struct DirectoryFind {
    Directory directory;
    std::unique_ptr<DirectoryReader> reader;
    NamePattern pattern;

    // 18 at the end.
    unsigned long Next(WIN32_FIND_DATAA* data) {
        DirectoryReader::Entry entry;
        while (reader->Next(entry)) {
            if (!pattern.Matches(entry.name)) continue;
            EntryFacts facts;
            auto const failure = directory.FactsOf(entry.name.data(), false, facts);
            if (failure == std::errc::no_such_file_or_directory) continue;  // gone in between
            bool const isLink = facts.kind == EntryKind::kLink;
            EntryFacts target;
            if (isLink && !directory.FactsOf(entry.name.data(), true, target)) facts = target;
            if (data != nullptr) FillFindData(entry.name, isLink, facts, *data);
            return TOV_ERROR_NONE;
        }
        auto const failure = reader->Failure();
        return failure ? VeskErrorCode(failure.value()) : TOV_ERROR_NO_MORE_FILES;
    }
};

// Null with a code when the directory cannot be opened.
std::unique_ptr<DirectoryFind> OpenFind(std::string const& path, unsigned long& code) {
    auto const separator = path.rfind('/');
    bool const isBare = separator == std::string::npos;
    Directory directory;
    if (auto const failure = Directory::Open(isBare ? "." : path.substr(0, separator + 1), directory)) {
        code = VeskErrorCode(failure.value(), VeskOperation::kPath);
        return nullptr;
    }
    auto find = std::make_unique<DirectoryFind>(DirectoryFind{
        std::move(directory), nullptr,
        NamePattern(isBare ? std::string_view(path) : std::string_view(path).substr(separator + 1))});
    find->reader = std::make_unique<DirectoryReader>(find->directory);
    return find;
}

// A path without the separators at its end, which would follow a link.
std::string ItselfPath(char const* path) {
    std::string system = SystemPath(path);
    while (system.size() > 1 && system.back() == '/')
        system.pop_back();
    return system;
}

// The code of a failed move or copy: which of the two paths is missing decides.
unsigned long TwoPathsErrorCode(std::error_code failure, std::string const& from) {
    if (failure != std::errc::no_such_file_or_directory)
        return VeskErrorCode(failure.value(), VeskOperation::kCreate);
    EntryFacts facts;
    return FactsOfPath(from.c_str(), false, facts) ? PathErrorCode(failure, from) : TOV_ERROR_PATH_NOT_FOUND;
}

}  // namespace

int TovFileFind(char const* path, unsigned long* error, CString* message) {
    FileReport const report(error, message);
    std::string const system = SystemPath(path);
    if (system.substr(system.rfind('/') + 1).find_first_of("*?") == std::string::npos) {
        EntryFacts facts;
        auto failure = FactsOfPath(system.c_str(), true, facts);
        if (failure == std::errc::no_such_file_or_directory)
            failure = FactsOfPath(system.c_str(), false, facts);  // a link that leads nowhere is there
        if (failure) return report.Result(PathErrorCode(failure, system));
        return report.Result(facts.kind == EntryKind::kDirectory ? TOV_ERROR_NOT_FOUND : TOV_ERROR_NONE);
    }
    unsigned long code = TOV_ERROR_NONE;
    auto const find = OpenFind(system, code);
    if (find == nullptr) return report.Result(code);
    WIN32_FIND_DATAA data;
    do {
        code = find->Next(&data);
    } while (code == TOV_ERROR_NONE && data.IsDirectory());
    return report.Result(code == TOV_ERROR_NO_MORE_FILES ? TOV_ERROR_NOT_FOUND : code);
}

int TovFileHide(char const* path, unsigned long* error, CString* message) {
    FileReport const report(error, message);
    std::string const system = SystemPath(path);
    EntryFacts facts;
    if (auto const failure = FactsOfPath(system.c_str(), false, facts))
        return report.Result(PathErrorCode(failure, system));
    bool const isHidden = system[system.rfind('/') + 1] == '.';  // npos + 1 is 0
    return report.Result(isHidden ? TOV_ERROR_NONE : TOV_ERROR_NOT_SUPPORTED);
}

int TovFileMove(char const* from, char const* to, unsigned long* error, CString* message) {
    FileReport const report(error, message);
    std::string const source = SystemPath(from);
    std::string const target = SystemPath(to);
    auto failure = MoveOnVolume(source.c_str(), target.c_str());
    if (failure == std::errc::cross_device_link) failure = MoveFileAcross(source, target);
    return failure ? report.Result(TwoPathsErrorCode(failure, source)) : 1;
}

void* TovDirectoryFind(char const* path, WIN32_FIND_DATAA* data, unsigned long* error, CString* message) {
    FileReport const report(error, message);
    if (data != nullptr) *data = {};
    unsigned long code = TOV_ERROR_NONE;
    auto find = OpenFind(SystemPath(path), code);
    if (find != nullptr) code = find->Next(data);
    if (report.Result(code == TOV_ERROR_NO_MORE_FILES ? TOV_ERROR_NOT_FOUND : code) == 0) return nullptr;
    return find.release();
}

int TovDirectoryFindNext(void* find, WIN32_FIND_DATAA* data, unsigned long* error, CString* message) {
    FileReport const report(error, message);
    if (find == nullptr) return report.Result(TOV_ERROR_INVALID_HANDLE);
    return report.Result(static_cast<DirectoryFind*>(find)->Next(data));
}

void TovDirectoryFindClose(void* find) {
    std::unique_ptr<DirectoryFind> const last(static_cast<DirectoryFind*>(find));
}

int TovDirectoryExist(char const* path, unsigned long* error, CString* message) {
    FileReport const report(error, message);
    EntryFacts facts;
    if (auto const failure = FactsOfPath(SystemPath(path).c_str(), true, facts))
        return report.Result(VeskErrorCode(failure.value(), VeskOperation::kPath));
    return report.Result(facts.kind == EntryKind::kDirectory ? TOV_ERROR_NONE : TOV_ERROR_PATH_NOT_FOUND);
}

int TovDirectoryCreate(char const* path, unsigned long* error, CString* message) {
    FileReport const report(error, message);
    auto const failure = MakeDirectory(SystemPath(path).c_str());
    if (failure == std::errc::no_such_file_or_directory) return report.Result(TOV_ERROR_PATH_NOT_FOUND);
    return report.Result(VeskErrorCode(failure.value(), VeskOperation::kCreate));
}

unsigned int TovFileCount(char const* pattern, unsigned long* error, CString* message) {
    FileReport const report(error, message);
    CTovFileList const list(pattern, 0, 0, 1);
    report.Result(list.GetLastError());
    return list.Size();
}

int TovFileInUse(char const* pattern, unsigned long* error, CString* message) {
    FileReport const report(error, message);
    CTovFileList const list(pattern, 0, 0, 1);
    if (list.Failed() != 0) {
        report.Result(list.GetLastError());
        return 0;
    }
    // The names are opened in the directory, where none of them is taken for a path.
    std::string const system = SystemPath(pattern);
    Directory directory;
    if (list.Size() == 0) return 0;
    if (Directory::Open(system.substr(0, system.rfind('/') + 1), directory)) return 1;
    OpenRequest request;
    request.writes = true;
    request.isExclusive = true;
    for (CString const& name : list.AllFilenames()) {
        void* file = nullptr;
        if (OpenFileHandle(name.c_str(), request, file, &directory)) return 1;
        CloseFileHandle(file);
    }
    return 0;
}

int TovDirectoryCopy(char const* from, char const* to, int failIfExists, unsigned long* error,
                     CString* message) {
    FileReport const report(error, message);
    std::string source = SystemPath(from);
    std::string target = SystemPath(to);
    TovEnsureTrailingBackslash(source);
    TovEnsureTrailingBackslash(target);
    auto const failure = CopyFiles(source, target, failIfExists != 0);
    if (failure == std::errc::file_exists) return report.Result(TOV_ERROR_FILE_EXISTS);
    // What is missing is one of the directories, or a file that was gone when its turn came.
    EntryFacts facts;
    bool const isThere =
        !FactsOfPath(source.c_str(), true, facts) && !FactsOfPath(target.c_str(), true, facts);
    return report.Result(
        VeskErrorCode(failure.value(), isThere ? VeskOperation::kFile : VeskOperation::kPath));
}

int TovDirectoryRemove(char const* path, unsigned long* error, CString* message) {
    FileReport const report(error, message);
    auto const failure = RemoveDirectory(ItselfPath(path));
    return report.Result(VeskErrorCode(failure.value(), VeskOperation::kPath));
}

int TovDirectoryMove(char const* from, char const* to, unsigned long* error, CString* message) {
    FileReport const report(error, message);
    std::string const source = ItselfPath(from);
    std::string const target = ItselfPath(to);
    auto failure = MoveOnVolume(source.c_str(), target.c_str());
    if (failure == std::errc::cross_device_link) failure = MoveDirectoryAcross(source, target);
    return failure ? report.Result(TwoPathsErrorCode(failure, source)) : 1;
}

}  // namespace tov
