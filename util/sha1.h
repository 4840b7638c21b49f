// SHA-1 (FIPS 180-4), to see whether a published file is whole. It protects against accidents, not against
// forgers.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace tov {

// The digest as five words, the most significant one first.
std::array<std::uint32_t, 5> Sha1(std::string_view bytes);

}  // namespace tov
