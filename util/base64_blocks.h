// Base64 in whole blocks, as fast as the processor at hand can.
#pragma once

#include <cstddef>

namespace tov {

// Encodes as many groups of three bytes from the beginning as fill whole blocks, and answers the number of
// bytes that were taken: a multiple of 3, 0 where the processor knows no blocks. `out` has room for four
// thirds of `length`.
std::size_t EncodeBase64Blocks(unsigned char const* data, std::size_t length, char* out);

// Decodes blocks of 32 characters of the alphabet from `in` to `out`, which lies at or in front of it in the
// same text, and moves both. Ends at the first block that reaches over `end` or holds any other character.
// What is overwritten lies in front of `in` as it is then.
void DecodeBase64Blocks(unsigned char const*& in, unsigned char const* end, unsigned char*& out);

}  // namespace tov
