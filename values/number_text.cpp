#include "values/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace tov {
namespace {

constexpr bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
constexpr bool IsBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

void SkipBlanks(std::string_view& text) {
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
}

// A number at the start of the text without blanks: sign, then a digit or a point with a digit. Leaves out
// "inf", "nan" and hexadecimal numbers, which from_chars or strtod would take.
template <typename T>
bool ReadFloating(std::string_view& text, T& value) {
    SkipBlanks(text);
    std::string_view rest = text;
    bool const negative = rest.starts_with('-');
    if (negative || rest.starts_with('+')) rest.remove_prefix(1);
    std::size_t const digit = rest.starts_with('.') ? 1 : 0;
    if (rest.size() <= digit || !IsDigit(rest[digit])) return false;
    T magnitude = 0;
    auto const [stop, failure] = std::from_chars(rest.data(), rest.data() + rest.size(), magnitude);
    if (failure == std::errc::result_out_of_range) {
        // Too large or too small; the exponent that the text comes to decides.
        long double wide = 0;
        auto const again = std::from_chars(rest.data(), rest.data() + rest.size(), wide);
        bool const large =
            again.ec == std::errc() ? wide > 1 : std::string_view(rest.data(), stop).find('-') == rest.npos;
        magnitude = large ? std::numeric_limits<T>::max() : T(0);
    }
    value = negative ? -magnitude : magnitude;
    text = {stop, static_cast<std::size_t>(rest.data() + rest.size() - stop)};
    return true;
}

// The decimal exponent of a number that is rounded to so many decimals in the scientific form.
int ExponentOf(double magnitude, int decimals) {
    char digits[maxNumberWidth + 330];
    char* const end =
        std::to_chars(digits, digits + sizeof digits, magnitude, std::chars_format::scientific, decimals).ptr;
    char const* exponent = std::find(digits, end, 'e') + 1;
    if (*exponent == '+') ++exponent;
    int number = 0;
    std::from_chars(exponent, end, number);
    return number;
}

int ReadLimited(std::string_view format, std::size_t& at) {
    int number = 0;
    for (; at < format.size() && IsDigit(format[at]); ++at) {
        number = std::min(number * 10 + (format[at] - '0'), maxNumberWidth);
    }
    return number;
}

}  // namespace

std::size_t ReadConversion(std::string_view format, std::size_t position, NumberConversion& conversion) {
    conversion = {};
    std::size_t at = position + 1;
    for (bool flag = true; flag && at < format.size();) {
        switch (format[at]) {
            case '-':
                conversion.left = true;
                break;
            case '+':
                conversion.plus = true;
                break;
            case ' ':
                conversion.blank = true;
                break;
            case '0':
                conversion.zeros = true;
                break;
            case '#':
                conversion.full = true;
                break;
            default:
                flag = false;
                continue;
        }
        ++at;
    }
    conversion.width = ReadLimited(format, at);
    if (at < format.size() && format[at] == '.') {
        ++at;
        if (at < format.size() && format[at] == '*') {
            conversion.star = true;
            ++at;
        } else {
            conversion.precision = ReadLimited(format, at);
        }
    }
    if (at < format.size() && (format[at] == 'l' || format[at] == 'L')) ++at;
    if (at >= format.size() || std::string_view("fFeEgG").find(format[at]) == std::string_view::npos)
        return 0;
    conversion.kind = format[at];
    return at + 1 - position;
}

void AppendNumber(std::string& out, double value, NumberConversion const& conversion) {
    // 309 digits before the point, the point, the decimals.
    char digits[maxNumberWidth + 330];
    bool const finite = std::isfinite(value);
    char const kind = conversion.kind;
    bool const upper = kind >= 'A' && kind <= 'Z';
    auto format = kind == 'f' || kind == 'F'   ? std::chars_format::fixed
                  : kind == 'e' || kind == 'E' ? std::chars_format::scientific
                                               : std::chars_format::general;
    int precision = std::clamp(conversion.precision, 0, maxNumberWidth);
    if (conversion.full && finite && format == std::chars_format::general) {
        // All digits: the form that the rounded number's exponent chooses, without cutting zeros.
        precision = std::max(precision, 1);
        int const exponent = ExponentOf(std::fabs(value), precision - 1);
        bool const fixed = exponent >= -4 && exponent < precision;
        format = fixed ? std::chars_format::fixed : std::chars_format::scientific;
        precision -= fixed ? 1 + exponent : 1;
    }
    char* end = std::to_chars(digits, digits + sizeof digits, std::fabs(value), format, precision).ptr;
    if (conversion.full && finite && std::find(digits, end, '.') == end) {
        char* const exponent = std::find(digits, end, 'e');
        std::copy_backward(exponent, end, end + 1);
        *exponent = '.';
        ++end;
    }
    bool const nothing = finite && std::all_of(digits, end, [](char c) { return c < '1' || c > '9'; });
    // The exponent of a zero is zero as well, so that the digits alone decide.
    if (upper) {
        std::transform(digits, end, digits,
                       [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    }
    char const sign = std::signbit(value) && (!nothing || conversion.zeroSign) && !std::isnan(value) ? '-'
                      : conversion.plus                                                              ? '+'
                      : conversion.blank                                                             ? ' '
                                                                                                     : '\0';
    auto const length = static_cast<int>(end - digits) + (sign != '\0');
    auto const padding = static_cast<std::size_t>(std::max(conversion.width - length, 0));
    bool const zeros = conversion.zeros && !conversion.left && finite;
    if (!conversion.left && !zeros) out.append(padding, ' ');
    if (sign != '\0') out += sign;
    if (zeros) out.append(padding, '0');
    out.append(digits, end);
    if (conversion.left) out.append(padding, ' ');
}

double ReadNumber(std::string_view text) {
    double value = 0;
    return ReadFloating(text, value) ? value : 0;
}

bool ReadField(std::string_view& text, int& value) {
    SkipBlanks(text);
    std::string_view rest = text;
    bool const negative = rest.starts_with('-');
    if (negative || rest.starts_with('+')) rest.remove_prefix(1);
    if (rest.empty() || !IsDigit(rest.front())) return false;
    int magnitude = 0;
    auto const [stop, failure] = std::from_chars(rest.data(), rest.data() + rest.size(), magnitude);
    if (failure == std::errc::result_out_of_range) magnitude = std::numeric_limits<int>::max();
    value = negative ? -magnitude : magnitude;
    text = {stop, static_cast<std::size_t>(rest.data() + rest.size() - stop)};
    return true;
}

bool ReadField(std::string_view& text, float& value) {
    return ReadFloating(text, value);
}

}  // namespace tov
