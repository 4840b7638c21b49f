// What the library asks of the screen. The layer of the toolkit answers it; a test puts its own in the place.
#pragma once

#include <tov310/export.h>
#include <tov310/geometry.h>
#include <tov310/pixels.h>
#include <tov310/types.h>

#include <memory>

namespace tov {

class CDC;
class ITovTip;

// Colours of the system by number.
inline constexpr int COLOR_WINDOW = 5;
inline constexpr int COLOR_WINDOWFRAME = 6;
inline constexpr int COLOR_WINDOWTEXT = 8;
inline constexpr int COLOR_HIGHLIGHT = 13;
inline constexpr int COLOR_HIGHLIGHTTEXT = 14;
inline constexpr int COLOR_BTNFACE = 15;
inline constexpr int COLOR_BTNSHADOW = 16;
inline constexpr int COLOR_GRAYTEXT = 17;
inline constexpr int COLOR_BTNTEXT = 18;
inline constexpr int COLOR_BTNHIGHLIGHT = 20;
inline constexpr int COLOR_INFOTEXT = 23;
inline constexpr int COLOR_INFOBK = 24;

// Each operation does nothing, or answers that there is nothing, where it is not overridden: without a screen
// it is so. Those on cursors may be called from every thread, one at a time, and must not come back into what
// called them; the others belong to the user-interface thread.
class TOV_CORE_API ITovSystem {
 public:
    // Shows a cursor at once, wherever the mouse is.
    virtual void SetCursor(unsigned int cursor);

    // Has the window under the mouse choose the cursor again.
    virtual void RefreshCursor();

    // The window that has the focus of the keyboard.
    virtual HWND GetFocus();

    // Whether the key with this VK_ number is down at this moment.
    virtual int IsKeyDown(int virtualKey);

    // The extent of a text in a font, in pixels of the screen.
    virtual CSize GetTextExtent(HFONT font, char const* text);

    // The font that dialogs have at this moment; null where there is none.
    virtual HFONT GetDialogFont();

    // Timers of windows, as CWnd has them. Answer 1 or 0.
    virtual int SetTimer(HWND window, WPARAM id, unsigned milliseconds);
    virtual int KillTimer(HWND window, WPARAM id);

    // How many milliseconds lie between the two clicks of a double click at most; 500 without a screen.
    virtual unsigned GetDoubleClickTime();

    // A picture of the inside of the window as it is now, in its dots. Null where there is none.
    virtual HBITMAP GetPicture(HWND window);

    // One of the system's colours, 0x00BBGGRR.
    virtual std::uint32_t GetSysColor(int index);

    // A device in memory like that of the window: with its dots, font and colours, filled with its
    // background. Null where there is none.
    virtual std::unique_ptr<CDC> CreateMemoryDC(HWND window, CSize const& size);

    // The device of a window while it is told to paint itself (WM_PAINT), and the rectangle around what is to
    // be painted. Null, and an empty one, at other times.
    virtual std::unique_ptr<CDC> CreatePaintDC(HWND window, CRect* part);

    // A tool tip above the window, not shown yet; it ends with the window at the latest. Null where there is
    // none.
    virtual std::unique_ptr<ITovTip> CreateTip(HWND window);

 protected:
    ITovSystem() = default;
    ITovSystem(ITovSystem const&) = default;
    ITovSystem& operator=(ITovSystem const&) = default;
    virtual ~ITovSystem();
};

// Cursors by number.
inline constexpr unsigned int IDC_ARROW = 32512;
inline constexpr unsigned int IDC_WAIT = 32514;

// The one in force, never null.
TOV_CORE_API ITovSystem* TovGetSystem();

// Puts another in its place and answers the one before. Null brings the default back. It stays the caller's
// and must live until it is replaced.
TOV_CORE_API ITovSystem* TovSetSystem(ITovSystem* system);

// For the layer of the toolkit: what answers where nobody has put his own in the place. Null: nothing does.
// It stays the caller's, and must live until it is replaced.
TOV_CORE_API void TovSetDefaultSystem(ITovSystem* system);

// The window that has the focus of the keyboard; none without a screen.
TOV_CORE_API HWND TovGetFocus();

}  // namespace tov
