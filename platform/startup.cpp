#include "platform/startup.h"

#include "platform/announcer.h"
#include "platform/menu_view.h"
#include "platform/printing.h"
#include "platform/pump.h"
#include "platform/screen.h"
#include "reports/list_metrics.h"

#include <tov310/window.h>
#include <tov310/window_messages.h>

#include <QCoreApplication>
#include <QEvent>
#include <QTimerEvent>

#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace tov {
namespace {

// Stands in the main loop: posts are delivered and timers run out here.
class MainLoop : public QObject, public ScreenTimers {
 public:
    static QEvent::Type WakeType() {
        static auto const type = static_cast<QEvent::Type>(QEvent::registerEventType());
        return type;
    }

    int SetTimer(HWND window, WPARAM id, unsigned milliseconds) override {
        KillTimer(window, id);
        int const timer = startTimer(static_cast<int>(milliseconds), Qt::PreciseTimer);
        if (timer == 0) return 0;
        m_timers[timer] = {window, id};
        return 1;
    }

    int KillTimer(HWND window, WPARAM id) override {
        for (auto const& [timer, owner] : m_timers) {
            if (owner != std::pair(window, id)) continue;
            killTimer(timer);
            m_timers.erase(timer);
            return 1;
        }
        return 0;
    }

 protected:
    bool event(QEvent* event) override {
        if (event->type() != WakeType()) return QObject::event(event);
        TovDispatchPosts();
        return true;
    }

    void timerEvent(QTimerEvent* event) override {
        if (CTovPostHold::IsHeld() != 0) return;  // the next tick comes
        auto const found = m_timers.find(event->timerId());
        if (found == m_timers.end()) return;
        auto const [window, id] = found->second;
        if (IsWindow(window)) {
            TovSendMessage(window, WM_TIMER, id);
        } else {
            killTimer(event->timerId());
            m_timers.erase(found);
        }
    }

 private:
    std::map<int, std::pair<HWND, WPARAM>> m_timers;
};

// Posts come from any thread, also while the application ends.
std::mutex loopGuard;
std::unique_ptr<MainLoop> mainLoop;
std::unique_ptr<Screen> screen;
std::unique_ptr<CTovMessageWindow> anchor;
std::unique_ptr<Announcer> announcer;
std::unique_ptr<WindowPump> windowPump;
std::unique_ptr<PrintingOnScreen> printing;
MenuPort menus;

void WakeMainLoop() {
    std::scoped_lock const lock(loopGuard);
    if (mainLoop != nullptr)
        QCoreApplication::postEvent(mainLoop.get(), std::make_unique<QEvent>(MainLoop::WakeType()).release());
}

void StopPlatform() {
    TovSetPostWaker(nullptr);
    if (TovGetMenuPort() == &menus) TovSetMenuPort(nullptr);
    TovSetDefaultSystem(nullptr);
    TovSetDefaultAnnounce(nullptr);
    TovSetDefaultPump(nullptr);
    TovSetDefaultPrinting(nullptr);
    CTovListCtrlMetrics::SetMeasure(nullptr);
    std::unique_ptr<MainLoop> ended;
    {
        std::scoped_lock const lock(loopGuard);
        ended = std::move(mainLoop);
    }
    printing.reset();
    windowPump.reset();
    announcer.reset();
    anchor.reset();
    screen.reset();
}

}  // namespace

void StartPlatform() {
    if (mainLoop != nullptr || QCoreApplication::instance() == nullptr) return;
    {
        std::scoped_lock const lock(loopGuard);
        mainLoop = std::make_unique<MainLoop>();
    }
    screen = std::make_unique<Screen>(*mainLoop);
    // The first window makes its thread the one of the interface; a worker with a window of its own must not.
    anchor = std::make_unique<CTovMessageWindow>();
    anchor->Create();
    announcer = std::make_unique<Announcer>();
    windowPump = std::make_unique<WindowPump>();
    printing = std::make_unique<PrintingOnScreen>();
    TovSetDefaultSystem(screen.get());
    TovSetDefaultAnnounce(announcer.get());
    TovSetDefaultPump(windowPump.get());
    TovSetDefaultPrinting(printing.get());
    CTovListCtrlMetrics::SetMeasure(MeasureListCtrl);
    TovSetPostWaker(WakeMainLoop);
    if (TovGetMenuPort() == nullptr) TovSetMenuPort(&menus);
    qAddPostRoutine(StopPlatform);
}

}  // namespace tov
