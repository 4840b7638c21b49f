// White space of ASCII, whatever the locale.
#pragma once

#include <string_view>

namespace tov {

constexpr bool IsBlankChar(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// The text without blanks at its ends.
constexpr std::string_view TrimBlanks(std::string_view text) {
    while (!text.empty() && IsBlankChar(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlankChar(text.back()))
        text.remove_suffix(1);
    return text;
}

}  // namespace tov
