#include <tov310/win_thread.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>

namespace tov {

struct CWinThread::State {
    std::mutex guard;
    std::condition_variable changed;
    std::thread thread;  // joined by whoever starts anew or ends
    bool running = false;
    bool quit = false;
};

CWinThread::CWinThread() : m_state(std::make_unique<State>()) {}

CWinThread::~CWinThread() {
    End();
}

int CWinThread::CreateThread() {
    State& state = *m_state;
    std::unique_lock lock(state.guard);
    if (state.running) return 0;
    if (state.thread.joinable()) state.thread.join();  // has ended already
    try {
        state.running = true;
        state.thread = std::thread([this] { Live(); });
    } catch (std::system_error const&) {
        state.running = false;
        return 0;
    }
    return 1;
}

void CWinThread::PostQuit() {
    {
        std::scoped_lock const lock(m_state->guard);
        m_state->quit = true;
    }
    m_state->changed.notify_all();
}

int CWinThread::WaitForEnd(unsigned milliseconds) {
    State& state = *m_state;
    std::unique_lock lock(state.guard);
    if (state.thread.get_id() == std::this_thread::get_id()) return 0;
    return state.changed.wait_for(lock, std::chrono::milliseconds(milliseconds),
                                  [&state] { return !state.running; });
}

void CWinThread::End() {
    State& state = *m_state;
    PostQuit();
    std::unique_lock lock(state.guard);
    if (state.thread.get_id() == std::this_thread::get_id()) return;
    state.changed.wait(lock, [&state] { return !state.running; });
    if (state.thread.joinable()) state.thread.join();
    state.quit = false;
}

bool CWinThread::IsRunning() const {
    std::scoped_lock const lock(m_state->guard);
    return m_state->running;
}

void CWinThread::Live() {
    try {
        if (InitInstance()) Run();
    } catch (...) {
    }
    try {
        ExitInstance();
    } catch (...) {
    }
    State& state = *m_state;
    // Told under the lock: once it is free, this object may be gone.
    std::scoped_lock const lock(state.guard);
    state.running = false;
    state.changed.notify_all();
}

int CWinThread::InitInstance() {
    return 1;
}

int CWinThread::Run() {
    std::unique_lock lock(m_state->guard);
    m_state->changed.wait(lock, [this] { return m_state->quit; });
    return 0;
}

int CWinThread::ExitInstance() {
    return 0;
}

bool CWinThread::WaitForQuit(unsigned milliseconds) const {
    std::unique_lock lock(m_state->guard);
    return m_state->changed.wait_for(lock, std::chrono::milliseconds(milliseconds),
                                     [this] { return m_state->quit; });
}

namespace {

struct ServingThreads {
    std::mutex guard;
    std::condition_variable ended;
    long count = 0;

    static ServingThreads& Instance() {
        static ServingThreads& threads = *std::make_unique<ServingThreads>().release();  // threads end late
        return threads;
    }
};

}  // namespace

struct CTovWinThread::Flag {
    std::atomic<int> set{0};
};

CTovWinThread::CTovWinThread(HWND window) : m_window(window), m_initialized(std::make_unique<Flag>()) {}

CTovWinThread::~CTovWinThread() {
    End();
}

int CTovWinThread::IsInitialized() const {
    return m_initialized->set;
}

long CTovWinThread::StaticRef() {
    auto& threads = ServingThreads::Instance();
    std::scoped_lock const lock(threads.guard);
    return threads.count;
}

int CTovWinThread::StaticEventBounceThreadKilled(unsigned milliseconds) {
    auto& threads = ServingThreads::Instance();
    std::unique_lock lock(threads.guard);
    return threads.ended.wait_for(lock, std::chrono::milliseconds(milliseconds),
                                  [&threads] { return threads.count == 0; });
}

int CTovWinThread::InitInstance() {
    if (!IsWindow(m_window)) return 0;
    auto& threads = ServingThreads::Instance();
    std::scoped_lock const lock(threads.guard);
    ++threads.count;
    m_initialized->set = 1;
    return 1;
}

int CTovWinThread::ExitInstance() {
    if (m_initialized->set.exchange(0) == 0) return 0;
    auto& threads = ServingThreads::Instance();
    std::scoped_lock const lock(threads.guard);
    if (--threads.count == 0) threads.ended.notify_all();
    return 0;
}

}  // namespace tov
