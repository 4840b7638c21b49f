// Numbers that come in as one text, by paste, drop or input method.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tov {

// "1.234,56", "1,234.56", "1'234.56" and "1 234 567" without what separates thousands: groups of three
// digits each. Other texts stay as they are.
std::string WithThousandsJoined(std::string text);

// Whether, without its words, the text would be a number that does not stand in it: digits on both sides of
// what is no part of a number, or more than one decimal separator.
bool HoldsSeveralNumbers(std::string_view text);

// The text without its words; an "e" that stands alone may be an exponent's.
std::string WithoutWords(std::string_view text);

// A whole text as a number; it may have spaces around it, and a comma or a point.
std::optional<double> ReadNumberAlone(std::string_view text);

}  // namespace tov
