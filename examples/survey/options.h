// What the command line asks for.
#pragma once

#include "units.h"

#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace survey {

// What is remembered until the next start; what is not there stays as it was.
struct Choice {
    Unit const* unit = nullptr;
    Unit const* distanceUnit = nullptr;
    std::optional<std::string> format;  // empty for none
    std::optional<int> decimals;
};

enum class Command { kShow, kFind, kRecent };

enum class Order { kFound, kName, kPath, kSize, kTime };

// What "survey find" looks for.
struct Search {
    std::string directory;
    std::vector<std::string> patterns;  // at least one
    bool flat = false;                  // the directory alone and nothing below
    Order order = Order::kFound;
};

struct Options {
    Command command = Command::kShow;
    Search search;
    std::string file;  // empty for the table that comes with the program
    int recent = 0;    // which one of the recent tables, from 1
    std::string from;
    std::string to;
    Choice choice;
    std::string language;                // empty for the one that is built into the library
    std::string profile = "Survey.ini";  // in the user's configuration folder
    bool all = false;
    bool reset = false;
    bool help = false;
};

// The message says what is wrong, in one line.
class UsageError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

inline constexpr int mostDecimals = 12;

// Throws UsageError.
Options ReadOptions(std::span<char const* const> arguments);

// The text for --help, each unit with an example in the language of the library.
std::string HelpText();

}  // namespace survey
