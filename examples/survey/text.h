// Text in UTF-8 as a terminal shows it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace survey {

bool IsUtf8(std::string_view text);

// Whether the text holds control characters (C0, DEL or, in UTF-8, C1), other than the one that is allowed.
bool HasControls(std::string_view text, char allowed = '\0');

// The cells that a text takes in a terminal: one for each character, but two for the wide ones of Chinese,
// Japanese and Korean, and none for marks that are drawn over the character before. The text is in UTF-8.
std::size_t DisplayWidth(std::string_view text);

// The text as it may be shown: a "?" for each control character and for what is not UTF-8.
std::string Shown(std::string_view text);

// A text of at most so many cells; a longer one loses its middle.
std::string Shortened(std::string_view text, std::size_t width);

// ASCII letters in small, "_" as a blank: names that differ only so are the same to a reader.
std::string Folded(std::string_view text);

}  // namespace survey
