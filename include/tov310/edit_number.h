// Edits that hold a number beside their text. Without the focus the number is the truth; while the user
// types it follows the text. Showing, focusing, leaving and validating never change it.
//
// As with edit_text.h an edit has the engine as a member and inherits what a host may override. The templates
// at the end put both on an edit:
//
//   class CTovEditFloating : public CTovEditFloatingOn<CTovEdit> { ... };
#pragma once

#include <tov310/edit_host.h>
#include <tov310/edit_text.h>
#include <tov310/export.h>
#include <tov310/input_control.h>
#include <tov310/resources.h>
#include <tov310/types.h>

#include <cmath>
#include <memory>
#include <vector>

namespace tov {

class CTovEditLong;
class CTovEditDouble;

// What an edit for integers offers to be overridden.
class TOV_CORE_API CTovEditIntegerHost {
 public:
    // The kind of number sets range, filter and format. The unsigned ones compare as unsigned numbers.
    enum eType {
        eShort = 0,
        eUshort = 1,
        eLong = 2,  // 32 bits, as the next three
        eUlong = 3,
        eInt = 4,
        eUint = 5,
    };

    CTovEditIntegerHost() = default;
    CTovEditIntegerHost(CTovEditIntegerHost const&) = delete;
    CTovEditIntegerHost& operator=(CTovEditIntegerHost const&) = delete;
    virtual ~CTovEditIntegerHost();

    // A spin whose steps walk a list; less than two values are no list.
    virtual int CreateSpinButton(std::vector<long> const& values);

    virtual long GetRawValue();

    // A zero with a sign, "-0", such as the degrees of -0° 30' have; only with support for it, which the
    // unsigned types refuse.
    virtual int GetIsNegativeZero();
    virtual void SetIsNegativeZero();
    virtual int SetSupportNegativeZero(int support);
    virtual int GetSupportNegativeZero() const;

    // Both ends belong to it. 0, and nothing changes: the minimum is above the maximum; with eUshort one is
    // none of its numbers; with eShort the minimum is none of its numbers (the maximum may be larger).
    virtual int SetRange(long minimum, long maximum);
    virtual void GetRange(long& minimum, long& maximum);

    // Brings format, range and filter of the type. Other numbers than those of eType change nothing.
    virtual void SetType(long type);
    virtual long GetType() const;

    // Whether the list of the spin has the value; 1 without a list.
    virtual int IsValidSpinButtonValue(int value);

 protected:
    friend class CTovEditLong;

    // The next value of the list, going round: behind the greatest entry not above the value, or in front of
    // the smallest one not below it.
    virtual long OnSpinStepToNextValue(int up, long value);
    virtual CTovInputControl::eState InternalValidate(long value, CString* message);
    virtual long InternalGetLong();
    virtual void InternalSetLong(long value, int negativeZero);
    virtual void SetupDefaultRange();
    virtual void SetupInputValueFormat();
    virtual void SetupAllowedChars();

 private:
    CTovEditLong* m_long = nullptr;
};

// What an edit for floating numbers offers to be overridden.
class TOV_CORE_API CTovEditFloatingHost {
 public:
    enum eType {
        eFloat = 0,  // the range of single precision; the number itself is a double
        eDouble = 1,
    };

    CTovEditFloatingHost() = default;
    CTovEditFloatingHost(CTovEditFloatingHost const&) = delete;
    CTovEditFloatingHost& operator=(CTovEditFloatingHost const&) = delete;
    virtual ~CTovEditFloatingHost();

    // A spin whose steps walk a list; less than two values are no list.
    virtual int CreateSpinButton(std::vector<double> const& values);

    virtual double GetRawValue();

    // Formats of printf with one conversion of a floating number; a number of decimals is short for "%.Nf".
    // An empty input format is "%f". The display format is shown without the focus.
    virtual void SetDisplayFormat(unsigned decimals);
    virtual CString GetInputFormat();
    virtual void SetInputFormat(unsigned decimals);
    virtual void SetInputFormat(HINSTANCE module, unsigned id);
    virtual void SetInputFormat(CString const& format);

    // Both ends belong to it. 0, and nothing changes, when the minimum is above the maximum, when one is no
    // number, and with eFloat when one lies outside of its range.
    virtual int SetRange(double minimum, double maximum);
    virtual void GetRange(double& minimum, double& maximum) const;

    virtual void SetType(long type);
    virtual long GetType() const;

    // Zeros behind the first decimal are not shown; initially so unless the edit is aligned at the right.
    virtual void SetTrimTrailingZeros(int trim);
    virtual int GetTrimTrailingZeros() const;

    // One step of the spin; below 2^-52 the step of the edit (SetSpinDelta) is taken. It is divided by 10
    // until ten of them fit into the range.
    virtual void SetSpinDeltaFloating(double step);
    virtual double GetSpinDeltaFloating() const;
    double GetSpinStep() const;  // what one step is by that

    // 0 when there is a list and all its values lie within 2^-52 of this one.
    virtual int IsValidSpinButtonValue(double value) const;

 protected:
    friend class CTovEditDouble;

    virtual double OnSpinStepToNextValue(int up, double value);
    virtual CTovInputControl::eState InternalValidate(double value, CString* message);
    virtual double InternalGetDouble();
    virtual void InternalSetDouble(double value);
    virtual void SetupDefaultRange();
    virtual void SetupDefaultInputValueFormat();
    virtual void SetupAllowedChars();
    virtual void AdvancedFormatDouble(CString& text, double const& value) const;

 private:
    CTovEditDouble* m_double = nullptr;
};

// The integer of an edit.
class TOV_CORE_API CTovEditLong {
 public:
    // Both are borrowed. A new one is of type eLong.
    CTovEditLong(CTovEditText& text, CTovEditIntegerHost& host);
    CTovEditLong(CTovEditLong const&) = delete;
    CTovEditLong& operator=(CTovEditLong const&) = delete;
    ~CTovEditLong();

    // The number at the start of a text. Of a signed one the sign may stand anywhere in it. What is too large
    // is limited.
    static long Read(CString const& text, bool isUnsigned);

    // The value as text; the display format may be any of printf's for integers.
    CString InputText() const;
    CString DisplayText() const;

    // What the operations of the edit do with the number.
    void OnEditChanged();
    void ShowInputValue();
    void ShowDisplayValue();
    void ConvertDisplayToInputPos(int& position) const;
    CTovInputControl::eState OnValidate(CString* message);
    void OnSpinDeltapos(int up, int delta);
    // Wide forms and other minus signs as plain ones.
    void ReadInput(CString& text) const;
    void Clear();
    void Reset();

    int CreateSpinButton(std::vector<long> const& values);
    int SetRange(long newMinimum, long newMaximum);
    void SetType(long newType);
    int SetSupportNegativeZero(int support);
    int GetIsNegativeZero() const { return supportsNegativeZero != 0 && value == 0 && negativeZero != 0; }
    int IsValidSpinButtonValue(long candidate) const;
    long OnSpinStepToNextValue(int up, long from) const;
    CTovInputControl::eState InternalValidate(long candidate, CString* message) const;
    long InternalGetLong();
    void InternalSetLong(long newValue, int isNegativeZero);
    void SetupDefaultRange();
    void SetupInputValueFormat();
    void SetupAllowedChars();

    bool IsUnsigned() const { return (type & 1) != 0; }

    CTovEditIntegerHost::eType type = CTovEditIntegerHost::eLong;
    int supportsNegativeZero = 0;
    int negativeZero = 0;
    long value = 0;
    long minimum = 0;
    long maximum = 0;
    CString inputFormat;
    std::vector<long> spinValues;

 private:
    template <typename T>
    bool NextValue(int up, long current, T step, long& next) const;
    bool IsInRange(long candidate) const;

    CTovEditText& m_text;
    CTovEditIntegerHost& m_host;
};

// The floating number of an edit.
class TOV_CORE_API CTovEditDouble {
 public:
    // Both are borrowed. A new one is of type eDouble. The decimal separator and the exponent's characters
    // are those of the C library's locale of this moment; later changes of the locale do not matter.
    CTovEditDouble(CTovEditText& text, CTovEditFloatingHost& host);
    CTovEditDouble(CTovEditDouble const&) = delete;
    CTovEditDouble& operator=(CTovEditDouble const&) = delete;
    ~CTovEditDouble();

    // The number at the start of a text; a sign may stand anywhere in it, but one right behind "e" is the
    // exponent's. 0 for what is too large.
    double Read(CString const& text) const;

    // A value by a format of printf, as the edit shows it.
    CString Print(CString const& format, double candidate) const;
    CString InputText() const;
    CString DisplayText() const;

    // What the operations of the edit do with the number.
    void InitializeEdit();
    void OnEditChanged();
    void ShowInputValue();
    void ShowDisplayValue();
    void ConvertDisplayToInputPos(int& position) const;
    CTovInputControl::eState OnValidate(CString* message);
    void OnSpinDeltapos(int up, int delta);
    // The same, and the one comma or point between digits, or that is typed alone, as the decimal separator;
    // where both occur, the other kind separates thousands. Of a text with words around a number the number
    // stays; nothing of one that would be another number without them, as "12 m 5", "0x10" or "12.5.6".
    void ReadInput(CString& text) const;
    void Clear() { value = 0; }
    void Reset();

    // One step of the spin for a delta of the edit's: spinDelta where it is one, and at most a tenth of the
    // range.
    double SpinStep(int delta) const;
    double SpinStep() const;

    // The format with so many decimals.
    static CString DecimalsFormat(unsigned decimals);

    int CreateSpinButton(std::vector<double> const& values);
    void SetDisplayDecimals(unsigned decimals);
    void SetInputFormat(CString const& format);
    int SetRange(double newMinimum, double newMaximum);
    void SetType(long newType);
    int IsValidSpinButtonValue(double candidate) const;
    double OnSpinStepToNextValue(int up, double from) const;
    CTovInputControl::eState InternalValidate(double candidate, CString* message) const;
    double InternalGetDouble();
    void InternalSetDouble(double newValue);
    void SetupDefaultRange();
    void SetupAllowedChars();
    void AdvancedFormat(CString& text, double candidate) const;

    CTovEditFloatingHost::eType type = CTovEditFloatingHost::eDouble;
    double value = 0;
    double minimum = 0;
    double maximum = 0;
    int trimTrailingZeros = 1;
    CString decimalSeparator;
    CString exponentText;
    CString inputFormat;
    double spinDelta = 0;
    std::vector<double> spinValues;

 private:
    void ReadLocale();
    CString Trimmed(CString number) const;
    bool IsInRange(double candidate) const { return candidate >= minimum && candidate <= maximum; }

    CTovEditText& m_text;
    CTovEditFloatingHost& m_host;
};

// An edit with a number: what integers and floating numbers do alike. Edit is a window, a CTovInputControl
// and a CTovEditHost; Number is the engine of a NumberHost.
template <typename Edit, typename NumberHost, typename Number>
class CTovEditNumberOn : public Edit, public NumberHost {
 public:
    using Edit::CreateSpinButton;
    using Edit::Edit;
    using NumberHost::CreateSpinButton;

    CTovInputControl::eState OnValidate(CString* message) override { return m_number.OnValidate(message); }
    int ResetAttributes() override {
        if (Edit::ResetAttributes() == 0) return 0;
        m_number.Reset();
        return 1;
    }
    void Empty() override {
        CTovInputControl::CTovNotifyEmptyChanged const scope(this->InputControl());
        m_number.Clear();
        Edit::Empty();
    }
    void OnEditChanged(unsigned id) override {
        if (this->IgnoreEditChanged() != 0) return;
        CTovInputControl::CTovNotifyEmptyChanged const scope(this->InputControl());
        Edit::OnEditChanged(id);
        m_number.OnEditChanged();
    }
    void OnSpinDeltapos(int up, int delta) override { m_number.OnSpinDeltapos(up, delta); }
    void ReadInput(CString& words) const override { m_number.ReadInput(words); }
    void ConvertDisplayToInputPos(int& position) override { m_number.ConvertDisplayToInputPos(position); }
    void ShowDisplayValue() override { m_number.ShowDisplayValue(); }
    void ShowInputValue() override { m_number.ShowInputValue(); }

 protected:
    using Edit::InternalValidate;
    using NumberHost::InternalValidate;

    Number m_number{this->Text(), *this};
};

// An edit with an integer.
template <typename Edit>
class CTovEditIntegerOn : public CTovEditNumberOn<Edit, CTovEditIntegerHost, CTovEditLong> {
    using Base = CTovEditNumberOn<Edit, CTovEditIntegerHost, CTovEditLong>;

 public:
    using Base::Base;

    short GetShort() override { return static_cast<short>(this->InternalGetLong()); }
    int SetShort(short value) override { return Set(value); }
    unsigned short GetUshort() override { return static_cast<unsigned short>(this->InternalGetLong()); }
    int SetUshort(unsigned short value) override { return Set(value); }
    long GetLong() override { return this->InternalGetLong(); }
    int SetLong(long value) override { return Set(value); }
    unsigned long GetUlong() override { return static_cast<unsigned long>(this->InternalGetLong()); }
    int SetUlong(unsigned long value) override { return Set(static_cast<long>(value)); }
    int GetInt() override { return static_cast<int>(this->InternalGetLong()); }
    int SetInt(int value) override { return Set(value); }
    unsigned int GetUint() override { return static_cast<unsigned int>(this->InternalGetLong()); }
    int SetUint(unsigned int value) override { return Set(static_cast<long>(value)); }

    // Of a pasted "12.5" the digits stay, and that something was left out is to be heard.
    void OnInputLost() override { this->Beep(); }

 private:
    int Set(long value) {
        this->InternalSetLong(value, 0);
        return 1;
    }
};

// An edit with a floating number.
template <typename Edit>
class CTovEditFloatingOn : public CTovEditNumberOn<Edit, CTovEditFloatingHost, CTovEditDouble> {
    using Base = CTovEditNumberOn<Edit, CTovEditFloatingHost, CTovEditDouble>;

 public:
    using Base::Base;
    using CTovEditFloatingHost::SetDisplayFormat;
    using Edit::SetDisplayFormat;

    // Setting answers 0 and changes nothing for what is no finite number.
    float GetFloat() override { return static_cast<float>(this->InternalGetDouble()); }
    int SetFloat(float value) override { return SetDouble(static_cast<double>(value)); }
    double GetDouble() override { return this->InternalGetDouble(); }
    int SetDouble(double value) override {
        if (!std::isfinite(value)) return 0;
        this->InternalSetDouble(value);
        return 1;
    }
    void InitializeEdit() override {
        Base::InitializeEdit();
        this->m_number.InitializeEdit();
    }

    // What is undone brings back the number that stood behind the text, to the last bit.
    void FillUndoRedoItemWithCurrent(CTovEditUndoRedoItem* item) override {
        Base::FillUndoRedoItemWithCurrent(item);
        item->m_value = this->m_number.value;
    }
    void OnUndoRedoItemRestored(CTovEditUndoRedoItem const* item) override {
        if (item->m_value) this->m_number.value = *item->m_value;
    }
};

}  // namespace tov
