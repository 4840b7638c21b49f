// A report of a million rows without a screen. The counter "ratio" tells how many times slower a sort is than
// std::stable_sort over an array of the keys alone, or how many times faster the other work is than the plain
// loop that its name tells.
#include <tov310/compare.h>
#include <tov310/report_view_host.h>

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "peer.h"

namespace {

using namespace tov;

constexpr unsigned count = 1'000'000;

struct Report : CTovReportViewHost {
    CTovReportTable& Table() const override { return table; }
    mutable CTovReportTable table{*this};
};

struct Row : CTovReportViewItem {
    Row(Report* report, double itsHeight, std::string itsName, int itsZone)
        : CTovReportViewItem(report), height(itsHeight), zone(itsZone), name(std::move(itsName)) {}

    using CTovReportViewItem::OnGetItemText;
    int OnCompareItem(CTovReportViewItem const* other, unsigned col) const override {
        auto const& row = *static_cast<Row const*>(other);
        switch (col) {
            case 0:
                return Compare(height, row.height);
            case 1:
                return Compare(zone, row.zone);
            default:
                return CompareNoCaseIS(name.c_str(), row.name.c_str());
        }
    }
    eTovSortKey OnGetItemSortKey(unsigned col, double& number, CString& text) const override {
        if (!tellsKeys) return eSortKeyNone;
        if (col == 2) {
            text = name;
            return eSortKeyTextNoCaseIS;
        }
        number = col == 0 ? height : zone;
        return eSortKeyNumber;
    }

    double height;
    int zone;
    std::string name;
    static inline bool tellsKeys = true;
};

struct World {
    World() {
        std::mt19937 random(3);
        std::uniform_real_distribution<double> height(-100, 9000);
        report.table.ReserveRealItems(count);
        for (unsigned i = 0; i < count; ++i) {
            std::string name = "Point ";
            name += std::to_string(random() % count);
            report.AddRealItem(
                new Row(&report, height(random), std::move(name), static_cast<int>(random() % 60)));
        }
        report.DisplayRealItems(0);
    }
    Row const& At(unsigned real) const { return static_cast<Row const&>(*report.GetRealItem(real)); }

    Report report;
};

World& TheWorld() {
    static World world;
    return world;
}

using Keys = std::vector<SORT_STATE_REALCOL>;

// Sorts by the columns; the peer sorts an array of what they hold.
template <class Key, class KeyOf, class Before>
void Sort(benchmark::State& state, Keys const& keys, KeyOf const& keyOf, Before const& before) {
    World& world = TheWorld();
    Row::tellsKeys = state.range(0) != 0;
    struct Entry {
        Key key;
        unsigned real;
    };
    std::vector<Entry> entries;
    bench::AgainstPeer(
        state, 1, [&] { world.report.SortList(keys); },
        [&] {
            std::stable_sort(entries.begin(), entries.end(),
                             [&](Entry const& a, Entry const& b) { return before(a.key, b.key); });
            benchmark::DoNotOptimize(entries.data());
        },
        bench::Want::kWithin,
        [&] {
            world.report.SortList(Keys{});
            entries.clear();
            for (unsigned i = 0; i < count; ++i)
                entries.push_back({keyOf(world.At(i)), i});
        });
}

void SortByNumber(benchmark::State& state) {
    Sort<double>(
        state, {{0, 1}}, [](Row const& row) { return row.height; },
        [](double a, double b) { return TovCompare(a, b) < 0; });
}

void SortByTwoKeys(benchmark::State& state) {
    using Pair = std::pair<int, double>;
    Sort<Pair>(
        state, {{1, 0}, {0, 1}}, [](Row const& row) { return Pair(row.zone, row.height); },
        [](Pair const& a, Pair const& b) {
            return a.first != b.first ? a.first > b.first : TovCompare(a.second, b.second) < 0;
        });
}

void SortByText(benchmark::State& state) {
    Sort<std::string>(
        state, {{2, 1}}, [](Row const& row) { return row.name; },
        [](std::string const& a, std::string const& b) {
            return TovCompareNoCaseIS(a.c_str(), b.c_str()) < 0;
        });
}

// The peer touches every row object once.
void SelectAll(benchmark::State& state) {
    World& world = TheWorld();
    world.report.SortList(state.range(0) != 0 ? Keys{{0, 1}} : Keys{});
    std::vector<CTovReportViewItem*> items;
    for (unsigned i = 0; i < count; ++i)
        items.push_back(world.report.GetItem(i));
    bench::AgainstPeer(
        state, 1, [&] { world.report.SelectAllItems(1, 0, 0); },
        [&] {
            for (CTovReportViewItem* const item : items)
                item->SelectItem(1, 1);
        },
        bench::Want::kWithin, [&] { world.report.SelectAllItems(0, 0, 0); });
}

void SelectEverySecond(benchmark::State& state) {
    World& world = TheWorld();
    world.report.SortList(Keys{});
    std::vector<unsigned> rows(count / 2);
    for (unsigned i = 0; i < rows.size(); ++i)
        rows[i] = 2 * i;
    bench::AgainstPeer(
        state, 1, [&] { world.report.SelectItems(rows, 1, 0, 0); },
        [&] {
            for (unsigned const row : rows)
                world.report.GetRealItem(row)->SelectItem(1, 1);
        },
        bench::Want::kWithin, [&] { world.report.SelectAllItems(0, 0, 0); });
}

// The peer takes the rows out of a plain array one by one, a tenth of them.
void HideEveryThird(benchmark::State& state) {
    World& world = TheWorld();
    world.report.SortList(Keys{});
    std::vector<COMPLETE_ITEM> items;
    for (unsigned i = 0; i < count; i += 3)
        items.push_back({i, i});
    std::vector<unsigned> plain;
    bench::AgainstPeer(
        state, 1,
        [&] {
            std::vector<COMPLETE_ITEM> hidden = items;
            world.report.HideRealItems(hidden, 1, 0);
        },
        [&] {
            for (std::size_t i = items.size(); i-- > items.size() * 9 / 10;)
                plain.erase(plain.begin() + items[i].nScreen);
        },
        bench::Want::kFaster,
        [&] {
            world.report.HideAllItems(0, 0);
            plain.resize(count);
        });
    world.report.HideAllItems(0, 0);
}

void ShowEveryThird(benchmark::State& state) {
    World& world = TheWorld();
    world.report.SortList(state.range(0) != 0 ? Keys{{0, 1}} : Keys{});
    std::vector<unsigned> plain;
    bench::AgainstPeer(
        state, 1, [&] { world.report.HideAllItems(0, 0); },
        [&] {
            for (unsigned i = 0; i < 1000; ++i)
                plain.insert(plain.begin() + i * 3, i);
        },
        bench::Want::kFaster,
        [&] {
            std::vector<COMPLETE_ITEM> items;
            for (unsigned i = 0; i < count; i += 3)
                items.push_back({i, tovNoIndex});
            world.report.HideRealItems(items, 1, 0);
            plain.resize(count);
        });
}

// Into a sorted report, without an event; the peer inserts into a plain array at a place that it knows.
void AppendSorted(benchmark::State& state) {
    World& world = TheWorld();
    world.report.SortList(Keys{{0, 1}});
    std::mt19937 random(5);
    std::uniform_real_distribution<double> height(-100, 9000);
    std::vector<unsigned> plain(count);
    constexpr unsigned appended = 200;
    bench::AgainstPeer(
        state, appended,
        [&] {
            for (unsigned i = 0; i < appended; ++i)
                world.report.AppendRealItem(new Row(&world.report, height(random), "new", 1), 0);
        },
        [&] {
            for (unsigned i = 0; i < appended; ++i)
                plain.insert(plain.begin() + static_cast<int>(random() % count), i);
        },
        bench::Want::kFaster);
}

void DeleteScattered(benchmark::State& state) {
    World& world = TheWorld();
    world.report.SortList(Keys{{0, 1}});
    std::mt19937 random(5);
    std::vector<unsigned> rows;
    std::vector<unsigned> plain;
    bench::AgainstPeer(
        state, 1,
        [&] {
            std::vector<unsigned> deleted = rows;
            world.report.DeleteItems(deleted, 0);
        },
        [&] {
            for (unsigned const row : rows)
                plain.erase(plain.begin() + row);
        },
        bench::Want::kFaster,
        [&] {
            rows.clear();
            for (unsigned i = 0; i < 10'000; ++i)
                rows.push_back(static_cast<unsigned>(random() % (world.report.GetItemCount() - 10'000)));
            plain.resize(count);
        });
}

// Bytes that the report takes for a row besides the row object, with the index of real rows.
void BytesPerRow(benchmark::State& state) {
    auto const inUse = [] {
        struct mallinfo2 const info = mallinfo2();
        return static_cast<double>(info.uordblks + info.hblkhd);
    };
    Report report;
    std::vector<Row*> rows(count);
    std::generate(rows.begin(), rows.end(), [&report] { return new Row(&report, 0, {}, 0); });
    double const before = inUse();
    for (auto _ : state) {
        report.CleanupRealItems(0);
        for (Row* const row : rows)
            report.AddRealItem(row);
        report.DisplayRealItems(0);
        report.SortList(Keys{{0, 0}});
        for (unsigned real = 0; real < 100; ++real)
            benchmark::DoNotOptimize(report.RealItemToScreen(real));
    }
    state.counters["bytes"] = (inUse() - before) / count;
}

BENCHMARK(BytesPerRow)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(SortByNumber)->ArgName("keys")->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(SortByTwoKeys)->ArgName("keys")->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(SortByText)->ArgName("keys")->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(SelectAll)->ArgName("sorted")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(9);
BENCHMARK(SelectEverySecond)->Unit(benchmark::kMillisecond)->Iterations(9);
BENCHMARK(HideEveryThird)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(ShowEveryThird)->ArgName("sorted")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(AppendSorted)->Iterations(5);
BENCHMARK(DeleteScattered)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
