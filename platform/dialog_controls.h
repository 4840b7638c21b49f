// The widgets behind the common classes of controls in dialog templates.
#pragma once

#include <tov310/dialog_template.h>
#include <tov310/wnd_on.h>

#include <QGroupBox>
#include <QTabWidget>

namespace tov {

// A frame with words, behind controls that stand beside it and not in it.
class DialogGroupBox final : public CWndOn<QGroupBox, CWnd> {
 public:
    using CWndOn::CWndOn;
    CString GetClassName() const override { return "Button"; }
    CString GetWindowText() const override;
    void SetWindowText(char const* text) override;

 protected:
    // Its letter leads to the control behind it.
    bool event(QEvent* event) override;
};

// Tabs whose pages are filled by the host; what controls on them tell, they tell the dialog.
class DialogTabs final : public CWndOn<QTabWidget, CWnd> {
 public:
    using CWndOn::CWndOn;
    int OnCommand(WPARAM wParam, LPARAM lParam) override;
};

// Makes a control of a common class, with its text, items and style but without its place. Null for other
// classes.
QWidget* MakeDialogControl(CTovControlTemplate const& control, QWidget& host);

// Text of a label that leads to no control: "&" stands for itself no longer.
QString WithoutMnemonic(QString text);

}  // namespace tov
