#include "frame/menu_resource.h"

#include "frame/json_words.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

namespace tov {
namespace {

constexpr int popupsInPopups = 16;
constexpr unsigned lastMenuCommand = 0xFFFF;  // commands travel in half a word

using Json = nlohmann::json;

// Members of an entry are few and none may be misspelt, so those that were understood are counted.
class EntryReader {
 public:
    explicit EntryReader(Json const& entry) : m_entry(entry) {}

    // The member, or null.
    Json const* Find(char const* name) {
        auto const found = m_entry.find(name);
        if (found == m_entry.end()) return nullptr;
        ++m_understood;
        return &*found;
    }

    // A member that can only be true.
    bool IsSet(char const* name, bool& good) {
        Json const* const member = Find(name);
        good = good && (member == nullptr || (member->is_boolean() && member->get<bool>()));
        return member != nullptr;
    }

    bool Text(CString& text) {
        Json const* const member = Find("text");
        if (member == nullptr || !member->is_string()) return false;
        text = member->get_ref<std::string const&>();
        return text.find('\0') == text.npos;
    }

    bool Id(unsigned& id) {
        id = 0;
        Json const* const member = Find("id");
        if (member == nullptr) return true;
        if (!member->is_number_unsigned() || member->get<std::uint64_t>() > lastMenuCommand) return false;
        id = member->get<unsigned>();
        return true;
    }

    bool AllUnderstood() const { return m_understood == m_entry.size(); }

 private:
    Json const& m_entry;
    std::size_t m_understood = 0;
};

bool ReadMenuEntries(Json const& entries, CMenu& menu, int depth, std::string& fault);

// One of {"separator": true}, {"text", "id", "checked", "grayed"} and {"text", "items", "grayed"}.
bool ReadMenuEntry(Json const& json, CMenu& menu, int depth, std::string& fault) {
    auto const refuse = [&fault](char const* reason) {
        if (fault.empty()) fault = reason;
        return false;
    };
    constexpr char const* strange = "a member is not true where it can only be true, or does not belong here";
    if (!json.is_object()) return refuse("is not an object");
    EntryReader entry(json);
    bool good = true;
    if (entry.IsSet("separator", good)) {
        if (!good || !entry.AllUnderstood()) return refuse(strange);
        return menu.AppendMenu(MF_SEPARATOR) != 0;
    }
    CString text;
    if (!entry.Text(text)) return refuse("\"text\" is missing or no text");
    unsigned flags = MF_STRING;
    if (entry.IsSet("grayed", good)) flags |= MF_GRAYED;
    if (Json const* const items = entry.Find("items")) {
        auto popup = std::make_unique<CMenu>();
        if (!good || !entry.AllUnderstood()) return refuse(strange);
        if (!ReadMenuEntries(*items, *popup, depth + 1, fault)) return false;
        return menu.AppendMenu(flags | MF_POPUP, std::move(popup), text.c_str()) != 0;
    }
    if (entry.IsSet("checked", good)) flags |= MF_CHECKED;
    unsigned id = 0;
    if (!entry.Id(id)) return refuse("\"id\" is no number from 0 to 65535");
    if (!good || !entry.AllUnderstood()) return refuse(strange);
    return menu.AppendMenu(flags, id, text.c_str()) != 0;
}

bool ReadMenuEntries(Json const& entries, CMenu& menu, int depth, std::string& fault) {
    if (depth > popupsInPopups || !entries.is_array()) {
        fault = depth > popupsInPopups ? "lies too deep" : "the entries are not a list";
        return false;
    }
    int number = 0;
    for (Json const& entry : entries) {
        ++number;
        if (ReadMenuEntry(entry, menu, depth, fault)) continue;
        fault.insert(0, CString("entry ").append(std::to_string(number)).append(": "));
        return false;
    }
    return true;
}

}  // namespace

bool ParseMenu(std::string_view json, CMenu& menu, std::string* fault) {
    std::string ignored;
    std::string& reason = fault != nullptr ? *fault : ignored;
    reason.clear();
    // Each popup is a list in an object. What lies deeper, or stands twice in an object, is dropped while it
    // is read.
    std::vector<std::vector<std::string>> keys;
    auto const look = [&](int depth, Json::parse_event_t event, Json& parsed) {
        if (!reason.empty()) return false;
        switch (event) {
            case Json::parse_event_t::object_start:
                keys.emplace_back();
                break;
            case Json::parse_event_t::object_end:
                keys.pop_back();
                break;
            case Json::parse_event_t::key: {
                auto const& key = parsed.get_ref<std::string const&>();
                auto& known = keys.back();
                if (std::find(known.begin(), known.end(), key) != known.end())
                    reason.assign(1, '"').append(key).append("\" stands twice in an entry");
                known.push_back(key);
                break;
            }
            default:
                break;
        }
        if (depth > 2 * (popupsInPopups + 1)) reason = "lies too deep";
        return reason.empty();
    };
    try {
        Json const tree = Json::parse(json, look);
        return reason.empty() && ReadMenuEntries(tree, menu, 0, reason);
    } catch (Json::exception const& error) {
        reason = WordsOfParser(error.what());
        return false;
    }
}

}  // namespace tov
