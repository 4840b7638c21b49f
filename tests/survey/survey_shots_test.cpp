// The windows of the sample host, as they are seen: the pictures are read by the library without a toolkit.
#include "support/files.h"
#include "support/temporary_folder.h"

#include <tov310/bitmap.h>

#include <gmock/gmock.h>
#include <sys/wait.h>

#include <filesystem>
#include <map>
#include <set>
#include <span>

namespace {

namespace fs = std::filesystem;

int Survey(std::string const& arguments, tov::test::TemporaryFolder const& folder) {
    std::string const command = "cd '" + folder.path().string() +
                                "' && XDG_CONFIG_HOME=. XDG_RUNTIME_DIR=. '" SURVEY_PROGRAM "' " + arguments +
                                " > said 2>&1";
    int const status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// From 0 to 1.
double Brightness(tov::CTovBitmap const& picture) {
    tov::CTovPixels const& pixels = *picture.GetSafeHandle();
    std::span<std::uint32_t const> const colors(pixels.GetBits(), pixels.GetCount());
    double sum = 0;
    for (std::uint32_t const color : colors)
        sum += (color & 0xFF) + (color >> 8 & 0xFF) + (color >> 16 & 0xFF);
    return sum / (3 * 255.0 * static_cast<double>(colors.size()));
}

TEST(Shots, ShowEveryWindowInEveryLanguagePaletteAndScale) {
    tov::test::TemporaryFolder const folder;
    int const code = Survey("shots pictures/all", folder);
    std::string const said = tov::test::GetFile(folder.File("said"));
    ASSERT_EQ(code, 0) << said;
    EXPECT_EQ(said, "");
    EXPECT_FALSE(fs::exists(folder.path() / "Survey.ini")) << "the user's settings are not touched";

    std::map<std::string, unsigned> windows;
    std::set<std::string> contents;
    unsigned pictures = 0;
    for (auto const& entry : fs::directory_iterator(folder.path() / "pictures/all")) {
        std::string const name = entry.path().stem().string();
        std::string const window = name.substr(0, name.find('-'));
        bool const isDark = name.find("-dark-") != name.npos, isLarge = name.ends_with("-2");
        tov::CTovBitmap picture;
        ASSERT_TRUE(picture.LoadBitmap(entry.path().c_str())) << name;
        EXPECT_EQ(Brightness(picture) < 0.5, isDark) << name;
        EXPECT_GT(picture.GetWidth(), 100) << name;
        if (isLarge) {
            tov::CTovBitmap small;
            fs::path const other = entry.path().parent_path() / (name.substr(0, name.size() - 1) + "1.png");
            ASSERT_TRUE(small.LoadBitmap(other.c_str()));
            EXPECT_EQ(picture.GetWidth(), 2 * small.GetWidth()) << name;
            EXPECT_EQ(picture.GetHeight(), 2 * small.GetHeight()) << name;
        }
        ++windows[window];
        ++pictures;
        contents.insert(tov::test::GetFile(entry.path()));
    }
    for (auto const& [window, count] : windows)
        EXPECT_EQ(count, 8U) << window;
    EXPECT_THAT(windows, testing::Contains(testing::Key("main")));
    // Languages look different wherever there are words.
    EXPECT_EQ(contents.size(), pictures - 4) << "only the gripper has none";
}

TEST(Shots, BadCallsAreTold) {
    tov::test::TemporaryFolder const folder;
    tov::test::PutFile(folder.File("file"), "");
    EXPECT_EQ(Survey("shots", folder), 2);
    EXPECT_EQ(Survey("shots a b", folder), 2);
    EXPECT_EQ(Survey("shots --scale 9 a", folder), 2);
    EXPECT_EQ(Survey("shots file", folder), 3);
    EXPECT_EQ(Survey("window a b", folder), 2);
    EXPECT_EQ(Survey("window --help", folder), 0);
    EXPECT_THAT(tov::test::GetFile(folder.File("said")), testing::HasSubstr("Opens FILE"));
    EXPECT_EQ(std::system(("env -u QT_QPA_PLATFORM -u WAYLAND_DISPLAY DISPLAY=:999 XDG_CONFIG_HOME='" +
                           folder.path().string() + "' '" SURVEY_PROGRAM "' > '" + folder.File("said") +
                           "' 2> /dev/null")
                              .c_str()),
              0);
    EXPECT_THAT(tov::test::GetFile(folder.File("said")), testing::HasSubstr("Europe/Berlin"))
        << "a display that is not there";
}

}  // namespace
