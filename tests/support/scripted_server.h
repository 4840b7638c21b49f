// A mail server that says and does whatever a script tells it, on a thread of its own.
#pragma once

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace tov::test {

enum class End { kStay, kClose, kReset };

struct Reply {
    std::string text;
    End end = End::kStay;
    std::chrono::milliseconds pause{0};  // before it
};

// Says one reply after the other: the first at once, each other one behind a command, or behind the whole
// text after one that begins with 354. What a reply holds behind a "|" is said 50 ms after the client's
// answer.
class ScriptedServer {
 public:
    explicit ScriptedServer(std::vector<Reply> script, std::size_t mostRead = std::string::npos)
        : m_script(std::move(script)), m_mostRead(mostRead) {
        m_listener = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* const any = reinterpret_cast<sockaddr*>(&address);
        if (::bind(m_listener, any, size) != 0 || ::listen(m_listener, 1) != 0) std::abort();
        ::getsockname(m_listener, any, &size);
        m_port = ntohs(address.sin_port);
        sigset_t all, before;
        ::sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &before);  // signals are for the client
        m_thread = std::thread([this] { Serve(); });
        ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }
    ~ScriptedServer() { Got(); }
    unsigned Port() const { return m_port; }

    // What the client has sent; waits for the end.
    std::string const& Got() {
        if (m_thread.joinable()) {
            ::shutdown(m_listener, SHUT_RDWR);
            m_thread.join();
            ::close(m_listener);
        }
        return m_got;
    }

 private:
    void Serve() {
        int const peer = ::accept(m_listener, nullptr, nullptr);
        if (peer < 0) return;
        End end = End::kStay;
        bool isText = false;
        for (std::size_t i = 0; i < m_script.size() && end == End::kStay; ++i) {
            Reply const& reply = m_script[i];
            if (i != 0 && !Read(peer, isText ? "\r\n.\r\n" : "\r\n")) break;
            std::this_thread::sleep_for(reply.pause);
            std::size_t const cut = std::min(reply.text.find('|'), reply.text.size());
            Say(peer, reply.text.substr(0, cut));
            if (cut != reply.text.size()) {
                // Not before the client has taken the first piece, however busy the machine is.
                pollfd answer{peer, POLLIN, 0};
                ::poll(&answer, 1, 5000);
                std::this_thread::sleep_for(std::chrono::milliseconds(50));
                Say(peer, reply.text.substr(cut + 1));
            }
            isText = reply.text.starts_with("354");
            end = reply.end;
        }
        if (end == End::kStay) Read(peer, "");
        linger const hard{1, 0};
        if (end == End::kReset) ::setsockopt(peer, SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
        ::close(peer);
    }

    static void Say(int peer, std::string const& text) {
        ::send(peer, text.data(), text.size(), MSG_NOSIGNAL);
    }

    // Reads up to the end of a command, or so many bytes of the text.
    bool Read(int peer, std::string const& end) {
        std::size_t const begin = m_got.size();
        for (char c = 0; ::read(peer, &c, 1) == 1;) {
            m_got += c;
            if (end.size() > 2 && m_got.size() - begin >= m_mostRead) return true;
            // In the text the line end before it may be that of the header.
            if (!end.empty() && m_got.size() - begin >= end.size() - 2 && m_got.ends_with(end)) return true;
        }
        return false;
    }

    std::vector<Reply> m_script;
    std::size_t m_mostRead;
    int m_listener;
    unsigned m_port = 0;
    std::string m_got;
    std::thread m_thread;
};

}  // namespace tov::test
