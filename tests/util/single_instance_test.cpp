// links: objects
#include <tov310/single_instance.h>
#include <tov310/system_error.h>
#include <tov310/window.h>

#include "support/temporary_folder.h"
#include "vesk/local_socket.h"
#include "vesk/lock_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace tov {
namespace {

struct MainWindow : CTovMessageWindow {
    MainWindow() { Create(); }
    LRESULT WindowProc(unsigned message, WPARAM, LPARAM) override {
        activations += message == CTovSingleInstance::ActivateMessage();
        return 0;
    }
    int activations = 0;
};

// A process of its own that says a word at each step of its life and waits for one before the next.
class Process {
 public:
    explicit Process(std::function<int(Process&)> const& life) {
        EXPECT_EQ(::pipe(m_up.data()) + ::pipe(m_down.data()), 0);
        m_child = ::fork();
        if (m_child != 0) return;
        ::alarm(60);
        ::_exit(life(*this));
    }
    ~Process() {
        if (m_child > 0) Kill();
        for (int const end : {m_up[0], m_up[1], m_down[0], m_down[1]})
            ::close(end);
    }
    // In the child.
    void Say(char word) const { EXPECT_EQ(::write(m_up[1], &word, 1), 1); }
    char Wait() const { return Read(m_down[0]); }
    // In the parent.
    char Hear() const { return Read(m_up[0]); }
    void Tell(char word) const { EXPECT_EQ(::write(m_down[1], &word, 1), 1); }
    char Ask(char word) const {
        Tell(word);
        return Hear();
    }
    int End() {
        int status = -1;
        ::waitpid(std::exchange(m_child, 0), &status, 0);
        return status;
    }
    void Kill() {
        ::kill(m_child, SIGKILL);
        End();
    }

 private:
    static char Read(int from) {
        char word = 0;
        return ::read(from, &word, 1) == 1 ? word : '?';
    }
    std::array<int, 2> m_up{}, m_down{};
    pid_t m_child = 0;
};

class SingleInstanceTest : public testing::Test {
 protected:
    SingleInstanceTest() { setenv("XDG_RUNTIME_DIR", m_folder.path().c_str(), 1); }
    ~SingleInstanceTest() override { unsetenv("XDG_RUNTIME_DIR"); }

    static std::unique_ptr<CTovSingleInstance> Named(std::string const& name) {
        auto instance = std::make_unique<CTovSingleInstance>();
        EXPECT_EQ(instance->SetObjectName(name), 1);
        return instance;
    }

    std::ptrdiff_t Files() const {
        std::error_code none;
        return std::distance(std::filesystem::directory_iterator(m_folder.path() / "Tov310", none), {});
    }

    // A copy of the program: says whether it is the first, then obeys.
    static int Copy(Process& process) {
        auto const instance = Named("Survey");
        process.Say(instance->IsAlreadyExisting() ? 'x' : '1');
        MainWindow window;
        for (;;) {
            switch (process.Wait()) {
                case 'r':
                    process.Say(instance->RegisterMainWindowClass(nullptr, window.GetSafeHwnd()) ? 'y' : 'n');
                    break;
                case 'a':
                    process.Say(!instance->FindMainWindow() && instance->ActivateMainWindow() ? 'y' : 'n');
                    break;
                case 'd':
                    TovWaitForPosts(5000);
                    TovDispatchPosts();
                    process.Say(static_cast<char>('0' + window.activations));
                    break;
                default:
                    return 0;
            }
        }
    }

    test::TemporaryFolder m_folder;
    unsigned long m_error = 77;
};

TEST_F(SingleInstanceTest, NamesAreSetUntilOneIsHeld) {
    CTovSingleInstance instance;
    MainWindow window;
    EXPECT_EQ(instance.IsAlreadyExisting(&m_error), 0);
    EXPECT_EQ(m_error, 0u);
    EXPECT_EQ(instance.ActivateMainWindow(), 0);
    EXPECT_EQ(instance.RegisterMainWindowClass(nullptr, window.GetSafeHwnd()), 0);
    EXPECT_EQ(instance.SetObjectName(TovBuiltInResourceModule(), 1), 0);
    EXPECT_EQ(instance.SetObjectName(TovBuiltInResourceModule(), 26017), 1);
    EXPECT_EQ(instance.SetObjectName("Survey"), 1);
    EXPECT_EQ(instance.GetMainWindowClassName(), "Survey Class");
    EXPECT_EQ(instance.IsAlreadyExisting(), 0);
    EXPECT_EQ(instance.SetObjectName("Other"), 0);
    EXPECT_EQ(instance.GetObjectName(), "Survey");
    EXPECT_EQ(instance.IsAlreadyExisting(), 0) << "the name is its own";
}

TEST_F(SingleInstanceTest, AnotherObjectOfTheProcessFindsTheMainWindow) {
    MainWindow window;
    auto const second = Named("Survey/角 \n..");
    {
        auto const first = Named("Survey/角 \n..");
        auto const other = Named("Survey");
        EXPECT_EQ(first->IsAlreadyExisting(), 0);
        EXPECT_EQ(second->IsAlreadyExisting(), 1);
        EXPECT_EQ(other->IsAlreadyExisting(), 0);
        EXPECT_EQ(second->ActivateMainWindow(), 0) << "there is none yet";
        EXPECT_EQ(first->RegisterMainWindowClass(nullptr, window.GetSafeHwnd()), 1);
        EXPECT_EQ(second->FindMainWindow(), window.GetSafeHwnd());
        EXPECT_EQ(other->FindMainWindow(), HWND{});
        EXPECT_EQ(second->ActivateMainWindow(), 1);
        TovDispatchPosts();
        EXPECT_EQ(window.activations, 1);
        EXPECT_EQ(Files(), 4);
    }
    EXPECT_EQ(Files(), 0) << "everything is cleared away";
    EXPECT_EQ(second->FindMainWindow(), HWND{});
    EXPECT_EQ(second->IsAlreadyExisting(), 0);
}

TEST_F(SingleInstanceTest, ASecondProcessActivatesTheFirstUntilItEndsOrIsKilled) {
    for (bool const kill : {true, true, false}) {
        Process first(Copy);
        ASSERT_EQ(first.Hear(), '1');
        Process second(Copy);
        ASSERT_EQ(second.Hear(), 'x');
        EXPECT_EQ(second.Ask('a'), 'n') << "no main window yet";
        EXPECT_EQ(first.Ask('r'), 'y');
        for (char const count : {'1', '2'}) {
            EXPECT_EQ(second.Ask('a'), 'y') << "and finds no window of its own";
            EXPECT_EQ(first.Ask('d'), count);
        }
        if (kill) {
            first.Kill();
        } else {
            first.Tell('.');
            EXPECT_EQ(first.End(), 0);
        }
        EXPECT_EQ(Files(), kill ? 2 : 0) << "lock and socket of the dead";
        EXPECT_EQ(second.Ask('a'), 'n');
    }
}

TEST_F(SingleInstanceTest, OfManyThatStartAtOnceOneIsTheFirst) {
    for (int round = 0; round < 10; ++round) {
        std::list<Process> processes;
        for (int i = 0; i < 6; ++i) {
            processes.emplace_back([](Process& process) {
                process.Wait();
                return Copy(process);
            });
        }
        for (Process const& process : processes)
            process.Tell('.');
        int firsts = 0;
        for (Process const& process : processes)
            firsts += process.Hear() == '1';
        EXPECT_EQ(firsts, 1);
    }
}

// Names go from hand to hand while everybody takes and gives them: never two holders at once.
TEST_F(SingleInstanceTest, ANameThatIsGivenBackHasOneNextHolder) {
    std::string const witness = m_folder.File("held");
    std::list<Process> processes;
    for (int i = 0; i < 3; ++i) {
        processes.emplace_back([&](Process&) {
            int held = 0;
            auto const end = std::chrono::steady_clock::now() + std::chrono::milliseconds(500);
            while (std::chrono::steady_clock::now() < end) {
                LockFile lock;
                if (lock.Take(m_folder.File("name.lock"))) continue;
                if (::mkdir(witness.c_str(), 0700) != 0) return 1;
                ::rmdir(witness.c_str());
                ++held;
            }
            return held > 0 ? 0 : 2;
        });
    }
    for (Process& process : processes)
        EXPECT_EQ(process.End(), 0);
}

TEST_F(SingleInstanceTest, AForkedChildNeitherEndsTheParentsNameNorHangs) {
    auto first = Named("Survey");
    ASSERT_EQ(first->IsAlreadyExisting(), 0);
    Process child([&](Process&) {
        first.reset();
        return 0;
    });
    EXPECT_EQ(child.End(), 0);
    EXPECT_EQ(Files(), 2);
    EXPECT_EQ(Named("Survey")->IsAlreadyExisting(), 1);
    Process sleeper([](Process& process) { return process.Wait() == '.'; });
    first.reset();
    EXPECT_EQ(Named("Survey")->IsAlreadyExisting(), 0) << "a child that lives on does not hold it";
}

TEST_F(SingleInstanceTest, FoldersOfOthersAreNotUsed) {
    namespace fs = std::filesystem;
    auto const owner = fs::perms::owner_all;
    std::string folder;
    EXPECT_FALSE(UserRuntimeFolder(folder));
    EXPECT_EQ(folder, m_folder.File("Tov310"));
    EXPECT_EQ(fs::status(folder).permissions(), owner);

    setenv("TMPDIR", m_folder.path().c_str(), 1);
    std::string const fallback = m_folder.File("Tov310-" + std::to_string(::geteuid()));
    fs::create_directory(m_folder.File("open"));
    fs::permissions(m_folder.File("open"), owner | fs::perms::group_read);
    for (std::string const& unfit :
         {std::string("relative"), m_folder.File("missing"), m_folder.File("open")}) {
        setenv("XDG_RUNTIME_DIR", unfit.c_str(), 1);
        EXPECT_FALSE(UserRuntimeFolder(folder)) << unfit;
        EXPECT_EQ(folder, fallback);
    }
    fs::remove(fallback);
    fs::create_directory_symlink(m_folder.path(), fallback);
    EXPECT_EQ(Named("Survey")->IsAlreadyExisting(&m_error), 0);
    EXPECT_EQ(m_error, TOV_ERROR_PATH_NOT_FOUND) << "a link that somebody laid there is no folder";
    fs::remove(fallback);
    fs::create_directory(fallback);
    fs::permissions(fallback, owner | fs::perms::group_write);
    EXPECT_EQ(Named("Survey")->IsAlreadyExisting(&m_error), 0);
    EXPECT_EQ(m_error, TOV_ERROR_ACCESS_DENIED);
    unsetenv("TMPDIR");
}

TEST_F(SingleInstanceTest, NamesAndFoldersOfAnyLengthWork) {
    std::string deep = m_folder.path().string();
    for (int i = 0; i < 4; ++i)
        std::filesystem::create_directory(deep += '/' + std::string(50, 'd'));
    ::chmod(deep.c_str(), 0700);
    setenv("XDG_RUNTIME_DIR", deep.c_str(), 1);
    std::vector<std::unique_ptr<CTovSingleInstance>> holders;
    for (char const* end : {"1", "2"}) {
        holders.push_back(Named(std::string(500, '%') + end));
        EXPECT_EQ(holders.back()->IsAlreadyExisting(&m_error), 0) << "names differ behind their cut";
        EXPECT_EQ(m_error, 0u);
    }
    EXPECT_EQ(Named(holders[0]->GetObjectName())->IsAlreadyExisting(), 1);
}

TEST(LocalSocket, EverybodyGetsAnAnswerAndSilenceEnds) {
    test::TemporaryFolder folder;
    std::string const path = folder.File("a.socket");
    bool answer = true;
    EXPECT_EQ(AskLocally(path, std::chrono::seconds(1), answer), std::errc::no_such_file_or_directory);
    EXPECT_FALSE(answer);
    std::atomic<int> asked{0}, yes{0};
    LocalListener listener;
    ASSERT_FALSE(listener.Open(path, [&asked] { return ++asked % 2 == 1; }));
    std::vector<std::thread> callers;
    for (int i = 0; i < 4; ++i) {
        callers.emplace_back([&] {
            for (int j = 0; j < 50; ++j) {
                bool mine = false;
                EXPECT_FALSE(AskLocally(path, std::chrono::seconds(10), mine));
                yes += mine;
            }
        });
    }
    for (std::thread& caller : callers)
        caller.join();
    EXPECT_EQ(asked, 200);
    EXPECT_EQ(yes, 100);
    LocalListener slow;
    ASSERT_FALSE(slow.Open(path, [] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        return true;
    }));
    EXPECT_EQ(AskLocally(path, std::chrono::milliseconds(20), answer), std::errc::timed_out);
}

}  // namespace
}  // namespace tov
