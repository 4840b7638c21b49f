// What a list shows: an ITovListSource answers for its cells. CTovStoredItems is one that keeps them itself.
//
// Rows and columns are counted in screen indexes (list_port.h): rows from the top, columns in the order in
// which they were put into the header.
#pragma once

#include <tov310/export.h>
#include <tov310/geometry.h>
#include <tov310/pixels.h>
#include <tov310/types.h>

#include <functional>
#include <vector>

namespace tov {

class CDC;

inline constexpr unsigned int tovNoIndex = 0xFFFFFFFF;  // no row, no column: what signed code writes as -1

// Bits of a row's state.
inline constexpr unsigned int LVIS_FOCUSED = 0x0001;
inline constexpr unsigned int LVIS_SELECTED = 0x0002;
inline constexpr unsigned int LVIS_CUT = 0x0004;  // disabled; its image is ghosted
inline constexpr unsigned int tovStateUnchecked = 0x1000;
inline constexpr unsigned int tovStateChecked = 0x2000;

// What of a cell is asked for.
inline constexpr unsigned int LVIF_TEXT = 0x1;
inline constexpr unsigned int LVIF_IMAGE = 0x2;
inline constexpr unsigned int LVIF_STATE = 0x8;

inline constexpr unsigned int tovNoImage = 0xFFFFFFFF;
inline constexpr unsigned int tovUsualImage = 0xFFFFFFFE;  // the list's default image

// A question for one cell, and its answer.
struct TOV_DISPINFO {
    unsigned int mask = LVIF_TEXT | LVIF_IMAGE | LVIF_STATE;
    unsigned int iItem = 0;
    unsigned int iSubItem = 0;
    unsigned int cchTextMax =
        0;  // size of the asker's buffer: one character more than the text may have; 0: any

    CString strText;
    unsigned int nImage = tovNoImage;
    unsigned int nState =
        0;  // of the row; the check bits only with the first column of a list with check boxes
};

// Whose colours are the source's.
enum eTovListColors {
    eListColorsUsual = 0,    // nobody's
    eListColorsPerItem = 1,  // a row's, asked for once
    eListColorsPerCell = 2,
};

// What a list shows.
class TOV_CORE_API ITovListSource {
 public:
    virtual unsigned int GetItemCount() = 0;

    // Answers 1, or 0 with nothing filled in for a row or a column that is none.
    virtual int GetDispInfo(TOV_DISPINFO& info) = 0;

    // The colours come as the usual ones and stay so where nothing is said. The column is tovNoIndex for
    // those of a row.
    virtual eTovListColors HasItemColors() { return eListColorsUsual; }
    virtual void GetItemColors(unsigned int /*item*/, unsigned int /*col*/, COLORREF& /*text*/,
                               COLORREF& /*background*/) {}

    // Draws a cell of its own accord; 0: the list draws it. The state has bits of LVIS_.
    virtual int DrawItem(CDC& /*dc*/, unsigned int /*item*/, unsigned int /*col*/, CRect const& /*cell*/,
                         unsigned int /*state*/) {
        return 0;
    }

    // Whether the user may write another text into the first column, and taking it over; 0: refused.
    virtual int CanEditLabel(unsigned int /*item*/) { return 0; }
    virtual int SetLabel(unsigned int /*item*/, char const* /*text*/) { return 0; }

 protected:
    ITovListSource() = default;
    ITovListSource(ITovListSource const&) = default;
    ITovListSource& operator=(ITovListSource const&) = default;
    virtual ~ITovListSource();
};

// Rows with texts that are kept here. Answers are 1, or 0 for a row that is none; indexes stay valid as long
// as no row in front is inserted or deleted.
class TOV_CORE_API CTovStoredItems : public ITovListSource {
 public:
    CTovStoredItems() = default;
    ~CTovStoredItems() override;

    unsigned int GetItemCount() override { return static_cast<unsigned int>(m_items.size()); }
    int GetDispInfo(TOV_DISPINFO& info) override;

    // In front of a row, or behind the last one for any larger index. Answers the index that it got.
    unsigned int InsertItem(unsigned int item, char const* text, unsigned int image = tovNoImage,
                            LPARAM data = 0);
    int DeleteItem(unsigned int item);
    void DeleteAllItems() { m_items.clear(); }

    // A column that has none yet is an empty text.
    int SetItemText(unsigned int item, unsigned int col, char const* text);
    CString GetItemText(unsigned int item, unsigned int col) const;
    int SetItemImage(unsigned int item, unsigned int image);  // of the first column
    unsigned int GetItemImage(unsigned int item) const;       // tovNoImage for a row that is none
    int SetItemData(unsigned int item, LPARAM data);
    LPARAM GetItemData(unsigned int item) const;

    // The bits of the mask. A row is checked or unchecked with tovStateChecked and tovStateUnchecked.
    int SetItemState(unsigned int item, unsigned int state, unsigned int mask);
    unsigned int GetItemState(unsigned int item, unsigned int mask) const;

    // A column that is put in or taken out takes the texts behind it along.
    void InsertColumn(unsigned int col);
    void DeleteColumn(unsigned int col);

    // Orders the rows by what the function answers for the data of two of them: negative, 0, positive. Equal
    // ones stay as they stood.
    void SortItems(std::function<int(LPARAM, LPARAM)> const& compare);

 private:
    struct Item {
        std::vector<CString> texts;
        unsigned int image = tovNoImage;
        unsigned int state = 0;
        LPARAM data = 0;
    };
    std::vector<Item> m_items;
};

// The texts of rows, as they are put on the clipboard: columns in the given order, with a tab between and a
// carriage return and a line feed behind each row. A cell gives 511 characters at most.
TOV_CORE_API CString TovListText(ITovListSource& source, std::vector<unsigned int> const& rows,
                                 std::vector<unsigned int> const& cols);

// How large a buffer should become that is full at a cell: as large as all is going to be, if what follows is
// like what went before, and at least `step` larger. 0 without rows.
TOV_CORE_API unsigned long TovEstimateCacheSize(unsigned long allocated, long rows, long cols, long row,
                                                long col, long step);

}  // namespace tov
