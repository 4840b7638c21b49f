#include <tov310/log_file.h>

#include "support/child.h"
#include "support/files.h"
#include "support/limits.h"
#include "support/temporary_folder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <clocale>
#include <sstream>
#include <thread>

namespace tov {
namespace {

using test::GetFile;
using test::PutFile;

void* HandleOf(int descriptor) {
    return reinterpret_cast<void*>(std::intptr_t{descriptor});
}

class LogfileTest : public testing::Test {
 protected:
    ~LogfileTest() override { CTovLogfile::SetLogfile(nullptr, nullptr); }

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
    EXPECT_EQ(CTovLogfile::WriteLogfile("begun %ls", broken) + CTovLogfile::WriteLogfile(nothing), 0);
    EXPECT_EQ(GetFile(m_path), "");
}

TEST_F(LogfileTest, LinesArePrintedAndAppendedToTheFileWithTheName) {
    PutFile(m_path, "old\n");
    CTovLogfile::SetLogfile(nullptr, m_path.c_str());
    std::string const big(300'000, 'x');
    std::setlocale(LC_ALL, "de_DE.UTF-8");  // which would show a comma, where it is installed
    EXPECT_EQ(CTovLogfile::WriteLogfile("%s %d %.2f%%\n", "角", -7, 2.5), 1);
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(CTovLogfile::WriteLogfile("%ls", L"度\n") + CTovLogfile::WriteLogfile("%s", ""), 2);
    EXPECT_EQ(CTovLogfile::WriteLogfile("%s\n", big.c_str()), 1);
    EXPECT_EQ(GetFile(m_path), "old\n角 -7 2.50%\n度\n" + big + "\n");
    std::filesystem::remove(m_path);
    EXPECT_EQ(CTovLogfile::WriteLogfile("anew"), 1) << "the file is opened for every line";
    EXPECT_EQ(GetFile(m_path), "anew");
}

TEST_F(LogfileTest, TheHandleServesWhereTheFileDoesNot) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    std::string const missing = m_folder.File("missing/host.log");
    std::pair<char const*, char const*> const lines[] = {
        {nullptr, "one "}, {missing.c_str(), "two "}, {m_path.c_str(), "three"}};
    for (auto const& [path, line] : lines) {
        CTovLogfile::SetLogfile(HandleOf(ends[1]), path);
        EXPECT_EQ(CTovLogfile::WriteLogfile("%s", line), 1);
    }
    std::array<char, 64> read{};
    EXPECT_EQ(::read(ends[0], read.data(), read.size()), 8);
    EXPECT_STREQ(read.data(), "one two ");
    EXPECT_EQ(GetFile(m_path), "three");
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST_F(LogfileTest, ALineThatDoesNotFitLeavesNothing) {
    for (bool const byHandle : {false, true}) {
        PutFile(m_path, "0123456789");
        int const file = ::open(m_path.c_str(), O_WRONLY | O_APPEND);
        CTovLogfile::SetLogfile(byHandle ? HandleOf(file) : nullptr, byHandle ? nullptr : m_path.c_str());
        test::OnFullVolume(
            [] {
                EXPECT_EQ(CTovLogfile::WriteLogfile("too long for it"), 0);
                EXPECT_EQ(CTovLogfile::WriteLogfile("short"), 1);
            },
            15);
        ::close(file);
        EXPECT_EQ(GetFile(m_path), "0123456789short");
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
    std::array<pid_t, 2> children{};
    for (int process = 0; process < 2; ++process) {
        children[static_cast<std::size_t>(process)] = test::StartChild([&] {
            CTovLogfile::SetLogfile(HandleOf(shared), process == 0 ? m_path.c_str() : nullptr);
            bool other = false;
            std::thread thread([&] { other = write(2 * process + 1); });
            bool const own = write(2 * process);
            thread.join();
            return own && other;
        });
    }
    for (pid_t const child : children)
        EXPECT_EQ(test::EndChild(child), 0);
    ::close(shared);
    std::array<int, 4> next{};
    std::istringstream file(GetFile(m_path));
    for (std::string line; std::getline(file, line);) {
        int const writer = line.empty() ? -1 : line[0] - '0';
        ASSERT_TRUE(writer >= 0 && writer < 4) << line;
        ASSERT_EQ(line, text(writer, next[static_cast<std::size_t>(writer)]++));
    }
    EXPECT_EQ(next, (std::array<int, 4>{lines, lines, lines, lines}));
}

}  // namespace
}  // namespace tov
