// Open files behind plain handles. A handle that is not open gives EBADF.
//
// Failures come back as error codes of the generic category; an empty code is success.
#pragma once

#include <cstdint>
#include <string_view>
#include <system_error>

namespace tov {

class Directory;

struct OpenRequest {
    enum Disposition { kCreateNew, kCreateAlways, kOpenExisting, kOpenAlways, kTruncateExisting };

    bool reads = false;
    bool writes = false;
    bool isExclusive = false;  // otherwise shared with all that ask for the same
    bool isReadOnly = false;   // of a new file
    bool isPrivate = false;    // of a new file: for the user alone
    Disposition disposition = kOpenExisting;
};

// Opens a file by its path, or by its name in a directory. The lock for sharing is one of the open file
// description (flock), asked for without waiting and before anything is emptied: EAGAIN when another has it.
// Directories give EISDIR. Null and a code on failure.
std::error_code OpenFileHandle(char const* path, OpenRequest const& request, void*& handle,
                               Directory const* place = nullptr) noexcept;
std::error_code CloseFileHandle(void* handle) noexcept;

// `got` is what could be read: less than asked for at the end and on failure.
std::error_code ReadFileHandle(void* handle, void* buffer, std::size_t length, std::size_t& got) noexcept;

// All or nothing, as far as the length of the file and the position go.
std::error_code WriteFileHandle(void* handle, std::string_view bytes) noexcept;

std::error_code SeekFileHandle(void* handle, std::int64_t position) noexcept;
std::error_code SeekFileHandleEnd(void* handle) noexcept;
std::error_code SizeOfFileHandle(void* handle, std::int64_t& size) noexcept;

}  // namespace tov
