#include <tov310/text.h>

#include "frame/resource_module.h"
#include "vesk/immortal.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string_view>
#include <utility>

namespace tov {
namespace {

// The decimal point may be more than one byte.
CString DecimalPoint() {
    char digits[16];
    int const length = std::snprintf(digits, sizeof digits, "%.1f", 1.1);
    return length > 2 ? CString(digits + 1, static_cast<std::size_t>(length - 2)) : CString(".");
}

bool StartsCharacter(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
}

void CutCharacters(CString& text, std::size_t most) {
    std::size_t at = 0;
    for (; at < text.size(); ++at) {
        if (StartsCharacter(text[at]) && most-- == 0) break;
    }
    text.resize(at);
}

// Each word for true stands before that for false.
struct BooleanWords {
    std::array<CString, 6> texts;

    BooleanWords() {
        unsigned id = 26015;
        for (CString& text : texts)
            text = LibraryString(id++);
    }
};

// The number of a name such as "Report (2)", and where its bracket opens; 0 for a name without one.
int RowNumber(std::string_view name, std::size_t& bracket) {
    bracket = name.rfind('(');
    if (!name.ends_with(')') || bracket == name.npos || bracket < 2 || name[bracket - 1] != ' ') return 0;
    char const* const end = name.data() + name.size() - 1;
    char const* const begin = name.data() + bracket + 1;
    int number = 0;
    auto const [stop, failure] = std::from_chars(begin, end, number);
    return failure == std::errc() && stop == end && number > 0 ? number : 0;
}

}  // namespace

void TovTrimTrailingZeros(CString& text) {
    CString const point = DecimalPoint();
    std::size_t const at = text.find(point);
    if (at == text.npos) return;
    std::size_t const firstDecimal = at + point.size();
    std::size_t end = text.size();
    while (end > firstDecimal + 1 && text[end - 1] == '0')
        --end;
    text.resize(end);
}

CString TovAdvancedFormatDouble(double const& value) {
    char text[64];
    double const x = std::fabs(value);
    if (x <= 1e-11 || x >= 1e13) {
        std::snprintf(text, sizeof text, "%g", value);
        return text;
    }
    int const decimals = x < 1 ? 5 - static_cast<int>(std::floor(std::log10(x))) : 5;
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    CString trimmed = text;
    TovTrimTrailingZeros(trimmed);
    return trimmed;
}

char const* TovBooleanAsString(int value, eTovBooleanType type) {
    static Immortal<BooleanWords> words;
    if (type < eTovBooleanYesNo || type > eTovBooleanOnOff) return "";
    auto const pair = static_cast<std::size_t>(type - eTovBooleanYesNo) * 2;
    return words->texts[pair + (value == 0)].c_str();
}

CString TovIncrementString(char const* text, int maxLength) {
    CString name = text != nullptr ? text : "";
    if (name.empty()) return name;
    if (maxLength == 0) maxLength = 260;
    maxLength = std::max(maxLength, 0);

    int count = 1;
    std::size_t bracket = 0;
    if (int const number = RowNumber(name, bracket); number != 0) {
        if (number == std::numeric_limits<int>::max()) return {};
        count = number;
        name.resize(bracket);
        name.resize(name.find_last_not_of(" \t\n\v\f\r") + 1);
    }
    CString const suffix = " (" + std::to_string(count + 1) + ")";
    int const room = maxLength - static_cast<int>(suffix.size()) - 1;
    CutCharacters(name, room > 0 ? static_cast<std::size_t>(room) : 0);
    return name + suffix;
}

void TovExtractTokens(char const* text, std::vector<CString>& tokens) {
    std::string_view rest = text != nullptr ? text : "";
    std::vector<CString> found;
    for (;;) {
        std::size_t const open = rest.find('"');
        if (open == rest.npos) break;
        std::size_t const close = rest.find('"', open + 1);
        if (close == rest.npos) break;
        if (close > open + 1) found.emplace_back(rest.substr(open + 1, close - open - 1));
        rest.remove_prefix(close + 1);
    }
    tokens = std::move(found);
}

unsigned int TovExtractSubstrings(char const* text, char const* separators, std::vector<CString>& pieces) {
    std::string_view const all = text != nullptr ? text : "";
    std::string_view const cuts = separators != nullptr ? separators : "";
    std::vector<CString> found;
    std::size_t begin = 0;
    for (std::size_t at = 0; at < all.size();) {
        std::size_t length = 1;
        while (at + length < all.size() && !StartsCharacter(all[at + length]))
            ++length;
        if (cuts.find(all.substr(at, length)) != cuts.npos) {
            found.emplace_back(all.substr(begin, at - begin));
            begin = at + length;
        }
        at += length;
    }
    if (begin < all.size()) found.emplace_back(all.substr(begin));
    pieces = std::move(found);
    return static_cast<unsigned>(pieces.size());
}

}  // namespace tov
