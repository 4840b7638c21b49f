#include <tov310/angle.h>
#include <tov310/edit_angle_mask.h>
#include <tov310/packed_angle.h>

#include "controls/edit_angle_text.h"
#include "controls/edit_messages.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <string>
#include <utility>

namespace tov {
namespace {

constexpr int mostSecondsDecimals = 5;

double LargestOf(eTovAngleKind kind) {
    switch (kind) {
        case eTovAngleLatitude:
            return std::numbers::pi / 2;
        case eTovAngleLongitude:
            return std::numbers::pi;
        default:
            return CTovEditAngleMask::wholeTurn;
    }
}

}  // namespace

ITovAngleField::~ITovAngleField() = default;
CTovEditAngleHost::~CTovEditAngleHost() = default;

void CTovEditAngleHost::OnRangeDegree(eSignType sign, int unit, long& minimum, long& maximum) {
    TovRangeDegree(GetAngleKind(), sign, unit, minimum, maximum);
}

eTovAngleKind CTovEditAngleHost::GetAngleKind() const {
    return eTovAnglePlain;
}

int CTovEditAngleHost::GetMaskIndent() {
    return 0;
}

int CTovEditAngleHost::GetEditButtonWidth() {
    return 0;
}

void CTovEditAngleHost::FocusEditButton() {}

void TovRangeDegree(eTovAngleKind kind, eSignType sign, int unit, long& minimum, long& maximum) {
    bool const isDms = unit == TOV_UNIT_DMS;
    switch (kind) {
        case eTovAngleLatitude:
            maximum = isDms ? 90 : 100;
            break;
        case eTovAngleLongitude:
            maximum = isDms ? 180 : 200;
            break;
        default:
            maximum = isDms ? 359 : 399;
    }
    minimum = sign == eSignPlusMinus ? -maximum : 0;
}

bool CTovEditAngleMask::Shown::operator==(Shown const& other) const {
    auto const bits = [](double a, double b) {
        return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
    };
    return std::equal(std::begin(fields), std::end(fields), std::begin(other.fields), bits) &&
           sign == other.sign;
}

int CTovEditAngleMask::Base() const {
    return m_unit == TOV_UNIT_DMS ? 60 : 100;
}

ITovAngleField* CTovEditAngleMask::Field(eTovAngleField field) const {
    auto const index = static_cast<std::size_t>(field);
    return index < m_fields.size() ? m_fields[index] : nullptr;
}

CString CTovEditAngleMask::SignLetter(bool negative) const {
    return HemisphereLetter(m_eSignType, negative);
}

void CTovEditAngleMask::Initialize() {
    m_units.HoldUnit();
    if (!m_units.HasRange()) {
        double const largest = LargestOf(m_host.GetAngleKind());
        m_units.SetRange(-largest, largest);
    }
    Rearrange([] {});
}

void CTovEditAngleMask::GetRange(double& minimum, double& maximum) {
    m_units.GetRange(minimum, maximum);
    minimum = std::clamp(minimum, -wholeTurn, wholeTurn);
    maximum = std::clamp(maximum, -wholeTurn, wholeTurn);
}

double CTovEditAngleMask::GetValue() {
    if (!IsSplit() || !m_host.HasWindow()) return m_units.GetValue();
    if (m_bKnown && FieldsShown() == m_shown) return m_dValue;
    double const packed = JoinFields();
    return m_units.InShownUnit([&] { return m_units.Host().ConvertToStd(packed, 0, 0); });
}

double CTovEditAngleMask::GetShown() {
    bool const isOfFields = IsSplit() && !(m_bKnown && FieldsShown() == m_shown);
    return isOfFields ? JoinFields() : m_units.Host().GetShownNumber();
}

int CTovEditAngleMask::SetShown(double shown, bool safe) {
    return Put(m_units.InShownUnit([&] { return m_units.Host().ConvertToStd(shown, 0, 0); }), safe);
}

int CTovEditAngleMask::SetValue(double radians) {
    return Put(radians, false);
}

int CTovEditAngleMask::SafeSetValue(double radians) {
    return Put(radians, true);
}

int CTovEditAngleMask::Put(double radians, bool safe) {
    return AsOneChange(false, [&] { return Fill(radians, safe); });
}

int CTovEditAngleMask::Fill(double radians, bool safe) {
    CTovInputControl::CTovNotifyEmptyChanged const notify(m_units.Host().InputControl());
    if ((safe ? m_units.SafeSetValue(radians) : m_units.SetValue(radians)) == 0) return 0;
    if (!IsSplit()) return 1;
    m_dValue = m_units.GetValue();
    int const rounds = RoundsBeforeFields() ? 1 : 0;
    double const packed =
        m_units.InShownUnit([&] { return m_units.Host().ConvertStdTo(m_dValue, rounds, 1); });
    int sign = 1;
    int degrees = 0;
    int minutes = 0;
    double seconds = 0;
    auto const split = m_unit == TOV_UNIT_DMS ? VeskSplitPackedDms : VeskSplitPackedGon;
    split(packed, sign, degrees, minutes, seconds, -1, safe ? 0 : m_bLimitToCircle);
    DisplayDmsValue(sign, degrees, minutes, seconds);
    m_shown = FieldsShown();
    m_bKnown = true;
    return 1;
}

// The seconds round to what they print. To as many decimals or more it must not be done before: by way of
// 18.604685, whose double is a little less, 18.6046853 would be printed as 18.60468.
bool CTovEditAngleMask::RoundsBeforeFields() {
    if (m_bLimitToCircle != 0) return false;  // that would be to one decimal more than is shown
    int const precision = Settings().Precision();
    // A packed number has four digits before those of the seconds, and the precision counts without five.
    return precision > 0 && precision + 1 < std::min(m_displayDecimals, mostSecondsDecimals);
}

void CTovEditAngleMask::DisplayDmsValue(int sign, int degrees, int minutes, double seconds) {
    auto const set = [&](eTovAngleField field, auto change) {
        CTovInputControl::CTovKeepChangedByUserStatus const keep(Field(field)->InputControl());
        change(*Field(field));
    };
    auto const setNumber = [&](eTovAngleField field, double number) {
        set(field, [number](ITovAngleField& child) { child.SetNumber(number); });
    };
    bool const isNegative = sign < 0;
    if (Field(eTovFieldSign) != nullptr) {
        set(eTovFieldSign, [&](ITovAngleField& child) { child.SetText(SignLetter(isNegative)); });
        sign = 1;
    }
    setNumber(eTovFieldSeconds, seconds);
    // Printing may have rounded the seconds up to a full minute.
    CString const text = Field(eTovFieldSeconds)->GetText();
    std::size_t const start = text.find_first_not_of(' ');
    if (start != CString::npos && text.substr(start).starts_with(std::to_string(Base()))) {
        setNumber(eTovFieldSeconds, 0);
        if (++minutes > Base() - 1) {
            minutes = 0;
            int const circle = m_unit == TOV_UNIT_DMS ? 360 : 400;
            ++degrees;
            if (m_bLimitToCircle != 0) degrees %= circle;
        }
    }
    setNumber(eTovFieldDegrees, sign < 0 ? -static_cast<double>(degrees) : degrees);
    setNumber(eTovFieldMinutes, minutes);
}

// The fields as they stand, in the numeric form of the unit.
double CTovEditAngleMask::JoinFields() {
    double const degrees = Field(eTovFieldDegrees)->GetNumber();
    double const minutes = Field(eTovFieldMinutes)->GetNumber();
    double const seconds = Field(eTovFieldSeconds)->GetNumber();
    bool isNegative = std::signbit(degrees);
    if (ITovAngleField* const letter = Field(eTovFieldSign))
        isNegative = letter->GetText() == SignLetter(true);
    constexpr double most = 2147483647;
    auto const join = m_unit == TOV_UNIT_DMS ? VeskJoinPackedDms : VeskJoinPackedGon;
    return join(isNegative ? -1 : 1, static_cast<int>(std::min(std::fabs(degrees), most)),
                static_cast<int>(std::min(std::fabs(minutes), most)), std::fabs(seconds));
}

CTovEditAngleMask::Shown CTovEditAngleMask::FieldsShown() {
    Shown shown;
    for (eTovAngleField const field : {eTovFieldDegrees, eTovFieldMinutes, eTovFieldSeconds})
        shown.fields[field] = Field(field)->GetNumber();
    if (ITovAngleField* const letter = Field(eTovFieldSign)) shown.sign = letter->GetText();
    return shown;
}

int CTovEditAngleMask::CreateAdditionalEditFields(int unit) {
    if ((unit != TOV_UNIT_DMS && unit != TOV_UNIT_GON) || !m_host.HasWindow()) return 0;
    DestroyAdditionalEditFields();
    m_unit = unit;
    CRect rects[4];
    GetChildRect(m_host.GetMaskRect(), rects[0], rects[1], rects[2], rects[3]);
    long minimum = 0;
    long maximum = 0;
    m_host.OnRangeDegree(m_eSignType, unit, minimum, maximum);
    // The seconds end one step below what would be a minute.
    double const mostSeconds = unit == TOV_UNIT_DMS ? 59.999999999999986 : 99.99999999999997;
    int const inputDecimals = std::min(m_inputDecimals, mostSecondsDecimals);
    int const displayDecimals = std::min(m_displayDecimals, mostSecondsDecimals);
    CString letters;
    if (m_eSignType != eSignPlusMinus) {
        letters = SignLetter(false) + SignLetter(true);
        letters += LowerLetters(letters);
    }
    constexpr unsigned long numberStyle = 0x40010002;
    constexpr unsigned long letterStyle = 0x40010000;
    CTovAngleFieldSetup const setups[] = {
        {eTovFieldDegrees, numberStyle, rects[0], static_cast<double>(minimum), static_cast<double>(maximum),
         0, 0, CString()},
        {eTovFieldMinutes, numberStyle, rects[1], 0, static_cast<double>(Base() - 1), 0, 0, CString()},
        {eTovFieldSeconds, numberStyle, rects[2], 0, mostSeconds, inputDecimals, displayDecimals, CString()},
        {eTovFieldSign, letterStyle, rects[3], 0, 0, 0, 0, letters},
    };
    CTovInputControl& edit = m_units.Host().InputControl();
    std::vector<ITovAngleField*> fields;
    for (CTovAngleFieldSetup const& setup : setups) {
        if (setup.field == eTovFieldSign && letters.empty()) break;
        ITovAngleField* const field = m_host.CreateField(setup);
        if (field == nullptr) {
            m_host.DestroyFields();
            return 0;
        }
        fields.push_back(field);
        CTovInputControl& child = field->InputControl();
        child.SetReadOnlyMode(edit.GetReadOnlyMode());
        child.SetEmptyAllowed(1);
        if (setup.field == eTovFieldSign) field->SetText(SignLetter(false));
    }
    int const changed = edit.GetChangedByUser();
    m_fields = std::move(fields);
    m_rects.assign(std::begin(rects), std::begin(rects) + static_cast<std::ptrdiff_t>(m_fields.size()));
    SetChangedByUser(changed);
    m_pasted = {};
    ShowMask();
    return 1;
}

void CTovEditAngleMask::ShowMask() {
    m_bSettingMask = true;
    m_host.SetMaskText(MaskText());
    m_bSettingMask = false;
}

void CTovEditAngleMask::DestroyAdditionalEditFields() {
    if (!IsSplit()) return;
    // In one piece the edit goes on with what the fields hold.
    bool const isEmpty = IsEmpty() != 0;
    double const value = GetValue();
    DropFields();
    if (isEmpty) {
        m_units.Host().EmptyShownNumber();
    } else {
        CTovInputControl& edit = m_units.Host().InputControl();
        CTovInputControl::CTovKeepChangedByUserStatus const keep(edit);
        m_units.SetValue(value);
    }
}

void CTovEditAngleMask::DropFields() {
    m_fields.clear();
    m_rects.clear();
    m_active = -1;
    m_buttonPassed = false;
    m_bKnown = false;
    m_host.DestroyFields();
}

void CTovEditAngleMask::Reset() {
    if (IsSplit()) DropFields();
    m_bSecOnly = m_bLimitToCircle = 0;
    m_inputDecimals = m_displayDecimals = defaultDecimals;
    m_pasted = {};
    SetSignType(eSignPlusMinus);
}

void CTovEditAngleMask::Rearrange(std::function<void()> const& change) {
    AsOneChange(false, [&] { RearrangeFields(change); });
}

void CTovEditAngleMask::RearrangeFields(std::function<void()> const& change) {
    CTovInputControl& edit = m_units.Host().InputControl();
    CTovInputControl::CTovNotifyEmptyChanged const notify(edit);
    CTovInputControl::CTovKeepChangedByUserStatus const keep(edit);
    CWnd const* const window = edit.GetWnd();
    HWND const self = window != nullptr ? window->GetSafeHwnd() : HWND{};
    bool const hadFocus = GetChildEditFocus() >= 0 || (self && TovGetFocus() == self);
    bool const isEmpty = edit.IsEmpty() != 0;
    double const value = GetValue();
    double minimum = 0;
    double maximum = 0;
    m_units.GetRange(minimum, maximum);
    DestroyAdditionalEditFields();
    change();
    if (m_bSecOnly == 0) CreateAdditionalEditFields(static_cast<int>(m_units.Unit()));
    if (isEmpty) {
        m_units.Host().EmptyShownNumber();
    } else {
        SafeSetValue(value);
    }
    m_units.SetRange(minimum, maximum);
    m_units.Host().DisplayUnitAbbreviation();
    if (hadFocus && IsSplit()) SetChildEditFocus(eFocusFirst);
}

void CTovEditAngleMask::SetSecOnly(int secOnly) {
    if (!m_host.HasWindow()) {
        m_bSecOnly = secOnly;
    } else {
        Rearrange([&] { m_bSecOnly = secOnly; });
    }
}

void CTovEditAngleMask::SetSignType(eSignType type) {
    auto const change = [&] {
        m_eSignType = type;
        if (auto* const angle = dynamic_cast<CTovValueAngle*>(m_units.Host().TovValue()))
            angle->SetFlag(static_cast<unsigned short>(type));
    };
    if (IsSplit()) {
        Rearrange(change);
    } else {
        change();
    }
}

void CTovEditAngleMask::SetUnit(long unit) {
    m_units.HoldUnit();
    if (!TovIsUnitOf(Settings(), unit)) return;
    Settings().Unit(unit);
    UnitChanged();
}

int CTovEditAngleMask::UnitChanged() {
    m_units.HoldUnit();
    if (Settings().Unit() == m_units.Unit()) return 0;
    Rearrange([&] { m_units.TakeUnit(); });
    return 1;
}

void CTovEditAngleMask::SetInputDecimals(int decimals) {
    m_inputDecimals = std::max(decimals, 0);
    SetSecondsDecimals();
}

void CTovEditAngleMask::SetDisplayDecimals(int decimals) {
    m_displayDecimals = std::max(decimals, 0);
    SetSecondsDecimals();
}

void CTovEditAngleMask::SetSecondsDecimals() {
    if (ITovAngleField* const seconds = Field(eTovFieldSeconds)) {
        seconds->SetDecimals(std::min(m_inputDecimals, mostSecondsDecimals),
                             std::min(m_displayDecimals, mostSecondsDecimals));
    }
}

CTovEditAngleMask::eState CTovEditAngleMask::InternalValidate(CString* message) {
    if (message != nullptr) message->clear();
    CTovInputControl& edit = m_units.Host().InputControl();
    if (IsEmpty() != 0)
        return edit.GetEmptyAllowed() != 0 ? CTovInputControl::eStateValid : CTovInputControl::eStateEmpty;
    for (ITovAngleField* const field : m_fields) {
        eState const state = field->InputControl().Validate(message);
        if (state != CTovInputControl::eStateValid && state != CTovInputControl::eStateEmpty) return state;
    }
    double minimum = 0;
    double maximum = 0;
    GetRange(minimum, maximum);
    double const radians = GetValue();
    if (radians >= minimum && radians <= maximum) return CTovInputControl::eStateValid;
    if (message != nullptr) {
        CTovFormat& format = *Settings().Format();
        int const symbols = format.UseDmsSymbols();
        int const limit = format.LimitToCircle();
        format.UseDmsSymbols(1);
        format.LimitToCircle(0);  // a whole turn is to be seen as one
        auto const print = [&](double bound) {
            CString text;
            m_units.Host().TovValue()->SetDouble(bound);
            m_units.InShownUnit([&] { m_units.Host().TovValue()->GetString(text); });
            return text;
        };
        *message = RangeMessage(print(minimum), print(maximum));
        format.UseDmsSymbols(symbols);
        format.LimitToCircle(limit);
    }
    return CTovInputControl::eStateInvalid;
}

int CTovEditAngleMask::IsEmpty() const {
    // A letter alone is no angle.
    return std::all_of(m_fields.begin(), m_fields.end(), [this](ITovAngleField* field) {
        return field->InputControl().IsEmpty() != 0 || field == Field(eTovFieldSign);
    });
}

void CTovEditAngleMask::Empty() {
    for (ITovAngleField* const field : m_fields)
        field->Empty();
    if (ITovAngleField* const letter = Field(eTovFieldSign)) {
        letter->SetText(SignLetter(false));
        letter->InputControl().SetChangedByUser(0);
    }
    m_bKnown = false;
}

void CTovEditAngleMask::SetEmptyAllowed(int allowed) {
    for (ITovAngleField* const field : m_fields)
        field->InputControl().SetEmptyAllowed(allowed);
}

void CTovEditAngleMask::SetReadOnlyMode(int readOnly) {
    for (ITovAngleField* const field : m_fields)
        field->InputControl().SetReadOnlyMode(readOnly);
}

int CTovEditAngleMask::GetChangedByUser() const {
    return std::any_of(m_fields.begin(), m_fields.end(),
                       [](ITovAngleField* field) { return field->InputControl().GetChangedByUser() != 0; });
}

void CTovEditAngleMask::SetChangedByUser(int changed) {
    for (ITovAngleField* const field : m_fields)
        field->InputControl().SetChangedByUser(changed);
}

}  // namespace tov
