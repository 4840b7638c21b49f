// Views and the frames around them, as far as documents know them.
#pragma once

#include <tov310/window.h>

namespace tov {

class CDocument;
class CView;

// A top-level window that holds views.
class TOV_CORE_API CFrameWnd : public CWnd {
    TOV_DYNCREATE(CFrameWnd, CWnd)
 public:
    CFrameWnd() = default;

    // The view that has the frame's attention; null for none and for one that is gone.
    CView* GetActiveView() const;
    virtual void SetActiveView(CView* view);

    // Brings the frame to the front. Without a screen there is nothing to do.
    virtual void ActivateFrame();

 private:
    HWND m_activeView;
};

// A window that shows a document.
class TOV_CORE_API CView : public CWnd {
    TOV_DYNAMIC(CView, CWnd)
 public:
    CView() = default;
    ~CView() override;  // leaves its document

    // The document that the view was added to; null for none. It belongs to others.
    CDocument* GetDocument() const { return m_pDocument; }

    // The frame that the view stands in; null for none. A view alone does not know; classes with a parent do.
    virtual CFrameWnd* GetParentFrame() const;

 private:
    friend class CDocument;
    CDocument* m_pDocument = nullptr;
};

}  // namespace tov
