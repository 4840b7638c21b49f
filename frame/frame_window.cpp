// Frames: who has the attention, and the way of commands.
#include <tov310/application.h>
#include <tov310/cmd_ui.h>
#include <tov310/menu.h>
#include <tov310/messages.h>
#include <tov310/resources.h>
#include <tov310/view.h>

#include "frame/handle_of.h"

#include <algorithm>

namespace tov {
namespace {

template <class Kind>
Kind* WindowOfKind(HWND handle, CRuntimeClass const& kind) {
    CWnd* const window = CWnd::FromHandlePermanent(handle);
    return window != nullptr && window->IsKindOf(&kind) ? static_cast<Kind*>(window) : nullptr;
}

// A popup shows the state of its first command.
unsigned FirstCommandOf(CMenu const& menu) {
    for (unsigned i = 0; i < menu.GetMenuItemCount(); ++i) {
        CMenu const* const popup = menu.GetSubMenu(i);
        unsigned const id = popup != nullptr ? FirstCommandOf(*popup) : menu.GetMenuItemID(i);
        if (id != 0) return id;
    }
    return 0;
}

}  // namespace

void TovUpdateMenuStates(CMenu& menu, CCmdTarget& target, int disableIfNoHandler) {
    std::weak_ptr<void const> const life = menu.Life();
    // Who tells a state may change the menu.
    for (unsigned i = 0; !life.expired() && i < menu.GetMenuItemCount(); ++i) {
        CCmdUI state;
        state.m_pMenu = &menu;
        state.m_nIndex = i;
        state.m_pSubMenu = menu.GetSubMenu(i);
        state.m_nID = state.m_pSubMenu != nullptr ? FirstCommandOf(*state.m_pSubMenu) : menu.GetMenuItemID(i);
        state.DoUpdate(&target, disableIfNoHandler != 0 && state.m_pSubMenu == nullptr);
    }
}

CView* CFrameWnd::GetActiveView() const {
    return WindowOfKind<CView>(m_activeView, CView::classCView);
}

void CFrameWnd::SetActiveView(CView* view, int notify) {
    HWND const frame = GetSafeHwnd();
    CView* const before = GetActiveView();
    if (before == view) return;
    HWND const left = HandleOf(before);
    HWND const wanted = view != nullptr ? view->NeedHandle() : HWND{};
    m_activeView = {};
    if (before != nullptr && notify != 0) before->OnActivateView(0, view, before);
    // Who is told may end the frame or the view, or make another view the active one.
    if ((frame && !IsWindow(frame)) || m_activeView || (wanted && !IsWindow(wanted))) return;
    m_activeView = wanted;
    if (GetActiveView() == nullptr || notify == 0) return;
    view->OnActivateView(1, view, IsWindow(left) ? before : nullptr);
}

CFrameWnd* CFrameWnd::GetActiveFrame() {
    return this;
}

void CFrameWnd::GetMessageString(unsigned id, CString& text) const {
    TovLoadString(id, text);
    text.erase(std::min(text.find('\n'), text.size()));
}

void CFrameWnd::GetToolTipString(unsigned id, CString& text) const {
    TovLoadString(id, text);
    std::size_t const end = text.find('\n');
    text.erase(0, end == text.npos ? end : end + 1);
}

void CFrameWnd::ActivateFrame() {}

int CFrameWnd::OnCmdMsg(unsigned id, int code, void* extra, CTovCommandInfo* info) {
    if (CView* const view = GetActiveView(); view != nullptr && view->OnCmdMsg(id, code, extra, info) != 0)
        return 1;
    if (CWnd::OnCmdMsg(id, code, extra, info) != 0) return 1;
    CWinApp* const app = TovGetApp();
    return app != nullptr ? app->OnCmdMsg(id, code, extra, info) : 0;
}

LRESULT CFrameWnd::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITMENUPOPUP && wParam != 0)
        TovUpdateMenuStates(*reinterpret_cast<CMenu*>(wParam), *this, 1);
    return CWnd::WindowProc(message, wParam, lParam);
}

CMDIChildWnd* CMDIFrameWnd::MDIGetActive() const {
    return WindowOfKind<CMDIChildWnd>(m_activeChild, CMDIChildWnd::classCMDIChildWnd);
}

void CMDIFrameWnd::MDIActivate(CMDIChildWnd* child) {
    m_activeChild = child != nullptr ? child->NeedHandle() : HWND{};
}

CFrameWnd* CMDIFrameWnd::GetActiveFrame() {
    CMDIChildWnd* const child = MDIGetActive();
    return child != nullptr ? child->GetActiveFrame() : this;
}

int CMDIFrameWnd::OnCmdMsg(unsigned id, int code, void* extra, CTovCommandInfo* info) {
    CMDIChildWnd* const child = MDIGetActive();
    if (child != nullptr && child->OnCmdMsg(id, code, extra, info) != 0) return 1;
    return CFrameWnd::OnCmdMsg(id, code, extra, info);
}

}  // namespace tov
