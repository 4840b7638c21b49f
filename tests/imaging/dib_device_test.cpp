// Images on a device.
#include "support/fake_device.h"

#include <tov310/draw_dib.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>

namespace tov {
namespace {

using test::FakeDevice;

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
        FakeDevice dc;
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

        auto const before = dc.pixels;
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
        FakeDevice dc;
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

TEST(DrawDibTest, DrawsOnlyWhatItKnowsWhileItIsOpen) {
    CTovDib const dib = Numbered(true);
    BITMAPINFOHEADER const header = dib.GetBitmapInfo()->bmiHeader;
    BITMAPINFOHEADER other = header;
    other.biBitCount = 24;
    FakeDevice dc;
    CTovDrawDib draw;
    auto const drawn = [&](BITMAPINFOHEADER const* h, int xs, int ys, int ws, int hs, unsigned flags = 0) {
        return draw.Draw(&dc, 0, 0, -1, -1, h, dib.GetCrBits(), xs, ys, ws, hs, flags);
    };
    for (int const open : {0, 1, 0}) {
        EXPECT_TRUE(!open || (draw.Open() && !draw.Open()));
        EXPECT_EQ(draw.Begin(&dc, 3, 2, &header, 3, 2, 0) + draw.Start(40000) + draw.Stop() + draw.End(),
                  4 * open);
        EXPECT_EQ(drawn(&header, 0, 0, 3, 2, DDF_DONTDRAW), open);
        EXPECT_EQ(draw.ProfileDisplay(&header) != 0, open);
        EXPECT_FALSE(drawn(&other, 0, 0, 3, 2) || drawn(nullptr, 0, 0, 3, 2) || drawn(&header, 1, 0, 3, 2) ||
                     drawn(&header, 0, -1, 3, 2) || drawn(&header, 0, 0, 3, 0) ||
                     draw.ProfileDisplay(&other));
        EXPECT_EQ(dc.drawings, 0);
        EXPECT_EQ(draw.Close(), open);
    }
}

}  // namespace
}  // namespace tov
