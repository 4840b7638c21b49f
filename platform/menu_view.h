// Menus on the screen.
#pragma once

#include <tov310/menu_popup.h>

#include <QMenu>

#include <memory>

namespace tov {

// Shows a menu of the library. Each time it opens the window is told by WM_INITMENUPOPUP, and it is filled
// with what stands in the menu then; so it is with the popups in it. Whatever becomes of the menu or the
// window while it is open does no harm.
class MenuView final : public QMenu {
 public:
    MenuView(CMenu& menu, HWND window, QWidget* parent);

    // Tells the window and fills it now, before it opens first.
    void Fill();

    // Without it only the left button chooses.
    void SetTakesRightButton(bool takes) { m_takesRightButton = takes; }

    // The command of an entry; 0 where it is none.
    static unsigned CommandOf(QAction const* action);

    // One of the menu's entries, for a menu or a bar of menus, which it belongs to.
    static QAction* MakeAction(CMenu& menu, unsigned position, HWND window, QWidget& parent);

 protected:
    void mouseReleaseEvent(QMouseEvent* event) override;

 private:
    CMenu* m_menu;
    std::weak_ptr<void const> m_life;  // of the menu
    HWND m_window;
    bool m_takesRightButton = true;
    bool m_isFresh = false;  // filled already for this opening
};

// Shows menus that pop up.
class MenuPort final : public ITovMenuPort {
 public:
    int Track(CMenu& menu, POINT const& point, unsigned flags, CWnd& window) override;
    void FillRect(CDC* dc, CRect const& rect, unsigned long color) override;
};

}  // namespace tov
