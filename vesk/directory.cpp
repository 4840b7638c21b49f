#include "vesk/directory.h"

#include <dirent.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <climits>
#include <cstddef>

namespace tov {
namespace {

// 1970 counted from 1601 in units of 100 ns. What was before 1601 is 0.
std::uint64_t Ticks(statx_timestamp const& time) {
    constexpr std::int64_t epoch = 116'444'736'000'000'000;
    constexpr std::int64_t ticksPerSecond = 10'000'000;
    std::int64_t const seconds = std::clamp(std::int64_t{time.tv_sec}, -epoch / ticksPerSecond,
                                            INT64_MAX / ticksPerSecond - epoch / ticksPerSecond - 1);
    return static_cast<std::uint64_t>(seconds * ticksPerSecond + epoch + time.tv_nsec / 100);
}

EntryKind KindOfMode(unsigned mode) {
    switch (mode & S_IFMT) {
        case S_IFDIR:
            return EntryKind::kDirectory;
        case S_IFREG:
            return EntryKind::kFile;
        case S_IFLNK:
            return EntryKind::kLink;
        default:
            return EntryKind::kOther;
    }
}

EntryKind KindOfType(unsigned char type) {
    switch (type) {
        case DT_DIR:
            return EntryKind::kDirectory;
        case DT_REG:
            return EntryKind::kFile;
        case DT_LNK:
            return EntryKind::kLink;
        case DT_UNKNOWN:
            return EntryKind::kUnknown;
        default:
            return EntryKind::kOther;
    }
}

std::error_code AskFacts(int place, char const* name, bool followLink, EntryFacts& facts) {
    // Like the calls for a listing, this takes what a remote volume has told already.
    int const flags = AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC | (followLink ? 0 : AT_SYMLINK_NOFOLLOW) |
                      (*name == '\0' ? AT_EMPTY_PATH : 0);
    struct statx s;
    if (Uninterrupted([&] { return ::statx(place, name, flags, STATX_BASIC_STATS | STATX_BTIME, &s); }) != 0)
        return FileError();
    facts.kind = KindOfMode(s.stx_mode);
    facts.isReadOnly = (s.stx_mode & 0222) == 0;
    facts.identity = {makedev(s.stx_dev_major, s.stx_dev_minor), s.stx_ino};
    facts.size = s.stx_size;
    facts.accessed = Ticks(s.stx_atime);
    facts.written = Ticks(s.stx_mtime);
    facts.created = (s.stx_mask & STATX_BTIME) != 0
                        ? Ticks(s.stx_btime)
                        : std::min({facts.accessed, facts.written, Ticks(s.stx_ctime)});
    return {};
}

}  // namespace

std::size_t OpenFilesLimit() noexcept {
    rlimit limit{};
    return ::getrlimit(RLIMIT_NOFILE, &limit) == 0 ? limit.rlim_cur : 0;
}

std::error_code FactsOfPath(char const* path, bool followLink, EntryFacts& facts) noexcept {
    if (*path == '\0') return FileError(ENOENT);
    return AskFacts(AT_FDCWD, path, followLink, facts);
}

std::error_code Directory::Open(std::string const& path, Directory& directory) {
    constexpr std::size_t longest = PATH_MAX - 1;
    std::size_t begin = 0;
    FileDescriptor place{};
    // A path that is too long for one call is gone along in pieces.
    while (path.size() - begin > longest) {
        std::size_t const end = path.rfind('/', begin + longest - 1);
        if (end == std::string::npos || end <= begin) return FileError(ENAMETOOLONG);
        std::string const piece = path.substr(begin, end + 1 - begin);
        place = OpenDescriptorAt(begin == 0 ? AT_FDCWD : place.Get(), piece.c_str(), O_PATH | O_DIRECTORY);
        if (!place) return FileError();
        begin = std::min(path.find_first_not_of('/', end), path.size());
    }
    char const* const rest = begin == path.size() && begin != 0 ? "." : path.c_str() + begin;
    directory.m_descriptor =
        OpenDescriptorAt(begin == 0 ? AT_FDCWD : place.Get(), rest, O_RDONLY | O_DIRECTORY);
    return directory.m_descriptor ? std::error_code{} : FileError();
}

std::error_code Directory::OpenEntry(char const* name, bool followLink, Directory& directory) const noexcept {
    directory.m_descriptor =
        OpenDescriptorAt(Number(), name, O_RDONLY | O_DIRECTORY | (followLink ? 0 : O_NOFOLLOW));
    return directory.m_descriptor ? std::error_code{} : FileError();
}

std::error_code Directory::FactsOf(char const* name, bool followLink, EntryFacts& facts) const noexcept {
    return AskFacts(Number(), name, followLink, facts);
}

std::error_code Directory::RemoveFile(char const* name) const noexcept {
    return ::unlinkat(Number(), name, 0) == 0 ? std::error_code{} : FileError();
}

bool DirectoryReader::Next(Entry& entry) noexcept {
    for (;;) {
        if (m_next == m_filled) {
            auto const got =
                Uninterrupted([&] { return ::getdents64(m_directory, m_buffer.data(), m_buffer.size()); });
            // A directory that is removed while it is listed has come to its end.
            if (got < 0 && errno != ENOENT) m_failure = FileError();
            if (got <= 0) return false;
            m_filled = static_cast<std::size_t>(got);
            m_next = 0;
        }
        char const* const record = m_buffer.data() + m_next;
        auto const* const found = reinterpret_cast<dirent64 const*>(record);  // so the system lays them out
        m_next += found->d_reclen;
        std::string_view const name(record + offsetof(dirent64, d_name));
        if (name == "." || name == "..") continue;
        entry = {name, KindOfType(found->d_type)};
        return true;
    }
}

}  // namespace tov
