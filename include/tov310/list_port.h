// The seam between what a list shows and the control that shows it.
//
// The control keeps no rows: it asks an ITovListSource for what it paints and stands as an ITovListPort, with
// its header as an ITovHeaderPort, in front of whoever decides (report_model.h). Rows and columns are counted
// in screen indexes here: rows from the top, columns in the order in which they were put into the header,
// wherever the user has dragged them. Lengths are pixels of the control.
#pragma once

#include <tov310/export.h>
#include <tov310/geometry.h>
#include <tov310/list_source.h>
#include <tov310/types.h>

#include <vector>

namespace tov {

// One key of a sort by a column on the screen.
struct SORT_STATE_SCREENCOL {
    unsigned int nCol = tovNoIndex;
    int bAscending = 1;

    friend constexpr bool operator==(SORT_STATE_SCREENCOL const&, SORT_STATE_SCREENCOL const&) = default;
};

// How the text of a column stands.
inline constexpr int LVCFMT_LEFT = 0;
inline constexpr int LVCFMT_RIGHT = 1;
inline constexpr int LVCFMT_CENTER = 2;

// Widths that ask for as many pixels as a column's cells and its header need.
inline constexpr int tovAutoWidth = -1;
inline constexpr int tovAutoWidthWithHeader = -2;

// The header of a list.
class TOV_CORE_API ITovHeaderPort {
 public:
    // Puts a column in front of the one with this index, which moves up by one with all behind it; it stands
    // at the same place from the left. DeleteColumn takes it out again.
    virtual void InsertColumn(unsigned int col, int alignment, int width, char const* label) = 0;
    virtual void DeleteColumn(unsigned int col) = 0;

    virtual void SetColumnLabel(unsigned int col, char const* label) = 0;
    virtual void SetColumnAlignment(unsigned int col, int alignment) = 0;

    virtual int GetColumnWidth(unsigned int col) = 0;
    virtual void SetColumnWidth(unsigned int col, int width) = 0;
    virtual int GetHeaderWidth(unsigned int col) = 0;  // what its label and its marks need

    // The columns from left to right, as they have been dragged. Each stands there once.
    virtual std::vector<unsigned int> GetColumnOrder() = 0;
    virtual void SetColumnOrder(std::vector<unsigned int> const& order) = 0;

    // Shows the marks of these keys, at most three, and no others. A key whose column is none changes
    // nothing.
    virtual void SetSortColumns(std::vector<SORT_STATE_SCREENCOL> const& keys) = 0;

    virtual void Invalidate() = 0;

 protected:
    ITovHeaderPort() = default;
    ITovHeaderPort(ITovHeaderPort const&) = default;
    ITovHeaderPort& operator=(ITovHeaderPort const&) = default;
    virtual ~ITovHeaderPort();
};

// The list itself.
class TOV_CORE_API ITovListPort {
 public:
    virtual ITovHeaderPort& Header() = 0;

    // Rows came, went or changed places, and all are to be painted anew. The number of rows is what the
    // source answers from now on; the scroll position stays as far as it can. Told once for a whole
    // operation: what the control paints in the middle of one, it asks the source for, the number of rows
    // included.
    virtual void RowsChanged() = 0;

    // To be painted anew: the rows from first to last, and what lies between two pixels from the left.
    virtual void InvalidateRows(unsigned int first, unsigned int last) = 0;
    virtual void InvalidateStrip(int left, int right) = 0;

    // The area of the rows, without the header.
    virtual CRect GetRowsRect() = 0;
    virtual int GetRowHeight() = 0;
    virtual unsigned int GetTopRow() = 0;  // the first one shown
    virtual int GetRowLeft() = 0;          // left edge of the rows; negative as far as they are scrolled

    // Of a text in the list's font; at most what a character adds to a text; and of an image.
    virtual int GetTextWidth(char const* text) = 0;
    virtual int GetCharacterWidth(char32_t character) = 0;
    virtual int GetImageWidth() = 0;

    virtual void Scroll(int dx, int dy) = 0;
    virtual int EnsureRowVisible(unsigned int row) = 0;  // 1 when it is
    virtual int EnsureColumnVisible(unsigned int col) = 0;

 protected:
    ITovListPort() = default;
    ITovListPort(ITovListPort const&) = default;
    ITovListPort& operator=(ITovListPort const&) = default;
    virtual ~ITovListPort();
};

}  // namespace tov
