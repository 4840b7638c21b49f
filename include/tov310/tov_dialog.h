// Dialogs on the screen, from a template or from a host's own code.
//
//   class NewPoint : public tov::CTovDialog {
//    public:
//       explicit NewPoint(QWidget* parent) : CTovDialog(1000, parent) {}
//    protected:
//       int OnInitDialog() override;  // CTovDialog's first: all controls stand
//       void OnOK() override;         // check what is in them, then CTovDialog's
//   };
//   if (NewPoint(this).DoModal(module) == tov::IDOK) ...
//
// A dialog whose controls come from the host's own code or from a form is shown as any QDialog is, by exec()
// or show().
//
// OK, Enter and accept() are the command IDOK; Cancel, Escape, the close button and reject() are IDCANCEL. A
// command passes the hooks and OnCommand, and the dialog ends where it reaches the OnOK or OnCancel of this
// class. A button that is disabled gives no command, in whatever way it is asked for.
//
// A Qt application that has dialogs of its own and wants only their fields to be checked needs none of this:
// a CTovInputControlContainer beside its QDialog does it (input_control_container.h).
#pragma once

#include <tov310/accelerator.h>
#include <tov310/dialog_extensions.h>
#include <tov310/host_container.h>
#include <tov310/resources.h>
#include <tov310/wnd_on.h>

#include <QDialog>

#include <memory>
#include <optional>
#include <vector>

namespace tov {

class ChildGround;

// A control of a dialog says by this property, a number, which topic of the host's help is about it.
inline constexpr char const* tovHelpIdProperty = "tovHelpId";

class TOV_UI_API CTovDialog : public CWndOn<QDialog, CTovDialogOf<CDialog>> {
    Q_OBJECT
    TOV_DYNCREATE(CTovDialog, CDialog)
 public:
    // A dialog whose controls the host makes, in the constructor of its class or by a form.
    explicit CTovDialog(QWidget* parent = nullptr);

    // A dialog with a template, dialogs/ID.json or dialogs/NAME.json (docs/resources.md), of the module that
    // DoModal or Create names. It is read and made then.
    explicit CTovDialog(unsigned id, CWnd* parent = nullptr);
    explicit CTovDialog(CString const& name, CWnd* parent = nullptr);
    CTovDialog(unsigned id, TovPlainWidget auto* parent) : CTovDialog(id, TovWnd(parent)) {}
    CTovDialog(CString const& name, TovPlainWidget auto* parent) : CTovDialog(name, TovWnd(parent)) {}

    // The same, and the module too (null: the library's own), so that exec() and show() do as well.
    CTovDialog(HINSTANCE module, unsigned id, QWidget* parent = nullptr);
    CTovDialog(HINSTANCE module, char const* name, QWidget* parent = nullptr);
    ~CTovDialog() override;

    // Shows the dialog with its template from the module and answers what it ends with; meanwhile the windows
    // around it take nothing. IDCANCEL where it ends without a number: it was destroyed, or its parent was,
    // which leaves this object to its host. -1 where it cannot be shown: there is no template or a faulty
    // one, or it is being shown modally already. What the template made is destroyed by then, and made anew
    // by the next call; a host's own controls stay.
    virtual int DoModal(HINSTANCE module);

    // The same for every dialog, with or without a template, in the toolkit's numbers: QDialog::Accepted is
    // IDOK, and IDCANCEL and -1 are Rejected.
    int exec() override;

    // Make a dialog that lets the others work, with a template of the module. It is shown by ShowWindow or
    // show(), or at once where the template says "visible". IDOK and IDCANCEL destroy it. Answer 1, 0 where
    // the template is faulty or the dialog is there already, and -1 without the name of a template.
    virtual int Create(HINSTANCE module, unsigned id, CWnd* parent = nullptr);
    virtual int Create(HINSTANCE module, char const* name, CWnd* parent = nullptr);
    virtual int Create(HINSTANCE module, CWnd* parent = nullptr);
    int Create(HINSTANCE module, unsigned id, TovPlainWidget auto* parent) {
        return Create(module, id, TovWnd(parent));
    }
    int Create(HINSTANCE module, TovPlainWidget auto* parent) { return Create(module, TovWnd(parent)); }
    int CreateIndirect(CTovDialogTemplate const& dialog, CWnd* parent) override;

    // Whether it was made by Create, and whether it then deletes itself, as soon as Qt is back in its loop,
    // when its window ends. 1 at first: such a dialog comes from new, and its window ends with that of a
    // dialog or sheet that it belongs to.
    int Modeless() const { return m_isModeless; }
    int AutoDelete() const { return m_autoDelete; }
    void AutoDelete(int autoDelete) { m_autoDelete = autoDelete; }

    // Whether the keys of the application's main window, which OnInitDialog takes over (accelerator_keys.h),
    // are commands in the dialog too. 0 at first.
    int UseInheritedAccelerators() const { return m_useInheritedAccelerators; }
    void UseInheritedAccelerators(int use);

    // Hides it and ends DoModal. finished() carries the result; accepted() tells of IDOK, rejected() of
    // IDCANCEL.
    void EndDialog(int result) override;

    // The window of its parent.
    CWnd* GetOwner() const override;

    int DestroyWindow() override;
    int EnableOkButton() override;
    int CreateToolbar(HINSTANCE module, unsigned bitmapId, unsigned controlId,
                      unsigned arrangeFlags) override;

    // The number of its template.
    unsigned long GetHelpTopic() const override { return m_helpTopic; }

    void accept() override;
    void reject() override;
    void done(int result) override;
    void setVisible(bool visible) override;

 Q_SIGNALS:
    void initialized();                         // with OnPostInitDialog, behind it
    void okButtonEnabled(bool enabled);         // OK can be pressed now, or no longer
    void comboBoxSelChanged(unsigned int id);   // with OnComboBoxSelChange
    void comboBoxEditChanged(unsigned int id);  // with OnComboBoxEditChange
    void listBoxSelChanged(unsigned int id);    // with OnListBoxSelChange
    void documentSet();                         // with OnSetDialogDocument
    void documentAboutToBeUnset();              // with OnUnsetDialogDocument

 protected:
    int OnInitDialog() override;
    void OnOK() override;
    void OnCancel() override;
    void OnComboBoxSelChange(unsigned id) override { Q_EMIT comboBoxSelChanged(id); }
    void OnComboBoxEditChange(unsigned id) override { Q_EMIT comboBoxEditChanged(id); }
    void OnListBoxSelChange(unsigned id) override { Q_EMIT listBoxSelChanged(id); }
    void OnSetDialogDocument() override;
    void OnUnsetDialogDocument() override;
    std::unique_ptr<CDialog> MakePlainDialog() override;
    void TakePlaceholder(CWnd& placeholder) override;
    void PrepareChildDialog(CDialog& child) override;
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

 private:
    friend class CTovPropSheet;
    enum class Readiness { kReady, kFaulty, kOver };

    int DoModal() override { return -1; }  // without a module there are no resources
    int RunModal();
    Readiness Prepare();
    bool MakeControls(CTovDialogTemplate const& dialog);
    void RemoveControls();
    static void EndDialogsOf(QWidget const& owner);
    void SetFrame(unsigned long style);
    void FocusFirstControl();
    void Command(int id);
    void PressEnter();

    HINSTANCE m_module = nullptr;
    CString m_template;                           // its name; empty for none
    CTovDialogTemplate const* m_given = nullptr;  // what CreateIndirect was given, while it runs
    unsigned long m_helpTopic = 0;
    HACCEL m_inheritedAccelerators;
    int m_useInheritedAccelerators = 0;
    int m_isModeless = 0;
    int m_autoDelete = 1;
    int m_okEnabled = -1;  // as it was told
    bool m_isReady = false;
    bool m_isShownAtOnce = false;
    bool m_wasActive = false;  // when it was hidden
    bool m_isLoopOver = false;
    std::unique_ptr<ChildGround> m_childGround;
    std::shared_ptr<std::optional<int>> m_end;  // of the modal loop; null without one
    std::vector<QPointer<QObject>> m_made;
};

// A dialog that keeps its OK true to the content of its input controls (host_container.h).
class TOV_UI_API CTovDialogCV : public CTovDialogCVOf<CTovDialog> {
    Q_OBJECT
    TOV_DYNCREATE(CTovDialogCV, CTovDialog)
 public:
    using CTovDialogCVOf::CTovDialogCVOf;
    ~CTovDialogCV() override;

    void OnEmptyFieldsChanged(int emptyFields) override;

 Q_SIGNALS:
    void emptyFieldsChanged(bool empty);            // with OnEmptyFieldsChanged
    void disabledOkButtonClicked(unsigned int id);  // with OnDisabledOkButtonClicked

 protected:
    void OnDisabledOkButtonClicked(unsigned id) override;
};

}  // namespace tov
