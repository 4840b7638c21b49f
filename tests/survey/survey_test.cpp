// The sample host: its parts, and the program itself as a user starts it.
#include "names.h"
#include "places.h"
#include "sphere.h"
#include "support/files.h"
#include "support/temporary_folder.h"
#include "table.h"
#include "text.h"

#include <tov310/unit_settings.h>

#include <gmock/gmock.h>
#include <sys/wait.h>

#include <cmath>
#include <numbers>
#include <random>
#include <set>
#include <sstream>

namespace survey {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using tov::test::GetFile;
using tov::test::PutFile;

constexpr char const* shippedTable = TOV_TEST_SOURCE_DIR "/examples/survey/data/zone1970.tab";
constexpr double pi = std::numbers::pi;

// The coordinates of a place as tables write them, rounded to whole seconds.
std::string Written(Place const& place, bool seconds) {
    auto const one = [&](double radians, int digits) {
        long const all = std::lround(radians * 648000 / pi), size = std::labs(all);
        EXPECT_NEAR(radians * 648000 / pi, static_cast<double>(all), 1e-9);
        char text[32];
        std::snprintf(text, sizeof text, seconds ? "%c%0*ld%02ld%02ld" : "%c%0*ld%02ld", all < 0 ? '-' : '+',
                      digits, size / 3600, size / 60 % 60, size % 60);
        return std::string(text);
    };
    return one(place.latitude.GetDouble(), 2) + one(place.longitude.GetDouble(), 3);
}

// Reads the shipped table, and some places at the bounds, by other means and holds every place against it.
TEST(Places, GoodTablesReadWhole) {
    std::string const text = GetFile(shippedTable) +
                             "XX\t-720041+0023206\tA/1\tremark\tmore\nXX\t-0030+00000\tA/2\tremark\n"
                             "XX\t-000001+0000001\tA/3\nXX\t+9000+18000\tA/4\nXX\t-900000-1800000\tA/5\n"
                             "XX\t+895959+1795959\tA/6\n";
    PlaceTable const table = ReadPlaces(text);
    EXPECT_TRUE(table.skipped.empty());
    std::istringstream lines(text);
    std::size_t index = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with('#')) continue;
        ASSERT_LT(index, table.places.size());
        Place const& place = table.places[index++];
        std::istringstream columns(line);
        std::string countries, coordinates, name, comment;
        columns >> countries >> coordinates >> name;
        std::getline(columns.ignore(1), comment, '\t');
        EXPECT_EQ(place.countries + ' ' + place.name + ' ' + place.comment,
                  countries + ' ' + name + ' ' + comment);
        EXPECT_EQ(Written(place, coordinates.size() > 11), coordinates) << name;
    }
    EXPECT_EQ(index, table.places.size());
    EXPECT_GT(index, 300u);
}

TEST(Places, BadLinesAndTheirReasons) {
    std::string const digits = " digits, not DDMM or DDMMSS", control = "a control character";
    std::string const mark = "\xEF\xBB\xBF";
    std::pair<std::string, std::string> const rows[] = {
        // clang-format off
        {"DE +5230+01322 Europe/Berlin", "no tab between columns"}, {"DE\t\tEurope/Berlin", "no latitude"},
        {"DE\t5230+01322\tE/B", "the latitude does not begin with + or -"}, {"DE\t+5230\tE/B", "no longitude"},
        {"DE\t+523001322\tE/B", "the latitude has 9" + digits}, {"DE\t+\tE/B", "the latitude has 0" + digits},
        {"DE\t+5230+1322\tE/B", "the longitude has 4 digits, not DDDMM or DDDMMSS"},
        {"DE\t+5230+013220000000000000000000\tE/B", "the longitude has 24 digits, not DDDMM or DDDMMSS"},
        {"DE\t+5230.5+01322\tE/B", "the longitude does not begin with + or -"},
        {"DE\t+5230+01322+100\tE/B", "\"+100\" behind the coordinates"},
        {"DE\t+523000+01322\tE/B", "only one of latitude and longitude has seconds"},
        {"DE\t+5260+01322\tE/B", "the minutes of the latitude are above 59"},
        {"DE\t+523000+0132299\tE/B", "the seconds of the longitude are above 59"},
        {"DE\t-900001+0132200\tE/B", "the latitude is above 90 degrees"},
        {"DE\t+5230+18001\tE/B", "the longitude is above 180 degrees"},
        {"DE\t+5230+01322", "no name"}, {"DE\t+5230+01322\t\tcomment", "no name"},
        {"DE\t+5230+01322\tTucum\xE1n", "not in UTF-8"}, {"DE\t+5230+01322\tE/B\t\xC0\xAF", "not in UTF-8"},
        {"DE\t+5230+01322\tE/B\t\xE0\x9F\xBF", "not in UTF-8"},
        {"DE\t+5230+01322\tE/B\t\xED\xA0\x80", "not in UTF-8"}, {"DE\t+5230+01322\tE\t\xF4\x90\x80\x80", "not in UTF-8"},
        {"DE\t+5230+01322\tE/B\x1B[2J", control}, {"DE\t+5230+01322\tE/B\xC2\x9B", control},
        {"DE\t+5230+01322\rDE\t+5230+01322\tE/B", control}, {{"DE\t+5230+01322\tE\0B", 19}, control},
        {"US\t+4000-07400\tFirst/Place", "First/Place stands in line 1"},
        // clang-format on
    };
    for (auto const& [line, reason] : rows) {
        // What stands around a bad line counts, and the number is that of the line.
        PlaceTable const table = ReadPlaces(mark + "AA\t+0000+00000\tFirst/Place\n\r\n" + line +
                                            "\nAA\t+0001+00001\tLast/Place\tTucumán\r\n");
        ASSERT_EQ(table.skipped.size(), 1u) << line;
        EXPECT_EQ(table.skipped[0].number, 3u) << line;
        EXPECT_EQ(table.skipped[0].reason, reason);
        ASSERT_EQ(table.places.size(), 2u) << line;
        EXPECT_EQ(table.places[1].name + table.places[1].comment, "Last/PlaceTucumán");
    }
    for (char const* empty : {"", mark.c_str(), "# only\n", "\r\n\n"})
        EXPECT_TRUE(ReadPlaces(empty).places.empty() && ReadPlaces(empty).skipped.empty()) << empty;
}

TEST(Places, DamagedTablesNeitherCrashNorGiveNonsense) {
    std::string const good = GetFile(shippedTable).substr(0, 12000);
    std::mt19937 random(310);
    for (int round = 0; round < 300; ++round) {
        std::string text = good;
        for (int damage = 0; damage < 40; ++damage) {
            char const some = "+-\t\n\r0659#\xC3\0"[random() % 12];
            text.replace(random() % text.size(), random() % 4, random() % 3, some);
        }
        PlaceTable const table = ReadPlaces(text);
        std::set<std::string> names;
        for (Place const& place : table.places) {
            ASSERT_TRUE(names.insert(place.name).second) << place.name;
            ASSERT_LE(std::fabs(place.latitude.GetDouble()), pi / 2);
            ASSERT_LE(std::fabs(place.longitude.GetDouble()), pi);
            ASSERT_TRUE(IsUtf8(place.name + place.comment));
        }
        for (std::size_t last = 0; SkippedLine const& line : table.skipped) {
            ASSERT_GT(line.number, std::exchange(last, line.number));
            ASSERT_TRUE(IsUtf8(line.reason)) << line.reason;
        }
    }
}

// The angle between two vectors in extended precision, by W. Kahan's form: 2 atan2(|a - b|, |a + b|).
double AngleBetweenVectors(long double la1, long double lo1, long double la2, long double lo2) {
    long double difference = 0, sum = 0;
    auto add = [&](long double a, long double b) {
        difference += (a - b) * (a - b);
        sum += (a + b) * (a + b);
    };
    add(std::cos(la1) * std::cos(lo1), std::cos(la2) * std::cos(lo2));
    add(std::cos(la1) * std::sin(lo1), std::cos(la2) * std::sin(lo2));
    add(std::sin(la1), std::sin(la2));
    return static_cast<double>(2 * std::atan2(std::sqrt(difference), std::sqrt(sum)));
}

TEST(Sphere, AgreesWithVectors) {
    std::mt19937_64 random(6371);
    std::uniform_real_distribution<double> unit(-1, 1);
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
        ASSERT_NEAR(CentralAngle(la1, lo1, la2, lo2), expected, 1e-15 + expected * 4e-16)
            << la1 << ' ' << lo1 << ' ' << la2 << ' ' << lo2;
    }
    EXPECT_EQ(CentralAngle(-0.6, 2.6, -0.6, 2.6), 0.0);
}

// A name that is the beginning of another one is that place, and equal last parts are ambiguous.
TEST(Names, LookUp) {
    std::vector<Place> const places = ReadPlaces(GetFile(shippedTable) +
                                                 "A\t+0000+00000\tX/Ton\nA\t+0000+00001\tX/Tonga\n"
                                                 "A\t+0000+00002\tY/Same\nA\t+0000+00003\tZ/Same\n")
                                          .places;
    std::pair<char const*, std::string> const rows[] = {
        // clang-format off
        {"europe/BERLIN", "Europe/Berlin"}, {"berl", "Europe/Berlin"}, {"Europe/Ber", "Europe/Berlin"},
        {"New York", "America/New_York"},   {"x/ton", "X/Ton"},        {"ton", "X/Ton"},
        {"x/tong", "X/Tonga"},              {"z/same", "Z/Same"},      {"same", "of: Y/Same Z/Same"},
        {"ber", "of: Atlantic/Bermuda Europe/Berlin"}, {"America/Argentina/Buenos", "America/Argentina/Buenos_Aires"},
        {"Berlni", "like: Europe/Berlin"},  {"york", "like: America/New_York"}, {"Nowhere at all", "like:"}, {"", "like:"},
        // clang-format on
    };
    for (auto const& [name, expected] : rows) {
        Found const found = FindPlace(places, name);
        std::string text = found.place != nullptr ? found.place->name : found.exact ? "of:" : "like:";
        for (Place const* const other : found.others)
            text += ' ' + other->name;
        EXPECT_EQ(text, expected) << name;
    }
}

TEST(Table, DigitsStandBelowEachOther) {
    Table table({{"Place"}, {"Latitude", Table::Align::kNumber}, {"Remark"}});
    table.Add({"Berlin", "  52° 30' 00.0\" 北", "x"});
    table.Add({"Mawson", "   0° 36' 00.0\" S", "南极"});
    table.Add({"Tucuma\xCC\x81n", " ", "y"});
    table.Add({"上海\xF0\xA0\x80\x80", "31.5", ""});
    table.Add({"\xFF\xE4\xB8", "1", "z"});
    std::ostringstream text;
    table.Print(text);
    EXPECT_EQ(text.str(),
              "Place            Latitude  Remark\n"
              "Berlin   52° 30' 00.0\" 北  x\n"
              "Mawson    0° 36' 00.0\" S   南极\n"
              "Tucuma\xCC\x81n                    y\n"
              "上海\xF0\xA0\x80\x80           31.5\n"
              "\xFF\xE4\xB8                 1      z\n");
}

// The program itself, in a home of its own.
class Program : public testing::Test {
 protected:
    struct Answer {
        int code;
        std::string out, complaints;
    };

    Answer Run(std::vector<std::string> const& arguments, std::string const& program = SURVEY_PROGRAM) const {
        std::string command = "env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM XDG_CONFIG_HOME=" +
                              Quoted(m_folder.path()) + " " + Quoted(program);
        for (std::string const& argument : arguments)
            command.append(" ").append(Quoted(argument));
        std::string const out = m_folder.File("out"), complaints = m_folder.File("complaints");
        int const status = std::system((command + " > " + Quoted(out) + " 2> " + Quoted(complaints)).c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, GetFile(out), GetFile(complaints)};
    }
    // Runs well and prints these texts.
    void Shows(std::vector<std::string> const& arguments, std::vector<std::string> const& texts) const {
        Answer const answer = Run(arguments);
        EXPECT_EQ(answer.code, 0) << answer.complaints;
        for (std::string const& text : texts)
            EXPECT_THAT(answer.out, HasSubstr(text));
    }

    static std::string Quoted(std::string const& text) {
        std::string quoted = "'";
        for (char const c : text)
            quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
        return quoted + "'";
    }

    tov::test::TemporaryFolder const m_folder;
    std::string const m_profile = m_folder.File("Survey.ini");
};

TEST_F(Program, ShowsPlacesAndDistances) {
    Shows({}, {"Europe/Berlin      52° 30' 00.0\" 北   13° 22' 00.0\" 东  most of Germany\n", "--all",
               "Australia/Sydney   33° 52' 00.0\" S   151° 13' 00.0\" 东",
               "From Europe/London to Asia/Shanghai"});
    std::vector<std::string> names;
    for (Place const& place : ReadPlaces(GetFile(shippedTable)).places)
        names.push_back("\n" + place.name + " ");
    Shows({"--all"}, names);
    std::string const two = m_folder.File("two.tab");
    PutFile(two, "A\t+0000+00000\tX/Here\nA\t+0000+00100\tX/There\n");
    Shows({two, "--from", "here", "--to", "THERE", "--distance-unit", "fts"},  // a degree is 111195.0802 m
          {"364812.5  fts, US survey feet, 1200/3937 m\n111195.1  m, metres\n364813.3  fti, "});
    fs::remove(m_profile);
    Shows({"--help", "--lang", "en"},
          {"dec   11", "dms   12", "deg   13", "grad  14", "gonc  15", "gon   16", "rev   17", "rad   18",
           "m     21", "fts   22", "fti   23", "52.51889 N\n", "52° 31' 08.0\" N\n", "58g 35c 43.2cc N\n",
           "1000.0\n"});
    EXPECT_FALSE(fs::exists(m_profile));
    Shows({"--lang", "en"}, {"52° 30' 00.0\" N   13° 22' 00.0\" E  most of Germany"});
}

TEST_F(Program, RemembersUnitFormatAndPrecision) {
    std::string const usual = ": unit dms, precision 1, no format, distance unit m.";
    Shows({}, {"Remembered in " + m_profile + usual});
    Shows({"--unit", "grad", "--precision", "3", "--distance-unit", "fti"}, {"58.333 北"});
    EXPECT_THAT(GetFile(m_profile), HasSubstr("UnitAngle Format (###)=14"));
    Shows({}, {"58.333 北", "unit grad, precision 3, no format, distance unit fti."});
    // Each unit has a format of its own; blanks and quotes in it stay.
    Shows({"--unit", "dms", "--format", "  \"%Q\" %degOrG%minOrC%secOrCC "}, {});
    Shows({}, {"\"北\"   52°30' 0.0\"", "format \"  \"%Q\" %degOrG%minOrC%secOrCC \""});
    Shows({"--unit", "GRAD"}, {"58.333 北"});
    Shows({"--unit=12", "--format", ""}, {});
    Shows({}, {"52° 30' 00.0\" 北", "no format"});
    Shows({"--reset"}, {usual});
    EXPECT_THAT(GetFile(m_profile), testing::Not(HasSubstr("Survey")));
    Shows({"--unit", "grad"}, {"58.33333 北"});
    // What others wrote there does no harm.
    PutFile(m_profile,
            "[CTovUnitSettingsAngleLatLon]\nUnitAngle Format (###)=99\n[CTovUnitSettingsDistance]\n"
            "UnitDistance Format (###)=12\n[Survey]\nFormat (dms)=<\x1B[2J%Q>\nPrecision (dms)=-7\n");
    Shows({}, {usual});

    std::string const file = m_folder.File("elsewhere.ini"), branch = "Acme\\Survey";
    Shows({"--profile", file, "--unit=rad"}, {});
    Shows({"--profile", branch, "--unit=rev", "--format= %.2f %Q"},
          {"in the registry branch Acme\\Survey: unit rev"});
    Shows({}, {usual});
    Shows({"--profile", file}, {file + ": unit rad"});
    Shows({"--profile", branch}, {"unit rev, precision 7, format \" %.2f %Q\""});
    Shows({"--profile", "/dev/null/no.ini", "--unit=dec", "--precision=12"},
          {"Not remembered", "52.500000000000 北"});
}

TEST_F(Program, ExitCodesAndComplaints) {
    std::string const good = m_folder.File("good"), bad = m_folder.File("bad"),
                      empty = m_folder.File("empty");
    PutFile(good, "A\t+0000+00000\tX/Here\n");
    PutFile(bad, GetFile(good) + "\nnonsense\nB\t+9100+00000\tX/There\n");
    PutFile(empty, "");
    std::string const precision = "--precision: a number from 1 to 12, not \"";
    std::tuple<std::vector<std::string>, int, std::string> const rows[] = {
        // clang-format off
        {{good}, 0, ""}, {{bad}, 1, "line 3: no tab between columns\nline 4: the latitude is above 90 degrees\n"},
        {{empty}, 3, "no place in it"}, {{m_folder.path()}, 3, "is a folder, not a file"},
        {{"/dev/zero"}, 3, "is larger than any table"}, {{"--", "--odd name.tab"}, 3, "--odd name.tab: "},
        {{"--lang", "en", "no.tab"}, 3, "survey: no.tab: The requested file or directory could not be found."},
        {{"--sideways"}, 2, "survey: there is no option \"--sideways\"\n"}, {{"-x"}, 2, "there is no option \"-x\"\n"},
        {{"--\x1B[2J"}, 2, "there is no option what was given\n"}, {{"--all=yes"}, 2, "--all takes no value\n"},
        {{"a.tab", "b.tab"}, 2, "more than one file\n"}, {{""}, 2, "the name of the file is empty\n"},
        {{"--unit"}, 2, "--unit needs a value\n"},   {{"--from="}, 2, "--from needs a value\n"},
        {{"--unit=m"}, 2, "--unit: no unit is called \"m\"; there are dec, dms, deg, grad, gonc, gon, rev, rad\n"},
        {{"--precision", "0"}, 2, precision + "0\"\n"}, {{"--precision", "13"}, 2, precision + "13\"\n"},
        {{"--precision", "3x"}, 2, precision + "3x\"\n"}, {{"--precision", "99999999999"}, 2, precision + "99999999999\"\n"},
        {{"--format", "a\nb"}, 2, "--format: control characters and line ends are not allowed\n"},
        {{"--format", "\xE9"}, 2, "--format: the text is not in UTF-8\n"},
        {{"--format", std::string(1001, 'x')}, 2, "--format: longer than 1000 bytes\n"},
        {{"--to", "Berlin"}, 2, "--from and --to belong together\n"},
        {{"--lang", "../en"}, 2, "--lang: a language such as en or zh_CN, not \"../en\"\n"},
        {{"--lang", "tlh"}, 2, "there are no texts in the language tlh\n"},
        {{"--from=ber", "--to=paris"}, 2, "survey: \"ber\" is more than one place: Atlantic/Bermuda, Europe/Berlin\n"},
        {{"--from=berlni", "--to=paris"}, 2, "survey: \"berlni\" is no place here; did you mean Europe/Berlin?\n"},
        // clang-format on
    };
    for (auto const& [arguments, code, complaint] : rows) {
        Answer const answer = Run(arguments);
        EXPECT_EQ(answer.code, code) << arguments.back();
        EXPECT_THAT(answer.complaints, HasSubstr(complaint));
        EXPECT_EQ(answer.complaints.empty(), code == 0) << answer.complaints;
    }
    EXPECT_THAT(Run({bad}).out, HasSubstr("X/Here"));
    Answer const full = Run({"-c", "exec " + Quoted(SURVEY_PROGRAM) + " > /dev/full"}, "/bin/sh");
    EXPECT_EQ(full.code, 3);
    EXPECT_THAT(full.complaints, HasSubstr("the output cannot be written"));
}

TEST_F(Program, FormatsOfAnyKindAreHarmless) {
    for (char const* const format :
         {"%n%n%n%n%n", "%", "%s%s%s%s%s", "%1$n", "%*d", "%.99999f", "%Q%Q%Q", "%[%]%?", "%L%q%Z", "%U%U",
          "%\xE5\x8C\x97", "%999999999999999999999f"}) {
        for (char const* const unit : {"dec", "dms"})
            Shows({"--unit", unit, "--format", format}, {"Place"});
    }
    Answer const answer = Run({"--unit", "dec", "--format", "%s%n"});
    EXPECT_THAT(answer.out, HasSubstr("  %s%n"));
    EXPECT_THAT(answer.complaints, HasSubstr("the format prints no number in this unit"));
}

// Program and files in the places where they are installed, wherever that is.
TEST_F(Program, FindsItsFilesWhereTheyAreInstalled) {
    fs::path const prefix = m_folder.path() / "in stalled", share = prefix / "share/tov310";
    auto const install = [](fs::path const& from, fs::path const& to) {
        fs::create_directories(to.parent_path());
        fs::copy_file(from, to);
    };
    install(SURVEY_PROGRAM, prefix / "bin/survey");
    Answer const bare = Run({"--lang", "zh_CN"}, prefix / "bin/survey");
    EXPECT_EQ(bare.code, 3);
    EXPECT_THAT(bare.complaints, HasSubstr(prefix.string()));
    install(shippedTable, share / "examples/survey/data/zone1970.tab");
    install(TOV_TEST_SOURCE_DIR "/res/en/strings.json", share / "res/en/strings.json");
    Answer const whole = Run({"--lang", "en"}, prefix / "bin/survey");
    EXPECT_THAT(whole.out, HasSubstr("52° 30' 00.0\" N")) << whole.complaints;
}

}  // namespace
}  // namespace survey
