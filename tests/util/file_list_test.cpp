#include <tov310/file_list.h>
#include <tov310/messages.h>
#include <tov310/window.h>

#include "support/temporary_folder.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <functional>
#include <map>
#include <random>
#include <sstream>
#include <thread>

namespace tov {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::UnorderedElementsAre;
using Texts = std::vector<std::string>;

std::string Numbered(char const* name, long number) {
    return (std::ostringstream() << name << number).str();
}

void Touch(fs::path const& path) {
    std::ofstream file(path);
}

class FileList : public testing::Test {
 protected:
    test::TemporaryFolder folder;
    std::string At(std::string const& name) const { return folder.File(name); }

    // Some hundred directories with files of three kinds, the shape left to chance.
    void PlantTree(unsigned seed, int directories = 300) {
        std::mt19937 random(seed);
        std::vector<fs::path> all{folder.path()};
        for (int i = 0; i < directories; ++i) {
            all.push_back(all[random() % all.size()] / Numbered("d", i));
            fs::create_directory(all.back());
            for (auto f = static_cast<long>(random() % 6); f > 0; --f)
                Touch(all.back() / Numbered("f", f).append(random() % 3 == 0 ? ".TXT" : ".dat"));
        }
    }
};

// What the order must be, by the plainest means. The volume's order is that of its listing.
struct Mirror {
    Texts directories;
    Texts told;

    explicit Mirror(std::string const& root) : directories{root} { Enter(root); }

    void Enter(std::string const& directory) {
        std::size_t const first = directories.size();
        for (auto const& entry : fs::directory_iterator(directory)) {
            if (!entry.is_directory()) continue;
            directories.push_back(directory + entry.path().filename().string() + "/");
            told.push_back(Numbered("", static_cast<long>(directories.size() - 1)) + directories.back());
        }
        std::size_t const end = directories.size();
        for (std::size_t i = first; i < end; ++i)
            Enter(Texts(directories)[i]);
    }

    Texts Files(std::vector<std::function<bool(std::string const&)>> const& patterns) const {
        Texts files;
        for (std::string const& directory : directories) {
            for (auto const& matches : patterns) {
                for (auto const& entry : fs::directory_iterator(directory)) {
                    std::string const name = entry.path().filename().string();
                    if (!entry.is_directory() && matches(name)) files.push_back(directory + name);
                }
            }
        }
        return files;
    }
};

unsigned long User(void* pointer) {
    return reinterpret_cast<unsigned long>(pointer);
}

TEST_F(FileList, TheOrderIsThatOfThePlainestSearch) {
    for (unsigned seed = 1; seed <= 5; ++seed) {
        PlantTree(seed);
        Mirror const mirror(At(""));
        CTovFileList list(Texts{At("*.dat"), "*1.*", "a/b", "*.DAT"}, 1, 0, 0);
        Texts found;
        Texts searched;
        auto const tell = [](unsigned long user, int counter, char const* path) {
            reinterpret_cast<Texts*>(user)->push_back(Numbered("", counter) + path);
        };
        list.SetCallbackSearchDirectory(tell, User(&found));
        list.SetCallbackSearchInDirectory(tell, User(&searched));
        list.DoIt();
        EXPECT_EQ(list.Failed(), 0);
        EXPECT_EQ(list.AllFullFilenames(),
                  mirror.Files({[](auto const& n) { return n.ends_with(".dat"); },
                                [](auto const& n) { return n.find("1.") != n.npos; }}));
        EXPECT_EQ(found, mirror.told);
        Texts expected;
        for (std::string const& directory : mirror.directories) {
            for (char const* const pattern : {"*.dat", "*1.*"})
                expected.push_back(Numbered("", static_cast<long>(expected.size() + 1)) + directory +
                                   pattern);
        }
        EXPECT_EQ(searched, expected);
        for (unsigned i = 0; i < list.Size(); ++i) {
            EXPECT_EQ(list[i]->GetFullFilename(), list.AllFullFilenames()[i]);
            EXPECT_EQ(list[i]->cFileName, list.AllFilenames()[i]);
            EXPECT_EQ(list[i]->cAlternateFileName, list.AllAlternateFilenames()[i]);
        }
        EXPECT_EQ(list[list.Size()], nullptr);
    }
}

TEST_F(FileList, PatternsAreBlindToCaseAndKnowCharacters) {
    Texts const names = {"a.txt",    "B.TXT",    "noext",    ".dot",     "äöü.Txt", "ÄÖÜ2.txt",
                         "x.tar.gz", "a\\b.txt", "\xff.bin", "日本.dat", "[1].x"};
    for (std::string const& name : names)
        Touch(At("") + name);
    fs::create_directory(At("dir.txt"));
    struct Row {
        char const* pattern;
        Texts found;
    };
    Row const rows[] = {
        {"*.*", names},
        {"*", names},
        {"*.txt", {"a.txt", "B.TXT", "äöü.Txt", "ÄÖÜ2.txt", "a\\b.txt"}},
        {"ÄÖÜ*.TXT", {"äöü.Txt", "ÄÖÜ2.txt"}},
        {"???.txt", {"äöü.Txt", "a\\b.txt"}},
        {"b.txt", {"B.TXT"}},
        {"??.dat", {"日本.dat"}},
        {"?.bin", {"\xff.bin"}},
        {"*.*.*", {"x.tar.gz"}},
        {"*x*", {"a.txt", "B.TXT", "noext", "äöü.Txt", "ÄÖÜ2.txt", "x.tar.gz", "a\\b.txt", "[1].x"}},
        {"[1].x", {"[1].x"}},
        {"**xt", {"a.txt", "B.TXT", "noext", "äöü.Txt", "ÄÖÜ2.txt", "a\\b.txt"}},
        {"", {}},
        {"*.", {}}};
    for (Row const& row : rows) {
        CTovFileList const list((At("") + row.pattern).c_str(), 0, 0, 1);
        EXPECT_THAT(list.AllFilenames(), testing::UnorderedElementsAreArray(row.found)) << row.pattern;
        EXPECT_EQ(list.Failed(), 0);
    }
    CTovFileList const backslashes((folder.path().string() + "\\b.txt").c_str(), 0, 0, 1);
    EXPECT_THAT(backslashes.AllFullFilenames(), ElementsAre(At("B.TXT")));
}

TEST_F(FileList, PathsWithoutADirectoryFindNothingAndDoNotFail) {
    for (char const* const path : {"*.txt", "/*", "\\*", "", static_cast<char const*>(nullptr)}) {
        CTovFileList const list(path, 1, 0, 1);
        EXPECT_EQ(list.Size(), 0u);
        EXPECT_EQ(list.Failed(), 0);
    }
    EXPECT_EQ(CTovFileList(Texts{}, 1, 0, 1).Size(), 0u);
    Touch(At("f"));
    EXPECT_EQ(CTovFileList(At("*").c_str(), 0, 1, 1).Size(), 0u) << "in the background it waits for Search";
    EXPECT_EQ(CTovFileList(At("*").c_str(), 0, 0, 0).Size(), 0u);
}

TEST_F(FileList, PatternsAreAddedOnce) {
    for (char const* const name : {"a.txt", "b.dat"})
        Touch(At(name));
    CTovFileList list(At("*.txt").c_str(), 0, 0, 0);
    EXPECT_EQ(list.AddSearchPattern("x\\*.dat"), 0);
    EXPECT_EQ(list.AddSearchPattern("x/*.dat"), 0);
    EXPECT_EQ(list.AddSearchPattern("*.DAT"), 1);
    EXPECT_EQ(list.AddSearchPattern("*.dat"), 1);
    EXPECT_EQ(list.AddSearchPattern("*.TXT"), 1);
    list.DoIt();
    EXPECT_THAT(list.AllFilenames(), ElementsAre("a.txt", "b.dat"));
    list.DoIt();
    EXPECT_THAT(list.AllFilenames(), ElementsAre("a.txt", "b.dat", "a.txt", "b.dat")) << "the records stay";
    list.Abort();
    EXPECT_EQ(list.Size() + list.AllFilenames().size() + list.AllFullFilenames().size(), 0u);
    list.DoIt();
    EXPECT_EQ(list.Size(), 2u);
}

TEST_F(FileList, RecordsAreSortedByEveryMode) {
    struct File {
        char const* name;
        long size;
        long written;
        long accessed;
    };
    // The third is larger than 32 bits can say, its lower half small.
    File const files[] = {{"b", 7, 3, 1}, {"a", 8, 1, 2}, {"sub/c", (1L << 32) + 1, 2, 3}};
    fs::create_directory(At("sub"));
    for (File const& file : files) {
        Touch(At(file.name));
        fs::resize_file(At(file.name), static_cast<std::uintmax_t>(file.size));
        timespec const times[] = {{file.accessed, 100}, {file.written, 200}};
        ASSERT_EQ(::utimensat(AT_FDCWD, At(file.name).c_str(), times, 0), 0);
    }
    CTovFileList list(At("*").c_str(), 1, 0, 1);
    Texts const asFound = list.AllFilenames();
    ASSERT_EQ(list.Size(), 3u);
    using List = CTovFileList;
    struct Row {
        List::eSortMode mode;
        Texts names;
    };
    Row const rows[] = {{List::eSortFilename, {"c", "b", "a"}},
                        {List::eSortFullFilename, {"a", "b", "c"}},
                        {List::eSortAlternateFilename, {"c", "b", "a"}},
                        {List::eSortLastWriteTime, {"a", "c", "b"}},
                        {List::eSortLastAccessTime, {"b", "a", "c"}},
                        {List::eSortSize, {"b", "a", "c"}},
                        {static_cast<List::eSortMode>(99), {"c", "b", "a"}}};
    for (Row const& row : rows) {
        list.Sort(row.mode);
        EXPECT_EQ(list.AllFilenames(), row.names) << row.mode;
        EXPECT_EQ(list[0]->cFileName, row.names[0]);
        EXPECT_EQ(fs::path(list.AllFullFilenames()[2]).filename(), row.names[2]);
    }
    list.Sort(List::eSortCreationTime);
    for (unsigned i = 1; i < 3; ++i)
        EXPECT_LE(list[i - 1]->ftCreationTime, list[i]->ftCreationTime);
    list.Sort(List::eSortSize);
    EXPECT_EQ(list[2]->nFileSizeHigh, 1u);
    EXPECT_EQ(list[2]->nFileSizeLow, 1u);
    EXPECT_EQ(list[0]->ftLastWriteTime.ticks, 116'444'736'000'000'000u + 3 * 10'000'000 + 2);

    CTovFileList again(At("*").c_str(), 1, 0, 0);
    again.Sort(List::eSortFilename);
    again.DoIt();
    EXPECT_THAT(again.AllFilenames(), ElementsAre("c", "b", "a"));
    list.Sort(List::eSortNone);
    EXPECT_THAT(list.AllFilenames(), ElementsAre("b", "a", "c")) << "none leaves what is";
    CTovFindData a, b;
    a.cFileName = "a";
    b.cFileName = "b";
    EXPECT_TRUE(b < a) << "without a list from Z to A";
}

TEST_F(FileList, ARecordTellsWhatTheEntryIs) {
    Touch(At("file"));
    Touch(At(".hidden"));
    Touch(At("fixed"));
    fs::permissions(At("fixed"), fs::perms(0444));
    std::ofstream(At("target")) << "12345";
    fs::create_symlink("target", At("link"));
    fs::create_symlink("nowhere", At("dangling"));
    ASSERT_EQ(::mkfifo(At("pipe").c_str(), 0600), 0);
    CTovFileList list(At("*").c_str(), 0, 0, 1);
    std::map<std::string, unsigned long> attributes;
    for (unsigned i = 0; i < list.Size(); ++i) {
        attributes[list[i]->cFileName] = list[i]->dwFileAttributes;
        EXPECT_TRUE(list[i]->cFileName != "link" || list[i]->FileSize() == 5);
    }
    EXPECT_EQ(attributes, (std::map<std::string, unsigned long>{{"file", 128},
                                                                {".hidden", 2},
                                                                {"fixed", 1},
                                                                {"target", 128},
                                                                {"link", 1024},
                                                                {"dangling", 1024},
                                                                {"pipe", 128}}));
}

TEST_F(FileList, LinksAreFollowedAndCyclesEnd) {
    fs::create_directories(At("a/b"));
    fs::create_directories(At("../") + folder.path().filename().string() + "-outside/deep");
    std::string const outside = At("") + "../" + folder.path().filename().string() + "-outside";
    Touch(At("a/b/f"));
    Touch(outside + "/deep/f");
    fs::create_directory_symlink("../..", At("a/b/up"));
    fs::create_directory_symlink(".", At("a/self"));
    fs::create_directory_symlink("a", At("z1"));
    fs::create_directory_symlink("a", At("z2"));
    fs::create_directory_symlink(outside, At("out"));
    fs::create_directory_symlink(folder.path(), outside + "/back");
    fs::create_symlink("none", At("gone"));
    CTovFileList const list(At("f").c_str(), 1, 0, 1);
    EXPECT_THAT(list.AllFullFilenames(),
                UnorderedElementsAre(At("a/b/f"), At("z1/b/f"), At("z2/b/f"), At("out/deep/f")));
    fs::remove_all(outside);
}

// Each of them leads to all the others: there are more ways than anybody could go.
TEST_F(FileList, LinksInEveryDirectionComeToAnEnd) {
    for (long i = 0; i < 12; ++i) {
        fs::create_directory(At(Numbered("d", i)));
        Touch(At(Numbered("d", i)) + "/f");
        for (long k = 0; k < 12; ++k)
            fs::create_directory_symlink(Numbered("../d", k), At(Numbered("d", i)) + Numbered("/to", k));
    }
    CTovFileList const list(At("f").c_str(), 1, 0, 1);
    EXPECT_GE(list.Size(), 12u + 12 * 11) << "every single link is followed";
    EXPECT_EQ(list.Failed(), 0);
}

TEST_F(FileList, OnlyAMissingDirectoryOfTheSearchPathFails) {
    CTovFileList list(At("none/*").c_str(), 1, 0, 1);
    EXPECT_EQ(list.Failed(), 1);
    EXPECT_EQ(list.GetLastError(), 3u);
    Touch(At("file"));
    EXPECT_EQ(CTovFileList(At("file/*").c_str(), 0, 0, 1).GetLastError(), 3u);
    EXPECT_EQ(CTovFileList((At(std::string(256, 'n')) + "/*").c_str(), 0, 0, 1).GetLastError(), 206u);
    fs::create_directory(At("none"));
    Touch(At("none/f"));
    list.DoIt();
    EXPECT_EQ(list.Failed(), 0);
    EXPECT_EQ(list.GetLastError(), 0u);
    EXPECT_EQ(list.Size(), 1u);

    fs::create_directories(At("none/closed/inner"));
    Touch(At("none/closed/f"));
    fs::permissions(At("none/closed"), fs::perms::none);
    uid_t const user = ::geteuid();
    if (user == 0) {
        fs::permissions(folder.path(), fs::perms(0755));
        ASSERT_EQ(::seteuid(65534), 0);
    }
    CTovFileList const closed(At("none/f").c_str(), 1, 0, 1);
    EXPECT_EQ(::seteuid(user), 0);
    EXPECT_EQ(closed.Size(), 1u);
    EXPECT_EQ(closed.Failed(), 0);
    fs::permissions(At("none/closed"), fs::perms(0700));
}

TEST_F(FileList, OneFileCanBeAdded) {
    Touch(At("f"));
    Touch(At("a\\b"));
    CTovFileList list(At("*").c_str(), 0, 0, 0);
    list.FindFile(At("f").c_str(), 1);
    list.FindFile(At("f").c_str(), 0);
    for (std::string const& nothing : {At("none"), folder.path().string()})
        list.FindFile(nothing.c_str(), 1);
    EXPECT_EQ(list.Size(), 2u);
    EXPECT_EQ(list[0]->GetFullFilename(), At("f"));
    EXPECT_THAT(list.AllFullFilenames(), ElementsAre(At("f")));
    EXPECT_EQ(list.Failed(), 0);
    list.FindFile(At("none/f").c_str(), 1);
    EXPECT_EQ(list.Failed(), 1);
    EXPECT_EQ(list.GetLastError(), 3u);
}

TEST_F(FileList, TenThousandDirectoriesDeepAndWide) {
    constexpr int count = 10'000;
    int place = ::open(folder.path().c_str(), O_RDONLY | O_DIRECTORY);
    auto const touch = [&place] { ::close(::openat(place, "f", O_CREAT | O_WRONLY, 0600)); };
    for (int i = 0; i < count; ++i) {
        ASSERT_EQ(::mkdirat(place, "d", 0700), 0);
        int const next = ::openat(place, "d", O_RDONLY | O_DIRECTORY);
        ::close(place);
        place = next;
        if (i % 1000 == 999) touch();
    }
    CTovFileList const deep(At("f").c_str(), 1, 0, 1);
    EXPECT_EQ(deep.Failed(), 0) << deep.GetLastError();
    ASSERT_EQ(deep.Size(), 10u);
    EXPECT_EQ(deep.AllFullFilenames().back().size(), folder.path().string().size() + 2 * count + 2);
    // Too deep for a path: the tree is taken away from its end.
    for (int i = 0; i < count; ++i) {
        int const above = ::openat(place, "..", O_RDONLY | O_DIRECTORY);
        ::unlinkat(place, "f", 0);
        ::close(place);
        place = above;
        ASSERT_EQ(::unlinkat(place, "d", AT_REMOVEDIR), 0);
    }
    ::close(place);

    for (long i = 0; i < count; ++i)
        fs::create_directory(At(Numbered("w", i)));
    Touch(At("w77/f"));
    EXPECT_THAT(CTovFileList(At("f").c_str(), 1, 0, 1).AllFullFilenames(), ElementsAre(At("w77/f")));
}

// --- in a thread of its own

struct Log {
    CTovFileList* list = nullptr;
    std::atomic<int> begun = 0, ended = 0, aborts = 0, abortFlag = -1, told = 0;
    int abortAt = -1;  // which of the callbacks aborts

    void Watch(CTovFileList& watched) {
        list = &watched;
        unsigned long const user = User(this);
        watched.SetCallbackThreadBegin([](unsigned long u) { ++Of(u).begun, Of(u).Tell(); }, user);
        watched.SetCallbackThreadTerminate(
            [](unsigned long u, int aborted) { ++Of(u).ended, Of(u).abortFlag = aborted, Of(u).Tell(); },
            user);
        watched.SetCallbackThreadAbort([](unsigned long u) { ++Of(u).aborts; }, user);
        auto const tell = [](unsigned long u, int, char const*) { Of(u).Tell(); };
        watched.SetCallbackSearchDirectory(tell, user);
        watched.SetCallbackSearchInDirectory(tell, user);
    }
    void Tell() {
        if (told++ != abortAt) return;
        list->Wait();  // does not wait for itself
        list->Abort();
    }
    static Log& Of(unsigned long user) { return *reinterpret_cast<Log*>(user); }
};

TEST_F(FileList, ASearchInTheBackgroundTellsAndCanBeRunAgain) {
    PlantTree(7);
    CTovFileList const plain(At("*").c_str(), 1, 0, 1);
    CTovFileList list(At("*").c_str(), 1, 1, 1);
    Log log;
    log.Watch(list);
    for (int run = 1; run <= 3; ++run) {
        list.Search({});
        list.Wait();
        EXPECT_EQ(log.begun, run);
        EXPECT_EQ(log.ended, run);
        EXPECT_EQ(log.abortFlag, 0);
        EXPECT_EQ(list.Size(), plain.Size() * static_cast<unsigned>(run));
    }
    list.Abort();
    EXPECT_EQ(log.aborts, 1);
    list.Search({});
    list.Search({});  // after the first
    list.Sort(CTovFileList::eSortFullFilename);
    EXPECT_EQ(list.Size(), 2 * plain.Size());
    EXPECT_TRUE(std::is_sorted(list.AllFullFilenames().begin(), list.AllFullFilenames().end()));
    CTovFileList nothing("none", 0, 1, 0);
    for (int i = 0; i < 200; ++i)
        nothing.Search({});  // one that ends at once does not hang its caller
    nothing.Wait();
}

TEST_F(FileList, ItCanBeAbortedFromEveryCallback) {
    PlantTree(8, 30);
    for (int at = 0; at < 70; ++at) {
        CTovFileList list(Texts{At("*.dat"), "*.txt"}, 1, 1, 1);
        Log log;
        log.abortAt = at;
        log.Watch(list);
        list.Search({});
        list.Wait();
        bool const wasReached = log.told > at;
        bool const wasEnded = log.ended == 1;
        EXPECT_TRUE(wasEnded);
        if (!wasReached) continue;
        EXPECT_EQ(log.aborts, 1);
        EXPECT_EQ(list.Size() + list.AllFilenames().size(), 0u) << at;
        list.Search({});
        list.Wait();
        EXPECT_GT(list.Size(), 0u) << "and run again";
    }
}

TEST_F(FileList, ItCanBeAbortedAtAnyMomentFromOtherThreads) {
    PlantTree(9);
    std::mt19937 random(310);
    CTovFileList list(At("*").c_str(), 1, 1, 1);
    Log log;
    log.Watch(list);
    list.Sort(CTovFileList::eSortFullFilename);
    for (int round = 0; round < 300; ++round) {
        list.Search({});
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 4000));
        std::thread other([&list] { list.Abort(); });
        if (round % 3 == 0) list.Abort();
        if (round % 7 == 0) list.Wait();
        other.join();
        EXPECT_EQ(list.Size() + list.AllFullFilenames().size(), 0u);
        EXPECT_EQ(log.ended, round + 1);
    }
    // A search in the caller's thread too, and an abort in its middle by the end of the list.
    for (int round = 0; round < 100; ++round) {
        auto doomed = std::make_unique<CTovFileList>(At("*").c_str(), 1, 1, 1);
        doomed->Search({});
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 2000));
        doomed.reset();
        std::thread worker([&list] { list.DoIt(); });
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 2000));
        list.Abort();
        worker.join();
    }
}

TEST_F(FileList, ATreeThatChangesMeanwhileIsSearchedToItsEnd) {
    PlantTree(10);
    fs::create_directory(At("steady"));
    Touch(At("steady/steady.x"));
    std::atomic<bool> stop = false;
    std::thread vandal([&] {
        std::mt19937 random(11);
        std::error_code failure;
        for (long i = 0; !stop; ++i) {
            fs::path const place = At(Numbered("v", i % 20));
            fs::create_directories(place / "x/y", failure);
            Touch(place / "x/y/f");
            if (random() % 2 == 0) fs::rename(place, At(Numbered("v", i % 7)), failure);
            if (random() % 3 == 0) fs::remove_all(place, failure);
            if (random() % 5 == 0) Touch(place);  // a file in its place
            if (random() % 5 == 1) fs::remove(place, failure);
        }
    });
    for (int round = 0; round < 60; ++round) {
        CTovFileList list(At("steady.x").c_str(), 1, 1, 1);
        list.Search({});
        list.Wait();
        EXPECT_EQ(list.Failed(), 0) << list.GetLastError();
        EXPECT_EQ(list.Size(), 1u);
    }
    stop = true;
    vandal.join();
}

class Listener : public CTovMessageWindow {
 public:
    Texts log;
    bool isOver = false;
    std::function<void(unsigned)> on;

    Listener() { EXPECT_EQ(Create(), 1); }
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        auto const number = static_cast<long>(wParam);
        if (message == WM_TOV_FILESEARCHTHREAD_BEGIN) log.push_back("begin");
        if (message == WM_TOV_FILESEARCHTHREAD_ABORT) log.push_back("abort");
        if (message == WM_TOV_FILESEARCHTHREAD_SEARCHDIRECTORY) log.push_back(Numbered("directory ", number));
        if (message == WM_TOV_FILESEARCHTHREAD_FILESEARCHINDIRECTORY)
            log.push_back(Numbered("in ", number) + " " + reinterpret_cast<char const*>(lParam));
        if (message == WM_TOV_FILESEARCHTHREAD_TERMINATE) {
            log.push_back(Numbered("end ", number));
            isOver = true;
        }
        if (on) on(message);
        return 0;
    }
    void RunLoop() {
        while (!isOver && TovWaitForPosts(20'000))
            TovDispatchPosts();
    }
};

TEST_F(FileList, AWindowIsToldInOrder) {
    fs::create_directories(At("a/b"));
    Listener window;
    CTovFileList list(Texts{At("*.x"), "*.y"}, 1, 1, 1);
    list.Search(window.GetSafeHwnd());
    window.RunLoop();
    std::string const root = At("");
    EXPECT_THAT(window.log,
                ElementsAre("begin", "directory 1", "directory 2", "in 1 " + root + "*.x",
                            "in 2 " + root + "*.y", "in 3 " + root + "a/*.x", "in 4 " + root + "a/*.y",
                            "in 5 " + root + "a/b/*.x", "in 6 " + root + "a/b/*.y", "end 0"));
    list.Abort();
    TovDispatchPosts();
    EXPECT_EQ(window.log.back(), "abort");
}

// The window's thread waits for the search: each send costs its time, and no message comes too late with a
// path that is gone.
TEST_F(FileList, AWindowThatHangsHoldsItUpForAWhileOnly) {
    fs::create_directories(At("a/b"));
    Listener window;
    CTovFileList list(At("*").c_str(), 1, 1, 1);
    list.Search(window.GetSafeHwnd());
    list.Wait();
    TovDispatchPosts();
    EXPECT_THAT(window.log, ElementsAre("begin", "directory 1", "directory 2", "end 0"));

    // The wait for the window ends with the abort. A busy machine may hide that now and then, not every time.
    auto shortest = std::chrono::steady_clock::duration::max();
    for (int i = 0; i < 10; ++i) {
        window.log.clear();
        list.Search(window.GetSafeHwnd());
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        auto const begin = std::chrono::steady_clock::now();
        list.Abort();
        shortest = std::min(shortest, std::chrono::steady_clock::now() - begin);
        TovDispatchPosts();
        EXPECT_EQ(window.log.back(), "abort");
        EXPECT_EQ(window.log[window.log.size() - 2], "end 1");
        EXPECT_THAT(window.log, testing::Not(testing::Contains(testing::HasSubstr("in "))));
    }
    EXPECT_LT(shortest, std::chrono::milliseconds(50));
}

TEST_F(FileList, AWindowMayDieOrAbortInTheMiddle) {
    PlantTree(12, 40);
    for (unsigned at = 0; at < 60; at += 3) {
        auto window = std::make_unique<Listener>();
        CTovFileList list(At("*").c_str(), 1, 1, 1);
        list.Search(window->GetSafeHwnd());
        unsigned seen = 0;
        bool const dies = at % 2 == 0;
        window->on = [&](unsigned) {
            if (seen++ != at) return;
            if (dies) {
                window->DestroyWindow();
                window->isOver = true;
            } else {
                list.Abort();
            }
        };
        window->RunLoop();
        list.Wait();
        EXPECT_TRUE(window->isOver);
        EXPECT_TRUE(!dies || list.Size() > 0) << "the search goes on without its window";
        TovDispatchPosts();
    }
}

}  // namespace
}  // namespace tov
