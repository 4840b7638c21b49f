// Both stores when writers are killed, and when several write at once.
#include <tov310/profile.h>

#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <random>
#include <thread>

namespace tov {
namespace {

using Entries = CTovProfileEntries;

// What a child tells its parent, also when it dies.
struct Progress {
    std::atomic<int> started{0};
    std::atomic<int> done{0};
    std::atomic<bool> stop{false};
};

class ProfileCrashTest : public testing::TestWithParam<char const*> {
 protected:
    ProfileCrashTest() {
        setenv("XDG_CONFIG_HOME", m_folder.path().c_str(), 1);
        void* const shared =
            ::mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        m_progress = new (shared) Progress;
    }
    ~ProfileCrashTest() override { ::munmap(m_progress, sizeof(Progress)); }

    // Runs the work in a process of its own.
    template <class Work>
    static pid_t Start(Work work) {
        pid_t const child = ::fork();
        if (child == 0) ::_exit(work() ? 0 : 1);
        return child;
    }

    static int End(pid_t child) {
        int status = -1;
        ::waitpid(child, &status, 0);
        return status;
    }

    // A text of its own for every number, of very different lengths.
    static CString Text(int number) {
        return std::to_string(number) + ':' + CString(static_cast<std::size_t>(number * 7919 % 3001), 'x');
    }

    // The number of the text that is stored now; -1 where it is none of ours.
    int Stored() const {
        auto const text = Entries::ReadProfileString(GetParam(), "S", "text", "0:");
        int const number = std::atoi(text.c_str());
        return text == (number == 0 ? "0:" : Text(number)) ? number : -1;
    }

    test::TemporaryFolder m_folder;
    Progress* m_progress;
};

TEST_P(ProfileCrashTest, AKilledWriterLeavesTheOldOrTheNewText) {
    std::mt19937 random(310);
    ASSERT_EQ(Entries::WriteProfileStringA(GetParam(), "S", "other", "stays"), 1);
    int kills = 0;
    for (; m_progress->done < 1000; ++kills) {
        pid_t const child = Start([this] {
            for (int number = m_progress->started; !m_progress->stop;) {
                m_progress->started = ++number;
                if (!Entries::WriteProfileStringA(GetParam(), "S", "text", Text(number).c_str()))
                    return false;
                m_progress->done = number;
            }
            return true;
        });
        std::this_thread::sleep_for(std::chrono::microseconds{random() % 20'000});
        ::kill(child, SIGKILL);
        int const status = End(child);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the writer failed by itself";
        int const stored = Stored();
        ASSERT_TRUE(stored == m_progress->done || stored == m_progress->started)
            << stored << " after " << m_progress->done << ", before " << m_progress->started;
        ASSERT_EQ(Entries::ReadProfileString(GetParam(), "S", "other", ""), "stays");
        m_progress->done = stored;
        m_progress->started = stored;
    }
    EXPECT_GT(kills, 5);
}

TEST_P(ProfileCrashTest, EightWritersLoseNothing) {
    constexpr int writers = 8;
    constexpr int entries = 40;
    std::vector<pid_t> children;
    for (int writer = 0; writer < writers; ++writer) {
        children.push_back(Start([writer] {
            for (int i = 0; i < entries; ++i) {
                auto const entry = std::to_string(writer) + '-' + std::to_string(i);
                if (Entries::WriteProfileInt(GetParam(), i % 2 == 0 ? "S" : "T", entry.c_str(), i) == 0)
                    return false;
                // Half of them go again, so that deletes and writes meet.
                bool const kept = i % 4 < 2;
                if (!kept && Entries::WriteProfileStringA(GetParam(), i % 2 == 0 ? "S" : "T", entry.c_str(),
                                                          nullptr) == 0) {
                    return false;
                }
            }
            return true;
        }));
    }
    for (pid_t const child : children)
        EXPECT_EQ(End(child), 0);
    for (int writer = 0; writer < writers; ++writer) {
        for (int i = 0; i < entries; ++i) {
            auto const entry = std::to_string(writer) + '-' + std::to_string(i);
            auto const found = Entries::ReadProfileInt(GetParam(), i % 2 == 0 ? "S" : "T", entry.c_str(), -1);
            EXPECT_EQ(static_cast<int>(found), i % 4 < 2 ? i : -1) << entry;
        }
    }
}

// Values of one length, written faster than the clock of the file system ticks.
TEST_P(ProfileCrashTest, AReadSeesEveryWriteThatHadEnded) {
    pid_t const child = Start([this] {
        for (int number = 1; !m_progress->stop; ++number) {
            if (Entries::WriteProfileInt(GetParam(), "S", "n", 100'000 + number) == 0) return false;
            m_progress->done = number;
        }
        return true;
    });
    auto const end = std::chrono::steady_clock::now() + std::chrono::milliseconds{700};
    int stale = 0;
    while (std::chrono::steady_clock::now() < end) {
        int const done = m_progress->done;
        int const read = static_cast<int>(Entries::ReadProfileInt(GetParam(), "S", "n", 100'000)) - 100'000;
        if (read < done) ++stale;
    }
    m_progress->stop = true;
    EXPECT_EQ(End(child), 0);
    EXPECT_EQ(stale, 0) << "of " << m_progress->done << " writes";
    EXPECT_GT(m_progress->done, 10);
}

INSTANTIATE_TEST_SUITE_P(Stores, ProfileCrashTest, testing::Values("crash.ini", "Acme\\Crash"),
                         [](auto const& store) { return store.index == 0 ? "File" : "Registry"; });

}  // namespace
}  // namespace tov
