#include "vesk/append_file.h"

#include "vesk/broken_pipe.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <thread>

namespace tov {
namespace {

std::error_code AppendError(int number = errno) {
    return {number, std::generic_category()};
}

// The turn of one writer, held through the file itself.
class Turn {
 public:
    explicit Turn(int descriptor) : m_descriptor(descriptor) {}
    Turn(Turn const&) = delete;
    Turn& operator=(Turn const&) = delete;
    ~Turn() {
        if (m_taken) ::flock(m_descriptor, LOCK_UN);
    }

    std::error_code Take(std::chrono::milliseconds patience) {
        auto const end = std::chrono::steady_clock::now() + patience;
        for (auto pause = std::chrono::microseconds{50};;) {
            if (::flock(m_descriptor, LOCK_EX | LOCK_NB) == 0) {
                m_taken = true;
                return {};
            }
            if (errno != EWOULDBLOCK && errno != EINTR) return {};  // nothing that can be locked
            if (std::chrono::steady_clock::now() >= end) return AppendError(ETIMEDOUT);
            std::this_thread::sleep_for(pause);
            pause = std::min(pause * 2, std::chrono::microseconds{2000});
        }
    }

 private:
    int m_descriptor;
    bool m_taken = false;
};

std::error_code WriteFully(int descriptor, std::string_view bytes, std::chrono::milliseconds patience) {
    while (!bytes.empty()) {
        auto const written = ::write(descriptor, bytes.data(), bytes.size());
        if (written > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (written == 0) {
            return AppendError(ENOSPC);
        } else if (errno == EAGAIN) {
            pollfd ready{descriptor, POLLOUT, 0};
            if (::poll(&ready, 1, static_cast<int>(patience.count())) == 0) return AppendError(ETIMEDOUT);
        } else if (errno != EINTR) {
            return AppendError();
        }
    }
    return {};
}

}  // namespace

std::error_code AppendToFile(char const* path, std::string_view bytes, std::chrono::milliseconds patience,
                             bool& opened) {
    int file = -1;
    do {
        // A pipe without a reader must not hold the caller.
        file =
            ::open(path, O_WRONLY | O_CREAT | O_APPEND | O_DSYNC | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666);
    } while (file < 0 && errno == EINTR);
    opened = file >= 0;
    if (!opened) return AppendError();
    auto const error = AppendToDescriptor(file, bytes, patience);
    ::close(file);
    return error;
}

std::error_code AppendToDescriptor(int descriptor, std::string_view bytes,
                                   std::chrono::milliseconds patience) {
    Turn turn(descriptor);
    if (auto const error = turn.Take(patience)) return error;
    struct stat before {};
    if (::fstat(descriptor, &before) != 0) return AppendError();
    bool const appends = (::fcntl(descriptor, F_GETFL) & O_APPEND) != 0;
    off_t const position = ::lseek(descriptor, 0, SEEK_CUR);
    BrokenPipeGuard const guard(before.st_mode);
    auto const error = WriteFully(descriptor, bytes, patience);
    if (error && S_ISREG(before.st_mode)) {
        // Half a line is worse than none. Bytes in the middle of a file were overwritten and cannot come
        // back.
        if (appends || position == before.st_size) [[maybe_unused]]
            int const cut = ::ftruncate(descriptor, before.st_size);
        if (!appends) ::lseek(descriptor, position, SEEK_SET);
    }
    return error;
}

}  // namespace tov
