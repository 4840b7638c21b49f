// Tool tips on the screen: where they stand, when they paint, hide and speak, and what they never take.
#include "support/widgets.h"

#include <tov310/announce.h>
#include <tov310/qt_values.h>
#include <tov310/system.h>
#include <tov310/window_messages.h>
#include <tov310/wnd_tool_tip.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tov {
namespace {

struct Announcements : ITovAnnounce {
    Announcements() : before(TovSetAnnounce(this)) {}
    ~Announcements() override { TovSetAnnounce(before); }
    void Announce(HWND, char const* text) override { said.emplace_back(text); }
    std::vector<std::string> said;
    ITovAnnounce* before;
};

struct CountedTip : CTovWndToolTip {
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        paints += message == WM_PAINT;
        return CTovWndToolTip::WindowProc(message, wParam, lParam);
    }
    void OnToolTipMouseLeave() override { ++leaves; }
    int paints = 0;
    int leaves = 0;
};

struct Desk {
    Desk() {
        window.setGeometry(100, 100, 400, 300);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        edit.setFocus();
        place = window.mapToGlobal(QPoint(50, 60));
    }
    QWidget window;
    QLineEdit edit{&window};
    QPushButton under{"under", &window};
    QPoint place;
    CountedTip tip;
};

QScreen& Screen() {
    return *QGuiApplication::primaryScreen();
}

TEST(ToolTipWindow, StandsAtItsCornerAndInsideTheScreen) {
    Desk desk;
    CountedTip& tip = desk.tip;
    tip.ShowLeftTop("not made yet", 5, 5);
    EXPECT_FALSE(tip.isVisible() || tip.IsTooltipVisible());
    ASSERT_EQ(tip.CreatePopUpNA(&desk.window), 1);
    EXPECT_EQ(tip.CreatePopUp(&desk.window), 0) << "twice";
    struct {
        void (CTovWndToolTip::*show)(char const*, int, int);
        double left, top;  // halves of the size
    } const rows[] = {
        {&CTovWndToolTip::ShowLeftTop, 0, 0},          {&CTovWndToolTip::ShowLeftCentered, 0, 1},
        {&CTovWndToolTip::ShowLeftBottom, 0, 2},       {&CTovWndToolTip::ShowCenteredTop, 1, 0},
        {&CTovWndToolTip::ShowCenteredCentered, 1, 1}, {&CTovWndToolTip::ShowCenteredBottom, 1, 2},
        {&CTovWndToolTip::ShowRightTop, 2, 0},         {&CTovWndToolTip::ShowRightCentered, 2, 1},
        {&CTovWndToolTip::ShowRightBottom, 2, 2},
    };
    QFontMetrics const metrics(QToolTip::font());
    QSize const size(metrics.horizontalAdvance(QString(" 纬度 必须 ")) + 6, metrics.height() + 6);
    for (auto const& [show, left, top] : rows) {
        (tip.*show)("纬度\n必须", 400, 300);
        QPoint const corner(
            400 - static_cast<int>(left * (size.width() / 2)) - (left == 2 ? size.width() % 2 : 0),
            300 - static_cast<int>(top * (size.height() / 2)) - (top == 2 ? size.height() % 2 : 0));
        EXPECT_EQ(tip.geometry(), QRect(corner, size)) << left << top;
    }
    QRect const screen = Screen().availableGeometry();
    tip.ShowLeftTop("beyond the corner", screen.right(), screen.bottom());
    EXPECT_EQ(tip.geometry().bottomRight(), screen.bottomRight());
    tip.ShowLeftTop(std::string(2000, 'w').c_str(), screen.left() - 50, screen.top());
    EXPECT_EQ(tip.geometry().left(), screen.left());
    EXPECT_EQ(tip.geometry().right(), screen.right());
}

TEST(ToolTipWindow, PaintsAndSpeaksOnlyWhatIsNew) {
    Announcements announcements;
    Desk desk;
    CountedTip& tip = desk.tip;
    ASSERT_EQ(tip.CreatePopUpNA(&desk.window), 1);
    auto const paintsOf = [&](char const* text, int x) {
        QTest::qWait(20);
        tip.paints = 0;
        tip.ShowLeftTop(text, x, 200);
        int const atOnce = tip.paints;
        QTest::qWait(20);
        return atOnce > 0 && tip.isVisible() ? 1 : tip.paints;
    };
    EXPECT_EQ(paintsOf("one", 200), 1);
    EXPECT_EQ(paintsOf("one", 200), 0);
    EXPECT_EQ(paintsOf("two", 200), 1) << "of about the same size";
    tip.ShowLeftTop("two", 210, 200);
    EXPECT_EQ(tip.x(), 210);
    tip.ShowLeftTop("", 210, 200);
    EXPECT_TRUE(tip.IsTooltipVisible() && tip.size().isEmpty());
    tip.ShowLeftTop("two", 210, 200);
    tip.Hide();
    EXPECT_FALSE(tip.IsTooltipVisible() || tip.isVisible());
    tip.ShowLeftTop("two", 210, 200);
    EXPECT_EQ(announcements.said, (std::vector<std::string>{"one", "two", "two"}));
    EXPECT_TRUE(desk.edit.hasFocus());
}

TEST(ToolTipWindow, WearsTheColoursOfTheToolkitsTips) {
    QPalette const before = QToolTip::palette();
    for (bool const isDark : {false, true}) {
        QPalette palette = before;
        palette.setColor(QPalette::ToolTipBase, isDark ? QColor(20, 30, 40) : QColor(255, 250, 200));
        palette.setColor(QPalette::ToolTipText, isDark ? Qt::white : Qt::black);
        QToolTip::setPalette(palette);
        Desk desk;
        desk.tip.CreatePopUpNA(nullptr);
        desk.tip.ShowLeftTop("x", 300, 300);
        QImage const image = desk.tip.grab().toImage();
        QPoint const frame[] = {
            {0, 0}, {image.width() - 1, 0}, {0, image.height() - 1}, {image.width() - 1, image.height() - 1}};
        for (QPoint const& corner : frame)
            EXPECT_EQ(image.pixelColor(corner), palette.color(QPalette::ToolTipText));
        EXPECT_EQ(image.pixelColor(1, 1), palette.color(QPalette::ToolTipBase));
    }
    QToolTip::setPalette(before);
}

TEST(ToolTipWindow, IsATipWithItsTextToAScreenReader) {
    Desk desk;
    desk.tip.CreatePopUpNA(&desk.window);
    desk.tip.ShowAt("必须", desk.place, CTovToolTipText::eLeft, CTovToolTipText::eTop);
    QAccessibleInterface* const tip = QAccessible::queryAccessibleInterface(&desk.tip);
    ASSERT_NE(tip, nullptr);
    EXPECT_EQ(tip->role(), QAccessible::ToolTip);
    EXPECT_EQ(tip->text(QAccessible::Name), "必须");
}

// What a user does with the mouse; on a display too.
void HidesOnLeaveAndPassesClicksOn() {
    Desk desk;
    CountedTip& tip = desk.tip;
    desk.under.setGeometry(50, 60, 200, 60);
    desk.under.setContextMenuPolicy(Qt::CustomContextMenu);
    int clicks = 0;
    QObject::connect(&desk.under, &QPushButton::clicked, [&clicks] { ++clicks; });
    ASSERT_EQ(tip.CreatePopUpNA(&desk.window), 1);
    auto const show = [&] {
        tip.ShowLeftTop("press here to go", desk.place.x() + 10, desk.place.y() + 10);
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&tip));
    };
    auto const press = [&](Qt::MouseButton button) {
        QPoint const at(5, 5), atUnder = desk.under.mapTo(&desk.window, QPoint(15, 15));
        QTest::mousePress(tip.windowHandle(), button, {}, at);
        QTest::mouseRelease((tip.IsTooltipVisible() ? tip : desk.window).windowHandle(), button, {},
                            tip.IsTooltipVisible() ? at : atUnder);
    };
    show();
    press(Qt::LeftButton);
    EXPECT_TRUE(tip.IsTooltipVisible());
    tip.HideOnClick(0, 1);
    int right = 0;
    EXPECT_EQ(tip.HideOnClick(&right), 0);
    EXPECT_EQ(right, 1);
    press(Qt::LeftButton);
    EXPECT_TRUE(tip.IsTooltipVisible());
    press(Qt::RightButton);
    EXPECT_FALSE(tip.IsTooltipVisible());
    EXPECT_EQ(clicks, 0);
    tip.HideOnClick(1, 0);
    show();
    press(Qt::LeftButton);
    EXPECT_FALSE(tip.IsTooltipVisible());
    EXPECT_EQ(clicks, 1) << "the press and the release have reached the button under the tip";
    EXPECT_TRUE(desk.window.isActiveWindow());

    for (int const hides : {0, 1}) {
        tip.HideOnLeave(hides);
        show();
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(&tip, &leave);
        EXPECT_EQ(tip.IsTooltipVisible(), !hides);
        EXPECT_EQ(tip.leaves, hides);
    }
}

TEST(ToolTipWindow, HidesOnLeaveAndPassesClicksOn) {
    HidesOnLeaveAndPassesClicksOn();
}

TEST(DisplayToolTip, HidesOnLeaveAndPassesClicksOn) {
    HidesOnLeaveAndPassesClicksOn();
}

TEST(DisplayToolTip, NeverTakesTheActivation) {
    for (bool const canBeActivated : {false, true}) {
        Desk desk;
        ASSERT_EQ(canBeActivated ? desk.tip.CreatePopUp(&desk.window) : desk.tip.CreatePopUpNA(&desk.window),
                  1);
        desk.tip.ShowLeftTop("look", desk.place.x(), desk.place.y());
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&desk.tip));
        QTest::qWait(200);
        EXPECT_TRUE(desk.window.isActiveWindow() && desk.edit.hasFocus()) << canBeActivated;
        if (!canBeActivated) continue;
        QLineEdit later;  // active last, though not when the tip came up
        later.show();
        later.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&later));
        desk.tip.activateWindow();
        EXPECT_TRUE(QTest::qWaitFor([&desk] { return desk.tip.isActiveWindow(); }));
        EXPECT_TRUE(QTest::qWaitForWindowActive(&later));
        desk.window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&desk.window));
        desk.tip.activateWindow();
        EXPECT_TRUE(QTest::qWaitFor([&desk] { return desk.tip.isActiveWindow(); }));
        EXPECT_TRUE(QTest::qWaitForWindowActive(&desk.window)) << "it goes back";
        EXPECT_TRUE(QTest::qWaitFor([&desk] { return desk.edit.hasFocus(); }));
    }
}

TEST(ToolTipWindow, GoesWithItsWindow) {
    CountedTip tip;
    auto window = std::make_unique<QWidget>();
    window->show();
    ASSERT_EQ(tip.CreatePopUp(window.get()), 1);
    tip.ShowLeftTop("here", 100, 100);
    window->hide();
    EXPECT_FALSE(tip.isVisible() || tip.IsTooltipVisible());
    window->show();
    tip.ShowLeftTop("here", 100, 100);
    EXPECT_TRUE(tip.isVisible());
    window.reset();
    EXPECT_FALSE(tip.isVisible() || tip.GetSafeHwnd());
    tip.ShowLeftTop("here", 100, 100);
    EXPECT_FALSE(tip.isVisible());
    QWidget second;
    EXPECT_EQ(tip.CreatePopUpNA(&second), 1) << "it can be made anew";
    tip.ShowLeftTop("here", 100, 100);
    EXPECT_TRUE(tip.isVisible());
    auto const made = CTovWndToolTip::classCTovWndToolTip.CreateObject();
    EXPECT_TRUE(made != nullptr && made->IsKindOf(&CTovWndToolTip::classCTovWndToolTip));
}

}  // namespace
}  // namespace tov
