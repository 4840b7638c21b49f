#include <tov310/edit_number.h>

#include "controls/edit_angle_text.h"
#include "controls/message_text.h"
#include "controls/number_edit.h"
#include "controls/number_format.h"
#include "frame/resource_module.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <limits>
#include <string>
#include <string_view>
#include <system_error>

namespace tov {
namespace {

struct IntegerType {
    long minimum;
    long maximum;
    char const* format;
};

// By eType.
constexpr IntegerType integerTypes[] = {
    {-32768, 32767, "%hi"},
    {0, 65535, "%hu"},
    {-2147483648L, 2147483647L, "%li"},
    {0, static_cast<long>(4294967295UL), "%lu"},
    {-2147483648L, 2147483647L, "%i"},
    {0, static_cast<long>(4294967295UL), "%u"},
};

unsigned long ReadMagnitude(std::string_view digits) {
    unsigned long magnitude = 0;
    auto const result = std::from_chars(digits.data(), digits.data() + digits.size(), magnitude);
    return result.ec == std::errc::result_out_of_range ? std::numeric_limits<unsigned long>::max()
                                                       : magnitude;
}

}  // namespace

CTovEditLong::CTovEditLong(CTovEditText& text, CTovEditIntegerHost& host) : m_text(text), m_host(host) {
    host.m_long = this;
    SetupInputValueFormat();
    SetupDefaultRange();
    SetupAllowedChars();
}

CTovEditLong::~CTovEditLong() = default;

long CTovEditLong::Read(CString const& text, bool isUnsigned) {
    // The unsigned ones take no sign from elsewhere.
    CString const number = isUnsigned ? CString(TrimmedSpaces(text, true, true)) : SignInFront(text, false);
    std::string_view digits = number;
    bool const negative = digits.starts_with('-');
    if (negative || digits.starts_with('+')) digits.remove_prefix(1);
    unsigned long magnitude = ReadMagnitude(digits);
    if (!isUnsigned) {
        constexpr auto largest = static_cast<unsigned long>(std::numeric_limits<long>::max());
        magnitude = std::min(magnitude, largest + (negative ? 1 : 0));
    }
    return static_cast<long>(negative ? 0UL - magnitude : magnitude);
}

CString CTovEditLong::InputText() const {
    return GetIsNegativeZero() != 0 ? CString("-0") : PrintByFormat(inputFormat, value);
}

CString CTovEditLong::DisplayText() const {
    return GetIsNegativeZero() != 0 ? CString("-0") : PrintByFormat(m_text.Host().GetDisplayFormat(), value);
}

void CTovEditLong::OnEditChanged() {
    if (m_text.IsTrimming() != 0) return;
    CString const& text = m_text.GetRawString();
    value = Read(text, IsUnsigned());
    negativeZero = supportsNegativeZero != 0 && value == 0 && SignInFront(text, false).starts_with('-');
    m_text.RefreshUndoRedoItem();
}

void CTovEditLong::ShowInputValue() {
    m_text.ShowText(m_text.IsRawEmpty() != 0 ? m_text.GetRawString() : InputText());
}

void CTovEditLong::ShowDisplayValue() {
    m_text.ShowText(m_text.IsRawEmpty() != 0 ? m_text.GetRawString() : DisplayText());
}

void CTovEditLong::ConvertDisplayToInputPos(int& position) const {
    if (!m_text.Host().GetDisplayFormat().empty()) SkipDisplayPrefix(DisplayText(), InputText(), position);
}

long CTovEditLong::InternalGetLong() {
    if (m_text.Host().ControlOrChildHasFocus() == 0)
        ShowAsContent(m_text, m_text.IsRawEmpty() != 0 ? CString() : InputText());
    return value;
}

void CTovEditLong::InternalSetLong(long newValue, int isNegativeZero) {
    CTovInputControl::CTovNotifyEmptyChanged const scope(m_text.Host().InputControl());
    value = newValue;
    negativeZero = isNegativeZero;
    ShowNewNumber(m_text, InputText());
}

CTovInputControl::eState CTovEditLong::OnValidate(CString* message) {
    bool const hasFocus = m_text.Host().ControlOrChildHasFocus() != 0;
    long const candidate = hasFocus ? value : m_host.InternalGetLong();
    CString const text = !hasFocus                  ? m_text.GetRawString()
                         : m_text.IsRawEmpty() != 0 ? CString()
                                                    : InputText();
    CTovInputControl::eState const state = m_text.Host().InternalValidate(text.c_str(), message);
    return state != CTovInputControl::eStateValid ? state : m_host.InternalValidate(candidate, message);
}

bool CTovEditLong::IsInRange(long candidate) const {
    if (!IsUnsigned()) return candidate >= minimum && candidate <= maximum;
    auto const number = static_cast<unsigned long>(candidate);
    return number >= static_cast<unsigned long>(minimum) && number <= static_cast<unsigned long>(maximum);
}

CTovInputControl::eState CTovEditLong::InternalValidate(long candidate, CString* message) const {
    if (message != nullptr) message->clear();
    CTovInputControl& control = m_text.Host().InputControl();
    if (control.GetEmptyAllowed() != 0 && control.IsEmpty() != 0) return CTovInputControl::eStateValid;
    if (IsInRange(candidate)) return CTovInputControl::eStateValid;
    if (message != nullptr) {
        char const* const format = IsUnsigned() ? "%lu" : "%li";
        *message = LibraryString(numberRangeText);
        ReplaceFirst(*message, "MIN", PrintByFormat(format, minimum));
        ReplaceFirst(*message, "MAX", PrintByFormat(format, maximum));
    }
    return CTovInputControl::eStateInvalid;
}

// Where a step leads, of the numbers of one signedness; false where it must not be taken.
template <typename T>
bool CTovEditLong::NextValue(int up, long current, T step, long& next) const {
    auto const from = static_cast<T>(current);
    auto const low = static_cast<T>(minimum);
    auto const high = static_cast<T>(maximum);
    bool const wasInRange = from >= low && from <= high;
    T to = 0;
    bool overflows = false;
    if (spinValues.size() >= 2) {
        to = static_cast<T>(m_host.OnSpinStepToNextValue(up, current));
    } else if (up != 0) {
        overflows = from > std::numeric_limits<T>::max() - step;
        to = overflows ? std::numeric_limits<T>::max() : static_cast<T>(from + step);
    } else {
        overflows = from < std::numeric_limits<T>::min() + step;
        to = overflows ? std::numeric_limits<T>::min() : static_cast<T>(from - step);
    }
    if (overflows || to < low || to > high) {
        bool const isBelow = overflows ? up == 0 : to < low;
        if (m_text.Host().GetWrapRange() != 0) {
            // Who is outside comes in at the nearer end.
            to = wasInRange == isBelow ? high : low;
        } else if (wasInRange) {
            return false;
        }
    }
    next = static_cast<long>(to);
    return true;
}

void CTovEditLong::ReadInput(CString& text) const {
    text = WithPlainSigns(text);
}

void CTovEditLong::OnSpinDeltapos(int up, int delta) {
    CTovInputControl::CTovNotifyEmptyChanged const scope(m_text.Host().InputControl());
    long const step = delta < 0 ? -static_cast<long>(delta) : delta;
    long const current = m_host.InternalGetLong();
    long next = 0;
    bool const steps = IsUnsigned() ? NextValue(up, current, static_cast<unsigned long>(step), next)
                                    : NextValue(up, current, step, next);
    if (!steps) return m_text.Host().Beep();
    m_host.InternalSetLong(next, 0);
    MarkSpun(m_text);
}

long CTovEditLong::OnSpinStepToNextValue(int up, long from) const {
    if (spinValues.empty()) return from;
    auto const isAbove = [&](long a, long b) {
        return IsUnsigned() ? static_cast<unsigned long>(a) > static_cast<unsigned long>(b) : a > b;
    };
    auto nearest = spinValues.end();
    unsigned long distance = 0;
    for (auto entry = spinValues.begin(); entry != spinValues.end(); ++entry) {
        if (up != 0 ? isAbove(*entry, from) : isAbove(from, *entry)) continue;
        unsigned long const d = up != 0
                                    ? static_cast<unsigned long>(from) - static_cast<unsigned long>(*entry)
                                    : static_cast<unsigned long>(*entry) - static_cast<unsigned long>(from);
        if (nearest != spinValues.end() && d >= distance) continue;
        nearest = entry;
        distance = d;
    }
    bool const found = nearest != spinValues.end();
    if (up != 0) return found && nearest + 1 != spinValues.end() ? nearest[1] : spinValues.front();
    return found && nearest != spinValues.begin() ? nearest[-1] : spinValues.back();
}

int CTovEditLong::IsValidSpinButtonValue(long candidate) const {
    return spinValues.size() < 2 || std::ranges::find(spinValues, candidate) != spinValues.end();
}

int CTovEditLong::CreateSpinButton(std::vector<long> const& values) {
    spinValues = values;
    return m_text.Host().CreateSpinButton();
}

void CTovEditLong::Clear() {
    value = 0;
    negativeZero = 0;
}

void CTovEditLong::Reset() {
    Clear();
    supportsNegativeZero = 0;
    spinValues.clear();
    m_host.SetupInputValueFormat();
    m_host.SetupDefaultRange();
    m_host.SetupAllowedChars();
}

int CTovEditLong::SetRange(long newMinimum, long newMaximum) {
    auto const isOf = [&](long number) {
        return number >= integerTypes[type].minimum && number <= integerTypes[type].maximum;
    };
    if (type == CTovEditIntegerHost::eShort && !isOf(newMinimum)) return 0;
    if (type == CTovEditIntegerHost::eUshort && !(isOf(newMinimum) && isOf(newMaximum))) return 0;
    bool const isEmpty = IsUnsigned()
                             ? static_cast<unsigned long>(newMinimum) > static_cast<unsigned long>(newMaximum)
                             : newMinimum > newMaximum;
    if (isEmpty) return 0;
    minimum = newMinimum;
    maximum = newMaximum;
    m_host.SetupAllowedChars();
    return 1;
}

void CTovEditLong::SetType(long newType) {
    if (newType < CTovEditIntegerHost::eShort || newType > CTovEditIntegerHost::eUint) return;
    type = static_cast<CTovEditIntegerHost::eType>(newType);
    if (IsUnsigned()) supportsNegativeZero = 0;
    m_host.SetupInputValueFormat();
    m_host.SetupDefaultRange();
    m_host.SetupAllowedChars();
}

int CTovEditLong::SetSupportNegativeZero(int support) {
    if (support != 0 && IsUnsigned()) return 0;
    supportsNegativeZero = support;
    return 1;
}

void CTovEditLong::SetupDefaultRange() {
    minimum = integerTypes[type].minimum;
    maximum = integerTypes[type].maximum;
}

void CTovEditLong::SetupInputValueFormat() {
    inputFormat = integerTypes[type].format;
}

void CTovEditLong::SetupAllowedChars() {
    CString allowed = "0123456789";
    if (!IsUnsigned() && maximum >= 1) allowed += '+';
    if (!IsUnsigned() && minimum < 0) allowed += '-';
    m_text.Host().SetAllowedChars(eAllowedCharsCustom, &allowed);
}

}  // namespace tov
