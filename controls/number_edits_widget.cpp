#include <tov310/number_edits.h>

namespace tov {

CTovEditInteger::CTovEditInteger(QWidget* parent) : CTovEditIntegerOn(parent) {}

CTovEditInteger::CTovEditInteger(eType type, QWidget* parent) : CTovEditIntegerOn(parent) {
    SetType(type);
}

void CTovEditInteger::InternalSetLong(long value, int negativeZero) {
    CTovEditIntegerOn::InternalSetLong(value, negativeZero);
    CTovEditInteger::OnContentChanged();
}

void CTovEditInteger::OnContentChanged() {
    CTovEditIntegerOn::OnContentChanged();
    long const value = m_number.value;
    Q_EMIT valueChanged(m_number.IsUnsigned() ? static_cast<double>(static_cast<unsigned long>(value))
                                              : static_cast<double>(value));
}

CTovEditFloating::CTovEditFloating(QWidget* parent) : CTovEditFloatingOn(parent) {}

CTovEditFloating::CTovEditFloating(eType type, QWidget* parent) : CTovEditFloatingOn(parent) {
    SetType(type);
}

void CTovEditFloating::InternalSetDouble(double value) {
    CTovEditFloatingOn::InternalSetDouble(value);
    CTovEditFloating::OnContentChanged();
}

void CTovEditFloating::OnContentChanged() {
    CTovEditFloatingOn::OnContentChanged();
    Q_EMIT valueChanged(m_number.value);
}

}  // namespace tov
