#include <tov310/report_view_host.h>

#include <tov310/menu.h>
#include <tov310/profile.h>

#include <algorithm>
#include <iterator>
#include <numeric>

namespace tov {

ITovHeaderPort::~ITovHeaderPort() = default;
ITovListPort::~ITovListPort() = default;

CTovReportViewHost::~CTovReportViewHost() = default;

namespace {

using Lists = CTovReportTable::ColumnLists;

// Arrays that hold a value for each column, as lists.
struct ColumnArrays {
    ColumnArrays(std::size_t count, unsigned int const* itsAlignments, unsigned int const* itsWidths,
                 int const* itsHidden) {
        if (itsAlignments != nullptr) alignments.assign(itsAlignments, itsAlignments + count);
        if (itsWidths != nullptr)
            std::transform(itsWidths, itsWidths + count, std::back_inserter(widths),
                           [](unsigned int width) { return static_cast<int>(width); });
        if (itsHidden != nullptr) hidden.assign(itsHidden, itsHidden + count);
    }

    operator Lists() const { return {&alignments, &widths, &hidden}; }

    std::vector<unsigned int> alignments;
    std::vector<int> widths;
    std::vector<int> hidden;
};

using Item = CTovReportViewItem;

}  // namespace

void CTovReportViewHost::HeaderMenu(long entries, long withShift) {
    Set().headerMenu = entries;
    Set().headerMenuShift = withShift;
}

void CTovReportViewHost::ItemMenu(long entries, long withShift) {
    Set().itemMenu = entries;
    Set().itemMenuShift = withShift;
}

void CTovReportViewHost::ItemBkMenu(long entries, long withShift) {
    Set().itemBkMenu = entries;
    Set().itemBkMenuShift = withShift;
}

void CTovReportViewHost::HeaderMenuDefault(long entries, long withShift) {
    Default().headerMenu = entries;
    Default().headerMenuShift = withShift;
}

void CTovReportViewHost::ItemMenuDefault(long entries, long withShift) {
    Default().itemMenu = entries;
    Default().itemMenuShift = withShift;
}

void CTovReportViewHost::ItemBkMenuDefault(long entries, long withShift) {
    Default().itemBkMenu = entries;
    Default().itemBkMenuShift = withShift;
}

void CTovReportViewHost::CustomItemColors(int on, int perSubItem) {
    Set().customItemColors = on;
    Set().customColorsPerSubItem = perSubItem;
}

// --- Columns

void CTovReportViewHost::AddRealCols(HINSTANCE instance, unsigned int menuId, Indexes const* alignments,
                                     std::vector<int> const* widths, std::vector<int> const* hidden) {
    Table().AddRealCols(instance, menuId, false, {alignments, widths, hidden});
}

void CTovReportViewHost::AddRealCols(HINSTANCE instance, unsigned int menuId, unsigned int const* alignments,
                                     unsigned int const* widths, int const* hidden) {
    CMenu menu;
    menu.LoadMenu(instance, menuId);
    Table().AddRealCols(instance, menuId, true,
                        ColumnArrays(menu.GetMenuItemCount(), alignments, widths, hidden));
}

void CTovReportViewHost::AddRealCols(HINSTANCE instance, Indexes const& stringIds, Indexes const* alignments,
                                     std::vector<int> const* widths, std::vector<int> const* hidden) {
    Table().AddRealCols(instance, stringIds, {alignments, widths, hidden});
}

void CTovReportViewHost::AddRealCols(HINSTANCE instance, unsigned int const* const stringIds,
                                     unsigned int const* alignments, unsigned int const* widths,
                                     int const* hidden) {
    Indexes ids;
    for (unsigned int const* id = stringIds; id != nullptr && *id != 0; ++id)
        ids.push_back(*id);
    Table().AddRealCols(instance, ids, ColumnArrays(ids.size(), alignments, widths, hidden));
}

void CTovReportViewHost::AddRealCols(std::vector<CString> const& labels, Indexes const* alignments,
                                     std::vector<int> const* widths, std::vector<int> const* hidden) {
    Table().AddRealCols(labels, {alignments, widths, hidden});
}

void CTovReportViewHost::AddRealCols(char const** const labels, unsigned int const* alignments,
                                     unsigned int const* widths, int const* hidden) {
    std::vector<CString> texts;
    for (char const** label = labels; label != nullptr && *label != nullptr && **label != '\0'; ++label)
        texts.emplace_back(*label);
    Table().AddRealCols(texts, ColumnArrays(texts.size(), alignments, widths, hidden));
}

unsigned int CTovReportViewHost::GetRealColMaxWidth(unsigned int real) const {
    unsigned int const screen = RealColToScreen(real, 0);
    return screen != tovNoIndex ? GetColMaxWidth(screen) : tovNoIndex;
}

void CTovReportViewHost::RefreshAllLabels() {
    for (unsigned int real = 0; real < GetRealColumns(); ++real)
        RefreshRealColLabel(real);
}

void CTovReportViewHost::RefreshAllAlignments() {
    for (unsigned int real = 0; real < GetRealColumns(); ++real)
        RefreshRealColAlignment(real);
}

// --- Rows

unsigned int CTovReportViewHost::GetFirstRealItemOnScreen() const {
    return ScreenItemToReal(0);
}

unsigned int CTovReportViewHost::GetLastRealItemOnScreen() const {
    return ScreenItemToReal(Table().GetItemCount() - 1);
}

unsigned int CTovReportViewHost::DeleteRealItems(Indexes& real, int notify) {
    std::vector<COMPLETE_ITEM> items;
    CompleteItemFromReal(real, items);
    return DeleteRealItems(items, notify);
}

unsigned int CTovReportViewHost::DeleteItems(Indexes& screen, int notify) {
    std::vector<COMPLETE_ITEM> items;
    CompleteItemFromScreen(screen, items);
    return DeleteRealItems(items, notify);
}

int CTovReportViewHost::HideRealItem(unsigned int real, int hide, int notify) {
    std::vector<COMPLETE_ITEM> items{{real, RealItemToScreen(real)}};
    return HideRealItems(items, hide, notify) == 1;
}

int CTovReportViewHost::DeleteRealItem(unsigned int real, int notify) {
    std::vector<COMPLETE_ITEM> items{{real, RealItemToScreen(real)}};
    return DeleteRealItems(items, notify) == 1;
}

int CTovReportViewHost::DeleteItem(unsigned int screen, int notify) {
    Indexes rows{screen};
    return DeleteItems(rows, notify) == 1;
}

unsigned int CTovReportViewHost::DeleteSelectedItems(int notify) {
    Indexes screen;
    GetSelectedItems(screen);
    return DeleteItems(screen, notify);
}

unsigned int CTovReportViewHost::DeleteCheckedItems(int notify) {
    if (ShowCheckboxes() == 0) return tovNoIndex;
    Indexes screen;
    GetCheckedItems(screen);
    return DeleteItems(screen, notify);
}

unsigned int CTovReportViewHost::DeleteDisabledItems(int notify) {
    Indexes screen;
    GetDisabledItems(screen);
    return DeleteItems(screen, notify);
}

void CTovReportViewHost::RefreshRealColItems(unsigned int realCol, int notify) {
    unsigned int const screen = RealColToScreen(realCol, 0);
    if (screen != tovNoIndex) RefreshColItems(screen, notify);
}

void CTovReportViewHost::SortList(std::vector<SORT_STATE_SCREENCOL> const& keys) {
    std::vector<SORT_STATE_REALCOL> real;
    for (SORT_STATE_SCREENCOL const& key : keys)
        real.push_back({ScreenColToReal(key.nCol), key.bAscending});
    SortList(real);
}

// --- States

int CTovReportViewHost::GetRealItemSelected(unsigned int real) const {
    return real < GetRealItemCount() && GetRealItem(real)->IsSelected() != 0;
}

int CTovReportViewHost::GetRealItemChecked(unsigned int real) const {
    return real < GetRealItemCount() && GetRealItem(real)->IsChecked() != 0;
}

int CTovReportViewHost::GetRealItemDisabled(unsigned int real) const {
    return real < GetRealItemCount() && GetRealItem(real)->IsDisabled() != 0;
}

int CTovReportViewHost::GetRealItemFocused(unsigned int real) const {
    return Table().IsRealItemVisible(real) && Table().FocusedRealItem() == real;
}

int CTovReportViewHost::GetItemsSelected() const {
    return Table().Count(&Item::IsSelected, 1) == 1;
}

int CTovReportViewHost::GetItemsChecked() const {
    return ShowCheckboxes() != 0 && Table().Count(&Item::IsChecked, 1) == 1;
}

int CTovReportViewHost::GetItemsDisabled() const {
    return Table().Count(&Item::IsDisabled, 1) == 1;
}

int CTovReportViewHost::GetMultipleItemsSelected() const {
    return Table().Count(&Item::IsSelected, 2) == 2;
}

int CTovReportViewHost::GetMultipleItemsChecked() const {
    return ShowCheckboxes() != 0 && Table().Count(&Item::IsChecked, 2) == 2;
}

int CTovReportViewHost::GetMultipleItemsDisabled() const {
    return Table().Count(&Item::IsDisabled, 2) == 2;
}

unsigned int CTovReportViewHost::GetSelectedCount() const {
    return Table().Count(&Item::IsSelected);
}

unsigned int CTovReportViewHost::GetCheckedCount() const {
    return ShowCheckboxes() != 0 ? Table().Count(&Item::IsChecked) : 0;
}

unsigned int CTovReportViewHost::GetDisabledCount() const {
    return Table().Count(&Item::IsDisabled);
}

int CTovReportViewHost::GetSelectedItems(Indexes& screen) const {
    return Table().List(&Item::IsSelected, screen);
}

int CTovReportViewHost::GetCheckedItems(Indexes& screen) const {
    screen.clear();
    return ShowCheckboxes() != 0 ? Table().List(&Item::IsChecked, screen) : 0;
}

int CTovReportViewHost::GetDisabledItems(Indexes& screen) const {
    return Table().List(&Item::IsDisabled, screen);
}

int CTovReportViewHost::GetSelectedRealItems(Indexes& real) const {
    return Table().ListReal(&Item::IsSelected, real);
}

int CTovReportViewHost::GetCheckedRealItems(Indexes& real) const {
    real.clear();
    return ShowCheckboxes() != 0 ? Table().ListReal(&Item::IsChecked, real) : 0;
}

int CTovReportViewHost::GetDisabledRealItems(Indexes& real) const {
    return Table().ListReal(&Item::IsDisabled, real);
}

int CTovReportViewHost::FocusRealItem(unsigned int real, int ensureVisible) {
    return Table().IsRealItemVisible(real) ? FocusItem(RealItemToScreen(real), ensureVisible) : 0;
}

int CTovReportViewHost::SetItemSelection(unsigned int screen, int notify) {
    SelectAllItems(0, notify, 0);
    return SelectItem(screen, 1, notify, 0);
}

unsigned int CTovReportViewHost::SetItemSelection(unsigned int first, unsigned int last, int notify) {
    SelectAllItems(0, notify, 0);
    unsigned int const count = GetItemCount();
    unsigned int const from = std::min({first, last, count});
    unsigned int const end = std::min(std::max(first, last), count - (count != 0 ? 1 : 0));
    Indexes rows(count != 0 && end >= from ? end - from + 1 : 0);
    std::iota(rows.begin(), rows.end(), from);
    return SelectItems(rows, 1, notify, 0);
}

unsigned int CTovReportViewHost::SetItemSelection(Indexes const& screen, int notify) {
    SelectAllItems(0, notify, 0);
    return SelectItems(screen, 1, notify, 0);
}

int CTovReportViewHost::SetRealItemSelection(unsigned int real, int notify) {
    if (!Table().IsRealItemVisible(real)) return 0;
    SelectAllItems(0, notify, 0);
    return SelectRealItem(real, 1, notify, 0);
}

unsigned int CTovReportViewHost::SetRealItemSelection(Indexes const& real, int notify) {
    SelectAllItems(0, notify, 0);
    return SelectRealItems(real, 1, notify, 0);
}

unsigned int CTovReportViewHost::CheckSelectedItems(int check, int notify) {
    if (ShowCheckboxes() == 0) return tovNoIndex;
    Indexes screen;
    GetSelectedItems(screen);
    return CheckItems(screen, check, notify);
}

int CTovReportViewHost::EnsureItemVisible(unsigned int screen, unsigned int screenCol) {
    ITovListPort* const port = ListPort();
    if (port == nullptr || screen >= GetItemCount() || port->EnsureRowVisible(screen) == 0) return 0;
    return screenCol == tovNoIndex || port->EnsureColumnVisible(screenCol) != 0;
}

int CTovReportViewHost::EnsureRealItemVisible(unsigned int real, unsigned int realCol) {
    unsigned int const screen = RealItemToScreen(real);
    unsigned int const screenCol = RealColToScreen(realCol, 0);
    if (screen == tovNoIndex || (realCol != tovNoIndex && screenCol == tovNoIndex)) return 0;
    return EnsureItemVisible(screen, screenCol);
}

int CTovReportViewHost::EnsureRealColVisible(unsigned int real) {
    ITovListPort* const port = ListPort();
    unsigned int const screenCol = RealColToScreen(real, 0);
    return port != nullptr && screenCol != tovNoIndex && port->EnsureColumnVisible(screenCol) != 0;
}

// --- Events

void CTovReportViewHost::OnDisplayItemsBegin(unsigned int count) {
    SendNotificationToNotifyItems(eNotifyItemDisplay, WM_TOV_REPORTVIEW_ITEM_DISPLAY_BEGIN,
                                  static_cast<LPARAM>(count));
}

void CTovReportViewHost::OnDisplayItemsEnd(unsigned int count) {
    SendNotificationToNotifyItems(eNotifyItemDisplay, WM_TOV_REPORTVIEW_ITEM_DISPLAY_END,
                                  static_cast<LPARAM>(count));
}

void CTovReportViewHost::OnAppendRealItem(unsigned int real, unsigned int /*screen*/) {
    SendNotificationToNotifyItems(eNotifyItemAppend, WM_TOV_REPORTVIEW_ITEM_APPEND,
                                  static_cast<LPARAM>(real));
}

void CTovReportViewHost::OnCleanupRealItems() {
    SendNotificationToNotifyItems(eNotifyItemCleanup, WM_TOV_REPORTVIEW_ITEM_CLEANUP, 0);
}

void CTovReportViewHost::OnRefreshRealItem(unsigned int real) {
    SendNotificationToNotifyItems(eNotifyItemRefresh, WM_TOV_REPORTVIEW_ITEM_REFRESH,
                                  static_cast<LPARAM>(real));
}

int CTovReportViewHost::OnHideRealItem(unsigned int real, unsigned int /*screen*/, int hide) {
    SendNotificationToNotifyItems(eNotifyItemHide,
                                  hide != 0 ? WM_TOV_REPORTVIEW_ITEM_HIDE : WM_TOV_REPORTVIEW_ITEM_VIEW,
                                  static_cast<LPARAM>(real));
    return 1;
}

void CTovReportViewHost::OnSortOrderChanged() {
    SendNotificationToNotifyItems(eNotifyItemSortOrder, WM_TOV_REPORTVIEW_ITEM_SORT_ORDER, 0);
}

eTovListColors CTovReportViewHost::HasItemColors() {
    if (Set().customItemColors == 0) return eListColorsUsual;
    return Set().customColorsPerSubItem != 0 ? eListColorsPerCell : eListColorsPerItem;
}

void CTovReportViewHost::GetItemColors(unsigned int screen, unsigned int screenCol, COLORREF& text,
                                       COLORREF& background) {
    unsigned int const real = ScreenItemToReal(screen);
    if (real == tovNoIndex) return;
    unsigned long textColor = text;
    unsigned long backgroundColor = background;
    unsigned int const realCol = screenCol != tovNoIndex ? ScreenColToReal(screenCol) : tovNoIndex;
    OnGetRealItemColor(real, screen, realCol, screenCol, textColor, backgroundColor);
    text = static_cast<COLORREF>(textColor);
    background = static_cast<COLORREF>(backgroundColor);
}

void CTovReportViewHost::OnGetRealItemColor(unsigned int real, unsigned int screen, unsigned int realCol,
                                            unsigned int screenCol, unsigned long& text,
                                            unsigned long& background) const {
    GetRealItem(real)->OnGetItemColor(real, screen, realCol, screenCol, text, background);
}

void CTovReportViewHost::OnGetRealItemOwnerDraw(unsigned int real, unsigned int screen, unsigned int realCol,
                                                unsigned int screenCol, NMHDR* notification,
                                                long* result) const {
    GetRealItem(real)->OnGetItemOwnerDraw(real, screen, realCol, screenCol, notification, result);
}

int CTovReportViewHost::OnGetRealItemToolTip(unsigned int real, unsigned int /*screen*/, unsigned int realCol,
                                             unsigned int /*screenCol*/, CString& text) const {
    return GetRealItem(real)->OnGetItemToolTip(real, realCol, text);
}

void CTovReportViewHost::ReadReportViewIntVector(char const* section, char const* key,
                                                 std::vector<int>& values) const {
    CTovProfileEntries::ReadTovProfileIntVector(section, key, values);
}

int CTovReportViewHost::WriteReportViewIntVector(char const* section, char const* key,
                                                 std::vector<int> const& values) const {
    return CTovProfileEntries::WriteTovProfileIntVector(section, key, values);
}

}  // namespace tov
