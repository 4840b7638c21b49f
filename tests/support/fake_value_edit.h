// Edits of values and angles without a screen.
#pragma once

#include <tov310/edit_value_on.h>

#include "support/fake_edit.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace tov::test {

inline std::string Fixed(double number, int decimals) {
    std::array<char, 400> text{};
    std::snprintf(text.data(), text.size(), "%.*f", decimals, number);
    return text.data();
}

class FakeValueEdit : public CTovEditValueOn<FakeFloatingEdit> {
 public:
    FakeValueEdit(FakeDesk& desk, CWnd* form, CTovValue& itsValue)
        : CTovEditValueOn<FakeFloatingEdit>(desk, form, 7), value(itsValue) {}

    CTovValue* TovValue() override { return &value; }
    void AddCurrentToLastItems() override {}  // which would go to the disk each time
    CTovEditDouble& Number() { return m_number; }

    // All digits, as a user may.
    void TypeNumber(double number) {
        std::array<char, 400> digits{};
        SetEditText(
            std::string(digits.data(), std::to_chars(digits.data(), digits.data() + 400, number).ptr));
    }
    void EnterAndLeave() {
        SetFocus();
        Leave();
    }

    CTovValue& value;
};

class FakeAngleEdit : public CTovEditValueAngleOn<FakeValueEdit> {
 public:
    FakeAngleEdit(FakeDesk& desk, CWnd* form, CTovValue& itsValue, eTovAngleKind itsKind, eSignType type)
        : CTovEditValueAngleOn<FakeValueEdit>(desk, form, itsValue), kind(itsKind) {
        SetSignType(type);
        InitializeEdit();
    }

    void DisplayUnitAbbreviation() override { GetUnitAbbreviationText(label); }
    eTovAngleKind GetAngleKind() const override { return kind; }
    ITovAngleField* CreateField(CTovAngleFieldSetup const& setup) override {
        if (static_cast<int>(fields.size()) == fieldsToMake) return nullptr;
        fields.emplace_back();
        fields.back().setup = setup;
        if (setup.field == eTovFieldSign) return Make<FakeEdit>(setup, nullptr, nullptr);
        if (setup.field == eTovFieldSeconds) return Make<FakeFloatingEdit>(setup, nullptr, this);
        return Make<FakeIntegerEdit>(setup, this, nullptr);
    }
    void DestroyFields() override { fields.clear(); }
    CRect GetMaskRect() override { return {0, 0, 400, 20}; }
    // A font with narrow and wide characters.
    int GetTextWidth(CString const& of) override {
        int width = 0;
        for (char32_t const c : Wide(of))
            width += c > 0xFF ? 12 : c >= U'0' && c <= U'9' ? 7 : c == U'W' ? 14 : 3;
        return width;
    }
    int GetEditButtonWidth() override { return buttonWidth; }
    void FocusEditButton() override { m_desk->MoveFocus(button); }
    void PostNextDlgCtl(int previous) override {
        left = previous != 0 ? 'p' : 'n';
        m_desk->MoveFocus({});
    }

    FakeEdit& operator[](int field) { return *fields.at(static_cast<std::size_t>(field)).edit; }
    void TypeFields(std::vector<std::string> const& texts) {
        for (std::size_t i = 0; i < texts.size(); ++i)
            (*this)[static_cast<int>(i)].SetEditText(texts[i]);
    }
    std::string Fields() {
        std::string all;
        for (auto const& field : fields)
            all.append("|").append(field.edit->text);
        return all.erase(0, 1);
    }

    struct Child {
        CTovAngleFieldSetup setup;
        std::unique_ptr<FakeEdit> edit;
        std::unique_ptr<CTovAngleFieldEdit> field;
    };

    static constexpr HWND button{1u << 30};

    eTovAngleKind const kind;
    std::vector<Child> fields;
    int fieldsToMake = 4;
    int buttonWidth = 0;
    CString label;
    char left = 0;  // where the focus was given: next or previous

 private:
    template <class Edit, class Integer, class Floating>
    ITovAngleField* Make(CTovAngleFieldSetup const& setup, Integer, Floating) {
        auto edit = std::make_unique<Edit>(*m_desk, this, 100 + setup.field);
        edit->ModifyStyle(0, setup.style & 0xFFFF);
        edit->InitializeEdit();
        CTovEditIntegerHost* integer = nullptr;
        CTovEditFloatingHost* floating = nullptr;
        if constexpr (std::is_pointer_v<Integer>) integer = edit.get();
        if constexpr (std::is_pointer_v<Floating>) floating = edit.get();
        Child& child = fields.back();
        child.field = std::make_unique<CTovAngleFieldEdit>(setup, *edit, integer, floating);
        child.edit = std::move(edit);
        return child.field.get();
    }
};

}  // namespace tov::test
