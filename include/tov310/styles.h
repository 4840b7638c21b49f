// Bits of windows' styles. Only these have a meaning here.
#pragma once

namespace tov {

inline constexpr unsigned long WS_CHILD = 0x40000000;         // stands in another window
inline constexpr unsigned long WS_VISIBLE = 0x10000000;       // is shown, as soon as what it stands in is
inline constexpr unsigned long WS_DISABLED = 0x08000000;      // takes neither keys nor the mouse
inline constexpr unsigned long WS_CLIPSIBLINGS = 0x04000000;  // paints only what others leave of it
inline constexpr unsigned long WS_CLIPCHILDREN = 0x02000000;  // paints nothing where another stands in it;
                                                              // on a screen all are so
inline constexpr unsigned long WS_TABSTOP = 0x00010000;       // Tab stops there
inline constexpr unsigned long WS_GROUP = 0x00020000;         // begins a group of controls in a dialog
inline constexpr unsigned long WS_BORDER = 0x00800000;        // has a thin frame
inline constexpr unsigned long WS_HSCROLL = 0x00100000;       // has a bar to scroll by
inline constexpr unsigned long WS_VSCROLL = 0x00200000;

// Top-level windows only; two of the bits mean something else for controls.
inline constexpr unsigned long WS_POPUP = 0x80000000;
inline constexpr unsigned long WS_CAPTION = 0x00C00000;
inline constexpr unsigned long WS_THICKFRAME = 0x00040000;  // the user can change its size
inline constexpr unsigned long WS_MINIMIZE = 0x20000000;    // is minimised at the moment
inline constexpr unsigned long WS_MINIMIZEBOX = 0x00020000;
inline constexpr unsigned long WS_MAXIMIZEBOX = 0x00010000;

// Dialogs.
inline constexpr unsigned long DS_CONTROL = 0x00000400;  // works as a part of the dialog it stands in
inline constexpr unsigned long DS_CENTER = 0x00000800;
inline constexpr unsigned long DS_CONTEXTHELP = 0x00002000;

inline constexpr unsigned long WS_EX_TOPMOST = 0x00000008;      // stays above all others
inline constexpr unsigned long WS_EX_TRANSPARENT = 0x00000020;  // lets shine through what is behind it
inline constexpr unsigned long WS_EX_CONTEXTHELP = 0x00000400;  // has a button that asks what something is

// Kinds of buttons, in the lowest four bits.
inline constexpr unsigned long BS_TYPEMASK = 0x0000000F;
inline constexpr unsigned long BS_PUSHBUTTON = 0;
inline constexpr unsigned long BS_DEFPUSHBUTTON = 1;
inline constexpr unsigned long BS_CHECKBOX = 2;
inline constexpr unsigned long BS_AUTOCHECKBOX = 3;
inline constexpr unsigned long BS_AUTO3STATE = 6;
inline constexpr unsigned long BS_GROUPBOX = 7;
inline constexpr unsigned long BS_AUTORADIOBUTTON = 9;
inline constexpr unsigned long BS_PUSHLIKE = 0x00001000;

// Edits.
inline constexpr unsigned long ES_CENTER = 0x00000001;
inline constexpr unsigned long ES_RIGHT = 0x00000002;
inline constexpr unsigned long ES_MULTILINE = 0x00000004;
inline constexpr unsigned long ES_PASSWORD = 0x00000020;
inline constexpr unsigned long ES_AUTOVSCROLL = 0x00000040;
inline constexpr unsigned long ES_AUTOHSCROLL = 0x00000080;  // with many lines: they are not folded
inline constexpr unsigned long ES_READONLY = 0x00000800;
inline constexpr unsigned long ES_NUMBER = 0x00002000;  // takes digits only

// Labels; the kind is in the lowest five bits.
inline constexpr unsigned long SS_TYPEMASK = 0x0000001F;
inline constexpr unsigned long SS_LEFT = 0;
inline constexpr unsigned long SS_CENTER = 1;
inline constexpr unsigned long SS_RIGHT = 2;
inline constexpr unsigned long SS_ICON = 3;           // the place of an image
inline constexpr unsigned long SS_ETCHEDHORZ = 0x10;  // a rule
inline constexpr unsigned long SS_NOPREFIX = 0x0080;  // "&" is a character like others
inline constexpr unsigned long SS_CENTERIMAGE = 0x0200;

// Combo boxes and lists.
inline constexpr unsigned long CBS_DROPDOWN = 2;
inline constexpr unsigned long CBS_DROPDOWNLIST = 3;
inline constexpr unsigned long CBS_SORT = 0x0100;
inline constexpr unsigned long LBS_SORT = 0x0002;
inline constexpr unsigned long LBS_EXTENDEDSEL = 0x0800;

// What stands upright: bars to scroll by, sliders, bars of progress.
inline constexpr unsigned long SBS_VERT = 1;
inline constexpr unsigned long TBS_VERT = 2;
inline constexpr unsigned long PBS_VERTICAL = 4;

// For ShowWindow; every other number but 0 shows likewise.
inline constexpr int SW_HIDE = 0;
inline constexpr int SW_SHOW = 5;

// For RedrawWindow.
inline constexpr unsigned RDW_INVALIDATE = 0x0001;
inline constexpr unsigned RDW_NOERASE = 0x0020;
inline constexpr unsigned RDW_UPDATENOW = 0x0100;

}  // namespace tov
