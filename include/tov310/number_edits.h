// Edits for numbers.
//
//   auto* const zone = new tov::CTovEditInteger(this);
//   zone->SetRange(1, 60);
//   zone->CreateSpinButton();
//   connect(zone, &tov::CTovEdit::valueChanged, ...);
//
// edit_number.h says how a number and its text go together.
#pragma once

#include <tov310/edit.h>
#include <tov310/edit_number.h>

namespace tov {

class TOV_UI_API CTovEditInteger : public CTovEditIntegerOn<CTovEdit> {
    TOV_DYNCREATE(CTovEditInteger, CTovEdit)
 public:
    using CTovInputControl::operator=;
    explicit CTovEditInteger(QWidget* parent = nullptr);
    explicit CTovEditInteger(eType type, QWidget* parent = nullptr);
    void Empty() override;

 protected:
    void InternalSetLong(long value, int negativeZero) override;
    void OnContentChanged() override;
};

class TOV_UI_API CTovEditFloating : public CTovEditFloatingOn<CTovEdit> {
    TOV_DYNCREATE(CTovEditFloating, CTovEdit)
 public:
    using CTovInputControl::operator=;
    explicit CTovEditFloating(QWidget* parent = nullptr);
    explicit CTovEditFloating(eType type, QWidget* parent = nullptr);
    void Empty() override;

 protected:
    void InternalSetDouble(double value) override;
    void OnContentChanged() override;
};

}  // namespace tov
