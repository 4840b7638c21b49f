// The commands of the program: the first word of a call that is no option.
#pragma once

#include "common.h"

#include <span>
#include <string>
#include <string_view>

namespace survey {

struct Command {
    std::string_view name;   // empty for what is done without a command
    std::string_view usage;  // what stands behind the name in a call
    std::string_view about;  // in one line

    // Its own help, as it stands below the line of its usage.
    std::string (*help)();

    // Reads the arguments behind the name, and works. `common` holds what stood before the name; the command
    // takes what common options follow. Where help is asked for it reads its arguments and does nothing.
    // Answers the exit code; throws UsageError.
    int (*run)(Arguments& arguments, CommonOptions& common);
};

std::span<Command const> Commands();

}  // namespace survey
