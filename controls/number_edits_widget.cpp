#include <tov310/number_edits.h>

#include <QPointer>

namespace tov {

CTovEditInteger::CTovEditInteger(QWidget* parent) : CTovEditIntegerOn(parent) {}

CTovEditInteger::CTovEditInteger(eType type, QWidget* parent) : CTovEditIntegerOn(parent) {
    SetType(type);
}

void CTovEditInteger::InternalSetLong(long value, int negativeZero) {
    HoldChanges();
    CTovEditIntegerOn::InternalSetLong(value, negativeZero);
    TellContent();
    TellChanges(false);
}

void CTovEditInteger::Empty() {
    HoldChanges();
    CTovEditIntegerOn::Empty();
    TellContent();
    TellChanges(false);
}

void CTovEditInteger::OnContentChanged() {
    QPointer<CTovEdit> const alive(this);
    CTovEditIntegerOn::OnContentChanged();
    if (!alive) return;
    long const value = m_number.value;
    TellValue(m_number.IsUnsigned() ? static_cast<double>(static_cast<unsigned long>(value))
                                    : static_cast<double>(value));
}

CTovEditFloating::CTovEditFloating(QWidget* parent) : CTovEditFloatingOn(parent) {}

CTovEditFloating::CTovEditFloating(eType type, QWidget* parent) : CTovEditFloatingOn(parent) {
    SetType(type);
}

void CTovEditFloating::InternalSetDouble(double value) {
    HoldChanges();
    CTovEditFloatingOn::InternalSetDouble(value);
    TellContent();
    TellChanges(false);
}

void CTovEditFloating::Empty() {
    HoldChanges();
    CTovEditFloatingOn::Empty();
    TellContent();
    TellChanges(false);
}

void CTovEditFloating::OnContentChanged() {
    QPointer<CTovEdit> const alive(this);
    CTovEditFloatingOn::OnContentChanged();
    if (alive) TellValue(m_number.value);
}

}  // namespace tov
