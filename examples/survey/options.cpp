#include "options.h"

#include "recent.h"
#include "table.h"
#include "text.h"

#include <tov310/angle.h>
#include <tov310/distance.h>

#include <algorithm>
#include <charconv>
#include <sstream>
#include <string_view>
#include <utility>

namespace survey {
namespace {

// A profile gives back no longer text from a file, and no terminal shows so wide a table.
constexpr std::size_t longestFormat = 1000;

std::string Quoted(std::string_view text) {
    if (!IsUtf8(text) || HasControls(text)) return "what was given";
    std::string quoted = "\"";
    return quoted.append(text).append("\"");
}

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

// From 1 on.
int ReadNumber(std::string_view option, int most, std::string_view text) {
    int number = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < 1 || number > most) {
        throw UsageError(std::string(option) + ": a number from 1 to " + std::to_string(most) + ", not " +
                         Quoted(text));
    }
    return number;
}

Order ReadOrder(std::string_view text) {
    constexpr std::pair<std::string_view, Order> orders[] = {
        {"name", Order::kName}, {"path", Order::kPath}, {"size", Order::kSize}, {"time", Order::kTime}};
    for (auto const& [name, order] : orders) {
        if (text == name) return order;
    }
    throw UsageError("--sort: name, path, size or time, not " + Quoted(text));
}

// The name of a folder, and never a way out of the one where the languages are.
std::string ReadLanguage(std::string_view name) {
    bool const good = !name.empty() && std::ranges::all_of(name, [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
    });
    if (!good) throw UsageError("--lang: a language such as en or zh_CN, not " + Quoted(name));
    return std::string(name);
}

// Walks through the arguments.
class Arguments {
 public:
    explicit Arguments(std::span<char const* const> arguments) : m_rest(arguments) {}

    bool Next() {
        if (m_rest.empty()) return false;
        m_name = m_rest.front();
        m_rest = m_rest.subspan(1);
        m_hasValue = false;
        if (m_onlyFiles) return true;
        if (m_name == "--" && !m_rest.empty()) {
            m_onlyFiles = true;
            return Next();
        }
        std::size_t const equals = m_name.find('=');
        if (m_name.starts_with("--") && equals != m_name.npos) {
            m_hasValue = true;
            m_value = m_name.substr(equals + 1);
            m_name = m_name.substr(0, equals);
        }
        return true;
    }

    std::string_view Name() const { return m_name; }
    bool IsFile() const { return m_onlyFiles || !m_name.starts_with('-'); }
    bool MayBeCommand() const { return !m_onlyFiles; }

    // "--name value" or "--name=value".
    std::string_view Value() {
        if (m_hasValue) return m_value;
        if (m_rest.empty()) throw UsageError(std::string(m_name) + " needs a value");
        std::string_view const value = m_rest.front();
        m_rest = m_rest.subspan(1);
        return value;
    }

    std::string Text() {
        std::string_view const value = Value();
        if (value.empty()) throw UsageError(std::string(m_name) + " needs a value");
        return std::string(value);
    }

    bool Flag() const {
        if (m_hasValue) throw UsageError(std::string(m_name) + " takes no value");
        return true;
    }

 private:
    std::span<char const* const> m_rest;
    std::string_view m_name;
    std::string_view m_value;  // behind a "="
    bool m_hasValue = false;
    bool m_onlyFiles = false;
};

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

// What is no option: the command in front, and what it is for.
void TakeWord(std::string_view word, bool mayBeCommand, Options& options) {
    bool const isFirst = options.command == Command::kShow && options.file.empty();
    if (isFirst && mayBeCommand && word == "find") {
        options.command = Command::kFind;
    } else if (isFirst && mayBeCommand && word == "recent") {
        options.command = Command::kRecent;
    } else if (options.command == Command::kRecent) {
        throw UsageError("recent lists the tables and takes no name; --recent N opens one");
    } else if (options.command == Command::kShow) {
        if (word.empty()) throw UsageError("the name of the file is empty");
        if (!options.file.empty()) throw UsageError("more than one file");
        options.file = word;
    } else if (options.search.directory.empty()) {
        if (word.empty()) throw UsageError("find: the name of the folder is empty");
        options.search.directory = word;
    } else {
        if (word.empty()) throw UsageError("find: a pattern is empty");
        if (word.find_first_of("/\\") != word.npos)
            throw UsageError("find: a pattern is for names of files, without \"/\" and \"\\\"");
        options.search.patterns.emplace_back(word);
    }
}

void CheckTogether(Options const& options) {
    bool const isFind = options.command == Command::kFind;
    if (options.from.empty() != options.to.empty()) throw UsageError("--from and --to belong together");
    if (options.recent != 0 && (options.command != Command::kShow || !options.file.empty()))
        throw UsageError("--recent opens a table itself and goes with no other");
    if (!isFind && (options.search.flat || options.search.order != Order::kFound))
        throw UsageError("--flat and --sort belong to find");
    if (isFind && options.search.patterns.empty() && !options.help)
        throw UsageError("find needs a folder and a pattern");
}

}  // namespace

Options ReadOptions(std::span<char const* const> arguments) {
    Options options;
    Arguments walk(arguments);
    while (walk.Next()) {
        std::string_view const name = walk.Name();
        if (walk.IsFile()) {
            TakeWord(name, walk.MayBeCommand(), options);
        } else if (name == "--unit") {
            options.choice.unit = ReadUnit(name, AngleUnits(), walk.Value());
        } else if (name == "--distance-unit") {
            options.choice.distanceUnit = ReadUnit(name, DistanceUnits(), walk.Value());
        } else if (name == "--format") {
            options.choice.format = ReadFormat(walk.Value());
        } else if (name == "--precision") {
            options.choice.decimals = ReadNumber(name, mostDecimals, walk.Value());
        } else if (name == "--recent") {
            options.recent = ReadNumber(name, mostRecent, walk.Value());
        } else if (name == "--sort") {
            options.search.order = ReadOrder(walk.Value());
        } else if (name == "--flat") {
            options.search.flat = walk.Flag();
        } else if (name == "--recursive") {
            options.search.flat = !walk.Flag();
        } else if (name == "--from") {
            options.from = walk.Text();
        } else if (name == "--to") {
            options.to = walk.Text();
        } else if (name == "--lang") {
            options.language = ReadLanguage(walk.Value());
        } else if (name == "--profile") {
            options.profile = walk.Text();
        } else if (name == "--all") {
            options.all = walk.Flag();
        } else if (name == "--reset") {
            options.reset = walk.Flag();
        } else if (name == "--help" || name == "-h") {
            options.help = walk.Flag();
        } else {
            throw UsageError("there is no option " + Quoted(name));
        }
    }
    CheckTogether(options);
    return options;
}

std::string HelpText() {
    std::ostringstream help;
    help << R"(usage: survey [options] [FILE]
       survey find [options] DIR PATTERN [PATTERN ...]
       survey recent [options]

Shows places of the earth in the unit of your choice, and how far they are apart.
FILE is a table like zone1970.tab of the tz database, which is used without FILE.
A table that is called find or recent is opened as ./find.

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
  --lang LANGUAGE        language of the library's texts: en, or zh_CN, which is built in
  --reset                forget what is remembered
  --profile PATH         remember there instead: a file when PATH holds ".ini" or begins
                         with "/", otherwise a branch of the registry
  --help                 this text

The units are remembered until the next start, and for each its format and precision.
So are the last )"
         << mostRecent << R"( tables; survey recent lists them.

survey find searches DIR and the folders below it for files whose names match a pattern,
in which * is any text and ? any character; put it in quotes. Folders that may not be read
are skipped. A terminal shows the progress; Ctrl-C ends the search.
  --flat                 only DIR itself; --recursive takes that back
  --sort ORDER           name (site9 before site10), path, size (smallest first) or
                         time (oldest first); otherwise as they are found

Units of latitudes and longitudes
)";
    AddUnits(help, AngleUnits(), ExampleAngle);
    help << "\nUnits of distances\n";
    AddUnits(help, DistanceUnits(), ExampleDistance);
    help << R"(
Exit codes: 0 fine, 1 lines of the table were skipped, or no file was found, 2 wrong call,
3 the table or the folder cannot be read, there is no place in the table, or the output
cannot be written, 130 the search was ended by Ctrl-C
)";
    return help.str();
}

}  // namespace survey
