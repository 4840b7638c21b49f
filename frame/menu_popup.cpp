#include <tov310/menu_popup.h>

#include <utility>

namespace tov {
namespace {

constexpr unsigned long commandNotFound = ~0UL;

ITovMenuPort* menuPort = nullptr;

// Walks in the order of the screen and counts every popup that it enters.
unsigned long SearchCommand(unsigned command, CMenu const& menu, unsigned long& opened) {
    for (unsigned i = 0; i < menu.GetMenuItemCount(); ++i) {
        if (CMenu const* const popup = menu.GetSubMenu(i)) {
            ++opened;
            unsigned long const found = SearchCommand(command, *popup, opened);
            if (found != commandNotFound) return found;
        } else if (menu.GetMenuItemID(i) == command) {
            return opened << 16 | (i & 0xFFFF);
        }
    }
    return commandNotFound;
}

}  // namespace

ITovMenuPort::~ITovMenuPort() = default;

void TovSetMenuPort(ITovMenuPort* port) {
    menuPort = port;
}

ITovMenuPort* TovGetMenuPort() {
    return menuPort;
}

void CTovMenuPopUp::CCmdUIPopUp::Enable(int on) {
    m_bEnabled = on;
    CCmdUI::Enable(on);
}

void CTovMenuPopUp::CCmdUIPopUp::SetCheck(int check) {
    m_nChecked = check;
    CCmdUI::SetCheck(check);
}

void CTovMenuPopUp::CCmdUIPopUp::SetRadio(int on) {
    m_bRadio = on;
    CCmdUI::SetRadio(on);
}

CTovMenuPopUp::CTovMenuPopUp() = default;

CTovMenuPopUp::CTovMenuPopUp(HINSTANCE module, unsigned id, CWnd* window) {
    CTovMenuPopUp::LoadMenu(module, id);
    CTovMenuPopUp::SetWindow(window);
}

CTovMenuPopUp::CTovMenuPopUp(HINSTANCE module, char const* name, CWnd* window) {
    CTovMenuPopUp::LoadMenu(module, name);
    CTovMenuPopUp::SetWindow(window);
}

CTovMenuPopUp::~CTovMenuPopUp() = default;

int CTovMenuPopUp::Load(CMenu& whole) {
    CMenu* const first = whole.GetSubMenu(0);
    if (first == nullptr) return 0;
    TakeEntries(*first);
    m_menu.TakeEntries(whole);
    m_bMenu = 1;
    m_bCustomized = 0;
    return 1;
}

int CTovMenuPopUp::LoadMenu(HINSTANCE module, unsigned id) {
    CMenu whole;
    return whole.LoadMenu(module, id) != 0 ? Load(whole) : 0;
}

int CTovMenuPopUp::LoadMenu(HINSTANCE module, char const* name) {
    CMenu whole;
    return whole.LoadMenu(module, name) != 0 ? Load(whole) : 0;
}

int CTovMenuPopUp::LoadMenu(CMenu const& menu) {
    auto popup = std::make_unique<CMenu>();
    popup->InsertCopies(menu, 0);
    CMenu whole;
    whole.AppendMenu(MF_POPUP, std::move(popup), "");
    return Load(whole);
}

int CTovMenuPopUp::SetWindow(CWnd* window) {
    if (m_bMenu == 0 || window == nullptr || !window->GetSafeHwnd()) return 0;
    m_window = window->GetSafeHwnd();
    m_bWindow = 1;
    return 1;
}

void CTovMenuPopUp::CustomizeMenu() {}

int CTovMenuPopUp::IsValid() const {
    return m_bMenu != 0 && m_bWindow != 0 && IsWindow(m_window) != 0;
}

int CTovMenuPopUp::Activate(POINT const& point, unsigned flags) {
    if (IsValid() == 0) return 0;
    if (m_bCustomized == 0) {
        m_bCustomized = 1;  // first, so that customising may ask to be shown
        CustomizeMenu();
    }
    // Without an empty popup two separators can come together, and without its separators a popup can be
    // empty.
    while (TovMenuCheckEmptyPopupMenus(this) + TovMenuCheckSeparators(this) != 0) {
    }
    CWnd* const window = CWnd::FromHandlePermanent(m_window);
    if (menuPort == nullptr || window == nullptr) return 0;
    return menuPort->Track(*this, point, flags, *window);
}

int CTovMenuPopUp::Activate(CPoint const& point, unsigned flags) {
    return Activate(static_cast<POINT const&>(point), flags);
}

unsigned long CTovMenuPopUp::VerifyCommand(unsigned command) {
    return IsValid() != 0 ? VerifyCommand(command, this, 0) : commandNotFound;
}

unsigned long CTovMenuPopUp::VerifyCommand(unsigned command, CMenu const* menu, unsigned long level) const {
    // Separators and labels are 0, and popups are no commands.
    if (menu == nullptr || command == 0 || command == tovNoMenuItem) return commandNotFound;
    return SearchCommand(command, *menu, level);
}

}  // namespace tov
