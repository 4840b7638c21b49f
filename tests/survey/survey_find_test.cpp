// The sample host on a terminal: its search for files and its recent tables.
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>

namespace {

using testing::ContainsRegex;

struct SurveyOnTerminal : testing::Test {
    // Runs the program in the folder, and presses Ctrl-C when the text appears. Gives the screen and the exit
    // code behind it; the folder is "~".
    std::string Run(std::string const& arguments, std::string const& interruptAt = "") {
        std::string const command = "cd " + m_path.string() +
                                    " && export TZ=UTC XDG_CONFIG_HOME=" + m_config.path().string() +
                                    " && exec '" SURVEY_PROGRAM "' " + arguments;
        winsize const size{24, 50, 0, 0};
        int terminal = -1, status = -1;
        pid_t const child = ::forkpty(&terminal, nullptr, nullptr, &size);
        if (child == 0) ::_exit(::execl("/bin/sh", "sh", "-c", command.c_str(), nullptr));
        std::string screen;
        for (char c = 0; ::read(terminal, &c, 1) == 1;) {
            if (c != '\r' || interruptAt != "") screen += c;
            if (interruptAt != "" && screen.ends_with(interruptAt)) ::kill(child, SIGINT);
        }
        ::close(terminal);
        ::waitpid(child, &status, 0);
        std::string const folder = m_path.string();
        for (std::size_t at = screen.find(folder); at != screen.npos; at = screen.find(folder, at))
            screen.replace(at, folder.size(), 1, '~');
        return screen + std::to_string(WEXITSTATUS(status));
    }

    tov::test::TemporaryFolder m_folder, m_config;
    std::filesystem::path const m_path = m_folder.path();
};

TEST_F(SurveyOnTerminal, FindPrintsFilesInTheAskedOrder) {
    create_directory(m_path / "sub");
    auto time = std::chrono::file_clock::from_sys(std::chrono::sys_seconds(std::chrono::days(11574)));
    for (std::string const name : {"site10.txt", "Site9.txt", "sub/a.txt", "sub/b\x1B"}) {
        std::ofstream(m_path / name) << (name[0] == 'S' ? std::string(200, 'x') : name.substr(6));
        last_write_time(m_path / name, time -= std::chrono::minutes(1));
    }
    std::string const title = "Size  Changed           File\n";
    std::string const ten = "   4  2001-09-08 23:59  ./site10.txt\n";
    std::string const nine = " 200  2001-09-08 23:58  ./Site9.txt\n";
    std::string const a = "   3  2001-09-08 23:57  ./sub/a.txt\n";
    std::string const b = "   0  2001-09-08 23:56  ./sub/b?\n";
    std::string const three = "\n3 files found.\n0";
    EXPECT_EQ(Run("find . '*.TXT' --sort name"), title + a + nine + ten + three);
    EXPECT_EQ(Run("find ./ 's*' '*.txt' --sort=path"), title + nine + ten + a + three);
    EXPECT_EQ(Run("find --sort size . 'a*' '?ite*'"), title + a + ten + nine + three);
    EXPECT_EQ(Run("find . --sort time 'b*' 's*'"), title + b + nine + ten + three);
    EXPECT_EQ(Run("find . 'a*' '?ite9*' --flat"), title + nine + "\n1 file found.\n0");
    EXPECT_EQ(Run("find . a"), "No file found.\n1");
    EXPECT_THAT(Run("--lang=en find gone '*'"), testing::MatchesRegex("survey: gone: [A-Z].* \\(3\\)\n3"));
}

// The window answers for every pattern in every folder, so that the search outlasts the signal by far.
TEST_F(SurveyOnTerminal, InterruptEndsTheSearchAndLeavesACleanLine) {
    for (int i = 0; i < 300; ++i)
        create_directories(m_path / "a folder with a name of some length" / std::to_string(i));
    EXPECT_THAT(Run("find . $(seq 1000 1999)", "\r\x1B[K302 folders, 0 files: ./a folder wi"),
                ContainsRegex("wi….{13}\r.*\x1B\\[Ksurvey: the search was aborted\r\n130"));
}

TEST_F(SurveyOnTerminal, RecentTables) {
    for (std::string const name : {"a.tab", ";%41.tab", "\xFF.tab", "missing/.tab"}) {
        std::ofstream(m_path / name) << "A\t+0000+00000\tX/Here\n";
        Run("'" + name + "'");
    }
    EXPECT_EQ(Run("recent"), "1  ~/?.tab\n2  ~/;%41.tab\n3  ~/a.tab\n0");
    for (char const* const number : {"2", "3", "3"})
        EXPECT_THAT(Run(std::string("--recent ") + number),
                    ContainsRegex("X/Here(.|\n)*Recent tables: 3; .*\n0"));
    EXPECT_EQ(Run("recent"), "1  ~/?.tab\n2  ~/a.tab\n3  ~/;%41.tab\n0");
    for (char const* const number : {"0", "4", "10"})
        EXPECT_THAT(Run(std::string("--recent ") + number), testing::EndsWith("called.\n2"));
    EXPECT_EQ(Run("--reset recent"), "No table was opened yet.\n0");
}

}  // namespace
