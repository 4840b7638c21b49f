// Menus as trees of entries, without a screen: what stands in them, how they are read from resources, and the
// functions that copy and tidy them. menu_popup.h shows them.
#pragma once

#include <tov310/export.h>
#include <tov310/geometry.h>
#include <tov310/object.h>
#include <tov310/resources.h>
#include <tov310/types.h>

#include <cstddef>
#include <memory>
#include <vector>

namespace tov {

class CDC;

// What an entry is and the state it is in. A place is a command (MF_BYCOMMAND) or a position from 0
// (MF_BYPOSITION).
inline constexpr unsigned MF_BYCOMMAND = 0;
inline constexpr unsigned MF_STRING = 0;
inline constexpr unsigned MF_ENABLED = 0;
inline constexpr unsigned MF_UNCHECKED = 0;
inline constexpr unsigned MF_GRAYED = 0x1;
inline constexpr unsigned MF_DISABLED = 0x2;
inline constexpr unsigned MF_CHECKED = 0x8;
inline constexpr unsigned MF_POPUP = 0x10;
inline constexpr unsigned MF_HILITE = 0x80;  // the entry that the mouse or the keys are on, for DrawItem only
inline constexpr unsigned MF_OWNERDRAW = 0x100;
inline constexpr unsigned MF_RADIOCHECK = 0x200;  // the check mark is that of one choice among several
inline constexpr unsigned MF_BYPOSITION = 0x400;
inline constexpr unsigned MF_SEPARATOR = 0x800;

inline constexpr unsigned tovNoMenuItem = 0xFFFFFFFF;  // answer of what asks for an entry that is none

// What a menu is asked when the size of an owner-drawn entry is wanted; width and height in pixels are the
// answer.
struct MEASUREITEMSTRUCT {
    unsigned itemID = 0;
    unsigned itemWidth = 0;
    unsigned itemHeight = 0;
    WPARAM itemData = 0;
};

// What a menu is told when an owner-drawn entry is to be painted.
struct DRAWITEMSTRUCT {
    unsigned itemID = 0;
    unsigned itemState = 0;  // MF_GRAYED, MF_CHECKED ... as the entry has them, and MF_HILITE
    CDC* hDC = nullptr;      // borrowed for the call
    CRect rcItem;            // pixels, exclusive at the right and at the bottom
    WPARAM itemData = 0;
};

// An ordered tree of entries: commands, separators and popups, which are menus that belong to the menu they
// stand in and die with their entry.
//
// A new menu is empty. A place by command is looked for in the popups too, in the order of the screen; popups
// and separators have no command and are reached by position. Functions that change something answer 1, or 0
// for a place that is none, with nothing changed.
class TOV_CORE_API CMenu : public CObject {
    TOV_DYNCREATE(CMenu, CObject)
 public:
    CMenu();
    ~CMenu() override;
    CMenu(CMenu const&) = delete;
    CMenu& operator=(CMenu const&) = delete;

    // Removes all entries.
    void DestroyMenu();

    // Takes the place of all entries by those of the resource menus/ID.json or menus/NAME.json, which the
    // built-in module answers where the given one lacks it. 0, with nothing changed, where neither has it or
    // it is faulty.
    virtual int LoadMenu(HINSTANCE module, unsigned id);
    virtual int LoadMenu(HINSTANCE module, char const* name);

    // Adds an entry at the end: a separator for MF_SEPARATOR, otherwise a command with the given state.
    int AppendMenu(unsigned flags, unsigned id = 0, char const* text = nullptr);
    // Adds a popup, which belongs to this menu from now on. 0, and the popup is gone, for null and for a menu
    // that this one stands in.
    int AppendMenu(unsigned flags, std::unique_ptr<CMenu> popup, char const* text);

    // The same in front of an entry. A position behind the last appends.
    int InsertMenu(unsigned place, unsigned flags, unsigned id = 0, char const* text = nullptr);
    int InsertMenu(unsigned place, unsigned flags, std::unique_ptr<CMenu> popup, char const* text);

    // Puts something else in the place of an entry; a popup that stood there is gone.
    int ModifyMenu(unsigned place, unsigned flags, unsigned id = 0, char const* text = nullptr);
    int ModifyMenu(unsigned place, unsigned flags, std::unique_ptr<CMenu> popup, char const* text);

    // Removes an entry, with its popup.
    int DeleteMenu(unsigned place, unsigned flags);
    // Removes an entry and hands its popup, if it has one, to the caller.
    int RemoveMenu(unsigned place, unsigned flags, std::unique_ptr<CMenu>* popup = nullptr);

    // Puts copies of all entries of another menu, popups with all they hold, in front of a position, or
    // behind the last entry for any position behind it. Texts of popups are cut to 1024 characters. What is
    // owner-drawn at the top level is for this menu to draw, in popups for what MakeForCopies gives. Answers
    // the number of entries at the top level.
    unsigned InsertCopies(CMenu const& from, unsigned position);

    // Takes over all entries of another menu, which is empty then, in the place of its own. Answers 1, or 0
    // for a menu that this one stands in.
    int TakeEntries(CMenu& other);

    // Entries of this menu itself.
    unsigned GetMenuItemCount() const;
    // The command at a position: 0 for a separator, tovNoMenuItem for a popup and behind the last.
    unsigned GetMenuItemID(unsigned position) const;
    // The text as it is written, "&" and "\t" included; answers its length in bytes.
    int GetMenuString(unsigned place, CString& text, unsigned flags) const;
    // The popup at a position, which stays the menu's; null for any other entry.
    CMenu* GetSubMenu(unsigned position);
    CMenu const* GetSubMenu(unsigned position) const;
    // What the entry is and its state; the number of entries from bit 8 on for a popup. tovNoMenuItem where
    // there is none.
    unsigned GetMenuState(unsigned place, unsigned flags) const;

    // Set the state in the flags (with MF_BYPOSITION or MF_BYCOMMAND) and answer the earlier one, or
    // tovNoMenuItem.
    unsigned EnableMenuItem(unsigned place, unsigned flags);
    unsigned CheckMenuItem(unsigned place, unsigned flags);
    // Checks one entry of a row of this menu and no other of the row. The flags say what the three places
    // are.
    int CheckMenuRadioItem(unsigned first, unsigned last, unsigned checked, unsigned flags);

    // A number that the host keeps with an entry; 0 at first.
    WPARAM GetMenuItemData(unsigned place, unsigned flags) const;
    int SetMenuItemData(unsigned place, WPARAM data, unsigned flags);

    // Expires with the menu: tells whoever shows it that it is gone. Made on the first call.
    std::weak_ptr<void const> Life() const;

    // Owner-drawn entries of this menu; the default leaves everything to whoever shows the menu.
    virtual void MeasureItem(MEASUREITEMSTRUCT* item);
    virtual void DrawItem(DRAWITEMSTRUCT* item);

    // A menu without entries that draws as this one does, for the copies of a popup's entries. The default is
    // null: owner-drawn entries of the popup are copied as plain ones with their texts.
    virtual std::unique_ptr<CMenu> MakeForCopies() const;

 private:
    struct Entry;
    struct Place {
        CMenu* menu;
        std::size_t position;
    };

    static bool Find(CMenu& menu, unsigned place, unsigned flags, Place& found);
    Entry const* At(unsigned place, unsigned flags) const;
    static std::vector<Entry> Copies(CMenu const& from);
    int Insert(unsigned place, unsigned flags, Entry entry);
    int Replace(unsigned place, unsigned flags, Entry entry);
    unsigned SetState(unsigned place, unsigned flags, unsigned mask);
    void Adopt(Entry& entry);
    bool StandsIn(CMenu const& other) const;
    bool CanHold(Entry const& entry) const;

    std::vector<Entry> m_entries;
    CMenu* m_parent = nullptr;  // the menu that this one is a popup of
    mutable std::shared_ptr<void const> m_life;
};

// 1 where the position holds a separator.
TOV_CORE_API int TovMenuIsSeparator(CMenu* menu, unsigned int position);

// CMenu::InsertCopies as a function; the positions -1 and -2 append.
TOV_CORE_API unsigned int TovMenuCopyRecursive(CMenu const* from, CMenu* to, unsigned int position);

// Removes popups without entries, innermost first. Answers how many went.
TOV_CORE_API unsigned int TovMenuCheckEmptyPopupMenus(CMenu* menu);

// Removes, in popups too, separators that stand first, last or behind another. Answers how many went.
TOV_CORE_API unsigned int TovMenuCheckSeparators(CMenu* menu);

// Puts a command with a text of the module in the place of the entry at a position.
TOV_CORE_API void TovMenuReplaceItem(CMenu* menu, unsigned int position, HINSTANCE module,
                                     unsigned int textId, unsigned int command);

// Puts the command WM_TOV_PROPERTIES with its text in the place of every entry "%PROPERTIES", in popups too
// and whatever its case. Answers 1 when there was one.
TOV_CORE_API int TovMenuCustomize(CMenu* menu);

}  // namespace tov
