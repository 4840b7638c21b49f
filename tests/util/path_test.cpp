#include <tov310/path.h>

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>

namespace tov {
namespace {

// A bar stands where drive, directory, name and extension are divided.
TEST(Path, SplitsAndJoinsAgain) {
    // clang-format off
    for (CString const parts : {
        "C:|\\Data\\|App|.ini", "|/home/user/a.b/|c.tar|.gz", "|a/b\\|c|", "|/数据/|测量|.dat", "|||", "|/||",
        "|dir.x/||", "|/etc/|.profile|", "||.profile|.old", "||end|.", "||..|", "|../|..|", "c:||rest|.txt",
        "||1:rest|",
    }) {  // clang-format on
        CString path = parts, drive, directory, name, extension;
        std::erase(path, '|');
        TovSplitPath(path.c_str(), drive, directory, name, extension);
        EXPECT_EQ(drive + '|' + directory + '|' + name + '|' + extension, parts);
        EXPECT_EQ(TovMakePath(drive.c_str(), directory.c_str(), name.c_str(), extension.c_str()), path);
    }
    EXPECT_EQ(TovMakePath("C", "a", "b", "c"), "C:a/b.c");
    EXPECT_EQ(TovMakePath(nullptr, "a\\", "b", nullptr), "a\\b");
}

TEST(Path, SplitTakesItsOwnOutputAndNull) {
    CString drive, directory = "C:/one/two.txt and a tail that no short text holds", name, extension;
    TovSplitPath(directory.c_str(), drive, directory, name, extension);
    EXPECT_EQ(drive + '|' + directory + '|' + name, "C:|/one/|two");
    TovSplitPath(nullptr, drive, directory, name, extension);
    EXPECT_EQ(drive + directory + name + extension, "");
}

TEST(Path, TrailingSeparator) {
    struct {
        CString path, with, without;
    } const rows[] = {{"", "", ""},        {"a", "a/", "a"},     {"a/", "a/", "a"},
                      {"a\\", "a\\", "a"}, {"a//", "a//", "a/"}, {"/", "/", "/"}};
    for (auto [path, with, without] : rows) {
        CString closed = path;
        TovEnsureTrailingBackslash(closed);
        TovRemoveTrailingBackslash(path);
        EXPECT_EQ(closed, with);
        EXPECT_EQ(path, without);
    }
}

TEST(Path, NamesThatEveryVolumeTakes) {
    struct Row {
        std::string name;
        char const* replaced;  // with '-'
        unsigned count;
    };
    Row const rows[] = {{"plain.txt", "plain.txt", 0},
                        {"数据 1.dat", "数据 1.dat", 0},
                        {" leading", " leading", 0},
                        {".hidden", ".hidden", 0},
                        {"console", "console", 0},
                        {"com0", "com0", 0},
                        {"a:b?c", "a-b-c", 2},
                        {"a/b\\c", "a-b-c", 2},
                        {"<>|*\"", "-----", 5},
                        {"tab\there", "tab-here", 1},
                        {"bad\xff\xc3", "bad--", 2},
                        {"end.", "end-", 1},
                        {"end ", "end-", 1},
                        {"..", ".-", 1},
                        {".", "-", 1},
                        {"CON", "CO-", 1},
                        {"nul.tar.gz", "nu-.tar.gz", 1},
                        {"Aux .x", "Au- .x", 1},
                        {"lpt9", "lpt-", 1},
                        {"com¹.x", "com-.x", 1}};
    for (Row const& row : rows) {
        EXPECT_EQ(TovFilenameIsValid(row.name.c_str()), row.count == 0) << row.name;
        CString name = row.name;
        EXPECT_EQ(TovReplaceInvalidFilenameCharacters(name, '-'), row.count) << row.name;
        EXPECT_EQ(name, row.replaced);
    }
    EXPECT_EQ(TovFilenameIsValid(nullptr) + TovFilenameIsValid(""), 0);
    EXPECT_EQ(TovFilenameIsValid(std::string(255, 'n').c_str()), 1);
    EXPECT_EQ(TovFilenameIsValid(std::string(256, 'n').c_str()), 0);
    CString empty;
    EXPECT_EQ(TovReplaceInvalidFilenameCharacters(empty, '-'), 0u);
}

// Whatever stands in the name and whatever replaces it: what comes out is valid and stays as it is.
TEST(Path, AReplacementNeverMakesASecondInvalidName) {
    std::mt19937 random(310);
    for (int i = 0; i < 200'000; ++i) {
        static constexpr std::string_view pieces[] = {"C", "o", "N", "com",  "1",    "\xc2\xb9", ".", " ",
                                                      "/", ":", "x", "\xff", "\x01", "nul",      "日"};
        CString name;
        for (auto n = random() % 6 + 1; n > 0; --n)
            name += pieces[random() % std::size(pieces)];
        auto const odd = static_cast<char>(random() % 256);
        char const replacement = i % 4 == 0 ? "N1. :\\"[random() % 6] : odd;
        bool const wasValid = TovFilenameIsValid(name.c_str()) != 0;
        CString replaced = name;
        unsigned const count = TovReplaceInvalidFilenameCharacters(replaced, replacement);
        ASSERT_EQ(TovFilenameIsValid(replaced.c_str()), 1)
            << name << '|' << replaced << '|' << int{replacement};
        ASSERT_EQ(count == 0, wasValid) << name;
        ASSERT_TRUE(!wasValid || replaced == name);
    }
}

TEST(Path, APathIsValidWhereItIsThereOrCanBe) {
    test::TemporaryFolder const folder;
    std::filesystem::create_directory(folder.File("odd:name"));
    std::ofstream(folder.File("file")) << "x";
    struct Row {
        std::string path;
        int valid;
    };
    Row const rows[] = {{"", 0},
                        {"/", 1},
                        {folder.File("odd:name"), 1},
                        {folder.File("odd:name") + "\\new/more", 1},
                        {folder.File("new:name"), 0},
                        {folder.File("new/bad?/x"), 0},
                        {folder.File("new//x/"), 1},
                        {folder.File("file"), 1},
                        {folder.File("file/x"), 0},
                        {"relative/name", 1},
                        {folder.File(std::string(256, 'n')), 0}};
    for (Row const& row : rows) {
        int removable = 7;
        EXPECT_EQ(TovPathIsValid(row.path.c_str(), 0, &removable), row.valid) << row.path;
        EXPECT_EQ(removable, 0);
    }
    EXPECT_EQ(TovPathIsValid(nullptr, 1, nullptr), 0);
}

}  // namespace
}  // namespace tov
