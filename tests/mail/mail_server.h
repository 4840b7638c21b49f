// A mail server that somebody else wrote, in a process of its own.
#pragma once

#include "support/files.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>
#include <nlohmann/json.hpp>

#include <csignal>
#include <cstdlib>
#include <string>

namespace tov::test {

class MailServer {
 public:
    MailServer() {
        int in[2], out[2];
        if (::pipe(in) != 0 || ::pipe(out) != 0) std::abort();
        m_child = ::fork();
        if (m_child == 0) {
            ::dup2(in[0], 0);
            ::dup2(out[1], 1);
            for (int const end : {in[0], in[1], out[0], out[1]})
                ::close(end);
            // The system's Python has the system's packages.
            ::execl("/usr/bin/python3", "python3", TOV_TEST_SOURCE_DIR "/tests/mail/mail_server.py",
                    m_folder.path().c_str(), nullptr);
            ::_exit(1);
        }
        ::close(in[0]);
        ::close(out[1]);
        m_end = in[1];
        m_lines = out[0];
        std::string const line = Line();
        if (!line.empty()) m_port = static_cast<unsigned>(std::stoul(line));
        int status = 0;
        bool const isMissing = line.empty() && ::waitpid(m_child, &status, 0) == m_child &&
                               WIFEXITED(status) && WEXITSTATUS(status) == noServer;
        EXPECT_TRUE(m_port != 0 || isMissing) << "the script of the server failed: " << status;
    }
    MailServer(MailServer const&) = delete;
    MailServer& operator=(MailServer const&) = delete;
    ~MailServer() {
        ::close(m_end);
        ::close(m_lines);
        if (m_port == 0) return;
        ::kill(m_child, SIGKILL);
        ::waitpid(m_child, nullptr, 0);
    }

    unsigned Port() const { return m_port; }  // 0 where there is no such server
    nlohmann::json NextMail() { return nlohmann::json::parse(Line()); }
    std::string Raw(int mail) const { return GetFile(m_folder.path() / (std::to_string(mail) + ".raw")); }

 private:
    static constexpr int noServer = 77;

    // Empty at the end, and where nothing comes for long.
    std::string Line() {
        std::string line;
        pollfd wait{m_lines, POLLIN, 0};
        for (char c = 0; ::poll(&wait, 1, 60'000) > 0 && ::read(m_lines, &c, 1) == 1 && c != '\n';)
            line += c;
        if (line.empty()) ::kill(m_child, SIGKILL);
        return line;
    }

    TemporaryFolder m_folder;
    pid_t m_child = -1;
    int m_end = -1;
    int m_lines = -1;
    unsigned m_port = 0;
};

}  // namespace tov::test
