#include <tov310/file.h>
#include <tov310/file_list.h>
#include <tov310/system_error.h>

#include "support/files.h"
#include "support/temporary_folder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <optional>
#include <stdexcept>
#include <thread>

// A volume that knows neither a rename that replaces nothing nor second names.
extern "C" [[gnu::visibility("default")]] int renameat2(int, char const*, int, char const*,
                                                        unsigned) noexcept {
    return errno = EINVAL, -1;
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
        EXPECT_TRUE(TovDirectoryRemove(path, &error) == 0 && error == TOV_ERROR_INVALID_PARAMETER) << path;
        for (auto const move : {TovDirectoryMove, TovFileMove}) {
            EXPECT_TRUE(move(path, "/dev/shm/new", &error, nullptr) == 0 && error == 87) << path;
            EXPECT_TRUE(move("f", path, &error, nullptr) == 0 && error == 87) << path;
        }
        EXPECT_EQ(GetFile(folder.path() / "d/e/f"), "F") << path;
    }
}

TEST_F(FileFaults, NobodyEmptiesWhatAnotherHoldsOrWhatACopyFinds) {
    PutFile("f", "kept");
    void* const holder = TovFileOpen("f", TOV_FILE_READ, TOV_SHARE_NONE, TOV_OPEN_EXISTING, 0);
    EXPECT_EQ(TovFileCreate("f", 0, TOV_SHARE_NONE, TOV_CREATE_ALWAYS, 0, &error), nullptr);
    EXPECT_TRUE(error == TOV_ERROR_IN_USE && GetFile("f") == "kept");
    TovFileClose(holder);
    EXPECT_EQ(TovDirectoryCopy(".", "b", 1, &error), 1) << error;
    PutFile("b/f", "old");
    EXPECT_TRUE(TovDirectoryCopy(".", "b", 1, &error) == 0 && error == TOV_ERROR_FILE_EXISTS);
    EXPECT_TRUE(GetFile("b/f") == "old" && std::distance(fs::directory_iterator("b"), {}) == 1);
}

TEST_F(FileFaults, AWriterWithoutAReaderIsToldAndLives) {
    ASSERT_EQ(::mkfifo("p", 0600), 0);
    int const reader = ::open("p", O_RDONLY | O_NONBLOCK);
    void* const file = TovFileOpen("p", TOV_FILE_WRITE, TOV_SHARE_WRITE, TOV_OPEN_EXISTING, 0);
    ::close(reader);
    for (int i = 0; i < 2; ++i)
        EXPECT_TRUE(TovFileWrite(file, "x", &error) == 0 && error == TOV_ERROR_SYSTEM_BASE + EPIPE);
    sigset_t set;
    EXPECT_EQ(::pthread_sigmask(SIG_BLOCK, nullptr, &set) + ::sigismember(&set, SIGPIPE), 0);
    EXPECT_TRUE(TovFileWrite(file, nullptr, 1, &error) == 0 && error == TOV_ERROR_INVALID_PARAMETER);
    TovFileClose(file);
}

TEST_F(FileFaults, ASearchGoesOnWithFewDescriptors) {
    for (int i = 0; i < 40; ++i)
        fs::create_directories(std::to_string(i) + "/a/b/c/d/e/f/g");
    rlimit before, few{40, 0};
    ::getrlimit(RLIMIT_NOFILE, &before);
    few.rlim_max = before.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &few);
    std::vector<int> taken;
    for (int run = 0; run < 60; ++run) {
        for (int file; (file = ::open("/", O_RDONLY)) >= 0;)
            taken.push_back(file);
        for (int left = run % 6; left > 0; --left, taken.pop_back())
            ::close(taken.back());
        static int directories;
        directories = 0;
        CTovFileList list("./*", 1, 1, 0);
        list.SetCallbackSearchDirectory([](unsigned long, int, char const*) { ++directories; }, 0);
        list.DoIt();
        EXPECT_EQ(list.GetLastError(), run % 6 == 0 ? TOV_ERROR_TOO_MANY_OPEN_FILES : 0);
        EXPECT_EQ(directories, run % 6 == 0 ? 0 : 40 * 8);
    }
    for (int const file : taken)
        ::close(file);
    ::setrlimit(RLIMIT_NOFILE, &before);
}

struct Host {
    CTovFileList list{"./*", 0, 1, 0};
    int told = 0, aborted = -1;
};
Host& Of(unsigned long user) {
    return *reinterpret_cast<Host*>(user);
}

TEST_F(FileFaults, TheEndOfASearchIsToldWhenItsRecordsAreFreeAndTheyMayOutliveIt) {
    PutFile("a", "long");
    PutFile("b", "");
    std::optional<Host> host(std::in_place);
    auto const user = reinterpret_cast<unsigned long>(&*host);
    host->list.SetCallbackSearchInDirectory([](unsigned long u, int, char const*) { ++Of(u).told; }, user);
    auto const end = [](unsigned long u, int aborted) {
        std::thread([u] { Of(u).list.Sort(CTovFileList::eSortSize); }).join();
        Of(u).aborted = aborted;
        Of(u).list.Search({});  // does nothing here
        Of(u).list.Wait();
        throw std::runtime_error("of the host");
    };
    host->list.SetCallbackThreadTerminate(end, user);
    host->list.Search({});
    host->list.Wait();
    EXPECT_TRUE(host->aborted == 0 && host->told == 1 && host->list.AllFilenames().back() == "a");
    CTovFindData const empty = *host->list[0], full = *host->list[1];
    host->list.SetCallbackThreadBegin([](unsigned long u) { Of(u).list.Abort(); }, user);
    host->list.Search({});
    host->list.Wait();
    EXPECT_TRUE(host->aborted == 1 && host->told == 1) << "aborted before it was told";
    host.reset();
    EXPECT_TRUE((empty < full) == 1 && (full < empty) == 0);
    CTovFileList nowhere("/x", 0, 1, 0);
    nowhere.FindFile("a", 0);
    nowhere.DoIt();
    EXPECT_EQ(nowhere.Size() + nowhere.AllFilenames().size(), 1u) << "nothing at all is done";
    EXPECT_EQ(*nowhere[0] < *nowhere[0], 0);
}

TEST_F(FileFaults, ExtensionsAreTriedAfterAPlainFile) {
    for (CString const name : {"run", "run.exe", "lib.so.3", "lib.so.1.22", "a.so.", "a.so.x", "b.3"}) {
        PutFile(name, "");
        CString path = name;
        EXPECT_EQ(TovFileIsDLL(path), name.starts_with("lib")) << name;
    }
    CString path = "run";
    EXPECT_TRUE(TovFileIsEXE(path) == 1 && path == "run.exe");
}

}  // namespace
}  // namespace tov
