// The search runs in a thread of its own and tells a window without anything to see how far it is; the main
// thread answers it, writes the progress and watches for interrupts.
#include "find.h"

#include "answer.h"
#include "table.h"
#include "terminal.h"
#include "text.h"

#include <tov310/compare.h>
#include <tov310/file_list.h>
#include <tov310/messages.h>
#include <tov310/system_error.h>
#include <tov310/window.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <ctime>
#include <iostream>
#include <mutex>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace survey {
namespace {

using Clock = std::chrono::steady_clock;
using List = tov::CTovFileList;
using Records = std::vector<tov::CTovFindData const*>;

enum class Order { kFound, kName, kPath, kSize, kTime };

struct Search {
    std::string directory;
    std::vector<std::string> patterns;  // at least one
    bool flat = false;                  // the directory alone and nothing below
    Order order = Order::kFound;
};

constexpr unsigned patience = 50;                     // ms until an interrupt is noticed
constexpr std::chrono::milliseconds redrawTime{100};  // a line that changes faster cannot be read

// Any thread may be the one that the signal comes to.
std::atomic<bool> wasInterrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free);

void NoteInterrupt(int) {
    wasInterrupted = true;
}

// While it lives an interrupt is noted and does not end the program. Who started the program so that it
// ignores interrupts keeps that.
class InterruptWatch {
 public:
    InterruptWatch() : m_before(std::signal(SIGINT, NoteInterrupt)) {
        if (m_before == SIG_IGN) std::signal(SIGINT, SIG_IGN);
    }
    ~InterruptWatch() { std::signal(SIGINT, m_before); }
    InterruptWatch(InterruptWatch const&) = delete;
    InterruptWatch& operator=(InterruptWatch const&) = delete;

 private:
    void (*m_before)(int);
};

std::string Count(std::size_t number, char const* one, char const* more) {
    return std::to_string(number) + " " + (number == 1 ? one : more);
}

bool IsRoot(std::string_view folder) {
    return folder.find_first_not_of('/') == folder.npos;
}

class SearchWindow : public tov::CTovMessageWindow {
 public:
    explicit SearchWindow(Search const& search)
        : m_list(SearchTexts(search.directory, search.patterns), !search.flat, 1, 0) {
        constexpr List::eSortMode modes[] = {List::eSortNone, List::eSortNone, List::eSortFullFilename,
                                             List::eSortSize, List::eSortLastWriteTime};
        // What is told to an empty list counts for the search, which then sorts in its own thread.
        m_list.Sort(modes[static_cast<int>(search.order)]);
    }

    List& Files() { return m_list; }

    // Whether the search came to its end; not when it was interrupted.
    bool Run() {
        if (!Create()) throw std::runtime_error("no search can be begun");
        InterruptWatch const watch;
        static_assert(sizeof(unsigned long) >= sizeof(this));
        auto const user = reinterpret_cast<unsigned long>(this);
        if (m_line.IsShown()) {
            m_list.SetCallbackSearchDirectory(NoteDirectory, user);
            m_list.SetCallbackSearchInDirectory(NoteFiles, user);
            m_list.Search(GetSafeHwnd());
        } else {
            // The search waits for a window at every folder; one that shows nothing is told of the end alone.
            m_list.SetCallbackThreadTerminate(TellEnd, user);
            m_list.Search({});
        }
        while (!m_isOver && !wasInterrupted) {
            if (tov::TovWaitForPosts(patience)) tov::TovDispatchPosts();
            ShowProgress();
        }
        if (m_isOver) {
            m_list.Wait();
        } else {
            m_list.Abort();
        }
        m_line.Clear();
        return m_isOver;
    }

    tov::LRESULT WindowProc(unsigned message, tov::WPARAM wParam, tov::LPARAM lParam) override {
        switch (message) {
            case tov::WM_TOV_FILESEARCHTHREAD_SEARCHDIRECTORY:
                m_directories = wParam + 1;  // that in which the search begins is not told
                return 0;
            case tov::WM_TOV_FILESEARCHTHREAD_FILESEARCHINDIRECTORY: {
                std::string_view const path = reinterpret_cast<char const*>(lParam);
                std::scoped_lock const lock(m_guard);
                m_path = path.substr(0, path.rfind('/') + 1);
                return 0;
            }
            case tov::WM_TOV_FILESEARCHTHREAD_TERMINATE:
                m_isOver = true;
                return 0;
            default:
                return CTovMessageWindow::WindowProc(message, wParam, lParam);
        }
    }

 private:
    // These are called by the search's thread.
    static void TellEnd(unsigned long user, int aborted) {
        tov::TovPostMessage(reinterpret_cast<SearchWindow*>(user)->GetSafeHwnd(),
                            tov::WM_TOV_FILESEARCHTHREAD_TERMINATE, static_cast<tov::WPARAM>(aborted));
    }
    static void NoteDirectory(unsigned long user, int, char const* path) {
        auto& window = *reinterpret_cast<SearchWindow*>(user);
        std::scoped_lock const lock(window.m_guard);
        window.m_path = path;
    }
    static void NoteFiles(unsigned long user, int, char const*) {
        auto& window = *reinterpret_cast<SearchWindow*>(user);
        std::scoped_lock const lock(window.m_guard);
        window.m_found = window.m_list.Size();
    }

    void ShowProgress() {
        auto const now = Clock::now();
        if (!m_line.IsShown() || now - m_drawn < redrawTime) return;
        m_drawn = now;
        std::string path;
        std::size_t found = 0;
        {
            std::scoped_lock const lock(m_guard);
            path = m_path;
            found = m_found;
        }
        m_line.Show(Count(m_directories, "folder, ", "folders, ") + Count(found, "file: ", "files: "),
                    Shown(path));
    }

    StatusLine m_line;
    Clock::time_point m_drawn = Clock::now();
    std::size_t m_directories = 1;
    bool m_isOver = false;
    std::mutex m_guard;
    std::string m_path;
    std::size_t m_found = 0;
    List m_list;  // the last, so that its thread ends before anything that it uses
};

// In the user's time zone; empty for none.
std::string TimeText(tov::FILETIME time) {
    using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
    using namespace std::chrono_literals;
    if (time.ticks == 0) return "";
    constexpr std::chrono::sys_days begin = 1601y / 1 / 1;
    auto const when = begin + std::chrono::floor<std::chrono::seconds>(Ticks(time.ticks));
    std::time_t const seconds = when.time_since_epoch().count();
    char text[64];
    std::tm const* const local = std::localtime(&seconds);
    return local == nullptr ? ""
                            : std::string(text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M", local));
}

// What was found, each file once though it may match several patterns.
Records FoundFiles(List const& list, Order order) {
    Records files;
    std::unordered_set<std::string_view> seen;
    for (unsigned i = 0; i < list.Size(); ++i) {
        if (seen.insert(list[i]->GetFullFilename()).second) files.push_back(list[i]);
    }
    if (order == Order::kName) {
        // The list would begin with Z; people look for "site 9" before "site 10".
        std::ranges::stable_sort(files, [](auto const* a, auto const* b) {
            return tov::TovCompareNoCaseIS(a->cFileName.c_str(), b->cFileName.c_str()) < 0;
        });
    }
    return files;
}

Order ReadOrder(std::string_view text) {
    constexpr std::pair<std::string_view, Order> orders[] = {
        {"name", Order::kName}, {"path", Order::kPath}, {"size", Order::kSize}, {"time", Order::kTime}};
    for (auto const& [name, order] : orders) {
        if (text == name) return order;
    }
    throw UsageError("--sort: name, path, size or time, not " + Quoted(text));
}

void TakeWord(std::string_view word, Search& search) {
    if (search.directory.empty()) {
        if (word.empty()) throw UsageError("find: the name of the folder is empty");
        search.directory = word;
        return;
    }
    if (word.empty()) throw UsageError("find: a pattern is empty");
    if (word.find_first_of("/\\") != word.npos)
        throw UsageError("find: a pattern is for names of files, without \"/\" and \"\\\"");
    search.patterns.emplace_back(word);
}

Search ReadSearch(Arguments& arguments, CommonOptions& common) {
    Search search;
    while (arguments.Next()) {
        if (TakeCommon(arguments, common)) continue;
        std::string_view const name = arguments.Name();
        if (arguments.IsFile()) {
            TakeWord(name, search);
        } else if (name == "--sort") {
            search.order = ReadOrder(arguments.Value());
        } else if (name == "--flat") {
            search.flat = arguments.Flag();
        } else if (name == "--recursive") {
            search.flat = !arguments.Flag();
        } else {
            arguments.Unknown();
        }
    }
    if (search.patterns.empty() && !common.help) throw UsageError("find needs a folder and a pattern");
    return search;
}

}  // namespace

// The list's first text is folder and pattern in one. It searches nothing when its only separator comes
// first, so the root has two.
std::vector<tov::CString> SearchTexts(std::string_view folder, std::vector<std::string> const& patterns) {
    std::vector<tov::CString> texts(patterns.begin(), patterns.end());
    std::string way(folder.substr(0, folder.find_last_not_of('/') + 1));
    way += IsRoot(folder) ? "//" : "/";
    texts.front().insert(0, way);
    return texts;
}

std::string FindHelp() {
    return R"(Searches DIR and the folders below it for files whose names match a pattern, in which
* is any text and ? any character; put it in quotes. Folders that may not be read are
skipped. A terminal shows the progress; Ctrl-C ends the search.

  --flat                 only DIR itself; --recursive takes that back
  --sort ORDER           name (site9 before site10), path, size (smallest first) or
                         time (oldest first); otherwise as they are found
)";
}

int RunFind(Arguments& arguments, CommonOptions& common) {
    Search const search = ReadSearch(arguments, common);
    LoadLanguage(common.language);
    if (common.help) return kFine;
    SearchWindow window(search);
    if (!window.Run()) {
        Complain() << "the search was aborted\n";
        return kAborted;
    }
    List const& list = window.Files();
    if (list.Failed()) {
        unsigned long const code = list.GetLastError();
        Complain() << Shown(search.directory) << ": " << tov::TovSystemErrorText(code) << " (" << code
                   << ")\n";
        return kUnreadable;
    }
    Records const files = FoundFiles(list, search.order);
    if (files.empty()) {
        std::cout << "No file found.\n";
        return kNotAll;
    }
    Table table({{"Size", Table::Align::kNumber}, {"Changed"}, {"File"}});
    for (auto const* const file : files) {
        std::string_view name = file->GetFullFilename();
        if (IsRoot(search.directory)) name.remove_prefix(1);
        table.Add({std::to_string(file->FileSize()), TimeText(file->ftLastWriteTime), Shown(name)});
    }
    table.Print(std::cout);
    std::cout << '\n' << Count(files.size(), "file found.\n", "files found.\n");
    return kFine;
}

}  // namespace survey
