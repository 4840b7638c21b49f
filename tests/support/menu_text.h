// Menus as texts.
#pragma once

#include <tov310/menu.h>

#include <string>

namespace tov::test {

// Each word with a blank behind it: "name=id " a command, "- " a separator, "name( ... ) " a popup. Without
// words only the tokens, which begin with "%", stand with their names.
inline std::string Told(CMenu const& menu, bool words = true) {
    std::string told;
    for (unsigned i = 0; i < menu.GetMenuItemCount(); ++i) {
        CString text;
        menu.GetMenuString(i, text, MF_BYPOSITION);
        if (!words && !text.starts_with('%')) text.clear();
        if (CMenu const* const popup = menu.GetSubMenu(i))
            told += text + "( " + Told(*popup, words) + ") ";
        else if ((menu.GetMenuState(i, MF_BYPOSITION) & MF_SEPARATOR) != 0)
            told += "- ";
        else
            told += text + '=' + std::to_string(menu.GetMenuItemID(i)) + ' ';
    }
    return told;
}

}  // namespace tov::test
