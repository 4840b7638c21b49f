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
#include <random>
#include <vector>

namespace tov {
namespace {

using Pixels = std::vector<std::uint32_t>;

std::mt19937& Random() {
    static std::mt19937 random(51);
    return random;
}

int Between(int least, int most) {
    return std::uniform_int_distribution(least, most)(Random());
}

constexpr std::uint32_t keyPixel = 0x302010;
constexpr COLORREF keyColor = 0x102030;

// One colour often, so that keys are met.
std::uint32_t AnyPixel() {
    return static_cast<std::uint32_t>(Between(0, 255)) << 24 |
           (Between(0, 2) == 0 ? keyPixel : static_cast<std::uint32_t>(Between(0, 0xFFFFFF)));
}

CTovDib AnyDib(int most = 24, int mostRows = 24) {
    CTovDib dib;
    dib.Create(Between(1, most), Between(1, mostRows) * (Between(0, 1) == 0 ? 1 : -1));
    std::generate_n(dib.GetCrBits(), dib.GetBitmap()->GetCount(), AnyPixel);
    return dib;
}

Pixels Of(CTovDib const& dib) {
    return dib.GetCrBits() == nullptr
               ? Pixels{}
               : Pixels(dib.GetCrBits(), dib.GetCrBits() + dib.GetWidth() * dib.GetHeight());
}

// A rectangle with its place in the destination, a second image and what operations take besides.
struct Call {
    CTovDib* dib;
    CTovDib const* src;
    int xs, ys, w, h, x, y;
    COLORREF color;
    int amount;
    std::uint32_t Alpha() const { return static_cast<std::uint32_t>(amount) << 24; }
    CRect From() const { return {xs, ys, xs + w, ys + h}; }
    CRect To() const { return {x, y, x + w, y + h}; }
};

// What of the source lies under a pixel of the destination.
enum class Source {
    kRect,   // the rectangle at (xs, ys)
    kWhole,  // all of the image, moved to (x, y)
    kFirst,  // the same, but beginning with its first pixel where that place is in front of the image
    kColor,  // a colour
    kPaint,  // a colour with the first amount as alpha
};

struct Form {
    Source source;
    bool wholeDestination;  // without a rectangle
    PixelOperation operation;
    std::function<int(Call const&)> apply;
    std::uint32_t taken = 0xFFFFFFFF;
};

// The forms of a compositing operation, whose whole and ...Rect functions are given.
template <class Whole, class Rect>
void AddForms(std::vector<Form>& forms, PixelOperation operation, Whole whole, Rect rect) {
    using enum Source;
    auto const add = [&](Source source, bool wholeDestination, auto const& apply) {
        forms.push_back({source, wholeDestination, operation, apply});
    };
    add(kWhole, false, [=](Call const& c) { return whole(c, c.src, c.x, c.y); });
    add(kWhole, false, [=](Call const& c) { return whole(c, c.src, CPoint(c.x, c.y)); });
    add(kColor, true, [=](Call const& c) { return whole(c, c.color); });
    add(kRect, false, [=](Call const& c) { return rect(c, c.src, c.xs, c.ys, c.w, c.h, c.x, c.y); });
    add(kRect, false, [=](Call const& c) { return rect(c, c.src, c.From(), CPoint(c.x, c.y)); });
    add(kColor, false, [=](Call const& c) { return rect(c, c.color, c.x, c.y, c.w, c.h); });
    add(kColor, false, [=](Call const& c) { return rect(c, c.color, c.To()); });
}

std::vector<Form> AllForms() {
    using enum Source;
    using enum PixelOperation;
    using C = Call const&;
    std::vector<Form> forms{
        {kFirst, false, kStore, [](C c) { return c.dib->CopyFromDib(c.src, c.x, c.y); }},
        {kRect, false, kStore, [](C c) { return c.dib->CopyFromDibRect(c.src, c.From(), CPoint(c.x, c.y)); }},
        {kFirst, false, kUnlessKey,
         [](C c) { return c.dib->CopyFromDibTransparent(c.src, c.x, c.y, keyColor); }},
        {kRect, false, kUnlessKey,
         [](C c) { return c.dib->CopyFromDibTransparentRect(c.src, c.From(), CPoint(c.x, c.y), keyColor); }},
        {kFirst, false, kAlpha, [](C c) { return c.dib->CopyFromDibAlpha(c.src, CPoint(c.x, c.y)); }},
        {kRect, false, kAlpha,
         [](C c) { return c.dib->CopyFromDibAlphaRect(c.src, c.xs, c.ys, c.w, c.h, c.x, c.y); }},
        {kColor, true, kStore, [](C c) { return c.dib->Fill(c.color); }},
        {kPaint, false, kStore, [](C c) { return c.dib->FillRect(c.color, c.To(), c.amount); }},
        {kColor, false, kBlend, [](C c) { return c.dib->FillBlendRect(c.color, c.To(), c.amount); }},
        {kColor, true, kBlend50, [](C c) { return c.dib->FillBlend50(c.color); }},
        {kColor, true, kEverySecond, [](C c) { return c.dib->FillStippled(c.color); }},
        {kPaint, false, kEverySecond,
         [](C c) { return c.dib->FillStippledRect(c.color | c.Alpha(), c.x, c.y, c.w, c.h); }},
        {kPaint, false, kTakeAlpha, [](C c) { return c.dib->FillAlphaRect(c.To(), c.amount); }},
        {kColor, true, kExchange, [](C c) { return c.dib->ExchangeColor(keyColor, c.color); }, 0xFFFFFF},
        {kPaint, false, kExchange,
         [](C c) { return c.dib->ExchangeColorRect(c.x, c.y, c.w, c.h, keyColor, c.color, c.amount); }},
        {kColor, false, kGrey, [](C c) { return c.dib->GreyScaleRect(c.To()); }},
        {kColor, true, kGreyUnlessKey, [](C c) { return c.dib->GreyScaleTransparent(keyColor); }},
    };
    AddForms(
        forms, kBlend, [](C c, auto... where) { return c.dib->Blend(where..., c.amount); },
        [](C c, auto... where) { return c.dib->BlendRect(where..., c.amount); });
    AddForms(
        forms, kBlend50, [](C c, auto... where) { return c.dib->Blend50(where...); },
        [](C c, auto... where) { return c.dib->Blend50Rect(where...); });
    AddForms(
        forms, kDarken, [](C c, auto... where) { return c.dib->Darken(where...); },
        [](C c, auto... where) { return c.dib->DarkenRect(where...); });
    AddForms(
        forms, kLighten, [](C c, auto... where) { return c.dib->Lighten(where...); },
        [](C c, auto... where) { return c.dib->LightenRect(where...); });
    AddForms(
        forms, kScreen, [](C c, auto... where) { return c.dib->Screen(where...); },
        [](C c, auto... where) { return c.dib->ScreenRect(where...); });
    AddForms(
        forms, kAdd, [](C c, auto... where) { return c.dib->Add(where...); },
        [](C c, auto... where) { return c.dib->AddRect(where...); });
    AddForms(
        forms, kDifference, [](C c, auto... where) { return c.dib->Difference(where...); },
        [](C c, auto... where) { return c.dib->DifferenceRect(where...); });
    AddForms(
        forms, kMultiply, [](C c, auto... where) { return c.dib->Multiply(where...); },
        [](C c, auto... where) { return c.dib->MultiplyRect(where...); });
    return forms;
}

// What becomes of an image; 1 when a pixel of it takes part. The source is the one before the call.
int Follow(Form const& form, Call const& call, Pixels& made, Pixels const& src) {
    CTovDib const& dib = *call.dib;
    bool const ofSource = form.source == Source::kWhole || form.source == Source::kFirst;
    int const x = form.wholeDestination ? 0 : call.x;
    int const y = form.wholeDestination ? 0 : call.y;
    int const w = form.wholeDestination ? dib.GetWidth() : ofSource ? call.src->GetWidth() : call.w;
    int const h = form.wholeDestination ? dib.GetHeight() : ofSource ? call.src->GetHeight() : call.h;
    int any = 0;
    for (int row = 0; row < h; ++row) {
        for (int column = 0; column < w; ++column) {
            if (!dib.IsValidX(x + column) || !dib.IsValidY(y + row)) continue;
            int xs = column;
            int ys = row;
            if (form.source == Source::kRect) {
                xs += call.xs;
                ys += call.ys;
            } else if (form.source == Source::kFirst) {
                xs += std::min(x, 0);
                ys += std::min(y, 0);
            }
            std::uint32_t s = TovSwapRedAndBlue(call.color);
            if (form.source == Source::kPaint) s |= call.Alpha();
            if (form.source < Source::kColor) {
                if (!call.src->IsValidX(xs) || !call.src->IsValidY(ys)) continue;
                s = src[static_cast<std::size_t>(ys * call.src->GetWidth() + xs)];
            }
            any = 1;
            std::uint32_t& d = made[static_cast<std::size_t>((y + row) * dib.GetWidth() + x + column)];
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
            int const width = along ? dib.GetWidth() : Between(-2, 30);
            int const row = along ? 0 : place();
            Call const call{&dib,
                            round % 3 == 0   ? &dib
                            : round % 3 == 1 ? &shared
                                             : &other,
                            place(),
                            along ? 0 : place(),
                            width,
                            Between(-2, 30),
                            place(),
                            row,
                            TovRgb(7, 200, 99),
                            Between(0, 255)};
            Pixels made = Of(dib);
            int const any = Follow(forms[i], call, made, Of(*call.src));
            ASSERT_EQ(forms[i].apply(call), any) << "form " << i << ", round " << round;
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
    EXPECT_EQ(made(0x12000000, [&] { d.Blend(&s, 255); }), 0x12FEFEFEU);
    EXPECT_EQ(made(0x12345678, [&] { d.Blend(&s, 0); }), 0x12345678U);
    EXPECT_EQ(made(0x12345678, [&] { d.Blend(&s, -7); }), 0x12345678U);
    EXPECT_EQ(made(0x12C864FF, [&] { d.Blend(TovRgb(100, 200, 255), 64); }), 0x12AF7DFFU);
    EXPECT_EQ(made(0x12000100, [&] { d.CopyFromDibAlpha(&s); }), 0x127F807FU);
    EXPECT_EQ(made(0x12FFFFFF, [&] { d.Multiply(&s); }), 0x12FEFEFEU);
    EXPECT_EQ(made(0x12800210, [&] { d.Multiply(TovRgb(3, 128, 32)); }), 0x12010102U);
    EXPECT_EQ(made(0x12FFFFFF, [&] { d.Screen(0); }), 0x12FFFFFFU);
    EXPECT_EQ(made(0x12000080, [&] { d.Screen(TovRgb(0, 10, 128)); }), 0x12010BC0U);
    EXPECT_EQ(made(0x120A64FF, [&] { d.Difference(TovRgb(200, 200, 0)); }), 0x12BE64FFU);
    EXPECT_EQ(made(0x120A64FF, [&] { d.Darken(TovRgb(9, 200, 0)); }), 0x12096400U);
    EXPECT_EQ(made(0x120A64FF, [&] { d.Lighten(TovRgb(9, 200, 0)); }), 0x120AC8FFU);
    EXPECT_EQ(made(0x120A64FF, [&] { d.Add(TovRgb(9, 200, 1)); }), 0x1213FFFFU);
    EXPECT_EQ(made(0xFF030303, [&] { d.Blend50(TovRgb(0, 0, 5)); }), 0x00010103U);
    EXPECT_EQ(made(0xFF0000FF, [&] { d.GreyScale(); }), 0xFF1C1C1CU);
    EXPECT_EQ(made(0x77332211, [&] { d.ExchangeColor(0x112233, 0x030201); }), 0x77010203U);
    EXPECT_EQ(made(0, [&] { d.Fill(0x7F332211, 300); }), 0xFF112233U);
    d.Create(2, 2);
    d.FillStippled(0xFF332211);
    EXPECT_EQ(Of(d), (Pixels{0, 0xFF112233, 0xFF112233, 0}));
}

TEST(DibTest, FillsGradientsBySumsOfSteps) {
    for (int round = 0; round < 500; ++round) {
        CTovDib dib = AnyDib(round % 50 == 0 ? 700 : 30);
        int x = Between(-5, 20);
        int y = Between(-5, 20);
        int w = Between(-1, 40);
        int h = Between(-1, 40);
        int const a1 = Between(0, 255);
        int const a2 = Between(0, 255);
        bool const horizontal = round % 2 == 0;
        Pixels expected = Of(dib);
        int const result = dib.FillAlphaGradientRect(x, y, w, h, a1, a2, horizontal);
        ASSERT_EQ(result, dib.ClipXYWH(x, y, w, h));
        float const step = horizontal ? static_cast<float>(a2 - a1) / static_cast<float>(w)
                                      : static_cast<float>(a1 - a2) / static_cast<float>(h);
        auto value = static_cast<float>(horizontal ? a1 : a2);
        for (int row = y; result && row < y + h; ++row) {
            for (int column = x; column < x + w; ++column) {
                auto& pixel = expected[static_cast<std::size_t>(row * dib.GetWidth() + column)];
                pixel = (pixel & 0xFFFFFF) | static_cast<std::uint32_t>(value) << 24;
                if (horizontal) value += step;
            }
            value = horizontal ? static_cast<float>(a1) : value + step;
        }
        ASSERT_EQ(Of(dib), expected) << "round " << round;
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
        // No operation reaches out of the image.
        CTovDib const before = AnyDib();
        EXPECT_EQ(dib.BlendRect(&before, c.x, c.y, c.w, c.h, c.y, c.x, 9),
                  dib.CopyFromDibAlphaRect(&before, c.x, c.y, c.w, c.h, c.y, c.x));
        dib.FillRect(3, c.x, c.y, c.w, c.h);
        dib.FillStippledRect(3, c.x, c.y, c.w, c.h);
        EXPECT_EQ(dib.ClipXYWH(c.x, c.y, c.w, c.h), c.result);
        EXPECT_EQ((CRect{c.x, c.y, c.w, c.h}), c.left);
    }
    auto const line = [&dib](int x1, int y, int x2) {
        int const result = dib.ClipX1YX2(x1, y, x2);
        return std::vector{result, x1, x2};
    };
    EXPECT_EQ(line(-4, 5, 10), (std::vector{1, 0, 10}));  // the width itself stays
    EXPECT_EQ(line(2, 0, 11), (std::vector{1, 2, 9}));
    EXPECT_EQ(line(2, 6, 5), (std::vector{0, 2, 5}));
    EXPECT_EQ(line(9, 0, 12), (std::vector{0, 9, 9}));
    int y1 = -1;
    int y2 = 7;
    EXPECT_TRUE(dib.ClipXY1Y2(9, y1, y2));
    EXPECT_EQ(y2, 5);
    int x = 12;
    dib.ClipX(x);
    EXPECT_EQ(x, 9);
    CTovDib().ClipX(x);
    EXPECT_EQ(x, 0);
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
    EXPECT_EQ(dib.GetCrBits()[7], 7U);
    EXPECT_TRUE(dib.Resize(10, 5));
    EXPECT_EQ(dib.GetCrBits()[7], 7U);

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
}

TEST(DibTest, TurnsRowsOverBetweenDirections) {
    CBitmap bitmap;
    ASSERT_TRUE(bitmap.CreateBitmap(7, 4));
    HBITMAP const block = bitmap;
    std::generate_n(block->GetBits(), block->GetCount(), AnyPixel);
    Pixels const before(block->GetBits(), block->GetBits() + block->GetCount());
    for (int const topDown : {0, 1}) {
        CTovDib dib;
        ASSERT_TRUE(dib.Create(nullptr, &bitmap, topDown));
        CTovDib const copy = dib;
        std::fill_n(block->GetBits(), block->GetCount(), 0U);
        ASSERT_TRUE(dib.CopyToBitmap(nullptr, &bitmap));
        EXPECT_EQ(Pixels(block->GetBits(), block->GetBits() + block->GetCount()), before);
        for (int const now : {topDown, 1 - topDown, topDown}) {
            EXPECT_EQ(dib.IsTopDown(), now);
            EXPECT_EQ(dib.GetBitmapInfo()->bmiHeader.biSizeImage, now ? -112 : 112);
            EXPECT_TRUE(std::equal(dib.GetCrBits(), dib.GetCrBits() + 7, block->GetRow(now ? 0 : 3)));
            ASSERT_TRUE(dib.Invert(nullptr));
        }
        EXPECT_EQ(copy.IsTopDown(), topDown);
        dib.Create(4, 7);
        EXPECT_FALSE(dib.CopyToBitmap(nullptr, &bitmap) || dib.CopyFromBitmap(nullptr, &bitmap) ||
                     dib.CopyFromBitmap(nullptr, nullptr) ||
                     dib.Create(nullptr, static_cast<CBitmap*>(nullptr), 1) ||
                     dib.Create(nullptr, "no such file", 1));
    }
}

TEST(DibTest, RotatesAsOnePixelAfterTheOther) {
    for (int round = 0; round < 300; ++round) {
        CTovDib const from = AnyDib();
        CTovDib to = AnyDib();
        if (round % 5 == 0) to.Create(&from);
        auto const real = [] { return static_cast<float>(Between(-3000, 3000)) / 100; };
        float const angle = round % 7 == 0 ? 0 : real();
        float const scale = round % 7 == 0 ? 1 : real() + 40;
        CTovPoint<float> const dst{real(), real()};
        CTovPoint<float> const src{round % 7 == 0 ? dst : CTovPoint<float>{real(), real()}};
        float const sn = std::sin(-angle) / scale;
        float const cs = std::cos(-angle) / scale;
        PixelWalk const walk{src.x - (sn * dst.y + cs * dst.x),
                             src.y - (cs * dst.y - sn * dst.x),
                             cs,
                             -sn,
                             from.GetWidth(),
                             from.GetHeight()};
        int const fill = round % 2;
        PixelStretch const how{
            .compose = round % 3 != 0,
            .operation = round % 3 == 1 ? PixelOperation::kAlpha : PixelOperation::kUnlessKey,
            .arguments = {.key = keyPixel},
            .fill = fill != 0,
            .outside = 0x563412};
        Pixels const made = test::WalkOneByOne(*to.GetBitmap(), *from.GetBitmap(), walk, how);
        // An image is its own source as a copy would be.
        CTovDib const& source = round % 5 == 0 ? to : from;
        ASSERT_TRUE(
            round % 3 == 0
                ? to.CopyFromDibStretch(&source, angle, scale, dst.x, dst.y, src.x, src.y, fill, 0x123456)
            : round % 3 == 1 ? to.CopyFromDibStretchAlpha(&source, angle, scale, dst.x, dst.y, src.x, src.y,
                                                          fill, 0x123456)
                             : to.CopyFromDibStretchTransparent(&source, angle, scale, dst.x, dst.y, src.x,
                                                                src.y, keyColor, fill, 0x123456));
        ASSERT_EQ(Of(to), made) << round;
    }
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
