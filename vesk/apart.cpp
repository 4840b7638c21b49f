#include "vesk/apart.h"

#include "vesk/descriptor.h"

#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <climits>
#include <csignal>
#include <fstream>

namespace tov {
namespace {

void LimitResource(decltype(RLIMIT_AS) resource, std::uint64_t most) {
    rlimit limit{};
    if (::getrlimit(resource, &limit) != 0) return;
    limit.rlim_cur = std::min<rlim_t>(limit.rlim_max, most);
    limit.rlim_max = limit.rlim_cur;
    ::setrlimit(resource, &limit);
}

// Bytes of address space that this process has reserved.
std::uint64_t ReservedMemory() {
    std::uint64_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages * static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
}

// The copy must not run what the host set up for itself: handlers that report a crash, or that save a
// document.
void DropHandlers() {
    struct sigaction plain {};
    plain.sa_handler = SIG_DFL;
    for (int signal = 1; signal < NSIG; ++signal)
        ::sigaction(signal, &plain, nullptr);
    sigset_t none;
    ::sigemptyset(&none);
    ::pthread_sigmask(SIG_SETMASK, &none, nullptr);
}

[[noreturn]] void RunCopy(ApartLimits const& limits, std::uint64_t reserved,
                          std::function<void(ApartPipe&)> const& work, ApartPipe pipe) {
    DropHandlers();
    if (auto const nothing = OpenDescriptor("/dev/null", O_WRONLY)) ::dup2(nothing.Get(), STDERR_FILENO);
    LimitResource(RLIMIT_CORE, 0);
    LimitResource(RLIMIT_FSIZE, 0);
    LimitResource(RLIMIT_CPU, static_cast<std::uint64_t>(limits.time.count()));
    if (limits.memory > 0) LimitResource(RLIMIT_AS, reserved + limits.memory);
    try {
        work(pipe);
    } catch (...) {
        // What has been written so far tells that it was not all.
    }
    ::_exit(0);
}

}  // namespace

bool ApartPipe::Write(void const* bytes, std::size_t count) {
    auto const* next = static_cast<char const*>(bytes);
    while (count > 0) {
        auto const done = Uninterrupted([&] { return ::write(m_descriptor, next, count); });
        if (done <= 0) return false;
        next += done;
        count -= static_cast<std::size_t>(done);
    }
    return true;
}

bool ApartPipe::Read(void* bytes, std::size_t count) {
    auto* next = static_cast<char*>(bytes);
    while (count > 0) {
        auto const left = std::chrono::ceil<std::chrono::milliseconds>(m_end - Clock::now()).count();
        if (left <= 0) return false;
        pollfd wait{m_descriptor, POLLIN, 0};
        int const ready = ::poll(&wait, 1, static_cast<int>(std::min<decltype(left + 0)>(left, INT_MAX)));
        if (ready < 0 && errno == EINTR) continue;
        if (ready <= 0) return false;
        auto const done = Uninterrupted([&] { return ::read(m_descriptor, next, count); });
        if (done <= 0) return false;
        next += done;
        count -= static_cast<std::size_t>(done);
    }
    return true;
}

bool VeskRunApart(ApartLimits const& limits, std::function<void(ApartPipe&)> const& work,
                  std::function<bool(ApartPipe&)> const& take) {
    auto const end = ApartPipe::Clock::now() + limits.time;
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return false;
    FileDescriptor reader{ends[0]};
    FileDescriptor writer{ends[1]};
#ifdef F_SETPIPE_SZ
    ::fcntl(writer.Get(), F_SETPIPE_SZ, 1 << 20);  // a refusal only costs time
#endif
    std::uint64_t const reserved = ReservedMemory();
    pid_t const copy = ::fork();
    if (copy < 0) return false;
    if (copy == 0) {
        reader = FileDescriptor{};
        RunCopy(limits, reserved, work, ApartPipe(writer.Get(), end));
    }
    writer = FileDescriptor{};

    // However `take` ends, the copy must go: it may hang, or be in the middle of a write.
    struct Reaper {
        pid_t copy;
        ~Reaper() {
            int const before = errno;
            ::kill(copy, SIGKILL);
            Uninterrupted([&] { return ::waitpid(copy, nullptr, 0); });
            errno = before;
        }
    } const reaper{copy};
    ApartPipe pipe(reader.Get(), end);
    return take(pipe);
}

}  // namespace tov
