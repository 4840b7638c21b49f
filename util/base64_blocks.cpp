// The arithmetic on bytes side by side follows W. Muła and D. Lemire, "Faster Base64 Encoding and Decoding
// Using AVX2 Instructions", ACM Transactions on the Web 12(3), 2018.
#include "util/base64_blocks.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace tov {

#if defined(__x86_64__)

namespace {

bool HasByteBlocks() {
    static bool const has = __builtin_cpu_supports("avx2") != 0;
    return has;
}

#define TOV_AVX2 __attribute__((target("avx2")))

// The same 16 bytes in both halves.
TOV_AVX2 inline __m256i Twice(__m128i half) {
    return _mm256_broadcastsi128_si256(half);
}

TOV_AVX2 std::size_t EncodeAvx2(unsigned char const* data, std::size_t length, char* out) {
    // Each half takes 12 of the 16 bytes that it loads.
    constexpr std::size_t taken = 24;
    constexpr std::size_t loaded = 28;
    // Every group b0 b1 b2 as b1 b0 b2 b1, from which shifts by multiplication bring out the four sixes.
    __m256i const spread = Twice(_mm_setr_epi8(1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10));
    // What is to be added to a digit: to those from 52 on by their distance from 51, to 26 to 51 the first,
    // to the smaller ones the 13th.
    __m256i const shifts =
        Twice(_mm_setr_epi8('a' - 26, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52,
                            '0' - 52, '0' - 52, '0' - 52, '+' - 62, '/' - 63, 'A', 0, 0));
    std::size_t done = 0;
    for (; length - done >= loaded; done += taken, out += 32) {
        auto const* const at = reinterpret_cast<__m128i const*>(data + done);
        auto const* const behind = reinterpret_cast<__m128i const*>(data + done + 12);
        __m256i const bytes = _mm256_shuffle_epi8(
            _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_loadu_si128(at)), _mm_loadu_si128(behind), 1),
            spread);
        __m256i const even = _mm256_mulhi_epu16(_mm256_and_si256(bytes, _mm256_set1_epi32(0x0FC0FC00)),
                                                _mm256_set1_epi32(0x04000040));
        __m256i const odd = _mm256_mullo_epi16(_mm256_and_si256(bytes, _mm256_set1_epi32(0x003F03F0)),
                                               _mm256_set1_epi32(0x01000010));
        __m256i const sixes = _mm256_or_si256(even, odd);
        __m256i const capital = _mm256_cmpgt_epi8(_mm256_set1_epi8(26), sixes);
        __m256i const kind = _mm256_or_si256(_mm256_subs_epu8(sixes, _mm256_set1_epi8(51)),
                                             _mm256_and_si256(capital, _mm256_set1_epi8(13)));
        __m256i const characters = _mm256_add_epi8(sixes, _mm256_shuffle_epi8(shifts, kind));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), characters);
    }
    return done;
}

TOV_AVX2 void DecodeAvx2(unsigned char const*& in, unsigned char const* end, unsigned char*& out) {
    // A character is of the alphabet when its two halves have no bit in common here.
    __m256i const lowBits = Twice(_mm_setr_epi8(0x15, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11,
                                                0x13, 0x1A, 0x1B, 0x1B, 0x1B, 0x1A));
    __m256i const highBits = Twice(_mm_setr_epi8(0x10, 0x10, 0x01, 0x02, 0x04, 0x08, 0x04, 0x08, 0x10, 0x10,
                                                 0x10, 0x10, 0x10, 0x10, 0x10, 0x10));
    // What makes a digit of a character, by its upper half; "/" takes the one in front of that of "+".
    __m256i const shifts = Twice(_mm_setr_epi8(0, 16, 19, 4, -65, -65, -71, -71, 0, 0, 0, 0, 0, 0, 0, 0));
    __m256i const pack = Twice(_mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1));
    __m256i const join = _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 7, 7);
    __m256i const slash = _mm256_set1_epi8('/');
    while (end - in >= 32) {
        __m256i const characters = _mm256_loadu_si256(reinterpret_cast<__m256i const*>(in));
        __m256i const upper = _mm256_and_si256(_mm256_srli_epi32(characters, 4), _mm256_set1_epi8(0x0F));
        __m256i const lower = _mm256_and_si256(characters, _mm256_set1_epi8(0x0F));
        if (_mm256_testz_si256(_mm256_shuffle_epi8(lowBits, lower), _mm256_shuffle_epi8(highBits, upper)) ==
            0)
            return;
        __m256i const shift =
            _mm256_shuffle_epi8(shifts, _mm256_add_epi8(_mm256_cmpeq_epi8(characters, slash), upper));
        __m256i const sixes = _mm256_add_epi8(characters, shift);
        __m256i const twelves = _mm256_maddubs_epi16(sixes, _mm256_set1_epi32(0x01400140));
        __m256i const groups = _mm256_madd_epi16(twelves, _mm256_set1_epi32(0x00011000));
        __m256i const bytes = _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(groups, pack), join);
        // 24 bytes count; the other eight fall on what has been read.
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), bytes);
        in += 32;
        out += 24;
    }
}

#undef TOV_AVX2

}  // namespace

std::size_t EncodeBase64Blocks(unsigned char const* data, std::size_t length, char* out) {
    return HasByteBlocks() ? EncodeAvx2(data, length, out) : 0;
}

void DecodeBase64Blocks(unsigned char const*& in, unsigned char const* end, unsigned char*& out) {
    if (HasByteBlocks()) DecodeAvx2(in, end, out);
}

#else

std::size_t EncodeBase64Blocks(unsigned char const*, std::size_t, char*) {
    return 0;
}

void DecodeBase64Blocks(unsigned char const*&, unsigned char const*, unsigned char*&) {}

#endif

}  // namespace tov
