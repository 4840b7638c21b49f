#include <tov310/value_edits.h>

#include <tov310/messages.h>
#include <tov310/qt_values.h>

namespace tov {

QString CTovEditValue::valueText() {
    CString unit;
    GetUnitAbbreviationText(unit);
    return unit.empty() ? text() : text() + QLatin1Char(' ') + TovQString(unit);
}

LRESULT CTovEditValue::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) {
    if (message == UnitMessage() && message != 0) {
        OnUnitChanged();
        DisplayUnitAbbreviation();
        return 0;
    }
    if (message == WM_SHOWWINDOW) ShowUnitAbbreviation(wParam != 0);
    return CTovEditValueOn::WindowProc(message, wParam, lParam);
}

void CTovEditValue::OnContentChanged() {
    CTovEdit::OnContentChanged();
    Q_EMIT valueChanged(GetValue());
}

CTovEditValueDistance::CTovEditValueDistance(QWidget* parent) : CTovEditValue(parent) {}

CTovEditValueDistance::CTovEditValueDistance(CTovUnitSettingsDistance* settings, QWidget* parent)
    : CTovEditValue(parent), m_value(settings) {}

unsigned CTovEditValueDistance::UnitMessage() const {
    return WM_TOV_UNIT_CHANGED_DISTANCE;
}

}  // namespace tov
