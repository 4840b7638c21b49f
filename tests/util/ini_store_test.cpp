// links: objects
// Edits of initialisation files: what changes, what stays, and what happens when the disk does not play
// along.
#include "util/ini_store.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <thread>

namespace tov {
namespace {

namespace fs = std::filesystem;

void Put(std::string const& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary).write(bytes.data(), std::ssize(bytes));
}

std::string Get(std::string const& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::string Numbered(std::string text, unsigned number) {
    return text += std::to_string(number);
}

bool Set(std::string const& path, char const* section, char const* entry, std::string_view value) {
    return IniStore::Instance().Edit(
        path.c_str(), true, [&](IniText const& text) { return text.WithValue(section, entry, value); });
}

std::string Value(std::string const& path, char const* section, char const* entry) {
    return IniStore::Instance().Read(path.c_str(), [&](IniText const* text) -> std::string {
        return text == nullptr ? "<no file>" : std::string(text->Value(section, entry).value_or("<none>"));
    });
}

TEST(IniText, EditsTouchOnlyTheirLines) {
    auto const set = [](char const* section, char const* entry, char const* value) {
        return [=](IniText const& text) { return text.WithValue(section, entry, value); };
    };
    auto const removeEntry = [](char const* section, char const* entry) {
        return [=](IniText const& text) { return text.WithoutEntry(section, entry); };
    };
    auto const removeSection = [](char const* section) {
        return [=](IniText const& text) { return text.WithoutSection(section); };
    };
    auto const lines = [](char const* section, std::vector<std::string_view> list) {
        return [=](IniText const& text) { return text.WithLines(section, list); };
    };
    struct Row {
        char const* before;
        std::function<std::string(IniText const&)> edit;
        char const* after;
    };
    Row const rows[] = {
        {"", set("S", "a", "1"), "[S]\r\na=1\r\n"},
        {"\xEF\xBB\xBF", set("S", "a", "1"), "\xEF\xBB\xBF[S]\r\na=1\r\n"},
        {"[S]\n", set(" s ", " a ", "1"), "[S]\na=1\n"},
        {"[S]", set("S", "a", "1"), "[S]\r\na=1"},
        {"[S]\nx=1", set("T", "a", "1"), "[S]\nx=1\n[T]\na=1"},
        {"[S]\r\n A = 1 \r\n;c\r\n", set("s", "a", "22"), "[S]\r\n A = 22\r\n;c\r\n"},
        {"[S]\na=\"1\"\n", set("S", "a", "2"), "[S]\na=2\n"},
        {"[S]\na=\n", set("S", "a", "2"), "[S]\na=2\n"},
        {"[S]\na=1\na=2\n", set("S", "a", "3"), "[S]\na=3\na=2\n"},
        {"[S]\na\n", set("S", "a", "3"), "[S]\na\na=3\n"},
        {"[S]\nx=1\n\n; of T\n[T]\ny=1\n", set("S", "a", "1"), "[S]\nx=1\na=1\n\n; of T\n[T]\ny=1\n"},
        {"[S]\n;c\n[T]\n", set("S", "a", "1"), "[S]\na=1\n;c\n[T]\n"},
        {"[S]\r\nx=1\ny=2\r\n", set("S", "a", "1"), "[S]\r\nx=1\ny=2\r\na=1\r\n"},
        {"[S]\n[T]\n[S]\nx=1\n", set("S", "x", "2"), "[S]\nx=2\n[T]\n[S]\nx=1\n"},
        {"[S]\na=1\nb=2\nA = 3\n", removeEntry("S", "a"), "[S]\nb=2\n"},
        {"[S]\nb=2\na=1", removeEntry("S", "a"), "[S]\nb=2\n"},
        {"[S]\na=1\n", removeEntry("T", "a"), "[S]\na=1\n"},
        {"x\n[S]\na=1\n[T]\n;t\n[s]\n", removeSection("S"), "x\n[T]\n;t\n"},
        {"[S]\na=1", removeSection("S"), ""},
        {"[S]\n;1\na=1\n;2\nbare\n\n[T]\n", lines("S", {"b=2", "c=3"}), "[S]\n;1\nb=2\nc=3\n;2\n\n[T]\n"},
        {"[S]\na=1", lines("S", {"b=2"}), "[S]\nb=2"},
        {"[S]", lines("S", {"b=2"}), "[S]\r\nb=2"},
        {"[S]\na=1\n;x", lines("S", {}), "[S]\n;x"},
        {"[S]\na=1", lines("S", {}), "[S]"},
        {"[S]\na=1\n", lines("T", {"b=2"}), "[S]\na=1\n[T]\nb=2\n"},
    };
    for (Row const& row : rows)
        EXPECT_EQ(row.edit(IniText(row.before)), row.after) << row.before;
}

// Random edits of a file with all sorts of lines, against a mirror of what it says, and of the comments and
// bare lines in it, which must come through in their order.
TEST(IniText, RandomEditsAgainstAMirror) {
    struct Section {
        std::map<std::string, std::string> entries;
        std::vector<std::string> others;
    };
    for (unsigned seed = 1; seed <= 60; ++seed) {
        std::mt19937 random(seed);
        auto const below = [&](unsigned n) { return static_cast<unsigned>(random() % n); };
        std::string lineEnd = below(2) == 0 ? "\n" : "\r\n";
        std::map<std::string, Section> mirror;
        std::string bytes = below(2) == 0 ? "" : "\xEF\xBB\xBF";
        for (unsigned s = 0; s < below(5); ++s) {
            auto const name = Numbered("S", s);
            bytes += '[' + name + ']' + lineEnd;
            for (unsigned l = 0; l < below(9); ++l) {
                auto const entry = Numbered("e", below(6));
                auto const other = Numbered("; comment ", below(1'000'000));
                switch (below(4)) {
                    case 0:
                        bytes += lineEnd;
                        break;
                    case 1:
                        bytes += other + lineEnd;
                        mirror[name].others.push_back(other);
                        break;
                    default:
                        bytes += "  " + entry + " = " + other + lineEnd;
                        mirror[name].entries.try_emplace(entry, other);
                }
            }
            mirror[name];
        }
        if (below(3) == 0 && bytes.ends_with(lineEnd)) bytes.resize(bytes.size() - lineEnd.size());

        for (int step = 0; step < 60; ++step) {
            if (bytes.find('\n') == std::string::npos) lineEnd = "\r\n";  // nothing to go by any more
            IniText const text(bytes);
            auto const section = Numbered("S", below(6));
            auto const entry = Numbered("e", below(6));
            auto const value = std::to_string(random());
            switch (below(8)) {
                case 0:
                    bytes = text.WithoutSection(section);
                    mirror.erase(section);
                    break;
                case 1: {
                    std::string_view const list[] = {"e0=x", "e7=y"};
                    bytes = text.WithLines(section, list);
                    mirror[section].entries = {{"e0", "x"}, {"e7", "y"}};
                    break;
                }
                case 2:
                case 3:
                    bytes = text.WithoutEntry(section, entry);
                    if (mirror.contains(section)) mirror[section].entries.erase(entry);
                    break;
                default:
                    bytes = text.WithValue(section, entry, value);
                    mirror[section].entries[entry] = value;
            }
            IniText const after(bytes);
            std::map<std::string, Section> found;
            for (auto const& name : after.SectionNames()) {
                after.ForEachLine(name, [&](std::string_view e, bool, std::string_view v) {
                    return found[name].entries.try_emplace(std::string(e), v), true;
                });
                auto& others = found[name].others;
                auto const begin = bytes.find('[' + name + ']');
                auto const end = bytes.find("\n[", begin);
                for (auto at = bytes.find("\n;", begin); at < end; at = bytes.find("\n;", at + 1)) {
                    others.push_back(bytes.substr(at + 1, bytes.find_first_of("\r\n", at + 1) - at - 1));
                }
            }
            ASSERT_EQ(found.size(), mirror.size()) << "seed " << seed << ":\n" << bytes;
            for (auto const& [name, expected] : mirror) {
                ASSERT_EQ(found[name].entries, expected.entries) << "seed " << seed << ":\n" << bytes;
                ASSERT_EQ(found[name].others, expected.others) << "seed " << seed << ":\n" << bytes;
            }
            // One kind of line end throughout.
            for (auto at = bytes.find('\n'); at != std::string::npos; at = bytes.find('\n', at + 1)) {
                ASSERT_EQ(bytes[at - 1] == '\r', lineEnd.size() == 2);
            }
        }
    }
}

TEST(IniStore, SeesEveryChangeByOthers) {
    test::TemporaryFolder const folder;
    auto const path = folder.File("a.ini");
    EXPECT_EQ(Value(path, "S", "a"), "<no file>");
    // Same size, same file, within one tick of the clock: only the text tells.
    for (int i = 100; i < 400; ++i) {
        Put(path, Numbered("[S]\na=", static_cast<unsigned>(i)));
        ASSERT_EQ(Value(path, "S", "a"), std::to_string(i));
    }
    // And once the file has come to rest, when its times are put back by hand.
    std::this_thread::sleep_for(std::chrono::milliseconds{60});
    EXPECT_EQ(Value(path, "S", "a"), "399");
    auto const time = fs::last_write_time(path);
    std::this_thread::sleep_for(std::chrono::milliseconds{20});
    Put(path, "[S]\na=new");
    fs::last_write_time(path, time);
    EXPECT_EQ(Value(path, "S", "a"), "new");
    fs::remove(path);
    EXPECT_EQ(Value(path, "S", "a"), "<no file>");
}

// The stamp of a change in the same tick is the same, and a tick may be two seconds long.
TEST(IniStore, AStampIsTrustedOnlyOnceItsTickIsOver) {
    constexpr std::int64_t second = 1'000'000'000;
    FileStamp fine{1, 2, 3, 50 * second + 7, 50 * second + 7};
    FileStamp renamed{1, 2, 3, 10 * second + 7, 50 * second + 7};
    FileStamp coarse{1, 2, 3, 50 * second, 50 * second};
    for (FileStamp const& stamp : {fine, renamed, coarse}) {
        EXPECT_FALSE(IniStore::IsSettled(stamp, stamp.changed));
        EXPECT_FALSE(IniStore::IsSettled(stamp, stamp.changed + 10'000'000));
        EXPECT_FALSE(IniStore::IsSettled(stamp, stamp.changed - 9 * second)) << "a clock that goes behind";
        EXPECT_EQ(IniStore::IsSettled(stamp, stamp.changed + second), stamp != coarse);
        EXPECT_TRUE(IniStore::IsSettled(stamp, stamp.changed + 3 * second));
    }
}

TEST(IniStore, WritesThroughLinksAndKeepsTheMode) {
    test::TemporaryFolder const folder;
    fs::create_directory(folder.path() / "real");
    fs::create_symlink("real/second", folder.path() / "link.ini");
    fs::create_symlink("target.ini", folder.path() / "real/second");
    auto const target = folder.File("real/target.ini");
    ASSERT_TRUE(Set(folder.File("link.ini"), "S", "a", "1"));  // the target does not exist yet
    EXPECT_EQ(Get(target), "[S]\r\na=1\r\n");
    ::chmod(target.c_str(), 0640);
    ASSERT_TRUE(Set(folder.File("link.ini"), "S", "a", "2"));
    EXPECT_TRUE(fs::is_symlink(folder.path() / "link.ini"));
    EXPECT_EQ(Value(folder.File("link.ini"), "S", "a"), "2");
    EXPECT_EQ(static_cast<unsigned>(fs::status(target).permissions()), 0640u);
    // Nothing is left beside it.
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path() / "real"), {}), 2);

    fs::create_symlink("loop.ini", folder.path() / "loop.ini");
    EXPECT_FALSE(Set(folder.File("loop.ini"), "S", "a", "1"));
}

TEST(IniStore, LeftoversOfAKilledWriterDoNoHarm) {
    test::TemporaryFolder const folder;
    auto const path = folder.File("a.ini");
    Put(path, "[S]\na=1\n");
    Put(folder.File(".a.ini.lock"), "");
    Put(folder.File(".a.ini.tmp"), "half a fi");
    EXPECT_TRUE(Set(path, "S", "a", "2"));
    EXPECT_EQ(Get(path), "[S]\na=2\n");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 1);
}

TEST(IniStore, AWriterWaitsForTheLockAndGivesUpInTheEnd) {
    test::TemporaryFolder const folder;
    auto const path = folder.File("a.ini");
    LockedFile holder;
    ASSERT_FALSE(holder.Open(path.c_str()));
    LockedFile second;
    EXPECT_EQ(second.Open(path.c_str(), std::chrono::milliseconds{20}), std::errc::timed_out);
}

TEST(IniStore, WhatIsNoPlainFileIsLeftAlone) {
    test::TemporaryFolder const folder;
    fs::create_directory(folder.path() / "folder.ini");
    fs::create_symlink("/dev/full", folder.path() / "full.ini");
    ASSERT_EQ(::mkfifo(folder.File("pipe.ini").c_str(), 0600), 0);
    Put(folder.File("file"), "x");
    Put(folder.File("wide.ini"), "\xFF\xFE[");
    for (auto const* name :
         {"folder.ini", "full.ini", "pipe.ini", "file/below.ini", "wide.ini", "no/folder.ini"}) {
        auto const path = folder.File(name);
        auto const type = fs::symlink_status(path).type();
        EXPECT_FALSE(Set(path, "S", "a", "1")) << name;
        EXPECT_NE(Value(path, "S", "a"), "1") << name;
        EXPECT_EQ(fs::symlink_status(path).type(), type) << name;
    }
    EXPECT_EQ(Get(folder.File("wide.ini")), "\xFF\xFE[");
    EXPECT_TRUE(fs::is_character_file("/dev/full"));
}

// A disk that is full half-way leaves the old file and no remains.
TEST(IniStore, AFailedWriteLeavesTheOldFile) {
    test::TemporaryFolder const folder;
    auto const path = folder.File("a.ini");
    Put(path, "[S]\na=1\n");
    pid_t const child = ::fork();
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit const limit{4096, 4096};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        bool const refused = !Set(path, "S", "a", std::string(100'000, 'x'));
        bool const old = Value(path, "S", "a") == "1";
        ::_exit(refused && old && Set(path, "S", "b", "2") ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(Get(path), "[S]\na=1\nb=2\n");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 1);
}

// An unchanged value costs no write and moves no time stamp; a delete in no file makes none.
TEST(IniStore, NothingToDoIsNotDone) {
    test::TemporaryFolder const folder;
    auto const path = folder.File("a.ini");
    auto const remove = [](IniText const& text) { return text.WithoutSection("S"); };
    EXPECT_TRUE(IniStore::Instance().Edit(path.c_str(), false, remove));
    EXPECT_FALSE(fs::exists(path));
    ASSERT_TRUE(Set(path, "S", "a", "1"));
    FileStamp before, after;
    StatFile(path.c_str(), before);
    EXPECT_TRUE(Set(path, "S", "a", "1"));
    StatFile(path.c_str(), after);
    EXPECT_EQ(before, after);
}

}  // namespace
}  // namespace tov
