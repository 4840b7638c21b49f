#include <tov310/quick_draw.h>

#include <tov310/styles.h>
#include <tov310/system.h>
#include <tov310/view.h>
#include <tov310/window_messages.h>

#include "frame/handle_of.h"

#include <algorithm>
#include <utility>

namespace tov {

CPaintDC::CPaintDC(CWnd const& window)
    : m_dc(TovGetSystem()->CreatePaintDC(window.GetSafeHwnd(), &m_rcPaint)) {}

CPaintDC::~CPaintDC() = default;

CTovQuickDraw::CTovQuickDraw() {
    // The picture of a window that the toolkit paints is taken when it has done so.
    SetRunsAfter(1);
}

CTovQuickDraw::~CTovQuickDraw() = default;

void CTovQuickDraw::SetNotifyWnd(CView const* view) {
    m_notify = HandleOf(view);
}

CView* CTovQuickDraw::GetNotifyWnd() const {
    CWnd* const notify = CWnd::FromHandlePermanent(m_notify);
    return notify != nullptr && notify->IsKindOf(&CView::classCView) ? static_cast<CView*>(notify) : nullptr;
}

int CTovQuickDraw::Install(CWnd* window) {
    if (window == nullptr || !HookWindow(window->GetSafeHwnd())) return 0;
    CRect const client = window->GetClientRect();
    SetSize({client.Width(), client.Height()});
    return 1;
}

int CTovQuickDraw::Uninstall() {
    int const unhooked = UnhookWindow();
    Clean();
    return unhooked;
}

int CTovQuickDraw::StopWindowUpdate() {
    return m_nStopCount++;
}

void CTovQuickDraw::ContinueWindowUpdate(int before) {
    m_nStopCount = std::max(before, 0);
    CWnd* const window = m_nStopCount == 0 ? CWnd::FromHandlePermanent(GetHookedWindow()) : nullptr;
    if (window != nullptr) window->RedrawWindow(RDW_INVALIDATE);
}

void CTovQuickDraw::SetSize(SIZE const& size) {
    if (size.cx < 0 || size.cy < 0 || size == m_size) return;
    m_size = size;
    Clean();
}

int CTovQuickDraw::EraseBkgnd(CWnd* window) {
    if (m_nStopCount != 0) return 1;
    CDC* const memory = GetCompDC(window);
    if (memory == nullptr) return 0;
    memory->FillSolidRect({0, 0, m_size.cx, m_size.cy}, Background());
    return 1;
}

CDC* CTovQuickDraw::GetCompDC(CWnd* window) {
    if (m_memory == nullptr) Initialize(window);
    return m_memory.get();
}

void CTovQuickDraw::SetCustomBkColor(COLORREF const& color) {
    m_customBkColor = color;
    m_hasCustomBkColor = true;
}

void CTovQuickDraw::LoadSystemColors() {
    // A new memory device has the colours that the window has by now.
    Clean();
}

void CTovQuickDraw::SetExcludeFromTop(unsigned int rows) {
    m_nExcludeFromTop = rows;
}

unsigned int CTovQuickDraw::GetExcludeFromTop() const {
    return m_nExcludeFromTop;
}

void CTovQuickDraw::OnDestroyWindow() {
    CTovSubclassWnd::OnDestroyWindow();
    Clean();
}

void CTovQuickDraw::Draw(CPaintDC& paint) {
    CRect part = paint.GetPaintRect();
    auto const excluded = static_cast<int>(std::min(m_nExcludeFromTop, 0x7FFFFFFFU));
    part.top = std::max(part.top, excluded);
    if (paint.GetDC() == nullptr || m_memory == nullptr || part.Width() <= 0 || part.Height() <= 0) return;
    paint.GetDC()->BitBlt(part.left, part.top, part.Width(), part.Height(), m_memory.get(), part.left,
                          part.top, SRCCOPY);
}

void CTovQuickDraw::Clean() {
    m_memory = nullptr;
    m_isPainted = false;
}

int CTovQuickDraw::Initialize(CWnd* window) {
    Clean();
    if (window == nullptr || m_size.cx == 0 || m_size.cy == 0) return 0;
    m_memory = TovGetSystem()->CreateMemoryDC(window->GetSafeHwnd(), m_size);
    return m_memory != nullptr;
}

COLORREF CTovQuickDraw::Background() const {
    return m_hasCustomBkColor ? m_customBkColor : m_memory->GetBkColor();
}

LRESULT CTovQuickDraw::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) {
    // Who brings a device of his own wants the picture there.
    if (message == WM_PAINT && wParam == 0 && m_size.cx != 0 && m_size.cy != 0) return OnPaint(lParam);
    if (message == WM_SYSCOLORCHANGE) LoadSystemColors();
    if (message == WM_SIZE && wParam != SIZE_MINIMIZED) {
        CPoint const size = TovPointOf(lParam);
        if (size.x != 0 && size.y != 0) {
            SetSize({size.x, size.y});
            EraseBkgnd(CWnd::FromHandlePermanent(GetHookedWindow()));
        }
    }
    return CTovSubclassWnd::WindowProc(message, wParam, lParam);
}

LRESULT CTovQuickDraw::OnPaint(LPARAM lParam) {
    HWND const handle = GetHookedWindow();
    CWnd* const window = CWnd::FromHandlePermanent(handle);
    if (window == nullptr) return CTovSubclassWnd::WindowProc(WM_PAINT, 0, lParam);
    CRect part;
    {
        CPaintDC paint(*window);
        if (m_nStopCount != 0) {
            if (m_isPainted) Draw(paint);
            return 0;
        }
        part = paint.GetPaintRect();
        CDC* const screen = paint.GetDC();
        // A window may have moved to a screen with other dots.
        if (screen != nullptr && m_memory != nullptr && screen->GetPixelRatio() != m_memory->GetPixelRatio())
            Clean();
        bool const hasMemory = screen != nullptr && GetCompDC(window) != nullptr;
        if (hasMemory && m_hasCustomBkColor) screen->FillSolidRect(part, m_customBkColor);
    }
    if (m_memory == nullptr) return CTovSubclassWnd::WindowProc(WM_PAINT, 0, lParam);
    std::weak_ptr<char> const life = m_life;
    PaintInMemory(part, lParam);
    // Whoever has painted may have ended the window, or this hook.
    if (life.expired() || GetHookedWindow() != handle || m_memory == nullptr) return 0;
    m_isPainted = true;
    CPaintDC paint(*window);
    Draw(paint);
    return 0;
}

void CTovQuickDraw::PaintInMemory(CRect const& part, LPARAM lParam) {
    std::shared_ptr<CDC> const memory = m_memory;
    std::weak_ptr<char> const life = m_life;
    memory->SetClipRect(&part);
    EraseBkgnd(CWnd::FromHandlePermanent(GetHookedWindow()));
    if (life.expired() || m_memory != memory) return;
    CView* const view = GetNotifyWnd();
    if (view == nullptr) {
        CTovSubclassWnd::WindowProc(WM_PAINT, reinterpret_cast<WPARAM>(memory.get()), lParam);
        return;
    }
    HWND const handle = view->GetSafeHwnd();
    view->OnPrepareDC(memory.get());
    if (IsWindow(handle) && !life.expired() && m_memory == memory) view->OnDraw(memory.get());
}

}  // namespace tov
