// Memory in large blocks.
#pragma once

#include <cstddef>

namespace tov {

// Tells the system that a fresh block is about to be written from one end to the other. It may then hand out
// large pages, which takes a quarter of the time; otherwise, and for small blocks, nothing happens.
void VeskExpectWrites(void* block, std::size_t size);

}  // namespace tov
