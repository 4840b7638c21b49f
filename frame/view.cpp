// Views and their documents.
#include <tov310/document.h>
#include <tov310/messages.h>
#include <tov310/view.h>

#include "frame/handle_of.h"

#include <utility>

namespace tov {
namespace {

constinit CView* routingView = nullptr;

// Handlers of the document may end the view.
class RoutingCall {
 public:
    explicit RoutingCall(CView* view)
        : m_outer(std::exchange(routingView, view)), m_handle(HandleOf(m_outer)) {}
    RoutingCall(RoutingCall const&) = delete;
    RoutingCall& operator=(RoutingCall const&) = delete;
    ~RoutingCall() { routingView = m_handle && !IsWindow(m_handle) ? nullptr : m_outer; }

 private:
    CView* m_outer;
    HWND m_handle;
};

}  // namespace

CView::~CView() {
    if (routingView == this) routingView = nullptr;
    if (m_pDocument != nullptr) m_pDocument->RemoveView(this);
}

CView* CView::GetRoutingView() {
    return routingView;
}

void CView::OnActivateView(int, CView*, CView*) {}

void CView::OnPrepareDC(CDC*, CPrintInfo*) {}

void CView::OnDraw(CDC*) {}

int CView::OnPreparePrinting(CPrintInfo*) {
    return 0;
}

void CView::OnBeginPrinting(CDC*, CPrintInfo*) {}

void CView::OnPrint(CDC* dc, CPrintInfo*) {
    OnDraw(dc);
}

void CView::OnEndPrinting(CDC*, CPrintInfo*) {}

int CView::RouteToDocument(unsigned id, int code, void* extra, CTovCommandInfo* info) {
    if (m_pDocument == nullptr) return 0;
    RoutingCall const call(this);
    return m_pDocument->OnCmdMsg(id, code, extra, info);
}

int CView::OnCmdMsg(unsigned id, int code, void* extra, CTovCommandInfo* info) {
    if (CWnd::OnCmdMsg(id, code, extra, info) != 0) return 1;
    return RouteToDocument(id, code, extra, info);
}

LRESULT CView::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_INITIALUPDATE) return CWnd::WindowProc(message, wParam, lParam);
    OnInitialUpdate();
    return 0;
}

}  // namespace tov
