#include <tov310/html_page.h>
#include <tov310/tool_tip_text.h>

#include <gmock/gmock.h>

namespace tov {
namespace {

using Tip = CTovToolTipText;

TEST(ToolTip, PutsTheNamedPointOnThePlace) {
    Tip tip;
    tip.Update("a\tb\r\nc", [](CString const& text) {
        EXPECT_EQ(text, " a b  c ");
        return CSize{75, 14};
    });
    struct {
        Tip::eAcross across;
        Tip::eDown down;
        int left, top;
    } const rows[] = {
        {Tip::eLeft, Tip::eTop, 100, 200},       {Tip::eLeft, Tip::eMiddle, 100, 190},
        {Tip::eLeft, Tip::eBottom, 100, 180},    {Tip::eCentered, Tip::eTop, 60, 200},
        {Tip::eCentered, Tip::eMiddle, 60, 190}, {Tip::eCentered, Tip::eBottom, 60, 180},
        {Tip::eRight, Tip::eTop, 19, 200},       {Tip::eRight, Tip::eMiddle, 19, 190},
        {Tip::eRight, Tip::eBottom, 19, 180},
    };
    for (auto const& [across, down, left, top] : rows) {
        CRect const expected{left, top, left + 81, top + 20};
        EXPECT_EQ(tip.RectangleAt(100, 200, across, down), expected) << across << down;
    }
}

TEST(ToolTip, IsKeptInsideTheScreen) {
    struct {
        CRect rect, screen, kept;
    } const rows[] = {
        {{10, 20, 50, 40}, {0, 0, 100, 80}, {10, 20, 50, 40}},
        {{60, 70, 100, 80}, {0, 0, 100, 80}, {60, 70, 100, 80}},
        {{61, 71, 101, 81}, {0, 0, 100, 80}, {60, 70, 100, 80}},
        {{-7, -1, 33, 9}, {0, 0, 100, 80}, {0, 0, 40, 10}},
        {{90, 30, 130, 40}, {-200, 0, -100, 80}, {-140, 30, -100, 40}},
        {{-5, 0, 205, 100}, {0, 0, 100, 80}, {0, 0, 100, 80}},
        {{5, 6, 7, 8}, {}, {5, 6, 7, 8}},
        {{300, 9, 300, 9}, {0, 0, 100, 80}, {100, 9, 100, 9}},
    };
    for (auto const& [rect, screen, kept] : rows)
        EXPECT_EQ(CTovToolTipText::KeptInside(rect, screen), kept) << rect.left << ' ' << rect.top;
}

TEST(ToolTip, ShowsOnlyWhatIsNew) {
    Tip tip;
    int measured = 0;
    auto const update = [&](char const* text) {
        tip.Update(text, [&](CString const& shown) {
            ++measured;
            return CSize{static_cast<int>(shown.size()), 10};
        });
        return tip.Show(tip.RectangleAt(0, 0, Tip::eLeft, Tip::eTop));
    };
    EXPECT_EQ(update("one") + update("one"), 1);
    EXPECT_EQ(update("two") + update("two"), 1) << "of the same size";
    EXPECT_EQ(tip.Show({1, 1, 9, 9}), 1);
    EXPECT_EQ(measured, 2);
    tip.Hide();
    EXPECT_EQ(tip.IsShown(), 0);
    EXPECT_EQ(update("two"), 1);
    for (char const* const nothing : {"", static_cast<char const*>(nullptr)}) {
        update("some");
        update(nothing);
        EXPECT_EQ(tip.DisplayText(), "");
        EXPECT_EQ(tip.Size(), CSize{});
    }
}

TEST(HtmlPage, ShowsOnePicture) {
    unsigned long const red = 0x0000FF, bluish = 0xFF8001;
    EXPECT_EQ(CTovHtmlPage::Color(red), "ff0000");
    EXPECT_EQ(CTovHtmlPage::Color(bluish), "0180ff");
    EXPECT_EQ(CTovHtmlPage::Empty(nullptr), "<HTML></HTML>");
    EXPECT_EQ(CTovHtmlPage::Empty(&red), "<HTML><BODY BGCOLOR=\"#ff0000\"></BODY></HTML>");
    EXPECT_EQ(CTovHtmlPage::Picture("/a b/\"1<.png", 0, nullptr),
              "<HTML><BODY ><P><IMG SRC=\"/a%20b/%221%3c.png\" ></P></BODY></HTML>");
    CString const centered = CTovHtmlPage::Picture("x.png", 1, &red);
    EXPECT_THAT(centered, testing::StartsWith("<HTML><BODY BGCOLOR=\"#ff0000\"><TABLE border=\"0\" "
                                              "width=\"100%\" height=\"100%\">"));
    EXPECT_THAT(centered, testing::HasSubstr("<IMG SRC=\"x.png\" >"));
    EXPECT_EQ(CTovHtmlPage::FileName("C:\\maps/one.png", 0, nullptr), "CTovHtmlView_C__maps_one.png");
    EXPECT_EQ(CTovHtmlPage::FileName("one.png", 1, &bluish), "CTovHtmlView_one.png_Center_0180ff");
    EXPECT_EQ(CTovHtmlPage::FileName("", 0, nullptr), "CTovHtmlView_Empty");
}

}  // namespace
}  // namespace tov
