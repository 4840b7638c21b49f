// Shows a table of places, and how far two of them are apart.
#pragma once

#include "arguments.h"
#include "common.h"
#include "units.h"

#include <optional>
#include <string>

namespace survey {

// What is remembered until the next start; what is not there stays as it was.
struct Choice {
    Unit const* unit = nullptr;
    Unit const* distanceUnit = nullptr;
    std::optional<std::string> format;  // empty for none
    std::optional<int> decimals;
    std::optional<int> distanceDecimals;
};

struct ShowOptions {
    std::string file;  // empty for the table that comes with the program
    int recent = 0;    // which one of the recent tables, from 1
    std::string from;
    std::string to;
    Choice choice;
    bool all = false;
};

inline constexpr int mostDecimals = 12;

// Throws UsageError.
ShowOptions ReadShowOptions(Arguments& arguments, CommonOptions& common);

// Each unit has an example in the language of the library.
std::string ShowHelp();
int RunShow(Arguments& arguments, CommonOptions& common);

}  // namespace survey
