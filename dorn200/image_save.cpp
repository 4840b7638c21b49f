// FreeImage_Save as the library asks for it: FreeImage's own refuses a picture that has more colours than the
// format holds, and does not notice a full disk.
#include "dorn200/image_source.h"

#include <algorithm>

namespace tov {
namespace {

unsigned DLL_CALLCONV ReadBack(void* buffer, unsigned size, unsigned count, fi_handle handle) {
    return static_cast<unsigned>(std::fread(buffer, size, count, static_cast<std::FILE*>(handle)));
}

unsigned DLL_CALLCONV WriteOut(void* buffer, unsigned size, unsigned count, fi_handle handle) {
    return static_cast<unsigned>(std::fwrite(buffer, size, count, static_cast<std::FILE*>(handle)));
}

int DLL_CALLCONV SeekOut(fi_handle handle, long offset, int origin) {
    return std::fseek(static_cast<std::FILE*>(handle), offset, origin);
}

long DLL_CALLCONV PositionOut(fi_handle handle) {
    return std::ftell(static_cast<std::FILE*>(handle));
}

// Over white, as on paper.
FreeImagePtr WithoutAlpha(FIBITMAP* image) {
    RGBQUAD white{255, 255, 255, 0};
    return FreeImagePtr(FreeImage_GetBPP(image) == 32 ? FreeImage_Composite(image, FALSE, &white, nullptr)
                                                      : FreeImage_ConvertTo24Bits(image));
}

// 256 colours; unchanged where the picture has no more. What is more transparent than not becomes the one
// transparent entry.
FreeImagePtr WithPalette(FIBITMAP* image) {
    bool const hasAlpha = FreeImage_GetBPP(image) == 32;
    constexpr int transparent = 255;
    int const colours = hasAlpha ? 255 : 256;
    FreeImagePtr const flat(hasAlpha ? FreeImage_ConvertTo24Bits(image) : FreeImage_Clone(image));
    if (flat == nullptr) return nullptr;
    FreeImagePtr result(FreeImage_ColorQuantizeEx(flat.get(), FIQ_LFPQUANT, colours, 0, nullptr));
    if (result == nullptr)
        result.reset(FreeImage_ColorQuantizeEx(flat.get(), FIQ_WUQUANT, colours, 0, nullptr));
    if (result == nullptr || !hasAlpha) return result;
    unsigned const width = FreeImage_GetWidth(image);
    for (unsigned y = 0; y < FreeImage_GetHeight(image); ++y) {
        BYTE const* const from = FreeImage_GetScanLine(image, static_cast<int>(y));
        BYTE* const to = FreeImage_GetScanLine(result.get(), static_cast<int>(y));
        for (unsigned x = 0; x < width; ++x) {
            if (from[x * 4 + FI_RGBA_ALPHA] < 128) to[x] = transparent;
        }
    }
    FreeImage_SetTransparentIndex(result.get(), transparent);
    return result;
}

// A set bit is black in these files, which FreeImage minds only when it reads.
FreeImagePtr AsInk(FreeImagePtr image) {
    for (unsigned y = 0; image != nullptr && y < FreeImage_GetHeight(image.get()); ++y) {
        BYTE* const line = FreeImage_GetScanLine(image.get(), static_cast<int>(y));
        std::transform(line, line + FreeImage_GetLine(image.get()), line,
                       [](BYTE bits) { return static_cast<BYTE>(~bits); });
    }
    return image;
}

// The picture in the richest form that the format holds; null where it is fine as it is.
FreeImagePtr Fitting(FREE_IMAGE_FORMAT format, FIBITMAP* image) {
    auto const takes = [&](unsigned bits) {
        return FreeImage_FIFSupportsExportBPP(format, static_cast<int>(bits)) != 0;
    };
    auto const blackAndWhite = [&] {
        return FreeImagePtr(FreeImage_Dither(WithoutAlpha(image).get(), FID_FS));
    };
    // These are told apart by their depth alone, and FreeImage would write any of them.
    if (format == FIF_PBM || format == FIF_PBMRAW) return AsInk(blackAndWhite());
    if (format == FIF_PGM || format == FIF_PGMRAW)
        return FreeImagePtr(FreeImage_ConvertToGreyscale(WithoutAlpha(image).get()));
    // Four samples of theirs are printing inks.
    bool const takesAlpha = takes(32) && format != FIF_JPEG && format != FIF_JNG;
    if (FreeImage_GetBPP(image) == 32 ? takesAlpha : takes(FreeImage_GetBPP(image))) return nullptr;
    if (takes(24)) return WithoutAlpha(image);
    if (takes(8)) return WithPalette(image);
    return takes(1) ? blackAndWhite() : nullptr;
}

}  // namespace
}  // namespace tov

// Found before FreeImage's own by whoever asks the module for the name.
extern "C" __attribute__((visibility("default"))) BOOL DLL_CALLCONV FreeImage_Save(FREE_IMAGE_FORMAT format,
                                                                                   FIBITMAP* image,
                                                                                   char const* path,
                                                                                   int flags) try {
    if (image == nullptr || path == nullptr || !FreeImage_FIFSupportsWriting(format)) return FALSE;
    auto const fitting = tov::Fitting(format, image);
    tov::FilePtr file(std::fopen(path, "w+b"));
    if (file == nullptr) return FALSE;
    FreeImageIO io{tov::ReadBack, tov::WriteOut, tov::SeekOut, tov::PositionOut};
    bool good = FreeImage_SaveToHandle(format, fitting != nullptr ? fitting.get() : image, &io, file.get(),
                                       flags) != 0;
    good = good && std::ferror(file.get()) == 0;
    return std::fclose(file.release()) == 0 && good ? TRUE : FALSE;
} catch (...) {
    return FALSE;
}
