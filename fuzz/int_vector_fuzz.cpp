// Stored vectors of numbers from outside: reading ends, takes no more numbers than there are ";", and what it
// found is written and read again as the same.
#include "util/profile_text.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string_view const text(reinterpret_cast<char const*>(data), size);
    std::vector<int> values{1};
    tov::ParseProfileVector(text, values);
    if (static_cast<std::ptrdiff_t>(values.size()) > std::ranges::count(text, ';')) std::abort();
    std::vector<int> again;
    tov::ParseProfileVector(tov::ProfileVectorText(values), again);
    if (again != values) std::abort();

    auto const limit = size > 0 ? data[0] : 0u;
    auto const cut = tov::CutProfileText(text, limit);
    if (cut.size() > limit || !text.starts_with(cut)) std::abort();
    return 0;
}
