// Views and the frames around them, as far as documents know them.
#pragma once

#include <tov310/window.h>

namespace tov {

class CDC;
class CDocTemplate;
class CDocument;
class CView;
struct CPrintInfo;

// A top-level window that holds views. Commands go first to the active view, then to the frame itself, then
// to the application.
class TOV_CORE_API CFrameWnd : public CWnd {
    TOV_DYNCREATE(CFrameWnd, CWnd)
 public:
    CFrameWnd() = default;

    // The view that has the frame's attention; null for none and for one that is gone. With `notify` the view
    // that loses it and the one that gets it are told.
    CView* GetActiveView() const;
    virtual void SetActiveView(CView* view, int notify = 1);

    // The frame that has the attention of this one: of frames that stand in it (CMDIFrameWnd) the active one,
    // else this one itself.
    virtual CFrameWnd* GetActiveFrame();

    // What a command does, in words for the status bar, and its short name for a tool tip. Here both stand in
    // the text with the command's number in the current resource module (TovLoadString), divided by a line
    // end: "Opens a table of places\nOpen". Empty where there is none.
    virtual void GetMessageString(unsigned id, CString& text) const;
    virtual void GetToolTipString(unsigned id, CString& text) const;

    // Brings the frame to the front. Without a screen there is nothing to do.
    virtual void ActivateFrame();

    int OnCmdMsg(unsigned id, int code, void* extra, CTovCommandInfo* info) override;

    // Before a menu opens every command in it is asked for its state. Entries of commands that nobody would
    // do are disabled.
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;

 private:
    HWND m_activeView;
};

// A frame that stands in another, among its like.
class TOV_CORE_API CMDIChildWnd : public CFrameWnd {
    TOV_DYNCREATE(CMDIChildWnd, CFrameWnd)
 public:
    CMDIChildWnd() = default;
};

// A frame with frames in it. Commands go first to the active one.
class TOV_CORE_API CMDIFrameWnd : public CFrameWnd {
    TOV_DYNCREATE(CMDIFrameWnd, CFrameWnd)
 public:
    CMDIFrameWnd() = default;

    // Null for none and for one that is gone.
    CMDIChildWnd* MDIGetActive() const;
    virtual void MDIActivate(CMDIChildWnd* child);

    CFrameWnd* GetActiveFrame() override;
    int OnCmdMsg(unsigned id, int code, void* extra, CTovCommandInfo* info) override;

 private:
    HWND m_activeChild;
};

// What a view is made from by a frame.
struct CCreateContext {
    CRuntimeClass const* m_pNewViewClass = nullptr;
    CDocument* m_pCurrentDoc = nullptr;  // the view is added to it
    CDocTemplate* m_pNewDocTemplate = nullptr;
    CView* m_pLastView = nullptr;  // of the same document
    CFrameWnd* m_pCurrentFrame = nullptr;
};

// A window that shows a document. Commands go to the view and then to its document.
class TOV_CORE_API CView : public CWnd {
    TOV_DYNAMIC(CView, CWnd)
 public:
    CView() = default;
    ~CView() override;  // leaves its document

    // The document that the view was added to, or that of the view around it; null for none. It belongs to
    // others.
    CDocument* GetDocument() const { return m_pDocument; }

    // Told once before the view shows its document first, when all around it stands.
    virtual void OnInitialUpdate() {}

    // Told when its frame turns to it (activate 1) or away from it (0); the other view may be null.
    virtual void OnActivateView(int activate, CView* activated, CView* deactivated);

    // Asked before each drawing to set a device up, and to draw on it, by a CTovQuickDraw on the window
    // (quick_draw.h) or by whoever prints; without one the window paints as its toolkit does. The job is null
    // but while printing; there it may be told that no page is left (m_bContinuePrinting).
    virtual void OnPrepareDC(CDC* dc, CPrintInfo* job = nullptr);
    virtual void OnDraw(CDC* dc);

    // A print job, in this order. The first sets its range of pages up and answers whether there is anything
    // to print, commonly by TovPreparePrinting (printing.h), which asks the user; here it answers 0. OnPrint
    // draws one page, by OnDraw here. OnEndPrinting comes as often as OnBeginPrinting, however the job ends.
    virtual int OnPreparePrinting(CPrintInfo* job);
    virtual void OnBeginPrinting(CDC* dc, CPrintInfo* job);
    virtual void OnPrint(CDC* dc, CPrintInfo* job);
    virtual void OnEndPrinting(CDC* dc, CPrintInfo* job);

    // How far its content is scrolled, in pixels.
    virtual CPoint GetScrollPosition() const { return {}; }

    int OnCmdMsg(unsigned id, int code, void* extra, CTovCommandInfo* info) override;
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;

    // The view whose command is with its document at the moment; null for none.
    static CView* GetRoutingView();

 private:
    friend class CDocument;
    friend class CTovViewExtensions;
    int RouteToDocument(unsigned id, int code, void* extra, CTovCommandInfo* info);

    CDocument* m_pDocument = nullptr;
};

// A view of something that may be larger than its window.
class TOV_CORE_API CScrollView : public CView {
    TOV_DYNAMIC(CScrollView, CView)
 public:
    CScrollView() = default;

    // The size of all there is to see, in pixels. Places of drawing are those in it.
    virtual void SetScrollSizes(CSize total) { m_total = total; }
    CSize GetTotalSize() const { return m_total; }

    // Brings a place of it to the left top corner, as far as possible.
    virtual void ScrollToPosition(CPoint /*place*/) {}

 private:
    CSize m_total;
};

// A view that holds controls.
class TOV_CORE_API CFormView : public CScrollView {
    TOV_DYNAMIC(CFormView, CScrollView)
 public:
    CFormView() = default;
};

// A view of a page of HTML.
class TOV_CORE_API CHtmlView : public CView {
    TOV_DYNAMIC(CHtmlView, CView)
 public:
    CHtmlView() = default;

    // Shows the page at an address or in a file.
    virtual void Navigate(char const* /*address*/) {}
};

// A view with views in it. Those in it have the document of the outermost one.
class TOV_CORE_API CTovNestedView : public CView {
    TOV_DYNAMIC(CTovNestedView, CView)
 public:
    CTovNestedView() = default;
};

}  // namespace tov
