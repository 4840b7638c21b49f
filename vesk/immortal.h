// An object that outlives every other.
#pragma once

#include <cstddef>
#include <memory>
#include <new>

namespace tov {

// Holds a process-wide object that is never destroyed, so that the destructors of a host's own globals can
// still save what they have to save.
template <class T>
class Immortal {
 public:
    Immortal() { std::construct_at(Address()); }
    Immortal(Immortal const&) = delete;
    Immortal& operator=(Immortal const&) = delete;
    T& operator*() { return *std::launder(Address()); }
    T* operator->() { return &**this; }

 private:
    T* Address() { return reinterpret_cast<T*>(m_storage); }
    alignas(T) std::byte m_storage[sizeof(T)];
};

}  // namespace tov
