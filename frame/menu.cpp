#include <tov310/menu.h>
#include <tov310/window.h>

#include "frame/menu_resource.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

namespace tov {
namespace {

constexpr unsigned stateBits = MF_GRAYED | MF_DISABLED | MF_CHECKED | MF_RADIOCHECK;
constexpr std::size_t longestPopupText = 1024;

CString CutToCharacters(CString const& text, std::size_t most) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        bool const begins = (static_cast<unsigned char>(text[i]) & 0xC0) != 0x80;
        if (begins && ++count > most) return text.substr(0, i);
    }
    return text;
}

}  // namespace

struct CMenu::Entry {
    unsigned id = 0;  // the command; 0 for separators and popups
    CString text;
    unsigned flags = 0;  // what it is and its state
    WPARAM data = 0;
    std::unique_ptr<CMenu> popup;

    Entry(unsigned what, unsigned command, char const* words)
        : flags(what & (stateBits | MF_OWNERDRAW | MF_SEPARATOR)) {
        if ((flags & MF_SEPARATOR) != 0) return;
        id = command;
        text = words != nullptr ? words : "";
    }
    Entry(unsigned what, std::unique_ptr<CMenu> menu, char const* words)
        : text(words != nullptr ? words : ""),
          flags((what & (stateBits | MF_OWNERDRAW)) | MF_POPUP),
          popup(std::move(menu)) {}
};

CMenu::CMenu() = default;
CMenu::~CMenu() = default;

void CMenu::DestroyMenu() {
    m_entries.clear();
}

int CMenu::LoadMenu(HINSTANCE module, unsigned id) {
    return LoadMenu(module, std::to_string(id).c_str());
}

int CMenu::LoadMenu(HINSTANCE module, char const* name) {
    if (name == nullptr) return 0;
    CMenu read;
    std::string const file = std::string("menus/") + name + ".json";
    std::string_view const json = TovFindResource(module, file.c_str());
    if (json.data() == nullptr) return 0;
    std::string fault;
    if (!ParseMenu(json, read, &fault)) {
        TovReportFault((file + ": " + fault).c_str());
        return 0;
    }
    TakeEntries(read);
    return 1;
}

int CMenu::AppendMenu(unsigned flags, unsigned id, char const* text) {
    return Insert(tovNoMenuItem, flags | MF_BYPOSITION, {flags, id, text});
}

int CMenu::AppendMenu(unsigned flags, std::unique_ptr<CMenu> popup, char const* text) {
    return Insert(tovNoMenuItem, flags | MF_BYPOSITION, {flags, std::move(popup), text});
}

int CMenu::InsertMenu(unsigned place, unsigned flags, unsigned id, char const* text) {
    return Insert(place, flags, {flags, id, text});
}

int CMenu::InsertMenu(unsigned place, unsigned flags, std::unique_ptr<CMenu> popup, char const* text) {
    return Insert(place, flags, {flags, std::move(popup), text});
}

int CMenu::ModifyMenu(unsigned place, unsigned flags, unsigned id, char const* text) {
    return Replace(place, flags, {flags, id, text});
}

int CMenu::ModifyMenu(unsigned place, unsigned flags, std::unique_ptr<CMenu> popup, char const* text) {
    return Replace(place, flags, {flags, std::move(popup), text});
}

int CMenu::DeleteMenu(unsigned place, unsigned flags) {
    return RemoveMenu(place, flags);
}

int CMenu::RemoveMenu(unsigned place, unsigned flags, std::unique_ptr<CMenu>* popup) {
    if (popup != nullptr) popup->reset();
    Place found;
    if (!Find(*this, place, flags, found)) return 0;
    auto const entry = found.menu->m_entries.begin() + static_cast<std::ptrdiff_t>(found.position);
    std::unique_ptr<CMenu> removed = std::move(entry->popup);
    found.menu->m_entries.erase(entry);
    if (removed != nullptr) removed->m_parent = nullptr;
    if (popup != nullptr) *popup = std::move(removed);
    return 1;
}

unsigned CMenu::InsertCopies(CMenu const& from, unsigned position) {
    // All is copied before the first entry is put in, so that a menu can be copied into itself or into one of
    // its popups.
    std::vector<Entry> copies = Copies(from);
    for (Entry& entry : copies)
        Adopt(entry);
    auto const at = static_cast<std::ptrdiff_t>(std::min(std::size_t{position}, m_entries.size()));
    m_entries.insert(m_entries.begin() + at, std::move_iterator(copies.begin()),
                     std::move_iterator(copies.end()));
    return static_cast<unsigned>(copies.size());
}

unsigned CMenu::GetMenuItemCount() const {
    return static_cast<unsigned>(m_entries.size());
}

unsigned CMenu::GetMenuItemID(unsigned position) const {
    if (position >= m_entries.size() || m_entries[position].popup != nullptr) return tovNoMenuItem;
    return m_entries[position].id;
}

int CMenu::GetMenuString(unsigned place, CString& text, unsigned flags) const {
    Entry const* const entry = At(place, flags);
    text = entry != nullptr ? entry->text : CString();
    return static_cast<int>(text.size());
}

CMenu* CMenu::GetSubMenu(unsigned position) {
    return position < m_entries.size() ? m_entries[position].popup.get() : nullptr;
}

CMenu const* CMenu::GetSubMenu(unsigned position) const {
    return position < m_entries.size() ? m_entries[position].popup.get() : nullptr;
}

unsigned CMenu::GetMenuState(unsigned place, unsigned flags) const {
    Entry const* const entry = At(place, flags);
    if (entry == nullptr) return tovNoMenuItem;
    // The count takes the bits from 8 on, where the kinds of entries stand that a popup cannot be.
    return entry->popup == nullptr ? entry->flags
                                   : (entry->flags & 0xFF) | entry->popup->GetMenuItemCount() << 8;
}

unsigned CMenu::EnableMenuItem(unsigned place, unsigned flags) {
    return SetState(place, flags, MF_GRAYED | MF_DISABLED);
}

unsigned CMenu::CheckMenuItem(unsigned place, unsigned flags) {
    return SetState(place, flags, MF_CHECKED | MF_RADIOCHECK);
}

int CMenu::CheckMenuRadioItem(unsigned first, unsigned last, unsigned checked, unsigned flags) {
    bool const byPosition = (flags & MF_BYPOSITION) != 0;
    auto const numbered = [&](std::size_t position) {
        return byPosition ? static_cast<unsigned>(position) : m_entries[position].id;
    };
    auto const inRow = [&](std::size_t position) {
        Entry const& entry = m_entries[position];
        bool const plain = entry.popup == nullptr && (entry.flags & MF_SEPARATOR) == 0;
        return plain && numbered(position) >= first && numbered(position) <= last;
    };
    bool found = false;
    for (std::size_t i = 0; i < m_entries.size(); ++i)
        found = found || (inRow(i) && numbered(i) == checked);
    if (!found) return 0;
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        if (!inRow(i)) continue;
        unsigned& state = m_entries[i].flags;
        state &= ~(MF_CHECKED | MF_RADIOCHECK);
        if (numbered(i) == checked) state |= MF_CHECKED | MF_RADIOCHECK;
    }
    return 1;
}

WPARAM CMenu::GetMenuItemData(unsigned place, unsigned flags) const {
    Entry const* const entry = At(place, flags);
    return entry != nullptr ? entry->data : 0;
}

int CMenu::SetMenuItemData(unsigned place, WPARAM data, unsigned flags) {
    Place found;
    if (!Find(*this, place, flags, found)) return 0;
    found.menu->m_entries[found.position].data = data;
    return 1;
}

std::weak_ptr<void const> CMenu::Life() const {
    if (m_life == nullptr) m_life = std::make_shared<char>();
    return m_life;
}

void CMenu::MeasureItem(MEASUREITEMSTRUCT*) {}

void CMenu::DrawItem(DRAWITEMSTRUCT*) {}

std::unique_ptr<CMenu> CMenu::MakeForCopies() const {
    return nullptr;
}

int CMenu::TakeEntries(CMenu& other) {
    if (StandsIn(other)) return 0;
    std::vector<Entry> entries = std::exchange(other.m_entries, {});
    for (Entry& entry : entries)
        Adopt(entry);
    m_entries = std::move(entries);
    return 1;
}

bool CMenu::Find(CMenu& menu, unsigned place, unsigned flags, Place& found) {
    if ((flags & MF_BYPOSITION) != 0) {
        found = {&menu, place};
        return place < menu.m_entries.size();
    }
    for (std::size_t i = 0; i < menu.m_entries.size(); ++i) {
        Entry const& entry = menu.m_entries[i];
        if (entry.popup != nullptr) {
            if (Find(*entry.popup, place, flags, found)) return true;
        } else if (entry.id == place && (entry.flags & MF_SEPARATOR) == 0) {
            found = {&menu, i};
            return true;
        }
    }
    return false;
}

std::vector<CMenu::Entry> CMenu::Copies(CMenu const& from) {
    std::vector<Entry> copies;
    copies.reserve(from.m_entries.size());
    for (Entry const& entry : from.m_entries) {
        if (entry.popup == nullptr) {
            copies.emplace_back(entry.flags, entry.id, entry.text.c_str());
        } else {
            std::unique_ptr<CMenu> popup = entry.popup->MakeForCopies();
            bool const draws = popup != nullptr;
            if (!draws) popup = std::make_unique<CMenu>();
            popup->InsertCopies(*entry.popup, 0);
            for (Entry& copy : popup->m_entries)
                if (!draws) copy.flags &= ~MF_OWNERDRAW;
            copies.emplace_back(entry.flags, std::move(popup),
                                CutToCharacters(entry.text, longestPopupText).c_str());
        }
        copies.back().data = entry.data;
    }
    return copies;
}

CMenu::Entry const* CMenu::At(unsigned place, unsigned flags) const {
    Place found;
    if (!Find(const_cast<CMenu&>(*this), place, flags, found)) return nullptr;
    return &found.menu->m_entries[found.position];
}

int CMenu::Insert(unsigned place, unsigned flags, Entry entry) {
    Place at{this, std::min(std::size_t{place}, m_entries.size())};
    if ((flags & MF_BYPOSITION) == 0 && !Find(*this, place, flags, at)) return 0;
    if (!at.menu->CanHold(entry)) return 0;
    at.menu->Adopt(entry);
    at.menu->m_entries.insert(at.menu->m_entries.begin() + static_cast<std::ptrdiff_t>(at.position),
                              std::move(entry));
    return 1;
}

int CMenu::Replace(unsigned place, unsigned flags, Entry entry) {
    Place at;
    if (!Find(*this, place, flags, at) || !at.menu->CanHold(entry)) return 0;
    at.menu->Adopt(entry);
    // What stood there goes last: its end may ask the menu, which is whole by then.
    std::swap(at.menu->m_entries[at.position], entry);
    return 1;
}

unsigned CMenu::SetState(unsigned place, unsigned flags, unsigned mask) {
    Place found;
    if (!Find(*this, place, flags, found)) return tovNoMenuItem;
    unsigned& state = found.menu->m_entries[found.position].flags;
    unsigned const before = state & mask;
    state = (state & ~mask) | (flags & mask);
    return before;
}

// Whether this menu is the other one or a popup somewhere in it.
bool CMenu::StandsIn(CMenu const& other) const {
    CMenu const* menu = this;
    while (menu != nullptr && menu != &other)
        menu = menu->m_parent;
    return menu != nullptr;
}

bool CMenu::CanHold(Entry const& entry) const {
    return (entry.flags & MF_POPUP) == 0 || (entry.popup != nullptr && !StandsIn(*entry.popup));
}

void CMenu::Adopt(Entry& entry) {
    if (entry.popup != nullptr) entry.popup->m_parent = this;
}

}  // namespace tov
