#include "util/name_pattern.h"

#include "util/case_fold.h"

#include <array>
#include <cstddef>

namespace tov {
namespace {

bool MatchesFolded(std::u32string_view pattern, std::u32string_view name) {
    std::size_t p = 0, n = 0;
    std::size_t star = std::u32string_view::npos, taken = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == U'*') {
            star = p++;
            taken = n;
        } else if (p < pattern.size() && (pattern[p] == U'?' || pattern[p] == name[n])) {
            ++p;
            ++n;
        } else if (star != std::u32string_view::npos) {
            p = star + 1;  // the last star takes one character more
            n = ++taken;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == U'*')
        ++p;
    return p == pattern.size();
}

}  // namespace

char32_t TakeFolded(std::string_view& text) {
    auto const byte = [&text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    unsigned char const first = byte(0);
    if (first < 0x80) {
        text.remove_prefix(1);
        return FoldCase(first);
    }
    struct Form {
        unsigned mask, mark;
        std::size_t more;
        char32_t least;
    };
    constexpr Form forms[] = {{0xE0, 0xC0, 1, 0x80}, {0xF0, 0xE0, 2, 0x800}, {0xF8, 0xF0, 3, 0x10000}};
    for (Form const& form : forms) {
        if ((first & form.mask) != form.mark || text.size() <= form.more) continue;
        char32_t character = first & ~form.mask & 0xFF;
        std::size_t i = 1;
        for (; i <= form.more && (byte(i) & 0xC0) == 0x80; ++i)
            character = character << 6 | (byte(i) & 0x3F);
        if (i <= form.more || character < form.least || character > 0x10FFFF ||
            (character >= 0xD800 && character < 0xE000))
            break;
        text.remove_prefix(i);
        return FoldCase(character);
    }
    text.remove_prefix(1);
    return strayByte + first;
}

NamePattern::NamePattern(std::string_view pattern) {
    m_matchesAll = pattern == "*.*" || pattern == "*";
    while (!pattern.empty())
        m_pattern += TakeFolded(pattern);
    // Letters that fold into ASCII from outside it are left to the full comparison.
    char32_t const last = m_pattern.empty() ? U'*' : m_pattern.back();
    if (last != U'*' && last != U'?' && last != U'k' && last != U's' && last < 0x80) m_last = last;
}

bool NamePattern::Matches(std::string_view name) const {
    if (m_matchesAll) return true;
    if (m_last != 0 && (name.empty() || FoldCase(static_cast<unsigned char>(name.back())) != m_last))
        return false;
    std::array<char32_t, 256> few;
    std::u32string many;
    std::size_t length = 0;
    if (name.size() > few.size()) many.resize(name.size());
    char32_t* const folded = name.size() > few.size() ? many.data() : few.data();
    while (!name.empty())
        folded[length++] = TakeFolded(name);
    return MatchesFolded(m_pattern, {folded, length});
}

bool IsSameName(std::string_view a, std::string_view b) {
    while (!a.empty() && !b.empty()) {
        if (TakeFolded(a) != TakeFolded(b)) return false;
    }
    return a.empty() && b.empty();
}

}  // namespace tov
