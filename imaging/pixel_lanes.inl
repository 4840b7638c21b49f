// The loops over pixels, with as many pixels side by side as a vector of `widest` bytes holds.
// pixel_loops.cpp includes this once for each kind of processor, in a namespace that says `widest`.

template <int bytes>
struct Lanes {
    using Bytes [[gnu::vector_size(bytes)]] = std::uint8_t;
    using Words [[gnu::vector_size(bytes)]] = std::uint16_t;
    using Pixels [[gnu::vector_size(bytes)]] = std::uint32_t;
    using Pairs [[gnu::vector_size(bytes)]] = std::uint64_t;
    using Integers [[gnu::vector_size(bytes)]] = std::int32_t;
    using Floats [[gnu::vector_size(bytes)]] = float;
    using Half [[gnu::vector_size(bytes / 2)]] = std::int32_t;
    using Doubles [[gnu::vector_size(bytes)]] = double;
    static constexpr std::size_t count = bytes / 4;

    static TOV_INLINE Pixels All(std::uint32_t value) { return value - Pixels{}; }
    static TOV_INLINE Pixels Load(std::uint32_t const* from) {
        Pixels pixels;
        std::memcpy(&pixels, from, sizeof pixels);
        return pixels;
    }
    static TOV_INLINE void Store(std::uint32_t* to, Pixels pixels) {
        std::memcpy(to, &pixels, sizeof pixels);
    }
};

// The upper halves of products of words.
template <class L>
TOV_INLINE typename L::Words MultiplyHigh(typename L::Words a, typename L::Words b) {
    using Words = typename L::Words;
#if defined(__x86_64__)
    if constexpr (sizeof a == 16)
        return reinterpret_cast<Words>(
            _mm_mulhi_epu16(reinterpret_cast<__m128i>(a), reinterpret_cast<__m128i>(b)));
    if constexpr (sizeof a == 32)
        return reinterpret_cast<Words>(
            _mm256_mulhi_epu16(reinterpret_cast<__m256i>(a), reinterpret_cast<__m256i>(b)));
    if constexpr (sizeof a == 64)
        return reinterpret_cast<Words>(
            _mm512_mulhi_epu16(reinterpret_cast<__m512i>(a), reinterpret_cast<__m512i>(b)));
#endif
    using Pixels = typename L::Pixels;
    auto const x = reinterpret_cast<Pixels>(a);
    auto const y = reinterpret_cast<Pixels>(b);
    return reinterpret_cast<Words>(((x & 0xFFFF) * (y & 0xFFFF) >> 16) |
                                   ((x >> 16) * (y >> 16) & 0xFFFF0000));
}

// Products of bytes of colour, divided by 256, and the alpha of a third pixel.
template <class L>
TOV_INLINE typename L::Pixels MultiplyColors(typename L::Pixels a, typename L::Pixels b,
                                             typename L::Pixels alpha) {
    using Words = typename L::Words;
    using Pixels = typename L::Pixels;
    auto const x = reinterpret_cast<Words>(a);
    auto const y = reinterpret_cast<Words>(b);
    auto const blueRed = reinterpret_cast<Pixels>(MultiplyHigh<L>(x << 8, y & 0xFF));
    auto const green = reinterpret_cast<Pixels>(MultiplyHigh<L>(x & 0xFF00, y & 0xFF00));
    return blueRed | (green & 0xFF00) | (alpha & pixelAlpha);
}

#if defined(__x86_64__)
// Of unsigned and signed bytes the sums of the products of two neighbours, in words. (Not in the least
// processors.)
template <class L>
TOV_INLINE typename L::Words AddProducts(typename L::Pixels a, typename L::Words b) {
    using Words = typename L::Words;
    if constexpr (sizeof a == 16)
        return reinterpret_cast<Words>(
            _mm_maddubs_epi16(reinterpret_cast<__m128i>(a), reinterpret_cast<__m128i>(b)));
    if constexpr (sizeof a == 32)
        return reinterpret_cast<Words>(
            _mm256_maddubs_epi16(reinterpret_cast<__m256i>(a), reinterpret_cast<__m256i>(b)));
    if constexpr (sizeof a == 64)
        return reinterpret_cast<Words>(
            _mm512_maddubs_epi16(reinterpret_cast<__m512i>(a), reinterpret_cast<__m512i>(b)));
}
#endif

// d moved towards s by amounts out of 256, one for the words with blue and red, one for those with green.
template <class L>
TOV_INLINE typename L::Pixels Approach(typename L::Pixels d, typename L::Pixels s, typename L::Pixels blueRed,
                                       typename L::Pixels green) {
    using Words = typename L::Words;
    auto const x = reinterpret_cast<Words>(d);
    auto const y = reinterpret_cast<Words>(s);
    Words const even = (((y & 0xFF) - (x & 0xFF)) * reinterpret_cast<Words>(blueRed) + (x << 8)) >> 8;
    Words const odd = (((y >> 8) - (x >> 8)) * reinterpret_cast<Words>(green) + (x & 0xFF00)) & 0xFF00;
    return reinterpret_cast<typename L::Pixels>(even | odd);
}

// The same by one amount from 1 to 255, for processors that multiply bytes and add neighbours: the unsigned
// weights of both pixels with their bytes, which are made signed by taking 128 away and get it back in the
// end.
template <class L>
TOV_INLINE typename L::Pixels ApproachBytes(typename L::Pixels d, typename L::Pixels s,
                                            std::uint32_t amount) {
    using Words = typename L::Words;
    using Pixels = typename L::Pixels;
    constexpr std::uint32_t half = 0x80808080;
    auto const weights = L::All((amount | (256 - amount) << 8) * 0x00010001);
    auto const x = reinterpret_cast<Words>(d ^ half);
    auto const y = reinterpret_cast<Words>(s ^ half);
    Words const even = AddProducts<L>(weights, (y & 0xFF) | (x << 8));
    Words const odd = AddProducts<L>(weights, (y >> 8) | (x & 0xFF00));
    auto const made = reinterpret_cast<Pixels>((even >> 8) | (odd & 0xFF00));
    using Bytes = typename L::Bytes;
    auto const kept = reinterpret_cast<Bytes>(L::All(pixelAlpha)) != 0;
    auto const back = reinterpret_cast<Bytes>(made) + std::uint8_t{128};
    return reinterpret_cast<Pixels>(kept ? reinterpret_cast<Bytes>(d) : back);
}

// Whether any lane of a mask is set.
template <class L>
TOV_INLINE bool Any(typename L::Integers mask) {
#if defined(__x86_64__)
    if constexpr (sizeof mask == 32) {
        auto const bits = reinterpret_cast<__m256i>(mask);
        return _mm256_testz_si256(bits, bits) == 0;
    }
    if constexpr (sizeof mask == 64) {
        auto const bits = reinterpret_cast<__m512i>(mask);
        return _mm512_test_epi32_mask(bits, bits) != 0;
    }
#endif
    std::int32_t any = 0;
    for (std::size_t lane = 0; lane < L::count; ++lane)
        any |= mask[lane];
    return any != 0;
}

template <class L>
TOV_INLINE typename L::Half GreyHalf(typename L::Half pixels) {
    using Doubles = typename L::Doubles;
    auto const red = __builtin_convertvector(pixels >> 16 & 0xFF, Doubles);
    auto const green = __builtin_convertvector(pixels >> 8 & 0xFF, Doubles);
    auto const blue = __builtin_convertvector(pixels & 0xFF, Doubles);
    return __builtin_convertvector(0.3 * red + 0.59 * green + 0.11 * blue, typename L::Half);
}

// The two halves apart, since doubles take twice the room; `lane` counts those of a half.
template <class L, std::size_t... lane>
TOV_INLINE typename L::Pixels GreyByDoubles(typename L::Pixels pixels, std::index_sequence<lane...>) {
    auto const all = reinterpret_cast<typename L::Integers>(pixels);
    auto const first = GreyHalf<L>(__builtin_shufflevector(all, all, lane...));
    auto const second = GreyHalf<L>(__builtin_shufflevector(all, all, lane + sizeof...(lane)...));
    return reinterpret_cast<typename L::Pixels>(
        __builtin_shufflevector(first, second, lane..., lane + sizeof...(lane)...));
}

template <class L>
TOV_INLINE typename L::Pixels GreyByDoubles(typename L::Pixels pixels) {
    return GreyByDoubles<L>(pixels, std::make_index_sequence<L::count / 2>{});
}

#if defined(__x86_64__)
// The sums of the two words of each pixel, which are not negative.
template <class L>
TOV_INLINE typename L::Pixels AddWords(typename L::Words words) {
    using Pixels = typename L::Pixels;
    auto const ones = typename L::Words{} + std::uint16_t{1};
    if constexpr (sizeof words == 32)
        return reinterpret_cast<Pixels>(
            _mm256_madd_epi16(reinterpret_cast<__m256i>(words), reinterpret_cast<__m256i>(ones)));
    else
        return reinterpret_cast<Pixels>(
            _mm512_madd_epi16(reinterpret_cast<__m512i>(words), reinterpret_cast<__m512i>(ones)));
}

// The lowest byte of each pixel in all three places of colour, and 0 as alpha.
template <class L>
TOV_INLINE typename L::Pixels SpreadByte(typename L::Pixels pixels) {
    using Pixels = typename L::Pixels;
    // The places are counted within 16 bytes; the highest bit stands for none.
    Pixels places{};
    for (std::size_t lane = 0; lane < L::count; ++lane)
        places[lane] = 0x80000000 | static_cast<std::uint32_t>(lane % 4 * 0x040404);
    if constexpr (sizeof pixels == 32)
        return reinterpret_cast<Pixels>(
            _mm256_shuffle_epi8(reinterpret_cast<__m256i>(pixels), reinterpret_cast<__m256i>(places)));
    else
        return reinterpret_cast<Pixels>(
            _mm512_shuffle_epi8(reinterpret_cast<__m512i>(pixels), reinterpret_cast<__m512i>(places)));
}

// 0 or 1 for each of 256 numbers.
template <class L>
TOV_INLINE typename L::Pixels Flags(std::uint32_t const* flags, typename L::Pixels number) {
    using Pixels = typename L::Pixels;
    Pixels const table = L::Load(flags);
    Pixels const word = number >> 5;
    Pixels found;
    if constexpr (sizeof number == 32)
        found = reinterpret_cast<Pixels>(
            _mm256_permutevar8x32_epi32(reinterpret_cast<__m256i>(table), reinterpret_cast<__m256i>(word)));
    else
        found = reinterpret_cast<Pixels>(_mm512_maskz_permutexvar_epi32(
            0xFFFF, reinterpret_cast<__m512i>(word), reinterpret_cast<__m512i>(table)));
    return found >> (number & 31) & 1;
}

// The sum in hundredths is the same as in doubles but where it is whole: there doubles may fall short by the
// last bit, and for this their sum is made, but for greys, which are many.
template <class L>
TOV_INLINE typename L::Pixels GreyByHundredths(typename L::Pixels pixels) {
    using Words = typename L::Words;
    using Pixels = typename L::Pixels;
    Pixels const hundredths = AddWords<L>(
        AddProducts<L>(pixels, reinterpret_cast<Words>(L::All(11 | 59 << 8 | 30 << 16))));
    // 41944 / 2^22 is a hundredth, nearly enough for all sums up to 25500.
    auto const grey =
        MultiplyHigh<L>(reinterpret_cast<Words>(hundredths), Words{} + std::uint16_t{41944}) >> 6;
    auto made = reinterpret_cast<Pixels>(grey);
    auto const back = AddProducts<L>(made, Words{} + std::uint16_t{100});
    auto const whole = reinterpret_cast<Pixels>(back) == hundredths;
    if (Any<L>(whole)) {
        auto const coloured = ((pixels ^ (pixels >> 8)) & 0xFFFF) != 0;
        if (Any<L>(whole & coloured)) return GreyByDoubles<L>(pixels);
        made -= Flags<L>(greysCutShort.data(), made) & reinterpret_cast<Pixels>(whole);
    }
    return made;
}
#endif

template <class L>
TOV_INLINE typename L::Pixels GreyPixels(typename L::Pixels pixels) {
    if constexpr (widest > 16 && L::count >= 8) {
        return SpreadByte<L>(GreyByHundredths<L>(pixels));
    } else {
        auto const grey = GreyByDoubles<L>(pixels);
        return grey | grey << 8 | grey << 16;
    }
}

template <PixelOperation operation, class L>
TOV_INLINE typename L::Pixels ComposeLanes(typename L::Pixels d, typename L::Pixels s,
                                           PixelArguments const& arguments) {
    using enum PixelOperation;
    using Bytes = typename L::Bytes;
    using Pixels = typename L::Pixels;
    if constexpr (operation == kBlend) {
        if constexpr (widest > 16 && L::count >= 4) return ApproachBytes<L>(d, s, arguments.amount);
        return Approach<L>(d, s, L::All(arguments.amount * 0x00010001), L::All(arguments.amount));
    } else if constexpr (operation == kAlpha) {
        Pixels const amount = s >> 24;
        return Approach<L>(d, s, amount | amount << 16, amount);
    } else if constexpr (operation == kBlend50) {
        return (d >> 1 & 0x7F7F7F) + (s >> 1 & 0x7F7F7F);
    } else if constexpr (operation == kDarken) {
        auto const x = reinterpret_cast<Bytes>(d);
        auto const y = reinterpret_cast<Bytes>(s | pixelAlpha);
        return reinterpret_cast<Pixels>(x < y ? x : y);
    } else if constexpr (operation == kLighten) {
        auto const x = reinterpret_cast<Bytes>(d);
        auto const y = reinterpret_cast<Bytes>(s & pixelColor);
        return reinterpret_cast<Pixels>(x > y ? x : y);
    } else if constexpr (operation == kScreen) {
        return MultiplyColors<L>(d ^ pixelColor, s ^ pixelColor, d) ^ pixelColor;
    } else if constexpr (operation == kAdd) {
        auto const x = reinterpret_cast<Bytes>(d);
        auto const y = reinterpret_cast<Bytes>(s & pixelColor);
        auto const room = ~x;
        return reinterpret_cast<Pixels>(x + (y < room ? y : room));
    } else if constexpr (operation == kDifference) {
        auto const x = reinterpret_cast<Bytes>(d);
        auto const y = reinterpret_cast<Bytes>(s & pixelColor);
        return reinterpret_cast<Pixels>((x > y ? x : y) - (x < y ? x : y));
    } else if constexpr (operation == kMultiply) {
        return MultiplyColors<L>(d, s, d);
    } else if constexpr (operation == kUnlessKey) {
        return (s & pixelColor) == arguments.key ? d : s;
    } else if constexpr (operation == kStore) {
        return s;
    } else if constexpr (operation == kEverySecond) {
        using Pairs = typename L::Pairs;
        std::uint64_t const pair = arguments.taken | std::uint64_t{~arguments.taken} << 32;
        auto const taken = reinterpret_cast<Pixels>(pair - Pairs{});
        return (s & taken) | (d & ~taken);
    } else if constexpr (operation == kTakeAlpha) {
        return (d & pixelColor) | (s & pixelAlpha);
    } else if constexpr (operation == kExchange) {
        return (d & pixelColor) == arguments.key ? (d & ~arguments.taken) | (s & arguments.taken) : d;
    } else {
        Pixels const grey = (d & pixelAlpha) | GreyPixels<L>(d);
        if constexpr (operation == kGrey) return grey;
        return (d & pixelColor) == arguments.key ? d : grey;
    }
}

// A row of pixels with a source that moves along or stays. The last vector is made first, of what stands
// there then, and stored last, so that it may overlap the one before; shorter rows take shorter vectors.
template <PixelOperation operation, bool moves, int bytes = widest>
void ComposeRow(std::uint32_t* d, std::uint32_t const* s, std::size_t count, PixelArguments const& given) {
    PixelArguments const arguments = given;
    if constexpr (bytes < 8) {
        for (std::size_t i = 0; i < count; ++i)
            d[i] = ComposePixel<operation>(d[i], s[moves ? i : 0], arguments);
    } else {
        using L = Lanes<bytes>;
        if (operation == PixelOperation::kBlend && arguments.amount == 0) return;
        if (count < L::count) return ComposeRow<operation, moves, bytes / 2>(d, s, count, given);
        auto const still = L::All(*s);
        std::size_t const last = count - L::count;
        auto const end =
            ComposeLanes<operation, L>(L::Load(d + last), moves ? L::Load(s + last) : still, arguments);
        for (std::size_t i = 0; i < last; i += L::count)
            L::Store(d + i,
                     ComposeLanes<operation, L>(L::Load(d + i), moves ? L::Load(s + i) : still, arguments));
        L::Store(d + last, end);
    }
}

// The pixels at positions inside of a source, whose rows have `pitch` pixels.
template <class L>
TOV_INLINE typename L::Pixels IndexAt(typename L::Floats u, typename L::Floats v, std::uint32_t pitch) {
    using Integers = typename L::Integers;
    using Pixels = typename L::Pixels;
    return reinterpret_cast<Pixels>(__builtin_convertvector(v, Integers)) * pitch +
           reinterpret_cast<Pixels>(__builtin_convertvector(u, Integers));
}

// Whether positions from the first to the last lie well inside, so that roundings between do not matter.
template <class L>
TOV_INLINE typename L::Integers WellInside(typename L::Floats first, typename L::Floats last, int size) {
    // A step is rounded by 2^-25 of a position at most.
    static_assert(PixelBand::mostColumns <= 128);
    if (size > 1 << 17) return typename L::Integers{};
    auto const end = static_cast<float>(size) - 1;
    return (first > 1.0F) & (first < end) & (last > 1.0F) & (last < end);
}

inline void WalkBand(PixelBand& band, PixelWalk const& walk, std::size_t columns) {
    using L = Lanes<widest>;
    using Floats = typename L::Floats;
    using Integers = typename L::Integers;
    Floats u;
    Floats v;
    std::memcpy(&u, band.u, sizeof u);
    std::memcpy(&v, band.v, sizeof v);
    auto const pitch = static_cast<std::uint32_t>(walk.width);
    auto const steps = static_cast<float>(columns);
    std::uint32_t* index = band.index;
    Integers before{};
    Integers inside{};
    Integers const well = WellInside<L>(u, u + walk.du * steps, walk.width) &
                          WellInside<L>(v, v + walk.dv * steps, walk.height);
    if (!Any<L>(~well)) {
        for (std::size_t column = 0; column < columns; ++column, index += L::count) {
            L::Store(index, IndexAt<L>(u, v, pitch));
            u += walk.du;
            v += walk.dv;
        }
        inside += static_cast<std::int32_t>(columns);
    } else {
        auto const width = static_cast<float>(walk.width);
        auto const height = static_cast<float>(walk.height);
        for (std::size_t column = 0; column < columns; ++column, index += L::count) {
            Integers const in = (u > 0.0F) & (u < width) & (v > 0.0F) & (v < height);
            before -= ~in & (inside == 0);
            inside -= in;
            // Only what is inside is a number that fits.
            L::Store(index, IndexAt<L>(reinterpret_cast<Floats>(reinterpret_cast<Integers>(u) & in),
                                       reinterpret_cast<Floats>(reinterpret_cast<Integers>(v) & in), pitch));
            u += walk.du;
            v += walk.dv;
        }
    }
    std::memcpy(band.u, &u, sizeof u);
    std::memcpy(band.v, &v, sizeof v);
    std::memcpy(band.before, &before, sizeof before);
    std::memcpy(band.inside, &inside, sizeof inside);
}

template <std::size_t... operations>
constexpr PixelLoops MakeLoops(std::index_sequence<operations...>) {
    return {{ComposeRow<static_cast<PixelOperation>(operations), true>...},
            {ComposeRow<static_cast<PixelOperation>(operations), false>...},
            WalkBand,
            Lanes<widest>::count};
}
