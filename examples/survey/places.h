// The table of places: the layout of zone1970.tab in the tz database.
#pragma once

#include <tov310/angle.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace survey {

struct Place {
    std::string name;  // of the time zone, such as "Europe/Berlin"
    std::string countries;
    std::string comment;  // often empty
    tov::CTovValueAngleLat latitude;
    tov::CTovValueAngleLon longitude;
    std::optional<double> height;  // metres; tables of time zones have none
};

// Metres: deeper and higher than any ground.
inline constexpr double lowestPlace = -12000;
inline constexpr double highestPlace = 9000;

struct SkippedLine {
    std::size_t number;  // from 1
    std::string reason;
};

struct PlaceTable {
    std::vector<Place> places;  // in the order of the table, each name once
    std::vector<SkippedLine> skipped;
};

// Reads a table: UTF-8, with or without byte order mark, lines that end with LF or CR LF, columns divided by
// tabs: countries, coordinates, name and perhaps a comment. Empty lines and those that begin with "#" say
// nothing. Coordinates have the compact form of ISO 6709, latitude and longitude both to the minute
// (+DDMM+DDDMM) or both to the second (+DDMMSS+DDDMMSS), north and east being positive.
//
// A line that cannot be read is skipped; the others count.
PlaceTable ReadPlaces(std::string_view text);

// The number of the place with that name, other than the one that may be left out; none where it is free.
std::optional<std::size_t> PlaceNamed(std::vector<Place> const& places, std::string_view name,
                                      std::optional<std::size_t> other = {});

// Takes what stands before the next divider from the front of a text, and the divider with it.
std::string_view TakeUntil(std::string_view& text, char divider);

}  // namespace survey
