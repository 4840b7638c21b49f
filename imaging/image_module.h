// Image files, read within limits: through the run-time module Dorn200, which is loaded for each call and
// freed, or by readers of our own.
#pragma once

#include <tov310/pixels.h>

#include <cstdint>
#include <string_view>

namespace tov {

class CDC;

struct ImageFileFacts {
    int width = 0;
    int height = 0;
    int bitsPerPixel = 0;
};

// False where the module is missing. The picture is null where it does not make one of the file.
bool ReadWithModule(char const* path, HBITMAP& picture);

// A picture of a file by a reader of our own, which is asked in a copy of this process; null where it makes
// none. `extent` tells from the beginning of a file how much of it is to be read.
HBITMAP ReadApart(char const* path, std::uint64_t (*extent)(std::string_view head, std::uint64_t fileSize),
                  HBITMAP (*read)(std::string_view bytes));

bool TellWithModule(char const* path, ImageFileFacts& facts);

// Whole or not at all.
bool WriteWithModule(CDC* dc, HBITMAP const& bitmap, int format, char const* path);

}  // namespace tov
