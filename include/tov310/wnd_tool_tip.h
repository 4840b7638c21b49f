// The small window that shows a text at a place, beside a control or over a cell.
#pragma once

#include <tov310/tool_tip_text.h>
#include <tov310/wnd_on.h>

#include <QMetaObject>
#include <QWindow>

namespace tov {

// A tool tip: one line in the font and the colours of the toolkit's own tips. It never takes the focus. What
// it shows is also said to a screen reader (announce.h).
//
// The object is the host's. It goes from the screen when the window that it was made for is hidden, and its
// window ends with that one.
class TOV_UI_API CTovWndToolTip : public CWndOn<QWidget, CWnd> {
    Q_OBJECT
    TOV_DYNCREATE(CTovWndToolTip, CWnd)
 public:
    CTovWndToolTip();
    ~CTovWndToolTip() override;

    // Make the window, not yet shown, above the given one (null: above none). Answer 1, or 0 where it is made
    // already, when the given one is dead and without a screen. CreatePopUp makes one that a click can
    // activate on some desktops, which gives the activation back at once to the window active before; the
    // other is never activated.
    int CreatePopUp(CWnd* parent);
    int CreatePopUpNA(CWnd* parent);
    int CreatePopUp(TovPlainWidget auto* parent) { return CreatePopUp(TovWnd(parent)); }
    int CreatePopUpNA(TovPlainWidget auto* parent) { return CreatePopUpNA(TovWnd(parent)); }

    // Show the text at a point of the screen; null is an empty text, which shows nothing and does not hide
    // what is up by itself but leaves nothing of it. Line ends and tabs become blanks. The first word of a
    // name says where in the tip the point lies across, the second where down: ShowLeftBottom puts the tip's
    // left bottom corner on the point. Where the tip would leave the screen of the point it is moved into it,
    // and a text longer than the screen ends in dots. The same text at the same place changes nothing.
    // Without a window nothing happens.
    void ShowLeftTop(char const* text, int x, int y);
    void ShowLeftCentered(char const* text, int x, int y);
    void ShowLeftBottom(char const* text, int x, int y);
    void ShowCenteredTop(char const* text, int x, int y);
    void ShowCenteredCentered(char const* text, int x, int y);
    void ShowCenteredBottom(char const* text, int x, int y);
    void ShowRightTop(char const* text, int x, int y);
    void ShowRightCentered(char const* text, int x, int y);
    void ShowRightBottom(char const* text, int x, int y);
    void ShowAt(QString const& text, QPoint const& place, CTovToolTipText::eAcross across,
                CTovToolTipText::eDown down);

    void Hide();  // and forgets the text
    int IsTooltipVisible() const { return m_isHidden == 0; }

    // Whether it hides when the mouse leaves it; 0 at first.
    int HideOnLeave() const { return m_hideOnLeave; }
    void HideOnLeave(int hide) { m_hideOnLeave = hide; }

    // Whether it hides when the left or the right button is pressed on it; 0 at first. The press goes to what
    // lies under it. The first form answers for the left button, and for the right one at the pointer, which
    // may be null.
    int HideOnClick(int* right) const;
    void HideOnClick(int left, int right);

    int DestroyWindow() override;

 Q_SIGNALS:
    void toolTipMouseLeave();  // with OnToolTipMouseLeave

 protected:
    // The mouse has left a tip that hides then; it is hidden already.
    virtual void OnToolTipMouseLeave() {}

    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

 private:
    int Create(CWnd* parent, int canBeActivated);
    void Show(char const* text, CPoint const& place, CTovToolTipText::eAcross across,
              CTovToolTipText::eDown down);
    void TakeFont();
    void NoteActive(QWindow* window);
    void GiveActivationBack(int tries);

    CTovToolTipText m_text;
    CString m_said;
    QFont m_toolkitFont;
    HWND m_parent;
    QMetaObject::Connection m_follows;
    QPointer<QWindow> m_activeBefore;  // of the program's other windows the one that was active last
    int m_isMade = 0;
    int m_canBeActivated = 0;
    int m_isHidden = 1;
    int m_hideOnLeave = 0;
    int m_hideOnLeftClick = 0;
    int m_hideOnRightClick = 0;
};

}  // namespace tov
