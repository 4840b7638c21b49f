// Messages and painting through hooks, beside events through filters.
#include "peer.h"

#include <tov310/hooks.h>
#include <tov310/messages.h>
#include <tov310/wnd_on.h>

#include <QApplication>
#include <QEvent>
#include <QLineEdit>
#include <QVBoxLayout>

namespace {

constexpr std::size_t rounds = 100'000;
constexpr unsigned message = tov::WM_TOV_PROPERTIES;
int const eventType = QEvent::registerEventType();

struct Handler : tov::CWndOn<QWidget, tov::CWnd> {
    tov::LRESULT WindowProc(unsigned m, tov::WPARAM wParam, tov::LPARAM lParam) override {
        if (m != message) return CWndOn::WindowProc(m, wParam, lParam);
        return static_cast<tov::LRESULT>(sum += wParam);
    }
    tov::WPARAM sum = 0;
};

struct PlainHandler : QWidget {
    bool event(QEvent* event) override {
        if (event->type() != eventType) return QWidget::event(event);
        ++sum;
        return true;
    }
    long sum = 0;
};

struct PassingHook : tov::CTovSubclassWnd {
    tov::LRESULT WindowProc(unsigned m, tov::WPARAM wParam, tov::LPARAM lParam) override {
        ++seen;
        return CTovSubclassWnd::WindowProc(m, wParam, lParam);
    }
    long seen = 0;
};

struct PassingFilter : QObject {
    bool eventFilter(QObject*, QEvent*) override {
        ++seen;
        return false;
    }
    long seen = 0;
};

void BM_SendThroughThreeHooks(benchmark::State& state) {
    Handler ours;
    PlainHandler theirs;
    PassingHook hooks[3];
    PassingFilter filters[3];
    tov::HWND const window = tov::TovHandle(&ours);
    for (auto& hook : hooks)
        hook.HookWindow(window);
    for (auto& filter : filters)
        theirs.installEventFilter(&filter);
    bench::AgainstPeer(
        state, rounds,
        [&] {
            for (std::size_t i = 0; i < rounds; ++i)
                benchmark::DoNotOptimize(tov::TovSendMessage(window, message, i));
        },
        [&] {
            for (std::size_t i = 0; i < rounds; ++i) {
                QEvent event(static_cast<QEvent::Type>(eventType));
                benchmark::DoNotOptimize(QCoreApplication::sendEvent(&theirs, &event));
            }
        },
        bench::Want::kFaster);
}
BENCHMARK(BM_SendThroughThreeHooks)->Iterations(101);

void BM_RepaintWithAHookedControl(benchmark::State& state) {
    constexpr std::size_t repaints = 200;
    struct Form : QWidget {
        Form() {
            auto* const layout = new QVBoxLayout(this);
            layout->addWidget(edit = new QLineEdit("12 34 56.7"));
            resize(400, 300);
            show();
            QCoreApplication::processEvents();  // until it is on the screen
        }
        QLineEdit* edit;
    } ours, theirs, inFront;  // the active window paints more than the others
    PassingHook hook;
    hook.HookWindow(tov::TovHandle(ours.edit));
    auto const paint = [](Form& form) {
        for (std::size_t i = 0; i < repaints; ++i)
            form.repaint();
    };
    bench::AgainstPeer(
        state, repaints, [&] { paint(ours); }, [&] { paint(theirs); }, bench::Want::kWithin);
    if (hook.seen == 0) state.SkipWithError("the hook saw nothing");
}
BENCHMARK(BM_RepaintWithAHookedControl)->Iterations(51);

}  // namespace
