#include "imaging/pixel_loops.h"

#include "vesk/cpu.h"

#include <array>
#include <cstring>
#include <utility>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace tov {

namespace {

// The 256 greys whose sum in doubles falls short of them, a bit for each; twice, for the widest vectors.
constexpr std::array<std::uint32_t, 16> greysCutShort = [] {
    std::array<std::uint32_t, 16> flags{};
    for (std::uint32_t grey = 0; grey < 512; ++grey) {
        if (GreyOf((grey & 0xFF) * 0x010101) < (grey & 0xFF)) flags[grey / 32] |= 1U << grey % 32;
    }
    return flags;
}();

}  // namespace

}  // namespace tov

// Every copy of the loops stands in a namespace of its own, compiled for its kind of processor.
namespace tov::lanes16 {
inline constexpr int widest = 16;
#include "imaging/pixel_lanes.inl"
}  // namespace tov::lanes16

#if defined(__x86_64__)

#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx2"))), apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("avx2")
#endif
namespace tov::lanes32 {
inline constexpr int widest = 32;
#include "imaging/pixel_lanes.inl"
}  // namespace tov::lanes32
#if defined(__clang__)
#pragma clang attribute pop
#pragma clang attribute push(__attribute__((target("avx512f,avx512bw,avx512vl,avx512dq"))), \
                             apply_to = function)
#else
#pragma GCC pop_options
#pragma GCC push_options
#pragma GCC target("avx512f,avx512bw,avx512vl,avx512dq")
#endif
namespace tov::lanes64 {
inline constexpr int widest = 64;
#include "imaging/pixel_lanes.inl"
}  // namespace tov::lanes64
#if defined(__clang__)
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif

#endif

namespace tov {

namespace {

constexpr PixelLoops pixelLoops[] = {
    lanes16::MakeLoops(std::make_index_sequence<pixelOperations>{}),
#if defined(__x86_64__)
    lanes32::MakeLoops(std::make_index_sequence<pixelOperations>{}),
    lanes64::MakeLoops(std::make_index_sequence<pixelOperations>{}),
#endif
};

std::size_t CountPixelLoops() {
    std::size_t count = 1;
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx2")) ++count;
    if (count == 2 && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
        __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512dq"))
        ++count;
#endif
    return count;
}

}  // namespace

std::span<PixelLoops const> AllPixelLoops() {
    static std::size_t const count = CountPixelLoops();
    return {pixelLoops, count};
}

}  // namespace tov
