// Draws a picture on a map sheet.
#pragma once

#include "common.h"

#include <string>

namespace survey {

// Loads an image, draws it, rotated, on a sheet with graticule, scale and north arrow, and saves the sheet.
int RunMap(Arguments& arguments, CommonOptions& common);
std::string MapHelp();

}  // namespace survey
