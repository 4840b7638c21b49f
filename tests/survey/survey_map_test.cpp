// The sample host draws map sheets: what stands where after a turn, and what it says to bad calls.
#include "support/files.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <tov310/dib.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>

namespace {

using testing::HasSubstr;

struct SurveyMap : testing::Test {
    // Runs "survey map" in the folder; what it said, and the exit code.
    std::string Run(std::string const& arguments) const {
        std::string const command = "cd " + m_folder.path().string() +
                                    " && XDG_CONFIG_HOME=. '" SURVEY_PROGRAM "' map " + arguments +
                                    " > said 2>&1";
        int const status = std::system(command.c_str());
        return tov::test::GetFile(m_folder.File("said")) + std::to_string(WEXITSTATUS(status));
    }

    tov::test::TemporaryFolder const m_folder;
};

// A picture with one colour on each side of its centre.
std::string Sides(int width, int height) {
    auto const number = [](int value, int bytes) {
        std::string text;
        for (int i = 0; i < bytes; ++i)
            text += static_cast<char>(i < 4 ? value >> 8 * i : 0);
        return text;
    };
    std::string file = "BM" + number(0, 8) + number(54, 4) + number(40, 4) + number(width, 4) +
                       number(-height, 4) + number(1, 2) + number(32, 2) + number(0, 24);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            double const right = (x + 0.5) / width - 0.5, down = (y + 0.5) / height - 0.5;
            bool const isAcross = std::abs(right) > std::abs(down);
            file += number(isAcross ? (right > 0 ? 0xFF0000 : 0x00FF00) : down > 0 ? 0x0000FF : 0xFFFF00, 4);
        }
    }
    return file;
}

TEST_F(SurveyMap, TurnsTheImageRoundTheCentreAndBlendsIt) {
    if (!std::filesystem::exists(TOV_TEST_LIBRARY_DIR "/Dorn200.so"))
        GTEST_SKIP() << "built without FreeImage";
    constexpr int width = 280, height = 220;
    tov::test::PutFile(m_folder.File("sides.bmp"), Sides(width, height));
    struct Row {
        std::string arguments;
        double angle, share;
        bool isMap = false;
    };
    double const pi = std::acos(-1.0);
    for (Row const& row : {Row{"", 0, 1},
                           {"--rotate 90", pi / 2, 1},
                           {"--rotate -50 --unit grad --blend 60", -pi / 4, 0.6},
                           {"--rotate 7.5 --unit rev", pi, 1},
                           {"--rotate 1 --unit=rad --extent -10,40,25.5,60 --blend 0", 1, 0, true},
                           // Labels that are longer than the border is wide elsewhere.
                           {"--rotate 30 --extent 11.51234,48.10001,11.53,48.11", pi / 6, 1, true}}) {
        EXPECT_THAT(Run("--out sheet.png sides.bmp " + row.arguments),
                    testing::ContainsRegex("^sheet.png: .* pixels\n0$"));
        tov::CTovDib sheet;
        ASSERT_TRUE(sheet.Create(nullptr, m_folder.File("sheet.png").c_str(), 1));
        auto const isInked = [&sheet](int left, int top, int right, int bottom) {
            bool any = false;
            for (int y = top; y < bottom; ++y) {
                for (int x = left; x < right; ++x)
                    any |= (sheet.GetCrBits()[y * sheet.GetWidth() + x] & 255) < 200;
            }
            return any;
        };
        int const columns = sheet.GetWidth(), lines = sheet.GetHeight();
        EXPECT_FALSE(isInked(0, 0, 4, lines) || isInked(columns - 4, 0, columns, lines)) << row.arguments;
        // The arrow at the foot.
        EXPECT_EQ(isInked(columns * 3 / 4, lines - 58, columns, lines), row.isMap) << row.arguments;
        // Half way to each side, a little beside the middle, where no line of the graticule passes.
        double const c = std::cos(row.angle), s = std::sin(row.angle);
        for (auto const& [side, x, y] : {std::tuple(0xFF0000, 0.3, 0.04),
                                         {0x00FF00, -0.3, 0.04},
                                         {0x0000FF, 0.04, 0.3},
                                         {0xFFFF00, 0.04, -0.3}}) {
            double const right = x * width, down = y * height;
            // The map is as far from the left and right of the sheet, and lies 34 higher than its middle.
            double const column = columns / 2.0 + c * right + s * down;
            double const line = lines / 2.0 - 17 - s * right + c * down;
            std::uint32_t const found =
                sheet.GetCrBits()[static_cast<int>(line) * columns + static_cast<int>(column)];
            for (int shift : {0, 8, 16}) {
                int const part = static_cast<int>(found >> shift & 255), wanted = side >> shift & 255;
                // The paper is between 168 and 243.
                EXPECT_NEAR(part, wanted * row.share + 205 * (1 - row.share), 42)
                    << row.arguments << ' ' << std::hex << side << ' ' << found;
            }
        }
    }
}

TEST_F(SurveyMap, SaysWhatIsWrong) {
    tov::test::PutFile(m_folder.File("broken.png"), "no picture");
    tov::test::PutFile(m_folder.File("fine.bmp"), Sides(2, 2));
    for (auto const& [arguments, said, code] :
         {std::tuple("", "map needs an image, and --out", '2'),
          {"fine.bmp --out a.txt", "ends in one of .png, .jpg", '2'},
          {"fine.bmp --out a.png --rotate 1x", "a number, not \"1x\"", '2'},
          {"fine.bmp --blend -1 --out a.png", "from 0 to 100", '2'},
          {"fine.bmp --unit ell --out a.png", "no unit is called", '2'},
          {"fine.bmp --extent 1,2,3 --out a.png", "four numbers", '2'},
          {"fine.bmp --extent 3,2,1,4 --out a.png", "west is less", '2'},
          {"fine.bmp --extent -1e308,2,1e308,4 --out a.png", "from -360 to 360", '2'},
          {"fine.bmp --extent -1,2,1,90.1 --out a.png", "from -90 to 90", '2'},
          {"fine.bmp --extent 1,2,1.0000001,4 --out a.png", "at least 0.000001", '2'},
          {"fine.bmp b.bmp --out a.png", "only one image", '2'},
          {"none.bmp --out a.png", "none.bmp: there is no such file", '3'},
          {"broken.png --out a.png", "broken.png: this is no image", '3'},
          {"fine.bmp --out gone/a.png", "a.png: the image cannot be written", '3'},
          {"--help", "usage: survey map [options] IMAGE --out FILE", '0'}}) {
        std::string const answer = Run(arguments);
        EXPECT_THAT(answer, HasSubstr(said)) << arguments;
        EXPECT_EQ(answer.back(), code) << arguments;
        EXPECT_FALSE(std::filesystem::exists(m_folder.File("a.png"))) << arguments;
    }
}

}  // namespace
