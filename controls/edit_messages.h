// Messages of validation in the edits.
#pragma once

#include <string>
#include <string_view>

namespace tov {

// "The valid range is MIN to MAX" with both put in.
std::string RangeMessage(std::string_view minimum, std::string_view maximum);

// A message with two numbers in the places of its "%d".
std::string CountMessage(unsigned id, unsigned long count, unsigned long limit);

}  // namespace tov
