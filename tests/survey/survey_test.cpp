// The sample host: its parts, and the program itself as a user starts it.
#include "names.h"
#include "options.h"
#include "places.h"
#include "sphere.h"
#include "support/temporary_folder.h"
#include "table.h"
#include "text.h"

#include <tov310/unit_settings.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace survey {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr char const* shippedTable = TOV_TEST_SOURCE_DIR "/examples/survey/data/zone1970.tab";

std::string Contents(std::filesystem::path const& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

void Write(std::filesystem::path const& path, std::string const& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

// Whole seconds of arc, and that there is nothing but rounding beside them.
long Seconds(double radians) {
    double const seconds = radians * 648000 / std::numbers::pi;
    EXPECT_NEAR(seconds, std::round(seconds), 1e-9);
    return std::lround(seconds);
}

TEST(Places, GoodCoordinates) {
    struct Row {
        char const* coordinates;
        long latitude;
        long longitude;
    };
    Row const rows[] = {
        {"+5230+01322", 52 * 3600 + 30 * 60, 13 * 3600 + 22 * 60},
        {"-720041+0023206", -(72 * 3600 + 41), 2 * 3600 + 32 * 60 + 6},
        {"+513030-0000731", 51 * 3600 + 30 * 60 + 30, -(7 * 60 + 31)},
        {"-0030-00000", -30 * 60, 0},
        {"-000001+0000001", -1, 1},
        {"+9000+18000", 90 * 3600, 180 * 3600},
        {"-900000-1800000", -90 * 3600, -180 * 3600},
        {"+895959+1795959", 90 * 3600 - 1, 180 * 3600 - 1},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.coordinates);
        PlaceTable const table = ReadPlaces("XX\t" + std::string(row.coordinates) + "\tA/B\tremark\tmore");
        ASSERT_EQ(table.places.size(), 1u);
        EXPECT_THAT(table.skipped, IsEmpty());
        EXPECT_EQ(Seconds(table.places[0].latitude.GetDouble()), row.latitude);
        EXPECT_EQ(Seconds(table.places[0].longitude.GetDouble()), row.longitude);
        EXPECT_EQ(table.places[0].countries, "XX");
        EXPECT_EQ(table.places[0].name, "A/B");
        EXPECT_EQ(table.places[0].comment, "remark");
    }
}

TEST(Places, BadLinesAndTheirReasons) {
    struct Row {
        std::string line;
        char const* reason;
    };
    Row const rows[] = {
        {"DE +5230+01322 Europe/Berlin", "no tab between columns"},
        {"DE", "no tab between columns"},
        {"DE\t", "no latitude"},
        {"DE\t\tEurope/Berlin", "no latitude"},
        {"DE\t5230+01322\tE/B", "the latitude does not begin with + or -"},
        {"DE\t+5230\tE/B", "no longitude"},
        {"DE\t+523001322\tE/B", "the latitude has 9 digits, not DDMM or DDMMSS"},
        {"DE\t+\tE/B", "the latitude has 0 digits, not DDMM or DDMMSS"},
        {"DE\t+523+01322\tE/B", "the latitude has 3 digits, not DDMM or DDMMSS"},
        {"DE\t+52300+01322\tE/B", "the latitude has 5 digits, not DDMM or DDMMSS"},
        {"DE\t+5230+1322\tE/B", "the longitude has 4 digits, not DDDMM or DDDMMSS"},
        {"DE\t+5230+\tE/B", "the longitude has 0 digits, not DDDMM or DDDMMSS"},
        {"DE\t+5230+013220000000000000000000\tE/B", "the longitude has 24 digits, not DDDMM or DDDMMSS"},
        {"DE\t+5230x01322\tE/B", "the longitude does not begin with + or -"},
        {"DE\t+5230+01322/\tE/B", "\"/\" behind the coordinates"},
        {"DE\t+5230+01322 \tE/B", "\" \" behind the coordinates"},
        {"DE\t+5230+01322+100\tE/B", "\"+100\" behind the coordinates"},
        {"DE\t+5230+01322°\tE/B", "\"°\" behind the coordinates"},
        {"DE\t+5230.5+01322\tE/B", "the longitude does not begin with + or -"},
        {"DE\t+523000+01322\tE/B", "only one of latitude and longitude has seconds"},
        {"DE\t+5230+0132200\tE/B", "only one of latitude and longitude has seconds"},
        {"DE\t+5260+01322\tE/B", "the minutes of the latitude are above 59"},
        {"DE\t+5230+01360\tE/B", "the minutes of the longitude are above 59"},
        {"DE\t+523060+0132200\tE/B", "the seconds of the latitude are above 59"},
        {"DE\t+523000+0132299\tE/B", "the seconds of the longitude are above 59"},
        {"DE\t+9001+01322\tE/B", "the latitude is above 90 degrees"},
        {"DE\t-900001+0132200\tE/B", "the latitude is above 90 degrees"},
        {"DE\t+9100+01322\tE/B", "the latitude is above 90 degrees"},
        {"DE\t+5230+18001\tE/B", "the longitude is above 180 degrees"},
        {"DE\t+523000-1800001\tE/B", "the longitude is above 180 degrees"},
        {"DE\t+5230-99900\tE/B", "the longitude is above 180 degrees"},
        {"DE\t+5230+01322", "no name"},
        {"DE\t+5230+01322\t", "no name"},
        {"DE\t+5230+01322\t\tcomment", "no name"},
        {"DE\t+5230+01322\tTucum\xE1n", "not in UTF-8"},
        {"DE\t+5230+01322\tE/B\t\xC0\xAF", "not in UTF-8"},
        {"DE\t+5230+01322\tE/B\t\xED\xA0\x80", "not in UTF-8"},
        {"DE\t+5230+01322\tE/B\t\xF4\x90\x80\x80", "not in UTF-8"},
        {"DE\t+5230+01322\tE/B\t\xE2\x82", "not in UTF-8"},
        {"DE\t+5230+01322\tE/B\x1B[2J", "a control character"},
        {"DE\t+5230+01322\tE/B\xC2\x9B", "a control character"},
        {"DE\t+5230+01322\rDE\t+5230+01322\tE/B", "a control character"},
        {std::string("DE\t+5230+01322\tE\0B", 19), "a control character"},
        {"US\t+4000-07400\tFirst/Place", "First/Place stands in line 1"},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.line);
        // What stands around a bad line counts, and the number is that of the line.
        PlaceTable const table = ReadPlaces("AA\t+0000+00000\tFirst/Place\n# remark\n" + row.line +
                                            "\nAA\t+0001+00001\tLast/Place\n");
        ASSERT_EQ(table.skipped.size(), 1u);
        EXPECT_EQ(table.skipped[0].number, 3u);
        EXPECT_EQ(table.skipped[0].reason, row.reason);
        ASSERT_EQ(table.places.size(), 2u);
        EXPECT_EQ(table.places[1].name, "Last/Place");
    }
}

TEST(Places, LineEndsByteOrderMarkAndEmptyTables) {
    std::string const mark = "\xEF\xBB\xBF";
    std::string const a = "AA\t+0000+00000\tA", b = "BB\t+0100+00100\tB\tTucumán";
    for (std::string const& text : {a + "\n" + b, a + "\n" + b + "\n", a + "\r\n" + b + "\r\n",
                                    mark + a + "\r\n" + b, "\n\r\n#\n" + a + "\n\n" + b + "\n\n"}) {
        PlaceTable const table = ReadPlaces(text);
        EXPECT_THAT(table.skipped, IsEmpty()) << text;
        ASSERT_EQ(table.places.size(), 2u) << text;
        EXPECT_EQ(table.places[0].name, "A");
        EXPECT_EQ(table.places[1].name, "B");
        EXPECT_EQ(table.places[1].comment, "Tucumán");
    }
    for (std::string const& text : {std::string(), mark, std::string("# only\n"), std::string("\r\n\n")}) {
        PlaceTable const table = ReadPlaces(text);
        EXPECT_THAT(table.places, IsEmpty()) << text;
        EXPECT_THAT(table.skipped, IsEmpty()) << text;
    }
    EXPECT_EQ(ReadPlaces("\xFF\xFE#\n").skipped.at(0).reason, "not in UTF-8");
}

// Reads the shipped table by other means and holds every place against it.
TEST(Places, ShippedTableReadsWhole) {
    std::string const text = Contents(shippedTable);
    PlaceTable const table = ReadPlaces(text);
    EXPECT_THAT(table.skipped, IsEmpty());

    std::istringstream lines(text);
    std::string line;
    std::size_t index = 0;
    while (std::getline(lines, line)) {
        if (line.starts_with('#')) continue;
        SCOPED_TRACE(line);
        ASSERT_LT(index, table.places.size());
        Place const& place = table.places[index++];
        char countries[64], coordinates[32], name[64];
        ASSERT_EQ(std::sscanf(line.c_str(), "%63s %31s %63s", countries, coordinates, name), 3);
        EXPECT_EQ(place.countries, countries);
        EXPECT_EQ(place.name, name);

        auto const written = [](double radians, int digits, bool seconds) {
            long const all = Seconds(radians);
            long const size = std::labs(all);
            char buffer[32];
            std::snprintf(buffer, sizeof buffer, seconds ? "%c%0*ld%02ld%02ld" : "%c%0*ld%02ld",
                          all < 0 ? '-' : '+', digits, size / 3600, size / 60 % 60, size % 60);
            return std::string(buffer);
        };
        bool const seconds = std::string(coordinates).size() > 11;
        EXPECT_EQ(written(place.latitude.GetDouble(), 2, seconds) +
                      written(place.longitude.GetDouble(), 3, seconds),
                  coordinates);
    }
    EXPECT_EQ(index, table.places.size());
    EXPECT_GT(index, 300u);
}

TEST(Places, DamagedTablesNeitherCrashNorGiveNonsense) {
    std::string const good = Contents(shippedTable).substr(0, 12000);
    std::mt19937 random(310);
    for (int round = 0; round < 300; ++round) {
        std::string text = good;
        for (int damage = 0; damage < 40; ++damage) {
            std::size_t const at = random() % text.size();
            switch (random() % 3) {
                case 0:
                    text[at] = static_cast<char>(random());
                    break;
                case 1:
                    text.erase(at, random() % 4);
                    break;
                default:
                    text.insert(at, 1, "+-\t\n\r0659#\xC3\0"[random() % 12]);
            }
        }
        PlaceTable const table = ReadPlaces(text);
        std::set<std::string> names;
        for (Place const& place : table.places) {
            ASSERT_TRUE(names.insert(place.name).second) << place.name;
            ASSERT_LE(std::fabs(place.latitude.GetDouble()), std::numbers::pi / 2);
            ASSERT_LE(std::fabs(place.longitude.GetDouble()), std::numbers::pi);
            ASSERT_TRUE(IsUtf8(place.name + place.comment));
        }
        std::size_t last = 0;
        for (SkippedLine const& line : table.skipped) {
            ASSERT_GT(line.number, last);
            ASSERT_TRUE(IsUtf8(line.reason)) << line.reason;
            last = line.number;
        }
    }
}

tov::CTovValueAngleLat Latitude(double degrees) {
    tov::CTovValueAngleLat value;
    value.ConvertToStd(degrees, tov::TOV_UNIT_DEGREES, -1, 0UL);
    return value;
}

tov::CTovValueAngleLon Longitude(double degrees) {
    tov::CTovValueAngleLon value;
    value.ConvertToStd(degrees, tov::TOV_UNIT_DEGREES, -1, 0UL);
    return value;
}

TEST(Sphere, KnownDistances) {
    constexpr double degree = std::numbers::pi / 180;
    struct Row {
        char const* what;
        double latitude1, longitude1, latitude2, longitude2;
        double angle;  // radians
        double tolerance;
    };
    Row const rows[] = {
        {"quarter meridian", 0, 20, 90, 20, std::numbers::pi / 2, 1e-15},
        {"quarter meridian, the pole has every longitude", 0, 20, 90, -77, std::numbers::pi / 2, 1e-15},
        {"pole to pole", 90, 0, -90, 123, std::numbers::pi, 1e-15},
        {"antipodes", 52.5, 13.4, -52.5, -166.6, std::numbers::pi, 1e-15},
        {"antipodes on the equator", 0, -90, 0, 90, std::numbers::pi, 1e-15},
        {"a degree of the equator across the date line", 0, 179.5, 0, -179.5, degree, 1e-15},
        {"a degree of the 60th parallel, nearly half", 60, 0, 60, 1, 2 * std::asin(std::sin(degree / 2) / 2),
         1e-15},
        {"a millimetre to the north", 45, 7, 45 + 1e-8, 7, 1e-8 * degree, 5e-16},
        {"a millimetre short of the antipodes", 45, 7, -45 + 1e-8, -173, std::numbers::pi - 1e-8 * degree,
         1e-15},
        // E. Williams, Aviation Formulary: Los Angeles to New York.
        {"LAX to JFK", 33 + 57 / 60.0, -(118 + 24 / 60.0), 40 + 38 / 60.0, -(73 + 47 / 60.0), 0.623585, 5e-7},
    };
    for (Row const& row : rows) {
        double const metres = GreatCircleDistance(Latitude(row.latitude1), Longitude(row.longitude1),
                                                  Latitude(row.latitude2), Longitude(row.longitude2));
        EXPECT_NEAR(metres, row.angle * 6371008.8, row.tolerance * 6371008.8) << row.what;
    }
    EXPECT_EQ(GreatCircleDistance(Latitude(-33.87), Longitude(151.2), Latitude(-33.87), Longitude(151.2)),
              0.0);
}

// The angle between two vectors in extended precision, by W. Kahan's form: 2 atan2(|a - b|, |a + b|).
double AngleBetweenVectors(double latitude1, double longitude1, double latitude2, double longitude2) {
    long double difference = 0, sum = 0;
    auto add = [&](long double a, long double b) {
        difference += (a - b) * (a - b);
        sum += (a + b) * (a + b);
    };
    long double const la1 = latitude1, lo1 = longitude1, la2 = latitude2, lo2 = longitude2;
    add(std::cos(la1) * std::cos(lo1), std::cos(la2) * std::cos(lo2));
    add(std::cos(la1) * std::sin(lo1), std::cos(la2) * std::sin(lo2));
    add(std::sin(la1), std::sin(la2));
    return static_cast<double>(2 * std::atan2(std::sqrt(difference), std::sqrt(sum)));
}

TEST(Sphere, AgreesWithVectors) {
    std::mt19937_64 random(6371);
    std::uniform_real_distribution<double> unit(-1, 1);
    constexpr double pi = std::numbers::pi;
    for (int i = 0; i < 100000; ++i) {
        double const la1 = unit(random) * pi / 2, lo1 = unit(random) * pi;
        double la2 = unit(random) * pi / 2, lo2 = unit(random) * pi;
        if (i % 3 != 0) {
            // Close to the place or to its antipodes, where other formulas fail.
            double const apart = std::pow(10.0, -1 - 7 * std::fabs(unit(random)));
            la2 = (i % 3 == 1 ? la1 : -la1) + unit(random) * apart;
            lo2 = (i % 3 == 1 ? lo1 : lo1 + pi) + unit(random) * apart;
        }
        double const expected = AngleBetweenVectors(la1, lo1, la2, lo2);
        double const tolerance = 1e-15 + expected * 4e-16;
        ASSERT_NEAR(CentralAngle(la1, lo1, la2, lo2), expected, tolerance)
            << la1 << ' ' << lo1 << ' ' << la2 << ' ' << lo2;
        ASSERT_NEAR(CentralAngle(la2, lo2, la1, lo1), expected, tolerance);
    }
}

TEST(Names, LookUp) {
    std::vector<Place> const places = ReadPlaces(Contents(shippedTable)).places;
    struct Row {
        char const* name;
        char const* place;
    };
    Row const found[] = {
        {"Europe/Berlin", "Europe/Berlin"},
        {"europe/BERLIN", "Europe/Berlin"},
        {"Berlin", "Europe/Berlin"},
        {"berl", "Europe/Berlin"},
        {"New York", "America/New_York"},
        {"new_york", "America/New_York"},
        {"Europe/Ber", "Europe/Berlin"},
        {"buenos aires", "America/Argentina/Buenos_Aires"},
        {"Argentina/Buenos", nullptr},
        {"America/Argentina/Buenos", "America/Argentina/Buenos_Aires"},
        {"atlantic/south", "Atlantic/South_Georgia"},
    };
    for (Row const& row : found) {
        Found const answer = FindPlace(places, row.name);
        if (row.place == nullptr) {
            EXPECT_EQ(answer.place, nullptr) << row.name;
            continue;
        }
        ASSERT_NE(answer.place, nullptr) << row.name;
        EXPECT_EQ(answer.place->name, row.place);
    }

    auto others = [&](char const* name, bool exact) {
        Found const answer = FindPlace(places, name);
        EXPECT_EQ(answer.place, nullptr) << name;
        EXPECT_EQ(answer.exact, exact) << name;
        std::vector<std::string> names;
        for (Place const* const place : answer.others)
            names.push_back(place->name);
        return names;
    };
    EXPECT_THAT(others("ber", true), ElementsAre("Atlantic/Bermuda", "Europe/Berlin"));
    EXPECT_EQ(others("Europe", true).size(), others("europe/", true).size());
    EXPECT_THAT(others("Berlni", false), ElementsAre("Europe/Berlin"));
    EXPECT_THAT(others("york", false), ElementsAre("America/New_York"));
    EXPECT_THAT(others("Shangai", false), ElementsAre("Asia/Shanghai"));
    EXPECT_THAT(others("Nowhere at all", false), IsEmpty());
    EXPECT_THAT(others("", false), IsEmpty());
}

// A name that is the beginning of another one is that place, and equal last parts are ambiguous.
TEST(Names, WholeNamesWinOverBeginnings) {
    std::vector<Place> const places = ReadPlaces(
                                          "A\t+0000+00000\tX/Ton\nA\t+0000+00001\tX/Tonga\n"
                                          "A\t+0000+00002\tY/Same\nA\t+0000+00003\tZ/Same\n")
                                          .places;
    ASSERT_EQ(places.size(), 4u);
    EXPECT_EQ(FindPlace(places, "ton").place, &places[0]);
    EXPECT_EQ(FindPlace(places, "x/ton").place, &places[0]);
    EXPECT_EQ(FindPlace(places, "tong").place, &places[1]);
    EXPECT_THAT(FindPlace(places, "same").others, ElementsAre(&places[2], &places[3]));
    EXPECT_EQ(FindPlace(places, "z/same").place, &places[3]);
}

TEST(Text, DisplayWidth) {
    EXPECT_EQ(DisplayWidth(""), 0u);
    EXPECT_EQ(DisplayWidth("52° 30' 00.0\" N"), 15u);
    EXPECT_EQ(DisplayWidth("52° 30' 00.0\" 北"), 16u);
    EXPECT_EQ(DisplayWidth("东西"), 4u);
    EXPECT_EQ(DisplayWidth("Tucumán"), 7u);
    EXPECT_EQ(DisplayWidth("Tucuma\xCC\x81n"), 7u);
    EXPECT_EQ(DisplayWidth("한글，Ａ"), 8u);
    EXPECT_EQ(DisplayWidth("\xF0\xA0\x80\x80"), 2u);
    EXPECT_EQ(DisplayWidth("\xFF\xE4\xB8"), 3u);
}

TEST(Table, DigitsStandBelowEachOther) {
    Table table({{"Place"}, {"Latitude", Table::Align::kNumber}, {"Remark"}});
    table.Add({"Berlin", "  52° 30' 00.0\" 北", "x"});
    table.Add({"Mawson", "   0° 36' 00.0\" S", "南极"});
    table.Add({"Tucumán", " ", "y"});
    table.Add({"上海", "31.5", ""});
    std::ostringstream text;
    table.Print(text);
    EXPECT_EQ(text.str(),
              "Place            Latitude  Remark\n"
              "Berlin   52° 30' 00.0\" 北  x\n"
              "Mawson    0° 36' 00.0\" S   南极\n"
              "Tucumán                    y\n"
              "上海             31.5\n");
}

TEST(Options, WrongCalls) {
    struct Row {
        std::vector<char const*> arguments;
        char const* message;
    };
    Row const rows[] = {
        {{"--nonsense"}, "there is no option \"--nonsense\""},
        {{"-x"}, "there is no option \"-x\""},
        {{"--\x1B[2J"}, "there is no option what was given"},
        {{"a.tab", "b.tab"}, "more than one file"},
        {{""}, "the name of the file is empty"},
        {{"--unit"}, "--unit needs a value"},
        {{"--unit", "furlong"},
         "--unit: no unit is called \"furlong\"; there are dec, dms, deg, grad, gonc, gon, rev, rad"},
        {{"--unit=m"}, "--unit: no unit is called \"m\"; there are dec, dms, deg, grad, gonc, gon, rev, rad"},
        {{"--distance-unit", "dms"}, "--distance-unit: no unit is called \"dms\"; there are m, fts, fti"},
        {{"--precision", "0"}, "--precision: a number from 1 to 12, not \"0\""},
        {{"--precision", "13"}, "--precision: a number from 1 to 12, not \"13\""},
        {{"--precision", "3x"}, "--precision: a number from 1 to 12, not \"3x\""},
        {{"--precision="}, "--precision: a number from 1 to 12, not \"\""},
        {{"--precision", "99999999999"}, "--precision: a number from 1 to 12, not \"99999999999\""},
        {{"--format", "a\nb"}, "--format: control characters and line ends are not allowed"},
        {{"--format", "\xE9"}, "--format: the text is not in UTF-8"},
        {{"--from", "Berlin"}, "--from and --to belong together"},
        {{"--to", "Berlin"}, "--from and --to belong together"},
        {{"--from="}, "--from needs a value"},
        {{"--lang", "../en"}, "--lang: a language such as en or zh_CN, not \"../en\""},
        {{"--all=yes"}, "--all takes no value"},
        {{"--profile", ""}, "--profile needs a value"},
    };
    for (Row const& row : rows) {
        try {
            ReadOptions(row.arguments);
            ADD_FAILURE() << row.message;
        } catch (UsageError const& error) {
            EXPECT_STREQ(error.what(), row.message);
        }
    }
    std::string const format(1001, 'x');
    EXPECT_THROW(ReadOptions(std::vector{"--format", format.c_str()}), UsageError);
}

TEST(Options, Values) {
    Options const options = ReadOptions(std::vector{"--unit=GRAD", "--distance-unit", "23", "--format", "",
                                                    "--precision", "12", "--", "--odd name.tab"});
    EXPECT_EQ(options.choice.unit->id, tov::TOV_UNIT_GRADS);
    EXPECT_EQ(options.choice.distanceUnit->id, tov::TOV_UNIT_INTERNATIONAL_FEET);
    EXPECT_EQ(options.choice.format, "");
    EXPECT_EQ(options.choice.decimals, 12);
    EXPECT_EQ(options.file, "--odd name.tab");
    EXPECT_FALSE(ReadOptions({}).choice.format.has_value());

    // Every unit of the library has a name, and each is found by name and by id.
    auto check = [](int const* ids, std::span<Unit const> units) {
        std::size_t count = 0;
        for (; *ids != -1; ++ids, ++count) {
            Unit const* const unit = FindUnit(units, static_cast<long>(*ids));
            ASSERT_NE(unit, nullptr) << *ids;
            EXPECT_EQ(FindUnit(units, unit->name), unit);
            EXPECT_EQ(FindUnit(units, std::to_string(*ids)), unit);
        }
        EXPECT_EQ(count, units.size());
    };
    check(tov::CTovUnitSettingsAngle::Units(), AngleUnits());
    check(tov::CTovUnitSettingsDistance::Units(), DistanceUnits());
}

// The program itself, in a home of its own.
class Program : public testing::Test {
 protected:
    struct Answer {
        int code;
        std::string out;
        std::string complaints;
    };

    Answer Run(std::vector<std::string> const& arguments) const { return RunOther(m_program, arguments); }

    Answer RunOther(std::string const& program, std::vector<std::string> const& arguments) const {
        std::string command = "XDG_CONFIG_HOME=" + Quoted(m_folder.path().string()) + " " + Quoted(program);
        for (std::string const& argument : arguments)
            command.append(" ").append(Quoted(argument));
        std::string const out = m_folder.File("out"), complaints = m_folder.File("complaints");
        int const status = std::system((command + " > " + Quoted(out) + " 2> " + Quoted(complaints)).c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, Contents(out), Contents(complaints)};
    }

    static std::string Quoted(std::string const& text) {
        std::string quoted = "'";
        for (char const c : text) {
            if (c == '\'') quoted += "'\\'";
            quoted += c;
        }
        return quoted + "'";
    }

    std::string const m_program = SURVEY_PROGRAM;
    tov::test::TemporaryFolder m_folder;
};

TEST_F(Program, WithoutArgumentsShowsSomethingWorthSeeing) {
    Answer const answer = Run({});
    EXPECT_EQ(answer.code, 0);
    EXPECT_EQ(answer.complaints, "");
    EXPECT_THAT(answer.out,
                HasSubstr("Europe/Berlin      52° 30' 00.0\" 北   13° 22' 00.0\" 东  most of Germany\n"));
    EXPECT_THAT(answer.out, HasSubstr("Australia/Sydney   33° 52' 00.0\" S   151° 13' 00.0\" 东"));
    EXPECT_THAT(answer.out, HasSubstr("From Europe/London to Asia/Shanghai"));
    EXPECT_THAT(answer.out, AllOf(HasSubstr("  m, metres"), HasSubstr("  fts, US"), HasSubstr("  fti, int")));
    EXPECT_THAT(answer.out, HasSubstr("--all"));
    EXPECT_THAT(answer.out, HasSubstr("Remembered in " + m_folder.File("Survey.ini") +
                                      ": unit dms, precision 1, no format, distance unit m."));
}

TEST_F(Program, AllPlaces) {
    std::string const text = Run({"--all"}).out;
    for (Place const& place : ReadPlaces(Contents(shippedTable)).places)
        EXPECT_THAT(text, HasSubstr("\n" + place.name + " "));
}

TEST_F(Program, DistancesInAllUnits) {
    Write(m_folder.File("two.tab"), "A\t+0000+00000\tX/Here\nA\t+0000+00100\tX/There\n");
    Answer const answer =
        Run({m_folder.File("two.tab"), "--from", "here", "--to", "THERE", "--distance-unit", "fts"});
    EXPECT_EQ(answer.code, 0);
    // A degree of the sphere is 111195.0802 m.
    EXPECT_THAT(answer.out, HasSubstr("364812.5  fts, US survey feet, 1200/3937 m\n"
                                      "111195.1  m, metres\n"
                                      "364813.3  fti, international feet, 0.3048 m\n"));
}

TEST_F(Program, RemembersUnitFormatAndPrecision) {
    std::string const profile = m_folder.File("Survey.ini");
    EXPECT_THAT(Run({"--unit", "grad", "--precision", "3", "--distance-unit", "fti"}).out,
                HasSubstr("58.333 北"));
    EXPECT_THAT(Contents(profile), AllOf(HasSubstr("UnitAngle Format (###)=14"),
                                         HasSubstr("UnitDistance Format (###)=23"), HasSubstr("[Survey]")));
    Answer again = Run({});
    EXPECT_THAT(again.out, HasSubstr("58.333 北"));
    EXPECT_THAT(again.out, HasSubstr("unit grad, precision 3, no format, distance unit fti."));

    // Each unit has a format of its own; blanks and quotes in it stay.
    EXPECT_THAT(Run({"--unit", "dms", "--format", "  \"%Q\" %degOrG%minOrC%secOrCC "}).out,
                HasSubstr("\"北\"   52°30' 0.0\""));
    again = Run({});
    EXPECT_THAT(again.out, HasSubstr("\"北\"   52°30' 0.0\""));
    EXPECT_THAT(again.out, HasSubstr("format \"  \"%Q\" %degOrG%minOrC%secOrCC \""));
    EXPECT_THAT(Run({"--unit", "grad"}).out, HasSubstr("58.333 北"));
    EXPECT_THAT(Run({"--unit", "12", "--format", ""}).out, HasSubstr("no format"));
    EXPECT_THAT(Run({}).out, AllOf(HasSubstr("52° 30' 00.0\" 北"), HasSubstr("no format")));

    EXPECT_THAT(Run({"--reset"}).out, HasSubstr("unit dms, precision 1, no format, distance unit m."));
    EXPECT_THAT(Contents(profile), Not(HasSubstr("Survey")));
    EXPECT_THAT(Run({"--unit", "grad"}).out, HasSubstr("58.33333 北"));
}

TEST_F(Program, ProfileElsewhere) {
    std::string const file = m_folder.File("elsewhere.ini");
    EXPECT_THAT(Run({"--profile", file, "--unit", "rad"}).out,
                HasSubstr("Remembered in " + file + ": unit rad"));
    EXPECT_THAT(Run({"--profile", "Acme\\Survey", "--unit", "rev", "--format", " %.2f %Q"}).out,
                HasSubstr("Remembered in the registry branch Acme\\Survey: unit rev"));
    EXPECT_THAT(Run({}).out, HasSubstr("unit dms"));
    EXPECT_THAT(Run({"--profile", file}).out, HasSubstr("unit rad"));
    EXPECT_THAT(Run({"--profile", "Acme\\Survey"}).out,
                HasSubstr("unit rev, precision 7, format \" %.2f %Q\""));

    Answer const answer = Run({"--profile", "/dev/null/no.ini", "--unit", "dec"});
    EXPECT_EQ(answer.code, 0);
    EXPECT_THAT(answer.out, AllOf(HasSubstr("Not remembered"), HasSubstr("52.50000 北")));
}

TEST_F(Program, SpoiledProfileDoesNoHarm) {
    Write(m_folder.File("Survey.ini"),
          "[CTovUnitSettingsAngleLatLon]\nUnitAngle Format (###)=99\n[CTovUnitSettingsDistance]\n"
          "UnitDistance Format (###)=12\n[Survey]\nFormat (dms)=<\x1B[2J%Q>\nPrecision (dms)=-7\n");
    Answer const answer = Run({});
    EXPECT_EQ(answer.code, 0);
    EXPECT_THAT(answer.out, HasSubstr("unit dms, precision 1, no format, distance unit m."));
}

TEST_F(Program, English) {
    Answer const answer = Run({"--lang", "en"});
    EXPECT_EQ(answer.code, 0);
    EXPECT_THAT(answer.out, HasSubstr("52° 30' 00.0\" N   13° 22' 00.0\" E  most of Germany"));
    EXPECT_THAT(Run({"--lang", "zh_CN"}).out, HasSubstr("52° 30' 00.0\" 北"));
    EXPECT_THAT(Run({"--lang", "en", "nowhere.tab"}).complaints,
                HasSubstr("nowhere.tab: The requested file or directory could not be found."));
    Answer const unknown = Run({"--lang", "tlh"});
    EXPECT_EQ(unknown.code, 2);
    EXPECT_THAT(unknown.complaints, HasSubstr("there are no texts in the language tlh\n"));
}

TEST_F(Program, HelpShowsEveryUnitWithAnExample) {
    Answer const answer = Run({"--help", "--lang", "en"});
    EXPECT_EQ(answer.code, 0);
    for (char const* const line : {"dec   11", "dms   12", "deg   13", "grad  14", "gonc  15", "gon   16",
                                   "rev   17", "rad   18", "m     21", "fts   22", "fti   23", "52.51889 N\n",
                                   "52° 31' 08.0\" N\n", "52.31080 N\n", "58g 35c 43.2cc N\n", "1000.0\n"})
        EXPECT_THAT(answer.out, HasSubstr(line));
    EXPECT_FALSE(std::filesystem::exists(m_folder.File("Survey.ini")));
}

TEST_F(Program, ExitCodes) {
    std::string const good = "A\t+0000+00000\tX/Here\n";
    auto file = [&](char const* name, std::string const& bytes) {
        Write(m_folder.File(name), bytes);
        return m_folder.File(name);
    };
    struct Row {
        std::vector<std::string> arguments;
        int code;
        std::string complaint;
    };
    Row const rows[] = {
        {{file("good", good)}, 0, ""},
        {{file("bad", good + "\nnonsense\nB\t+9100+00000\tX/There\n")},
         1,
         "line 3: no tab between columns\nline 4: the latitude is above 90 degrees\n"},
        {{file("worse", "nonsense")}, 1, "line 1: no tab between columns\n"},
        {{file("empty", "")}, 3, "no place in it"},
        {{m_folder.File("missing")}, 3, "survey: " + m_folder.File("missing") + ": "},
        {{m_folder.path().string()}, 3, "is a folder, not a file"},
        {{"/dev/zero"}, 3, "is larger than any table"},
        {{"--sideways"}, 2, "survey: there is no option \"--sideways\"\n"},
        {{"--from", "ber", "--to", "paris"},
         2,
         "survey: \"ber\" is more than one place: Atlantic/Bermuda, Europe/Berlin\n"},
        {{"--from", "berlni", "--to", "paris"},
         2,
         "survey: \"berlni\" is no place here; did you mean Europe/Berlin?\n"},
    };
    for (Row const& row : rows) {
        std::string const first = row.arguments.front();
        Answer const answer = Run(row.arguments);
        EXPECT_EQ(answer.code, row.code) << first;
        if (row.complaint.empty()) {
            EXPECT_EQ(answer.complaints, "") << first;
        } else {
            EXPECT_THAT(answer.complaints, HasSubstr(row.complaint)) << first;
        }
    }
    EXPECT_THAT(Run({m_folder.File("bad")}).out, HasSubstr("X/Here"));
    Answer const full = RunOther("/bin/sh", {"-c", "exec " + Quoted(m_program) + " > /dev/full"});
    EXPECT_EQ(full.code, 3);
    EXPECT_THAT(full.complaints, HasSubstr("the output cannot be written"));
}

TEST_F(Program, FormatsOfAnyKindAreHarmless) {
    for (char const* const unit : {"dec", "dms", "rad"}) {
        for (char const* const format :
             {"%s%n", "%n%n%n%n", "%", "%%", "%s%s%s%s%s", "%1$n", "%*d", "%99999f", "%.99999f", "%Q%Q%Q",
              "%[%]%?", "%L%q%Z", "%U%U", "%\xE5\x8C\x97", "%999999999999999999999f"}) {
            Answer const answer = Run({"--unit", unit, "--format", format});
            EXPECT_EQ(answer.code, 0) << unit << ' ' << format;
            EXPECT_THAT(answer.out, StartsWith("Place")) << unit << ' ' << format;
        }
    }
    Answer const answer = Run({"--unit", "dec", "--format", "%s%n"});
    EXPECT_THAT(answer.out, HasSubstr("  %s%n"));
    EXPECT_THAT(answer.complaints, HasSubstr("the format prints no number in this unit"));
}

// Program and files in the places where they are installed, wherever that is.
TEST_F(Program, FindsItsFilesWhereTheyAreInstalled) {
    namespace fs = std::filesystem;
    fs::path const prefix = m_folder.path() / "in stalled";
    fs::create_directories(prefix / "bin");
    fs::copy_file(m_program, prefix / "bin/survey");
    std::string const installed = (prefix / "bin/survey").string();

    Answer const bare = RunOther(installed, {"--lang", "zh_CN"});
    EXPECT_EQ(bare.code, 3);
    EXPECT_THAT(bare.complaints, HasSubstr(prefix.string()));

    fs::create_directories(prefix / "share/tov310/examples/survey/data");
    fs::copy_file(shippedTable, prefix / "share/tov310/examples/survey/data/zone1970.tab");
    fs::create_directories(prefix / "share/tov310/res/en");
    fs::copy_file(TOV_TEST_SOURCE_DIR "/res/en/strings.json", prefix / "share/tov310/res/en/strings.json");
    Answer const whole = RunOther(installed, {"--lang", "en"});
    EXPECT_EQ(whole.code, 0) << whole.complaints;
    EXPECT_THAT(whole.out, HasSubstr("52° 30' 00.0\" N"));
}

}  // namespace
}  // namespace survey
