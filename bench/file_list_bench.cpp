// The file search over /usr, warm, held against find and fdfind as whole processes (those that are
// installed), which print the names of what they find where the search makes full records. And the time that
// Abort takes to come back, at the 99.9th percentile.
#include <tov310/file_list.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "peer.h"

namespace {

void Search(benchmark::State& state, char const* pattern, std::string const& peer) {
    std::string const command = "{ " + peer + "; } >/dev/null 2>&1";
    if (std::system(command.c_str()) != 0) {
        state.SkipWithError("the peer is not installed");
        return;
    }
    unsigned found = 0;
    bench::AgainstPeer(
        state, 1, [&] { found = tov::CTovFileList(pattern, 1, 0, 1).Size(); },
        [&] {
            if (std::system(command.c_str()) != 0) state.SkipWithError("the peer failed");
        },
        bench::Want::kFaster);
    state.counters["found"] = found;
}
BENCHMARK_CAPTURE(Search, find_few, "/usr/*.so", "find /usr -name '*.so'")
    ->Name("search, few hits/find -name")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(15)
    ->UseRealTime();
BENCHMARK_CAPTURE(Search, fd_few, "/usr/*.so", "fdfind -uu --glob '*.so' /usr")
    ->Name("search, few hits/fdfind -uu")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(15)
    ->UseRealTime();
BENCHMARK_CAPTURE(Search, find_links, "/usr/*.so", "find -L /usr -name '*.so' || true")
    ->Name("search, few hits/find -L -name")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(15)
    ->UseRealTime();
BENCHMARK_CAPTURE(Search, find_all, "/usr/*", "find /usr -printf '%p %s %t %a %c\\n'")
    ->Name("search, all records/find -printf")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(10)
    ->UseRealTime();

void Abort(benchmark::State& state) {
    using Clock = std::chrono::steady_clock;
    constexpr int rounds = 1000;
    std::mt19937 random(310);
    std::vector<double> times;
    for (auto _ : state) {
        tov::CTovFileList list("/usr/*", 1, 1, 1);
        list.Sort(tov::CTovFileList::eSortFullFilename);
        for (int i = 0; i < rounds; ++i) {
            list.Search({});
            std::this_thread::sleep_for(std::chrono::microseconds(random() % 400'000));
            auto const begin = Clock::now();
            list.Abort();
            times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
        }
    }
    std::sort(times.begin(), times.end());
    auto const at = [&times](double share) {
        return times[static_cast<std::size_t>(share * static_cast<double>(times.size() - 1))];
    };
    state.counters["ms_50"] = at(0.5);
    state.counters["ms_99"] = at(0.99);
    state.counters["ms_99.9"] = at(0.999);
}
BENCHMARK(Abort)
    ->Name("abort of a running search")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->UseRealTime();

}  // namespace
