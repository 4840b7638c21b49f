#include <tov310/list_source.h>

#include "util/code_points.h"

#include <algorithm>

namespace tov {

ITovListSource::~ITovListSource() = default;
CTovStoredItems::~CTovStoredItems() = default;

int CTovStoredItems::GetDispInfo(TOV_DISPINFO& info) {
    if (info.iItem >= m_items.size()) return 0;
    Item const& item = m_items[info.iItem];
    if ((info.mask & LVIF_TEXT) != 0) {
        info.strText = GetItemText(info.iItem, info.iSubItem);
        if (info.cchTextMax != 0) info.strText.resize(CharacterOffset(info.strText, info.cchTextMax - 1));
    }
    if ((info.mask & LVIF_IMAGE) != 0) info.nImage = info.iSubItem == 0 ? item.image : tovNoImage;
    if ((info.mask & LVIF_STATE) != 0) info.nState = item.state;
    return 1;
}

unsigned int CTovStoredItems::InsertItem(unsigned int item, char const* text, unsigned int image,
                                         LPARAM data) {
    item = std::min(item, GetItemCount());
    m_items.insert(m_items.begin() + item, Item{{text != nullptr ? text : ""}, image, 0, data});
    return item;
}

int CTovStoredItems::DeleteItem(unsigned int item) {
    if (item >= m_items.size()) return 0;
    m_items.erase(m_items.begin() + item);
    return 1;
}

int CTovStoredItems::SetItemText(unsigned int item, unsigned int col, char const* text) {
    if (item >= m_items.size() || col == tovNoIndex) return 0;
    std::vector<CString>& texts = m_items[item].texts;
    if (col >= texts.size()) texts.resize(std::size_t{col} + 1);
    texts[col] = text != nullptr ? text : "";
    return 1;
}

CString CTovStoredItems::GetItemText(unsigned int item, unsigned int col) const {
    if (item >= m_items.size() || col >= m_items[item].texts.size()) return {};
    return m_items[item].texts[col];
}

int CTovStoredItems::SetItemImage(unsigned int item, unsigned int image) {
    if (item >= m_items.size()) return 0;
    m_items[item].image = image;
    return 1;
}

unsigned int CTovStoredItems::GetItemImage(unsigned int item) const {
    return item < m_items.size() ? m_items[item].image : tovNoImage;
}

int CTovStoredItems::SetItemData(unsigned int item, LPARAM data) {
    if (item >= m_items.size()) return 0;
    m_items[item].data = data;
    return 1;
}

LPARAM CTovStoredItems::GetItemData(unsigned int item) const {
    return item < m_items.size() ? m_items[item].data : 0;
}

int CTovStoredItems::SetItemState(unsigned int item, unsigned int state, unsigned int mask) {
    if (item >= m_items.size()) return 0;
    unsigned int& kept = m_items[item].state;
    kept = (kept & ~mask) | (state & mask);
    return 1;
}

unsigned int CTovStoredItems::GetItemState(unsigned int item, unsigned int mask) const {
    return item < m_items.size() ? m_items[item].state & mask : 0;
}

void CTovStoredItems::InsertColumn(unsigned int col) {
    for (Item& item : m_items)
        if (col < item.texts.size()) item.texts.emplace(item.texts.begin() + col);
}

void CTovStoredItems::DeleteColumn(unsigned int col) {
    for (Item& item : m_items)
        if (col < item.texts.size()) item.texts.erase(item.texts.begin() + col);
}

void CTovStoredItems::SortItems(std::function<int(LPARAM, LPARAM)> const& compare) {
    std::stable_sort(m_items.begin(), m_items.end(), [&compare](Item const& a, Item const& b) {
        return &a != &b && compare(a.data, b.data) < 0;
    });
}

CString TovListText(ITovListSource& source, std::vector<unsigned int> const& rows,
                    std::vector<unsigned int> const& cols) {
    constexpr unsigned int mostCharacters = 511;
    constexpr unsigned long firstSize = 2048;
    constexpr long growth = 512;
    CString text;
    text.reserve(firstSize);
    TOV_DISPINFO info;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        for (std::size_t col = 0; col < cols.size(); ++col) {
            info = {};
            info.mask = LVIF_TEXT;
            info.iItem = rows[row];
            info.iSubItem = cols[col];
            info.cchTextMax = mostCharacters + 1;
            if (source.GetDispInfo(info) == 0) info.strText.clear();
            std::size_t const needed = text.size() + info.strText.size() + 2;
            if (needed > text.capacity())
                text.reserve(std::max<std::size_t>(
                    needed, TovEstimateCacheSize(text.capacity(), static_cast<long>(rows.size()),
                                                 static_cast<long>(cols.size()), static_cast<long>(row),
                                                 static_cast<long>(col), growth)));
            text += info.strText;
            if (col + 1 < cols.size()) text += '\t';
        }
        text += "\r\n";
    }
    return text;
}

unsigned long TovEstimateCacheSize(unsigned long allocated, long rows, long cols, long row, long /*col*/,
                                   long step) {
    if (rows == 0) return 0;
    if (cols == 0) cols = 1;
    double const done = static_cast<double>(cols) * static_cast<double>(row != 0 ? row - 1 : 0);
    unsigned long const more = allocated + static_cast<unsigned long>(step);
    if (done <= 0) return more;
    double const all =
        static_cast<double>(allocated) / done * static_cast<double>(rows) * static_cast<double>(cols);
    return std::max(static_cast<unsigned long>(all) + static_cast<unsigned long>(step), more);
}

}  // namespace tov
