// Menus that pop up at a point, and a row of slides as a menu. Showing them is the task of a port that the
// toolkit's layer sets.
#pragma once

#include <tov310/cmd_ui.h>
#include <tov310/export.h>
#include <tov310/menu.h>
#include <tov310/resources.h>
#include <tov310/types.h>
#include <tov310/window.h>

#include <memory>

namespace tov {

// How a popup stands to its point and what it listens to.
inline constexpr unsigned TPM_LEFTBUTTON = 0;
inline constexpr unsigned TPM_RIGHTBUTTON = 0x2;
inline constexpr unsigned TPM_CENTERALIGN = 0x4;
inline constexpr unsigned TPM_RIGHTALIGN = 0x8;
inline constexpr unsigned TPM_NONOTIFY = 0x80;    // the window is not told of the choice
inline constexpr unsigned TPM_RETURNCMD = 0x100;  // the answer is the command that was chosen, or 0

// Shows menus. Set by the layer that has a screen.
class TOV_CORE_API ITovMenuPort {
 public:
    virtual ~ITovMenuPort();

    // Shows the menu at a point of the screen until something is chosen or it is left; commands go to the
    // window. Answers 1, or with TPM_RETURNCMD the command; 0 when it could not be shown. The menu may be
    // gone when the call returns, and the port does not touch it then.
    virtual int Track(CMenu& menu, POINT const& point, unsigned flags, CWnd& window) = 0;

    // Fills a rectangle with a colour (0x00BBGGRR).
    virtual void FillRect(CDC* dc, CRect const& rect, unsigned long color) = 0;
};

// The port is borrowed; null takes it away.
TOV_CORE_API void TovSetMenuPort(ITovMenuPort* port);
TOV_CORE_API ITovMenuPort* TovGetMenuPort();

// A menu from a resource that pops up: its entries are those of the resource's first entry, which is a popup.
//
// Load it, set its window, activate it. What an application fills in or takes out stands in CustomizeMenu;
// what is left without use by that (empty popups, separators without neighbours) goes before the menu shows.
class TOV_CORE_API CTovMenuPopUp : public CMenu {
    TOV_DYNCREATE(CTovMenuPopUp, CMenu)
 public:
    // Tells the state of one command to code that asks, without a menu:
    //
    //   CTovMenuPopUp::CCmdUIPopUp state;
    //   state.m_nID = id;
    //   state.DoUpdate(&view, 1);
    //   if (state.m_bEnabled) ...
    //
    // One object serves one command.
    class TOV_CORE_API CCmdUIPopUp : public CCmdUI {
     public:
        int m_bEnabled = 0;
        int m_nChecked = 0;
        int m_bRadio = 0;

        void Enable(int on = 1) override;
        void SetCheck(int check = 1) override;
        void SetRadio(int on = 1) override;
    };

    CTovMenuPopUp();
    CTovMenuPopUp(HINSTANCE module, unsigned id, CWnd* window);
    CTovMenuPopUp(HINSTANCE module, char const* name, CWnd* window);
    ~CTovMenuPopUp() override;

    // Loads the resource in the place of what was loaded before; the window stays, and CustomizeMenu runs
    // again. Answers 1, or 0, with nothing changed, where there is no such resource, it is faulty or its
    // first entry is no popup.
    int LoadMenu(HINSTANCE module, unsigned id) override;
    int LoadMenu(HINSTANCE module, char const* name) override;

    // The window that gets the commands. Answers 1, or 0 where no menu is loaded or the window is null or not
    // born.
    virtual int SetWindow(CWnd* window);

    // Called once for a loaded menu, before it is shown first.
    virtual void CustomizeMenu();

    // Customises the menu, tidies it and shows it at a point of the screen with TPM_ flags. Answers as
    // ITovMenuPort::Track does; 0 unless a menu is loaded and a living window is set, and without a port.
    virtual int Activate(POINT const& point, unsigned flags);
    virtual int Activate(CPoint const& point, unsigned flags);

    // Where a command stands: its position in the low 16 bits, above it how many popups were opened on the
    // way through the menu until it was found. All bits set where it is not found, and unless a menu is
    // loaded and a window is set.
    virtual unsigned long VerifyCommand(unsigned command);

 protected:
    // Loads copies of the entries of a menu.
    int LoadMenu(CMenu const& menu);

    // Whether a menu is loaded and a living window is set.
    int IsValid() const;

    // The same for a part of the menu, where `level` popups were opened before.
    unsigned long VerifyCommand(unsigned command, CMenu const* menu, unsigned long level) const;

    CMenu m_menu;           // the rest of the resource
    int m_bMenu = 0;        // loaded
    int m_bWindow = 0;      // window set
    int m_bCustomized = 0;  // CustomizeMenu has run
    HWND m_window;

 private:
    int Load(CMenu& whole);
};

// A row of slides in a menu: the entry "%SLIDER" becomes a popup with one owner-drawn entry for each slide.
//
// The slides are the commands from FirstCommand on and carry their index from 0 as data. The menu and the
// slider may end in any order. The slider draws copies of the menu too.
class TOV_CORE_API CTovMenuSlider {
 public:
    enum eStyleSelection {
        eStyleSelectionFrame = 0,  // a frame round the selected slide
        eStyleSelectionFill = 1,   // the selected slide in another colour, with the frame
    };

    static constexpr unsigned FirstCommand = 0xBF00;
    static constexpr unsigned noSlide = 0xFFFFFFFF;

    CTovMenuSlider();
    CTovMenuSlider(CTovMenuSlider const&) = delete;
    CTovMenuSlider& operator=(CTovMenuSlider const&) = delete;
    virtual ~CTovMenuSlider();

    // Pixels of one slide; 16 x 16 at first.
    void SetItemSize(CSize const& size) { m_itemSize = size; }
    CSize GetItemSize() const { return m_itemSize; }

    // How many slides the next menu gets; 0 at first, at most 256.
    void SetCountSlides(unsigned count);

    // The slide that is marked, from 0; none at first and for an index that is none when it is drawn.
    void SetSelectedSlide(unsigned index) { m_selected = index; }

    void SetStyleSelection(eStyleSelection style) { m_style = style; }

    // The colour (0x00BBGGRR) behind the slides, from which those of frame and selection are derived at
    // InsertIntoMenu.
    void SetColorMenu(unsigned long color) { m_colorMenu = color; }

    // Puts the slides in the place of the first entry "%SLIDER" of the menu or one of its popups, in any case
    // of its letters, under a text. Answers 1; 0, with nothing changed, for an empty text, a menu without
    // such an entry, and while the slides stand in a menu.
    int InsertIntoMenu(CMenu& menu, char const* text);
    int InsertIntoMenu(CMenu& menu, HINSTANCE module, unsigned textId);

    // Puts the entry "%SLIDER" back, with the command, state and data that it had. Answers 1, or 0 where the
    // slides are not in this menu.
    int RemoveFromMenu(CMenu& menu) const;

 protected:
    virtual void MeasureItem(MEASUREITEMSTRUCT* item);

    // Draws a slide that a menu asks for.
    virtual void DrawItem(DRAWITEMSTRUCT* item);

    // Draws the background and the mark of one slide; derived classes draw their picture on it.
    virtual void DrawItem(CDC* dc, unsigned index, CRect const& rect);

 private:
    class Popup;

    CSize m_itemSize{16, 16};
    unsigned m_count = 0;
    unsigned m_tokenId = 0;  // what the token had
    unsigned m_tokenState = 0;
    WPARAM m_tokenData = 0;
    unsigned m_selected = noSlide;
    eStyleSelection m_style = eStyleSelectionFrame;
    unsigned long m_colorMenu = 0xF0F0F0;
    Popup* m_popup = nullptr;                 // belongs to the menu it stands in
    std::shared_ptr<CTovMenuSlider*> m_self;  // null in it when the slider has ended
    unsigned long m_colorBackground = 0;
    unsigned long m_colorFrame = 0;
    unsigned long m_colorSelection = 0;
};

}  // namespace tov
