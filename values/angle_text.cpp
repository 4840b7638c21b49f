#include "values/angle_text.h"

#include "values/number_text.h"

#include <cmath>
#include <cstdlib>
#include <string>

namespace tov {
namespace {

// Only what belongs to numbers is left, with one blank for every other character. A "-" or "." takes the
// blanks behind it away, so that "-  0" is a number.
std::string Cleaned(std::string_view text) {
    std::string clean;
    clean.reserve(text.size());
    for (char const c : text) {
        bool const continues = (static_cast<unsigned char>(c) & 0xC0) == 0x80;
        if ((c >= '0' && c <= '9') || c == '-' || c == '.') {
            clean += c;
        } else if (!continues && !clean.ends_with('-') && !clean.ends_with('.')) {
            clean += ' ';
        }
    }
    clean.erase(clean.find_last_not_of(' ') + 1);
    clean.erase(0, clean.find_first_not_of(' '));
    return clean;
}

}  // namespace

AngleFields ReadAngleFields(std::string_view text, bool trimmed) {
    std::string const clean = Cleaned(text);
    std::string_view rest = clean;
    int whole = 0;
    int minutes = 0;
    float seconds = 0;
    std::size_t const point = trimmed ? clean.find('.') : std::string::npos;
    if (point != std::string::npos) {
        // The field with the point begins behind the last blank or "-" before it.
        std::size_t start = clean.find_last_not_of("0123456789", point - 1);
        start = point == 0 || start == std::string::npos ? 0 : clean[start] == '-' ? start : start + 1;
        std::string_view before = rest.substr(0, start);
        int fields[2] = {0, 0};
        for (int field = 0; ReadField(before, field);) {
            fields[0] = fields[1];
            fields[1] = field;
        }
        whole = fields[0];
        minutes = fields[1];
        rest = rest.substr(start);
        ReadField(rest, seconds);
    } else if (ReadField(rest, whole) && ReadField(rest, minutes)) {
        ReadField(rest, seconds);
    }
    bool const negative = clean.starts_with('-') || whole < 0 || minutes < 0 || seconds < 0;
    return {negative ? -1 : 1, std::abs(whole), std::abs(minutes), std::fabs(seconds)};
}

}  // namespace tov
