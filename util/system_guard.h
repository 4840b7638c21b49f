// Held while the system layer is being called from any thread, and while it is replaced.
#pragma once

#include <mutex>

namespace tov {

inline std::mutex systemGuard;

}  // namespace tov
