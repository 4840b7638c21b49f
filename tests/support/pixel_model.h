// The operations on pixels written down once more, one byte at a time.
#pragma once

#include "imaging/pixel_formulas.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace tov::test {

using enum PixelOperation;

inline int ByteOf(PixelOperation operation, int d, int s, int amount) {
    switch (operation) {
        case kBlend:
        case kAlpha:
            return (s * amount + d * (256 - amount)) / 256;
        case kDarken:
            return std::min(d, s);
        case kLighten:
            return std::max(d, s);
        case kScreen:
            return 255 - (255 - d) * (255 - s) / 256;
        case kAdd:
            return std::min(d + s, 255);
        case kDifference:
            return std::abs(s - d);
        case kMultiply:
            return d * s / 256;
        default:
            return d / 2 + s / 2;  // kBlend50
    }
}

inline int GreyByte(std::uint32_t pixel) {
    double const red = pixel >> 16 & 0xFF;
    double const green = pixel >> 8 & 0xFF;
    double const blue = pixel & 0xFF;
    return static_cast<int>(0.3 * red + 0.59 * green + 0.11 * blue);
}

inline std::uint32_t PixelOf(PixelOperation operation, std::uint32_t d, std::uint32_t s,
                             PixelArguments const& given, std::size_t place = 0) {
    std::uint32_t const color = 0x00FFFFFF;
    auto const grey = [d] { return (d & 0xFF000000) + static_cast<std::uint32_t>(GreyByte(d)) * 0x10101; };
    switch (operation) {
        case kStore:
            return s;
        case kEverySecond:
            return (place % 2 == 0) == (given.taken != 0) ? s : d;
        case kTakeAlpha:
            return (d & color) | (s & ~color);
        case kUnlessKey:
            return (s & color) == given.key ? d : s;
        case kExchange:
            return (d & color) == given.key ? (d & ~given.taken) | (s & given.taken) : d;
        case kGrey:
            return grey();
        case kGreyUnlessKey:
            return (d & color) == given.key ? d : grey();
        default:
            break;
    }
    std::uint32_t made = operation == kBlend50 ? 0 : d >> 24;
    int const amount = static_cast<int>(operation == kAlpha ? s >> 24 : given.amount);
    for (int shift = 16; shift >= 0; shift -= 8)
        made = made << 8 | static_cast<std::uint32_t>(ByteOf(operation, static_cast<int>(d >> shift & 0xFF),
                                                             static_cast<int>(s >> shift & 0xFF), amount));
    return made;
}

}  // namespace tov::test
