// A shared pointer with its count in a separate block.
#pragma once

#include <atomic>
#include <memory>
#include <utility>

namespace tov {

// Owns one T and counts the pointers to itself. Made and deleted by CTovPtrSmart.
template <typename T>
class CAddRefCount {
 public:
    explicit CAddRefCount(T* object) : m_object(object) {}
    CAddRefCount(CAddRefCount const&) = delete;
    CAddRefCount& operator=(CAddRefCount const&) = delete;
    virtual ~CAddRefCount() { delete std::exchange(m_object, nullptr); }

    T* Get() const { return m_object; }
    long Count() const { return m_count.load(std::memory_order_relaxed); }

    void AddRef() { m_count.fetch_add(1, std::memory_order_relaxed); }

    // Deletes the block, and with it the object, when no pointer is left.
    void Release() {
        if (m_count.fetch_sub(1, std::memory_order_acq_rel) - 1 < 1) delete this;
    }

 private:
    T* m_object;
    std::atomic<long> m_count{0};
};

// Shares a T. Counts are atomic, so copies of one pointer may live in several threads; a single pointer
// object may not be assigned from two threads at once.
template <typename T>
class CTovPtrSmart {
 public:
    CTovPtrSmart() = default;

    // Takes the object over; it must have come from new and belong to nobody else. Null gives an empty
    // pointer.
    explicit CTovPtrSmart(T* object) {
        std::unique_ptr<T> owned(object);
        if (object == nullptr) return;
        Take(std::make_unique<CAddRefCount<T>>(object).release());
        static_cast<void>(owned.release());
    }

    CTovPtrSmart(CTovPtrSmart const& other) { Take(other.m_block); }
    CTovPtrSmart(CTovPtrSmart&& other) noexcept : m_block(std::exchange(other.m_block, nullptr)) {}
    virtual ~CTovPtrSmart() { Drop(m_block); }

    // The new block is taken before the old one is released: releasing may delete an object that holds
    // the pointer which is being assigned.
    CTovPtrSmart& operator=(CTovPtrSmart const& other) {
        if (m_block == other.m_block) return *this;
        CAddRefCount<T>* const old = m_block;
        Take(other.m_block);
        Drop(old);
        return *this;
    }

    CTovPtrSmart& operator=(CTovPtrSmart&& other) noexcept {
        if (this != &other) Drop(std::exchange(m_block, std::exchange(other.m_block, nullptr)));
        return *this;
    }

    // Assigning the object that is held already does nothing.
    CTovPtrSmart& operator=(T* object) { return object == Get() ? *this : *this = CTovPtrSmart(object); }

    T* Get() const { return m_block != nullptr ? m_block->Get() : nullptr; }
    T& operator*() const { return *Get(); }
    T* operator->() const { return Get(); }
    explicit operator bool() const { return Get() != nullptr; }

    // Number of pointers that share the object; 0 for an empty one.
    long Count() const { return m_block != nullptr ? m_block->Count() : 0; }

    friend bool operator==(CTovPtrSmart const& a, CTovPtrSmart const& b) { return a.m_block == b.m_block; }

 private:
    void Take(CAddRefCount<T>* block) {
        m_block = block;
        if (block != nullptr) block->AddRef();
    }

    static void Drop(CAddRefCount<T>* block) {
        if (block != nullptr) block->Release();
    }

    CAddRefCount<T>* m_block = nullptr;
};

}  // namespace tov
