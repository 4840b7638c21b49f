#include "controls/edit_angle_text.h"

#include "frame/resource_module.h"
#include "util/trim.h"
#include "values/number_text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <utility>

namespace tov {
namespace {

constexpr unsigned northLetterText = 26011;
constexpr unsigned southLetterText = 26012;
constexpr unsigned eastLetterText = 26013;
constexpr unsigned westLetterText = 26014;

struct Hemisphere {
    eSignType pair;
    bool isSouthOrWest;
};

// What the signs and words of the fields are: for which part they stand behind it, and how it is divided.
struct Mark {
    int part;
    AngleDivision division;
    double factor = 1;  // of the number
};

struct Spelling {
    std::string_view text;
    Mark mark;
};

using enum AngleDivision;

constexpr Spelling markSpellings[] = {
    {"°", {0, kSexagesimal}},   {"º", {0, kSexagesimal}},         {"˚", {0, kSexagesimal}},
    {"度", {0, kSexagesimal}},  {"'", {1, kSexagesimal}},         {"′", {1, kSexagesimal}},
    {"’", {1, kSexagesimal}},   {"´", {1, kSexagesimal}},         {"分", {1, kSexagesimal}},
    {"\"", {2, kSexagesimal}},  {"″", {2, kSexagesimal}},         {"”", {2, kSexagesimal}},
    {"秒", {2, kSexagesimal}},  {"d", {0, kSexagesimal}},         {"deg", {0, kSexagesimal}},
    {"dec", {0, kSexagesimal}}, {"degree", {0, kSexagesimal}},    {"degrees", {0, kSexagesimal}},
    {"m", {1, kSexagesimal}},   {"min", {1, kSexagesimal}},       {"sec", {2, kSexagesimal}},
    {"g", {0, kCentesimal}},    {"gon", {0, kCentesimal}},        {"gr", {0, kCentesimal}},
    {"grad", {0, kCentesimal}}, {"grads", {0, kCentesimal}},      {"c", {1, kCentesimal}},
    {"cc", {2, kCentesimal}},   {"mgon", {0, kCentesimal, 1e-3}}, {"rad", {0, kRadians}},
    {"rev", {0, kTurns}},
};

constexpr std::pair<std::string_view, Hemisphere> hemisphereSpellings[] = {
    {"n", {eSignNorthSouth, false}}, {"s", {eSignNorthSouth, true}},   {"e", {eSignEastWest, false}},
    {"w", {eSignEastWest, true}},    {"北", {eSignNorthSouth, false}}, {"南", {eSignNorthSouth, true}},
    {"东", {eSignEastWest, false}},  {"東", {eSignEastWest, false}},   {"西", {eSignEastWest, true}},
};

bool IsAsciiLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool IsDigitOfAngle(char c) {
    return c >= '0' && c <= '9';
}

std::size_t LengthOfCharacter(std::string_view text) {
    std::size_t length = 1;
    while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)
        ++length;
    return length;
}

std::string Utf8Of(char32_t character) {
    auto const byte = [character](unsigned lead, unsigned shift) {
        return static_cast<char>(lead | ((character >> shift) & (lead == 0x80 ? 0x3FU : 0x3FU >> 1)));
    };
    if (character < 0x80) return std::string(1, static_cast<char>(character));
    if (character < 0x800) return {byte(0xC0, 6), byte(0x80, 0)};
    if (character < 0x10000) return {byte(0xE0, 12), byte(0x80, 6), byte(0x80, 0)};
    return {byte(0xF0, 18), byte(0x80, 12), byte(0x80, 6), byte(0x80, 0)};
}

// One comma between digits is a decimal point where there is no other one; all others separate.
std::string WithPoint(std::string text) {
    std::size_t const comma = text.find(',');
    bool const isPoint = comma != text.npos && comma > 0 && comma + 1 < text.size() &&
                         text.find(',', comma + 1) == text.npos && text.find('.') == text.npos &&
                         IsDigitOfAngle(text[comma - 1]) && IsDigitOfAngle(text[comma + 1]);
    if (isPoint) text[comma] = '.';
    return text;
}

class AngleReader {
 public:
    explicit AngleReader(std::string_view text) : m_rest(TrimBlanks(text)) {}

    std::optional<WrittenAngle> Read() {
        bool isBare = true;
        while (!m_rest.empty()) {
            char const c = m_rest.front();
            if (IsBlankChar(c) || c == ':' || c == ';' || c == ',') {
                m_rest.remove_prefix(1);
                m_isAdjacent = false;
                // Separators other than blanks stand between numbers.
                if (!IsBlankChar(c) && (m_count == 0 || !IsDigitNext())) return {};
            } else if (c == '-' || c == '+') {
                if (!TakeDash(c)) return {};
            } else if (IsDigitOfAngle(c) || c == '.') {
                if (!TakeNumber()) return {};
            } else if (!TakeHemisphereOrMark()) {
                return {};
            } else {
                isBare = false;
            }
        }
        return Finish(isBare);
    }

 private:
    bool IsDigitNext() const {
        std::size_t const next = m_rest.find_first_not_of(" \t");
        return next != m_rest.npos && (IsDigitOfAngle(m_rest[next]) || m_rest[next] == '.');
    }

    // A sign before the first number; behind one a dash separates.
    bool TakeDash(char c) {
        bool const wasAdjacent = std::exchange(m_isAdjacent, false);
        m_rest.remove_prefix(1);
        if (!IsDigitNext()) return false;
        // "12 -34" are two numbers rather than one angle.
        if (m_count > 0) return c == '-' && (wasAdjacent || IsBlankChar(m_rest[0]));
        if (m_angle.hasSign) return false;
        m_angle.hasSign = true;
        m_angle.isNegative = c == '-';
        return true;
    }

    bool TakeNumber() {
        std::size_t const length = std::min(m_rest.find_first_not_of("0123456789."), m_rest.size());
        std::string_view const digits = m_rest.substr(0, length);
        auto const points = std::count(digits.begin(), digits.end(), '.');
        constexpr std::size_t most = 40;
        if (m_count == 3 || points > 1 || digits == "." || length > most) return false;
        // Only the last part has decimals.
        if (m_angle.hasPoint) return false;
        m_angle.hasPoint = points != 0;
        m_numbers[m_count] = ReadNumber(digits);
        m_parts[m_count] = m_count == 0 ? 0 : m_parts[m_count - 1] + 1;
        ++m_count;
        m_rest.remove_prefix(length);
        m_isAdjacent = true;
        return true;
    }

    bool TakeHemisphereOrMark() {
        if (m_count > 0 && m_rest.starts_with("''")) {
            m_rest.remove_prefix(2);
            return TakeMark({2, kSexagesimal});
        }
        std::size_t length = 0;
        while (length < m_rest.size() && IsAsciiLetter(m_rest[length]))
            ++length;
        if (length == 0) length = LengthOfCharacter(m_rest);
        std::string const word = LowerLetters(m_rest.substr(0, length));
        // "12d34m56s": behind minutes that are told by a letter it is the seconds' letter too.
        if (m_rest[0] == 's' && length <= 2 && m_isAdjacent && m_isMinuteLetter &&
            m_parts[m_count - 1] == 2) {
            m_rest.remove_prefix(1);  // what follows is the letter of a hemisphere
            return TakeMark({2, kSexagesimal});
        }
        for (Spelling const& spelling : markSpellings) {
            if (word != spelling.text) continue;
            m_rest.remove_prefix(length);
            m_isMinuteLetter = word[0] == 'm';
            return TakeMark(spelling.mark);
        }
        for (auto const& [text, hemisphere] : hemisphereSpellings) {
            if (word == text) return TakeHemisphere(hemisphere, length);
        }
        for (eSignType const pair : {eSignNorthSouth, eSignEastWest}) {
            for (bool const negative : {false, true}) {
                std::string const letter = HemisphereLetter(pair, negative);
                if (!letter.empty() && m_rest.starts_with(letter))
                    return TakeHemisphere({pair, negative}, letter.size());
            }
        }
        return false;
    }

    bool TakeHemisphere(Hemisphere const& hemisphere, std::size_t length) {
        m_rest.remove_prefix(length);
        m_isAdjacent = false;
        if (m_angle.hemisphere != eSignPlusMinus) return false;
        m_angle.hemisphere = hemisphere.pair;
        m_angle.isSouthOrWest = hemisphere.isSouthOrWest;
        m_isHemisphereFirst = m_count == 0;
        m_countAtHemisphere = m_count;
        return true;
    }

    // Says which part the last number is.
    bool TakeMark(Mark const& mark) {
        if (m_count == 0 || m_marked == m_count) return false;
        if (m_angle.division != kOfTheUnit && m_angle.division != mark.division) return false;
        std::size_t const last = m_count - 1;
        if (last > 0 && mark.part <= m_parts[last - 1]) return false;
        m_angle.division = mark.division;
        m_parts[last] = mark.part;
        m_numbers[last] *= mark.factor;
        m_marked = m_count;
        m_isAdjacent = true;
        return true;
    }

    std::optional<WrittenAngle> Finish(bool isBare) {
        bool const isAround =
            m_angle.hemisphere != eSignPlusMinus && !m_isHemisphereFirst && m_countAtHemisphere != m_count;
        if (m_count == 0 || isAround) return {};
        if (m_angle.hasSign && m_angle.hemisphere != eSignPlusMinus) return {};
        if (m_count > 1 && (m_angle.division == kRadians || m_angle.division == kTurns)) return {};
        double const base = m_angle.division == kCentesimal ? 100 : 60;
        for (std::size_t i = 0; i < m_count; ++i) {
            if (m_parts[i] > 2) return {};
            // The first number may be of any size: 5430" is an angle.
            if (i > 0 && m_angle.division != kOfTheUnit && m_numbers[i] >= base) return {};
            m_angle.parts[m_parts[i]] = m_numbers[i];
        }
        m_angle.isBare = isBare && m_count == 1;
        return m_angle;
    }

    std::string_view m_rest;
    WrittenAngle m_angle;
    std::array<double, 3> m_numbers{};
    std::array<int, 3> m_parts{};
    std::size_t m_count = 0;
    std::size_t m_marked = 0;  // the number that the last mark was of
    std::size_t m_countAtHemisphere = 0;
    bool m_isHemisphereFirst = false;
    bool m_isAdjacent = false;      // nothing stands between the last number or mark and what comes
    bool m_isMinuteLetter = false;  // the last mark was "m" or "min"
};

}  // namespace

std::string WithPlainSigns(std::string_view text) {
    static constexpr std::string_view dashes[] = {"−", "‐", "‑", "‒", "–", "—", "﹣"};
    static constexpr std::string_view blanks[] = {"\u00a0", "\u2007", "\u2009", "\u202f", "\u3000"};
    std::string plain;
    plain.reserve(text.size());
    while (!text.empty()) {
        std::string_view const character = text.substr(0, LengthOfCharacter(text));
        text.remove_prefix(character.size());
        auto const isOne = [&](auto const& list) {
            return std::find(std::begin(list), std::end(list), character) != std::end(list);
        };
        if (isOne(dashes)) {
            plain += '-';
        } else if (isOne(blanks)) {
            plain += ' ';
        } else if (character.size() == 3 && character[0] == '\xef' &&
                   (character[1] == '\xbc' || character[1] == '\xbd')) {
            // U+FF01 to U+FF5E are the characters from "!" to "~".
            unsigned const code = (static_cast<unsigned char>(character[1]) & 0x3FU) << 6 |
                                  (static_cast<unsigned char>(character[2]) & 0x3FU);
            constexpr unsigned firstWide = 0xF01 & 0xFFF;
            constexpr unsigned lastWide = 0xF5E & 0xFFF;
            if (code >= firstWide && code <= lastWide) plain += static_cast<char>(code - firstWide + '!');
        } else {
            plain += character;
        }
    }
    return plain;
}

std::string HemisphereLetter(eSignType type, bool negative) {
    unsigned id = 0;
    switch (type) {
        case eSignNorthSouth:
            id = negative ? southLetterText : northLetterText;
            break;
        case eSignEastWest:
            id = negative ? westLetterText : eastLetterText;
            break;
        default:
            return {};
    }
    std::string letter = LibraryString(id);
    for (char& c : letter) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return letter;
}

std::string LowerLetters(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return lower;
}

int CountCharacters(std::string_view text) {
    return static_cast<int>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::size_t OffsetOfCharacter(std::string_view text, int position) {
    std::size_t offset = 0;
    for (; position > 0 && offset < text.size(); --position)
        offset += LengthOfCharacter(text.substr(offset));
    return offset;
}

bool IsHemisphereCharacter(eSignType type, bool negative, char32_t character) {
    std::string const letter = LowerLetters(Utf8Of(character));
    if (letter == LowerLetters(HemisphereLetter(type, negative))) return true;
    return std::any_of(std::begin(hemisphereSpellings), std::end(hemisphereSpellings),
                       [&](auto const& spelling) {
                           return spelling.first == letter && spelling.second.pair == type &&
                                  spelling.second.isSouthOrWest == negative;
                       });
}

int PartOfMark(char32_t character) {
    std::string const text = LowerLetters(Utf8Of(character));
    auto const found = std::find_if(std::begin(markSpellings), std::end(markSpellings),
                                    [&](Spelling const& spelling) { return spelling.text == text; });
    return found != std::end(markSpellings) ? found->mark.part : -1;
}

std::optional<WrittenAngle> ReadWrittenAngle(std::string_view text) {
    constexpr std::size_t longest = 200;
    if (text.size() > longest) return {};
    std::string const plain = WithPoint(WithPlainSigns(text));
    return AngleReader(plain).Read();
}

}  // namespace tov
