// Places from text files of other programs, without a window.
#include "import.h"

#include <gmock/gmock.h>

#include <numbers>
#include <random>

namespace survey {
namespace {

using testing::ElementsAre;

constexpr double degree = std::numbers::pi / 180;

TEST(Import, ReadsAnglesAsPeopleWriteThem) {
    struct Case {
        char const* text;
        long unit;
        double degrees;  // 999: it is none
    };
    constexpr double none = 999;
    constexpr double dms = 12 + 34 / 60.0 + 56.5 / 3600.0;
    Case const cases[] = {
        {"12 34 56.5", 12, dms},
        {"-12:34:56,5", 12, -dms},
        {"12°34'56.5\"S", 12, -dms},
        {"N 12°34′56.5″", 12, dms},
        {"+12 34", 12, 12 + 34 / 60.0},
        {"12.5", 12, 12.5},
        {"-0 30", 12, -0.5},
        {"90", 12, 90},
        {"90 0 0.1", 12, none},
        {"400 0 0", 12, none},
        {"520", 12, none},
        {"12 60", 12, none},
        {"12 34 60", 12, none},
        {"12.5 30", 12, none},
        {"12 -34", 12, none},
        {"1 2 3 4", 12, none},
        {"", 12, none},
        {"N", 12, none},
        {"-12 N", 12, none},
        {"--12", 12, none},
        {"12 E", 12, none},
        {"1e1", 12, none},
        {"nan", 11, none},
        {"inf", 11, none},
        {"52.5x", 11, none},
        {"52,5° n", 11, 52.5},
        {"-52.5", 11, -52.5},
        {"12.345650", 13, dms},
        {"12.6", 13, none},
        {"100", 14, 90},
        {"-50.5", 14, -45.45},
        {"50 25 50", 15, 45.2295},
        {"50 100", 15, none},
        {"0.25", 17, 90},
        {"0.26", 17, none},
        {"1.5707963267948966", 18, 90},
        {"1.58", 18, none},
    };
    for (Case const& c : cases) {
        tov::CTovValueAngleLat latitude;
        bool const isRead = ReadAngle(c.text, *FindUnit(AngleUnits(), c.unit), latitude);
        EXPECT_EQ(isRead, c.degrees != none) << c.text << " in " << c.unit;
        if (isRead) {
            EXPECT_NEAR(latitude.GetDouble(), c.degrees * degree, 1e-12) << c.text;
        }
    }
    tov::CTovValueAngleLon longitude;
    EXPECT_TRUE(ReadAngle("180 W", AngleUnits()[0], longitude));
    EXPECT_FALSE(ReadAngle("10 N", AngleUnits()[0], longitude));
}

TEST(Import, GuessesWhatFilesLookLike) {
    struct Case {
        char const* text;
        char separator;
        bool titles;
        int columns[5];
        long unit;
    };
    Case const cases[] = {
        {"a,1.5,2.5\nb,3,4\n", ',', false, {1, 2, 3, 0, 0}, 11},
        {"\n\xEF\xBB\xBF", ',', false, {1, 2, 3, 0, 0}, 11},
        {"Height;Longitude;Latitude;Point\r\n1;2;3;x\r\n", ';', true, {4, 3, 2, 1, 0}, 11},
        {"名称\t纬度\t经度\t高程\t备注\na\t1 2 3\t4 5 6\t7\t8\n", '\t', true, {1, 2, 3, 4, 5}, 12},
        {"7001 48.1 11.5 520.3\n7002 48.2 11.6 519.9\n", ' ', false, {1, 2, 3, 4, 0}, 11},
        {"48.1;11,5;520;x y\n1;2;3;z\n", ';', false, {4, 1, 2, 3, 0}, 11},
    };
    for (Case const& c : cases) {
        ImportFormat const format = GuessFormat(c.text);
        EXPECT_EQ(format.separator, c.separator) << c.text;
        EXPECT_EQ(format.hasTitles, c.titles) << c.text;
        EXPECT_THAT(
            (std::vector{format.name, format.latitude, format.longitude, format.height, format.comment}),
            testing::ElementsAreArray(c.columns))
            << c.text;
        EXPECT_EQ(format.angleUnit->id, c.unit) << c.text;
    }
}

TEST(Import, SkipsWhatIsWrongAndKeepsTheRest) {
    using Fault = ImportFault;
    ImportFormat format{.height = 4, .comment = 5, .heightUnit = &DistanceUnits()[2]};
    Place present;
    present.name = "here";
    std::string const text =
        "\xEF\xBB\xBF\"a \"\"b\"\", c\" , 1 ,2, 1000 "
        ",x\r\n\n\xFF,1,2\nb\x1B,1,2\nc,1\n,1,2\nd,91,2\ne,1,181\n"
        "f,1,2,x\ng,1,2,1e9\nhere,1,2\na,1,2\na,1,2\nz,1,2,,last";
    Import const import = ReadImport(text, format, {present});
    std::vector<std::string> names;
    for (Place const& place : import.places)
        names.push_back(place.name);
    EXPECT_THAT(names, ElementsAre("a \"b\", c", "a", "z"));
    EXPECT_NEAR(import.places[0].height.value(), 304.8, 1e-12);
    EXPECT_EQ(import.places[0].comment, "x");
    EXPECT_FALSE(import.places[1].height.has_value());
    EXPECT_EQ(import.places[2].comment, "last");
    std::vector<std::pair<std::size_t, Fault>> skipped;
    for (auto const& [line, fault] : import.skipped)
        skipped.emplace_back(line, fault);
    EXPECT_THAT(skipped, ElementsAre(std::pair(3, Fault::kEncoding), std::pair(4, Fault::kControl),
                                     std::pair(5, Fault::kColumns), std::pair(6, Fault::kName),
                                     std::pair(7, Fault::kLatitude), std::pair(8, Fault::kLongitude),
                                     std::pair(9, Fault::kHeight), std::pair(10, Fault::kHeight),
                                     std::pair(11, Fault::kTwice), std::pair(13, Fault::kTwice)));
    format.height = format.name;
    EXPECT_TRUE(ReadImport(text, format, {}).places.empty()) << "a column with two meanings";
}

// Every line is a place or is told of, whatever stands there and whatever is guessed.
TEST(Import, LosesNoLine) {
    std::mt19937 random(5);
    constexpr char characters[] = "19.,; \t\"'NSEW-+:a\n\r\xC3";
    for (int round = 0; round < 3000; ++round) {
        std::string text;
        for (auto i = random() % 80; i > 0; --i)
            text += characters[random() % (sizeof characters - 1)];
        ImportFormat const format = GuessFormat(text);
        ASSERT_TRUE(IsWhole(format)) << text;
        std::size_t const lines = FirstLines(text, 1000).size();
        Import const import = ReadImport(text, format, {});
        ASSERT_EQ(import.places.size() + import.skipped.size() + (format.hasTitles && lines > 0 ? 1 : 0),
                  lines)
            << text;
    }
}

}  // namespace
}  // namespace survey
