// Names for the basic types that every other header uses.
#pragma once

#include <compare>
#include <cstdint>
#include <functional>
#include <string>

namespace tov {

// Text, always UTF-8. Where a length is limited for or shown to a user it counts code points.
// A null `char const*` argument means an empty text everywhere in the library.
using CString = std::string;

using WPARAM = std::uintptr_t;  // first parameter of a message, as wide as a pointer
using LPARAM = std::intptr_t;   // second parameter of a message, as wide as a pointer
using LRESULT = std::intptr_t;  // answer to a message

// Names a window. A handle is never used for a second window in the same process, so one that has
// outlived its window is harmless: every function that takes it finds nothing. The default value
// names no window.
struct HWND {
    std::uint64_t id = 0;

    explicit constexpr operator bool() const { return id != 0; }
    friend constexpr auto operator<=>(HWND const&, HWND const&) = default;
};

// A font of the toolkit; null is the usual one. Borrowed wherever it is handed over.
using HFONT = struct CTovNativeFont const*;

// A message on its way.
struct tagMSG {
    HWND hwnd;
    unsigned message = 0;
    WPARAM wParam = 0;
    LPARAM lParam = 0;
};
using MSG = tagMSG;

}  // namespace tov

template <>
struct std::hash<tov::HWND> {
    std::size_t operator()(tov::HWND window) const noexcept { return std::hash<std::uint64_t>{}(window.id); }
};
