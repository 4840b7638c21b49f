// The tables that were opened last, kept in the profile.
#pragma once

#include "common.h"

#include <tov310/last_documents.h>

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace survey {

inline constexpr int mostRecent = 9;

// Puts a table first in the list. What cannot be kept is left out.
void RememberTable(std::filesystem::path const& path);

// Full paths, the newest first.
std::vector<std::string> RecentTables();

void ForgetRecentTables();

// The same list for menus, and the path of one of its entries.
std::unique_ptr<tov::CTovLastDocuments> RecentDocuments();
std::string TableOf(std::string const& document);

// The list for the user.
int RunRecent(Arguments& arguments, CommonOptions& common);
std::string RecentHelp();

}  // namespace survey
