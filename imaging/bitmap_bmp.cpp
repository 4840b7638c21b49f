#include "imaging/bitmap_readers.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace tov {
namespace {

constexpr std::uint32_t opaquePixel = 0xFF000000;

// Numbers are stored with the low byte first. A place behind the end reads as 0.
class BmpBytes {
 public:
    explicit BmpBytes(std::string_view bytes) : m_bytes(bytes) {}
    std::size_t Size() const { return m_bytes.size(); }
    std::uint32_t Number(std::size_t at, std::size_t count) const {
        std::uint32_t number = 0;
        for (std::size_t i = count; i-- > 0;)
            number = number << 8 | Byte(at + i);
        return number;
    }
    std::uint8_t Byte(std::size_t at) const {
        return at < m_bytes.size() ? static_cast<std::uint8_t>(m_bytes[at]) : std::uint8_t{0};
    }

 private:
    std::string_view m_bytes;
};

// One colour of a pixel with masks, stretched to 0 to 255.
class BmpMask {
 public:
    explicit BmpMask(std::uint32_t mask = 0)
        : m_mask(mask), m_shift(mask != 0 ? std::countr_zero(mask) : 0), m_most(mask >> m_shift) {}
    std::uint32_t Of(std::uint32_t pixel, std::uint32_t absent) const {
        if (m_mask == 0) return absent;
        return static_cast<std::uint32_t>((std::uint64_t{(pixel & m_mask) >> m_shift} * 255 + m_most / 2) /
                                          m_most);
    }

 private:
    std::uint32_t m_mask;
    int m_shift;
    std::uint32_t m_most;
};

class BmpReader {
 public:
    // The bytes may be the head of a file alone, whose size is told.
    BmpReader(std::string_view bytes, std::uint64_t fileSize) : m_bytes(bytes), m_fileSize(fileSize) {}

    std::uint64_t Extent() {
        if (!ReadHeader() || !MayHaveAllPixels()) return 0;
        auto const width = static_cast<std::uint64_t>(m_width), height = static_cast<std::uint64_t>(m_height);
        // At the worst a move of four bytes and a run of two for every pixel, and two for the end of a row.
        std::uint64_t const most = IsPacked() ? (width * 6 + 2) * height + 2 : m_stride * height;
        return std::min(m_fileSize, m_pixels + most);
    }

    HBITMAP Read() {
        if (!ReadHeader() || !MayHaveAllPixels()) return nullptr;
        m_bitmap = CTovPixels::Create(static_cast<int>(m_width), -static_cast<int>(m_height));
        if (m_bitmap == nullptr) return nullptr;
        if (IsPacked()) {
            if (!Unpack()) return nullptr;
        } else {
            for (std::int64_t y = 0; y < m_height; ++y)
                ReadRow(y);
        }
        if (m_bits == 32) Settle();
        return std::move(m_bitmap);
    }

 private:
    enum Compression : std::uint32_t { plain = 0, rle8 = 1, rle4 = 2, masks = 3, alphaMasks = 6 };

    bool ReadHeader() {
        std::size_t const size = m_bytes.Number(14, 4);
        bool const isOld = size == 12;
        if (!isOld && (size < 40 || size > 256)) return false;
        std::size_t const palette = 14 + size;
        if (m_bytes.Size() < palette) return false;
        std::int64_t const height = isOld ? std::int64_t{m_bytes.Number(20, 2)}
                                          : std::int64_t{static_cast<std::int32_t>(m_bytes.Number(22, 4))};
        m_width = isOld ? std::int64_t{m_bytes.Number(18, 2)}
                        : std::int64_t{static_cast<std::int32_t>(m_bytes.Number(18, 4))};
        m_height = height < 0 ? -height : height;
        m_isTopDown = height < 0;
        m_bits = isOld ? m_bytes.Number(24, 2) : m_bytes.Number(28, 2);
        m_compression = isOld ? plain : m_bytes.Number(30, 4);
        if (!IsBitmapSize(m_width, m_height)) return false;

        constexpr std::array depths{1u, 4u, 8u, 16u, 24u, 32u};
        if (std::find(depths.begin(), depths.end(), m_bits) == depths.end()) return false;
        bool const hasMasks = m_compression == masks || m_compression == alphaMasks;
        if (hasMasks ? m_bits != 16 && m_bits != 32
                     : !(m_compression == plain || (m_compression == rle8 && m_bits == 8) ||
                         (m_compression == rle4 && m_bits == 4))) {
            return false;
        }
        std::size_t const behind = hasMasks && size == 40 ? (m_compression == alphaMasks ? 16u : 12u) : 0u;
        if (hasMasks) {
            bool const hasAlpha = m_compression == alphaMasks || size >= 56;
            m_masks = {BmpMask(m_bytes.Number(54, 4)), BmpMask(m_bytes.Number(58, 4)),
                       BmpMask(m_bytes.Number(62, 4)), BmpMask(hasAlpha ? m_bytes.Number(66, 4) : 0)};
        } else if (m_bits == 16) {
            m_masks = {BmpMask(0x7C00), BmpMask(0x03E0), BmpMask(0x001F), BmpMask()};
        }
        ReadPalette(palette + behind, isOld ? 3 : 4, isOld ? 0 : m_bytes.Number(46, 4));
        m_pixels = m_bytes.Number(10, 4);
        m_stride = (static_cast<std::size_t>(m_width) * m_bits + 31) / 32 * 4;
        return m_pixels >= palette && m_pixels < m_fileSize;
    }

    void ReadPalette(std::size_t at, std::size_t each, std::uint32_t count) {
        m_palette.fill(opaquePixel);
        if (m_bits > 8) return;
        std::uint32_t const most = 1u << m_bits;
        for (std::size_t i = 0; i < (count == 0 ? most : std::min(count, most)); ++i)
            m_palette[i] = opaquePixel | m_bytes.Number(at + i * each, 3);
    }

    bool IsPacked() const { return m_compression == rle8 || m_compression == rle4; }

    bool MayHaveAllPixels() const {
        auto const width = static_cast<std::uint64_t>(m_width), height = static_cast<std::uint64_t>(m_height);
        std::uint64_t const stored = m_fileSize - m_pixels;
        // Two bytes stand for at most 255 pixels. Moves could leave out more, which nobody does who has a
        // picture to tell.
        if (IsPacked()) return stored / 2 * 255 >= width * height;
        // The padding of the last row may be left out.
        return stored >= m_stride * (height - 1) + (width * m_bits + 7) / 8;
    }

    std::uint32_t* Row(std::int64_t stored) {
        return m_bitmap->GetRow(static_cast<int>(m_isTopDown ? stored : m_height - 1 - stored));
    }

    void ReadRow(std::int64_t y) {
        std::uint32_t* const row = Row(y);
        std::size_t const start = m_pixels + m_stride * static_cast<std::size_t>(y);
        for (std::size_t x = 0; x < static_cast<std::size_t>(m_width); ++x) {
            std::size_t const bit = x * m_bits;
            std::size_t const at = start + bit / 8;
            if (m_bits <= 8) {
                row[x] =
                    m_palette[unsigned{m_bytes.Byte(at)} >> (8 - m_bits - bit % 8) & ((1u << m_bits) - 1)];
            } else if (m_bits == 24) {
                row[x] = opaquePixel | m_bytes.Number(at, 3);
            } else if (m_bits == 32 && m_compression == plain) {
                row[x] = m_bytes.Number(at, 4);
            } else {
                std::uint32_t const pixel = m_bytes.Number(at, m_bits / 8);
                row[x] = m_masks[3].Of(pixel, 255) << 24 | m_masks[0].Of(pixel, 0) << 16 |
                         m_masks[1].Of(pixel, 0) << 8 | m_masks[2].Of(pixel, 0);
            }
        }
    }

    // Runs of equal and of different pixels, and moves. What a move leaves out has the first colour.
    bool Unpack() {
        std::fill_n(m_bitmap->GetBits(), m_bitmap->GetCount(), m_palette[0]);
        bool const isHalf = m_compression == rle4;
        std::int64_t x = 0, y = 0;
        for (std::size_t at = m_pixels; at + 1 < m_bytes.Size();) {
            std::uint8_t const count = m_bytes.Byte(at), code = m_bytes.Byte(at + 1);
            at += 2;
            std::size_t const length = count != 0 ? count : code;
            if (count == 0 && code == 1) return true;
            if (count == 0 && code == 0) {
                x = 0;
                ++y;
            } else if (count == 0 && code == 2) {
                if (at + 2 > m_bytes.Size()) return false;
                x += m_bytes.Byte(at);
                y += m_bytes.Byte(at + 1);
                at += 2;
            } else {
                if (y >= m_height || x + static_cast<std::int64_t>(length) > m_width) return false;
                std::size_t const stored = count != 0 ? 0 : isHalf ? (length + 1) / 2 : length;
                if (at + stored > m_bytes.Size()) return false;
                std::uint32_t* const row = Row(y) + x;
                for (std::size_t i = 0; i < length; ++i) {
                    std::uint8_t const value = count != 0 ? code : m_bytes.Byte(at + (isHalf ? i / 2 : i));
                    row[i] = m_palette[!isHalf ? value : i % 2 == 0 ? value >> 4 : value & 15];
                }
                at += (stored + 1) / 2 * 2;
                x += static_cast<std::int64_t>(length);
            }
            if (y > m_height) return false;
        }
        return false;  // the mark of the end is missing
    }

    // The fourth byte is meant as alpha only where it is not 0 everywhere.
    void Settle() {
        std::span const pixels(m_bitmap->GetBits(), m_bitmap->GetCount());
        if (std::any_of(pixels.begin(), pixels.end(), [](std::uint32_t p) { return p >> 24 != 0; })) return;
        for (std::uint32_t& pixel : pixels)
            pixel |= opaquePixel;
    }

    BmpBytes m_bytes;
    std::uint64_t m_fileSize;
    std::int64_t m_width = 0;
    std::int64_t m_height = 0;
    bool m_isTopDown = false;
    std::uint32_t m_bits = 0;
    std::uint32_t m_compression = plain;
    std::size_t m_pixels = 0;  // where they begin
    std::size_t m_stride = 0;
    std::array<BmpMask, 4> m_masks;  // red, green, blue, alpha
    std::array<std::uint32_t, 256> m_palette{};
    HBITMAP m_bitmap;
};

}  // namespace

HBITMAP ReadBmp(std::string_view bytes) {
    return bytes.starts_with(bmpSignature) ? BmpReader(bytes, bytes.size()).Read() : nullptr;
}

std::uint64_t BmpExtent(std::string_view head, std::uint64_t fileSize) {
    return head.starts_with(bmpSignature) ? BmpReader(head, fileSize).Extent() : 0;
}

}  // namespace tov
