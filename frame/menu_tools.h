// Helpers of the functions that work on menus.
#pragma once

#include <tov310/menu.h>

#include <string_view>

namespace tov {

// Whether the text of an entry is a token, which is given in capitals; the entry's own case does not count.
bool MenuTextIs(CMenu const& menu, unsigned position, std::string_view token);

}  // namespace tov
