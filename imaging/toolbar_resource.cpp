#include "imaging/toolbar_resource.h"

#include "frame/json_words.h"

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

bool ParseToolbar(std::string_view json, ToolbarResource& toolbar, std::string* fault) {
    std::string reason;
    auto const refuse = [&](std::string const& words) {
        if (fault != nullptr) *fault = reason.empty() ? words : reason;
        return false;
    };
    // One object with numbers and a list of them; no member may stand twice.
    std::set<std::string> names;
    auto const look = [&](int depth, ToolbarJson::parse_event_t event, ToolbarJson& parsed) {
        if (event == ToolbarJson::parse_event_t::key && !names.insert(parsed.get<std::string>()).second)
            reason = "a member stands twice";
        if (depth > 2) reason = "lies too deep";
        return reason.empty();
    };
    try {
        ToolbarJson const tree = ToolbarJson::parse(json, look);
        if (!reason.empty() || !tree.is_object()) return refuse("is not an object");
        if (tree.size() != 3) return refuse("has other members than \"width\", \"height\" and \"items\"");
        if (!ReadSide(tree, "width", toolbar.image.cx) || !ReadSide(tree, "height", toolbar.image.cy))
            return refuse("\"width\" or \"height\" is no number from 1 to 1024");
        auto const items = tree.find("items");
        if (items == tree.end() || !items->is_array()) return refuse("\"items\" is not a list");
        toolbar.ids.clear();
        for (ToolbarJson const& item : *items) {
            std::uint64_t id = 0;
            if (!ReadWhole(item, 0, lastToolbarCommand, id))
                return refuse("an item is no number from 0 to 65535");
            toolbar.ids.push_back(static_cast<unsigned int>(id));
        }
        return true;
    } catch (ToolbarJson::exception const& error) {
        return refuse(WordsOfParser(error.what()));
    }
}

}  // namespace tov
