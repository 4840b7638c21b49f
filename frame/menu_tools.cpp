// Copying and tidying of menus.
#include <tov310/menu.h>
#include <tov310/messages.h>

#include "frame/menu_tools.h"

#include <string_view>

namespace tov {
namespace {

constexpr unsigned propertiesText = 26046;

}  // namespace

bool MenuTextIs(CMenu const& menu, unsigned position, std::string_view token) {
    CString text;
    menu.GetMenuString(position, text, MF_BYPOSITION);
    if (text.size() != token.size()) return false;
    for (std::size_t i = 0; i < token.size(); ++i) {
        char const c = text[i];
        if ((c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c) != token[i]) return false;
    }
    return true;
}

int TovMenuIsSeparator(CMenu* menu, unsigned int position) {
    if (menu == nullptr || menu->GetSubMenu(position) != nullptr) return 0;
    unsigned const state = menu->GetMenuState(position, MF_BYPOSITION);
    return state != tovNoMenuItem && (state & MF_SEPARATOR) != 0;
}

unsigned int TovMenuCopyRecursive(CMenu const* from, CMenu* to, unsigned int position) {
    if (from == nullptr || to == nullptr) return 0;
    return to->InsertCopies(*from, position);
}

unsigned int TovMenuCheckEmptyPopupMenus(CMenu* menu) {
    if (menu == nullptr) return 0;
    unsigned removed = 0;
    for (unsigned i = 0; i < menu->GetMenuItemCount();) {
        CMenu* const popup = menu->GetSubMenu(i);
        if (popup != nullptr) removed += TovMenuCheckEmptyPopupMenus(popup);
        if (popup != nullptr && popup->GetMenuItemCount() == 0) {
            menu->DeleteMenu(i, MF_BYPOSITION);
            ++removed;
        } else {
            ++i;
        }
    }
    return removed;
}

unsigned int TovMenuCheckSeparators(CMenu* menu) {
    if (menu == nullptr) return 0;
    unsigned removed = 0;
    for (unsigned i = 0; i < menu->GetMenuItemCount();) {
        if (TovMenuIsSeparator(menu, i) != 0 && (i == 0 || TovMenuIsSeparator(menu, i - 1) != 0)) {
            menu->DeleteMenu(i, MF_BYPOSITION);
            ++removed;
            continue;
        }
        removed += TovMenuCheckSeparators(menu->GetSubMenu(i));
        ++i;
    }
    while (menu->GetMenuItemCount() != 0 && TovMenuIsSeparator(menu, menu->GetMenuItemCount() - 1) != 0) {
        menu->DeleteMenu(menu->GetMenuItemCount() - 1, MF_BYPOSITION);
        ++removed;
    }
    return removed;
}

void TovMenuReplaceItem(CMenu* menu, unsigned int position, HINSTANCE module, unsigned int textId,
                        unsigned int command) {
    if (menu == nullptr || position >= menu->GetMenuItemCount()) return;
    CString text;
    TovLoadResourceString(module, textId, text);
    menu->ModifyMenu(position, MF_BYPOSITION | MF_STRING, command, text.c_str());
}

int TovMenuCustomize(CMenu* menu) {
    if (menu == nullptr) return 0;
    int replaced = 0;
    for (unsigned i = 0; i < menu->GetMenuItemCount(); ++i) {
        if (MenuTextIs(*menu, i, "%PROPERTIES")) {
            TovMenuReplaceItem(menu, i, TovGetTovResourceHandle(), propertiesText, WM_TOV_PROPERTIES);
            replaced = 1;
        } else if (TovMenuCustomize(menu->GetSubMenu(i)) != 0) {
            replaced = 1;
        }
    }
    return replaced;
}

}  // namespace tov
