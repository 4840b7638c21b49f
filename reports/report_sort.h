// Sorts the rows of a report. The order is that of the keys; rows that are equal by all of them stand in the
// order of their real indexes, turned round if the first key descends.
#pragma once

#include <tov310/report_items.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <stop_token>
#include <vector>

namespace tov {

// The beginning of a text in a form whose bytes, as one large number, stand in the order of the texts. Where
// two of them are equal the texts decide.
struct CTovTextRank {
    std::uint64_t high = 0;
    std::uint64_t low = 0;

    friend constexpr bool operator==(CTovTextRank const&, CTovTextRank const&) = default;
};

// False where a text has none: it begins with bytes that are no characters.
bool TovRankText(eTovSortKey kind, char const* text, CTovTextRank& rank);

class CTovReportSort {
 public:
    using Items = std::vector<std::unique_ptr<CTovReportViewItem>>;

    // The items are borrowed, and not changed.
    CTovReportSort(Items const& items, std::vector<SORT_STATE_REALCOL> keys);

    void Sort(std::vector<unsigned int>& rows);

    // The same in two steps. Prepare asks the rows for their keys, and answers false where they do not tell;
    // what follows needs the items no more, and may be done on another thread. It tells how far it is in
    // percent, and answers false, with the rows in any order, when it was asked to stop.
    bool Prepare(std::vector<unsigned int>& rows);
    bool SortPrepared(std::vector<unsigned int>& rows, std::stop_token const& stop,
                      std::atomic<unsigned int>& percent);

 private:
    struct NoWatch {
        void Count() {}
    };
    class Watch;

    struct Text {
        CTovTextRank rank;
        char const* text;
    };

    // What the rows sort by in one column, in the order of the rows.
    struct Column {
        int direction = 1;  // -1: descending
        eTovSortKey kind = eSortKeyNone;
        std::vector<double> numbers;
        std::vector<char> letters;  // all texts with their ends, one behind the other
        std::vector<std::size_t> starts;
        std::vector<CTovTextRank> ranks;
        bool ranked = true;

        void Begin(eTovSortKey itsKind, bool ascending, std::size_t count);
        void Add(double number, CString const& text);
        Text TextAt(std::size_t place) const;
        int Compare(double a, double b) const;
        int Compare(Text const& a, Text const& b) const;
        int CompareAt(std::size_t a, std::size_t b) const;
    };

    bool Extract(std::vector<unsigned int> const& rows);
    template <class Watcher>
    void SortByKeys(std::vector<unsigned int>& rows, Watcher& watch) const;
    template <class First, class Watcher>
    void SortByFirst(std::vector<unsigned int>& rows, First const& first, Watcher& watch) const;
    template <class First, class Second, class Watcher>
    void SortByTwo(std::vector<unsigned int>& rows, First const& first, Second const& second,
                   Watcher& watch) const;
    void SortByItems(std::vector<unsigned int>& rows) const;

    Items const& m_items;
    std::vector<SORT_STATE_REALCOL> m_keys;  // up to the one that ends them
    bool m_ascending;                        // the order of what is equal
    std::vector<Column> m_columns;
};

}  // namespace tov
