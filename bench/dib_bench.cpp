// Images of 1024 x 1024 and 64 x 64 pixels against memcpy of 1024 x 1024, against pixman's operator of the
// name and against plain loops over the same formulas. The counter "ratio" tells how many times more pixels a
// second the library makes. A million pixels are one turn, at both sizes.
#include <tov310/dib.h>

#include <benchmark/benchmark.h>

#ifdef TOV_HAVE_PIXMAN
#include <pixman.h>
#endif

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "imaging/pixel_formulas.h"
#include "peer.h"

namespace {

using tov::CTovDib;
using tov::PixelOperation;

constexpr int large = 1024;
constexpr std::size_t turn = std::size_t{large} * large;

CTovDib Picture(int size, unsigned seed) {
    CTovDib dib;
    dib.Create(size, -size);
    std::mt19937 random(seed);
    std::generate_n(dib.GetCrBits(), dib.GetBitmap()->GetCount(),
                    [&random] { return random() | 0x40000000; });
    return dib;
}

// Three pictures, so that each peer has one of its own.
struct Pictures {
    explicit Pictures(int size) : dst(Picture(size, 1)), src(Picture(size, 2)), peer(Picture(size, 3)) {}
    CTovDib dst;
    CTovDib src;
    CTovDib peer;
    std::size_t Count() const { return dst.GetBitmap()->GetCount(); }
    int Repeats() const { return static_cast<int>(turn / Count()); }
};

using Work = std::function<void(Pictures&)>;

void Run(benchmark::State& state, int size, Work const& work, Work const& peer, bool peerIsLarge) {
    Pictures pictures(size);
    Pictures largeOnes(peerIsLarge ? large : 1);
    auto const repeat = [](Pictures& p, Work const& once) {
        for (int i = p.Repeats(); i > 0; --i)
            once(p);
        benchmark::DoNotOptimize(p.dst.GetCrBits());
        benchmark::ClobberMemory();
    };
    bench::AgainstPeer(
        state, turn, [&] { repeat(pictures, work); },
        [&] { repeat(peerIsLarge ? largeOnes : pictures, peer); }, bench::Want::kFaster);
}

void Register(char const* name, char const* against, Work const& work, Work const& peer, bool peerIsLarge) {
    for (int const size : {large, 64}) {
        std::string const full = std::string(name) + "/" + against + "/" + std::to_string(size);
        benchmark::RegisterBenchmark(full.c_str(), [=](benchmark::State& state) {
            Run(state, size, work, peer, peerIsLarge);
        })->Iterations(41);
    }
}

void Memcpy(Pictures& p) {
    std::memcpy(p.peer.GetCrBits(), p.src.GetCrBits(), p.Count() * 4);
}

void Memset(Pictures& p) {
    std::memset(p.peer.GetCrBits(), 0x5A, p.Count() * 4);
}

template <PixelOperation operation, bool moves = false>
void Plain(Pictures& p) {
    std::uint32_t* const d = p.peer.GetCrBits();
    std::uint32_t const* const s = p.src.GetCrBits();
    std::size_t const count = p.Count();
    for (std::size_t i = 0; i < count; ++i)
        d[i] = tov::ComposePixel<operation>(d[i], s[moves ? i : 0],
                                            {.amount = 100, .key = 0x123456, .taken = tov::pixelColor});
}

// Of coloured pictures in each turn: grey ones would stay as they are.
void Grey(benchmark::State& state, int size) {
    CTovDib const coloured = Picture(size, 1);
    std::vector<CTovDib> own(turn / coloured.GetBitmap()->GetCount());
    std::vector<CTovDib> others(own.size());
    auto const work = [](std::vector<CTovDib>& dibs, auto const& once) {
        for (CTovDib& dib : dibs)
            once(dib);
        benchmark::ClobberMemory();
    };
    auto const plain = [](CTovDib& dib) {
        std::uint32_t* const d = dib.GetCrBits();
        std::size_t const count = dib.GetBitmap()->GetCount();
        for (std::size_t i = 0; i < count; ++i)
            d[i] = tov::ComposePixel<PixelOperation::kGrey>(d[i], 0, {});
    };
    bench::AgainstPeer(
        state, turn, [&] { work(own, [](CTovDib& dib) { dib.GreyScale(); }); }, [&] { work(others, plain); },
        bench::Want::kFaster,
        [&] {
            for (std::vector<CTovDib>* dibs : {&own, &others}) {
                for (CTovDib& dib : *dibs)
                    dib.Create(&coloured);
            }
        });
}

#ifdef TOV_HAVE_PIXMAN
struct Release {
    void operator()(pixman_image_t* image) const { pixman_image_unref(image); }
};
using Image = std::unique_ptr<pixman_image_t, Release>;

Image ImageOf(CTovDib& dib) {
    return Image(pixman_image_create_bits(PIXMAN_a8r8g8b8, dib.GetWidth(), dib.GetHeight(), dib.GetCrBits(),
                                          dib.GetWidth() * 4));
}

Work Pixman(pixman_op_t operation, unsigned short mask = 0) {
    return [=](Pictures& p) {
        Image const src = ImageOf(p.src);
        Image const dst = ImageOf(p.peer);
        pixman_color_t const color{0, 0, 0, mask};
        Image const solid(mask != 0 ? pixman_image_create_solid_fill(&color) : nullptr);
        pixman_image_composite32(operation, src.get(), solid.get(), dst.get(), 0, 0, 0, 0, 0, 0,
                                 p.dst.GetWidth(), p.dst.GetHeight());
    };
}

void PixmanRotation(Pictures& p) {
    Image const src = ImageOf(p.src);
    Image const dst = ImageOf(p.peer);
    double const middle = p.src.GetWidth() * 0.5;
    pixman_f_transform_t turned;
    pixman_f_transform_init_translate(&turned, -middle, -middle);
    pixman_f_transform_rotate(&turned, nullptr, std::cos(0.3), std::sin(0.3));
    pixman_f_transform_translate(&turned, nullptr, middle, middle);
    pixman_transform_t transform;
    pixman_transform_from_pixman_f_transform(&transform, &turned);
    pixman_image_set_transform(src.get(), &transform);
    pixman_image_set_filter(src.get(), PIXMAN_FILTER_NEAREST, nullptr, 0);
    pixman_image_composite32(PIXMAN_OP_SRC, src.get(), nullptr, dst.get(), 0, 0, 0, 0, 0, 0, p.src.GetWidth(),
                             p.src.GetHeight());
}
#endif

[[maybe_unused]] bool const registered = [] {
    struct Mode {
        char const* name;
        Work work;
        Work peer;  // pixman's
    };
    std::vector<Mode> modes{
        {"Copy", [](Pictures& p) { p.dst.CopyFromDib(&p.src); }, {}},
        {"Blend", [](Pictures& p) { p.dst.Blend(&p.src, 100); }, {}},
        {"Alpha", [](Pictures& p) { p.dst.CopyFromDibAlpha(&p.src); }, {}},
        {"Add", [](Pictures& p) { p.dst.Add(&p.src); }, {}},
        {"Darken", [](Pictures& p) { p.dst.Darken(&p.src); }, {}},
        {"Lighten", [](Pictures& p) { p.dst.Lighten(&p.src); }, {}},
        {"Screen", [](Pictures& p) { p.dst.Screen(&p.src); }, {}},
        {"Difference", [](Pictures& p) { p.dst.Difference(&p.src); }, {}},
        {"Multiply", [](Pictures& p) { p.dst.Multiply(&p.src); }, {}},
        {"Blend50", [](Pictures& p) { p.dst.Blend50(&p.src); }, {}},
        {"Rotation", [](Pictures& p) { p.dst.CopyFromDibStretch(&p.src, 0.3F, 1, 0, 1, 0); }, {}},
    };
#ifdef TOV_HAVE_PIXMAN
    std::vector<Work> const peers{Pixman(PIXMAN_OP_SRC),
                                  Pixman(PIXMAN_OP_OVER, 100 * 257),
                                  Pixman(PIXMAN_OP_OVER),
                                  Pixman(PIXMAN_OP_ADD),
                                  Pixman(PIXMAN_OP_DARKEN),
                                  Pixman(PIXMAN_OP_LIGHTEN),
                                  Pixman(PIXMAN_OP_SCREEN),
                                  Pixman(PIXMAN_OP_DIFFERENCE),
                                  Pixman(PIXMAN_OP_MULTIPLY),
                                  {},
                                  PixmanRotation};
    std::ranges::transform(modes, peers, modes.begin(), [](Mode mode, Work const& peer) {
        mode.peer = peer;
        return mode;
    });
#endif
    for (Mode const& mode : modes) {
        Register(mode.name, "memcpy", mode.work, Memcpy, true);
        if (mode.peer) Register(mode.name, "pixman", mode.work, mode.peer, false);
    }

    Register(
        "Fill", "memset", [](Pictures& p) { p.dst.Fill(0x123456); }, Memset, false);
    Register(
        "FillStippled", "memset", [](Pictures& p) { p.dst.FillStippled(0x123456); }, Memset, false);
    Register(
        "FillAlpha", "memset", [](Pictures& p) { p.dst.FillAlpha(7); }, Memset, false);
    Register(
        "Gradient", "memset", [](Pictures& p) { p.dst.FillAlphaGradient(0, 255, 1); }, Memset, false);
    Register(
        "GradientDown", "memset", [](Pictures& p) { p.dst.FillAlphaGradient(0, 255, 0); }, Memset, false);
    Register(
        "FillBlend", "plain", [](Pictures& p) { p.dst.FillBlend(0x123456, 100); },
        Plain<PixelOperation::kBlend>, false);
    for (int const size : {large, 64}) {
        std::string const name = "Grey/plain/" + std::to_string(size);
        benchmark::RegisterBenchmark(name.c_str(), [size](benchmark::State& state) {
            Grey(state, size);
        })->Iterations(41);
    }
    Register(
        "ExchangeColor", "plain", [](Pictures& p) { p.dst.ExchangeColor(0x563412, 0xFF00FF); },
        Plain<PixelOperation::kExchange>, false);
    Register(
        "ExchangeColor", "memset", [](Pictures& p) { p.dst.ExchangeColor(0x563412, 0xFF00FF); }, Memset,
        false);
    return true;
}();

}  // namespace

BENCHMARK_MAIN();
