// The rules of text that both profile stores share: which paths name a file, how names compare, what counts
// as a blank, how numbers and vectors of numbers are read and written. No rule depends on the locale of the
// process.
#pragma once

#include "util/trim.h"

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tov {

constexpr char FoldAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Hash and equality of names that differ at most in the case of ASCII letters.
struct FoldedHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept {
        std::uint64_t hash = 0xcbf29ce484222325;
        for (char const c : text) {
            hash = (hash ^ static_cast<unsigned char>(FoldAscii(c))) * 0x100000001b3;
        }
        return static_cast<std::size_t>(hash ^ (hash >> 32));
    }
};

struct FoldedEqual {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const noexcept {
        if (a.size() != b.size()) return false;
        for (std::size_t i = 0; i < a.size(); ++i) {
            if (FoldAscii(a[i]) != FoldAscii(b[i])) return false;
        }
        return true;
    }
};

constexpr bool IsProfileSeparator(char c) {
    return c == '/' || c == '\\';
}

// Whether the store of a path is a file; otherwise it is the registry.
constexpr bool NamesProfileFile(std::string_view path) {
    if (!path.empty() && IsProfileSeparator(path.front())) return true;
    for (std::size_t i = 0; i < path.size(); ++i) {
        auto const rest = path.substr(i);
        if (rest.front() == ':' && rest.size() > 1 && IsProfileSeparator(rest[1])) return true;
        if (rest.front() == '.' && FoldedEqual{}(rest.substr(0, 4), ".ini")) return true;
    }
    return false;
}

// The number at the start of a text: blanks, a sign, decimal digits; what follows is ignored and nothing at
// all is 0. Too large a number keeps its lowest 32 bits.
constexpr int ProfileNumber(std::string_view text) {
    while (!text.empty() && IsBlankChar(text.front()))
        text.remove_prefix(1);
    bool const negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    std::uint32_t number = 0;
    for (char const c : text) {
        if (c < '0' || c > '9') break;
        number = number * 10 + static_cast<std::uint32_t>(c - '0');
    }
    return static_cast<int>(negative ? 0 - number : number);
}

inline std::string ProfileNumberText(int number) {
    char digits[16];
    auto const end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    return {digits, end};
}

// Numbers that each have a ";" behind them. An empty piece is passed over; a piece without ";" is no number
// yet and is dropped.
inline void ParseProfileVector(std::string_view text, std::vector<int>& values) {
    values.clear();
    for (;;) {
        auto const end = text.find(';');
        if (end == std::string_view::npos) return;
        if (end > 0) values.push_back(ProfileNumber(text.substr(0, end)));
        text.remove_prefix(end + 1);
    }
}

inline std::string ProfileVectorText(std::vector<int> const& values) {
    std::string text;
    for (int const value : values) {
        text += ProfileNumberText(value);
        text += ';';
    }
    return text;
}

// At most so many bytes of a text, cut between two UTF-8 characters. A text that is no UTF-8 is cut where the
// limit falls.
constexpr std::string_view CutProfileText(std::string_view text, std::size_t limit) {
    if (text.size() <= limit) return text;
    auto const continues = [&](std::size_t at) {
        return (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
    };
    for (std::size_t cut = limit; cut > 0 && limit - cut < 4; --cut) {
        if (!continues(cut)) return text.substr(0, cut);
    }
    return text.substr(0, limit);
}

// A line end would break the text of a file, and a list of entries, in two.
inline bool HasLineEnd(std::string_view text) {
    return text.find_first_of("\r\n") != std::string_view::npos;
}

}  // namespace tov
