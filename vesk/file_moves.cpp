// Moves, and everything that is done to the files of a directory.
#include "vesk/file_moves.h"

#include <sys/stat.h>

#include <cstdio>
#include <string_view>
#include <utility>
#include <vector>

namespace tov {
namespace {

struct ListedFile {
    std::string name;
    bool isDirectory;       // the entry itself
    bool leadsToDirectory;  // the entry or what it links to
};

std::error_code ListFiles(Directory const& directory, std::vector<ListedFile>& files) {
    DirectoryReader reader(directory);
    DirectoryReader::Entry entry;
    while (reader.Next(entry)) {
        EntryFacts facts;
        auto const failure = directory.FactsOf(entry.name.data(), false, facts);
        if (failure == std::errc::no_such_file_or_directory) continue;
        if (failure) return failure;
        bool const isDirectory = facts.kind == EntryKind::kDirectory;
        EntryFacts target;
        bool const leads = facts.kind == EntryKind::kLink &&
                           !directory.FactsOf(entry.name.data(), true, target) &&
                           target.kind == EntryKind::kDirectory;
        files.push_back({std::string(entry.name), isDirectory, isDirectory || leads});
    }
    return reader.Failure();
}

bool HasSubdirectory(std::vector<ListedFile> const& files) {
    for (ListedFile const& file : files) {
        if (file.isDirectory) return true;
    }
    return false;
}

// Opens a directory itself, never what a link leads to.
std::error_code OpenItself(std::string const& path, Directory& directory) {
    EntryFacts facts;
    if (auto const failure = FactsOfPath(path.c_str(), false, facts)) return failure;
    if (facts.kind != EntryKind::kDirectory) return FileError(ENOTDIR);
    if (auto const failure = Directory::Open(path, directory)) return failure;
    EntryFacts opened;
    if (auto const failure = directory.FactsOf("", false, opened)) return failure;
    return opened.identity == facts.identity ? std::error_code{} : FileError(ENOTDIR);
}

std::string FolderOf(std::string const& path) {
    auto const separator = path.rfind('/');
    return separator == std::string::npos ? "." : path.substr(0, separator + 1);
}

std::string NameIn(std::string const& path) {
    return path.substr(path.rfind('/') + 1);  // npos + 1 is 0
}

// Removes the source of a copy, unless it has been changed since.
std::error_code RemoveCopied(Directory const& place, char const* name, EntryFacts const& copied) {
    EntryFacts now;
    if (auto const failure = place.FactsOf(name, false, now)) return failure;
    bool const isSame =
        now.identity == copied.identity && now.size == copied.size && now.written == copied.written;
    return isSame ? place.RemoveFile(name) : FileError(EBUSY);
}

// Whether the last part of a path is a directory's name for itself or for the one above. What is removed or
// moved goes by a name of its own, or its files would be gone before the system refuses the rest.
bool EndsInDots(std::string_view path) {
    path = path.substr(0, path.find_last_not_of('/') + 1);  // npos + 1 is 0
    std::string_view const last = path.substr(path.rfind('/') + 1);
    return last == "." || last == "..";
}

void WaitForDisk(Directory const& directory) {
    Uninterrupted([&] { return ::fsync(directory.Number()); });
}

}  // namespace

std::error_code MoveOnVolume(char const* from, char const* to) noexcept {
    if (EndsInDots(from) || EndsInDots(to)) return FileError(EINVAL);
    if (::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) return {};
    if (errno != EINVAL && errno != ENOSYS) return FileError();
    // Either the volume does not know that rename, or a directory was to go into itself.
    EntryFacts facts;
    if (!FactsOfPath(to, false, facts)) return FileError(EEXIST);
    if (auto const failure = FactsOfPath(from, false, facts)) return failure;
    // A second name is refused where one is taken. A directory cannot have one; it would replace an empty
    // directory at most.
    if (facts.kind != EntryKind::kDirectory && ::link(from, to) == 0) {
        if (::unlink(from) == 0) return {};
        auto const failure = FileError();
        ::unlink(to);
        return failure;
    }
    if (facts.kind != EntryKind::kDirectory && errno == EEXIST) return FileError();
    return ::rename(from, to) == 0 ? std::error_code{} : FileError();
}

std::error_code MoveFileAcross(std::string const& from, std::string const& to) {
    EntryFacts facts;
    if (auto const failure = FactsOfPath(from.c_str(), false, facts)) return failure;
    if (facts.kind == EntryKind::kDirectory) return FileError(EXDEV);
    std::string const name = NameIn(from);
    std::string const newName = NameIn(to);
    Directory source;
    Directory target;
    if (auto const failure = Directory::Open(FolderOf(from), source)) return failure;
    if (auto const failure = Directory::Open(FolderOf(to), target)) return failure;
    EntryFacts copied;
    if (auto const failure =
            CopyEntry(source, name.c_str(), target, newName.c_str(), {.isMove = true}, &copied))
        return failure;
    WaitForDisk(target);
    if (auto const failure = RemoveCopied(source, name.c_str(), copied)) {
        // With the source gone in between, the copy is all that is left of it.
        if (failure != std::errc::no_such_file_or_directory) target.RemoveFile(newName.c_str());
        return failure;
    }
    return {};
}

std::error_code MoveDirectoryAcross(std::string const& from, std::string const& to) {
    EntryFacts facts;
    if (auto const failure = FactsOfPath(from.c_str(), false, facts)) return failure;
    if (facts.kind == EntryKind::kLink) return MoveFileAcross(from, to);
    Directory source;
    std::vector<ListedFile> files;
    if (auto const failure = OpenItself(from, source)) return failure;
    if (auto const failure = ListFiles(source, files)) return failure;
    if (HasSubdirectory(files)) return FileError(ENOTEMPTY);

    if (::mkdir(to.c_str(), 0700) != 0) return FileError();
    Directory target;
    auto failure = OpenItself(to, target);
    std::vector<EntryFacts> copied(files.size());
    std::size_t copies = 0;
    while (!failure && copies < files.size()) {
        char const* const name = files[copies].name.c_str();
        failure = CopyEntry(source, name, target, name, {.isMove = true}, &copied[copies]);
        if (!failure) ++copies;
    }
    struct stat s {};
    if (!failure && (::fstat(source.Number(), &s) != 0 || ::fchmod(target.Number(), s.st_mode & 07777) != 0))
        failure = FileError();
    if (failure) {
        for (std::size_t i = 0; i < copies; ++i)
            target.RemoveFile(files[i].name.c_str());
        ::rmdir(to.c_str());
        return failure;
    }
    timespec const times[] = {s.st_atim, s.st_mtim};
    ::futimens(target.Number(), times);
    WaitForDisk(target);
    if (Directory above; !Directory::Open(FolderOf(to), above)) WaitForDisk(above);
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (auto const kept = RemoveCopied(source, files[i].name.c_str(), copied[i])) return kept;
    }
    return ::rmdir(from.c_str()) == 0 ? std::error_code{} : FileError();
}

std::error_code MakeDirectory(char const* path) noexcept {
    return ::mkdir(path, 0777) == 0 ? std::error_code{} : FileError();
}

std::error_code CopyFiles(std::string const& from, std::string const& to, bool failsIfExists) {
    Directory source;
    std::vector<ListedFile> files;
    if (auto const failure = Directory::Open(from, source)) return failure;
    if (auto const failure = ListFiles(source, files)) return failure;
    auto const made = MakeDirectory(to.c_str());
    if (made && made != std::errc::file_exists) return made;
    Directory target;
    auto failure = Directory::Open(to, target);
    for (ListedFile const& file : files) {
        if (failure) break;
        if (file.leadsToDirectory) continue;
        failure =
            CopyEntry(source, file.name.c_str(), target, file.name.c_str(), {.failsIfExists = failsIfExists});
    }
    if (failure && !made) ::rmdir(to.c_str());  // where nothing was copied nothing stays
    return failure;
}

std::error_code RemoveDirectory(std::string const& path) {
    if (EndsInDots(path)) return FileError(EINVAL);
    EntryFacts facts;
    if (auto const failure = FactsOfPath(path.c_str(), false, facts)) return failure;
    if (facts.kind == EntryKind::kLink) {
        EntryFacts target;
        bool const leads = !FactsOfPath(path.c_str(), true, target) && target.kind == EntryKind::kDirectory;
        if (!leads) return FileError(ENOTDIR);
        return ::unlink(path.c_str()) == 0 ? std::error_code{} : FileError();
    }
    Directory directory;
    std::vector<ListedFile> files;
    if (auto const failure = OpenItself(path, directory)) return failure;
    if (auto const failure = ListFiles(directory, files)) return failure;
    if (HasSubdirectory(files)) return FileError(ENOTEMPTY);
    for (ListedFile const& file : files) {
        auto const failure = directory.RemoveFile(file.name.c_str());
        if (failure && failure != std::errc::no_such_file_or_directory) return failure;
    }
    return ::rmdir(path.c_str()) == 0 ? std::error_code{} : FileError();
}

}  // namespace tov
