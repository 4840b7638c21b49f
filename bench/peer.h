// Measures a piece of work and its peer in turns, so that both see the same machine, and prints their ratio.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

namespace bench {

enum class Want {
    kFaster,  // the ratio is how many times faster than the peer
    kWithin,  // the ratio is how many times slower than the peer
};

struct NothingToPrepare {
    void operator()() const {}
};

// Both functions do the same number of operations. The medians of their turns are compared. What is to be
// prepared for each turn is not timed.
template <typename Work, typename Peer, typename Prepare = NothingToPrepare>
void AgainstPeer(benchmark::State& state, std::size_t operations, Work const& work, Peer const& peer,
                 Want want, Prepare const& prepare = {}) {
    using Clock = std::chrono::steady_clock;
    std::vector<double> ours;
    std::vector<double> theirs;
    auto const time = [&prepare](auto const& run) {
        prepare();
        auto const start = Clock::now();
        run();
        return std::chrono::duration<double>(Clock::now() - start).count();
    };
    auto const median = [operations](std::vector<double>& times) {
        auto const middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
        std::nth_element(times.begin(), middle, times.end());
        return *middle / static_cast<double>(operations) * 1e9;
    };
    for (auto _ : state) {
        theirs.push_back(time(peer));
        ours.push_back(time(work));
    }
    double const own = median(ours);
    double const other = median(theirs);
    state.counters["ns"] = own;
    state.counters["peer_ns"] = other;
    state.counters["ratio"] = want == Want::kFaster ? other / own : own / other;
}

}  // namespace bench
