#include "text.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace survey {
namespace {

constexpr char32_t notACharacter = 0xFFFFFFFF;

// Takes the next character of a text that is not empty; of what is not UTF-8 one byte.
char32_t TakeCharacter(std::string_view& text) {
    auto const lead = static_cast<unsigned char>(text.front());
    std::size_t const length = lead < 0x80 ? 1 : lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t character = length < 2 ? lead : lead & (0x7Fu >> length);
    bool good = length != 0 && lead < 0xF5 && text.size() >= length;
    for (std::size_t i = 1; good && i < length; ++i) {
        auto const byte = static_cast<unsigned char>(text[i]);
        good = (byte & 0xC0) == 0x80;
        character = (character << 6) | (byte & 0x3F);
    }
    // Forms that are longer than need be, halves of pairs, and what lies above the last character.
    constexpr char32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
    good = good && character >= least[length] && character <= 0x10FFFF &&
           (character < 0xD800 || character > 0xDFFF);
    text.remove_prefix(good ? length : 1);
    return good ? character : notACharacter;
}

struct Range {
    char32_t first;
    char32_t last;
};

// Unicode Standard Annex 11 (East Asian Width), classes W and F.
constexpr Range wide[] = {
    {0x1100, 0x115F}, {0x2E80, 0x303E}, {0x3041, 0x33FF},   {0x3400, 0x4DBF},   {0x4E00, 0x9FFF},
    {0xA000, 0xA4CF}, {0xA960, 0xA97C}, {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},
    {0xFF01, 0xFF60}, {0xFFE0, 0xFFE6}, {0x1F300, 0x1F64F}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD},
};

// Combining marks, joiners and variation selectors.
constexpr Range noWidth[] = {
    {0x0300, 0x036F}, {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF}, {0x200B, 0x200F},
    {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F},
};

template <std::size_t count>
bool LiesIn(Range const (&ranges)[count], char32_t character) {
    return std::ranges::any_of(
        ranges, [character](Range const& r) { return r.first <= character && character <= r.last; });
}

bool IsControl(char32_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

std::size_t WidthOf(char32_t character) {
    return LiesIn(noWidth, character) ? 0 : LiesIn(wide, character) ? 2 : 1;
}

}  // namespace

bool IsUtf8(std::string_view text) {
    while (!text.empty()) {
        if (TakeCharacter(text) == notACharacter) return false;
    }
    return true;
}

bool HasControls(std::string_view text, char allowed) {
    while (!text.empty()) {
        char32_t const character = TakeCharacter(text);
        if (allowed != '\0' && character == static_cast<unsigned char>(allowed)) continue;
        if (IsControl(character)) return true;
    }
    return false;
}

std::size_t DisplayWidth(std::string_view text) {
    std::size_t width = 0;
    while (!text.empty())
        width += WidthOf(TakeCharacter(text));
    return width;
}

std::string Shown(std::string_view text) {
    std::string shown;
    while (!text.empty()) {
        std::string_view rest = text;
        char32_t const character = TakeCharacter(rest);
        bool const isGood = character != notACharacter && !IsControl(character);
        shown += isGood ? text.substr(0, text.size() - rest.size()) : "?";
        text = rest;
    }
    return shown;
}

std::string Shortened(std::string_view text, std::size_t width) {
    std::size_t left = DisplayWidth(text);
    if (left <= width) return std::string(text);
    if (width == 0) return "";
    std::size_t const mostInFront = (width - 1) / 2;
    std::string_view rest = text;
    std::size_t front = 0;
    for (std::string_view next = rest;; rest = next) {
        std::size_t const cells = WidthOf(TakeCharacter(next));
        if (front + cells > mostInFront) break;
        front += cells;
    }
    std::string shortened(text.substr(0, text.size() - rest.size()));
    left -= front;
    while (front + 1 + left > width)
        left -= WidthOf(TakeCharacter(rest));
    return shortened.append("…").append(rest);
}

std::string Folded(std::string_view text) {
    std::string folded;
    std::ranges::transform(text, std::back_inserter(folded), [](char c) {
        if (c == '_') return ' ';
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return folded;
}

}  // namespace survey
