#include <tov310/log_file.h>

#include "support/temporary_folder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

namespace tov {
namespace {

int EndChild(pid_t child) {
    int status = -1;
    ::waitpid(child, &status, 0);
    return status;
}

void* HandleOf(int descriptor) {
    return reinterpret_cast<void*>(std::intptr_t{descriptor});
}

class LogfileTest : public testing::Test {
 protected:
    ~LogfileTest() override { CTovLogfile::SetLogfile(nullptr, nullptr); }

    static std::string Contents(std::string const& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

    test::TemporaryFolder m_folder;
    std::string m_path = m_folder.File("host.log");
};

TEST_F(LogfileTest, WithoutAnOpenPlaceOrAPrintableTextNothingIsWritten) {
    ASSERT_EQ(::mkfifo(m_folder.File("nobody reads").c_str(), 0600), 0);
    for (char const* name : {"missing/host.log", "", "nobody reads"}) {
        CTovLogfile::SetLogfile(nullptr, m_folder.File(name).c_str());
        EXPECT_EQ(CTovLogfile::WriteLogfile("lost\n"), 0) << name;
    }
    for (int const descriptor : {-1, 0, 999}) {
        CTovLogfile::SetLogfile(HandleOf(descriptor), "");
        EXPECT_EQ(CTovLogfile::WriteLogfile("lost\n"), 0) << descriptor;
    }
    CTovLogfile::SetLogfile(nullptr, m_path.c_str());
    wchar_t const broken[] = {static_cast<wchar_t>(0xD800), 0};
    char const* const nothing = nullptr;
    EXPECT_EQ(CTovLogfile::WriteLogfile("begun %ls", broken), 0);
    EXPECT_EQ(CTovLogfile::WriteLogfile(nothing), 0);
    EXPECT_EQ(Contents(m_path), "");
}

TEST_F(LogfileTest, LinesArePrintedAndAppendedToTheFileWithTheName) {
    std::ofstream(m_path) << "old\n";
    CTovLogfile::SetLogfile(nullptr, m_path.c_str());
    EXPECT_EQ(CTovLogfile::WriteLogfile("%s %d %.2f%%\n", "角", -7, 2.5), 1);
    EXPECT_EQ(CTovLogfile::WriteLogfile("%ls", L"度\n"), 1);
    EXPECT_EQ(CTovLogfile::WriteLogfile("%s", ""), 1);
    std::string const big(300'000, 'x');
    EXPECT_EQ(CTovLogfile::WriteLogfile("%s\n", big.c_str()), 1);
    EXPECT_EQ(Contents(m_path), "old\n角 -7 2.50%\n度\n" + big + "\n");
    std::filesystem::remove(m_path);
    EXPECT_EQ(CTovLogfile::WriteLogfile("anew"), 1) << "the file is opened for every line";
    EXPECT_EQ(Contents(m_path), "anew");
}

TEST_F(LogfileTest, TheLocaleOfTheProcessDoesNotShow) {
    bool const chosen = std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr;
    CTovLogfile::SetLogfile(nullptr, m_path.c_str());
    EXPECT_EQ(CTovLogfile::WriteLogfile("%.1f", 0.5), 1);
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(Contents(m_path), "0.5");
    if (!chosen) GTEST_SKIP() << "no locale with a decimal comma is installed";
}

TEST_F(LogfileTest, TheHandleServesWhereTheFileDoesNot) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    CTovLogfile::SetLogfile(HandleOf(ends[1]), nullptr);
    EXPECT_EQ(CTovLogfile::WriteLogfile("one "), 1);
    CTovLogfile::SetLogfile(HandleOf(ends[1]), m_folder.File("missing/host.log").c_str());
    EXPECT_EQ(CTovLogfile::WriteLogfile("two "), 1);
    CTovLogfile::SetLogfile(HandleOf(ends[1]), m_path.c_str());
    EXPECT_EQ(CTovLogfile::WriteLogfile("three"), 1);
    std::array<char, 64> read{};
    EXPECT_EQ(::read(ends[0], read.data(), read.size()), 8);
    EXPECT_STREQ(read.data(), "one two ");
    EXPECT_EQ(Contents(m_path), "three");
    ::close(ends[0]);
    ::close(ends[1]);
}

// A disk that is full, by the limit of a process for its files.
TEST_F(LogfileTest, ALineThatDoesNotFitLeavesNothing) {
    for (bool const byHandle : {false, true}) {
        std::ofstream(m_path) << "0123456789";
        pid_t const child = ::fork();
        if (child == 0) {
            ::signal(SIGXFSZ, SIG_IGN);
            rlimit const limit{15, 15};
            ::setrlimit(RLIMIT_FSIZE, &limit);
            int const file = ::open(m_path.c_str(), O_WRONLY | O_APPEND);
            CTovLogfile::SetLogfile(byHandle ? HandleOf(file) : nullptr, byHandle ? nullptr : m_path.c_str());
            bool right = CTovLogfile::WriteLogfile("too long for it") == 0;
            right = right && CTovLogfile::WriteLogfile("short") == 1;
            ::_exit(right ? 0 : 1);
        }
        EXPECT_EQ(EndChild(child), 0);
        EXPECT_EQ(Contents(m_path), "0123456789short");
    }
}

// Two processes of two threads each; half of them write through the handle that they share.
TEST_F(LogfileTest, LinesOfProcessesAndThreadsNeverMix) {
    constexpr int lines = 150;
    int const shared = ::open(m_path.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    auto const text = [](int writer, int line) {
        std::string const filling(static_cast<std::size_t>(line % 7 * 3001), static_cast<char>('a' + writer));
        return std::to_string(writer).append(":").append(std::to_string(line)).append(filling);
    };
    auto const write = [&](int writer) {
        bool right = true;
        for (int line = 0; line < lines; ++line)
            right = CTovLogfile::WriteLogfile("%s\n", text(writer, line).c_str()) && right;
        return right;
    };
    std::vector<pid_t> children;
    for (int process = 0; process < 2; ++process) {
        pid_t const child = ::fork();
        if (child == 0) {
            CTovLogfile::SetLogfile(HandleOf(shared), process == 0 ? m_path.c_str() : nullptr);
            bool other = false;
            std::thread thread([&] { other = write(2 * process + 1); });
            bool const own = write(2 * process);
            thread.join();
            ::_exit(own && other ? 0 : 1);
        }
        children.push_back(child);
    }
    for (pid_t const child : children)
        EXPECT_EQ(EndChild(child), 0);
    ::close(shared);
    std::array<int, 4> next{};
    std::ifstream file(m_path);
    for (std::string line; std::getline(file, line);) {
        int const writer = line.empty() ? -1 : line[0] - '0';
        ASSERT_TRUE(writer >= 0 && writer < 4) << line;
        ASSERT_EQ(line, text(writer, next[static_cast<std::size_t>(writer)]++));
    }
    EXPECT_EQ(next, (std::array<int, 4>{lines, lines, lines, lines}));
}

}  // namespace
}  // namespace tov
