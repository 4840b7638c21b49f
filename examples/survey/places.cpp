#include "places.h"

#include "text.h"

#include <tov310/packed_angle.h>

#include <algorithm>
#include <map>
#include <utility>

namespace survey {
namespace {

// Thrown while a line is read, and caught where the line began.
struct BadLine {
    std::string reason;
};

// How one of the two coordinates is written.
struct Coordinate {
    std::string name;
    std::size_t degreeDigits;
    int largest;  // degrees
    std::string shapes;
};

Coordinate const latitude{"latitude", 2, 90, "DDMM or DDMMSS"};
Coordinate const longitude{"longitude", 3, 180, "DDDMM or DDDMMSS"};

struct Angle {
    int sign = 1;
    int degrees = 0;
    int minutes = 0;
    int seconds = 0;
    bool toTheSecond = false;
};

int Number(std::string_view digits) {
    int number = 0;
    for (char const digit : digits)
        number = number * 10 + (digit - '0');
    return number;
}

// Takes a coordinate from the front of the text.
Angle TakeAngle(std::string_view& text, Coordinate const& what) {
    Angle angle;
    if (text.empty()) throw BadLine{"no " + what.name};
    if (text.front() != '+' && text.front() != '-') {
        throw BadLine{"the " + what.name + " does not begin with + or -"};
    }
    angle.sign = text.front() == '-' ? -1 : 1;
    text.remove_prefix(1);

    std::string_view const digits = text.substr(0, text.find_first_not_of("0123456789"));
    text.remove_prefix(digits.size());
    std::size_t const toTheMinute = what.degreeDigits + 2;
    angle.toTheSecond = digits.size() == toTheMinute + 2;
    if (digits.size() != toTheMinute && !angle.toTheSecond) {
        throw BadLine{"the " + what.name + " has " + std::to_string(digits.size()) + " digits, not " +
                      what.shapes};
    }
    angle.degrees = Number(digits.substr(0, what.degreeDigits));
    angle.minutes = Number(digits.substr(what.degreeDigits, 2));
    angle.seconds = Number(digits.substr(toTheMinute));
    if (angle.minutes >= 60) throw BadLine{"the minutes of the " + what.name + " are above 59"};
    if (angle.seconds >= 60) throw BadLine{"the seconds of the " + what.name + " are above 59"};
    bool const beyond = angle.degrees > what.largest ||
                        (angle.degrees == what.largest && (angle.minutes != 0 || angle.seconds != 0));
    if (beyond) {
        throw BadLine{"the " + what.name + " is above " + std::to_string(what.largest) + " degrees"};
    }
    return angle;
}

// A packed number is the one form in which degrees, minutes and seconds are all there, to the last digit.
void Give(tov::CTovValueAngle& value, Angle const& angle) {
    double const packed =
        tov::VeskJoinPackedDms(angle.sign, angle.degrees, angle.minutes, static_cast<double>(angle.seconds));
    value.ConvertToStd(packed, tov::TOV_UNIT_DMS, -1, 0UL);
}

void ReadCoordinates(std::string_view text, Place& place) {
    Angle const first = TakeAngle(text, latitude);
    Angle const second = TakeAngle(text, longitude);
    if (!text.empty()) throw BadLine{"\"" + std::string(text) + "\" behind the coordinates"};
    if (first.toTheSecond != second.toTheSecond) {
        throw BadLine{"only one of latitude and longitude has seconds"};
    }
    Give(place.latitude, first);
    Give(place.longitude, second);
}

Place ReadPlace(std::string_view line) {
    if (!IsUtf8(line)) throw BadLine{"not in UTF-8"};
    // They could do anything to the terminal on which the table is shown.
    if (HasControls(line, '\t')) throw BadLine{"a control character"};
    if (line.find('\t') == line.npos) throw BadLine{"no tab between columns"};
    Place place;
    place.countries = TakeUntil(line, '\t');
    ReadCoordinates(TakeUntil(line, '\t'), place);
    place.name = TakeUntil(line, '\t');
    place.comment = TakeUntil(line, '\t');
    if (place.name.empty()) throw BadLine{"no name"};
    return place;
}

}  // namespace

std::string_view TakeUntil(std::string_view& text, char divider) {
    std::size_t const end = std::min(text.find(divider), text.size());
    std::string_view const taken = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return taken;
}

std::optional<std::size_t> PlaceNamed(std::vector<Place> const& places, std::string_view name,
                                      std::optional<std::size_t> other) {
    for (std::size_t i = 0; i < places.size(); ++i)
        if (i != other && places[i].name == name) return i;
    return {};
}

PlaceTable ReadPlaces(std::string_view text) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());

    PlaceTable table;
    std::map<std::string, std::size_t, std::less<>> lineOfName;
    for (std::size_t number = 1; !text.empty(); ++number) {
        std::string_view line = TakeUntil(text, '\n');
        if (line.ends_with('\r')) line.remove_suffix(1);
        if (line.empty() || line.starts_with('#')) continue;
        try {
            Place place = ReadPlace(line);
            auto const [first, isNew] = lineOfName.emplace(place.name, number);
            if (!isNew) throw BadLine{place.name + " stands in line " + std::to_string(first->second)};
            table.places.push_back(std::move(place));
        } catch (BadLine const& bad) {
            table.skipped.push_back({number, bad.reason});
        }
    }
    return table;
}

}  // namespace survey
