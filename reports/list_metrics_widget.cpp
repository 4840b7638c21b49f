#include "reports/list_metrics.h"

#include <tov310/list_ctrl.h>

namespace tov {

CTovListCtrlMetrics::Heights MeasureListCtrl() {
    CTovListCtrlQuickDraw list;  // never shown
    list.GetHeaderCtrl().InsertColumn(0, LVCFMT_LEFT, 50, "Column");
    list.Items().InsertItem(0, "Item");
    list.RowsChanged();
    CTovListCtrlMetrics::Heights heights;
    heights.header = list.GetHeaderCtrl().height();
    heights.item = list.GetRowHeight();
    list.ShowCheckboxes(1);
    heights.itemCheck = list.GetRowHeight();
    CImageList images;
    images.Create(1, 1, ILC_COLOR32, 0, 1);
    list.SetImageList(&images);
    heights.itemCheckAndIcon = list.GetRowHeight();
    list.ShowCheckboxes(0);
    heights.itemIcon = list.GetRowHeight();
    list.SetImageList(nullptr);
    return heights;
}

}  // namespace tov
