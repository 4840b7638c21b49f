#include "imaging/toolbar_resource.h"

#include <cstdint>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

namespace tov {
namespace {

using ToolbarJson = nlohmann::json;

constexpr int largestToolbarImage = 1024;
constexpr std::uint64_t lastToolbarCommand = 0xFFFF;  // commands travel in half a word

bool ReadWhole(ToolbarJson const& number, std::uint64_t least, std::uint64_t most, std::uint64_t& whole) {
    if (!number.is_number_unsigned()) return false;
    whole = number.get<std::uint64_t>();
    return whole >= least && whole <= most;
}

bool ReadSide(ToolbarJson const& toolbar, char const* name, int& side) {
    std::uint64_t whole = 0;
    auto const found = toolbar.find(name);
    if (found == toolbar.end() || !ReadWhole(*found, 1, largestToolbarImage, whole)) return false;
    side = static_cast<int>(whole);
    return true;
}

}  // namespace

bool ParseToolbar(std::string_view json, ToolbarResource& toolbar) {
    // One object with numbers and a list of them; no member may stand twice.
    std::set<std::string> names;
    bool refused = false;
    auto const look = [&](int depth, ToolbarJson::parse_event_t event, ToolbarJson& parsed) {
        if (event == ToolbarJson::parse_event_t::key)
            refused = refused || !names.insert(parsed.get<std::string>()).second;
        refused = refused || depth > 2;
        return !refused;
    };
    ToolbarJson const tree = ToolbarJson::parse(json, look, false);
    if (refused || !tree.is_object() || tree.size() != 3) return false;
    auto const items = tree.find("items");
    if (!ReadSide(tree, "width", toolbar.image.cx) || !ReadSide(tree, "height", toolbar.image.cy) ||
        items == tree.end() || !items->is_array())
        return false;
    toolbar.ids.clear();
    for (ToolbarJson const& item : *items) {
        std::uint64_t id = 0;
        if (!ReadWhole(item, 0, lastToolbarCommand, id)) return false;
        toolbar.ids.push_back(static_cast<unsigned int>(id));
    }
    return true;
}

}  // namespace tov
