#include "dorn200/image_headers.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <span>

namespace tov {
namespace {

unsigned LittleEndian(unsigned char const* bytes) {
    return bytes[0] | static_cast<unsigned>(bytes[1]) << 8;
}

unsigned BigEndian(unsigned char const* bytes) {
    return static_cast<unsigned>(bytes[0]) << 24 | static_cast<unsigned>(bytes[1]) << 16 |
           static_cast<unsigned>(bytes[2]) << 8 | bytes[3];
}

bool ReadExactly(std::FILE* file, std::span<unsigned char> bytes) {
    return std::fread(bytes.data(), 1, bytes.size(), file) == bytes.size();
}

bool Skip(std::FILE* file, long count) {
    return std::fseek(file, count, SEEK_CUR) == 0;
}

// Leaves the file behind the head of the first picture.
bool ReadGifHead(std::FILE* file, ImageFacts& facts) {
    constexpr unsigned char extension = 0x21, picture = 0x2C;
    std::array<unsigned char, 9> bytes{};
    auto const tableBits = [](unsigned char packed) { return (packed & 7u) + 1; };
    auto const hasTable = [](unsigned char packed) { return (packed & 0x80) != 0; };

    if (std::fseek(file, 6, SEEK_SET) != 0 || !ReadExactly(file, std::span(bytes).first(7))) return false;
    unsigned bits = hasTable(bytes[4]) ? tableBits(bytes[4]) : 8;
    if (hasTable(bytes[4]) && !Skip(file, 3L << bits)) return false;
    for (;;) {
        int const kind = std::fgetc(file);
        if (kind == picture) break;
        if (kind != extension || std::fgetc(file) == EOF) return false;
        for (int length = std::fgetc(file); length != 0; length = std::fgetc(file)) {
            if (length == EOF || !Skip(file, length)) return false;
        }
    }
    if (!ReadExactly(file, bytes)) return false;
    if (hasTable(bytes[8])) bits = tableBits(bytes[8]);
    facts = {LittleEndian(&bytes[4]), LittleEndian(&bytes[6]), bits == 1 ? 1u : bits <= 4 ? 4u : 8u};
    return facts.width > 0 && facts.height > 0 && (!hasTable(bytes[8]) || Skip(file, 3L << bits));
}

// Bits from blocks that tell their lengths, the low ones first.
class GifBits {
 public:
    explicit GifBits(std::FILE* file) : m_file(file) {}
    // -1 at the end.
    int Take(unsigned count) {
        for (; m_held < count; m_held += 8) {
            if (m_left == 0) m_left = std::max(0, std::fgetc(m_file));
            int const byte = m_left-- > 0 ? std::fgetc(m_file) : EOF;
            if (byte == EOF) return -1;
            m_bits |= static_cast<unsigned>(byte) << m_held;
        }
        auto const value = static_cast<int>(m_bits & ((1u << count) - 1));
        m_bits >>= count;
        m_held -= count;
        return value;
    }

 private:
    std::FILE* m_file;
    int m_left = 0;
    unsigned m_bits = 0;
    unsigned m_held = 0;
};

}  // namespace

bool TellGif(std::FILE* file, ImageFacts& facts) {
    return ReadGifHead(file, facts);
}

// Only the lengths of the strings are kept that the codes of appendix F stand for.
bool HasAllGifPixels(std::FILE* file) {
    ImageFacts facts;
    if (!ReadGifHead(file, facts)) return false;
    int const first = std::fgetc(file);
    if (first < 1 || first > 8) return false;
    constexpr int none = -1, most = 4096;
    int const clear = 1 << first;
    std::array<std::uint32_t, most> lengths{};
    lengths.fill(1);
    GifBits bits(file);
    std::uint64_t missing = std::uint64_t{facts.width} * facts.height;
    auto size = static_cast<unsigned>(first) + 1;
    for (int next = clear + 2, last = none; missing > 0;) {
        int const code = bits.Take(size);
        if (code == none || code == clear + 1 || code > next || (code == next && last == none)) return false;
        if (code == clear) {
            size = static_cast<unsigned>(first) + 1;
            next = clear + 2;
            last = none;
            continue;
        }
        auto const place = static_cast<std::size_t>(next);
        if (last != none && next < most) {
            lengths[place] = lengths[static_cast<std::size_t>(last)] + 1;
            if (++next == 1 << size && size < 12) ++size;
        }
        missing -= std::min<std::uint64_t>(missing, lengths[static_cast<std::size_t>(code)]);
        last = code;
    }
    return true;
}

// Two bytes stand for at most 255 pixels.
bool MayHaveAllBmpPixels(std::FILE* file) {
    std::array<unsigned char, 34> head{};
    if (std::fseek(file, 0, SEEK_END) != 0) return false;
    auto const all = static_cast<std::uint64_t>(std::ftell(file));
    if (std::fseek(file, 0, SEEK_SET) != 0) return false;
    if (!ReadExactly(file, head)) return true;
    auto const number = [&](std::size_t at) {
        return std::uint32_t{LittleEndian(&head[at]) | LittleEndian(&head[at + 2]) << 16};
    };
    constexpr std::uint32_t leastHead = 40, rle8 = 1, rle4 = 2;
    std::uint32_t const begin = number(10), height = number(22), compression = number(30);
    if (number(14) < leastHead || (compression != rle8 && compression != rle4)) return true;
    std::uint64_t const rows = std::min(height, ~height + 1);  // a sign tells their direction
    return begin <= all && (all - begin) / 2 * 255 >= rows * number(18);
}

// The size marker of the code stream (ISO/IEC 15444-1, A.5.1), which follows the start marker at once; in a
// JP2 file the stream is the content of a box. FreeImage would make do with any part of the stream, so its
// end marker must be there too.
bool TellJpeg2000(std::FILE* file, bool isBoxed, ImageFacts& facts) {
    if (std::fseek(file, 0, SEEK_END) != 0) return false;
    long const all = std::ftell(file);
    long begin = 0, end = all;
    for (std::array<unsigned char, 16> box{}; isBoxed; begin = end) {
        if (std::fseek(file, begin, SEEK_SET) != 0 || !ReadExactly(file, std::span(box).first(8)))
            return false;
        std::uint64_t length = BigEndian(&box[0]);
        long header = 8;
        if (length == 1) {  // the length is the one behind the name
            if (!ReadExactly(file, std::span(box).last(8))) return false;
            length = std::uint64_t{BigEndian(&box[8])} << 32 | BigEndian(&box[12]);
            header = 16;
        }
        if (length == 0) length = static_cast<std::uint64_t>(all - begin);  // to the end of the file
        if (length < static_cast<std::uint64_t>(header) || length > static_cast<std::uint64_t>(all - begin))
            return false;
        end = begin + static_cast<long>(length);
        if (std::memcmp(&box[4], "jp2c", 4) != 0) continue;
        begin += header;
        break;
    }
    std::array<unsigned char, 43> size{};
    std::array<unsigned char, 2> last{};
    if (std::fseek(file, end - 2, SEEK_SET) != 0 || !ReadExactly(file, last) || last[0] != 0xFF ||
        last[1] != 0xD9)
        return false;
    if (std::fseek(file, begin, SEEK_SET) != 0 || !ReadExactly(file, size) ||
        std::memcmp(size.data(), "\xFF\x4F\xFF\x51", 4) != 0) {
        return false;
    }
    auto const extent = [&](std::size_t limit, std::size_t offset) {
        auto const to = BigEndian(&size[limit]), from = BigEndian(&size[offset]);
        return to > from ? to - from : 0;
    };
    unsigned const components = static_cast<unsigned>(size[40]) << 8 | size[41];
    unsigned const depth = (size[42] & 0x7Fu) + 1;
    facts = {extent(8, 16), extent(12, 20), components * (depth > 8 ? 16 : 8)};
    return facts.width > 0 && facts.height > 0;
}

}  // namespace tov
