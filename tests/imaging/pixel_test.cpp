// links: objects
// Every loop that this processor can run is held against plain formulas.
#include "imaging/pixel_rows.h"
#include "support/pixel_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>

namespace tov {
namespace {

using enum PixelOperation;
using test::AnyPixel;
using test::Between;
using test::keyPixel;
using test::PixelOf;
using test::Pixels;
using test::Random;

std::string Told(PixelOperation operation, PixelLoops const& loops) {
    return "operation " + std::to_string(static_cast<int>(operation)) + ", rows " +
           std::to_string(loops.rows);
}

// All pairs of a byte of the destination and one of the source, in each of the three places: what a place
// holds runs through all bytes in an order of its own.
TEST(PixelLoopsTest, ComposesEveryPairOfBytesByEveryAmount) {
    Pixels first(65536 + 5);
    Pixels s(first.size());
    Pixels expected(first.size());
    for (std::uint32_t i = 0; i < s.size(); ++i) {
        std::uint32_t const x = i & 0xFF;
        std::uint32_t const y = i >> 8 & 0xFF;
        first[i] = x | (x ^ 0x55) << 8 | (x * 5 & 0xFF) << 16 | i << 24;
        s[i] = y | (y ^ 0xAA) << 8 | (y * 7 & 0xFF) << 16;
    }
    for (std::uint32_t amount = 0; amount < 256; ++amount) {
        for (std::uint32_t& pixel : s)
            pixel = (pixel & 0x00FFFFFF) | amount << 24;
        for (auto const operation :
             {kBlend, kAlpha, kBlend50, kDarken, kLighten, kScreen, kAdd, kDifference, kMultiply}) {
            if (operation != kBlend && operation != kAlpha && amount != 0) continue;
            for (std::size_t i = 0; i < s.size(); ++i)
                expected[i] = PixelOf(operation, first[i], s[i], {.amount = amount});
            for (PixelLoops const& loops : AllPixelLoops()) {
                Pixels d = first;
                loops.Moving(operation)(d.data(), s.data(), d.size(), {.amount = amount});
                ASSERT_EQ(d, expected) << Told(operation, loops) << ' ' << amount;
            }
        }
    }
}

TEST(PixelLoopsTest, MakesEveryColorGreyAsDoublesDo) {
    for (PixelLoops const& loops : AllPixelLoops()) {
        Pixels d(65536);
        for (std::uint32_t red = 0; red < 256; ++red) {
            for (std::uint32_t i = 0; i < d.size(); ++i)
                d[i] = 0x5B000000 | red << 16 | i;
            loops.Still(kGrey)(d.data(), d.data(), d.size(), {});
            for (std::uint32_t i = 0; i < d.size(); ++i)
                ASSERT_EQ(d[i], PixelOf(kGrey, 0x5B000000 | red << 16 | i, 0, {})) << red << ' ' << i;
        }
    }
}

TEST(PixelLoopsTest, ComposesRowsOfEveryWidthAtEveryAlignment) {
    constexpr std::size_t room = 128;
    alignas(64) std::uint32_t first[room];
    alignas(64) std::uint32_t d[room];
    alignas(64) std::uint32_t s[room];
    PixelArguments const arguments{.amount = 201, .key = keyPixel, .taken = 0xFFFFFFFF};
    for (PixelLoops const& loops : AllPixelLoops()) {
        for (std::size_t o = 0; o < pixelOperations; ++o) {
            auto const operation = static_cast<PixelOperation>(o);
            for (std::size_t width = 0; width <= 70; width += operation == kEverySecond ? 2 : 1) {
                for (std::size_t shift = 0; shift < 32; ++shift) {
                    bool const moves = shift % 2 == 0;
                    std::size_t const at = shift / 2 + 16;
                    for (std::size_t i = 0; i < room; ++i) {
                        first[i] = d[i] = AnyPixel();
                        s[i] = AnyPixel();
                    }
                    std::uint32_t const* const from = s + Between(0, 31);
                    (moves ? loops.Moving(operation) : loops.Still(operation))(d + at, from, width,
                                                                               arguments);
                    for (std::size_t i = 0; i < room; ++i) {
                        bool const inside = i >= at && i < at + width;
                        std::uint32_t const source = from[moves && inside ? i - at : 0];
                        ASSERT_EQ(d[i],
                                  inside ? PixelOf(operation, first[i], source, arguments, i - at) : first[i])
                            << Told(operation, loops) << ", width " << width << " at " << at << ", " << i;
                    }
                }
            }
        }
    }
}

TEST(PixelLoopsTest, WalksAsOneByOneInSinglePrecision) {
    auto const real = [](float low, float high) {
        return std::uniform_real_distribution(low, high)(Random());
    };
    float const odd[] = {0.0F,         -0.0F, 1e-40F, 1e30F, -1e30F, std::numeric_limits<float>::infinity(),
                         std::nanf("")};
    for (int round = 0; round < 600; ++round) {
        HBITMAP const from = CTovPixels::Create(Between(1, 300), Between(1, 300));
        HBITMAP const to = CTovPixels::Create(Between(1, 400), Between(-70, -1));
        for (CTovPixels* pixels : {from.get(), to.get()})
            std::generate_n(pixels->GetBits(), pixels->GetCount(), AnyPixel);
        auto const width = static_cast<float>(from->GetWidth());
        auto const height = static_cast<float>(from->GetHeight());
        float const angle = real(-3.2F, 3.2F);
        float const scale = std::exp2(real(-4, 4));
        PixelWalk walk{real(-width, 2 * width), real(-height, 2 * height), std::cos(angle) / scale,
                       std::sin(angle) / scale, from->GetWidth(),          from->GetHeight()};
        // Whole steps meet the edges exactly.
        if (round % 3 == 0) walk = {0, height - 3, 1, round % 2 == 0 ? 0.0F : -1.0F, walk.width, walk.height};
        if (round % 10 == 0) (round % 20 == 0 ? walk.u : walk.du) = odd[Between(0, std::size(odd) - 1)];
        PixelStretch const how{.compose = round % 4 != 0,
                               .operation = round % 4 == 1 ? kAlpha : kUnlessKey,
                               .arguments = {.key = keyPixel},
                               .fill = round % 5 != 0,
                               .outside = 0x123456};
        Pixels const expected = test::WalkOneByOne(*to, *from, walk, how);
        for (PixelLoops const& loops : AllPixelLoops()) {
            HBITMAP const made = CTovPixels::Create(to->GetWidth(), -to->GetHeight());
            made->CopyFrom(*to);
            StretchPixels(*made, *from, walk, how, loops);
            auto const wrong = std::mismatch(expected.begin(), expected.end(), made->GetBits()).first;
            ASSERT_EQ(wrong - expected.begin(), expected.end() - expected.begin())
                << "round " << round << ", rows " << loops.rows << ", columns " << to->GetWidth();
        }
    }
}

TEST(PixelsTest, AreZeroedAndAligned) {
    HBITMAP const pixels = CTovPixels::Create(3, 2);
    EXPECT_EQ(std::bit_cast<std::uintptr_t>(pixels->GetBits()) % 64, 0U);
    EXPECT_EQ(std::count(pixels->GetBits(), pixels->GetBits() + 6, 0U), 6);
    EXPECT_FALSE(CTovPixels::Create(2, 3)->CopyFrom(*pixels));
    EXPECT_TRUE(CTovPixels::IsPossible(32767, -16384));
}

}  // namespace
}  // namespace tov
