// RFC 1951 (DEFLATE). The stream is taken bit by bit, which is plain
// and quick enough for pictures of programs.
#include "imaging/bitmap_readers.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace tov {
namespace {

class DeflateBits {
 public:
    explicit DeflateBits(std::span<unsigned char const> bytes) : m_bytes(bytes) {}

    // Behind the end all bits are 0, and the stream is over.
    std::uint32_t Take(unsigned count) {
        while (m_held < count) {
            if (m_next < m_bytes.size()) {
                m_bits |= std::uint64_t{m_bytes[m_next]} << m_held;
            } else {
                m_isOver = true;
            }
            ++m_next;
            m_held += 8;
        }
        auto const value = static_cast<std::uint32_t>(m_bits & ((std::uint64_t{1} << count) - 1));
        m_bits >>= count;
        m_held -= count;
        return value;
    }
    bool IsOver() const { return m_isOver; }

    // How many bytes were begun.
    std::size_t Taken() const { return m_next - m_held / 8; }

    // The next whole bytes; empty where there are not so many.
    std::span<unsigned char const> Bytes(std::size_t count) {
        std::size_t const held = m_held / 8;
        m_next -= held;
        m_held = 0;
        m_bits = 0;
        if (m_next > m_bytes.size() || m_bytes.size() - m_next < count) return {};
        auto const bytes = m_bytes.subspan(m_next, count);
        m_next += count;
        return bytes;
    }

 private:
    std::span<unsigned char const> m_bytes;
    std::size_t m_next = 0;
    std::uint64_t m_bits = 0;
    unsigned m_held = 0;
    bool m_isOver = false;
};

constexpr unsigned longestCode = 15;

// Codes of which only the lengths are told (section 3.2.2): those of one length are consecutive numbers.
class DeflateCode {
 public:
    static constexpr unsigned none = ~0u;

    // False for lengths that no code has.
    bool Make(std::span<std::uint8_t const> lengths) {
        m_counts.fill(0);
        for (std::uint8_t const length : lengths)
            ++m_counts[length];
        m_counts[0] = 0;
        int left = 1;
        std::array<std::uint16_t, longestCode + 2> next{};
        for (unsigned length = 1; length <= longestCode; ++length) {
            left = left * 2 - m_counts[length];
            if (left < 0) return false;
            next[length + 1] = static_cast<std::uint16_t>(next[length] + m_counts[length]);
        }
        for (std::size_t symbol = 0; symbol < lengths.size(); ++symbol) {
            if (lengths[symbol] != 0) m_symbols[next[lengths[symbol]]++] = static_cast<std::uint16_t>(symbol);
        }
        return true;
    }

    unsigned Take(DeflateBits& bits) const {
        unsigned code = 0, first = 0, index = 0;
        for (unsigned length = 1; length <= longestCode; ++length) {
            code |= bits.Take(1);
            unsigned const count = m_counts[length];
            if (code < first + count) return m_symbols[index + code - first];
            index += count;
            first = (first + count) * 2;
            code *= 2;
        }
        return none;
    }

 private:
    std::array<std::uint16_t, longestCode + 1> m_counts{};
    std::array<std::uint16_t, 288> m_symbols{};
};

class Inflater {
 public:
    Inflater(std::span<unsigned char const> packed, std::span<unsigned char> output)
        : m_bits(packed), m_output(output) {}

    std::size_t Run() {
        for (bool isLast = false; !isLast;) {
            isLast = m_bits.Take(1) != 0;
            unsigned const kind = m_bits.Take(2);
            bool const good = kind == 0 ? Copy() : kind == 1 ? UseFixed() : kind == 2 && UseOwn();
            if (!good || m_bits.IsOver()) return 0;
        }
        return m_done == m_output.size() ? m_bits.Taken() : 0;
    }

 private:
    bool Copy() {
        auto const head = m_bits.Bytes(4);
        if (head.empty()) return false;
        unsigned const length = head[0] | static_cast<unsigned>(head[1]) << 8;
        unsigned const inverse = head[2] | static_cast<unsigned>(head[3]) << 8;
        auto const bytes = m_bits.Bytes(length);
        if ((length ^ inverse) != 0xFFFF || bytes.size() != length || length > m_output.size() - m_done)
            return false;
        std::copy(bytes.begin(), bytes.end(), m_output.begin() + static_cast<std::ptrdiff_t>(m_done));
        m_done += length;
        return true;
    }

    bool UseFixed() {
        std::array<std::uint8_t, 288> lengths{};
        for (std::size_t i = 0; i < lengths.size(); ++i)
            lengths[i] = i < 144 ? 8 : i < 256 ? 9 : i < 280 ? 7 : 8;
        std::array<std::uint8_t, 30> distances{};
        distances.fill(5);
        return m_literals.Make(lengths) && m_distances.Make(distances) && Unpack();
    }

    bool UseOwn() {
        constexpr std::array<std::uint8_t, 19> order{16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                     11, 4,  12, 3, 13, 2, 14, 1, 15};
        std::size_t const literals = m_bits.Take(5) + 257, distances = m_bits.Take(5) + 1;
        if (literals > 286 || distances > 30) return false;
        std::array<std::uint8_t, 320> lengths{};
        for (std::size_t i = 0, count = m_bits.Take(4) + 4; i < count; ++i)
            lengths[order[i]] = static_cast<std::uint8_t>(m_bits.Take(3));
        DeflateCode code;
        if (!code.Make(std::span(lengths).first(19))) return false;
        lengths.fill(0);
        for (std::size_t i = 0; i < literals + distances;) {
            unsigned const symbol = code.Take(m_bits);
            if (symbol > 18 || m_bits.IsOver() || (symbol == 16 && i == 0)) return false;
            unsigned const repeated = symbol == 16   ? m_bits.Take(2) + 3
                                      : symbol == 17 ? m_bits.Take(3) + 3
                                      : symbol == 18 ? m_bits.Take(7) + 11
                                                     : 1;
            if (repeated > literals + distances - i) return false;
            auto const value = symbol < 16    ? static_cast<std::uint8_t>(symbol)
                               : symbol == 16 ? lengths[i - 1]
                                              : std::uint8_t{0};
            std::fill_n(lengths.begin() + static_cast<std::ptrdiff_t>(i), repeated, value);
            i += repeated;
        }
        return m_literals.Make(std::span(lengths).first(literals)) &&
               m_distances.Make(std::span(lengths).subspan(literals, distances)) && Unpack();
    }

    // A symbol stands for a byte, for the end of the block, or for bytes that were there before.
    bool Unpack() {
        for (;;) {
            unsigned const symbol = m_literals.Take(m_bits);
            if (m_bits.IsOver() || symbol > 285) return false;
            if (symbol == 256) return true;
            if (symbol < 256) {
                if (m_done == m_output.size()) return false;
                m_output[m_done++] = static_cast<unsigned char>(symbol);
                continue;
            }
            std::size_t const length = symbol == 285 ? 258 : 3 + Grown(symbol - 257, 2);
            unsigned const place = m_distances.Take(m_bits);
            if (place > 29) return false;
            std::size_t const distance = 1 + Grown(place, 1);
            if (m_bits.IsOver() || distance > m_done || length > m_output.size() - m_done) return false;
            for (std::size_t i = 0; i < length; ++i, ++m_done)
                m_output[m_done] = m_output[m_done - distance];
        }
    }

    // The tables of section 3.2.5: numbers stand for themselves first, and then every 2^shift of them for
    // ranges that are twice as wide, the rest being told by further bits.
    std::uint32_t Grown(unsigned number, unsigned shift) {
        unsigned const step = 1u << shift;
        if (number < 2 * step) return number;
        unsigned const more = number / step - 1;
        return ((step + number % step) << more) + m_bits.Take(more);
    }

    DeflateBits m_bits;
    std::span<unsigned char> m_output;
    std::size_t m_done = 0;
    DeflateCode m_literals, m_distances;
};

}  // namespace

std::size_t Inflate(std::span<unsigned char const> packed, std::span<unsigned char> output) {
    return Inflater(packed, output).Run();
}

}  // namespace tov
