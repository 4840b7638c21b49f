// links: objects
// The registry tree: a mirror, other processes and programs in the same file, and files that are not fit.
#include "util/registry_store.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <utility>

namespace tov {
namespace {

namespace fs = std::filesystem;
constexpr HKEY user = HKEY_CURRENT_USER;

class RegistryStoreTest : public testing::Test {
 protected:
    RegistryStoreTest() { setenv("XDG_CONFIG_HOME", m_folder.path().c_str(), 1); }

    static RegistryStore& Store() { return RegistryStore::Instance(); }
    static bool WriteText(std::string_view key, std::string_view name, std::string text) {
        return Store().Write(user, key, name, {registryText, 0, std::move(text)});
    }
    static std::string ReadText(std::string_view key, std::string_view name) {
        auto const value = Store().Read(user, key, name);
        return value ? value->text : "<none>";
    }
    static std::vector<std::string> SubKeys(std::string_view key) {
        std::vector<std::string> names;
        EXPECT_TRUE(Store().SubKeys(user, key, names));
        return names;
    }

    std::string File() const { return m_folder.File(RegistryStore::fileName); }
    std::string Bytes() const {
        std::ifstream in(File(), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    void Put(std::string_view bytes) const {
        std::ofstream(File(), std::ios::binary).write(bytes.data(), std::ssize(bytes));
    }

    // As another program would.
    void Sql(char const* text) const {
        sqlite3* database = nullptr;
        ASSERT_EQ(sqlite3_open(File().c_str(), &database), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(database, text, nullptr, nullptr, nullptr), SQLITE_OK)
            << sqlite3_errmsg(database);
        sqlite3_close(database);
    }

    test::TemporaryFolder m_folder;
};

std::string Numbered(char first, int number) {
    return std::string(1, first).append(std::to_string(number));
}

std::string Upper(std::string text) {
    std::ranges::transform(text, text.begin(),
                           [](char c) { return c >= 'a' && c <= 'z' ? char(c - 32) : c; });
    return text;
}

// A tree of up to three steps under random writes, reads and deletes in random case; the mirror keeps full
// key names in lower case.
TEST_F(RegistryStoreTest, RandomOperationsAgainstAMirror) {
    using Values = std::vector<std::pair<std::string, std::string>>;  // in the order of creation
    std::vector<std::pair<std::string, Values>> mirror;
    auto const values = [&](std::string const& key) {
        return std::ranges::find(mirror, key, &std::pair<std::string, Values>::first);
    };
    auto const make = [&](std::string const& key) -> Values& {
        for (auto at = key.find('\\');; at = key.find('\\', at + 1)) {
            auto const step = key.substr(0, at);
            if (values(step) == mirror.end()) mirror.emplace_back(step, Values());
            if (at == std::string::npos) return values(key)->second;
        }
    };
    std::mt19937 random(310);
    auto const below = [&](unsigned n) { return static_cast<unsigned>(random() % n); };
    for (int step = 0; step < 3000; ++step) {
        std::string key = "k";
        for (unsigned depth = below(3); depth > 0; --depth)
            key.append({'\\', char('a' + below(3))});
        std::string const name(1, char('v' + below(4)));
        auto const asked = below(2) == 0 ? Upper(key) : key;
        auto const askedName = below(2) == 0 ? Upper(name) : name;
        switch (below(6)) {
            case 0: {
                bool const hasChildren = std::ranges::any_of(
                    mirror, [&](auto const& other) { return other.first.starts_with(key + '\\'); });
                ASSERT_EQ(Store().DeleteKey(user, asked), !hasChildren);
                if (!hasChildren && values(key) != mirror.end()) mirror.erase(values(key));
                break;
            }
            case 1:
                ASSERT_TRUE(Store().DeleteValue(user, asked, askedName));
                if (values(key) != mirror.end()) {
                    std::erase_if(values(key)->second,
                                  [&](auto const& value) { return value.first == name; });
                }
                break;
            case 2:
            case 3: {
                auto const text = std::to_string(random());
                ASSERT_TRUE(WriteText(asked, askedName, text));
                auto& all = make(key);
                auto const old = std::ranges::find(all, name, &std::pair<std::string, std::string>::first);
                if (old != all.end()) {
                    old->second = text;
                } else {
                    all.emplace_back(name, text);
                }
                break;
            }
            case 4: {
                auto const& all = make(key);
                auto const old = std::ranges::find(all, name, &std::pair<std::string, std::string>::first);
                ASSERT_EQ(ReadText(asked, askedName), old != all.end() ? old->second : "<none>");
                break;
            }
            default: {
                Values found;
                ASSERT_TRUE(
                    Store().ForEachValue(user, asked, [&](std::string_view n, RegistryValue const& value) {
                        found.emplace_back(std::string(1, char(n[0] | 0x20)), value.text);
                        return true;
                    }));
                ASSERT_EQ(found, make(key));
                std::vector<std::string> children;
                for (auto const& [other, unused] : mirror) {
                    if (other.size() == key.size() + 2 && other.starts_with(key + '\\'))
                        children.push_back(other);
                }
                auto names = SubKeys(asked);
                for (auto& n : names)
                    n = key + '\\' + char(n[0] | 0x20);
                ASSERT_EQ(names, children);
            }
        }
        if (step % 500 == 499) Store().Close();  // what was answered is in the file
    }
}

TEST_F(RegistryStoreTest, NamesStayAsFirstWrittenAndStepsAreDividedAtBackslashesOnly) {
    ASSERT_TRUE(WriteText("Software\\@TovMessageBox/", "Name", "1"));
    ASSERT_TRUE(WriteText("software\\@tovmessagebox/", "NAME", "2"));
    EXPECT_EQ(SubKeys("\\SOFTWARE\\\\"), std::vector<std::string>{"@TovMessageBox/"});
    std::vector<std::string> names;
    Store().ForEachValue(user, "software\\@TovMessageBox/",
                         [&](std::string_view name, RegistryValue const& value) {
                             names.push_back(std::string(name) + value.text);
                             return true;
                         });
    EXPECT_EQ(names, std::vector<std::string>{"Name2"});
    ASSERT_TRUE(WriteText("software\\\xC3\x84", "a", "1"));
    EXPECT_EQ(ReadText("software\\\xC3\xA4", "a"), "<none>");
    EXPECT_FALSE(Store().DeleteKey(user, ""));
    EXPECT_EQ(ReadText("software\\@TovMessageBox/", "Name"), "2");
}

TEST_F(RegistryStoreTest, AReadMakesTheKeyAlsoWhenAnotherProgramHasDeletedIt) {
    EXPECT_EQ(ReadText("software\\A\\S", "v"), "<none>");
    EXPECT_EQ(SubKeys("software\\A"), std::vector<std::string>{"S"});
    ASSERT_TRUE(WriteText("software\\A\\S", "v", "1"));
    Sql("DELETE FROM entries; DELETE FROM keys WHERE id > 2");
    EXPECT_EQ(ReadText("software\\A\\S", "v"), "<none>");
    EXPECT_EQ(SubKeys("software\\A"), std::vector<std::string>{"S"});
    Sql("DELETE FROM keys WHERE id > 2");
    ASSERT_TRUE(WriteText("software\\A\\S", "v", "2"));
    EXPECT_EQ(ReadText("software\\A\\S", "v"), "2");
}

TEST_F(RegistryStoreTest, OtherTypesAreKeptAndOfNoUse) {
    ASSERT_TRUE(WriteText("software\\S", "v", "1"));
    Sql("UPDATE entries SET type = 3, data = x'0102'");
    auto const value = Store().Read(user, "software\\S", "v");
    ASSERT_TRUE(value);
    EXPECT_EQ(value->type, 3);
}

TEST_F(RegistryStoreTest, FollowsTheConfigurationFolderAndTheFileInIt) {
    ASSERT_TRUE(WriteText("software\\S", "v", "1"));
    auto const other = m_folder.path() / "other";
    setenv("XDG_CONFIG_HOME", other.c_str(), 1);
    EXPECT_EQ(ReadText("software\\S", "v"), "<none>");
    ASSERT_TRUE(WriteText("software\\S", "v", "2"));
    setenv("XDG_CONFIG_HOME", m_folder.path().c_str(), 1);
    EXPECT_EQ(ReadText("software\\S", "v"), "1");
    Store().Close();
    fs::copy_file(File(), m_folder.File("backup"));
    ASSERT_TRUE(WriteText("software\\S", "v", "3"));
    for (auto const* tail : {"-wal", "-shm"})
        fs::remove(File() + tail);
    fs::rename(m_folder.File("backup"), File());
    EXPECT_EQ(ReadText("software\\S", "v"), "1");
}

// Parent and child each go on by themselves, with the connection open at the time of the fork.
TEST_F(RegistryStoreTest, ForkedProcessesBothWrite) {
    ASSERT_TRUE(WriteText("software\\S", "v", "1"));
    pid_t const child = ::fork();
    if (child == 0) {
        // The connection must not have come along: its locks have not.
        bool good =
            std::ranges::none_of(fs::directory_iterator("/proc/self/fd"), [this](auto const& descriptor) {
                std::error_code gone;
                return fs::read_symlink(descriptor, gone).string().starts_with(File());
            });
        good = good && ReadText("software\\S", "v") == "1";
        for (int i = 0; i < 50; ++i)
            good = good && WriteText("software\\S", Numbered('c', i), "1");
        ::_exit(good ? 0 : 1);
    }
    for (int i = 0; i < 50; ++i)
        EXPECT_TRUE(WriteText("software\\S", Numbered('p', i), "1"));
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    for (int i = 0; i < 50; ++i) {
        EXPECT_EQ(ReadText("software\\S", Numbered('c', i)), "1");
        EXPECT_EQ(ReadText("software\\S", Numbered('p', i)), "1");
    }
}

// Files that are not, or no longer, a registry: no answer, no write, and not one byte changed.
TEST_F(RegistryStoreTest, UnfitFilesAreNeverTouched) {
    for (int i = 0; i < 300; ++i) {
        ASSERT_TRUE(WriteText("software\\S", std::to_string(i), std::string(100, 'x')));
        if (i == 0) Store().Close();
    }
    Store().Close();
    auto const good = Bytes();
    ASSERT_GT(good.size(), 30'000u);
    auto const spoiled = [&](std::size_t at, std::size_t count) {
        auto bytes = good;
        std::fill_n(bytes.begin() + std::ptrdiff_t(at), count, '\x5A');
        return bytes;
    };
    std::pair<char const*, std::string> const rows[] = {
        {"no database", std::string(5000, 'x')},
        {"spoiled header", spoiled(0, 16)},
        {"spoiled tables", spoiled(100, 3000)},
        {"spoiled page", spoiled(good.size() / 2 / 4096 * 4096, 4096)},
        {"cut off", good.substr(0, good.size() / 2)},
    };
    for (auto const& [what, bytes] : rows) {
        Put(bytes);
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(ReadText("software\\S", "1"), "<none>") << what;
            EXPECT_FALSE(WriteText("software\\S", "1", "y")) << what;
            EXPECT_FALSE(Store().DeleteKey(user, "software\\S")) << what;
        }
        EXPECT_TRUE(Bytes() == bytes) << what;
        Store().Close();
    }
    Put(good);
    EXPECT_EQ(ReadText("software\\S", "1"), std::string(100, 'x'));

    // A killed process has left its log beside the file, which was damaged later.
    pid_t const child = ::fork();
    if (child == 0) ::_exit(WriteText("software\\S", "1", "new") ? 0 : 1);
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_EQ(status, 0);
    ASSERT_TRUE(fs::exists(File() + "-wal"));
    Put(rows[3].second);
    EXPECT_EQ(ReadText("software\\S", "1"), "<none>");
    Store().Close();
    EXPECT_TRUE(Bytes() == rows[3].second);
    Put(good);
    EXPECT_EQ(ReadText("software\\S", "1"), "new");

    Sql("PRAGMA user_version = 2");  // as a later version of the library might
    Store().Close();
    EXPECT_FALSE(WriteText("software\\S", "1", "y"));
    Sql("PRAGMA user_version = 1");
    EXPECT_TRUE(WriteText("software\\S", "1", "y"));
    Store().Close();
    fs::remove(File());
    Sql("CREATE TABLE theirs(a)");
    auto const theirs = Bytes();
    EXPECT_FALSE(WriteText("software\\S", "1", "y"));
    EXPECT_TRUE(Bytes() == theirs);
}

// A page that goes bad behind the back of an open connection.
TEST_F(RegistryStoreTest, DamageFoundInTheMiddleEndsTheWrites) {
    for (int i = 0; i < 2000; ++i) {
        Store().Write(user, "software\\S", std::to_string(i), {registryNumber, i, {}});
    }
    Store().Close();
    ASSERT_EQ(ReadText("software\\S", "none"), "<none>");  // opened, and found sound
    Sql("UPDATE entries SET data = 7 WHERE id = 1");       // what was read is out of date now
    {
        auto const size = fs::file_size(File());
        std::fstream file(File(), std::ios::binary | std::ios::in | std::ios::out);
        for (std::size_t at = 2 * 4096; at < size; at += 4096)
            file.seekp(std::streamoff(at)).write("\0\0\0\0", 4);
    }
    auto const damaged = Bytes();
    int read = 0;
    for (int i = 0; i < 2000; ++i)
        read += Store().Read(user, "software\\S", std::to_string(i)).has_value();
    EXPECT_LT(read, 2000);
    EXPECT_FALSE(WriteText("software\\S", "1", "y"));
    Store().Close();
    EXPECT_TRUE(Bytes() == damaged);
}

TEST_F(RegistryStoreTest, WithoutAFolderThereAreOnlyDefaults) {
    std::ofstream(m_folder.File("file")) << 'x';
    setenv("XDG_CONFIG_HOME", m_folder.File("file/below").c_str(), 1);
    EXPECT_EQ(ReadText("software\\S", "v"), "<none>");
    EXPECT_FALSE(WriteText("software\\S", "v", "1"));
    EXPECT_FALSE(Store().DeleteValue(user, "software\\S", "v"));
    setenv("XDG_CONFIG_HOME", m_folder.path().c_str(), 1);
    fs::create_directory(File());
    EXPECT_EQ(ReadText("software\\S", "v"), "<none>");
    EXPECT_FALSE(WriteText("software\\S", "v", "1"));
    fs::remove(File());
    EXPECT_TRUE(WriteText("software\\S", "v", "1"));
}

}  // namespace
}  // namespace tov
