#include <tov310/messages.h>
#include <tov310/window.h>

#include "support/faults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <random>
#include <set>
#include <thread>
#include <vector>

namespace tov {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// Notes what it is told in one list for all windows and lets a test answer.
class Recorder : public CTovMessageWindow {
 public:
    explicit Recorder(std::vector<WPARAM>& log) : m_log(log) { EXPECT_EQ(Create(), 1); }
    ~Recorder() override { TovDispatchPosts(); }

    HWND handle() const { return GetSafeHwnd(); }
    std::function<LRESULT(WPARAM)> answer;

    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        if (message != WM_TOV_PROPERTIES) return CTovMessageWindow::WindowProc(message, wParam, lParam);
        m_log.push_back(wParam);
        return answer ? answer(wParam) : static_cast<LRESULT>(wParam) + lParam;
    }

 private:
    std::vector<WPARAM>& m_log;
};

int Post(HWND window, WPARAM what) {
    return TovPostMessage(window, WM_TOV_PROPERTIES, what);
}

LRESULT Send(HWND window, WPARAM what, LPARAM more = 0) {
    return TovSendMessage(window, WM_TOV_PROPERTIES, what, more);
}

TEST(Window, IsBornAndDiesUnderAHandle) {
    CTovMessageWindow window;
    EXPECT_FALSE(window.GetSafeHwnd());
    EXPECT_EQ(window.DestroyWindow(), 0);
    EXPECT_EQ(window.Create(), 1);
    EXPECT_EQ(window.Create(), 0) << "it has a handle already";
    HWND const first = window.GetSafeHwnd();
    EXPECT_TRUE(first);
    EXPECT_EQ(IsWindow(first), 1);
    EXPECT_EQ(CWnd::FromHandlePermanent(first), &window);
    EXPECT_EQ(window.DestroyWindow(), 1);
    EXPECT_EQ(window.DestroyWindow(), 0);
    EXPECT_FALSE(window.GetSafeHwnd());
    EXPECT_EQ(IsWindow(first), 0);
    EXPECT_EQ(window.Create(), 1);
    EXPECT_NE(window.GetSafeHwnd(), first) << "born again under a new handle";
}

TEST(Window, HandlesAreNeverUsedTwice) {
    std::set<HWND> seen;
    std::vector<std::unique_ptr<CTovMessageWindow>> living;
    std::mt19937 random(310);
    for (int birth = 0; birth < 50'000; ++birth) {
        auto window = std::make_unique<CTovMessageWindow>();
        ASSERT_EQ(window->Create(), 1);
        ASSERT_TRUE(seen.insert(window->GetSafeHwnd()).second);
        living.push_back(std::move(window));
        while (!living.empty() && random() % 100 < 49) {
            std::swap(living[random() % living.size()], living.back());
            living.pop_back();
        }
    }
    std::set<HWND> alive;
    for (auto const& window : living) {
        EXPECT_EQ(CWnd::FromHandlePermanent(window->GetSafeHwnd()), window.get());
        alive.insert(window->GetSafeHwnd());
    }
    for (HWND const handle : seen)
        ASSERT_EQ(IsWindow(handle), alive.contains(handle));
}

TEST(Window, DeadAndMadeUpHandlesAreHarmless) {
    HWND dead;
    std::vector<WPARAM> log;
    {
        Recorder const window(log);
        dead = window.handle();
    }
    Recorder const another(log);
    ASSERT_NE(another.handle(), dead);
    for (HWND const handle : {HWND{}, dead, HWND{1}, HWND{0xFFFFFFFF}, HWND{~std::uint64_t{0}},
                              HWND{another.handle().id + 1}, HWND{another.handle().id + (1ULL << 32)}}) {
        EXPECT_EQ(IsWindow(handle), 0) << handle.id;
        EXPECT_EQ(CWnd::FromHandlePermanent(handle), nullptr);
        EXPECT_EQ(Send(handle, 1), 0);
        EXPECT_EQ(Post(handle, 1), 0);
    }
    EXPECT_EQ(TovDispatchPosts(), 0u);
    EXPECT_TRUE(log.empty());
}

TEST(Window, ASendIsAnsweredAtOnceAndAPostInItsTurn) {
    std::vector<WPARAM> log;
    Recorder const a(log);
    Recorder const b(log);
    EXPECT_EQ(Post(a.handle(), 1), 1);
    EXPECT_EQ(Post(b.handle(), 2), 1);
    EXPECT_EQ(Post(a.handle(), 3), 1);
    EXPECT_EQ(Send(b.handle(), 4, -10), -6);
    EXPECT_EQ(TovSendMessage(b.handle(), WM_TOV_EDIT_DELETE), 0) << "unknown to the class";
    EXPECT_EQ(TovDispatchPosts(), 3u);
    EXPECT_THAT(log, ElementsAre(4, 1, 2, 3));
    EXPECT_EQ(TovDispatchPosts(), 0u);
}

TEST(Window, ParametersArriveAsWideAsPointers) {
    struct Wide : CTovMessageWindow {
        WPARAM wParam = 0;
        LPARAM lParam = 0;
        LRESULT WindowProc(unsigned, WPARAM w, LPARAM l) override {
            wParam = w;
            lParam = l;
            return l;
        }
    } window;
    window.Create();
    EXPECT_EQ(TovSendMessage(window.GetSafeHwnd(), 1, ~WPARAM{0}, INTPTR_MIN), INTPTR_MIN);
    EXPECT_EQ(window.wParam, ~WPARAM{0});
    TovPostMessage(window.GetSafeHwnd(), 1, WPARAM{1} << 63, INTPTR_MAX);
    EXPECT_EQ(TovDispatchPosts(), 1u);
    EXPECT_EQ(window.wParam, WPARAM{1} << 63);
    EXPECT_EQ(window.lParam, INTPTR_MAX);
}

TEST(Window, PostsToTheDeadAreDropped) {
    std::vector<WPARAM> log;
    Recorder const survivor(log);
    auto doomed = std::make_unique<Recorder>(log);
    Post(doomed->handle(), 1);
    Post(survivor.handle(), 2);
    Post(doomed->handle(), 3);
    doomed->DestroyWindow();
    EXPECT_EQ(doomed->Create(), 1) << "born again; the old posts are not for this one";
    EXPECT_EQ(TovDispatchPosts(), 1u);
    EXPECT_THAT(log, ElementsAre(2));
}

TEST(Window, AWindowMayEndAnotherOrItselfWhileItAnswers) {
    std::vector<WPARAM> log;
    auto first = std::make_unique<Recorder>(log);
    auto second = std::make_unique<Recorder>(log);
    first->answer = [&](WPARAM) {
        second->DestroyWindow();
        first->DestroyWindow();
        return 7;
    };
    Post(first->handle(), 1);
    Post(second->handle(), 2);
    Post(first->handle(), 3);
    EXPECT_EQ(TovDispatchPosts(), 1u);
    EXPECT_THAT(log, ElementsAre(1));
    EXPECT_EQ(first->Create(), 1);
    EXPECT_EQ(Send(first->handle(), 4), 7);
    EXPECT_FALSE(first->GetSafeHwnd());

    auto* const selfish = new Recorder(log);  // deletes itself below
    selfish->answer = [selfish](WPARAM what) {
        if (what == 5) delete selfish;
        return 0;
    };
    HWND const handle = selfish->handle();
    Send(handle, 5);
    EXPECT_EQ(IsWindow(handle), 0);
}

TEST(Window, PostingWhileAPostIsDeliveredDoesNotHoldItUp) {
    std::vector<WPARAM> log;
    Recorder window(log);
    window.answer = [&](WPARAM what) { return Post(window.handle(), what + 1); };
    Post(window.handle(), 1);
    for (WPARAM turn = 1; turn <= 3; ++turn) {
        EXPECT_EQ(TovDispatchPosts(), 1u);
        EXPECT_EQ(log.back(), turn);
    }
    window.answer = nullptr;
    EXPECT_EQ(TovDispatchPosts(), 1u);
}

TEST(Window, ANestedDispatchKeepsTheOrder) {
    std::vector<WPARAM> log;
    Recorder window(log);
    unsigned nested = 0;
    window.answer = [&](WPARAM what) {
        if (what == 2) {
            Post(window.handle(), 4);
            nested = TovDispatchPosts();
            Post(window.handle(), 5);
        }
        return 0;
    };
    for (WPARAM const what : {1u, 2u, 3u})
        Post(window.handle(), what);
    EXPECT_EQ(TovDispatchPosts(), 2u) << "the nested dispatch took two of the four";
    EXPECT_EQ(nested, 2u);
    EXPECT_THAT(log, ElementsAre(1, 2, 3, 4));
    EXPECT_EQ(TovDispatchPosts(), 1u);
    EXPECT_EQ(log.back(), 5u);
}

TEST(Window, PostsFromFourThreadsArriveEachInItsOrder) {
    constexpr WPARAM each = 5000;
    std::vector<WPARAM> log;
    Recorder const window(log);
    std::vector<std::thread> threads;
    for (WPARAM t = 0; t < 4; ++t) {
        threads.emplace_back([t, handle = window.handle()] {
            for (WPARAM i = 0; i < each; ++i)
                EXPECT_EQ(Post(handle, t << 32 | i), 1);
        });
    }
    while (log.size() < 4 * each && TovWaitForPosts(10'000))
        TovDispatchPosts();
    for (std::thread& thread : threads)
        thread.join();
    ASSERT_EQ(log.size(), 4 * each);
    std::vector<WPARAM> next(4);
    for (WPARAM const what : log)
        ASSERT_EQ(what & 0xFFFFFFFF, next[what >> 32]++);
}

TEST(Window, HandlesMayBeAskedWhileOthersAreBornAndDie) {
    std::vector<WPARAM> log;
    Recorder const lasting(log);
    std::atomic<bool> stop = false;
    std::atomic<std::uint64_t> latest = 0;
    std::thread other([&, handle = lasting.handle()] {
        while (!stop) {
            ASSERT_EQ(IsWindow(handle), 1);
            IsWindow(HWND{latest.load()});
            Post(HWND{latest.load()}, 1);
        }
    });
    for (int i = 0; i < 3000; ++i) {
        std::vector<WPARAM> own;
        Recorder const passing(own);
        latest = passing.handle().id;
        TovDispatchPosts();
    }
    stop = true;
    other.join();
    TovDispatchPosts();
    EXPECT_TRUE(log.empty());
}

TEST(Window, OnlyTheUserInterfaceThreadSendsMakesAndDispatches) {
    std::vector<WPARAM> log;
    std::thread([] { EXPECT_TRUE(TovIsUserInterfaceThread()) << "there is no window yet"; }).join();
    {
        Recorder const window(log);
        EXPECT_TRUE(TovIsUserInterfaceThread());
        Post(window.handle(), 1);
        std::thread([handle = window.handle()] {
            EXPECT_FALSE(TovIsUserInterfaceThread());
            EXPECT_EQ(IsWindow(handle), 1);
            EXPECT_EQ(Send(handle, 9), 0);
            EXPECT_EQ(Send(HWND{}, 9), 0) << "nobody to send to is no fault";
            EXPECT_EQ(TovDispatchPosts(), 0u);
            CTovMessageWindow mine;
            EXPECT_EQ(mine.Create(), 0);
        }).join();
        EXPECT_THAT(test::TakeFaults(),
                    ElementsAre(HasSubstr("sent"), HasSubstr("dispatched"), HasSubstr("made")));
        EXPECT_TRUE(log.empty());
        EXPECT_EQ(TovDispatchPosts(), 1u);
    }
    std::thread([&log] {
        Recorder const window(log);
        EXPECT_TRUE(TovIsUserInterfaceThread()) << "all windows had died";
        EXPECT_EQ(Send(window.handle(), 2, 3), 5);
    }).join();
}

TEST(Window, WaitingEndsWithAPostOrTheTime) {
    std::vector<WPARAM> log;
    Recorder const window(log);
    EXPECT_FALSE(TovWaitForPosts(0));
    auto const begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(TovWaitForPosts(30));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(30));
    std::thread other([handle = window.handle()] { Post(handle, 1); });
    EXPECT_TRUE(TovWaitForPosts(60'000));
    EXPECT_TRUE(TovWaitForPosts(0)) << "waiting takes nothing out";
    other.join();
    TovDispatchPosts();
    EXPECT_FALSE(TovWaitForPosts(0));
}

std::atomic<int> wakes = 0;

class Waker : public testing::Test {
 protected:
    void SetUp() override {
        wakes = 0;
        TovSetPostWaker([] { ++wakes; });
    }
    void TearDown() override { TovSetPostWaker(nullptr); }
    std::vector<WPARAM> log;
    Recorder window{log};
};

TEST_F(Waker, TheFirstPostOfAnEmptyQueueWakes) {
    Post(window.handle(), 1);
    Post(window.handle(), 2);
    EXPECT_EQ(wakes, 1);
    TovDispatchPosts();
    EXPECT_EQ(wakes, 1);
    Post(window.handle(), 3);
    EXPECT_EQ(wakes, 2);
    EXPECT_EQ(Post(HWND{}, 4), 0);
    EXPECT_EQ(wakes, 2) << "nothing was queued";
}

// A post made while others are waiting finds the queue filled, so the dispatch that leaves it must wake.
TEST_F(Waker, AHostThatDispatchesOnlyWhenWokenGetsEverything) {
    window.answer = [this](WPARAM what) { return what < 10 ? Post(window.handle(), what + 10) : 0; };
    Post(window.handle(), 1);
    Post(window.handle(), 2);
    for (int turn = 0; turn < 10 && wakes.exchange(0) != 0; ++turn)
        TovDispatchPosts();
    EXPECT_THAT(log, ElementsAre(1, 2, 11, 12));
}

TEST_F(Waker, AWakerThatComesLateIsCalledForWhatIsWaiting) {
    TovSetPostWaker(nullptr);
    Post(window.handle(), 1);
    EXPECT_EQ(wakes, 0);
    TovSetPostWaker([] { ++wakes; });
    EXPECT_EQ(wakes, 1);
}

TEST(RuntimeClass, KnowsItsBasesAndMakesObjects) {
    CTovMessageWindow const window;
    CRuntimeClass const* const own = window.GetRuntimeClass();
    EXPECT_STREQ(own->m_lpszClassName, "CTovMessageWindow");
    for (CRuntimeClass const* base : {&CTovMessageWindow::classCTovMessageWindow, &CWnd::classCWnd,
                                      &CCmdTarget::classCCmdTarget, &CObject::classCObject})
        EXPECT_TRUE(window.IsKindOf(base)) << base->m_lpszClassName;
    EXPECT_FALSE(CWnd().IsKindOf(own));
    EXPECT_FALSE(window.IsKindOf(nullptr));
    auto const made = own->CreateObject();
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->GetRuntimeClass(), own);
    EXPECT_EQ(CWnd::classCWnd.CreateObject(), nullptr);
}

}  // namespace
}  // namespace tov
