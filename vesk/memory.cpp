#include "vesk/memory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

namespace tov {

void VeskExpectWrites(void* block, std::size_t size) {
    constexpr std::size_t worthIt = std::size_t{4} << 20;
    if (size < worthIt) return;
#ifdef MADV_HUGEPAGE
    // Only whole pages can be spoken of.
    auto const page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    std::size_t room = size;
    void* begin = block;
    if (std::align(page, page, begin, room) == nullptr) return;
    int const before = errno;
    madvise(begin, room / page * page, MADV_HUGEPAGE);
    errno = before;  // a refusal is no failure
#else
    static_cast<void>(block);
#endif
}

}  // namespace tov
