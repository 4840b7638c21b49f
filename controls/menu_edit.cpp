#include <tov310/menu_edit.h>

#include <tov310/cmd_ui.h>
#include <tov310/edit_host.h>
#include <tov310/messages.h>

#include "frame/menu_tools.h"
#include "frame/resource_module.h"

#include <algorithm>
#include <memory>
#include <string_view>

namespace tov {
namespace {

struct EditToken {
    std::string_view token;
    unsigned textId;
    unsigned command;
    bool changes;  // has no place in the menu of a read-only edit
    int (CTovEditHost::*can)();
};

constexpr unsigned insertText = 26078;

constexpr EditToken editTokens[] = {
    {"%UNDO", 26077, 0x304, true, &CTovEditHost::CanUndo},
    {"%REDO", 26076, 0x454, true, &CTovEditHost::CanRedo},
    {"%CUT", 26072, 0x300, true, &CTovEditHost::CanCut},
    {"%COPY", 26073, 0x301, false, &CTovEditHost::CanCopy},
    {"%PASTE", 26074, 0x302, true, &CTovEditHost::CanPaste},
    {"%DELETE", 26075, WM_TOV_EDIT_DELETE, true, &CTovEditHost::CanDelete},
    {"%SELECTALL", 26036, WM_TOV_EDIT_SELECT_ALL, false, &CTovEditHost::CanSelectAll},
};

// In a menu "&" marks a key and a tab begins the column of keys.
CString MenuTextOfItem(std::string_view item) {
    CString text;
    for (char const c : item) {
        if (c == '&') text += '&';
        text += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
    }
    return text;
}

}  // namespace

CTovMenuPopUpEdit::CTovMenuPopUpEdit(CTovEditHost* edit, std::vector<CString>* lastItems)
    : m_edit(edit), m_lastItems(lastItems) {}

CTovMenuPopUpEdit::~CTovMenuPopUpEdit() = default;

void CTovMenuPopUpEdit::CustomizeMenu() {
    bool const readOnly = m_edit != nullptr && m_edit->InputControl().GetReadOnlyMode() != 0;
    for (unsigned i = 0; i < GetMenuItemCount();) {
        bool const doubled = TovMenuIsSeparator(this, i) && (i == 0 || TovMenuIsSeparator(this, i - 1));
        auto const* const token = std::ranges::find_if(
            editTokens, [&](EditToken const& candidate) { return MenuTextIs(*this, i, candidate.token); });
        bool stays = !doubled;
        if (MenuTextIs(*this, i, "%INSERT")) {
            stays = !readOnly && CustomizeInsert(i);
        } else if (token != std::end(editTokens)) {
            stays = !(readOnly && token->changes);
            ModifyMenu(i, MF_BYPOSITION | MF_STRING, token->command, LibraryString(token->textId).c_str());
            if (m_edit != nullptr && (m_edit->*token->can)() == 0)
                EnableMenuItem(i, MF_BYPOSITION | MF_DISABLED | MF_GRAYED);
        }
        if (stays) {
            ++i;
        } else {
            DeleteMenu(i, MF_BYPOSITION);
        }
    }
}

bool CTovMenuPopUpEdit::CustomizeInsert(unsigned position) {
    if (m_lastItems == nullptr || m_lastItems->empty()) return false;
    if (m_edit != nullptr && m_edit->CanInsert() == 0) return false;
    auto popup = std::make_unique<CMenu>();
    unsigned command = tovFirstInsertCommand;
    for (CString const& item : *m_lastItems) {
        if (command > tovLastInsertCommand) break;
        popup->AppendMenu(MF_STRING, command++, MenuTextOfItem(item).c_str());
    }
    ModifyMenu(position, MF_BYPOSITION | MF_POPUP, std::move(popup), LibraryString(insertText).c_str());
    return true;
}

}  // namespace tov
