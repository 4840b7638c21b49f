#include "values/time_format.h"

#include "vesk/clock.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace tov {
namespace {

// The code that begins at a percent sign.
FormatCode CodeAt(std::string_view format, std::size_t begin) {
    std::size_t at = begin + 1;
    auto const take = [&](char c) { return at < format.size() && format[at] == c && (++at, true); };
    bool const flagged = take('#');
    take('E') || take('O');
    if (at == format.size()) return {begin, at, 0, flagged};
    return {begin, at + 1, format[at], flagged};
}

constexpr auto twoDigits = [] {
    std::array<char, 200> digits{};
    for (unsigned i = 0; i < 100; ++i) {
        digits[2 * i] = static_cast<char>('0' + i / 10);
        digits[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return digits;
}();

// Writes a number of two digits, or of one where it is shortened, and answers where it ends.
char* PutTwo(char* at, int number, bool shortened) {
    if (shortened && number < 10) {
        *at = static_cast<char>('0' + number);
        return at + 1;
    }
    return std::copy_n(&twoDigits[static_cast<std::size_t>(number) * 2], 2, at);
}

void AppendTwo(CString& out, int number, bool shortened) {
    char digits[2];
    bool const one = PutTwo(digits, number, shortened) == digits + 1;
    out.push_back(digits[0]);
    if (!one) out.push_back(digits[1]);
}

long FloorDivide(long number, long by) {
    return number / by - (number % by < 0 ? 1 : 0);
}

// The week that belongs, by its Thursday, to a year (ISO 8601).
struct IsoWeek {
    long year;
    int week;

    explicit IsoWeek(std::tm const& fields) : year(fields.tm_year + 1900L), week(0) {
        int const thursday = fields.tm_yday + 3 - (fields.tm_wday + 6) % 7;
        int const days = DaysOfYear(year);
        if (thursday < 0) {
            --year;
            week = (thursday + DaysOfYear(year)) / 7 + 1;
        } else if (thursday >= days) {
            ++year;
            week = 1;
        } else {
            week = thursday / 7 + 1;
        }
    }

    static int DaysOfYear(long year) {
        return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0) ? 366 : 365;
    }
};

void AppendFields(CString& out, std::tm const& fields, std::string_view format, bool flagged);

// False for a code that is not known.
bool AppendField(CString& out, std::tm const& fields, char letter, bool flagged) {
    long const year = fields.tm_year + 1900L;
    auto const part = [&](std::string_view format) { AppendFields(out, fields, format, flagged); };
    switch (letter) {
        case 'C': {
            long const century = FloorDivide(year, 100);
            if (century >= 0 && century < 100) {
                AppendTwo(out, static_cast<int>(century), flagged);
            } else {
                out += std::to_string(century);
            }
            break;
        }
        case 'e':
            if (!flagged && fields.tm_mday < 10) out.push_back(' ');
            AppendTwo(out, fields.tm_mday, true);
            break;
        case 'j':
            if (!flagged || fields.tm_yday >= 99)
                out.push_back(static_cast<char>('0' + (fields.tm_yday + 1) / 100));
            AppendTwo(out, (fields.tm_yday + 1) % 100, flagged && fields.tm_yday < 99);
            break;
        case 'w':
            out.push_back(static_cast<char>('0' + fields.tm_wday));
            break;
        case 'u':
            out.push_back(static_cast<char>('1' + (fields.tm_wday + 6) % 7));
            break;
        case 'U':
            AppendTwo(out, (fields.tm_yday + 7 - fields.tm_wday) / 7, flagged);
            break;
        case 'W':
            AppendTwo(out, (fields.tm_yday + 7 - (fields.tm_wday + 6) % 7) / 7, flagged);
            break;
        case 'V':
            AppendTwo(out, IsoWeek(fields).week, flagged);
            break;
        case 'G':
            out += std::to_string(IsoWeek(fields).year);
            break;
        case 'g': {
            long const weekYear = IsoWeek(fields).year;
            AppendTwo(out, static_cast<int>(weekYear - FloorDivide(weekYear, 100) * 100), flagged);
            break;
        }
        case 'D':
            part("%m/%d/%y");
            break;
        case 'F':
            part("%Y-%m-%d");
            break;
        case 'T':
            part("%H:%M:%S");
            break;
        case 'R':
            part("%H:%M");
            break;
        case 'c':
            if (flagged) {
                AppendFields(out, fields, "%A, %#d %B %Y %H:%M:%S", false);
            } else {
                VeskAppendTime(out, L"%c", fields);
            }
            break;
        case 'x':
            if (flagged) {
                AppendFields(out, fields, "%A, %#d %B %Y", false);
            } else {
                VeskAppendTime(out, L"%x", fields);
            }
            break;
        case 'X':
            VeskAppendTime(out, L"%X", fields);
            break;
        case 'r':
            VeskAppendTime(out, L"%r", fields);
            break;
        case 'z':
            VeskAppendTime(out, L"%z", fields);
            break;
        case 'Z':
            VeskAppendTime(out, L"%Z", fields);
            break;
        case 'n':
            out.push_back('\n');
            break;
        case 't':
            out.push_back('\t');
            break;
        case '%':
            out.push_back('%');
            break;
        default:
            return false;
    }
    return true;
}

void AppendFields(CString& out, std::tm const& fields, std::string_view format, bool flagged) {
    constexpr std::ptrdiff_t longestField = 4;
    char piece[120];
    char* at = piece;
    auto const flush = [&] {
        out.append(piece, at);
        at = piece;
    };
    auto const name = [&](std::string_view text) {
        if (std::end(piece) - at < static_cast<std::ptrdiff_t>(text.size())) flush();
        if (text.size() > sizeof piece) {
            out += text;
        } else {
            at = std::copy(text.begin(), text.end(), at);
        }
    };
    long const year = fields.tm_year + 1900L;
    for (std::size_t i = 0; i < format.size();) {
        if (std::end(piece) - at < longestField) flush();
        if (format[i] != '%') {
            *at++ = format[i++];
            continue;
        }
        FormatCode const code = CodeAt(format, i);
        i = code.end;
        bool const shortened = flagged || code.flagged;
        switch (code.letter) {
            case 'Y':
                if (year >= 1000 && year < 10000) {
                    at = PutTwo(at, static_cast<int>(year / 100), false);
                    at = PutTwo(at, static_cast<int>(year % 100), false);
                } else {
                    flush();
                    out += std::to_string(year);
                }
                break;
            case 'y':
                at = PutTwo(at, static_cast<int>(year - FloorDivide(year, 100) * 100), shortened);
                break;
            case 'm':
                at = PutTwo(at, fields.tm_mon + 1, shortened);
                break;
            case 'd':
                at = PutTwo(at, fields.tm_mday, shortened);
                break;
            case 'H':
                at = PutTwo(at, fields.tm_hour, shortened);
                break;
            case 'I':
                at = PutTwo(at, (fields.tm_hour + 11) % 12 + 1, shortened);
                break;
            case 'M':
                at = PutTwo(at, fields.tm_min, shortened);
                break;
            case 'S':
                at = PutTwo(at, fields.tm_sec, shortened);
                break;
            case 'p':
                name(VeskHalfDayName(fields.tm_hour >= 12));
                break;
            case 'b':
            case 'h':
                name(VeskMonthName(fields.tm_mon, false));
                break;
            case 'B':
                name(VeskMonthName(fields.tm_mon, true));
                break;
            case 'a':
                name(VeskDayName(fields.tm_wday, false));
                break;
            case 'A':
                name(VeskDayName(fields.tm_wday, true));
                break;
            default:
                flush();
                if (!AppendField(out, fields, code.letter, shortened))
                    out += format.substr(code.begin, code.end - code.begin);
        }
    }
    flush();
}

}  // namespace

FormatCode FindFormatCode(std::string_view format, std::size_t from) {
    std::size_t const begin = format.find('%', from);
    if (begin == std::string_view::npos) return {format.size(), format.size(), 0, false};
    return CodeAt(format, begin);
}

FormatCode FindFormatCode(std::string_view format, char letter) {
    FormatCode code = FindFormatCode(format, std::size_t{0});
    while (code.begin != format.size() && code.letter != letter)
        code = FindFormatCode(format, code.end);
    return code;
}

CString FormatFields(std::tm const& fields, std::string_view format) {
    CString out;
    AppendFields(out, fields, format, false);
    return out;
}

CString FormatSpan(std::int64_t seconds, std::string_view format, SpanHours hours) {
    CString out;
    bool negative = seconds < 0;
    auto const size =
        negative ? 0 - static_cast<std::uint64_t>(seconds) : static_cast<std::uint64_t>(seconds);
    auto const number = [&](std::uint64_t value, bool padded) {
        if (negative) out.push_back('-');
        negative = false;
        if (padded && value < 10) out.push_back('0');
        out += std::to_string(value);
    };
    std::size_t at = 0;
    for (;;) {
        FormatCode const code = FindFormatCode(format, at);
        out += format.substr(at, code.begin - at);
        if (code.begin == format.size()) return out;
        if (code.letter == hours.code) {
            number(size / 3600 % (hours.all ? ~std::uint64_t{0} : 24), hours.padded && !code.flagged);
        } else if (code.letter == 'D') {
            number(size / 86400, false);
        } else if (code.letter == 'H') {
            number(size / 3600 % 24, !code.flagged);
        } else if (code.letter == 'M') {
            number(size / 60 % 60, !code.flagged);
        } else if (code.letter == 'S') {
            number(size % 60, !code.flagged);
        } else if (code.letter == '%') {
            out.push_back('%');
        } else {
            out += format.substr(code.begin, code.end - code.begin);
        }
        at = code.end;
    }
}

}  // namespace tov
