#include <tov310/base64.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <new>
#include <string>
#include <string_view>

namespace tov {
namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr unsigned long mailLineLength = 76;

constexpr std::uint8_t noDigit = 0x80;  // its bit stands in no digit, so that four can be tested in one go

constexpr std::array<std::uint8_t, 256> digits = [] {
    std::array<std::uint8_t, 256> table{};
    table.fill(noDigit);
    for (std::size_t i = 0; i < alphabet.size(); ++i)
        table[static_cast<unsigned char>(alphabet[i])] = static_cast<std::uint8_t>(i);
    return table;
}();

// All characters in one line and without padding. Every text is closed by one more character than its whole
// groups need, also where no bits are left for it.
CString Characters(unsigned char const* data, std::size_t length) {
    CString text(length / 3 * 4 + length % 3 + 1, '\0');
    char* out = text.data();
    unsigned char const* const groupsEnd = data + length / 3 * 3;
    for (; data != groupsEnd; data += 3, out += 4) {
        unsigned const bits = unsigned{data[0]} << 16 | unsigned{data[1]} << 8 | data[2];
        out[0] = alphabet[bits >> 18];
        out[1] = alphabet[bits >> 12 & 63];
        out[2] = alphabet[bits >> 6 & 63];
        out[3] = alphabet[bits & 63];
    }
    unsigned const first = length % 3 > 0 ? data[0] : 0;
    unsigned const second = length % 3 > 1 ? data[1] : 0;
    unsigned const bits = first << 16 | second << 8;
    for (std::size_t i = 0; i <= length % 3; ++i)
        *out++ = alphabet[bits >> (18 - 6 * i) & 63];
    return text;
}

CString Broken(std::string_view characters, std::size_t lineLength) {
    CString text;
    text.reserve(characters.size() + characters.size() / lineLength * 2 + 3);
    for (std::size_t at = 0; at < characters.size(); at += lineLength) {
        std::string_view const line = characters.substr(at, lineLength);
        text += line;
        if (line.size() == lineLength) text += "\r\n";
    }
    return text;
}

}  // namespace

CString TovEncodeBase64(unsigned char const* data, unsigned long length, unsigned long lineLength) {
    if (data == nullptr) return {};
    CString text = Characters(data, length);
    if (lineLength != 0) text = Broken(text, lineLength);
    text.append((4 - text.size() % 4) % 4, '=');
    return text;
}

CString TovEncodeBase64(CString const& path) try {
    std::ifstream file(path, std::ios::binary);
    std::string bytes;
    char block[1 << 16];
    while (file.read(block, sizeof block) || file.gcount() > 0)
        bytes.append(block, static_cast<std::size_t>(file.gcount()));
    if (!file.eof() || file.bad()) return {};  // it was not opened, is a folder, or could not be read whole
    return TovEncodeBase64(reinterpret_cast<unsigned char const*>(bytes.data()), bytes.size(),
                           mailLineLength);
} catch (std::bad_alloc const&) {
    return {};
}

CString TovEncodeIso8859(char const* text) {
    constexpr char hex[] = "0123456789ABCDEF";
    CString encoded;
    for (; text != nullptr && *text != '\0'; ++text) {
        unsigned const byte = static_cast<unsigned char>(*text);
        if (byte < 0x9A && byte != '=')
            encoded += *text;
        else
            encoded.append({'=', hex[byte >> 4], hex[byte & 15]});
    }
    return encoded;
}

unsigned long TovDecodeBase64(unsigned char* text) {
    if (text == nullptr) return 0;
    // What is written never overtakes what was read: four characters are read before three bytes are written.
    unsigned char* out = text;
    unsigned char const* in = text;
    unsigned bits = 0;
    unsigned count = 0;
    for (; *in != 0; ++in) {
        if (count == 0) {
            // Whole groups at once, as long as no line end, padding or end comes up. The zero at the end is
            // no digit either, so testing one after the other never looks behind it.
            for (;;) {
                unsigned const a = digits[in[0]];
                if (a == noDigit) break;
                unsigned const b = digits[in[1]];
                if (b == noDigit) break;
                unsigned const c = digits[in[2]];
                if (c == noDigit) break;
                unsigned const d = digits[in[3]];
                if (d == noDigit) break;
                out[0] = static_cast<unsigned char>(a << 2 | b >> 4);
                out[1] = static_cast<unsigned char>((b << 4 | c >> 2) & 0xFF);
                out[2] = static_cast<unsigned char>((c << 6 | d) & 0xFF);
                out += 3;
                in += 4;
            }
            if (*in == 0) break;
        }
        unsigned const digit = digits[*in];
        if (digit == noDigit) continue;
        bits = bits << 6 | digit;
        if (++count < 4) continue;
        *out++ = static_cast<unsigned char>(bits >> 16 & 0xFF);
        *out++ = static_cast<unsigned char>(bits >> 8 & 0xFF);
        *out++ = static_cast<unsigned char>(bits & 0xFF);
        count = 0;
        bits = 0;
    }
    // Two characters left hold one byte, three hold two; a lone one holds nothing.
    bits <<= 6 * (4 - count);
    if (count >= 2) *out++ = static_cast<unsigned char>(bits >> 16 & 0xFF);
    if (count >= 3) *out++ = static_cast<unsigned char>(bits >> 8 & 0xFF);
    return static_cast<unsigned long>(out - text);
}

}  // namespace tov
