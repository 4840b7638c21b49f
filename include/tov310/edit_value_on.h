// Values and angles on an edit for floating numbers (edit_number.h). The templates put the engines of
// edit_value.h and edit_angle_mask.h on it, so that a toolkit adds its windows only:
//
//   class CTovEditValue : public CTovEditValueOn<CTovEditFloating> { ... };
//   class CTovEditValueAngle : public CTovEditValueAngleOn<CTovEditValue> { ... };
#pragma once

#include <tov310/edit_angle_mask.h>
#include <tov310/edit_number.h>
#include <tov310/edit_value.h>
#include <tov310/export.h>
#include <tov310/system.h>
#include <tov310/types.h>
#include <tov310/window.h>

namespace tov {

// A child edit as a field of an angle: sets it up when it is made, with its window or before. It borrows the
// edit, which is one for integers, for floating numbers or for a text.
class TOV_CORE_API CTovAngleFieldEdit : public ITovAngleField {
 public:
    CTovAngleFieldEdit(CTovAngleFieldSetup const& setup, CTovEditHost& edit, CTovEditIntegerHost* integer,
                       CTovEditFloatingHost* floating);
    CTovAngleFieldEdit(CTovAngleFieldEdit const&) = delete;
    CTovAngleFieldEdit& operator=(CTovAngleFieldEdit const&) = delete;
    ~CTovAngleFieldEdit() override;

    CTovInputControl& InputControl() override { return m_edit.InputControl(); }
    CString GetText() override { return m_edit.GetEditText(); }
    void SetText(CString const& text) override;
    double GetNumber() override;
    void SetNumber(double number) override;
    void TypeText(CString const& text) override { m_edit.SetEditText(text); }
    void TypeNumber(double number) override;
    void ForgetUndo() override { m_edit.Text().ForgetUndoRedo(); }
    void Empty() override { m_edit.Empty(); }
    void SetDecimals(int input, int display) override;
    void Move(CRect const& rect) override;
    void Spin(int up, int delta) override { m_edit.DispatchSpinDeltapos(up, delta); }
    bool HasFocus() override;
    void GetSelection(int& start, int& end) override { m_edit.GetEditSel(start, end); }
    void SetSelection(int start, int end) override;

 private:
    CTovEditHost& m_edit;
    CTovEditIntegerHost* const m_integer;
    CTovEditFloatingHost* const m_floating;
    bool const m_isUnsigned;
    int m_decimals = 0;
};

// An edit with a value, whose derived classes have the value. Floating is a CTovEditFloatingOn.
template <typename Floating>
class CTovEditValueOn : public Floating, public CTovEditValueHost {
 public:
    using Floating::Floating;

    // In the standard unit.
    virtual double GetValue() { return m_units.GetValue(); }
    virtual int SetValue(double standard) { return m_units.SetValue(standard); }
    int SetRange(double minimum, double maximum) override { return m_units.SetRange(minimum, maximum); }
    void GetRange(double& minimum, double& maximum) const override { m_units.GetRange(minimum, maximum); }

    // Without marks of emptiness and change; in the shown and in the standard unit.
    virtual void SafeSetDouble(double shown) {
        this->m_number.value = shown;
        this->ShowValue();
        this->Text().ForgetUndoRedo();
    }
    virtual int SafeSetValue(double standard) { return m_units.SafeSetValue(standard); }

    // Shows the unit in this control of the parent, and hides it with the edit.
    virtual void UnitAbbreviation(unsigned id) {
        CWnd const* const around = this->GetParent();
        UnitAbbreviation(around != nullptr ? around->GetDlgItem(static_cast<int>(id)) : HWND{});
    }
    void UnitAbbreviation(HWND label) {
        m_label = label;
        if (this->GetSafeHwnd() && (this->GetStyle() & WS_VISIBLE) == 0) ShowUnitAbbreviation(0);
        this->DisplayUnitAbbreviation();
    }
    void DisplayUnitAbbreviation() override {
        CString words;
        this->GetUnitAbbreviationText(words);
        if (CWnd* const label = CWnd::FromHandlePermanent(m_label)) label->SetWindowText(words.c_str());
    }
    // For when the edit is shown or hidden.
    void ShowUnitAbbreviation(int show) {
        if (CWnd* const label = CWnd::FromHandlePermanent(m_label)) label->ShowWindow(show);
    }

    // Gives the settings another unit, and follows settings that have got one. What is no unit of this kind
    // of value changes nothing.
    virtual void SetUnit(unsigned unit) { m_units.SetUnit(static_cast<long>(unit)); }
    virtual void OnUnitChanged() { m_units.UnitChanged(); }

    int ResetAttributes() override {
        if (Floating::ResetAttributes() == 0) return 0;
        m_units.Reset();
        return 1;
    }
    void InitializeEdit() override {
        Floating::InitializeEdit();
        m_units.HoldUnit();
    }
    void Empty() override {
        m_units.Typed();  // what is shown is nobody's value any more
        Floating::Empty();
    }
    void OnEditChanged(unsigned id) override {
        if (this->IgnoreEditChanged() != 0) return;
        if (this->Text().IsTrimming() == 0) m_units.Typed();
        Floating::OnEditChanged(id);
    }
    void OnUndoRedoItemRestored(CTovEditUndoRedoItem const* item) override {
        Floating::OnUndoRedoItemRestored(item);
        m_units.Restored();
    }
    void ReadInput(CString& words) const override {
        m_units.ReadInput(words);
        Floating::ReadInput(words);
    }

    CTovInputControl& InputControl() override { return *this; }

 protected:
    CTovInputControl::eState InternalValidate(double shown, CString* message) override {
        return m_units.InternalValidate(shown, message);
    }
    using Floating::InternalValidate;

    double GetShownNumber() override { return this->m_number.value; }
    void SetShownNumber(double number) override { this->InternalSetDouble(number); }
    void SafeSetShownNumber(double number) override { SafeSetDouble(number); }
    void EmptyShownNumber() override { this->Empty(); }
    void GetShownRange(double& minimum, double& maximum) override {
        minimum = this->m_number.minimum;
        maximum = this->m_number.maximum;
    }
    int SetShownRange(double minimum, double maximum) override {
        return this->m_number.SetRange(minimum, maximum);
    }
    CString FormatNumber(double number) override {
        CString const display = this->GetDisplayFormat();
        return this->m_number.Print(display.empty() ? this->m_number.inputFormat : display, number);
    }

    mutable CTovEditValueUnits m_units{*this};

 private:
    HWND m_label;
};

// An edit with an angle, whose derived classes have the value and make the child edits. Value is a
// CTovEditValueOn.
template <typename Value>
class CTovEditValueAngleOn : public Value, public CTovEditAngleHost {
 public:
    using Value::GetRange;
    using Value::SetDisplayFormat;
    using Value::SetInputFormat;
    using Value::Value;

    CTovEditAngleMask& Mask() { return m_mask; }

    // Radians.
    double GetValue() override { return m_mask.GetValue(); }
    int SetValue(double radians) override { return m_mask.SetValue(radians); }
    int SetDouble(double shown) override {
        return m_mask.IsSplit() ? m_mask.SetShown(shown, false) : Value::SetDouble(shown);
    }
    int SafeSetValue(double radians) override { return m_mask.SafeSetValue(radians); }
    void SafeSetDouble(double shown) override {
        if (m_mask.IsSplit())
            m_mask.SetShown(shown, true);
        else
            Value::SafeSetDouble(shown);
    }
    void GetRange(double& minimum, double& maximum) const override { m_mask.GetRange(minimum, maximum); }

    double ConvertStdTo(double radians, int usePrecision, int useLimit) override {
        return m_mask.ConvertStdTo(radians, usePrecision, useLimit);
    }
    double ConvertToStd(double shown, int usePrecision, int useLimit) override {
        return m_mask.ConvertToStd(shown, usePrecision, useLimit);
    }
    double BoundToShown(double radians) override { return m_mask.BoundToShown(radians); }
    double BoundToStd(double shown) override { return m_mask.BoundToStd(shown); }
    void GetUnitAbbreviationText(CString& words) override { m_mask.GetUnitAbbreviationText(words); }
    int ReadQuantity(CString& words, double& radians) override { return m_mask.ReadQuantity(words, radians); }

    virtual void SetSecOnly(int secOnly) { m_mask.SetSecOnly(secOnly); }
    virtual int GetSecOnly() const { return m_mask.GetSecOnly(); }
    virtual void SetSignType(eSignType type) { m_mask.SetSignType(type); }
    virtual eSignType GetSignType() const { return m_mask.GetSignType(); }
    virtual void SetLimitToCircle(int on) { m_mask.SetLimitToCircle(on); }
    virtual int GetLimitToCircle() const { return m_mask.GetLimitToCircle(); }
    void SetUnit(unsigned unit) override { m_mask.SetUnit(static_cast<long>(unit)); }
    void OnUnitChanged() override { m_mask.UnitChanged(); }
    void SetDisplayFormat(unsigned decimals) override {
        Value::SetDisplayFormat(decimals);
        m_mask.SetDisplayDecimals(static_cast<int>(decimals));
    }
    void SetInputFormat(unsigned decimals) override {
        Value::SetInputFormat(decimals);
        m_mask.SetInputDecimals(static_cast<int>(decimals));
    }

    virtual int CreateAdditionalEditFields(int unit) { return m_mask.CreateAdditionalEditFields(unit); }
    virtual void DestroyAdditionalEditFields() { m_mask.DestroyAdditionalEditFields(); }
    virtual int ActiveChildEdit() const { return m_mask.ActiveChildEdit(); }
    virtual int GetChildEditFocus() const { return m_mask.GetChildEditFocus(); }
    virtual void SetChildEditFocus(eSetChildEditFocus focus) { m_mask.SetChildEditFocus(focus); }
    virtual int FindClosestChildEdit(POINT const& point) const { return m_mask.FindClosestChildEdit(point); }
    virtual bool IsChildEdit(CWnd* window) const { return m_mask.IsChildEdit(window); }
    virtual void PrevChildEdit() { m_mask.PrevChildEdit(); }
    virtual void NextChildEdit() { m_mask.NextChildEdit(); }

    int ResetAttributes() override {
        if (Value::ResetAttributes() == 0) return 0;
        m_mask.Reset();
        return 1;
    }
    int IsEmpty() override { return m_mask.IsSplit() ? m_mask.IsEmpty() : Value::IsEmpty(); }
    void Empty() override {
        m_mask.AsOneChange(false, [this] {
            CTovInputControl::CTovNotifyEmptyChanged const scope(*this);
            m_mask.Empty();
            Value::Empty();
        });
    }
    int SetEmptyAllowed(int allowed) override {
        m_mask.SetEmptyAllowed(allowed);
        return Value::SetEmptyAllowed(allowed);
    }
    int SetReadOnlyMode(int readOnly) override {
        m_mask.SetReadOnlyMode(readOnly);
        return Value::SetReadOnlyMode(readOnly);
    }
    int GetChangedByUser() const override {
        return Value::GetChangedByUser() != 0 || m_mask.GetChangedByUser() != 0;
    }
    void SetChangedByUser(int changed) override {
        Value::SetChangedByUser(changed);
        m_mask.SetChangedByUser(changed);
    }
    CTovInputControl::eState OnValidate(CString* message) override {
        return m_mask.IsSplit() ? m_mask.InternalValidate(message) : Value::OnValidate(message);
    }

    // What was put in before there was a window stays.
    void InitializeEdit() override {
        m_mask.AsOneChange(false, [this] {
            CTovInputControl::CTovNotifyEmptyChanged const scope(*this);
            bool const isEmpty = IsEmpty() != 0;
            double const radians = GetValue();
            Value::InitializeEdit();
            m_mask.Initialize();
            if (!isEmpty) m_mask.SetValue(radians);
        });
    }
    void DispatchSpinDeltapos(int up, int delta) override {
        if (!m_mask.IsSplit()) return Value::DispatchSpinDeltapos(up, delta);
        if (this->GetReadOnlyMode() != 0) return;
        m_mask.AsOneChange(true, [this, up, delta] { m_mask.DispatchSpinDeltapos(up, delta); });
    }
    void OnSpinDeltapos(int up, int delta) override {
        CTovInputControl::CTovNotifyEmptyChanged const scope(*this);
        double permitted = 0;
        bool const isListed = this->m_number.spinValues.size() >= 2;
        if (isListed)
            permitted = this->ConvertToStd(this->OnSpinStepToNextValue(up, this->InternalGetDouble()), 0, 0);
        double radians = 0;
        if (m_mask.SpinTarget(up, delta, this->GetSpinDeltaFloating(), this->GetWrapRange(),
                              isListed ? &permitted : nullptr, radians) == 0) {
            return this->Beep();
        }
        SetValue(radians);
        this->SelectAll();
        SetChangedByUser(1);
    }

    // While the edit is split no text but the mask gets into its window.
    void SetEditText(CString const& words) override {
        if (m_mask.IsTextAllowed()) Value::SetEditText(words);
    }

 protected:
    void SafeSetShownNumber(double number) override { Value::SafeSetDouble(number); }
    double InternalGetDouble() override {
        return m_mask.IsSplit() ? m_mask.GetShown() : Value::InternalGetDouble();
    }
    bool HasWindow() override { return static_cast<bool>(this->GetSafeHwnd()); }
    void SetMaskText(CString const& words) override { this->Text().ShowText(words); }
    CRect GetMaskRect() override { return this->GetClientRect(); }
    int GetTextWidth(CString const& words) override {
        return TovGetSystem()->GetTextExtent(this->GetFont(), words.c_str()).cx;
    }

    mutable CTovEditAngleMask m_mask{*this, this->m_units};
};

}  // namespace tov
