#include <tov310/report_items.h>

#include <tov310/compare.h>
#include <tov310/report_view_host.h>
#include <tov310/system.h>

namespace tov {

CTovReportViewCol::CTovReportViewCol(CTovReportViewHost* owner, int hidden, char const* label, int alignment,
                                     int width, HINSTANCE menuInstance, unsigned int menuId, int menuPosition)
    : m_pOwner(owner),
      m_bHidden(hidden),
      m_bHiddenDefault(hidden),
      m_strLabel(label != nullptr ? label : ""),
      m_nAlignment(alignment),
      m_nWidth(width),
      m_nWidthDefault(width),
      m_hMenuInstance(menuInstance),
      m_nMenuId(menuId),
      m_nMenuPosition(menuPosition) {}

int CTovReportViewCol::HideCol(int hide, int notify) {
    if ((m_bHidden != 0) == (hide != 0)) return 1;
    if (m_bDeleted != 0 || (notify != 0 && OnHideCol(hide) == 0)) return 0;
    m_bHidden = hide;
    return 1;
}

int CTovReportViewCol::DeleteCol(int notify) {
    if (m_bDeleted != 0) return 1;
    if (notify != 0 && OnDeleteCol() == 0) return 0;
    m_bDeleted = 1;
    return 1;
}

void CTovReportViewCol::SetLabel(char const* label) {
    CString text = label != nullptr ? label : "";
    if (text == m_strLabel) return;
    m_strLabel = std::move(text);
    if (m_pOwner == nullptr || m_pOwner->ListPort() == nullptr || IsVisible() == 0) return;
    for (unsigned int real = 0; real < m_pOwner->GetRealColumns(); ++real) {
        if (m_pOwner->GetRealCol(real) == this) m_pOwner->Table().PushColLabel(real);
    }
}

void CTovReportViewCol::GetMenu(HINSTANCE& instance, unsigned int& id, int& position) const {
    instance = m_hMenuInstance;
    id = m_nMenuId;
    position = m_nMenuPosition;
}

void CTovReportViewCol::SetMenu(HINSTANCE instance, unsigned int id, int position) {
    m_hMenuInstance = instance;
    m_nMenuId = id;
    m_nMenuPosition = position;
}

CTovReportViewItem::CTovReportViewItem(CTovReportViewHost* owner, int hidden, int checked, int selected,
                                       int disabled)
    : m_pOwner(owner),
      m_nState((selected != 0 ? LVIS_SELECTED : 0) | (disabled != 0 ? LVIS_CUT : 0)),
      m_nFlags((hidden != 0 ? flagHidden : 0) | (checked != 0 ? flagChecked : 0)) {}

int CTovReportViewItem::HideItem(int hide, int notify) {
    if (IsHidden() == hide) return 1;
    if (IsDeleted() != 0 || (notify != 0 && OnHideItem(hide) == 0)) return 0;
    m_nFlags = hide != 0 ? m_nFlags | flagHidden : m_nFlags & ~flagHidden;
    return 1;
}

int CTovReportViewItem::DeleteItem(int notify) {
    if (IsDeleted() != 0) return 1;
    if (notify != 0) {
        int const allowed = OnDeleteItem();
        if (allowed == 0) return 0;
    }
    m_nFlags |= flagDeleted;
    return 1;
}

void CTovReportViewItem::CheckItem(int check, int notify) {
    if (IsChecked() == (check != 0) || IsDeleted() != 0) return;
    if (notify != 0) OnCheckItem(check);
    m_nFlags = check != 0 ? m_nFlags | flagChecked : m_nFlags & ~flagChecked;
}

void CTovReportViewItem::SelectItem(int select, int notify) {
    if (IsSelected() == (select != 0) || IsDeleted() != 0) return;
    if (select != 0 && IsDisabled() != 0) return;
    if (notify != 0) OnSelectItem(select);
    m_nState = select != 0 ? m_nState | LVIS_SELECTED : m_nState & ~LVIS_SELECTED;
}

void CTovReportViewItem::DisableItem(int disable, int notify) {
    if (IsDisabled() == (disable != 0) || IsDeleted() != 0) return;
    if (disable != 0 && IsSelected() != 0) SelectItem(0, notify);
    if (notify != 0) OnDisableItem(disable);
    m_nState = disable != 0 ? m_nState | LVIS_CUT : m_nState & ~LVIS_CUT;
}

unsigned int CTovReportViewItem::OnGetItemImage(unsigned int /*item*/, unsigned int /*col*/) const {
    return tovNoImage;
}

int CTovReportViewItem::OnGetItemText(unsigned int /*item*/, unsigned int /*col*/, CString& text) const {
    text.clear();
    return 0;
}

int CTovReportViewItem::OnGetMainItemText(unsigned int item, CString& text) const {
    return OnGetItemText(item, 0, text);
}

void CTovReportViewItem::OnGetItemColor(unsigned int /*realItem*/, unsigned int /*screenItem*/,
                                        unsigned int /*realCol*/, unsigned int /*screenCol*/,
                                        unsigned long& text, unsigned long& /*background*/) const {
    if (IsDisabled() != 0) text = TovGetSystem()->GetSysColor(COLOR_GRAYTEXT);
}

void CTovReportViewItem::OnGetItemOwnerDraw(unsigned int /*realItem*/, unsigned int /*screenItem*/,
                                            unsigned int /*realCol*/, unsigned int /*screenCol*/,
                                            NMHDR* /*notification*/, long* result) const {
    if (result != nullptr) *result = 0;
}

int CTovReportViewItem::OnGetItemToolTip(unsigned int /*item*/, unsigned int /*col*/,
                                         CString& /*text*/) const {
    return 0;
}

CTovPtrSmart<CTovDocument> CTovReportViewItem::OnGetItemDocument(unsigned int /*item*/) {
    return {};
}

int CTovReportViewItem::OnCompareItem(CTovReportViewItem const* /*other*/, unsigned int /*col*/) const {
    return 0;
}

eTovSortKey CTovReportViewItem::OnGetItemSortKey(unsigned int /*col*/, double& /*number*/,
                                                 CString& /*text*/) const {
    return eSortKeyNone;
}

int CTovReportViewItem::Compare(char const* a, char const* b) {
    return TovCompare(a, b);
}

int CTovReportViewItem::CompareIS(char const* a, char const* b) {
    return TovCompareIS(a, b);
}

int CTovReportViewItem::CompareNoCaseIS(char const* a, char const* b) {
    return TovCompareNoCaseIS(a, b);
}

int CTovReportViewItem::Compare(double a, double b) {
    return TovCompare(a, b);
}

int CTovReportViewItem::Compare(CTovTime const& a, CTovTime const& b) {
    return TovCompare(a, b);
}

int CTovReportViewItem::CompareDatePart(CTovTime const& a, CTovTime const& b) {
    return TovCompareDatePart(a, b);
}

int CTovReportViewItem::CompareTimePart(CTovTime const& a, CTovTime const& b) {
    return TovCompareTimePart(a, b);
}

int CTovReportViewItem::Compare(CTime const& a, CTime const& b) {
    return TovCompare(a, b);
}

int CTovReportViewItem::CompareDatePart(CTime const& a, CTime const& b) {
    return TovCompareDatePart(a, b);
}

int CTovReportViewItem::CompareTimePart(CTime const& a, CTime const& b) {
    return TovCompareTimePart(a, b);
}

int CTovReportViewItem::Compare(COleDateTime const& a, COleDateTime const& b) {
    return TovCompare(a, b);
}

int CTovReportViewItem::CompareDatePart(COleDateTime const& a, COleDateTime const& b) {
    return TovCompareDatePart(a, b);
}

int CTovReportViewItem::CompareTimePart(COleDateTime const& a, COleDateTime const& b) {
    return TovCompareTimePart(a, b);
}

}  // namespace tov
