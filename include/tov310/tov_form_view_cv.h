// A form that keeps OK true to the content of its input controls, in the dialog around it or by itself
// (host_container.h).
#pragma once

#include <tov310/host_container.h>
#include <tov310/tov_form_view.h>

namespace tov {

class TOV_UI_API CTovFormViewCV : public CTovFormViewCVOf<CTovFormView> {
    Q_OBJECT
    TOV_DYNCREATE(CTovFormViewCV, CTovFormView)
 public:
    using CTovFormViewCVOf::CTovFormViewCVOf;
    ~CTovFormViewCV() override;

    void OnEmptyFieldsChanged(int emptyFields) override;

 Q_SIGNALS:
    void emptyFieldsChanged(bool empty);            // with OnEmptyFieldsChanged
    void disabledOkButtonClicked(unsigned int id);  // with OnDisabledOkButtonClicked

 protected:
    void OnDisabledOkButtonClicked(unsigned id) override;
};

}  // namespace tov
