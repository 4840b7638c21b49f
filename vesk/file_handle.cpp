#include "vesk/file_handle.h"

#include "vesk/broken_pipe.h"
#include "vesk/descriptor.h"
#include "vesk/directory.h"

#include <sys/file.h>
#include <sys/stat.h>

namespace tov {
namespace {

// One more than the descriptor, so that null is none.
void* HandleOf(int descriptor) {
    return reinterpret_cast<void*>(static_cast<std::intptr_t>(descriptor) + 1);
}

int DescriptorOf(void* handle) {
    return static_cast<int>(reinterpret_cast<std::intptr_t>(handle) - 1);
}

// Some volumes have no locks; there everybody shares.
std::error_code LockForSharing(int descriptor, bool isExclusive) {
    int const kind = isExclusive ? LOCK_EX : LOCK_SH;
    if (Uninterrupted([&] { return ::flock(descriptor, kind | LOCK_NB); }) == 0) return {};
    return errno == EWOULDBLOCK ? FileError() : std::error_code{};
}

}  // namespace

std::error_code OpenFileHandle(char const* path, OpenRequest const& request, void*& handle,
                               Directory const* place) noexcept {
    using enum OpenRequest::Disposition;
    handle = nullptr;
    bool const empties = request.disposition == kCreateAlways || request.disposition == kTruncateExisting;
    if (request.disposition == kTruncateExisting && !request.writes) return FileError(EINVAL);
    bool const writes = request.writes || request.disposition == kCreateAlways;
    int flags = !writes ? O_RDONLY : request.reads ? O_RDWR : O_WRONLY;
    if (request.disposition == kCreateNew) flags |= O_CREAT | O_EXCL;
    if (request.disposition == kCreateAlways || request.disposition == kOpenAlways) flags |= O_CREAT;
    mode_t const mode = request.isPrivate ? 0600 : request.isReadOnly ? 0444 : 0666;
    // Without O_NONBLOCK a pipe would hold up the call until somebody came to its other end.
    auto file = OpenDescriptorAt(place != nullptr ? place->Number() : AT_FDCWD, path,
                                 flags | O_NOCTTY | O_NONBLOCK, mode);
    if (!file) return FileError();
    struct stat s;
    if (::fstat(file.Get(), &s) != 0) return FileError();
    if (S_ISDIR(s.st_mode)) return FileError(EISDIR);
    if (S_ISREG(s.st_mode)) {
        if (request.reads || request.writes || empties) {
            if (auto const failure = LockForSharing(file.Get(), request.isExclusive)) return failure;
        }
        if (empties && Uninterrupted([&] { return ::ftruncate(file.Get(), 0); }) != 0) return FileError();
    }
    if (int const now = ::fcntl(file.Get(), F_GETFL); now >= 0)
        ::fcntl(file.Get(), F_SETFL, now & ~O_NONBLOCK);
    handle = HandleOf(file.Release());
    return {};
}

std::error_code CloseFileHandle(void* handle) noexcept {
    // Whatever the answer is, an interruption included, the descriptor is gone.
    return ::close(DescriptorOf(handle)) == 0 || errno == EINTR ? std::error_code{} : FileError();
}

std::error_code ReadFileHandle(void* handle, void* buffer, std::size_t length, std::size_t& got) noexcept {
    got = 0;
    while (got < length) {
        auto const more = Uninterrupted(
            [&] { return ::read(DescriptorOf(handle), static_cast<char*>(buffer) + got, length - got); });
        if (more < 0) return FileError();
        if (more == 0) break;
        got += static_cast<std::size_t>(more);
    }
    if (length != 0) return {};
    struct stat s;
    return ::fstat(DescriptorOf(handle), &s) == 0 ? std::error_code{} : FileError();
}

std::error_code WriteFileHandle(void* handle, std::string_view bytes) noexcept {
    int const descriptor = DescriptorOf(handle);
    struct stat before;
    if (::fstat(descriptor, &before) != 0) return FileError();
    BrokenPipeGuard const guard(before.st_mode);
    std::size_t done = 0;
    while (done < bytes.size()) {
        auto const written =
            Uninterrupted([&] { return ::write(descriptor, bytes.data() + done, bytes.size() - done); });
        if (written <= 0) {
            auto const failure = FileError(written == 0 ? ENOSPC : errno);
            if (done != 0 && S_ISREG(before.st_mode)) {
                auto const position = ::lseek(descriptor, -static_cast<off_t>(done), SEEK_CUR);
                struct stat now;
                if (position >= 0 && ::fstat(descriptor, &now) == 0 && now.st_size > before.st_size) {
                    [[maybe_unused]] int const cut = ::ftruncate(descriptor, before.st_size);
                }
            }
            return failure;
        }
        done += static_cast<std::size_t>(written);
    }
    return {};
}

std::error_code SeekFileHandle(void* handle, std::int64_t position) noexcept {
    return ::lseek(DescriptorOf(handle), position, SEEK_SET) >= 0 ? std::error_code{} : FileError();
}

std::error_code SeekFileHandleEnd(void* handle) noexcept {
    return ::lseek(DescriptorOf(handle), 0, SEEK_END) >= 0 ? std::error_code{} : FileError();
}

std::error_code SizeOfFileHandle(void* handle, std::int64_t& size) noexcept {
    struct stat s;
    if (::fstat(DescriptorOf(handle), &s) != 0) return FileError();
    size = s.st_size;
    return {};
}

}  // namespace tov
