// Controls that move and grow with the window they stand in, each by its share of what the window has grown.
//
// A host registers a control with percentages and says at each new size how large it was at first; the
// control's sides then stand where its rectangle at registration puts them, so that any number of sizes in
// between leaves nothing behind.
#pragma once

#include <tov310/export.h>
#include <tov310/geometry.h>

#include <vector>

namespace tov {

class CWnd;

// Bits for the short form of AddItemToArrange. A side that is both sized and moved is sized only.
enum TovArrangeFlags {
    ARRANGE_SIZE_X = 1,
    ARRANGE_MOVE_X = 2,
    ARRANGE_SIZE_Y = 4,
    ARRANGE_MOVE_Y = 8,
};

// One control: its shares of the growth in percent, its number, and its rectangle when it was registered, in
// pixels of the window it stands in.
struct ARRANGE_ITEM {
    int MoveXPercent = 0;
    int SizeXPercent = 0;
    int MoveYPercent = 0;
    int SizeYPercent = 0;
    unsigned id = 0;
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
};

// The registered controls of one window.
class TOV_CORE_API CTovArrangement {
 public:
    void Add(int moveX, int sizeX, int moveY, int sizeY, unsigned id, CRect const& rect);
    void Add(int flags, unsigned id, CRect const& rect);  // TovArrangeFlags
    void Remove(unsigned id);                             // the first with this number, if there is one
    bool IsEmpty() const { return m_items.empty(); }

    // Where a control stands in a window that has grown by so many pixels. A share is cut to whole pixels
    // towards zero: 33 percent of 10 are 3, and of -10 they are -3.
    static CRect Place(ARRANGE_ITEM const& item, int dx, int dy);

    // Calls place(ARRANGE_ITEM const&, int dx, int dy) for each control in the order of registration. The
    // window counts as never smaller than the minimum. It may register and remove controls meanwhile; that
    // counts the next time.
    template <class PlaceItem>
    void Arrange(CSize current, CSize original, CSize minimum, PlaceItem&& place) {
        CSize const growth = Growth(current, original, minimum);
        for (ARRANGE_ITEM const& item : Carried())
            place(item, growth.cx, growth.cy);
    }

    // The same with the original and the minimum of the last call; nothing before the first.
    template <class PlaceItem>
    void ArrangeAgain(CSize current, PlaceItem&& place) {
        if (m_hasSizes) Arrange(current, m_original, m_minimum, place);
    }

    // The pixels of a dialog unit (a quarter of the mean width of a letter, an eighth of the height of a
    // line), to be told before the first control is registered and whenever the font has changed. What was
    // registered before keeps its place in dialog units from then on, and so do the original and the minimum
    // size: they are meant as at the first registration. Values that are not positive change nothing.
    void SetUnits(double x, double y);
    void TakeUnits(CWnd const& window);  // those of its font

 private:
    struct Units {
        double x = 1;
        double y = 1;
    };
    struct Registered {
        ARRANGE_ITEM item;
        Units units;
    };

    static CSize Scaled(CSize size, Units const& from, Units const& to);
    CSize Growth(CSize current, CSize original, CSize minimum);
    std::vector<ARRANGE_ITEM> Carried() const;

    std::vector<Registered> m_items;
    Units m_units;
    Units m_firstUnits;
    bool m_hasFirst = false;
    bool m_hasSizes = false;
    CSize m_original;
    CSize m_minimum;
};

// The rectangle of a window in the pixels of another, commonly the one it stands in.
TOV_CORE_API CRect TovRectWithin(CWnd const& window, CWnd const& around);

}  // namespace tov
