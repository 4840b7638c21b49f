// What is wrong with a resource in JSON, in words.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace tov {

// The parser's words without its class in brackets. It quotes what it read last, which need not be whole
// characters.
inline std::string WordsOfParser(std::string_view what) {
    if (auto const bracket = what.find("] "); bracket != what.npos) what.remove_prefix(bracket + 2);
    std::string words(what);
    std::replace_if(
        words.begin(), words.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; }, '?');
    return words;
}

}  // namespace tov
