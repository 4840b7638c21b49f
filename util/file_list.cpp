#include <tov310/file_list.h>

#include <tov310/messages.h>
#include <tov310/system_error.h>
#include <tov310/window.h>

#include "util/file_error.h"
#include "util/file_facts.h"
#include "util/name_pattern.h"
#include "util/tree_walk.h"
#include "vesk/error_codes.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <new>
#include <numeric>
#include <stop_token>
#include <string_view>
#include <thread>
#include <utility>

namespace tov {
namespace {

constexpr unsigned patience = 100;  // ms that a window has for the message with a path

// Breaks a sort off; goes no further than this file.
struct SortIsAborted {};

bool HasSeparator(std::string_view text) {
    return text.find_first_of("/\\") != std::string_view::npos;
}

std::string_view LastPart(std::string_view path) {
    return path.substr(path.find_last_of("/\\") + 1);  // npos + 1 is 0
}

}  // namespace

struct CTovFileList::State {
    std::mutex guard;
    std::condition_variable released;
    std::thread::id owner{};   // who searches or changes the records; nobody by default
    std::thread::id teller{};  // whose search is over and who tells of it
    unsigned aborters = 0;     // who waits to abort; no search begins meanwhile
    std::atomic<bool> isAborted{false};
    bool hasFailed = false;
    unsigned long error = TOV_ERROR_NONE;
    std::stop_source stop;  // ends the wait for a window
    std::thread thread;

    bool IsMine() const { return owner == std::this_thread::get_id(); }
    bool IsOver() const { return owner == std::thread::id{} && teller == std::thread::id{}; }
    bool IsTeller() const { return teller == std::this_thread::get_id(); }

    void StopSearch() {
        std::stop_source running;
        {
            std::scoped_lock const lock(guard);
            isAborted = true;
            running = stop;
        }
        running.request_stop();
    }

    // A failure that ends the search.
    void Fail(unsigned long code) {
        std::scoped_lock const lock(guard);
        hasFailed = true;
        isAborted = true;
        error = code;
    }
};

// What a search leaves behind. To take it down takes longer than an abort may, so it is done when nobody
// waits for the search any more.
struct CTovFileList::Litter {
    std::unique_ptr<TreeWalk> walk;
    std::vector<CTovFindData> records;
    std::vector<CString> names[3];
};

// The sole right to the records, for the length of a block.
class CTovFileList::Claim {
 public:
    enum For { kSearch, kAbort, kOther };

    // Waits for the present owner. Where that is this thread, in a callback, nothing is claimed.
    Claim(State& state, For purpose) : m_state(state) {
        std::unique_lock lock(state.guard);
        if (state.IsMine() || (purpose == kSearch && state.IsTeller())) return;
        if (purpose == kAbort) ++state.aborters;
        state.released.wait(lock, [&] {
            return purpose == kSearch ? state.IsOver() && state.aborters == 0
                                      : state.owner == std::thread::id{};
        });
        if (purpose == kAbort) --state.aborters;
        state.owner = std::this_thread::get_id();
        m_isHeld = true;
        if (purpose != kSearch) return;
        state.isAborted = false;
        state.hasFailed = false;
        state.error = TOV_ERROR_NONE;
        state.stop = {};
    }

    // Takes over what was claimed for this thread.
    explicit Claim(State& state) : m_state(state), m_isHeld(true) {
        std::scoped_lock const handedOver(state.guard);
    }
    Claim(Claim const&) = delete;
    Claim& operator=(Claim const&) = delete;
    ~Claim() {
        if (!m_isHeld) return;
        // Told under the lock: as soon as it is free the list may be gone.
        std::scoped_lock const lock(m_state.guard);
        m_state.owner = {};
        m_state.released.notify_all();
    }

    // Lets the others go on. Only the next search waits until this thread has told of the end of its own.
    void ReleaseAndTell() {
        std::scoped_lock const lock(m_state.guard);
        m_state.teller = std::exchange(m_state.owner, {});
        m_isHeld = false;
        m_state.released.notify_all();
    }

    explicit operator bool() const { return m_isHeld; }

    // Starts a thread to which the claim goes over.
    template <class Routine>
    void StartThread(Routine routine) {
        if (m_state.thread.joinable()) m_state.thread.join();  // it has let go of its claim, so it is ending
        std::scoped_lock const lock(m_state.guard);
        m_state.thread = std::thread(routine);
        m_state.owner = m_state.thread.get_id();
        m_isHeld = false;
    }

 private:
    State& m_state;
    bool m_isHeld = false;
};

CTovFileList::CTovFileList(char const* searchPath, int recursive, int runInBackground, int startNow)
    : CTovFileList(std::vector<CString>{searchPath != nullptr ? searchPath : ""}, recursive, runInBackground,
                   startNow) {}

CTovFileList::CTovFileList(std::vector<CString> const& searchPatterns, int recursive, int runInBackground,
                           int startNow)
    : m_isRecursive(recursive != 0), m_state(std::make_unique<State>()) {
    if (!searchPatterns.empty()) m_searchPath = searchPatterns.front();
    for (std::size_t i = 1; i < searchPatterns.size(); ++i)
        AddSearchPattern(searchPatterns[i].c_str());
    if (runInBackground == 0 && startNow != 0) DoIt();
}

CTovFileList::~CTovFileList() {
    m_state->StopSearch();
    { Claim const last(*m_state, Claim::kAbort); }
    if (m_state->thread.joinable()) m_state->thread.join();
}

void CTovFileList::Search(HWND window) {
    Claim claim(*m_state, Claim::kSearch);
    if (!claim) return;
    m_window = window;
    try {
        claim.StartThread([this] { RunThread(); });
    } catch (std::system_error const&) {
        throw std::bad_alloc();
    }
}

void CTovFileList::RunThread() {
    Litter litter;
    Claim claim(*m_state);  // goes before the litter
    try {
        if (IsWindow(m_window)) TovPostMessage(m_window, WM_TOV_FILESEARCHTHREAD_BEGIN);
        if (m_begin.callback != nullptr) m_begin.callback(m_begin.user);
        SearchNow(litter);
    } catch (std::bad_alloc const&) {
        m_state->Fail(TOV_ERROR_NOT_ENOUGH_MEMORY);
    } catch (...) {
        m_state->StopSearch();
    }
    bool const aborted = m_state->isAborted;
    claim.ReleaseAndTell();
    try {
        if (IsWindow(m_window)) TovPostMessage(m_window, WM_TOV_FILESEARCHTHREAD_TERMINATE, aborted);
        if (m_terminate.callback != nullptr) m_terminate.callback(m_terminate.user, aborted);
    } catch (...) {
        // There is nobody whom it could be told.
    }
    std::scoped_lock const lock(m_state->guard);
    m_state->teller = {};
    m_state->released.notify_all();
}

void CTovFileList::DoIt() {
    Litter litter;
    if (Claim const claim(*m_state, Claim::kSearch); claim) SearchNow(litter);
}

void CTovFileList::Wait() {
    std::unique_lock lock(m_state->guard);
    m_state->released.wait(lock,
                           [this] { return m_state->IsOver() || m_state->IsMine() || m_state->IsTeller(); });
}

void CTovFileList::Abort() {
    m_state->StopSearch();
    {
        Claim const claim(*m_state, Claim::kAbort);
        Empty();
    }
    {
        // TERMINATE comes before ABORT.
        std::unique_lock lock(m_state->guard);
        std::thread::id const teller = m_state->teller;
        if (teller != std::thread::id{} && !m_state->IsTeller())
            m_state->released.wait(lock, [&] { return m_state->teller != teller; });
    }
    if (IsWindow(m_window)) TovPostMessage(m_window, WM_TOV_FILESEARCHTHREAD_ABORT);
    if (m_aborted.callback != nullptr) m_aborted.callback(m_aborted.user);
}

void CTovFileList::Empty() {
    m_records.clear();
    m_names.clear();
    m_alternateNames.clear();
    m_fullNames.clear();
}

int CTovFileList::AddSearchPattern(char const* pattern) {
    std::string_view const added = pattern != nullptr ? pattern : "";
    if (HasSeparator(added)) return 0;
    auto const isSame = [added](std::string_view other) { return IsSameName(added, other); };
    if (!isSame(LastPart(m_searchPath)) && std::none_of(m_patterns.begin(), m_patterns.end(), isSame))
        m_patterns.emplace_back(added);
    return 1;
}

void CTovFileList::SearchNow(Litter& litter) {
    std::size_t const separator = m_searchPath.find_last_of("/\\");
    if (separator == CString::npos || separator < 1) return;
    try {
        m_counter = 0;
        SearchDirectories(litter);
        if (!m_state->isAborted) SortRecords(true);
        if (!m_state->isAborted) FillNames(true);
    } catch (std::bad_alloc const&) {
        m_state->Fail(TOV_ERROR_NOT_ENOUGH_MEMORY);
    }
    if (!m_state->isAborted || Failed() != 0) return;
    litter.records.swap(m_records);
    litter.names[0].swap(m_names);
    litter.names[1].swap(m_alternateNames);
    litter.names[2].swap(m_fullNames);
}

void CTovFileList::SearchDirectories(Litter& litter) {
    std::size_t const separator = m_searchPath.find_last_of("/\\");
    CString const root = SystemPath(m_searchPath.substr(0, separator + 1).c_str());

    std::vector<CString> texts{CString(LastPart(m_searchPath))};
    texts.insert(texts.end(), m_patterns.begin(), m_patterns.end());
    litter.walk = std::make_unique<TreeWalk>(root, std::vector<NamePattern>(texts.begin(), texts.end()),
                                             m_isRecursive, m_state->isAborted);
    TreeWalk& walk = *litter.walk;
    std::vector<NamePattern> const& patterns = walk.Patterns();
    auto const run = [&] {
        auto const failure = walk.Run([this](TreeDirectory const& found) {
            ++m_counter;
            TellDirectory(m_searchDirectory.callback != nullptr ? found.Path() : CString());
        });
        if (failure) m_state->Fail(VeskErrorCode(failure.value(), VeskOperation::kPath));
        return !m_state->isAborted;
    };
    if (m_isRecursive && !run()) return;
    m_counter = 0;
    std::size_t count = m_records.size();
    for (TreeDirectory const* const directory : walk.Directories())
        count += directory->hits.size();
    m_records.reserve(count);
    bool const isTold = m_searchInDirectory.callback != nullptr || IsWindow(m_window);
    for (TreeDirectory const* const directory : walk.Directories()) {
        CString const path =
            isTold || !m_isRecursive || !directory->hits.empty() ? directory->Path() : CString();
        for (std::size_t i = 0; i < patterns.size(); ++i) {
            if (m_state->isAborted) return;
            ++m_counter;
            if (isTold) TellInDirectory(path + texts[i]);
            if (m_state->isAborted) return;
            if (!m_isRecursive && i == 0 && !run()) return;
            for (TreeHit const& hit : directory->hits) {
                std::string_view const name = directory->NameOf(hit);
                if (patterns.size() > 1 && !patterns[i].Matches(name)) continue;
                CTovFindData& record = m_records.emplace_back(this);
                FillFindData(name, hit.isLink, hit.facts, record);
                CString full;
                full.reserve(path.size() + name.size());
                full.append(path).append(name);
                record.SetFullFilename(std::move(full));
                if (m_state->isAborted) return;
            }
        }
    }
}

void CTovFileList::TellDirectory(CString const& path) {
    if (IsWindow(m_window))
        TovPostMessage(m_window, WM_TOV_FILESEARCHTHREAD_SEARCHDIRECTORY, static_cast<WPARAM>(m_counter));
    if (m_searchDirectory.callback != nullptr)
        m_searchDirectory.callback(m_searchDirectory.user, m_counter, path.c_str());
}

void CTovFileList::TellInDirectory(CString const& path) {
    if (IsWindow(m_window)) {
        std::stop_token stop;
        {
            std::scoped_lock const lock(m_state->guard);
            stop = m_state->stop.get_token();
        }
        TovSendMessageTimeout(m_window, WM_TOV_FILESEARCHTHREAD_FILESEARCHINDIRECTORY,
                              static_cast<WPARAM>(m_counter), path, patience, nullptr, stop);
    }
    if (m_searchInDirectory.callback != nullptr)
        m_searchInDirectory.callback(m_searchInDirectory.user, m_counter, path.c_str());
}

void CTovFileList::SortRecords(bool canBeAborted) {
    if (m_sortMode == eSortNone) return;
    // The places are sorted and not the records, so that a sort that is broken off leaves them whole.
    std::vector<std::size_t> places(m_records.size());
    std::iota(places.begin(), places.end(), std::size_t{0});
    try {
        std::stable_sort(places.begin(), places.end(), [&](std::size_t a, std::size_t b) {
            if (canBeAborted && m_state->isAborted.load(std::memory_order_relaxed)) throw SortIsAborted();
            return (m_records[a] < m_records[b]) != 0;
        });
    } catch (SortIsAborted) {
        return;
    }
    // Every cycle of the order is gone round, so that after each the records are whole again.
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (canBeAborted && m_state->isAborted) return;
        if (places[i] == i) continue;
        CTovFindData first = std::move(m_records[i]);
        std::size_t place = i;
        while (places[place] != i) {
            m_records[place] = std::move(m_records[places[place]]);
            place = std::exchange(places[place], place);
        }
        m_records[place] = std::move(first);
        places[place] = place;
    }
}

void CTovFileList::FillNames(bool canBeAborted) {
    for (auto* const names : {&m_names, &m_alternateNames, &m_fullNames}) {
        names->clear();
        names->reserve(m_records.size());
    }
    for (CTovFindData const& record : m_records) {
        if (canBeAborted && m_state->isAborted) return;
        m_names.push_back(record.cFileName);
        m_alternateNames.push_back(record.cAlternateFileName);
        m_fullNames.push_back(record.GetFullFilename());
    }
}

void CTovFileList::Sort(eSortMode mode) {
    Claim const claim(*m_state, Claim::kOther);
    m_sortMode = mode;
    for (CTovFindData& record : m_records)
        record.m_sortMode = mode;
    SortRecords(false);
    FillNames(false);
}

CTovFindData const* CTovFileList::operator[](unsigned int index) const {
    return index < m_records.size() ? &m_records[index] : nullptr;
}

void CTovFileList::FindFile(char const* path, int addNames) {
    Claim const claim(*m_state, Claim::kOther);
    ++m_counter;
    CString const given = path != nullptr ? path : "";
    TellInDirectory(given);
    std::string const system = SystemPath(path);
    EntryFacts own;
    auto failure = FactsOfPath(system.c_str(), false, own);
    bool const isLink = !failure && own.kind == EntryKind::kLink;
    EntryFacts target;
    bool const isWhole = isLink && !FactsOfPath(system.c_str(), true, target);
    if (failure) {
        unsigned long const code = PathErrorCode(failure, system);
        if (code == TOV_ERROR_NOT_FOUND || code == TOV_ERROR_ACCESS_DENIED) return;
        std::scoped_lock const lock(m_state->guard);
        m_state->hasFailed = true;
        m_state->error = code;
        return;
    }
    EntryFacts const& facts = isWhole ? target : own;
    if (facts.kind == EntryKind::kDirectory) return;
    CTovFindData& record = m_records.emplace_back(this);
    FillFindData(LastPart(system), isLink, facts, record);
    record.SetFullFilename(given.c_str());
    if (addNames == 0) return;
    m_names.push_back(record.cFileName);
    m_alternateNames.push_back(record.cAlternateFileName);
    m_fullNames.push_back(record.GetFullFilename());
}

int CTovFileList::Failed() const {
    std::scoped_lock const lock(m_state->guard);
    return m_state->hasFailed;
}

unsigned long CTovFileList::GetLastError() const {
    std::scoped_lock const lock(m_state->guard);
    return m_state->error;
}

void CTovFileList::SetCallbackThreadBegin(ThreadCallback callback, unsigned long user) {
    m_begin = {callback, user};
}

void CTovFileList::SetCallbackThreadTerminate(TerminateCallback callback, unsigned long user) {
    m_terminate = {callback, user};
}

void CTovFileList::SetCallbackThreadAbort(ThreadCallback callback, unsigned long user) {
    m_aborted = {callback, user};
}

void CTovFileList::SetCallbackSearchDirectory(DirectoryCallback callback, unsigned long user) {
    m_searchDirectory = {callback, user};
}

void CTovFileList::SetCallbackSearchInDirectory(DirectoryCallback callback, unsigned long user) {
    m_searchInDirectory = {callback, user};
}

}  // namespace tov
