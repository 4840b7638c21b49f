// What it costs to read image files in a process of their own: against the same module called in this
// process. The counter "ratio" tells how many times slower that is.
#include <tov310/bitmap.h>

#include "../dorn200/dorn200.h"
#include "peer.h"

#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

using Path = std::filesystem::path;

// A square picture in a file of the kind.
Path File(int width, tov::enmImageFormat format) {
    Path const file = std::filesystem::temp_directory_path() /
                      ("tov-bench-" + std::to_string(width) + "-" + std::to_string(format));
    tov::HBITMAP const picture = tov::CTovPixels::Create(width, width);
    for (std::size_t i = 0; i < picture->GetCount(); ++i)
        picture->GetBits()[i] = 0xFF000000u | static_cast<std::uint32_t>(i * i >> 12);
    tov::CTovBitmap::SaveBitmap(picture, format, file.c_str());
    return file;
}

void* Module() {
    Dl_info info{};
    void* const address = reinterpret_cast<void*>(&tov::TovSetImageModule);
    if (dladdr(address, &info) == 0) return nullptr;
    return dlopen(Path(info.dli_fname).replace_filename("Dorn200.so").c_str(), RTLD_NOW);
}

template <class Call>
Call* Find(char const* name) {
    static void* const module = Module();
    return module != nullptr ? reinterpret_cast<Call*>(dlsym(module, name)) : nullptr;
}

void Load(benchmark::State& state) {
    auto* const create = Find<DornCreateBitmapFromFileCall>("DornCreateBitmapFromFile");
    if (create == nullptr) return state.SkipWithError("the module Dorn200 is missing");
    auto const file =
        File(static_cast<int>(state.range(0)), static_cast<tov::enmImageFormat>(state.range(1)));
    bench::AgainstPeer(
        state, 1,
        [&] {
            tov::CTovBitmap bitmap;
            benchmark::DoNotOptimize(bitmap.LoadBitmap(file.c_str()));
        },
        [&] { std::free(create(nullptr, file.c_str(), 0)); }, bench::Want::kWithin);
    std::filesystem::remove(file);
}
BENCHMARK(Load)
    ->ArgsProduct({{64, 1024, 4096}, {tov::eImageFormatPng, tov::eImageFormatJpeg, tov::eImageFormatBmp}})
    ->Iterations(7)
    ->Unit(benchmark::kMillisecond);

void Tell(benchmark::State& state) {
    auto* const tell = Find<DornTellFromFileCall>("DornTellFromFile");
    if (tell == nullptr) return state.SkipWithError("the module Dorn200 is missing");
    auto const file = File(64, tov::eImageFormatPng);
    int size[3] = {};
    bench::AgainstPeer(
        state, 1, [&] { tov::CTovBitmap::GetImageSize(file.c_str(), &size[0], &size[1], &size[2]); },
        [&] { tell(file.c_str(), &size[0], &size[1], &size[2]); }, bench::Want::kWithin);
    std::filesystem::remove(file);
}
BENCHMARK(Tell)->Iterations(51);

}  // namespace
