// Edits for values with units: the user sees and types them in the unit of the value's settings, the program
// reads and writes radians and metres.
//
//   auto* const latitude = new tov::CTovEditLatitude(this);
//   latitude->SetValue(0.9169);
//   connect(latitude, &tov::CTovEdit::valueChanged, this, [](double radians) { ... });
//
// A text that is pasted may have a unit, "12.5 ft" or "0.5 rad": it is converted. One whose unit is not known
// is refused.
//
// An angle in degrees, minutes and seconds (unit 12) or in gon, c and cc (unit 15) has a field for each of
// them, over the mask of signs; to the user it is one text, through which the caret walks with the arrow
// keys. Tab goes from field to field, then to the letter of the hemisphere, and only then on; so do blank,
// ":" and the sign of the field, except from the last. A letter of a hemisphere is taken in every field, and
// no other character in that of the letter. What a field does not take, more digits than its mask has too,
// is refused with a beep.
#pragma once

#include <tov310/angle.h>
#include <tov310/distance.h>
#include <tov310/edit_value_on.h>
#include <tov310/number_edits.h>

#include <memory>
#include <vector>

namespace tov {

// Base of all; derived classes have the value.
class TOV_UI_API CTovEditValue : public CTovEditValueOn<CTovEditFloating> {
    TOV_DYNAMIC(CTovEditValue, CTovEditFloating)
 public:
    using CTovInputControl::operator=;
    explicit CTovEditValue(QWidget* parent = nullptr) : CTovEditValueOn(parent) {}

    // What is shown, with the abbreviation of the unit.
    QString valueText();

    void SafeSetDouble(double shown) override;

 protected:
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;
    bool event(QEvent* event) override;
    void OnContentChanged() override;  // valueChanged comes in the standard unit

    virtual QString WholeText() { return text(); }

    // The message that tells of another unit in the settings; 0 for none.
    virtual unsigned UnitMessage() const { return 0; }
    virtual void OnUnitMessage() { OnUnitChanged(); }
};

class TOV_UI_API CTovEditValueDistance : public CTovEditValue {
    TOV_DYNCREATE(CTovEditValueDistance, CTovEditValue)
 public:
    using CTovInputControl::operator=;
    explicit CTovEditValueDistance(QWidget* parent = nullptr);
    explicit CTovEditValueDistance(CTovUnitSettingsDistance* settings, QWidget* parent = nullptr);

    CTovValue* TovValue() override { return &m_value; }
    virtual void OnUnitChangedDistance() { OnUnitChanged(); }
    int ReadQuantity(CString& words, double& metres) override {
        return TovReadDistance(words, m_units.Unit(), metres);
    }

 protected:
    unsigned UnitMessage() const override;
    void OnUnitMessage() override { OnUnitChangedDistance(); }

 private:
    CTovValueDistance m_value;
};

class TOV_UI_API CTovEditValueAngle : public CTovEditValueAngleOn<CTovEditValue> {
    TOV_DYNCREATE(CTovEditValueAngle, CTovEditValue)
 public:
    using CTovInputControl::operator=;
    explicit CTovEditValueAngle(QWidget* parent = nullptr);
    explicit CTovEditValueAngle(CTovUnitSettingsAngle* settings, QWidget* parent = nullptr);
    ~CTovEditValueAngle() override;

    CTovValue* TovValue() override { return m_value.get(); }
    virtual void OnUnitChangedAngle() { OnUnitChanged(); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    int CreateEditButton(char const* text) override;
    void SetMenu(HINSTANCE module, unsigned id) override;  // that of the fields too
    void SetFocus() override;

    // The child edit of a field, which belongs to this edit; null while that is in one piece.
    CTovEdit* FieldEdit(eTovAngleField field) const;

 protected:
    explicit CTovEditValueAngle(std::unique_ptr<CTovValueAngle> value, QWidget* parent);

    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;
    unsigned UnitMessage() const override;
    void OnUnitMessage() override { OnUnitChangedAngle(); }
    void OnContentChanged() override;
    bool IsTextAllowed(CString const& text) override;
    void PutAllowedText() override { m_mask.ShowMask(); }
    QString WholeText() override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

    // Gives a new field what it has of the edit: font, menu, the bits of a window's style, and its window.
    // Its range and filter come after.
    virtual void AddAdditionalEditFields(CTovEdit* edit, unsigned long style);
    ITovAngleField* CreateField(CTovAngleFieldSetup const& setup) override;
    void DestroyFields() override;
    int GetMaskIndent() override;
    int GetTextWidth(CString const& text) override;
    int GetEditButtonWidth() override;
    int GetCompanionsWidth() override;
    void FocusEditButton() override;
    void PostNextDlgCtl(int previous) override;
    void HoldChanges() override { CTovEdit::HoldChanges(); }
    void TellChanges(bool byUser) override { CTovEdit::TellChanges(byUser); }

 private:
    template <class Edit>
    class FieldOf;
    struct Child;

    template <class Edit>
    void MakeField(CTovAngleFieldSetup const& setup, Child& child);
    void PutFieldsIntoFocusChain();
    void EndFields();
    bool OnFieldKey(int virtualKey, CTovEdit& field);
    void OnFieldLeft();
    void OnFieldChanged();

    std::unique_ptr<CTovValueAngle> m_value;
    bool m_losesFields = false;
    std::vector<std::unique_ptr<Child>> m_children;  // in the order in which they were made
    bool m_fieldChanged = false;                     // and the parent is to be told
    bool m_fieldHadFocus = false;                    // since the focus came into the edit
};

class TOV_UI_API CTovEditLatitude : public CTovEditValueAngle {
    TOV_DYNCREATE(CTovEditLatitude, CTovEditValueAngle)
 public:
    using CTovInputControl::operator=;
    explicit CTovEditLatitude(QWidget* parent = nullptr);
    int ResetAttributes() override;
    eTovAngleKind GetAngleKind() const override { return eTovAngleLatitude; }
    int SetupInlineRect(CRect& container, CRect& control, HFONT font, unsigned long align) override;
};

class TOV_UI_API CTovEditLongitude : public CTovEditValueAngle {
    TOV_DYNCREATE(CTovEditLongitude, CTovEditValueAngle)
 public:
    using CTovInputControl::operator=;
    explicit CTovEditLongitude(QWidget* parent = nullptr);
    int ResetAttributes() override;
    eTovAngleKind GetAngleKind() const override { return eTovAngleLongitude; }
};

}  // namespace tov
