#include <tov310/window.h>

#include "frame/handle_table.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <deque>
#include <mutex>
#include <thread>

namespace tov {
namespace {

void PrintFault(char const* text) {
    std::fprintf(stderr, "Tov310: %s\n", text);
}

std::atomic<void (*)(char const*)> faultHandler{PrintFault};

void ReportFault(char const* text) {
    faultHandler.load()(text);
}

// The user-interface thread is whoever made the first of the living windows.
std::atomic<std::thread::id> interfaceThread{};
std::size_t livingWindows = 0;  // touched by the user-interface thread only

bool OnInterfaceThread() {
    return interfaceThread.load(std::memory_order_acquire) == std::this_thread::get_id();
}

bool ClaimInterfaceThread() {
    std::thread::id nobody{};
    return interfaceThread.compare_exchange_strong(nobody, std::this_thread::get_id()) || OnInterfaceThread();
}

struct Post {
    std::uint64_t number;
    HWND window;
    unsigned message;
    WPARAM wParam;
    LPARAM lParam;
};

// The one queue of posts.
struct PostQueue {
    std::mutex guard;
    std::condition_variable filled;
    std::deque<Post> posts;
    std::uint64_t posted = 0;
    void (*wake)() = nullptr;

    static PostQueue& Instance() {
        static PostQueue& queue = *std::make_unique<PostQueue>().release();  // posts may come at any time
        return queue;
    }
};

}  // namespace

CWnd::~CWnd() {
    Detach();
}

int CWnd::Attach() {
    if (m_handle) return 0;
    if (!ClaimInterfaceThread()) {
        ReportFault("a window was made on a thread other than the user-interface thread");
        return 0;
    }
    m_handle = HandleTable::Instance().Add(*this);
    if (!m_handle) return 0;
    ++livingWindows;
    return 1;
}

void CWnd::Detach() {
    if (!m_handle) return;
    if (!OnInterfaceThread()) {
        ReportFault("a window was destroyed on a thread other than the user-interface thread");
    }
    HandleTable::Instance().Remove(m_handle);
    m_handle = {};
    if (--livingWindows == 0) interfaceThread.store({}, std::memory_order_release);
}

int CWnd::DestroyWindow() {
    if (!m_handle) return 0;
    Detach();
    return 1;
}

LRESULT CWnd::WindowProc(unsigned, WPARAM, LPARAM) {
    return 0;
}

CWnd* CWnd::FromHandlePermanent(HWND window) {
    return HandleTable::Instance().Find(window);
}

int IsWindow(HWND window) {
    return HandleTable::Instance().IsAlive(window);
}

bool TovIsUserInterfaceThread() {
    return OnInterfaceThread() || interfaceThread.load(std::memory_order_acquire) == std::thread::id{};
}

LRESULT TovSendMessage(HWND window, unsigned message, WPARAM wParam, LPARAM lParam) {
    if (!OnInterfaceThread()) [[unlikely]] {
        if (IsWindow(window))
            ReportFault("a message was sent from a thread other than the user-interface thread");
        return 0;
    }
    CWnd* const target = HandleTable::Instance().Find(window);
    return target != nullptr ? target->WindowProc(message, wParam, lParam) : 0;
}

int TovPostMessage(HWND window, unsigned message, WPARAM wParam, LPARAM lParam) {
    if (!IsWindow(window)) return 0;
    PostQueue& queue = PostQueue::Instance();
    void (*wake)() = nullptr;
    {
        std::scoped_lock const lock(queue.guard);
        if (queue.posts.empty()) wake = queue.wake;
        queue.posts.push_back({++queue.posted, window, message, wParam, lParam});
    }
    queue.filled.notify_all();
    if (wake != nullptr) wake();
    return 1;
}

unsigned TovDispatchPosts() {
    if (!TovIsUserInterfaceThread()) {
        ReportFault("posts were dispatched on a thread other than the user-interface thread");
        return 0;
    }
    PostQueue& queue = PostQueue::Instance();
    std::unique_lock lock(queue.guard);
    std::uint64_t const last = queue.posted;
    unsigned delivered = 0;
    // The queue is asked anew for every post: a window may dispatch by itself while it answers, and the order
    // must hold then too.
    while (!queue.posts.empty() && queue.posts.front().number <= last) {
        Post const post = queue.posts.front();
        queue.posts.pop_front();
        lock.unlock();
        if (CWnd* const target = HandleTable::Instance().Find(post.window)) {
            target->WindowProc(post.message, post.wParam, post.lParam);
            ++delivered;
        }
        lock.lock();
    }
    // What was posted meanwhile found the queue filled and woke nobody; without this call a host that only
    // dispatches when it is told to would never hear of it.
    void (*const wake)() = queue.posts.empty() ? nullptr : queue.wake;
    lock.unlock();
    if (wake != nullptr) wake();
    return delivered;
}

bool TovWaitForPosts(unsigned milliseconds) {
    PostQueue& queue = PostQueue::Instance();
    std::unique_lock lock(queue.guard);
    return queue.filled.wait_for(lock, std::chrono::milliseconds(milliseconds),
                                 [&queue] { return !queue.posts.empty(); });
}

void TovSetPostWaker(void (*wake)()) {
    PostQueue& queue = PostQueue::Instance();
    bool waiting = false;
    {
        std::scoped_lock const lock(queue.guard);
        queue.wake = wake;
        waiting = !queue.posts.empty();
    }
    if (waiting && wake != nullptr) wake();
}

void TovSetFaultHandler(void (*report)(char const* text)) {
    faultHandler.store(report != nullptr ? report : PrintFault);
}

}  // namespace tov
