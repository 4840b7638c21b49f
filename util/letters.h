// What kind of character it is, and its cases, in every script and whatever the
// locale.
#pragma once

#include <string_view>

namespace tov {

// A letter, or a mark that stands on one.
bool IsLetter(char32_t character);

// A digit from 0 to 9 of any script.
bool IsDecimalDigit(char32_t character);

// White space, no-break and ideographic spaces included.
bool IsSpaceCharacter(char32_t character);

// The capital and the small letter where it is one character; other characters
// stay.
char32_t ToLowerCase(char32_t character);
char32_t ToUpperCase(char32_t character);

// The text without white space at the wanted ends.
std::string_view TrimmedSpaces(std::string_view text, bool left, bool right);

}  // namespace tov
