#include <tov310/tov_form_view_cv.h>

namespace tov {

CTovFormViewCV::~CTovFormViewCV() = default;

void CTovFormViewCV::OnEmptyFieldsChanged(int emptyFields) {
    QPointer<CTovFormViewCV> const alive(this);
    CTovFormViewCVOf::OnEmptyFieldsChanged(emptyFields);
    if (alive) Q_EMIT emptyFieldsChanged(emptyFields != 0);
}

void CTovFormViewCV::OnDisabledOkButtonClicked(unsigned id) {
    QPointer<CTovFormViewCV> const alive(this);
    CTovFormViewCVOf::OnDisabledOkButtonClicked(id);
    if (alive) Q_EMIT disabledOkButtonClicked(id);
}

}  // namespace tov
