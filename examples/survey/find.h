// Searches a folder for files.
#pragma once

#include "common.h"

#include <tov310/types.h>

#include <string>
#include <string_view>
#include <vector>

namespace survey {

// What a list of files is given to search a folder for files of at least one pattern.
std::vector<tov::CString> SearchTexts(std::string_view folder, std::vector<std::string> const& patterns);

// Prints the files with size and time, and the progress meanwhile where standard error is a terminal. An
// interrupt from the keyboard ends the search.
int RunFind(Arguments& arguments, CommonOptions& common);
std::string FindHelp();

}  // namespace survey
