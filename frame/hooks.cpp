#include <tov310/hooks.h>

#include "frame/hook_chain.h"

#include <tov310/messages.h>

#include "vesk/immortal.h"

#include <utility>

namespace tov {

// A hook at work. The calls that have not come back yet form a list, the innermost first; what a call goes on
// to is corrected while it runs, since hooks come and go meanwhile.
class TovHookCall {
 public:
    TovHookCall(CTovSubclassWnd& hook, CWnd* window)
        : m_hook(&hook), m_next(hook.m_next), m_window(window), m_outer(innermost) {
        innermost = this;
    }
    TovHookCall(TovHookCall const&) = delete;
    TovHookCall& operator=(TovHookCall const&) = delete;
    ~TovHookCall() { innermost = m_outer; }

    static TovHookCall const* Of(CTovSubclassWnd const& hook) {
        TovHookCall const* call = innermost;
        while (call != nullptr && call->m_hook != &hook)
            call = call->m_outer;
        return call;
    }

    static void PassBy(CTovSubclassWnd const& hook) {
        for (TovHookCall* call = innermost; call != nullptr; call = call->m_outer) {
            if (call->m_next == &hook) call->m_next = hook.m_next;
        }
    }

    static void Forget(CTovSubclassWnd const& hook) {
        for (TovHookCall* call = innermost; call != nullptr; call = call->m_outer) {
            if (call->m_hook == &hook) call->m_hook = nullptr;
        }
    }

    static void ForgetWindow(CWnd const& window) {
        for (TovHookCall* call = innermost; call != nullptr; call = call->m_outer) {
            if (call->m_window == &window) call->m_window = nullptr;
        }
    }

    CWnd* Window() const { return m_window; }  // null once it is dead
    CTovSubclassWnd* Next() const { return m_next; }

 private:
    static constinit inline TovHookCall* innermost = nullptr;  // of the user-interface thread

    CTovSubclassWnd* m_hook;  // null once it is deleted
    CTovSubclassWnd* m_next;
    CWnd* m_window;
    TovHookCall* m_outer;
};

namespace {

// The message that was sent last and is not answered yet; null for none.
constinit MSG const* lastSentMessage = nullptr;

class SentNow {
 public:
    explicit SentNow(MSG const& message) : m_before(std::exchange(lastSentMessage, &message)) {}
    SentNow(SentNow const&) = delete;
    SentNow& operator=(SentNow const&) = delete;
    ~SentNow() { lastSentMessage = m_before; }

 private:
    MSG const* const m_before;
};

std::map<HWND, CTovSubclassWnd*>& NewestHooks() {
    static Immortal<std::map<HWND, CTovSubclassWnd*>> hooks;
    return *hooks;
}

}  // namespace

CTovSubclassWnd::~CTovSubclassWnd() {
    UnhookWindow();
    TovHookCall::Forget(*this);
}

void CTovSubclassWnd::OnDestroyWindow() {
    UnhookWindow();
}

LRESULT CTovSubclassWnd::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) {
    TovHookCall const* const call = TovHookCall::Of(*this);
    CWnd* const window = call != nullptr ? call->Window() : CWnd::FromHandlePermanent(m_window);
    if (CTovSubclassWnd* const next = call != nullptr ? call->Next() : m_next) {
        TovHookCall const nextCall(*next, window);
        return next->WindowProc(message, wParam, lParam);
    }
    return window != nullptr ? window->WindowProc(message, wParam, lParam) : 0;
}

int CTovSubclassWnd::HookWindow(HWND window) {
    if (m_window) return m_window == window;
    CWnd* const target = TovIsUserInterfaceThread() ? CWnd::FromHandlePermanent(window) : nullptr;
    if (target == nullptr) return 0;
    NewestHooks()[window] = this;
    m_window = window;
    m_next = target->m_hook;
    target->m_hook = this;
    return 1;
}

int CTovSubclassWnd::HasHookThatRunsAfter(HWND window) {
    CWnd const* const target = CWnd::FromHandlePermanent(window);
    for (CTovSubclassWnd const* hook = target != nullptr ? target->m_hook : nullptr; hook != nullptr;
         hook = hook->m_next) {
        if (hook->m_runsAfter != 0) return 1;
    }
    return 0;
}

int CTovSubclassWnd::UnhookWindow() {
    if (!m_window) return 0;
    // The window lives: it takes its hooks off before it dies.
    CTovSubclassWnd** link = &CWnd::FromHandlePermanent(m_window)->m_hook;
    if (*link == this) {
        if (m_next != nullptr) {
            NewestHooks()[m_window] = m_next;
        } else {
            NewestHooks().erase(m_window);
        }
    }
    while (*link != this)
        link = &(*link)->m_next;
    *link = m_next;
    TovHookCall::PassBy(*this);
    m_window = {};
    m_next = nullptr;
    return 1;
}

int CTovSubclassWnd::IsWindowHooked(HWND window) {
    return NewestHooks().contains(window);
}

std::map<HWND, CTovSubclassWnd*> const& CTovSubclassWnd::StaticMapHwndToSubclassWnd() {
    return NewestHooks();
}

LRESULT CTovSubclassWnd::Default() {
    if (lastSentMessage == nullptr) return 0;
    MSG const message = *lastSentMessage;
    return CTovSubclassWnd::WindowProc(message.message, message.wParam, message.lParam);
}

LRESULT SendThroughHooks(CTovSubclassWnd& newest, CWnd& window, unsigned message, WPARAM wParam,
                         LPARAM lParam) {
    HWND const handle = window.GetSafeHwnd();
    MSG const sent{handle, message, wParam, lParam};
    SentNow const now(sent);
    TovHookCall const call(newest, &window);
    LRESULT const result = newest.WindowProc(message, wParam, lParam);
    if (message == WM_DESTROY) TellHooksOfDeath(handle);
    return result;
}

void ForgetWindowInCalls(CWnd const& window) {
    TovHookCall::ForgetWindow(window);
}

void TellHooksOfDeath(HWND window) {
    auto const newest = [window] {
        auto const found = NewestHooks().find(window);
        return found != NewestHooks().end() ? found->second : nullptr;
    };
    while (CTovSubclassWnd* const hook = newest()) {
        hook->OnDestroyWindow();
        if (newest() == hook) hook->UnhookWindow();
    }
}

}  // namespace tov
