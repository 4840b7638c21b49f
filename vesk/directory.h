// Listings of directories. An open directory stands for itself, wherever its path leads meanwhile: entries
// are asked for, opened and removed by the name that the listing gave, which is never cut into a path again.
//
// Failures come back as error codes of the generic category; an empty code is success.
#pragma once

#include "vesk/descriptor.h"

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>

namespace tov {

enum class EntryKind : unsigned char { kUnknown, kDirectory, kFile, kLink, kOther };

// Tells one directory or file from another while both are there.
struct EntryIdentity {
    std::uint64_t device = 0;
    std::uint64_t number = 0;

    friend auto operator<=>(EntryIdentity const&, EntryIdentity const&) = default;
};

// Times count units of 100 ns since 1601.
struct EntryFacts {
    EntryKind kind = EntryKind::kUnknown;
    bool isReadOnly = false;  // nobody may write
    EntryIdentity identity;
    std::uint64_t size = 0;
    std::uint64_t created = 0;  // where the volume does not keep it, the oldest of the others
    std::uint64_t accessed = 0;
    std::uint64_t written = 0;
};

// How many files the process may have open at once.
std::size_t OpenFilesLimit() noexcept;

// Facts of what a path names.
std::error_code FactsOfPath(char const* path, bool followLink, EntryFacts& facts) noexcept;

class Directory {
 public:
    // The path may be of any length.
    static std::error_code Open(std::string const& path, Directory& directory);

    // Opens an entry of this directory.
    std::error_code OpenEntry(char const* name, bool followLink, Directory& directory) const noexcept;

    // Facts of an entry; an empty name stands for the directory itself.
    std::error_code FactsOf(char const* name, bool followLink, EntryFacts& facts) const noexcept;

    std::error_code RemoveFile(char const* name) const noexcept;

    // The place that names are relative to in the calls of this folder.
    int Number() const { return m_descriptor.Get(); }

    explicit operator bool() const { return static_cast<bool>(m_descriptor); }

 private:
    FileDescriptor m_descriptor;
};

// Goes through the entries of a directory, "." and ".." left out, in the order in which the volume keeps
// them.
class DirectoryReader {
 public:
    // Valid until the next call; the name ends in a zero.
    struct Entry {
        std::string_view name;
        EntryKind kind;  // unknown where the volume does not tell
    };

    // The directory must outlive the reader, and have no other one.
    explicit DirectoryReader(Directory const& directory) : m_directory(directory.Number()) {}

    // False at the end, which a failure brings too.
    bool Next(Entry& entry) noexcept;

    std::error_code Failure() const { return m_failure; }

 private:
    int m_directory;
    std::error_code m_failure;
    std::size_t m_filled = 0;
    std::size_t m_next = 0;
    alignas(8) std::array<char, 32768> m_buffer;
};

}  // namespace tov
