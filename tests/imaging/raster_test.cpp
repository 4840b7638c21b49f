// Raster operations, stretched pixels and what devices make of them.
#include "support/fake_device.h"

#include <tov310/paper.h>
#include <tov310/system.h>

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace tov {
namespace {

using test::FakeDevice;

std::mt19937 randomness(5);

int AnyOf(int least, int most) {
    return std::uniform_int_distribution(least, most)(randomness);
}

HBITMAP AnyBlock(int width, int height) {
    HBITMAP block = CTovPixels::Create(width, height);
    std::generate_n(block->GetBits(), block->GetCount(), std::ref(randomness));
    return block;
}

std::uint32_t PixelAt(CTovPixels const& block, int x, int y) {
    return block.GetRow(block.IsTopDown() ? y : block.GetHeight() - 1 - y)[x];
}

TEST(RasterTest, AllOperationsFollowTheirTable) {
    CTovBrush const plain{0x563412};
    for (std::uint32_t table = 0; table < 256; ++table) {
        std::uint32_t const operation = table << 16 | 0xABCD;
        HBITMAP const source = AnyBlock(3, -2);
        HBITMAP const before = AnyBlock(3, -2);
        bool asked[3] = {};
        for (int halftone : {0, 1}) {
            HBITMAP const to = CTovPixels::Create(3, -2);
            to->CopyFrom(*before);
            ASSERT_EQ(TovRasterOperation(*to, source.get(), {plain.color, halftone}, {1, 0}, 1, operation),
                      1);
            for (int i = 0; i < 6; ++i) {
                std::uint32_t const there = before->GetBits()[i];
                std::uint32_t const brush =
                    halftone ? ((i % 3 - 1 + i / 3) % 2 != 0 ? 0xFFFFFF : 0) : 0x123456;
                std::uint32_t expected = there & 0xFF000000;
                for (int bit = 0; bit < 24; ++bit) {
                    auto const of = [bit](std::uint32_t value) { return value >> bit & 1; };
                    unsigned const row = of(brush) << 2 | of(source->GetBits()[i]) << 1 | of(there);
                    expected |= (table >> row & 1) << bit;
                    for (unsigned part = 0; part < 3; ++part)
                        asked[part] |= (table >> row & 1) != (table >> (row ^ 1U << part) & 1);
                }
                ASSERT_EQ(to->GetBits()[i], expected) << table << ' ' << i;
            }
        }
        EXPECT_TRUE(asked[0] == TovNeedsDestination(operation) && asked[1] == TovNeedsSource(operation) &&
                    asked[2] == TovNeedsBrush(operation))
            << table;
    }
    HBITMAP const to = AnyBlock(3, -2);
    for (auto const& [width, height] : {std::pair(2, -2), {3, -1}, {3, 2}})
        EXPECT_EQ(TovRasterOperation(*to, AnyBlock(width, height).get(), plain, {}, 1, SRCCOPY), 0);
}

// One pixel of a stretched picture, from the top, as the words of the header have it.
std::uint32_t StretchedPixel(CTovPixels const& source, CRect const& from, int width, int height, int x, int y,
                             int mode) {
    int const wide = from.Width(), high = from.Height();
    auto const at = [&](int column, int row) { return PixelAt(source, from.left + column, from.top + row); };
    bool const same = wide == width && high == height;
    bool const shrinks = wide > width || high > height;
    if (same || mode == COLORONCOLOR || (mode != HALFTONE && !shrinks))
        return at((2 * x + 1) * wide / (2 * width), (2 * y + 1) * high / (2 * height));
    double sums[4] = {};
    std::uint32_t all = ~0U, any = 0;
    for (int row = 0; row < high; ++row) {
        for (int column = 0; column < wide; ++column) {
            auto const share = [](int i, int length, int stretched, int place) {
                double const a = std::max(double(place) / length, double(i) / stretched);
                double const b = std::min(double(place + 1) / length, double(i + 1) / stretched);
                return std::max(b - a, 0.0) * stretched;
            };
            double const part = share(x, wide, width, column) * share(y, high, height, row);
            for (unsigned i = 0; i < 4; ++i)
                sums[i] += part * (at(column, row) >> 8 * i & 0xFF);
            // Each pixel belongs to the one that it begins in; in a direction that does not shrink, the
            // centre's.
            auto const belongs = [](int i, int length, int stretched, int place) {
                return length > stretched
                           ? place >= i * length / stretched && place < (i + 1) * length / stretched
                           : place == (2 * i + 1) * length / (2 * stretched);
            };
            if (!belongs(x, wide, width, column) || !belongs(y, high, height, row)) continue;
            all &= at(column, row);
            any |= at(column, row);
        }
    }
    if (mode != HALFTONE) return mode == BLACKONWHITE ? all : any;
    std::uint32_t mean = 0;
    for (unsigned i = 0; i < 4; ++i)
        mean |= static_cast<std::uint32_t>(sums[i] + 0.5) << 8 * i;
    return mean;
}

TEST(RasterTest, StretchesByItsMode) {
    for (int round = 0; round < 400; ++round) {
        HBITMAP const source = AnyBlock(AnyOf(1, 9), AnyOf(1, 9) * (round % 2 != 0 ? 1 : -1));
        int const left = AnyOf(0, source->GetWidth() - 1), top = AnyOf(0, source->GetHeight() - 1);
        CRect const seen{left, top, AnyOf(left + 1, source->GetWidth()), AnyOf(top + 1, source->GetHeight())};
        CRect rows = seen;  // in memory
        if (!source->IsTopDown())
            rows = {seen.left, source->GetHeight() - seen.bottom, seen.right, source->GetHeight() - seen.top};
        int const width = AnyOf(1, 12), height = AnyOf(1, 12), mode = AnyOf(BLACKONWHITE, HALFTONE);
        int const x = AnyOf(0, width - 1), y = AnyOf(0, height - 1);
        HBITMAP const to = TovStretchPixels(source->GetBits(), TovHeaderOf(*source), rows, width, height,
                                            {x, y, width, height}, mode);
        ASSERT_TRUE(to && to->GetWidth() == width - x && to->GetHeight() == height - y && to->IsTopDown());
        for (int row = y; row < height; ++row) {
            for (int column = x; column < width; ++column) {
                std::uint32_t const expected =
                    StretchedPixel(*source, seen, width, height, column, row, mode);
                std::uint32_t const pixel = PixelAt(*to, column - x, row - y);
                for (unsigned shift = 0; shift < 32; shift += 8)
                    ASSERT_NEAR(pixel >> shift & 0xFF, expected >> shift & 0xFF, mode == HALFTONE ? 1 : 0)
                        << round << ' ' << mode;
            }
        }
    }
    HBITMAP const block = AnyBlock(4, -4);
    auto const stretch = [&](CRect const& from, int width, CRect const& part) {
        return TovStretchPixels(block->GetBits(), TovHeaderOf(*block), from, width, 4, part, HALFTONE);
    };
    EXPECT_TRUE(stretch({0, 0, 4, 4}, 4, {0, 0, 4, 4}));
    EXPECT_FALSE(stretch({0, 0, 5, 4}, 4, {0, 0, 4, 4}) || stretch({-1, 0, 4, 4}, 4, {0, 0, 4, 4}) ||
                 stretch({2, 0, 2, 4}, 4, {0, 0, 4, 4}) || stretch({0, 0, 4, 4}, 4, {0, 0, 5, 4}) ||
                 stretch({0, 0, 4, 4}, 0, {0, 0, 0, 4}) ||
                 TovStretchPixels(nullptr, TovHeaderOf(*block), {0, 0, 4, 4}, 4, 4, {0, 0, 4, 4}, 3));
}

// 'f' face, 'h' highlight, 's' shadow, '#' ink, as a screen has them.
struct ColoursOfButtons : ITovSystem {
    ColoursOfButtons() { TovSetSystem(this); }
    ~ColoursOfButtons() override { TovSetSystem(nullptr); }
    std::uint32_t GetSysColor(int index) override {
        return index == COLOR_BTNFACE ? 0xC0D0E0 : index == COLOR_BTNHIGHLIGHT ? 0xFFFEFD : 0x706050;
    }
    std::uint32_t PixelOf(char c) {
        return c == '#' ? 0x102030
                        : TovSwapRedAndBlue(GetSysColor(c == 'f'   ? COLOR_BTNFACE
                                                        : c == 'h' ? COLOR_BTNHIGHLIGHT
                                                                   : COLOR_BTNSHADOW));
    }
};

TEST(RasterTest, DisabledControlsHaveShadowsAndHighlights) {
    ColoursOfButtons system;
    auto const pixels = [&](std::string const& picture) {
        std::vector<std::uint32_t> made;
        for (char const c : picture)
            made.push_back(system.PixelOf(c));
        return made;
    };
    std::string const before =
        "########"
        "#ffhff##"
        "#f##fff#"
        "#fff#f##"
        "#ffffff#"
        "########";
    std::string const after =  // of the rectangle from (1, 1) to (7, 4)
        "########"
        "#ffhffs#"
        "#fssfffh"
        "#ffhsfs#"
        "#ffffhfh"
        "########";
    FakeDevice dc(8, 6);
    dc.pixels = pixels(before);
    CTovCDCHelper::MakeDlgDisabled(&dc, {1, 1, 7, 4});
    std::vector<std::uint32_t> expected = pixels(after);
    EXPECT_EQ(dc.pixels, expected);
    CTovCDCHelper::MakeDlgDisabled(&dc, {3, 3, 3, 4});
    CTovCDCHelper::MakeDlgDisabled(nullptr, {1, 1, 7, 5});
    EXPECT_EQ(dc.pixels, expected);
    CTovCDCHelper::MakeDlgDisabled(&dc, {0, 0, 8, 6});  // nothing lies beyond
    EXPECT_EQ(dc.At(0, 0), system.PixelOf('s'));
}

TEST(RasterTest, RubberBandGoesWhenDrawnAgain) {
    struct {
        CRect rect;
        std::pair<CPoint, CPoint> corners;  // the last one belongs to the band
    } const rows[] = {{{2, 1, 7, 5}, {{2, 1}, {7, 5}}},
                      {{7, 5, 2, 1}, {{2, 1}, {7, 5}}},
                      {{3, 2, 4, 3}, {{3, 2}, {4, 3}}},
                      {{3, 2, 3, 6}, {{9, 9}, {0, 0}}}};
    for (auto const& row : rows) {
        FakeDevice dc(8, 8);
        std::ranges::generate(dc.pixels, std::ref(randomness));
        auto const before = dc.pixels;
        dc.SelectBrush({0x123456});
        CTovCDCHelper::DrawRubberBand(&dc, row.rect);
        auto const& [first, last] = row.corners;
        for (int i = 0; i < 64; ++i) {
            int const x = i % 8, y = i / 8;
            bool const on = x >= first.x && x <= last.x && y >= first.y && y <= last.y &&
                            (x == first.x || x == last.x || y == first.y || y == last.y);
            std::uint32_t const inverted = on && (x + y) % 2 != 0 ? 0xFFFFFF : 0;
            EXPECT_EQ(dc.At(x, y), before[static_cast<std::size_t>(i)] ^ inverted) << x << ',' << y;
        }
        CTovCDCHelper::DrawRubberBand(&dc, row.rect);
        EXPECT_EQ(dc.pixels, before);
        EXPECT_EQ(dc.GetBrush(), CTovBrush{0x123456});
    }
}

TEST(RasterTest, DevicesTakePixelsFromDevices) {
    FakeDevice from(4, 4), to(4, 4);
    std::ranges::generate(from.pixels, std::ref(randomness));
    EXPECT_TRUE(to.BitBlt(1, 0, 3, 2, &from, 0, 2, SRCCOPY));
    EXPECT_TRUE(to.At(1, 0) == from.At(0, 2) && to.At(3, 1) == from.At(2, 3) && to.At(0, 0) == 0);
    EXPECT_FALSE(to.BitBlt(0, 0, 4, 4, nullptr, 0, 0, SRCCOPY) ||
                 to.BitBlt(0, 0, 4, 4, &from, 1, 0, SRCCOPY) || to.PatBlt(0, 0, 4, 4, SRCCOPY) ||
                 to.PatBlt(0, 0, 0, 4, PATCOPY));
    EXPECT_TRUE(to.FillSolidRect({0, 0, 2, 2}, 0x332211));
    EXPECT_TRUE(to.At(1, 1) == 0x112233 && to.At(2, 1) == from.At(1, 3));
    EXPECT_TRUE(to.PatBlt(1, 1, 1, 1, DSTINVERT));
    EXPECT_EQ(to.At(1, 1), 0xEEDDCCu);

    HBITMAP const block = CTovPixels::Create(1, -1);
    *block->GetBits() = 0x80FF0000;
    EXPECT_TRUE(to.AlphaBlend({0, 0, 1, 1}, *block));
    EXPECT_EQ(to.At(0, 0), 0x881119u);
    CDC nothing;
    EXPECT_FALSE(nothing.AlphaBlend({0, 0, 1, 1}, *block) || nothing.FillSolidRect({0, 0, 1, 1}, 0));
}

}  // namespace
}  // namespace tov
