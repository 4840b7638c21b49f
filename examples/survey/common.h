// What every command takes.
#pragma once

#include "arguments.h"

#include <string>

namespace survey {

struct CommonOptions {
    std::string language;                // empty for the one that is built into the library
    std::string profile = "Survey.ini";  // in the user's configuration folder
    bool reset = false;
    bool help = false;
};

// Takes the present argument if it is one of these options; it may stand before the command or behind it.
bool TakeCommon(Arguments& arguments, CommonOptions& options);

// Has the library speak the language; UsageError where there are no texts in it.
void LoadLanguage(std::string const& language);

// Says where things are remembered, and forgets them where that is asked for. Answers the place in words.
std::string OpenProfile(CommonOptions const& options);

}  // namespace survey
