// An image file as FreeImage reads it, watched while it does.
#pragma once

#include <FreeImage.h>

#include <cstdio>
#include <memory>
#include <string_view>

namespace tov {

struct FreeImageUnload {
    void operator()(FIBITMAP* image) const { FreeImage_Unload(image); }
};
using FreeImagePtr = std::unique_ptr<FIBITMAP, FreeImageUnload>;

struct FileClose {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using FilePtr = std::unique_ptr<std::FILE, FileClose>;

struct ImageFacts {
    unsigned width = 0;
    unsigned height = 0;
    unsigned bitsPerPixel = 0;
};

// Only formats that are asked for are let in, and told by their first bytes: FreeImage itself would try some
// thirty readers on a file, most of them for formats that nobody has any more.
class ImageSource {
 public:
    explicit ImageSource(char const* path);

    // From the header; no pixel is decoded. False where the file is of no known format or damaged.
    bool Tell(ImageFacts& facts);

    // Null where it cannot be decoded, or ends before the picture does: some readers fill up what is missing.
    FreeImagePtr Load();

 private:
    static unsigned DLL_CALLCONV Read(void* buffer, unsigned size, unsigned count, fi_handle handle);
    static int DLL_CALLCONV Seek(fi_handle handle, long offset, int origin);
    static long DLL_CALLCONV Position(fi_handle handle);

    FreeImagePtr Decode(int flags);
    bool TellGif(ImageFacts& facts);
    bool TellJpeg2000(ImageFacts& facts);

    FilePtr m_file;
    FREE_IMAGE_FORMAT m_format = FIF_UNKNOWN;
    bool m_readsAhead = false;  // in blocks, so that a short one at the end means nothing
    bool m_ranOut = false;
};

}  // namespace tov
