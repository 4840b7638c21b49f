// Both stores when writers are killed, and when several write at once.
#include <tov310/profile.h>

#include "support/child.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <sys/mman.h>

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
};

class ProfileCrashTest : public testing::TestWithParam<char const*> {
 protected:
    ProfileCrashTest() { setenv("XDG_CONFIG_HOME", m_folder.path().c_str(), 1); }
    ~ProfileCrashTest() override { ::munmap(m_progress, sizeof(Progress)); }

    // A text of its own for every number, of very different lengths.
    static CString Text(int number) {
        return std::to_string(number) + ':' + CString(static_cast<std::size_t>(number * 7919 % 3001), 'x');
    }

    test::TemporaryFolder m_folder;
    Progress* m_progress =
        new (::mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))
            Progress;
};

TEST_P(ProfileCrashTest, AKilledWriterLeavesTheOldOrTheNewTexts) {
    std::mt19937 random(310);
    ASSERT_EQ(Entries::WriteProfileStringA(GetParam(), "S", "other", "stays"), 1);
    int kills = 0;
    for (; m_progress->done < 1000; ++kills) {
        pid_t const child = test::StartChild([this] {
            for (int number = m_progress->started;; m_progress->done = number) {
                m_progress->started = ++number;
                CString const text = Text(number);
                if (!Entries::WriteProfileStrings(GetParam(), "S", {{"text", text}, {"twin", text}}))
                    return false;
            }
        });
        std::this_thread::sleep_for(std::chrono::microseconds{random() % 20'000});
        ::kill(child, SIGKILL);
        ASSERT_TRUE(WIFSIGNALED(test::EndChild(child))) << "the writer failed by itself";
        auto const text = Entries::ReadProfileString(GetParam(), "S", "text", Text(0).c_str());
        int const stored = std::atoi(text.c_str());
        ASSERT_EQ(text, Text(stored));
        ASSERT_EQ(text, Entries::ReadProfileString(GetParam(), "S", "twin", Text(0).c_str()));
        ASSERT_TRUE(stored == m_progress->done || stored == m_progress->started)
            << stored << " after " << m_progress->done << ", before " << m_progress->started;
        ASSERT_EQ(Entries::ReadProfileString(GetParam(), "S", "other", ""), "stays");
        m_progress->done = stored;
        m_progress->started = stored;
    }
    EXPECT_GT(kills, 5);
}

// Half of what they write they delete again, so that deletes and writes meet.
TEST_P(ProfileCrashTest, EightWritersLoseNothing) {
    auto const forEach = [](int writer, auto use) {
        for (int i = 0; i < 40; ++i) {
            auto const entry = std::to_string(writer) + '-' + std::to_string(i);
            if (!use(i % 2 == 0 ? "S" : "T", entry.c_str(), i, i % 4 < 2)) return false;
        }
        return true;
    };
    std::vector<pid_t> children;
    for (int writer = 0; writer < 8; ++writer) {
        children.push_back(test::StartChild([&] {
            return forEach(writer, [](auto* section, auto* entry, int value, bool kept) {
                return Entries::WriteProfileInt(GetParam(), section, entry, value) == 1 &&
                       (kept || Entries::WriteProfileStringA(GetParam(), section, entry, nullptr) == 1);
            });
        }));
    }
    for (pid_t const child : children)
        EXPECT_EQ(test::EndChild(child), 0);
    for (int writer = 0; writer < 8; ++writer) {
        forEach(writer, [](auto* section, auto* entry, int value, bool kept) {
            auto const found = static_cast<int>(Entries::ReadProfileInt(GetParam(), section, entry, -1));
            EXPECT_EQ(found, kept ? value : -1) << entry;
            return true;
        });
    }
}

INSTANTIATE_TEST_SUITE_P(Stores, ProfileCrashTest, testing::Values("crash.ini", "Acme\\Crash"),
                         [](auto const& store) { return store.index == 0 ? "File" : "Registry"; });

}  // namespace
}  // namespace tov
