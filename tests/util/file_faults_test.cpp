#include <tov310/file.h>
#include <tov310/system_error.h>

#include "support/files.h"
#include "support/temporary_folder.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

// Volumes that know neither a rename that replaces nothing nor second names.
static bool isPoorVolume = false;
extern "C" [[gnu::visibility("default")]] int renameat2(int from, char const* name, int to,
                                                        char const* newName, unsigned flags) noexcept {
    if (!isPoorVolume && flags == RENAME_NOREPLACE &&
        ::faccessat(to, newName, F_OK, AT_SYMLINK_NOFOLLOW) == 0)
        return errno = EEXIST, -1;
    return isPoorVolume ? (errno = EINVAL, -1) : ::renameat(from, name, to, newName);
}
extern "C" [[gnu::visibility("default")]] int linkat(int, char const*, int, char const*, int) noexcept {
    return errno = EPERM, -1;
}

namespace tov {
namespace {

namespace fs = std::filesystem;
using test::GetFile;
using test::PutFile;

class FileFaults : public testing::Test {
 protected:
    FileFaults() { fs::current_path(folder.path()); }
    ~FileFaults() override { fs::current_path("/"); }
    test::TemporaryFolder folder;
    unsigned long error = 0;
};

TEST_F(FileFaults, PathsThatEndInDotsAreNeitherRemovedNorMoved) {
    fs::create_directories("d/e");
    PutFile("d/e/f", "F");
    fs::create_directory_symlink("d/e", "link");
    for (char const* const path : {"d/e/.", "link/.", "d/e/./", "d\\e\\.", "d/e/x/..", "."}) {
        fs::current_path(*path == '.' ? folder.path() / "d/e" : folder.path());
        EXPECT_EQ(TovDirectoryRemove(path, &error), 0) << path;
        EXPECT_EQ(error, TOV_ERROR_INVALID_PARAMETER) << path;
        for (auto const move : {TovDirectoryMove, TovFileMove}) {
            EXPECT_TRUE(move(path, "/dev/shm/new", &error, nullptr) == 0 && error == 87) << path;
            EXPECT_TRUE(move("f", path, &error, nullptr) == 0 && error == 87) << path;
        }
        EXPECT_EQ(GetFile(folder.path() / "d/e/f"), "F") << path;
    }
    fs::current_path(folder.path());
    fs::create_directory("...");
    EXPECT_EQ(TovDirectoryRemove("...", &error), 1);
}

TEST_F(FileFaults, NobodyEmptiesWhatAnotherHolds) {
    PutFile("f", "kept");
    void* const holder = TovFileOpen("f", TOV_FILE_READ, TOV_SHARE_NONE, TOV_OPEN_EXISTING, 0);
    EXPECT_EQ(TovFileCreate("f", 0, TOV_SHARE_NONE, TOV_CREATE_ALWAYS, 0, &error), nullptr);
    EXPECT_EQ(error, TOV_ERROR_IN_USE);
    EXPECT_EQ(GetFile("f"), "kept");
    TovFileClose(holder);
}

TEST_F(FileFaults, AWriterWithoutAReaderIsToldAndLives) {
    ASSERT_EQ(::mkfifo("p", 0600), 0);
    int const reader = ::open("p", O_RDONLY | O_NONBLOCK);
    void* const file = TovFileOpen("p", TOV_FILE_WRITE, TOV_SHARE_WRITE, TOV_OPEN_EXISTING, 0);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(TovFileWrite(file, "x", &error), 1);
    ::close(reader);
    for (int i = 0; i < 2; ++i)
        EXPECT_TRUE(TovFileWrite(file, "x", &error) == 0 && error == TOV_ERROR_SYSTEM_BASE + EPIPE);
    sigset_t blocked;
    EXPECT_EQ(::pthread_sigmask(SIG_BLOCK, nullptr, &blocked) + ::sigismember(&blocked, SIGPIPE), 0);
    EXPECT_TRUE(TovFileWrite(file, nullptr, 1, &error) == 0 && error == TOV_ERROR_INVALID_PARAMETER);
    TovFileClose(file);
}

TEST_F(FileFaults, PoorVolumesTakeCopiesButLoseNothing) {
    fs::create_directories("a");
    PutFile("a/f", "new");
    isPoorVolume = true;
    EXPECT_EQ(TovDirectoryCopy("a", "b", 1, &error), 1) << error;
    PutFile("b/f", "old");
    EXPECT_EQ(TovDirectoryCopy("a", "b", 1, &error), 0);
    EXPECT_EQ(error, TOV_ERROR_FILE_EXISTS);
    isPoorVolume = false;
    EXPECT_EQ(GetFile("b/f"), "old");
    EXPECT_EQ(std::distance(fs::directory_iterator("b"), {}), 1);
}

TEST_F(FileFaults, ExtensionsAreTriedAfterAPlainFile) {
    for (char const* const name : {"run", "run.exe", "lib.so.3", "lib.so.1.22", "a.so.", "a.so.x", "b.3"})
        PutFile(name, "");
    for (CString const name : {"lib.so.3", "lib.so.1.22", "a.so.", "a.so.x", "b.3"}) {
        CString path = name;
        EXPECT_EQ(TovFileIsDLL(path), name.starts_with("lib")) << name;
    }
    CString path = "run";
    EXPECT_TRUE(TovFileIsEXE(path) == 1 && path == "run.exe");
}

}  // namespace
}  // namespace tov
