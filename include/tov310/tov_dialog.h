// Dialogs on the screen, from a template or from a host's own code.
//
//   class NewPoint : public tov::CTovDialog {
//    public:
//       NewPoint(tov::HINSTANCE module, QWidget* parent) : CTovDialog(module, 1000, parent) {}
//    protected:
//       int OnInitDialog() override;  // all controls stand
//       void OnOK() override;         // check what is in them, then CDialog's
//   };
//   if (NewPoint(module, this).DoModal() == tov::IDOK) ...
//
// OK, Enter and accept() are the command IDOK; Cancel, Escape, the close button and reject() are IDCANCEL. A
// command passes the hooks and OnCommand, and the dialog ends where it reaches the OnOK or OnCancel of this
// class. A button that is disabled gives no command, in whatever way it is asked for.
#pragma once

#include <tov310/dialog.h>
#include <tov310/resources.h>
#include <tov310/wnd_on.h>

#include <QDialog>

#include <memory>
#include <optional>
#include <vector>

namespace tov {

class TOV_UI_API CTovDialog : public CWndOn<QDialog, CDialog> {
    Q_OBJECT
    TOV_DYNCREATE(CTovDialog, CDialog)
 public:
    // A dialog whose controls the host makes, in the constructor of its class or by a form.
    explicit CTovDialog(QWidget* parent = nullptr);

    // A dialog of the module, dialogs/ID.json or dialogs/NAME.json (docs/resources.md); null is the library's
    // own. It is read and made when the dialog is created.
    CTovDialog(HINSTANCE module, unsigned id, QWidget* parent = nullptr);
    CTovDialog(HINSTANCE module, char const* name, QWidget* parent = nullptr);
    ~CTovDialog() override;

    // Shows the dialog and answers what it ends with; meanwhile the windows around it take nothing. IDCANCEL
    // where it ends without a number: it was destroyed, or its parent was, which leaves this object to its
    // host. -1 where it cannot be shown: the template is faulty, or it is being shown modally already. What a
    // template made is destroyed by then, and made anew by the next call; a host's own controls stay.
    int DoModal() override;

    // The same in the toolkit's numbers: QDialog::Accepted is IDOK, and IDCANCEL and -1 are Rejected.
    int exec() override;

    // Makes a dialog that lets the others work. It is shown by ShowWindow or show(), or at once where the
    // template says "visible". IDOK and IDCANCEL destroy it. Answers 1, or 0 where the template is faulty or
    // the dialog is there already.
    int Create();

    // Hides it and ends DoModal. finished() carries the result; accepted() tells of IDOK, rejected() of
    // IDCANCEL.
    void EndDialog(int result) override;

    // The window of its parent.
    CWnd* GetOwner() const override;

    int DestroyWindow() override;

    void accept() override;
    void reject() override;
    void done(int result) override;
    void setVisible(bool visible) override;

 protected:
    void OnOK() override;
    void OnCancel() override;
    void keyPressEvent(QKeyEvent* event) override;

 private:
    enum class Readiness { kReady, kFaulty, kOver };

    Readiness Prepare();
    bool MakeControls();
    void RemoveControls();
    void SetFrame(unsigned long style);
    void FocusFirstControl();
    void Command(int id);
    void PressEnter();

    HINSTANCE m_module = nullptr;
    CString m_template;  // its name; empty for none
    bool m_isReady = false;
    bool m_isModeless = false;
    bool m_isShownAtOnce = false;
    bool m_wasActive = false;  // when it was hidden
    bool m_isLoopOver = false;
    std::shared_ptr<std::optional<int>> m_end;  // of the modal loop; null without one
    std::vector<QPointer<QObject>> m_made;
};

}  // namespace tov
