#pragma once

#include <cstdlib>

// Ends the run where something is not as it must be.
inline void Expect(bool good) {
    if (!good) std::abort();
}
