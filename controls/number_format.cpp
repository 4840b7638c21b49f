#include "controls/number_format.h"

#include "values/number_text.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

namespace tov {
namespace {

struct IntegerConversion {
    char kind = 'd';
    bool left = false;
    bool plus = false;
    bool blank = false;
    bool zeros = false;
    bool full = false;
    int width = 0;
    int precision = -1;
};

int ReadWidth(std::string_view& rest) {
    int number = 0;
    for (; !rest.empty() && rest.front() >= '0' && rest.front() <= '9'; rest.remove_prefix(1))
        number = std::min(number * 10 + (rest.front() - '0'), maxNumberWidth);
    return number;
}

// The length of a conversion at the start of a text that begins with "%"; 0 where it is none.
std::size_t ReadIntegerConversion(std::string_view text, IntegerConversion& conversion) {
    std::string_view rest = text.substr(1);
    for (; !rest.empty() && std::string_view("-+ 0#").find(rest.front()) != rest.npos;
         rest.remove_prefix(1)) {
        conversion.left |= rest.front() == '-';
        conversion.plus |= rest.front() == '+';
        conversion.blank |= rest.front() == ' ';
        conversion.zeros |= rest.front() == '0';
        conversion.full |= rest.front() == '#';
    }
    conversion.width = ReadWidth(rest);
    if (rest.starts_with('.')) {
        rest.remove_prefix(1);
        conversion.precision = ReadWidth(rest);
    }
    rest.remove_prefix(std::min(rest.find_first_not_of("hl"), rest.size()));
    if (rest.empty() || std::string_view("diuoxX").find(rest.front()) == rest.npos) return 0;
    conversion.kind = rest.front();
    return text.size() - rest.size() + 1;
}

void AppendInteger(CString& out, long value, IntegerConversion const& conversion) {
    bool const isSigned = conversion.kind == 'd' || conversion.kind == 'i';
    bool const hexadecimal = conversion.kind == 'x' || conversion.kind == 'X';
    bool const negative = isSigned && value < 0;
    auto const bits = static_cast<unsigned long>(value);
    char buffer[32];
    char* const end = std::to_chars(buffer, buffer + sizeof buffer, negative ? 0UL - bits : bits,
                                    hexadecimal              ? 16
                                    : conversion.kind == 'o' ? 8
                                                             : 10)
                          .ptr;
    if (conversion.kind == 'X')
        std::transform(buffer, end, buffer,
                       [](char c) { return c >= 'a' ? static_cast<char>(c - 'a' + 'A') : c; });
    CString digits(buffer, end);
    auto const length = static_cast<int>(digits.size());
    if (conversion.precision > length)
        digits.insert(0, static_cast<std::size_t>(conversion.precision - length), '0');
    if (conversion.full && conversion.kind == 'o' && digits.front() != '0') digits.insert(0, 1, '0');
    CString sign = negative                       ? "-"
                   : isSigned && conversion.plus  ? "+"
                   : isSigned && conversion.blank ? " "
                                                  : "";
    if (conversion.full && hexadecimal && value != 0) sign = conversion.kind == 'x' ? "0x" : "0X";
    int const padding = std::max(conversion.width - static_cast<int>(sign.size() + digits.size()), 0);
    auto const fill = static_cast<std::size_t>(padding);
    bool const zeros = conversion.zeros && !conversion.left && conversion.precision < 0;
    if (!conversion.left && !zeros) out.append(fill, ' ');
    out += sign;
    if (zeros) out.append(fill, '0');
    out += digits;
    if (conversion.left) out.append(fill, ' ');
}

// Calls `print` with what stands from the first "%" on that is no "%%"; it answers how much it has printed.
template <typename Print>
CString PrintText(std::string_view format, Print print) {
    CString out;
    for (bool printed = false; !format.empty();) {
        std::size_t taken = 0;
        if (format.starts_with("%%")) {
            out += '%';
            taken = 2;
        } else if (format.front() == '%' && !printed) {
            taken = print(out, format);
            printed = taken != 0;
        }
        if (taken == 0) {
            out += format.front();
            taken = 1;
        }
        format.remove_prefix(taken);
    }
    return out;
}

}  // namespace

CString PrintByFormat(std::string_view format, double value, std::string_view decimalSeparator) {
    return PrintText(format, [&](CString& out, std::string_view rest) {
        NumberConversion conversion;
        std::size_t const taken = ReadConversion(rest, 0, conversion);
        if (taken == 0) return taken;
        conversion.zeroSign = true;
        std::size_t const begin = out.size();
        AppendNumber(out, value, conversion);
        std::size_t const point = out.find('.', begin);
        if (point != out.npos && decimalSeparator != ".")
            out.replace(point, std::size_t{1}, decimalSeparator);
        return taken;
    });
}

CString PrintByFormat(std::string_view format, long value) {
    return PrintText(format, [&](CString& out, std::string_view rest) {
        IntegerConversion conversion;
        std::size_t const taken = ReadIntegerConversion(rest, conversion);
        if (taken != 0) AppendInteger(out, value, conversion);
        return taken;
    });
}

}  // namespace tov
