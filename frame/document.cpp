#include <tov310/document.h>

#include <tov310/application.h>
#include <tov310/messages.h>

#include <algorithm>

namespace tov {
namespace {

// The frame of a view, as long as it lives. One without a screen that was never born has no handle to be
// asked by.
class FrameOfView {
 public:
    explicit FrameOfView(CView const& view) : m_frame(view.GetParentFrame()) {
        if (m_frame != nullptr) m_handle = m_frame->NeedHandle();
    }
    CFrameWnd* Get() const { return m_handle && !IsWindow(m_handle) ? nullptr : m_frame; }

 private:
    CFrameWnd* m_frame;
    HWND m_handle;
};

}  // namespace

CDocument::~CDocument() {
    for (CView* const view : m_views)
        view->m_pDocument = nullptr;
    for (CView* const guest : m_guests)
        guest->m_pDocument = nullptr;
    if (m_template != nullptr) m_template->RemoveDocument(this);
}

void CDocument::SetTitle(char const* title) {
    m_title = title != nullptr ? title : "";
}

void CDocument::AddView(CView* view) {
    if (view == nullptr || std::ranges::count(m_views, view) != 0) return;
    if (view->m_pDocument != nullptr) view->m_pDocument->RemoveView(view);
    m_views.push_back(view);
    view->m_pDocument = this;
    OnChangedViewList();
}

void CDocument::RemoveView(CView* view) {
    if (std::erase(m_guests, view) != 0) {
        view->m_pDocument = nullptr;
        return;
    }
    auto const found = std::ranges::find(m_views, view);
    if (found == m_views.end()) return;
    view->m_pDocument = nullptr;
    m_views.erase(found);
    OnChangedViewList();
}

void CDocument::LendTo(CView* view, CDocument* document) {
    if (view == nullptr || view->m_pDocument == document) return;
    if (view->m_pDocument != nullptr) view->m_pDocument->RemoveView(view);
    // Who is told that it has left may have added it elsewhere.
    if (document == nullptr || view->m_pDocument != nullptr) return;
    document->m_guests.push_back(view);
    view->m_pDocument = document;
}

void CDocument::OnChangedViewList() {}

int CDocument::OnCmdMsg(unsigned id, int code, void* extra, CTovCommandInfo* info) {
    if (CCmdTarget::OnCmdMsg(id, code, extra, info) != 0) return 1;
    return m_template != nullptr ? m_template->OnCmdMsg(id, code, extra, info) : 0;
}

void CDocument::OnCloseDocument() {
    auto const life = Life();
    while (!m_views.empty()) {
        CView* const view = m_views.front();
        FrameOfView const frame(*view);
        RemoveView(view);
        if (life.expired()) return;
        // The views of the frame may hold the last pointers to this document.
        if (CFrameWnd* const living = frame.Get()) living->DestroyWindow();
        if (life.expired()) return;
    }
    if (m_template != nullptr) m_template->RemoveDocument(this);
}

CDocTemplate::~CDocTemplate() {
    for (CDocument* const document : m_documents)
        document->m_template = nullptr;
}

void CDocTemplate::AddDocument(CDocument* document) {
    if (document == nullptr || document->m_template == this) return;
    if (document->m_template != nullptr) document->m_template->RemoveDocument(document);
    m_documents.push_back(document);
    document->m_template = this;
}

void CDocTemplate::RemoveDocument(CDocument* document) {
    auto const found = std::ranges::find(m_documents, document);
    if (found == m_documents.end()) return;
    document->m_template = nullptr;
    m_documents.erase(found);
}

int CTovDocument::Compare(CTovDocument* other) {
    return other == this;
}

int CTovDocument::ActivateFirstView() const {
    for (CView* const view : GetViews()) {
        FrameOfView const frame(*view);
        if (frame.Get() == nullptr) continue;
        frame.Get()->ActivateFrame();
        // Activating runs the host's code, after which frame and view may be gone.
        if (frame.Get() != nullptr && std::ranges::count(GetViews(), view) != 0)
            frame.Get()->SetActiveView(view);
        return 1;
    }
    return 0;
}

void CTovDocument::OnCloseDocument() {
    bool const hasFrame =
        std::ranges::any_of(GetViews(), [](CView const* view) { return view->GetParentFrame() != nullptr; });
    CWinApp const* const app = TovGetApp();
    if (hasFrame && app != nullptr && app->GetMainWnd()) {
        auto const life = Life();
        TovSendMessage(app->GetMainWnd(), WM_TOV_DOCUMENT_CLOSE, reinterpret_cast<WPARAM>(this));
        if (life.expired()) return;
    }
    CDocument::OnCloseDocument();
}

}  // namespace tov
