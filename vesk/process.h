// Starting other programs.
#pragma once

#include <chrono>
#include <string>
#include <system_error>
#include <vector>

namespace tov {

// The file of a program by the folders of PATH; empty where there is none.
std::string FindProgram(std::string const& name);

// Starts a program that goes its own way: without a shell, without standard input and output, in a session of
// its own, and without becoming a child that somebody would have to wait for. `arguments` are those behind
// its name.
//
// Answers a failure to start it. Otherwise `exitCode` tells how it ended when it ended within `patience` (by
// a signal 128 and its number), and is 0 while it goes on.
std::error_code StartProgram(std::string const& path, std::vector<std::string> const& arguments,
                             std::chrono::milliseconds patience, int& exitCode);

}  // namespace tov
