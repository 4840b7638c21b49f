// The library's checks in a dialog or a form that is Qt's own:
//
//   class MyDialog : public QDialog {
//    public:
//       MyDialog() { m_ui.setupUi(this); m_guard.Begin(); }
//       void accept() override { if (m_guard.ValidateCommand(tov::IDOK)) QDialog::accept(); }
//    private:
//       tov::CTovFormGuard m_guard{this};
//   };
//
// The focus cannot leave a field whose content is wrong, the words for that are shown beside it, OK and Apply
// can be pressed as long as nothing that must be filled is empty, and a click on them when they cannot shows
// what is missing.
#pragma once

#include <tov310/host_container.h>
#include <tov310/wnd_on.h>

#include <QObject>

#include <memory>

namespace tov {

class TOV_UI_API CTovFormGuard : public QObject,
                                 public CTovOkHost,
                                 public CTovHostContainer,
                                 protected CTovTipExtensions {
    Q_OBJECT
 public:
    // The form is borrowed and lives as long.
    explicit CTovFormGuard(QWidget* form);
    ~CTovFormGuard() override;

    // To be called when all controls stand, and again when others have come.
    void Begin();

    int EnableOkButton() override;
    int OnEnableOkButton(int quiet) override { return EnableOkOfHost(quiet); }
    void OnEmptyFieldsChanged(int emptyFields) override;

 Q_SIGNALS:
    void emptyFieldsChanged(bool empty);  // something that must be filled is empty, or no longer
    void disabledOkButtonClicked(unsigned int id);

 protected:
    void OnDisabledOkButtonClicked(unsigned id) override;
    void ShowHostTip(char const* text, int x, int y, unsigned milliseconds) override;
    void HideHostTip() override { HideTooltip(); }

 private:
    class Watch;

    std::shared_ptr<Watch> m_watch;
};

}  // namespace tov
