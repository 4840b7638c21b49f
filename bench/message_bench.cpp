// Messages between windows. A send is a look-up and a virtual call, so its peer is the virtual call alone:
// the counter "ratio" tells how many of them it costs. A post is held against a send.
#include <tov310/messages.h>
#include <tov310/window.h>

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include "peer.h"

namespace {

class Adder : public tov::CTovMessageWindow {
 public:
    tov::LRESULT sum = 0;

    tov::LRESULT WindowProc(unsigned message, tov::WPARAM wParam, tov::LPARAM lParam) override {
        if (message != tov::WM_TOV_EDIT_DELETE) return CTovMessageWindow::WindowProc(message, wParam, lParam);
        return sum += lParam;
    }
};

// A crowd of windows, so that the one that is sent to is not all that the table holds.
std::vector<std::unique_ptr<Adder>> Crowd() {
    std::vector<std::unique_ptr<Adder>> crowd;
    for (int i = 0; i < 1000; ++i) {
        crowd.push_back(std::make_unique<Adder>());
        crowd.back()->Create();
    }
    return crowd;
}

constexpr std::size_t operations = 100'000;

void Send(benchmark::State& state) {
    auto const crowd = Crowd();
    bench::AgainstPeer(
        state, operations,
        [&] {
            tov::HWND window = crowd[500]->GetSafeHwnd();
            for (std::size_t i = 0; i < operations; ++i) {
                benchmark::DoNotOptimize(window);
                benchmark::DoNotOptimize(tov::TovSendMessage(window, tov::WM_TOV_EDIT_DELETE, 0, 1));
            }
        },
        [&] {
            tov::CWnd* window = crowd[500].get();
            for (std::size_t i = 0; i < operations; ++i) {
                benchmark::DoNotOptimize(window);  // which class it is of is not known
                benchmark::DoNotOptimize(window->WindowProc(tov::WM_TOV_EDIT_DELETE, 0, 1));
            }
        },
        bench::Want::kWithin);
}
BENCHMARK(Send)->Name("send/virtual call")->Unit(benchmark::kMillisecond);

void SendToAll(benchmark::State& state) {
    auto const crowd = Crowd();
    std::vector<tov::HWND> handles;
    for (auto const& window : crowd)
        handles.push_back(window->GetSafeHwnd());
    bench::AgainstPeer(
        state, operations,
        [&] {
            for (std::size_t i = 0; i < operations; ++i)
                benchmark::DoNotOptimize(
                    tov::TovSendMessage(handles[i % handles.size()], tov::WM_TOV_EDIT_DELETE, 0, 1));
        },
        [&] {
            for (std::size_t i = 0; i < operations; ++i) {
                tov::CWnd* window = crowd[i % crowd.size()].get();
                benchmark::DoNotOptimize(window);
                benchmark::DoNotOptimize(window->WindowProc(tov::WM_TOV_EDIT_DELETE, 0, 1));
            }
        },
        bench::Want::kWithin);
}
BENCHMARK(SendToAll)->Name("send to 1000 windows in turn/virtual calls")->Unit(benchmark::kMillisecond);

void Post(benchmark::State& state) {
    auto const crowd = Crowd();
    tov::HWND const window = crowd[500]->GetSafeHwnd();
    bench::AgainstPeer(
        state, operations,
        [&] {
            for (std::size_t i = 0; i < operations; ++i)
                tov::TovPostMessage(window, tov::WM_TOV_EDIT_DELETE, 0, 1);
            if (tov::TovDispatchPosts() != operations) state.SkipWithError("posts were lost");
        },
        [&] {
            for (std::size_t i = 0; i < operations; ++i)
                benchmark::DoNotOptimize(tov::TovSendMessage(window, tov::WM_TOV_EDIT_DELETE, 0, 1));
        },
        bench::Want::kWithin);
}
BENCHMARK(Post)->Name("post and delivery/send")->Unit(benchmark::kMillisecond);

}  // namespace
