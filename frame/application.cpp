// The application object.
#include <tov310/application.h>

#include <tov310/help_app.h>

#include <memory>
#include <mutex>
#include <vector>

namespace tov {
namespace {

// Applications are often globals of their hosts; the list must be there before them and after them.
struct Applications {
    std::mutex guard;
    std::vector<CWinApp*> living;
    CWinApp* help = nullptr;

    static Applications& Instance() {
        static Applications& applications = *std::make_unique<Applications>().release();
        return applications;
    }
};

}  // namespace

CWinApp::CWinApp() {
    auto& applications = Applications::Instance();
    std::scoped_lock const lock(applications.guard);
    applications.living.push_back(this);
}

CWinApp::~CWinApp() {
    auto& applications = Applications::Instance();
    std::scoped_lock const lock(applications.guard);
    std::erase(applications.living, this);
    if (applications.help == this) applications.help = nullptr;
}

CWinApp* TovGetApp() {
    auto& applications = Applications::Instance();
    std::scoped_lock const lock(applications.guard);
    return applications.living.empty() ? nullptr : applications.living.front();
}

HWND CWinApp::GetMainWnd() const {
    return IsWindow(m_mainWnd) ? m_mainWnd : HWND{};
}

void CWinApp::SetMainWnd(HWND window) {
    m_mainWnd = window;
}

int CWinApp::WinHelp(unsigned long) {
    return 0;
}

void TovSetHelpApp(CWinApp* app) {
    auto& applications = Applications::Instance();
    std::scoped_lock const lock(applications.guard);
    applications.help = app;
}

CWinApp* CTovHelpApp::Get() {
    auto& applications = Applications::Instance();
    std::scoped_lock const lock(applications.guard);
    if (applications.help != nullptr) return applications.help;
    return applications.living.empty() ? nullptr : applications.living.front();
}

int CTovHelpApp::ShowHelp(unsigned long topic) {
    CWinApp* const app = Get();
    return app != nullptr ? app->WinHelp(topic) : 0;
}

}  // namespace tov
