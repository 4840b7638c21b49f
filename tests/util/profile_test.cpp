// Profile entries as a host uses them, in both stores.
#include <tov310/application.h>
#include <tov310/profile.h>

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string_view>
#include <utility>

namespace tov {
namespace {

using Entries = CTovProfileEntries;
using namespace std::string_literals;

class ProfileTest : public testing::Test {
 protected:
    ProfileTest() {
        setenv("XDG_CONFIG_HOME", m_folder.path().c_str(), 1);
        TovSetProfilePath(nullptr);
        TovSetRegistryProfileRoot(HKEY_CURRENT_USER);
    }

    CString File(char const* name) const { return m_folder.File(name); }
    void Put(char const* name, std::string_view bytes) const {
        std::ofstream(File(name), std::ios::binary).write(bytes.data(), std::ssize(bytes));
    }
    std::string Get(CString const& path) const {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    test::TemporaryFolder m_folder;
};

std::string Repeat(char const* text, int times) {
    std::string result;
    for (int i = 0; i < times; ++i)
        result += text;
    return result;
}

TEST_F(ProfileTest, ReadsTheFileFormat) {
    struct Row {
        std::string file, section, entry, expected;
    };
    std::string const none = "<none>";
    Row const rows[] = {
        {"[S]\na=1\n", "S", "a", "1"},
        {"[S]\r\na=1\r\n", "S", "a", "1"},
        {"[S]\na=1", "s", "A", "1"},
        {"[\xC3\x84]\na=1\n", "\xC3\xA4", "a", none},  // only ASCII letters fold
        {"  [ S ]  tail\n \t a \t =  1 2  \n", " S ", " a ", "1 2"},
        {"[S]\na=\"  x  \"\n", "S", "a", "  x  "},
        {"[S]\na='x'\n", "S", "a", "x"},
        {"[S]\na=\"x'\n", "S", "a", "\"x'"},
        {"[S]\na=\"\n", "S", "a", "\""},
        {"[S]\na=\"\"\n", "S", "a", ""},
        {"[S]\na=\"\"x\"\"\n", "S", "a", "\"x\""},
        {"[S]\na=\n", "S", "a", ""},
        {"[S]\na\n", "S", "a", none},
        {"[S]\n;a=1\n", "S", "a", none},
        {"[S]\n;a=1\n", "S", ";a", none},
        {"[S]\na=1;2\n", "S", "a", "1;2"},
        {"[S]\na=b=c\n", "S", "a", "b=c"},
        {"[S]\na=1\na=2\n", "S", "a", "1"},
        {"[S]\na=1\n[T]\n[S]\nb=2\n", "S", "b", none},  // the first section of a name counts
        {"a=1\n[S]\n", "", "a", none},
        {"[]\na=1\n", "", "a", "1"},
        {"[S]\n=1\n", "S", "", "1"},
        {"[S\na=1\n", "S", "a", "1"},
        {"[S]x]\na=1\n", "S", "a", "1"},
        {"[T]\na=2\n[S]\n", "S", "a", none},
        {"\xEF\xBB\xBF[S]\na=1\n", "S", "a", "1"},
        {"\xFF\xFE[\0S\0]\0\n\0"s, "S", "a", none},
        {"[S]\na=1\0x\nb=2\n"s, "S", "a", "1"},
        {"[S]\na=1\0x\nb=2\n"s, "S", "b", "2"},
        {"[S]\na=" + Repeat("x", 5000) + "\n", "S", "a", Repeat("x", 4095)},
        {"[S]\na=" + Repeat("\xE6\xB5\x8B", 2000) + "\n", "S", "a", Repeat("\xE6\xB5\x8B", 1365)},
        {"[S]\na=x" + Repeat("\xE6\xB5\x8B", 2000) + "\n", "S", "a", "x" + Repeat("\xE6\xB5\x8B", 1364)},
        {"", "S", "a", none},
    };
    int number = 0;
    for (Row const& row : rows) {
        auto const name = std::to_string(++number) + ".ini";
        Put(name.c_str(), row.file);
        auto const read =
            Entries::ReadProfileString(name.c_str(), row.section.c_str(), row.entry.c_str(), "<none>");
        EXPECT_EQ(read, row.expected) << row.file.substr(0, 60);
    }
    EXPECT_EQ(Entries::ReadProfileString(File("missing.ini").c_str(), "S", "a", nullptr), "");
}

TEST_F(ProfileTest, NumbersReadAlikeInBothStores) {
    std::pair<char const*, unsigned> const rows[] = {
        {"42", 42},
        {"-5", 4294967291u},
        {"+7", 7},
        {"0x1F", 0},
        {"12abc", 12},
        {"abc", 0},
        {"", 0},
        {"- 5", 0},
        {"4294967295", 4294967295u},
        {"4294967297", 1},
        {"99999999999999999999", 1661992959u},
        {"007", 7},
        {"3.9", 3},
    };
    for (char const* path : {"a.ini", "Acme\\App"}) {
        for (auto const& [text, number] : rows) {
            ASSERT_EQ(Entries::WriteProfileStringA(path, "S", "n", text), 1);
            EXPECT_EQ(Entries::ReadProfileInt(path, "S", "n", 99), number) << path << ' ' << text;
        }
        EXPECT_EQ(Entries::ReadProfileInt(path, "S", "missing", -1), 4294967295u);
        ASSERT_EQ(Entries::WriteProfileInt(path, "S", "n", -2147483647 - 1), 1);
        EXPECT_EQ(static_cast<int>(Entries::ReadProfileInt(path, "S", "n", 0)), -2147483647 - 1);
        EXPECT_EQ(Entries::ReadProfileString(path, "S", "n", ""), "-2147483648");
    }
    Put("quoted.ini", "[S]\nn=\"42\"\n");
    EXPECT_EQ(Entries::ReadProfileInt("quoted.ini", "S", "n", 0), 42u);
}

TEST_F(ProfileTest, TextOfThePathChoosesTheStore) {
    auto const named = [this](char const* tail) { return File(tail); };
    std::pair<CString, bool> const rows[] = {
        {named("App.ini"), true}, {named("App.INI.old"), true}, {named("plain"), true}, {"Bare.InI", true},
        {"Acme\\App", false},     {"@TovMessageBox/", false},   {"Acme/App", false},    {"C:", false},
        {"in.i", false},
    };
    for (auto const& [path, isFile] : rows) {
        ASSERT_EQ(Entries::WriteProfileStringA(path.c_str(), "S", "a", path.c_str()), 1) << path;
        EXPECT_EQ(Entries::ReadProfileString(path.c_str(), "S", "a", ""), path);
        auto const file = path.starts_with('/') ? path : File(path.c_str());
        EXPECT_EQ(std::filesystem::exists(file), isFile) << path;
    }
    // Folders that do not exist are not made, wherever these paths lie.
    EXPECT_EQ(Entries::WriteProfileStringA("D:\\Settings", "S", "a", "1"), 0);
    EXPECT_EQ(Entries::WriteProfileStringA("D:/Settings", "S", "a", "1"), 0);
    EXPECT_EQ(Entries::WriteProfileStringA(File("no/such/App.ini").c_str(), "S", "a", "1"), 0);
    // A backslash divides folders of a file, too.
    CString mixed = File("mixed.ini");
    mixed[mixed.rfind('/')] = '\\';
    EXPECT_EQ(Entries::WriteProfileStringA(mixed.c_str(), "S", "a", "1"), 1);
    EXPECT_EQ(Get(File("mixed.ini")), "[S]\r\na=1\r\n");
}

TEST_F(ProfileTest, ProfilePathHasADefaultAndAPrefix) {
    EXPECT_EQ(CString(TovGetProfilePath()), File("Tov310.INI"));
    TovSetProfilePrefix("Survey");
    EXPECT_EQ(CString(TovGetProfilePath()), File("Survey.Tov310.INI"));
    EXPECT_EQ(Entries::WriteTovProfileInt("S", "a", 1), 1);
    EXPECT_EQ(Get(File("Survey.Tov310.INI")), "[S]\r\na=1\r\n");
    TovSetProfilePrefix("");
    EXPECT_EQ(CString(TovGetProfilePath()), File("Tov310.INI"));
    EXPECT_EQ(Entries::ReadTovProfileInt("S", "a", 7), 7u);
    TovSetProfilePath("Acme\\App\\");
    EXPECT_STREQ(TovGetProfilePath(), "Acme\\App");
    TovSetProfilePath(TovGetProfilePath());
    EXPECT_STREQ(TovGetProfilePath(), "Acme\\App");
}

TEST_F(ProfileTest, ConfigurationFolderIsMadeByTheFirstWriteOnly) {
    auto const home = m_folder.path() / "new" / "folder";
    setenv("XDG_CONFIG_HOME", home.c_str(), 1);
    TovSetProfilePath("");
    EXPECT_EQ(Entries::ReadTovProfileInt("S", "a", 3), 3u);
    EXPECT_EQ(Entries::WriteTovProfileString("S", "a", nullptr), 1);
    EXPECT_FALSE(std::filesystem::exists(home));
    EXPECT_EQ(Entries::WriteTovProfileInt("S", "a", 4), 1);
    EXPECT_EQ(Entries::ReadTovProfileInt("S", "a", 3), 4u);
    unsetenv("XDG_CONFIG_HOME");
    setenv("HOME", m_folder.path().c_str(), 1);
    TovSetProfilePath("");
    EXPECT_EQ(CString(TovGetProfilePath()), File(".config/Tov310.INI"));
}

TEST_F(ProfileTest, RootsAreSeparateAndOthersIgnored) {
    TovSetRegistryProfileRoot(HKEY_LOCAL_MACHINE);
    ASSERT_EQ(Entries::WriteProfileInt("Acme", "S", "a", 2), 1);
    for (HKEY const root : {HKEY_CLASSES_ROOT, HKEY_USERS, HKEY{0}})
        TovSetRegistryProfileRoot(root);
    EXPECT_EQ(TovGetRegistryProfileRoot(), HKEY_LOCAL_MACHINE);
    EXPECT_EQ(Entries::ReadProfileInt("Acme", "S", "a", 0), 2u);
    TovSetRegistryProfileRoot(HKEY_CURRENT_USER);
    EXPECT_EQ(Entries::ReadProfileInt("Acme", "S", "a", 0), 0u);
}

// Every size from nothing to plenty, with a guard behind the buffer.
TEST_F(ProfileTest, SectionListNeverLeavesItsBuffer) {
    Put("a.ini", "[S]\n a = 1 \nbare line\n; not this\n\nlonger=\"two\"\n[Empty]\n");
    ASSERT_EQ(Entries::WriteProfileSectionA("Acme", "S", "a=1\0longer=two\0\0"), 1);
    ASSERT_EQ(Entries::WriteProfileInt("Acme", "S", "n", -7), 1);
    using namespace std::string_view_literals;
    struct Row {
        char const* path;
        std::vector<std::string_view> texts;
    };
    for (Row const& row : {Row{"a.ini", {"a=1"sv, "bare line"sv, "longer=\"two\""sv}},
                           Row{"Acme", {"a=1"sv, "longer=two"sv, "n=-7"sv}}}) {
        for (unsigned long size = 0; size < 48; ++size) {
            std::string expected;
            bool complete = true;
            for (auto const text : row.texts) {
                complete = complete && expected.size() + text.size() + 2 <= size;
                if (complete) (expected += text) += '\0';
            }
            auto const answer = complete ? expected.size() : size < 2 ? 0 : size - 2;
            expected.append(std::min<std::size_t>(size - expected.size(), expected.empty() ? 2 : 1), '\0');
            std::string buffer(50, '#');
            EXPECT_EQ(Entries::ReadProfileSection(row.path, "S", buffer.data(), size),
                      static_cast<int>(answer));
            EXPECT_EQ(buffer.substr(0, expected.size()), expected) << row.path << ' ' << size;
            EXPECT_EQ(buffer.find_first_not_of('#', expected.size()), std::string::npos)
                << row.path << ' ' << size;
        }
        char two[3] = {'#', '#', '#'};
        EXPECT_EQ(Entries::ReadProfileSection(row.path, "missing", two, 2), 0);
        EXPECT_EQ(std::string(two, 3), "\0\0#"s);
        EXPECT_EQ(Entries::ReadProfileSection(row.path, "S", nullptr, 100), 0);
    }
}

TEST_F(ProfileTest, RegistryListSkipsOnlyWhatIsTooLarge) {
    auto const write = [](CString const& name, CString const& value) {
        ASSERT_EQ(Entries::WriteProfileStringA("Acme", "S", name.c_str(), value.c_str()), 1);
    };
    write("big", CString(8192, 'x'));
    write("fits", CString(8191, 'y'));
    write(CString(261, 'n'), "1");
    write("last", "1");
    std::vector<char> buffer(20000);
    ASSERT_GT(Entries::ReadProfileSection("Acme", "S", buffer.data(), buffer.size()), 0);
    std::string_view const first(buffer.data());
    EXPECT_EQ(first.substr(0, 6), "fits=y");
    EXPECT_STREQ(buffer.data() + first.size() + 1, "last=1");

    std::map<CString, CString> entries;
    EXPECT_EQ(Entries::ReadProfileSection("Acme", "S", entries), 1);
    EXPECT_EQ(entries.size(), 4u);
    write("", "nameless");
    write("hidden", "behind it");
    ASSERT_GT(Entries::ReadProfileSection("Acme", "S", buffer.data(), buffer.size()), 0);
    EXPECT_EQ(std::string_view(buffer.data(), buffer.size()).find("hidden"), std::string_view::npos);
}

TEST_F(ProfileTest, MapReadsTheRegistryWhateverThePathLooksLike) {
    CString const path = File("App.ini");
    ASSERT_EQ(Entries::WriteProfileInt(path.c_str(), "S", "a", 1), 1);
    std::map<CString, CString> entries{{"old", "rest"}};
    EXPECT_EQ(Entries::ReadProfileSection(path.c_str(), "S", entries), 1);
    EXPECT_TRUE(entries.empty());
    // The empty path is the branch that the profile path names.
    TovSetProfilePath(path.c_str());
    ASSERT_EQ(Entries::WriteProfileInt("", "S", "a", 5), 1);
    EXPECT_EQ(Entries::ReadProfileSection(path.c_str(), "S", entries), 1);
    EXPECT_EQ(entries, (std::map<CString, CString>{{"a", "5"}}));
}

TEST_F(ProfileTest, DeletesAreTrueAlsoWithNothingThere) {
    for (char const* path : {"a.ini", "Acme\\App"}) {
        EXPECT_EQ(Entries::WriteProfileStringA(path, "S", nullptr, nullptr), 1);
        ASSERT_EQ(Entries::WriteProfileStringA(path, "S", "a", "1"), 1);
        ASSERT_EQ(Entries::WriteProfileStringA(path, "T", "b", "2"), 1);
        EXPECT_EQ(Entries::WriteProfileStringA(path, "S", "x", nullptr), 1);
        EXPECT_EQ(Entries::WriteProfileStringA(path, "s", "A", nullptr), 1);
        EXPECT_EQ(Entries::ReadProfileString(path, "S", "a", "gone"), "gone");
        EXPECT_EQ(Entries::WriteProfileStringA(path, "T", nullptr, "ignored"), 1);
        std::vector<CString> names{"old"};
        EXPECT_EQ(Entries::ReadSectionNames(path, names), 1);
        EXPECT_EQ(names, std::vector<CString>{"S"});
        EXPECT_EQ(Entries::ReadProfileString(path, "T", "b", "gone"), "gone");
    }
    std::vector<CString> names{"old"};
    EXPECT_EQ(Entries::ReadSectionNames("missing.ini", names), 0);
    EXPECT_TRUE(names.empty());
}

TEST_F(ProfileTest, VectorsOfNumbers) {
    std::pair<char const*, std::vector<int>> const rows[] = {
        {"10;20;5;", {10, 20, 5}}, {"1;2", {1}},         {"", {}},           {";1;;2;", {1, 2}}, {";", {}},
        {"-1;x;3;", {-1, 0, 3}},   {"4294967297;", {1}}, {" 7 ; ;", {7, 0}},
    };
    for (char const* path : {"a.ini", "Acme"}) {
        std::vector<int> values;
        for (auto const& [text, expected] : rows) {
            ASSERT_EQ(Entries::WriteProfileStringA(path, "S", "v", text), 1);
            values = {99};
            Entries::ReadProfileIntVector(path, "S", "v", values);
            EXPECT_EQ(values, expected) << text;
        }
        ASSERT_EQ(Entries::WriteProfileIntVector(path, "S", "v", {10, -20, 5}), 1);
        EXPECT_EQ(Entries::ReadProfileString(path, "S", "v", ""), "10;-20;5;");
        ASSERT_EQ(Entries::WriteProfileIntVector(path, "S", "v", {}), 1);
        EXPECT_EQ(Entries::ReadProfileString(path, "S", "v", "default"), "");
    }
}

TEST_F(ProfileTest, VectorsOfAnApplicationPassItsVirtualOperations) {
    struct Application : CWinApp {
        CString GetProfileString(char const*, char const* entry, char const*) override {
            return m_store[entry];
        }
        int WriteProfileString(char const*, char const* entry, char const* value) override {
            m_store[entry] = value;
            return 1;
        }
        std::map<CString, CString> m_store;
    } application;
    EXPECT_EQ(Entries::WriteProfileIntVector(application, "S", "v", {1, 2}), 1);
    EXPECT_EQ(application.m_store["v"], "1;2;");
    std::vector<int> values;
    Entries::ReadProfileIntVector(application, "S", "v", values);
    EXPECT_EQ(values, (std::vector<int>{1, 2}));

    CWinApp plain;
    EXPECT_EQ(plain.GetProfilePath(), File("profile_test.INI"));
    EXPECT_EQ(plain.WriteProfileString("S", "a", "1"), 1);
    EXPECT_EQ(Get(File("profile_test.INI")), "[S]\r\na=1\r\n");
    plain.SetProfilePath("Acme\\App\\");
    EXPECT_EQ(plain.GetProfileString("S", "a", "none"), "none");
}

TEST_F(ProfileTest, FileRefusesWhatItCouldNotReadBack) {
    Put("a.ini", "[S]\na=1\n");
    char const* const sections[] = {"a]b", "a\nb", "\r"};
    for (char const* section : sections)
        EXPECT_EQ(Entries::WriteProfileStringA("a.ini", section, "a", "1"), 0);
    char const* const entries[] = {"a=b", ";a", " ;a", "[a", "a\nb", "a\rb"};
    for (char const* entry : entries)
        EXPECT_EQ(Entries::WriteProfileStringA("a.ini", "S", entry, "1"), 0) << entry;
    EXPECT_EQ(Entries::WriteProfileStringA("a.ini", "S", "a", "1\n[T]"), 0);
    EXPECT_EQ(Entries::WriteProfileSectionA("a.ini", "S", "b=1\0[T]\0"), 0);
    EXPECT_EQ(Entries::WriteProfileSectionA("a.ini", "S", "b=1\0c=1\r\n\0"), 0);
    EXPECT_EQ(Get(File("a.ini")), "[S]\na=1\n");
    // The registry takes any name and text of one line.
    EXPECT_EQ(Entries::WriteProfileStringA("Acme", "S", "a=b", "[1];"), 1);
    EXPECT_EQ(Entries::ReadProfileString("Acme", "S", "A=B", ""), "[1];");
    EXPECT_EQ(Entries::WriteProfileStringA("Acme", "S", "a=b", "1\r\n[T]"), 0);
    EXPECT_EQ(Entries::WriteProfileInt("Acme", "S", "a\nb", 1), 0);
    EXPECT_EQ(Entries::WriteProfileSectionA("Acme", "S", "b=1\0c=1\r\n\0"), 0);
    EXPECT_EQ(Entries::ReadProfileString("Acme", "S", "A=B", ""), "[1];");
}

}  // namespace
}  // namespace tov
