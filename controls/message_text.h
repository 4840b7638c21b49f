// Placeholders in messages for the user.
#pragma once

#include <tov310/types.h>

#include <string_view>

namespace tov {

// Puts a text in the place of the first such placeholder, if there is one.
inline void ReplaceFirst(CString& message, std::string_view placeholder, std::string_view text) {
    std::size_t const at = message.find(placeholder);
    if (at != message.npos) message.replace(at, placeholder.size(), text);
}

}  // namespace tov
