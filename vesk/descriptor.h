// File descriptors and error codes, for the sources of this folder alone.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace tov {

inline std::error_code FileError(int number = errno) {
    return {number, std::generic_category()};
}

// Repeats a call that a signal interrupted.
template <class Call>
auto Uninterrupted(Call call) {
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

class FileDescriptor {
 public:
    explicit FileDescriptor(int number = -1) : m_number(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~FileDescriptor() {
        if (m_number >= 0) ::close(m_number);
    }
    explicit operator bool() const { return m_number >= 0; }
    int Get() const { return m_number; }
    int Release() { return std::exchange(m_number, -1); }

 private:
    int m_number;
};

// `directory` is the descriptor that a relative path starts from. Not open, with errno set, on failure.
inline FileDescriptor OpenDescriptorAt(int directory, char const* path, int flags, mode_t mode = 0) {
    return FileDescriptor{Uninterrupted([&] { return ::openat(directory, path, flags | O_CLOEXEC, mode); })};
}

inline FileDescriptor OpenDescriptor(char const* path, int flags, mode_t mode = 0) {
    return OpenDescriptorAt(AT_FDCWD, path, flags, mode);
}

}  // namespace tov
