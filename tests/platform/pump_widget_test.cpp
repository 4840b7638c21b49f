// A long work on the main thread with one live button: what is done to that happens at once, all else
// afterwards and in its order.
#include "support/widgets.h"

#include <tov310/button_event.h>
#include <tov310/messages.h>
#include <tov310/pump.h>
#include <tov310/qt_values.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <random>
#include <thread>

namespace tov {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using test::Mouse;
using test::Press;
using test::Release;

constexpr int abortId = 26506;

QWindow* WindowOf(QWidget const& widget) {
    return widget.window()->windowHandle();
}

// A dialog with two buttons, one of which is the real one under the live one, and another window beside it.
struct Desk {
    Desk() {
        QApplication::setDoubleClickInterval(0);  // every click is one of its own
        other.setGeometry(10, 10, 200, 200);
        dialog.setGeometry(300, 10, 200, 200);
        abort.setGeometry(20, 20, 80, 30);
        sibling.setGeometry(20, 90, 80, 30);
        elsewhere.setGeometry(20, 20, 80, 30);
        abort.setProperty(tovIdProperty, abortId);
        for (QPushButton* const button : {&abort, &sibling, &elsewhere}) {
            QObject::connect(button, &QPushButton::pressed, [this, button] { Note(*button, " down"); });
            QObject::connect(button, &QPushButton::clicked, [this, button] { Note(*button, ""); });
        }
        other.show();
        dialog.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&other) && QTest::qWaitForWindowExposed(&dialog));
        thread = CTovButtonEvent::CreateThread(abortId, TovWnd(&dialog), &event, &counter);
        QCoreApplication::processEvents();
    }
    void Note(QPushButton const& button, char const* what) {
        log.push_back(button.text().toStdString().append(what));
    }

    QWidget other, dialog;
    QPushButton abort{"abort", &dialog}, sibling{"sibling", &dialog}, elsewhere{"elsewhere", &other};
    CEvent event;
    std::atomic<long> counter{0};
    std::unique_ptr<CTovButtonEventThread> thread;
    std::vector<std::string> log;
};

TEST(ButtonEvent, AnswersWithinATenthOfASecondWhileAllElseWaits) {
    Desk desk;
    ASSERT_NE(desk.thread, nullptr);
    QWidget const& button = *TovWidget(desk.thread->GetWindow());
    EXPECT_EQ(button.geometry(), desk.abort.geometry());
    constexpr int clicks = 5;
    Clock::duration longest{};
    std::atomic<bool> isDone{false};
    std::thread user([&] {
        for (int i = 1; i <= clicks; ++i) {
            Press(desk.elsewhere);
            Release(desk.elsewhere);
            std::this_thread::sleep_for(std::chrono::milliseconds(13 * i));
            auto const start = Clock::now();
            Press(button);
            if (desk.event.Lock(5000) == 0) break;
            longest = std::max(longest, Clock::now() - start);
            Release(button);
        }
        isDone = true;
    });
    while (!isDone) {
        std::this_thread::sleep_for(50ms);  // the work
        desk.thread->Pump();
    }
    user.join();
    desk.thread->Pump();
    EXPECT_EQ(desk.counter, clicks);
    EXPECT_LT(longest, 100ms);
    EXPECT_TRUE(desk.log.empty()) << desk.log.front();
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    EXPECT_EQ(std::ranges::count(desk.log, "elsewhere"), clicks);
    desk.thread.reset();
    Press(desk.abort);
    Release(desk.abort);
    QCoreApplication::processEvents();
    EXPECT_EQ(desk.log.back(), "abort") << "the real one is there again";
}

// Random clicks, posts and a timer, pumped at random: what the main loop gets to see is what happened, in its
// order, without what went to the live button.
TEST(Pump, KeepsTheOrderOfWhatIsHeld) {
    struct Listener : CTovMessageWindow {
        LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
            ++heard;
            return CTovMessageWindow::WindowProc(message, wParam, lParam);
        }
        int heard = 0;
    };
    for (unsigned seed = 0; seed < 20; ++seed) {
        Desk desk;
        Listener listener;
        listener.Create();
        listener.SetTimer(1, 1);
        std::vector<std::string> expected;
        long aborts = 0;
        std::atomic<bool> isDone{false};
        std::thread user([&, window = listener.GetSafeHwnd(), button = TovWidget(desk.thread->GetWindow())] {
            std::mt19937 random(seed);
            for (int step = 0; step < 12; ++step) {
                QWidget const* const widgets[] = {button, &desk.sibling, &desk.elsewhere};
                auto const which = random() % 3;
                Press(*widgets[which]);
                if (random() % 4 == 0) TovPostMessage(window, WM_TOV_PROPERTIES);
                Release(*widgets[which]);
                aborts += which == 0;
                if (which == 0) continue;
                std::string const name = which == 1 ? "sibling" : "elsewhere";
                expected.push_back(name + " down");
                expected.push_back(name);
            }
            isDone = true;
        });
        while (!isDone) {
            std::this_thread::sleep_for(1ms);
            desk.thread->Pump();
        }
        user.join();
        EXPECT_EQ(desk.counter, aborts) << seed;
        EXPECT_TRUE(desk.log.empty()) << seed;
        EXPECT_EQ(listener.heard, 0) << seed;
        QTest::qWait(10);
        EXPECT_EQ(desk.log, expected) << seed;
        EXPECT_GT(listener.heard, 0) << "its timer runs again";
    }
}

TEST(Pump, LetsAWholeDialogLiveAndHoldsShortcutsOfOthers) {
    Desk desk;
    desk.thread.reset();
    int saved = 0;
    QAction save;
    save.setShortcut(QKeySequence("Ctrl+S"));
    QObject::connect(&save, &QAction::triggered, [&saved] { ++saved; });
    desk.other.addAction(&save);
    desk.other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&desk.other));
    HWND const dialog = TovHandle(&desk.dialog);
    Press(desk.sibling);
    Release(desk.sibling);
    TovGetPump()->Pump(dialog);
    EXPECT_EQ(desk.log, (std::vector<std::string>{"sibling down", "sibling"}));
    ITovPump& pump = *TovGetPump();
    QTimer::singleShot(0, [&] {
        // A work that the main loop has begun, with a key pressed meanwhile.
        QMetaObject::invokeMethod(
            qApp, [&] { QTest::keyClick(WindowOf(desk.other), Qt::Key_S, Qt::ControlModifier); },
            Qt::QueuedConnection);
        pump.Pump(dialog);
        EXPECT_EQ(saved, 0);
    });
    EXPECT_TRUE(QTest::qWaitFor([&saved] { return saved > 0; }));
    EXPECT_EQ(saved, 1);
}

TEST(Pump, SurvivesTheDeathOfWhatItPumpsAndOfWhatItHolds) {
    auto desk = std::make_unique<Desk>();
    auto gone = std::make_unique<QPushButton>("gone");
    gone->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(gone.get()));
    Press(*gone);
    Press(desk->elsewhere);
    desk->thread->Pump();
    gone.reset();
    QMetaObject::invokeMethod(
        qApp, [&desk] { desk->thread.reset(); }, Qt::QueuedConnection);
    desk->thread->Pump();
    EXPECT_EQ(desk->thread, nullptr);
    TovGetPump()->Pump({});
    Release(desk->elsewhere);
    QCoreApplication::processEvents();
    EXPECT_EQ(desk->log, (std::vector<std::string>{"elsewhere down", "elsewhere"}));
    desk.reset();
}

// Hears fingers and pens by itself, and the mouse.
struct Pad : QWidget {
    using QWidget::QWidget;
    bool event(QEvent* event) override {
        char const what =
            event->type() == QEvent::TouchBegin                                                        ? 'b'
            : event->type() == QEvent::TouchUpdate                                                     ? 'u'
            : event->type() == QEvent::TouchEnd                                                        ? 'e'
            : event->type() == QEvent::TabletPress                                                     ? 'p'
            : event->type() == QEvent::TabletRelease                                                   ? 'r'
            : event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonRelease ? 'm'
                                                                                                       : '\0';
        if (what == '\0') return QWidget::event(event);
        heard += what;
        if (event->isPointerEvent())
            place = static_cast<QPointerEvent*>(event)->points().first().position().toPoint();
        event->accept();
        return true;
    }
    std::string heard;
    QPoint place;
};

TEST(Pump, KeepsFingersAndPensAsTheMouse) {
    std::unique_ptr<QPointingDevice> const device(QTest::createTouchDevice());
    QPointingDevice* const screen = device.get();
    Desk desk;
    Pad pad(&desk.other);
    pad.setAttribute(Qt::WA_AcceptTouchEvents);
    pad.setGeometry(100, 100, 50, 50);
    pad.show();
    auto const at = [](QWidget const& widget, QPoint place) {
        return widget.mapTo(widget.window(), place.isNull() ? widget.rect().center() : place);
    };
    auto const down = [&](QWidget const& widget, QPoint place = {}) {
        QTest::touchEvent(WindowOf(widget), screen, false).press(1, at(widget, place)).commit(false);
    };
    auto const up = [&](QWidget const& widget, QPoint place = {}) {
        QTest::touchEvent(WindowOf(widget), screen, false).release(1, at(widget, place)).commit(false);
    };
    auto const pen = [&](QEvent::Type type) {
        QPointF const place = at(pad, {});
        bool const isUp = type == QEvent::TabletRelease;
        QTabletEvent event(type, screen, place, pad.window()->mapToGlobal(place), isUp ? 0 : 1, 0, 0, 0, 0, 0,
                           {}, Qt::LeftButton, isUp ? Qt::NoButton : Qt::LeftButton);
        QCoreApplication::sendEvent(WindowOf(pad), &event);
        return event.isAccepted();
    };
    auto const meanwhile = [&](std::function<void()> const& act) {
        QMetaObject::invokeMethod(qApp, act, Qt::QueuedConnection);
        desk.thread->Pump();
    };
    using Log = std::vector<std::string>;

    meanwhile([&] { down(*TovWidget(desk.thread->GetWindow())), up(desk.abort); });
    EXPECT_EQ(desk.counter, 1);
    meanwhile([&] { down(desk.sibling), up(desk.sibling), down(desk.elsewhere); });
    EXPECT_EQ(desk.counter, 1);
    EXPECT_EQ(desk.log, Log());
    up(desk.elsewhere);
    QCoreApplication::processEvents();
    EXPECT_EQ(desk.log, (Log{"sibling down", "sibling", "elsewhere down", "elsewhere"}));

    down(pad, {10, 10});
    meanwhile([&] { up(pad, {20, 30}); });
    EXPECT_EQ(pad.heard, "b");
    QCoreApplication::processEvents();
    EXPECT_EQ(pad.heard, "be");
    EXPECT_EQ(pad.place, QPoint(20, 30)) << "where the finger went up";
    meanwhile([&] { down(pad), up(pad); });
    down(pad);
    EXPECT_EQ(pad.heard, "bemmb");
    up(pad);
    EXPECT_EQ(std::exchange(pad.heard, {}), "bemmbe");

    EXPECT_TRUE(pen(QEvent::TabletPress));
    meanwhile([&] { pen(QEvent::TabletRelease); });
    QCoreApplication::processEvents();
    EXPECT_EQ(pad.heard, "pr");
    meanwhile([&] { EXPECT_FALSE(pen(QEvent::TabletPress)); });
    EXPECT_FALSE(pen(QEvent::TabletRelease)) << "the mouse comes in its place, to the end";
    EXPECT_TRUE(pen(QEvent::TabletPress) && pen(QEvent::TabletRelease));
    EXPECT_EQ(pad.heard, "prpr");
}

TEST(ButtonEvent, LooksAndMovesLikeTheRealOneAndHearsKeys) {
    Desk desk;
    auto& button = *TovWidget(desk.thread->GetWindow());
    EXPECT_EQ(button.grab().toImage(), desk.abort.grab().toImage());
    desk.abort.setText("取消");
    EXPECT_NE(TovSendMessage(desk.thread->GetWindow(), WM_TOV_BTNEVENT_CREATEIMAGE), 0);
    EXPECT_EQ(button.accessibleName(), "取消");
    EXPECT_EQ(button.grab().toImage(), desk.abort.grab().toImage());
    desk.abort.setGeometry(30, 40, 90, 35);
    EXPECT_EQ(button.geometry(), QRect(30, 40, 90, 35));
    QImage const up = desk.abort.grab().toImage();
    QTest::mousePress(&button, Qt::LeftButton);
    EXPECT_NE(button.grab().toImage(), up) << "it goes down";
    QTest::mouseRelease(&button, Qt::LeftButton);
    desk.abort.hide();
    EXPECT_FALSE(button.isVisible());
    desk.abort.show();
    auto* const group = new QGroupBox(&desk.dialog);
    group->setGeometry(0, 100, 190, 90);
    group->show();
    for (QWidget* const around :
         {static_cast<QWidget*>(group), static_cast<QWidget*>(nullptr), &desk.dialog}) {
        desk.abort.setParent(around);
        desk.abort.show();
        desk.abort.raise();
        EXPECT_EQ(button.isVisible(), around != nullptr);
        if (around == nullptr) continue;
        EXPECT_EQ(around->childAt(desk.abort.geometry().center()), &button);
    }
    long count = desk.counter;
    for (Qt::Key const key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Escape}) {
        QTest::keyClick(&button, key);
        EXPECT_EQ(desk.counter, ++count) << key;
    }
    EXPECT_EQ(CTovButtonEvent::CreateThread(1, TovWnd(&desk.dialog), nullptr, nullptr), nullptr);
    EXPECT_EQ(CTovButtonEvent::CreateThread(1, nullptr, nullptr, nullptr), nullptr);
}

}  // namespace
}  // namespace tov
