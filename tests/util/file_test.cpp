#include <tov310/file.h>
#include <tov310/system_error.h>

#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <thread>

namespace tov {
namespace {

namespace fs = std::filesystem;
using testing::UnorderedElementsAre;

void Put(fs::path const& path, std::string const& text) {
    std::ofstream(path, std::ios::binary) << text;
}

std::string Numbered(char const* name, long number) {
    return (std::ostringstream() << name << number).str();
}

std::string Get(fs::path const& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// What stands in a folder: names with contents, of links with "-> target", of folders with "/".
std::map<std::string, std::string> Tree(fs::path const& folder) {
    std::map<std::string, std::string> tree;
    std::error_code failure;
    for (auto const& entry : fs::directory_iterator(folder, failure)) {
        std::string const name = entry.path().filename().string();
        if (entry.is_symlink()) {
            tree[name] = "-> " + fs::read_symlink(entry.path()).string();
        } else {
            tree[name] = entry.is_directory() ? "/" : Get(entry.path());
        }
    }
    return tree;
}

// Runs the call with a pair and checks that code and text belong together.
template <class Call>
unsigned long Code(Call call) {
    unsigned long error = 4711;
    CString message = "left over";
    call(&error, &message);
    EXPECT_EQ(message, TovSystemErrorText(error));
    return error;
}

// Takes the rights of the administrator from the process for a while, should it have them. Files are given
// away first, so that whoever it is then owns them.
class WithoutRights {
 public:
    explicit WithoutRights(fs::path const& folder) : m_user(::geteuid()) {
        if (m_user != 0) return;
        constexpr uid_t nobody = 65534;
        EXPECT_EQ(::lchown(folder.c_str(), nobody, nobody), 0);
        for (auto const& entry : fs::recursive_directory_iterator(folder))
            EXPECT_EQ(::lchown(entry.path().c_str(), nobody, nobody), 0);
        EXPECT_EQ(::seteuid(nobody), 0);
    }
    WithoutRights(WithoutRights const&) = delete;
    WithoutRights& operator=(WithoutRights const&) = delete;
    ~WithoutRights() { EXPECT_EQ(::seteuid(m_user), 0); }

 private:
    uid_t m_user;
};

class File : public testing::Test {
 protected:
    test::TemporaryFolder folder;
    std::string At(std::string const& name) const { return folder.File(name); }

    void* Open(std::string const& name, unsigned long access, unsigned long share, unsigned long disposition,
               unsigned long* error = nullptr) {
        return TovFileCreate(At(name).c_str(), access, share, disposition, TOV_ATTRIBUTE_NORMAL, error);
    }
};

constexpr unsigned long readWrite = TOV_FILE_READ | TOV_FILE_WRITE;
constexpr unsigned long shareAll = TOV_SHARE_READ | TOV_SHARE_WRITE;

TEST_F(File, DispositionsMakeOpenAndEmpty) {
    struct Row {
        unsigned long disposition;
        bool isThere;
        unsigned long error;
        char const* left;
    };
    Row const rows[] = {{1, false, 0, ""}, {1, true, 80, "old"}, {2, false, 0, ""},    {2, true, 0, ""},
                        {3, false, 2, ""}, {3, true, 0, "old"},  {4, false, 0, ""},    {4, true, 0, "old"},
                        {5, false, 2, ""}, {5, true, 0, ""},     {0, true, 87, "old"}, {6, true, 87, "old"}};
    for (Row const& row : rows) {
        std::string const name = Numbered("f", &row - rows);
        if (row.isThere) Put(At(name), "old");
        unsigned long error = 1;
        void* const file = Open(name, readWrite, 0, row.disposition, &error);
        EXPECT_EQ(error, row.error) << row.disposition << row.isThere;
        EXPECT_EQ(file != nullptr, row.error == 0);
        EXPECT_EQ(Get(At(name)), row.left);
        EXPECT_EQ(TovFileClose(file), file != nullptr);
        EXPECT_EQ(fs::exists(At(name)), row.isThere || row.error == 0);
    }
    EXPECT_EQ(Code([&](auto* e, auto* m) { TovFileOpen(At("f1").c_str(), TOV_FILE_READ, 1, 5, 128, e, m); }),
              87u);
    EXPECT_EQ(Get(At("f1")), "old") << "emptying takes the right to write";
}

TEST_F(File, ReadsWritesAndSeeks) {
    void* const file = Open("data", readWrite, 0, TOV_CREATE_NEW);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(TovFileWrite(file, "0123456789"), 1);
    EXPECT_EQ(TovFileWrite(file, "ab\0cd", 5), 1);
    EXPECT_EQ(TovFileWrite(file, static_cast<char const*>(nullptr)), 1);
    EXPECT_EQ(TovFileSize(file), 15);
    EXPECT_EQ(TovFileSize(At("data").c_str()), 15);
    EXPECT_EQ(TovFileSeek(file, 8), 1);
    char buffer[8] = {};
    EXPECT_EQ(TovFileRead(file, buffer, 4), 1);
    EXPECT_EQ(std::string(buffer, 4), "89ab");
    EXPECT_EQ(TovFileSeekEnd(file), 1);
    EXPECT_EQ(TovFileWrite(file, "!"), 1);
    EXPECT_EQ(TovFileSeek(file, 14), 1);
    EXPECT_EQ(Code([&](auto* e, auto* m) { EXPECT_EQ(TovFileRead(file, buffer, 8, e, m), 0); }), 0u);
    EXPECT_EQ(std::string(buffer, 2), "d!") << "what was there before the end";
    EXPECT_EQ(Code([&](auto* e, auto* m) { EXPECT_EQ(TovFileSeek(file, -1, e, m), 0); }), 87u);
    EXPECT_EQ(TovFileClose(file), 1);
    EXPECT_EQ(Get(At("data")), std::string("0123456789ab\0cd!", 16));

    void* const reader = Open("data", TOV_FILE_READ, shareAll, TOV_OPEN_EXISTING);
    EXPECT_EQ(Code([&](auto* e, auto* m) { EXPECT_EQ(TovFileWrite(reader, "x", e, m), 0); }), 6u);
    TovFileClose(reader);
    for (void* const none : {static_cast<void*>(nullptr), reader}) {
        EXPECT_EQ(Code([&](auto* e, auto* m) { EXPECT_EQ(TovFileRead(none, buffer, 0, e, m), 0); }), 6u);
        EXPECT_EQ(Code([&](auto* e, auto* m) { EXPECT_EQ(TovFileSize(none, e, m), -1); }), 6u);
        EXPECT_EQ(Code([&](auto* e, auto* m) { EXPECT_EQ(TovFileClose(none, e, m), 0); }), 6u);
    }
}

TEST_F(File, AFileWithoutSharingKeepsOthersOutAndWhole) {
    Put(At("data"), "precious");
    void* const mine = Open("data", TOV_FILE_READ, TOV_SHARE_NONE, TOV_OPEN_EXISTING);
    ASSERT_NE(mine, nullptr);
    for (unsigned long const disposition : {TOV_CREATE_ALWAYS, TOV_TRUNCATE_EXISTING, TOV_OPEN_EXISTING}) {
        unsigned long error = 0;
        EXPECT_EQ(Open("data", readWrite, shareAll, disposition, &error), nullptr);
        EXPECT_EQ(error, 32u);
    }
    EXPECT_EQ(Get(At("data")), "precious") << "it is locked before it is emptied";
    EXPECT_EQ(TovFileInUse(At("*").c_str()), 1);
    TovFileClose(mine);
    EXPECT_EQ(TovFileInUse(At("*").c_str()), 0);
    void* const one = Open("data", TOV_FILE_READ, shareAll, TOV_OPEN_EXISTING);
    void* const two = Open("data", TOV_FILE_WRITE, shareAll, TOV_OPEN_EXISTING);
    EXPECT_TRUE(one != nullptr && two != nullptr);
    EXPECT_EQ(Open("data", TOV_FILE_READ, TOV_SHARE_NONE, TOV_OPEN_EXISTING), nullptr);
    EXPECT_EQ(TovFileClose(one) + TovFileClose(two), 2);
}

TEST_F(File, PathsThatCannotBeOpenedTellWhy) {
    fs::create_directory(At("dir"));
    Put(At("file"), "");
    fs::create_symlink("loop", At("loop"));
    struct Row {
        std::string path;
        unsigned long error;
    };
    Row const rows[] = {{"", 2},
                        {At("none"), 2},
                        {At("none/file"), 3},
                        {At("none\\file"), 3},
                        {At("file/file"), 3},
                        {At("dir"), 5},
                        {At(std::string(256, 'n')), 206},
                        {At("loop"), TOV_ERROR_SYSTEM_BASE + ELOOP}};
    for (Row const& row : rows) {
        char const* const path = row.path.empty() ? nullptr : row.path.c_str();
        EXPECT_EQ(Code([&](auto* e, auto* m) {
                      EXPECT_EQ(TovFileCreate(path, TOV_FILE_READ, 1, 3, 128, e, m), nullptr);
                  }),
                  row.error)
            << row.path;
        EXPECT_EQ(Code([&](auto* e, auto* m) { EXPECT_EQ(TovFileSize(path, e, m), -1); }), row.error);
        if (row.path != At("dir")) {
            EXPECT_EQ(Code([&](auto* e, auto* m) { EXPECT_EQ(TovFileFind(path, e, m), 0); }), row.error);
            EXPECT_EQ(TovPathExists(path), 0);
        }
    }
    fs::permissions(At("file"), fs::perms::none);
    if (::geteuid() != 0) {
        EXPECT_EQ(
            Code([&](auto* e, auto* m) { TovFileOpen(At("file").c_str(), TOV_FILE_READ, 1, 3, 0, e, m); }),
            5u);
    }
    EXPECT_EQ(TovPathExists(At("dir").c_str()), 1);
    EXPECT_EQ(TovPathExists(At("file").c_str()), 1);
    ASSERT_EQ(::mkfifo(At("pipe").c_str(), 0600), 0);
    void* const pipe = Open("pipe", TOV_FILE_READ, shareAll, TOV_OPEN_EXISTING);
    EXPECT_EQ(TovFileClose(pipe), 1) << "nobody at the other end holds up the opening";
}

// The limit of the size of files stands for a full volume. It is the process's, so it is set back at once.
class SizeLimit {
 public:
    explicit SizeLimit(rlim_t size) {
        m_signal = std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_old);
        rlimit const limit{size, m_old.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    SizeLimit(SizeLimit const&) = delete;
    SizeLimit& operator=(SizeLimit const&) = delete;
    ~SizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &m_old);
        std::signal(SIGXFSZ, m_signal);
    }

 private:
    rlimit m_old{};
    void (*m_signal)(int);
};

constexpr unsigned long tooBig = TOV_ERROR_SYSTEM_BASE + EFBIG;

TEST_F(File, AWriteThatFailsLeavesLengthAndPosition) {
    void* const file = Open("data", readWrite, 0, TOV_CREATE_NEW);
    ASSERT_EQ(TovFileWrite(file, "0123456789"), 1);
    {
        SizeLimit const limit(4096);
        std::string const much(10'000, 'x');
        EXPECT_EQ(Code([&](auto* e, auto* m) { EXPECT_EQ(TovFileWrite(file, much.c_str(), e, m), 0); }),
                  tooBig);
        EXPECT_EQ(TovFileSize(file), 10);
    }
    EXPECT_EQ(TovFileWrite(file, "!"), 1);
    TovFileClose(file);
    EXPECT_EQ(Get(At("data")), "0123456789!");

    void* const full = TovFileOpen("/dev/full", TOV_FILE_WRITE, shareAll, TOV_OPEN_EXISTING, 0);
    ASSERT_NE(full, nullptr);
    EXPECT_EQ(Code([&](auto* e, auto* m) { EXPECT_EQ(TovFileWrite(full, "x", e, m), 0); }), 112u);
    TovFileClose(full);
}

TEST_F(File, AMoveNeverOverwrites) {
    Put(At("a"), "A");
    Put(At("b"), "B");
    fs::create_directory(At("d"));
    auto const move = [&](char const* from, char const* to) {
        return Code([&](auto* e, auto* m) { TovFileMove(At(from).c_str(), At(to).c_str(), e, m); });
    };
    EXPECT_EQ(move("a", "b"), 183u);
    EXPECT_EQ(move("a", "a"), 183u);
    EXPECT_EQ(move("a", "d"), 183u);
    EXPECT_EQ(move("none", "c"), 2u);
    EXPECT_EQ(move("none/a", "c"), 3u);
    EXPECT_EQ(move("a", "none/c"), 3u);
    EXPECT_EQ(move("a", std::string(300, 'n').c_str()), 206u);
    EXPECT_EQ(move("a", "d\\c"), 0u) << "both separators";
    EXPECT_EQ(Get(At("d/c")), "A");
    EXPECT_EQ(Get(At("b")), "B");
    fs::create_symlink("b", At("link"));
    EXPECT_EQ(move("link", "moved"), 0u);
    EXPECT_TRUE(fs::is_symlink(At("moved")));
}

TEST_F(File, FindsListsAndHides) {
    for (char const* const name : {"One.TXT", "two.txt", "three", ".dot", "a\\b.txt"})
        Put(At(name), "x");
    fs::create_directory(At("dir.txt"));
    EXPECT_EQ(TovFileFind(At("three").c_str()), 1);
    EXPECT_EQ(TovFileFind(At("THREE").c_str()), 0) << "a name without wildcards is the volume's to compare";
    EXPECT_EQ(TovFileFind(At("o*.txt").c_str()), 1);
    EXPECT_EQ(TovFileFind(At("dir.*").c_str()), 0) << "a directory is no file";
    EXPECT_EQ(TovFileFind(At("dir.txt").c_str()), 0);
    EXPECT_EQ(Code([&](auto* e, auto* m) { TovFileFind(At("*.none").c_str(), e, m); }), 2u);
    EXPECT_EQ(Code([&](auto* e, auto* m) { TovFileFind(At("none/*").c_str(), e, m); }), 3u);

    std::vector<std::string> found;
    WIN32_FIND_DATAA data;
    void* const find = TovDirectoryFind(At("*.txt").c_str(), &data);
    ASSERT_NE(find, nullptr);
    unsigned long error = 0;
    do {
        found.push_back(data.cFileName);
        EXPECT_EQ(data.cAlternateFileName, data.cFileName);
        EXPECT_EQ(data.IsDirectory(), data.cFileName == "dir.txt");
        EXPECT_TRUE(data.IsDirectory() || data.FileSize() == 1);
    } while (TovDirectoryFindNext(find, &data, &error) != 0);
    EXPECT_EQ(error, 18u);
    TovDirectoryFindClose(find);
    TovDirectoryFindClose(nullptr);
    EXPECT_THAT(found, UnorderedElementsAre("One.TXT", "two.txt", "a\\b.txt", "dir.txt"));
    EXPECT_EQ(Code([&](auto* e, auto* m) { TovDirectoryFind(At("*.none").c_str(), &data, e, m); }), 2u);
    EXPECT_EQ(Code([&](auto* e, auto* m) { TovDirectoryFindNext(nullptr, &data, e, m); }), 6u);

    EXPECT_EQ(TovFileHide(At(".dot").c_str()), 1);
    EXPECT_EQ(Code([&](auto* e, auto* m) { EXPECT_EQ(TovFileHide(At("three").c_str(), e, m), 0); }), 50u);
    EXPECT_EQ(Code([&](auto* e, auto* m) { EXPECT_EQ(TovFileHide(At(".none").c_str(), e, m), 0); }), 2u);

    EXPECT_EQ(TovFileCount(At("*.*").c_str()), 5u) << "names without a dot too, and no directory";
    EXPECT_EQ(TovFileCount(At("*.TxT").c_str()), 3u);
    EXPECT_EQ(Code([&](auto* e, auto* m) { EXPECT_EQ(TovFileCount(At("none/*").c_str(), e, m), 0u); }), 3u);
    EXPECT_EQ(Code([&](auto* e, auto* m) { EXPECT_EQ(TovFileInUse(At("none/*").c_str(), e, m), 0); }), 3u);
    EXPECT_EQ(TovFileInUse(At("*").c_str()), 0) << "the file a\\b.txt is opened by its name";
}

TEST_F(File, DirectoriesAreMadeOnceAndUnderOneThatIsThere) {
    EXPECT_EQ(TovDirectoryCreate(At("d").c_str()), 1);
    EXPECT_EQ(TovDirectoryExist(At("d\\").c_str()), 1);
    auto const create = [&](std::string const& name) {
        return Code([&](auto* e, auto* m) { TovDirectoryCreate(At(name).c_str(), e, m); });
    };
    EXPECT_EQ(create("d"), 183u);
    EXPECT_EQ(create("none/d"), 3u);
    EXPECT_EQ(create(std::string(256, 'n')), 206u);
    Put(At("file"), "");
    EXPECT_EQ(create("file/d"), 3u);
    for (char const* const name : {"file", "none"})
        EXPECT_EQ(Code([&](auto* e, auto* m) { EXPECT_EQ(TovDirectoryExist(At(name).c_str(), e, m), 0); }),
                  3u);
}

// Contents, mode and times of every file, names that are no paths, and nothing but files.
TEST_F(File, ADirectoryIsCopiedFileByFile) {
    std::string const from = At("from");
    fs::create_directories(from + "/sub");
    Put(from + "/a\\b", "one");
    Put(from + "/big", std::string(300'000, 'b'));
    Put(from + "/" + std::string(255, 'n'), "long");
    Put(At("outside"), "out");
    fs::create_symlink("../outside", from + "/link");
    fs::create_symlink("nowhere", from + "/dangling");
    fs::create_symlink("sub", from + "/sublink");
    fs::permissions(from + "/big", fs::perms(0640));
    fs::last_write_time(from + "/big", fs::file_time_type::clock::now() - std::chrono::hours(1000));
    EXPECT_EQ(TovDirectoryCopy(from.c_str(), (At("to") + "\\").c_str(), 1), 1);
    EXPECT_EQ(Tree(At("to")), (std::map<std::string, std::string>{{"a\\b", "one"},
                                                                  {"big", std::string(300'000, 'b')},
                                                                  {std::string(255, 'n'), "long"},
                                                                  {"link", "out"},
                                                                  {"dangling", "-> nowhere"}}));
    EXPECT_EQ(fs::status(At("to/big")).permissions(), fs::perms(0640));
    EXPECT_EQ(fs::last_write_time(At("to/big")), fs::last_write_time(from + "/big"));

    fs::create_directory(At("empty"));
    EXPECT_EQ(TovDirectoryCopy(At("empty").c_str(), At("made").c_str(), 1), 1);
    EXPECT_TRUE(fs::is_directory(At("made")));
}

TEST_F(File, ACopyReplacesOrRefusesWhole) {
    fs::create_directory(At("from"));
    fs::create_directory(At("to"));
    Put(At("from/x"), "new");
    Put(At("to/x"), "old");
    auto const copy = [&](char const* from, char const* to, int flag) {
        return Code(
            [&](auto* e, auto* m) { TovDirectoryCopy(At(from).c_str(), At(to).c_str(), flag, e, m); });
    };
    EXPECT_EQ(copy("from", "to", 1), 80u);
    EXPECT_EQ(Get(At("to/x")), "old");
    EXPECT_EQ(copy("from", "to", 0), 0u);
    EXPECT_EQ(Get(At("to/x")), "new");
    EXPECT_EQ(copy("none", "made", 0), 3u);
    EXPECT_FALSE(fs::exists(At("made")));
    EXPECT_EQ(copy("from", "none/made", 0), 3u);
    Put(At("file"), "");
    EXPECT_EQ(copy("from", "file", 0), 3u);

    // A file onto itself, by the same path, by a link to the directory and by a second name.
    fs::create_directory_symlink("from", At("same"));
    fs::create_directory(At("twin"));
    fs::create_hard_link(At("from/x"), At("twin/x"));
    for (char const* const to : {"from", "same", "twin"}) {
        for (int const flag : {0, 1}) {
            EXPECT_EQ(copy("from", to, flag), 32u) << to;
            EXPECT_EQ(Get(At("from/x")), "new");
        }
    }
    // A link in the target is replaced and what it leads to left alone.
    Put(At("victim"), "whole");
    fs::remove(At("to/x"));
    fs::create_symlink("../victim", At("to/x"));
    EXPECT_EQ(copy("from", "to", 0), 0u);
    EXPECT_EQ(Get(At("victim")), "whole");
    EXPECT_EQ(Tree(At("to")).at("x"), "new");
    ASSERT_EQ(::mkfifo(At("from/pipe").c_str(), 0600), 0);
    EXPECT_EQ(copy("from", "to", 0), 50u);
}

TEST_F(File, ACopyWithoutSpaceLeavesTheOldFile) {
    fs::create_directory(At("from"));
    fs::create_directory(At("to"));
    Put(At("from/x"), std::string(100'000, 'n'));
    Put(At("to/x"), "old");
    for (char const* const target : {"to", "made"}) {
        SizeLimit const limit(4096);
        EXPECT_EQ(Code([&](auto* e, auto* m) {
                      TovDirectoryCopy(At("from").c_str(), At(target).c_str(), 0, e, m);
                  }),
                  tooBig);
    }
    EXPECT_EQ(Tree(At("to")), (std::map<std::string, std::string>{{"x", "old"}})) << "and nothing beside it";
    EXPECT_FALSE(fs::exists(At("made")));
    EXPECT_EQ(fs::file_size(At("from/x")), 100'000u);
}

TEST_F(File, RemovingStaysInsideTheDirectory) {
    fs::create_directories(At("outside"));
    Put(At("outside/precious"), "p");
    Put(At("file"), "f");
    fs::create_directory(At("d"));
    for (char const* const name : {"a", "a\\b", ".hidden"})
        Put(At("d/") + name, "x");
    Put(At("d/b"), "mine");
    fs::create_symlink("../outside", At("d/dirlink"));
    fs::create_symlink("../file", At("d/filelink"));
    fs::create_directory_symlink("outside", At("link"));
    auto const remove = [&](char const* name) {
        return Code([&](auto* e, auto* m) { TovDirectoryRemove(At(name).c_str(), e, m); });
    };
    EXPECT_EQ(remove("d\\"), 0u);
    EXPECT_FALSE(fs::exists(At("d")));
    EXPECT_EQ(remove("link/"), 0u);
    EXPECT_FALSE(fs::is_symlink(At("link")));
    EXPECT_EQ(Get(At("outside/precious")), "p");
    EXPECT_EQ(Get(At("file")), "f");

    fs::create_directories(At("e/sub"));
    Put(At("e/x"), "x");
    EXPECT_EQ(remove("e"), 145u);
    EXPECT_TRUE(fs::exists(At("e/x"))) << "refused before anything is gone";
    EXPECT_EQ(remove("none"), 3u);
    EXPECT_EQ(remove("file"), 3u);
    EXPECT_EQ(remove(""), 145u) << "the folder of the test itself";
}

TEST_F(File, WithoutTheRightNothingIsRemoved) {
    fs::create_directory(At("d"));
    Put(At("d/x"), "x");
    fs::permissions(At("d"), fs::perms(0500));
    WithoutRights const nobody(folder.path());
    EXPECT_EQ(Code([&](auto* e, auto* m) { TovDirectoryRemove(At("d").c_str(), e, m); }), 5u);
    EXPECT_EQ(Get(At("d/x")), "x");
    fs::permissions(At("d"), fs::perms(0000));
    EXPECT_EQ(Code([&](auto* e, auto* m) { EXPECT_EQ(TovFileCount(At("d/*").c_str(), e, m), 0u); }), 0u)
        << "a directory that may not be read is an empty one";
    fs::permissions(At("d"), fs::perms(0700));
}

TEST_F(File, ADirectoryMovesWithoutOverwriting) {
    fs::create_directories(At("a/sub"));
    Put(At("a/x"), "x");
    fs::create_directory(At("empty"));
    auto const move = [&](char const* from, char const* to) {
        return Code([&](auto* e, auto* m) { TovDirectoryMove(At(from).c_str(), At(to).c_str(), e, m); });
    };
    EXPECT_EQ(move("a", "empty"), 183u) << "not even an empty one is replaced";
    EXPECT_EQ(move("a", "a/sub/inside"), 87u);
    EXPECT_EQ(move("none", "b"), 2u);
    EXPECT_EQ(move("a", "none/b"), 3u);
    EXPECT_EQ(move("a/", "b\\"), 0u);
    EXPECT_EQ(Get(At("b/x")), "x");
    EXPECT_FALSE(fs::exists(At("a")));
}

// The other volume of these tests; skipped where the machine has only one.
class TwoVolumes : public File {
 protected:
    void SetUp() override {
        std::string pattern = "/dev/shm/tov-test-XXXXXX";
        if (::mkdtemp(pattern.data()) == nullptr) GTEST_SKIP() << "no second volume";
        m_other = pattern;
        if (TovDriveIsEqual(m_other.c_str(), folder.path().c_str()) != 0) GTEST_SKIP() << "the same volume";
    }
    void TearDown() override {
        std::error_code failure;
        if (!m_other.empty()) fs::remove_all(m_other, failure);
    }
    std::string Other(std::string const& name) const { return m_other + "/" + name; }
    unsigned long Move(std::string const& from, std::string const& to) {
        return Code([&](auto* e, auto* m) { TovDirectoryMove(from.c_str(), to.c_str(), e, m); });
    }

 private:
    std::string m_other;
};

TEST_F(TwoVolumes, FilesAreCopiedAndThenRemoved) {
    Put(At("a"), "A");
    Put(Other("taken"), "T");
    fs::permissions(At("a"), fs::perms(0640));
    auto const move = [&](std::string const& from, std::string const& to) {
        return Code([&](auto* e, auto* m) { TovFileMove(from.c_str(), to.c_str(), e, m); });
    };
    EXPECT_EQ(move(At("a"), Other("taken")), 183u);
    EXPECT_EQ(move(At("a"), Other("none/a")), 3u);
    EXPECT_EQ(move(folder.path().string(), Other("d")), 17u);
    EXPECT_EQ(Get(Other("taken")), "T");
    EXPECT_EQ(Get(At("a")), "A");
    EXPECT_EQ(move(At("a"), Other("new")), 0u);
    EXPECT_FALSE(fs::exists(At("a")));
    EXPECT_EQ(Get(Other("new")), "A");
    EXPECT_EQ(fs::status(Other("new")).permissions(), fs::perms(0640));
    fs::create_symlink("nowhere", At("link"));
    EXPECT_EQ(move(At("link"), Other("link")), 0u);
    EXPECT_EQ(Tree(fs::path(Other("link")).parent_path()).at("link"), "-> nowhere");
    EXPECT_EQ(TovDriveIsEqual(At("none/none").c_str(), At("x").c_str()), 1);
}

TEST_F(TwoVolumes, ADirectoryGoesWholeOrStays) {
    fs::create_directory(At("d"));
    Put(At("d/x"), "X");
    Put(At("d/a\\b"), "B");
    fs::create_symlink("x", At("d/link"));
    fs::create_hard_link(At("d/x"), At("d/y"));
    auto const whole = Tree(At("d"));

    fs::create_directory(At("d/sub"));
    EXPECT_EQ(Move(At("d"), Other("d")), 145u);
    EXPECT_FALSE(fs::exists(Other("d"))) << "before anything happens";
    fs::remove(At("d/sub"));
    fs::create_directory(Other("taken"));
    EXPECT_EQ(Move(At("d"), Other("taken")), 183u);
    EXPECT_EQ(Tree(At("d")), whole);
    EXPECT_EQ(Move(At("d"), Other("d")), 0u);
    EXPECT_EQ(Tree(Other("d")), whole);
    EXPECT_FALSE(fs::exists(At("d")));

    Put(Other("d/z"), std::string(100'000, 'z'));
    {
        SizeLimit const limit(4096);
        EXPECT_EQ(Move(Other("d"), At("back")), tooBig);
    }
    EXPECT_FALSE(fs::exists(At("back"))) << "what was copied is taken back";
    EXPECT_EQ(Tree(Other("d")).size(), 5u);
    WithoutRights const nobody(fs::path(Other("d")).parent_path());
    CString const back = TovTempFilename(nullptr, "tov-test-back");
    fs::remove(back);
    fs::permissions(Other("d"), fs::perms(0500));  // files can be read but not removed
    EXPECT_EQ(Move(Other("d"), back), 5u);
    EXPECT_EQ(Tree(Other("d")).size(), 5u);
    EXPECT_EQ(Tree(back), Tree(Other("d"))) << "every file stands in both";
    fs::permissions(Other("d"), fs::perms(0700));
    fs::permissions(back, fs::perms(0700));
    fs::remove_all(back);
}

// Files that come and go meanwhile: none may end in neither place.
TEST_F(TwoVolumes, NothingIsLostWhileTheSourceChanges) {
    for (int round = 0; round < 30; ++round) {
        std::string const from = At(Numbered("d", round));
        std::string const to = Other(Numbered("d", round));
        fs::create_directory(from);
        for (int i = 0; i < 20; ++i)
            Put(from + Numbered("/f", i), "old");
        std::vector<std::string> written;
        std::thread writer([&] {
            for (int i = 0; i < 40; ++i) {
                std::string const name = Numbered("new", i);
                std::ofstream file(from + "/" + name);
                if (file && file << "new" && file.flush()) written.push_back(name);
            }
        });
        Move(from, to);
        writer.join();
        auto here = Tree(from);
        here.merge(Tree(to));
        for (int i = 0; i < 20; ++i)
            EXPECT_EQ(here[Numbered("f", i)], "old");
        for (std::string const& name : written)
            EXPECT_EQ(here.count(name), 1u) << name;
    }
}

TEST_F(File, TemporaryFilesAreEmptyOnesOwnAndNew) {
    CString const first = TovTempFilename(folder.path().c_str(), "tov");
    CString const second = TovTempFilename(At("").c_str(), "tov");
    EXPECT_NE(first, second);
    EXPECT_EQ(first.rfind(At("tov"), 0), 0u);
    EXPECT_EQ(fs::status(first).permissions(), fs::perms(0600));
    EXPECT_EQ(fs::file_size(first), 0u);
    EXPECT_EQ(TovTempFilename(At("none").c_str(), "tov"), "");
    EXPECT_EQ(TovTempFilename(folder.path().c_str(), "../x"), "");
    EXPECT_EQ(TovTempDirectory().back(), '/');
    CString const system = TovTempFilename(nullptr, nullptr);
    EXPECT_EQ(system.rfind(TovTempDirectory(), 0), 0u);
    EXPECT_TRUE(fs::remove(system));
}

TEST_F(File, ExecutablesAreToldByRightOrExtension) {
    for (char const* const name : {"run", "plain", "tool.EXE", "lib.so", "Old.dll"})
        Put(At(name), "");
    fs::permissions(At("run"), fs::perms(0700));
    struct Row {
        char const* name;
        char const* exe;  // what the argument is afterwards; null for 0
        char const* dll;
        char const* either;
    };
    Row const rows[] = {{"run", "run", nullptr, "run"},
                        {"plain", nullptr, nullptr, nullptr},
                        {"tool", "tool.EXE", nullptr, "tool.EXE"},
                        {"tool.EXE", "tool.EXE", nullptr, "tool.EXE"},
                        {"lib", nullptr, "lib.so", "lib.so"},
                        {"Old", nullptr, "Old.dll", "Old.dll"},
                        {"none", nullptr, nullptr, nullptr}};
    for (Row const& row : rows) {
        auto const check = [&](int (*is)(CString&), char const* expected) {
            CString path = At(row.name);
            EXPECT_EQ(is(path), expected != nullptr) << row.name;
            EXPECT_EQ(path, At(expected != nullptr ? expected : row.name));
        };
        check(TovFileIsEXE, row.exe);
        check(TovFileIsDLL, row.dll);
        check(TovFileIsExecutable, row.either);
    }
}

TEST_F(File, DrivesLettersAndModules) {
    for (unsigned drive = 1; drive <= 26; ++drive)
        EXPECT_EQ(TovGetDriveInteger(TovGetDriveString(drive).c_str()), drive);
    EXPECT_EQ(TovGetDriveString(0) + TovGetDriveString(27), "");
    EXPECT_EQ(TovGetDriveInteger("c:\\x"), 3u);
    EXPECT_EQ(TovGetDriveInteger(nullptr) + TovGetDriveInteger("/home") + TovGetDriveInteger("1:"), 0u);
    EXPECT_EQ(TovBuildShortPathname("a\\b/c d"), "a/b/c d");
    EXPECT_EQ(TovDriveIsEqual("", "/") + TovDriveIsEqual(nullptr, nullptr), 0);
    EXPECT_EQ(TovDriveIsEqual("/", "\\"), 1);

    std::vector<CString> all;
    TovGetAvailableDrives(~0u, all);
    EXPECT_FALSE(all.empty());
    std::size_t sum = 0;
    for (unsigned const kind :
         {TOV_DRIVES_REMOVABLE, TOV_DRIVES_FIXED, TOV_DRIVES_REMOTE, TOV_DRIVES_CD, TOV_DRIVES_RAM}) {
        std::vector<CString> some{"left over"};
        TovGetAvailableDrives(kind, some);
        sum += some.size();
    }
    EXPECT_EQ(sum, all.size());

    CString path;
    EXPECT_EQ(TovGetModulePath(nullptr, path), 1);
    EXPECT_EQ(fs::path(path).filename(), "file_test");
    EXPECT_EQ(TovGetModulePath(TovBuiltInResourceModule(), path), 1);
    EXPECT_THAT(path, testing::HasSubstr("libTov310Core"));
    Put(At("strings.json"), "{}");
    EXPECT_EQ(TovGetModulePath(TovLoadResourceModule(folder.path().c_str()), path), 1);
    EXPECT_EQ(fs::path(path), folder.path());
}

}  // namespace
}  // namespace tov
