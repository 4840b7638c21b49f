// Hooks that come, go, pass on and end windows in the middle of messages, against a model of who must be
// asked.
#include "support/fake_window.h"

#include <tov310/hooks.h>

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <random>

namespace tov {
namespace {

using test::FakeDesk;
using test::FakeWindow;

struct NotingHook : CTovSubclassWnd {
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        return work ? work(*this, message, wParam, lParam) : PassOn(message, wParam, lParam);
    }
    LRESULT PassOn(unsigned message, WPARAM wParam, LPARAM lParam) {
        return CTovSubclassWnd::WindowProc(message, wParam, lParam);
    }
    using CTovSubclassWnd::Default;
    void OnDestroyWindow() override {
        if (death) {
            death();
        } else {
            CTovSubclassWnd::OnDestroyWindow();
        }
    }
    std::function<LRESULT(NotingHook&, unsigned, WPARAM, LPARAM)> work;
    std::function<void()> death;
};

TEST(Hooks, AnswerForTheirWindowAndAreFoundByIt) {
    FakeDesk desk;
    FakeWindow window(desk);
    HWND const handle = window.GetSafeHwnd();
    NotingHook hooks[2];
    for (NotingHook& hook : hooks) {
        hook.work = [](NotingHook& self, unsigned message, WPARAM w, LPARAM l) {
            return self.PassOn(message, w, l) + 1;
        };
        EXPECT_EQ(hook.HookWindow(handle), 1);
        EXPECT_EQ(CTovSubclassWnd::StaticMapHwndToSubclassWnd().at(handle), &hook);
    }
    window.dialogCode = 100;
    EXPECT_EQ(TovSendMessage(handle, WM_GETDLGCODE), 102);
    for (NotingHook& hook : hooks) {
        EXPECT_EQ(CTovSubclassWnd::IsWindowHooked(handle), 1);
        EXPECT_EQ(hook.UnhookWindow(), 1);
    }
    EXPECT_EQ(CTovSubclassWnd::IsWindowHooked(handle), 0);
    EXPECT_EQ(NotingHook().HookWindow(HWND{}), 0);
}

// A default handler passes on what was sent, also after other messages were sent within it.
TEST(Hooks, DefaultPassesOnTheMessageOfItsOwnCall) {
    FakeDesk desk;
    FakeWindow window(desk), other(desk);
    NotingHook hook, onOther;
    hook.HookWindow(window.GetSafeHwnd());
    onOther.HookWindow(other.GetSafeHwnd());
    hook.work = [&](NotingHook& self, unsigned, WPARAM, LPARAM) {
        TovSendMessage(other.GetSafeHwnd(), WM_PAINT);
        return self.Default();
    };
    window.dialogCode = 5;
    EXPECT_EQ(TovSendMessage(window.GetSafeHwnd(), WM_GETDLGCODE, 1, 2), 5);
    EXPECT_THAT(window.log, testing::ElementsAre(WM_GETDLGCODE));
    EXPECT_THAT(other.log, testing::ElementsAre(WM_PAINT));
}

// A window that dies is told while all is whole, the outer before the inner; then its hooks are told, which
// may delete themselves or stay, and none of them is left on it.
TEST(Hooks, HearOfTheDeathOfTheWindow) {
    for (bool const withMessage : {true, false}) {
        FakeDesk desk;
        auto parent = std::make_unique<FakeWindow>(desk);
        FakeWindow child(desk, parent.get());
        HWND const handle = parent->GetSafeHwnd();
        std::string order;
        NotingHook stays, childHook;
        auto* const deletesItself = std::make_unique<NotingHook>().release();
        stays.HookWindow(handle);
        deletesItself->HookWindow(handle);
        childHook.HookWindow(child.GetSafeHwnd());
        stays.death = [&] { order += "s"; };
        deletesItself->death = [&, deletesItself] {
            order += "d";
            delete deletesItself;
        };
        childHook.work = [&](NotingHook& self, unsigned message, WPARAM w, LPARAM l) {
            if (message == WM_DESTROY) order += IsWindow(handle) ? "c" : "!";
            return self.PassOn(message, w, l);
        };
        EXPECT_EQ(withMessage ? parent->DestroyWindow() : 1, 1);
        parent.reset();
        EXPECT_EQ(order, withMessage ? "dsc" : "ds");
        EXPECT_EQ(stays.IsHooked(), 0);
        EXPECT_EQ(childHook.IsHooked(), withMessage ? 0 : 1);
        EXPECT_EQ(CTovSubclassWnd::IsWindowHooked(handle), 0);
    }
}

// Every hook that is asked does something at random before and after it passes on: hooks, unhooks or deletes
// some hook, destroys or makes a window, sends another message. Whoever passes on goes on to the newest hook
// that is older on the window and still there, at last to the window itself, as long as it lives.
class HookStorm {
    template <class Container>
    auto& Any(Container& container) {
        return container[m_random() % std::size(container)];
    }

 public:
    explicit HookStorm(unsigned seed) : m_random(seed) {
        for (auto& window : m_windows)
            window = std::make_unique<Window>(*this);
    }

    void Run(int steps) {
        while (m_steps < steps) {
            Put(Any(m_hooks), Any(m_windows)->GetSafeHwnd());
            Send(Any(m_windows)->GetSafeHwnd());
            for (auto& window : m_windows) {
                if (!window->GetSafeHwnd()) window = std::make_unique<Window>(*this);
            }
        }
        EXPECT_GT(m_passedAfterLeaving, 0);
    }

 private:
    struct Window : CTovMessageWindow {
        explicit Window(HookStorm& storm) : m_storm(storm) { Create(); }
        LRESULT WindowProc(unsigned message, WPARAM, LPARAM) override {
            if (message == WM_PAINT) m_storm.Reached(0);
            return 0;
        }
        HookStorm& m_storm;
    };
    struct Hook : CTovSubclassWnd {
        explicit Hook(HookStorm& storm) : m_storm(storm) {}
        LRESULT WindowProc(unsigned message, WPARAM w, LPARAM l) override {
            if (message != WM_PAINT) return CTovSubclassWnd::WindowProc(message, w, l);
            HookStorm& storm = m_storm;
            HWND const window = storm.m_path.back().window;
            long const age = storm.m_path.back().expected;
            ++m_running;
            if (!storm.Work(*this)) return 0;
            if (storm.m_random() % 8 == 0) {
                --m_running;
                return 0;
            }
            if (GetHookedWindow() != window) ++storm.m_passedAfterLeaving;
            storm.Expect(window, age);
            LRESULT const answer = CTovSubclassWnd::WindowProc(message, w, l);
            storm.Arrived();
            if (storm.Work(*this)) --m_running;
            return answer;
        }
        HookStorm& m_storm;
        int m_running = 0;
    };
    struct Known {
        std::unique_ptr<Hook> hook;
        HWND window;
        long age = 0;
    };
    struct Way {
        HWND window;
        long expected;  // the age of the hook that must be asked next, 0 for the window, -1 for nobody
        bool reached = false;
    };

    void Expect(HWND window, long olderThan) {
        long newest = IsWindow(window) ? 0 : -1;
        for (Known const& known : m_hooks) {
            if (IsWindow(window) && known.window == window && known.age < olderThan)
                newest = std::max(newest, known.age);
        }
        m_path.push_back({window, newest});
    }
    void Arrived() {
        EXPECT_EQ(m_path.back().reached, m_path.back().expected >= 0);
        m_path.pop_back();
    }
    void Reached(long age) {
        EXPECT_EQ(age, m_path.back().expected);
        m_path.back().reached = true;
    }
    void Send(HWND window) {
        if (m_path.size() > 12) return;
        Expect(window, m_clock + 1);
        TovSendMessage(window, WM_PAINT);
        Arrived();
    }

    void Put(Known& known, HWND window) {
        bool const isThere = window && known.window == window;
        bool const isPut = !known.window && IsWindow(window);
        EXPECT_EQ(known.hook->HookWindow(window), isThere || isPut);
        if (isPut) known.age = ++m_clock;
        if (isPut) known.window = window;
    }

    // Answers whether the hook that works is still there.
    bool Work(Hook& self) {
        auto const isSelf = [&self](Known const& known) { return known.hook.get() == &self; };
        Known const* const own = &*std::ranges::find_if(m_hooks, isSelf);
        if (!m_path.back().reached) Reached(own->age);
        if (++m_steps > 1'500'000) return true;
        Known& some = Any(m_hooks);
        switch (m_random() % 12) {
            case 0:
            case 1:
                Put(some, Any(m_windows)->GetSafeHwnd());
                break;
            case 2:
                EXPECT_EQ(some.hook->UnhookWindow(), some.window ? 1 : 0);
                some.window = {};
                break;
            case 3:
                Send(Any(m_windows)->GetSafeHwnd());
                break;
            case 4: {
                if (m_random() % 4 != 0) break;
                HWND const dying = Any(m_windows)->GetSafeHwnd();
                for (auto& window : m_windows) {
                    if (window->GetSafeHwnd() == dying) window->DestroyWindow();
                }
                for (Known& known : m_hooks) {
                    if (known.window == dying) known.window = {};
                }
                break;
            }
            case 5: {
                bool const isOwn = isSelf(some);
                if (some.hook->m_running > (isOwn ? 1 : 0)) break;  // as any object in the middle of a call
                some = {};
                some.hook = std::make_unique<Hook>(*this);
                return !isOwn;
            }
            default:
                break;
        }
        return true;
    }

    std::mt19937 m_random;
    long m_clock = 0;
    int m_steps = 0;
    int m_passedAfterLeaving = 0;
    std::vector<Way> m_path;
    std::unique_ptr<Window> m_windows[3];
    std::vector<Known> m_hooks = [this] {
        std::vector<Known> hooks(8);
        for (Known& known : hooks)
            known.hook = std::make_unique<Hook>(*this);
        return hooks;
    }();
};

TEST(Hooks, ComeAndGoInsideEachOthersCalls) {
    HookStorm(310).Run(1'000'000);
}

}  // namespace
}  // namespace tov
