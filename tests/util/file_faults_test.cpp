#include <tov310/file.h>
#include <tov310/file_list.h>
#include <tov310/system_error.h>

#include "support/files.h"
#include "support/temporary_folder.h"
#include "vesk/cpu.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

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
        for (auto const move : {TovDirectoryMove, TovFileMove})
            EXPECT_TRUE(move(path, "/dev/shm/new", &error, nullptr) + move("f", path, &error, nullptr) == 0 &&
                        error == 87);
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
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    void* const file =
        TovFileOpen(("/dev/fd/" + std::to_string(ends[1])).c_str(), TOV_FILE_WRITE, 1, TOV_OPEN_EXISTING, 0);
    ::close(ends[0]);
    for (int i = 0; i < 2; ++i)
        EXPECT_TRUE(TovFileWrite(file, "x", &error) == 0 && error == TOV_ERROR_SYSTEM_BASE + EPIPE);
    EXPECT_TRUE(TovFileWrite(file, nullptr, 1, &error) == 0 && error == TOV_ERROR_INVALID_PARAMETER);
    TovFileClose(file);
    ::close(ends[1]);
}

int told, aborted;
std::optional<CTovFileList> list;

TEST_F(FileFaults, ASearchGoesOnWithOneDescriptor) {
    if (TOV_SANITIZED) GTEST_SKIP() << "the sanitizer needs descriptors of its own";
    for (int i = 0; i < 40; ++i)
        fs::create_directories(std::to_string(i) + "/a/b/c/d/e/f/g");
    rlimit before;
    ::getrlimit(RLIMIT_NOFILE, &before);
    int const next = ::dup(0);
    ::close(next);
    for (unsigned run = 0; run < 60; ++run) {
        rlimit const few{static_cast<rlim_t>(next) + run % 6, before.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &few);
        told = 0;
        list.emplace("./*", 1, 1, 0);
        list->SetCallbackSearchDirectory([](unsigned long, int, char const*) { ++told; }, 0);
        list->DoIt();
        EXPECT_EQ(list->GetLastError(), run % 6 == 0 ? TOV_ERROR_TOO_MANY_OPEN_FILES : 0);
        EXPECT_EQ(told, run % 6 == 0 ? 0 : 40 * 8);
    }
    ::setrlimit(RLIMIT_NOFILE, &before);
}

TEST_F(FileFaults, RecordsAreFreeWhenTheEndIsToldAndOutliveTheList) {
    PutFile("a", "long");
    PutFile("b", "");
    told = 0;
    list.emplace("./*", 0, 1, 0);
    list->SetCallbackSearchInDirectory([](unsigned long, int, char const*) { ++told; }, 0);
    auto const end = [](unsigned long, int flag) {
        std::thread([] { list->Sort(CTovFileList::eSortSize); }).join();
        aborted = flag;
        list->Search({});  // does nothing here
        throw std::runtime_error("of the host");
    };
    list->SetCallbackThreadTerminate(end, 0);
    list->Search({}), list->Wait();
    EXPECT_TRUE(aborted == 0 && told == 1 && list->AllFilenames().back() == "a");
    CTovFindData const empty = *(*list)[0], full = *(*list)[1];
    list->SetCallbackThreadBegin([](unsigned long) { list->Abort(); }, 0);
    list->Search({}), list->Wait();
    EXPECT_TRUE(aborted == 1 && told == 1) << "aborted before it was told";
    list.emplace("/x", 0, 1, 0).FindFile("a", 0);
    list->DoIt();
    EXPECT_TRUE(list->AllFilenames().empty() && (*(*list)[0] < full) == 0) << "nothing at all is done";
    EXPECT_TRUE((empty < full) == 1 && (full < empty) == 0);
    list.reset();
}

TEST_F(FileFaults, ExtensionsAreTriedAfterAPlainFile) {
    for (CString path : {"run", "run.exe", "lib.so.3", "lib.so.1.22", "a.so.", "a.so.x", "b.3"}) {
        PutFile(path, "");
        EXPECT_EQ(TovFileIsDLL(path), path.starts_with("lib")) << path;
    }
    CString path = "run";
    EXPECT_TRUE(TovFileIsEXE(path) == 1 && path == "run.exe");
}

}  // namespace
}  // namespace tov
