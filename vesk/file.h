// Files as the library needs them: read whole, written whole or not at all, locked against other writers, and
// told apart by their stamps. Everything that asks the operating system about files stands behind this
// header.
//
// Failures come back as error codes of the generic category; an empty code is success.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <system_error>

namespace tov {

// Tells one state of a file from another. Times are nanoseconds since 1970 by the clock of the file system;
// `changed` moves with every write and every rename.
struct FileStamp {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    std::int64_t modified = 0;
    std::int64_t changed = 0;

    bool IsSameFile(FileStamp const& other) const { return device == other.device && inode == other.inode; }
    friend bool operator==(FileStamp const&, FileStamp const&) = default;
};

std::error_code StatFile(char const* path, FileStamp& stamp) noexcept;

// Now, by the clock that file times are taken from.
std::int64_t FileClock() noexcept;

// Whether the code says that there is no such file: neither it nor the folder that it should stand in.
bool IsMissing(std::error_code error) noexcept;

// Reads a regular file; anything else (a folder, a device, a pipe) is refused, so that no read can block.
// The stamp is that of the state that was read.
std::error_code ReadWholeFile(char const* path, std::string& bytes, FileStamp* stamp = nullptr);

// Puts a file with these bytes in place of the old one: whoever reads, now or after a loss of power, finds
// the old file or the new one. A link is written through, the mode of an existing file is kept, and its owner
// and group where the process may set them. The folder must exist. Other hard links keep the old text.
std::error_code WriteWholeFile(char const* path, std::string_view bytes, FileStamp* stamp = nullptr);

// The same for a file that somebody else writes: `write` gets the path of an empty file beside the target,
// which is put in its place when all is written. An error that it answers leaves everything as it was.
std::error_code WriteWholeFileBy(char const* path,
                                 std::function<std::error_code(char const* temporary)> const& write);

// The sole right to change a file, among all processes and threads that ask for it the same way. The lock is
// taken on a hidden sibling that is removed afterwards. A sibling left by a process that was killed does no
// harm: the system has dropped its lock, and the next writer takes the file over. So is its temporary file.
class LockedFile {
 public:
    LockedFile() = default;
    LockedFile(LockedFile const&) = delete;
    LockedFile& operator=(LockedFile const&) = delete;
    ~LockedFile();

    // Waits for other writers. `timed_out` after the given time: somebody was stopped while he wrote.
    std::error_code Open(char const* path, std::chrono::milliseconds patience = std::chrono::seconds{30});

    // As the two functions above; only while open.
    std::error_code Read(std::string& bytes) const;
    std::error_code Replace(std::string_view bytes, FileStamp* stamp = nullptr) const;

 private:
    std::string m_target;  // behind all links
    std::string m_lock;
    int m_descriptor = -1;
};

// The folder for the settings of the user, without a separator at the end: $XDG_CONFIG_HOME where it is an
// absolute path, else .config in the home folder. It need not exist.
std::string UserConfigFolder();

// Makes the folder and those above it, for the user alone. A folder that is there already is a success.
std::error_code MakePrivateFolder(std::string const& path);

// File name of the running program, without folder.
std::string ExecutableName();

// Registers functions that run around every fork: one before it, one after it in parent and child. What holds
// locks or connections to files lets go of them there.
void OnFork(void (*before)(), void (*after)());

}  // namespace tov
