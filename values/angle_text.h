// Reading an angle that was typed in fields.
#pragma once

#include <string_view>

namespace tov {

struct AngleFields {
    int sign = 1;
    int whole = 0;      // degrees or gon, not negative
    int minutes = 0;    // or c, not negative
    float seconds = 0;  // or cc, not negative; single precision limits what can be typed
};

// Reads whole units, minutes and seconds from a text in which everything but digits, "-" and "." separates.
// What is missing is 0, what is too large is limited. Any field with a "-", and a "-" before the first, make
// the angle negative. With trimmed, as for text from which leading zeros were cut, the field with a "." is
// the seconds and the fields before it are minutes and whole units.
AngleFields ReadAngleFields(std::string_view text, bool trimmed);

}  // namespace tov
