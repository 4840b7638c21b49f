// Files by POSIX calls. See the header for what is promised.
#include "vesk/file.h"

#include "vesk/descriptor.h"

#include <pthread.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <thread>
#include <utility>
#include <vector>

namespace tov {
namespace {

std::int64_t Nanoseconds(timespec const& time) {
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

FileStamp StampOf(struct stat const& s) {
    return {s.st_dev, s.st_ino, s.st_size, Nanoseconds(s.st_mtim), Nanoseconds(s.st_ctim)};
}

// Folder (with its separator; empty for the current one) and name.
std::pair<std::string, std::string> SplitFolder(std::string const& path) {
    auto const separator = path.rfind('/');
    if (separator == std::string::npos) return {{}, path};
    return {path.substr(0, separator + 1), path.substr(separator + 1)};
}

// What a chain of links finally names, even where that does not exist yet.
std::error_code ResolveLinks(char const* path, std::string& target) {
    constexpr int mostLinks = 40;  // as many as the system itself follows
    target = path;
    for (int i = 0; i < mostLinks; ++i) {
        std::array<char, PATH_MAX> link;
        auto const length = ::readlink(target.c_str(), link.data(), link.size());
        if (length < 0) return {};  // no link; whether it exists is the caller's question
        std::string next(link.data(), static_cast<std::size_t>(length));
        target = next.starts_with('/') ? next : SplitFolder(target).first + next;
    }
    return FileError(ELOOP);
}

std::error_code WriteAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        auto const written = Uninterrupted([&] { return ::write(descriptor, bytes.data(), bytes.size()); });
        if (written < 0) return FileError();
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return {};
}

// Fills a new file under the temporary name and renames it. The temporary file never outlives a failure.
// `write` gets its descriptor.
template <class Write>
std::error_code ReplaceThrough(std::string const& temporary, std::string const& target, Write write,
                               FileStamp* stamp) {
    struct stat old {};
    bool const exists = ::stat(target.c_str(), &old) == 0;
    if (!exists && errno != ENOENT) return FileError();
    // A rename would put a plain file in the place of a device or a pipe.
    if (exists && !S_ISREG(old.st_mode)) return FileError(S_ISDIR(old.st_mode) ? EISDIR : EINVAL);

    auto const file =
        OpenDescriptor(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, exists ? 0600 : 0666);
    if (!file) return FileError();
    auto const fill = [&]() -> std::error_code {
        if (std::error_code const error = write(file.Get())) return error;
        if (exists) {
            // A stranger's file cannot be given back to him; the text matters more than the owner.
            [[maybe_unused]] int const given = ::fchown(file.Get(), old.st_uid, old.st_gid);
            if (::fchmod(file.Get(), old.st_mode & 07777) != 0) return FileError();
        }
        if (Uninterrupted([&] { return ::fsync(file.Get()); }) != 0) return FileError();
        if (::rename(temporary.c_str(), target.c_str()) != 0) return FileError();
        return {};
    };
    if (auto const error = fill()) {
        ::unlink(temporary.c_str());
        return error;
    }
    // From here on the new file is in force for every reader, so nothing below is a failure.
    auto const folder = SplitFolder(target).first;
    if (auto const place = OpenDescriptor(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY)) {
        Uninterrupted([&] { return ::fsync(place.Get()); });
    }
    struct stat now {};
    if (stamp != nullptr) *stamp = ::fstat(file.Get(), &now) == 0 ? StampOf(now) : FileStamp{};
    return {};
}

// The temporary file gets a name that nobody else takes; `write` gets its path and its descriptor.
template <class Write>
std::error_code ReplaceWholeFile(char const* path, Write write, FileStamp* stamp = nullptr) {
    std::string target;
    if (auto const error = ResolveLinks(path, target)) return error;
    static std::atomic<unsigned> counter{0};
    auto const [folder, name] = SplitFolder(target);
    for (;;) {
        auto const temporary =
            folder + '.' + name + '.' + std::to_string(::getpid()) + '-' + std::to_string(++counter) + ".tmp";
        auto const error = ReplaceThrough(
            temporary, target, [&](int file) { return write(temporary.c_str(), file); }, stamp);
        if (error != std::errc::file_exists) return error;
    }
}

}  // namespace

std::error_code StatFile(char const* path, FileStamp& stamp) noexcept {
    struct stat s;
    if (::stat(path, &s) != 0) return FileError();
    stamp = StampOf(s);
    return {};
}

std::int64_t FileClock() noexcept {
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
    return Nanoseconds(now);
}

bool IsMissing(std::error_code error) noexcept {
    return error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory;
}

std::error_code ReadWholeFile(char const* path, std::string& bytes, FileStamp* stamp) {
    bytes.clear();
    auto const file = OpenDescriptor(path, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    if (!file) return FileError();
    constexpr int mostTries = 8;
    for (int i = 0; i < mostTries; ++i) {
        struct stat before {};
        if (::fstat(file.Get(), &before) != 0) return FileError();
        if (!S_ISREG(before.st_mode)) return FileError(S_ISDIR(before.st_mode) ? EISDIR : EINVAL);
        // One byte more than expected, so that one read also sees the end.
        std::size_t filled = 0;
        bytes.resize(static_cast<std::size_t>(before.st_size) + 1);
        for (;;) {
            if (filled == bytes.size()) bytes.resize(bytes.size() * 2);
            auto const got = Uninterrupted([&] {
                return ::pread(file.Get(), bytes.data() + filled, bytes.size() - filled,
                               static_cast<off_t>(filled));
            });
            if (got < 0) return FileError();
            if (got == 0) break;
            filled += static_cast<std::size_t>(got);
        }
        bytes.resize(filled);
        struct stat after {};
        if (::fstat(file.Get(), &after) != 0) return FileError();
        // An editor may have been writing into the file; what was read would be a mixture.
        bool const still = before.st_size == after.st_size &&
                           Nanoseconds(before.st_mtim) == Nanoseconds(after.st_mtim) &&
                           filled == static_cast<std::size_t>(after.st_size);
        if (still) {
            if (stamp != nullptr) *stamp = StampOf(after);
            return {};
        }
    }
    bytes.clear();
    return FileError(EBUSY);
}

std::error_code WriteWholeFile(char const* path, std::string_view bytes, FileStamp* stamp) {
    return ReplaceWholeFile(
        path, [&](char const*, int file) { return WriteAll(file, bytes); }, stamp);
}

std::error_code WriteWholeFileBy(char const* path,
                                 std::function<std::error_code(char const* temporary)> const& write) {
    return ReplaceWholeFile(path, [&](char const* temporary, int) { return write(temporary); });
}

LockedFile::~LockedFile() {
    if (m_descriptor < 0) return;
    // Removed while still locked: whoever waits for this lock finds its file gone and asks again. Unlocked by
    // name and not only by closing, since a child forked meanwhile shares the lock.
    ::unlink(m_lock.c_str());
    ::flock(m_descriptor, LOCK_UN);
    ::close(m_descriptor);
}

std::error_code LockedFile::Open(char const* path, std::chrono::milliseconds patience) {
    if (auto const error = ResolveLinks(path, m_target)) return error;
    auto const [folder, name] = SplitFolder(m_target);
    if (name.empty()) return FileError(EISDIR);
    m_lock = folder + '.' + name + ".lock";
    auto const end = std::chrono::steady_clock::now() + patience;
    for (auto pause = std::chrono::microseconds{50};;) {
        auto file = OpenDescriptor(m_lock.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW, 0666);
        if (!file) return FileError();
        if (::flock(file.Get(), LOCK_EX | LOCK_NB) == 0) {
            struct stat held {};
            struct stat named {};
            if (::fstat(file.Get(), &held) == 0 && ::stat(m_lock.c_str(), &named) == 0 &&
                held.st_ino == named.st_ino && held.st_dev == named.st_dev) {
                m_descriptor = file.Release();
                return {};
            }
            continue;  // its holder has removed it between our two calls
        }
        if (errno != EWOULDBLOCK && errno != EINTR) return FileError();
        if (std::chrono::steady_clock::now() >= end) return FileError(ETIMEDOUT);
        std::this_thread::sleep_for(pause);
        pause = std::min(pause * 2, std::chrono::microseconds{2000});
    }
}

std::error_code LockedFile::Read(std::string& bytes) const {
    return ReadWholeFile(m_target.c_str(), bytes);
}

std::error_code LockedFile::Replace(std::string_view bytes, FileStamp* stamp) const {
    // One name for all writers: they come one after another, and what a killed one left is cleared away.
    auto const [folder, name] = SplitFolder(m_target);
    auto const temporary = folder + '.' + name + ".tmp";
    ::unlink(temporary.c_str());
    return ReplaceThrough(
        temporary, m_target, [&](int file) { return WriteAll(file, bytes); }, stamp);
}

std::string UserConfigFolder() {
    std::string folder;
    char const* const set = std::getenv("XDG_CONFIG_HOME");
    if (set != nullptr && set[0] == '/') {
        folder = set;
    } else {
        char const* home = std::getenv("HOME");
        passwd record{};
        passwd* found = nullptr;
        std::vector<char> buffer;
        if (home == nullptr || home[0] != '/') {
            buffer.resize(16384);
            ::getpwuid_r(::getuid(), &record, buffer.data(), buffer.size(), &found);
            home = found != nullptr ? found->pw_dir : "";
        }
        folder = std::string(home) + "/.config";
    }
    while (folder.size() > 1 && folder.ends_with('/'))
        folder.pop_back();
    return folder;
}

std::error_code MakePrivateFolder(std::string const& path) {
    if (::mkdir(path.c_str(), 0700) == 0) return {};
    if (errno == ENOENT) {
        auto const separator = path.rfind('/');
        if (separator == std::string::npos || separator == 0) return FileError(ENOENT);
        if (auto const error = MakePrivateFolder(path.substr(0, separator))) return error;
        if (::mkdir(path.c_str(), 0700) == 0) return {};
    }
    if (errno != EEXIST) return FileError();
    struct stat s {};
    if (::stat(path.c_str(), &s) != 0) return FileError();
    return S_ISDIR(s.st_mode) ? std::error_code{} : FileError(ENOTDIR);
}

std::string ExecutableName() {
    std::string path;
    if (auto const error = ResolveLinks("/proc/self/exe", path)) return {};
    constexpr std::string_view deleted = " (deleted)";  // put there by the system for a replaced program
    if (path.ends_with(deleted)) path.resize(path.size() - deleted.size());
    return SplitFolder(path).second;
}

void OnFork(void (*before)(), void (*after)()) {
    ::pthread_atfork(before, after, after);
}

}  // namespace tov
