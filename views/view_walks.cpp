// What a view stands in.
#include <tov310/dialog.h>
#include <tov310/view_extensions.h>

namespace tov {
namespace {

template <class Kind>
Kind* AsKind(CWnd* window, CRuntimeClass const& kind) {
    return window != nullptr && window->IsKindOf(&kind) ? static_cast<Kind*>(window) : nullptr;
}

CDialog* AsDialog(CWnd* window) {
    return AsKind<CDialog>(window, CDialog::classCDialog);
}
CFrameWnd* AsFrame(CWnd* window) {
    return AsKind<CFrameWnd>(window, CFrameWnd::classCFrameWnd);
}
CMDIChildWnd* AsMDIChild(CWnd* window) {
    return AsKind<CMDIChildWnd>(window, CMDIChildWnd::classCMDIChildWnd);
}

// The first frame around the view that no dialog is before.
CFrameWnd* FrameBeforeDialog(CView const& view) {
    for (CWnd* w = view.GetParent(); w != nullptr && AsDialog(w) == nullptr; w = w->GetParent()) {
        if (CFrameWnd* const frame = AsFrame(w)) return frame;
    }
    return nullptr;
}

template <class Kind>
Kind* ViewBeforeDialog(CView const& view, CRuntimeClass const& kind) {
    if (!IsWindow(view.GetSafeHwnd())) return nullptr;
    for (CWnd* w = view.GetParent(); w != nullptr && AsDialog(w) == nullptr; w = w->GetParent()) {
        if (Kind* const found = AsKind<Kind>(w, kind)) return found;
    }
    return nullptr;
}

}  // namespace

CDialog* CTovViewExtensions::GetDirectParentDialog() const {
    return AsDialog(m_view->GetParent());
}

CMDIChildWnd* CTovViewExtensions::GetDirectParentMDIChildWnd() const {
    return AsMDIChild(m_view->GetParent());
}

CFrameWnd* CTovViewExtensions::GetDirectParentSDIFrameWnd() const {
    CWnd* const parent = m_view->GetParent();
    return AsMDIChild(parent) == nullptr ? AsFrame(parent) : nullptr;
}

CFormView* CTovViewExtensions::GetDirectParentFormView() const {
    return AsKind<CFormView>(m_view->GetParent(), CFormView::classCFormView);
}

CDialog* CTovViewExtensions::GetParentDialog() const {
    for (CWnd* w = m_view->GetParent(); w != nullptr && AsFrame(w) == nullptr; w = w->GetParent()) {
        if (CDialog* const dialog = AsDialog(w)) return dialog;
    }
    return nullptr;
}

CMDIChildWnd* CTovViewExtensions::GetParentMDIChildWnd() const {
    return AsMDIChild(FrameBeforeDialog(*m_view));
}

CFrameWnd* CTovViewExtensions::GetParentSDIFrameWnd() const {
    CFrameWnd* const frame = FrameBeforeDialog(*m_view);
    return AsMDIChild(frame) == nullptr ? frame : nullptr;
}

CTovNestedView* CTovViewExtensions::GetParentNestedView() const {
    return ViewBeforeDialog<CTovNestedView>(*m_view, CTovNestedView::classCTovNestedView);
}

CFormView* CTovViewExtensions::GetParentFormView() const {
    return ViewBeforeDialog<CFormView>(*m_view, CFormView::classCFormView);
}

CView* CTovViewExtensions::GetTopmostView() const {
    CView* topmost = m_view;
    for (CWnd* w = m_view->GetParent(); w != nullptr && AsDialog(w) == nullptr && AsFrame(w) == nullptr;
         w = w->GetParent()) {
        if (CView* const view = AsKind<CView>(w, CView::classCView)) topmost = view;
    }
    return topmost;
}

}  // namespace tov
