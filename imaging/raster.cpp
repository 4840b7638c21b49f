#include <tov310/raster.h>

#include <tov310/device_context.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <numeric>
#include <utility>
#include <vector>

namespace tov {
namespace {

constexpr std::uint32_t colourBits = 0x00FFFFFF;

// Where the pixels of a stretched side come from: several of them are made fewer, or one is repeated.
class StretchedSide {
 public:
    StretchedSide(int from, int length, int stretched)
        : m_from(from), m_length(length), m_stretched(stretched) {}

    bool Shrinks() const { return m_length > m_stretched; }
    int Centre(int i) const {
        return m_from +
               static_cast<int>((2 * std::int64_t{i} + 1) * m_length / (2 * std::int64_t{m_stretched}));
    }
    // The pixels that have their part in pixel i, and how large it is: 1 altogether.
    int First(int i) const { return m_from + static_cast<int>(std::int64_t{i} * m_length / m_stretched); }
    int End(int i) const {
        return m_from + static_cast<int>(((std::int64_t{i} + 1) * m_length + m_stretched - 1) / m_stretched);
    }
    float Share(int i, int source) const {
        std::int64_t const at = std::int64_t{source - m_from} * m_stretched;
        std::int64_t const begin = std::max(at, std::int64_t{i} * m_length);
        std::int64_t const end = std::min(at + m_stretched, (std::int64_t{i} + 1) * m_length);
        return static_cast<float>(end - begin) / static_cast<float>(m_length);
    }

 private:
    int m_from;
    int m_length;
    int m_stretched;
};

struct PixelSource {
    std::uint32_t const* top;  // the row at the top of the picture
    std::ptrdiff_t step;       // to the row below it
    StretchedSide across;
    StretchedSide down;

    std::uint32_t const* Row(int row) const { return top + row * step; }
};

void StretchNearest(PixelSource const& source, CRect const& part, CTovPixels& to) {
    std::vector<int> columns(static_cast<std::size_t>(part.Width()));
    for (int x = 0; x < part.Width(); ++x)
        columns[static_cast<std::size_t>(x)] = source.across.Centre(part.left + x);
    for (int y = 0; y < part.Height(); ++y) {
        std::uint32_t const* const row = source.Row(source.down.Centre(part.top + y));
        std::ranges::transform(columns, to.GetRow(y), [row](int column) { return row[column]; });
    }
}

template <class Join>
void StretchJoined(PixelSource const& source, CRect const& part, CTovPixels& to, Join join) {
    auto const range = [](StretchedSide const& side, int i) {
        if (!side.Shrinks()) return std::pair(side.Centre(i), side.Centre(i) + 1);
        // Every pixel belongs to one.
        return std::pair(side.First(i), std::max(side.First(i + 1), side.First(i) + 1));
    };
    for (int y = 0; y < part.Height(); ++y) {
        auto const [top, bottom] = range(source.down, part.top + y);
        for (int x = 0; x < part.Width(); ++x) {
            auto const [left, right] = range(source.across, part.left + x);
            std::uint32_t joined = source.Row(top)[left];
            for (int row = top; row < bottom; ++row)
                joined = std::accumulate(source.Row(row) + left, source.Row(row) + right, joined, join);
            to.GetRow(y)[x] = joined;
        }
    }
}

void StretchMean(PixelSource const& source, CRect const& part, CTovPixels& to) {
    using Sums = std::array<float, 4>;
    auto const width = static_cast<std::size_t>(part.Width());
    struct Share {
        int column;
        float share;
    };
    std::vector<Share> shares;
    std::vector<std::size_t> ends(width);
    for (std::size_t x = 0; x < width; ++x) {
        int const i = part.left + static_cast<int>(x);
        for (int column = source.across.First(i); column < source.across.End(i); ++column)
            shares.push_back({column, source.across.Share(i, column)});
        ends[x] = shares.size();
    }
    std::vector<Sums> sums(width);
    for (int y = 0; y < part.Height(); ++y) {
        std::ranges::fill(sums, Sums{});
        int const i = part.top + y;
        for (int from = source.down.First(i); from < source.down.End(i); ++from) {
            float const ofRow = source.down.Share(i, from);
            std::uint32_t const* const row = source.Row(from);
            std::size_t next = 0;
            for (std::size_t x = 0; x < width; ++x) {
                for (; next < ends[x]; ++next) {
                    std::uint32_t const pixel = row[shares[next].column];
                    float const share = ofRow * shares[next].share;
                    for (unsigned part8 = 0; part8 < 4; ++part8)
                        sums[x][part8] += share * static_cast<float>(pixel >> part8 * 8 & 0xFF);
                }
            }
        }
        for (std::size_t x = 0; x < width; ++x) {
            std::uint32_t pixel = 0;
            for (unsigned part8 = 0; part8 < 4; ++part8)
                pixel |= static_cast<std::uint32_t>(std::min(sums[x][part8] + 0.5F, 255.0F)) << part8 * 8;
            to.GetRow(y)[x] = pixel;
        }
    }
}

bool LiesWithin(CRect const& rect, int width, int height) {
    return rect.left >= 0 && rect.top >= 0 && rect.left < rect.right && rect.top < rect.bottom &&
           rect.right <= width && rect.bottom <= height;
}

}  // namespace

int TovRasterOperation(CTovPixels& to, CTovPixels const* source, CTovBrush const& brush, CPoint const& origin,
                       int dots, std::uint32_t operation) {
    if (dots < 1 ||
        (source != nullptr && (source->GetWidth() != to.GetWidth() || source->GetHeight() != to.GetHeight() ||
                               source->IsTopDown() != to.IsTopDown())))
        return 0;
    std::array<std::uint32_t, 8> outcome{};
    for (unsigned i = 0; i < outcome.size(); ++i)
        outcome[i] = (operation >> (16 + i) & 1) != 0 ? colourBits : 0;
    // The outcome chosen by the bits of the three, the highest first.
    auto const choose = [](std::uint32_t bits, std::uint32_t one, std::uint32_t zero) {
        return (bits & one) | (~bits & zero);
    };
    std::uint32_t const plain = TovSwapRedAndBlue(brush.color) & colourBits;
    for (int y = 0; y < to.GetHeight(); ++y) {
        std::uint32_t* const row = to.GetRow(y);
        for (int x = 0; x < to.GetWidth(); ++x) {
            std::uint32_t pattern = plain;
            if (brush.halftone != 0) {
                auto const square = [dots](int place, int from) {
                    return static_cast<int>(std::floor((place - from) / static_cast<double>(dots)));
                };
                pattern = ((square(x, origin.x) + square(y, origin.y)) & 1) != 0 ? colourBits : 0;
            }
            std::uint32_t const there = row[x];
            std::uint32_t const other = source != nullptr ? source->GetRow(y)[x] : 0;
            std::uint32_t const ofBrush =
                choose(other, choose(there, outcome[7], outcome[6]), choose(there, outcome[5], outcome[4]));
            std::uint32_t const without =
                choose(other, choose(there, outcome[3], outcome[2]), choose(there, outcome[1], outcome[0]));
            row[x] = (choose(pattern, ofBrush, without) & colourBits) | (there & ~colourBits);
        }
    }
    return 1;
}

HBITMAP TovStretchPixels(std::uint32_t const* bits, BITMAPINFOHEADER const& header, CRect const& from,
                         int width, int height, CRect const& part, int mode) {
    if (bits == nullptr || !CTovPixels::IsPossible(header.biWidth, header.biHeight) ||
        !LiesWithin(from, header.biWidth, std::abs(header.biHeight)) || !LiesWithin(part, width, height))
        return nullptr;
    HBITMAP to = CTovPixels::Create(part.Width(), -part.Height());
    if (!to) return nullptr;
    bool const topDown = header.biHeight < 0;
    std::ptrdiff_t const stride = header.biWidth;
    PixelSource const source{bits + stride * (topDown ? from.top : from.bottom - 1),
                             topDown ? stride : -stride,
                             {from.left, from.Width(), width},
                             {0, from.Height(), height}};
    bool const shrinks = source.across.Shrinks() || source.down.Shrinks();
    bool const isSame = from.Width() == width && from.Height() == height;
    if (mode == HALFTONE && !isSame)
        StretchMean(source, part, *to);
    else if (mode == BLACKONWHITE && shrinks)
        StretchJoined(source, part, *to, [](std::uint32_t a, std::uint32_t b) { return a & b; });
    else if (mode == WHITEONBLACK && shrinks)
        StretchJoined(source, part, *to, [](std::uint32_t a, std::uint32_t b) { return a | b; });
    else
        StretchNearest(source, part, *to);
    return to;
}

BITMAPINFOHEADER TovHeaderOf(CTovPixels const& block) {
    BITMAPINFOHEADER header;
    header.biSize = sizeof header;
    header.biWidth = block.GetWidth();
    header.biHeight = block.IsTopDown() ? -block.GetHeight() : block.GetHeight();
    header.biPlanes = 1;
    header.biBitCount = 32;
    header.biSizeImage = header.biWidth * header.biHeight * 4;
    return header;
}

void TovMakeDisabled(CTovPixels& picture, int width, int height, int aside, COLORREF face, COLORREF highlight,
                     COLORREF shadow) {
    int const columns = std::clamp(width, 0, picture.GetWidth());
    int const rows = std::clamp(height, 0, picture.GetHeight());
    auto const stampOf = [](COLORREF colour) { return TovSwapRedAndBlue(colour) & colourBits; };
    std::vector<bool> written;
    written.reserve(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows));
    for (int y = 0; y < rows; ++y) {
        for (int x = 0; x < columns; ++x) {
            std::uint32_t const pixel = picture.GetRow(y)[x] & colourBits;
            written.push_back(pixel != stampOf(face) && pixel != stampOf(highlight));
        }
    }
    auto const stamp = [&](int displaced, std::uint32_t colour) {
        for (int y = 0; y < std::min(rows, picture.GetHeight() - displaced); ++y) {
            for (int x = 0; x < std::min(columns, picture.GetWidth() - displaced); ++x) {
                auto const index = static_cast<std::size_t>(y) * static_cast<std::size_t>(columns) +
                                   static_cast<std::size_t>(x);
                if (!written[index]) continue;
                std::uint32_t& pixel = picture.GetRow(y + displaced)[x + displaced];
                pixel = (pixel & ~colourBits) | colour;
            }
        }
    };
    stamp(std::max(aside, 0), stampOf(highlight));
    stamp(0, stampOf(shadow));
}

}  // namespace tov
