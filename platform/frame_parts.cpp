// What makes a main window a frame of the library.
#include "platform/event_routing.h"
#include "platform/menu_view.h"
#include "platform/window_registry.h"

#include <tov310/messages.h>
#include <tov310/qt_values.h>
#include <tov310/tov_frame.h>

#include <QApplication>
#include <QMenuBar>

#include <utility>

namespace tov {
namespace detail {

class FrameParts final : public QObject {
 public:
    FrameParts(CFrameWnd& frame, QWidget& widget) : m_frame(frame), m_widget(widget) {
        connect(qApp, &QApplication::focusChanged, this,
                [this](QWidget*, QWidget* now) { FollowFocus(now); });
    }

    void SetMenu(std::unique_ptr<CMenu> menu) {
        std::swap(m_menu, menu);
        Show();
    }

    CMenu* Menu() const { return m_menu.get(); }

    void Show() {
        auto* const window = qobject_cast<QMainWindow*>(&m_widget);
        if (window == nullptr) return;
        QMenuBar* const bar = window->menuBar();
        if (!m_isConnected) {
            connect(bar, &QMenuBar::triggered, this, &FrameParts::Choose);
            m_isConnected = true;
        }
        for (QObject* const child : QObjectList(bar->children())) {
            if (dynamic_cast<MenuView*>(child) != nullptr) child->deleteLater();
        }
        // So do the commands that stand in the bar itself.
        for (QAction* const before : bar->actions()) {
            if (before->parent() == bar) before->deleteLater();
        }
        bar->clear();
        if (m_menu == nullptr) return;
        GiveBirth(m_frame, m_widget);
        TovUpdateMenuStates(*m_menu, m_frame, 1);
        for (unsigned i = 0; i < m_menu->GetMenuItemCount(); ++i)
            bar->addAction(MenuView::MakeAction(*m_menu, i, m_frame.GetSafeHwnd(), *bar));
    }

 private:
    void Choose(QAction const* action) {
        unsigned const command = MenuView::CommandOf(action);
        if (command != 0) TovPostMessage(m_frame.GetSafeHwnd(), WM_COMMAND, TovCommandParam(command, 0));
    }

    // The innermost view of this frame around what has the focus is the active
    // one.
    void FollowFocus(QWidget* now) {
        for (QWidget* w = now; w != nullptr && w != &m_widget; w = w->parentWidget()) {
            CWnd* const found = WindowRegistry::Instance().Find(w);
            if (found == nullptr || !found->IsKindOf(&CView::classCView)) continue;
            if (found->GetParentFrame() != &m_frame) return;
            GiveBirth(*found, *w);
            m_frame.SetActiveView(static_cast<CView*>(found));
            return;
        }
    }

    CFrameWnd& m_frame;
    QWidget& m_widget;
    std::unique_ptr<CMenu> m_menu;
    bool m_isConnected = false;
};

void EndFrameParts::operator()(FrameParts* parts) const {
    delete parts;
}

FramePartsPtr MakeFrameParts(CFrameWnd& frame, QWidget& widget) {
    return FramePartsPtr(std::make_unique<FrameParts>(frame, widget).release());
}

void SetFrameMenu(FrameParts& parts, std::unique_ptr<CMenu> menu) {
    parts.SetMenu(std::move(menu));
}

CMenu* FrameMenu(FrameParts const& parts) {
    return parts.Menu();
}

void ShowFrameMenu(FrameParts& parts) {
    parts.Show();
}

void BringToFront(QWidget& window) {
    if (window.isMinimized())
        window.showNormal();
    else
        window.show();
    window.raise();
    window.activateWindow();
}

}  // namespace detail

CTovFrameWnd::CTovFrameWnd(QWidget* parent, Qt::WindowFlags flags) : CTovFrameOn(parent, flags) {}

CTovMDIChildWnd::CTovMDIChildWnd(QWidget* parent, Qt::WindowFlags flags)
    : CWndOn(parent, flags), m_parts(detail::MakeFrameParts(*this, *this)) {}

void CTovMDIChildWnd::ActivateFrame() {
    CWnd* const around = GetParentFrame();
    if (around != nullptr && around->IsKindOf(&CMDIFrameWnd::classCMDIFrameWnd))
        static_cast<CMDIFrameWnd*>(around)->MDIActivate(this);
    detail::BringToFront(*this);
}

CString CTovMDIChildWnd::GetWindowText() const {
    return TovText(windowTitle());
}

void CTovMDIChildWnd::SetWindowText(char const* text) {
    setWindowTitle(TovQString(text));
}

CTovMDIFrameWnd::CTovMDIFrameWnd(QWidget* parent, Qt::WindowFlags flags)
    : CTovFrameOn(parent, flags), m_area(std::make_unique<QMdiArea>(this).release()) {
    setCentralWidget(m_area);
    connect(m_area, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow* child) {
        CWnd* const window = WindowRegistry::Instance().Find(child);
        bool const isFrame = window != nullptr && window->IsKindOf(&CMDIChildWnd::classCMDIChildWnd);
        if (isFrame) GiveBirth(*window, *child);
        CMDIFrameWnd::MDIActivate(isFrame ? static_cast<CMDIChildWnd*>(window) : nullptr);
    });
}

// The area goes after the frame, and activates nothing in doing so.
CTovMDIFrameWnd::~CTovMDIFrameWnd() {
    disconnect(m_area, nullptr, this, nullptr);
}

void CTovMDIFrameWnd::MDIActivate(CMDIChildWnd* child) {
    CMDIFrameWnd::MDIActivate(child);
    m_area->setActiveSubWindow(qobject_cast<QMdiSubWindow*>(TovWidget(child)));
}

}  // namespace tov
