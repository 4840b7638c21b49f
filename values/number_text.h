// Numbers to text and back, always with "." whatever the locale.
#pragma once

#include <string>
#include <string_view>

namespace tov {

// One conversion of a printf format.
struct NumberConversion {
    char kind = 'f';        // one of f F e E g G
    bool left = false;      // flag -
    bool plus = false;      // flag +
    bool blank = false;     // flag blank
    bool zeros = false;     // flag 0
    bool full = false;      // flag #: always a point, and all digits of %g
    int width = 0;          // limited to maxNumberWidth
    int precision = 6;      // limited to maxNumberWidth
    bool star = false;      // the precision is an argument
    bool zeroSign = false;  // what prints as zero keeps its "-", as with printf
};

// What is asked for beyond this has no use, and a text from outside may ask for anything.
inline constexpr int maxNumberWidth = 1024;

// Reads a conversion of a floating number, with an "l" or "L" as may be, that begins at the "%" at
// `position`. Answers its length, or 0 where there is none.
std::size_t ReadConversion(std::string_view format, std::size_t position, NumberConversion& conversion);

// Prints as printf does, except that what prints as zero has no "-" unless asked for.
void AppendNumber(std::string& out, double value, NumberConversion const& conversion);

// The number at the start of a text, by the rules of strtod for decimal numbers: blanks, sign, digits with a
// point, exponent; 0 where there is none. What is too large is the largest double.
double ReadNumber(std::string_view text);

// The same for an integer and for a number in single precision, which may be surrounded by anything: they
// move `text` behind what they have read, and answer whether there was anything. Too large ones are limited.
bool ReadField(std::string_view& text, int& value);
bool ReadField(std::string_view& text, float& value);

}  // namespace tov
