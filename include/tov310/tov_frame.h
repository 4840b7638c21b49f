// Frames on the screen: a main window of Qt with the library's menus, commands and views.
//
//   tov::CTovFrameWnd frame;
//   frame.setCentralWidget(view);           // any widget; what is a CView gets the frame's commands
//   frame.LoadMenu(module, 100);            // menus/100.json
//   tov::TovSetAccelerators(&frame, keys);
//   frame.show();
//
// A command that is chosen in a menu or a tool bar comes as WM_COMMAND when the menu has gone and Qt is
// through with the click, so its handler may change the menu or end the frame. It goes to the active view,
// which is the one that the focus was in last, to its document, to the frame and to the application (view.h).
// What they say of its state is asked each time a menu opens. The words for the status bar are those of
// GetMessageString.
#pragma once

#include <tov310/export.h>
#include <tov310/menu.h>
#include <tov310/view.h>
#include <tov310/wnd_on.h>

#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>

#include <memory>

namespace tov {

namespace detail {

class FrameParts;

struct TOV_UI_API EndFrameParts {
    void operator()(FrameParts* parts) const;
};
using FramePartsPtr = std::unique_ptr<FrameParts, EndFrameParts>;

// The frame's bar, if it has one, shows the menus; its active view follows the focus.
TOV_UI_API FramePartsPtr MakeFrameParts(CFrameWnd& frame, QWidget& widget);
TOV_UI_API void SetFrameMenu(FrameParts& parts, std::unique_ptr<CMenu> menu);
TOV_UI_API CMenu* FrameMenu(FrameParts const& parts);
TOV_UI_API void ShowFrameMenu(FrameParts& parts);
TOV_UI_API void BringToFront(QWidget& window);

}  // namespace detail

// What the two kinds of main windows have in common.
template <class W>
class CTovFrameOn : public CWndOn<QMainWindow, W> {
 public:
    explicit CTovFrameOn(QWidget* parent = nullptr, Qt::WindowFlags flags = {})
        : CWndOn<QMainWindow, W>(parent, flags), m_parts(detail::MakeFrameParts(*this, *this)) {}

    // Shows the menu in the frame's bar, in the place of the one before; null for none. Its popups are the
    // menus of the bar; a command that stands beside them is pressed there.
    void SetMenu(std::unique_ptr<CMenu> menu) { detail::SetFrameMenu(*m_parts, std::move(menu)); }

    // The same from the resource menus/ID.json. Answers 1, or 0, with nothing changed, where there is none.
    int LoadMenu(HINSTANCE module, unsigned id) {
        auto menu = std::make_unique<CMenu>();
        if (menu->LoadMenu(module, id) == 0) return 0;
        SetMenu(std::move(menu));
        return 1;
    }

    // It stays the frame's; null for none. Changes in its popups show as soon as they open, those in the bar
    // itself by DrawMenuBar.
    CMenu* GetMenu() const { return detail::FrameMenu(*m_parts); }
    void DrawMenuBar() { detail::ShowFrameMenu(*m_parts); }

    void ActivateFrame() override { detail::BringToFront(*this); }

 private:
    detail::FramePartsPtr m_parts;
};

// A frame with one view, or any other widget, in its middle.
class TOV_UI_API CTovFrameWnd : public CTovFrameOn<CFrameWnd> {
    Q_OBJECT
    TOV_DYNCREATE(CTovFrameWnd, CFrameWnd)
 public:
    explicit CTovFrameWnd(QWidget* parent = nullptr, Qt::WindowFlags flags = {});
};

// A frame that stands in a CTovMDIFrameWnd, with a view of its own (setWidget).
class TOV_UI_API CTovMDIChildWnd : public CWndOn<QMdiSubWindow, CMDIChildWnd> {
    Q_OBJECT
    TOV_DYNCREATE(CTovMDIChildWnd, CMDIChildWnd)
 public:
    explicit CTovMDIChildWnd(QWidget* parent = nullptr, Qt::WindowFlags flags = {});

    void ActivateFrame() override;
    CString GetWindowText() const override;
    void SetWindowText(char const* text) override;

 private:
    detail::FramePartsPtr m_parts;
};

// A frame with frames in its middle. Commands go to the active one first.
class TOV_UI_API CTovMDIFrameWnd : public CTovFrameOn<CMDIFrameWnd> {
    Q_OBJECT
    TOV_DYNCREATE(CTovMDIFrameWnd, CMDIFrameWnd)
 public:
    explicit CTovMDIFrameWnd(QWidget* parent = nullptr, Qt::WindowFlags flags = {});
    ~CTovMDIFrameWnd() override;

    // Where the frames stand. One is added by addSubWindow, and belongs to the area then.
    QMdiArea* MdiArea() const { return m_area; }

    void MDIActivate(CMDIChildWnd* child) override;

 private:
    QMdiArea* m_area;
};

}  // namespace tov
