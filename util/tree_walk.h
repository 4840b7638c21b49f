// Lists a directory, or the whole tree below it, and keeps what matches.
//
// The order is fixed: a directory's children are listed, in the order in which the volume keeps them, before
// the first of them is entered, and a child is left before the next is entered. Further threads list
// directories that the walk has not come to yet, so that the walk finds them done; nothing can be told from
// the result.
//
// Links to directories are entered, unless they lead back to a directory that the way there has come through.
// Where the way goes through two links or more, a directory is entered once in a walk, so that links that
// lead to one another in every way (as those of device trees do) cannot multiply. What cannot be read, or is
// gone by the time that it is entered, is an empty directory.
#pragma once

#include "util/name_pattern.h"
#include "vesk/directory.h"

#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace tov {

// An entry that is no directory and matches one of the patterns.
struct TreeHit {
    std::uint32_t name;  // where it begins in TreeDirectory::names
    std::uint32_t length;
    bool isLink;
    EntryFacts facts;  // of a link: of what it leads to where that is there
};

struct TreeDirectory {
    TreeDirectory const* parent = nullptr;
    std::string name;    // of the root its whole path, with a separator at the end
    unsigned links = 0;  // on the way from the root, itself included
    EntryIdentity identity;
    std::vector<TreeDirectory*> children;
    std::vector<TreeHit> hits;
    std::string names;  // of the hits, each with a zero behind it
    std::error_code failure;

    std::string Path() const;
    std::string_view NameOf(TreeHit const& hit) const {
        return std::string_view(names).substr(hit.name, hit.length);
    }

 private:
    friend class TreeWalk;
    class Place;
    enum : int { kWaiting, kTaken, kDone };

    std::shared_ptr<Place> m_place;  // of the parent, while that is kept open
    std::atomic<int> m_state{kWaiting};
};

class TreeWalk {
 public:
    // The root ends in a separator. The walk ends soon after `stop`, which must outlive it, has become true.
    TreeWalk(std::string const& root, std::vector<NamePattern> patterns, bool isRecursive,
             std::atomic<bool> const& stop);
    ~TreeWalk();
    TreeWalk(TreeWalk const&) = delete;
    TreeWalk& operator=(TreeWalk const&) = delete;

    // Lists everything. `found` is called, on this thread, for every directory below the root as its turn
    // comes. Ends at the first directory that could not be listed for a reason that is not overlooked, and
    // answers it.
    // No thread is left behind; to take down a large result takes its time.
    std::error_code Run(std::function<void(TreeDirectory const&)> const& found);

    // In the order of the walk, the root first. Theirs is what has been listed until now.
    std::vector<TreeDirectory*> const& Directories() const { return m_order; }

    std::vector<NamePattern> const& Patterns() const { return m_patterns; }

 private:
    class Crew;
    friend class TreeDirectory::Place;
    using Shelf = std::deque<TreeDirectory>;  // keeps its directories in place

    std::error_code Enter(std::function<void(TreeDirectory const&)> const& found);
    static bool Take(TreeDirectory& directory);

    // False when a helper found no descriptor: the walk's own thread lists the directory then, alone.
    bool List(TreeDirectory& directory, Shelf& shelf);
    std::error_code ListEntries(TreeDirectory& directory, Shelf& shelf);
    std::error_code OpenDirectory(TreeDirectory& directory, Directory& opened);
    void ClosePlaces();

    std::vector<NamePattern> const m_patterns;
    bool const m_isRecursive;
    std::atomic<bool> const& m_stop;
    std::mutex m_placesGuard;
    std::vector<TreeDirectory::Place*> m_places;   // those that are open
    std::size_t m_mostPlaces;                      // under the same guard; 0 when descriptors have run out
    std::atomic<bool> m_isAlone{false};            // since then
    std::deque<Shelf> m_shelves;                   // one of each thread
    std::set<EntryIdentity> m_enteredBehindLinks;  // behind two or more; touched by the walk's own thread
    unsigned m_returns = 0;                        // to those
    std::vector<TreeDirectory*> m_order;
    std::unique_ptr<Crew> m_crew;
};

}  // namespace tov
