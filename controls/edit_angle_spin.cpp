// Spin steps of angles.
#include <tov310/edit_angle_mask.h>

#include "controls/edit_angle_text.h"

#include <cmath>
#include <numbers>

namespace tov {

void CTovEditAngleMask::DispatchSpinDeltapos(int up, int delta) {
    if (int const current = GetChildEditFocus(); current >= 0) m_active = current;
    if (!IsSplit() || m_active < 0) return;
    ITovAngleField& field = *m_fields[static_cast<std::size_t>(m_active)];
    if (m_active != eTovFieldSign) {
        field.Spin(up, delta);
        return;
    }
    ToggleSign();
    field.SetSelection(0, -1);
    m_units.Host().InputControl().SetChangedByUser(1);
}

void CTovEditAngleMask::ToggleSign() {
    ITovAngleField* const letter = Field(eTovFieldSign);
    if (letter == nullptr || letter->GetText().empty()) return;
    int start = 0;
    int end = 0;
    letter->GetSelection(start, end);
    CTovInputControl::CTovKeepChangedByUserStatus const keep(letter->InputControl());
    letter->TypeText(SignLetter(letter->GetText() != SignLetter(true)));
    letter->SetSelection(start, end);
}

int CTovEditAngleMask::SpinTarget(int up, int delta, double spinDelta, int wrap, double const* permitted,
                                  double& radians) {
    double const value = GetValue();
    double minimum = 0;
    double maximum = 0;
    GetRange(minimum, maximum);
    constexpr double least = 2.220446049250313e-16;
    double shownStep = std::fabs(spinDelta) >= least ? std::fabs(spinDelta) : std::fabs(delta);
    double const halfTurn =
        m_units.InShownUnit([&] { return m_units.Host().ConvertStdTo(std::numbers::pi, 1, 1); });
    while (halfTurn > 0 && shownStep > halfTurn)
        shownStep /= 10;
    double step = m_units.InShownUnit([&] { return m_units.Host().ConvertToStd(shownStep, 0, 0); });
    while (step > 0 && maximum > minimum && (maximum - minimum) / step < 10)
        step /= 10;
    auto const isWithin = [&](double x) { return x >= minimum && x <= maximum; };
    double next = permitted != nullptr ? *permitted : up != 0 ? value + step : value - step;
    if (!isWithin(next)) {
        if (wrap == 0) {
            if (isWithin(value)) return 0;
        } else if (isWithin(value)) {
            next = next > maximum ? minimum : m_bLimitToCircle != 0 ? maximum - step : maximum;
        } else {
            next = next < maximum ? minimum : maximum;
        }
    }
    radians = next;
    return 1;
}

}  // namespace tov
