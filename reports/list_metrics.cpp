#include <tov310/list_metrics.h>

#include <tov310/system.h>

namespace tov {
namespace {

struct MeasuredList {
    CTovListCtrlMetrics::Heights (*measure)() = nullptr;
    HFONT font = nullptr;  // null: not measured
    CTovListCtrlMetrics::Heights heights;
};

MeasuredList& Measured() {
    static MeasuredList measured;
    return measured;
}

CTovListCtrlMetrics::Heights const& MeasuredHeights() {
    MeasuredList& measured = Measured();
    HFONT const font = TovGetSystem()->GetDialogFont();
    if (measured.measure != nullptr && font != measured.font) {
        measured.heights = font != nullptr ? measured.measure() : CTovListCtrlMetrics::Heights{};
        measured.font = font;
    }
    return measured.heights;
}

}  // namespace

void CTovListCtrlMetrics::SetMeasure(Heights (*measure)()) {
    Measured() = {measure, nullptr, {}};
}

int CTovListCtrlMetrics::HeaderHeight() {
    return MeasuredHeights().header;
}
int CTovListCtrlMetrics::RVItemHeight() {
    return MeasuredHeights().item;
}
int CTovListCtrlMetrics::RVItemHeightCheck() {
    return MeasuredHeights().itemCheck;
}
int CTovListCtrlMetrics::RVItemHeightIcon() {
    return MeasuredHeights().itemIcon;
}
int CTovListCtrlMetrics::RVItemHeightCheckAndIcon() {
    return MeasuredHeights().itemCheckAndIcon;
}

}  // namespace tov
