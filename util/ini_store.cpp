// The cache of initialisation files and their locked edits. See the header for the model.
#include "util/ini_store.h"

#include "vesk/immortal.h"

#include <algorithm>
#include <utility>

namespace tov {
namespace {

// Coarse ticks of the clocks that stamp files. Where a time has no fraction of a second the file system seems
// to count in seconds or in pairs of them.
constexpr std::int64_t fineTick = 50'000'000;
constexpr std::int64_t coarseTick = 2'500'000'000;
constexpr std::int64_t oneSecond = 1'000'000'000;

constexpr std::size_t mostCachedFiles = 64;  // far more than a program uses; only a bound for the memory

Immortal<IniStore>& IniStoreOfProcess() {
    static Immortal<IniStore> store;
    return store;
}

}  // namespace

IniStore& IniStore::Instance() {
    // Held over a fork, so that the child never inherits it locked by a thread that it does not have.
    [[maybe_unused]] static bool const registered = [] {
        OnFork([] { IniStoreOfProcess()->m_mutex.lock(); }, [] { IniStoreOfProcess()->m_mutex.unlock(); });
        return true;
    }();
    return *IniStoreOfProcess();
}

bool IniStore::IsSettled(FileStamp const& stamp, std::int64_t time) {
    bool const coarse = stamp.modified % oneSecond == 0;
    return time - std::max(stamp.modified, stamp.changed) > (coarse ? coarseTick : fineTick);
}

void IniStore::Keep(char const* path, File file) {
    if (m_files.size() >= mostCachedFiles && !m_files.contains(std::string_view(path))) m_files.clear();
    m_files.insert_or_assign(path, std::move(file));
}

IniText const* IniStore::Load(char const* path) {
    FileStamp stamp;
    auto const cached = m_files.find(std::string_view(path));
    if (StatFile(path, stamp)) {
        if (cached != m_files.end()) m_files.erase(cached);
        return nullptr;
    }
    if (cached != m_files.end() && cached->second.settled && cached->second.stamp == stamp) {
        return cached->second.text.get();
    }
    File file;
    std::string bytes;
    auto const time = FileClock();
    if (ReadWholeFile(path, bytes, &file.stamp)) {
        if (cached != m_files.end()) m_files.erase(cached);
        return nullptr;
    }
    file.settled = IsSettled(file.stamp, time);
    if (cached != m_files.end() && cached->second.text->Bytes() == bytes) {
        cached->second.stamp = file.stamp;
        cached->second.settled = file.settled;
        return cached->second.text.get();
    }
    file.text = std::make_unique<IniText const>(std::move(bytes));
    auto const* const text = file.text.get();
    Keep(path, std::move(file));
    return text;
}

bool IniStore::Edit(char const* path, bool creates, std::function<std::string(IniText const&)> const& edit) {
    std::lock_guard const lock(m_mutex);
    FileStamp stamp;
    if (!creates && IsMissing(StatFile(path, stamp))) return true;

    LockedFile file;
    if (auto error = file.Open(path)) {
        // The user's folder comes into being with the first thing to remember; no other folder does.
        std::string_view const view(path);
        auto const folder = UserConfigFolder();
        if (!IsMissing(error) || view.substr(0, view.rfind('/')) != folder) return false;
        if (MakePrivateFolder(folder) || file.Open(path)) return false;
    }
    std::string bytes;
    auto const missing = file.Read(bytes);
    if (missing && !IsMissing(missing)) return false;

    auto const cached = m_files.find(std::string_view(path));
    std::unique_ptr<IniText const> fresh;
    if (cached == m_files.end() || cached->second.text->Bytes() != bytes) {
        fresh = std::make_unique<IniText const>(std::move(bytes));
    }
    IniText const& old = fresh ? *fresh : *cached->second.text;
    if (!old.IsReadable()) return false;
    auto changed = edit(old);
    if (changed == old.Bytes() && (!missing || changed.empty())) return true;
    File now;
    if (file.Replace(changed, &now.stamp)) return false;
    now.text = std::make_unique<IniText const>(std::move(changed));
    Keep(path, std::move(now));
    return true;
}

}  // namespace tov
