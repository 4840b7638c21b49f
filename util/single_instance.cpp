#include <tov310/single_instance.h>

#include <tov310/system_error.h>
#include <tov310/window.h>

#include "vesk/immortal.h"
#include "vesk/error_codes.h"
#include "vesk/local_socket.h"
#include "vesk/lock_file.h"

#include <map>
#include <mutex>
#include <thread>
#include <utility>

namespace tov {
namespace {

constexpr std::chrono::milliseconds answerPatience{3000};

// Main windows of this process by class name. Listeners of other copies look here from their threads.
struct MainWindows {
    std::mutex guard;
    std::map<CString, HWND> windows;

    static MainWindows& Instance() {
        static Immortal<MainWindows> instance;
        return *instance;
    }

    HWND Find(CString const& className) {
        std::scoped_lock const lock(guard);
        auto const found = windows.find(className);
        return found != windows.end() && IsWindow(found->second) ? found->second : HWND{};
    }
};

bool PostActivate(CString const& className) {
    return TovPostMessage(MainWindows::Instance().Find(className), CTovSingleInstance::ActivateMessage()) !=
           0;
}

std::string SocketPath(std::string const& folder, std::string_view name) {
    return folder + '/' + EscapedFileName(name) + ".socket";
}

}  // namespace

struct CTovSingleInstance::Name {
    LockFile lock;
    LocalListener listener;  // ends before the lock does, so that its socket is never a successor's
};

CTovSingleInstance::CTovSingleInstance() = default;

CTovSingleInstance::~CTovSingleInstance() {
    m_name.reset();
    if (!m_mainWindow) return;
    auto& windows = MainWindows::Instance();
    std::scoped_lock const lock(windows.guard);
    auto const found = windows.windows.find(m_className);
    if (found != windows.windows.end() && found->second == m_mainWindow) windows.windows.erase(found);
}

int CTovSingleInstance::SetObjectName(CString name) {
    if (m_name != nullptr || m_mainWindow) return 0;
    m_objectName = std::move(name);
    m_className = m_objectName.empty() ? CString() : m_objectName + " Class";
    m_exists = false;
    return 1;
}

int CTovSingleInstance::SetObjectName(HINSTANCE module, unsigned int id) {
    CString name;
    return TovLoadResourceString(module, id, name) && SetObjectName(std::move(name));
}

int CTovSingleInstance::IsAlreadyExisting(unsigned long* error) {
    if (error != nullptr) *error = TOV_ERROR_NONE;
    if (m_objectName.empty() || m_name != nullptr) return 0;
    auto name = std::make_unique<Name>();
    std::string folder;
    auto failure = UserRuntimeFolder(folder);
    if (!failure) failure = name->lock.Take(folder + '/' + EscapedFileName(m_objectName) + ".lock");
    m_exists = failure == std::errc::file_exists;
    if (m_exists) return 1;
    if (!failure) {
        // Who holds the lock may clear away what a dead copy left.
        failure = name->listener.Open(SocketPath(folder, m_objectName),
                                      [className = m_className] { return PostActivate(className); });
        m_name = std::move(name);
    }
    if (failure && error != nullptr) *error = VeskErrorCode(failure.value(), VeskOperation::kCreate);
    return 0;
}

int CTovSingleInstance::RegisterMainWindowClass(HINSTANCE, HWND mainWindow) {
    if (m_className.empty() || !IsWindow(mainWindow)) return 0;
    auto& windows = MainWindows::Instance();
    std::scoped_lock const lock(windows.guard);
    windows.windows.insert_or_assign(m_className, mainWindow);
    m_mainWindow = mainWindow;
    return 1;
}

HWND CTovSingleInstance::FindMainWindow() const {
    return MainWindows::Instance().Find(m_className);
}

int CTovSingleInstance::ActivateMainWindow() const {
    if (m_objectName.empty()) return 0;
    if (PostActivate(m_className)) return 1;
    std::string folder;
    if (m_name != nullptr || UserRuntimeFolder(folder)) return 0;
    auto const path = SocketPath(folder, m_objectName);
    bool posted = false;
    auto failure = AskLocally(path, answerPatience, posted);
    // A copy that has just taken the name needs a moment to open its socket.
    for (int tries = 0; failure && failure != std::errc::timed_out && m_exists && tries < 20; ++tries) {
        std::this_thread::sleep_for(std::chrono::milliseconds{10});
        failure = AskLocally(path, answerPatience, posted);
    }
    return posted;
}

unsigned int CTovSingleInstance::ActivateMessage() {
    static unsigned int const message = TovRegisterMessage("TovSingleInstanceActivate");
    return message;
}

}  // namespace tov
