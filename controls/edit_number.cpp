// What an edit with a number offers to be overridden, by default.
#include <tov310/edit_number.h>

namespace tov {

CTovEditIntegerHost::~CTovEditIntegerHost() = default;

int CTovEditIntegerHost::CreateSpinButton(std::vector<long> const& values) {
    return m_long->CreateSpinButton(values);
}

long CTovEditIntegerHost::GetRawValue() {
    return InternalGetLong();
}

int CTovEditIntegerHost::GetIsNegativeZero() {
    return m_long->GetIsNegativeZero();
}

void CTovEditIntegerHost::SetIsNegativeZero() {
    InternalSetLong(0, 1);
}

int CTovEditIntegerHost::SetSupportNegativeZero(int support) {
    return m_long->SetSupportNegativeZero(support);
}

int CTovEditIntegerHost::GetSupportNegativeZero() const {
    return m_long->supportsNegativeZero;
}

int CTovEditIntegerHost::SetRange(long minimum, long maximum) {
    return m_long->SetRange(minimum, maximum);
}

void CTovEditIntegerHost::GetRange(long& minimum, long& maximum) {
    minimum = m_long->minimum;
    maximum = m_long->maximum;
}

void CTovEditIntegerHost::SetType(long type) {
    m_long->SetType(type);
}

long CTovEditIntegerHost::GetType() const {
    return m_long->type;
}

int CTovEditIntegerHost::IsValidSpinButtonValue(int value) {
    return m_long->IsValidSpinButtonValue(value);
}

long CTovEditIntegerHost::OnSpinStepToNextValue(int up, long value) {
    return m_long->OnSpinStepToNextValue(up, value);
}

CTovInputControl::eState CTovEditIntegerHost::InternalValidate(long value, CString* message) {
    return m_long->InternalValidate(value, message);
}

long CTovEditIntegerHost::InternalGetLong() {
    return m_long->InternalGetLong();
}

void CTovEditIntegerHost::InternalSetLong(long value, int negativeZero) {
    m_long->InternalSetLong(value, negativeZero);
}

void CTovEditIntegerHost::SetupDefaultRange() {
    m_long->SetupDefaultRange();
}

void CTovEditIntegerHost::SetupInputValueFormat() {
    m_long->SetupInputValueFormat();
}

void CTovEditIntegerHost::SetupAllowedChars() {
    m_long->SetupAllowedChars();
}

CTovEditFloatingHost::~CTovEditFloatingHost() = default;

int CTovEditFloatingHost::CreateSpinButton(std::vector<double> const& values) {
    return m_double->CreateSpinButton(values);
}

double CTovEditFloatingHost::GetRawValue() {
    return InternalGetDouble();
}

void CTovEditFloatingHost::SetDisplayFormat(unsigned decimals) {
    m_double->SetDisplayDecimals(decimals);
}

CString CTovEditFloatingHost::GetInputFormat() {
    return m_double->inputFormat;
}

void CTovEditFloatingHost::SetInputFormat(unsigned decimals) {
    SetInputFormat(CTovEditDouble::DecimalsFormat(decimals));
}

void CTovEditFloatingHost::SetInputFormat(HINSTANCE module, unsigned id) {
    CString format;
    TovLoadResourceString(module, id, format);
    SetInputFormat(format);
}

void CTovEditFloatingHost::SetInputFormat(CString const& format) {
    m_double->SetInputFormat(format);
}

int CTovEditFloatingHost::SetRange(double minimum, double maximum) {
    return m_double->SetRange(minimum, maximum);
}

void CTovEditFloatingHost::GetRange(double& minimum, double& maximum) const {
    minimum = m_double->minimum;
    maximum = m_double->maximum;
}

void CTovEditFloatingHost::SetType(long type) {
    m_double->SetType(type);
}

long CTovEditFloatingHost::GetType() const {
    return m_double->type;
}

void CTovEditFloatingHost::SetTrimTrailingZeros(int trim) {
    m_double->trimTrailingZeros = trim;
}

int CTovEditFloatingHost::GetTrimTrailingZeros() const {
    return m_double->trimTrailingZeros;
}

void CTovEditFloatingHost::SetSpinDeltaFloating(double step) {
    m_double->spinDelta = step;
}

double CTovEditFloatingHost::GetSpinDeltaFloating() const {
    return m_double->spinDelta;
}

double CTovEditFloatingHost::GetSpinStep() const {
    return m_double->SpinStep();
}

int CTovEditFloatingHost::IsValidSpinButtonValue(double value) const {
    return m_double->IsValidSpinButtonValue(value);
}

double CTovEditFloatingHost::OnSpinStepToNextValue(int up, double value) {
    return m_double->OnSpinStepToNextValue(up, value);
}

CTovInputControl::eState CTovEditFloatingHost::InternalValidate(double value, CString* message) {
    return m_double->InternalValidate(value, message);
}

double CTovEditFloatingHost::InternalGetDouble() {
    return m_double->InternalGetDouble();
}

void CTovEditFloatingHost::InternalSetDouble(double value) {
    m_double->InternalSetDouble(value);
}

void CTovEditFloatingHost::SetupDefaultRange() {
    m_double->SetupDefaultRange();
}

void CTovEditFloatingHost::SetupDefaultInputValueFormat() {
    m_double->inputFormat = "%f";
}

void CTovEditFloatingHost::SetupAllowedChars() {
    m_double->SetupAllowedChars();
}

void CTovEditFloatingHost::AdvancedFormatDouble(CString& text, double const& value) const {
    m_double->AdvancedFormat(text, value);
}

}  // namespace tov
