#include "support/fake_window.h"

#include <tov310/device_context.h>
#include <tov310/fitted_text.h>
#include <tov310/paper.h>

#include <gmock/gmock.h>

#include <map>

namespace tov {
namespace {

// Characters are 10 pixels wide, but "i" and "." 3; notes what is drawn.
struct FakePrinter : CDC {
    static int WidthOf(std::string_view text) {
        int width = 0;
        for (char const c : text)
            width += (c & 0xC0) == 0x80 ? 0 : c == 'i' || c == '.' ? 3 : 10;
        return width;
    }
    CSize GetTextExtent(char const* text) const override { return {WidthOf(text), 12}; }
    int TextOut(int x, int y, char const* text) override {
        drawn << x << ',' << y << ' ' << std::hex << GetTextColor() << std::dec << ' ' << text << '\n';
        return 1;
    }
    int GetDeviceCaps(int index) const override { return caps.at(index); }
    std::map<int, int> caps;
    std::ostringstream drawn;
};

// Takes characters off one by one, as a person would.
std::string Shortened(std::string text, int width) {
    std::string const dots = "...";
    if (FakePrinter::WidthOf(text) <= width) return text;
    for (;;) {
        std::string shorter = text;
        while ((shorter.back() & 0xC0) == 0x80)
            shorter.pop_back();
        shorter.pop_back();
        if (shorter.empty()) break;
        text = shorter;
        if (FakePrinter::WidthOf(text) + FakePrinter::WidthOf(dots) <= width) return text + dots;
    }
    return dots.substr(0, static_cast<std::size_t>(std::min(width / 3, 3)));
}

TEST(FittedText, IsAsLongAsTheWidthAllows) {
    FakePrinter const dc;
    for (std::string const text : {"", "i", "W", "Wide", "iiWWii", "测量点 12", "Tucumán...i"}) {
        int characters = 0;
        for (int width = 0; width < 100; ++width) {
            EXPECT_EQ(TovAdjustString(&dc, width, text.c_str()), Shortened(text, width)) << text << width;
            int const fitting = TovGetMaxStringLen(&dc, width, text.c_str());
            EXPECT_GE(fitting, std::exchange(characters, fitting));
        }
        EXPECT_EQ(characters, std::ranges::count_if(text, [](char c) { return (c & 0xC0) != 0x80; }));
    }
    EXPECT_EQ(TovGetMaxStringLen(&dc, 25, "测量点"), 2);
    EXPECT_EQ(TovGetMaxStringLen(&dc, 9, "WW"), 0);
    EXPECT_EQ(TovAdjustString(nullptr, 0, "W"), "W");
    EXPECT_EQ(TovGetMaxStringLen(&dc, 9, nullptr), 0);
    // Without the beginning of a character there is nothing to choose from.
    for (char const* const none : {"", "\xB0\xA1\xB0\xA1"}) {
        EXPECT_EQ(TovGetMaxStringLen(&dc, -1, none), 0);
        EXPECT_EQ(TovAdjustString(&dc, -1, none), "");
    }
}

TEST(FittedText, PathsKeepRootAndLastElement) {
    test::FakeDesk desk;  // 7 pixels for each byte
    test::FakeWindow window(desk);
    struct {
        char const* path;
        unsigned characters;
        char const* fitted;
    } const rows[] = {
        {"C:\\one\\two\\three.txt", 20, "C:\\one\\two\\three.txt"},
        {"C:\\one\\two\\three.txt", 19, "C:\\ ...\\three.txt"},
        {"C:\\a\\b\\three.txt", 16, "C:\\a\\b\\three.txt"},
        {"C:\\one\\two\\four\\three.txt", 22, "C:\\ ...\\four\\three.txt"},
        {"C:\\one\\two\\four\\three.txt", 17, "C:\\ ...\\three.txt"},
        {"C:\\one\\two\\four\\three.txt", 16, "C:\\ ...three.txt"},
        {"C:\\one\\two\\four\\three.txt", 0, "C:\\ ...three.txt"},
        {"/home/survey/data/points.csv", 22, "/ .../data/points.csv"},
        {"/home/survey/data/points.csv", 0, "/ ...points.csv"},
        {"数据站/甲/乙/点.csv", 0, "数据站 ...点.csv"},
        {"\\\\server\\share\\points.csv", 0, "\\\\s ...points.csv"},
        {"name without folders", 3, "nam ...name without folders"},
        {"C:\\", 0, "C:\\"},
        {"", 0, ""},
    };
    for (auto const& row : rows) {
        EXPECT_EQ(TovAdjustPathString(row.path, &window, row.characters * 7), row.fitted)
            << row.path << row.characters;
        EXPECT_EQ(TovAdjustPathString(row.path, nullptr, 0), row.path);
    }
}

TEST(FittedText, RaisedAndSunken) {
    FakePrinter dc;
    dc.SetTextColor(0x123456);
    TovDraw3dString(&dc, 10, 20, "N", 1, 0xFF, 0xAA);
    TovDraw3dString(&dc, 10, 20, "N", 0, 0xFF);
    EXPECT_EQ(dc.drawn.str(), "9,19 aa N\n10,20 ff N\n11,21 0 N\n10,20 ff N\n");
    EXPECT_EQ(dc.GetTextColor(), 0x123456u);
}

TEST(Paper, SizesInInches) {
    struct {
        DEVMODE mode;
        int known;
        double width, height;
    } const rows[] = {
        {{DM_PAPERSIZE | DM_PAPERLENGTH | DM_PAPERWIDTH, 1, 2970, 2100}, 1, 210 / 25.4, 297 / 25.4},
        {{DM_PAPERSIZE, 5, 2970, 2100}, 1, 8.5, 14},
        {{DM_PAPERSIZE | DM_PAPERWIDTH, 5, 0, 254}, 1, 1, 14},
        {{DM_PAPERSIZE, 118, 0, 0}, 1, 210 / 25.4, 297 / 25.4},
        {{DM_PAPERSIZE, 12, 0, 0}, 0, 210 / 25.4, 297 / 25.4},
        {{DM_PAPERSIZE | DM_PAPERLENGTH, 12, 254, 0}, 0, 210 / 25.4, 1},
        {{DM_PAPERLENGTH, 9, 254, 0}, 0, 0, 1},
    };
    for (auto const& row : rows) {
        double width = -1, height = -1;
        CPrintInfo job;
        job.m_pDevMode = &row.mode;
        EXPECT_EQ(CTovCDCHelper::GetPaperSizeInInches(&job, width, height), row.known);
        EXPECT_NEAR(width, row.width, 1e-9);
        EXPECT_NEAR(height, row.height, 1e-9);
    }
    double width = -1, height = -1;
    CPrintInfo const unprepared;
    EXPECT_EQ(CTovCDCHelper::GetPaperSizeInInches(&unprepared, width, height), 0);
    EXPECT_EQ(width + height, 0);
}

TEST(Paper, MarginsWithinThePrintableArea) {
    FakePrinter dc;
    // Of 850 by 1100 dots, 801 by 1000 can be printed: 25 (a half of 49, rounded up) and 50 are blank.
    dc.caps = {{LOGPIXELSX, 100}, {LOGPIXELSY, 100}, {HORZRES, 801}, {VERTRES, 1000}};
    EXPECT_EQ(CTovCDCHelper::CalculatePrintArea(&dc, 8.5, 11, {0, 0, 0, 0}, 0), (CRect{0, 0, 801, 1000}));
    EXPECT_EQ(CTovCDCHelper::CalculatePrintArea(&dc, 8.5, 11, {1000, 500, 259, 510}, 0),
              (CRect{75, 0, 801, 999}));
    EXPECT_EQ(CTovCDCHelper::CalculatePrintArea(&dc, 8.5, 11, {2540, 5080, 2565, 1270}, 1),
              (CRect{75, 150, 726, 1000}));
}

}  // namespace
}  // namespace tov
