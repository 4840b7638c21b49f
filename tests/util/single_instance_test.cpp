// links: objects
#include <tov310/single_instance.h>
#include <tov310/system_error.h>
#include <tov310/window.h>

#include "support/child.h"
#include "support/temporary_folder.h"
#include "vesk/local_socket.h"
#include "vesk/lock_file.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <list>
#include <thread>

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

namespace fs = std::filesystem;
using namespace std::chrono_literals;

std::unique_ptr<CTovSingleInstance> Named(std::string const& name) {
    auto instance = std::make_unique<CTovSingleInstance>();
    EXPECT_EQ(instance->SetObjectName(name), 1);
    return instance;
}

// A copy of the program in a process of its own: once it is told to start it says whether it is the first,
// then obeys orders.
class Copy {
 public:
    Copy() {
        EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, m_ends.data()), 0);
        m_child = test::StartChild([this] {
            ::alarm(60);
            std::swap(m_ends[0], m_ends[1]);
            Live();
            return true;
        });
    }
    ~Copy() {
        if (m_child > 0) End(SIGKILL);
        for (int const end : m_ends)
            ::close(end);
    }
    void Say(char word) const { EXPECT_EQ(::write(m_ends[0], &word, 1), 1); }
    char Hear() const {
        char word = 0;
        return ::read(m_ends[0], &word, 1) == 1 ? word : '?';
    }
    char Ask(char word) const {
        Say(word);
        return Hear();
    }
    int End(int signal) {
        ::kill(m_child, signal);
        return test::EndChild(std::exchange(m_child, 0));
    }

 private:
    void Live() const {
        Hear();
        auto const instance = Named("Survey");
        Say(instance->IsAlreadyExisting() ? 'x' : '1');
        MainWindow window;
        for (char order = Hear(); order != '.'; order = Hear()) {
            if (order == 'r')
                Say(instance->RegisterMainWindowClass(nullptr, window.GetSafeHwnd()) ? 'y' : 'n');
            if (order == 'a') Say(!instance->FindMainWindow() && instance->ActivateMainWindow() ? 'y' : 'n');
            if (order != 'd') continue;
            TovWaitForPosts(5000);
            TovDispatchPosts();
            Say(static_cast<char>('0' + window.activations));
        }
    }
    std::array<int, 2> m_ends{};  // this process's, then the other's
    pid_t m_child = 0;
};

class SingleInstanceTest : public testing::Test {
 protected:
    SingleInstanceTest() { setenv("XDG_RUNTIME_DIR", m_folder.path().c_str(), 1); }
    ~SingleInstanceTest() override { unsetenv("XDG_RUNTIME_DIR"); }

    std::ptrdiff_t Files() const {
        std::error_code none;
        return std::distance(fs::directory_iterator(m_folder.path() / "Tov310", none), {});
    }

    test::TemporaryFolder m_folder;
    unsigned long m_error = 77;
};

TEST_F(SingleInstanceTest, NamesAreSetUntilOneIsHeld) {
    CTovSingleInstance instance;
    MainWindow window;
    EXPECT_EQ(instance.IsAlreadyExisting(&m_error), 0);
    EXPECT_EQ(m_error, 0u);
    EXPECT_EQ(instance.ActivateMainWindow() + instance.RegisterMainWindowClass(nullptr, window.GetSafeHwnd()),
              0);
    HINSTANCE const module = TovBuiltInResourceModule();
    EXPECT_EQ(instance.SetObjectName(module, 1) * 10 + instance.SetObjectName(module, 26017), 1);
    EXPECT_EQ(instance.SetObjectName("Survey"), 1);
    EXPECT_EQ(instance.GetMainWindowClassName(), "Survey Class");
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(instance.IsAlreadyExisting(), 0) << "the name is its own";
        EXPECT_EQ(instance.SetObjectName("Other"), 0);
    }
    EXPECT_EQ(instance.GetObjectName(), "Survey");
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
        Copy first, second;
        ASSERT_EQ(first.Ask('.'), '1');
        ASSERT_EQ(second.Ask('.'), 'x');
        EXPECT_EQ(second.Ask('a'), 'n') << "no main window yet";
        EXPECT_EQ(first.Ask('r'), 'y');
        for (char const count : {'1', '2'}) {
            EXPECT_EQ(second.Ask('a'), 'y') << "and finds no window of its own";
            EXPECT_EQ(first.Ask('d'), count);
        }
        if (!kill) first.Say('.');
        EXPECT_EQ(first.End(kill ? SIGKILL : 0), kill ? SIGKILL : 0);
        EXPECT_EQ(Files(), kill ? 2 : 0) << "lock and socket of the dead";
        EXPECT_EQ(second.Ask('a'), 'n');
    }
}

TEST_F(SingleInstanceTest, OfManyThatStartAtOnceOneIsTheFirst) {
    for (int round = 0; round < 10; ++round) {
        std::array<Copy, 6> copies;
        for (Copy const& copy : copies)
            copy.Say('.');
        EXPECT_EQ(std::ranges::count(copies, '1', &Copy::Hear), 1);
    }
}

// Names go from hand to hand while everybody takes and gives them: never two holders at once.
TEST_F(SingleInstanceTest, ANameThatIsGivenBackHasOneNextHolder) {
    std::string const witness = m_folder.File("held");
    std::array<pid_t, 3> children{};
    for (pid_t& child : children) {
        child = test::StartChild([&] {
            bool wasHeld = false;
            auto const begin = std::chrono::steady_clock::now();
            // On a busy machine it takes its time until everybody has had a turn.
            for (auto const now = std::chrono::steady_clock::now; now() - begin < (wasHeld ? 500ms : 30s);) {
                LockFile lock;
                if (lock.Take(m_folder.File("name.lock"))) continue;
                if (::mkdir(witness.c_str(), 0700) != 0) return false;
                if (::rmdir(witness.c_str()) != 0) return false;
                wasHeld = true;
            }
            return wasHeld;
        });
    }
    for (pid_t const child : children)
        EXPECT_EQ(test::EndChild(child), 0);
}

TEST_F(SingleInstanceTest, AForkedChildNeitherEndsTheParentsNameNorHangs) {
    auto first = Named("Survey");
    ASSERT_EQ(first->IsAlreadyExisting(), 0);
    EXPECT_EQ(test::EndChild(test::StartChild([&] { return first.reset(), true; })), 0);
    EXPECT_EQ(Files(), 2);
    EXPECT_EQ(Named("Survey")->IsAlreadyExisting(), 1);
    Copy const sleeper;
    first.reset();
    EXPECT_EQ(Named("Survey")->IsAlreadyExisting(), 0) << "a child that lives on does not hold it";
}

TEST_F(SingleInstanceTest, FoldersOfOthersAreNotUsed) {
    auto const owner = fs::perms::owner_all;
    std::string folder;
    EXPECT_FALSE(UserRuntimeFolder(folder));
    EXPECT_EQ(folder, m_folder.File("Tov310"));
    EXPECT_EQ(fs::status(folder).permissions(), owner);

    setenv("TMPDIR", m_folder.path().c_str(), 1);
    std::string const fallback = m_folder.File("Tov310-" + std::to_string(::geteuid()));
    fs::create_directory(m_folder.File("open"));
    fs::permissions(m_folder.File("open"), owner | fs::perms::group_read);
    for (auto const& unfit : {std::string("relative"), m_folder.File("missing"), m_folder.File("open")}) {
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
        fs::create_directory(deep += '/' + std::string(50, 'd'));
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

TEST_F(SingleInstanceTest, EverybodyGetsAnAnswerFromTheSocketAndSilenceEnds) {
    std::string const path = m_folder.File("a.socket");
    bool answer = true;
    EXPECT_EQ(AskLocally(path, 1s, answer), std::errc::no_such_file_or_directory);
    EXPECT_FALSE(answer);
    std::atomic<int> asked{0}, yes{0};
    LocalListener listener, slow;
    ASSERT_FALSE(listener.Open(path, [&asked] { return ++asked % 2 == 1; }));
    std::list<std::jthread> callers;
    for (int i = 0; i < 4; ++i) {
        callers.emplace_back([&] {
            for (int j = 0; j < 50; ++j) {
                bool mine = false;
                EXPECT_FALSE(AskLocally(path, 10s, mine));
                yes += mine;
            }
        });
    }
    callers.clear();
    EXPECT_EQ(asked, 200);
    EXPECT_EQ(yes, 100);
    ASSERT_FALSE(slow.Open(path, [] { return std::this_thread::sleep_for(300ms), true; }));
    EXPECT_EQ(AskLocally(path, 20ms, answer), std::errc::timed_out);
}

}  // namespace
}  // namespace tov
