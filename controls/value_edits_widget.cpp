#include <tov310/value_edits.h>

#include <tov310/messages.h>
#include <tov310/qt_values.h>

#include <QEvent>
#include <QPointer>

#include <algorithm>
#include <memory>

namespace tov {

QString CTovEditValue::valueText() {
    CString unit;
    GetUnitAbbreviationText(unit);
    QString const words = WholeText();
    return unit.empty() || words.isEmpty() ? words : words + QLatin1Char(' ') + TovQString(unit);
}

bool CTovEditValue::event(QEvent* event) {
    // Also while the form is not shown.
    if (event->type() == QEvent::ShowToParent) ShowUnitAbbreviation(1);
    if (event->type() == QEvent::HideToParent) ShowUnitAbbreviation(0);
    return CTovEditValueOn::event(event);
}

LRESULT CTovEditValue::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) {
    if (message == UnitMessage() && message != 0) {
        OnUnitMessage();
        DisplayUnitAbbreviation();
        return 0;
    }
    if (message == WM_SHOWWINDOW) ShowUnitAbbreviation(wParam != 0);
    return CTovEditValueOn::WindowProc(message, wParam, lParam);
}

void CTovEditValue::OnContentChanged() {
    QPointer<CTovEdit> const alive(this);
    CTovEdit::OnContentChanged();
    if (alive) TellValue(GetValue());
}

void CTovEditValue::SafeSetDouble(double shown) {
    CTovEditValueOn::SafeSetDouble(shown);
    TellContent();
}

CTovEditValueDistance::CTovEditValueDistance(QWidget* parent) : CTovEditValue(parent) {}

CTovEditValueDistance::CTovEditValueDistance(CTovUnitSettingsDistance* settings, QWidget* parent)
    : CTovEditValue(parent), m_value(settings) {}

unsigned CTovEditValueDistance::UnitMessage() const {
    return WM_TOV_UNIT_CHANGED_DISTANCE;
}

CTovEditLatitude::CTovEditLatitude(QWidget* parent)
    : CTovEditValueAngle(std::make_unique<CTovValueAngleLat>(), parent) {
    SetSignType(eSignNorthSouth);
}

int CTovEditLatitude::ResetAttributes() {
    if (CTovEditValueAngle::ResetAttributes() == 0) return 0;
    SetSignType(eSignNorthSouth);
    return 1;
}

int CTovEditLatitude::SetupInlineRect(CRect& container, CRect& control, HFONT font, unsigned long align) {
    CTovEditValueAngle::SetupInlineRect(container, control, font, align);
    container.right = std::max(container.right, container.left + m_mask.GetMinEditWidth(font));
    control = container;
    return 1;
}

CTovEditLongitude::CTovEditLongitude(QWidget* parent)
    : CTovEditValueAngle(std::make_unique<CTovValueAngleLon>(), parent) {
    SetSignType(eSignEastWest);
}

int CTovEditLongitude::ResetAttributes() {
    if (CTovEditValueAngle::ResetAttributes() == 0) return 0;
    SetSignType(eSignEastWest);
    return 1;
}

}  // namespace tov
