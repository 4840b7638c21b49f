// Messages of validation in the edits.
#pragma once

#include "controls/message_text.h"
#include "frame/resource_module.h"

#include <string>
#include <string_view>

namespace tov {

// "The valid range is MIN to MAX" with both put in.
inline CString RangeMessage(std::string_view minimum, std::string_view maximum) {
    constexpr unsigned rangeText = 26082;
    CString message = LibraryString(rangeText);
    ReplaceFirst(message, "MIN", minimum);
    ReplaceFirst(message, "MAX", maximum);
    return message;
}

// A message with two numbers in the places of its "%d".
inline CString CountMessage(unsigned id, unsigned count, unsigned limit) {
    CString message = LibraryString(id);
    ReplaceFirst(message, "%d", std::to_string(count));
    ReplaceFirst(message, "%d", std::to_string(limit));
    return message;
}

}  // namespace tov
