// The public record of a directory's entry.
#pragma once

#include <tov310/find_data.h>

#include "vesk/directory.h"

#include <string_view>

namespace tov {

// `isLink` tells of the entry itself, the facts of what it leads to.
void FillFindData(std::string_view name, bool isLink, EntryFacts const& facts, WIN32_FIND_DATAA& data);

// A path as the system takes it: "/" is the only separator there.
std::string SystemPath(char const* path);

}  // namespace tov
