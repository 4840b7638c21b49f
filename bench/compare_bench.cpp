// Sorting a million names. Each peer is measured in the same run; the counter "ratio" tells how many times
// slower than strcmp the library is, or how many times faster than the obvious comparison of numbers within
// texts.
#include <tov310/compare.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "peer.h"

namespace {

constexpr std::size_t count = 1'000'000;

// Names as surveys have them: points, files and parcels with numbers in them.
std::vector<std::string> const& Names() {
    static std::vector<std::string> const names = [] {
        constexpr char const* forms[] = {"P%u", "Point %u", "GPS-%06u", "scan_%u.txt", "Parcel %u/%u", "%u"};
        std::mt19937 random(1);
        std::vector<std::string> made;
        for (std::size_t i = 0; i < count; ++i) {
            char text[64];
            unsigned const number = static_cast<unsigned>(random() % 1'000'000);
            unsigned const second = static_cast<unsigned>(random() % 100);
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-extra-args"
            std::snprintf(text, sizeof text, forms[random() % 6], number, second);
#pragma GCC diagnostic pop
            made.emplace_back(text);
        }
        return made;
    }();
    return names;
}

// The two-pointer loop that everybody writes.
int Obvious(char const* a, char const* b) {
    while (*a != '\0' && *b != '\0') {
        if (std::isdigit(static_cast<unsigned char>(*a)) != 0 &&
            std::isdigit(static_cast<unsigned char>(*b)) != 0) {
            char* endA = nullptr;
            char* endB = nullptr;
            long const x = std::strtol(a, &endA, 10);
            long const y = std::strtol(b, &endB, 10);
            if (x != y) return x < y ? -1 : 1;
            a = endA;
            b = endB;
        } else {
            if (*a != *b) break;
            ++a;
            ++b;
        }
    }
    return static_cast<unsigned char>(*a) - static_cast<unsigned char>(*b);
}

template <typename Compare>
void Sort(Compare const& compare) {
    static std::vector<char const*> rows(count);
    std::transform(Names().begin(), Names().end(), rows.begin(),
                   [](std::string const& name) { return name.c_str(); });
    std::sort(rows.begin(), rows.end(),
              [&compare](char const* a, char const* b) { return compare(a, b) < 0; });
    benchmark::DoNotOptimize(rows.data());
}

void Numbered() {
    Sort([](char const* a, char const* b) { return tov::TovCompareIS(a, b); });
}

void NumberedAgainstStrcmp(benchmark::State& state) {
    Names();
    bench::AgainstPeer(
        state, count, Numbered, [] { Sort([](char const* a, char const* b) { return std::strcmp(a, b); }); },
        bench::Want::kWithin);
}
BENCHMARK(NumberedAgainstStrcmp)->Iterations(3);

void NumberedAgainstTheObviousLoop(benchmark::State& state) {
    Names();
    bench::AgainstPeer(
        state, count, Numbered, [] { Sort(Obvious); }, bench::Want::kFaster);
}
BENCHMARK(NumberedAgainstTheObviousLoop)->Iterations(3);

void NoCaseAgainstTheObviousLoop(benchmark::State& state) {
    Names();
    bench::AgainstPeer(
        state, count,
        [] { Sort([](char const* a, char const* b) { return tov::TovCompareNoCaseIS(a, b); }); },
        [] { Sort(Obvious); }, bench::Want::kFaster);
}
BENCHMARK(NoCaseAgainstTheObviousLoop)->Iterations(3);

}  // namespace

BENCHMARK_MAIN();
