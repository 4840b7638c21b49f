#include "vesk/lock_file.h"

#include "vesk/volume.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace tov {
namespace {

std::error_code LockError(int number = errno) {
    return {number, std::generic_category()};
}

// A folder that is the user's and nobody else's; no link.
std::error_code CheckOwnFolder(std::string const& path) {
    struct stat s {};
    if (::lstat(path.c_str(), &s) != 0) return LockError();
    if (!S_ISDIR(s.st_mode)) return LockError(ENOTDIR);
    return s.st_uid == ::geteuid() && (s.st_mode & 077) == 0 ? std::error_code{} : LockError(EPERM);
}

}  // namespace

std::error_code UserRuntimeFolder(std::string& folder) {
    char const* const set = std::getenv("XDG_RUNTIME_DIR");
    if (set != nullptr && set[0] == '/' && !CheckOwnFolder(set)) {
        folder = std::string(set) + "/Tov310";
    } else {
        folder = TemporaryFolderPath() + "/Tov310-" + std::to_string(::geteuid());
    }
    if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) return LockError();
    // Others can write in the temporary directory, too: what is there already may be theirs.
    return CheckOwnFolder(folder);
}

std::string EscapedFileName(std::string_view text) {
    constexpr std::size_t mostCharacters = 56;  // an address of a socket holds 107 with the folder
    constexpr char digits[] = "0123456789ABCDEF";
    std::string name;
    std::uint64_t hash = 0xcbf29ce484222325;  // FNV-1a
    for (char const c : text) {
        auto const byte = static_cast<unsigned char>(c);
        hash = (hash ^ byte) * 0x100000001b3;
        bool const plain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                           c == '-' || c == '_';
        if (plain) {
            name += c;
        } else {
            name += {'%', digits[byte >> 4], digits[byte & 15]};
        }
    }
    if (name.size() > mostCharacters) {
        name.resize(mostCharacters);
        name += '.';  // which no shorter name has
        for (int shift = 60; shift >= 0; shift -= 4)
            name += digits[hash >> shift & 15];
    }
    return name;
}

std::error_code LockFile::Take(std::string const& path) {
    for (;;) {
        // The sticky bit keeps those away who clear old files out of such folders.
        int const file = ::open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 01600);
        if (file < 0) {
            if (errno == EINTR) continue;
            return LockError();
        }
        if (::flock(file, LOCK_EX | LOCK_NB) != 0) {
            int const reason = errno;
            ::close(file);
            if (reason == EINTR) continue;
            return LockError(reason == EWOULDBLOCK ? EEXIST : reason);
        }
        struct stat held {};
        struct stat named {};
        if (::fstat(file, &held) == 0 && ::stat(path.c_str(), &named) == 0 && held.st_ino == named.st_ino &&
            held.st_dev == named.st_dev) {
            m_path = path;
            m_descriptor = file;
            m_process = ::getpid();
            return {};
        }
        ::close(file);  // its holder has removed it between our calls
    }
}

void LockFile::Release() {
    if (m_descriptor < 0) return;
    // In a forked child the lock is still the parent's.
    if (m_process == ::getpid()) {
        ::unlink(m_path.c_str());  // while it is held: who waits for it finds it gone and makes another
        ::flock(m_descriptor, LOCK_UN);
    }
    ::close(m_descriptor);
    m_descriptor = -1;
}

}  // namespace tov
