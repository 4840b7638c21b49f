#include "util/tree_walk.h"

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <mutex>
#include <new>
#include <thread>
#include <utility>

namespace tov {

// An open directory whose children have not all been entered: they are opened from here. Only so many are
// kept; the children of others are opened by their paths.
class TreeDirectory::Place {
 public:
    // Keeps the directory, unless there are enough of them.
    Place(TreeWalk& walk, Directory&& opened) : m_walk(walk) {
        std::scoped_lock const lock(walk.m_placesGuard);
        if (walk.m_places.size() >= walk.m_mostPlaces) return;
        walk.m_places.push_back(this);
        m_directory = std::move(opened);
        m_isKept = true;
    }
    Place(Place const&) = delete;
    Place& operator=(Place const&) = delete;
    ~Place() {
        std::scoped_lock const lock(m_walk.m_placesGuard);
        std::erase(m_walk.m_places, this);
    }

    // Whether it was kept at first.
    explicit operator bool() const { return m_isKept; }

    // False when the place has been closed meanwhile.
    bool Open(char const* entry, Directory& target, std::error_code& result) {
        std::scoped_lock const lock(m_guard);
        if (!m_directory) return false;
        result = m_directory.OpenEntry(entry, true, target);
        return true;
    }

    void Close() {
        std::scoped_lock const lock(m_guard);
        m_directory = {};
    }

 private:
    TreeWalk& m_walk;
    bool m_isKept = false;
    std::mutex m_guard;  // taken last
    Directory m_directory;
};

namespace {

constexpr std::size_t mostOpenPlaces = 128;
constexpr std::size_t shareOfPlaces = 8;  // of the files that the process may open; the rest is the host's
constexpr std::size_t smallTree = 16;     // directories that one thread lists sooner than a second one starts
constexpr unsigned mostHelpers = 3;
constexpr unsigned freeLinks = 1;         // on a way that is gone whatever was entered before
constexpr unsigned mostReturns = 10'000;  // by ways with more of them

// What befalls one directory of many and is no reason to end: no right to read it, or it is gone.
bool IsOverlooked(std::error_code error) {
    switch (error.value()) {
        case EACCES:
        case EPERM:
        case ENOENT:
        case ENOTDIR:
        case ELOOP:
        case ESRCH:  // so the directories of a process that has ended answer
            return true;
        default:
            return false;
    }
}

bool IsWantOfDescriptors(std::error_code error) {
    return error.value() == EMFILE || error.value() == ENFILE;
}

}  // namespace

std::string TreeDirectory::Path() const {
    std::size_t length = 0;
    for (TreeDirectory const* d = this; d != nullptr; d = d->parent)
        length += d->name.size() + (d->parent != nullptr ? 1 : 0);
    std::string path(length, '/');
    for (TreeDirectory const* d = this; d != nullptr; d = d->parent) {
        length -= d->name.size() + (d->parent != nullptr ? 1 : 0);
        d->name.copy(path.data() + length, d->name.size());
    }
    return path;
}

// The further threads and the directories that wait for them, what the walk comes to last in front. The walk
// goes through the tree from its beginning and a helper from its end, so that they meet once.
class TreeWalk::Crew {
 public:
    explicit Crew(TreeWalk& walk) : m_walk(walk) {
        unsigned const wanted = std::min(std::max(std::thread::hardware_concurrency(), 1u) - 1, mostHelpers);
        walk.m_shelves.resize(1 + wanted);
        m_threads.reserve(wanted);
        try {
            for (unsigned i = 1; i <= wanted; ++i)
                m_threads.emplace_back([this, &shelf = walk.m_shelves[i]] { Work(shelf); });
        } catch (std::exception const&) {
            // The walk goes on with those that there are.
        }
    }
    ~Crew() {
        {
            std::scoped_lock const lock(m_guard);
            m_isOver = true;
        }
        m_wake.notify_all();
        for (std::thread& thread : m_threads)
            thread.join();
    }
    Crew(Crew const&) = delete;
    Crew& operator=(Crew const&) = delete;

    void Add(std::vector<TreeDirectory*> const& directories) {
        bool isAsleep = false;
        {
            std::scoped_lock const lock(m_guard);
            m_waiting.insert(m_waiting.end(), directories.rbegin(), directories.rend());
            isAsleep = m_sleepers != 0;
        }
        if (isAsleep) m_wake.notify_all();
    }

 private:
    void Work(Shelf& shelf) {
        std::unique_lock lock(m_guard);
        while (!m_isOver) {
            if (m_waiting.empty()) {
                ++m_sleepers;
                m_wake.wait(lock);
                --m_sleepers;
                continue;
            }
            TreeDirectory& directory = *m_waiting.front();
            m_waiting.pop_front();
            lock.unlock();
            // What is entered once depends on the order, so the walk alone enters it.
            bool const isMine = directory.links <= freeLinks && Take(directory);
            bool const isListed = isMine && m_walk.List(directory, shelf);
            lock.lock();
            if (isMine && !isListed) return;
            // Nobody changes the children any more. What finds no memory to wait in is left to the walk.
            try {
                if (isListed)
                    m_waiting.insert(m_waiting.begin(), directory.children.rbegin(),
                                     directory.children.rend());
            } catch (std::bad_alloc const&) {
                return;
            }
        }
    }

    TreeWalk& m_walk;
    std::mutex m_guard;
    std::condition_variable m_wake;
    std::deque<TreeDirectory*> m_waiting;  // some of them taken meanwhile
    std::size_t m_sleepers = 0;
    bool m_isOver = false;
    std::vector<std::thread> m_threads;
};

TreeWalk::TreeWalk(std::string const& root, std::vector<NamePattern> patterns, bool isRecursive,
                   std::atomic<bool> const& stop)
    : m_patterns(std::move(patterns)),
      m_isRecursive(isRecursive),
      m_stop(stop),
      m_mostPlaces(std::min(mostOpenPlaces, OpenFilesLimit() / shareOfPlaces)) {
    TreeDirectory& directory = m_shelves.emplace_back().emplace_back();
    directory.name = root;
    m_order.push_back(&directory);
}

TreeWalk::~TreeWalk() = default;

bool TreeWalk::Take(TreeDirectory& directory) {
    int waiting = TreeDirectory::kWaiting;
    return directory.m_state.compare_exchange_strong(waiting, TreeDirectory::kTaken);
}

std::error_code TreeWalk::OpenDirectory(TreeDirectory& directory, Directory& opened) {
    std::error_code failure;
    auto const place = std::exchange(directory.m_place, nullptr);
    if (place == nullptr || !place->Open(directory.name.c_str(), opened, failure))
        failure = Directory::Open(directory.Path(), opened);
    EntryFacts facts;
    if (!failure) failure = opened.FactsOf("", false, facts);
    directory.identity = facts.identity;
    return failure;
}

void TreeWalk::ClosePlaces() {
    std::scoped_lock const lock(m_placesGuard);
    for (TreeDirectory::Place* const place : m_places)
        place->Close();
    m_places.clear();
    m_mostPlaces = 0;
}

bool TreeWalk::List(TreeDirectory& directory, Shelf& shelf) {
    try {
        auto failure = ListEntries(directory, shelf);
        if (IsWantOfDescriptors(failure)) {
            // The search must not fail for what it takes for its own speed.
            m_isAlone = true;
            ClosePlaces();
            if (&shelf != &m_shelves.front()) {
                directory.m_state.store(TreeDirectory::kWaiting);
                directory.m_state.notify_all();
                return false;
            }
            m_crew.reset();
            failure = ListEntries(directory, shelf);
        }
        bool const isRoot = directory.parent == nullptr;
        bool const isDenied = failure.value() == EACCES || failure.value() == EPERM;
        if (isRoot ? !isDenied : !IsOverlooked(failure)) directory.failure = failure;
    } catch (std::exception const&) {
        directory.failure = std::make_error_code(std::errc::not_enough_memory);
    }
    directory.m_state.store(TreeDirectory::kDone);
    directory.m_state.notify_all();
    return true;
}

std::error_code TreeWalk::ListEntries(TreeDirectory& directory, Shelf& shelf) {
    Directory opened;
    if (auto const failure = OpenDirectory(directory, opened)) return failure;
    if (directory.links != 0) {
        for (TreeDirectory const* d = directory.parent; d != nullptr; d = d->parent) {
            if (d->identity == directory.identity) return {};
        }
    }
    if (directory.links > freeLinks && !m_enteredBehindLinks.insert(directory.identity).second &&
        ++m_returns > mostReturns)
        return {};
    DirectoryReader reader(opened);
    DirectoryReader::Entry entry;
    while (!m_stop.load(std::memory_order_relaxed) && reader.Next(entry)) {
        bool const isWanted = std::any_of(m_patterns.begin(), m_patterns.end(),
                                          [&entry](NamePattern const& p) { return p.Matches(entry.name); });
        EntryKind kind = entry.kind;
        EntryFacts facts;
        bool isLink = kind == EntryKind::kLink;
        if (!isWanted && (!m_isRecursive || kind == EntryKind::kFile || kind == EntryKind::kOther)) continue;
        if (kind != EntryKind::kDirectory) {
            // What a link leads to is asked first, since most lead somewhere; and of an entry of unknown
            // kind, whether it is a link.
            auto failure = opened.FactsOf(entry.name.data(), isLink, facts);
            if (failure == std::errc::no_such_file_or_directory && !isLink) continue;  // gone in between
            if (!failure && !isLink && facts.kind == EntryKind::kLink) {
                isLink = true;
                EntryFacts target;
                if (!opened.FactsOf(entry.name.data(), true, target)) facts = target;
            } else if (failure && isLink) {
                failure = opened.FactsOf(entry.name.data(), false, facts);
                if (failure == std::errc::no_such_file_or_directory) continue;
            }
            if (!failure) kind = facts.kind;
        }
        if (kind == EntryKind::kDirectory) {
            if (!m_isRecursive) continue;
            TreeDirectory& child = shelf.emplace_back();
            child.parent = &directory;
            child.name = entry.name;
            child.links = directory.links + (isLink ? 1 : 0);
            directory.children.push_back(&child);
        } else if (isWanted) {
            directory.hits.push_back({static_cast<std::uint32_t>(directory.names.size()),
                                      static_cast<std::uint32_t>(entry.name.size()), isLink, facts});
            directory.names.append(entry.name).push_back('\0');
        }
    }
    if (!directory.children.empty() && !m_isAlone) {
        auto const place = std::make_shared<TreeDirectory::Place>(*this, std::move(opened));
        for (std::size_t i = *place ? 0 : directory.children.size(); i < directory.children.size(); ++i)
            directory.children[i]->m_place = place;
    }
    return reader.Failure();
}

std::error_code TreeWalk::Run(std::function<void(TreeDirectory const&)> const& found) {
    auto const failure = Enter(found);
    m_crew.reset();
    return failure;
}

std::error_code TreeWalk::Enter(std::function<void(TreeDirectory const&)> const& found) {
    struct Level {
        TreeDirectory* directory;
        std::size_t next;
    };
    std::vector<Level> way;
    TreeDirectory* entered = m_order.front();
    for (;;) {
        bool isMine = Take(*entered);
        while (!isMine && entered->m_state != TreeDirectory::kDone) {
            entered->m_state.wait(TreeDirectory::kTaken);
            isMine = Take(*entered);  // a helper may give it back
        }
        if (isMine) {
            List(*entered, m_shelves.front());
            if (m_crew != nullptr && !entered->children.empty()) m_crew->Add(entered->children);
        }
        if (m_stop) return {};
        if (entered->failure) return entered->failure;
        for (TreeDirectory* const child : entered->children) {
            m_order.push_back(child);
            found(*child);
            if (m_stop) return {};
        }
        if (m_crew == nullptr && m_isRecursive && !m_isAlone && m_order.size() > smallTree) {
            m_crew = std::make_unique<Crew>(*this);
            m_crew->Add({m_order.begin() + 1, m_order.end()});
        }
        way.push_back({entered, 0});
        while (!way.empty() && way.back().next == way.back().directory->children.size())
            way.pop_back();
        if (way.empty()) break;
        entered = way.back().directory->children[way.back().next++];
    }
    return {};
}

}  // namespace tov
