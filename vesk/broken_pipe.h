// Writing to pipes and sockets whose other end may be gone; for the sources of this folder alone.
#pragma once

#include "vesk/descriptor.h"

#include <sys/stat.h>

#include <csignal>
#include <ctime>

namespace tov {

// While it lives, a write of this thread to what `mode` tells of fails with EPIPE where SIGPIPE would end the
// process. A signal that was waiting before is left to whom it was sent. Files cost nothing.
class BrokenPipeGuard {
 public:
    explicit BrokenPipeGuard(mode_t mode) {
        if (!S_ISFIFO(mode) && !S_ISSOCK(mode)) return;
        sigset_t waiting;
        if (::sigpending(&waiting) != 0 || ::sigismember(&waiting, SIGPIPE) == 1) return;
        ::sigemptyset(&m_pipe);
        ::sigaddset(&m_pipe, SIGPIPE);
        m_isBlocked = ::pthread_sigmask(SIG_BLOCK, &m_pipe, &m_before) == 0;
    }
    BrokenPipeGuard(BrokenPipeGuard const&) = delete;
    BrokenPipeGuard& operator=(BrokenPipeGuard const&) = delete;
    ~BrokenPipeGuard() {
        if (!m_isBlocked) return;
        timespec const atOnce{};
        Uninterrupted([&] { return ::sigtimedwait(&m_pipe, nullptr, &atOnce); });
        ::pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
    }

 private:
    sigset_t m_pipe;
    sigset_t m_before;
    bool m_isBlocked = false;
};

}  // namespace tov
