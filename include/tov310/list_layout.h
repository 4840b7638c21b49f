// Where the rows and the cells of a list stand, in its four styles, and what scrolling it does. Without a
// toolkit; every answer takes the same time for ten rows and for ten million.
//
// Pixels are those of the area of the rows, without a header, from its left top corner, as far as the list is
// scrolled at the moment. In the report style rows stand below one another and scrolling goes by whole rows
// down and by pixels across; in the list style they run down and then in columns to the right, by which is
// scrolled; icons and small icons run to the right and then down.
#pragma once

#include <tov310/export.h>
#include <tov310/geometry.h>
#include <tov310/list_source.h>

#include <cstdint>
#include <utility>
#include <vector>

namespace tov {

inline constexpr unsigned long LVS_ICON = 0;
inline constexpr unsigned long LVS_REPORT = 1;
inline constexpr unsigned long LVS_SMALLICON = 2;
inline constexpr unsigned long LVS_LIST = 3;
inline constexpr unsigned long LVS_TYPEMASK = 3;

// What lies at a point: one of these.
inline constexpr unsigned int LVHT_NOWHERE = 1;  // no row
inline constexpr unsigned int LVHT_ONITEMICON = 2;
inline constexpr unsigned int LVHT_ONITEMLABEL = 4;
inline constexpr unsigned int LVHT_ONITEMSTATEICON = 8;  // the check box

struct TOV_LISTHIT {
    unsigned int item = tovNoIndex;
    unsigned int col = tovNoIndex;  // in the report style
    unsigned int flags = LVHT_NOWHERE;

    friend bool operator==(TOV_LISTHIT const&, TOV_LISTHIT const&) = default;
};

enum eTovListPart { eListPartCell, eListPartCheck, eListPartImage, eListPartLabel };
enum eTovListWay { eListWayUp, eListWayDown, eListWayLeft, eListWayRight };

class TOV_CORE_API CTovListLayout {
 public:
    using Indexes = std::vector<unsigned int>;

    // --- Measures. After each change the list stays scrolled as far as it was, and can be.

    void SetStyle(unsigned long style);  // other bits are passed over
    unsigned long GetStyle() const { return m_style; }
    void SetItemCount(unsigned int count);
    unsigned int GetItemCount() const { return m_count; }
    void SetArea(CSize const& area);
    CSize GetArea() const { return m_area; }
    void SetRowHeight(int height);  // of all but the icon style
    int GetRowHeight() const { return m_rowHeight; }
    void SetCellSize(CSize const& size);  // of an icon; its width is that of the columns of the other styles
    // Widths by screen index, and the screen indexes from left to right; one that is not among them, or
    // stands there twice, is not shown there.
    void SetColumns(std::vector<int> const& widths, Indexes const& order);
    unsigned int GetColumns() const { return static_cast<unsigned int>(m_columns.size()); }
    Indexes const& GetColumnOrder() const { return m_order; }
    void SetCheckWidth(int width);  // 0: no check boxes
    void SetImageSize(CSize const& size);

    // --- Places

    CRect GetItemRect(unsigned int item) const;  // empty for a row that is none
    // A part of a row, in the report style of the row's cell in a column. The image's is empty but for the
    // first column, unless it is said that there is one.
    CRect GetPartRect(unsigned int item, unsigned int col, eTovListPart part, bool hasImage) const;
    CRect GetPartRect(unsigned int item, unsigned int col, eTovListPart part) const {
        return GetPartRect(item, col, part, col == 0 && m_imageSize.cx > 0);
    }
    TOV_LISTHIT HitTest(CPoint const& point) const;
    unsigned int GetColumnAt(int x) const;

    // The row beside another one, or tovNoIndex. In the list style the way down goes on in the next column.
    unsigned int GetNextItem(unsigned int item, eTovListWay way) const;
    // Rows that fit in the area one below the other, at least 1.
    unsigned int GetCountPerPage() const;
    bool IsSameColumn(unsigned int a, unsigned int b) const;

    // What a rectangle touches when `inset` pixels at each side of a row do not count. The rectangle is in
    // pixels of the content, whose left top corner stays where it is when it is scrolled.
    Indexes GetItemsIn(CTovRect<std::int64_t> const& content, int inset = 0) const;
    CTovPoint<std::int64_t> ToContent(CPoint const& point) const;
    CRect FromContent(CTovRect<std::int64_t> const& rect) const;

    // --- Scrolling

    int GetLeft() const { return static_cast<int>(-m_x); }  // left edge of the rows, 0 or negative
    unsigned int GetTopRow() const;                         // the first row shown at all
    int GetContentWidth() const;                            // of all columns of a report

    // By pixels, down by as many whole rows of a report as they make, across by whole columns of the list
    // style. True: it has moved.
    bool Scroll(int dx, int dy);

    // A scroll bar: its position, the greatest one, and a page, in rows, columns or pixels.
    struct Bar {
        int position = 0;
        int most = 0;
        int page = 0;
        int line = 1;
    };
    Bar GetBar(bool vertical) const;
    bool SetBar(bool vertical, int position);

    // Answer 1 when it is whole in sight then, or fills the area; 0 for one that is none. A column is shown
    // by as few pixels as its alignment (LVCFMT_) wants.
    int EnsureItemVisible(unsigned int item);
    int EnsureColVisible(unsigned int col, int alignment);

 private:
    struct Grid {
        std::int64_t columns, rows;  // of cells
        std::int64_t width, height;  // of a cell
        bool isDownFirst;
    };
    struct Column {
        int left = 0;
        int width = 0;
    };
    using ContentRect = CTovRect<std::int64_t>;

    Grid GetGrid() const;
    std::pair<std::int64_t, std::int64_t> PlaceOf(Grid const& grid, unsigned int item) const;
    unsigned int ItemAt(Grid const& grid, std::int64_t column, std::int64_t row) const;
    ContentRect RectOf(unsigned int item) const;
    CTovPoint<std::int64_t> Furthest() const;
    bool MoveTo(std::int64_t x, std::int64_t y);
    void Settle() { MoveTo(m_x, m_y); }

    unsigned long m_style = LVS_REPORT;
    unsigned int m_count = 0;
    CSize m_area;
    int m_rowHeight = 1;
    CSize m_cell{1, 1};
    int m_checkWidth = 0;
    CSize m_imageSize;
    std::vector<Column> m_columns;
    Indexes m_order;
    std::int64_t m_width = 0;  // of all columns
    std::int64_t m_x = 0;      // what of the content stands at the left top corner
    std::int64_t m_y = 0;
};

// How far the content is scrolled across to show a column that reaches from left to right, in pixels of an
// area of this width: left-aligned ones show their beginning, right-aligned ones their end and centred ones
// their middle where not all of them fits.
TOV_CORE_API int TovColumnScrollStep(int left, int right, int width, int alignment);

}  // namespace tov
