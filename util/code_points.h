// Texts by their characters: positions and lengths as users count them.
#pragma once

#include <tov310/types.h>

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace tov {

// Takes the first character off a text that is not empty. Where a byte belongs
// to none it is taken alone and the answer is U+FFFD.
constexpr char32_t TakeCharacter(std::string_view& text) {
    constexpr char32_t smallest[] = {0, 0x80, 0x800, 0x10000};
    auto const lead = static_cast<unsigned char>(text.front());
    std::size_t const more = lead >= 0xC2 && lead < 0xE0   ? 1
                             : lead >= 0xE0 && lead < 0xF0 ? 2
                             : lead >= 0xF0 && lead < 0xF5 ? 3
                                                           : 0;
    char32_t character = more == 0 ? lead : lead & (0x3Fu >> more);
    bool valid = (more != 0 || lead < 0x80) && text.size() > more;
    for (std::size_t i = 1; valid && i <= more; ++i) {
        auto const next = static_cast<unsigned char>(text[i]);
        valid = (next & 0xC0) == 0x80;
        character = character << 6 | (next & 0x3F);
    }
    valid = valid && character >= smallest[more] && character <= 0x10FFFF &&
            (character < 0xD800 || character > 0xDFFF);
    text.remove_prefix(valid ? more + 1 : 1);
    return valid ? character : 0xFFFD;
}

inline void AppendCharacter(CString& text, char32_t character) {
    auto const put = [&](char32_t byte) { text += static_cast<char>(byte); };
    if (character < 0x80) return put(character);
    if (character < 0x800) {
        put(0xC0 | character >> 6);
    } else {
        if (character < 0x10000) {
            put(0xE0 | character >> 12);
        } else {
            put(0xF0 | character >> 18);
            put(0x80 | (character >> 12 & 0x3F));
        }
        put(0x80 | (character >> 6 & 0x3F));
    }
    put(0x80 | (character & 0x3F));
}

constexpr std::size_t CharacterCount(std::string_view text) {
    std::size_t count = 0;
    for (; !text.empty(); ++count)
        TakeCharacter(text);
    return count;
}

// Where in the text, in bytes, the character with the number stands; its end
// for all numbers behind it.
constexpr std::size_t CharacterOffset(std::string_view text, std::size_t number) {
    std::string_view rest = text;
    for (; number > 0 && !rest.empty(); --number)
        TakeCharacter(rest);
    return text.size() - rest.size();
}

// The characters from `first` up to `end`.
constexpr std::string_view Characters(std::string_view text, std::size_t first, std::size_t end) {
    std::size_t const begin = CharacterOffset(text, first);
    text.remove_prefix(begin);
    return text.substr(0, CharacterOffset(text, end > first ? end - first : 0));
}

}  // namespace tov
