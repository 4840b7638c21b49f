// Shows a moment in the clocks that a surveyor meets.
#pragma once

#include "common.h"

#include <string>

namespace survey {

// Prints UTC, local time and GPS time, the leap seconds, and the moment in all formats of the library. Learns
// leap seconds before, where that is asked for.
int RunTime(Arguments& arguments, CommonOptions& common);
std::string TimeHelp();

// Forgets what was learned in this profile.
void ForgetLeapSeconds();

}  // namespace survey
