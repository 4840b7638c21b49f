// An image file as FreeImage reads it, watched while it does.
#pragma once

#include "dorn200/image_headers.h"

#include <FreeImage.h>

#include <cstdio>
#include <memory>

namespace tov {

struct FreeImageUnload {
    void operator()(FIBITMAP* image) const { FreeImage_Unload(image); }
};
using FreeImagePtr = std::unique_ptr<FIBITMAP, FreeImageUnload>;

struct FileClose {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using FilePtr = std::unique_ptr<std::FILE, FileClose>;

// How a reader of FreeImage asks for bytes: in the very pieces that it needs; in blocks, so that a short one
// at the end means nothing; or also behind the end, so that nothing can be learnt from it.
enum class Reading { kExact, kBlocks, kBeyond };

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

    static void Hear(FREE_IMAGE_FORMAT format, char const* message);

    FreeImagePtr Decode(int flags);

    FilePtr m_file;
    FREE_IMAGE_FORMAT m_format = FIF_UNKNOWN;
    Reading m_reading = Reading::kExact;
    bool m_ranOut = false;
};

}  // namespace tov
