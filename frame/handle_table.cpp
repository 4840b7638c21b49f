#include "frame/handle_table.h"

#include <limits>

namespace tov {

HandleTable& HandleTable::Make() {
    static HandleTable* const table = std::make_unique<HandleTable>().release();
    one.store(table, std::memory_order_release);
    return *table;
}

HWND HandleTable::Add(CWnd& window) {
    std::scoped_lock const lock(m_guard);
    std::uint32_t index = 0;
    if (!m_free.empty()) {
        index = m_free.back();
        m_free.pop_back();
    } else {
        if (m_used == chunkSize * chunkCount) return {};
        index = m_used++;
        auto& chunk = m_chunks[index / chunkSize];
        if (chunk.load(std::memory_order_relaxed) == nullptr) {
            chunk.store(std::make_unique<Chunk>().release(), std::memory_order_release);
        }
    }
    Slot& slot = SlotAt(index);
    slot.window = &window;
    ++slot.generation;
    HWND const handle{std::uint64_t{slot.generation} << 32 | index};
    slot.id.store(handle.id, std::memory_order_release);
    return handle;
}

void HandleTable::Remove(HWND window) {
    std::scoped_lock const lock(m_guard);
    if (SlotOf(window) == nullptr) return;
    auto const index = static_cast<std::uint32_t>(window.id);
    Slot& slot = SlotAt(index);
    slot.id.store(0, std::memory_order_release);
    slot.window = nullptr;
    // A slot whose count is used up is given up, so that no handle comes a second time.
    if (slot.generation != std::numeric_limits<std::uint32_t>::max()) m_free.push_back(index);
}

}  // namespace tov
