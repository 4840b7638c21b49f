// Texts fitted to a width in pixels, and texts that look raised or sunken.
#pragma once

#include <tov310/export.h>
#include <tov310/pixels.h>
#include <tov310/types.h>

namespace tov {

class CDC;
class CWnd;

// The text, or as much of its beginning as fits into the width with "..." behind it, but one character at
// least. Where not even that fits: "...", "..", "." or nothing, whatever fits. Without a device the text is
// given as it is.
TOV_CORE_API CString TovAdjustString(CDC const* dc, int width, char const* text);

// How many characters of the text fit into the width, from its beginning.
TOV_CORE_API int TovGetMaxStringLen(CDC const* dc, int width, char const* text);

// A path that is too wide in the font of the window loses folders behind its root, in whose place stands
// "...", but never its last element, however wide that is: "C:\ ...\data\survey.txt", "/
// .../data/survey.txt". The same path where the window is none, or the path has less than four characters.
TOV_CORE_API CString TovAdjustPathString(char const* path, CWnd* wnd, unsigned int width);

// Draws the text in `colour`, and before it one pixel to the left and up (raised not 0) or to the right and
// down in `shadow`; without one, in the system's colour of shadows. The colour of texts of the device is the
// same afterwards.
TOV_CORE_API void TovDraw3dString(CDC* dc, int x, int y, char const* text, int raised, COLORREF colour,
                                  COLORREF shadow);
TOV_CORE_API void TovDraw3dString(CDC* dc, int x, int y, char const* text, int raised, COLORREF colour);

}  // namespace tov
