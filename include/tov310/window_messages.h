// The messages in which a window hears of the keyboard, the mouse, the screen and its own life.
//
// The list is closed: what is not in it does not come as a message. Next to each stands what it carries, when
// it comes and what becomes of it if a hook or the window itself swallows it, that is, does not pass it on.
#pragma once

#include <tov310/geometry.h>
#include <tov310/types.h>

namespace tov {

// Life. They come once, cannot be swallowed, and find the window whole.
inline constexpr unsigned WM_DESTROY = 0x0002;     // it is about to die, and so are those in it
inline constexpr unsigned WM_INITDIALOG = 0x0110;  // a dialog has all its controls and is not shown yet

// After the fact; swallowing keeps the toolkit's own widget from hearing of it.
inline constexpr unsigned WM_MOVE = 0x0003;            // lParam: the left top corner in what it stands in
inline constexpr unsigned WM_SIZE = 0x0005;            // wParam: SIZE_ number; lParam: the new size
inline constexpr unsigned WM_ACTIVATE = 0x0006;        // a top-level window; wParam: 1 active, 0 not
inline constexpr unsigned WM_SETFOCUS = 0x0007;        // it has got the focus
inline constexpr unsigned WM_KILLFOCUS = 0x0008;       // it has lost it; wParam: the handle of who gets it
inline constexpr unsigned WM_ENABLE = 0x000A;          // wParam: whether it takes keys and the mouse now
inline constexpr unsigned WM_SYSCOLORCHANGE = 0x0015;  // palette or style are others
inline constexpr unsigned WM_SHOWWINDOW = 0x0018;      // wParam: 1 it is shown now, 0 hidden
inline constexpr unsigned WM_FONTCHANGE = 0x001D;      // its font is another
inline constexpr unsigned WM_MOUSELEAVE = 0x02A3;      // the mouse has left it
inline constexpr unsigned WM_TIMER = 0x0113;           // wParam: the id of SetTimer
inline constexpr unsigned WM_HSCROLL = 0x0114;         // wParam: the new place of a scroll bar
inline constexpr unsigned WM_VSCROLL = 0x0115;

// Before the fact; a swallowed one does not happen.
inline constexpr unsigned WM_CLOSE = 0x0010;          // somebody wants to close it
inline constexpr unsigned WM_PAINT = 0x000F;          // it is to be painted; wParam: the CDC* that wants its
                                                      // picture, 0 for its own device
inline constexpr unsigned WM_MOUSEACTIVATE = 0x0021;  // a press, a wheel or a key is about to reach it or to
                                                      // bring it the focus; 0 keeps that off. wParam: the
                                                      // handle of the top-level window
inline constexpr unsigned WM_NEXTDLGCTL = 0x0028;  // the focus goes to the next control; wParam 1: previous
inline constexpr unsigned WM_CONTEXTMENU =
    0x007B;                                     // lParam: a place of the screen; (-1, -1) from the keyboard
inline constexpr unsigned WM_KEYDOWN = 0x0100;  // wParam: a VK_ number, 0 where the key has none
inline constexpr unsigned WM_KEYUP = 0x0101;
inline constexpr unsigned WM_INITMENUPOPUP = 0x0117;  // a menu opens; wParam: its CMenu*, whose states may be
                                                      // set still; who ends the menu does not pass it on
// The mouse. wParam: MK_ bits; lParam: the place in the window.
inline constexpr unsigned WM_MOUSEMOVE = 0x0200;
inline constexpr unsigned WM_LBUTTONDOWN = 0x0201;
inline constexpr unsigned WM_LBUTTONUP = 0x0202;
inline constexpr unsigned WM_LBUTTONDBLCLK = 0x0203;
inline constexpr unsigned WM_RBUTTONDOWN = 0x0204;
inline constexpr unsigned WM_RBUTTONUP = 0x0205;
inline constexpr unsigned WM_RBUTTONDBLCLK = 0x0206;
inline constexpr unsigned WM_MBUTTONDOWN = 0x0207;
inline constexpr unsigned WM_MBUTTONUP = 0x0208;
inline constexpr unsigned WM_MBUTTONDBLCLK = 0x0209;
inline constexpr unsigned WM_MOUSEWHEEL =
    0x020A;  // upper half of wParam: 120 a notch, positive away from the user

// From one window to another; the toolkit sends none of them by itself but WM_COMMAND.
inline constexpr unsigned WM_SETREDRAW = 0x000B;      // wParam: whether it paints itself from now on
inline constexpr unsigned WM_NOTIFY = 0x004E;         // lParam: an NMHDR const*
inline constexpr unsigned WM_GETDLGCODE = 0x0087;     // answers the kind of control, DLGC_ bits
inline constexpr unsigned BM_SETSTYLE = 0x00F4;       // a button becomes or ceases to be the default one
inline constexpr unsigned BM_CLICK = 0x00F5;          // a button is to be pressed
inline constexpr unsigned WM_INITIALUPDATE = 0x0364;  // a view is about to show its document first
inline constexpr unsigned WM_PRINTCLIENT = 0x0318;  // a view is to draw itself; wParam: a CDC*; lParam: PRF_
                                                    // bits
// A command that was chosen: its id in the lowest 16 bits of wParam; above them what a control tells of
// itself (EN_CHANGE ...), 0 for a menu. lParam: the handle of the control, 0 for a menu.
inline constexpr unsigned WM_COMMAND = 0x0111;

// Places and sizes in an lParam: 32 bits each.
constexpr LPARAM TovPackPoint(CPoint const& point) {
    auto const low = static_cast<std::uint64_t>(static_cast<std::uint32_t>(point.x));
    auto const high = static_cast<std::uint64_t>(static_cast<std::uint32_t>(point.y));
    return static_cast<LPARAM>(high << 32 | low);
}
constexpr CPoint TovPointOf(LPARAM lParam) {
    auto const bits = static_cast<std::uint64_t>(lParam);
    return {static_cast<int>(static_cast<std::uint32_t>(bits)),
            static_cast<int>(static_cast<std::uint32_t>(bits >> 32))};
}

// WM_PRINTCLIENT.
inline constexpr LPARAM PRF_ERASEBKGND = 0x08;  // its background too

// WM_SIZE.
inline constexpr WPARAM SIZE_RESTORED = 0;
inline constexpr WPARAM SIZE_MINIMIZED = 1;
inline constexpr WPARAM SIZE_MAXIMIZED = 2;

// Buttons and keys that are down while the mouse tells of itself.
inline constexpr WPARAM MK_LBUTTON = 0x01;
inline constexpr WPARAM MK_RBUTTON = 0x02;
inline constexpr WPARAM MK_SHIFT = 0x04;
inline constexpr WPARAM MK_CONTROL = 0x08;
inline constexpr WPARAM MK_MBUTTON = 0x10;

// WM_GETDLGCODE.
inline constexpr LRESULT DLGC_WANTARROWS = 0x0001;
inline constexpr LRESULT DLGC_WANTTAB = 0x0002;
inline constexpr LRESULT DLGC_WANTALLKEYS = 0x0004;
inline constexpr LRESULT DLGC_BUTTON = 0x2000;

// Keys by number. Letters and digits have their capital's code, F1 to F24 0x70 to 0x87, the digits of the
// keypad 0x60 to 0x69.
inline constexpr int VK_BACK = 0x08;
inline constexpr int VK_TAB = 0x09;
inline constexpr int VK_RETURN = 0x0D;
inline constexpr int VK_SHIFT = 0x10;
inline constexpr int VK_CONTROL = 0x11;
inline constexpr int VK_MENU = 0x12;  // Alt
inline constexpr int VK_ESCAPE = 0x1B;
inline constexpr int VK_SPACE = 0x20;
inline constexpr int VK_PRIOR = 0x21;  // page up
inline constexpr int VK_NEXT = 0x22;   // page down
inline constexpr int VK_END = 0x23;
inline constexpr int VK_HOME = 0x24;
inline constexpr int VK_LEFT = 0x25;
inline constexpr int VK_UP = 0x26;
inline constexpr int VK_RIGHT = 0x27;
inline constexpr int VK_DOWN = 0x28;
inline constexpr int VK_INSERT = 0x2D;
inline constexpr int VK_DELETE = 0x2E;
inline constexpr int VK_APPS = 0x5D;  // the key of the context menu
inline constexpr int VK_NUMPAD0 = 0x60;
inline constexpr int VK_MULTIPLY = 0x6A;
inline constexpr int VK_ADD = 0x6B;
inline constexpr int VK_SUBTRACT = 0x6D;
inline constexpr int VK_DECIMAL = 0x6E;
inline constexpr int VK_DIVIDE = 0x6F;
inline constexpr int VK_F1 = 0x70;

}  // namespace tov
