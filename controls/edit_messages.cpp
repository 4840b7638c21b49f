#include "controls/edit_messages.h"

#include "frame/resource_module.h"

#include <initializer_list>
#include <utility>

namespace tov {
namespace {

using Placeholder = std::pair<std::string_view, std::string_view>;

// In the order in which they stand; what was put in is not searched.
std::string FilledIn(std::string_view text, std::initializer_list<Placeholder> placeholders) {
    std::string out;
    std::size_t from = 0;
    for (auto const& [name, value] : placeholders) {
        std::size_t const at = text.find(name, from);
        if (at == text.npos) continue;
        out.append(text.substr(from, at - from)).append(value);
        from = at + name.size();
    }
    return out.append(text.substr(from));
}

}  // namespace

std::string RangeMessage(std::string_view minimum, std::string_view maximum) {
    constexpr unsigned rangeText = 26082;
    std::string const& text = LibraryString(rangeText);
    Placeholder const least{"MIN", minimum};
    Placeholder const most{"MAX", maximum};
    return text.find("MIN") <= text.find("MAX") ? FilledIn(text, {least, most})
                                                : FilledIn(text, {most, least});
}

std::string CountMessage(unsigned id, unsigned long count, unsigned long limit) {
    return FilledIn(LibraryString(id), {{"%d", std::to_string(count)}, {"%d", std::to_string(limit)}});
}

}  // namespace tov
