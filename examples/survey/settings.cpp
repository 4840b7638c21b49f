#include "settings.h"

#include "text.h"

#include <tov310/path.h>
#include <tov310/profile.h>
#include <tov310/unit_settings.h>

#include <algorithm>
#include <span>
#include <string>

namespace survey {
namespace {

using Entries = tov::CTovProfileEntries;

constexpr char const* section = "Survey";
constexpr char const* languageEntry = "Language";

// A unit that the library remembers: the id, and for people who read the file the abbreviation.
struct UnitEntries {
    char const* section;
    char const* number;
    char const* text;

    int Read() const { return static_cast<int>(Entries::ReadTovProfileInt(section, number, -1)); }

    void Write(long unit) const {
        tov::CString abbreviation;
        tov::CTovUnitSettings::UnitAbbreviation(unit, abbreviation, 0);
        Entries::WriteTovProfileInt(section, number, static_cast<int>(unit));
        Entries::WriteTovProfileString(section, text, abbreviation.c_str());
    }
};

constexpr UnitEntries angleUnit{Entries::UnitSettingsAngleLatLonSection(),
                                Entries::UnitSettingsAngleEntryFormatNumber(),
                                Entries::UnitSettingsAngleEntryFormatString()};
constexpr UnitEntries distanceUnit{Entries::UnitSettingsDistanceSection(),
                                   Entries::UnitSettingsDistanceEntryFormatNumber(),
                                   Entries::UnitSettingsDistanceEntryFormatString()};

// The unit that shared settings of the library have now.
Unit const& UnitOf(tov::CTovUnitSettings const& settings, std::span<Unit const> units) {
    Unit const* const unit = FindUnit(units, static_cast<long>(settings.Unit()));
    return unit != nullptr ? *unit : units.front();
}

std::string EntryOf(char const* what, Unit const& unit) {
    return std::string(what) + " (" + std::string(unit.name) + ")";
}

// Formats stand in angle brackets: a file keeps no blanks at the ends of a value, and takes its quotes off.
std::string ReadFormat(Unit const& unit) {
    tov::CString const kept = Entries::ReadTovProfileString(section, EntryOf("Format", unit).c_str(), "");
    bool const whole = kept.size() > 2 && kept.front() == '<' && kept.back() == '>';
    // The file may have been edited since.
    return whole && IsUtf8(kept) && !HasControls(kept) ? kept.substr(1, kept.size() - 2) : "";
}

void WriteFormat(Unit const& unit, std::string const& format) {
    std::string const kept = "<" + format + ">";
    Entries::WriteTovProfileString(section, EntryOf("Format", unit).c_str(),
                                   format.empty() ? nullptr : kept.c_str());
}

int ReadDecimals(Unit const& unit) {
    auto const kept =
        static_cast<int>(Entries::ReadTovProfileInt(section, EntryOf("Precision", unit).c_str(), -1));
    return kept >= 1 && kept <= mostDecimals ? kept : unit.decimals;
}

void WriteDecimals(Unit const& unit, int decimals) {
    Entries::WriteTovProfileInt(section, EntryOf("Precision", unit).c_str(), decimals);
}

}  // namespace

std::string OpenProfile(std::string const& path) {
    // A file without a folder stands beside the library's own profile.
    tov::TovSetProfilePath(nullptr);
    tov::CString drive, folder, name, extension;
    tov::TovSplitPath(tov::TovGetProfilePath(), drive, folder, name, extension);

    tov::TovSetProfilePath(path.c_str());
    bool const isBare = path.find_first_of("/\\") == path.npos;
    std::string upper = path;
    std::ranges::transform(upper, upper.begin(), [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
    bool const isFile = upper.find(".INI") != upper.npos || path.front() == '/' || path.front() == '\\' ||
                        path.find(":\\") != path.npos || path.find(":/") != path.npos;
    if (!isFile) return "the registry branch " + path;
    return isBare ? folder + path : path;
}

void ForgetSettings() {
    for (char const* const gone : {section, angleUnit.section, distanceUnit.section}) {
        Entries::WriteTovProfileString(gone, nullptr, nullptr);
    }
}

Settings ApplySettings(Choice const& choice) {
    auto& angles = tov::CTovUnitSettingsAngleLatLon::Default();
    auto& distances = tov::CTovUnitSettingsDistance::Default();
    if (choice.unit != nullptr) angleUnit.Write(choice.unit->id);
    if (choice.distanceUnit != nullptr) distanceUnit.Write(choice.distanceUnit->id);
    tov::CTovUnitSettingsAngleLatLon::DefaultSettings(tov::TOV_UNIT_DMS);
    tov::CTovUnitSettingsDistance::DefaultSettings(tov::TOV_UNIT_METRES);
    // What could not be written is used all the same.
    if (choice.unit != nullptr) angles.Unit(choice.unit->id);
    if (choice.distanceUnit != nullptr) distances.Unit(choice.distanceUnit->id);

    Unit const& unit = UnitOf(angles, AngleUnits());
    Unit const& first = UnitOf(distances, DistanceUnits());
    if (choice.format) WriteFormat(unit, *choice.format);
    if (choice.decimals) WriteDecimals(unit, *choice.decimals);
    if (choice.distanceDecimals) WriteDecimals(first, *choice.distanceDecimals);
    Settings settings{&unit,
                      &first,
                      choice.format.value_or(ReadFormat(unit)),
                      choice.decimals.value_or(ReadDecimals(unit)),
                      choice.distanceDecimals.value_or(ReadDecimals(first)),
                      false};
    settings.remembered = angleUnit.Read() == unit.id && distanceUnit.Read() == first.id &&
                          ReadFormat(unit) == settings.format && ReadDecimals(unit) == settings.decimals &&
                          ReadDecimals(first) == settings.distanceDecimals;
    angles.Format(settings.format.c_str());
    angles.Precision(PrecisionFor(unit.id, settings.decimals));
    return settings;
}

std::string RememberedLanguage() {
    return Entries::ReadTovProfileString(section, languageEntry, "");
}

void RememberLanguage(std::string const& language) {
    Entries::WriteTovProfileString(section, languageEntry, language.c_str());
}

std::string Describe(Settings const& settings) {
    return "unit " + std::string(settings.unit->name) + ", precision " + std::to_string(settings.decimals) +
           (settings.format.empty() ? ", no format" : ", format \"" + settings.format + "\"") +
           ", distance unit " + std::string(settings.distanceUnit->name);
}

}  // namespace survey
