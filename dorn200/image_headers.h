// Heads of image files that FreeImage cannot read without decoding their pixels.
#pragma once

#include <cstdio>

namespace tov {

struct ImageFacts {
    unsigned width = 0;
    unsigned height = 0;
    unsigned bitsPerPixel = 0;
};

// The first picture of a file in the Graphics Interchange Format (89a, sections 18 to 24). The depth is that
// of its colour table as FreeImage keeps it.
bool TellGif(std::FILE* file, ImageFacts& facts);

// Whether the first picture has as many pixels as its head tells. FreeImage leaves out what is missing.
bool HasAllGifPixels(std::FILE* file);

// Whether the packed pixels of a bitmap file can be as many as its head tells. FreeImage leaves out what is
// missing. True for files that are not packed.
bool MayHaveAllBmpPixels(std::FILE* file);

// JPEG 2000, the stream alone or boxed in a JP2 file. False also where the stream has no end.
bool TellJpeg2000(std::FILE* file, bool isBoxed, ImageFacts& facts);

}  // namespace tov
