#include "imaging/picture_resource.h"

#include "imaging/bitmap_readers.h"

#include <string>
#include <utility>

namespace tov {
namespace {

// A bitmap resource by its name without the ending.
struct BitmapResource {
    HBITMAP picture;
    bool isBuiltIn = false;
};

BitmapResource FindBitmap(HINSTANCE module, std::string const& name) {
    using Reader = HBITMAP (*)(std::string_view bytes);
    for (auto const& [ending, read] : {std::pair<char const*, Reader>(".png", ReadPng), {".bmp", ReadBmp}}) {
        std::string const file = name + ending;
        std::string_view const bytes = TovFindResource(module, file.c_str());
        HBITMAP picture = read(bytes);
        if (!picture) continue;
        std::string_view const builtIn = TovFindResource(TovBuiltInResourceModule(), file.c_str());
        return {std::move(picture), bytes.data() == builtIn.data()};
    }
    return {};
}

}  // namespace

PictureResource LoadPicture(HINSTANCE module, unsigned int id) {
    HINSTANCE const used = module != nullptr ? module : TovGetResourceHandle();
    std::string const name = "bitmaps/" + std::to_string(id);
    BitmapResource plain = FindBitmap(used, name);
    if (!plain.picture) return {};
    // What a module lacks the built-in one answers; the companion must not come from there alone.
    BitmapResource fine = FindBitmap(used, name + "@2x");
    if (!fine.picture || fine.isBuiltIn != plain.isBuiltIn ||
        fine.picture->GetWidth() != 2 * plain.picture->GetWidth() ||
        fine.picture->GetHeight() != 2 * plain.picture->GetHeight())
        fine.picture = nullptr;
    return {std::move(plain.picture), std::move(fine.picture)};
}

}  // namespace tov
