// Image files through the run-time module Dorn200, which is loaded for each call and freed.
#pragma once

#include <tov310/pixels.h>

namespace tov {

class CDC;

struct ImageFileFacts {
    int width = 0;
    int height = 0;
    int bitsPerPixel = 0;
};

// Null where the module is missing, or does not make a picture of the file.
HBITMAP ReadWithModule(char const* path);

bool TellWithModule(char const* path, ImageFileFacts& facts);

// Whole or not at all.
bool WriteWithModule(CDC* dc, HBITMAP const& bitmap, int format, char const* path);

}  // namespace tov
