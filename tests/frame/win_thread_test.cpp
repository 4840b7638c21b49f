#include <tov310/win_thread.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <list>
#include <stdexcept>
#include <string>

namespace tov {
namespace {

// Long enough for a busy machine, never waited for when all is well.
constexpr unsigned enough = 30'000;

struct Steps : CWinThread {
    ~Steps() override { End(); }
    int InitInstance() override {
        Step('i');
        return failAt != '0';
    }
    int Run() override {
        Step('r');
        if (failAt == 'e') End();  // on the thread itself: nothing to wait for
        return CWinThread::Run();
    }
    int ExitInstance() override {
        Step('x');
        return 0;
    }
    void Step(char step) {
        done += step;
        if (failAt == step) throw std::runtime_error("no further");
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
        EXPECT_EQ(thread.WaitForEnd(0), 1);
        ASSERT_EQ(thread.CreateThread(), 1);
        if (c.failAt == ' ') {
            EXPECT_EQ(thread.CreateThread(), 0) << "it runs already";
            EXPECT_EQ(thread.WaitForEnd(1), 0);
        }
        if (c.failAt == ' ' || c.failAt == 'x') thread.PostQuit();
        EXPECT_EQ(thread.WaitForEnd(enough), 1);
        EXPECT_EQ(thread.done, c.done) << c.failAt;
    }
}

TEST(WinThread, AThreadCanBeStartedAnew) {
    Steps thread;
    thread.PostQuit();  // holds for the first start, too
    for (int round = 0; round < 50; ++round) {
        ASSERT_EQ(thread.CreateThread(), 1);
        EXPECT_EQ(thread.WaitForEnd(round == 0 ? enough : 1), round == 0)
            << "the end of the last round does not hold";
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
    std::list<Server> servers;
    for (int i = 0; i < 4; ++i)
        ASSERT_EQ(servers.emplace_back(window.GetSafeHwnd()).CreateThread(), 1);
    while (window.got < 1000 || CTovWinThread::StaticRef() < 4) {
        ASSERT_TRUE(TovWaitForPosts(enough));
        TovDispatchPosts();
    }
    EXPECT_TRUE(std::ranges::all_of(servers, &Server::IsInitialized));
    EXPECT_EQ(CTovWinThread::StaticEventBounceThreadKilled(1), 0);
    for (Server& server : servers)
        server.PostQuit();
    EXPECT_EQ(CTovWinThread::StaticEventBounceThreadKilled(enough), 1);
    EXPECT_EQ(CTovWinThread::StaticRef(), 0);
    EXPECT_TRUE(std::ranges::none_of(servers, &Server::IsInitialized));
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
