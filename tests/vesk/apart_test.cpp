// links: objects
// Work in a process of its own ends within its limits, and nothing of it reaches this one.
#include "vesk/apart.h"

#include "support/child.h"
#include "support/files.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/prctl.h>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <numeric>
#include <stdexcept>
#include <thread>
#include <vector>

namespace tov::test {
namespace {

using Work = std::function<void(ApartPipe&)>;

// Whether the work got as far as to write a 1 behind what it did.
bool Survives(Work const& work, std::uint64_t memory = 0) {
    return VeskRunApart(
        {memory, std::chrono::seconds(1)},
        [&](ApartPipe& pipe) {
            work(pipe);
            char const one = 1;
            pipe.Write(&one, 1);
        },
        [](ApartPipe& pipe) {
            char got = 0;
            return pipe.Read(&got, 1) && got == 1;
        });
}

void Demand(bool isSo) {
    if (!isSo) std::abort();
}

long OpenFiles() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

void Allocate(std::size_t size) {
    std::vector<char> block(size, 'x');
    // The block must be seen to be used.
    Demand(std::accumulate(block.begin(), block.end(), 0L) != 0);
}

TEST(Apart, EndsAtEveryLimit) {
    struct Row {
        char const* what;
        Work work;
        bool survives;
    };
    TemporaryFolder const folder;
    std::string const file = folder.File("file");
    Row const rows[] = {
        {"nothing", [](ApartPipe&) {}, true},
        {"a little memory", [](ApartPipe&) { Allocate(1 << 20); }, true},
        {"much memory", [](ApartPipe&) { Allocate(std::size_t{1} << 30); }, false},
        {"no end",
         [](ApartPipe&) {
             for (std::sig_atomic_t volatile i = 1; i != 0;) {
             }
         },
         false},
        {"sleep", [](ApartPipe&) { std::this_thread::sleep_for(std::chrono::hours(1)); }, false},
        {"abort", [](ApartPipe&) { std::abort(); }, false},
        {"exception", [](ApartPipe&) { throw std::runtime_error("thrown"); }, false},
        {"file", [&](ApartPipe&) { PutFile(file, "text"); }, false},
        // Standard input, output and error, the pipe, and the folder itself while it is read.
        {"open files", [](ApartPipe&) { Demand(OpenFiles() == 5); }, true},
    };
    auto const handler =
        std::signal(SIGABRT, [](int) { ::_exit(::write(STDOUT_FILENO, "handler ran\n", 12) > 0); });
    long const before = OpenFiles();
    for (bool const isIgnored : {false, true}) {
        // A host that ignores the ends of its children has the system forget them.
        std::signal(SIGCHLD, isIgnored ? SIG_IGN : SIG_DFL);
        for (Row const& row : rows) {
            auto const start = ApartPipe::Clock::now();
            testing::internal::CaptureStderr();
            EXPECT_EQ(Survives(row.work, std::uint64_t{64} << 20), row.survives) << row.what;
            EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << row.what;
            EXPECT_LT(ApartPipe::Clock::now() - start, std::chrono::seconds(10)) << row.what;
        }
    }
    std::signal(SIGCHLD, SIG_DFL);
    std::signal(SIGABRT, handler);
    EXPECT_EQ(OpenFiles(), before);
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "a child is left";
    EXPECT_EQ(GetFile(file), "");
}

TEST(Apart, CarriesMoreThanThePipeHoldsAndNoticesThatNobodyReads) {
    std::vector<int> numbers(3'000'000), got(numbers.size());
    std::iota(numbers.begin(), numbers.end(), 0);
    std::size_t const size = numbers.size() * sizeof(int);
    Work const work = [&](ApartPipe& pipe) { pipe.Write(numbers.data(), size); };
    ApartLimits const limits{0, std::chrono::seconds(60)};
    EXPECT_TRUE(VeskRunApart(limits, work, [&](ApartPipe& pipe) { return pipe.Read(got.data(), size); }));
    EXPECT_EQ(got, numbers);
    // More than comes is an end; less, and the writer is not waited for.
    EXPECT_FALSE(VeskRunApart(limits, work, [&](ApartPipe& pipe) {
        char one = 0;
        return pipe.Read(got.data(), size) && pipe.Read(&one, 1);
    }));
    EXPECT_TRUE(VeskRunApart(limits, work, [&](ApartPipe& pipe) { return pipe.Read(got.data(), 4); }));
}

TEST(Apart, NeedsNoStandardFilesAndNoChildThatIsLeftToIt) {
    for (int closed = 1; closed < 8; ++closed) {
        EXPECT_EQ(EndChild(StartChild([&] {
                      for (int number = 0; number < 3; ++number) {
                          if ((closed >> number & 1) != 0) ::close(number);
                      }
                      return Survives([](ApartPipe&) {}) &&
                             Survives([](ApartPipe&) { Demand(OpenFiles() == 5); });
                  })),
                  0)
            << closed;
    }
    // A host that waits for whatever child there is.
    EXPECT_TRUE(VeskRunApart(
        {0, std::chrono::seconds(9)}, [](ApartPipe&) {},
        [](ApartPipe&) { return ::waitpid(-1, nullptr, 0) > 0; }));
}

TEST(Apart, EndsWithItsHost) {
    void* const shared = ::mmap(nullptr, sizeof(std::atomic<pid_t>), PROT_READ | PROT_WRITE,
                                MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(shared, MAP_FAILED);
    auto& copy = *new (shared) std::atomic<pid_t>(0);
    ::prctl(PR_SET_CHILD_SUBREAPER, 1);  // the copy becomes a child of this process when its own parent dies
    pid_t const host = StartChild([&] {
        return Survives([&](ApartPipe&) {
            copy = ::getpid();
            std::this_thread::sleep_for(std::chrono::seconds(30));
        });
    });
    while (copy == 0)
        std::this_thread::yield();
    auto const start = ApartPipe::Clock::now();
    ::kill(host, SIGKILL);
    EndChild(host);
    EXPECT_TRUE(WIFSIGNALED(EndChild(copy)));
    EXPECT_LT(ApartPipe::Clock::now() - start, std::chrono::seconds(10));
    ::prctl(PR_SET_CHILD_SUBREAPER, 0);
    ::munmap(shared, sizeof(std::atomic<pid_t>));
}

}  // namespace
}  // namespace tov::test
