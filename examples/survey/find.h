// Searches a folder for files.
#pragma once

#include "common.h"

#include <string>

namespace survey {

// Prints the files with size and time, and the progress meanwhile where standard error is a terminal. An
// interrupt from the keyboard ends the search.
int RunFind(Arguments& arguments, CommonOptions& common);
std::string FindHelp();

}  // namespace survey
