#include <tov310/path.h>

#include <gtest/gtest.h>

namespace tov {
namespace {

TEST(Path, SplitsAndJoinsAgain) {
    struct Row {
        char const* path;
        char const* drive;
        char const* directory;
        char const* name;
        char const* extension;
    };
    Row const rows[] = {
        {"C:\\Data\\App.ini", "C:", "\\Data\\", "App", ".ini"},
        {"/home/user/a.b/c.tar.gz", "", "/home/user/a.b/", "c.tar", ".gz"},
        {"a/b\\c", "", "a/b\\", "c", ""},
        {"name", "", "", "name", ""},
        {"", "", "", "", ""},
        {"/", "", "/", "", ""},
        {"dir.x/", "", "dir.x/", "", ""},
        {"/etc/.profile", "", "/etc/", ".profile", ""},
        {".profile.old", "", "", ".profile", ".old"},
        {"end.", "", "", "end", "."},
        {"..", "", "", "..", ""},
        {"../..", "", "../", "..", ""},
        {"c:rest.txt", "c:", "", "rest", ".txt"},
        {"1:rest", "", "", "1:rest", ""},
        {"/数据/测量.dat", "", "/数据/", "测量", ".dat"},
    };
    for (Row const& row : rows) {
        CString drive, directory, name, extension;
        TovSplitPath(row.path, drive, directory, name, extension);
        EXPECT_EQ(drive, row.drive) << row.path;
        EXPECT_EQ(directory, row.directory) << row.path;
        EXPECT_EQ(name, row.name) << row.path;
        EXPECT_EQ(extension, row.extension) << row.path;
        EXPECT_EQ(TovMakePath(drive.c_str(), directory.c_str(), name.c_str(), extension.c_str()), row.path);
    }
}

TEST(Path, SplitTakesNullAndItsOwnOutput) {
    CString drive = "x", directory = "x", name = "x", extension = "x";
    TovSplitPath(nullptr, drive, directory, name, extension);
    EXPECT_EQ(drive + directory + name + extension, "");

    directory = "C:/one/two.txt and a tail that no short text holds";
    TovSplitPath(directory.c_str(), drive, directory, name, extension);
    EXPECT_EQ(drive, "C:");
    EXPECT_EQ(directory, "/one/");
    EXPECT_EQ(name, "two");
}

TEST(Path, JoinAddsWhatIsMissing) {
    EXPECT_EQ(TovMakePath("C", "a", "b", "c"), "C:a/b.c");
    EXPECT_EQ(TovMakePath(nullptr, "a\\", "b", nullptr), "a\\b");
    EXPECT_EQ(TovMakePath(nullptr, nullptr, nullptr, nullptr), "");
    EXPECT_EQ(TovMakePath("", "", "b", ""), "b");
}

TEST(Path, TrailingSeparator) {
    struct Row {
        char const* path;
        char const* with;
        char const* without;
    };
    Row const rows[] = {{"", "", ""},        {"a", "a/", "a"},     {"a/", "a/", "a"},
                        {"a\\", "a\\", "a"}, {"a//", "a//", "a/"}, {"C:\\", "C:\\", "C:"}};
    for (Row const& row : rows) {
        CString with = row.path, without = row.path;
        TovEnsureTrailingBackslash(with);
        TovRemoveTrailingBackslash(without);
        EXPECT_EQ(with, row.with);
        EXPECT_EQ(without, row.without);
    }
}

}  // namespace
}  // namespace tov
