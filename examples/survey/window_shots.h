// Pictures of all windows, for people to look at.
#pragma once

#include "common.h"

#include <string>

namespace survey {

std::string ShotsHelp();
int RunShots(Arguments& arguments, CommonOptions& common);

// Has the program use its own texts in a language; UsageError where there are none.
void UseWords(std::string const& language);

// The same for its own and the library's; empty is Chinese, which is built in.
void UseLanguage(std::string const& language);
std::string LanguageInUse();  // of its own texts

}  // namespace survey
