#include "reports/report_rows.h"

#include <algorithm>
#include <utility>

namespace tov {

CTovReportRows::Block CTovReportRows::NewBlock(unsigned int const* rows, std::size_t count) {
    Block block{std::make_unique_for_overwrite<unsigned int[]>(capacity), count};
    std::copy_n(rows, count, block.rows.get());
    return block;
}

void CTovReportRows::Assign(std::vector<unsigned int> const& rows) {
    std::vector<Block> blocks;
    blocks.reserve(rows.size() / filled + 1);
    for (std::size_t i = 0; i < rows.size(); i += filled)
        blocks.push_back(NewBlock(rows.data() + i, std::min(filled, rows.size() - i)));
    m_blocks = std::move(blocks);
    m_size = rows.size();
    Changed(0);
}

void CTovReportRows::Changed(std::size_t block) {
    ++m_stamp;
    ForgetStartsFrom(block + 1);
}

void CTovReportRows::ForgetStartsFrom(std::size_t block) {
    if (block < m_starts.size())
        m_starts.erase(m_starts.begin() + static_cast<std::ptrdiff_t>(block), m_starts.end());
}

std::size_t CTovReportRows::Start(std::size_t block) const {
    if (m_starts.empty()) m_starts.push_back(0);
    while (m_starts.size() <= block)
        m_starts.push_back(m_starts.back() + m_blocks[m_starts.size() - 1].count);
    return m_starts[block];
}

CTovReportRows::Place CTovReportRows::At(std::size_t position) const {
    if (m_last < m_starts.size() && m_last < m_blocks.size() && m_starts[m_last] <= position) {
        std::size_t const offset = position - m_starts[m_last];
        if (offset < m_blocks[m_last].count) return {m_last, offset};
    }
    std::size_t known = m_starts.empty() ? 0 : m_starts.size() - 1;
    while (known + 1 < m_blocks.size() && Start(known) <= position)
        ++known;
    Start(known);
    auto const next = std::upper_bound(m_starts.begin(), m_starts.end(), position);
    m_last = static_cast<std::size_t>(next - m_starts.begin()) - 1;
    return {m_last, position - m_starts[m_last]};
}

unsigned int CTovReportRows::operator[](std::size_t position) const {
    Place const place = At(position);
    return m_blocks[place.block].rows[place.offset];
}

void CTovReportRows::Insert(std::size_t position, unsigned int row) {
    if (m_blocks.empty()) {
        Assign({row});
        return;
    }
    // What comes behind the last row of all goes into the last block.
    Place place = position == m_size ? Place{m_blocks.size() - 1, m_blocks.back().count} : At(position);
    if (m_blocks[place.block].count == capacity) {
        bool const atEnd = position == m_size;
        std::size_t const kept = atEnd ? filled : capacity / 2;
        Block& full = m_blocks[place.block];
        Block rest = NewBlock(full.rows.get() + kept, full.count - kept);
        full.count = kept;
        m_blocks.insert(m_blocks.begin() + static_cast<std::ptrdiff_t>(place.block) + 1, std::move(rest));
        Changed(place.block);
        if (place.offset > kept) place = {place.block + 1, place.offset - kept};
    }
    Block& block = m_blocks[place.block];
    unsigned int* const at = block.rows.get() + place.offset;
    std::copy_backward(at, block.rows.get() + block.count, block.rows.get() + block.count + 1);
    *at = row;
    ++block.count;
    ++m_size;
    Changed(place.block);
}

void CTovReportRows::Erase(std::size_t position) {
    Place const place = At(position);
    Block& block = m_blocks[place.block];
    unsigned int* const at = block.rows.get() + place.offset;
    std::copy(at + 1, block.rows.get() + block.count, at);
    --block.count;
    --m_size;
    Changed(place.block);
    if (block.count == 0) {
        m_blocks.erase(m_blocks.begin() + static_cast<std::ptrdiff_t>(place.block));
        ForgetStartsFrom(place.block);
    } else if (block.count < capacity / 4) {
        if (place.block + 1 < m_blocks.size()) MergeWithNext(place.block);
        if (place.block > 0) MergeWithNext(place.block - 1);
    }
}

// Few rows in many blocks would take the memory of many.
void CTovReportRows::MergeWithNext(std::size_t block) {
    if (block + 1 >= m_blocks.size()) return;
    Block& first = m_blocks[block];
    Block const& second = m_blocks[block + 1];
    if (first.count + second.count > capacity / 2) return;
    std::copy_n(second.rows.get(), second.count, first.rows.get() + first.count);
    first.count += second.count;
    m_blocks.erase(m_blocks.begin() + static_cast<std::ptrdiff_t>(block) + 1);
    Changed(block);
}

std::vector<unsigned int> CTovReportRows::Copy() const {
    std::vector<unsigned int> rows;
    rows.reserve(m_size);
    for (Block const& block : m_blocks)
        rows.insert(rows.end(), block.rows.get(), block.rows.get() + block.count);
    return rows;
}

std::size_t CTovReportRows::Find(unsigned int row) const {
    std::size_t position = 0;
    for (Block const& block : m_blocks) {
        unsigned int const* const rows = block.rows.get();
        unsigned int const* const found = std::find(rows, rows + block.count, row);
        if (found != rows + block.count) return position + static_cast<std::size_t>(found - rows);
        position += block.count;
    }
    return none;
}

}  // namespace tov
