// Sorts the rows of a report. The order is that of the keys; rows that are equal by all of them stand in the
// order of their real indexes, turned round if the first key descends.
#pragma once

#include <tov310/report_items.h>

#include <memory>
#include <vector>

namespace tov {

class CTovReportSort {
 public:
    using Items = std::vector<std::unique_ptr<CTovReportViewItem>>;

    // The items are borrowed, and not changed.
    CTovReportSort(Items const& items, std::vector<SORT_STATE_REALCOL> keys);

    void Sort(std::vector<unsigned int>& rows);

 private:
    // What the rows sort by in one column, in the order of the rows.
    struct Column {
        bool ascending = true;
        eTovSortKey kind = eSortKeyNone;
        std::vector<double> numbers;
        std::vector<char> letters;  // all texts with their ends, one behind the other
        std::vector<std::size_t> texts;

        char const* Text(unsigned int place) const { return letters.data() + texts[place]; }
        int Compare(unsigned int a, unsigned int b) const;
    };

    bool Extract(std::vector<unsigned int> const& rows);
    bool Extract(std::vector<unsigned int> const& rows, unsigned int col, Column& column) const;
    bool RestStandsBefore(unsigned int a, unsigned int b) const;
    void SortByItems(std::vector<unsigned int>& rows) const;
    template <class Key, class Compare>
    void SortByFirst(std::vector<unsigned int>& rows, Key const& keyOf, Compare const& compare) const;

    Items const& m_items;
    std::vector<SORT_STATE_REALCOL> m_keys;  // up to the one that ends them
    bool m_ascending;                        // the order of what is equal
    std::vector<Column> m_columns;
};

}  // namespace tov
