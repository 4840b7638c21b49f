#include "vesk/process.h"

#include "vesk/descriptor.h"
#include "vesk/volume.h"

#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace tov {
namespace {

// What comes through the pipe: first a failure to start, or 0, and later how the program ended.
bool ReadReport(int descriptor, int& number) {
    return Uninterrupted([&] { return ::read(descriptor, &number, sizeof number); }) == sizeof number;
}

void WriteReport(int descriptor, int number) {
    [[maybe_unused]] auto const written =
        Uninterrupted([&] { return ::write(descriptor, &number, sizeof number); });
}

// Between fork and exec only calls are allowed that a signal handler may make.
[[noreturn]] void BecomeProgram(char const* path, char* const* arguments, int report) {
    for (int number = 1; number < NSIG; ++number)
        ::signal(number, SIG_DFL);
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    ::execv(path, arguments);
    WriteReport(report, errno);
    ::_exit(127);
}

// Stays beside the program to tell how it ends; nobody waits for this process itself but the system.
[[noreturn]] void WatchProgram(char const* path, char* const* arguments, int report) {
    ::setsid();
    // Files and locks of the caller are let go, and whoever reads what it writes does not wait for this
    // process.
    constexpr int kept = STDERR_FILENO + 1;
    if (report != kept) {
        ::dup3(report, kept, O_CLOEXEC);
        report = kept;
    }
    ::close_range(kept + 1, ~0U, 0);
    // The number may be one of the three already, where the caller has closed them.
    int const nothing = ::open("/dev/null", O_RDWR);
    for (int standard = 0; standard <= STDERR_FILENO; ++standard)
        ::dup2(nothing, standard);
    if (nothing > STDERR_FILENO) ::close(nothing);
    ::signal(SIGCHLD, SIG_DFL);  // else ends would be lost
    ::signal(SIGPIPE, SIG_IGN);  // the caller may have lost its patience
    int start[2];
    if (::pipe2(start, O_CLOEXEC) != 0) {
        WriteReport(report, errno);
        ::_exit(1);
    }
    pid_t const program = ::_Fork();
    if (program == 0) BecomeProgram(path, arguments, start[1]);
    int failure = program < 0 ? errno : 0;
    ::close(start[1]);
    if (program > 0 && !ReadReport(start[0], failure)) failure = 0;  // closed by the new program
    WriteReport(report, failure);
    int status = 0;
    if (program > 0) Uninterrupted([&] { return ::waitpid(program, &status, 0); });
    WriteReport(report, WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status));
    ::_exit(0);
}

}  // namespace

std::string FindProgram(std::string const& name) {
    char const* const set = std::getenv("PATH");
    std::string_view folders = set != nullptr ? set : "/usr/local/bin:/usr/bin:/bin";
    for (;;) {
        auto const end = folders.find(':');
        std::string path(folders.substr(0, end));
        // A folder that is named by where one happens to be is none to start programs from.
        if (path.starts_with('/')) {
            path += '/';
            path += name;
            struct stat facts {};
            bool const isFile = ::stat(path.c_str(), &facts) == 0 && S_ISREG(facts.st_mode);
            if (isFile && MayRun(path.c_str())) return path;
        }
        if (end == folders.npos) return {};
        folders.remove_prefix(end + 1);
    }
}

std::error_code StartProgram(std::string const& path, std::vector<std::string> const& arguments,
                             std::chrono::milliseconds patience, int& exitCode) {
    exitCode = 0;
    std::vector<char*> words{const_cast<char*>(path.c_str())};
    for (std::string const& argument : arguments)
        words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);

    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) return FileError();
    FileDescriptor const report(ends[0]);
    FileDescriptor told(ends[1]);
    // Nobody is interrupted between fork and exec: handlers of the host know nothing of the copies.
    sigset_t all;
    sigset_t before;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    pid_t const between = ::_Fork();
    if (between == 0) {
        // The child of a child that is gone belongs to the system, which takes notice of its end.
        if (::_Fork() == 0) WatchProgram(words[0], words.data(), told.Get());
        ::_exit(0);
    }
    auto const forked = between < 0 ? FileError() : std::error_code();
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    if (forked) return forked;
    told = FileDescriptor();
    Uninterrupted([&] { return ::waitpid(between, nullptr, 0); });

    int number = 0;
    if (!ReadReport(report.Get(), number)) return FileError(EAGAIN);
    if (number != 0) return FileError(number);
    auto const end = std::chrono::steady_clock::now() + patience;
    for (;;) {
        auto const left =
            std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        pollfd wait{report.Get(), POLLIN, 0};
        int const ready = ::poll(&wait, 1, static_cast<int>(std::max<std::int64_t>(left.count(), 0)));
        if (ready < 0 && errno == EINTR) continue;
        if (ready > 0 && ReadReport(report.Get(), number)) exitCode = number;
        return {};
    }
}

}  // namespace tov
