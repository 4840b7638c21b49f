// Texts in the sets of characters of older files.
#pragma once

#include <string>
#include <string_view>

namespace tov {

// The bytes, which are in the named set ("GB18030"), as UTF-8. What has no character there becomes U+FFFD,
// and so does every byte that is not ASCII where the system does not know the set.
std::string VeskFromCodePage(std::string_view bytes, char const* set);

}  // namespace tov
