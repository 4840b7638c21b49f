#include <tov310/file_list.h>
#include <tov310/messages.h>
#include <tov310/window.h>

#include "support/files.h"
#include "support/limits.h"
#include "support/temporary_folder.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <map>
#include <mutex>
#include <random>
#include <thread>

namespace tov {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using Texts = std::vector<std::string>;

std::string Numbered(std::string name, unsigned long number) {
    return name.append(std::to_string(number));
}

class FileList : public testing::Test {
 protected:
    test::TemporaryFolder folder;
    std::string At(std::string const& name) const { return folder.File(name); }
    void Touch(std::string const& name) const { test::PutFile(At(name), ""); }

    // Directories with files of three kinds, the shape left to chance.
    void PlantTree(unsigned seed, unsigned directories = 300) {
        std::mt19937 random(seed);
        std::vector<fs::path> all{folder.path()};
        for (unsigned i = 0; i < directories; ++i) {
            all.push_back(all[random() % all.size()] / Numbered("d", i));
            fs::create_directory(all.back());
            for (auto f = random() % 6; f > 0; --f)
                test::PutFile(all.back() / Numbered("f", f).append(random() % 3 == 0 ? ".TXT" : ".dat"), "");
        }
    }
};

constexpr unsigned begin = WM_TOV_FILESEARCHTHREAD_BEGIN, end = WM_TOV_FILESEARCHTHREAD_TERMINATE,
                   abort = WM_TOV_FILESEARCHTHREAD_ABORT, directory = WM_TOV_FILESEARCHTHREAD_SEARCHDIRECTORY,
                   search = WM_TOV_FILESEARCHTHREAD_FILESEARCHINDIRECTORY;

struct Event {
    unsigned message;
    long number = 0;
    std::string path = {};
    bool operator==(Event const&) const = default;
};

// What a search tells, by its callbacks or to its window. What is to be done `on` an event is done once it is
// noted.
struct Events {
    std::vector<Event> log;
    std::recursive_mutex guard;
    std::function<void(std::size_t)> on;

    void Note(Event const& event) {
        std::scoped_lock const lock(guard);
        log.push_back(event);
        if (on) on(log.size());
    }
    long Count(unsigned message) const { return std::ranges::count(log, message, &Event::message); }

    template <unsigned message, class... Values>
    static void Tell(unsigned long events, Values... values) {
        reinterpret_cast<Events*>(events)->Note({message, values...});
    }
    void Watch(CTovFileList& list) {
        auto const user = reinterpret_cast<unsigned long>(this);
        list.SetCallbackThreadBegin(Tell<begin>, user);
        list.SetCallbackThreadTerminate(Tell<end>, user);
        list.SetCallbackThreadAbort(Tell<abort>, user);
        list.SetCallbackSearchDirectory(Tell<directory>, user);
        list.SetCallbackSearchInDirectory(Tell<search>, user);
    }
};

struct Listener : CTovMessageWindow, Events {
    bool isOver = false;

    Listener() { EXPECT_EQ(Create(), 1); }
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        isOver |= message == end;
        for (unsigned const known : {begin, end, abort, directory, search}) {
            auto const* const path = lParam != 0 ? reinterpret_cast<char const*>(lParam) : "";
            if (message == known) Note({message, static_cast<long>(wParam), path});
        }
        return 0;
    }
    void RunLoop() {
        while (!isOver && TovWaitForPosts(20'000))
            TovDispatchPosts();
    }
};

// A directory's children, in the order of the volume's listing, before any of them is entered.
void EnterPlainly(std::string const& from, Texts& all) {
    std::size_t const first = all.size();
    for (auto const& entry : fs::directory_iterator(from))
        if (entry.is_directory()) all.push_back(entry.path().string() + "/");
    for (std::string const& found : Texts(all.begin() + static_cast<long>(first), all.end()))
        EnterPlainly(found, all);
}

TEST_F(FileList, FindsAndTellsInTheOrderOfThePlainestSearch) {
    for (unsigned seed = 1; seed <= 5; ++seed) {
        PlantTree(seed, 100);
        Texts directories{At("")}, files;
        EnterPlainly(At(""), directories);
        std::vector<Event> events{{begin}};
        for (std::size_t i = 1; i < directories.size(); ++i)
            events.push_back({directory, static_cast<long>(i), directories[i]});
        for (long counter = 0; std::string const& from : directories) {
            for (bool const isFirst : {true, false}) {
                events.push_back({search, ++counter, from + (isFirst ? "*.dat" : "*1.*")});
                for (auto const& entry : fs::directory_iterator(from)) {
                    std::string const name = entry.path().filename();
                    if (isFirst ? name.ends_with(".dat") : name.find("1.") != name.npos)
                        files.push_back(entry.path());
                }
            }
        }
        events.push_back({end});

        CTovFileList list(Texts{At("*.dat"), "*1.*", "a/b", "*.DAT"}, 1, 1, 1);
        EXPECT_EQ(list.Size(), 0u) << "in the background it waits for Search";
        Events told;
        told.Watch(list);
        Listener window;
        list.Search(window.GetSafeHwnd());
        window.RunLoop();
        list.Wait();
        EXPECT_TRUE(told.log == events);
        EXPECT_EQ(list.AllFullFilenames(), files);
        EXPECT_EQ(list[list.Size()], nullptr);
        list.Abort();
        TovDispatchPosts();
        events.push_back({abort});
        EXPECT_TRUE(told.log == events);
        for (Event& event : events)
            if (event.message == directory) event.path.clear();  // which a window is not told
        EXPECT_TRUE(window.log == events);
    }
}

TEST_F(FileList, PatternsAreBlindToCaseAndKnowCharacters) {
    Texts const names = {"a.txt",    "B.TXT",    "noext",    ".dot",     "äöü.Txt", "ÄÖÜ2.txt",
                         "x.tar.gz", "a\\b.txt", "\xff.bin", "日本.dat", "[1].x"};
    for (std::string const& name : names)
        Touch(name);
    fs::create_directory(At("dir.txt"));
    std::pair<std::string, Texts> const rows[] = {
        // clang-format off
        {"/*.*", names}, {"/*", names}, {"/*.txt", {"a.txt", "B.TXT", "äöü.Txt", "ÄÖÜ2.txt", "a\\b.txt"}},
        {"/???.txt", {"äöü.Txt", "a\\b.txt"}}, {"\\ÄÖÜ*.TXT", {"äöü.Txt", "ÄÖÜ2.txt"}}, {"/??.dat", {"日本.dat"}},
        {"/?.bin", {"\xff.bin"}}, {"/*.*.*", {"x.tar.gz"}}, {"/[1].x", {"[1].x"}}, {"/", {}}, {"/*.", {}},
        {"/**x*", {"a.txt", "B.TXT", "noext", "äöü.Txt", "ÄÖÜ2.txt", "x.tar.gz", "a\\b.txt", "[1].x"}},
        // clang-format on
    };
    for (auto const& [path, found] : rows) {
        CTovFileList const list((folder.path().string() + path).c_str(), 0, 0, 1);
        EXPECT_THAT(list.AllFilenames(), testing::UnorderedElementsAreArray(found)) << path;
    }
    for (char const* const nowhere : {"*.txt", "/*", "\\*", "", static_cast<char const*>(nullptr)}) {
        CTovFileList const list(nowhere, 1, 0, 1);
        EXPECT_EQ(list.Failed() + static_cast<int>(list.Size()), 0);
    }
    EXPECT_EQ(CTovFileList(Texts{}, 1, 0, 1).Size(), 0u);
    CTovFileList list(At("*.gz").c_str(), 0, 0, 0);
    std::pair<char const*, int> const added[] = {
        {"x\\*.dat", 0}, {"x/*.dat", 0}, {"*.DAT", 1}, {"*.dat", 1}, {"*.GZ", 1}};
    for (auto const& [pattern, answer] : added)
        EXPECT_EQ(list.AddSearchPattern(pattern), answer) << pattern;
    list.DoIt();
    EXPECT_THAT(list.AllFilenames(), ElementsAre("x.tar.gz", "日本.dat"));
}

TEST_F(FileList, RecordsAreSortedByEveryMode) {
    // The third is larger than 32 bits can say, its lower half small.
    std::tuple<char const*, std::uintmax_t, timespec, timespec> const files[] = {
        {"b", 7, {1, 100}, {3, 200}},
        {"a", 8, {2, 100}, {1, 200}},
        {"s/c", (1L << 32) + 1, {3, 100}, {2, 200}}};
    fs::create_directory(At("s"));
    for (auto const& [name, size, accessed, written] : files) {
        Touch(name);
        fs::resize_file(At(name), size);
        timespec const times[] = {accessed, written};
        ASSERT_EQ(::utimensat(AT_FDCWD, At(name).c_str(), times, 0), 0);
    }
    CTovFileList list(At("*").c_str(), 1, 0, 1);
    using List = CTovFileList;
    std::pair<List::eSortMode, Texts> const rows[] = {
        // clang-format off
        {List::eSortFilename, {"c", "b", "a"}},          {List::eSortFullFilename, {"a", "b", "c"}},
        {List::eSortAlternateFilename, {"c", "b", "a"}}, {List::eSortLastWriteTime, {"a", "c", "b"}},
        {List::eSortLastAccessTime, {"b", "a", "c"}},    {static_cast<List::eSortMode>(99), {"c", "b", "a"}},
        {List::eSortSize, {"b", "a", "c"}},              {List::eSortNone, {"b", "a", "c"}},
        // clang-format on
    };
    for (auto const& [mode, names] : rows) {
        list.Sort(mode);
        EXPECT_EQ(list.AllFilenames(), names) << mode;
        EXPECT_EQ(list[0]->cFileName, names[0]);
        EXPECT_EQ(list[1]->cAlternateFileName, list.AllAlternateFilenames()[1]);
        EXPECT_EQ(fs::path(list.AllFullFilenames()[2]).filename(), names[2]);
    }
    EXPECT_EQ(list[2]->nFileSizeHigh + list[2]->nFileSizeLow, 2u);
    EXPECT_EQ(list[0]->ftLastWriteTime.ticks, 116'444'736'000'000'000u + 3 * 10'000'000 + 2);
    list.Sort(List::eSortCreationTime);
    for (unsigned i = 1; i < 3; ++i)
        EXPECT_LE(list[i - 1]->ftCreationTime, list[i]->ftCreationTime);
    list.Sort(List::eSortSize);
    list.DoIt();
    EXPECT_THAT(list.AllFilenames(), ElementsAre("b", "b", "a", "a", "c", "c")) << "later searches likewise";
    CTovFindData a, b;
    a.cFileName = "a";
    b.cFileName = "b";
    EXPECT_TRUE(b < a) << "without a list from Z to A";
}

TEST_F(FileList, ARecordTellsWhatTheEntryIs) {
    for (char const* const name : {"file", ".hidden", "fixed", "back\\slash"})
        Touch(name);
    fs::permissions(At("fixed"), fs::perms(0444));
    test::PutFile(At("target"), "12345");
    fs::create_symlink("target", At("link"));
    fs::create_symlink("nowhere", At("dangling"));
    ASSERT_EQ(::mkfifo(At("pipe").c_str(), 0600), 0);
    std::map<std::string, unsigned long> const attributes = {
        {"file", 128},  {".hidden", 2},  {"fixed", 1},       {"back\\slash", 128},
        {"link", 1024}, {"target", 128}, {"dangling", 1024}, {"pipe", 128}};
    CTovFileList searched(At("*").c_str(), 0, 0, 1);
    CTovFileList added(At("*").c_str(), 0, 0, 0);
    for (char const* const name : {"file", "link", "dangling", "none", ""})
        added.FindFile(At(name).c_str(), 1);
    added.FindFile(At("pipe").c_str(), 0);
    EXPECT_THAT(added.AllFullFilenames(), ElementsAre(At("file"), At("link"), At("dangling")));
    EXPECT_EQ(searched.Size() * 10 + added.Size(), 84u);
    for (CTovFileList* const list : {&searched, &added}) {
        for (unsigned i = 0; i < list->Size(); ++i) {
            CTovFindData const& record = *(*list)[i];
            EXPECT_EQ(record.dwFileAttributes, attributes.at(record.cFileName)) << record.cFileName;
            EXPECT_EQ(record.GetFullFilename(), At(record.cFileName));
            EXPECT_TRUE(record.cFileName != "link" || record.FileSize() == 5);
        }
    }
    EXPECT_EQ(added.Failed(), 0);
    added.FindFile(At("none/f").c_str(), 1);
    EXPECT_EQ(added.Failed(), 1);
    EXPECT_EQ(added.GetLastError(), 3u);
}

TEST_F(FileList, LinksAreFollowedAndCyclesEnd) {
    test::TemporaryFolder const outside;
    fs::create_directories(At("a/b"));
    Touch("a/b/f");
    test::PutFile(outside.File("f"), "");
    std::pair<fs::path, std::string> const links[] = {
        {"../..", "a/b/up"},         {".", "a/self"}, {"a", "z1"}, {"a", "z2"}, {outside.path(), "out"},
        {folder.path(), "out/back"}, {"none", "gone"}};
    for (auto const& [target, link] : links)
        fs::create_directory_symlink(target, At(link));
    CTovFileList const list(At("f").c_str(), 1, 0, 1);
    EXPECT_THAT(list.AllFullFilenames(),
                testing::UnorderedElementsAre(At("a/b/f"), At("z1/b/f"), At("z2/b/f"), At("out/f")));
}

// Each of them leads to all the others: there are more ways than anybody could go.
TEST_F(FileList, LinksInEveryDirectionComeToAnEnd) {
    for (unsigned i = 0; i < 12 * 12; ++i) {
        std::string const from = Numbered("d", i / 12);
        fs::create_directory(At(from));
        Touch(from + "/f");
        fs::create_directory_symlink(Numbered("../d", i % 12), At(from) + Numbered("/to", i % 12));
    }
    CTovFileList const list(At("f").c_str(), 1, 0, 1);
    EXPECT_GE(list.Size(), 12u + 12 * 11) << "every single link is followed";
    EXPECT_EQ(list.Failed(), 0);
}

TEST_F(FileList, OnlyAMissingDirectoryOfTheSearchPathFails) {
    CTovFileList list(At("none/*").c_str(), 1, 0, 1);
    EXPECT_EQ(list.Failed(), 1);
    EXPECT_EQ(list.GetLastError(), 3u);
    Touch("file");
    EXPECT_EQ(CTovFileList(At("file/*").c_str(), 0, 0, 1).GetLastError(), 3u);
    EXPECT_EQ(CTovFileList((At(std::string(256, 'n')) + "/*").c_str(), 0, 0, 1).GetLastError(), 206u);
    fs::create_directories(At("none/closed/inner"));
    Touch("none/f");
    fs::permissions(At("none/closed"), fs::perms::none);
    test::WithoutRights({folder.path()}, [&] { list.DoIt(); });
    EXPECT_EQ(list.Failed(), 0) << "what may not be read is empty";
    EXPECT_EQ(list.GetLastError(), 0u);
    EXPECT_EQ(list.Size(), 1u);
    fs::permissions(At("none/closed"), fs::perms(0700));
}

TEST_F(FileList, TenThousandDirectoriesDeepAndWide) {
    constexpr unsigned count = 10'000;
    int place = ::open(folder.path().c_str(), O_RDONLY | O_DIRECTORY);
    auto const enter = [&](char const* where) {
        int const left = std::exchange(place, ::openat(place, where, O_RDONLY | O_DIRECTORY));
        ::close(left);
    };
    for (unsigned i = 0; i < count; ++i) {
        ASSERT_EQ(::mkdirat(place, "d", 0700), 0);
        enter("d");
        if (i % 1000 == 999) ::close(::openat(place, "f", O_CREAT | O_WRONLY, 0600));
    }
    CTovFileList const deep(At("f").c_str(), 1, 0, 1);
    EXPECT_EQ(deep.Failed(), 0) << deep.GetLastError();
    ASSERT_EQ(deep.Size(), 10u);
    EXPECT_EQ(deep.AllFullFilenames().back().size(), folder.path().string().size() + 2 * count + 2);
    // Too deep for a path: the tree is taken away from its end.
    for (unsigned i = 0; i < count; ++i) {
        ::unlinkat(place, "f", 0);
        enter("..");
        ASSERT_EQ(::unlinkat(place, "d", AT_REMOVEDIR), 0);
    }
    ::close(place);

    for (unsigned i = 0; i < count; ++i)
        fs::create_directory(At(Numbered("w", i)));
    Touch("w77/f");
    EXPECT_THAT(CTovFileList(At("f").c_str(), 1, 0, 1).AllFullFilenames(), ElementsAre(At("w77/f")));
}

// --- in a thread of its own

TEST_F(FileList, AtEveryEventItMayBeAbortedOrLoseItsWindow) {
    PlantTree(8, 30);
    unsigned const whole = CTovFileList(Texts{At("*.dat"), "*.txt"}, 1, 0, 1).Size();
    enum Way { kCallbackAborts, kWindowAborts, kWindowDies };
    for (std::size_t at = 1; at < 100; ++at) {
        for (Way const way : {kCallbackAborts, kWindowAborts, kWindowDies}) {
            Events told;
            Listener window;
            CTovFileList list(Texts{At("*.dat"), "*.txt"}, 1, 1, 1);
            told.Watch(list);
            bool wasReached = false;
            (way == kCallbackAborts ? told : window).on = [&](std::size_t count) {
                if (count != at || std::exchange(wasReached, true)) return;
                if (way == kCallbackAborts) list.Wait();  // does not wait for itself
                if (way != kWindowDies) return list.Abort();
                window.DestroyWindow();
                window.isOver = true;
            };
            list.Search(window.GetSafeHwnd());
            window.RunLoop();
            list.Wait();
            EXPECT_EQ(told.Count(end), 1);
            EXPECT_EQ(told.Count(abort), wasReached && way != kWindowDies);
            // Without its window it goes on.
            bool const isAborted = told.Count(abort) != 0;
            EXPECT_EQ(list.Size() + list.AllFilenames().size(), isAborted ? 0 : 2 * whole) << at;
            told.on = nullptr;
            list.Search({});
            list.Sort(CTovFileList::eSortFullFilename);  // waits
            EXPECT_EQ(list.Size(), isAborted ? whole : 2 * whole) << "the records stay";
            EXPECT_TRUE(std::ranges::is_sorted(list.AllFullFilenames()));
            TovDispatchPosts();
        }
    }
}

TEST_F(FileList, ItCanBeAbortedAtAnyMomentFromOtherThreads) {
    PlantTree(9);
    std::mt19937 random(310);
    auto const pause = [&] { std::this_thread::sleep_for(std::chrono::microseconds(random() % 4000)); };
    CTovFileList list(At("*").c_str(), 1, 1, 1);
    Events told;
    told.Watch(list);
    list.Sort(CTovFileList::eSortFullFilename);
    for (int round = 0; round < 300; ++round) {
        list.Search({});
        pause();
        std::thread other([&list] { list.Abort(); });
        if (round % 3 == 0) list.Abort();
        if (round % 7 == 0) list.Wait();
        other.join();
        EXPECT_EQ(list.Size() + list.AllFullFilenames().size(), 0u);
        EXPECT_EQ(told.Count(end), round + 1);
    }
    // A search in the caller's thread too, and an abort in its middle by the end of the list.
    for (int round = 0; round < 100; ++round) {
        auto doomed = std::make_unique<CTovFileList>(At("*").c_str(), 1, 1, 1);
        doomed->Search({});
        pause();
        doomed.reset();
        std::thread worker([&list] { list.DoIt(); });
        pause();
        list.Abort();
        worker.join();
    }
    CTovFileList nothing("none", 0, 1, 0);
    for (int i = 0; i < 200; ++i)
        nothing.Search({});  // one that ends at once does not hang its caller
}

TEST_F(FileList, ATreeThatChangesMeanwhileIsSearchedToItsEnd) {
    PlantTree(10);
    Touch("steady.x");
    std::atomic<bool> stop = false;
    std::thread vandal([&] {
        std::mt19937 random(11);
        std::error_code failure;
        for (unsigned i = 0; !stop; ++i) {
            fs::path const place = At(Numbered("v", i % 20));
            fs::create_directories(place / "x/y", failure);
            test::PutFile(place / "x/y/f", "");
            if (random() % 2 == 0) fs::rename(place, At(Numbered("v", i % 7)), failure);
            if (random() % 3 == 0) fs::remove_all(place, failure);
            if (random() % 5 == 0) test::PutFile(place, "");  // a file in its place
            if (random() % 5 == 1) fs::remove(place, failure);
        }
    });
    for (int round = 0; round < 60; ++round) {
        CTovFileList const list(At("steady.x").c_str(), 1, 0, 1);
        EXPECT_EQ(list.Failed(), 0) << list.GetLastError();
        EXPECT_EQ(list.Size(), 1u);
    }
    stop = true;
    vandal.join();
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
    EXPECT_THAT(window.log, ElementsAre(Event{begin}, Event{directory, 1}, Event{directory, 2}, Event{end}));

    // The wait for the window ends with the abort. A busy machine may hide that now and then, not every time.
    using Clock = std::chrono::steady_clock;
    auto shortest = Clock::duration::max();
    for (int i = 0; i < 10; ++i) {
        window.log.clear();
        list.Search(window.GetSafeHwnd());
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        auto const asked = Clock::now();
        list.Abort();
        shortest = std::min(shortest, Clock::now() - asked);
        TovDispatchPosts();
        EXPECT_THAT(window.log, ElementsAre(Event{begin}, Event{directory, 1}, Event{directory, 2},
                                            Event{end, 1}, Event{abort}));
    }
    EXPECT_LT(shortest, std::chrono::milliseconds(50));
}

}  // namespace
}  // namespace tov
