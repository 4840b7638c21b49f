// Profile entries as a host uses them, in both stores.
#include <tov310/application.h>
#include <tov310/profile.h>

#include "support/files.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>

namespace tov {
namespace {

using Entries = CTovProfileEntries;
using namespace std::string_literals;

constexpr char const* stores[] = {"a.ini", "Acme\\App"};

class ProfileTest : public testing::Test {
 protected:
    ProfileTest() {
        setenv("XDG_CONFIG_HOME", m_folder.path().c_str(), 1);
        TovSetProfilePath(nullptr);
        TovSetRegistryProfileRoot(HKEY_CURRENT_USER);
    }

    CString File(CString const& name) const { return m_folder.File(name); }
    void Put(char const* name, std::string_view bytes) const { test::PutFile(File(name), bytes); }
    std::string Get(char const* name) const { return test::GetFile(File(name)); }

    static int Write(CString const& path, char const* section, CString const& entry, CString const& value) {
        return Entries::WriteProfileStringA(path.c_str(), section, entry.c_str(), value.c_str());
    }
    static CString Read(CString const& path, char const* section, char const* entry) {
        return Entries::ReadProfileString(path.c_str(), section, entry, "<none>");
    }

    test::TemporaryFolder m_folder;
};

TEST_F(ProfileTest, ReadsTheFileFormat) {
    std::string const none = "<none>", wide = "\xE6\xB5\x8B", longest(4095, 'x');
    std::array<std::string, 4> const rows[] = {
        // clang-format off
        {"[S]\r\na=1\r\n", "S", "a", "1"},             {"[S]\na=1", "s", "A", "1"},
        {"[\xC3\x84]\na=1\n", "\xC3\xA4", "a", none},  {"  [ S ]  tail\n \t a \t =  1 2  \n", " S ", " a ", "1 2"},
        {"[S]\na=\"  x  \"\n", "S", "a", "  x  "},     {"[S]\na='x'\n", "S", "a", "x"},
        {"[S]\na=\"x'\n", "S", "a", "\"x'"},           {"[S]\na=\"\n", "S", "a", "\""},
        {"[S]\na=\"\"x\"\"\n", "S", "a", "\"x\""},     {"[S]\na=\n", "S", "a", ""},
        {"[S]\na\n", "S", "a", none},                  {"[S]\n;a=1\n", "S", ";a", none},
        {"[S]\na=b=c;2\n", "S", "a", "b=c;2"},         {"[S]\na=1\na=2\n", "S", "a", "1"},
        {"[S]\na=1\n[T]\n[S]\nb=2\n", "S", "b", none}, {"a=1\n[S]\n", "", "a", none},
        {"[]\n=1\n", "", "", "1"},                     {"[S\na=1\n", "S", "a", "1"},
        {"[S]x]\na=1\n", "S", "a", "1"},               {"[T]\na=2\n[S]\n", "S", "a", none},
        {"\xEF\xBB\xBF[S]\na=1\n", "S", "a", "1"},     {"\xFF\xFE[\0S\0]\0\n\0"s, "S", "a", none},
        {"[S]\na=1\0x\nb=2\n"s, "S", "a", "1"},        {"[S]\na=1\0x\nb=2\n"s, "S", "b", "2"},
        {"[S]\na=" + longest + "x", "S", "a", longest},
        {"[S]\na=xx" + longest.substr(4) + wide, "S", "a", "xx" + longest.substr(4)},  // whole characters only
        // clang-format on
    };
    for (int i = 0; auto const& [file, section, entry, expected] : rows) {
        auto const name = std::to_string(i++) + ".ini";
        Put(name.c_str(), file);
        EXPECT_EQ(Read(name, section.c_str(), entry.c_str()), expected) << file.substr(0, 60);
    }
    EXPECT_EQ(Entries::ReadProfileString("missing.ini", "S", "a", nullptr), "");
}

TEST_F(ProfileTest, NumbersReadAlikeInBothStores) {
    std::pair<char const*, unsigned> const numbers[] = {
        {"42", 42}, {"-5", 4294967291u}, {"+7", 7},  {"0x1F", 0},       {"12abc", 12},
        {"", 0},    {"- 5", 0},          {"007", 7}, {"4294967297", 1}, {"99999999999999999999", 1661992959u},
    };
    std::pair<char const*, std::vector<int>> const vectors[] = {
        {"10;20;5;", {10, 20, 5}}, {"1;2", {1}},         {"", {}},           {";1;;2;", {1, 2}},
        {"-1;x;3;", {-1, 0, 3}},   {"4294967297;", {1}}, {" 7 ; ;", {7, 0}},
    };
    for (char const* path : stores) {
        for (auto const& [text, number] : numbers) {
            ASSERT_EQ(Write(path, "S", "n", text), 1);
            EXPECT_EQ(Entries::ReadProfileInt(path, "S", "n", 99), number) << path << ' ' << text;
        }
        EXPECT_EQ(Entries::ReadProfileInt(path, "S", "missing", -1), 4294967295u);
        ASSERT_EQ(Entries::WriteProfileInt(path, "S", "n", -2147483647 - 1), 1);
        EXPECT_EQ(Read(path, "S", "n"), "-2147483648");
        EXPECT_EQ(Entries::ReadProfileInt(path, "S", "n", 0), 2147483648u);
        for (auto const& [text, expected] : vectors) {
            ASSERT_EQ(Write(path, "S", "v", text), 1);
            std::vector<int> values{99};
            Entries::ReadProfileIntVector(path, "S", "v", values);
            EXPECT_EQ(values, expected) << path << ' ' << text;
        }
        for (auto const& [values, text] : {std::pair(std::vector{10, -20, 5}, "10;-20;5;"), {{}, ""}}) {
            ASSERT_EQ(Entries::WriteProfileIntVector(path, "S", "v", values), 1);
            EXPECT_EQ(Read(path, "S", "v"), text);
        }
    }
    Put("quoted.ini", "[S]\nn=\"42\"\n");
    EXPECT_EQ(Entries::ReadProfileInt("quoted.ini", "S", "n", 0), 42u);
}

TEST_F(ProfileTest, TextOfThePathChoosesTheStore) {
    std::pair<CString, bool> const rows[] = {
        {File("App.INI.old"), true}, {File("plain"), true}, {"Bare.InI", true}, {"Acme\\App", false},
        {"@TovMessageBox/", false},  {"Acme/App", false},   {"C:", false},      {"in.i", false},
    };
    for (auto const& [path, isFile] : rows) {
        ASSERT_EQ(Write(path, "S", "a", path), 1) << path;
        EXPECT_EQ(Read(path, "S", "a"), path);
        EXPECT_EQ(std::filesystem::exists(path.starts_with('/') ? path : File(path)), isFile) << path;
    }
    // Folders that do not exist are not made.
    for (CString const& path : {"D:\\Settings"s, "D:/Settings"s, File("no/such/App.ini")})
        EXPECT_EQ(Write(path, "S", "a", "1"), 0) << path;
    // A backslash divides folders of a file, too.
    CString mixed = File("mixed.ini");
    mixed[mixed.rfind('/')] = '\\';
    EXPECT_EQ(Write(mixed, "S", "a", "1"), 1);
    EXPECT_EQ(Get("mixed.ini"), "[S]\r\na=1\r\n");
}

TEST_F(ProfileTest, ProfilePathsAndRoots) {
    auto const home = File("new/folder");
    setenv("XDG_CONFIG_HOME", home.c_str(), 1);
    TovSetProfilePrefix("Survey");
    EXPECT_EQ(Entries::ReadTovProfileInt("S", "a", 3), 3u);
    EXPECT_EQ(Entries::WriteTovProfileString("S", "a", nullptr), 1);
    EXPECT_FALSE(std::filesystem::exists(home)) << "made without need";
    EXPECT_EQ(Entries::WriteTovProfileInt("S", "a", 4), 1);
    EXPECT_EQ(Get("new/folder/Survey.Tov310.INI"), "[S]\r\na=4\r\n");
    TovSetProfilePrefix("");
    EXPECT_EQ(TovGetProfilePath(), home + "/Tov310.INI");
    EXPECT_EQ(Entries::ReadTovProfileInt("S", "a", 7), 7u);
    unsetenv("XDG_CONFIG_HOME");
    setenv("HOME", m_folder.path().c_str(), 1);
    TovSetProfilePath("");
    EXPECT_EQ(TovGetProfilePath(), File(".config/Tov310.INI"));

    TovSetProfilePath("Acme\\App\\");
    TovSetProfilePath(TovGetProfilePath());
    EXPECT_STREQ(TovGetProfilePath(), "Acme\\App");
    TovSetRegistryProfileRoot(HKEY_LOCAL_MACHINE);
    ASSERT_EQ(Entries::WriteTovProfileInt("S", "a", 2), 1);
    for (HKEY const other : {HKEY_CLASSES_ROOT, HKEY_USERS, HKEY{0}})
        TovSetRegistryProfileRoot(other);
    EXPECT_EQ(Read("Acme\\App", "S", "a"), "2");
    TovSetRegistryProfileRoot(HKEY_CURRENT_USER);
    EXPECT_EQ(Read("Acme\\App", "S", "a"), "<none>");
}

// Every size from nothing to plenty, with a guard behind the buffer.
TEST_F(ProfileTest, SectionListNeverLeavesItsBuffer) {
    Put("a.ini", "[S]\n a = 1 \nbare line\n; not this\n\nlonger=\"two\"\n[Empty]\n");
    ASSERT_EQ(Entries::WriteProfileSectionA("Acme", "S", "a=1\0longer=two\0\0"), 1);
    ASSERT_EQ(Entries::WriteProfileInt("Acme", "S", "n", -7), 1);
    std::pair<char const*, std::string> const rows[] = {{"a.ini", "a=1\0bare line\0longer=\"two\"\0"s},
                                                        {"Acme", "a=1\0longer=two\0n=-7\0"s},
                                                        {"missing.ini", ""},
                                                        {"Missing", ""}};
    for (auto const& [path, all] : rows) {
        for (std::size_t size = 0; size < 48; ++size) {
            // As many whole texts as leave room for the zero that closes the list.
            auto const kept = size < 2 ? 0 : all.rfind('\0', size - 2) + 1;
            auto const answer = kept == all.size() ? kept : std::max<std::size_t>(size, 2) - 2;
            auto expected = all.substr(0, kept).append(std::min<std::size_t>(size, kept == 0 ? 2 : 1), '\0');
            expected.resize(50, '#');
            std::string buffer(50, '#');
            EXPECT_EQ(Entries::ReadProfileSection(path, "S", buffer.data(), size), static_cast<int>(answer));
            EXPECT_EQ(buffer, expected) << path << ' ' << size;
        }
        EXPECT_EQ(Entries::ReadProfileSection(path, "S", nullptr, 100), 0);
    }
}

TEST_F(ProfileTest, RegistryListSkipsOnlyWhatIsTooLarge) {
    Write("Acme", "S", "big", CString(8192, 'x'));
    Write("Acme", "S", "fits", CString(8191, 'y'));
    Write("Acme", "S", CString(261, 'n'), "1");
    Write("Acme", "S", "last", "1");
    Write("Acme", "S", "", "nameless");  // ends the list
    Write("Acme", "S", "hidden", "1");
    std::string buffer(20000, '#');
    auto const size = Entries::ReadProfileSection("Acme", "S", buffer.data(), buffer.size());
    EXPECT_EQ(buffer.substr(0, static_cast<std::size_t>(size)), "fits=" + CString(8191, 'y') + "\0last=1\0"s);
    std::map<CString, CString> entries;
    EXPECT_EQ(Entries::ReadProfileSection("Acme", "S", entries), 1);
    EXPECT_EQ(entries["big"].size(), 8192u);
    // The map reads the registry whatever the path looks like; no path is the branch of the profile path.
    EXPECT_EQ(Write("a.ini", "S", "a", "1"), 1);
    EXPECT_EQ(Entries::ReadProfileSection("a.ini", "S", entries), 1);
    EXPECT_TRUE(entries.empty());
    TovSetProfilePath("Acme");
    EXPECT_EQ(Read("", "S", "last"), "1");
}

TEST_F(ProfileTest, VectorsOfAnApplicationPassItsVirtualOperations) {
    struct Application : CWinApp {
        CString GetProfileString(char const*, char const* entry, char const*) override {
            return m_store[entry];
        }
        int WriteProfileString(char const*, char const* entry, char const* value) override {
            return m_store[entry] = value, 1;
        }
        std::map<CString, CString> m_store;
    } application;
    EXPECT_EQ(Entries::WriteProfileIntVector(application, "S", "v", {1, 2}), 1);
    std::vector<int> values;
    Entries::ReadProfileIntVector(application, "S", "v", values);
    EXPECT_EQ(application.m_store["v"] + std::to_string(values.back()), "1;2;2");

    CWinApp plain;
    EXPECT_EQ(plain.WriteProfileString("S", "a", "1"), 1);
    EXPECT_EQ(Get("profile_test.INI"), "[S]\r\na=1\r\n");
    plain.SetProfilePath("Acme\\App\\");
    EXPECT_EQ(plain.GetProfileString("S", "a", "none"), "none");
}

// In a file a section is a name. In the registry it is a key, perhaps in another one, and made by a read.
TEST_F(ProfileTest, RandomOperationsAgainstAMirror) {
    for (char const* path : stores) {
        bool const isTree = path == stores[1];
        std::map<CString, std::map<CString, CString>> mirror;
        std::mt19937 random(310);
        auto const anyCase = [&](CString text) {
            if (random() % 2 == 0)
                std::ranges::replace(text, text.front(), static_cast<char>(text.front() - 32));
            return text;
        };
        for (int step = 0; step < 800; ++step) {
            CString const section = std::array{"a", "a\\b", "a\\c", "d"}[random() % 4];
            CString const entry = std::array{"v", "w", "x"}[random() % 3], value = std::to_string(random());
            auto const asked = anyCase(section), askedEntry = anyCase(entry);
            auto const kind = random() % 6;
            if (isTree && kind > 1) mirror.insert({{section.substr(0, 1), {}}, {section, {}}});
            auto const found = mirror.find(section);
            bool const isThere = found != mirror.end() && found->second.contains(entry);
            if (kind == 0) {
                auto const next = mirror.upper_bound(section);
                bool const isKept = isTree && next != mirror.end() && next->first.starts_with(section);
                ASSERT_EQ(Entries::WriteProfileStringA(path, asked.c_str(), nullptr, nullptr), !isKept);
                if (!isKept) mirror.erase(section);
            } else if (kind == 1) {
                ASSERT_EQ(Entries::WriteProfileStringA(path, asked.c_str(), askedEntry.c_str(), nullptr), 1);
                if (isThere) found->second.erase(entry);
            } else if (kind < 4) {
                ASSERT_EQ(Write(path, asked.c_str(), askedEntry, value), 1);
                mirror[section][entry] = value;
            } else {
                auto const text = Read(path, asked.c_str(), askedEntry.c_str());
                ASSERT_EQ(text, isThere ? found->second[entry] : "<none>");
            }
            std::vector<CString> names, expected;
            Entries::ReadSectionNames(path, names);
            for (CString& name : names)
                name.front() = static_cast<char>(name.front() | 0x20);
            std::ranges::sort(names);
            for (auto const& [name, unused] : mirror) {
                if (!isTree || name.size() == 1) expected.push_back(name);
            }
            ASSERT_EQ(names, expected) << path << " at step " << step;
        }
    }
    std::vector<CString> names{"old"};
    EXPECT_EQ(Entries::ReadSectionNames("missing.ini", names), 0);
    EXPECT_TRUE(names.empty());
}

TEST_F(ProfileTest, SeveralEntriesAreWrittenTogetherOrNotAtAll) {
    Put("a.ini", ";1\r\n[S]\r\nb = 2 \r\n");
    for (char const* path : stores) {
        std::pair<CString, CString> const refused[] = {
            {"n", "x\ny"}, {"n\r", "x"}, {"n", "x\0y"s}, {"\0"s, "x"}};
        EXPECT_EQ(Write(path, "S", "b", "2") + Write(path, "S", "c", "3"), 2);
        for (auto const& entry : refused)
            EXPECT_EQ(Entries::WriteProfileStrings(path, "S", {{"b", "5"}, entry, {"c", "6"}}), 0);
        EXPECT_EQ(Entries::WriteProfileStrings(path, "T\n", {{"b", "5"}}), 0);
        EXPECT_EQ(Read(path, "S", "b") + Read(path, "S", "c"), "23");
        EXPECT_EQ(Entries::WriteProfileStrings(path, "s", {{"d", "7"}, {"B", "2"}, {"c", "8"}, {"D", ""}}),
                  1);
        EXPECT_EQ(Read(path, "S", "b") + Read(path, "S", "c") + Read(path, "S", "d"), "28");
    }
    EXPECT_EQ(Entries::WriteProfileStrings(stores[0], "S", {{"a", "1"}, {"x=y", "1"}}), 0);
    EXPECT_EQ(Get("a.ini"), ";1\r\n[S]\r\nb = 2\r\nc=8\r\nd=\r\n");
    EXPECT_EQ(Entries::WriteProfileStrings("/no/such.ini", "S", {}), 1);
    EXPECT_EQ(Entries::WriteProfileStrings("/no/such.ini", "S", {{"a", "1"}}), 0);
}

// A file refuses what it could not read back; the registry takes any name and text of one line.
TEST_F(ProfileTest, NamesAndTextsThatAreRefused) {
    std::tuple<char const*, char const*, char const*, int> const rows[] = {
        {"a]b", "a", "2", 1}, {"a\nb", "a", "2", 0}, {"\r", "a", "2", 0},   {"S", "a=b", "2", 1},
        {"S", " ;a", "2", 1}, {"S", "[a", "2", 1},   {"S", "a\nb", "2", 0}, {"S", "a\rb", "2", 0},
        {"S", "a", "2\n", 0}, {"S", "a", "\r2", 0},
    };
    for (char const* path : stores)
        ASSERT_EQ(Write(path, "S", "a", "1"), 1);
    for (auto const& [section, entry, value, registry] : rows) {
        EXPECT_EQ(Write(stores[0], section, entry, value), 0) << section << entry << value;
        EXPECT_EQ(Write(stores[1], section, entry, value), registry) << section << entry << value;
        EXPECT_EQ(Read(stores[1], section, entry) == value, registry != 0);
    }
    EXPECT_EQ(Entries::WriteProfileSectionA(stores[0], "S", "b=1\0[T]\0"), 0);
    for (char const* path : stores) {
        EXPECT_EQ(Entries::WriteProfileSectionA(path, "S", "b=1\0c=1\r\n\0"), 0);
        // The registry takes them one by one.
        EXPECT_EQ(Read(path, "S", "a") + Read(path, "S", "b"), path == stores[0] ? "1<none>" : "11");
    }
    EXPECT_EQ(Get(stores[0]), "[S]\r\na=1\r\n");
}

}  // namespace
}  // namespace tov
