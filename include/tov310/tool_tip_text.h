// What a tool tip shows and where: the part of a tool-tip window that needs no screen.
#pragma once

#include <tov310/export.h>
#include <tov310/geometry.h>
#include <tov310/types.h>

#include <functional>

namespace tov {

class TOV_CORE_API CTovToolTipText {
 public:
    // Where in the tip the point lies that it is shown for: eLeft and eBottom put the left bottom corner of
    // the tip on the point. Centred means half the size, rounded down, to either side.
    enum eAcross { eLeft, eCentered, eRight };
    enum eDown { eTop, eMiddle, eBottom };

    // The extent of a text in the tip's font, in pixels.
    using Measure = std::function<CSize(CString const&)>;

    // Takes a text; null and an empty one empty the tip, and the same text does nothing. What is shown has a
    // blank before and behind it, and blanks for line ends and tabs.
    void Update(char const* text, Measure const& measure);

    CString const& DisplayText() const { return m_displayText; }
    CSize Size() const { return m_size; }  // of the tip: 6 pixels more than the text, each way
    CRect RectangleAt(int x, int y, eAcross across, eDown down) const;

    // A rectangle that is to be seen whole, moved just into the screen. What is wider or higher than the
    // screen is cut at the right and the bottom. On an empty screen everything stays.
    static CRect KeptInside(CRect const& rect, CRect const& screen);

    // To be called when the tip is about to be shown there: 1 where something is to be moved or painted, 0
    // where the same is up at the same place.
    int Show(CRect const& rect);
    int IsShown() const { return m_isShown; }

    // Empties it. The next Show has something to do.
    void Hide();

 private:
    CString m_text;
    CString m_displayText;
    CSize m_size;
    int m_isShown = 0;
    CRect m_shownRect;
    CString m_shownText;
};

}  // namespace tov
