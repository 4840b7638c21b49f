#include <tov310/base64.h>

#include "util/base64_blocks.h"
#include "util/file_facts.h"
#include "vesk/file.h"
#include "vesk/memory.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tov {
namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr unsigned long mailLineLength = 76;

constexpr std::uint8_t noDigit = 0x80;  // its bit stands in no digit, so that four can be tested in one go

constexpr std::array<std::uint8_t, 256> base64Digits = [] {
    std::array<std::uint8_t, 256> table{};
    table.fill(noDigit);
    for (std::size_t i = 0; i < alphabet.size(); ++i)
        table[static_cast<unsigned char>(alphabet[i])] = static_cast<std::uint8_t>(i);
    return table;
}();

// Whole groups of three bytes.
void EncodeGroups(unsigned char const* data, std::size_t length, char* out) {
    std::size_t const done = EncodeBase64Blocks(data, length, out);
    unsigned char const* const end = data + length;
    out += done / 3 * 4;
    for (data += done; data != end; data += 3, out += 4) {
        unsigned const bits = unsigned{data[0]} << 16 | unsigned{data[1]} << 8 | data[2];
        out[0] = alphabet[bits >> 18];
        out[1] = alphabet[bits >> 12 & 63];
        out[2] = alphabet[bits >> 6 & 63];
        out[3] = alphabet[bits & 63];
    }
}

// Takes characters and breaks them into lines.
class LineWriter {
 public:
    LineWriter(CString& text, std::size_t lineLength) : m_text(text), m_lineLength(lineLength) {}

    void Append(std::string_view characters) {
        if (m_lineLength == 0) {
            m_text += characters;
            return;
        }
        while (!characters.empty()) {
            std::string_view const part = characters.substr(0, m_lineLength - m_column);
            m_text += part;
            characters.remove_prefix(part.size());
            m_column += part.size();
            if (m_column != m_lineLength) continue;
            m_text += "\r\n";
            m_column = 0;
        }
    }

 private:
    CString& m_text;
    std::size_t m_lineLength;
    std::size_t m_column = 0;
};

}  // namespace

CString TovEncodeBase64(unsigned char const* data, unsigned long length, unsigned long lineLength) {
    if (data == nullptr) return {};
    // The characters are made piece by piece in the cache: clearing the whole text first would take longer
    // than the encoding.
    constexpr std::size_t pieceBytes = 3072;
    char piece[pieceBytes / 3 * 4];
    std::size_t const rest = length % 3;
    std::size_t const characters = length / 3 * 4 + rest + 1;
    CString text;
    text.reserve(characters + (lineLength != 0 ? characters / lineLength * 2 : 0) + 3);
    VeskExpectWrites(text.data(), text.capacity());
    LineWriter writer(text, lineLength);
    unsigned char const* const groupsEnd = data + (length - rest);
    while (data != groupsEnd) {
        std::size_t const bytes = std::min(pieceBytes, static_cast<std::size_t>(groupsEnd - data));
        EncodeGroups(data, bytes, piece);
        writer.Append({piece, bytes / 3 * 4});
        data += bytes;
    }
    // Every text is closed by one more character than its whole groups need, also where no bits are left for
    // it.
    unsigned const first = rest > 0 ? data[0] : 0;
    unsigned const second = rest > 1 ? data[1] : 0;
    unsigned const bits = first << 16 | second << 8;
    for (std::size_t i = 0; i <= rest; ++i)
        piece[i] = alphabet[bits >> (18 - 6 * i) & 63];
    writer.Append({piece, rest + 1});
    text.append((4 - text.size() % 4) % 4, '=');
    return text;
}

CString TovEncodeBase64(CString const& path) try {
    std::string bytes;
    if (ReadWholeFile(SystemPath(path.c_str()).c_str(), bytes)) return {};
    return TovEncodeBase64(reinterpret_cast<unsigned char const*>(bytes.data()), bytes.size(),
                           mailLineLength);
} catch (std::bad_alloc const&) {
    return {};
} catch (std::length_error const&) {  // longer than any text
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
    unsigned char const* const end =
        text + std::char_traits<char>::length(reinterpret_cast<char const*>(text));
    unsigned bits = 0;
    unsigned count = 0;
    for (; *in != 0; ++in) {
        if (count == 0) {
            // Whole blocks and groups at once, as long as no line end, padding or end comes up. The zero at
            // the end is no digit either, so testing one after the other never looks behind it.
            DecodeBase64Blocks(in, end, out);
            for (;;) {
                unsigned const a = base64Digits[in[0]];
                if (a == noDigit) break;
                unsigned const b = base64Digits[in[1]];
                if (b == noDigit) break;
                unsigned const c = base64Digits[in[2]];
                if (c == noDigit) break;
                unsigned const d = base64Digits[in[3]];
                if (d == noDigit) break;
                out[0] = static_cast<unsigned char>(a << 2 | b >> 4);
                out[1] = static_cast<unsigned char>((b << 4 | c >> 2) & 0xFF);
                out[2] = static_cast<unsigned char>((c << 6 | d) & 0xFF);
                out += 3;
                in += 4;
            }
            if (*in == 0) break;
        }
        unsigned const digit = base64Digits[*in];
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
