#include <tov310/system.h>
#include <tov310/wait_cursor.h>

#include <gtest/gtest.h>

#include <optional>
#include <thread>
#include <vector>

namespace tov {
namespace {

// Notes what the screen would show. Calls come one at a time, so nothing here is locked.
struct Screen : testing::Test, ITovSystem {
    ~Screen() override { TovSetSystem(before); }
    void SetCursor(unsigned cursor) override { shown = cursor, ++changes; }
    void RefreshCursor() override { shown = IDC_ARROW, ++changes; }
    ITovSystem* before = TovSetSystem(this);
    unsigned shown = IDC_ARROW;
    int changes = 0;
};

TEST_F(Screen, ShowsTheWaitUntilTheLastOneEnds) {
    std::optional<CTovWaitCursor> first(std::in_place, 7u);
    EXPECT_EQ(shown, 32514u);
    {
        CTovWaitCursor const second;
        first.reset();
        EXPECT_TRUE(CTovWaitCursor::Active());
        EXPECT_EQ(shown, 32514u);
        CTovWaitCursor::Active(0);
        EXPECT_FALSE(CTovWaitCursor::Active());
        CTovWaitCursor const third;
        EXPECT_TRUE(CTovWaitCursor::Active());
    }
    EXPECT_FALSE(CTovWaitCursor::Active());
    EXPECT_EQ(shown, 32512u);
    EXPECT_EQ(changes, 4) << "three shown, one refreshed";
}

TEST_F(Screen, WaitsOfManyThreadsNest) {
    for (int round = 0; round < 20; ++round) {
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t) {
            threads.emplace_back([] {
                for (int i = 0; i < 200; ++i) {
                    CTovWaitCursor const outer, inner;
                    EXPECT_TRUE(CTovWaitCursor::Active());
                }
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        ASSERT_FALSE(CTovWaitCursor::Active());
        ASSERT_EQ(shown, IDC_ARROW);
    }
}

}  // namespace
}  // namespace tov
