// What the control paints, and painting it anew.
#include <tov310/report_view_host.h>

#include "reports/report_rows.h"
#include "util/code_points.h"

#include <algorithm>
#include <utility>

namespace tov {
namespace {

constexpr char textOfNone = '-';

}  // namespace

int CTovReportTable::GetDispInfo(TOV_DISPINFO& info) {
    unsigned int const realCol = ScreenColToReal(info.iSubItem);
    unsigned int const real = ScreenItemToReal(info.iItem);
    if ((info.mask & (LVIF_TEXT | LVIF_IMAGE | LVIF_STATE)) == 0) return 0;
    if (realCol == tovNoIndex || real == tovNoIndex) return 0;
    Operation const operation(*this);
    CTovReportViewItem& item = *m_vecRealItems[real];
    if ((info.mask & LVIF_TEXT) != 0) {
        info.strText.clear();
        if (!IsColumnInSight(*m_vecRealCols[realCol])) return 1;
        if (InternalGetItemText(realCol, real, &item, info.strText) == 0) info.strText.assign(1, textOfNone);
        if (info.cchTextMax != 0) info.strText.resize(CharacterOffset(info.strText, info.cchTextMax - 1));
    }
    if ((info.mask & LVIF_IMAGE) != 0 && settings.hasItemImages != 0) {
        info.nImage = tovNoImage;
        if (m_host.ShowRealItemImage(realCol) != 0) {
            info.nImage = item.OnGetItemImage(real, realCol);
            if (info.nImage == tovNoImage || info.nImage == tovUsualImage)
                info.nImage = settings.defaultItemImage;
        }
    }
    if ((info.mask & LVIF_STATE) != 0) {
        info.nState = item.GetItemState();
        if (info.iSubItem == 0 && m_host.ShowCheckboxes() != 0)
            info.nState |= item.IsChecked() != 0 ? tovStateChecked : tovStateUnchecked;
    }
    return 1;
}

// Texts that nobody sees cost time; whoever reads the cells for something else than the screen gets all.
bool CTovReportTable::IsColumnInSight(CTovReportViewCol const& col) {
    int const all = m_bArrangingColumns | m_bSavingAs | m_bPrinting | m_bCachingClipboard |
                    m_bTrackingHScroll | m_bTrackingVScroll;
    ITovListPort* const port = Port();
    if (all != 0 || port == nullptr) return true;
    if (m_bScrollPosHorzValid == 0) {
        m_nScrollPosHorz = port->GetRowLeft();
        m_bScrollPosHorzValid = 1;
    }
    int const x = m_nScrollPosHorz + col.m_nLeft;
    return x <= m_rcList.right && x + col.m_nWidth >= m_rcList.left;
}

int CTovReportTable::InternalGetItemText(unsigned int realCol, unsigned int real, CTovReportViewItem* item,
                                         CString& text) {
    unsigned int const held = m_vecRealCols[realCol]->m_nHoldIndex;
    if (held == tovNoIndex) return item->OnGetItemText(real, realCol, text);
    std::vector<HOLD_TEXT>& texts = item->m_vecHoldText;
    if (held >= texts.size()) texts.resize(held + 1);
    if (texts[held].bValid == 0) {
        texts[held].bValid = 1;
        CString read;
        if (item->OnGetItemText(real, realCol, read) == 0) read.assign(1, textOfNone);
        texts[held].strText = std::move(read);
    }
    text = texts[held].strText;
    return 1;
}

void CTovReportTable::InvalidateHeldTexts(CTovReportViewItem& item) const {
    for (HOLD_TEXT& text : item.m_vecHoldText)
        text.bValid = 0;
}

void CTovReportTable::InvalidateHeldColumn(CTovReportViewCol const& col) {
    if (col.m_nHoldIndex == tovNoIndex) return;
    for (auto const& item : m_vecRealItems) {
        if (col.m_nHoldIndex < item->m_vecHoldText.size()) item->m_vecHoldText[col.m_nHoldIndex].bValid = 0;
    }
}

// --- Refreshing

void CTovReportTable::RefreshRealItem(unsigned int real, int notify) {
    if (real >= m_vecRealItems.size()) return;
    Operation const operation(*this);
    InvalidateHeldTexts(*m_vecRealItems[real]);
    TouchRow(real);
    bool const visible = IsRealItemVisible(real);
    if (m_host.IsPropertyView() != 0 && m_host.GetPropertyRealItem() == real) {
        m_host.UpdateProperties();
    } else if (visible && Port() != nullptr) {
        MarkRow(RealItemToScreen(real));
    }
    if (!visible) return;
    if (notify != 0 && m_host.GetSuppressRefreshNotifications() == 0) m_host.OnRefreshRealItem(real);
    m_host.OnItemNotice(WM_TOV_REPORTVIEW_ITEM_REFRESH, real);
}

void CTovReportTable::RefreshItem(unsigned int screen, int notify) {
    unsigned int const real = ScreenItemToReal(screen);
    if (real == tovNoIndex) return;
    Operation const operation(*this);
    InvalidateHeldTexts(*m_vecRealItems[real]);
    TouchRow(real);
    if (notify != 0 && m_host.GetSuppressRefreshNotifications() == 0) m_host.OnRefreshRealItem(real);
    m_host.OnItemNotice(WM_TOV_REPORTVIEW_ITEM_REFRESH, real);
    if (m_host.IsPropertyView() != 0 && m_host.GetPropertyRealItem() == real) {
        m_host.UpdateProperties();
    } else {
        MarkRow(Locate(real, screen));
    }
}

void CTovReportTable::RefreshAllItems(int notify) {
    if (m_vecScreenItems->empty()) return;
    Operation const operation(*this);
    TouchAllRows();
    bool const holds = std::any_of(m_vecScreenCols.begin(), m_vecScreenCols.end(), [this](unsigned int real) {
        return m_vecRealCols[real]->m_bHoldItemText != 0;
    });
    RefreshRows(notify, holds, [this](CTovReportViewItem& item) { InvalidateHeldTexts(item); });
    if (m_host.IsPropertyView() != 0) {
        m_host.UpdateProperties();
    } else {
        MarkAllRows();
    }
}

void CTovReportTable::RefreshColItems(unsigned int screenCol, int notify) {
    CTovReportViewCol const* const col = GetCol(screenCol);
    if (col == nullptr || m_vecScreenItems->empty()) return;
    Operation const operation(*this);
    TouchAllRows();
    unsigned int const held = col->m_nHoldIndex;
    RefreshRows(notify, held != tovNoIndex, [held](CTovReportViewItem& item) {
        if (held < item.m_vecHoldText.size()) item.m_vecHoldText[held].bValid = 0;
    });
    ITovListPort* const port = Port();
    if (m_host.IsPropertyView() != 0) {
        m_host.UpdateProperties();
    } else if (port != nullptr) {
        int const left = port->GetRowLeft() + col->m_nLeft;
        port->InvalidateStrip(left, left + col->m_nWidth);
    }
}

// Tells of the rows on the screen from the top, as far as they are still shown when it is their turn.
template <class Invalidate>
void CTovReportTable::RefreshRows(int notify, bool holds, Invalidate const& invalidate) {
    bool const tells = notify != 0 && m_host.GetSuppressRefreshNotifications() == 0;
    unsigned int const generation = m_generation;
    if (tells || holds) {
        for (unsigned int const real : m_vecScreenItems->Copy()) {
            if (generation != m_generation) return;
            if (!IsRealItemVisible(real)) continue;
            if (tells) m_host.OnRefreshRealItem(real);
            if (holds && generation == m_generation) invalidate(*m_vecRealItems[real]);
        }
    }
    m_host.OnItemNotice(WM_TOV_REPORTVIEW_ITEM_REFRESH, tovNoIndex);
}

}  // namespace tov
