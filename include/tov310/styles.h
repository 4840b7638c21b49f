// Bits of windows' styles. Only these have a meaning here.
#pragma once

namespace tov {

inline constexpr unsigned long WS_CHILD = 0x40000000;     // stands in another window
inline constexpr unsigned long WS_VISIBLE = 0x10000000;   // is shown, as soon as what it stands in is
inline constexpr unsigned long WS_DISABLED = 0x08000000;  // takes neither keys nor the mouse
inline constexpr unsigned long WS_TABSTOP = 0x00010000;   // Tab stops there

inline constexpr unsigned long WS_EX_TRANSPARENT = 0x00000020;  // lets shine through what is behind it

// Kinds of buttons, in the lowest four bits.
inline constexpr unsigned long BS_TYPEMASK = 0x0000000F;
inline constexpr unsigned long BS_PUSHBUTTON = 0;
inline constexpr unsigned long BS_DEFPUSHBUTTON = 1;
inline constexpr unsigned long BS_CHECKBOX = 2;
inline constexpr unsigned long BS_AUTOCHECKBOX = 3;
inline constexpr unsigned long BS_AUTORADIOBUTTON = 9;
inline constexpr unsigned long BS_PUSHLIKE = 0x00001000;

// Edits.
inline constexpr unsigned long ES_RIGHT = 0x00000002;
inline constexpr unsigned long ES_PASSWORD = 0x00000020;
inline constexpr unsigned long ES_READONLY = 0x00000800;

// For RedrawWindow.
inline constexpr unsigned RDW_INVALIDATE = 0x0001;
inline constexpr unsigned RDW_NOERASE = 0x0020;
inline constexpr unsigned RDW_UPDATENOW = 0x0100;

}  // namespace tov
