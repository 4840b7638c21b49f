// Drawing on devices of the toolkit, dot by dot.
#include "support/widgets.h"

#include <tov310/dib_image.h>
#include <tov310/painter_dc.h>
#include <tov310/paper.h>
#include <tov310/wnd_on.h>

#include <gtest/gtest.h>

#include <QPdfWriter>
#include <QPicture>

#include <random>
#include <span>

namespace tov {
namespace {

std::mt19937 numbers(7);

int Any(int least, int most) {
    return std::uniform_int_distribution(least, most)(numbers);
}

HBITMAP AnyBlock(int width, int height) {
    HBITMAP block = CTovPixels::Create(width, height);
    std::generate_n(block->GetBits(), block->GetCount(), std::ref(numbers));
    return block;
}

CRect AnyRect(int side) {
    int const left = Any(-3, side), top = Any(-3, side);
    return {left, top, left + Any(1, side), top + Any(1, side)};
}

constexpr int side = 24;

// The same device in plain arithmetic.
class Mirror : public CDC {
 public:
    HBITMAP picture = CTovPixels::Create(side, -side);
    CRect clip{0, 0, side, side};

    int StretchDIBits(int x, int y, int w, int h, int xs, int ys, int ws, int hs, std::uint32_t const* bits,
                      BITMAPINFOHEADER const& header, std::uint32_t operation) override {
        HBITMAP const block = TovStretchPixels(bits, header, {xs, ys, xs + ws, ys + hs}, w, h, {0, 0, w, h},
                                               GetStretchBltMode());
        HBITMAP const there = Read({x, y, x + w, y + h});
        CPoint const origin{GetBrushOrg().x - x, GetBrushOrg().y - y};
        if (!block || !TovRasterOperation(*there, block.get(), GetBrush(), origin, 1, operation)) return 0;
        for (int row = std::max(clip.top, y); row < std::min(clip.bottom, y + h); ++row)
            for (int column = std::max(clip.left, x); column < std::min(clip.right, x + w); ++column)
                picture->GetRow(row)[column] = there->GetRow(row - y)[column - x] | 0xFF000000;
        return hs;
    }
    int GetDIBits(int x, int y, CTovPixels& to) override {
        HBITMAP const block = CTovPixels::Create(to.GetWidth(), -to.GetHeight());
        for (int row = std::max(0, -y); row < std::min(to.GetHeight(), side - y); ++row)
            for (int column = std::max(0, -x); column < std::min(to.GetWidth(), side - x); ++column)
                block->GetRow(row)[column] = picture->GetRow(y + row)[x + column];
        return to.CopyFrom(*block);
    }
    int IntersectClipRect(CRect const& rect) override {
        clip = {std::max(clip.left, rect.left), std::max(clip.top, rect.top),
                std::min(clip.right, rect.right), std::min(clip.bottom, rect.bottom)};
        return clip.Width() > 0 && clip.Height() > 0 ? SIMPLEREGION : NULLREGION;
    }
    int SetClipRect(CRect const* rect) override {
        clip = {0, 0, side, side};
        return IntersectClipRect(rect != nullptr ? *rect : clip);
    }
};

// Draws something at random on all devices, in the same way. What is drawn pixel by pixel looks the same in
// any number of dots.
void DrawAnything(std::vector<CDC*> const& devices, bool pixelByPixel) {
    int const what = Any(0, pixelByPixel ? 6 : 9);
    CRect const rect = AnyRect(side / 2);
    HBITMAP const block = AnyBlock(Any(2, 9), Any(2, 9) * (Any(0, 1) != 0 ? 1 : -1));
    int const w = block->GetWidth(), h = block->GetHeight(), mode = Any(BLACKONWHITE, HALFTONE);
    int const xs = Any(0, w - 1), ys = Any(0, h - 1);
    BITMAPINFOHEADER const header = TovHeaderOf(*block);
    std::uint32_t const operation = static_cast<std::uint32_t>(Any(0, 255)) << 16;
    CTovBrush const brush{static_cast<COLORREF>(Any(0, 0xFFFFFF)), Any(0, 1)};
    CPoint const origin{Any(-3, 3), Any(-3, 3)};
    if (what == 8) {  // every pixel covers, or does not
        for (std::uint32_t& pixel : std::span(block->GetBits(), block->GetCount()))
            pixel = pixel % 2 != 0 ? pixel | 0xFF000000 : 0;
    }
    for (CDC* const dc : devices) {
        dc->SetStretchBltMode(mode);
        dc->SelectBrush(brush);
        dc->SetBrushOrg(origin);
        if (what == 0) dc->FillSolidRect(rect, brush.color);
        // Of the tables, those that have no source.
        if (what == 1)
            dc->PatBlt(rect.left, rect.top, rect.Width(), rect.Height(), (operation & 0x330000) * 5);
        if (what == 2)
            dc->StretchDIBits(rect.left, rect.top, w, h, 0, 0, w, h, block->GetBits(), header, operation);
        if (what == 3) CTovCDCHelper::DrawRubberBand(dc, rect);
        if (what == 4) dc->SetClipRect(nullptr);
        if (what == 5) CTovCDCHelper::SelectClipRect(dc, {0, ys, side - 1 - xs, side});
        if (what == 6) dc->BitBlt(rect.left, rect.top, 5, 4, dc, 2 + xs, ys, operation);
        if (what == 7)
            dc->StretchDIBits(rect.left, rect.top, rect.Width(), rect.Height(), xs, ys, w - xs, h - ys,
                              block->GetBits(), header, operation);
        if (what == 8) dc->AlphaBlend({rect.left, rect.top, rect.left + w, rect.top + h}, *block);
        if (what == 9) CTovCDCHelper::MakeDlgDisabled(dc, {2, 3, rect.right + 4, rect.bottom + 5});
    }
}

QImage PictureOf(CTovPixels const& block) {
    return QImage(reinterpret_cast<uchar const*>(block.GetBits()), block.GetWidth(), block.GetHeight(),
                  QImage::Format_RGB32);
}

TEST(PainterDcTest, DrawsLikePlainArithmetic) {
    for (bool const pixelByPixel : {false, true}) {
        Mirror mirror;
        mirror.FillSolidRect({0, 0, side, side}, 0);
        QImage plain(side, side, QImage::Format_RGB32), around(side + 9, side + 7, QImage::Format_RGB32);
        QPixmap pixmap(side, side);
        CTovDib upright, turned;
        ASSERT_TRUE(upright.Create(side, -side) && turned.Create(side, side));
        QImage fine(2 * side, 2 * side, QImage::Format_ARGB32_Premultiplied);
        fine.setDevicePixelRatio(2);
        for (QImage* const image : {&plain, &around, &fine})
            image->fill(Qt::black);
        pixmap.fill(Qt::black);
        {
            QPainter moved(&around);
            moved.setClipRect(5, 3, side, side);
            moved.translate(5, 3);
            CTovPainterDC onPlain(plain), onMoved(moved), onPixmap(pixmap), onUpright(upright),
                onTurned(turned), onFine(fine);
            std::vector<CDC*> devices{&mirror, &onPlain, &onPixmap, &onUpright, &onTurned};
            // Outside of its clip it can be read.
            if (pixelByPixel) devices.insert(devices.end(), {&onFine});
            for (int step = 0; step < 3000; ++step) {
                DrawAnything(devices, pixelByPixel);
                ASSERT_EQ(plain, PictureOf(*mirror.picture)) << step;
                if (step % 64 == 0) {
                    onMoved.BitBlt(0, 0, side, side, &onPlain, 0, 0, SRCCOPY);
                    ASSERT_EQ(around.copy(5, 3, side, side), plain);
                }
            }
            EXPECT_EQ(onFine.GetPixelRatio(), 2);
        }
        EXPECT_EQ(pixmap.toImage().convertToFormat(QImage::Format_RGB32), plain);
        EXPECT_EQ(TovImage(upright), plain);
        EXPECT_EQ(TovImage(turned), plain);
        EXPECT_EQ(around.pixel(4, 2), 0xFF000000U);
        fine.setDevicePixelRatio(1);
        if (!pixelByPixel) continue;
        EXPECT_EQ(fine.convertToFormat(QImage::Format_RGB32), plain.scaled(fine.size()));
    }
}

TEST(PainterDcTest, RubberBandGoesAtEveryScale) {
    for (double const ratio : {1.0, 1.25, 1.5, 2.0, 3.0}) {
        QImage image(90, 80, QImage::Format_RGB32);
        image.setDevicePixelRatio(ratio);
        std::generate_n(reinterpret_cast<std::uint32_t*>(image.bits()), 90 * 80,
                        [] { return numbers() | 0xFF000000; });
        QImage const before = image.copy();
        CTovPainterDC dc(image);
        CTovCDCHelper::DrawRubberBand(&dc, {3, 2, 17, 19});
        EXPECT_NE(image, before) << ratio;
        CRect const half{0, 0, 9, 90}, rest{9, 0, 90, 90};  // as two paintings of a window have it
        for (CRect const& part : {half, rest}) {
            dc.SetClipRect(&part);
            CTovCDCHelper::DrawRubberBand(&dc, {17, 2, 3, 19});
        }
        EXPECT_EQ(image, before) << ratio;
    }
}

TEST(PainterDcTest, MemoryRowsFallWhereTheyBelong) {
    HBITMAP const down = AnyBlock(3, -4), up = AnyBlock(3, 4);
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::white);
    CTovPainterDC dc(image);
    EXPECT_EQ(dc.SetDIBitsToDevice(1, 0, 2, 9, down->GetBits(), TovHeaderOf(*down)), 4);
    EXPECT_EQ(dc.SetDIBitsToDevice(4, 0, 9, 3, up->GetBits(), TovHeaderOf(*up)), 3);
    auto const is = [&](int x, int y, std::uint32_t pixel) {
        return image.pixel(x, y) == (pixel | 0xFF000000);
    };
    EXPECT_TRUE(is(1, 0, down->GetRow(0)[0]) && is(2, 3, down->GetRow(3)[1]) && is(3, 0, ~0U) &&
                is(1, 4, ~0U));
    EXPECT_TRUE(is(4, 2, up->GetRow(0)[0]) && is(6, 0, up->GetRow(2)[2]) && is(4, 3, ~0U));
    HBITMAP const read = CTovPixels::Create(2, 3);
    EXPECT_TRUE(dc.GetDIBits(4, 0, *read) && (read->GetRow(0)[0] ^ up->GetRow(0)[0]) << 8 == 0);
    EXPECT_TRUE(dc.SetDIBitsToDevice(0, 0, 0, 3, up->GetBits(), TovHeaderOf(*up)) == 0 &&
                dc.StretchDIBits(0, 0, 3, 3, 1, 0, 3, 1, up->GetBits(), TovHeaderOf(*up), SRCCOPY) == 0 &&
                dc.StretchDIBits(0, 0, 3, 3, 0, 0, 1, 1, nullptr, TovHeaderOf(*up), SRCCOPY) == 0);
}

TEST(PainterDcTest, ClipsTextsAndColours) {
    QImage image(60, 40, QImage::Format_RGB32);
    image.fill(Qt::white);
    CRect box;
    {
        QPainter painter(&image);
        painter.setClipRegion(QRegion(0, 0, 60, 20) + QRegion(0, 0, 20, 40));
        CTovPainterDC dc(painter);
        EXPECT_TRUE(dc.GetClipBox(&box) == COMPLEXREGION && box == (CRect{0, 0, 60, 40}));
        EXPECT_EQ(CTovCDCHelper::SelectClipRect(&dc, {30, 5, 90, 90}), box);
        EXPECT_TRUE(dc.GetClipBox(&box) == SIMPLEREGION && box == (CRect{30, 5, 60, 20}));
        EXPECT_TRUE(dc.IntersectClipRect({0, 0, 30, 30}) == NULLREGION && dc.GetClipBox(&box) == NULLREGION);
        EXPECT_EQ(dc.SetClipRect(nullptr), COMPLEXREGION);
        CSize const extent = dc.GetTextExtent("测点 1");
        EXPECT_TRUE(extent.cx > 10 && extent.cy > 5 && extent.cx < 100);
        dc.SetBkColor(TovRgb(0, 0, 255));
        EXPECT_TRUE(dc.SetBkMode(OPAQUE) == TRANSPARENT && dc.SetBkMode(3) == 0);
        EXPECT_EQ(dc.TextOut(2, 3, " "), 1);
        EXPECT_TRUE(image.pixel(2, 3) == 0xFF0000FF && image.pixel(1, 3) == ~0U && image.pixel(2, 2) == ~0U);
        QFont large = painter.font();
        large.setPixelSize(40);
        EXPECT_EQ(dc.SelectFont(TovFont(large)), nullptr);
        EXPECT_GT(dc.GetTextExtent("测点 1").cx, extent.cx);
        dc.SelectFont(nullptr);
        EXPECT_EQ(dc.GetTextExtent("测点 1"), extent);
        dc.IntersectClipRect({0, 0, 1, 1});
        EXPECT_TRUE(dc.GetDeviceCaps(HORZRES) == 60 && dc.GetDeviceCaps(VERTRES) == 40 &&
                    dc.GetDeviceCaps(1) == 0 && dc.GetDeviceCaps(LOGPIXELSX) == image.logicalDpiX() &&
                    dc.HasAttributeDC() == 0);
    }
    QPainter idle;
    CTovPainterDC nothing(idle);
    EXPECT_TRUE(nothing.GetClipBox(&box) == 0 && nothing.TextOut(0, 0, "a") == 0 &&
                nothing.FillSolidRect({0, 0, 1, 1}, 0) == 0 && nothing.PatBlt(0, 0, 1, 1, PATCOPY) == 0 &&
                !nothing.Read({0, 0, 1, 1}) && nothing.SelectFont(nullptr) == nullptr &&
                nothing.IntersectClipRect({0, 0, 1, 1}) == 0 && nothing.GetTextExtent("a") == CSize{});
    CTovDib empty;
    EXPECT_EQ(CTovPainterDC(empty).FillSolidRect({0, 0, 1, 1}, 0), 0);
}

TEST(PainterDcTest, WhatIsKeptForPrintersIsNotRead) {
    HBITMAP const block = AnyBlock(4, 4);
    auto const draw = [&](QPaintDevice& device) {
        CTovPainterDC dc(device);
        EXPECT_TRUE(dc.HasAttributeDC() && dc.GetPixelRatio() == 1 && !dc.Read({0, 0, 1, 1}));
        for (std::uint32_t const operation : {SRCCOPY, NOTSRCCOPY})
            EXPECT_TRUE(
                dc.StretchDIBits(0, 0, 9, 9, 0, 0, 4, 4, block->GetBits(), TovHeaderOf(*block), operation));
        EXPECT_FALSE(
            dc.PatBlt(0, 0, 9, 9, DSTINVERT) ||
            dc.StretchDIBits(0, 0, 9, 9, 0, 0, 4, 4, block->GetBits(), TovHeaderOf(*block), SRCINVERT));
        EXPECT_TRUE(dc.PatBlt(0, 0, 9, 9, PATCOPY) && dc.AlphaBlend({0, 0, 9, 9}, *block));
        return dc.GetDeviceCaps(LOGPIXELSX);
    };
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    QPdfWriter printer(&file);
    printer.setResolution(600);
    EXPECT_EQ(draw(printer), 600);
    QPicture picture;
    draw(picture);
}

TEST(PainterDcTest, WindowsAreReadWhileTheyArePainted) {
    struct Shown : QWidget {
        using QWidget::QWidget;
        void paintEvent(QPaintEvent*) override {
            CTovPainterDC dc(*this);
            dc.GetClipBox(&box);
            dc.FillSolidRect({0, 0, 10, 10}, TovRgb(255, 0, 0));
            dc.PatBlt(5, 5, 10, 2, DSTINVERT);
            HBITMAP const block = dc.Read({4, 4, 12, 7});
            if (block) pixels = {block->GetRow(0)[0], block->GetRow(1)[1], block->GetRow(1)[7]};
        }
        CRect box;
        std::vector<std::uint32_t> pixels;
    };
    QWidget window;
    window.resize(80, 60);
    Shown child(&window);
    child.setGeometry(30, 20, 40, 30);
    QPalette white;
    white.setColor(QPalette::Window, Qt::white);
    window.setPalette(white);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    child.repaint(2, 3, 20, 20);
    EXPECT_EQ(child.box, (CRect{2, 3, 22, 23}));
    EXPECT_EQ(child.pixels, (std::vector<std::uint32_t>{0xFFFF0000, 0xFF00FFFF, 0xFF000000}));
    QImage const shown = window.grab().toImage();
    EXPECT_TRUE(shown.pixel(36, 25) == 0xFF00FFFF && shown.pixel(44, 25) == 0xFF000000 &&
                shown.pixel(45, 25) == 0xFFFFFFFF);
}

TEST(DibImageTest, ViewsShareAndCopiesDoNot) {
    QImage view;
    {
        CTovDib dib;
        dib.Create(3, -2);
        view = TovImageView(dib.GetBitmap());
        QPainter(&view).fillRect(1, 1, 1, 1, Qt::red);
        EXPECT_EQ(dib.GetCrBits()[4], 0xFFFF0000U);
        dib.Fill(TovRgb(0, 255, 0));
    }
    EXPECT_EQ(view.pixel(2, 1), 0xFF00FF00U);
    CTovDib turned;
    EXPECT_TRUE(TovImage(turned).isNull() && TovImageView(nullptr).isNull());
    turned.Create(1, 2);
    turned.GetCrBits()[1] = 0x123456;
    EXPECT_TRUE(TovImage(turned).pixel(0, 0) == 0xFF123456 && TovImageView(turned.GetBitmap()).isNull());

    QPixmap pixmap(2, 1);
    pixmap.fill(Qt::transparent);
    QPainter(&pixmap).fillRect(0, 0, 1, 1, Qt::blue);
    CBitmap bitmap;
    EXPECT_TRUE(TovSetPixmap(bitmap, pixmap) && bitmap.GetSafeHandle()->GetBits()[0] == 0xFF0000FF &&
                bitmap.GetSafeHandle()->GetBits()[1] == 0);
    QPixmap const back = TovPixmap(bitmap);
    bitmap.GetSafeHandle()->GetBits()[0] = 0x00FF00;
    EXPECT_EQ(back.toImage().pixel(0, 0), 0xFF0000FFU);
    EXPECT_EQ(TovPixmap(bitmap).toImage().pixel(0, 0), 0xFF00FF00U);
    EXPECT_TRUE(!TovSetPixmap(bitmap, QPixmap()) && TovPixmap(bitmap).isNull());
}

TEST(DibImageTest, IconsComeAsFineAsTheyAre) {
    QPixmap plain(16, 16), fine(32, 32);
    plain.fill(Qt::red);
    fine.fill(Qt::green);
    QIcon icon(plain);
    icon.addPixmap(fine);
    HICON const handle = TovIcon(icon);
    EXPECT_TRUE(handle->GetSize() == (CSize{16, 16}) &&
                *handle->GetPixels({32, 32})->GetBits() == 0xFF00FF00 &&
                *handle->GetPixels({16, 16})->GetBits() == 0xFFFF0000);
    EXPECT_EQ(TovQIcon(handle).cacheKey(), icon.cacheKey());
    EXPECT_TRUE(!TovIcon(QIcon()) && TovQIcon(nullptr).isNull());
    HBITMAP const small = AnyBlock(8, -8), large = AnyBlock(16, -16);
    small->GetBits()[0] = 0xFF123456;
    large->GetBits()[0] = 0xFF654321;
    QIcon const made = TovQIcon(TovIconOf(small, large));
    EXPECT_EQ(made.pixmap(QSize(8, 8), 1.0).toImage().pixel(0, 0), 0xFF123456U);
    EXPECT_EQ(made.pixmap(QSize(8, 8), 2.0).toImage().pixel(0, 0), 0xFF654321U);
}

}  // namespace
}  // namespace tov
