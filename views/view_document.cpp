// The document of a view, and the commands that reach it.
#include <tov310/view_extensions.h>

#include <utility>

namespace tov {
namespace {

// A command on its way from view to view.
struct RoutedCommand {
    CTovViewExtensions const* from;
    unsigned id;
    int code;
    RoutedCommand const* outer;
};

constinit RoutedCommand const* routedCommand = nullptr;

}  // namespace

void CTovViewExtensions::SetViewDocument(CTovPtrSmart<CTovDocument> const& document) {
    CTovPtrSmart<CTovDocument> const wanted = document;  // which may be this view's own pointer
    if (m_document && wanted && m_document->Compare(wanted.Get()) != 0) return;
    std::weak_ptr<void const> const life = m_self;
    if (m_document) UnsetViewDocument();
    if (life.expired() || !wanted) return;
    m_document = wanted;
    JoinDocument();
    if (life.expired()) return;
    OnSetViewDocument();
    if (!life.expired()) OnNotice(eTovViewNotice::kDocument);
}

void CTovViewExtensions::JoinDocument() {
    if (!m_document || m_view->GetParentFrame() == nullptr) return;
    CTovPtrSmart<CTovDocument> const document = m_document;
    CView* const topmost = GetTopmostView();
    if (topmost != m_view) return CDocument::LendTo(m_view, topmost->GetDocument());
    CDocTemplate* const remembered = m_templateLife.expired() ? nullptr : std::exchange(m_template, nullptr);
    document->AddView(m_view);
    if (remembered != nullptr) remembered->AddDocument(document.Get());
}

void CTovViewExtensions::UnsetViewDocument() {
    if (!m_document) return;
    CTovPtrSmart<CTovDocument> const held = m_document;
    std::weak_ptr<void const> const life = m_self;
    if (m_view->GetParentFrame() != nullptr) {
        CView* const topmost = GetTopmostView();
        if (topmost != m_view) {
            CDocument::LendTo(m_view, topmost->GetDocument());
        } else if (CDocument* const document = m_view->m_pDocument) {
            m_template = document->GetDocTemplate();
            if (m_template != nullptr) {
                m_templateLife = m_template->Life();
                m_template->RemoveDocument(document);
            }
            document->RemoveView(m_view);
        }
    }
    if (life.expired()) return;
    OnUnsetViewDocument();
    if (life.expired() || !(m_document == held)) return;
    m_document = {};
    OnNotice(eTovViewNotice::kDocument);
}

int CTovViewExtensions::SetWndViewDocument(CWnd* window, CTovPtrSmart<CTovDocument> const& document) {
    CTovViewExtensions* const view = CastObjectSafe(window);
    if (view == nullptr) return 0;
    view->SetViewDocument(document);
    return 1;
}

int CTovViewExtensions::UnsetWndViewDocument(CWnd* window) {
    CTovViewExtensions* const view = CastObjectSafe(window);
    if (view == nullptr) return 0;
    view->UnsetViewDocument();
    return 1;
}

CTovPtrSmart<CTovDocument> CTovViewExtensions::GetWndViewDocument(CWnd* window) {
    CTovViewExtensions const* const view = CastObjectSafe(window);
    return view != nullptr ? view->GetViewDocument() : CTovPtrSmart<CTovDocument>();
}

void CTovViewExtensions::SetViewExtRouteTo(CTovViewExtensions* target) {
    m_routeTo.reset();
    if (target != nullptr) m_routeTo = target->m_self;
}

int CTovViewExtensions::RouteCommand(unsigned id, int code, void* extra, CTovCommandInfo* info) {
    std::weak_ptr<void const> const life = m_self;
    if (m_view->CCmdTarget::OnCmdMsg(id, code, extra, info) != 0) return 1;
    if (life.expired()) return 0;
    if (RouteCmdMsg(id, code, extra, info) != 0) return 1;
    return life.expired() ? 0 : m_view->RouteToDocument(id, code, extra, info);
}

int CTovViewExtensions::RouteCmdMsg(unsigned id, int code, void* extra, CTovCommandInfo* info) {
    std::shared_ptr<CTovViewExtensions* const> const target = m_routeTo.lock();
    if (target == nullptr) return 0;
    RoutedCommand const call{this, id, code, routedCommand};
    routedCommand = &call;
    int const result = (*target)->HandleCmdMsg(id, code, extra, info, m_view);
    routedCommand = call.outer;
    return result;
}

int CTovViewExtensions::HandleCmdMsg(unsigned id, int code, void* extra, CTovCommandInfo* info,
                                     CView* sender) {
    if (sender == m_view) return 0;
    // Whoever has sent the command on has been asked.
    for (RoutedCommand const* call = routedCommand; call != nullptr; call = call->outer) {
        if (call->from == this && call->id == id && call->code == code) return 0;
    }
    return m_view->OnCmdMsg(id, code, extra, info);
}

}  // namespace tov
