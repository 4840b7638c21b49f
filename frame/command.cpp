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

void CCmdUI::Enable(int on) {
    m_bEnableChanged = 1;
    if (m_pMenu == nullptr || m_pSubMenu != nullptr) return;
    m_pMenu->EnableMenuItem(m_nIndex, MF_BYPOSITION | (on != 0 ? MF_ENABLED : MF_DISABLED | MF_GRAYED));
}

void CCmdUI::SetCheck(int check) {
    if (m_pMenu == nullptr || m_pSubMenu != nullptr) return;
    m_pMenu->CheckMenuItem(m_nIndex, MF_BYPOSITION | (check != 0 ? MF_CHECKED : MF_UNCHECKED));
}

void CCmdUI::SetRadio(int on) {
    SetCheck(on);
    if (on == 0 || m_pMenu == nullptr || m_pSubMenu != nullptr) return;
    m_pMenu->CheckMenuItem(m_nIndex, MF_BYPOSITION | MF_CHECKED | MF_RADIOCHECK);
}

void CCmdUI::SetText(char const* text) {
    if (m_pMenu == nullptr || m_pSubMenu != nullptr) return;
    unsigned const state = m_pMenu->GetMenuState(m_nIndex, MF_BYPOSITION);
    if (state == tovNoMenuItem || m_pMenu->GetSubMenu(m_nIndex) != nullptr) return;
    WPARAM const data = m_pMenu->GetMenuItemData(m_nIndex, MF_BYPOSITION);
    m_pMenu->ModifyMenu(m_nIndex, MF_BYPOSITION | state, m_pMenu->GetMenuItemID(m_nIndex), text);
    m_pMenu->SetMenuItemData(m_nIndex, data, MF_BYPOSITION);
}

int CCmdUI::DoUpdate(CCmdTarget* target, int disableIfNoHandler) {
    if (m_nID == 0 || (m_nID & 0xFFFF) == 0xFFFF) return 1;
    m_bEnableChanged = 0;
    m_bContinueRouting = 0;
    if (target == nullptr) return 0;
    int const found = target->OnCmdMsg(m_nID, CN_UPDATE_COMMAND_UI, this, nullptr);
    if (disableIfNoHandler != 0 && m_bEnableChanged == 0) {
        CTovCommandInfo info;
        Enable(target->OnCmdMsg(m_nID, CN_COMMAND, nullptr, &info));
    }
    return found;
}

}  // namespace tov
