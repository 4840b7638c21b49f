// What the program remembers until its next start.
//
// The units are kept by the library, under its own entries and in its shared settings, which all latitudes,
// longitudes and distances use that have no settings of their own. Format and precision belong to this
// program: section "Survey", one entry for each unit, since what suits one unit seldom suits another.
#pragma once

#include "show.h"

#include <string>

namespace survey {

// Says where settings are remembered. Comes before everything else here, and before the first value is made.
// Answers the place in words that a user understands.
std::string OpenProfile(std::string const& path);

// Back to what the program begins with.
void ForgetSettings();

struct Settings {
    Unit const* unit;
    Unit const* distanceUnit;  // in which distances are shown first
    std::string format;        // empty for none
    int decimals;
    int distanceDecimals;
    bool remembered;  // not where the profile cannot be written
};

// Remembers what was chosen, and gives the library's shared settings that and what was remembered before.
Settings ApplySettings(Choice const& choice);

// The language of the window, as --lang names it; empty for none.
std::string RememberedLanguage();
void RememberLanguage(std::string const& language);

// In one line.
std::string Describe(Settings const& settings);

}  // namespace survey
