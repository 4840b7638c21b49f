#include "imaging/image_module.h"

#include <tov310/bitmap.h>

#include "dorn200/dorn200.h"
#include "imaging/bitmap_readers.h"
#include "vesk/apart.h"
#include "vesk/file.h"
#include "vesk/file_pieces.h"
#include "vesk/immortal.h"
#include "vesk/module.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace tov {
namespace {

constexpr char const* imageModuleName = "Dorn200.so";

// Four times the largest picture, for readers that hold it in several forms, and the file.
constexpr ApartLimits readingLimits{std::uint64_t{5} << 30, std::chrono::seconds(60)};

Immortal<std::string>& ImageModulePath() {
    static Immortal<std::string> path;
    return path;
}

bool LoadImageModule(PassingModule& module) {
    std::string const& set = *ImageModulePath();
    if (!set.empty()) return module.Load(set.c_str());
    auto const beside = std::filesystem::path(VeskModulePath(reinterpret_cast<void const*>(&LoadImageModule)))
                            .replace_filename(imageModuleName);
    return module.Load(beside.c_str()) || module.Load(imageModuleName);
}

void WritePicture(ApartPipe& pipe, int width, int height, std::uint32_t const* pixels) {
    auto const count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    if (pipe.Write(&width, sizeof width) && pipe.Write(&height, sizeof height))
        pipe.Write(pixels, count * sizeof *pixels);
}

// What the work writes in its copy of this process. The copy may have been led astray, so nothing that it
// says is believed.
HBITMAP PictureFromCopy(std::function<void(ApartPipe&)> const& work) {
    HBITMAP bitmap;
    bool const isWhole = VeskRunApart(readingLimits, work, [&](ApartPipe& pipe) {
        int width = 0, height = 0;
        if (!pipe.Read(&width, sizeof width) || !pipe.Read(&height, sizeof height)) return false;
        if (!IsBitmapSize(width, height)) return false;
        bitmap = CTovPixels::Create(width, -height);
        return bitmap != nullptr && pipe.Read(bitmap->GetBits(), bitmap->GetCount() * sizeof(std::uint32_t));
    });
    return isWhole ? bitmap : nullptr;
}

struct FreeImageRelease {
    DornUnloadCall* unload;
    void operator()(void* image) const { unload(image); }
};

}  // namespace

void TovSetImageModule(char const* path) {
    *ImageModulePath() = path != nullptr ? path : "";
}

bool ReadWithModule(char const* path, HBITMAP& picture) {
    PassingModule module;
    if (!LoadImageModule(module)) return false;
    picture = nullptr;
    auto* const create = module.Find<DornCreateBitmapFromFileCall>("DornCreateBitmapFromFile");
    if (create != nullptr) {
        picture = PictureFromCopy([&](ApartPipe& pipe) {
            DornBitmap const* const made = create(nullptr, path, 0);
            if (made != nullptr) WritePicture(pipe, made->width, made->height, made->pixels);
        });
    }
    return true;
}

HBITMAP ReadApart(char const* path, std::uint64_t (*extent)(std::string_view, std::uint64_t),
                  HBITMAP (*read)(std::string_view)) {
    return PictureFromCopy([&](ApartPipe& pipe) {
        FilePieces file;
        if (file.Open(path)) return;
        std::string bytes(bitmapHeadSize, '\0');
        std::size_t got = 0;
        if (file.Read(bytes.data(), bytes.size(), got)) return;
        bytes.resize(got);
        constexpr std::uint64_t mostBytes = std::uint64_t{1} << 31;  // more than any picture takes
        std::uint64_t const whole = extent(bytes, file.Size());
        if (whole == 0 || whole > mostBytes) return;
        bytes.resize(std::max<std::size_t>(got, whole));
        std::size_t more = 0;
        if (file.Read(bytes.data() + got, bytes.size() - got, more)) return;
        bytes.resize(got + more);
        HBITMAP const made = read(bytes);
        if (made != nullptr) WritePicture(pipe, made->GetWidth(), made->GetHeight(), made->GetBits());
    });
}

bool TellWithModule(char const* path, ImageFileFacts& facts) {
    PassingModule module;
    if (!LoadImageModule(module)) return false;
    auto* const tell = module.Find<DornTellFromFileCall>("DornTellFromFile");
    if (tell == nullptr) return false;
    ImageFileFacts told;
    bool const isTold = VeskRunApart(
        readingLimits,
        [&](ApartPipe& pipe) {
            ImageFileFacts found;
            if (tell(path, &found.width, &found.height, &found.bitsPerPixel))
                pipe.Write(&found, sizeof found);
        },
        [&](ApartPipe& pipe) {
            constexpr int mostBits = 128;  // four samples of 32
            return pipe.Read(&told, sizeof told) && told.width > 0 && told.height > 0 &&
                   told.bitsPerPixel > 0 && told.bitsPerPixel <= mostBits;
        });
    if (isTold) facts = told;
    return isTold;
}

bool WriteWithModule(CDC* dc, HBITMAP const& bitmap, int format, char const* path) {
    PassingModule module;
    if (!LoadImageModule(module)) return false;
    auto* const create = module.Find<DornCreateFromBitmapCall>("DornCreateFromBitmap");
    auto* const depth = module.Find<DornGetBppCall>("FreeImage_GetBPP");
    auto* const widen = module.Find<DornConvertTo32BitsCall>("FreeImage_ConvertTo32Bits");
    auto* const save = module.Find<DornSaveCall>("FreeImage_Save");
    auto* const unload = module.Find<DornUnloadCall>("FreeImage_Unload");
    if (!create || !depth || !widen || !save || !unload) return false;

    HBITMAP rows = bitmap;
    if (!rows->IsTopDown()) {
        rows = CTovPixels::Create(bitmap->GetWidth(), -bitmap->GetHeight());
        if (rows == nullptr || !rows->CopyFrom(*bitmap)) return false;
    }
    DornBitmap const record{rows->GetWidth(), rows->GetHeight(), rows->GetBits()};
    std::unique_ptr<void, FreeImageRelease> image(create(dc, &record), {unload});
    if (image == nullptr) return false;
    // Not all kinds of files take 16 bits.
    if (depth(image.get()) == 16) image.reset(widen(image.get()));
    if (image == nullptr) return false;
    auto const error = WriteWholeFileBy(path, [&](char const* temporary) {
        return save(format, image.get(), temporary, 0) ? std::error_code{}
                                                       : std::make_error_code(std::errc::io_error);
    });
    return !error;
}

}  // namespace tov
