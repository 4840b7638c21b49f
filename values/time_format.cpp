#include "values/time_format.h"

#include "vesk/clock.h"

#include <array>

namespace tov {
namespace {

constexpr auto twoDigits = [] {
    std::array<char, 200> digits{};
    for (unsigned i = 0; i < 100; ++i) {
        digits[2 * i] = static_cast<char>('0' + i / 10);
        digits[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return digits;
}();

// Numbers of two digits, which nearly all fields are.
void AppendTwo(CString& out, int number, bool shortened, char pad = '0') {
    char const* const digits = &twoDigits[static_cast<std::size_t>(number) * 2];
    if (number >= 10) {
        out.append(digits, 2);
        return;
    }
    if (!shortened) out.push_back(pad);
    out.push_back(digits[1]);
}

void AppendThree(CString& out, int number, bool shortened) {
    if (!shortened || number >= 100) out.push_back(static_cast<char>('0' + number / 100));
    AppendTwo(out, number % 100, shortened && number < 100);
}

// Years have as many digits as they need.
void AppendYear(CString& out, long year) {
    if (year >= 1000 && year < 10000) {
        AppendTwo(out, static_cast<int>(year / 100), false);
        AppendTwo(out, static_cast<int>(year % 100), false);
    } else {
        out += std::to_string(year);
    }
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
        case 'Y':
            AppendYear(out, year);
            break;
        case 'y':
            AppendTwo(out, static_cast<int>(year - FloorDivide(year, 100) * 100), flagged);
            break;
        case 'm':
            AppendTwo(out, fields.tm_mon + 1, flagged);
            break;
        case 'd':
            AppendTwo(out, fields.tm_mday, flagged);
            break;
        case 'H':
            AppendTwo(out, fields.tm_hour, flagged);
            break;
        case 'M':
            AppendTwo(out, fields.tm_min, flagged);
            break;
        case 'S':
            AppendTwo(out, fields.tm_sec, flagged);
            break;
        case 'I':
            AppendTwo(out, (fields.tm_hour + 11) % 12 + 1, flagged);
            break;
        case 'p':
            out += VeskHalfDayName(fields.tm_hour >= 12);
            break;
        case 'b':
        case 'h':
            out += VeskMonthName(fields.tm_mon, false);
            break;
        case 'B':
            out += VeskMonthName(fields.tm_mon, true);
            break;
        case 'a':
            out += VeskDayName(fields.tm_wday, false);
            break;
        case 'A':
            out += VeskDayName(fields.tm_wday, true);
            break;
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
            AppendTwo(out, fields.tm_mday, flagged, ' ');
            break;
        case 'j':
            AppendThree(out, fields.tm_yday + 1, flagged);
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
            AppendYear(out, IsoWeek(fields).year);
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
    std::size_t at = 0;
    for (;;) {
        FormatCode const code = FindFormatCode(format, at);
        out += format.substr(at, code.begin - at);
        if (code.begin == format.size()) return;
        if (!AppendField(out, fields, code.letter, flagged || code.flagged))
            out += format.substr(code.begin, code.end - code.begin);
        at = code.end;
    }
}

}  // namespace

FormatCode FindFormatCode(std::string_view format, std::size_t from) {
    std::size_t const begin = format.find('%', from);
    if (begin == std::string_view::npos) return {format.size(), format.size(), 0, false};
    std::size_t at = begin + 1;
    auto const take = [&](char c) { return at < format.size() && format[at] == c && (++at, true); };
    bool const flagged = take('#');
    take('E') || take('O');
    if (at == format.size()) return {begin, at, 0, flagged};
    return {begin, at + 1, format[at], flagged};
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
