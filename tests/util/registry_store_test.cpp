// links: objects
// The registry tree: its names, other processes and programs in the same file, and files that are not fit.
// The random operations stand in profile_test.cpp.
#include "util/registry_store.h"

#include "support/child.h"
#include "support/files.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace tov {
namespace {

namespace fs = std::filesystem;
constexpr HKEY user = HKEY_CURRENT_USER;
constexpr char const* section = "software\\S";

class RegistryStoreTest : public testing::Test {
 protected:
    using Names = std::vector<std::string>;

    RegistryStoreTest() { UseFolder(""); }
    void UseFolder(char const* name) const { setenv("XDG_CONFIG_HOME", m_folder.File(name).c_str(), 1); }

    static RegistryStore& Store() { return RegistryStore::Instance(); }
    static bool Write(std::string_view key, std::string_view name, std::string text) {
        return Store().Write(user, key, name, {registryText, 0, std::move(text)});
    }
    static std::string Read(std::string_view key, std::string_view name) {
        auto const value = Store().Read(user, key, name);
        return value ? value->text : "<none>";
    }
    static Names SubKeys(std::string_view key) {
        Names names;
        EXPECT_TRUE(Store().SubKeys(user, key, names));
        return names;
    }
    static Names Values(std::string_view key) {
        Names values;
        EXPECT_TRUE(Store().ForEachValue(user, key, [&](std::string_view name, RegistryValue const& value) {
            return values.push_back(std::string(name) + '=' + value.text), true;
        }));
        return values;
    }

    // As another program would.
    void Sql(char const* text) const {
        sqlite3* database = nullptr;
        ASSERT_EQ(sqlite3_open(m_file.c_str(), &database), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(database, text, nullptr, nullptr, nullptr), SQLITE_OK)
            << sqlite3_errmsg(database);
        sqlite3_close(database);
    }

    // The file is as good as none, and stays as it is.
    void ExpectUnfit(std::string const& bytes, char const* what) const {
        test::PutFile(m_file, bytes);
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(Read(section, "1"), "<none>") << what;
            EXPECT_FALSE(Write(section, "1", "y")) << what;
            EXPECT_FALSE(Store().DeleteKey(user, section)) << what;
        }
        Store().Close();
        EXPECT_TRUE(test::GetFile(m_file) == bytes) << what;
    }

    test::TemporaryFolder const m_folder;
    std::string const m_file = m_folder.File(RegistryStore::fileName);
};

TEST_F(RegistryStoreTest, NamesStayAsFirstWrittenAndStepsAreDividedAtBackslashesOnly) {
    ASSERT_TRUE(Write("Software\\\xC3\x84", "a", "1"));
    for (auto const* name : {"Name", "Also", "NAME"})
        ASSERT_TRUE(Write("software\\@TovMessageBox/", name, name));
    EXPECT_EQ(Values("software\\@tovmessagebox/"), (Names{"Name=NAME", "Also=Also"}));
    EXPECT_EQ(SubKeys("\\SOFTWARE\\\\"), (Names{"\xC3\x84", "@TovMessageBox/"}));
    EXPECT_EQ(Read("software\\\xC3\xA4", "a"), "<none>");
    EXPECT_FALSE(Store().DeleteKey(user, ""));
    EXPECT_FALSE(Store().DeleteKey(user, "software")) << "there are keys below it";
}

TEST_F(RegistryStoreTest, LivesWithWhatAnotherProgramDoes) {
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(Read("software\\A\\S", "v"), "<none>");
        EXPECT_EQ(SubKeys("software\\A"), Names{"S"}) << "a read makes the key";
        Sql("DELETE FROM keys WHERE id > 2");
    }
    ASSERT_TRUE(Write("software\\A\\S", "v", "2"));
    EXPECT_EQ(Read("software\\A\\S", "v"), "2");
    Sql("UPDATE entries SET type = 3, data = x'0102'");
    EXPECT_EQ(Store().Read(user, "software\\A\\S", "v").value().type, 3) << "kept, and of no use";
}

// A text that the file refuses takes back those before it; one that is there already is not written at all.
TEST_F(RegistryStoreTest, SeveralTextsAreWrittenTogether) {
    ASSERT_TRUE(Store().WriteTexts(user, section, {{"a", "1"}, {"b", "2"}, {"A", "3"}, {"c", ""}}));
    Sql("CREATE TRIGGER refusal BEFORE INSERT ON entries WHEN new.name = 'b' OR new.type != 1"
        " BEGIN SELECT RAISE(ABORT, 'no'); END");
    EXPECT_FALSE(Store().WriteTexts(user, section, {{"a", "4"}, {"b", "5"}}));
    EXPECT_FALSE(Store().WriteTexts(user, "software\\New\\S", {{"b", "5"}}));
    EXPECT_EQ(Values(section), (Names{"a=3", "b=2", "c="}));
    EXPECT_EQ(SubKeys("software"), Names{"S"});
    EXPECT_TRUE(Store().WriteTexts(user, section, {{"B", "2"}, {"c", "6"}}));
    EXPECT_EQ(Values(section), (Names{"a=3", "b=2", "c=6"}));
}

TEST_F(RegistryStoreTest, FollowsTheConfigurationFolderAndTheFileInIt) {
    for (char const* const folder : {"", "other"}) {
        UseFolder(folder);
        EXPECT_EQ(Read(section, "v"), "<none>");
        ASSERT_TRUE(Write(section, "v", folder));
    }
    UseFolder("");
    EXPECT_EQ(Read(section, "v"), "");
    Store().Close();
    fs::copy_file(m_file, m_folder.File("backup"));
    ASSERT_TRUE(Write(section, "v", "3"));
    for (auto const* tail : {"-wal", "-shm"})
        fs::remove(m_file + tail);
    fs::rename(m_folder.File("backup"), m_file);
    EXPECT_EQ(Read(section, "v"), "");
}

// The connection that is open at the time of the fork must not come along: its locks do not.
TEST_F(RegistryStoreTest, ForkedProcessesBothWrite) {
    ASSERT_TRUE(Write(section, "v", "1"));
    pid_t const child = test::StartChild([&] {
        bool isCarried = false;
        std::error_code gone;
        for (auto const& descriptor : fs::directory_iterator("/proc/self/fd"))
            isCarried |= fs::read_symlink(descriptor, gone).string().starts_with(m_file);
        return !isCarried && Read(section, "v") == "1" && Write(section, "c", "1");
    });
    EXPECT_TRUE(Write(section, "p", "1"));
    EXPECT_EQ(test::EndChild(child), 0);
    EXPECT_EQ(Values(section).size(), 3u);
}

TEST_F(RegistryStoreTest, UnfitFilesAreNeverTouched) {
    for (int i = 0; i < 300; ++i)
        ASSERT_TRUE(Write(section, std::to_string(i), std::string(100, 'x')));
    Store().Close();
    auto const good = test::GetFile(m_file);
    auto const spoiled = [&](std::size_t at, std::size_t count) {
        return std::string(good).replace(at, count, count, '\x5A');
    };
    auto const badPage = spoiled(good.size() / 2 / 4096 * 4096, 4096);
    ExpectUnfit(std::string(5000, 'x'), "no database");
    ExpectUnfit(spoiled(0, 16), "spoiled header");
    ExpectUnfit(spoiled(100, 3000), "spoiled tables");
    ExpectUnfit(badPage, "spoiled page");
    ExpectUnfit(good.substr(0, good.size() / 2), "cut off");
    test::PutFile(m_file, good);
    EXPECT_EQ(Read(section, "1"), std::string(100, 'x'));

    // A killed process has left its log beside the file, which was damaged later.
    ASSERT_EQ(test::EndChild(test::StartChild([] { return Write(section, "1", "new"); })), 0);
    ASSERT_TRUE(fs::exists(m_file + "-wal"));
    ExpectUnfit(badPage, "spoiled page beside a log");
    test::PutFile(m_file, good);
    EXPECT_EQ(Read(section, "1"), "new");

    Store().Close();
    Sql("PRAGMA user_version = 2");  // as a later version of the library might
    ExpectUnfit(test::GetFile(m_file), "later version");
    Sql("PRAGMA user_version = 1");
    EXPECT_TRUE(Write(section, "1", "y"));
    Store().Close();
    fs::remove(m_file);
    Sql("CREATE TABLE theirs(a)");
    ExpectUnfit(test::GetFile(m_file), "not ours");
}

// A page that goes bad behind the back of an open connection.
TEST_F(RegistryStoreTest, DamageFoundInTheMiddleEndsTheWrites) {
    for (int i = 0; i < 2000; ++i)
        ASSERT_TRUE(Store().Write(user, section, std::to_string(i), {registryNumber, i, {}}));
    Store().Close();
    ASSERT_EQ(Read(section, "none"), "<none>");       // opened, and found sound
    Sql("UPDATE entries SET data = 7 WHERE id = 1");  // what was read is out of date now
    auto damaged = test::GetFile(m_file);
    for (std::size_t at = 2 * 4096; at < damaged.size(); at += 4096)
        damaged.replace(at, 4, 4, '\0');
    std::fstream(m_file, std::ios::binary | std::ios::in | std::ios::out)
        .write(damaged.data(), std::ssize(damaged));
    int read = 0;
    for (int i = 0; i < 2000; ++i)
        read += Store().Read(user, section, std::to_string(i)).has_value() ? 1 : 0;
    EXPECT_LT(read, 2000);
    EXPECT_FALSE(Write(section, "1", "y"));
    Store().Close();
    EXPECT_TRUE(test::GetFile(m_file) == damaged);
}

TEST_F(RegistryStoreTest, WithoutAFileThereAreOnlyDefaults) {
    test::PutFile(m_folder.File("file"), "x");
    fs::create_directory(m_file);
    for (auto const* folder : {"file/below", ""}) {
        UseFolder(folder);
        EXPECT_EQ(Read(section, "v"), "<none>");
        EXPECT_FALSE(Write(section, "v", "1"));
        EXPECT_FALSE(Store().DeleteValue(user, section, "v"));
    }
    fs::remove(m_file);
    EXPECT_TRUE(Write(section, "v", "1"));
}

}  // namespace
}  // namespace tov
