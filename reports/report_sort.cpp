#include "reports/report_sort.h"

#include <tov310/compare.h>

#include "util/case_fold.h"
#include "util/code_points.h"
#include "util/compare_doubles.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <string_view>
#include <type_traits>
#include <utility>

namespace tov {
namespace {

constexpr std::size_t rankSize = sizeof(CTovTextRank);

// Bytes of a rank, as far as there is room.
struct RankBytes {
    void Put(char32_t byte) {
        if (size < rankSize) bytes[size++] = static_cast<unsigned char>(byte);
    }
    bool IsFull() const { return size == rankSize; }
    std::uint64_t Number(std::size_t from) const {
        std::uint64_t number = 0;
        for (std::size_t i = 0; i < sizeof number; ++i)
            number = number << 8 | bytes[from + i];
        return number;
    }

    std::array<unsigned char, rankSize> bytes{};
    std::size_t size = 0;
};

constexpr bool IsPlainDigit(char c) {
    return c >= '0' && c <= '9';
}

// A number stands at the place of its first digit: the longer one behind, and of the same length by digits.
std::size_t PutNumber(std::string_view text, RankBytes& rank) {
    std::size_t zeros = 0;
    while (zeros < text.size() && text[zeros] == '0')
        ++zeros;
    std::size_t end = zeros;
    while (end < text.size() && IsPlainDigit(text[end]))
        ++end;
    std::size_t const length = end - zeros;
    constexpr std::size_t longest = 255;
    rank.Put('0');
    rank.Put(static_cast<char32_t>(std::min(length, longest)));
    if (length >= longest) rank.size = rankSize;  // the texts decide
    for (std::size_t i = zeros; i < end && !rank.IsFull(); ++i)
        rank.Put(static_cast<unsigned char>(text[i]));
    return end;
}

struct ItemEntry {
    CTovReportViewItem const* item;
    unsigned int row;
};

// Merges two neighbouring runs. The rows lie all over the memory, which is asked for them before it is their
// turn.
template <class Before>
void MergeRuns(ItemEntry const* from, ItemEntry const* middle, ItemEntry const* end, ItemEntry* to,
               Before const& before) {
    constexpr std::ptrdiff_t ahead = 6;
    ItemEntry const* a = from;
    ItemEntry const* b = middle;
    if (a == b || b == end || !before(*b, *(b - 1))) {
        std::copy(from, end, to);
        return;
    }
    while (a != middle && b != end) {
        bool const takesSecond = before(*b, *a);
        ItemEntry const*& taken = takesSecond ? b : a;
        *to++ = *taken++;
        ItemEntry const* const limit = takesSecond ? end : middle;
        if (limit - taken > ahead) {
            __builtin_prefetch(taken[ahead].item);
            __builtin_prefetch(reinterpret_cast<char const*>(taken[ahead].item) + sizeof(CTovReportViewItem));
        }
    }
    std::copy(b, end, std::copy(a, middle, to));
}

template <class Before>
void MergeSort(std::vector<ItemEntry>& entries, Before const& before) {
    constexpr std::size_t shortRun = 8;
    std::size_t const size = entries.size();
    for (std::size_t i = 0; i < size; ++i) {
        ItemEntry const entry = entries[i];
        std::size_t at = i;
        for (; at % shortRun != 0 && before(entry, entries[at - 1]); --at)
            entries[at] = entries[at - 1];
        entries[at] = entry;
    }
    std::vector<ItemEntry> other(size);
    for (std::size_t run = shortRun; run < size; run *= 2) {
        for (std::size_t i = 0; i < size; i += 2 * run) {
            ItemEntry const* const from = entries.data() + i;
            MergeRuns(from, from + std::min(run, size - i), from + std::min(2 * run, size - i),
                      other.data() + i, before);
        }
        entries.swap(other);
    }
}

}  // namespace

bool TovRankText(eTovSortKey kind, char const* text, CTovTextRank& result) {
    RankBytes rank;
    std::string_view rest = text;
    constexpr char32_t noCharacter = 0xFFFD;
    while (!rest.empty() && !rank.IsFull()) {
        char const c = rest.front();
        if (kind != eSortKeyText && IsPlainDigit(c)) {
            rest.remove_prefix(PutNumber(rest, rank));
        } else if (kind != eSortKeyTextNoCaseIS) {
            rank.Put(static_cast<unsigned char>(c));
            rest.remove_prefix(1);
        } else if (static_cast<unsigned char>(c) < 0x80) {
            rank.Put(static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c));
            rest.remove_prefix(1);
        } else {
            char32_t const character = TakeCharacter(rest);
            if (character == noCharacter) return false;
            CString folded;
            AppendCharacter(folded, FoldCase(character));
            for (char const byte : folded)
                rank.Put(static_cast<unsigned char>(byte));
        }
    }
    result = {rank.Number(0), rank.Number(sizeof(std::uint64_t))};
    return true;
}

CTovReportSort::CTovReportSort(Items const& items, std::vector<SORT_STATE_REALCOL> keys)
    : m_items(items), m_keys(std::move(keys)), m_ascending(m_keys.empty() || m_keys.front().bAscending != 0) {
    auto const end = std::find_if(m_keys.begin(), m_keys.end(),
                                  [](SORT_STATE_REALCOL const& key) { return key.nCol == tovNoIndex; });
    m_keys.erase(end, m_keys.end());
}

// --- What rows sort by

void CTovReportSort::Column::Begin(eTovSortKey itsKind, bool ascending, std::size_t count) {
    kind = itsKind;
    direction = ascending ? 1 : -1;
    if (kind == eSortKeyNumber) {
        numbers.reserve(count);
    } else {
        starts.reserve(count);
        ranks.reserve(count);
    }
}

void CTovReportSort::Column::Add(double number, CString const& text) {
    if (kind == eSortKeyNumber) {
        numbers.push_back(number);
        return;
    }
    starts.push_back(letters.size());
    letters.insert(letters.end(), text.c_str(), text.c_str() + std::strlen(text.c_str()) + 1);
    ranks.emplace_back();
    ranked = ranked && TovRankText(kind, text.c_str(), ranks.back());
}

CTovReportSort::Text CTovReportSort::Column::TextAt(std::size_t place) const {
    return {ranked ? ranks[place] : CTovTextRank{}, letters.data() + starts[place]};
}

int CTovReportSort::Column::Compare(double a, double b) const {
    return direction * CompareDoubles(a, b);
}

int CTovReportSort::Column::Compare(Text const& a, Text const& b) const {
    if (a.rank.high != b.rank.high) return a.rank.high < b.rank.high ? -direction : direction;
    if (a.rank.low != b.rank.low) return a.rank.low < b.rank.low ? -direction : direction;
    int const order = kind == eSortKeyText     ? std::strcmp(a.text, b.text)
                      : kind == eSortKeyTextIS ? TovCompareIS(a.text, b.text)
                                               : TovCompareNoCaseIS(a.text, b.text);
    return order < 0 ? -direction : order > 0 ? direction : 0;
}

int CTovReportSort::Column::CompareAt(std::size_t a, std::size_t b) const {
    return kind == eSortKeyNumber ? Compare(numbers[a], numbers[b]) : Compare(TextAt(a), TextAt(b));
}

// Asks each row once. False when one of them does not tell.
bool CTovReportSort::Extract(std::vector<unsigned int> const& rows) {
    m_columns.resize(m_keys.size());
    CString text;
    bool first = true;
    for (unsigned int const row : rows) {
        for (std::size_t i = 0; i < m_keys.size(); ++i) {
            double number = 0;
            text.clear();
            eTovSortKey const kind = m_items[row]->OnGetItemSortKey(m_keys[i].nCol, number, text);
            if (first) m_columns[i].Begin(kind, m_keys[i].bAscending != 0, rows.size());
            if (kind == eSortKeyNone || kind != m_columns[i].kind) return false;
            m_columns[i].Add(number, text);
        }
        first = false;
    }
    return true;
}

// --- Sorting. What is equal stays as it is. Merging needs no strict order: the tolerance by which numbers
// compare has none.

// Counts comparisons of a sort that merges.
class CTovReportSort::Watch {
 public:
    struct Stopped {};

    Watch(std::size_t rows, std::stop_token const& stop, std::atomic<unsigned int>& percent)
        : m_expected(rows * std::bit_width(rows) + 1), m_stop(stop), m_percent(percent) {}

    void Count() {
        constexpr std::size_t every = 4096;
        if (++m_count % every != 0) return;
        if (m_stop.stop_requested()) throw Stopped();
        m_percent = static_cast<unsigned int>(std::min<std::size_t>(99, m_count * 100 / m_expected));
    }

 private:
    std::size_t m_count = 0;
    std::size_t const m_expected;
    std::stop_token const& m_stop;
    std::atomic<unsigned int>& m_percent;
};

void CTovReportSort::Sort(std::vector<unsigned int>& rows) {
    NoWatch none;
    bool const prepared = Prepare(rows);
    if (m_keys.empty()) return;
    if (prepared) {
        SortByKeys(rows, none);
    } else {
        SortByItems(rows);
    }
}

bool CTovReportSort::SortPrepared(std::vector<unsigned int>& rows, std::stop_token const& stop,
                                  std::atomic<unsigned int>& percent) {
    Watch watch(rows.size(), stop, percent);
    try {
        if (!m_keys.empty()) SortByKeys(rows, watch);
    } catch (Watch::Stopped const&) {
        return false;
    }
    percent = 100;
    return true;
}

bool CTovReportSort::Prepare(std::vector<unsigned int>& rows) {
    if (!std::is_sorted(rows.begin(), rows.end())) {
        std::vector<bool> shown(m_items.size());
        for (unsigned int const row : rows)
            shown[row] = true;
        auto next = rows.begin();
        for (unsigned int row = 0; row < shown.size(); ++row) {
            if (shown[row]) *next++ = row;
        }
    }
    if (!m_ascending) std::reverse(rows.begin(), rows.end());
    return m_keys.empty() || rows.empty() || Extract(rows);
}

template <class Watcher>
void CTovReportSort::SortByKeys(std::vector<unsigned int>& rows, Watcher& watch) const {
    if (rows.empty()) return;
    Column const& first = m_columns.front();
    if (first.kind == eSortKeyNumber) {
        SortByFirst(
            rows, [&first](std::size_t place) { return first.numbers[place]; }, watch);
    } else {
        SortByFirst(
            rows, [&first](std::size_t place) { return first.TextAt(place); }, watch);
    }
}

template <class First, class Watcher>
void CTovReportSort::SortByFirst(std::vector<unsigned int>& rows, First const& first, Watcher& watch) const {
    if (m_columns.size() == 1) {
        SortByTwo(
            rows, first, [](std::size_t) { return nullptr; }, watch);
    } else if (Column const& next = m_columns[1]; next.kind == eSortKeyNumber) {
        SortByTwo(
            rows, first, [&next](std::size_t place) { return next.numbers[place]; }, watch);
    } else {
        SortByTwo(
            rows, first, [&next](std::size_t place) { return next.TextAt(place); }, watch);
    }
}

// The first two keys lie side by side with the row, where comparing finds them without a way through memory.
template <class First, class Second, class Watcher>
void CTovReportSort::SortByTwo(std::vector<unsigned int>& rows, First const& firstOf, Second const& secondOf,
                               Watcher& watch) const {
    constexpr bool hasSecond = !std::is_null_pointer_v<decltype(secondOf(0))>;
    struct One {
        decltype(firstOf(0)) first;
        unsigned int place;
    };
    struct Two : One {
        decltype(secondOf(0)) second;
    };
    using Entry = std::conditional_t<hasSecond, Two, One>;
    std::vector<Entry> entries(rows.size());
    for (unsigned int place = 0; place < rows.size(); ++place) {
        entries[place].first = firstOf(place);
        entries[place].place = place;
        if constexpr (hasSecond) entries[place].second = secondOf(place);
    }
    std::stable_sort(entries.begin(), entries.end(), [this, &watch](Entry const& a, Entry const& b) {
        watch.Count();
        int order = m_columns[0].Compare(a.first, b.first);
        if constexpr (hasSecond) {
            if (order == 0) order = m_columns[1].Compare(a.second, b.second);
            if (order == 0 && m_columns.size() > 2) order = m_columns[2].CompareAt(a.place, b.place);
        }
        return order < 0;
    });
    std::vector<unsigned int> sorted(rows.size());
    std::transform(entries.begin(), entries.end(), sorted.begin(),
                   [&rows](Entry const& entry) { return rows[entry.place]; });
    rows = std::move(sorted);
}

void CTovReportSort::SortByItems(std::vector<unsigned int>& rows) const {
    std::vector<ItemEntry> entries;
    entries.reserve(rows.size());
    for (unsigned int const row : rows)
        entries.push_back({m_items[row].get(), row});
    MergeSort(entries, [this](ItemEntry const& a, ItemEntry const& b) {
        for (SORT_STATE_REALCOL const& key : m_keys) {
            int const order = a.item->OnCompareItem(b.item, key.nCol);
            if (order != 0) return key.bAscending != 0 ? order < 0 : order > 0;
        }
        return false;
    });
    std::transform(entries.begin(), entries.end(), rows.begin(),
                   [](ItemEntry const& entry) { return entry.row; });
}

}  // namespace tov
