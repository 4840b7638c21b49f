// Handles of windows: 64 bits of which the lower half names a slot and the upper half counts the windows that
// the slot has held, so that a handle is never given twice and a look-up is one comparison.
#pragma once

#include <tov310/types.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

namespace tov {

class CWnd;

class HandleTable {
 public:
    // The one table of the process; it is never destroyed, since windows may outlive every static object.
    static HandleTable& Instance() {
        HandleTable* const table = one.load(std::memory_order_acquire);
        return table != nullptr ? *table : Make();
    }

    // A new handle for the window; none when the table is full. Only on the user-interface thread, as Remove.
    HWND Add(CWnd& window);
    void Remove(HWND window);

    // Null for a dead handle. Only on the user-interface thread.
    CWnd* Find(HWND window) const {
        Slot const* const slot = SlotOf(window);
        return slot != nullptr ? slot->window.load(std::memory_order_relaxed) : nullptr;
    }

    // Any thread may ask.
    bool IsAlive(HWND window) const { return SlotOf(window) != nullptr; }

 private:
    struct Slot {
        std::atomic<std::uint64_t> id{0};  // of the living window; 0 for none
        std::atomic<CWnd*> window{nullptr};
        std::uint32_t generation = 0;
    };

    static constexpr std::uint32_t chunkSize = 1024;
    static constexpr std::uint32_t chunkCount = 4096;
    using Chunk = std::array<Slot, chunkSize>;

    Slot const* SlotOf(HWND window) const {
        auto const index = static_cast<std::uint32_t>(window.id);
        if (index >= chunkSize * chunkCount) return nullptr;
        Chunk const* const chunk = m_chunks[index / chunkSize].load(std::memory_order_acquire);
        if (chunk == nullptr) return nullptr;
        Slot const& slot = (*chunk)[index % chunkSize];
        return slot.id.load(std::memory_order_acquire) == window.id && window.id != 0 ? &slot : nullptr;
    }

    static HandleTable& Make();

    static constinit inline std::atomic<HandleTable*> one{nullptr};

    Slot& SlotAt(std::uint32_t index) {
        return (*m_chunks[index / chunkSize].load(std::memory_order_relaxed))[index % chunkSize];
    }

    // Slots never move, so that other threads can look while one is added.
    std::array<std::atomic<Chunk*>, chunkCount> m_chunks{};
    std::mutex m_guard;  // of what follows: a window may be destroyed on a wrong thread, which is reported
    std::vector<std::uint32_t> m_free;
    std::uint32_t m_used = 0;
};

}  // namespace tov
