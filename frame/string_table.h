// The texts of a resource module: strings.json, one object whose keys are decimal ids and whose values are
// texts.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

namespace tov {

using StringTable = std::unordered_map<unsigned, std::string>;

// Reads a table. On failure answers false with the table empty and a text for the developer that names line
// and reason: no JSON, no UTF-8, something else than an object of texts, an id that is no number or stands
// twice.
bool ParseStringTable(std::string_view json, StringTable& table, std::string& reason);

}  // namespace tov
