// Places from the text files of other programs: one place a line, in columns.
#pragma once

#include "places.h"
#include "units.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace survey {

// Columns are counted from 1; 0 is none, which only height and remark may be.
struct ImportFormat {
    char separator = ',';    // one of importSeparators
    bool hasTitles = false;  // the first line that is not empty names the columns
    int name = 1;
    int latitude = 2;
    int longitude = 3;
    int height = 0;
    int comment = 0;
    Unit const* angleUnit = &AngleUnits().front();
    Unit const* heightUnit = &DistanceUnits().front();
};

// A blank stands for any number of them.
inline constexpr std::array<char, 4> importSeparators{',', ';', '\t', ' '};
inline constexpr int mostColumns = 99;

// What was wrong with a line, in the order of the texts for it.
enum class ImportFault { kEncoding, kControl, kColumns, kName, kLatitude, kLongitude, kHeight, kTwice };

struct Import {
    struct Skipped {
        std::size_t line;  // from 1
        ImportFault fault;
    };
    std::vector<Place> places;
    std::vector<Skipped> skipped;
};

// The cells of a line. One that begins with a double quote ends with the next single one; two stand for one
// that belongs to it. Blanks around cells are none of theirs.
std::vector<std::string> SplitLine(std::string_view line, char separator);

// The first lines that are not empty, without their ends.
std::vector<std::string> FirstLines(std::string_view text, std::size_t most);

// What the first lines look like. Titles name their columns in English or Chinese; without them the first two
// columns of angles are latitude and longitude.
ImportFormat GuessFormat(std::string_view text);

// Whether no column is meant twice, and all that must be are there.
bool IsWhole(ImportFormat const& format);

// An angle as people write it. In degrees, minutes and seconds, and in gon, c and cc, with up to three fields
// between blanks, colons or the usual signs, of which only the last may have decimals; in all other units one
// number. A sign or the letter of a hemisphere (N, S, E, W) stands in front, the letter perhaps at the end.
// False where it is anything else, or beyond the pole or half a circle; the value stays then.
bool ReadAngle(std::string_view text, Unit const& unit, tov::CTovValueAngleLat& latitude);
bool ReadAngle(std::string_view text, Unit const& unit, tov::CTovValueAngleLon& longitude);

// The text is UTF-8, with or without byte order mark; decimals stand behind a point or, where that does not
// separate cells, a comma. A line that cannot be read is skipped, and so is a place whose name is taken by an
// earlier one or by one of `present`.
Import ReadImport(std::string_view text, ImportFormat const& format, std::vector<Place> const& present);

}  // namespace survey
