// Images against a model that looks at one pixel at a time and clips nothing.
#include "support/pixel_model.h"

#include <tov310/bitmap.h>
#include <tov310/dib.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <numbers>
#include <string>
#include <tuple>
#include <vector>

namespace tov {
namespace {

using test::AnyPixel;
using test::Between;
using test::keyPixel;
using test::Pixels;

constexpr COLORREF keyColor = 0x102030;

CTovDib AnyDib(int most = 24, int mostRows = 24) {
    CTovDib dib;
    dib.Create(Between(1, most), Between(1, mostRows) * (Between(0, 1) == 0 ? 1 : -1));
    std::generate_n(dib.GetCrBits(), dib.GetBitmap()->GetCount(), AnyPixel);
    return dib;
}

Pixels Of(CTovDib const& dib) {
    return {dib.GetCrBits(), dib.GetCrBits() + dib.GetWidth() * dib.GetHeight()};
}

// A rectangle with its place in the destination, a second image and what operations take besides.
struct Call {
    CTovDib const* src;
    CRect from;
    CPoint at;
    COLORREF color;
    int amount;
    std::uint32_t Alpha() const { return static_cast<std::uint32_t>(amount) << 24; }
    CRect To(CRect const& size) const { return {at.x, at.y, at.x + size.Width(), at.y + size.Height()}; }
    CRect To() const { return To(from); }
};

// What takes part.
enum class Parts {
    kRect,      // a rectangle of the source
    kWhole,     // all of the source, moved to a place
    kFirst,     // the same, but beginning with its first pixel where that place is in front of the image
    kColor,     // a colour in a rectangle
    kPaint,     // the same with the amount as alpha
    kAllColor,  // a colour in all of the destination
};

struct Form {
    Parts parts;
    PixelOperation operation;
    std::function<int(CTovDib&, Call const&)> apply;
    std::uint32_t taken = 0xFFFFFFFF;
};

struct Mode {
    PixelOperation operation;
    int (CTovDib::*whole)(CTovDib const*, CPoint const&);
    int (CTovDib::*rect)(CTovDib const*, CRect const&, CPoint const&);
    int (CTovDib::*allColor)(COLORREF);
    int (CTovDib::*color)(COLORREF, CRect const&);
};

std::vector<Form> AllForms() {
    using enum Parts;
    using enum PixelOperation;
    using C = Call const&;
    using D = CTovDib;
    std::vector<Form> forms{
        {kFirst, kStore, [](D& d, C c) { return d.CopyFromDib(c.src, c.at); }},
        {kRect, kStore, [](D& d, C c) { return d.CopyFromDibRect(c.src, c.from, c.at); }},
        {kFirst, kUnlessKey, [](D& d, C c) { return d.CopyFromDibTransparent(c.src, c.at, keyColor); }},
        {kRect, kUnlessKey,
         [](D& d, C c) { return d.CopyFromDibTransparentRect(c.src, c.from, c.at, keyColor); }},
        {kFirst, kAlpha, [](D& d, C c) { return d.CopyFromDibAlpha(c.src, c.at); }},
        {kRect, kAlpha, [](D& d, C c) { return d.CopyFromDibAlphaRect(c.src, c.from, c.at); }},
        {kAllColor, kStore, [](D& d, C c) { return d.Fill(c.color); }},
        {kPaint, kStore, [](D& d, C c) { return d.FillRect(c.color, c.To(), c.amount); }},
        {kAllColor, kEverySecond, [](D& d, C c) { return d.FillStippled(c.color); }},
        {kPaint, kEverySecond, [](D& d, C c) { return d.FillStippledRect(c.color | c.Alpha(), c.To()); }},
        {kPaint, kTakeAlpha, [](D& d, C c) { return d.FillAlphaRect(c.To(), c.amount); }},
        {kAllColor, kExchange, [](D& d, C c) { return d.ExchangeColor(keyColor, c.color); }, 0xFFFFFF},
        {kPaint, kExchange,
         [](D& d, C c) { return d.ExchangeColorRect(c.To(), keyColor, c.color, c.amount); }},
        {kColor, kGrey, [](D& d, C c) { return d.GreyScaleRect(c.To()); }},
        {kAllColor, kGreyUnlessKey, [](D& d, C) { return d.GreyScaleTransparent(keyColor); }},
        {kWhole, kBlend, [](D& d, C c) { return d.Blend(c.src, c.at, c.amount); }},
        {kRect, kBlend, [](D& d, C c) { return d.BlendRect(c.src, c.from, c.at, c.amount); }},
        {kAllColor, kBlend, [](D& d, C c) { return d.FillBlend(c.color, c.amount); }},
        {kColor, kBlend, [](D& d, C c) { return d.FillBlendRect(c.color, c.To(), c.amount); }},
    };
    for (Mode const& mode : {
             Mode{kBlend50, &D::Blend50, &D::Blend50Rect, &D::FillBlend50, &D::FillBlend50Rect},
             Mode{kDarken, &D::Darken, &D::DarkenRect, &D::Darken, &D::DarkenRect},
             Mode{kLighten, &D::Lighten, &D::LightenRect, &D::Lighten, &D::LightenRect},
             Mode{kScreen, &D::Screen, &D::ScreenRect, &D::Screen, &D::ScreenRect},
             Mode{kAdd, &D::Add, &D::AddRect, &D::Add, &D::AddRect},
             Mode{kDifference, &D::Difference, &D::DifferenceRect, &D::Difference, &D::DifferenceRect},
             Mode{kMultiply, &D::Multiply, &D::MultiplyRect, &D::Multiply, &D::MultiplyRect},
         }) {
        forms.push_back({kWhole, mode.operation, [=](D& d, C c) { return (d.*mode.whole)(c.src, c.at); }});
        forms.push_back(
            {kRect, mode.operation, [=](D& d, C c) { return (d.*mode.rect)(c.src, c.from, c.at); }});
        forms.push_back({kAllColor, mode.operation, [=](D& d, C c) { return (d.*mode.allColor)(c.color); }});
        forms.push_back(
            {kColor, mode.operation, [=](D& d, C c) { return (d.*mode.color)(c.color, c.To()); }});
    }
    return forms;
}

// What becomes of an image; 1 when a pixel of it takes part. The source is the one before the call.
int Follow(Form const& form, Call const& call, CTovDib const& dib, Pixels& made, Pixels const& src) {
    using enum Parts;
    bool const isWhole = form.parts == kWhole || form.parts == kFirst;
    CRect const from = isWhole ? CRect{0, 0, call.src->GetWidth(), call.src->GetHeight()} : call.from;
    CRect const all{0, 0, dib.GetWidth(), dib.GetHeight()};
    CRect const to = form.parts == kAllColor ? all : call.To(from);
    int any = 0;
    for (int y = std::max(to.top, 0); y < std::min(to.bottom, all.bottom); ++y) {
        for (int x = std::max(to.left, 0); x < std::min(to.right, all.right); ++x) {
            int const column = x - to.left, row = y - to.top;
            std::uint32_t s = TovSwapRedAndBlue(call.color) | (form.parts == kPaint ? call.Alpha() : 0);
            if (form.parts < kColor) {
                int const xs = form.parts == kFirst ? std::min(x, column) : from.left + column;
                int const ys = form.parts == kFirst ? std::min(y, row) : from.top + row;
                if (!call.src->IsValidX(xs) || !call.src->IsValidY(ys)) continue;
                s = src[static_cast<std::size_t>(ys * call.src->GetWidth() + xs)];
            }
            any = 1;
            std::uint32_t& d = made[static_cast<std::size_t>(y * dib.GetWidth() + x)];
            // The stipple begins with the second pixel of the first row.
            d = test::PixelOf(
                form.operation, d, s,
                {.amount = static_cast<std::uint32_t>(call.amount), .key = keyPixel, .taken = form.taken},
                static_cast<std::size_t>(column + row + 1));
        }
    }
    return any;
}

TEST(DibTest, WorksAsOnePixelAfterTheOther) {
    std::vector<Form> const forms = AllForms();
    for (int round = 0; round < 600; ++round) {
        for (std::size_t i = 0; i < forms.size(); ++i) {
            // Long rows, whose source lies in the same row, from time to time.
            bool const along = round % 20 == 0;
            CTovDib dib = AnyDib(along ? 1500 : 24, along ? 2 : 24);
            CTovDib const shared = dib;
            CTovDib const other = AnyDib();
            auto const place = [] { return Between(-9, 26); };
            int const xs = place(), ys = along ? 0 : place();
            int const width = along ? dib.GetWidth() : Between(-2, 30);
            Call const call{round % 3 == 0   ? &dib
                            : round % 3 == 1 ? &shared
                                             : &other,
                            {xs, ys, xs + width, ys + Between(-2, 30)},
                            {place(), along ? 0 : place()},
                            TovRgb(7, 200, 99),
                            Between(0, 255)};
            Pixels made = Of(dib);
            int const any = Follow(forms[i], call, dib, made, Of(*call.src));
            ASSERT_EQ(forms[i].apply(dib, call), any) << "form " << i << ", round " << round;
            ASSERT_EQ(Of(dib), made) << "form " << i << ", round " << round;
        }
    }
}

TEST(DibTest, KeepsThePlainNumbers) {
    CTovDib d;
    CTovDib s;
    d.Create(1, 1);
    s.Create(1, 1);
    auto const made = [&d](std::uint32_t before, auto const& work) {
        *d.GetCrBits() = before;
        work();
        return *d.GetCrBits();
    };
    *s.GetCrBits() = 0x80FFFFFF;
    EXPECT_EQ(made(0x12345678, [&] { d.Blend(&s, 0); }), 0x12345678U);
    EXPECT_EQ(made(0x12345678, [&] { d.Blend(&s, -7); }), 0x12345678U);
    EXPECT_EQ(made(0x12C864FF, [&] { d.Blend(TovRgb(100, 200, 255), 64); }), 0x12AF7DFFU);
    EXPECT_EQ(made(0x12000100, [&] { d.CopyFromDibAlpha(&s); }), 0x127F807FU);
    EXPECT_EQ(made(0x12FFFFFF, [&] { d.Multiply(&s); }), 0x12FEFEFEU);
    EXPECT_EQ(made(0x12800210, [&] { d.Multiply(TovRgb(3, 128, 32)); }), 0x12010102U);
    EXPECT_EQ(made(0x12FFFFFF, [&] { d.Screen(0); }), 0x12FFFFFFU);
    EXPECT_EQ(made(0x12000080, [&] { d.Screen(TovRgb(0, 10, 128)); }), 0x12010BC0U);
    EXPECT_EQ(made(0x120A64FF, [&] { d.Difference(TovRgb(200, 200, 0)); }), 0x12BE64FFU);
    EXPECT_EQ(made(0x120A64FF, [&] { d.DarkenRect(TovRgb(9, 200, 0), {0, 0, 1, 1}); }), 0x12096400U);
    EXPECT_EQ(made(0x12000000, [&] { d.Lighten(&s, {0, 0}); }), 0x12FFFFFFU);
    EXPECT_EQ(made(0x12000000, [&] { d.BlendRect(&s, {0, 0, 1, 1}, {0, 0}, 255); }), 0x12FEFEFEU);
    EXPECT_EQ(made(0x12FFFFFF, [&] { d.FillBlendRect(0, {0, 0, 1, 1}, 255); }), 0x12000000U);
    EXPECT_EQ(made(0x120A64FF, [&] { d.Lighten(TovRgb(9, 200, 0)); }), 0x120AC8FFU);
    EXPECT_EQ(made(0x120A64FF, [&] { d.Add(TovRgb(9, 200, 1)); }), 0x1213FFFFU);
    EXPECT_EQ(made(0xFF030303, [&] { d.Blend50(TovRgb(0, 0, 5)); }), 0x00010103U);
    EXPECT_EQ(made(0xFF0000FF, [&] { d.GreyScale(); }), 0xFF1C1C1CU);
    EXPECT_EQ(made(0x12C86432, [&] { d.GreyScale(); }), 0x127C7C7CU);
    EXPECT_EQ(made(0x12010101, [&] { d.GreyScale(); }), 0x12000000U);  // doubles fall short of 1
    EXPECT_EQ(made(0x12C86432, [&] { d.GreyScaleTransparent(0x3264C8); }), 0x12C86432U);
    EXPECT_EQ(made(0x12C86432, [&] { d.GreyScaleTransparent(0xC86432); }), 0x127C7C7CU);
    EXPECT_EQ(made(0x12345678, [&] { d.FillAlpha(0xAB); }), 0xAB345678U);
    EXPECT_EQ(made(0x12345678, [&] { d.CopyFromDibTransparent(&s, 0, 0, 0xFFFFFF); }), 0x12345678U);
    EXPECT_EQ(made(0x12345678, [&] { d.CopyFromDibTransparent(&s, 0, 0, 0xFFFFFE); }), 0x80FFFFFFU);
    EXPECT_EQ(made(0x77332211, [&] { d.ExchangeColor(0x112233, 0x030201); }), 0x77010203U);
    EXPECT_EQ(made(0, [&] { d.Fill(0x7F332211, 300); }), 0xFF112233U);
    d.Create(2, 2);
    d.FillStippled(0xFF332211);
    EXPECT_EQ(Of(d), (Pixels{0, 0xFF112233, 0xFF112233, 0}));
}

TEST(DibTest, FillsGradientsBySumsOfSteps) {
    auto const made = [](int width, int height, CRect const& where, int a1, int a2, int horizontal) {
        CTovDib dib;
        dib.Create(width, height);
        dib.Fill(0x030201, 9);
        dib.FillAlphaGradientRect(where, a1, a2, horizontal);
        std::string alphas;
        for (std::uint32_t const pixel : Of(dib))
            alphas += std::to_string(pixel >> 24) + ((pixel & 0xFFFFFF) == 0x010203 ? " " : "!");
        return alphas;
    };
    EXPECT_EQ(made(4, 2, {0, 0, 4, 2}, 0, 255, 1), "0 63 127 191 0 63 127 191 ");
    EXPECT_EQ(made(2, 3, {0, 0, 2, 3}, 0, 255, 0), "255 255 170 170 85 85 ");
    EXPECT_EQ(made(3, 3, {1, -7, 99, 2}, 255, -1, 1), "9 255 127 9 255 127 9 9 9 ");
    // Ten times seven tenths fall short of seven.
    EXPECT_EQ(made(20, 1, {0, 0, 20, 1}, 0, 14, 1), "0 0 1 2 2 3 4 4 5 6 6 7 8 9 9 10 11 11 12 13 ");
    // The sums of such a row pass 256 and -1.
    for (auto const& [from, to] : {std::pair{0, 255}, {255, 0}}) {
        CTovDib dib;
        ASSERT_TRUE(dib.Create(422515, 1) && dib.FillAlphaGradient(from, to, 1));
        EXPECT_EQ(dib.GetCrBits()[422514] >> 24, static_cast<std::uint32_t>(to));
    }
}

TEST(DibTest, CutsRectanglesAndLines) {
    constexpr int most = std::numeric_limits<int>::max();
    constexpr int least = std::numeric_limits<int>::min();
    CTovDib dib;
    dib.Create(10, -6);
    struct Case {
        int x, y, w, h, result;
        CRect left;  // corner and size
    };
    for (Case c :
         {Case{-3, 0, 5, 2, 1, {0, 0, 2, 2}}, Case{4, 5, 100, 100, 1, {4, 5, 6, 1}},
          Case{9, 5, 1, 1, 1, {9, 5, 1, 1}}, Case{-2, -3, most, most, 1, {0, 0, 10, 6}},
          Case{10, 0, 5, 5, 0, {10, 0, 0, 5}}, Case{least, least, least, least, 0, {0, 0, least, least}},
          Case{most, most, most, most, 0, {most, most, 10 - most, 6 - most}},
          Case{3, 3, 0, 2, 0, {3, 3, 0, 2}}}) {
        EXPECT_EQ(dib.AddRect(&dib, c.x, c.y, c.w, c.h, c.x, c.y), c.result);
        EXPECT_EQ(dib.FillStippledRect(3, c.x, c.y, c.w, c.h), c.result);
        EXPECT_EQ(dib.ClipXYWH(c.x, c.y, c.w, c.h), c.result);
        EXPECT_EQ((CRect{c.x, c.y, c.w, c.h}), c.left);
    }
    // Sides that are farther apart than an int tells.
    EXPECT_EQ((CRect{least, most, most, least}.Width()), most);
    EXPECT_EQ((CRect{least, most, most, least}.Height()), least);
    EXPECT_FALSE(dib.FillRect(1, {least, 0, most, 5}) || dib.AddRect(&dib, {0, least, 5, most}, {0, 0}));
    EXPECT_TRUE(dib.AddRect(7, {-9, -9, most, most}));
    for (auto const& [x1, y, x2, result, left, right] :
         {std::tuple(-4, 5, 10, 1, 0, 10),  // the width itself stays
          std::tuple(2, 0, 11, 1, 2, 9), std::tuple(2, 6, 5, 0, 2, 5), std::tuple(9, 0, 12, 0, 9, 9)}) {
        int from = x1, to = x2;
        EXPECT_TRUE(dib.ClipX1YX2(from, y, to) == result && from == left && to == right) << x1;
    }
    int y1 = -1, y2 = 7, x = 12, none = 12;
    EXPECT_TRUE(dib.ClipXY1Y2(9, y1, y2) && y1 == 0 && y2 == 5);
    dib.ClipX(x);
    CTovDib().ClipX(none);
    EXPECT_TRUE(x == 9 && none == 0);
}

TEST(DibTest, IsMadeSharedAndGivenUp) {
    CTovDib dib;
    ASSERT_TRUE(dib.Create(10, -5));
    EXPECT_EQ(dib.GetHeight(), 5);
    EXPECT_TRUE(dib.IsTopDown());
    EXPECT_EQ(dib.GetBitmapInfo()->bmiHeader.biSizeImage, -200);
    EXPECT_EQ(sizeof(BITMAPINFO), 44U);
    dib.GetCrBits()[7] = 7;
    for (auto const& [w, h] :
         {std::pair{0, 5}, {5, 0}, {-1, 5}, {32768, 16384}, {1, std::numeric_limits<int>::min()}})
        EXPECT_FALSE(dib.Create(w, h));
    EXPECT_TRUE(dib.Resize(10, 5));
    CTovDib copy = dib;
    dib.Destroy();
    EXPECT_EQ(copy.GetCrBits()[7], 7U);
    EXPECT_EQ(dib.GetCrBits(), nullptr);
    EXPECT_EQ(dib.GetBitmapInfo()->bmiHeader.biSize, 0U);
    EXPECT_FALSE(dib.Fill(1) || dib.Add(&copy) || copy.Add(&dib) || copy.Add(nullptr) || dib.GreyScale() ||
                 dib.Create(nullptr) || dib.Invert(nullptr) || dib.Create(static_cast<CTovDib const*>(&dib)));

    ASSERT_TRUE(dib.Create(&copy));
    EXPECT_TRUE(dib.IsTopDown() && dib.IsEqualSize(&copy));
    EXPECT_NE(dib.GetCrBits(), copy.GetCrBits());
    EXPECT_EQ(Of(dib), Of(copy));
    ASSERT_TRUE(dib.Create(&dib));
    EXPECT_EQ(Of(dib), Of(copy));
    // An image of the size stays: its direction, and that others share it.
    CTovDib turned;
    EXPECT_TRUE(turned.Resize(0, 0) && turned.Create(10, 5));
    CTovDib const sharing = turned;
    EXPECT_TRUE(turned.Create(&copy) && !turned.IsTopDown() && sharing.GetCrBits()[7] == 7);
}

TEST(DibTest, TurnsRowsOverBetweenDirections) {
    CBitmap bitmap;
    ASSERT_TRUE(bitmap.CreateBitmap(1, 3));
    HBITMAP const block = bitmap;
    Pixels const before{1, 2, 3};
    std::ranges::copy(before, block->GetBits());
    for (int const topDown : {0, 1}) {
        CTovDib dib;
        ASSERT_TRUE(dib.Create(nullptr, &bitmap, topDown));
        CTovDib const copy = dib;
        std::fill_n(block->GetBits(), 3, 0U);
        ASSERT_TRUE(dib.CopyToBitmap(nullptr, &bitmap));
        EXPECT_EQ(Pixels(block->GetBits(), block->GetBits() + 3), before);
        for (int const now : {topDown, 1 - topDown, topDown}) {
            EXPECT_EQ(dib.IsTopDown(), now);
            EXPECT_EQ(dib.GetBitmapInfo()->bmiHeader.biSizeImage, now ? -12 : 12);
            EXPECT_EQ(Of(dib), now ? before : (Pixels{3, 2, 1}));
            ASSERT_TRUE(dib.Invert(nullptr));
        }
        EXPECT_EQ(copy.IsTopDown(), topDown);
        dib.Create(3, 1);
        EXPECT_FALSE(dib.CopyToBitmap(nullptr, &bitmap) || dib.CopyFromBitmap(nullptr, &bitmap) ||
                     dib.CopyFromBitmap(nullptr, nullptr) ||
                     dib.Create(nullptr, static_cast<CBitmap*>(nullptr), 1) ||
                     dib.Create(nullptr, "no such file", 1));
    }
}

// Every position of the walk is held against plain steps where the loops are tested.
TEST(DibTest, RotatesAsTold) {
    float const quarter = std::numbers::pi_v<float> / 2;
    CTovDib src, dib;
    auto const made = [&](auto const& copy) {
        src.Create(2, -2);
        std::ranges::copy(Pixels{0x80000010, 0x80000020, 0x80302010, 0x80000040}, src.GetCrBits());
        dib.Create(2, -2);
        dib.Fill(0, 0x11);
        EXPECT_TRUE(copy(dib));
        return Of(dib);
    };
    using D = CTovDib;
    EXPECT_EQ(made([&](D& d) { return d.CopyFromDibStretch(&src, quarter, 1, 0.5F, 0.5F, 1, 1, 0, 0); }),
              (Pixels{0x80000020, 0x80000040, 0x80000010, 0x80302010}));
    // An image is its own source as a copy would be.
    EXPECT_EQ(
        made([&](D& d) { return (d = src).CopyFromDibStretch(&d, quarter, 1, 0.5F, 0.5F, 1, 1, 0, 0); }),
        (Pixels{0x80000020, 0x80000040, 0x80000010, 0x80302010}));
    EXPECT_EQ(made([&](D& d) { return d.CopyFromDibStretch(&src, 0, 2, 0, 0, 0.5F, 1.5F, 1, 0x332211); }),
              (Pixels{0x80302010, 0x80000040, 0x112233, 0x112233}));
    EXPECT_EQ(made([&](D& d) { return d.CopyFromDibStretchAlpha(&src, quarter, 1, 0.5F, 0.5F, 1, 1, 0, 0); }),
              (Pixels{0x11000010, 0x11000020, 0x11000008, 0x11181008}));
    auto const keyed = [&](D& d) {
        return d.CopyFromDibStretchTransparent(&src, 0, 1, 0, 0, -0.5F, 0.5F, keyColor, 1, 0x332211);
    };
    EXPECT_EQ(made(keyed), (Pixels{0x112233, 0x80000010, 0x112233, 0x11000000}));
}

TEST(DibTest, RotatesRoundTheCentres) {
    CTovDib src;
    src.Create(9, -6);
    std::generate_n(src.GetCrBits(), 54, AnyPixel);
    CTovDib dib;
    dib.Create(9, 6);
    ASSERT_TRUE(dib.CopyFromDibStretch(&src, 0, 1, 0, 1, TovRgb(1, 2, 3)));
    // A position of exactly 0 is outside.
    for (int i = 0; i < 54; ++i)
        EXPECT_EQ(dib.GetCrBits()[i], i < 9 || i % 9 == 0 ? 0x010203U : src.GetCrBits()[i]);
    Pixels const before = Of(dib);
    float const infinite = std::numeric_limits<float>::infinity();
    for (auto const& [angle, scale] :
         {std::pair{0.0F, 0.0F}, {infinite, 1.0F}, {0.0F, std::nanf("")}, {0.0F, 1e9F}, {1.0F, 1e-9F}})
        EXPECT_FALSE(dib.CopyFromDibStretchAlpha(&src, angle, scale, 1, 1, 0));
    EXPECT_EQ(Of(dib), before);

    ASSERT_FALSE(dib.IsTopDown());
    EXPECT_TRUE(dib.CopyFromDibStretch(&src, 0, 1, 1, 1, 0) && dib.IsTopDown());

    // A quarter turn: the size is adjusted and the direction that of the source, which may be the image
    // itself.
    CTovPoint<double> corners[4];
    CTovDib turned = src;
    ASSERT_TRUE(turned.CopyFromDibStretchTransparent(&turned, std::numbers::pi_v<float> / 2, 1, 1, 0x1000000,
                                                     1, 0, corners));
    EXPECT_TRUE(turned.IsEqualSize(6, 9) && turned.IsTopDown());
    CTovPoint<double> const expected[] = {{0, 9}, {0, 0}, {6, 0}, {6, 9}};
    for (int i = 0; i < 4; ++i)
        EXPECT_NEAR(std::hypot(corners[i].x - expected[i].x, corners[i].y - expected[i].y), 0, 1e-5) << i;
}

}  // namespace
}  // namespace tov
