// A place where the layer of the toolkit puts what answers the library, and a test its own.
#pragma once

#include "vesk/immortal.h"

#include <atomic>

namespace tov {

// None is a T that answers that there is nothing.
template <class T, class None>
class Seam {
 public:
    T* Get() const {
        T* const inForce = m_inForce.load();
        return inForce != nullptr ? inForce : Default();
    }
    T* Set(T* other) {
        T* const before = m_inForce.exchange(other);
        return before != nullptr ? before : Default();
    }
    void SetDefault(T* other) { m_default.store(other); }

 private:
    T* Default() const {
        if (T* const standard = m_default.load()) return standard;
        static Immortal<None> none;
        return &*none;
    }

    std::atomic<T*> m_inForce{nullptr};  // null stands for the default
    std::atomic<T*> m_default{nullptr};
};

}  // namespace tov
