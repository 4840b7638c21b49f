// Searches a directory, or the whole tree below it, for the files that match one or more patterns.
//
// A pattern is a name with wildcards: "*" stands for any text, "?" for one character, "*.*" for every name.
// The case of letters does not count. Both "/" and "\" separate directories in a path that is given; in what
// is found "/" does, and every name stands as it is on the volume.
#pragma once

#include <tov310/export.h>
#include <tov310/find_data.h>
#include <tov310/object.h>
#include <tov310/types.h>

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace tov {

class CTovFileList;

// One found file.
class TOV_CORE_API CTovFindData : public WIN32_FIND_DATAA {
 public:
    // Of a list, or of none. The list may be gone before the record and its copies are.
    explicit CTovFindData(CTovFileList const* owner = nullptr);
    CTovFindData(CTovFindData const&) = default;
    CTovFindData(CTovFindData&&) = default;
    CTovFindData& operator=(CTovFindData const&) = default;
    CTovFindData& operator=(CTovFindData&&) = default;
    virtual ~CTovFindData();

    // Whether this record stands before the other by the sort mode of its list, a copy by the one at the time
    // of copying; without a list as by eSortFilename. No record stands before another by eSortNone.
    virtual int operator<(CTovFindData const& other) const;

    CString const& GetFullFilename() const { return m_fullFilename; }
    void SetFullFilename(char const* name) { m_fullFilename = name != nullptr ? name : ""; }
    void SetFullFilename(CString name) { m_fullFilename = std::move(name); }

    operator WIN32_FIND_DATAA*() { return this; }

 private:
    CString m_fullFilename;
    int m_sortMode;  // the list changes it in the records that are its own
    friend class CTovFileList;
};

// The search. It runs in the caller's thread (DoIt) or in one of its own (Search), and can be run again; the
// records of earlier runs stay unless Abort has emptied them.
//
// While a search runs, other threads may call Abort, Wait, Sort, Failed and GetLastError, and nothing else.
// Callbacks run in the search's thread, that of Abort in the thread that aborts; they may call everything but
// Search and DoIt, which do nothing there, and must not destroy the list.
//
// The order of what is found: directories first to last, in each the patterns one after another, in each of
// those the order of the volume. Of the directories the searched one is the first; a directory's children are
// listed before any of them is entered. A file that matches two patterns is found twice. A file that cannot
// be asked for its data is found with its name alone.
//
// Links to directories are entered like directories, but not where they lead back to one that the path has
// come through. Directories that may not be read, or are gone when their turn comes, are empty ones; any
// other failure, a missing directory in the search path included (3), ends the search.
class TOV_CORE_API CTovFileList : public CObject {
    TOV_DYNAMIC(CTovFileList, CObject)
 public:
    enum eSortMode : int {
        eSortNone = 0,               // the order in which they were found
        eSortFilename = 1,           // Z to A, by bytes
        eSortFullFilename = 2,       // A to Z, by bytes
        eSortAlternateFilename = 3,  // Z to A, by bytes
        eSortCreationTime = 4,       // oldest first, as the next two
        eSortLastWriteTime = 5,
        eSortLastAccessTime = 6,
        eSortSize = 7,  // smallest first
    };

    using ThreadCallback = void (*)(unsigned long user);
    using TerminateCallback = void (*)(unsigned long user, int aborted);
    using DirectoryCallback = void (*)(unsigned long user, int counter, char const* path);

    // The search path is a directory and the first pattern, such as "/data/*.txt". One without a directory,
    // or with nothing before its only separator, finds nothing and is no failure. With `runInBackground` 0
    // and `startNow` not 0 the search is done in the constructor.
    CTovFileList(char const* searchPath, int recursive, int runInBackground, int startNow);

    // The same with further patterns: the first text is the search path, the others are added as by
    // AddSearchPattern, those that it refuses left out.
    CTovFileList(std::vector<CString> const& searchPatterns, int recursive, int runInBackground,
                 int startNow);

    // Ends a running search and waits for it.
    ~CTovFileList() override;

    CTovFileList(CTovFileList const&) = delete;
    CTovFileList& operator=(CTovFileList const&) = delete;

    // Searches in a thread of its own, after the end of a search that is running. Posts to the window, if
    // any: BEGIN (0, 0), SEARCHDIRECTORY (counter, 0) for every directory that is found, TERMINATE (1 when
    // aborted, 0) at the end, when the records are free for others already. Sends FILESEARCHINDIRECTORY
    // (counter, text of the path with the pattern) before a directory is searched for files, and waits at
    // most 100 ms for the answer. The callbacks are called right after; what they throw ends the search as
    // aborted. Throws std::bad_alloc when there is no thread to be had.
    void Search(HWND window);

    // The same in the calling thread, without BEGIN and TERMINATE and their callbacks.
    void DoIt();

    // Waits for the end of a running search. In a callback of the search itself it does not wait.
    void Wait();

    // Ends the search, waits, empties the records and the names, posts ABORT (0, 0) and calls its callback.
    void Abort();

    // Adds a pattern and answers 1, also when it is there already. 0 for one with a separator.
    int AddSearchPattern(char const* pattern);

    // Waits for the end of a running search and sorts; records that are alike stay in their order. Later
    // searches sort likewise. eSortNone leaves the order as it is.
    void Sort(eSortMode mode);
    eSortMode SortMode() const { return m_sortMode; }

    // Null behind the last record. Records stay in place until the list is sorted, searched again, aborted or
    // given one more by FindFile.
    virtual CTovFindData const* operator[](unsigned int index) const;
    virtual unsigned int Size() const { return static_cast<unsigned int>(m_records.size()); }

    // One text for each record, as of the end of the last search that was not ended early.
    std::vector<CString> const& AllFilenames() const { return m_names; }
    std::vector<CString> const& AllAlternateFilenames() const { return m_alternateNames; }
    std::vector<CString> const& AllFullFilenames() const { return m_fullNames; }

    // Adds one file, named without wildcards, as a search for it would; `addNames` adds its names too. A
    // missing file, a directory and one in a directory that may not be read add nothing. Another failure can
    // be asked for afterwards and does not count as the end of a search.
    void FindFile(char const* path, int addNames);

    // Whether the search was ended by a failure, and its code of system_error.h.
    int Failed() const;
    unsigned long GetLastError() const;

    // To be set while no search runs. The counter counts the directories that were found, and then, from 1
    // again, the searches in a directory by a pattern. Paths of directories end in a separator.
    void SetCallbackThreadBegin(ThreadCallback callback, unsigned long user);
    void SetCallbackThreadTerminate(TerminateCallback callback, unsigned long user);
    void SetCallbackThreadAbort(ThreadCallback callback, unsigned long user);
    void SetCallbackSearchDirectory(DirectoryCallback callback, unsigned long user);
    void SetCallbackSearchInDirectory(DirectoryCallback callback, unsigned long user);

 private:
    struct State;
    struct Litter;
    class Claim;
    template <class Callback>
    struct Told {
        Callback callback = nullptr;
        unsigned long user = 0;
    };

    void RunThread();
    void SearchNow(Litter& litter);
    void SearchDirectories(Litter& litter);
    void SortRecords(bool canBeAborted);
    void FillNames(bool canBeAborted);
    void TellDirectory(CString const& path);
    void TellInDirectory(CString const& path);
    void Empty();

    CString m_searchPath;
    bool m_isRecursive;
    eSortMode m_sortMode = eSortNone;
    std::vector<CTovFindData> m_records;
    std::vector<CString> m_patterns;  // those that were added
    HWND m_window;
    std::vector<CString> m_names;
    std::vector<CString> m_alternateNames;
    std::vector<CString> m_fullNames;
    int m_counter = 0;
    Told<ThreadCallback> m_begin;
    Told<TerminateCallback> m_terminate;
    Told<ThreadCallback> m_aborted;
    Told<DirectoryCallback> m_searchDirectory;
    Told<DirectoryCallback> m_searchInDirectory;
    std::unique_ptr<State> m_state;  // what other threads may touch
};

}  // namespace tov
