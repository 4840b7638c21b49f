#include <tov310/view_extensions.h>

#include <tov310/application.h>
#include <tov310/cmd_ui.h>
#include <tov310/device_context.h>
#include <tov310/dialog.h>
#include <tov310/help_app.h>
#include <tov310/menu.h>
#include <tov310/messages.h>
#include <tov310/requirements.h>
#include <tov310/styles.h>
#include <tov310/system.h>

#include "frame/handle_of.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace tov {
namespace {

constexpr WPARAM slowClickTimer = 2;
constexpr unsigned firstHelpTopic = 0x20000;
constexpr unsigned firstSystemCommand = 0xF000;

CView* ViewOfHandle(LPARAM handle) {
    CWnd* const window = CWnd::FromHandlePermanent(HWND{static_cast<std::uint64_t>(handle)});
    return window != nullptr && window->IsKindOf(&CView::classCView) ? static_cast<CView*>(window) : nullptr;
}

bool HasFocusWithin(CWnd const& window) {
    HWND const focus = TovGetFocus();
    return focus && (focus == window.GetSafeHwnd() || window.IsChild(focus) != 0);
}

}  // namespace

CTovViewExtensions::~CTovViewExtensions() = default;

CTovViewExtensions* CTovViewExtensions::CastObjectSafe(CObject* object) {
    auto* const found = dynamic_cast<CTovViewExtensions*>(object);
    return found != nullptr ? static_cast<CTovViewExtensions*>(*found) : nullptr;
}

LRESULT CTovViewExtensions::OnHelpHitTest() const {
    return m_helpId != 0 ? static_cast<LRESULT>(m_helpId) + firstHelpTopic : 0;
}

int CTovViewExtensions::OnCommandHelp(LPARAM topic) const {
    if (m_helpId == 0) return 0;
    CTovHelpApp::ShowHelp(static_cast<unsigned long>(topic != 0 ? topic : OnHelpHitTest()));
    return 1;
}

int CTovViewExtensions::ExchangeDlgItem(CFormView* parent, unsigned id, int initialUpdate,
                                        unsigned showCommand, CTovPtrSmart<CTovDocument> const& document) {
    return ExchangeDlgItem(static_cast<CWnd*>(parent), id, initialUpdate, showCommand, document);
}

int CTovViewExtensions::ExchangeDlgItem(CDialog* parent, unsigned id, int initialUpdate, unsigned showCommand,
                                        CTovPtrSmart<CTovDocument> const& document) {
    return ExchangeDlgItem(static_cast<CWnd*>(parent), id, initialUpdate, showCommand, document);
}

int CTovViewExtensions::ExchangeDlgItem(CWnd* parent, unsigned id, int initialUpdate, unsigned showCommand,
                                        CTovPtrSmart<CTovDocument> const& document) {
    if (parent == nullptr || (parent->GetStyle() & WS_CLIPCHILDREN) == 0) return 0;
    HWND const around = parent->GetSafeHwnd();
    CWnd const* const placeholder = CWnd::FromHandlePermanent(parent->GetDlgItem(static_cast<int>(id)));
    if (placeholder == nullptr) return 0;
    unsigned long const tabStop = placeholder->GetStyle() & WS_TABSTOP;
    m_isUpdateForHost = 1;
    int const isMade = m_view->SubclassDlgItem(id, parent);
    if (isMade == 0) {
        m_isUpdateForHost = 0;
        return 0;
    }
    HWND const self = m_view->GetSafeHwnd();
    m_view->ModifyStyle(WS_TABSTOP, WS_CHILD | WS_BORDER | tabStop);
    if (initialUpdate == 0) m_view->ShowWindow(SW_SHOW);
    if (document) SetViewDocument(document);
    if (initialUpdate != 0 && IsWindow(self)) {
        m_view->OnInitialUpdate();
        TovSendMessageToDescendants(self, WM_INITIALUPDATE);
        if (IsWindow(self)) m_view->ShowWindow(static_cast<int>(showCommand));
        if (IsWindow(self)) m_view->RedrawWindow(RDW_UPDATENOW);
    }
    TovPostMessage(around, WM_TOV_VIEW_DLGITEM_EXCHANGED);
    return 1;
}

int CTovViewExtensions::StopWindowUpdate() {
    int const wasStopped = std::exchange(m_isUpdateStopped, 1);
    if (wasStopped == 0) TovSendMessage(m_view->GetSafeHwnd(), WM_SETREDRAW, 0);
    return wasStopped;
}

void CTovViewExtensions::ContinueWindowUpdate(int erase) {
    if (std::exchange(m_isUpdateStopped, 0) == 0) return;
    TovSendMessage(m_view->GetSafeHwnd(), WM_SETREDRAW, 1);
    m_view->RedrawWindow(erase != 0 ? RDW_INVALIDATE : RDW_INVALIDATE | RDW_NOERASE);
}

void CTovViewExtensions::HidePopupWnd(CWnd* window) {
    if (IsWindow(HandleOf(window)) && (window->GetStyle() & WS_VISIBLE) != 0) window->ShowWindow(SW_HIDE);
}

void CTovViewExtensions::RestorePopupWnd(CWnd* window, int takeFocus) {
    HWND const self = HandleOf(window);
    if (!IsWindow(self) || (window->GetStyle() & WS_VISIBLE) != 0) return;
    CWinApp const* const app = TovGetApp();
    CWnd const* const main = CWnd::FromHandlePermanent(app != nullptr ? app->GetMainWnd() : HWND{});
    if (main != nullptr && (main->GetStyle() & WS_MINIMIZE) != 0) return;
    HWND const focus = TovGetFocus();
    window->ShowWindow(SW_SHOW);
    CWnd* const taker = CWnd::FromHandlePermanent(takeFocus != 0 ? self : focus);
    if (taker != nullptr && (takeFocus != 0 || TovGetFocus() != focus)) taker->SetFocus();
}

LRESULT CTovViewExtensions::OnPrintClient(CDC* dc, CView* view) {
    if (dc == nullptr || view == nullptr) return 0;
    HWND const self = view->GetSafeHwnd();
    view->OnPrepareDC(dc, nullptr);
    if (!self || IsWindow(self)) view->OnDraw(dc);
    return 1;
}

int CTovViewExtensions::GetBitmapFromClientRect(CWnd* window, HBITMAP& bitmap) {
    bitmap = nullptr;
    if (window == nullptr) return 0;
    CRect const client = window->GetClientRect();
    if (client.Width() < 3 || client.Height() < 3) return 0;
    bitmap = TovGetSystem()->GetPicture(window->GetSafeHwnd());
    window->RedrawWindow(RDW_INVALIDATE);
    return bitmap != nullptr;
}

void CTovViewExtensions::InitMenuPopupFix(CWnd* window, CMenu* menu, unsigned, int systemMenu) {
    if (window == nullptr || menu == nullptr || systemMenu != 0) return;
    HWND const self = window->GetSafeHwnd();
    std::weak_ptr<void const> const life = menu->Life();
    auto count = static_cast<int>(menu->GetMenuItemCount());
    for (int i = 0; i < count; ++i) {
        auto const place = static_cast<unsigned>(i);
        CCmdUI state;
        state.m_pMenu = menu;
        state.m_nIndex = place;
        state.m_pSubMenu = menu->GetSubMenu(place);
        state.m_nID =
            state.m_pSubMenu != nullptr ? state.m_pSubMenu->GetMenuItemID(0) : menu->GetMenuItemID(place);
        if (state.m_nID == 0 || state.m_nID == tovNoMenuItem) continue;
        state.DoUpdate(window, state.m_pSubMenu == nullptr && state.m_nID < firstSystemCommand);
        if (!IsWindow(self) || life.expired()) return;
        // Entries may have gone; of several with one command the first has spoken for all.
        auto const left = static_cast<int>(menu->GetMenuItemCount());
        if (left < count) {
            i = std::max(i - (count - left), -1);
            while (i >= 0 && i < left && menu->GetMenuItemID(static_cast<unsigned>(i)) == state.m_nID)
                ++i;
        }
        count = left;
    }
}

int CTovViewExtensions::DrawFrame(CDC* dc) {
    CRect const client = m_view->GetClientRect();
    if (TovIsComCtlXP() == 0 || dc == nullptr || client.Width() <= 0 || client.Height() <= 0) return 0;
    return dc->FillSolidRect(client, TovGetSystem()->GetSysColor(COLOR_WINDOW)) != 0;
}

int CTovViewExtensions::OnEraseBkgnd(CDC* dc) {
    if (m_isUpdateStopped != 0) return 1;
    return DirectParentIsDialog() != 0 ? DrawFrame(dc) : 0;
}

CRect CTovViewExtensions::RectOfItem(CWnd const& control) const {
    CRect const rect = TovRectWithin(control, *m_view);
    CPoint const scrolled = m_view->GetScrollPosition();
    return {rect.left + scrolled.x, rect.top + scrolled.y, rect.right + scrolled.x, rect.bottom + scrolled.y};
}

void CTovViewExtensions::AddItemToArrange(int moveX, int sizeX, int moveY, int sizeY, unsigned id) {
    CWnd const* const control = CWnd::FromHandlePermanent(m_view->GetDlgItem(static_cast<int>(id)));
    if (control == nullptr) return;
    m_arrangement.TakeUnits(*m_view);
    m_arrangement.Add(moveX, sizeX, moveY, sizeY, id, RectOfItem(*control));
}

void CTovViewExtensions::AddItemToArrange(int flags, unsigned id) {
    CWnd const* const control = CWnd::FromHandlePermanent(m_view->GetDlgItem(static_cast<int>(id)));
    if (control == nullptr) return;
    m_arrangement.TakeUnits(*m_view);
    m_arrangement.Add(flags, id, RectOfItem(*control));
}

void CTovViewExtensions::PlaceItem(ARRANGE_ITEM const& item, int dx, int dy) {
    CWnd* const control = CWnd::FromHandlePermanent(m_view->GetDlgItem(static_cast<int>(item.id)));
    if (control == nullptr) return;
    CRect const place = CTovArrangement::Place(item, dx, dy);
    CPoint const scrolled = m_view->GetScrollPosition();
    control->MoveWindow({place.left - scrolled.x, place.top - scrolled.y, place.right - scrolled.x,
                         place.bottom - scrolled.y});
}

void CTovViewExtensions::ArrangeItems(CSize current, CSize original, CSize minimum) {
    std::weak_ptr<void const> const life = m_self;
    m_arrangement.Arrange(current, original, minimum, [&](ARRANGE_ITEM const& item, int dx, int dy) {
        if (!life.expired()) PlaceItem(item, dx, dy);
    });
}

void CTovViewExtensions::FontChanged() {
    if (m_arrangement.IsEmpty()) return;
    m_arrangement.TakeUnits(*m_view);
    CRect const client = m_view->GetClientRect();
    std::weak_ptr<void const> const life = m_self;
    m_arrangement.ArrangeAgain({client.Width(), client.Height()},
                               [&](ARRANGE_ITEM const& item, int dx, int dy) {
                                   if (!life.expired()) PlaceItem(item, dx, dy);
                               });
}

void CTovViewExtensions::InitialUpdatePassed() {
    HWND const self = m_view->GetSafeHwnd();
    CreateTip(*m_view);
    m_isInitialUpdatePassed = 1;
    JoinDocument();
    TovPostMessage(self, WM_TOV_POST_INITIALUPDATE);
}

void CTovViewExtensions::ActivationPassed(int activate, CView* activated) {
    if (activate == m_activation) return;
    m_activation = activate;
    auto const state = static_cast<WPARAM>(activate);
    auto const view = static_cast<LPARAM>(HandleOf(activated).id);
    TovPostMessage(m_view->GetSafeHwnd(), WM_TOV_POST_ACTIVATEVIEW, state, view);
    TovPostMessage(HandleOf(m_view->GetParent()), WM_TOV_POST_ACTIVATECHILDVIEW, state, view);
}

int CTovViewExtensions::EndSlowDoubleClick() {
    if (std::exchange(m_isClickPending, 0) == 0) return 0;
    m_view->KillTimer(slowClickTimer);
    return 1;
}

LRESULT CTovViewExtensions::LeftButtonUp(WPARAM keys, LPARAM place, Pass pass) {
    if (DblClickSlowAllowed() != 0) {
        if (EndSlowDoubleClick() != 0) {
            TovSendMessage(m_view->GetSafeHwnd(), WM_TOV_DBLCLK_SLOW, keys, place);
            return 0;
        }
        m_isClickPending = 1;
        m_view->SetTimer(slowClickTimer, 3 * TovGetSystem()->GetDoubleClickTime());
    }
    return pass(*m_view, WM_LBUTTONUP, keys, place);
}

// The frame turns to a view in it that is pressed on. A view in a dialog takes the focus, unless what was
// pressed on in it has it.
LRESULT CTovViewExtensions::MouseActivate(HWND desktop, unsigned mouseMessage, LRESULT answer) {
    if (answer == 0 ||
        (mouseMessage != WM_LBUTTONDOWN && mouseMessage != WM_RBUTTONDOWN && mouseMessage != WM_MBUTTONDOWN))
        return answer;
    CFrameWnd* const frame = m_view->GetParentFrame();
    CWnd const* const top = CWnd::FromHandlePermanent(desktop);
    if (frame != nullptr && top != nullptr && (top == frame || top->IsChild(frame->GetSafeHwnd()) != 0)) {
        frame->SetActiveView(m_view);
        return answer;
    }
    if ((answer == 1 || answer == 2) && !HasFocusWithin(*m_view)) m_view->SetFocus();
    return answer;
}

LRESULT CTovViewExtensions::Answer(unsigned message, WPARAM wParam, LPARAM lParam, Pass pass) {
    HWND const self = m_view->GetSafeHwnd();
    CView& view = *m_view;
    switch (message) {
        case WM_TIMER:
            if (OnTipTimer(wParam) != 0) return 0;
            if (wParam == slowClickTimer) {
                EndSlowDoubleClick();
                return 0;
            }
            break;
        case WM_MOVE:
        case WM_SIZE:
            if (m_isInitialUpdatePassed != 0) HideTooltip();
            break;
        case WM_DESTROY:
            HideTooltip();
            EndSlowDoubleClick();
            m_isInitialUpdatePassed = m_isUpdateForHost = 0;
            break;
        case WM_LBUTTONUP:
            return LeftButtonUp(wParam, lParam, pass);
        case WM_LBUTTONDBLCLK:
            EndSlowDoubleClick();
            break;
        case WM_TOV_DBLCLK_SLOW:
            OnSlowDoubleClick(wParam, TovPointOf(lParam));
            return 0;
        case WM_TOV_POST_INITIALUPDATE: {
            OnPostInitialUpdate();
            if (IsWindow(self)) OnNotice(eTovViewNotice::kInitialUpdate);
            return 0;
        }
        case WM_TOV_POST_SETFOCUS:
            OnPostSetFocus();
            return 0;
        case WM_TOV_POST_ACTIVATEVIEW:
            OnPostActivateView(static_cast<int>(wParam), ViewOfHandle(lParam));
            if (IsWindow(self)) OnNotice(eTovViewNotice::kActivation);
            return 0;
        case WM_INITMENUPOPUP:
            InitMenuPopupFix(&view, reinterpret_cast<CMenu*>(wParam), 0, 0);
            if (!IsWindow(self)) return 0;
            break;
        case WM_PRINTCLIENT:
            if ((lParam & PRF_ERASEBKGND) != 0) OnEraseBkgnd(reinterpret_cast<CDC*>(wParam));
            return OnPrintClient(reinterpret_cast<CDC*>(wParam), &view);
        case WM_KEYDOWN:
            if (wParam == VK_F1 && OnCommandHelp(0) != 0) return 0;
            break;
        default:
            break;
    }
    LRESULT const answer = pass(view, message, wParam, lParam);
    if (!IsWindow(self)) return answer;
    if (message == WM_MOUSEACTIVATE)
        return MouseActivate(HWND{static_cast<std::uint64_t>(wParam)}, static_cast<unsigned>(lParam), answer);
    if (message == WM_FONTCHANGE) FontChanged();
    if (message == WM_SETFOCUS) TovPostMessage(self, WM_TOV_POST_SETFOCUS);
    // Nobody has told it that it is about to be seen.
    if (message == WM_SHOWWINDOW && wParam != 0 && m_isInitialUpdatePassed == 0 && m_isUpdateForHost == 0)
        TovSendMessage(self, WM_INITIALUPDATE);
    return answer;
}

}  // namespace tov
