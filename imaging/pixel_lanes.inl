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
    struct Halves {
        Half first;
        Half second;
    };
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

template <class L>
TOV_INLINE typename L::Half GreyHalf(typename L::Half pixels) {
    using Doubles = typename L::Doubles;
    auto const red = __builtin_convertvector(pixels >> 16 & 0xFF, Doubles);
    auto const green = __builtin_convertvector(pixels >> 8 & 0xFF, Doubles);
    auto const blue = __builtin_convertvector(pixels & 0xFF, Doubles);
    return __builtin_convertvector(0.3 * red + 0.59 * green + 0.11 * blue, typename L::Half);
}

template <class L>
TOV_INLINE typename L::Pixels GreyPixels(typename L::Pixels pixels) {
    typename L::Halves halves;
    std::memcpy(&halves, &pixels, sizeof halves);
    halves = {GreyHalf<L>(halves.first), GreyHalf<L>(halves.second)};
    typename L::Pixels made;
    std::memcpy(&made, &halves, sizeof made);
    return made | made << 8 | made << 16;
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
    Integers none = ~well;
    if (std::memcmp(&none, &inside, sizeof none) == 0) {
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
