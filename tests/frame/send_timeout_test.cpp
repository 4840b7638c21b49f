#include <tov310/messages.h>
#include <tov310/window.h>

#include <gmock/gmock.h>

#include <atomic>
#include <functional>
#include <stdexcept>
#include <thread>

namespace tov {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

// Notes the texts that it is sent and the numbers that it is posted.
class Receiver : public CTovMessageWindow {
 public:
    std::vector<std::string> log;
    std::function<LRESULT()> answer;

    Receiver() { EXPECT_EQ(Create(), 1); }
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_TOV_PROPERTIES) log.push_back(std::to_string(wParam));
        if (message != WM_TOV_EDIT_DELETE) return 0;
        LRESULT const result = answer ? answer() : static_cast<LRESULT>(wParam) + 1;
        log.emplace_back(reinterpret_cast<char const*>(lParam));  // after the answer was long in coming, too
        return result;
    }
    void DispatchUntil(std::atomic<bool> const& done) {
        while (!done) {
            TovWaitForPosts(1);
            TovDispatchPosts();
        }
    }
};

int SendText(HWND window, WPARAM wParam, std::string text, unsigned patience, LRESULT* result = nullptr,
             std::stop_token stop = {}) {
    return TovSendMessageTimeout(window, WM_TOV_EDIT_DELETE, wParam, std::move(text), patience, result, stop);
}

constexpr unsigned forever = 60'000;

TEST(SendTimeout, OnTheUserInterfaceThreadItIsAPlainSend) {
    Receiver window;
    TovPostMessage(window.GetSafeHwnd(), WM_TOV_PROPERTIES, 1);
    LRESULT result = 0;
    EXPECT_EQ(SendText(window.GetSafeHwnd(), 41, "now", 0, &result), 1);
    EXPECT_EQ(result, 42);
    EXPECT_THAT(window.log, ElementsAre("now"));
    EXPECT_EQ(TovSendMessageTimeout(window.GetSafeHwnd(), WM_TOV_PROPERTIES, 7, 0, 0, &result), 1);
    EXPECT_EQ(SendText({}, 1, "nobody", forever, &result), 0);
    EXPECT_EQ(result, 0);
    TovDispatchPosts();
    EXPECT_THAT(window.log, ElementsAre("now", "7", "1"));
}

TEST(SendTimeout, WhatIsNotAnsweredInTimeOrUntilAStopIsTakenBack) {
    for (bool const stops : {false, true}) {
        Receiver window;
        std::stop_source stop;
        std::thread sender([&, handle = window.GetSafeHwnd()] {
            TovPostMessage(handle, WM_TOV_PROPERTIES, 1);
            auto const begin = std::chrono::steady_clock::now();
            LRESULT result = 5;
            EXPECT_EQ(SendText(handle, 1, "late", stops ? forever : 30, &result, stop.get_token()), 0);
            EXPECT_TRUE(stops || std::chrono::steady_clock::now() - begin >= 30ms);
            EXPECT_EQ(result, 0);
            EXPECT_EQ(SendText(handle, 1, "again", stops ? forever : 0, nullptr, stop.get_token()), 0);
            TovPostMessage(handle, WM_TOV_PROPERTIES, 2);
        });
        std::this_thread::sleep_for(10ms);
        if (stops) stop.request_stop();
        sender.join();
        EXPECT_EQ(TovDispatchPosts(), 2u);
        EXPECT_THAT(window.log, ElementsAre("1", "2"));
    }
}

TEST(SendTimeout, WhatIsBeingAnsweredKeepsItsTextWhenTheSenderIsGone) {
    Receiver window;
    std::atomic<bool> gone = false;
    window.answer = [&gone] {
        while (!gone)
            std::this_thread::yield();
        return 1;
    };
    std::string const text(1000, 't');
    std::thread other([&, handle = window.GetSafeHwnd()] {
        EXPECT_EQ(SendText(handle, 1, text, 20), 0);
        gone = true;
    });
    window.DispatchUntil(gone);
    other.join();
    TovDispatchPosts();
    EXPECT_TRUE(window.log.empty() || window.log == std::vector<std::string>{text});
}

TEST(SendTimeout, AWindowThatDiesOrThrowsEndsTheWait) {
    for (bool const throws : {false, true}) {
        Receiver window;
        Receiver other;
        window.answer = [&]() -> LRESULT { throw std::runtime_error("no answer"); };
        std::thread sender([handle = window.GetSafeHwnd()] {
            LRESULT result = 1;
            EXPECT_EQ(SendText(handle, 1, "to the dead", forever, &result), 0);
            EXPECT_EQ(result, 0);
        });
        EXPECT_TRUE(TovWaitForPosts(forever));
        if (throws) {
            EXPECT_THROW(TovDispatchPosts(), std::runtime_error);
        } else {
            window.DestroyWindow();
            EXPECT_EQ(TovDispatchPosts(), 0u);
        }
        sender.join();
    }
}

TEST(SendTimeout, ManySendersEachWaitTheirTurnAndGetTheirAnswer) {
    Receiver window;
    std::atomic<int> running = 4;
    std::atomic<bool> done = false;
    std::vector<std::jthread> threads;
    std::string const tail(100, 'x');  // the text is too long to stand in the object itself
    for (WPARAM t = 0; t < 4; ++t) {
        threads.emplace_back([&, t, handle = window.GetSafeHwnd()] {
            for (WPARAM i = t * 1000; i < t * 1000 + 500; ++i) {
                LRESULT result = 0;
                unsigned const patience = i % 3 == 0 ? 0 : forever;
                TovPostMessage(handle, WM_TOV_PROPERTIES, i);
                bool const isAnswered = SendText(handle, i, std::to_string(i) + tail, patience, &result) != 0;
                EXPECT_EQ(result, isAnswered ? static_cast<LRESULT>(i + 1) : 0);
                EXPECT_TRUE(isAnswered || patience == 0);
            }
            if (--running == 0) done = true;
        });
    }
    window.DispatchUntil(done);
    TovDispatchPosts();
    unsigned long last[4] = {0, 1000, 2000, 3000};
    for (std::string const& entry : window.log) {
        unsigned long const number = std::stoul(entry);
        bool const isSent = entry.ends_with(tail);
        EXPECT_EQ(number, isSent ? last[number / 1000] - 1 : last[number / 1000]++)
            << "behind the post before it";
    }
    EXPECT_GE(window.log.size(), 4u * 833);
}

}  // namespace
}  // namespace tov
