#include "mail/mail_text.h"

#include "mail/transfer_encoding.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string>

namespace tov {
namespace {

constexpr std::size_t foldColumn = 76;      // RFC 5322 asks for at most 78
constexpr std::size_t mostInOneLine = 900;  // RFC 5321 takes no more than 998
constexpr std::size_t mostQuoted = 60;      // longer names get lines of their own

constexpr bool IsPrintableAscii(char c) {
    return c >= ' ' && c <= '~';
}

// Whether it arrives as it stands: readers take blanks away at the ends, also between quotes.
bool IsPlainHeader(std::string_view text) {
    bool const isBlankAround = !text.empty() && (text.front() == ' ' || text.back() == ' ');
    return !isBlankAround && std::ranges::all_of(text, IsPrintableAscii) && text.find("=?") == text.npos;
}

// Where there is no charset to name, one in which every byte is a character.
std::string_view CharsetOf(std::string_view text) {
    return IsUtf8Text(text) ? "utf-8" : "iso-8859-1";
}

// How many of the first bytes are whole characters, at most the given number. It is larger than any
// character.
std::size_t WholeCharacters(std::string_view text, std::string_view charset, std::size_t most) {
    if (text.size() <= most) return text.size();
    auto const continues = [text](std::size_t i) {
        return (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80;
    };
    while (charset == "utf-8" && continues(most))
        --most;
    return most;
}

// Encoded words of RFC 2047, each on a line of its own. A word holds whole characters.
CString EncodedWords(std::string_view text) {
    constexpr std::size_t mostBytes = 36;  // with the longer charset and the name of the field 76 characters
    std::string_view const charset = CharsetOf(text);
    CString words;
    while (!text.empty()) {
        std::size_t const length = WholeCharacters(text, charset, mostBytes);
        CString const code = EncodedBase64(text.substr(0, length));
        if (!words.empty()) words += "\r\n ";
        words.append("=?").append(charset).append("?B?").append(code).append("?=");
        text.remove_prefix(length);
    }
    return words;
}

// A name in front of an address, with what stands between them.
CString Phrase(std::string_view name) {
    if (name.empty()) return {};
    if (!IsPlainHeader(name) || name.size() > mostQuoted) return EncodedWords(name) + "\r\n ";
    CString quoted = "\"";
    for (char const c : name) {
        if (c == '"' || c == '\\') quoted += '\\';
        quoted += c;
    }
    return quoted += "\" ";
}

// Plain text with line ends in front of blanks, so that unfolding gives it back. False where a word is too
// long.
bool FoldPlain(std::string_view text, std::size_t column, CString& folded) {
    while (!text.empty()) {
        std::size_t end = text.find_first_not_of(' ');
        end = std::min(text.find(' ', end), text.size());
        if (end > mostInOneLine) return false;
        if (column != 0 && column + end > foldColumn && text.front() == ' ') {
            folded += "\r\n";
            column = 0;
        }
        folded += text.substr(0, end);
        column += end;
        text.remove_prefix(end);
    }
    return true;
}

}  // namespace

CString HeaderText(std::string_view text) {
    CString line(text);
    std::ranges::replace_if(
        line, [](char c) { return c == '\r' || c == '\n' || c == '\0'; }, ' ');
    return line;
}

bool IsUtf8Text(std::string_view text) {
    auto const byteAt = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    for (std::size_t i = 0; i < text.size();) {
        unsigned const first = byteAt(i);
        if (first < 0x80) {
            ++i;
            continue;
        }
        std::size_t const length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
        if (first < 0xC2 || first > 0xF4 || length > text.size() - i) return false;
        std::uint32_t code = first & (0x7FU >> length);
        for (std::size_t k = 1; k < length; ++k) {
            if ((byteAt(i + k) & 0xC0) != 0x80) return false;
            code = code << 6 | (byteAt(i + k) & 0x3FU);
        }
        constexpr std::uint32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
        if (code < least[length] || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return false;
        i += length;
    }
    return true;
}

CString CharsetFor(std::string_view declared, std::string_view text) {
    CString name(declared);
    std::ranges::transform(name, name.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? c + 32 : c; });
    // They switch between sets of characters with bytes of ASCII.
    bool const switches = name.starts_with("iso-2022-") || name == "utf-7" || name == "hz-gb-2312";
    return IsUtf8Text(text) &&
                   !(switches && std::ranges::all_of(text, [](char c) { return (c & 0x80) == 0; }))
               ? "utf-8"
               : CString(declared);
}

CString UnstructuredLine(std::string_view name, std::string_view text) {
    CString const clean = HeaderText(text);
    CString line(name);
    line += ": ";
    CString folded;
    bool const isPlain = IsPlainHeader(clean) && FoldPlain(clean, line.size(), folded);
    line += isPlain ? folded : EncodedWords(clean);
    return line += "\r\n";
}

CString AddressLine(std::string_view name, TovMailHelper::MAIL_ADDRESS const* addresses, std::size_t count) {
    CString line(name);
    line += ": ";
    std::size_t column = line.size();
    for (std::size_t i = 0; i < count; ++i) {
        CString one = Phrase(HeaderText(addresses[i].name));
        one.append("<").append(HeaderText(addresses[i].address)).append(">");
        if (i != 0) {
            line += ',';
            bool const fits = column + one.size() + 2 <= foldColumn;
            line += fits ? " " : "\r\n ";
            if (!fits) column = 1;
        }
        line += one;
        column += one.size() + 2;
    }
    return FoldedLines(line);
}

CString Parameter(std::string_view name, std::string_view text) {
    constexpr char hex[] = "0123456789ABCDEF";
    constexpr std::string_view safeMarks = ".-_";
    constexpr std::size_t bytesInPiece = 16;  // of which each may become three characters
    CString const clean = HeaderText(text);
    CString line;
    auto const begin = [&](std::string_view mark) {
        line.append(";\r\n ").append(name).append(mark).append("=");
    };
    if (clean.size() <= mostQuoted && IsPlainHeader(clean) && clean.find_first_of("\"\\") == clean.npos) {
        begin("");
        return line.append("\"").append(clean).append("\"");
    }
    std::string_view const charset = CharsetOf(clean);
    std::string_view rest = clean;
    for (int piece = 0; !rest.empty(); ++piece) {
        bool const isAll = rest.size() <= bytesInPiece && piece == 0;
        CString mark("*");
        if (!isAll) mark.append(std::to_string(piece)).append("*");
        begin(mark);
        if (piece == 0) line.append(charset).append("''");
        // Whoever decodes the pieces one by one must find whole characters.
        std::size_t const length = WholeCharacters(rest, charset, bytesInPiece);
        for (char const c : rest.substr(0, length)) {
            bool const isLetter = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
            auto const byte = static_cast<unsigned char>(c);
            if (isLetter || safeMarks.find(c) != safeMarks.npos) {
                line += c;
            } else {
                line.append({'%', hex[byte >> 4], hex[byte & 15]});
            }
        }
        rest.remove_prefix(length);
    }
    return line;
}

CString FieldText(std::string_view text) {
    CString clean = HeaderText(text);
    bool isQuoted = false;
    for (std::size_t i = 0; i < clean.size(); ++i) {
        if (!IsPrintableAscii(clean[i])) clean[i] = '?';
        if (clean[i] == '"') isQuoted = !isQuoted;
        if (clean[i] == '\\' && isQuoted && ++i == clean.size()) clean += ' ';
    }
    if (isQuoted) clean += '"';
    return clean;
}

CString FoldedLines(std::string_view header) {
    CString lines;
    AppendWithLineEnds(lines, header);
    if (!lines.empty() && !lines.ends_with("\r\n")) lines += "\r\n";
    CString folded;
    for (std::size_t begin = 0, end = 0; begin < lines.size(); begin = end + 2) {
        end = lines.find("\r\n", begin);
        // Words and gaps that are too long for a line are cut.
        CString line;
        std::size_t word = 0, gap = 0;
        for (char const c : std::string_view(lines).substr(begin, end - begin)) {
            gap = c == ' ' ? gap + 1 : 0;
            if (gap > mostQuoted) continue;
            word = c == ' ' ? 0 : word + 1;
            if (word == mostInOneLine - mostQuoted) {
                line += ' ';
                word = 1;
            }
            line += c;
        }
        line.resize(line.find_last_not_of(' ') + 1);
        FoldPlain(line, 0, folded);
        folded += "\r\n";
    }
    return folded;
}

CString StrictMailDate() {
    using namespace std::chrono;
    constexpr char const* days[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    constexpr char const* months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    auto const now = floor<seconds>(system_clock::now());
    auto const today = floor<std::chrono::days>(now);
    year_month_day const date(today);
    hh_mm_ss const time(now - today);
    char text[64];
    std::snprintf(text, sizeof text, "%s, %02u %s %04d %02d:%02d:%02d +0000",
                  days[weekday(today).c_encoding()], static_cast<unsigned>(date.day()),
                  months[static_cast<unsigned>(date.month()) - 1], static_cast<int>(date.year()),
                  static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()));
    return text;
}

}  // namespace tov
