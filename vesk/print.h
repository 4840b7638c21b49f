// Printing without the locale of the process.
#pragma once

#include <cstdarg>
#include <string>

namespace tov {

// As std::vsnprintf in the C locale with UTF-8. False, with an empty text, where that fails.
[[gnu::format(printf, 2, 0)]] bool VeskPrint(std::string& text, char const* format, std::va_list arguments);

}  // namespace tov
