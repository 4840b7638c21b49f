#include <tov310/dialog_metrics.h>

#include "vesk/immortal.h"
#include "views/dialog_units.h"

#include <tov310/dialog_template.h>
#include <tov310/list_metrics.h>
#include <tov310/system.h>

namespace tov {
namespace {

constexpr unsigned measuredDialog = 26255;

// The dialog of the module in force, in dialog units.
CTovDialogTemplate const& MeasuredDialog() {
    struct Loaded {
        HINSTANCE module = nullptr;
        CTovDialogTemplate dialog;
    };
    static Immortal<Loaded> loaded;
    HINSTANCE const module = TovGetTovResourceHandle();
    if (loaded->module != module) {
        loaded->module = module;
        TovLoadDialogTemplate(module, measuredDialog, loaded->dialog);
    }
    return loaded->dialog;
}

CRect MeasuredRect(unsigned id) {
    for (CTovControlTemplate const& control : MeasuredDialog().controls) {
        if (control.id != id) continue;
        return DialogUnits(TovGetSystem()->GetTextExtent(nullptr, dialogUnitLetters)).Map(control.rect);
    }
    return {};
}

CSize MeasuredSize(unsigned id) {
    CRect const rect = MeasuredRect(id);
    return {rect.Width(), rect.Height()};
}

}  // namespace

HFONT CTovDialogMetrics::Font() {
    return TovGetSystem()->GetDialogFont();
}

std::uint8_t CTovDialogMetrics::CharSet() {
    return Font() != nullptr ? 1 : 0;
}

int CTovDialogMetrics::Margin() {
    return MeasuredRect(26539).left;
}

CSize CTovDialogMetrics::Static() {
    return MeasuredSize(26539);
}
CSize CTovDialogMetrics::Edit() {
    return MeasuredSize(26540);
}
CSize CTovDialogMetrics::Checkbox() {
    return MeasuredSize(26541);
}
CSize CTovDialogMetrics::Radiobutton() {
    return MeasuredSize(26542);
}
CSize CTovDialogMetrics::Combobox() {
    return MeasuredSize(26543);
}
CSize CTovDialogMetrics::Spin() {
    return MeasuredSize(26544);
}
CSize CTovDialogMetrics::Slider() {
    return MeasuredSize(26545);
}
CSize CTovDialogMetrics::DateTime() {
    return MeasuredSize(26546);
}
CSize CTovDialogMetrics::IpAddress() {
    return MeasuredSize(26547);
}
CSize CTovDialogMetrics::ComboboxEx() {
    return MeasuredSize(26548);
}

int CTovDialogMetrics::ListCtrlHeaderHeight() {
    return CTovListCtrlMetrics::HeaderHeight();
}
int CTovDialogMetrics::ListCtrlRVItemHeight() {
    return CTovListCtrlMetrics::RVItemHeight();
}
int CTovDialogMetrics::ListCtrlRVItemHeightCheck() {
    return CTovListCtrlMetrics::RVItemHeightCheck();
}
int CTovDialogMetrics::ListCtrlRVItemHeightIcon() {
    return CTovListCtrlMetrics::RVItemHeightIcon();
}
int CTovDialogMetrics::ListCtrlRVItemHeightCheckAndIcon() {
    return CTovListCtrlMetrics::RVItemHeightCheckAndIcon();
}

}  // namespace tov
