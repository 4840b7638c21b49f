// A tool bar at an edge of a dialog, or beside the buttons of a sheet.
#pragma once

#include <tov310/export.h>
#include <tov310/geometry.h>
#include <tov310/resources.h>
#include <tov310/types.h>

#include <QPointer>
#include <QToolBar>

namespace tov {

class CDialog;
class CPropertySheet;
class CWnd;

// Buttons out of a toolbar resource. A click posts the button's command to the dialog as WM_COMMAND; its
// QAction is triggered too. The bar is a control of the dialog and ends with the dialog's window; it can be
// created anew in the next one. The object must not outlive the dialog.
class TOV_UI_API CTovDlgToolBar {
 public:
    // Where it stands; bits. Without them it stands at the bottom and at the right.
    enum eArrange { eTop = 1, eLeft = 4 };

    explicit CTovDlgToolBar(CDialog* dialog);  // or page
    explicit CTovDlgToolBar(CPropertySheet* sheet);
    CTovDlgToolBar(CTovDlgToolBar const&) = delete;
    CTovDlgToolBar& operator=(CTovDlgToolBar const&) = delete;
    virtual ~CTovDlgToolBar();

    // Makes the bar of toolbars/ID.json with the pictures of bitmaps/ID.* (null: of the library), as the
    // control with that number, shown. A button says in a tool tip what the text with the number of its
    // command says; of one with a line end ("Opens a table of places\nOpen") what is behind that. The dialog
    // shows no other texts for it, so each should have one. `style` is that of windows: WS_DISABLED. Answers
    // 1, or 0: there is one already, the dialog has no window, there is no such toolbar, or it has no
    // buttons.
    virtual int Create(HINSTANCE module, unsigned toolbarId, unsigned controlId, int arrangeFlags,
                       unsigned long style);

    virtual void Destroy();

    // Lets a button be pressed or not. 0: there is none of that command.
    virtual int EnableButton(unsigned command, int enable);

    // Puts the bar into its place by the dialog's present size: a dialog's margin from the edges, and at the
    // edges in a dialog that stands in another. In a sheet it is at the left of the buttons whatever the
    // flags, and follows them.
    virtual void ArrangeToolbar(int arrangeFlags);

    // Null without one.
    QToolBar* ToolBar() const;
    QAction* ButtonOf(unsigned command) const;

 private:
    class Bar;

    CPoint PlaceInDialog(CSize const& bar, int arrangeFlags) const;
    CPoint PlaceInSheet(CSize const& bar) const;
    HWND FirstButton() const;

    CWnd* m_host;
    CDialog* m_dialog = nullptr;
    CPropertySheet* m_sheet = nullptr;
    QPointer<QWidget> m_bar;
};

}  // namespace tov
