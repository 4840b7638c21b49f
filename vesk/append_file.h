// Appending to files that several writers share.
#pragma once

#include <chrono>
#include <string_view>
#include <system_error>

namespace tov {

// Appends all bytes or none and returns when they are on the disk; makes the file where it is missing.
// Writers come one after another: `timed_out` when the turn does not come in the given time. `opened` tells
// whether the file could be opened at all.
std::error_code AppendToFile(char const* path, std::string_view bytes, std::chrono::milliseconds patience,
                             bool& opened);

// The same through an open descriptor, at its own position. What was written to a pipe or terminal before a
// failure cannot be taken back.
std::error_code AppendToDescriptor(int descriptor, std::string_view bytes,
                                   std::chrono::milliseconds patience);

}  // namespace tov
