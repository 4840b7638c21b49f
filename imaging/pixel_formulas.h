// What happens to one pixel: the operations of images as plain arithmetic. The loops of pixel_loops.h give
// the same bit for bit.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tov {

// An operation makes a new pixel of the destination's d and another pixel s. The destination's alpha byte
// stays unless it says otherwise.
enum class PixelOperation {
    kBlend,    // by `amount`
    kBlend50,  // the mean; the alpha byte becomes 0
    kDarken,
    kLighten,
    kScreen,
    kAdd,
    kDifference,
    kMultiply,
    kAlpha,          // blend by the alpha byte of s
    kUnlessKey,      // s with its alpha, unless its colour is `key`
    kStore,          // s with its alpha
    kEverySecond,    // the bits of s that `taken`, 0 or all, covers, and in the next pixel the others: in an
                     // even number of pixels
    kTakeAlpha,      // the alpha byte of s
    kExchange,       // where the colour of d is `key`: the bytes of s that `taken` covers
    kGrey,           // of d
    kGreyUnlessKey,  // of d, unless its colour is `key`
};
inline constexpr std::size_t pixelOperations = static_cast<std::size_t>(PixelOperation::kGreyUnlessKey) + 1;

struct PixelArguments {
    std::uint32_t amount = 0;  // 0 to 255
    std::uint32_t key = 0;     // a colour of pixels, 0x00RRGGBB
    std::uint32_t taken = 0;   // a mask
};

inline constexpr std::uint32_t pixelColor = 0x00FFFFFF;
inline constexpr std::uint32_t pixelAlpha = 0xFF000000;

// The new value of a byte of colour. The divisions by 256 make 254 of 255 times 255.
template <PixelOperation operation>
constexpr std::uint32_t ComposeByte(std::uint32_t d, std::uint32_t s, std::uint32_t amount) {
    using enum PixelOperation;
    if constexpr (operation == kBlend || operation == kAlpha) return ((s - d) * amount + d * 256) >> 8 & 0xFF;
    if constexpr (operation == kDarken) return d < s ? d : s;
    if constexpr (operation == kLighten) return d > s ? d : s;
    if constexpr (operation == kScreen) return 255 - ((255 - d) * (255 - s) >> 8);
    if constexpr (operation == kAdd) return d + s < 255 ? d + s : 255;
    if constexpr (operation == kDifference) return d < s ? s - d : d - s;
    if constexpr (operation == kMultiply) return d * s >> 8;
}

// The weights are those of ITU-R BT.601 in two digits; the sum runs from left to right.
constexpr std::uint32_t GreyOf(std::uint32_t pixel) {
    double const grey = 0.3 * static_cast<double>(pixel >> 16 & 0xFF) +
                        0.59 * static_cast<double>(pixel >> 8 & 0xFF) +
                        0.11 * static_cast<double>(pixel & 0xFF);
    return static_cast<std::uint32_t>(grey);
}

template <PixelOperation operation>
constexpr std::uint32_t ComposePixel(std::uint32_t d, std::uint32_t s, PixelArguments const& arguments) {
    using enum PixelOperation;
    if constexpr (operation == kBlend50) {
        return (d >> 1 & 0x7F7F7F) + (s >> 1 & 0x7F7F7F);
    } else if constexpr (operation == kUnlessKey) {
        return (s & pixelColor) == arguments.key ? d : s;
    } else if constexpr (operation == kStore) {
        return s;
    } else if constexpr (operation == kEverySecond) {
        return (s & arguments.taken) | (d & ~arguments.taken);
    } else if constexpr (operation == kTakeAlpha) {
        return (d & pixelColor) | (s & pixelAlpha);
    } else if constexpr (operation == kExchange) {
        return (d & pixelColor) == arguments.key ? (d & ~arguments.taken) | (s & arguments.taken) : d;
    } else if constexpr (operation == kGrey || operation == kGreyUnlessKey) {
        if (operation == kGreyUnlessKey && (d & pixelColor) == arguments.key) return d;
        return (d & pixelAlpha) | GreyOf(d) * 0x010101;
    } else {
        std::uint32_t const amount = operation == kAlpha ? s >> 24 : arguments.amount;
        std::uint32_t made = d & pixelAlpha;
        for (unsigned shift = 0; shift < 24; shift += 8)
            made |= ComposeByte<operation>(d >> shift & 0xFF, s >> shift & 0xFF, amount) << shift;
        return made;
    }
}

// Position of the source that belongs to the first pixel of a row, and the step to the next pixel; both
// accumulate in single precision. Width and height are those of the source.
struct PixelWalk {
    float u = 0;
    float v = 0;
    float du = 0;  // a step along the row
    float dv = 0;
    int width = 0;
    int height = 0;

    // Position 0 is outside, and so is what is no number.
    static constexpr bool Inside(float position, int size) {
        return position > 0 && position < static_cast<float>(size);
    }
};

}  // namespace tov
