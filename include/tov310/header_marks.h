// What the header of a list knows of its columns: marks of the sort, icons that open a list, and the places
// of all that within a cell. Without a toolkit; CTovHeaderCtrl (header_ctrl.h) is the control.
#pragma once

#include <tov310/export.h>
#include <tov310/geometry.h>
#include <tov310/list_port.h>

#include <vector>

namespace tov {

enum eInbuildIcon { eInbuildIconNone = 0, eInbuildIconAscending = 1, eInbuildIconDescending = 2 };

enum eListBoxIconStatus {
    eListBoxIconNone = 0,  // the column has no icon
    eListBoxIconNormal = 1,
    eListBoxIconActive = 2,   // what is chosen in its list is in force
    eListBoxIconDisabled = 3  // a click does nothing
};

inline constexpr unsigned int tovMostSortKeys = 3;

// Pixels that what stands in a cell takes.
struct TOV_HEADERMEASURES {
    int textPadding = -1;    // at each side of a text
    int iconExtent = -1;     // of a mark, square
    int listBoxExtent = -1;  // of the icon of a list, square

    // By the width of the letter X and the height of a text in the header's font.
    TOV_CORE_API static TOV_HEADERMEASURES Of(CSize const& letter, bool isRoomy);
};

// The record of a column; the rectangles are those of the last time it was drawn.
struct TOV_HEADERCOLUMN {
    eInbuildIcon icon = eInbuildIconNone;
    unsigned int number = 0;  // 0: none is shown
    CRect text;
    CRect mark;
    CRect listBox;
    eListBoxIconStatus status = eListBoxIconNormal;
};

class TOV_CORE_API CTovHeaderMarks {
 public:
    using Keys = std::vector<SORT_STATE_SCREENCOL>;

    // Columns come and go; the sort follows those that move up or down. An index beyond the last is the one
    // behind it for InsertColumn, and nothing for the others.
    void InsertColumn(unsigned int col);
    void DeleteColumn(unsigned int col);
    unsigned int GetColumns() const { return static_cast<unsigned int>(m_columns.size()); }
    TOV_HEADERCOLUMN* GetColumn(unsigned int col) {
        return col < m_columns.size() ? &m_columns[col] : nullptr;
    }
    TOV_HEADERCOLUMN const* GetColumn(unsigned int col) const {
        return col < m_columns.size() ? &m_columns[col] : nullptr;
    }

    // True: the mark has changed.
    bool SetInbuildIcon(unsigned int col, eInbuildIcon icon, unsigned int number);

    // Take the marks of the sort away, show those of the keys, and set the keys, which changes nothing
    // with more than three of them, or one whose column is none. True: there is something to paint.
    bool NoSort();
    bool UpdateCurrentSortedColumns();
    bool SetSortColumns(Keys const& keys);
    Keys const& GetSortColumns() const { return m_keys; }  // a column of tovNoIndex: none any more

    // What a cell needs for a text of that width.
    int GetWidth(unsigned int col, int textWidth, TOV_HEADERMEASURES const& measures, bool listBoxes) const;

    // Sets the three rectangles of a column that is drawn in a cell: the icon of the list at the right, and
    // behind the text the mark, with so much for its number, where the text's padding and one extent are
    // left.
    void CalcDrawingInfos(unsigned int col, CRect const& cell, int textWidth, int numberWidth, int alignment,
                          TOV_HEADERMEASURES const& measures, bool listBoxes);

    unsigned int PtInListBoxIcon(CPoint const& point) const;  // the column, or tovNoIndex

 private:
    std::vector<TOV_HEADERCOLUMN> m_columns;
    Keys m_keys;
};

}  // namespace tov
