// The text form of a menu in a resource module.
#pragma once

#include <tov310/menu.h>

#include <string>
#include <string_view>

namespace tov {

// Fills an empty menu from the form that docs/resources.md tells. Whatever is wrong gives false with the
// reason and leaves the menu of no use.
bool ParseMenu(std::string_view json, CMenu& menu, std::string* fault = nullptr);

}  // namespace tov
