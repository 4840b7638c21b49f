// The columns and rows of a report: objects that a host makes and hands over to the view.
//
//   struct Point : tov::CTovReportViewItem {
//       Point(tov::CTovReportViewHost* view, char const* itsName, double itsHeight);
//       int OnGetItemText(unsigned, unsigned col, tov::CString& text) const override;
//       int OnCompareItem(tov::CTovReportViewItem const* other, unsigned col) const override;
//       tov::CString name;
//       double height;
//   };
//   view.AddRealItem(new Point(&view, "A1", 12.5));
//
// A real index is the place of an object in the order in which objects were added. It stays with the object
// for good: sorting, hiding and deleting others does not change it, and a deleted object keeps its place
// until all are cleaned up. A screen index is the place of a row or column in what is shown. Whatever a host
// is asked or told carries real indexes.
#pragma once

#include <tov310/document.h>
#include <tov310/export.h>
#include <tov310/list_port.h>
#include <tov310/object.h>
#include <tov310/resources.h>
#include <tov310/smart_ptr.h>
#include <tov310/types.h>

#include <vector>

namespace tov {

class COleDateTime;
class CTime;
class CTovReportViewHost;
class CTovTime;
struct NMHDR;

// A row by both of its indexes; nScreen is tovNoIndex for one that is not shown.
struct COMPLETE_ITEM {
    unsigned int nReal = tovNoIndex;
    unsigned int nScreen = tovNoIndex;

    friend constexpr bool operator==(COMPLETE_ITEM const&, COMPLETE_ITEM const&) = default;
};

// One key of a sort by a real column; a column tovNoIndex ends the keys.
struct SORT_STATE_REALCOL {
    unsigned int nCol = tovNoIndex;
    int bAscending = 1;

    friend constexpr bool operator==(SORT_STATE_REALCOL const&, SORT_STATE_REALCOL const&) = default;
};

// The text of a cell as it was read last.
struct HOLD_TEXT {
    int bValid = 0;
    CString strText;
};

// What a row sorts by in a column, see CTovReportViewItem::OnGetItemSortKey.
enum eTovSortKey {
    eSortKeyNone,          // by OnCompareItem alone
    eSortKeyNumber,        // as Compare(double, double) does
    eSortKeyText,          // as Compare(char const*, char const*)
    eSortKeyTextIS,        // as CompareIS
    eSortKeyTextNoCaseIS,  // as CompareNoCaseIS
};

class TOV_CORE_API CTovReportViewCol : public CObject {
    TOV_DYNAMIC(CTovReportViewCol, CObject)
 public:
    // Hidden and width are the defaults too, to which a user can go back. The menu is that of the column's
    // context menus; null and tovNoIndex for none.
    CTovReportViewCol(CTovReportViewHost* owner, int hidden, char const* label, int alignment, int width,
                      HINSTANCE menuInstance, unsigned int menuId, int menuPosition);
    CTovReportViewCol(CTovReportViewCol const&) = default;
    CTovReportViewCol& operator=(CTovReportViewCol const&) = default;

    // Before the column hides, shows or goes. 0 keeps it as it is.
    virtual int OnHideCol(int /*hide*/) { return 1; }
    virtual int OnDeleteCol() { return 1; }

    CTovReportViewHost* Owner() const { return m_pOwner; }

    // Of the object alone: whoever wants the column to come or go on the screen calls HideRealCol or
    // DeleteRealCol of the view. Answer 1 when the column is in the wanted state then.
    int HideCol(int hide, int notify);
    int DeleteCol(int notify);

    // A new text of the header, which shows it at once.
    void SetLabel(char const* label);
    CString const& GetLabel() const { return m_strLabel; }

    int GetAlignment() const { return m_nAlignment; }
    void SetAlignment(int alignment) { m_nAlignment = alignment; }
    int GetHiddenDefault() const { return m_bHiddenDefault; }
    void SetHiddenDefault(int hidden) { m_bHiddenDefault = hidden; }
    int GetLeft() const { return m_nLeft; }
    void SetLeft(int left) { m_nLeft = left; }
    int GetOrder() const { return m_nOrder; }
    void SetOrder(int order) { m_nOrder = order; }
    int GetWidth() const { return m_nWidth; }
    void SetWidth(int width) { m_nWidth = width; }
    int GetWidthDefault() const { return m_nWidthDefault; }
    void SetWidthDefault(int width) { m_nWidthDefault = width; }
    void GetMenu(HINSTANCE& instance, unsigned int& id, int& position) const;
    void SetMenu(HINSTANCE instance, unsigned int id, int position);
    int IsHidden() const { return m_bHidden; }
    int IsDeleted() const { return m_bDeleted; }
    int IsVisible() const { return m_bHidden == 0 && m_bDeleted == 0; }

 private:
    friend class CTovReportTable;

    CTovReportViewHost* m_pOwner;
    int m_bHidden;
    int m_bHiddenDefault;
    int m_bDeleted = 0;
    CString m_strLabel;
    int m_nAlignment;
    int m_nWidth;
    int m_nWidthDefault;
    int m_nLeft = 0;   // from the left edge of the leftmost column
    int m_nOrder = 0;  // place from the left
    HINSTANCE m_hMenuInstance;
    unsigned int m_nMenuId;
    int m_nMenuPosition;
    int m_bHoldItemText = 0;
    unsigned int m_nHoldIndex = tovNoIndex;  // of the column's texts in m_vecHoldText of the rows
};

class TOV_CORE_API CTovReportViewItem : public CObject {
    TOV_DYNAMIC(CTovReportViewItem, CObject)
 public:
    explicit CTovReportViewItem(CTovReportViewHost* owner, int hidden = 0, int checked = 0, int selected = 0,
                                int disabled = 0);
    CTovReportViewItem(CTovReportViewItem const&) = default;
    CTovReportViewItem& operator=(CTovReportViewItem const&) = default;

    // Before the row hides, shows or goes. 0 keeps it as it is.
    virtual int OnHideItem(int /*hide*/) { return 1; }
    virtual int OnDeleteItem() { return 1; }

    // Before its state changes.
    virtual void OnCheckItem(int /*check*/) {}
    virtual void OnSelectItem(int /*select*/) {}
    virtual void OnDisableItem(int /*disable*/) {}

    // What stands in the cells. `item` and `col` are real indexes.
    //
    // The index of an image, tovUsualImage or tovNoImage for the list's default image.
    virtual unsigned int OnGetItemImage(unsigned int item, unsigned int col) const;
    // 0 shows the cell as "-".
    virtual int OnGetItemText(unsigned int item, unsigned int col, CString& text) const;
    virtual void OnGetItemText(unsigned int /*item*/, unsigned int /*col*/) const {}
    virtual int OnGetMainItemText(unsigned int item, CString& text) const;
    // 0x00BBGGRR. Left alone, the colours are the usual ones; the text of a disabled row is gray.
    virtual void OnGetItemColor(unsigned int realItem, unsigned int screenItem, unsigned int realCol,
                                unsigned int screenCol, unsigned long& text, unsigned long& background) const;
    virtual void OnGetItemOwnerDraw(unsigned int realItem, unsigned int screenItem, unsigned int realCol,
                                    unsigned int screenCol, NMHDR* notification, long* result) const;
    virtual int OnGetItemToolTip(unsigned int item, unsigned int col, CString& text) const;
    virtual CTovPtrSmart<CTovDocument> OnGetItemDocument(unsigned int item);

    // The order of two rows by a real column: negative, zero, positive. It must not change anything. The
    // functions below help.
    virtual int OnCompareItem(CTovReportViewItem const* other, unsigned int col) const;

    // For reports that sort very many rows, and for SortListAsync: what OnCompareItem compares in this
    // column. A sort then asks each row once, instead of comparing rows with one another, if all of them
    // answer the same kind and never eSortKeyNone. The key goes into `number` or `text`, which comes empty.
    virtual eTovSortKey OnGetItemSortKey(unsigned int col, double& number, CString& text) const;

    // Of the object alone: the view is not told and shows nothing of it, so call the view's functions for the
    // real index instead. `notify` calls the events above. A hidden or deleted row reads as not checked, not
    // selected and not disabled, a disabled one cannot be selected, and disabling deselects. `hide` is 0
    // or 1.
    int HideItem(int hide, int notify);
    int DeleteItem(int notify);
    void CheckItem(int check, int notify);
    void SelectItem(int select, int notify);
    void DisableItem(int disable, int notify);

    int IsHidden() const { return (m_nFlags & flagHidden) != 0; }
    int IsDeleted() const { return (m_nFlags & flagDeleted) != 0; }
    int IsVisible() const { return (m_nFlags & (flagHidden | flagDeleted)) == 0; }
    int IsChecked() const { return (m_nFlags & flagChecked) != 0 && IsVisible() != 0; }
    int IsSelected() const { return (m_nState & LVIS_SELECTED) != 0 && IsVisible() != 0; }
    int IsDisabled() const { return (m_nState & LVIS_CUT) != 0 && IsVisible() != 0; }

    CTovReportViewHost* Owner() const { return m_pOwner; }
    unsigned int GetItemState() const { return m_nState; }

    // For OnCompareItem; all as in compare.h.
    static int Compare(char const* a, char const* b);
    static int CompareIS(char const* a, char const* b);
    static int CompareNoCaseIS(char const* a, char const* b);
    static int Compare(int a, int b) { return (a > b) - (a < b); }
    static int Compare(unsigned int a, unsigned int b) { return (a > b) - (a < b); }
    static int Compare(long a, long b) { return (a > b) - (a < b); }
    static int Compare(unsigned long a, unsigned long b) { return (a > b) - (a < b); }
    static int Compare(double a, double b);
    static int Compare(CTovTime const& a, CTovTime const& b);
    static int CompareDatePart(CTovTime const& a, CTovTime const& b);
    static int CompareTimePart(CTovTime const& a, CTovTime const& b);
    static int Compare(CTime const& a, CTime const& b);
    static int CompareDatePart(CTime const& a, CTime const& b);
    static int CompareTimePart(CTime const& a, CTime const& b);
    static int Compare(COleDateTime const& a, COleDateTime const& b);
    static int CompareDatePart(COleDateTime const& a, COleDateTime const& b);
    static int CompareTimePart(COleDateTime const& a, COleDateTime const& b);

 private:
    friend class CTovReportTable;

    static constexpr unsigned int flagHidden = 0x1;
    static constexpr unsigned int flagDeleted = 0x2;
    static constexpr unsigned int flagChecked = 0x4;

    CTovReportViewHost* m_pOwner;
    unsigned int m_nState;
    unsigned int m_nFlags;
    std::vector<HOLD_TEXT> m_vecHoldText;
};

}  // namespace tov
