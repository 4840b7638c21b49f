// Commands and their states on the way through their targets.
#include <tov310/cmd_ui.h>
#include <tov310/menu.h>

namespace tov {

int CCmdTarget::OnCmdMsg(unsigned id, int code, void* extra, CTovCommandInfo* info) {
    for (CTovCommandTable const* table = GetCommandTable(); table != nullptr; table = table->base) {
        for (CTovCommandHandler const& handler : table->handlers) {
            if (id < handler.first || id > handler.last) continue;
            bool const wanted = (code == CN_COMMAND && handler.command != nullptr) ||
                                (code == CN_UPDATE_COMMAND_UI && handler.update != nullptr);
            if (!wanted) continue;
            if (info != nullptr) {
                info->target = this;
                return 1;
            }
            if (code == CN_COMMAND) {
                if (handler.command(*this, id) != 0) return 1;
                continue;
            }
            auto& state = *static_cast<CCmdUI*>(extra);
            state.m_bContinueRouting = 0;
            handler.update(*this, state);
            if (state.m_bContinueRouting == 0) return 1;
            state.m_bContinueRouting = 0;
        }
    }
    return 0;
}

CCmdUI::~CCmdUI() = default;

CMenu* CCmdUI::EntryMenu() const {
    if (m_pMenu == nullptr || m_pSubMenu != nullptr) return nullptr;
    if (!m_isUpdating) return m_pMenu;
    bool const isThere = !m_menuLife.expired() && m_pMenu->GetMenuItemID(m_nIndex) == m_nID;
    return isThere ? m_pMenu : nullptr;
}

void CCmdUI::Enable(int on) {
    m_bEnableChanged = 1;
    if (CMenu* const menu = EntryMenu())
        menu->EnableMenuItem(m_nIndex, MF_BYPOSITION | (on != 0 ? MF_ENABLED : MF_DISABLED | MF_GRAYED));
}

void CCmdUI::SetCheck(int check) {
    if (CMenu* const menu = EntryMenu())
        menu->CheckMenuItem(m_nIndex, MF_BYPOSITION | (check != 0 ? MF_CHECKED : MF_UNCHECKED));
}

void CCmdUI::SetRadio(int on) {
    SetCheck(on);
    CMenu* const menu = on != 0 ? EntryMenu() : nullptr;
    if (menu != nullptr) menu->CheckMenuItem(m_nIndex, MF_BYPOSITION | MF_CHECKED | MF_RADIOCHECK);
}

void CCmdUI::SetText(char const* text) {
    CMenu* const menu = EntryMenu();
    if (menu == nullptr) return;
    unsigned const state = menu->GetMenuState(m_nIndex, MF_BYPOSITION);
    if (state == tovNoMenuItem || menu->GetSubMenu(m_nIndex) != nullptr) return;
    WPARAM const data = menu->GetMenuItemData(m_nIndex, MF_BYPOSITION);
    menu->ModifyMenu(m_nIndex, MF_BYPOSITION | state, menu->GetMenuItemID(m_nIndex), text);
    menu->SetMenuItemData(m_nIndex, data, MF_BYPOSITION);
}

int CCmdUI::DoUpdate(CCmdTarget* target, int disableIfNoHandler) {
    if (m_nID == 0 || (m_nID & 0xFFFF) == 0xFFFF) return 1;
    m_bEnableChanged = 0;
    m_bContinueRouting = 0;
    if (target == nullptr) return 0;
    bool const hasEntry = EntryMenu() != nullptr;
    m_menuLife = m_pMenu != nullptr ? m_pMenu->Life() : std::weak_ptr<void const>();
    m_isUpdating = true;
    int const found = target->OnCmdMsg(m_nID, CN_UPDATE_COMMAND_UI, this, nullptr);
    // Who has ended the menu may have ended the target with it.
    if (disableIfNoHandler != 0 && m_bEnableChanged == 0 && (!hasEntry || EntryMenu() != nullptr)) {
        CTovCommandInfo info;
        Enable(target->OnCmdMsg(m_nID, CN_COMMAND, nullptr, &info));
    }
    m_isUpdating = false;
    return found;
}

}  // namespace tov
