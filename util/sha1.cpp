#include "util/sha1.h"

#include <bit>
#include <cstddef>

namespace tov {
namespace {

using Sha1Words = std::array<std::uint32_t, 5>;
constexpr std::size_t sha1Block = 64;

void MixSha1Block(Sha1Words& digest, std::string_view block) {
    std::array<std::uint32_t, 80> words{};
    for (std::size_t i = 0; i < sha1Block; ++i)
        words[i / 4] = words[i / 4] << 8 | static_cast<unsigned char>(block[i]);
    for (std::size_t i = 16; i < words.size(); ++i)
        words[i] = std::rotl(words[i - 3] ^ words[i - 8] ^ words[i - 14] ^ words[i - 16], 1);

    auto [a, b, c, d, e] = digest;
    for (std::size_t i = 0; i < words.size(); ++i) {
        std::uint32_t mixed = 0;
        if (i < 20) {
            mixed = ((b & c) | (~b & d)) + 0x5A827999;
        } else if (i < 40) {
            mixed = (b ^ c ^ d) + 0x6ED9EBA1;
        } else if (i < 60) {
            mixed = ((b & c) | (b & d) | (c & d)) + 0x8F1BBCDC;
        } else {
            mixed = (b ^ c ^ d) + 0xCA62C1D6;
        }
        std::uint32_t const next = std::rotl(a, 5) + mixed + e + words[i];
        e = d;
        d = c;
        c = std::rotl(b, 30);
        b = a;
        a = next;
    }
    std::uint32_t const sums[] = {a, b, c, d, e};
    for (std::size_t i = 0; i < digest.size(); ++i)
        digest[i] += sums[i];
}

}  // namespace

std::array<std::uint32_t, 5> Sha1(std::string_view bytes) {
    Sha1Words digest{0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476, 0xC3D2E1F0};
    std::string_view rest = bytes;
    for (; rest.size() >= sha1Block; rest.remove_prefix(sha1Block))
        MixSha1Block(digest, rest.substr(0, sha1Block));

    // The end: a one bit, zeros up to a whole block, and in its last eight bytes the length in bits.
    std::array<char, 2 * sha1Block> end{};
    rest.copy(end.data(), rest.size());
    end[rest.size()] = '\x80';
    std::size_t const size = rest.size() + 9 <= sha1Block ? sha1Block : 2 * sha1Block;
    std::uint64_t bits = std::uint64_t{bytes.size()} * 8;
    for (std::size_t i = size; i > size - 8; bits >>= 8)
        end[--i] = static_cast<char>(bits & 0xFF);
    for (std::size_t at = 0; at < size; at += sha1Block)
        MixSha1Block(digest, std::string_view(end.data() + at, sha1Block));
    return digest;
}

}  // namespace tov
