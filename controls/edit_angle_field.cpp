#include <tov310/edit_value_on.h>
#include <tov310/text.h>

#include "controls/edit_angle_text.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace tov {

CTovAngleFieldEdit::CTovAngleFieldEdit(CTovAngleFieldSetup const& setup, CTovEditHost& edit,
                                       CTovEditIntegerHost* integer, CTovEditFloatingHost* floating)
    : m_edit(edit), m_integer(integer), m_floating(floating), m_isUnsigned(setup.field != eTovFieldDegrees) {
    if (integer != nullptr) {
        integer->SetType(m_isUnsigned ? CTovEditIntegerHost::eUlong : CTovEditIntegerHost::eLong);
        if (!m_isUnsigned) integer->SetSupportNegativeZero(1);
        integer->SetRange(static_cast<long>(setup.minimum), static_cast<long>(setup.maximum));
    } else if (floating != nullptr) {
        SetDecimals(setup.inputDecimals, setup.displayDecimals);
        floating->SetRange(setup.minimum, setup.maximum);
    } else {
        CString letters = setup.allowedChars;
        edit.SetAllowedChars(eAllowedCharsCustom, &letters);
        edit.SetConversion(tovConvertToUpper);
    }
}

CTovAngleFieldEdit::~CTovAngleFieldEdit() = default;

void CTovAngleFieldEdit::SetText(CString const& text) {
    m_edit.InputControl().SetString(text);
    m_edit.Text().ForgetUndoRedo();
}

double CTovAngleFieldEdit::GetNumber() {
    CTovInputControl& control = m_edit.InputControl();
    if (m_integer == nullptr) return control.GetDouble();
    if (m_isUnsigned) return static_cast<double>(control.GetUlong());
    return m_integer->GetIsNegativeZero() != 0 ? -0.0 : static_cast<double>(control.GetLong());
}

void CTovAngleFieldEdit::SetNumber(double number) {
    CTovInputControl& control = m_edit.InputControl();
    if (m_integer == nullptr) {
        control.SetDouble(number);
    } else if (number == 0 && std::signbit(number)) {
        m_integer->SetIsNegativeZero();
    } else if (m_isUnsigned) {
        control.SetUlong(static_cast<unsigned long>(number));
    } else {
        control.SetLong(static_cast<long>(number));
    }
}

void CTovAngleFieldEdit::TypeNumber(double number) {
    // With the decimal point of the locale, as the edit reads it.
    std::array<char, 350> digits{};
    std::snprintf(digits.data(), digits.size(), "%.*f", m_decimals, number);
    CString text = digits.data();
    if (m_floating != nullptr && m_floating->GetTrimTrailingZeros() != 0) TovTrimTrailingZeros(text);
    TypeText(text);
}

void CTovAngleFieldEdit::SetDecimals(int input, int display) {
    if (m_floating == nullptr) return;
    m_decimals = input;
    m_floating->SetInputFormat(static_cast<unsigned>(input));
    m_floating->SetDisplayFormat(static_cast<unsigned>(display));
}

void CTovAngleFieldEdit::Move(CRect const& rect) {
    if (CWnd* const window = InputControl().GetWnd()) window->MoveWindow(rect);
}

bool CTovAngleFieldEdit::HasFocus() {
    CWnd const* const window = InputControl().GetWnd();
    HWND const focus = TovGetFocus();
    return window != nullptr && focus && window->GetSafeHwnd() == focus;
}

void CTovAngleFieldEdit::SetSelection(int start, int end) {
    m_edit.SetEditSel(start, end >= 0 ? end : CountCharacters(GetText()));
}

}  // namespace tov
