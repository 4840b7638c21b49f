// Small pages of HTML that show one picture, for views of HTML.
#pragma once

#include <tov310/export.h>
#include <tov310/types.h>

namespace tov {

class TOV_CORE_API CTovHtmlPage {
 public:
    // "rrggbb" of a colour 0x00BBGGRR.
    static CString Color(unsigned long color);

    // A page without anything, on the colour; null is the browser's own.
    static CString Empty(unsigned long const* backColor);

    // A page with the picture of this path, at the left top or in the middle. Characters of the path that
    // mean something in HTML or in an address are written so that they do not.
    static CString Picture(char const* path, int centered, unsigned long const* backColor);

    // The name of the file, without a folder, in which such a page is kept: another one for each path, place
    // and colour; "CTovHtmlView_Empty" and the like for an empty path. Separators and ":" of the path become
    // "_".
    static CString FileName(char const* path, int centered, unsigned long const* backColor);
};

}  // namespace tov
