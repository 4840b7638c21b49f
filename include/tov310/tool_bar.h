// Tool bars: commands as buttons.
#pragma once

#include <tov310/export.h>
#include <tov310/resources.h>
#include <tov310/window.h>
#include <tov310/wnd_on.h>

#include <QMetaObject>
#include <QToolBar>

#include <span>

namespace tov {

// A button sends its command to the frame around the bar, or to the window that it stands in where there is
// no frame, when Qt is through with the click. While the bar is shown the states of the commands are asked
// whenever the program has nothing else to do. What a button is for, in the status bar and as a tool tip,
// says the frame (GetMessageString, GetToolTipString).
class TOV_UI_API CTovToolBar : public CWndOn<QToolBar, CWnd> {
    Q_OBJECT
    TOV_DYNCREATE(CTovToolBar, CWnd)
 public:
    explicit CTovToolBar(QWidget* parent = nullptr);
    ~CTovToolBar() override;

    // The buttons by their commands, from left to right in the place of those before; 0 is a separator.
    void SetButtons(std::span<unsigned const> commands);

    // The same from the resource toolbars/ID.json, with the pictures of bitmaps/ID.*. Answers 1, or 0, with
    // nothing changed, where there is none or it is faulty. Buttons without pictures show their short names.
    int LoadToolBar(HINSTANCE module, unsigned id);

    // Pictures alone, those of the toolbar resource with this number, for the commands that are the same.
    // Answers 1, or 0, with nothing changed.
    int LoadBitmap(HINSTANCE module, unsigned id);

    // More pictures: the bitmap ID holds so many side by side, which go to the buttons without one, from left
    // to right. Answers how many found a button, or -1, with nothing changed, where there is no such
    // bitmap or it has fewer columns of pixels than pictures.
    int AddBitmap(int count, HINSTANCE module, unsigned id);

    // The button of a command, for an icon or a menu of the host's; it stays the bar's. Null for none.
    QAction* ButtonOf(unsigned command) const;

    // Asks for the states now.
    void UpdateStates();

 protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

 private:
    CWnd* Target() const;
    void Press(QAction const* button);
    void SetWords();

    QMetaObject::Connection m_idle;
};

// The bar and the control in it are one.
using CTovToolBarCtrl = CTovToolBar;

}  // namespace tov
