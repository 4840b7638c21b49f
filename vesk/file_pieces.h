// Files that are read piece by piece, for those that are too large to be held whole.
#pragma once

#include <cstddef>
#include <cstdint>
#include <system_error>

namespace tov {

class FilePieces {
 public:
    FilePieces() = default;
    FilePieces(FilePieces const&) = delete;
    FilePieces& operator=(FilePieces const&) = delete;
    ~FilePieces();

    // Opens a regular file; anything else (a folder, a device, a pipe) is refused, so that no read can block.
    // Once.
    std::error_code Open(char const* path);

    // In bytes, when it was opened.
    std::uint64_t Size() const { return m_size; }

    // Reads on; `got` is less than asked for at the end and on failure only.
    std::error_code Read(char* buffer, std::size_t length, std::size_t& got);

    // Whether nobody has written since it was opened.
    bool IsAsItWas() const;

 private:
    int m_descriptor = -1;
    std::uint64_t m_size = 0;
    std::int64_t m_written = 0;  // by the clock of the file system
};

}  // namespace tov
