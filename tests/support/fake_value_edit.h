// Edits of values without a window, and the child edits of an angle's fields.
#pragma once

#include <tov310/edit_angle_mask.h>
#include <tov310/edit_value.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace tov::test {

inline std::string Fixed(double number, int decimals) {
    std::array<char, 400> text{};
    std::snprintf(text.data(), text.size(), "%.*f", decimals, number);
    return text.data();
}

// Without a window a control is exempt from validation; what the edits hold is asked for directly.
struct FakeInputControl : CTovInputControl {
    int IsEmpty() override { return 1; }
    int SetReadOnlyMode(int readOnly) override { return CTovInputControl::SetReadOnlyMode(readOnly); }
    eState OnValidate(CString*) override { return eStateValid; }
    CWnd* GetWnd() override { return nullptr; }
    int ValidateIgnore() override { return GetReadOnlyMode(); }
};

// Holds a number as an edit does.
struct FakeValueEdit : CTovEditValueHost, FakeInputControl {
    explicit FakeValueEdit(CTovValue& itsValue) : value(itsValue) {}

    CTovValue* TovValue() override { return &value; }
    CTovInputControl& InputControl() override { return *this; }
    int IsEmpty() override { return empty; }
    double GetShownNumber() override { return number; }
    void SetShownNumber(double shown) override {
        SafeSetShownNumber(shown);
        SetChangedByUser(0);
        empty = 0;
    }
    void SafeSetShownNumber(double shown) override { number = shown; }
    void EmptyShownNumber() override {
        number = 0;
        empty = 1;
    }
    void GetShownRange(double& minimum, double& maximum) override {
        minimum = least;
        maximum = most;
    }
    int SetShownRange(double minimum, double maximum) override {
        if (minimum > maximum) return 0;
        least = minimum;
        most = maximum;
        return 1;
    }
    CString FormatNumber(double shown) override { return Fixed(shown, 3); }
    void DisplayUnitAbbreviation() override { GetUnitAbbreviationText(label); }

    void Type(double shown) {
        number = shown;
        empty = 0;
        SetChangedByUser(1);
        units.Typed();
    }

    CTovValue& value;
    CTovEditValueUnits units{*this};
    double number = 0;
    int empty = 1;
    double least = -std::numeric_limits<double>::max();
    double most = std::numeric_limits<double>::max();
    CString label;
};

// A child edit. Its text follows the number and the other way round; a range check as numeric edits have it.
struct FakeField : ITovAngleField, FakeInputControl {
    FakeField(CTovAngleFieldSetup const& asked, int& itsFocus) : setup(asked), focus(itsFocus) {}

    CTovInputControl& InputControl() override { return *this; }
    int IsEmpty() override { return raw.empty(); }
    eState OnValidate(CString* message) override {
        bool const isWithin = IsLetter() || (number >= setup.minimum && number <= setup.maximum);
        if (isWithin) return eStateValid;
        if (message != nullptr) *message = "field";
        return eStateInvalid;
    }
    void SetFocusInputControl() override { focus = setup.field; }

    CString GetText() override { return text; }
    void SetText(CString const& to) override { raw = text = to; }
    void ShowText(CString const& to) override { text = to; }
    void TypeText(CString const& to) override {
        SetText(to);
        number = std::strtod(to.c_str(), nullptr);
        SetChangedByUser(1);
    }
    double GetNumber() override { return number; }
    void SetNumber(double to) override {
        SetText(Fixed(to, setup.displayDecimals));
        number = to;
        SetChangedByUser(0);
    }
    void TypeNumber(double to) override { TypeText(Fixed(to, setup.inputDecimals)); }
    void Empty() override {
        SetText("");
        number = 0;
    }
    void SetDecimals(int input, int display) override {
        setup.inputDecimals = input;
        setup.displayDecimals = display;
    }
    void Move(CRect const& rect) override { setup.rect = rect; }
    void Spin(int up, int delta) override { TypeNumber(number + (up != 0 ? delta : -delta)); }
    bool HasFocus() override { return focus == setup.field; }
    void GetSelection(int& from, int& to) override {
        from = start;
        to = end;
    }
    void SetSelection(int from, int to) override {
        start = from;
        end = to;
    }

    bool IsLetter() const { return setup.field == eTovFieldSign; }

    CTovAngleFieldSetup setup;
    int& focus;
    CString text;
    CString raw;  // what it holds
    double number = 0;
    int start = 0;
    int end = 0;
};

struct FakeAngleEdit : FakeValueEdit, CTovEditAngleHost {
    FakeAngleEdit(CTovValue& itsValue, eTovAngleKind itsKind, eSignType type)
        : FakeValueEdit(itsValue), kind(itsKind) {
        mask.SetSignType(type);
        mask.Initialize();
    }

    double ConvertStdTo(double x, int precision, int limit) override {
        return mask.ConvertStdTo(x, precision, limit);
    }
    double ConvertToStd(double x, int precision, int limit) override {
        return mask.ConvertToStd(x, precision, limit);
    }
    double BoundToShown(double x) override { return mask.BoundToShown(x); }
    double BoundToStd(double x) override { return mask.BoundToStd(x); }
    void GetUnitAbbreviationText(CString& unit) override { mask.GetUnitAbbreviationText(unit); }
    int IsEmpty() override { return mask.IsSplit() ? mask.IsEmpty() : empty; }
    int GetChangedByUser() const override {
        return FakeValueEdit::GetChangedByUser() != 0 || mask.GetChangedByUser() != 0;
    }
    void SetChangedByUser(int changed) override {
        FakeValueEdit::SetChangedByUser(changed);
        mask.SetChangedByUser(changed);
    }
    void EmptyShownNumber() override {
        FakeValueEdit::EmptyShownNumber();
        mask.Empty();
    }

    eTovAngleKind GetAngleKind() const override { return kind; }
    ITovAngleField* CreateField(CTovAngleFieldSetup const& setup) override {
        if (static_cast<int>(fields.size()) == fieldsToMake) return nullptr;
        fields.push_back(std::make_unique<FakeField>(setup, focus));
        return fields.back().get();
    }
    void DestroyFields() override {
        fields.clear();
        focus = -1;
    }
    bool HasWindow() override { return window; }
    void SetMaskText(CString const& to) override {
        if (mask.IsTextAllowed()) text = to;
    }
    CRect GetClientRect() override { return {0, 0, 400, 20}; }
    // A font with narrow and wide characters.
    int GetTextWidth(CString const& of) override {
        int width = 0;
        for (char const c : of)
            width += (static_cast<unsigned char>(c) & 0xC0) == 0x80 ? 4
                     : c >= '0' && c <= '9'                         ? 7
                     : c == 'W'                                     ? 11
                                                                    : 3;
        return width;
    }
    int GetEditButtonWidth() override { return buttonWidth; }
    void FocusEditButton() override { focus = buttonFocus; }
    void PostNextDlgCtl(int previous) override {
        focus = -1;
        left = previous != 0 ? 'p' : 'n';
    }

    FakeField& operator[](int field) { return *fields.at(static_cast<std::size_t>(field)); }
    void TypeFields(std::vector<std::string> const& texts) {
        for (std::size_t i = 0; i < texts.size(); ++i)
            (*this)[static_cast<int>(i)].TypeText(texts[i]);
    }

    static constexpr int buttonFocus = 9;

    eTovAngleKind const kind;
    CTovEditAngleMask mask{*this, units};
    std::vector<std::unique_ptr<FakeField>> fields;
    int fieldsToMake = 4;
    bool window = true;
    int focus = -1;  // of the field, or of the button
    int buttonWidth = 0;
    char left = 0;  // where the focus was given: next or previous
    CString text;
};

}  // namespace tov::test
