#include <tov310/file.h>
#include <tov310/system_error.h>

#include "support/files.h"
#include "support/limits.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <random>
#include <set>
#include <sstream>
#include <thread>

namespace tov {
namespace {

namespace fs = std::filesystem;
using test::GetFile;
using test::OnFullVolume;
using test::PutFile;

// What stands in a folder and below, in order: "folder/ folder/file=contents link->target".
std::string Tree(fs::path const& folder) {
    std::set<std::string> entries;
    std::error_code failure;
    for (auto const& entry : fs::recursive_directory_iterator(folder, failure)) {
        std::string text = entry.path().lexically_relative(folder);
        if (entry.is_symlink())
            text.append("->").append(fs::read_symlink(entry.path()));
        else if (entry.is_directory())
            text.append("/");
        else
            text.append("=").append(GetFile(entry.path()));
        entries.insert(text);
    }
    std::string all;
    for (std::string const& entry : entries)
        all.append(all.empty() ? "" : " ").append(entry);
    return all;
}

// Makes what is written in this way.
void Plant(std::string const& tree, fs::path const& folder = ".") {
    std::istringstream entries(tree);
    for (std::string entry; entries >> entry;) {
        if (auto const link = entry.find("->"); link != entry.npos)
            fs::create_symlink(entry.substr(link + 2), folder / entry.substr(0, link));
        else if (entry.ends_with('/'))
            fs::create_directory(folder / entry);
        else
            PutFile(folder / entry.substr(0, entry.find('=')), entry.substr(entry.find('=') + 1));
    }
}

// The code of a call with a pair; its text must belong to it, and a failure must be answered as one.
template <class Function, class... Values>
unsigned long Code(Function function, Values const&... values) {
    unsigned long error = 4711;
    CString message = "left over";
    auto const answer = function(values..., &error, &message);
    EXPECT_EQ(message, TovSystemErrorText(error));
    if constexpr (std::is_pointer_v<decltype(answer)>) {
        EXPECT_TRUE(error == 0 || answer == nullptr);
    } else {
        EXPECT_TRUE(error == 0 || answer + 1 <= 1);
    }
    return error;
}

constexpr unsigned long readWrite = TOV_FILE_READ | TOV_FILE_WRITE;
constexpr unsigned long shareAll = TOV_SHARE_READ | TOV_SHARE_WRITE;
constexpr unsigned long tooBig = TOV_ERROR_SYSTEM_BASE + EFBIG;
constexpr auto size = [](auto... values) { return TovFileSize(values...); };
constexpr auto write = [](auto... values) { return TovFileWrite(values...); };

// Paths are relative to a folder of the test.
class File : public testing::Test {
 protected:
    test::TemporaryFolder folder;
    fs::path other;  // on another volume, where a test asks for it

    void SetUp() override { fs::current_path(folder.path()); }
    void TearDown() override { fs::current_path("/"); }

    // The call fails with the code, and nothing has changed.
    template <class Function, class... Values>
    void Refuses(unsigned long code, Function function, Values const&... values) {
        auto const before = std::pair(Tree("."), Tree(other));
        EXPECT_EQ(Code(function, values...), code) << testing::PrintToString(std::tuple(values...));
        EXPECT_EQ(std::pair(Tree("."), Tree(other)), before);
    }
    void* Open(char const* name, unsigned long access, unsigned long share, unsigned long disposition,
               unsigned long* error = nullptr) {
        return TovFileCreate(name, access, share, disposition, TOV_ATTRIBUTE_NORMAL, error);
    }
};

TEST_F(File, DispositionsMakeOpenAndEmpty) {
    std::tuple<unsigned long, bool, unsigned long, char const*> const rows[] = {
        // clang-format off
        {1, false, 0, ""}, {1, true, 80, "old"}, {2, false, 0, ""}, {2, true, 0, ""}, {3, false, 2, ""}, {3, true, 0, "old"},
        {4, false, 0, ""}, {4, true, 0, "old"},  {5, false, 2, ""}, {5, true, 0, ""}, {0, true, 87, "old"}, {6, true, 87, "old"},
        // clang-format on
    };
    for (auto const& [disposition, isThere, expected, left] : rows) {
        fs::remove("f");
        if (isThere) PutFile("f", "old");
        unsigned long error = 1;
        void* const file = Open("f", readWrite, 0, disposition, &error);
        EXPECT_EQ(error, expected) << disposition << isThere;
        EXPECT_EQ(GetFile("f"), left);
        EXPECT_EQ(TovFileClose(file), expected == 0);
        EXPECT_EQ(fs::exists("f"), isThere || expected == 0);
    }
    Refuses(87, TovFileOpen, "f", TOV_FILE_READ, 1ul, TOV_TRUNCATE_EXISTING, 128ul);
}

TEST_F(File, ReadsWritesAndSeeksLikeAMirror) {
    std::mt19937 random(310);
    void* const file = Open("data", readWrite, 0, TOV_CREATE_NEW);
    std::string mirror;
    std::size_t at = 0;
    for (int i = 0; i < 3000; ++i) {
        std::string buffer(1 + random() % 100, static_cast<char>(random()));
        if (random() % 4 == 0) {
            at = random() % (mirror.size() + 50);
            EXPECT_EQ(TovFileSeek(file, static_cast<long>(at)), 1);
        }
        if (random() % 2 == 0) {
            EXPECT_EQ(TovFileWrite(file, buffer.data(), buffer.size()), 1);
            mirror.resize(std::max(mirror.size(), at + buffer.size()));
            std::copy(buffer.begin(), buffer.end(), mirror.begin() + static_cast<long>(at));
            at += buffer.size();
        } else {
            std::string const there = mirror.substr(std::min(at, mirror.size()), buffer.size());
            unsigned long error = 1;
            EXPECT_EQ(TovFileRead(file, buffer.data(), buffer.size(), &error), there.size() == buffer.size());
            EXPECT_EQ(error, 0u) << "the end is no error";
            EXPECT_EQ(buffer.substr(0, there.size()), there);
            at += there.size();
        }
        EXPECT_EQ(TovFileSize(file), std::ssize(mirror));
    }
    Refuses(87, TovFileSeek, file, -1L);
    EXPECT_EQ(TovFileSeekEnd(file) + TovFileWrite(file, "text") + TovFileClose(file), 3);
    EXPECT_EQ(GetFile("data"), mirror + "text");
    EXPECT_EQ(TovFileSize("data"), std::ssize(mirror) + 4);

    void* const reader = Open("data", TOV_FILE_READ, shareAll, TOV_OPEN_EXISTING);
    Refuses(6, write, reader, "x");
    TovFileClose(reader);
    for (void* const none : {static_cast<void*>(nullptr), reader}) {
        EXPECT_EQ(Code(TovFileRead, none, static_cast<void*>(nullptr), 0ul), 6u);
        EXPECT_EQ(Code(size, none), 6u);
        EXPECT_EQ(Code(TovFileClose, none), 6u);
    }
}

TEST_F(File, AFileWithoutSharingKeepsOthersOutAndWhole) {
    PutFile("data", "precious");
    void* const mine = Open("data", TOV_FILE_READ, TOV_SHARE_NONE, TOV_OPEN_EXISTING);
    for (unsigned long const disposition : {TOV_CREATE_ALWAYS, TOV_TRUNCATE_EXISTING, TOV_OPEN_EXISTING})
        Refuses(32, TovFileCreate, "data", readWrite, shareAll, disposition, 128ul);
    EXPECT_EQ(TovFileInUse("./*"), 1);
    TovFileClose(mine);
    EXPECT_EQ(TovFileInUse("./*"), 0);
    void* const one = Open("data", TOV_FILE_READ, shareAll, TOV_OPEN_EXISTING);
    void* const two = Open("data", TOV_FILE_WRITE, shareAll, TOV_OPEN_EXISTING);
    EXPECT_EQ(Open("data", TOV_FILE_READ, TOV_SHARE_NONE, TOV_OPEN_EXISTING), nullptr);
    EXPECT_EQ(TovFileClose(one) + TovFileClose(two), 2);
}

TEST_F(File, PathsThatCannotBeUsedTellWhy) {
    Plant("dir/ file= loop->loop");
    // clang-format off
    std::pair<std::string, unsigned long> const rows[] = {
        {"", 2},          {"none", 2}, {"none/file", 3}, {"none\\file", 3},
        {"file/file", 3}, {"dir", 5},  {"loop", TOV_ERROR_SYSTEM_BASE + ELOOP}, {std::string(256, 'n'), 206}};
    // clang-format on
    for (auto const& [name, error] : rows) {
        char const* const path = name.empty() ? nullptr : name.c_str();
        Refuses(error, TovFileCreate, path, TOV_FILE_READ, 1ul, TOV_OPEN_EXISTING, 128ul);
        Refuses(error, size, path);
        EXPECT_EQ(TovPathExists(path), name == "dir");
        if (name != "dir") Refuses(error, TovFileFind, path);
    }
    for (auto const& [name, error] : {std::pair("dir", 183u), {"none/d", 3}, {"file/d", 3}, {"file", 183}})
        Refuses(error, TovDirectoryCreate, name);
    Refuses(3, TovDirectoryExist, "file");
    EXPECT_EQ(TovDirectoryCreate("dir\\made") + TovDirectoryExist("dir/made\\") + TovPathExists("file"), 3);
    ASSERT_EQ(::mkfifo("pipe", 0600), 0);
    void* const pipe = Open("pipe", TOV_FILE_READ, shareAll, TOV_OPEN_EXISTING);
    EXPECT_EQ(TovFileClose(pipe), 1) << "nobody at the other end holds up the opening";
}

TEST_F(File, AWriteThatFailsLeavesLengthAndPosition) {
    void* const file = Open("data", readWrite, 0, TOV_CREATE_NEW);
    ASSERT_EQ(TovFileWrite(file, "0123456789"), 1);
    OnFullVolume([&] { Refuses(tooBig, write, file, std::string(10'000, 'x').c_str()); });
    EXPECT_EQ(TovFileWrite(file, "!"), 1);
    TovFileClose(file);
    EXPECT_EQ(GetFile("data"), "0123456789!");
    void* const full = Open("/dev/full", TOV_FILE_WRITE, shareAll, TOV_OPEN_EXISTING);
    EXPECT_EQ(Code(write, full, "x"), 112u);
    TovFileClose(full);
}

TEST_F(File, AMoveNeverOverwrites) {
    Plant("a=A b=B d/ link->b t/ t/sub/ t/x=X");
    for (char const* const to : {"a", "b", "d"})
        Refuses(183, TovFileMove, "a", to);
    Refuses(2, TovFileMove, "none", "c");
    Refuses(3, TovFileMove, "none/a", "c");
    Refuses(3, TovFileMove, "a", "none/c");
    Refuses(206, TovFileMove, "a", std::string(300, 'n').c_str());
    Refuses(183, TovDirectoryMove, "t", "d");  // not even an empty one is replaced
    Refuses(87, TovDirectoryMove, "t", "t/sub/inside");
    Refuses(2, TovDirectoryMove, "none", "c");
    Refuses(3, TovDirectoryMove, "t", "none/c");
    EXPECT_EQ(TovFileMove("a", "d\\c") + TovFileMove("link", "moved") + TovDirectoryMove("t/", "u\\"), 3);
    EXPECT_EQ(Tree("."), "b=B d/ d/c=A moved->b u/ u/sub/ u/x=X");
}

TEST_F(File, FindsListsAndHides) {
    Plant("One.TXT=x two.txt=x three=x .dot=x a\\b.txt=x dir.txt/");
    // A name without wildcards is the volume's to compare, and a directory is no file.
    for (char const* const path : {"three", "./o*.txt", "THREE", "./dir.*", "dir.txt"})
        EXPECT_EQ(TovFileFind(path), path[0] == 't' || path[2] == 'o') << path;
    EXPECT_EQ(TovFileCount("./*.*"), 5u) << "names without a dot too";
    EXPECT_EQ(TovFileCount("./*.TxT"), 3u);
    EXPECT_EQ(TovFileInUse("./*"), 0) << "the file a\\b.txt is opened by its name";

    WIN32_FIND_DATAA data;
    std::set<std::string> found;
    void* const find = TovDirectoryFind("./*.txt", &data);
    do
        found.insert(data.cFileName + (data.IsDirectory() ? "/" : ""));
    while (TovDirectoryFindNext(find, &data) != 0);
    EXPECT_EQ(Code(TovDirectoryFindNext, find, &data), 18u);
    TovDirectoryFindClose(find);
    EXPECT_THAT(found, testing::UnorderedElementsAre("One.TXT", "two.txt", "a\\b.txt", "dir.txt/"));
    Refuses(2, TovDirectoryFind, "./*.none", &data);
    Refuses(6, TovDirectoryFindNext, static_cast<void*>(nullptr), &data);
    Refuses(2, TovFileFind, "./*.none");
    Refuses(3, TovFileInUse, "none/*");
    Refuses(3, TovFileCount, "none/*");
    Refuses(50, TovFileHide, "three");
    Refuses(2, TovFileHide, ".none");
    EXPECT_EQ(TovFileHide(".dot"), 1);
}

// Contents, mode and times of every file, names that are no paths, and nothing but files.
TEST_F(File, ADirectoryIsCopiedFileByFile) {
    std::string const name(255, 'n');
    std::string const big(300'000, 'b');
    Plant("outside=out from/ from/sub/ from/a\\b=one from/link->../outside from/dangling->nowhere");
    Plant("from/sublink->sub from/big=" + big + " from/" + name + "=long");
    fs::permissions("from/big", fs::perms(0640));
    fs::last_write_time("from/big", fs::file_time_type::clock::now() - std::chrono::hours(1000));
    EXPECT_EQ(TovDirectoryCopy("from", "to\\", 1), 1);
    EXPECT_EQ(Tree("to"), "a\\b=one big=" + big + " dangling->nowhere link=out " + name + "=long");
    EXPECT_EQ(fs::status("to/big").permissions(), fs::perms(0640));
    EXPECT_EQ(fs::last_write_time("to/big"), fs::last_write_time("from/big"));
}

TEST_F(File, ACopyReplacesOrRefusesWhole) {
    Plant("from/ from/x=new to/ to/x=old file= victim=whole same->from twin/");
    Plant("big/ big/x=" + std::string(100'000, 'n'));
    fs::create_hard_link("from/x", "twin/x");
    Refuses(80, TovDirectoryCopy, "from", "to", 1);
    Refuses(3, TovDirectoryCopy, "none", "made", 0);
    Refuses(3, TovDirectoryCopy, "from", "none/made", 0);
    Refuses(3, TovDirectoryCopy, "from", "file", 0);
    for (char const* const to : {"from", "same", "twin"}) {  // a file onto itself
        Refuses(32, TovDirectoryCopy, "from", to, 0);
        Refuses(32, TovDirectoryCopy, "from", to, 1);
    }
    OnFullVolume([&] {
        Refuses(tooBig, TovDirectoryCopy, "big", "to", 0);
        Refuses(tooBig, TovDirectoryCopy, "big", "made", 0);
    });
    fs::remove("to/x");
    Plant("to/x->../victim to/y=mine");
    EXPECT_EQ(TovDirectoryCopy("from", "to", 0), 1);
    EXPECT_EQ(Tree("to"), "x=new y=mine");
    EXPECT_EQ(GetFile("victim"), "whole") << "the link is replaced, not what it leads to";
    ASSERT_EQ(::mkfifo("from/pipe", 0600), 0);
    EXPECT_EQ(Code(TovDirectoryCopy, "from", "to", 0), 50u);
}

TEST_F(File, RemovingStaysInsideTheDirectory) {
    std::string const kept = "e/ e/sub/ e/x=x file=f outside/ outside/p=precious";
    Plant(kept);
    Plant("d/ d/a=x d/a\\b=x d/.hidden=x d/dirlink->../outside d/filelink->../file link->outside");
    Refuses(145, TovDirectoryRemove, "e");
    Refuses(145, TovDirectoryRemove, folder.path().c_str());
    Refuses(3, TovDirectoryRemove, "none");
    Refuses(3, TovDirectoryRemove, "file");
    EXPECT_EQ(TovDirectoryRemove("d\\") + TovDirectoryRemove("link/"), 2);
    EXPECT_EQ(Tree("."), kept);
}

TEST_F(File, WithoutTheRightNothingIsRemoved) {
    Plant("d/ d/x=x closed=");
    fs::permissions("d", fs::perms(0500));
    fs::permissions("closed", fs::perms::none);
    test::WithoutRights({folder.path()}, [&] {
        Refuses(5, TovDirectoryRemove, "d");
        Refuses(5, TovFileOpen, "closed", TOV_FILE_READ, 1ul, TOV_OPEN_EXISTING, 0ul);
        fs::permissions("d", fs::perms::none);
        EXPECT_EQ(Code(TovFileCount, "d/*"), 0u) << "a directory that may not be read is an empty one";
    });
    fs::permissions("d", fs::perms(0700));
}

// Skipped where the machine has only one volume.
class TwoVolumes : public File {
 protected:
    void SetUp() override {
        File::SetUp();
        std::string pattern = "/dev/shm/tov-test-XXXXXX";
        if (::mkdtemp(pattern.data()) == nullptr) GTEST_SKIP() << "no second volume";
        other = pattern;
        if (TovDriveIsEqual(pattern.c_str(), ".") != 0) GTEST_SKIP() << "the same volume";
    }
    void TearDown() override {
        if (!other.empty()) fs::remove_all(other);
        File::TearDown();
    }
    std::string Other(std::string const& name) const { return other / name; }
};

TEST_F(TwoVolumes, FilesAreCopiedAndThenRemoved) {
    Plant("a=A d/ link->nowhere");
    Plant("taken=T", other);
    fs::permissions("a", fs::perms(0640));
    Refuses(183, TovFileMove, "a", Other("taken").c_str());
    Refuses(3, TovFileMove, "a", Other("none/a").c_str());
    Refuses(17, TovFileMove, "d", Other("d").c_str());
    EXPECT_EQ(TovFileMove("a", Other("new").c_str()) + TovFileMove("link", Other("link").c_str()), 2);
    EXPECT_EQ(Tree("."), "d/");
    EXPECT_EQ(Tree(other), "link->nowhere new=A taken=T");
    EXPECT_EQ(fs::status(Other("new")).permissions(), fs::perms(0640));
    EXPECT_EQ(TovDriveIsEqual("none/none", "."), 1);
}

TEST_F(TwoVolumes, ADirectoryGoesWholeOrStays) {
    Plant("d/ d/x=X d/a\\b=B d/link->x d/sub/");
    Plant("taken/", other);
    fs::create_hard_link("d/x", "d/y");
    Refuses(145, TovDirectoryMove, "d", Other("d").c_str());
    fs::remove("d/sub");
    Refuses(183, TovDirectoryMove, "d", Other("taken").c_str());
    std::string whole = Tree("d");
    EXPECT_EQ(Code(TovDirectoryMove, "d", Other("d").c_str()), 0u);
    EXPECT_EQ(Tree(Other("d")), whole);
    EXPECT_EQ(Tree("."), "");

    PutFile(Other("d/z"), std::string(100'000, 'z'));
    whole = Tree(Other("d"));
    OnFullVolume([&] { Refuses(tooBig, TovDirectoryMove, Other("d").c_str(), "back"); });
    fs::permissions(Other("d"), fs::perms(0500));  // files can be read but not removed
    test::WithoutRights({folder.path(), other},
                        [&] { EXPECT_EQ(Code(TovDirectoryMove, Other("d").c_str(), "back"), 5u); });
    EXPECT_EQ(Tree(Other("d")), whole);
    EXPECT_EQ(Tree("back"), whole) << "every file stands in both";
    fs::permissions(Other("d"), fs::perms(0700));
    fs::permissions("back", fs::perms(0700));
}

// Files that come and go meanwhile: none may end in neither place.
TEST_F(TwoVolumes, NothingIsLostWhileTheSourceChanges) {
    for (int round = 0; round < 30; ++round) {
        std::string const from = std::to_string(round);
        std::vector<std::string> expected;
        fs::create_directory(from);
        for (int i = 0; i < 20; ++i)
            Plant(expected.emplace_back("f").append(std::to_string(i)) += "=old", from);
        std::thread writer([&] {
            for (int i = 0; i < 40; ++i) {
                std::string const name = std::string("new").append(std::to_string(i));
                std::ofstream file(fs::path(from) / name);
                if (file && file << "new" && file.flush()) expected.push_back(name + "=");
            }
        });
        TovDirectoryMove(from.c_str(), Other(from).c_str());
        writer.join();
        std::string const found = Tree(from) + " " + Tree(Other(from));
        for (std::string const& entry : expected)
            EXPECT_THAT(found, testing::HasSubstr(entry));
    }
}

TEST_F(File, TemporaryFilesAreEmptyOnesOwnAndNew) {
    CString const first = TovTempFilename(folder.path().c_str(), "tov");
    EXPECT_NE(TovTempFilename((folder.path() / "").c_str(), "tov"), first);
    EXPECT_EQ(first.rfind(folder.File("tov"), 0), 0u);
    EXPECT_EQ(fs::status(first).permissions(), fs::perms(0600));
    EXPECT_EQ(fs::file_size(first), 0u);
    EXPECT_EQ(TovTempFilename("none", "tov") + TovTempFilename(".", "../x"), "");
    CString const system = TovTempFilename(nullptr, nullptr);
    EXPECT_EQ(system.rfind(TovTempDirectory(), 0), 0u);
    EXPECT_TRUE(TovTempDirectory().back() == '/' && fs::remove(system));
}

TEST_F(File, ExecutablesAreToldByRightOrExtension) {
    Plant("run= plain= tool.EXE= lib.so= Old.dll=");
    fs::permissions("run", fs::perms(0700));
    // What the argument of each function is afterwards; null for the answer 0.
    // clang-format off
    std::pair<char const*, std::array<char const*, 3>> const rows[] = {
        {"run", {"run", nullptr, "run"}},        {"plain", {}}, {"tool", {"tool.EXE", nullptr, "tool.EXE"}},
        {"lib.so", {nullptr, "lib.so", "lib.so"}}, {"none", {}}, {"Old", {nullptr, "Old.dll", "Old.dll"}}};
    // clang-format on
    for (auto const& [name, expected] : rows) {
        for (std::size_t i = 0; auto const function : {TovFileIsEXE, TovFileIsDLL, TovFileIsExecutable}) {
            CString path = name;
            char const* const found = expected[i++];
            EXPECT_EQ(function(path), found != nullptr);
            EXPECT_EQ(path, found != nullptr ? found : name);
        }
    }
}

TEST_F(File, DrivesLettersAndModules) {
    for (unsigned drive = 1; drive <= 26; ++drive)
        EXPECT_EQ(TovGetDriveInteger(TovGetDriveString(drive).c_str()), drive);
    EXPECT_EQ(TovGetDriveString(0) + TovGetDriveString(27), "");
    EXPECT_EQ(TovGetDriveInteger(nullptr) + TovGetDriveInteger("/home") + TovGetDriveInteger("1:"), 0u);
    EXPECT_EQ(TovDriveIsEqual("", "/") + TovDriveIsEqual(nullptr, nullptr), 0);

    std::vector<CString> all, some;
    TovGetAvailableDrives(~0u, all);
    EXPECT_FALSE(all.empty());
    std::size_t sum = 0;
    for (unsigned kind = 2; kind <= 6; ++kind, sum += some.size())
        TovGetAvailableDrives(1u << kind, some);
    EXPECT_EQ(sum, all.size());
    PutFile("strings.json", "{}");
    std::pair<HINSTANCE, std::string> const modules[] = {
        {nullptr, "/file_test"},
        {TovBuiltInResourceModule(), "/libTov310Core.so"},
        {TovLoadResourceModule(folder.path().c_str()), folder.path()}};
    for (auto const& [module, end] : modules) {
        CString path;
        EXPECT_EQ(TovGetModulePath(module, path), 1);
        EXPECT_THAT(path, testing::HasSubstr(end));
    }
}

}  // namespace
}  // namespace tov
