// Texts that come into an edit from elsewhere.
#pragma once

#include <tov310/types.h>

#include <algorithm>

namespace tov {

// An edit has one line: the first that is not empty. A tab in it, as cells of
// tables are copied with, is a blank.
inline void MakeOneLine(CString& text) {
    text.erase(0, std::min(text.find_first_not_of("\r\n"), text.size()));
    text.erase(std::min(text.find_first_of("\r\n"), text.size()));
    std::ranges::replace(text, '\t', ' ');
    std::erase_if(text, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; });
}

}  // namespace tov
