#include <tov310/messages.h>
#include <tov310/pump.h>
#include <tov310/sync_event.h>
#include <tov310/window.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace tov {
namespace {

TEST(SyncEvent, LetsOneWaiterThroughForEveryTimeItIsSet) {
    CEvent event;
    EXPECT_EQ(event.Lock(0), 0);
    EXPECT_EQ(event.Lock(5), 0);
    std::atomic<int> passed{0};
    std::vector<std::jthread> waiters;
    for (int i = 0; i < 4; ++i)
        waiters.emplace_back([&] { passed += event.Lock(); });
    for (int i = 1; i <= 4; ++i) {
        EXPECT_EQ(event.SetEvent(), 1);
        while (passed < i)
            std::this_thread::yield();
        EXPECT_EQ(passed, i);
    }
    event.SetEvent();
    event.ResetEvent();
    EXPECT_EQ(event.Lock(0), 0);
    CEvent byHand(1, 1);
    EXPECT_EQ(byHand.Lock() + byHand.Lock(0), 2);
    byHand.ResetEvent();
    EXPECT_EQ(byHand.Lock(0), 0);
}

TEST(PostHold, KeepsPostsAndWakesTheLoopAtItsEnd) {
    static int woken = 0;
    CTovMessageWindow window;
    ASSERT_EQ(window.Create(), 1);
    TovSetPostWaker([] { ++woken; });
    {
        CTovPostHold const outer;
        {
            CTovPostHold const inner;
            TovPostMessage(window.GetSafeHwnd(), WM_TOV_PROPERTIES);
        }
        EXPECT_EQ(CTovPostHold::IsHeld(), 1);
        EXPECT_EQ(TovDispatchPosts(), 0u);
        woken = 0;
    }
    EXPECT_EQ(woken, 1);
    EXPECT_EQ(TovDispatchPosts(), 1u);
    TovSetPostWaker(nullptr);
}

}  // namespace
}  // namespace tov
