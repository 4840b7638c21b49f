// A mail server that somebody else wrote, in a process of its own.
#pragma once

#include "support/files.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>
#include <nlohmann/json.hpp>

#include <cstdio>
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
            ::_exit(77);
        }
        ::close(in[0]);
        ::close(out[1]);
        m_end = in[1];
        m_lines = ::fdopen(out[0], "r");
        std::string const line = Line();
        m_port = line.empty() ? 0 : static_cast<unsigned>(std::stoul(line));
    }
    MailServer(MailServer const&) = delete;
    MailServer& operator=(MailServer const&) = delete;
    ~MailServer() {
        ::close(m_end);
        std::fclose(m_lines);
        ::waitpid(m_child, nullptr, 0);
    }

    unsigned Port() const { return m_port; }  // 0 where there is no such server
    nlohmann::json NextMail() { return nlohmann::json::parse(Line()); }
    std::string Raw(int mail) const { return GetFile(m_folder.path() / (std::to_string(mail) + ".raw")); }

 private:
    std::string Line() {
        std::string line;
        for (int c = 0; (c = std::getc(m_lines)) != EOF && c != '\n';)
            line += static_cast<char>(c);
        return line;
    }

    TemporaryFolder m_folder;
    pid_t m_child = -1;
    int m_end = -1;
    std::FILE* m_lines = nullptr;
    unsigned m_port = 0;
};

}  // namespace tov::test
