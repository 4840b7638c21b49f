// The copy of one file.
#include "vesk/file_moves.h"

#include <sys/stat.h>
#include <sys/xattr.h>

#include <array>
#include <atomic>
#include <climits>
#include <cstdio>
#include <memory>
#include <vector>

namespace tov {
namespace {

std::error_code CopyBytes(int from, int to, std::int64_t size) {
    // Within a volume the system may share the blocks. What it does not want to do, or a file whose size is
    // not told, is read and written.
    while (size > 0) {
        auto const some = Uninterrupted(
            [&] { return ::copy_file_range(from, nullptr, to, nullptr, static_cast<std::size_t>(size), 0); });
        if (some < 0 && (errno == ENOSPC || errno == EDQUOT || errno == EIO || errno == EFBIG))
            return FileError();
        if (some <= 0) break;
        size -= some;
    }
    constexpr std::size_t chunk = 128 * 1024;
    auto const buffer = std::make_unique_for_overwrite<char[]>(chunk);
    for (;;) {
        auto const got = Uninterrupted([&] { return ::read(from, buffer.get(), chunk); });
        if (got < 0) return FileError();
        if (got == 0) return {};
        for (std::size_t done = 0; done < static_cast<std::size_t>(got);) {
            auto const written = Uninterrupted(
                [&] { return ::write(to, buffer.get() + done, static_cast<std::size_t>(got) - done); });
            if (written < 0) return FileError();
            done += static_cast<std::size_t>(written);
        }
    }
}

// What hangs on a file besides its bytes. A volume that does not keep it is no failure.
void CopyExtendedAttributes(int from, int to) {
    std::vector<char> names(XATTR_LIST_MAX);
    auto const length = ::flistxattr(from, names.data(), names.size());
    std::vector<char> value(XATTR_SIZE_MAX);
    for (char const* name = names.data(); length > 0 && name < names.data() + length;
         name += std::char_traits<char>::length(name) + 1) {
        auto const size = ::fgetxattr(from, name, value.data(), value.size());
        if (size >= 0) ::fsetxattr(to, name, value.data(), static_cast<std::size_t>(size), 0);
    }
}

// A name of its own in the target directory, short whatever the file is called.
class TemporaryEntry {
 public:
    explicit TemporaryEntry(Directory const& place) : m_place(place.Number()) {
        static std::atomic<unsigned> counter{0};
        std::snprintf(m_name.data(), m_name.size(), ".tov-%ld-%u.tmp", static_cast<long>(::getpid()),
                      ++counter);
    }
    TemporaryEntry(TemporaryEntry const&) = delete;
    TemporaryEntry& operator=(TemporaryEntry const&) = delete;
    ~TemporaryEntry() {
        if (m_isMade) ::unlinkat(m_place, m_name.data(), 0);
    }
    char const* Name() const { return m_name.data(); }
    void SetMade() { m_isMade = true; }

    // Under its name at last.
    std::error_code Rename(char const* name, bool failsIfExists) {
        if (!failsIfExists) {
            if (::renameat(m_place, m_name.data(), m_place, name) != 0) return FileError();
        } else if (::renameat2(m_place, m_name.data(), m_place, name, RENAME_NOREPLACE) != 0) {
            if (errno != EINVAL && errno != ENOSYS) return FileError();
            // The volume does not know that rename. A second name is refused where one is taken, too.
            if (::linkat(m_place, m_name.data(), m_place, name, 0) == 0) return {};
            if (errno != EPERM && errno != ENOTSUP && errno != ENOSYS && errno != EMLINK) return FileError();
            // Nor does it have second names. There is nothing left but to look and then to rename.
            struct stat s;
            if (::fstatat(m_place, name, &s, AT_SYMLINK_NOFOLLOW) == 0) return FileError(EEXIST);
            if (errno != ENOENT || ::renameat(m_place, m_name.data(), m_place, name) != 0) return FileError();
        }
        m_isMade = false;
        return {};
    }

 private:
    int m_place;
    bool m_isMade = false;
    std::array<char, 48> m_name{};
};

std::error_code CopyLink(Directory const& from, char const* name, Directory const& to, char const* newName,
                         bool failsIfExists) {
    std::vector<char> target(PATH_MAX + 1);
    auto const length = ::readlinkat(from.Number(), name, target.data(), target.size() - 1);
    if (length < 0) return FileError();
    target[static_cast<std::size_t>(length)] = '\0';
    TemporaryEntry link(to);
    if (::symlinkat(target.data(), to.Number(), link.Name()) != 0) return FileError();
    link.SetMade();
    return link.Rename(newName, failsIfExists);
}

}  // namespace

std::error_code CopyEntry(Directory const& from, char const* name, Directory const& to, char const* newName,
                          CopyRequest const& request, EntryFacts* copied) {
    EntryFacts own;
    if (auto const failure = from.FactsOf(name, false, own)) return failure;
    if (copied != nullptr) *copied = own;
    EntryFacts source = own;
    bool const isLink = own.kind == EntryKind::kLink;
    bool const staysLink = isLink && (request.isMove || from.FactsOf(name, true, source));
    EntryFacts target;
    if (!to.FactsOf(newName, true, target) && target.identity == source.identity && !staysLink)
        return FileError(EBUSY);
    if (!to.FactsOf(newName, false, target)) {
        if (target.identity == own.identity) return FileError(EBUSY);
        if (request.failsIfExists) return FileError(EEXIST);
        if (target.kind == EntryKind::kDirectory) return FileError(EISDIR);
    }
    if (staysLink) return CopyLink(from, name, to, newName, request.failsIfExists);
    if (source.kind != EntryKind::kFile) return FileError(ENOTSUP);

    auto const input =
        OpenDescriptorAt(from.Number(), name, O_RDONLY | O_NONBLOCK | O_NOCTTY | (isLink ? 0 : O_NOFOLLOW));
    struct stat s;
    if (!input || ::fstat(input.Get(), &s) != 0) return FileError();
    if (!S_ISREG(s.st_mode)) return FileError(ENOTSUP);  // exchanged in between
    TemporaryEntry made(to);
    auto output = OpenDescriptorAt(to.Number(), made.Name(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
    if (!output) return FileError();
    made.SetMade();
    if (auto const failure = CopyBytes(input.Get(), output.Get(), s.st_size)) return failure;
    if (request.isMove) {
        [[maybe_unused]] int const given = ::fchown(output.Get(), s.st_uid, s.st_gid);
        CopyExtendedAttributes(input.Get(), output.Get());
    }
    timespec const times[] = {s.st_atim, s.st_mtim};
    if (::fchmod(output.Get(), s.st_mode & 0777) != 0 || ::futimens(output.Get(), times) != 0)
        return FileError();
    if (request.isMove && Uninterrupted([&] { return ::fsync(output.Get()); }) != 0) return FileError();
    if (::close(output.Release()) != 0 && errno != EINTR) return FileError();
    return made.Rename(newName, request.failsIfExists);
}

}  // namespace tov
