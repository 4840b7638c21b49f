// Profile entries against their peers, both measured in turns in the same run. The counter "ratio" is our
// time over the peer's; 1 is as fast.
#include <tov310/profile.h>

#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

#include "peer.h"

namespace {

using Entries = tov::CTovProfileEntries;

// A configuration folder for one benchmark.
class Folder {
 public:
    Folder() {
        m_path = (std::filesystem::temp_directory_path() / "tov-bench-XXXXXX").string();
        if (mkdtemp(m_path.data()) == nullptr) std::abort();
        setenv("XDG_CONFIG_HOME", m_path.c_str(), 1);
        tov::TovSetProfilePath(nullptr);
    }
    Folder(Folder const&) = delete;
    Folder& operator=(Folder const&) = delete;
    ~Folder() { std::filesystem::remove_all(m_path); }
    std::string File(char const* name) const { return m_path + '/' + name; }

 private:
    std::string m_path;
};

// The work, so many times.
template <class Work>
auto Times(int times, Work work) {
    return [=] {
        for (int i = 0; i < times; ++i)
            work();
    };
}

std::string Numbered(char const* text, int number) {
    return std::string(text).append(std::to_string(number));
}

// A file of 20 sections with 20 entries each; the peer asks for the stamp of the file and looks into a map.
void ReadFromFile(benchmark::State& state) {
    Folder const folder;
    std::unordered_map<std::string, std::string> peer;
    std::vector<std::pair<std::string, std::string>> keys;
    for (int s = 0; s < 20; ++s) {
        std::string list;
        for (int e = 0; e < 20; ++e) {
            keys.emplace_back(Numbered("CTovSection", s), Numbered("ColWidth", e));
            list.append(keys.back().second).append("=value").push_back('\0');
            peer[keys.back().first + '\\' + keys.back().second] = "value";
        }
        if (Entries::WriteTovProfileSection(keys.back().first.c_str(), list.c_str()) == 0) std::abort();
    }
    std::vector<std::string> peerKeys;
    for (auto const& [section, entry] : keys)
        peerKeys.push_back(section + '\\' + entry);
    std::this_thread::sleep_for(std::chrono::milliseconds{100});  // the file comes to rest

    std::string const path = tov::TovGetProfilePath();
    std::size_t mine = 0;
    auto const work = [&] {
        auto const& [section, entry] = keys[mine++ % keys.size()];
        benchmark::DoNotOptimize(Entries::ReadTovProfileString(section.c_str(), entry.c_str(), ""));
    };
    std::size_t other = 0;
    auto const peerWork = [&] {
        struct stat s;
        auto const found = peer.find(peerKeys[other++ % peerKeys.size()]);
        if (stat(path.c_str(), &s) != 0 || found == peer.end()) std::abort();
        std::string text = found->second;
        benchmark::DoNotOptimize(text);
    };
    bench::AgainstPeer(state, 400, Times(400, work), Times(400, peerWork), bench::Want::kWithin);
}
BENCHMARK(ReadFromFile)->UseRealTime();

// One durable write of a value that is there already; the peer is one upsert of one row in a table of its
// own, in a database with the same settings.
void WriteToRegistry(benchmark::State& state) {
    Folder const folder;
    sqlite3* database = nullptr;
    sqlite3_stmt* statement = nullptr;
    sqlite3_open(folder.File("peer.sqlite").c_str(), &database);
    sqlite3_exec(database,
                 "PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL;"
                 "CREATE TABLE entries(key TEXT PRIMARY KEY, value)",
                 nullptr, nullptr, nullptr);
    if (sqlite3_prepare_v2(
            database,
            "INSERT INTO entries VALUES(?1, ?2) ON CONFLICT(key) DO UPDATE SET value = excluded.value", -1,
            &statement, nullptr) != SQLITE_OK) {
        std::abort();
    }
    int mine = 0;
    auto const work = [&] {
        if (Entries::WriteProfileInt("Acme\\App", "CTovSection", "ColWidth", ++mine) == 0) std::abort();
    };
    int other = 0;
    auto const peerWork = [&] {
        sqlite3_bind_text(statement, 1, "Acme\\App\\CTovSection\\ColWidth", -1, SQLITE_STATIC);
        sqlite3_bind_int(statement, 2, ++other);
        if (sqlite3_step(statement) != SQLITE_DONE) std::abort();
        sqlite3_reset(statement);
    };
    // Until both logs have been moved into their files once; from then on they do not grow any more.
    for (int i = 0; i < 1100; ++i) {
        work();
        peerWork();
    }
    // Few at a time: what the disk does meanwhile falls on both.
    bench::AgainstPeer(state, 2, Times(2, work), Times(2, peerWork), bench::Want::kWithin);
    sqlite3_finalize(statement);
    sqlite3_close(database);
}
BENCHMARK(WriteToRegistry)->Iterations(1000)->UseRealTime();

// For the record, without a peer.
void WriteToFile(benchmark::State& state) {
    Folder const folder;
    int number = 0;
    for (auto _ : state)
        Entries::WriteTovProfileInt("S", "a", ++number);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(WriteToFile)->UseRealTime();

void ReadFromRegistry(benchmark::State& state) {
    Folder const folder;
    Entries::WriteProfileInt("Acme\\App", "S", "a", 1);
    for (auto _ : state)
        benchmark::DoNotOptimize(Entries::ReadProfileInt("Acme\\App", "S", "a", 0));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(ReadFromRegistry)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
