#include <tov310/window.h>

#include "frame/handle_table.h"
#include "frame/hook_chain.h"

#include <tov310/messages.h>
#include <tov310/pump.h>
#include <tov310/styles.h>
#include <tov310/system.h>
#include <tov310/view.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <deque>
#include <memory>
#include <mutex>
#include <utility>

namespace tov {
namespace {

void PrintFault(char const* text) {
    std::fprintf(stderr, "Tov310: %s\n", text);
}

std::atomic<void (*)(char const*)> faultHandler{PrintFault};

// The user-interface thread is whoever made the first of the living windows.
// Threads are told apart by the address of something that each has of its own, since every send asks.
[[gnu::tls_model("initial-exec")]] thread_local char const ownOfThread = 0;
std::atomic<char const*> interfaceThread{nullptr};
std::atomic<std::size_t> livingWindows{0};

bool OnInterfaceThread() {
    return interfaceThread.load(std::memory_order_acquire) == &ownOfThread;
}

bool ClaimInterfaceThread() {
    char const* nobody = nullptr;
    return interfaceThread.compare_exchange_strong(nobody, &ownOfThread) || OnInterfaceThread();
}

int postHolds = 0;  // of the user-interface thread

// A message from another thread that waits for its answer. Shared by both sides, since either may be the last
// to let go of it; all but the text is guarded by the queue.
struct SentMessage {
    CString text;
    enum { kWaiting, kTaken, kAnswered, kLost } state = kWaiting;
    LRESULT result = 0;
    std::condition_variable_any changed;
};

struct Post {
    std::uint64_t number;
    HWND window;
    unsigned message;
    WPARAM wParam;
    LPARAM lParam;
    std::shared_ptr<SentMessage> sent;  // null for a post
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

    // Answers the number of what was added.
    std::uint64_t Add(Post post) {
        void (*waker)() = nullptr;
        std::uint64_t number = 0;
        {
            std::scoped_lock const lock(guard);
            if (posts.empty()) waker = wake;
            number = post.number = ++posted;
            posts.push_back(std::move(post));
        }
        filled.notify_all();
        if (waker != nullptr) waker();
        return number;
    }

    // Under the guard. Takes back what has not been delivered yet.
    void Withdraw(std::uint64_t number) {
        auto const found =
            std::lower_bound(posts.begin(), posts.end(), number,
                             [](Post const& post, std::uint64_t n) { return post.number < n; });
        if (found != posts.end() && found->number == number) posts.erase(found);
    }
};

// Tells the sender what became of its message, even when the window throws.
class AnswerToSender {
 public:
    AnswerToSender(PostQueue& queue, std::shared_ptr<SentMessage> sent)
        : m_queue(queue), m_sent(std::move(sent)) {}
    AnswerToSender(AnswerToSender const&) = delete;
    AnswerToSender& operator=(AnswerToSender const&) = delete;
    ~AnswerToSender() {
        if (m_sent == nullptr) return;
        {
            std::scoped_lock const lock(m_queue.guard);
            m_sent->state = m_isAnswered ? SentMessage::kAnswered : SentMessage::kLost;
            m_sent->result = m_result;
        }
        m_sent->changed.notify_all();
    }
    void Give(LRESULT result) {
        m_result = result;
        m_isAnswered = true;
    }

 private:
    PostQueue& m_queue;
    std::shared_ptr<SentMessage> m_sent;
    bool m_isAnswered = false;
    LRESULT m_result = 0;
};

int SendAndWait(HWND window, unsigned message, WPARAM wParam, LPARAM lParam,
                std::shared_ptr<SentMessage> sent, unsigned milliseconds, LRESULT* result,
                std::stop_token const& stop) {
    if (result != nullptr) *result = 0;
    if (!IsWindow(window)) return 0;
    if (OnInterfaceThread()) {
        LRESULT const answer = TovSendMessage(window, message, wParam, lParam);
        if (result != nullptr) *result = answer;
        return 1;
    }
    PostQueue& queue = PostQueue::Instance();
    auto const end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    std::uint64_t const number = queue.Add({0, window, message, wParam, lParam, sent});
    std::unique_lock lock(queue.guard);
    sent->changed.wait_until(lock, stop, end, [&sent] {
        return sent->state == SentMessage::kAnswered || sent->state == SentMessage::kLost;
    });
    if (sent->state == SentMessage::kWaiting) queue.Withdraw(number);
    if (sent->state != SentMessage::kAnswered) return 0;
    if (result != nullptr) *result = sent->result;
    return 1;
}

// Null for a dead handle and, as a fault of the caller, on another thread.
CWnd* FindToSend(HWND window) {
    if (OnInterfaceThread()) [[likely]]
        return HandleTable::Instance().Find(window);
    if (IsWindow(window))
        TovReportFault("a message was sent from a thread other than the user-interface thread");
    return nullptr;
}

}  // namespace

CWnd::~CWnd() {
    Detach();
}

int CWnd::Attach() {
    if (m_handle) return 0;
    if (!ClaimInterfaceThread()) {
        TovReportFault("a window was made on a thread other than the user-interface thread");
        return 0;
    }
    m_handle = HandleTable::Instance().Add(*this);
    if (!m_handle) return 0;
    ++livingWindows;
    PreSubclassWindow();
    return 1;
}

void CWnd::PreSubclassWindow() {}

int CWnd::SubclassDlgItem(unsigned, CWnd*) {
    return 0;
}

void CWnd::Detach() {
    if (!m_handle) return;
    if (!OnInterfaceThread()) {
        TovReportFault("a window was destroyed on a thread other than the user-interface thread");
    }
    if (m_hook != nullptr) TellHooksOfDeath(m_handle);
    ForgetWindowInCalls(*this);
    HandleTable::Instance().Remove(m_handle);
    m_handle = {};
    m_isDying = false;
    if (--livingWindows == 0) interfaceThread.store(nullptr, std::memory_order_release);
}

int CWnd::DestroyWindow() {
    HWND const self = m_handle;
    if (!self) return 0;
    if (std::exchange(m_isDying, true)) return 1;  // by somebody who is told of it
    // Whoever is told may delete the object.
    TovSendMessage(self, WM_DESTROY);
    if (!IsWindow(self)) return 1;
    for (HWND const child : GetChildren()) {
        if (CWnd* const window = FromHandlePermanent(child)) window->DestroyWindow();
        if (!IsWindow(self)) return 1;
    }
    Detach();
    return 1;
}

LRESULT CWnd::Answer(unsigned message, WPARAM wParam, LPARAM lParam) {
    return m_hook == nullptr ? WindowProc(message, wParam, lParam)
                             : SendThroughHooks(*m_hook, *this, message, wParam, lParam);
}

LRESULT CWnd::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_COMMAND && OnCommand(wParam, lParam) != 0) return 1;
    return DefWindowProc(message, wParam, lParam);
}

LRESULT CWnd::DefWindowProc(unsigned, WPARAM, LPARAM) {
    return 0;
}

int CWnd::OnCommand(WPARAM wParam, LPARAM) {
    return TovNotificationOf(wParam) == 0 ? OnCmdMsg(TovCommandOf(wParam), CN_COMMAND, nullptr, nullptr) : 0;
}

std::vector<HWND> CWnd::GetChildren() const {
    return {};
}

CWnd* CWnd::GetParent() const {
    return nullptr;
}

CFrameWnd* CWnd::GetParentFrame() const {
    CWnd* window = GetParent();
    while (window != nullptr && !window->IsKindOf(&CFrameWnd::classCFrameWnd))
        window = window->GetParent();
    return static_cast<CFrameWnd*>(window);
}

int CWnd::IsChild(HWND window) const {
    CWnd const* other = FromHandlePermanent(window);
    while (other != nullptr && (other = other->GetParent()) != this) {
    }
    return other != nullptr;
}

HWND CWnd::GetDlgItem(int id) const {
    for (HWND const child : GetChildren()) {
        CWnd const* const window = FromHandlePermanent(child);
        if (window != nullptr && window->GetDlgCtrlID() == id) return child;
    }
    return {};
}

CString CWnd::GetClassName() const {
    return GetRuntimeClass()->m_lpszClassName;
}

int CWnd::ModifyStyle(unsigned long remove, unsigned long add) {
    unsigned long const before = std::exchange(m_style, (m_style & ~remove) | add);
    return before != m_style;
}

int CWnd::ModifyStyleEx(unsigned long remove, unsigned long add) {
    unsigned long const before = std::exchange(m_exStyle, (m_exStyle & ~remove) | add);
    return before != m_exStyle;
}

int CWnd::ShowWindow(int show) {
    int const wasShown = (GetStyle() & WS_VISIBLE) != 0;
    ModifyStyle(WS_VISIBLE, show != 0 ? WS_VISIBLE : 0);
    return wasShown;
}

int CWnd::EnableWindow(int enable) {
    int const wasEnabled = (GetStyle() & WS_DISABLED) == 0;
    ModifyStyle(WS_DISABLED, enable != 0 ? 0 : WS_DISABLED);
    return wasEnabled;
}

int CWnd::SetTimer(WPARAM id, unsigned milliseconds) {
    return m_handle ? TovGetSystem()->SetTimer(m_handle, id, milliseconds) : 0;
}

int CWnd::KillTimer(WPARAM id) {
    return m_handle ? TovGetSystem()->KillTimer(m_handle, id) : 0;
}

CWnd* CWnd::FromHandlePermanent(HWND window) {
    return HandleTable::Instance().Find(window);
}

int IsWindow(HWND window) {
    return HandleTable::Instance().IsAlive(window);
}

bool TovIsUserInterfaceThread() {
    return OnInterfaceThread() || interfaceThread.load(std::memory_order_acquire) == nullptr;
}

LRESULT TovSendMessage(HWND window, unsigned message, WPARAM wParam, LPARAM lParam) {
    CWnd* const target = FindToSend(window);
    return target != nullptr ? target->Answer(message, wParam, lParam) : 0;
}

void TovSendMessageToDescendants(HWND window, unsigned message, WPARAM wParam, LPARAM lParam, int deep) {
    CWnd const* const parent = FindToSend(window);
    if (parent == nullptr) return;
    for (HWND const child : parent->GetChildren()) {
        TovSendMessage(child, message, wParam, lParam);
        if (deep != 0) TovSendMessageToDescendants(child, message, wParam, lParam, deep);
    }
}

int TovPostMessage(HWND window, unsigned message, WPARAM wParam, LPARAM lParam) {
    if (!IsWindow(window)) return 0;
    PostQueue::Instance().Add({0, window, message, wParam, lParam, nullptr});
    return 1;
}

int TovSendMessageTimeout(HWND window, unsigned message, WPARAM wParam, CString text, unsigned milliseconds,
                          LRESULT* result, std::stop_token stop) {
    auto sent = std::make_shared<SentMessage>();
    sent->text = std::move(text);
    auto const lParam = reinterpret_cast<LPARAM>(sent->text.c_str());
    return SendAndWait(window, message, wParam, lParam, std::move(sent), milliseconds, result, stop);
}

int TovSendMessageTimeout(HWND window, unsigned message, WPARAM wParam, LPARAM lParam, unsigned milliseconds,
                          LRESULT* result, std::stop_token stop) {
    auto sent = std::make_shared<SentMessage>();
    return SendAndWait(window, message, wParam, lParam, std::move(sent), milliseconds, result, stop);
}

unsigned TovDispatchPosts() {
    if (!TovIsUserInterfaceThread()) {
        TovReportFault("posts were dispatched on a thread other than the user-interface thread");
        return 0;
    }
    if (postHolds > 0) return 0;
    PostQueue& queue = PostQueue::Instance();
    std::unique_lock lock(queue.guard);
    std::uint64_t const last = queue.posted;
    unsigned delivered = 0;
    // The queue is asked anew for every post: a window may dispatch by itself while it answers, and the order
    // must hold then too.
    while (!queue.posts.empty() && queue.posts.front().number <= last) {
        Post const post = std::move(queue.posts.front());
        queue.posts.pop_front();
        if (post.sent != nullptr) post.sent->state = SentMessage::kTaken;
        lock.unlock();
        {
            AnswerToSender answer(queue, post.sent);
            if (CWnd* const target = HandleTable::Instance().Find(post.window)) {
                answer.Give(target->Answer(post.message, post.wParam, post.lParam));
                ++delivered;
            }
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

CTovPostHold::CTovPostHold() {
    ++postHolds;
}

CTovPostHold::~CTovPostHold() {
    if (--postHolds > 0) return;
    PostQueue& queue = PostQueue::Instance();
    void (*wake)() = nullptr;
    {
        std::scoped_lock const lock(queue.guard);
        if (!queue.posts.empty()) wake = queue.wake;
    }
    if (wake != nullptr) wake();
}

int CTovPostHold::IsHeld() {
    return postHolds > 0;
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

void TovReportFault(char const* text) {
    faultHandler.load()(text != nullptr ? text : "");
}

void TovSetFaultHandler(void (*report)(char const* text)) {
    faultHandler.store(report != nullptr ? report : PrintFault);
}

}  // namespace tov
