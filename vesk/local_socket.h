// One question between processes of a user: a caller knocks at a socket in the file system, and whoever
// listens there answers yes or no.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <system_error>
#include <thread>

namespace tov {

// Listens on a thread of its own and gives everybody who comes the answer of the function, which runs on that
// thread.
class LocalListener {
 public:
    LocalListener() = default;
    LocalListener(LocalListener const&) = delete;
    LocalListener& operator=(LocalListener const&) = delete;
    ~LocalListener() { Close(); }

    // Takes the place of a socket that is there already, so the caller must know that nobody listens at it.
    std::error_code Open(std::string const& path, std::function<bool()> answer);
    void Close();

 private:
    void Listen() const;

    std::string m_path;
    std::function<bool()> m_answer;
    std::thread m_thread;
    int m_socket = -1;
    int m_end[2] = {-1, -1};  // a pipe; a byte in it ends the thread
    int m_process = 0;
};

// Asks who listens at the path and waits for the answer, at most the given time. An error when there is
// nobody (`connection_refused` for a socket that a dead process left) or no answer.
std::error_code AskLocally(std::string const& path, std::chrono::milliseconds patience, bool& answer);

}  // namespace tov
