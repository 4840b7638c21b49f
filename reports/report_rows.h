// The rows on the screen: a sequence of real indexes in blocks, so that a row comes or goes anywhere among
// millions by moving at most one block.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace tov {

class CTovReportRows {
 public:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    std::size_t size() const { return m_size; }
    bool empty() const { return m_size == 0; }

    // Another number after every change.
    std::uint64_t Stamp() const { return m_stamp; }

    // The position must be below the size.
    unsigned int operator[](std::size_t position) const;

    void Assign(std::vector<unsigned int> const& rows);
    void Insert(std::size_t position, unsigned int row);  // up to the size
    void Erase(std::size_t position);
    void Clear() { Assign({}); }

    std::vector<unsigned int> Copy() const;

    // The first position of the row; none where it is not there. A walk.
    std::size_t Find(unsigned int row) const;

    // The first position whose row is of that kind, the size where none is. PartitionPoint needs all of that
    // kind to stand behind all others; Walk asks one after the other.
    template <class Is>
    std::size_t PartitionPoint(Is const& is) const {
        std::size_t low = 0;
        std::size_t high = m_blocks.size();
        while (low < high) {
            std::size_t const middle = low + (high - low) / 2;
            Block const& block = m_blocks[middle];
            if (is(block.rows[block.count - 1])) {
                high = middle;
            } else {
                low = middle + 1;
            }
        }
        if (low == m_blocks.size()) return m_size;
        unsigned int const* const rows = m_blocks[low].rows.get();
        std::size_t first = 0;
        std::size_t last = m_blocks[low].count - 1;
        while (first < last) {
            std::size_t const middle = first + (last - first) / 2;
            if (is(rows[middle])) {
                last = middle;
            } else {
                first = middle + 1;
            }
        }
        return Start(low) + first;
    }
    template <class Is>
    std::size_t Walk(Is const& is) const {
        std::size_t position = 0;
        for (Block const& block : m_blocks) {
            for (std::size_t i = 0; i < block.count; ++i, ++position) {
                if (is(block.rows[i])) return position;
            }
        }
        return position;
    }

 private:
    static constexpr std::size_t capacity = 2048;
    static constexpr std::size_t filled = 1664;  // of a new block, so that the first rows find room

    struct Block {
        std::unique_ptr<unsigned int[]> rows;
        std::size_t count = 0;
    };
    struct Place {
        std::size_t block;
        std::size_t offset;
    };

    static Block NewBlock(unsigned int const* rows, std::size_t count);
    std::size_t Start(std::size_t block) const;
    Place At(std::size_t position) const;
    void Changed(std::size_t block);
    void ForgetStartsFrom(std::size_t block);
    void MergeWithNext(std::size_t block);

    std::vector<Block> m_blocks;  // none is empty
    std::size_t m_size = 0;
    std::uint64_t m_stamp = 1;

    // Where the blocks start, as far as that is known: it is worked out up to the block that is asked for.
    mutable std::vector<std::size_t> m_starts;
    mutable std::size_t m_last = 0;  // the block that was asked for last
};

}  // namespace tov
