// links: objects
// Edits of initialisation files: what changes, what stays, and what happens when the disk does not play
// along.
#include "util/ini_store.h"

#include "support/files.h"
#include "support/limits.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <functional>
#include <thread>

namespace tov {
namespace {

namespace fs = std::filesystem;
using test::GetFile;
using test::PutFile;

using Edit = std::function<std::string(IniText const&)>;

Edit Put(char const* section, char const* entry, char const* value) {
    return [=](IniText const& text) { return text.WithValue(section, entry, value); };
}
Edit Take(char const* section, char const* entry) {
    return [=](IniText const& text) { return text.WithoutEntry(section, entry); };
}
Edit Take(char const* section) {
    return [=](IniText const& text) { return text.WithoutSection(section); };
}
Edit Lines(std::vector<std::string_view> const& lines) {
    return [=](IniText const& text) { return text.WithLines("S", lines); };
}

TEST(IniText, EditsTouchOnlyTheirLines) {
    std::tuple<char const*, Edit, char const*> const rows[] = {
        // clang-format off
        {"\xEF\xBB\xBF", Put("S", "a", "1"), "\xEF\xBB\xBF[S]\r\na=1\r\n"},
        {"[S]\n", Put(" s ", " a ", "1"), "[S]\na=1\n"},       {"[S]", Put("S", "a", "1"), "[S]\r\na=1"},
        {"[S]\nx=1", Put("T", "a", "1"), "[S]\nx=1\n[T]\na=1"}, {"[S]\na\n", Put("S", "a", "3"), "[S]\na\na=3\n"},
        {"[S]\na=\"1\"\n", Put("S", "a", "2"), "[S]\na=2\n"},  {"[S]\na=\n", Put("S", "a", "2"), "[S]\na=2\n"},
        {"[S]\r\n A = 1 \r\n;c\r\n", Put("s", "a", "22"), "[S]\r\n A = 22\r\n;c\r\n"},
        {"[S]\na=1\na=2\n", Put("S", "a", "3"), "[S]\na=3\na=2\n"},
        {"[S]\nx=1\n\n; of T\n[T]\ny=1\n", Put("S", "a", "1"), "[S]\nx=1\na=1\n\n; of T\n[T]\ny=1\n"},
        {"[S]\n;c\n[T]\n", Put("S", "a", "1"), "[S]\na=1\n;c\n[T]\n"},
        {"[S]\r\nx=1\ny=2\r\n", Put("S", "a", "1"), "[S]\r\nx=1\ny=2\r\na=1\r\n"},
        {"[S]\n[T]\n[S]\nx=1\n", Put("S", "x", "2"), "[S]\nx=2\n[T]\n[S]\nx=1\n"},
        {"[S]\na=1\nb=2\nA = 3\n", Take("S", "a"), "[S]\nb=2\n"}, {"[S]\nb=2\na=1", Take("S", "a"), "[S]\nb=2\n"},
        {"x\n[S]\na=1\n[T]\n;t\n[s]\n", Take("S"), "x\n[T]\n;t\n"}, {"[S]\na=1\n", Take("T", "a"), "[S]\na=1\n"},
        {"[S]\n;1\na=1\n;2\nbare\n\n[T]\n", Lines({"b=2", "c=3"}), "[S]\n;1\nb=2\nc=3\n;2\n\n[T]\n"},
        {"[S]\na=1", Lines({"b=2"}), "[S]\nb=2"}, {"[S]", Lines({"b=2"}), "[S]\r\nb=2"}, {"[S]\na=1", Lines({}), "[S]"},
        {"[S]\na=1\n;x", Lines({}), "[S]\n;x"},   {"[T]\na=1\n", Lines({"b=2"}), "[T]\na=1\n[S]\nb=2\n"},
        // clang-format on
    };
    for (auto const& [before, edit, after] : rows)
        EXPECT_EQ(edit(IniText(before)), after) << before;
}

class IniStoreTest : public testing::Test {
 protected:
    static bool Set(std::string const& path, char const* entry, std::string_view value) {
        auto const edit = [&](IniText const& text) { return text.WithValue("S", entry, value); };
        return IniStore::Instance().Edit(path.c_str(), true, edit);
    }
    static std::string Value(std::string const& path) {
        return IniStore::Instance().Read(path.c_str(), [&](IniText const* text) -> std::string {
            return text == nullptr ? "<no file>" : std::string(text->Value("S", "a").value_or("<none>"));
        });
    }
    static auto FilesIn(fs::path const& folder) { return std::distance(fs::directory_iterator(folder), {}); }

    test::TemporaryFolder const m_folder;
    std::string const m_path = m_folder.File("a.ini");
};

TEST_F(IniStoreTest, SeesEveryChangeByOthers) {
    EXPECT_EQ(Value(m_path), "<no file>");
    // Same size, same file, within one tick of the clock: only the text tells.
    for (int i = 100; i < 400; ++i) {
        PutFile(m_path, "[S]\na=" + std::to_string(i));
        ASSERT_EQ(Value(m_path), std::to_string(i));
    }
    // And once the file has come to rest, when its times are put back by hand.
    std::this_thread::sleep_for(std::chrono::milliseconds{60});
    EXPECT_EQ(Value(m_path), "399");
    auto const time = fs::last_write_time(m_path);
    std::this_thread::sleep_for(std::chrono::milliseconds{20});
    PutFile(m_path, "[S]\na=new");
    fs::last_write_time(m_path, time);
    EXPECT_EQ(Value(m_path), "new");
    fs::remove(m_path);
    EXPECT_EQ(Value(m_path), "<no file>");
}

// The stamp of a change in the same tick is the same, and a tick may be two seconds long.
TEST_F(IniStoreTest, AStampIsTrustedOnlyOnceItsTickIsOver) {
    constexpr std::int64_t second = 1'000'000'000;
    FileStamp const fine{1, 2, 3, 50 * second + 7, 50 * second + 7},
        coarse{1, 2, 3, 50 * second, 50 * second}, renamed{1, 2, 3, 10 * second + 7, 50 * second + 7};
    for (FileStamp const& stamp : {fine, renamed, coarse}) {
        EXPECT_FALSE(IniStore::IsSettled(stamp, stamp.changed + 10'000'000));
        EXPECT_FALSE(IniStore::IsSettled(stamp, stamp.changed - 9 * second)) << "a clock that goes behind";
        EXPECT_EQ(IniStore::IsSettled(stamp, stamp.changed + second), stamp != coarse);
        EXPECT_TRUE(IniStore::IsSettled(stamp, stamp.changed + 3 * second));
    }
}

TEST_F(IniStoreTest, WritesThroughLinksAndKeepsTheMode) {
    auto const link = m_folder.path() / "link.ini", real = m_folder.path() / "real", target = real / "a.ini";
    fs::create_directory(real);
    fs::create_symlink("real/second", link);
    fs::create_symlink("a.ini", real / "second");
    ASSERT_TRUE(Set(link, "a", "1"));  // the target does not exist yet
    EXPECT_EQ(GetFile(target), "[S]\r\na=1\r\n");
    fs::permissions(target, fs::perms{0640});
    ASSERT_TRUE(Set(link, "a", "2"));
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(Value(link), "2");
    EXPECT_EQ(fs::status(target).permissions(), fs::perms{0640});
    EXPECT_EQ(FilesIn(real), 2) << "something is left beside it";
}

TEST_F(IniStoreTest, LocksEndWithTheirHolder) {
    PutFile(m_path, "[S]\na=1\n");
    for (char const* leftover : {".a.ini.lock", ".a.ini.tmp"})
        PutFile(m_folder.File(leftover), "half a fi");
    EXPECT_TRUE(Set(m_path, "a", "2"));
    EXPECT_EQ(GetFile(m_path), "[S]\na=2\n");
    EXPECT_EQ(FilesIn(m_folder.path()), 1);

    LockedFile holder, second;
    ASSERT_FALSE(holder.Open(m_path.c_str()));
    EXPECT_EQ(second.Open(m_path.c_str(), std::chrono::milliseconds{20}), std::errc::timed_out);
}

TEST_F(IniStoreTest, WhatIsNoPlainFileIsLeftAlone) {
    fs::create_directory(m_folder.File("folder.ini"));
    fs::create_symlink("/dev/full", m_folder.File("full.ini"));
    fs::create_symlink("loop.ini", m_folder.File("loop.ini"));
    ASSERT_EQ(::mkfifo(m_folder.File("pipe.ini").c_str(), 0600), 0);
    PutFile(m_folder.File("wide.ini"), "\xFF\xFE[");
    for (auto const* name : {"folder.ini", "full.ini", "loop.ini", "pipe.ini", "wide.ini/below.ini",
                             "wide.ini", "no/folder.ini"}) {
        auto const path = m_folder.File(name);
        auto const type = fs::symlink_status(path).type();
        EXPECT_FALSE(Set(path, "a", "1")) << name;
        EXPECT_NE(Value(path), "1") << name;
        EXPECT_EQ(fs::symlink_status(path).type(), type) << name;
    }
    EXPECT_EQ(GetFile(m_folder.File("wide.ini")), "\xFF\xFE[");
    EXPECT_TRUE(fs::is_character_file("/dev/full"));
}

// A disk that is full half-way leaves the old file and no remains.
TEST_F(IniStoreTest, AFailedWriteLeavesTheOldFile) {
    PutFile(m_path, "[S]\na=1\n");
    test::OnFullVolume([this] {
        EXPECT_FALSE(Set(m_path, "a", std::string(100'000, 'x')));
        EXPECT_EQ(Value(m_path), "1");
        EXPECT_TRUE(Set(m_path, "b", "2"));
    });
    EXPECT_EQ(GetFile(m_path), "[S]\na=1\nb=2\n");
    EXPECT_EQ(FilesIn(m_folder.path()), 1);
}

// An unchanged value costs no write and moves no time stamp; a delete in no file makes none.
TEST_F(IniStoreTest, NothingToDoIsNotDone) {
    EXPECT_TRUE(IniStore::Instance().Edit(m_path.c_str(), false, Take("S")));
    EXPECT_FALSE(fs::exists(m_path));
    FileStamp stamps[2];
    for (FileStamp& stamp : stamps) {
        ASSERT_TRUE(Set(m_path, "a", "1"));
        StatFile(m_path.c_str(), stamp);
    }
    EXPECT_EQ(stamps[0], stamps[1]);
}

}  // namespace
}  // namespace tov
