#include <tov310/pixels.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>
#include <utility>

namespace tov {

void CTovPixels::Release::operator()(void* memory) const {
    std::free(memory);
}

CTovPixels::CTovPixels(Memory memory, std::uint32_t* bits, int width, int height, bool topDown)
    : m_memory(std::move(memory)), m_pBits(bits), m_nWidth(width), m_nHeight(height), m_bTopDown(topDown) {}

bool CTovPixels::IsPossible(int width, int height) {
    // Image headers tell the number of bytes in 31 bits.
    constexpr int most = std::numeric_limits<std::int32_t>::max() / 4;
    return width > 0 && height != 0 && std::abs(std::int64_t{height}) <= most / width;
}

HBITMAP CTovPixels::Create(int width, int height) {
    constexpr std::size_t alignment = 64;
    if (!IsPossible(width, height)) return nullptr;
    int const rows = std::abs(height);
    std::size_t const size =
        static_cast<std::size_t>(width) * static_cast<std::size_t>(rows) * sizeof(std::uint32_t);
    std::size_t space = size + alignment;
    // calloc gets large blocks from the system, which has zeroed them.
    Memory memory(std::calloc(space, 1));
    if (memory == nullptr) return nullptr;
    void* first = memory.get();
    auto* const bits = static_cast<std::uint32_t*>(std::align(alignment, size, first, space));
    try {
        return HBITMAP(new CTovPixels(std::move(memory), bits, width, rows, height < 0));
    } catch (std::bad_alloc const&) {
        return nullptr;
    }
}

std::size_t CTovPixels::GetCount() const {
    return static_cast<std::size_t>(m_nWidth) * static_cast<std::size_t>(m_nHeight);
}

int CTovPixels::CopyFrom(CTovPixels const& from) {
    if (from.m_nWidth != m_nWidth || from.m_nHeight != m_nHeight) return 0;
    if (&from == this) return 1;
    if (from.m_bTopDown == m_bTopDown) {
        std::copy_n(from.m_pBits, GetCount(), m_pBits);
    } else {
        for (int row = 0; row < m_nHeight; ++row)
            std::copy_n(from.GetRow(m_nHeight - 1 - row), m_nWidth, GetRow(row));
    }
    return 1;
}

}  // namespace tov
