// The splash: which picture it shows, where and how long, and what it does to its parent.
#include "support/temporary_folder.h"
#include "support/widgets.h"

#include <tov310/application.h>
#include <tov310/qt_values.h>
#include <tov310/styles.h>
#include <tov310/wnd_splash.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

namespace tov {
namespace {

CTovDib Picture(int height) {
    CTovDib dib;
    EXPECT_EQ(dib.Create(8, height), 1);
    std::fill_n(dib.GetCrBits(), 8 * 6, 0xFF0000FFu);  // blue
    std::fill_n(dib.GetCrBits(), 8, 0xFFFF0000u);      // and red in the first row of memory
    return dib;
}

TEST(Splash, ShowsItsPictureInTheMiddleOfTheScreen) {
    test::TemporaryFolder const folder;
    std::string const file = folder.File("splash.png");
    QWidget parent;
    for (int const height : {-6, 6}) {
        CTovWndSplash splash(Picture(height));
        QTest::qWait(1);  // the toolkit prepares it; it is no window yet
        ASSERT_EQ(splash.Create(&parent), 1);
        EXPECT_EQ(splash.Create(&parent), 0) << "twice";
        EXPECT_TRUE(splash.isVisible() && splash.windowHandle()->isExposed());
        QRect middle({}, QSize(8, 6));
        middle.moveCenter(parent.screen()->geometry().center());
        EXPECT_EQ(splash.geometry(), middle);
        EXPECT_TRUE(splash.GetExStyle() & WS_EX_TOPMOST);
        EXPECT_TRUE(splash.windowFlags() & Qt::WindowStaysOnTopHint);
        QImage const shown = splash.grab().toImage();
        EXPECT_EQ(shown.pixelColor(3, height < 0 ? 0 : 5), QColor(Qt::red));
        EXPECT_EQ(shown.pixelColor(3, 3), QColor(Qt::blue));
        ASSERT_TRUE(shown.save(TovQString(file)));
    }
    CTovWndSplash fromFile(file.c_str(), 0);
    EXPECT_EQ(fromFile.Create(nullptr, WS_POPUP), 1);
    EXPECT_FALSE(fromFile.isVisible() || (fromFile.windowFlags() & Qt::WindowStaysOnTopHint));
    EXPECT_EQ(fromFile.GetImage().GetWidth(), 8);
    CTovWndSplash missing("there is no such.png");
    CTovWndSplash noResource(TovBuiltInResourceModule(), 1u);
    CTovWndSplash empty{CTovDib()};
    EXPECT_EQ(missing.Create() + noResource.Create() + empty.Create(), 0);
    EXPECT_FALSE(missing.isVisible() || missing.GetSafeHwnd());
}

TEST(Splash, EndsByTimeByClickAndByKey) {
    struct {
        unsigned timeOut;
        int clickEnds;
        int action;  // 0 none, 1 click, 2 key, 3 close
        bool ends;
    } const rows[] = {{30, 0, 0, true},
                      {60000, 1, 1, true},
                      {60000, 1, 2, true},
                      {60000, 0, 1, false},
                      {60000, 1, 0, false},
                      {CTovWndSplash::noTimeOut, 1, 1, false},
                      {CTovWndSplash::noTimeOut, 1, 2, false},
                      {CTovWndSplash::noTimeOut, 0, 3, true}};
    for (auto const& [timeOut, clickEnds, action, ends] : rows) {
        QWidget parent;
        parent.show();
        CTovWndSplash splash(Picture(6), 1, timeOut, clickEnds);
        int ended = 0;
        QObject::connect(&splash, &CTovWndSplash::ended, [&ended] { ++ended; });
        ASSERT_EQ(splash.Create(&parent, WS_POPUP | WS_VISIBLE, 0, 1), 1);
        EXPECT_FALSE(parent.isEnabled());
        if (action == 1) QTest::mouseClick(splash.windowHandle(), Qt::MiddleButton);
        if (action == 2) QTest::keyClick(&splash, Qt::Key_A);
        if (action == 3) splash.close();
        bool const hasEnded = QTest::qWaitFor([&splash] { return !splash.isVisible(); }, ends ? 5000 : 60);
        EXPECT_EQ(hasEnded, ends) << timeOut << clickEnds << action;
        EXPECT_EQ(ended, ends);
        EXPECT_EQ(parent.isEnabled(), ends);
        EXPECT_EQ(splash.GetSafeHwnd(), ends ? HWND{} : TovHandle(&splash));
    }
}

TEST(Splash, LivesWithItsParentAndLeavesItAsItWas) {
    CWinApp application;
    auto window = std::make_unique<QWidget>();
    application.SetMainWnd(TovHandle(window.get()));
    auto splash = std::make_unique<CTovWndSplash>(Picture(6));
    ASSERT_EQ(splash->Create(nullptr, WS_POPUP, 0, 1), 1);
    EXPECT_FALSE(window->isEnabled()) << "the main window stands in for a parent";
    splash.reset();
    EXPECT_TRUE(window->isEnabled());
    window->setEnabled(false);
    splash = std::make_unique<CTovWndSplash>(Picture(6));
    ASSERT_EQ(splash->Create(nullptr, WS_POPUP, 0, 1), 1);
    splash->DestroyWindow();
    EXPECT_FALSE(window->isEnabled()) << "it was so before";
    ASSERT_EQ(splash->Create(window.get()), 1);
    window.reset();
    EXPECT_FALSE(splash->isVisible() || splash->GetSafeHwnd());
}

}  // namespace
}  // namespace tov
