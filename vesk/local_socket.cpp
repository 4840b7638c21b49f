#include "vesk/local_socket.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <utility>

namespace tov {
namespace {

constexpr char wordYes = 'Y';
constexpr char wordNo = 'N';

std::error_code SocketError(int number = errno) {
    return {number, std::generic_category()};
}

// Calls bind or connect with the address of a path. An address holds some hundred bytes only, so the folder
// is named by a descriptor and paths can be of any length.
template <class Call>
std::error_code WithAddress(std::string const& path, Call call) {
    auto const separator = path.rfind('/') + 1;
    int const folder =
        ::open(separator > 0 ? path.substr(0, separator).c_str() : ".", O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0) return SocketError();
    auto const name = "/proc/self/fd/" + std::to_string(folder) + '/' + path.substr(separator);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::error_code error;
    if (name.size() >= sizeof address.sun_path) {
        error = SocketError(ENAMETOOLONG);
    } else {
        name.copy(address.sun_path, name.size());
        if (call(reinterpret_cast<sockaddr const*>(&address), static_cast<socklen_t>(sizeof address)) != 0)
            error = SocketError();
    }
    ::close(folder);
    return error;
}

void CloseDescriptor(int& descriptor) {
    if (descriptor >= 0) ::close(std::exchange(descriptor, -1));
}

}  // namespace

std::error_code LocalListener::Open(std::string const& path, std::function<bool()> answer) {
    Close();
    m_process = ::getpid();
    m_answer = std::move(answer);
    m_socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (m_socket < 0) return SocketError();
    ::unlink(path.c_str());
    auto error = WithAddress(
        path, [this](sockaddr const* address, socklen_t size) { return ::bind(m_socket, address, size); });
    if (!error) {
        m_path = path;
        // Sticky, as the lock files beside it.
        [[maybe_unused]] int const kept = ::chmod(path.c_str(), 01600);
        if (::listen(m_socket, 16) != 0 || ::pipe2(m_end, O_CLOEXEC) != 0) error = SocketError();
    }
    if (!error) {
        // The thread takes no signals: those are for the host's threads.
        sigset_t all;
        sigset_t before;
        ::sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &before);
        try {
            m_thread = std::thread([this] { Listen(); });
        } catch (std::system_error const& failure) {
            error = SocketError(failure.code().value());
        }
        ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }
    if (error) Close();
    return error;
}

void LocalListener::Listen() const {
    for (;;) {
        pollfd waits[] = {{m_socket, POLLIN, 0}, {m_end[0], POLLIN, 0}};
        if (::poll(waits, 2, -1) < 0 && errno != EINTR) return;
        if (waits[1].revents != 0) return;
        int const caller = ::accept4(m_socket, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        if (caller < 0) {
            // Too many open files: the caller stays in the queue, and trying at once would only burn time.
            if (errno != EAGAIN && errno != EINTR && errno != ECONNABORTED) ::poll(&waits[1], 1, 100);
            continue;
        }
        char const word = m_answer() ? wordYes : wordNo;
        [[maybe_unused]] auto const sent = ::send(caller, &word, 1, MSG_NOSIGNAL);
        ::close(caller);
    }
}

void LocalListener::Close() {
    bool const own = m_process == ::getpid();
    if (m_thread.joinable()) {
        // A forked child has a copy of this object but not the thread. It also has the pipe, so that closing
        // our end of it would tell the thread nothing.
        if (own) {
            [[maybe_unused]] auto const told = ::write(m_end[1], "", 1);
            m_thread.join();
        } else {
            m_thread.detach();
        }
    }
    CloseDescriptor(m_end[0]);
    CloseDescriptor(m_end[1]);
    if (own && !m_path.empty()) ::unlink(m_path.c_str());
    m_path.clear();
    CloseDescriptor(m_socket);
}

std::error_code AskLocally(std::string const& path, std::chrono::milliseconds patience, bool& answer) {
    answer = false;
    int const file = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (file < 0) return SocketError();
    auto error = WithAddress(
        path, [file](sockaddr const* address, socklen_t size) { return ::connect(file, address, size); });
    auto const end = std::chrono::steady_clock::now() + patience;
    for (char word = 0; !error;) {
        auto const got = ::recv(file, &word, 1, 0);
        if (got == 1) {
            answer = word == wordYes;
            break;
        }
        if (got == 0) {
            error = SocketError(ECONNRESET);
        } else if (errno == EAGAIN) {
            auto const left =
                std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
            pollfd wait{file, POLLIN, 0};
            if (left.count() <= 0) {
                error = SocketError(ETIMEDOUT);
            } else {
                ::poll(&wait, 1, static_cast<int>(left.count()));
            }
        } else if (errno != EINTR) {
            error = SocketError();
        }
    }
    ::close(file);
    return error;
}

}  // namespace tov
