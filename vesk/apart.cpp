#include "vesk/apart.h"

#include "vesk/descriptor.h"

#include <poll.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif

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

void CloseDescriptors(unsigned first, unsigned last) {
    if (first > last || ::close_range(first, last, 0) == 0) return;
    auto const end = std::min<std::uint64_t>(last, static_cast<std::uint64_t>(::sysconf(_SC_OPEN_MAX)));
    for (std::uint64_t number = first; number <= end; ++number)
        ::close(static_cast<int>(number));
}

// Leaves the copy one descriptor alone: it may not write into what the host has open, and the ends of other
// pipes must not live on in it. Answers its number, which is beyond those of standard input and output.
int KeepOnly(int descriptor) {
    int const kept = ::fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (kept < 0) ::_exit(1);
    CloseDescriptors(0, static_cast<unsigned>(kept) - 1);
    CloseDescriptors(static_cast<unsigned>(kept) + 1, ~0U);
    for (int standard = 0; standard <= STDERR_FILENO; ++standard)
        OpenDescriptor("/dev/null", O_RDWR).Release();  // the lowest number that is free
    return kept;
}

[[noreturn]] void RunCopy(ApartLimits const& limits, std::uint64_t reserved,
                          std::function<void(ApartPipe&)> const& work, int writer,
                          ApartPipe::Clock::time_point end) {
    DropHandlers();
    // Nobody is left to end the copy of a host that was killed.
    ::alarm(static_cast<unsigned>(std::max<std::int64_t>(limits.time.count(), 1)));
#ifdef __linux__
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
    ApartPipe pipe(KeepOnly(writer), end);
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

// The copy as this process sees it. A host that waits for any child, or ignores the ends of all, may make the
// system forget the copy at any time, and its number may then belong to another process. A descriptor always
// stands for the copy.
class ApartCopy {
 public:
    explicit ApartCopy(pid_t number) : m_number(number) {
#ifdef SYS_pidfd_open
        m_handle = FileDescriptor{static_cast<int>(::syscall(SYS_pidfd_open, number, 0))};
        m_isForgotten = !m_handle && errno == ESRCH;
#endif
    }
    ApartCopy(ApartCopy const&) = delete;
    ApartCopy& operator=(ApartCopy const&) = delete;

    // However the work ends, the copy must go: it may hang, or be in the middle of a write.
    ~ApartCopy() {
        int const before = errno;
        if (m_handle) {
            EndByHandle();
        } else if (!m_isForgotten &&
                   Uninterrupted([&] { return ::waitpid(m_number, nullptr, WNOHANG); }) == 0) {
            ::kill(m_number, SIGKILL);
            Uninterrupted([&] { return ::waitpid(m_number, nullptr, 0); });
        }
        errno = before;
    }

 private:
    void EndByHandle() {
#ifdef SYS_pidfd_open
        ::syscall(SYS_pidfd_send_signal, m_handle.Get(), SIGKILL, nullptr, 0);
        constexpr auto byHandle = static_cast<idtype_t>(3);  // P_PIDFD, which not all headers have
        siginfo_t end{};
        Uninterrupted([&] { return ::waitid(byHandle, static_cast<id_t>(m_handle.Get()), &end, WEXITED); });
#endif
    }

    pid_t m_number;
    FileDescriptor m_handle;
    bool m_isForgotten = false;
};

// No handler of the host may run in the copy. 0 there; less than 0 on failure.
pid_t ForkWithoutSignals() {
    sigset_t all;
    sigset_t before;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    pid_t const copy = ::fork();
    if (copy != 0) ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return copy;
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
    pid_t const number = ForkWithoutSignals();
    if (number < 0) return false;
    if (number == 0) RunCopy(limits, reserved, work, writer.Get(), end);
    writer = FileDescriptor{};
    ApartCopy const copy(number);
    ApartPipe pipe(reader.Get(), end);
    return take(pipe);
}

}  // namespace tov
