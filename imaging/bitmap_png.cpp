#include "imaging/bitmap_readers.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <new>
#include <vector>

namespace tov {
namespace {

using namespace std::string_view_literals;

std::uint32_t PngNumber(std::string_view bytes, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < 4; ++i)
        number = number << 8 | static_cast<unsigned char>(bytes[at + i]);
    return number;
}

// ISO 3309, as annex D tells.
std::uint32_t PngSum(std::string_view bytes) {
    static constexpr auto table = [] {
        std::array<std::uint32_t, 256> made{};
        for (std::uint32_t i = 0; i < 256; ++i) {
            std::uint32_t value = i;
            for (int bit = 0; bit < 8; ++bit)
                value = value % 2 != 0 ? 0xEDB88320u ^ value >> 1 : value >> 1;
            made[i] = value;
        }
        return made;
    }();
    std::uint32_t sum = ~0u;
    for (char const byte : bytes)
        sum = table[(sum ^ static_cast<unsigned char>(byte)) & 255] ^ sum >> 8;
    return ~sum;
}

// The sum of a zlib stream (RFC 1950, section 8.2).
std::uint32_t AdlerSum(std::span<unsigned char const> bytes) {
    constexpr std::uint32_t base = 65521;
    constexpr std::size_t most = 5552;  // so many before the sums need more than 32 bits
    std::uint32_t low = 1, high = 0;
    while (!bytes.empty()) {
        auto const part = bytes.first(std::min(most, bytes.size()));
        for (unsigned char const byte : part)
            high += low += byte;
        low %= base;
        high %= base;
        bytes = bytes.subspan(part.size());
    }
    return high << 16 | low;
}

// What lies between the points of one part of an interlaced picture.
struct PngPass {
    std::uint32_t left, top, right, down;
};

constexpr PngPass wholePass[] = {{0, 0, 1, 1}};
constexpr PngPass interlacedPasses[] = {{0, 0, 8, 8}, {4, 0, 8, 8}, {0, 4, 4, 8}, {2, 0, 4, 4},
                                        {0, 2, 2, 4}, {1, 0, 2, 2}, {0, 1, 1, 2}};

class PngReader {
 public:
    HBITMAP Read(std::string_view bytes) {
        if (!bytes.starts_with(pngSignature) || !ReadChunks(bytes.substr(pngSignature.size())))
            return nullptr;
        constexpr std::size_t zlibHead = 2, zlibSum = 4;
        if (!MayFill(m_packed.size()) || m_packed.size() < zlibHead) return nullptr;
        if ((m_packed[0] & 15) != 8 || (m_packed[1] & 32) != 0) return nullptr;
        std::vector<unsigned char> rows(Unpacked());
        std::size_t const end = Inflate(std::span(m_packed).subspan(zlibHead), rows) + zlibHead;
        if (end == zlibHead || m_packed.size() - end < zlibSum) return nullptr;
        std::string_view const sum(reinterpret_cast<char const*>(m_packed.data()) + end, zlibSum);
        bool const isSound = PngNumber(sum, 0) == AdlerSum(rows);
        m_packed = {};
        m_bitmap = CTovPixels::Create(static_cast<int>(m_width), -static_cast<int>(m_height));
        if (m_bitmap == nullptr) return nullptr;
        std::span<unsigned char> rest(rows);
        for (PngPass const& pass : m_passes) {
            if (!ReadPass(pass, rest)) return nullptr;
        }
        // Judged last: files with a wrong sum, as a fuzzer makes them, go through all the rest as well.
        return isSound ? std::move(m_bitmap) : nullptr;
    }

    // Of a file of that size.
    bool IsPossible(std::string_view head, std::uint64_t fileSize) {
        constexpr std::size_t begin = 16, end = begin + 13;  // of what the first chunk holds
        return head.size() >= end && head.starts_with(pngSignature) &&
               ReadHeader(head.substr(begin, end - begin)) && MayFill(fileSize);
    }

 private:
    enum Kind : unsigned { grey = 0, colour = 2, palette = 3, greyAlpha = 4, colourAlpha = 6 };

    bool ReadChunks(std::string_view bytes) {
        for (bool isFirst = true; bytes.size() >= 12; isFirst = false) {
            std::size_t const length = PngNumber(bytes, 0);
            if (length > bytes.size() - 12) return false;
            std::string_view const name = bytes.substr(4, 4), data = bytes.substr(8, length);
            if (PngSum(bytes.substr(4, length + 4)) != PngNumber(bytes, length + 8)) return false;
            bytes.remove_prefix(length + 12);
            if (isFirst != (name == "IHDR"sv)) return false;
            if (name == "IEND"sv) return m_hasPalette || m_kind != palette;
            if (!ReadChunk(name, data)) return false;
        }
        return false;
    }

    bool ReadChunk(std::string_view name, std::string_view data) {
        if (name == "IHDR"sv) return ReadHeader(data);
        if (name == "PLTE"sv) return ReadPalette(data);
        if (name == "IDAT"sv) {
            m_packed.insert(m_packed.end(), data.begin(), data.end());
            return true;
        }
        if (name == "tRNS"sv) ReadTransparency(data);
        constexpr unsigned char mayBeIgnored = 32;
        return (static_cast<unsigned char>(name[0]) & mayBeIgnored) != 0;
    }

    bool ReadHeader(std::string_view data) {
        if (data.size() != 13) return false;
        m_width = PngNumber(data, 0);
        m_height = PngNumber(data, 4);
        m_depth = static_cast<unsigned char>(data[8]);
        m_kind = static_cast<unsigned char>(data[9]);
        auto const isOneOf = [](unsigned value, std::initializer_list<unsigned> values) {
            return std::find(values.begin(), values.end(), value) != values.end();
        };
        bool const isKind = m_kind == grey      ? isOneOf(m_depth, {1, 2, 4, 8, 16})
                            : m_kind == palette ? isOneOf(m_depth, {1, 2, 4, 8})
                                                : isOneOf(m_kind, {colour, greyAlpha, colourAlpha}) &&
                                                      isOneOf(m_depth, {8, 16});
        m_samples = m_kind == colour ? 3 : m_kind == greyAlpha ? 2 : m_kind == colourAlpha ? 4 : 1;
        if (data[12] == 1) m_passes = interlacedPasses;
        return isKind && IsBitmapSize(m_width, m_height) && data[10] == 0 && data[11] == 0 &&
               (data[12] == 0 || data[12] == 1);
    }

    bool ReadPalette(std::string_view data) {
        if (data.size() % 3 != 0 || data.size() > 768) return false;
        for (std::size_t i = 0; i < data.size() / 3; ++i) {
            auto const byte = [&](std::size_t k) {
                return std::uint32_t{static_cast<unsigned char>(data[i * 3 + k])};
            };
            m_palette[i] = 0xFF000000 | byte(0) << 16 | byte(1) << 8 | byte(2);
        }
        m_hasPalette = true;
        return true;
    }

    void ReadTransparency(std::string_view data) {
        auto const byte = [&](std::size_t i) { return static_cast<unsigned char>(data[i]); };
        if (m_kind == palette) {
            for (std::size_t i = 0; i < std::min<std::size_t>(data.size(), 256); ++i)
                m_palette[i] = (m_palette[i] & 0x00FFFFFF) | std::uint32_t{byte(i)} << 24;
        } else if ((m_kind == grey || m_kind == colour) && data.size() >= std::size_t{m_samples} * 2) {
            for (unsigned i = 0; i < m_samples; ++i)
                m_key[i] = byte(i * 2) * 256u + byte(i * 2 + 1);
            m_hasKey = true;
        }
    }

    std::uint32_t Columns(PngPass const& pass) const {
        return m_width > pass.left ? (m_width - pass.left + pass.right - 1) / pass.right : 0;
    }
    std::size_t Rows(PngPass const& pass) const {
        if (Columns(pass) == 0 || m_height <= pass.top) return 0;
        return (m_height - pass.top + pass.down - 1) / pass.down;
    }
    std::size_t RowBytes(PngPass const& pass) const {
        return (std::size_t{Columns(pass)} * m_samples * m_depth + 7) / 8;
    }

    // The rows of all passes, each behind the number of its filter.
    std::size_t Unpacked() const {
        std::size_t size = 0;
        for (PngPass const& pass : m_passes)
            size += Rows(pass) * (RowBytes(pass) + 1);
        return size;
    }

    // A byte stands for at most 1032 others: more would be a lie, told for the sake of our memory.
    bool MayFill(std::uint64_t packed) const { return Unpacked() / 1032 <= packed; }

    // Takes the rows of the pass from the front of the bytes.
    bool ReadPass(PngPass const& pass, std::span<unsigned char>& bytes) {
        std::size_t const length = RowBytes(pass);
        std::span<unsigned char const> above;
        for (std::size_t row = 0; row < Rows(pass); ++row) {
            unsigned const filter = bytes[0];
            auto const line = bytes.subspan(1, length);
            if (!Unfilter(filter, line, above)) return false;
            std::uint32_t* const target = m_bitmap->GetRow(static_cast<int>(pass.top + row * pass.down));
            for (std::uint32_t x = 0; x < Columns(pass); ++x)
                target[pass.left + std::size_t{x} * pass.right] = Pixel(line, x);
            above = line;
            bytes = bytes.subspan(length + 1);
        }
        return true;
    }

    // Each byte was stored as its difference from a guess made of those to the left (a), above (b) and above
    // the left (c).
    bool Unfilter(unsigned filter, std::span<unsigned char> line,
                  std::span<unsigned char const> above) const {
        if (filter > 4) return false;
        std::size_t const step = std::max<std::size_t>(1, std::size_t{m_samples} * m_depth / 8);
        for (std::size_t i = 0; filter != 0 && i < line.size(); ++i) {
            int const a = i >= step ? line[i - step] : 0;
            int const b = above.empty() ? 0 : above[i];
            int const c = i >= step && !above.empty() ? above[i - step] : 0;
            int guess = 0;
            switch (filter) {
                case 1:
                    guess = a;
                    break;
                case 2:
                    guess = b;
                    break;
                case 3:
                    guess = (a + b) / 2;
                    break;
                default: {
                    int const toA = std::abs(b - c), toB = std::abs(a - c), toC = std::abs(a + b - 2 * c);
                    guess = toA <= toB && toA <= toC ? a : toB <= toC ? b : c;
                }
            }
            line[i] = static_cast<unsigned char>(line[i] + guess);
        }
        return true;
    }

    unsigned Sample(std::span<unsigned char const> line, std::size_t index) const {
        if (m_depth == 16) return line[index * 2] * 256u + line[index * 2 + 1];
        std::size_t const bit = index * m_depth;
        return unsigned{line[bit / 8]} >> (8 - m_depth - bit % 8) & ((1u << m_depth) - 1);
    }

    std::uint32_t Pixel(std::span<unsigned char const> line, std::uint32_t x) const {
        if (m_kind == palette) return m_palette[Sample(line, x)];
        std::array<unsigned, 4> samples{};
        bool isKey = m_hasKey;
        for (unsigned i = 0; i < m_samples; ++i) {
            unsigned const sample = Sample(line, std::size_t{x} * m_samples + i);
            isKey = isKey && sample == m_key[i];
            samples[i] = m_depth == 16 ? sample >> 8 : sample * 255 / ((1u << m_depth) - 1);
        }
        auto const [red, green, blue, last] = samples;
        if (m_kind == grey || m_kind == greyAlpha)
            return (m_kind == grey ? (isKey ? 0u : 255u) : green) << 24 | red * 0x010101u;
        return (m_kind == colour ? (isKey ? 0u : 255u) : last) << 24 | red << 16 | green << 8 | blue;
    }

    std::uint32_t m_width = 0;
    std::uint32_t m_height = 0;
    unsigned m_depth = 0;
    unsigned m_kind = grey;
    unsigned m_samples = 0;
    bool m_hasPalette = false;
    bool m_hasKey = false;
    std::array<unsigned, 3> m_key{};
    std::array<std::uint32_t, 256> m_palette = MakePalette();
    std::span<PngPass const> m_passes = wholePass;
    std::vector<unsigned char> m_packed;
    HBITMAP m_bitmap;

    static std::array<std::uint32_t, 256> MakePalette() {
        std::array<std::uint32_t, 256> colours{};
        colours.fill(0xFF000000);
        return colours;
    }
};

}  // namespace

HBITMAP ReadPng(std::string_view bytes) try {
    return PngReader().Read(bytes);
} catch (std::bad_alloc const&) {
    return nullptr;
}

std::uint64_t PngExtent(std::string_view head, std::uint64_t fileSize) {
    return PngReader().IsPossible(head, fileSize) ? fileSize : 0;
}

}  // namespace tov
