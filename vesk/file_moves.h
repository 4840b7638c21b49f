// Files and directories as wholes: copied, moved, removed.
//
// What a function cannot finish it takes back as far as it can, and never at the cost of the source. Names of
// entries come from listings and are used as they stand, relative to their directory.
//
// Failures come back as error codes of the generic category; an empty code is success.
#pragma once

#include "vesk/directory.h"

#include <string>
#include <system_error>

namespace tov {

struct CopyRequest {
    bool failsIfExists = true;  // EEXIST; otherwise what is there is replaced, a link as a link
    bool isMove = false;        // keeps links as links and owners where it may, and waits for the disk
};

// Copies one file to a name in a directory, with its mode and times, whole or not at all. A
// link is copied as the file that it leads to, one that leads nowhere as a link. EBUSY for a file onto
// itself, ENOTSUP for what is no file. `copied` are the facts of the source, as of before.
std::error_code CopyEntry(Directory const& from, char const* name, Directory const& to, char const* newName,
                          CopyRequest const& request, EntryFacts* copied = nullptr);

// Gives a file, a link or a directory another path on the same volume; EEXIST when that is taken, EXDEV when
// it lies on another volume, EINVAL for a path that ends in "." or "..".
std::error_code MoveOnVolume(char const* from, char const* to) noexcept;

// The same to another volume. EXDEV for a directory given to the first; ENOTEMPTY from the second for one
// with subdirectories, before anything happens.
std::error_code MoveFileAcross(std::string const& from, std::string const& to);
std::error_code MoveDirectoryAcross(std::string const& from, std::string const& to);

std::error_code MakeDirectory(char const* path) noexcept;

// Copies the files of a directory to another, which is made where it is missing.
std::error_code CopyFiles(std::string const& from, std::string const& to, bool failsIfExists);

// Removes a directory with its files, or a link to a directory. ENOTEMPTY, with nothing removed, when it has
// subdirectories; EINVAL for a path that ends in "." or "..".
std::error_code RemoveDirectory(std::string const& path);

}  // namespace tov
