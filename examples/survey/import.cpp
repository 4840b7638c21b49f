#include "import.h"

#include "text.h"

#include <tov310/packed_angle.h>
#include <tov310/value.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numbers>
#include <optional>
#include <set>
#include <utility>

namespace survey {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t lookedAt = 20;  // lines

std::string_view Trimmed(std::string_view text) {
    std::size_t const first = std::min(text.find_first_not_of(" \t"), text.size());
    text.remove_prefix(first);
    return text.substr(0, text.find_last_not_of(" \t") + 1);
}

void ReplaceAll(std::string& text, std::string_view what, char with) {
    for (std::size_t at = text.find(what); at != text.npos; at = text.find(what, at))
        text.replace(at, what.size(), 1, with);
}

// The lines one after another; `take` answers whether it wants more.
template <class Take>
void ForEachLine(std::string_view text, Take const& take) {
    if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
    for (std::size_t number = 1; !text.empty(); ++number) {
        std::string_view line = TakeUntil(text, '\n');
        if (line.ends_with('\r')) line.remove_suffix(1);
        if (Trimmed(line).empty()) continue;
        if (!take(line, number)) return;
    }
}

// A whole text as a number that is finite.
std::optional<double> ReadNumber(std::string_view text) {
    std::string digits(Trimmed(text));
    std::ranges::replace(digits, ',', '.');
    std::string_view rest = digits;
    if (rest.starts_with('+') && !rest.starts_with("+-")) rest.remove_prefix(1);
    double number = 0;
    auto const [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), number);
    bool const isWhole = error == std::errc() && end == rest.data() + rest.size();
    return isWhole && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

// Takes the letter of a hemisphere from either end: 1 for the positive one, -1 for the other, 0 for none.
int TakeHemisphere(std::string_view& text, std::string_view letters) {
    auto const signOf = [letters](char c) {
        std::size_t const at = letters.find(c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c);
        return at == letters.npos ? 0 : at == 0 ? 1 : -1;
    };
    if (text.empty()) return 0;
    int sign = signOf(text.back());
    if (sign != 0) {
        text.remove_suffix(1);
    } else {
        sign = signOf(text.front());
        if (sign != 0) text.remove_prefix(1);
    }
    text = Trimmed(text);
    return sign;
}

bool IsDigits(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == text.npos;
}

// Up to three fields without a sign; what is missing is 0.
bool ReadFields(std::string_view text, double most, std::array<double, 3>& fields) {
    std::string plain(text);
    for (char const* const sign : {"°", "′", "″", "'", "\"", ":"})
        ReplaceAll(plain, sign, ' ');
    std::vector<std::string> const parts = SplitLine(Trimmed(plain), ' ');
    if (parts.empty() || parts.size() > fields.size()) return false;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        std::optional<double> const number = ReadNumber(parts[i]);
        bool const isLast = i + 1 == parts.size();
        if (!number || (!isLast && !IsDigits(parts[i])) || (i > 0 && *number >= most)) return false;
        if (parts[i].find_first_not_of("0123456789.,") != std::string::npos) return false;
        fields[i] = *number;
    }
    return true;
}

// Degrees with minutes and seconds behind the point must have less than 60 of each.
bool ArePackedFieldsGood(double packed) {
    int sign = 0, degrees = 0, minutes = 0;
    double seconds = 0;
    constexpr int decimals = 6;
    tov::VeskSplitPackedDms(packed, sign, degrees, minutes, seconds, decimals, 0);
    double const again = tov::VeskJoinPackedDms(sign, degrees, minutes, seconds);
    constexpr double nearly = 1e-9;
    return std::abs(again - packed) < nearly;
}

// The angle in radians.
std::optional<double> ReadRadians(std::string_view text, Unit const& unit, std::string_view letters) {
    text = Trimmed(text);
    int sign = TakeHemisphere(text, letters);
    bool const isSigned = text.starts_with('+') || text.starts_with('-');
    if (isSigned) {
        if (sign != 0) return {};
        sign = text.front() == '-' ? -1 : 1;
        text = Trimmed(text.substr(1));
    }
    if (text.empty() || text.front() == '+' || text.front() == '-') return {};
    if (sign == 0) sign = 1;

    std::array<double, 3> fields{};
    if (unit.id == tov::TOV_UNIT_DMS) {
        constexpr double most = 60;
        if (!ReadFields(text, most, fields)) return {};
        double const degrees = fields[0] + (fields[1] + fields[2] / most) / most;
        // Whole degrees and minutes stay exact only where they are put together by the library.
        bool const isWhole = fields[0] == std::floor(fields[0]) && fields[1] == std::floor(fields[1]);
        constexpr double largest = 1000;
        if (!(fields[0] < largest)) return {};
        if (isWhole) {
            return tov::VeskPackedDmsToRad(tov::VeskJoinPackedDms(sign, static_cast<int>(fields[0]),
                                                                  static_cast<int>(fields[1]), fields[2]));
        }
        double radians = 0;
        tov::CTovValue::Convert(sign * degrees, tov::TOV_UNIT_DEGREES, radians, tov::TOV_UNIT_RADIANS);
        return radians;
    }
    if (unit.id == tov::TOV_UNIT_GON) {
        constexpr double most = 100;
        if (!ReadFields(text, most, fields)) return {};
        double const gon = fields[0] + (fields[1] + fields[2] / most) / most;
        double radians = 0;
        tov::CTovValue::Convert(sign * gon, tov::TOV_UNIT_GRADS, radians, tov::TOV_UNIT_RADIANS);
        return radians;
    }
    std::string number(text);
    ReplaceAll(number, "°", ' ');
    std::optional<double> const read = ReadNumber(number);
    if (!read) return {};
    if (unit.id == tov::TOV_UNIT_PACKED_DMS && !ArePackedFieldsGood(*read)) return {};
    double radians = 0;
    tov::CTovValue::Convert(sign * *read, unit.id, radians, tov::TOV_UNIT_RADIANS);
    return radians;
}

bool ReadWithin(std::string_view text, Unit const& unit, std::string_view letters, double most,
                tov::CTovValueAngle& value) {
    std::optional<double> const radians = ReadRadians(text, unit, letters);
    // The pole itself belongs to it, however it was rounded on its way.
    constexpr double nearly = 1e-12;
    if (!radians || std::abs(*radians) > most + nearly) return false;
    value.SetDouble(std::clamp(*radians, -most, most));
    return true;
}

std::string CellOf(std::vector<std::string> const& cells, int column) {
    return column > 0 ? cells[static_cast<std::size_t>(column) - 1] : std::string();
}

// Answers what is wrong.
std::optional<ImportFault> ReadLine(std::string_view line, ImportFormat const& format, Place& place) {
    if (!IsUtf8(line)) return ImportFault::kEncoding;
    if (HasControls(line, '\t')) return ImportFault::kControl;
    std::vector<std::string> const cells = SplitLine(line, format.separator);
    int const last = std::max({format.name, format.latitude, format.longitude});
    if (static_cast<int>(cells.size()) < last) return ImportFault::kColumns;
    auto const has = [&cells](int column) { return column > 0 && column <= static_cast<int>(cells.size()); };
    place.name = CellOf(cells, format.name);
    if (place.name.empty() || HasControls(place.name)) return ImportFault::kName;
    if (!ReadAngle(CellOf(cells, format.latitude), *format.angleUnit, place.latitude))
        return ImportFault::kLatitude;
    if (!ReadAngle(CellOf(cells, format.longitude), *format.angleUnit, place.longitude))
        return ImportFault::kLongitude;
    if (has(format.height) && !CellOf(cells, format.height).empty()) {
        std::optional<double> const number = ReadNumber(CellOf(cells, format.height));
        if (!number) return ImportFault::kHeight;
        double metres = 0;
        tov::CTovValue::Convert(*number, format.heightUnit->id, metres, tov::TOV_UNIT_METRES);
        if (metres < lowestPlace || metres > highestPlace) return ImportFault::kHeight;
        place.height = metres;
    }
    if (has(format.comment)) place.comment = CellOf(cells, format.comment);
    return {};
}

// Where the cells of a line are titles: sets the columns that they name, and answers whether latitude and
// longitude are among them.
bool TakeTitles(std::vector<std::string> const& cells, ImportFormat& format) {
    struct Meaning {
        int ImportFormat::*column;
        std::array<std::string_view, 6> words;  // the last ones may be empty
    };
    constexpr Meaning meanings[] = {{&ImportFormat::latitude, {"lat", "纬"}},
                                    {&ImportFormat::longitude, {"lon", "lng", "经"}},
                                    {&ImportFormat::height, {"height", "elev", "alt", "高"}},
                                    {&ImportFormat::comment, {"remark", "comment", "note", "备注"}},
                                    {&ImportFormat::name, {"name", "place", "point", "id", "名", "点"}}};
    ImportFormat named = format;
    for (auto const& [column, words] : meanings)
        named.*column = 0;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        std::string const title = Folded(cells[i]);
        for (auto const& [column, words] : meanings) {
            bool const isMeant = std::ranges::any_of(words, [&title](std::string_view word) {
                return !word.empty() && title.find(word) != title.npos;
            });
            if (!isMeant) continue;
            if (named.*column == 0) named.*column = static_cast<int>(i) + 1;
            break;
        }
    }
    if (named.latitude == 0 || named.longitude == 0) return false;
    if (named.name == 0) {
        named.name = 1;
        while (!IsWhole(named))
            ++named.name;
    }
    format = named;
    return true;
}

bool IsAngle(std::string const& cell, Unit const& unit) {
    tov::CTovValueAngleLat latitude;
    tov::CTovValueAngleLon longitude;
    return ReadAngle(cell, unit, longitude) || ReadAngle(cell, unit, latitude);
}

// Sets columns and unit by what a line of values looks like.
void TakeColumns(std::vector<std::string> const& cells, bool areNamed, ImportFormat& format) {
    Unit const& degrees = *FindUnit(AngleUnits(), tov::TOV_UNIT_DEGREES);
    Unit const& fields = *FindUnit(AngleUnits(), tov::TOV_UNIT_DMS);
    if (!areNamed) {
        std::vector<int> angles, others;
        for (std::size_t i = 0; i < cells.size(); ++i)
            (IsAngle(cells[i], fields) ? angles : others).push_back(static_cast<int>(i) + 1);
        // Places that have numbers for names.
        if (others.empty() && angles.size() > 2) {
            others.push_back(angles.front());
            angles.erase(angles.begin());
        }
        // A name that is no number is likelier one.
        auto const name =
            std::ranges::find_if(others, [&cells](int column) { return !ReadNumber(CellOf(cells, column)); });
        if (!others.empty()) format.name = name != others.end() ? *name : others.front();
        if (angles.size() > 1) {
            format.latitude = angles[0];
            format.longitude = angles[1];
            for (int column = angles[1] + 1; column <= static_cast<int>(cells.size()); ++column) {
                if (column == format.name || !ReadNumber(CellOf(cells, column))) continue;
                format.height = column;
                break;
            }
        }
        while (!IsWhole(format))
            ++format.name;
    }
    int const last = std::max(format.latitude, format.longitude);
    if (!IsWhole(format) || static_cast<int>(cells.size()) < last) return;
    bool const isOne =
        IsAngle(CellOf(cells, format.latitude), degrees) && IsAngle(CellOf(cells, format.longitude), degrees);
    format.angleUnit = isOne ? &degrees : &fields;
}

char GuessSeparator(std::vector<std::string> const& lines) {
    for (char const separator : {'\t', ';', ',', ' '}) {
        std::set<std::size_t> counts;
        for (std::string const& line : lines)
            counts.insert(SplitLine(line, separator).size());
        constexpr std::size_t least = 3;
        if (!counts.empty() && *counts.begin() >= least && counts.size() <= 2) return separator;
    }
    return ',';
}

}  // namespace

std::vector<std::string> SplitLine(std::string_view line, char separator) {
    std::vector<std::string> cells;
    bool const isBlank = separator == ' ';
    char const* const around = separator == '\t' ? " " : " \t";
    if (isBlank) line = Trimmed(line);
    for (bool more = !line.empty(); more;) {
        line.remove_prefix(std::min(line.find_first_not_of(around), line.size()));
        std::string cell;
        if (line.starts_with('"')) {
            line.remove_prefix(1);
            while (!line.empty()) {
                cell += TakeUntil(line, '"');
                if (!line.starts_with('"')) break;
                cell += '"';
                line.remove_prefix(1);
            }
        }
        std::size_t const end = line.find_first_of(isBlank ? " \t" : std::string_view(&separator, 1));
        more = end != line.npos;
        cell += Trimmed(line.substr(0, end));
        line.remove_prefix(more ? end + 1 : line.size());
        cells.push_back(std::move(cell));
    }
    return cells;
}

std::vector<std::string> FirstLines(std::string_view text, std::size_t most) {
    std::vector<std::string> lines;
    ForEachLine(text, [&](std::string_view line, std::size_t) {
        if (lines.size() < most) lines.emplace_back(line);
        return lines.size() < most;
    });
    return lines;
}

ImportFormat GuessFormat(std::string_view text) {
    ImportFormat format;
    std::vector<std::string> const lines = FirstLines(text, lookedAt);
    if (lines.empty()) return format;
    format.separator = GuessSeparator(lines);
    format.hasTitles = TakeTitles(SplitLine(lines.front(), format.separator), format);
    if (lines.size() > 1 || !format.hasTitles)
        TakeColumns(SplitLine(lines[format.hasTitles ? 1 : 0], format.separator), format.hasTitles, format);
    return format;
}

bool IsWhole(ImportFormat const& format) {
    std::set<int> columns;
    for (int const column : {format.name, format.latitude, format.longitude}) {
        if (column < 1 || !columns.insert(column).second) return false;
    }
    for (int const column : {format.height, format.comment}) {
        if (column != 0 && !columns.insert(column).second) return false;
    }
    return true;
}

bool ReadAngle(std::string_view text, Unit const& unit, tov::CTovValueAngleLat& latitude) {
    return ReadWithin(text, unit, "NS", std::numbers::pi / 2, latitude);
}

bool ReadAngle(std::string_view text, Unit const& unit, tov::CTovValueAngleLon& longitude) {
    return ReadWithin(text, unit, "EW", std::numbers::pi, longitude);
}

Import ReadImport(std::string_view text, ImportFormat const& format, std::vector<Place> const& present) {
    Import import;
    if (!IsWhole(format)) return import;
    std::set<std::string, std::less<>> names;
    for (Place const& place : present)
        names.insert(place.name);
    bool isTitle = format.hasTitles;
    ForEachLine(text, [&](std::string_view line, std::size_t number) {
        if (std::exchange(isTitle, false)) return true;
        Place place;
        std::optional<ImportFault> fault = ReadLine(line, format, place);
        if (!fault && !names.insert(place.name).second) fault = ImportFault::kTwice;
        if (fault)
            import.skipped.push_back({number, *fault});
        else
            import.places.push_back(std::move(place));
        return true;
    });
    return import;
}

}  // namespace survey
