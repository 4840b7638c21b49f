#include <tov310/edit_number.h>

#include <tov310/text.h>

#include "controls/edit_angle_text.h"
#include "controls/message_text.h"
#include "controls/number_edit.h"
#include "controls/number_format.h"
#include "controls/pasted_number.h"
#include "frame/resource_module.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <limits>
#include <string>
#include <string_view>
#include <system_error>

namespace tov {
namespace {

constexpr double epsilon = std::numeric_limits<double>::epsilon();

double LargestNumberOf(CTovEditFloatingHost::eType type) {
    return type == CTovEditFloatingHost::eFloat ? static_cast<double>(std::numeric_limits<float>::max())
                                                : std::numeric_limits<double>::max();
}

bool IsDigitAt(std::string_view text, std::size_t at) {
    return at < text.size() && text[at] >= '0' && text[at] <= '9';
}

// Rounding must not step over an end of the range.
double SnappedTo(double end, double next, double step) {
    return std::fabs(next - end) <= step * 1e-9 ? end : next;
}

}  // namespace

CTovEditDouble::CTovEditDouble(CTovEditText& text, CTovEditFloatingHost& host)
    : inputFormat("%f"), m_text(text), m_host(host) {
    host.m_double = this;
    ReadLocale();
    SetupDefaultRange();
    SetupAllowedChars();
}

CTovEditDouble::~CTovEditDouble() = default;

void CTovEditDouble::ReadLocale() {
    char text[32];
    auto const length = static_cast<std::size_t>(std::snprintf(text, sizeof text, "%e", 1.1));
    std::string_view const printed(text, length);
    std::size_t const digit = printed.find('1', 1);
    decimalSeparator = printed.substr(1, digit != printed.npos ? digit - 1 : 1);
    exponentText = printed.substr(length - std::min<std::size_t>(length, 5));
    std::ranges::transform(exponentText, exponentText.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    m_text.settings.conversion = tovConvertToLower;
}

double CTovEditDouble::Read(CString const& text) const {
    CString number = SignInFront(text, true);
    if (std::size_t const at = number.find(decimalSeparator); at != number.npos) {
        CString const decimals = number.substr(at + decimalSeparator.size());
        number.resize(at);
        number.append(1, '.').append(decimals);
    }
    std::string_view digits = number;
    bool const negative = digits.starts_with('-');
    if (negative || digits.starts_with('+')) digits.remove_prefix(1);
    std::size_t const first = digits.starts_with('.') ? 1 : 0;
    if (digits.size() <= first || digits[first] < '0' || digits[first] > '9') return 0;
    double magnitude = 0;
    auto const result = std::from_chars(digits.data(), digits.data() + digits.size(), magnitude);
    if (result.ec != std::errc()) return 0;
    return negative ? -magnitude : magnitude;
}

CString CTovEditDouble::Print(CString const& format, double candidate) const {
    return PrintByFormat(format, candidate, decimalSeparator);
}

// Zeros at the very end go, all but the first decimal; not those of an exponent.
CString CTovEditDouble::Trimmed(CString number) const {
    std::size_t const point = trimTrailingZeros != 0 ? number.find(decimalSeparator) : number.npos;
    if (point == number.npos) return number;
    std::size_t const decimals = point + decimalSeparator.size();
    if (number.find_first_not_of("0123456789", decimals) != number.npos) return number;
    std::size_t const last = number.find_last_not_of('0') + 1;
    number.resize(std::min(number.size(), std::max(last, decimals + 1)));
    return number;
}

CString CTovEditDouble::InputText() const {
    return Trimmed(Print(inputFormat, value));
}

CString CTovEditDouble::DisplayText() const {
    return Trimmed(Print(m_text.Host().GetDisplayFormat(), value));
}

void CTovEditDouble::InitializeEdit() {
    CWnd const* const window = m_text.Host().InputControl().GetWnd();
    // Columns keep their decimals.
    trimTrailingZeros = window == nullptr || (window->GetStyle() & ES_RIGHT) == 0;
}

void CTovEditDouble::OnEditChanged() {
    if (m_text.IsTrimming() != 0) return;
    value = Read(m_text.GetRawString());
    m_text.RefreshUndoRedoItem();
}

void CTovEditDouble::ShowInputValue() {
    m_text.ShowText(m_text.IsRawEmpty() != 0 ? m_text.GetRawString() : InputText());
}

void CTovEditDouble::ShowDisplayValue() {
    m_text.ShowText(m_text.IsRawEmpty() != 0 ? m_text.GetRawString() : DisplayText());
}

void CTovEditDouble::ConvertDisplayToInputPos(int& position) const {
    if (!m_text.Host().GetDisplayFormat().empty()) SkipDisplayPrefix(DisplayText(), InputText(), position);
}

double CTovEditDouble::InternalGetDouble() {
    if (m_text.Host().ControlOrChildHasFocus() == 0)
        ShowAsContent(m_text, m_text.IsRawEmpty() != 0 ? CString() : InputText());
    return value;
}

void CTovEditDouble::InternalSetDouble(double newValue) {
    CTovInputControl::CTovNotifyEmptyChanged const scope(m_text.Host().InputControl());
    value = newValue;
    ShowNewNumber(m_text, InputText());
}

void CTovEditDouble::ReadInput(CString& text) const {
    text = WithPlainSigns(text);
    if (CharacterCount(text) > 1) {
        text = WithThousandsJoined(text);
        if (HoldsSeveralNumbers(text)) return text.clear();
        text = WithoutWords(text);
    }
    std::size_t const point = text.find_first_of(",.");
    if (point == text.npos || text.find_first_of(",.", point + 1) != text.npos) return;
    bool const isTyped = text.size() == 1 && m_text.GetRawString().find(decimalSeparator) == CString::npos;
    if (!isTyped && !(point > 0 && IsDigitAt(text, point - 1) && IsDigitAt(text, point + 1))) return;
    text = text.substr(0, point).append(decimalSeparator).append(text, point + 1);
}

CTovInputControl::eState CTovEditDouble::OnValidate(CString* message) {
    bool const hasFocus = m_text.Host().ControlOrChildHasFocus() != 0;
    double const candidate = hasFocus ? value : m_host.InternalGetDouble();
    CString const text = !hasFocus                  ? m_text.GetRawString()
                         : m_text.IsRawEmpty() != 0 ? CString()
                                                    : InputText();
    CTovInputControl::eState const state = m_text.Host().InternalValidate(text.c_str(), message);
    return state != CTovInputControl::eStateValid ? state : m_host.InternalValidate(candidate, message);
}

CTovInputControl::eState CTovEditDouble::InternalValidate(double candidate, CString* message) const {
    if (message != nullptr) message->clear();
    CTovInputControl& control = m_text.Host().InputControl();
    if (control.GetEmptyAllowed() != 0 && control.IsEmpty() != 0) return CTovInputControl::eStateValid;
    if (IsInRange(candidate)) return CTovInputControl::eStateValid;
    if (message != nullptr) {
        CString const display = m_text.Host().GetDisplayFormat();
        CString const& format = display.empty() ? inputFormat : display;
        *message = LibraryString(numberRangeText);
        ReplaceFirst(*message, "MIN", Print(format, minimum));
        ReplaceFirst(*message, "MAX", Print(format, maximum));
    }
    return CTovInputControl::eStateInvalid;
}

double CTovEditDouble::SpinStep(int delta) const {
    double step = std::fabs(spinDelta);
    if (!(step >= epsilon)) step = std::fabs(static_cast<double>(delta));
    while (step > 0 && (maximum - minimum) / step < 10)
        step /= 10;
    return step;
}

double CTovEditDouble::SpinStep() const {
    return SpinStep(m_text.Host().GetSpinDelta());
}

void CTovEditDouble::OnSpinDeltapos(int up, int delta) {
    CTovInputControl::CTovNotifyEmptyChanged const scope(m_text.Host().InputControl());
    double const step = SpinStep(delta);
    double const from = m_host.InternalGetDouble();
    bool const wasInRange = IsInRange(from);
    double next = from;
    if (spinValues.size() >= 2) {
        next = m_host.OnSpinStepToNextValue(up, from);
    } else {
        next = SnappedTo(minimum, SnappedTo(maximum, up != 0 ? from + step : from - step, step), step);
    }
    if (!IsInRange(next)) {
        if (m_text.Host().GetWrapRange() != 0) {
            // Who is outside comes in at the nearer end.
            next = wasInRange == (next < minimum) ? maximum : minimum;
        } else if (wasInRange) {
            return m_text.Host().Beep();
        }
    }
    m_host.InternalSetDouble(next);
    MarkSpun(m_text);
}

double CTovEditDouble::OnSpinStepToNextValue(int up, double from) const {
    if (spinValues.empty()) return from;
    auto nearest = spinValues.end();
    double distance = 0;
    for (auto entry = spinValues.begin(); entry != spinValues.end(); ++entry) {
        double const d = up != 0 ? from - *entry : *entry - from;
        if (!(d >= 0) || (nearest != spinValues.end() && d >= distance)) continue;
        nearest = entry;
        distance = d;
    }
    bool const found = nearest != spinValues.end();
    if (up != 0) return found && nearest + 1 != spinValues.end() ? nearest[1] : spinValues.front();
    return found && nearest != spinValues.begin() ? nearest[-1] : spinValues.back();
}

int CTovEditDouble::IsValidSpinButtonValue(double candidate) const {
    auto const isOther = [&](double entry) { return std::fabs(candidate - entry) >= epsilon; };
    return spinValues.size() < 2 || std::ranges::any_of(spinValues, isOther);
}

int CTovEditDouble::CreateSpinButton(std::vector<double> const& values) {
    spinValues = values;
    return m_text.Host().CreateSpinButton();
}

CString CTovEditDouble::DecimalsFormat(unsigned decimals) {
    return CString("%.").append(std::to_string(decimals)).append("f");
}

void CTovEditDouble::SetDisplayDecimals(unsigned decimals) {
    m_text.Host().SetDisplayFormat(DecimalsFormat(decimals));
}

void CTovEditDouble::SetInputFormat(CString const& format) {
    inputFormat = format;
    if (format.empty()) m_host.SetupDefaultInputValueFormat();
    m_text.OnFormatChanged();
}

int CTovEditDouble::SetRange(double newMinimum, double newMaximum) {
    double const largest = LargestNumberOf(type);
    auto const isOf = [&](double number) {
        return type != CTovEditFloatingHost::eFloat || std::fabs(number) <= largest;
    };
    if (!isOf(newMinimum) || !isOf(newMaximum) || !(newMinimum <= newMaximum)) return 0;
    minimum = newMinimum;
    maximum = newMaximum;
    m_host.SetupAllowedChars();
    return 1;
}

void CTovEditDouble::SetType(long newType) {
    if (newType < CTovEditFloatingHost::eFloat || newType > CTovEditFloatingHost::eDouble) return;
    type = static_cast<CTovEditFloatingHost::eType>(newType);
    m_host.SetupDefaultInputValueFormat();
    m_host.SetupDefaultRange();
    m_host.SetupAllowedChars();
}

void CTovEditDouble::Reset() {
    value = 0;
    spinDelta = 0;
    trimTrailingZeros = 1;
    spinValues.clear();
    ReadLocale();
    m_host.SetupDefaultInputValueFormat();
    m_host.SetupDefaultRange();
    m_host.SetupAllowedChars();
}

void CTovEditDouble::SetupDefaultRange() {
    maximum = LargestNumberOf(type);
    minimum = -maximum;
}

void CTovEditDouble::SetupAllowedChars() {
    CString allowed = CString("0123456789+-").append(decimalSeparator).append(exponentText);
    m_text.Host().SetAllowedChars(eAllowedCharsCustom, &allowed);
}

void CTovEditDouble::AdvancedFormat(CString& text, double candidate) const {
    text = TovAdvancedFormatDouble(candidate);
}

}  // namespace tov
