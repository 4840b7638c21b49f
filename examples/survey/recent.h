// The tables that were opened last, kept in the profile.
#pragma once

#include "common.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace survey {

inline constexpr int mostRecent = 9;

// Puts a table first in the list. What cannot be kept is left out.
void RememberTable(std::filesystem::path const& path);

// Full paths, the newest first.
std::vector<std::string> RecentTables();

void ForgetRecentTables();

// The list for the user.
int RunRecent(Arguments& arguments, CommonOptions& common);
std::string RecentHelp();

}  // namespace survey
