// The rows and columns of a report without a toolkit: real and screen indexes, showing and hiding, sorting,
// selection, focus, check marks, and who is told of it in which order.
//
// A report is a widget with one CTovReportTable as a member, which works through the widget's
// CTovReportViewHost (report_view_host.h). What a host of the library calls and overrides stands there; the
// functions here are the defaults behind it and carry the same names.
//
// Everything belongs to the user-interface thread. Whoever is told of something may change the view at once,
// as long as the view itself stays. What is going on then goes on with the rows that it began with, as far as
// they are there and in need of it, wherever they stand by then. Objects that are cleaned up meanwhile live
// until the outermost operation is over.
#pragma once

#include <tov310/export.h>
#include <tov310/geometry.h>
#include <tov310/list_port.h>
#include <tov310/report_items.h>
#include <tov310/types.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

namespace tov {

class CTovReportAsyncSort;
class CTovReportRows;
class CTovReportViewHost;

// How the dialog of columns looks.
enum eColumnsDlgStyle { eColumnsDlgStyleSimple = 0, eColumnsDlgStyleStandard = 1 };

// Who wants to be told of what happens to rows; bits of a mask.
enum eNotifyItem : long {
    eNotifyItemDisplay = 0x001,
    eNotifyItemCleanup = 0x002,
    eNotifyItemRefresh = 0x004,
    eNotifyItemAppend = 0x008,
    eNotifyItemHide = 0x010,
    eNotifyItemDelete = 0x020,
    eNotifyItemSelect = 0x040,
    eNotifyItemCheck = 0x080,
    eNotifyItemDisable = 0x100,
    eNotifyItemSortOrder = 0x200,
    eNotifyItemAll = 0x3FF,
};

struct NOTIFY_ITEM {
    HWND hWnd;
    long nMask = 0;
};

// What a host sets up. A new one has the defaults of its class.
struct TOV_CORE_API CTovReportSettings {
    int serializeColWidthAndHidden = 1;
    int serializeColOrder = 1;
    int serializeSortState = 1;
    long autoRestore = 3;  // scroll positions that a new filling comes back to: 1 vertical, 2 horizontal
    long headerMenu = 3;   // standard entries of the context menus, and those with the Shift key
    long headerMenuShift = 0;
    long itemMenu = 0x7F;
    long itemMenuShift = 0;
    long itemBkMenu = 0x3F;
    long itemBkMenuShift = 0;
    eColumnsDlgStyle columnsDlgStyle = eColumnsDlgStyleStandard;

    int showSelectCheckedItems = 0;
    int disableRealItemsEnabled = 0;
    int showCheckboxes = 0;
    int sortAllowed = 1;
    int deleteAllowed = 0;
    int customItemColors = 0;
    int customColorsPerSubItem = 0;
    int hasItemImages = 0;
    unsigned int defaultItemImage = 0;
    CString inifileSection;

    // 1 keeps a report silent about that. All of them do at first, while it is filled.
    int suppressDeletion = 1;
    int suppressSelection = 1;
    int suppressCheck = 1;
    int suppressScroll = 1;
    int suppressHide = 1;
    int suppressRefresh = 1;
    int suppressDisable = 1;

    // Of all reports that are made from then on.
    static CTovReportSettings& Defaults();
};

class TOV_CORE_API CTovReportTable {
 public:
    // The host is borrowed and finds the table by its Table().
    explicit CTovReportTable(CTovReportViewHost& host);
    CTovReportTable(CTovReportTable const&) = delete;
    CTovReportTable& operator=(CTovReportTable const&) = delete;
    ~CTovReportTable();

    CTovReportSettings settings;

    // Cells outside the visible area have no text, unless one of these is set.
    int m_bArrangingColumns = 0;
    int m_bPrinting = 0;
    int m_bCachingClipboard = 0;
    int m_bTrackingHScroll = 0;
    int m_bTrackingVScroll = 0;
    int m_bSavingAs = 0;

    // The visible area, kept by the control's side, which also says when the rows have moved sideways.
    CRect m_rcList;
    void InvalidateScrollPosHorz() { m_bScrollPosHorzValid = 0; }

    // --- Indexes

    unsigned int GetItemCount() const;
    unsigned int GetRealItemCount() const { return static_cast<unsigned int>(m_vecRealItems.size()); }
    unsigned int GetRealColumns() const { return static_cast<unsigned int>(m_vecRealCols.size()); }
    unsigned int GetColumns() const { return static_cast<unsigned int>(m_vecScreenCols.size()); }
    unsigned int ScreenItemToReal(unsigned int screen) const;
    unsigned int RealItemToScreen(unsigned int real) const;
    void ScreenItemsToReal(std::vector<unsigned int> const& screen, std::vector<unsigned int>& real) const;
    void RealItemsToScreen(std::vector<unsigned int> const& real, std::vector<unsigned int>& screen) const;
    void CompleteItemFromScreen(std::vector<unsigned int> const& screen,
                                std::vector<COMPLETE_ITEM>& items) const;
    void CompleteItemFromReal(std::vector<unsigned int> const& real, std::vector<COMPLETE_ITEM>& items) const;
    unsigned int ScreenColToReal(unsigned int screen) const;
    unsigned int RealColToScreen(unsigned int real, int evenIfInvisible) const;
    CTovReportViewItem* GetRealItem(unsigned int real) const { return m_vecRealItems[real].get(); }
    CTovReportViewItem* GetItem(unsigned int screen) const { return GetRealItem(ScreenItemToReal(screen)); }
    CTovReportViewCol* GetRealCol(unsigned int real) const;
    CTovReportViewCol* GetCol(unsigned int screen) const { return GetRealCol(ScreenColToReal(screen)); }
    bool IsRealItemVisible(unsigned int real) const;  // false for one that is none

    // --- Columns

    void AddRealCol(CTovReportViewCol* col);
    void DisplayRealCols(int notify);
    void CleanupRealCols();
    void HoldRealColsDefaults();
    void HoldAllColInfos();
    int SetRealColHoldItemText(unsigned int real, int hold);
    int HideRealCol(unsigned int real, int hide, int notify);
    int HideRealColInternal(unsigned int real, int hide, int notify);
    int DeleteRealCol(unsigned int real, int notify);
    unsigned int HideAllCols(int hide, int skipExcluded, int notify);
    void ResetColumnSettings();
    void PushColLabel(unsigned int real);
    void PushColAlignment(unsigned int real);
    int SetRealColWidth(unsigned int real, int width);
    int GetColMaxWidth(unsigned int screenCol);
    void AutoArrangeColumns(std::vector<unsigned int> screenCols, int includeHeader);
    int ShowRealItemImage(unsigned int real) const;
    void ShowRealItemImage(unsigned int real, int show);
    int GetExcludeRealColFromViewHide(unsigned int real) const;
    void SetExcludeRealColFromViewHide(unsigned int real, int exclude);

    // Builds columns from labels and displays them. The lists reach as far as they are long; what they do not
    // reach is left-aligned, 50 pixels wide and shown, and so is column 0 whatever is said of hiding it.
    // Nothing happens unless there are no columns and no rows yet.
    struct ColumnLists {
        std::vector<unsigned int> const* alignments = nullptr;
        std::vector<int> const* widths = nullptr;
        std::vector<int> const* hidden = nullptr;
    };
    void AddRealCols(std::vector<CString> const& labels, ColumnLists const& lists);
    void AddRealCols(HINSTANCE instance, std::vector<unsigned int> const& stringIds,
                     ColumnLists const& lists);
    // The entries of a menu are the labels. If the first one is a popup, which with `nested` holds another,
    // each column's context menus are in the menu too.
    void AddRealCols(HINSTANCE instance, unsigned int menuId, bool nested, ColumnLists const& lists);

    // --- What is remembered between runs

    void StoreColWidthAndHidden() const;
    void StoreColOrder();
    void StoreSortState() const;
    int LoadColWidthAndHidden(std::vector<int>& values) const;
    int LoadColOrder(std::vector<int>& values) const;
    int LoadSortState(std::vector<SORT_STATE_REALCOL>& keys) const;

    // --- Rows

    void ReserveRealItems(std::size_t count);
    void AddRealItem(CTovReportViewItem* item);
    void AppendRealItem(CTovReportViewItem* item, int notify);
    void DisplayRealItems(int notify);
    void CleanupRealItems(int notify);
    unsigned int HideRealItems(std::vector<COMPLETE_ITEM>& items, int hide, int notify);
    unsigned int HideAllItems(int hide, int notify);
    unsigned int DeleteRealItems(std::vector<COMPLETE_ITEM>& items, int notify);
    int HandleDelete();
    int SwapRealItems(unsigned int first, unsigned int second, unsigned int count, int notify);

    // Where a row belongs on the screen. The place is that of a walk from the top; in rows that stand in the
    // order of the sort it is found in a few steps. A host whose rows change tells so by refreshing them.
    unsigned int GetInsertPos(unsigned int real) const;

    // --- Sorting

    std::vector<SORT_STATE_REALCOL> const& SortState() const { return m_vecSortState; }
    std::vector<SORT_STATE_SCREENCOL> const& SortStateScreen() const { return m_vecSortStateScreen; }
    void SortList(std::vector<SORT_STATE_REALCOL> const& keys);
    // The same on a thread of its own, for reports whose rows tell their keys (OnGetItemSortKey): 1 when it
    // is under way, 0 where the rows do not tell or there are too many keys. The rows stay as they are until
    // TovDispatchPosts brings the end, and then all change at once; a row that came, went or was refreshed
    // meanwhile has it done again. Any other sort, a clean-up and CancelSort end it. The progress is in
    // percent; -1: nothing is under way.
    int SortListAsync(std::vector<SORT_STATE_REALCOL> const& keys);
    int GetSortProgress() const;
    void CancelSort();
    void OnHeaderClick(unsigned int real);
    // What OnHeaderEndDrag and OnHeaderEndTrack of a header bring about.
    void OnColumnOrderChanged();
    void OnColumnWidthChanged();
    void SetUnsortedState();
    void RefreshHeaderSortedState();
    void HideHeaderSortedState();

    // --- Selection, check marks, disabled rows

    int SelectItem(unsigned int screen, int select, int notify, int evenIfDisabled);
    int CheckItem(unsigned int screen, int check, int notify);
    unsigned int SelectItems(std::vector<unsigned int> const& screen, int select, int notify,
                             int evenIfDisabled);
    unsigned int CheckItems(std::vector<unsigned int> const& screen, int check, int notify);
    unsigned int SelectAllItems(int select, int notify, int evenIfDisabled);
    unsigned int CheckAllItems(int check, int notify);
    unsigned int DisableAllItems(int disable, int notify);
    unsigned int SelectRealItems(std::vector<unsigned int> const& real, int select, int notify,
                                 int evenIfDisabled);
    unsigned int CheckRealItems(std::vector<unsigned int> const& real, int check, int notify);
    unsigned int DisableRealItems(std::vector<unsigned int> const& real, int disable, int notify);
    unsigned int InvertSelection(int notify);
    unsigned int SelectCheckedItems(int notify);
    unsigned int InvertChecked(int notify);
    int SelectRealItem(unsigned int real, int select, int notify, int evenIfDisabled);
    int CheckRealItem(unsigned int real, int check, int notify);
    int DisableRealItem(unsigned int real, int disable, int notify);
    void OnSelectRealItemInternal(unsigned int real, unsigned int screen, int select,
                                  CTovReportViewItem* item, int notify);
    int OnCheckRealItemInternal(unsigned int real, unsigned int screen, int check, CTovReportViewItem* item,
                                int notify);
    void OnDisableRealItemInternal(unsigned int real, unsigned int screen, int disable,
                                   CTovReportViewItem* item, int notify);
    void DisableRealItemsEnabled(int enabled);

    using Predicate = int (CTovReportViewItem::*)() const;
    unsigned int Count(Predicate is, unsigned int atMost = tovNoIndex) const;  // of the rows on the screen
    int List(Predicate is, std::vector<unsigned int>& screen) const;
    int ListReal(Predicate is, std::vector<unsigned int>& real) const;

    // --- Focus. It and the anchor stay with their rows; a row that goes hands the focus to the one that
    // takes its place, or to the last.

    unsigned int FocusedRealItem() const { return m_nFocusedRealItem; }
    int FocusItem(unsigned int screen, int ensureVisible);
    unsigned int AnchorRealItem() const { return m_nAnchorRealItem; }
    void SetAnchor(unsigned int screen);

    // --- Cells and refreshing

    int GetDispInfo(TOV_DISPINFO& info);
    int InternalGetItemText(unsigned int realCol, unsigned int real, CTovReportViewItem* item, CString& text);
    void RefreshAllItems(int notify);
    void RefreshItem(unsigned int screen, int notify);
    void RefreshRealItem(unsigned int real, int notify);
    void RefreshColItems(unsigned int screenCol, int notify);

    // --- Scrolling

    void HoldVScroll();
    int RestoreVScroll();
    void HoldHScroll();
    int RestoreHScroll();

    // --- Who is told

    void SetSuppressAllNotifications(int suppress);
    int GetSuppressAllNotifications() const;
    void SaveAllSuppressNotifications();
    int RestoreAllSuppressNotifications();
    void AddItemNotification(HWND window, long mask);
    void RemoveItemNotification(HWND window, long mask);
    void SendNotificationToNotifyItems(eNotifyItem bit, unsigned int message, LPARAM lParam);

    // --- Commands by the low 16 bits of the message's number, and 2024 and 3024 and up, which show and hide
    // columns. 1: it was one of the rows and columns.
    int DoCommand(unsigned int id);

    unsigned int m_nContextRealCol = tovNoIndex;  // where the last context menu was opened
    unsigned int m_nContextRealItem = tovNoIndex;

    // While it lives an operation is going on.
    class Operation {
     public:
        explicit Operation(CTovReportTable& table) : m_table(table) { ++table.m_depth; }
        Operation(Operation const&) = delete;
        Operation& operator=(Operation const&) = delete;
        ~Operation() {
            if (--m_table.m_depth == 0) m_table.Finish();
        }

     private:
        CTovReportTable& m_table;
    };

 private:
    friend class CTovReportAsyncSort;
    static constexpr std::size_t mostSortKeys = 3;
    struct StateKind;
    static StateKind const selected;
    static StateKind const checked;
    static StateKind const disabled;

    template <class SetUp>
    void AddRealCols(std::vector<CString> const& labels, ColumnLists const& lists, SetUp const& setUp);
    ITovListPort* Port() const;
    void Finish();
    void TellRowsChanged();
    void MarkRow(unsigned int screen);
    void MarkAllRows() { m_rowsChanged = true; }
    unsigned int Locate(unsigned int real, unsigned int near) const;
    unsigned int RealOf(CTovReportViewItem const* item, unsigned int real) const;
    void Complete(std::vector<COMPLETE_ITEM>& items) const;
    std::vector<unsigned int> AllScreenItems() const;
    void ShowRows(std::vector<unsigned int> coming);
    void MoveRows(std::vector<unsigned int> const& newIndex);
    void InsertRow(unsigned int real);
    void RemoveRow(unsigned int screen);
    bool IsColumnInSight(CTovReportViewCol const& col);
    template <class Invalidate>
    void RefreshRows(int notify, bool holds, Invalidate const& invalidate);
    void InvalidateHeldTexts(CTovReportViewItem& item) const;
    void InvalidateHeldColumn(CTovReportViewCol const& col);
    unsigned int PlaceInHeader(unsigned int real) const;
    bool IsInHeader(unsigned int real) const;
    void UpdateSortStateScreen();
    void ApplyStoredCols();
    void InsertIntoHeader(unsigned int real);
    void RemoveFromHeader(unsigned int real);
    void OnHeaderColumnsChanged();
    void StoreColumns(bool sortToo);
    int SortByContext(int ascending);
    bool StandsBefore(unsigned int a, unsigned int b) const;
    bool RowsStandInOrder() const;
    void ApplySort(std::vector<SORT_STATE_REALCOL> const& keys, std::vector<unsigned int> const& rows);
    void OnAsyncSortOver();
    void TouchRow(unsigned int real);
    void TouchAllRows();
    void SetInOrder(bool inOrder) const;
    int ChangeOne(StateKind const& kind, unsigned int screen, int state, int notify);
    template <class Wanted>
    unsigned int ChangeAll(StateKind const& kind, int notify, Wanted const& wanted);
    template <class Wanted>
    unsigned int ChangeRows(StateKind const& kind, std::vector<unsigned int> const& reals,
                            std::vector<unsigned int> const* screens, int notify, Wanted const& wanted);
    unsigned int ChangeListed(StateKind const& kind, std::vector<unsigned int> reals,
                              std::vector<unsigned int> screens, int state, int notify, bool skipsDisabled);

    CTovReportViewHost& m_host;
    std::vector<std::unique_ptr<CTovReportViewCol>> m_vecRealCols;
    std::vector<unsigned int> m_vecScreenCols;
    std::vector<std::unique_ptr<CTovReportViewItem>> m_vecRealItems;
    std::unique_ptr<CTovReportRows> m_vecScreenItems;
    std::vector<SORT_STATE_REALCOL> m_vecSortState;
    std::vector<SORT_STATE_SCREENCOL> m_vecSortStateScreen;
    std::vector<NOTIFY_ITEM> m_vecNotifyItems;
    std::map<unsigned int, int> m_mapShowRealItemImage;
    std::map<unsigned int, int> m_mapExcludeRealColFromViewHide;
    std::vector<int> m_savedSuppress;
    unsigned int m_nFocusedRealItem = tovNoIndex;
    unsigned int m_nAnchorRealItem = tovNoIndex;
    int m_nHoldHScroll = 0;
    int m_nHoldVScroll = 0;
    int m_nScrollPosHorz = 0;
    int m_bScrollPosHorzValid = 0;

    // Rows that may stand out of the order of the sort since it was known to hold.
    mutable std::vector<unsigned int> m_touched;
    mutable bool m_touchedAll = false;
    mutable bool m_inOrder = true;  // but for those

    // Where each real row stands on the screen, while m_indexed is the state of the screen that it tells of.
    mutable std::vector<unsigned int> m_screenOfReal;
    mutable std::uint64_t m_indexed = 0;
    mutable std::uint64_t m_walked = 0;
    mutable unsigned int m_walks = 0;

    std::unique_ptr<CTovReportAsyncSort> m_async;
    std::uint64_t m_asyncStamp = 0;  // the screen, and the refreshed rows, as they were when it began
    std::uint64_t m_asyncEdits = 0;
    std::uint64_t m_edits = 0;

    unsigned int m_depth = 0;  // operations that are going on
    unsigned int m_sending = 0;
    unsigned int m_generation = 0;  // of rows, from one clean-up to the next
    unsigned int m_colGeneration = 0;
    bool m_rowsChanged = false;  // not told the control yet
    unsigned int m_firstMarked = tovNoIndex;
    unsigned int m_lastMarked = 0;
    std::vector<std::unique_ptr<CTovReportViewItem>> m_goneItems;  // alive until the operations are over
    std::vector<std::unique_ptr<CTovReportViewCol>> m_goneCols;
};

}  // namespace tov
