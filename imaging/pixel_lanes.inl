// The loops over pixels, with as many pixels side by side as a vector of `widest` bytes holds.
// pixel_loops.cpp includes this once for each kind of processor, in a namespace that says `widest`.

template <int bytes>
struct Lanes {
    using Bytes [[gnu::vector_size(bytes)]] = std::uint8_t;
    using Words [[gnu::vector_size(bytes)]] = std::uint16_t;
    using Pixels [[gnu::vector_size(bytes)]] = std::uint32_t;
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

// A product of bytes, divided by 256: those at even and at odd places apart, in words.
template <class L>
TOV_INLINE typename L::Pixels MultiplyBytes(typename L::Pixels a, typename L::Pixels b) {
    using Words = typename L::Words;
    auto const x = reinterpret_cast<Words>(a);
    auto const y = reinterpret_cast<Words>(b);
    Words const even = (x & 0xFF) * (y & 0xFF) >> 8;
    Words const odd = ((x >> 8) * (y >> 8)) & 0xFF00;
    return reinterpret_cast<typename L::Pixels>(even | odd);
}

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
        return (~MultiplyBytes<L>(~d, ~s) & pixelColor) | (d & pixelAlpha);
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
        return (MultiplyBytes<L>(d, s) & pixelColor) | (d & pixelAlpha);
    } else if constexpr (operation == kUnlessKey) {
        return (s & pixelColor) == arguments.key ? d : s;
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
    if constexpr (bytes < 16) {
        for (std::size_t i = 0; i < count; ++i)
            d[i] = ComposePixel<operation>(d[i], s[moves ? i : 0], arguments);
    } else {
        using L = Lanes<bytes>;
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

inline void WalkBand(PixelBand& band, PixelWalk const& walk, std::size_t columns) {
    using L = Lanes<widest>;
    using Floats = typename L::Floats;
    using Integers = typename L::Integers;
    using Pixels = typename L::Pixels;
    Floats u;
    Floats v;
    std::memcpy(&u, band.u, sizeof u);
    std::memcpy(&v, band.v, sizeof v);
    auto const width = static_cast<float>(walk.width);
    auto const height = static_cast<float>(walk.height);
    auto const pitch = static_cast<std::uint32_t>(walk.width);
    Integers before{};
    Integers inside{};
    for (std::size_t column = 0; column < columns; ++column) {
        Integers const in = (u > 0.0F) & (u < width) & (v > 0.0F) & (v < height);
        before -= ~in & (inside == 0);
        inside -= in;
        // Only what is inside is a number that fits.
        auto const x = reinterpret_cast<Floats>(reinterpret_cast<Integers>(u) & in);
        auto const y = reinterpret_cast<Floats>(reinterpret_cast<Integers>(v) & in);
        Pixels const index = reinterpret_cast<Pixels>(__builtin_convertvector(y, Integers)) * pitch +
                             reinterpret_cast<Pixels>(__builtin_convertvector(x, Integers));
        L::Store(band.index + column * L::count, index);
        u += walk.du;
        v += walk.dv;
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
