// A report, a table of rows and columns, as its host sees it: what can be asked of it, what it tells, and
// what a host overrides. The defaults are in its engine, report_model.h.
//
//   class CTovReportView : public <widget and view>, public CTovReportViewHost {
//       CTovReportTable m_table{*this};
//   };
//
// Columns come first (AddRealCols, which displays them), then rows: AddRealItem for each and one
// DisplayRealItems, or AppendRealItem one by one. The content is replaced by CleanupRealItems and a new
// filling, the columns after that by CleanupRealCols. Columns and rows belong to the view once they are
// added.
//
// `real` and `screen` tell the two kinds of indexes apart, see report_items.h; tovNoIndex is none. A `notify`
// of 0 leaves the view's events out, and so do the Suppress functions, all of which are on at first; events
// of the row objects come whatever they say. Answers are 1 for done and 0 for refused or nothing to do, or
// the number of rows; -1 where the report has no check boxes.
#pragma once

#include <tov310/export.h>
#include <tov310/list_input.h>
#include <tov310/messages.h>
#include <tov310/report_model.h>

#include <utility>
#include <vector>

namespace tov {

class TOV_CORE_API CTovReportViewHost : public ITovListSource, public ITovListActions {
 public:
    using Indexes = std::vector<unsigned int>;

    CTovReportViewHost() = default;
    CTovReportViewHost(CTovReportViewHost const&) = delete;
    CTovReportViewHost& operator=(CTovReportViewHost const&) = delete;
    ~CTovReportViewHost() override;

    // --- What the widget's side gives

    virtual CTovReportTable& Table() const = 0;
    virtual ITovListPort* ListPort() { return nullptr; }  // null without a window

    // The pointer that messages carry as wParam; that of the view.
    virtual void* ViewPointer() { return this; }

    // In property mode: the row that is shown instead of the list, and showing it anew.
    virtual unsigned int GetPropertyRealItem() const { return tovNoIndex; }
    virtual int IsPropertyView() const { return 0; }
    virtual void UpdateProperties() {}
    virtual void DisplayRealItemProperties(unsigned int /*real*/, Indexes* /*realCols*/) {}

    // What happened to a row, by the message that tells of it, whatever the gates say: for signals and for
    // screen readers.
    virtual void OnItemNotice(unsigned int /*message*/, unsigned int /*real*/) {}

    unsigned int GetItemCount() override { return Table().GetItemCount(); }
    int GetDispInfo(TOV_DISPINFO& info) override { return Table().GetDispInfo(info); }
    eTovListColors HasItemColors() override;
    // By OnGetRealItemColor.
    void GetItemColors(unsigned int screen, unsigned int screenCol, COLORREF& text,
                       COLORREF& background) override;

    // --- Set-up

    virtual int SerializeColWidthAndHidden() const { return Set().serializeColWidthAndHidden; }
    virtual void SerializeColWidthAndHidden(int on) { Set().serializeColWidthAndHidden = on; }
    virtual int SerializeColOrder() const { return Set().serializeColOrder; }
    virtual void SerializeColOrder(int on) { Set().serializeColOrder = on; }
    virtual int SerializeSortState() const { return Set().serializeSortState; }
    virtual void SerializeSortState(int on) { Set().serializeSortState = on; }
    virtual int ShowRealItemImage(unsigned int realCol) const { return Table().ShowRealItemImage(realCol); }
    virtual void ShowRealItemImage(unsigned int realCol, int show) {
        Table().ShowRealItemImage(realCol, show);
    }
    virtual int DisableRealItemsEnabled() const { return Set().disableRealItemsEnabled; }
    virtual void DisableRealItemsEnabled(int on) { Table().DisableRealItemsEnabled(on); }
    virtual long AutoRestore() const { return Set().autoRestore; }
    virtual void AutoRestore(long scroll) { Set().autoRestore = scroll; }
    virtual long HeaderMenu() const { return Set().headerMenu; }
    virtual void HeaderMenu(long entries, long withShift);
    virtual long HeaderMenuShift() const { return Set().headerMenuShift; }
    virtual long ItemMenu() const { return Set().itemMenu; }
    virtual void ItemMenu(long entries, long withShift);
    virtual long ItemMenuShift() const { return Set().itemMenuShift; }
    virtual long ItemBkMenu() const { return Set().itemBkMenu; }
    virtual void ItemBkMenu(long entries, long withShift);
    virtual long ItemBkMenuShift() const { return Set().itemBkMenuShift; }
    virtual int ShowSelectCheckedItems() const { return Set().showSelectCheckedItems; }
    virtual void ShowSelectCheckedItems(int show) { Set().showSelectCheckedItems = show; }
    virtual eColumnsDlgStyle ColumnsDlgStyle() const { return Set().columnsDlgStyle; }
    virtual void ColumnsDlgStyle(eColumnsDlgStyle style) { Set().columnsDlgStyle = style; }
    int ShowCheckboxes() const override { return Set().showCheckboxes; }
    virtual void ShowCheckboxes(int show) { Set().showCheckboxes = show; }
    virtual int SortAllowed() const { return Set().sortAllowed; }
    virtual void SortAllowed(int allowed) { Set().sortAllowed = allowed; }
    virtual int DeleteAllowed() const { return Set().deleteAllowed; }
    virtual void SetDeleteAllowed(int allowed) { Set().deleteAllowed = allowed; }
    virtual void CustomItemColors(int on, int perSubItem);
    virtual CString InifileSection() const { return Set().inifileSection; }
    virtual void InifileSection(char const* section) { Set().inifileSection = section ? section : ""; }
    virtual int GetExcludeRealColFromViewHide(unsigned int real) const {
        return Table().GetExcludeRealColFromViewHide(real);
    }
    virtual void SetExcludeRealColFromViewHide(unsigned int real, int exclude) {
        Table().SetExcludeRealColFromViewHide(real, exclude);
    }

    // Those of all reports that are made from then on.
    static int SerializeColWidthAndHiddenDefault() { return Default().serializeColWidthAndHidden; }
    static void SerializeColWidthAndHiddenDefault(int on) { Default().serializeColWidthAndHidden = on; }
    static int SerializeColOrderDefault() { return Default().serializeColOrder; }
    static void SerializeColOrderDefault(int on) { Default().serializeColOrder = on; }
    static int SerializeSortStateDefault() { return Default().serializeSortState; }
    static void SerializeSortStateDefault(int on) { Default().serializeSortState = on; }
    static long AutoRestoreDefault() { return Default().autoRestore; }
    static void AutoRestoreDefault(long scroll) { Default().autoRestore = scroll; }
    static long HeaderMenuDefault() { return Default().headerMenu; }
    static void HeaderMenuDefault(long entries, long withShift);
    static long ItemMenuDefault() { return Default().itemMenu; }
    static void ItemMenuDefault(long entries, long withShift);
    static long ItemBkMenuDefault() { return Default().itemBkMenu; }
    static void ItemBkMenuDefault(long entries, long withShift);
    static eColumnsDlgStyle ColumnsDlgStyleDefault() { return Default().columnsDlgStyle; }
    static void ColumnsDlgStyleDefault(eColumnsDlgStyle style) { Default().columnsDlgStyle = style; }

    // 1 keeps the report silent.
    virtual int GetSuppressAllNotifications() const { return Table().GetSuppressAllNotifications(); }
    virtual int GetSuppressDeletionNotifications() const { return Set().suppressDeletion; }
    virtual int GetSuppressSelectionNotifications() const { return Set().suppressSelection; }
    virtual int GetSuppressCheckNotifications() const { return Set().suppressCheck; }
    virtual int GetSuppressScrollNotifications() const { return Set().suppressScroll; }
    virtual int GetSuppressHideNotifications() const { return Set().suppressHide; }
    virtual int GetSuppressRefreshNotifications() const { return Set().suppressRefresh; }
    virtual int GetSuppressDisableNotifications() const { return Set().suppressDisable; }
    virtual void SetSuppressAllNotifications(int suppress) { Table().SetSuppressAllNotifications(suppress); }
    virtual void SetSuppressDeletionNotifications(int suppress) { Set().suppressDeletion = suppress; }
    virtual void SetSuppressSelectionNotifications(int suppress) { Set().suppressSelection = suppress; }
    virtual void SetSuppressCheckNotifications(int suppress) { Set().suppressCheck = suppress; }
    virtual void SetSuppressScrollNotifications(int suppress) { Set().suppressScroll = suppress; }
    virtual void SetSuppressHideNotifications(int suppress) { Set().suppressHide = suppress; }
    virtual void SetSuppressRefreshNotifications(int suppress) { Set().suppressRefresh = suppress; }
    virtual void SetSuppressDisableNotifications(int suppress) { Set().suppressDisable = suppress; }
    // All but that of disabling. One saving serves one restoring, which answers 0 without it.
    virtual void SaveAllSuppressNotifications() { Table().SaveAllSuppressNotifications(); }
    virtual int RestoreAllSuppressNotifications() { return Table().RestoreAllSuppressNotifications(); }

    // --- Indexes. GetItem, GetCol and GetRealItem trust theirs.

    unsigned int ScreenItemToReal(unsigned int screen) const { return Table().ScreenItemToReal(screen); }
    unsigned int RealItemToScreen(unsigned int real) const { return Table().RealItemToScreen(real); }
    void ScreenItemsToReal(Indexes const& screen, Indexes& real) const {
        Table().ScreenItemsToReal(screen, real);
    }
    void RealItemsToScreen(Indexes const& real, Indexes& screen) const {
        Table().RealItemsToScreen(real, screen);
    }
    virtual void CompleteItemFromScreen(Indexes const& screen, std::vector<COMPLETE_ITEM>& items) {
        Table().CompleteItemFromScreen(screen, items);
    }
    virtual void CompleteItemFromReal(Indexes const& real, std::vector<COMPLETE_ITEM>& items) {
        Table().CompleteItemFromReal(real, items);
    }
    unsigned int ScreenColToReal(unsigned int screen) const { return Table().ScreenColToReal(screen); }
    unsigned int RealColToScreen(unsigned int real, int evenIfInvisible) const {
        return Table().RealColToScreen(real, evenIfInvisible);
    }
    CTovReportViewItem* GetItem(unsigned int screen) const { return Table().GetItem(screen); }
    CTovReportViewItem* GetRealItem(unsigned int real) const { return Table().GetRealItem(real); }
    CTovReportViewCol* GetCol(unsigned int screen) const { return Table().GetCol(screen); }
    CTovReportViewCol* GetRealCol(unsigned int real) const { return Table().GetRealCol(real); }
    unsigned int GetColumns() const { return Table().GetColumns(); }
    unsigned int GetRealColumns() const { return Table().GetRealColumns(); }
    unsigned int GetRealItemCount() const { return Table().GetRealItemCount(); }
    int GetRealColAlignment(unsigned int real) const { return GetRealCol(real)->GetAlignment(); }
    virtual unsigned int GetFirstRealItemOnScreen() const;
    virtual unsigned int GetLastRealItemOnScreen() const;
    virtual CTovPtrSmart<CTovDocument> GetRealItemDocument(unsigned int real) {
        return GetRealItem(real)->OnGetItemDocument(real);
    }

    // --- Columns. Arrays hold a value for each column; those of ids end with 0, those of labels with an
    // empty one. See CTovReportTable::AddRealCols.

    // Ignored while rows are displayed; the column is the caller's then.
    virtual void AddRealCol(CTovReportViewCol* col) { Table().AddRealCol(col); }
    void AddRealCols(HINSTANCE instance, unsigned int menuId, Indexes const* alignments = nullptr,
                     std::vector<int> const* widths = nullptr, std::vector<int> const* hidden = nullptr);
    void AddRealCols(HINSTANCE instance, unsigned int menuId, unsigned int const* alignments,
                     unsigned int const* widths, int const* hidden);
    void AddRealCols(HINSTANCE instance, Indexes const& stringIds, Indexes const* alignments = nullptr,
                     std::vector<int> const* widths = nullptr, std::vector<int> const* hidden = nullptr);
    void AddRealCols(HINSTANCE instance, unsigned int const* const stringIds, unsigned int const* alignments,
                     unsigned int const* widths, int const* hidden);
    void AddRealCols(std::vector<CString> const& labels, Indexes const* alignments = nullptr,
                     std::vector<int> const* widths = nullptr, std::vector<int> const* hidden = nullptr);
    void AddRealCols(char const** const labels, unsigned int const* alignments, unsigned int const* widths,
                     int const* hidden);
    virtual void DisplayRealCols(int notify) { Table().DisplayRealCols(notify); }
    virtual void CleanupRealCols() { Table().CleanupRealCols(); }
    virtual void HoldRealColsDefaults() { Table().HoldRealColsDefaults(); }
    // The texts of a column are kept in the rows. Only while there are no rows.
    int SetRealColHoldItemText(unsigned int real, int hold) {
        return Table().SetRealColHoldItemText(real, hold);
    }
    // The leftmost column can be neither hidden nor deleted.
    virtual int HideRealCol(unsigned int real, int hide, int notify) {
        return Table().HideRealCol(real, hide, notify);
    }
    virtual int DeleteRealCol(unsigned int real, int notify) { return Table().DeleteRealCol(real, notify); }
    virtual unsigned int HideAllCols(int hide, int skipExcluded, int notify) {
        return Table().HideAllCols(hide, skipExcluded, notify);
    }
    virtual void ResetColumnSettings() { Table().ResetColumnSettings(); }
    // Pixels, or tovAutoWidth.
    int SetRealColWidth(unsigned int real, int width) { return Table().SetRealColWidth(real, width); }
    // What the texts, the images and the check boxes of a column need; 0 without rows.
    unsigned int GetColMaxWidth(unsigned int screen) const {
        return static_cast<unsigned int>(Table().GetColMaxWidth(screen));
    }
    unsigned int GetRealColMaxWidth(unsigned int real) const;  // -1 for a column that is not shown
    // As wide as they need to be, the header included if wanted. No columns: all of them.
    virtual void AutoArrangeColumns(Indexes screen, int includeHeader) {
        Table().AutoArrangeColumns(std::move(screen), includeHeader);
    }
    virtual void AutoArrangeColumns(int includeHeader) { Table().AutoArrangeColumns({}, includeHeader); }
    virtual void RefreshAllLabels();
    virtual void RefreshColLabel(unsigned int screen) { RefreshRealColLabel(ScreenColToReal(screen)); }
    virtual void RefreshRealColLabel(unsigned int real) { Table().PushColLabel(real); }
    virtual void RefreshAllAlignments();
    virtual void RefreshColAlignment(unsigned int screen) {
        RefreshRealColAlignment(ScreenColToReal(screen));
    }
    virtual void RefreshRealColAlignment(unsigned int real) { Table().PushColAlignment(real); }

    // --- Rows

    virtual void AddRealItem(CTovReportViewItem* item) { Table().AddRealItem(item); }
    virtual void AppendRealItem(CTovReportViewItem* item, int notify) {
        Table().AppendRealItem(item, notify);
    }
    virtual void DisplayRealItems(int notify) { Table().DisplayRealItems(notify); }
    virtual void CleanupRealItems(int notify) { Table().CleanupRealItems(notify); }
    // Pairs need not be right about the screen. They are sorted.
    virtual unsigned int HideRealItems(std::vector<COMPLETE_ITEM>& items, int hide, int notify) {
        return Table().HideRealItems(items, hide, notify);
    }
    virtual unsigned int DeleteRealItems(std::vector<COMPLETE_ITEM>& items, int notify) {
        return Table().DeleteRealItems(items, notify);
    }
    virtual unsigned int DeleteRealItems(Indexes& real, int notify);
    virtual unsigned int DeleteItems(Indexes& screen, int notify);
    virtual int HideRealItem(unsigned int real, int hide, int notify);
    virtual int DeleteRealItem(unsigned int real, int notify);
    virtual int DeleteItem(unsigned int screen, int notify);
    virtual unsigned int HideAllItems(int hide, int notify) { return Table().HideAllItems(hide, notify); }
    virtual unsigned int DeleteSelectedItems(int notify);
    virtual unsigned int DeleteCheckedItems(int notify);
    virtual unsigned int DeleteDisabledItems(int notify);
    virtual int HandleDelete() { return Table().HandleDelete(); }  // the Del key
    // Exchanges the objects of two ranges of real indexes, which must not touch or end with the last row.
    // Rows on the screen keep their places; where only one of two objects is visible, its row goes to the
    // place of its new index.
    virtual int SwapRealItems(unsigned int first, unsigned int second, unsigned int count, int notify) {
        return Table().SwapRealItems(first, second, count, notify);
    }
    virtual void RefreshAllItems(int notify) { Table().RefreshAllItems(notify); }
    virtual void RefreshItem(unsigned int screen, int notify) { Table().RefreshItem(screen, notify); }
    virtual void RefreshRealItem(unsigned int real, int notify) { Table().RefreshRealItem(real, notify); }
    virtual void RefreshColItems(unsigned int screenCol, int notify) {
        Table().RefreshColItems(screenCol, notify);
    }
    virtual void RefreshRealColItems(unsigned int realCol, int notify);

    // --- Sorting, by three keys at most; no keys: by the real index

    void GetSortState(std::vector<SORT_STATE_REALCOL>& keys) const { keys = Table().SortState(); }
    virtual void SortList(std::vector<SORT_STATE_SCREENCOL> const& keys);
    virtual void SortList(std::vector<SORT_STATE_REALCOL> const& keys) { Table().SortList(keys); }
    int SortListAsync(std::vector<SORT_STATE_REALCOL> const& keys) { return Table().SortListAsync(keys); }

    // --- Selection, check marks, disabled rows, focus

    virtual int GetRealItemSelected(unsigned int real) const;
    virtual int GetRealItemChecked(unsigned int real) const;
    virtual int GetRealItemDisabled(unsigned int real) const;
    virtual int GetRealItemFocused(unsigned int real) const;
    int GetItemSelected(unsigned int screen) const override {
        return GetRealItemSelected(ScreenItemToReal(screen));
    }
    int GetItemChecked(unsigned int screen) const override {
        return GetRealItemChecked(ScreenItemToReal(screen));
    }
    int GetItemDisabled(unsigned int screen) const override {
        return GetRealItemDisabled(ScreenItemToReal(screen));
    }
    virtual int GetItemFocused(unsigned int screen) const {
        return GetRealItemFocused(ScreenItemToReal(screen));
    }
    unsigned int GetFocusedItem() const override { return RealItemToScreen(Table().FocusedRealItem()); }
    // Where a selection by Shift begins; it stays with its row.
    unsigned int GetSelectionAnchor() const override { return RealItemToScreen(Table().AnchorRealItem()); }
    void SetSelectionAnchor(unsigned int screen) override { Table().SetAnchor(screen); }
    virtual unsigned int GetFocusedRealItem() const { return Table().FocusedRealItem(); }

    virtual int GetItemsSelected() const;
    virtual int GetItemsChecked() const;
    virtual int GetItemsDisabled() const;
    virtual int GetMultipleItemsSelected() const;
    virtual int GetMultipleItemsChecked() const;
    virtual int GetMultipleItemsDisabled() const;
    virtual unsigned int GetSelectedCount() const;
    virtual unsigned int GetCheckedCount() const;
    virtual unsigned int GetDisabledCount() const;
    virtual int GetSelectedItems(Indexes& screen) const;
    virtual int GetCheckedItems(Indexes& screen) const;
    virtual int GetDisabledItems(Indexes& screen) const;
    virtual int GetSelectedRealItems(Indexes& real) const;
    virtual int GetCheckedRealItems(Indexes& real) const;
    virtual int GetDisabledRealItems(Indexes& real) const;

    int SelectItem(unsigned int screen, int select, int notify, int evenIfDisabled) override {
        return Table().SelectItem(screen, select, notify, evenIfDisabled);
    }
    int CheckItem(unsigned int screen, int check, int notify) override {
        return Table().CheckItem(screen, check, notify);
    }
    int FocusItem(unsigned int screen, int ensureVisible) override {
        return Table().FocusItem(screen, ensureVisible);
    }
    virtual unsigned int SelectItems(Indexes const& screen, int select, int notify, int evenIfDisabled) {
        return Table().SelectItems(screen, select, notify, evenIfDisabled);
    }
    virtual unsigned int CheckItems(Indexes const& screen, int check, int notify) {
        return Table().CheckItems(screen, check, notify);
    }
    unsigned int SelectAllItems(int select, int notify, int evenIfDisabled) override {
        return Table().SelectAllItems(select, notify, evenIfDisabled);
    }
    virtual unsigned int CheckAllItems(int check, int notify) { return Table().CheckAllItems(check, notify); }
    virtual unsigned int DisableAllItems(int disable, int notify) {
        return Table().DisableAllItems(disable, notify);
    }
    virtual unsigned int SelectRealItems(Indexes const& real, int select, int notify, int evenIfDisabled) {
        return Table().SelectRealItems(real, select, notify, evenIfDisabled);
    }
    virtual unsigned int CheckRealItems(Indexes const& real, int check, int notify) {
        return Table().CheckRealItems(real, check, notify);
    }
    virtual unsigned int DisableRealItems(Indexes const& real, int disable, int notify) {
        return Table().DisableRealItems(real, disable, notify);
    }
    // Answer 1 too for a row that is in the wanted state already.
    virtual int SelectRealItem(unsigned int real, int select, int notify, int evenIfDisabled) {
        return Table().SelectRealItem(real, select, notify, evenIfDisabled);
    }
    virtual int CheckRealItem(unsigned int real, int check, int notify) {
        return Table().CheckRealItem(real, check, notify);
    }
    virtual int DisableRealItem(unsigned int real, int disable, int notify) {
        return Table().DisableRealItem(real, disable, notify);
    }
    virtual int FocusRealItem(unsigned int real, int ensureVisible);
    // Deselect all others.
    int SetItemSelection(unsigned int screen, int notify) override;
    unsigned int SetItemSelection(unsigned int first, unsigned int last,
                                  int notify) override;  // in either order
    virtual unsigned int SetItemSelection(Indexes const& screen, int notify);
    virtual int SetRealItemSelection(unsigned int real, int notify);
    virtual unsigned int SetRealItemSelection(Indexes const& real, int notify);
    virtual unsigned int InvertSelection(int notify) { return Table().InvertSelection(notify); }
    virtual unsigned int SelectCheckedItems(int notify) { return Table().SelectCheckedItems(notify); }
    virtual unsigned int InvertChecked(int notify) { return Table().InvertChecked(notify); }
    unsigned int CheckSelectedItems(int check, int notify) override;
    virtual int EnsureItemVisible(unsigned int screen, unsigned int screenCol);
    virtual int EnsureRealItemVisible(unsigned int real, unsigned int realCol);
    virtual int EnsureRealColVisible(unsigned int real);

    // The position in pixels, to come back to after a change. Restoring answers 1.
    virtual void HoldVScroll() { Table().HoldVScroll(); }
    virtual int RestoreVScroll() { return Table().RestoreVScroll(); }
    virtual void HoldHScroll() { Table().HoldHScroll(); }
    virtual int RestoreHScroll() { return Table().RestoreHScroll(); }

    // The window gets the messages of the bits (eNotifyItem) by TovSendMessage, with the view as wParam.
    virtual void AddItemNotification(HWND window, long mask) { Table().AddItemNotification(window, mask); }
    virtual void RemoveItemNotification(HWND window, long mask) {
        Table().RemoveItemNotification(window, mask);
    }

    // --- Events. Those that answer are asked before, and keep things as they are with 0; the others are told
    // after. Begin and End stand around an operation with the numbers of rows that it will change and that it
    // has changed.

    virtual void OnSelectItemsBegin(unsigned int /*selecting*/, unsigned int /*deselecting*/) {}
    virtual void OnSelectItemsEnd(unsigned int /*selected*/, unsigned int /*deselected*/) {}
    virtual void OnDeleteItemsBegin(unsigned int /*count*/) {}
    virtual int OnDeleteItem(unsigned int /*screen*/) { return 1; }
    virtual void OnDeleteItemsEnd(unsigned int /*count*/) {}
    virtual void OnCheckItemsBegin(unsigned int /*checking*/, unsigned int /*unchecking*/) {}
    virtual void OnCheckItemsEnd(unsigned int /*checked*/, unsigned int /*unchecked*/) {}
    virtual void OnScrolledHorz() {}
    virtual void OnScrolledVert() {}

    virtual int OnInsertRealCol(unsigned int /*real*/, unsigned int /*screen*/) { return 1; }
    virtual int OnHideRealCol(unsigned int /*real*/, unsigned int /*screen*/, int /*hide*/) { return 1; }
    virtual int OnDeleteRealCol(unsigned int /*real*/, unsigned int /*screen*/) { return 1; }
    virtual void OnDisplayItemsBegin(unsigned int count);  // of real rows
    virtual void OnDisplayItemsEnd(unsigned int count);    // of rows on the screen
    virtual void OnAppendRealItem(unsigned int real, unsigned int screen);
    virtual void OnCleanupRealItems();
    virtual void OnRefreshRealItem(unsigned int real);
    virtual void OnSelectRealItem(unsigned int /*real*/, unsigned int /*screen*/, int /*select*/) {}
    virtual void OnSelectRealItemInternal(unsigned int real, unsigned int screen, int select,
                                          CTovReportViewItem* item, int notify) {
        Table().OnSelectRealItemInternal(real, screen, select, item, notify);
    }
    virtual int OnHideRealItem(unsigned int real, unsigned int screen, int hide);
    virtual int OnDeleteRealItem(unsigned int /*real*/, unsigned int /*screen*/) { return 1; }
    virtual int OnCheckingRealItem(unsigned int /*real*/, unsigned int /*screen*/, int /*check*/) {
        return 1;
    }
    virtual void OnCheckRealItem(unsigned int /*real*/, unsigned int /*screen*/, int /*check*/) {}
    virtual int OnCheckRealItemInternal(unsigned int real, unsigned int screen, int check,
                                        CTovReportViewItem* item, int notify) {
        return Table().OnCheckRealItemInternal(real, screen, check, item, notify);
    }
    virtual void OnDisableItemsBegin(unsigned int /*disabling*/, unsigned int /*enabling*/) {}
    virtual void OnDisableRealItem(unsigned int /*real*/, unsigned int /*screen*/, int /*disable*/) {}
    virtual void OnDisableRealItemInternal(unsigned int real, unsigned int screen, int disable,
                                           CTovReportViewItem* item, int notify) {
        Table().OnDisableRealItemInternal(real, screen, disable, item, notify);
    }
    virtual void OnDisableItemsEnd(unsigned int /*disabled*/, unsigned int /*enabled*/) {}
    virtual void OnGetRealItemColor(unsigned int real, unsigned int screen, unsigned int realCol,
                                    unsigned int screenCol, unsigned long& text,
                                    unsigned long& background) const;
    virtual void OnGetRealItemOwnerDraw(unsigned int real, unsigned int screen, unsigned int realCol,
                                        unsigned int screenCol, NMHDR* notification, long* result) const;
    virtual int OnGetRealItemToolTip(unsigned int real, unsigned int screen, unsigned int realCol,
                                     unsigned int screenCol, CString& text) const;
    virtual void OnHeaderClick(unsigned int real, unsigned int /*screen*/) { Table().OnHeaderClick(real); }
    virtual void OnSortOrderChanged();
    virtual int HideRealColInternal(unsigned int real, int hide, int notify) {
        return Table().HideRealColInternal(real, hide, notify);
    }
    virtual void SendNotificationToNotifyItems(eNotifyItem bit, unsigned int message, LPARAM lParam) {
        Table().SendNotificationToNotifyItems(bit, message, lParam);
    }

    // Where the state of columns and of the sort is kept; by default the profile.
    virtual void ReadReportViewIntVector(char const* section, char const* key,
                                         std::vector<int>& values) const;
    virtual int WriteReportViewIntVector(char const* section, char const* key,
                                         std::vector<int> const& values) const;

 private:
    static CTovReportSettings& Default() { return CTovReportSettings::Defaults(); }
    CTovReportSettings& Set() const { return Table().settings; }
};

}  // namespace tov
