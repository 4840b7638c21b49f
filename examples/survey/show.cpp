#include "show.h"
#include "answer.h"
#include "files.h"
#include "names.h"
#include "places.h"
#include "recent.h"
#include "settings.h"
#include "sphere.h"
#include "table.h"
#include "text.h"

#include <tov310/distance.h>

#include <algorithm>
#include <iostream>
#include <iterator>
#include <vector>

namespace survey {
namespace {

// What is shown to somebody who asks for nothing: all continents and hemispheres.
constexpr char const* someNames[] = {
    "America/Anchorage", "America/New_York", "America/Sao_Paulo", "Antarctica/Troll",
    "Africa/Nairobi",    "Europe/London",    "Europe/Berlin",     "Asia/Shanghai",
    "Asia/Tokyo",        "Australia/Sydney", "Pacific/Auckland",  "Pacific/Honolulu",
};
constexpr std::size_t someCount = std::size(someNames);
constexpr char const* exampleFrom = "Europe/London";
constexpr char const* exampleTo = "Asia/Shanghai";

using Places = std::vector<Place const*>;

// A place by its name, or a UsageError that suggests others.
Place const& Named(std::vector<Place> const& places, std::string const& name) {
    Found const found = FindPlace(places, name);
    if (found.place != nullptr) return *found.place;
    std::string message = "\"" + name + "\" is " + (found.exact ? "more than one place" : "no place here");
    constexpr std::size_t most = 5;
    for (std::size_t i = 0; i < std::min(found.others.size(), most); ++i) {
        message += i != 0 ? ", " : found.exact ? ": " : "; did you mean ";
        message += found.others[i]->name;
    }
    if (found.others.size() > most) message += " or " + std::to_string(found.others.size() - most) + " more";
    if (!found.exact && !found.others.empty()) message += "?";
    throw UsageError(message);
}

Places AllOf(std::vector<Place> const& places) {
    Places all;
    for (Place const& place : places)
        all.push_back(&place);
    return all;
}

Places SomeOf(std::vector<Place> const& places) {
    Places some;
    for (char const* const name : someNames) {
        auto const found = std::ranges::find(places, name, &Place::name);
        if (found != places.end()) some.push_back(&*found);
    }
    if (some.size() == someCount) return some;
    // Another table has other places.
    some = AllOf(places);
    some.resize(std::min(some.size(), someCount));
    return some;
}

// A copy, for a value may note the state of its conversions while it prints.
std::string Text(auto value) {
    tov::CString text;
    value.GetString(text);
    return text;
}

// Whether the format in use prints the number at all.
bool FormatShowsNumber() {
    tov::CTovValueAngleLat first, second;
    first.SetDouble(0.1);
    second.SetDouble(0.7);
    return Text(first) != Text(second);
}

void ShowPlaces(Places const& places) {
    Table table(
        {{"Place"}, {"Latitude", Table::Align::kNumber}, {"Longitude", Table::Align::kNumber}, {"Remark"}});
    for (Place const* const place : places) {
        table.Add({place->name, Text(place->latitude), Text(place->longitude), place->comment});
    }
    table.Print(std::cout);
}

void ShowDistance(Place const& from, Place const& to, Unit const& firstUnit) {
    double const metres = GreatCircleDistance(from.latitude, from.longitude, to.latitude, to.longitude);
    std::cout << "From " << from.name << " to " << to.name << " along a great circle:\n";

    Table table({{"Distance", Table::Align::kNumber}, {"Unit"}});
    auto add = [&](Unit const& unit) {
        tov::CTovUnitSettingsDistance settings(unit.id, nullptr);
        settings.Precision(unit.decimals);
        tov::CTovValueDistance distance(&settings);
        distance.SetDouble(metres);
        tov::CString number;
        distance.GetString(number);
        table.Add({number, std::string(unit.name) + ", " + std::string(unit.meaning)});
    };
    add(firstUnit);
    for (Unit const& unit : DistanceUnits()) {
        if (unit.id != firstUnit.id) add(unit);
    }
    table.Print(std::cout);
}

// The table that is asked for.
std::string TableFile(ShowOptions const& options) {
    if (options.recent == 0) return options.file.empty() ? DataFile("zone1970.tab").string() : options.file;
    std::vector<std::string> const recent = RecentTables();
    auto const number = static_cast<std::size_t>(options.recent);
    if (number <= recent.size()) return recent[number - 1];
    throw UsageError("--recent: there are " + std::to_string(recent.size()) +
                     " recent tables, and no number " + std::to_string(number));
}

int ShowTable(ShowOptions const& options, std::string const& profile) {
    Settings const settings = ApplySettings(options.choice);
    std::string const file = TableFile(options);
    std::string bytes;
    if (std::string const reason = ReadFile(file, bytes); !reason.empty()) {
        Complain() << file << ": " << reason << '\n';
        return kUnreadable;
    }
    PlaceTable const table = ReadPlaces(bytes);
    for (SkippedLine const& line : table.skipped)
        std::cerr << "line " << line.number << ": " << line.reason << '\n';
    if (!table.skipped.empty()) Complain() << file << ": lines skipped: " << table.skipped.size() << '\n';
    if (table.places.empty()) {
        Complain() << file << ": no place in it\n";
        return table.skipped.empty() ? kUnreadable : kNotAll;
    }
    RememberTable(file);

    if (!FormatShowsNumber()) {
        Complain() << "the format prints no number in this unit; --format \"\" takes it back\n";
    }
    Places shown = options.all ? AllOf(table.places) : SomeOf(table.places);
    Place const* from = nullptr;
    Place const* to = nullptr;
    if (!options.from.empty()) {
        from = &Named(table.places, options.from);
        to = &Named(table.places, options.to);
        if (!options.all) shown = {from, to};
    } else if (!options.all && shown.size() > 1) {
        Found const first = FindPlace(table.places, exampleFrom);
        Found const second = FindPlace(table.places, exampleTo);
        from = first.place != nullptr ? first.place : shown.front();
        to = second.place != nullptr ? second.place : shown.back();
    }

    ShowPlaces(shown);
    if (from != nullptr) {
        std::cout << '\n';
        ShowDistance(*from, *to, *settings.distanceUnit);
    }
    std::cout << '\n';
    if (options.from.empty() && shown.size() < table.places.size()) {
        std::cout
            << shown.size() << " of " << table.places.size()
            << " places; --all shows every one, --from NAME --to NAME another distance, --help the rest.\n";
    }
    std::cout << (settings.remembered ? "Remembered in " : "Not remembered, for nothing can be kept in ")
              << profile << ": " << Describe(settings) << ".\n";
    if (std::size_t const count = RecentTables().size(); count != 0)
        std::cout << "Recent tables: " << count
                  << "; survey recent lists them, --recent N opens one again.\n";
    return table.skipped.empty() ? kFine : kNotAll;
}

}  // namespace

int RunShow(Arguments& arguments, CommonOptions& common) {
    ShowOptions const options = ReadShowOptions(arguments, common);
    LoadLanguage(common.language);
    if (common.help) return kFine;
    std::string const profile = OpenProfile(common);
    return ShowTable(options, profile);
}

}  // namespace survey
