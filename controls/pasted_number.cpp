#include "controls/pasted_number.h"

#include <tov310/edit_value.h>
#include <tov310/unit_settings.h>

#include "controls/edit_angle_text.h"
#include "util/trim.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <system_error>

namespace tov {
namespace {

constexpr double internationalFoot = 0.3048;
constexpr double surveyFoot = 1200.0 / 3937;

// The words for a unit, in small letters without blanks and points.
struct LengthWord {
    std::string_view word;
    double metres;
};

constexpr LengthWord lengthWords[] = {
    {"m", 1},
    {"metre", 1},
    {"metres", 1},
    {"meter", 1},
    {"meters", 1},
    {"米", 1},
    {"mm", 0.001},
    {"毫米", 0.001},
    {"cm", 0.01},
    {"厘米", 0.01},
    {"dm", 0.1},
    {"分米", 0.1},
    {"km", 1000},
    {"公里", 1000},
    {"千米", 1000},
    {"ft", internationalFoot},
    {"fti", internationalFoot},
    {"foot", internationalFoot},
    {"feet", internationalFoot},
    {"英尺", internationalFoot},
    {"'", internationalFoot},
    {"′", internationalFoot},
    {"fts", surveyFoot},
    {"ftus", surveyFoot},
    {"usft", surveyFoot},
    {"ussurveyfoot", surveyFoot},
    {"ussurveyfeet", surveyFoot},
};

bool IsDigitOfNumber(char c) {
    return c >= '0' && c <= '9';
}

bool IsSeparatorOfNumber(char c) {
    return c == '.' || c == ',';
}

bool IsSmallOrCapital(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// The length of what separates thousands at this place; 0 where nothing does.
std::size_t LengthOfThousandsMark(std::string_view text) {
    if (text.empty()) return 0;
    if (text[0] == ',' || text[0] == '.' || text[0] == ' ' || text[0] == '\'') return 1;
    constexpr std::string_view apostrophe = "’";
    return text.starts_with(apostrophe) ? apostrophe.size() : 0;
}

std::size_t LengthOfDigits(std::string_view text) {
    return std::min(text.find_first_not_of("0123456789"), text.size());
}

double MetresOf(long unit) {
    switch (unit) {
        case TOV_UNIT_US_SURVEY_FEET:
            return surveyFoot;
        case TOV_UNIT_INTERNATIONAL_FEET:
            return internationalFoot;
        default:
            return 1;
    }
}

}  // namespace

std::string WithThousandsJoined(std::string text) {
    std::size_t const first = text.find_first_of("0123456789");
    if (first == text.npos) return text;
    std::string_view rest = std::string_view(text).substr(first);
    std::size_t length = LengthOfDigits(rest);
    if (length > 3) return text;
    std::string joined(text, 0, first + length);
    rest.remove_prefix(length);
    std::string_view mark;
    int groups = 0;
    for (; (length = LengthOfThousandsMark(rest)) != 0; ++groups) {
        // One kind of mark throughout, so that the other one is for the decimals.
        if (groups > 0 && rest.substr(0, length) != mark) break;
        std::string_view const group = rest.substr(length);
        if (LengthOfDigits(group) != 3) break;
        mark = rest.substr(0, length);
        joined.append(group, 0, 3);
        rest = group.substr(3);
    }
    if (groups == 0) return text;
    bool const isDecimal = IsSeparatorOfNumber(mark[0]);
    // One comma or point alone is for the decimals.
    if (isDecimal && groups == 1 && (rest.empty() || !IsSeparatorOfNumber(rest[0]))) return text;
    if (isDecimal && !rest.empty() && rest[0] == mark[0]) return text;
    return joined.append(rest);
}

bool HoldsSeveralNumbers(std::string_view text) {
    bool isBehindDigits = false;  // of a number, and nothing but blanks has come since
    bool isBroken = false;        // and something else has
    bool hasExponent = false;
    int separators = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char const c = text[i];
        bool const isOfNumber = IsDigitOfNumber(c) || IsSeparatorOfNumber(c);
        if (isOfNumber && isBroken && IsDigitOfNumber(c)) return true;
        if (IsSeparatorOfNumber(c)) separators += !isBroken;
        if (separators > 1) return true;
        if (isOfNumber) {
            isBehindDigits = true;
            continue;
        }
        if (!isBehindDigits || isBroken) continue;
        bool const isExponent = (c == 'e' || c == 'E') && !hasExponent && i + 1 < text.size() &&
                                (IsDigitOfNumber(text[i + 1]) || text[i + 1] == '-' || text[i + 1] == '+');
        if (isExponent) {
            hasExponent = true;
            if (!IsDigitOfNumber(text[i + 1])) ++i;
        } else {
            isBroken = true;
        }
    }
    return false;
}

std::string WithoutWords(std::string_view text) {
    std::string plain;
    while (!text.empty()) {
        auto const end = std::find_if_not(text.begin(), text.end(), IsSmallOrCapital);
        auto const length = static_cast<std::size_t>(end - text.begin());
        if (length == 0) {
            plain += text[0];
        } else if (length == 1 && (text[0] | 0x20) == 'e') {
            plain += text[0];
        }
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return plain;
}

std::optional<double> ReadNumberAlone(std::string_view text) {
    std::string digits = WithThousandsJoined(WithPlainSigns(TrimBlanks(text)));
    std::ranges::replace(digits, ',', '.');
    std::string_view rest = digits;
    if (rest.starts_with('+')) rest.remove_prefix(1);
    double number = 0;
    auto const [end, fault] = std::from_chars(rest.data(), rest.data() + rest.size(), number);
    bool const isNumber =
        fault == std::errc() && end == rest.data() + rest.size() && rest.find_first_of("0123456789") < 3;
    return isNumber ? std::optional(number) : std::nullopt;
}

int TovReadDistance(CString& text, long shownUnit, double& metres) {
    metres = 0;
    std::string const plain = WithPlainSigns(text);
    std::size_t const last = plain.find_last_of("0123456789");
    if (last == plain.npos) {
        // A part of a number, as a sign, but no word.
        return plain.find_first_not_of("+-., eE") == plain.npos ? 0 : -1;
    }
    std::size_t end = last + 1;
    if (end < plain.size() && IsSeparatorOfNumber(plain[end]) && end + 1 < plain.size()) ++end;
    std::string word;
    for (char const c : LowerLetters(std::string_view(plain).substr(end))) {
        if (std::string_view(" -+.,()\t").find(c) == std::string_view::npos) word += c;
    }
    if (word.empty() || word == "e") return HoldsSeveralNumbers(plain) ? -1 : 0;
    auto const known = std::ranges::find(lengthWords, word, &LengthWord::word);
    std::optional<double> const number = ReadNumberAlone(std::string_view(plain).substr(0, end));
    if (known == std::end(lengthWords) || !number) return -1;
    if (known->metres == MetresOf(shownUnit)) {
        text.assign(plain, 0, end);
        return 0;
    }
    metres = *number * known->metres;
    return 1;
}

}  // namespace tov
