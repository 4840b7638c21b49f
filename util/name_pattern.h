// Patterns of file names.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tov {

// "*" stands for any text and "?" for one character; "*.*" matches every name, one without a dot too. The
// case of letters does not count. A byte that is not UTF-8 is a character of its own.
class NamePattern {
 public:
    explicit NamePattern(std::string_view pattern);

    bool Matches(std::string_view name) const;

 private:
    std::u32string m_pattern;  // folded
    bool m_matchesAll = false;
    char32_t m_last = 0;  // the character of ASCII that every name that matches ends in; 0 for none
};

// Takes the next character of a text that is not empty off it and answers it without its case. A byte that is
// not UTF-8 is one character, from strayByte on.
inline constexpr char32_t strayByte = 0x110000;
char32_t TakeFolded(std::string_view& text);

// Whether two names differ in the case of letters at most.
bool IsSameName(std::string_view a, std::string_view b);

}  // namespace tov
