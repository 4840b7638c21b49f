// Menus as texts.
#pragma once

#include <tov310/menu.h>

#include <string>

namespace tov::test {

// Each word with a blank behind it: "name=id " a command, "- " a separator, "name( ... ) " a popup. Marks
// behind id or name: "!" off, "+" checked, "o" as one of several, "#" owner-drawn. Without words only the
// tokens, which begin with "%", stand with their names.
inline std::string Told(CMenu const& menu, bool words = true) {
    std::string told;
    for (unsigned i = 0; i < menu.GetMenuItemCount(); ++i) {
        CString text;
        menu.GetMenuString(i, text, MF_BYPOSITION);
        if (!words && !text.starts_with('%')) text.clear();
        CMenu const* const popup = menu.GetSubMenu(i);
        unsigned const state = menu.GetMenuState(i, MF_BYPOSITION) & (popup != nullptr ? 0xFF : ~0u);
        bool const isSeparator = (state & MF_SEPARATOR) != 0;
        told += isSeparator ? "-" : text;
        if (popup == nullptr && !isSeparator) told += '=' + std::to_string(menu.GetMenuItemID(i));
        for (auto const& [flags, mark] : {std::pair(MF_GRAYED | MF_DISABLED, '!'), std::pair(MF_CHECKED, '+'),
                                          std::pair(MF_RADIOCHECK, 'o'), std::pair(MF_OWNERDRAW, '#')})
            if ((state & flags) != 0) told += mark;
        told += popup != nullptr ? "( " + Told(*popup, words) + ") " : " ";
    }
    return told;
}

}  // namespace tov::test
