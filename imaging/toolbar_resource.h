// The text form of a toolbar in a resource module.
#pragma once

#include <tov310/geometry.h>

#include <string>
#include <string_view>
#include <vector>

namespace tov {

struct ToolbarResource {
    CSize image;                    // pixels
    std::vector<unsigned int> ids;  // 0 for a separator
};

// Reads the form that docs/resources.md tells. False with the reason where anything is wrong with it.
bool ParseToolbar(std::string_view json, ToolbarResource& toolbar, std::string* fault = nullptr);

}  // namespace tov
