#include <tov310/messages.h>
#include <tov310/window.h>

#include "support/faults.h"

#include <gmock/gmock.h>

#include <deque>
#include <functional>
#include <map>
#include <random>
#include <thread>

namespace tov {
namespace {

// Notes what it is told, and lets a test do something before it answers.
struct Recorder : CTovMessageWindow {
    Recorder() { EXPECT_EQ(Create(), 1); }
    ~Recorder() override { TovDispatchPosts(); }
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        if (message != WM_TOV_PROPERTIES) return CTovMessageWindow::WindowProc(message, wParam, lParam);
        LRESULT const sum = static_cast<LRESULT>(wParam) + lParam;
        log.push_back(sum);
        if (answer) answer(wParam);
        return sum;
    }
    std::vector<LRESULT> log;
    std::function<void(WPARAM)> answer;
};

int Post(HWND window, WPARAM what, LPARAM more = 0) {
    return TovPostMessage(window, WM_TOV_PROPERTIES, what, more);
}

LRESULT Send(HWND window, WPARAM what, LPARAM more = 0) {
    return TovSendMessage(window, WM_TOV_PROPERTIES, what, more);
}

std::atomic<int> wakes = 0;

class Posts : public testing::Test {
 protected:
    Posts() {
        wakes = 0;
        TovSetPostWaker([] { ++wakes; });
    }
    ~Posts() override { TovSetPostWaker(nullptr); }
    Recorder a;
    Recorder b;
};

TEST(Window, LivesUnderAHandleThatIsNeverUsedTwice) {
    std::map<HWND, CWnd*> seen = {{HWND{}, nullptr}, {HWND{0xFFFFFFFF}, nullptr}};
    std::vector<std::unique_ptr<Recorder>> living;
    std::mt19937 random(310);
    for (int birth = 0; birth < 50'000; ++birth) {
        Recorder& window = *living.emplace_back(std::make_unique<Recorder>());
        ASSERT_EQ(window.Create(), 0) << "it has a handle already";
        ASSERT_TRUE(seen.emplace(window.GetSafeHwnd(), &window).second);
        while (!living.empty() && random() % 100 < 49) {
            std::swap(living[random() % living.size()], living.back());
            seen[living.back()->GetSafeHwnd()] = nullptr;
            if (random() % 2 == 0) living.back()->DestroyWindow();
            int const lives = living.back()->GetSafeHwnd() ? 1 : 0;
            ASSERT_EQ(living.back()->DestroyWindow(), lives);
            living.pop_back();
        }
    }
    HWND const last = seen.rbegin()->first;
    for (std::uint64_t const beyond : {std::uint64_t{1}, std::uint64_t{1} << 32, ~last.id})
        seen.emplace(HWND{last.id + beyond}, nullptr);
    for (auto const& [handle, window] : seen) {
        ASSERT_EQ(CWnd::FromHandlePermanent(handle), window) << handle.id;
        ASSERT_EQ(IsWindow(handle), window != nullptr);
        ASSERT_EQ(Send(handle, 7), window != nullptr ? 7 : 0);
        ASSERT_EQ(Post(handle, 7), window != nullptr);
    }
    EXPECT_EQ(TovDispatchPosts(), living.size());
}

TEST_F(Posts, WaitForTheirTurnAndASendDoesNot) {
    EXPECT_EQ(Post(a.GetSafeHwnd(), 1, INTPTR_MAX - 1), 1);
    EXPECT_EQ(Send(a.GetSafeHwnd(), 4, INTPTR_MIN), INTPTR_MIN + 4);
    EXPECT_EQ(TovSendMessage(a.GetSafeHwnd(), WM_TOV_EDIT_DELETE), 0) << "unknown to the class";
    EXPECT_EQ(TovDispatchPosts(), 1u);
    EXPECT_THAT(a.log, testing::ElementsAre(INTPTR_MIN + 4, INTPTR_MAX));

    auto selfish = std::make_unique<Recorder>();
    selfish->answer = [&](WPARAM) { selfish.reset(); };
    EXPECT_EQ(Send(selfish->GetSafeHwnd(), 5), 5) << "it may delete itself while it answers";
}

// Windows that post, dispatch, die and are born again while they answer, against a plain queue. A host that
// dispatches only when it is woken must get everything.
TEST_F(Posts, ArriveOnceAndInOrderWhateverTheWindowsDo) {
    std::deque<std::pair<HWND, WPARAM>> waiting;
    WPARAM posted = 0;
    WPARAM last = 0;  // that the innermost dispatch may deliver
    unsigned dispatched = 0;
    std::mt19937 random(310);
    auto const forgetTheDead = [&] {
        while (!waiting.empty() && !IsWindow(waiting.front().first))
            waiting.pop_front();
    };
    auto const act = [&] {
        Recorder& window = random() % 2 == 0 ? a : b;
        auto const deed = random() % 8;
        if (deed == 0) window.DestroyWindow();
        if (deed == 1 || deed == 2) window.Create();
        if (deed == 3) {
            WPARAM const outer = std::exchange(last, posted);
            wakes = 0;
            dispatched += TovDispatchPosts();
            forgetTheDead();
            EXPECT_TRUE(waiting.empty() || waiting.front().second > last);
            last = outer;
        }
        if (deed > 3 && Post(window.GetSafeHwnd(), posted + 1))
            waiting.emplace_back(window.GetSafeHwnd(), ++posted);
    };
    for (Recorder* const window : {&a, &b}) {
        window->answer = [&, window](WPARAM number) {
            forgetTheDead();
            ASSERT_FALSE(waiting.empty());
            EXPECT_EQ(waiting.front(), std::pair(window->GetSafeHwnd(), number));
            EXPECT_LE(number, last);
            waiting.pop_front();
            act();
        };
    }
    for (int turn = 0; turn < 100'000 && !HasFailure(); ++turn) {
        act();
        EXPECT_TRUE(waiting.empty() || wakes > 0);
    }
    EXPECT_EQ(dispatched, a.log.size() + b.log.size());
    EXPECT_GT(dispatched, 20'000u);
    a.answer = b.answer = nullptr;
}

TEST_F(Posts, WakeWhenTheyAreTheFirstAndEndAWait) {
    for (int round = 1; round < 3; ++round) {
        Post(a.GetSafeHwnd(), 1);
        Post(a.GetSafeHwnd(), 2);
        EXPECT_EQ(wakes, round);
        TovDispatchPosts();
    }
    TovSetPostWaker(nullptr);
    auto const begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(TovWaitForPosts(30));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(30));
    std::jthread const other([handle = a.GetSafeHwnd()] { Post(handle, 1); });
    EXPECT_TRUE(TovWaitForPosts(60'000) && TovWaitForPosts(0)) << "waiting takes nothing out";
    EXPECT_EQ(wakes, 2);
    TovSetPostWaker([] { ++wakes; });
    EXPECT_EQ(wakes, 3) << "a waker that comes late hears of what is waiting";
}

TEST_F(Posts, OfFourThreadsArriveEachInItsOrderWhileWindowsAreBornAndDie) {
    constexpr WPARAM each = 5000;
    std::atomic<std::uint64_t> latest = 0;
    std::vector<std::jthread> threads;
    for (WPARAM t = 0; t < 4; ++t) {
        threads.emplace_back([&, t, handle = a.GetSafeHwnd()] {
            for (WPARAM i = 0; i < each; ++i) {
                EXPECT_EQ(Post(handle, t << 32 | i), 1);
                Post(HWND{latest.load()}, 1);
            }
        });
    }
    while (a.log.size() < 4 * each && TovWaitForPosts(10'000)) {
        Recorder const passing;
        latest = passing.GetSafeHwnd().id;
        TovDispatchPosts();
    }
    ASSERT_EQ(a.log.size(), 4 * each);
    LRESULT next[4] = {};
    for (LRESULT const what : a.log)
        ASSERT_EQ(what & 0xFFFFFFFF, next[what >> 32]++);
}

TEST(Window, OnlyTheUserInterfaceThreadSendsMakesAndDispatches) {
    using testing::HasSubstr;
    std::jthread([] { EXPECT_TRUE(TovIsUserInterfaceThread()) << "there is no window yet"; }).join();
    {
        Recorder const window;
        Post(window.GetSafeHwnd(), 1);
        std::jthread([handle = window.GetSafeHwnd()] {
            EXPECT_FALSE(TovIsUserInterfaceThread());
            EXPECT_EQ(Send(handle, 9), 0);
            EXPECT_EQ(Send(HWND{}, 9), 0) << "nobody to send to is no fault";
            EXPECT_EQ(TovDispatchPosts(), 0u);
            EXPECT_EQ(CTovMessageWindow().Create(), 0);
        }).join();
        EXPECT_THAT(test::TakeFaults(),
                    testing::ElementsAre(HasSubstr("sent"), HasSubstr("dispatched"), HasSubstr("made")));
        EXPECT_TRUE(window.log.empty());
    }
    std::jthread([] { EXPECT_EQ(Send(Recorder().GetSafeHwnd(), 2, 3), 5) << "all windows had died"; }).join();
}

}  // namespace
}  // namespace tov
