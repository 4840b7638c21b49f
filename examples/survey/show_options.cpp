#include "recent.h"
#include "show.h"
#include "table.h"
#include "text.h"

#include <tov310/angle.h>
#include <tov310/distance.h>

#include <span>
#include <sstream>
#include <string_view>

namespace survey {
namespace {

// A profile gives back no longer text from a file, and no terminal shows so wide a table.
constexpr std::size_t longestFormat = 1000;

Unit const* ReadUnit(std::string_view option, std::span<Unit const> units, std::string_view name) {
    if (Unit const* const unit = FindUnit(units, name)) return unit;
    std::string message = std::string(option) + ": no unit is called " + Quoted(name) + "; there are";
    for (Unit const& unit : units) {
        message += (&unit == &units.front() ? " " : ", ") + std::string(unit.name);
    }
    throw UsageError(message);
}

std::string ReadFormat(std::string_view format) {
    if (!IsUtf8(format)) throw UsageError("--format: the text is not in UTF-8");
    if (HasControls(format)) throw UsageError("--format: control characters and line ends are not allowed");
    if (format.size() > longestFormat) {
        throw UsageError("--format: longer than " + std::to_string(longestFormat) + " bytes");
    }
    return std::string(format);
}

void AddUnits(std::ostream& help, std::span<Unit const> units, auto example) {
    Table table({{"  name"}, {"id"}, {"meaning"}, {"example", Table::Align::kNumber}});
    for (Unit const& unit : units) {
        table.Add({"  " + std::string(unit.name), std::to_string(unit.id), std::string(unit.meaning),
                   example(unit)});
    }
    table.Print(help);
}

std::string ExampleAngle(Unit const& unit) {
    tov::CTovUnitSettingsAngleLatLon settings;
    settings.Unit(unit.id);
    settings.Precision(PrecisionFor(unit.id, unit.decimals));
    tov::CTovValueAngleLat latitude(&settings);
    latitude.ConvertToStd(52.3108, tov::TOV_UNIT_PACKED_DMS, -1, 0UL);
    tov::CString text;
    latitude.GetString(text);
    return text;
}

std::string ExampleDistance(Unit const& unit) {
    tov::CTovUnitSettingsDistance settings(unit.id, nullptr);
    settings.Precision(unit.decimals);
    tov::CTovValueDistance distance(&settings);
    distance.SetDouble(1000);
    tov::CString text;
    distance.GetString(text);
    return text;
}

}  // namespace

ShowOptions ReadShowOptions(Arguments& arguments, CommonOptions& common) {
    ShowOptions options;
    while (arguments.Next()) {
        if (TakeCommon(arguments, common)) continue;
        std::string_view const name = arguments.Name();
        if (arguments.IsFile()) {
            if (name.empty()) throw UsageError("the name of the file is empty");
            if (!options.file.empty()) throw UsageError("more than one file");
            options.file = name;
        } else if (name == "--unit") {
            options.choice.unit = ReadUnit(name, AngleUnits(), arguments.Value());
        } else if (name == "--distance-unit") {
            options.choice.distanceUnit = ReadUnit(name, DistanceUnits(), arguments.Value());
        } else if (name == "--format") {
            options.choice.format = ReadFormat(arguments.Value());
        } else if (name == "--precision") {
            options.choice.decimals = ReadNumber(name, mostDecimals, arguments.Value());
        } else if (name == "--recent") {
            options.recent = ReadNumber(name, mostRecent, arguments.Value());
        } else if (name == "--from") {
            options.from = arguments.Text();
        } else if (name == "--to") {
            options.to = arguments.Text();
        } else if (name == "--all") {
            options.all = arguments.Flag();
        } else {
            arguments.Unknown();
        }
    }
    if (options.from.empty() != options.to.empty()) throw UsageError("--from and --to belong together");
    if (options.recent != 0 && !options.file.empty())
        throw UsageError("--recent opens a table itself and goes with no other");
    return options;
}

std::string ShowHelp() {
    std::ostringstream help;
    help << R"(Shows places of the earth in the unit of your choice, and how far they are apart.
FILE is a table like zone1970.tab of the tz database, which is used without FILE.
A table that is called like a command is opened as ./find.

  --all                  every place of the table
  --from NAME --to NAME  two places and their distance; NAME is Europe/Berlin, berlin
                         or a beginning such as berl
  --unit UNIT            unit of latitudes and longitudes
  --precision N          decimals, 1 to )"
         << mostDecimals << R"(; in dms and gonc those of the last field
  --format TEXT          how they are printed; "" is the usual way. In TEXT
                           %Q  the letter of the hemisphere (without it none is printed)
                           %U  the abbreviation of the unit
                           %.3f, %9.4f, %.*f  the number; * takes --precision
                           %degOrG %minOrC %secOrCC  in dms and gonc the three fields
                         for example --unit dms --format "%Q%degOrG%minOrC%secOrCC"
  --distance-unit UNIT   unit in which distances are shown first
  --recent N             the table with this number in the list of survey recent

The units are remembered until the next start, and for each its format and precision.
So are the last )"
         << mostRecent << R"( tables; survey recent lists them.

Units of latitudes and longitudes
)";
    AddUnits(help, AngleUnits(), ExampleAngle);
    help << "\nUnits of distances\n";
    AddUnits(help, DistanceUnits(), ExampleDistance);
    return help.str();
}

}  // namespace survey
