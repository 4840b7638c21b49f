// Searches a folder for files.
#pragma once

#include "options.h"

namespace survey {

// Prints the files with size and time, and the progress meanwhile where standard error is a terminal. An
// interrupt from the keyboard ends the search. Answers the program's exit code.
int Find(Search const& search);

}  // namespace survey
