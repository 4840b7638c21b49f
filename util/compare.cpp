#include <tov310/compare.h>

#include "util/case_fold.h"
#include "util/compare_doubles.h"
#include "vesk/cpu.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

// Blocks of 16 bytes are read even where a text ends within them, but never over the end of a page, so
// nothing is read that the processor would refuse; what lies behind the end of a text does not count.
// Sanitizers object all the same.
#if defined(__SSE2__) && !TOV_SANITIZED
#include <emmintrin.h>
#define TOV_COMPARE_BLOCKS 1
#else
#define TOV_COMPARE_BLOCKS 0
#endif

namespace tov {
namespace {

using Byte = unsigned char;

constexpr bool IsDigit(Byte c) {
    return static_cast<unsigned>(c) - '0' < 10;
}

// Compares the numbers that both texts begin with, and leaves both behind theirs.
int CompareNumbers(Byte const*& a, Byte const*& b) {
    while (*a == '0')
        ++a;
    while (*b == '0')
        ++b;
    Byte const* first = a;
    Byte const* second = b;
    while (IsDigit(*a) && IsDigit(*b)) {
        ++a;
        ++b;
    }
    if (IsDigit(*a)) return 1;  // the longer one
    if (IsDigit(*b)) return -1;
    for (; first != a; ++first, ++second) {
        if (*first != *second) return *first < *second ? -1 : 1;
    }
    return 0;
}

// Where the run of digits begins that ends at `at`, which lies behind `begin`.
Byte const* DigitsBefore(Byte const* begin, Byte const* at) {
    while (at != begin && IsDigit(at[-1]))
        --at;
    return at;
}

constexpr std::array<Byte, 256> smallLetters = [] {
    std::array<Byte, 256> table{};
    for (unsigned i = 0; i < 256; ++i)
        table[i] = static_cast<Byte>(i >= 'A' && i <= 'Z' ? i + 32 : i);
    return table;
}();

// A character without its case; a byte that belongs to none gives a number behind all characters. Leaves the
// text behind what was read.
char32_t NextFolded(Byte const*& at) {
    char32_t const lead = *at++;
    if (lead < 0x80) return smallLetters[lead];
    int const more = lead >= 0xC2 && lead < 0xE0   ? 1
                     : lead >= 0xE0 && lead < 0xF0 ? 2
                     : lead >= 0xF0 && lead < 0xF5 ? 3
                                                   : 0;
    char32_t const behindAll = 0x110000 + lead;
    if (more == 0) return behindAll;
    char32_t character = lead & (0x3Fu >> more);
    for (int i = 0; i < more; ++i) {
        if ((at[i] & 0xC0) != 0x80) return behindAll;
        character = character << 6 | (at[i] & 0x3Fu);
    }
    constexpr char32_t smallest[] = {0, 0x80, 0x800, 0x10000};
    bool const surrogate = character >= 0xD800 && character < 0xE000;
    if (character < smallest[more] || character > 0x10FFFF || surrogate) return behindAll;
    at += more;
    return FoldCase(character);
}

// The texts differ at a byte of a character outside ASCII: compares the characters that hold it, and leaves
// both texts behind them. Characters begin for certain behind an ASCII byte or where the comparison began.
int CompareFolded(Byte const* begin, Byte const*& a, Byte const*& b) {
    std::ptrdiff_t back = 0;
    while (a - back != begin && a[-back - 1] >= 0x80)
        ++back;
    Byte const* const difference = a;
    a -= back;
    b -= back;
    for (;;) {
        char32_t const first = NextFolded(a);
        char32_t const second = NextFolded(b);
        if (first != second) return first < second ? -1 : 1;
        if (a > difference) return 0;
    }
}

#if TOV_COMPARE_BLOCKS

constexpr unsigned blockSize = 16;

bool BlockIsInOnePage(Byte const* at) {
    return (reinterpret_cast<std::uintptr_t>(at) & 4095) <= 4096 - blockSize;
}

__m128i LoadBlock(Byte const* at) {
    return _mm_loadu_si128(reinterpret_cast<__m128i const*>(at));
}

// Bytes from `first` on, `count` of them, as bits.
unsigned BytesInRange(__m128i block, char first, char count) {
    __m128i const offset = _mm_sub_epi8(block, _mm_set1_epi8(first));
    __m128i const limited = _mm_min_epu8(offset, _mm_set1_epi8(static_cast<char>(count - 1)));
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(offset, limited)));
}

__m128i SmallLetters(__m128i block) {
    __m128i const offset = _mm_sub_epi8(block, _mm_set1_epi8('A'));
    __m128i const capital = _mm_cmpeq_epi8(offset, _mm_min_epu8(offset, _mm_set1_epi8('Z' - 'A')));
    return _mm_or_si128(block, _mm_and_si128(capital, _mm_set1_epi8('a' - 'A')));
}

// Passes what is equal and decides most differences without a loop over bytes. Answers whether `order` is the
// result; otherwise the texts are equal up to `a` and `b`, and what differs lies close behind.
template <bool NoCase>
bool CompareBlocks(Byte const* begin, Byte const*& a, Byte const*& b, int& order) {
    for (; BlockIsInOnePage(a) && BlockIsInOnePage(b); a += blockSize, b += blockSize) {
        __m128i const first = NoCase ? SmallLetters(LoadBlock(a)) : LoadBlock(a);
        __m128i const second = NoCase ? SmallLetters(LoadBlock(b)) : LoadBlock(b);
        // A zero is found in the equal bytes only, and stays zero in the smaller of both only there or where
        // it ends one text, which is a difference anyway.
        __m128i const equal = _mm_cmpeq_epi8(first, second);
        __m128i const going = _mm_min_epu8(equal, first);
        unsigned const stop =
            static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(going, _mm_setzero_si128())));
        if (stop == 0) continue;
        auto const at = static_cast<unsigned>(std::countr_zero(stop));

        unsigned const firstDigits = BytesInRange(first, '0', 10);
        unsigned const secondDigits = BytesInRange(second, '0', 10);
        auto const run = static_cast<unsigned>(std::bit_width(~firstDigits & ((1u << at) - 1)));
        if (run == 0 && a != begin) return false;  // the digits may begin in the block before
        auto const firstLength = static_cast<unsigned>(std::countr_one(firstDigits >> run));
        auto const secondLength = static_cast<unsigned>(std::countr_one(secondDigits >> run));
        if (run + std::max(firstLength, secondLength) >= blockSize) return false;  // or end in the next
        Byte const x = a[at];
        Byte const y = b[at];
        if (NoCase && ((x | y) & 0x80) != 0) return false;
        int const byBytes = NoCase ? smallLetters[x] - smallLetters[y] : x - y;
        // Numbers of the same length compare as their bytes do.
        bool const numbers = firstLength != secondLength && firstLength != 0 && secondLength != 0;
        if (numbers && (a[run] == '0' || b[run] == '0')) return false;
        order = numbers ? static_cast<int>(firstLength) - static_cast<int>(secondLength) : byBytes;
        return true;
    }
    return false;
}

#endif

template <bool NoCase>
int CompareNumbered(char const* left, char const* right) {
    auto const* a = reinterpret_cast<Byte const*>(left != nullptr ? left : "");
    auto const* b = reinterpret_cast<Byte const*>(right != nullptr ? right : "");
    auto const folded = [](Byte c) { return NoCase ? smallLetters[c] : c; };
    // What is equal is passed by bytes; only where the texts part, the digits before it are looked at.
    for (;;) {
        Byte const* const begin = a;
#if TOV_COMPARE_BLOCKS
        int order = 0;
        if (CompareBlocks<NoCase>(begin, a, b, order)) return order;
#endif
        while (folded(*a) == folded(*b)) {
            if (*a == 0) return 0;
            ++a;
            ++b;
        }
        bool const firstIsDigit = IsDigit(*a);
        bool const secondIsDigit = IsDigit(*b);
        if (firstIsDigit || secondIsDigit) {
            Byte const* const digits = DigitsBefore(begin, a);
            if (digits != a || (firstIsDigit && secondIsDigit)) {
                b -= a - digits;
                a = digits;
                if (int const byValue = CompareNumbers(a, b); byValue != 0) return byValue;
                continue;
            }
        }
        if (NoCase && ((*a | *b) & 0x80) != 0) {
            if (int const byLetters = CompareFolded(begin, a, b); byLetters != 0) return byLetters;
            continue;
        }
        return folded(*a) - folded(*b);
    }
}

}  // namespace

int TovStringCompareIS(char const* const& a, char const* const& b) {
    return CompareNumbered<false>(a, b);
}

int TovStringCompareNoCaseIS(char const* const& a, char const* const& b) {
    return CompareNumbered<true>(a, b);
}

int TovCompareIS(char const* a, char const* b) {
    return TovStringCompareIS(a, b);
}

int TovCompareNoCaseIS(char const* a, char const* b) {
    return TovStringCompareNoCaseIS(a, b);
}

int TovCompare(char const* a, char const* b) {
    return std::strcmp(a != nullptr ? a : "", b != nullptr ? b : "");
}

int TovCompare(int a, int b) {
    return (a > b) - (a < b);  // the difference itself could overflow
}

int TovCompare(double a, double b) {
    return CompareDoubles(a, b);
}

}  // namespace tov
