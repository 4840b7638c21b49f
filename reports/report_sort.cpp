#include "reports/report_sort.h"

#include <tov310/compare.h>

#include "util/compare_doubles.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace tov {
namespace {

// Merging needs no strict order: the tolerance by which numbers compare has none.
template <class Entry, class Before>
void SortEntries(std::vector<Entry>& entries, Before const& before) {
    std::stable_sort(entries.begin(), entries.end(), before);
}

int CompareTexts(eTovSortKey kind, char const* a, char const* b) {
    switch (kind) {
        case eSortKeyTextIS:
            return TovCompareIS(a, b);
        case eSortKeyTextNoCaseIS:
            return TovCompareNoCaseIS(a, b);
        default:
            return std::strcmp(a, b);
    }
}

}  // namespace

CTovReportSort::CTovReportSort(Items const& items, std::vector<SORT_STATE_REALCOL> keys)
    : m_items(items), m_keys(std::move(keys)), m_ascending(m_keys.empty() || m_keys.front().bAscending != 0) {
    auto const end = std::find_if(m_keys.begin(), m_keys.end(),
                                  [](SORT_STATE_REALCOL const& key) { return key.nCol == tovNoIndex; });
    m_keys.erase(end, m_keys.end());
}

int CTovReportSort::Column::Compare(unsigned int a, unsigned int b) const {
    return kind == eSortKeyNumber ? CompareDoubles(numbers[a], numbers[b])
                                  : CompareTexts(kind, Text(a), Text(b));
}

void CTovReportSort::Sort(std::vector<unsigned int>& rows) {
    // What is equal stays as it is from here on.
    bool const ordered = std::is_sorted(rows.begin(), rows.end());
    if (!ordered) {
        std::vector<bool> shown(m_items.size());
        for (unsigned int const row : rows)
            shown[row] = true;
        auto next = rows.begin();
        for (unsigned int row = 0; row < shown.size(); ++row) {
            if (shown[row]) *next++ = row;
        }
    }
    if (!m_ascending) std::reverse(rows.begin(), rows.end());
    if (m_keys.empty()) return;
    if (!Extract(rows)) {
        SortByItems(rows);
        return;
    }
    Column const& first = m_columns.front();
    if (first.kind == eSortKeyNumber) {
        SortByFirst(
            rows, [&first](unsigned int place) { return first.numbers[place]; },
            [](double a, double b) { return CompareDoubles(a, b); });
    } else if (first.kind == eSortKeyText) {
        SortByFirst(
            rows, [&first](unsigned int place) { return first.Text(place); },
            [](char const* a, char const* b) { return std::strcmp(a, b); });
    } else if (first.kind == eSortKeyTextIS) {
        SortByFirst(
            rows, [&first](unsigned int place) { return first.Text(place); },
            [](char const* a, char const* b) { return TovCompareIS(a, b); });
    } else {
        SortByFirst(
            rows, [&first](unsigned int place) { return first.Text(place); },
            [](char const* a, char const* b) { return TovCompareNoCaseIS(a, b); });
    }
}

// Asks each row once for what it sorts by. False when one of them does not tell.
bool CTovReportSort::Extract(std::vector<unsigned int> const& rows) {
    for (SORT_STATE_REALCOL const& key : m_keys) {
        Column column;
        column.ascending = key.bAscending != 0;
        if (!Extract(rows, key.nCol, column)) return false;
        m_columns.push_back(std::move(column));
    }
    return !rows.empty();
}

bool CTovReportSort::Extract(std::vector<unsigned int> const& rows, unsigned int col, Column& column) const {
    double number = 0;
    CString text;
    for (unsigned int const row : rows) {
        text.clear();
        eTovSortKey const kind = m_items[row]->OnGetItemSortKey(col, number, text);
        if (column.kind == eSortKeyNone) {
            column.kind = kind;
            if (kind == eSortKeyNumber) column.numbers.reserve(rows.size());
            if (kind > eSortKeyNumber) column.texts.reserve(rows.size());
        }
        if (kind != column.kind || kind == eSortKeyNone) return false;
        if (kind == eSortKeyNumber) {
            column.numbers.push_back(number);
        } else {
            column.texts.push_back(column.letters.size());
            column.letters.insert(column.letters.end(), text.c_str(), text.c_str() + text.size() + 1);
        }
    }
    return true;
}

bool CTovReportSort::RestStandsBefore(unsigned int a, unsigned int b) const {
    for (std::size_t i = 1; i < m_columns.size(); ++i) {
        int const order = m_columns[i].Compare(a, b);
        if (order != 0) return m_columns[i].ascending ? order < 0 : order > 0;
    }
    return false;
}

template <class Key, class Compare>
void CTovReportSort::SortByFirst(std::vector<unsigned int>& rows, Key const& keyOf,
                                 Compare const& compare) const {
    struct Entry {
        decltype(keyOf(0u)) key;
        unsigned int place;
    };
    std::vector<Entry> entries;
    entries.reserve(rows.size());
    for (unsigned int place = 0; place < rows.size(); ++place)
        entries.push_back({keyOf(place), place});
    bool const ascending = m_columns.front().ascending;
    bool const more = m_columns.size() > 1;
    SortEntries(entries, [this, &compare, ascending, more](Entry const& a, Entry const& b) {
        int const order = compare(a.key, b.key);
        if (order != 0) return ascending ? order < 0 : order > 0;
        return more && RestStandsBefore(a.place, b.place);
    });
    std::vector<unsigned int> sorted(rows.size());
    std::transform(entries.begin(), entries.end(), sorted.begin(),
                   [&rows](Entry const& entry) { return rows[entry.place]; });
    rows = std::move(sorted);
}

void CTovReportSort::SortByItems(std::vector<unsigned int>& rows) const {
    struct Entry {
        CTovReportViewItem const* item;
        unsigned int row;
    };
    std::vector<Entry> entries;
    entries.reserve(rows.size());
    for (unsigned int const row : rows)
        entries.push_back({m_items[row].get(), row});
    SortEntries(entries, [this](Entry const& a, Entry const& b) {
        for (SORT_STATE_REALCOL const& key : m_keys) {
            int const order = a.item->OnCompareItem(b.item, key.nCol);
            if (order != 0) return key.bAscending != 0 ? order < 0 : order > 0;
        }
        return false;
    });
    std::transform(entries.begin(), entries.end(), rows.begin(),
                   [](Entry const& entry) { return entry.row; });
}

}  // namespace tov
