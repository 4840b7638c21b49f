#include <tov310/win_thread.h>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace tov {
namespace {

// Long enough for a busy machine, never waited for when all is well.
constexpr unsigned enough = 30'000;

struct Steps : CWinThread {
    ~Steps() override { End(); }
    int InitInstance() override {
        done += 'i';
        if (failAt == 'i') throw std::runtime_error("no start");
        return failAt != '0';
    }
    int Run() override {
        done += 'r';
        if (failAt == 'r') throw 1;
        if (failAt == 'e') End();  // on the thread itself: nothing to wait for
        return CWinThread::Run();
    }
    int ExitInstance() override {
        done += 'x';
        if (failAt == 'x') throw 1;
        return 0;
    }
    char failAt = ' ';
    std::string done;
};

TEST(WinThread, AThreadRunsItsStepsToTheEnd) {
    struct {
        char failAt;
        char const* done;
    } const cases[] = {{' ', "irx"}, {'0', "ix"}, {'i', "ix"}, {'r', "irx"}, {'e', "irx"}, {'x', "irx"}};
    for (auto const& c : cases) {
        Steps thread;
        thread.failAt = c.failAt;
        EXPECT_FALSE(thread.IsRunning());
        EXPECT_EQ(thread.WaitForEnd(0), 1);
        ASSERT_EQ(thread.CreateThread(), 1);
        if (c.failAt == ' ') {
            EXPECT_EQ(thread.CreateThread(), 0) << "it runs already";
            EXPECT_EQ(thread.WaitForEnd(1), 0);
            thread.PostQuit();
        } else if (c.failAt == 'x') {
            thread.PostQuit();
        }
        EXPECT_EQ(thread.WaitForEnd(enough), 1);
        EXPECT_EQ(thread.done, c.done) << c.failAt;
    }
}

TEST(WinThread, AThreadCanBeStartedAnew) {
    Steps thread;
    thread.PostQuit();  // holds for the first start, too
    for (int round = 0; round < 50; ++round) {
        ASSERT_EQ(thread.CreateThread(), 1);
        thread.End();
        EXPECT_FALSE(thread.IsRunning());
    }
    EXPECT_EQ(thread.done.size(), 150u);
}

struct Server : CTovWinThread {
    using CTovWinThread::CTovWinThread;
    ~Server() override { End(); }
    int Run() override {
        while (!WaitForQuit(0))
            TovPostMessage(GetWindow(), 0xC500, ++posts);
        return 0;
    }
    WPARAM posts = 0;
};

TEST(WinThread, ThreadsThatServeWindowsAreCountedUntilTheLastOneEnds) {
    struct Window : CTovMessageWindow {
        LRESULT WindowProc(unsigned, WPARAM, LPARAM) override { return ++got; }
        LRESULT got = 0;
    } window;
    window.Create();
    EXPECT_EQ(CTovWinThread::StaticEventBounceThreadKilled(0), 1);
    std::vector<std::unique_ptr<Server>> servers;
    for (int i = 0; i < 4; ++i) {
        servers.push_back(std::make_unique<Server>(window.GetSafeHwnd()));
        EXPECT_FALSE(servers.back()->IsInitialized());
        ASSERT_EQ(servers.back()->CreateThread(), 1);
    }
    while (window.got < 1000) {
        ASSERT_TRUE(TovWaitForPosts(enough));
        TovDispatchPosts();
    }
    while (CTovWinThread::StaticRef() < 4)
        std::this_thread::yield();
    for (auto const& server : servers)
        EXPECT_TRUE(server->IsInitialized());
    EXPECT_EQ(CTovWinThread::StaticEventBounceThreadKilled(1), 0);
    for (auto const& server : servers)
        server->PostQuit();
    EXPECT_EQ(CTovWinThread::StaticEventBounceThreadKilled(enough), 1);
    EXPECT_EQ(CTovWinThread::StaticRef(), 0);
    for (auto const& server : servers)
        EXPECT_FALSE(server->IsInitialized());
    servers.clear();
    TovDispatchPosts();

    window.DestroyWindow();
    Server late(HWND{1});
    ASSERT_EQ(late.CreateThread(), 1);
    EXPECT_EQ(late.WaitForEnd(enough), 1);
    EXPECT_EQ(late.posts, 0u) << "there is no window to serve";
}

}  // namespace
}  // namespace tov
