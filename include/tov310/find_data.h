// What a listing of a directory tells of one entry.
#pragma once

#include <tov310/time_types.h>
#include <tov310/types.h>

#include <cstdint>

namespace tov {

// Bits of WIN32_FIND_DATAA::dwFileAttributes and of the attributes that TovFileCreate takes.
inline constexpr unsigned long TOV_ATTRIBUTE_READONLY = 1;    // nobody may write
inline constexpr unsigned long TOV_ATTRIBUTE_HIDDEN = 2;      // the name begins with a dot
inline constexpr unsigned long TOV_ATTRIBUTE_DIRECTORY = 16;  // a directory, or a link to one
inline constexpr unsigned long TOV_ATTRIBUTE_NORMAL = 128;    // none of the others
inline constexpr unsigned long TOV_ATTRIBUTE_LINK = 1024;     // a symbolic link

// One entry of a directory. Of a link it tells the size and times of what the link leads to; of one that
// leads nowhere its own.
struct WIN32_FIND_DATAA {
    unsigned long dwFileAttributes = 0;
    FILETIME ftCreationTime;  // where the volume does not keep it: the oldest of the times that it keeps
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    std::uint32_t nFileSizeHigh = 0;  // upper half of the size in bytes
    std::uint32_t nFileSizeLow = 0;
    CString cFileName;           // without directory, of any length, byte for byte as it stands on the volume
    CString cAlternateFileName;  // the short name, which is the name

    std::uint64_t FileSize() const { return std::uint64_t{nFileSizeHigh} << 32 | nFileSizeLow; }
    bool IsDirectory() const { return (dwFileAttributes & TOV_ATTRIBUTE_DIRECTORY) != 0; }
};

}  // namespace tov
