// Images on a device that is a picture in memory and notes how it was asked.
#include <tov310/device_context.h>
#include <tov310/draw_dib.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace tov {
namespace {

using Pixels = std::vector<std::uint32_t>;

struct FakeDC : CDC {
    static constexpr int width = 8;
    static constexpr int height = 8;
    Pixels pixels = Pixels(width * height);
    int attributes = 0;
    int drawings = 0;
    int modeOfDrawing = 0;
    CPoint originOfDrawing;
    std::uint32_t operation = 0;

    int SetDIBitsToDevice(int x, int y, int w, int h, std::uint32_t const* bits,
                          BITMAPINFOHEADER const& header) override {
        int const rows = std::min(h, std::abs(header.biHeight));
        for (int row = 0; row < rows; ++row)
            Row(x, header.biHeight < 0 ? y + row : y + h - 1 - row, w, bits + row * header.biWidth);
        return rows;
    }

    // Only sizes that are multiples of the source's.
    int StretchDIBits(int x, int y, int w, int h, int xs, int ys, int ws, int hs, std::uint32_t const* bits,
                      BITMAPINFOHEADER const& header, std::uint32_t rop) override {
        ++drawings;
        modeOfDrawing = GetStretchBltMode();
        originOfDrawing = GetBrushOrg();
        operation = rop;
        for (int row = 0; row < h; ++row) {
            int const fromTop = row * hs / h;
            int const from = ys + (header.biHeight < 0 ? fromTop : hs - 1 - fromTop);
            for (int column = 0; column < w; ++column)
                Row(x + column, y + row, 1, bits + from * header.biWidth + xs + column * ws / w);
        }
        return hs;
    }

    int GetDIBits(int x, int y, CTovPixels& to) override {
        if (x < 0 || y < 0 || x + to.GetWidth() > width || y + to.GetHeight() > height) return 0;
        for (int row = 0; row < to.GetHeight(); ++row)
            std::copy_n(&pixels[static_cast<std::size_t>((y + row) * width + x)], to.GetWidth(),
                        to.GetRow(to.IsTopDown() ? row : to.GetHeight() - 1 - row));
        return to.GetHeight();
    }

    int HasAttributeDC() const override { return attributes; }

    void Row(int x, int y, int w, std::uint32_t const* from) {
        for (int i = 0; i < w; ++i)
            pixels.at(static_cast<std::size_t>(y * width + x + i)) = from[i];
    }
    std::uint32_t At(int x, int y) const { return pixels.at(static_cast<std::size_t>(y * width + x)); }
};

// A picture with the numbers 1, 2, 3 in its top row and 4, 5, 6 in the one below.
CTovDib Numbered(bool topDown) {
    CTovDib dib;
    dib.Create(3, topDown ? -2 : 2);
    for (std::uint32_t i = 0; i < 6; ++i)
        dib.GetCrBits()[topDown ? i : (i + 3) % 6] = i + 1;
    return dib;
}

TEST(DibDeviceTest, ShowsTheSamePictureInEitherDirection) {
    for (bool const topDown : {false, true}) {
        CTovDib const dib = Numbered(topDown);
        FakeDC dc;
        EXPECT_TRUE(dib.CopyToDC(&dc, 1, 2));
        EXPECT_TRUE(dc.At(1, 2) == 1 && dc.At(3, 2) == 3 && dc.At(1, 3) == 4 && dc.At(3, 3) == 6);
        EXPECT_TRUE(dib.CopyToDCStretch(&dc, 0, 4, 6, 4));
        EXPECT_TRUE(dc.At(0, 4) == 1 && dc.At(5, 5) == 3 && dc.At(1, 6) == 4 && dc.At(4, 7) == 6);
        EXPECT_EQ(dc.operation, SRCCOPY);
        // The lower row, with a part that lies outside.
        EXPECT_TRUE(dib.CopyToDCStretchRect(&dc, -1, 1, 3, 9, 6, 0, 2, 1));
        EXPECT_TRUE(dc.At(6, 0) == 4 && dc.At(7, 0) == 5);
        // As many memory rows as are asked for.
        EXPECT_TRUE(dib.CopyToDC(&dc, CRect{0, 0, 2, 1}));
        EXPECT_EQ(dc.At(1, 0), topDown ? 2U : 5U);

        Pixels const before = dc.pixels;
        EXPECT_FALSE(dib.CopyToDC(nullptr, 0, 0) || dib.CopyToDC(&dc, -1, 0) || dib.CopyToDC(&dc, 0, -1) ||
                     dib.CopyToDCStretch(&dc, -1, 0, 3, 2) ||
                     dib.CopyToDCStretchRect(&dc, 3, 0, 1, 1, 0, 0, 1, 1) || CTovDib().CopyToDC(&dc, 0, 0) ||
                     CTovDib().CopyToDCStretch(&dc, 0, 0, 1, 1));
        EXPECT_EQ(dc.pixels, before);
        CDC nothing;
        EXPECT_FALSE(dib.CopyToDC(&nothing, 0, 0) || dib.CopyToDCStretch(&nothing, 0, 0, 3, 2));

        CTovDib read = Numbered(!topDown);
        EXPECT_TRUE(read.CopyFromDC(&dc, 1, 2, 3, 2));
        EXPECT_TRUE(std::equal(read.GetCrBits(), read.GetCrBits() + 6, Numbered(!topDown).GetCrBits()));
        EXPECT_FALSE(read.CopyFromDC(&dc, 0, 0, 2, 3) || read.CopyFromDC(&dc, 7, 7, 3, 2) ||
                     read.CopyFromDC(nullptr, 0, 0, 3, 2) || read.CopyFromDC(&nothing, 0, 0, 3, 2));
    }
}

TEST(DrawDibTest, FallsBackOnAStretchInItsMode) {
    CTovDib const dib = Numbered(false);
    struct Case {
        bool open;
        int use, attributes, mode;
        unsigned flags;
        int result, seenMode;
        CPoint seenOrigin;
    };
    // The device itself is in mode 1, with patterns from (3, 4).
    for (Case const& c :
         {Case{false, 1, 0, 3, 0, 1, 3, {3, 4}}, Case{false, 1, 0, 4, 0, 1, 4, {0, 0}},
          Case{true, 7, 0, 4, 0, 7, 1, {3, 4}}, Case{true, 7, 0, 3, DDF_HALFTONE, 7, 4, {0, 0}},
          Case{true, 7, 1, 3, 0, 1, 3, {3, 4}}, Case{true, 0, 0, 4, DDF_HALFTONE, 1, 4, {0, 0}}}) {
        FakeDC dc;
        dc.SetStretchBltMode(BLACKONWHITE);
        dc.SetBrushOrg({3, 4});
        dc.attributes = c.attributes;
        CTovDrawDib draw;
        EXPECT_TRUE(draw.GetUseDrawDib() == 1 && draw.GetStretchMode() == COLORONCOLOR);
        EXPECT_EQ(c.open, c.open && draw.Open());
        draw.SetUseDrawDib(c.use);
        draw.SetStretchMode(c.mode);
        EXPECT_EQ(draw.DrawDibRect(&dc, &dib, CRect{1, 1, 9, 9}, CRect{2, 2, 4, 3}, c.flags), c.result);
        EXPECT_TRUE(dc.At(2, 2) == 5 && dc.At(3, 2) == 6);
        EXPECT_EQ(dc.modeOfDrawing, c.seenMode);
        EXPECT_EQ(dc.originOfDrawing, c.seenOrigin);
        EXPECT_EQ(dc.GetStretchBltMode(), BLACKONWHITE);
        EXPECT_EQ(dc.GetBrushOrg(), CPoint(3, 4));
        DRAWDIBTIME time;
        EXPECT_EQ(draw.Time(&time), c.open);
        EXPECT_EQ(time.timeCount, c.result == 7);
        EXPECT_FALSE(draw.DrawDib(nullptr, &dib, 0, 0, 3, 2) || draw.DrawDib(&dc, nullptr, 0, 0, 3, 2) ||
                     draw.DrawDibRect(&dc, &dib, 3, 0, 2, 2, 0, 0, 1, 1));
        EXPECT_EQ(dc.drawings, 1);
    }
}

TEST(DrawDibTest, DrawsOnlyWhatItKnows) {
    CTovDib const dib = Numbered(true);
    BITMAPINFOHEADER const header = dib.GetBitmapInfo()->bmiHeader;
    BITMAPINFOHEADER other = header;
    other.biBitCount = 24;
    FakeDC dc;
    CTovDrawDib draw;
    auto const drawn = [&](BITMAPINFOHEADER const* h, int xs, int ys, int ws, int hs, unsigned flags = 0) {
        return draw.Draw(&dc, 0, 0, -1, -1, h, dib.GetCrBits(), xs, ys, ws, hs, flags);
    };
    EXPECT_FALSE(drawn(&header, 0, 0, 3, 2) || draw.Begin(&dc, 3, 2, &header, 3, 2, 0) || draw.End() ||
                 draw.Start(1) || draw.Stop() || draw.Time(nullptr) || draw.ProfileDisplay(&header) ||
                 draw.Close());
    EXPECT_TRUE(draw.Open());
    EXPECT_FALSE(draw.Open());
    EXPECT_TRUE(draw.Begin(&dc, 3, 2, &header, 3, 2, 0) && draw.Start(40000) && draw.Stop() && draw.End());
    EXPECT_TRUE(drawn(&header, 0, 0, 3, 2, DDF_DONTDRAW));
    EXPECT_EQ(dc.drawings, 0);
    EXPECT_FALSE(drawn(&other, 0, 0, 3, 2) || drawn(nullptr, 0, 0, 3, 2) || drawn(&header, 1, 0, 3, 2) ||
                 drawn(&header, 0, -1, 3, 2) || drawn(&header, 0, 0, 3, 0) || draw.ProfileDisplay(&other));
    EXPECT_TRUE(drawn(&header, 1, 1, 2, 1));
    EXPECT_EQ(dc.At(0, 0), 5U);
    EXPECT_TRUE(draw.Close());
    EXPECT_FALSE(drawn(&header, 0, 0, 3, 2));
}

}  // namespace
}  // namespace tov
