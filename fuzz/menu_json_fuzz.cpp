// Menus of resource modules come from translators: any bytes are read or refused, a menu that was read is
// written and read again as the same, and tidying ends with nothing left to tidy.
#include "frame/menu_resource.h"
#include "fuzz/expect.h"

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

namespace {

nlohmann::json Written(tov::CMenu const& menu) {
    nlohmann::json entries = nlohmann::json::array();
    for (unsigned i = 0; i < menu.GetMenuItemCount(); ++i) {
        unsigned const state = menu.GetMenuState(i, tov::MF_BYPOSITION);
        tov::CMenu const* const popup = menu.GetSubMenu(i);
        nlohmann::json& entry = entries.emplace_back(nlohmann::json::object());
        if (popup == nullptr && (state & tov::MF_SEPARATOR) != 0) {
            entry["separator"] = true;
            continue;
        }
        tov::CString text;
        menu.GetMenuString(i, text, tov::MF_BYPOSITION);
        entry["text"] = text;
        if ((state & tov::MF_GRAYED) != 0) entry["grayed"] = true;
        if (popup != nullptr) {
            entry["items"] = Written(*popup);
            continue;
        }
        if ((state & tov::MF_CHECKED) != 0) entry["checked"] = true;
        entry["id"] = menu.GetMenuItemID(i);
    }
    return entries;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    tov::CMenu menu;
    if (!tov::ParseMenu({reinterpret_cast<char const*>(data), size}, menu)) return 0;
    nlohmann::json const written = Written(menu);
    tov::CMenu again;
    Expect(tov::ParseMenu(written.dump(), again));
    Expect(Written(again) == written);
    tov::CMenu copy;
    tov::TovMenuCopyRecursive(&menu, &copy, 0);
    while (tov::TovMenuCheckEmptyPopupMenus(&menu) + tov::TovMenuCheckSeparators(&menu) != 0) {
    }
    Expect(menu.GetMenuItemCount() == 0 || tov::TovMenuIsSeparator(&menu, menu.GetMenuItemCount() - 1) == 0);
    return 0;
}
