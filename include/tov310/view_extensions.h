// What all views of the library can do, whatever they are made of: a document that comes and goes at run
// time, a place in a dialog, controls that move with the window, tool tips, a second way of commands.
//
//   class CTovView : public CWndOn<QAbstractScrollArea, CTovViewOf<CView>> { ... };   // on the screen
//   struct FakeView : FakeWindowOf<CTovViewOf<CView>> { ... };                        // in a test, without
#pragma once

#include <tov310/arrange.h>
#include <tov310/control_events.h>
#include <tov310/document.h>
#include <tov310/export.h>
#include <tov310/ok_host.h>
#include <tov310/pixels.h>
#include <tov310/tip.h>
#include <tov310/view.h>

#include <memory>
#include <utility>

namespace tov {

class CDialog;
class CMenu;

enum class eTovViewNotice { kInitialUpdate, kDocument, kActivation };

class TOV_CORE_API CTovViewExtensions : public CTovTipExtensions {
 public:
    CTovViewExtensions(CTovViewExtensions const&) = delete;
    CTovViewExtensions& operator=(CTovViewExtensions const&) = delete;
    virtual ~CTovViewExtensions();

    // This part of a view; null for whatever has none.
    static CTovViewExtensions* CastObjectSafe(CObject* object);
    virtual operator CTovViewExtensions*() { return this; }
    CView* GetView() const { return m_view; }

    // The topic that F1 in the view shows; 0 for none. Help asks for id + 0x20000.
    virtual void SetHelpID(unsigned id) { m_helpId = id; }
    LRESULT OnHelpHitTest() const;          // the topic; 0 for none
    int OnCommandHelp(LPARAM topic) const;  // shows it, or the view's own for 0; 0 without one

    // Whether a second click that comes too late for a double click, but within three times its time, is
    // told as a slow double click (WM_TOV_DBLCLK_SLOW), for editing in place. 1 at first.
    virtual void DblClickSlowAllowed(int allowed) { m_slowDoubleClickAllowed = allowed; }
    virtual int DblClickSlowAllowed() { return m_slowDoubleClickAllowed; }

    // Puts the view, which is not born yet, in the place of a control of the dialog or form, and gives it the
    // control's number, its place in the order of Tab and, unless it is empty, the document. With
    // initialUpdate it and all in it are told by OnInitialUpdate and it is shown as showCommand says
    // (SW_SHOW ...); else that is for the caller. The parent hears of it by a post of
    // WM_TOV_VIEW_DLGITEM_EXCHANGED. Answers 1, or 0: there is no such parent or control.
    virtual int ExchangeDlgItem(CFormView* parent, unsigned id, int initialUpdate, unsigned showCommand,
                                CTovPtrSmart<CTovDocument> const& document);
    virtual int ExchangeDlgItem(CDialog* parent, unsigned id, int initialUpdate, unsigned showCommand,
                                CTovPtrSmart<CTovDocument> const& document);

    // Between the two the view keeps what it shows. Stop answers whether it was stopped already, and whoever
    // got 0 continues; that has it painted anew, its background too with `erase`.
    virtual int StopWindowUpdate();
    virtual void ContinueWindowUpdate(int erase);
    int IsWindowUpdateStopped() const { return m_isUpdateStopped; }

    // What the view stands in directly; null, or 0, where it is something else. A frame that stands in
    // another is no SDI frame.
    virtual int DirectParentIsDialog() const { return GetDirectParentDialog() != nullptr; }
    virtual int DirectParentIsMDIChildWnd() const { return GetDirectParentMDIChildWnd() != nullptr; }
    virtual int DirectParentIsSDIFrameWnd() const { return GetDirectParentSDIFrameWnd() != nullptr; }
    virtual int DirectParentIsFormView() const { return GetDirectParentFormView() != nullptr; }
    virtual CDialog* GetDirectParentDialog() const;
    virtual CMDIChildWnd* GetDirectParentMDIChildWnd() const;
    virtual CFrameWnd* GetDirectParentSDIFrameWnd() const;
    virtual CFormView* GetDirectParentFormView() const;

    // What it stands in at any depth. A dialog is looked for up to the first frame; everything else up to the
    // first dialog, a frame being the first one only.
    virtual int ParentIsDialog() const { return GetParentDialog() != nullptr; }
    virtual int ParentIsMDIChildWnd() const { return GetParentMDIChildWnd() != nullptr; }
    virtual int ParentIsSDIFrameWnd() const { return GetParentSDIFrameWnd() != nullptr; }
    virtual int ParentIsNestedView() const { return GetParentNestedView() != nullptr; }
    virtual int ParentIsFormView() const { return GetParentFormView() != nullptr; }
    virtual CDialog* GetParentDialog() const;
    virtual CMDIChildWnd* GetParentMDIChildWnd() const;
    virtual CFrameWnd* GetParentSDIFrameWnd() const;
    virtual CTovNestedView* GetParentNestedView() const;
    virtual CFormView* GetParentFormView() const;

    // The outermost view around this one within its dialog or frame; the view itself if there is no other.
    virtual CView* GetTopmostView() const;

    // The document of the view. Setting the same one again (CTovDocument::Compare) does nothing; an empty
    // pointer unsets it. In a frame the topmost view joins the document's views, and takes the document back
    // to its template; views in it look at the topmost one's (CView::GetDocument). A view that stands in no
    // frame yet does so at its initial update.
    virtual CTovPtrSmart<CTovDocument> const& GetViewDocument() const { return m_document; }
    virtual void SetViewDocument(CTovPtrSmart<CTovDocument> const& document);
    virtual void UnsetViewDocument();

    // The same of any window; 0, or an empty pointer, where it is no view of the library's.
    static int SetWndViewDocument(CWnd* window, CTovPtrSmart<CTovDocument> const& document);
    static int UnsetWndViewDocument(CWnd* window);
    static CTovPtrSmart<CTovDocument> GetWndViewDocument(CWnd* window);

    // Has commands that this view has no handler for go to another view, before the document; null for none.
    // A target that dies is forgotten. A command does not come to a view twice.
    void SetViewExtRouteTo(CTovViewExtensions* target);
    int RouteCmdMsg(unsigned id, int code, void* extra, CTovCommandInfo* info);
    virtual int HandleCmdMsg(unsigned id, int code, void* extra, CTovCommandInfo* info, CView* sender);

    // Hides a window that is shown, and shows one that is hidden unless the application is minimised. With
    // takeFocus 0 the focus stays where it is.
    static void HidePopupWnd(CWnd* window);
    static void RestorePopupWnd(CWnd* window, int takeFocus);

    // Whether its frame has turned to it, as far as the view was told (OnActivateView).
    int IsViewActive() const { return m_activation; }

    // Prints the view, asking for printer and pages before unless the command is ID_FILE_PRINT_DIRECT;
    // ID_FILE_PRINT_PREVIEW shows the pages instead. Answers 1, or 0 where it was not printed: the job had
    // nothing to print, failed or was ended by the user (printing.h).
    static int OnFilePrint(CView* view, unsigned command);

    // Has the view draw itself on another device.
    static LRESULT OnPrintClient(CDC* dc, CView* view);

    // A picture of the inside of a window; null, and 0, for one that is less than 3 pixels wide or high and
    // without a screen.
    static int GetBitmapFromClientRect(CWnd* window, HBITMAP& bitmap);

    // Before a popup opens: asks the window for the states of its commands, of a popup in it by its first
    // command. What nobody would do is disabled. Nothing for a system menu.
    static void InitMenuPopupFix(CWnd* window, CMenu* menu, unsigned index, int systemMenu);

 protected:
    // The view that this is a part of. Borrowed, and it lives as long.
    explicit CTovViewExtensions(CView* view) : m_view(view) {}

    // Told after a document was set, and before one is unset.
    virtual void OnSetViewDocument() {}
    virtual void OnUnsetViewDocument() {}

    // These follow by a post what they are named for, when all others have heard of it.
    virtual void OnPostInitialUpdate() {}
    virtual void OnPostSetFocus() {}
    virtual void OnPostActivateView(int /*activate*/, CView* /*activated*/) {}

    // Told of a slow double click, in pixels of the view; `keys` are MK_ bits.
    virtual void OnSlowDoubleClick(WPARAM /*keys*/, CPoint const& /*place*/) {}

    // Paints the background of a view in a dialog as that of a list, and answers 1; 0 where that is not
    // possible.
    virtual int DrawFrame(CDC* dc);

    // Paints the background. 0: whoever paints does it.
    virtual int OnEraseBkgnd(CDC* dc);

    // For whoever makes signals of it.
    virtual void OnNotice(eTovViewNotice) {}

    // Controls that move with the view (arrange.h). They are registered where they stand; one that there is
    // not, is not. To be called from OnInitialUpdate on, and ArrangeItems whenever the size has changed.
    void AddItemToArrange(int moveX, int sizeX, int moveY, int sizeY, unsigned id);
    void AddItemToArrange(int flags, unsigned id);
    void RemoveItemToArrange(unsigned id) { m_arrangement.Remove(id); }
    void ArrangeItems(CSize current, CSize original, CSize minimum);

    int IsInitialUpdatePassed() const { return m_isInitialUpdatePassed; }
    unsigned GetHelpID() const { return m_helpId; }

    // For CTovViewOf: the way of a message and a command through this part, and what follows the framework's
    // own handlers. `pass` hands a message on to them.
    using Pass = LRESULT (*)(CView& view, unsigned message, WPARAM wParam, LPARAM lParam);
    LRESULT Answer(unsigned message, WPARAM wParam, LPARAM lParam, Pass pass);
    int RouteCommand(unsigned id, int code, void* extra, CTovCommandInfo* info);
    void InitialUpdatePassed();
    void ActivationPassed(int activate, CView* activated);

    virtual int ExchangeDlgItem(CWnd* parent, unsigned id, int initialUpdate, unsigned showCommand,
                                CTovPtrSmart<CTovDocument> const& document);

 private:
    void JoinDocument();
    void FontChanged();
    void PlaceItem(ARRANGE_ITEM const& item, int dx, int dy);
    CRect RectOfItem(CWnd const& control) const;
    LRESULT MouseActivate(HWND desktop, unsigned mouseMessage, LRESULT answer);
    int EndSlowDoubleClick();
    LRESULT LeftButtonUp(WPARAM keys, LPARAM place, Pass pass);

    CTovPtrSmart<CTovDocument> m_document;
    CDocTemplate* m_template = nullptr;  // of the document while the view is away from it
    std::weak_ptr<void const> m_templateLife;
    int m_isInitialUpdatePassed = 0;
    int m_isUpdateStopped = 0;
    int m_activation = 0;  // as told last
    std::weak_ptr<CTovViewExtensions* const> m_routeTo;
    std::shared_ptr<CTovViewExtensions* const> m_self = std::make_shared<CTovViewExtensions* const>(this);
    int m_slowDoubleClickAllowed = 1;
    int m_isClickPending = 0;   // the first of a slow double click
    int m_isUpdateForHost = 0;  // OnInitialUpdate, since it was put into a dialog without
    unsigned m_helpId = 0;
    CTovArrangement m_arrangement;
    CView* m_view;
};

// A class of views with that part.
template <class W>
class CTovViewOf : public W, public CTovViewExtensions {
 public:
    template <class... Arguments>
    explicit CTovViewOf(Arguments&&... arguments)
        : W(std::forward<Arguments>(arguments)...), CTovViewExtensions(static_cast<CView*>(this)) {}

    void OnInitialUpdate() override {
        W::OnInitialUpdate();
        InitialUpdatePassed();
    }
    void OnActivateView(int activate, CView* activated, CView* deactivated) override {
        W::OnActivateView(activate, activated, deactivated);
        ActivationPassed(activate, activated);
    }
    int OnCmdMsg(unsigned id, int code, void* extra, CTovCommandInfo* info) override {
        return RouteCommand(id, code, extra, info);
    }

    // For a table of commands: TovCommand<MyView, &MyView::OnFilePrint>(ID_FILE_PRINT,
    // ID_FILE_PRINT_PREVIEW).
    void OnFilePrint(unsigned command) { CTovViewExtensions::OnFilePrint(this, command); }

    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        return Answer(message, wParam, lParam, [](CView& view, unsigned m, WPARAM w, LPARAM l) {
            return static_cast<CTovViewOf&>(view).W::WindowProc(m, w, l);
        });
    }
};

// A class of forms: a view that holds controls, and on whose content the OK of a dialog around it depends.
template <class W>
class CTovFormViewOf : public CTovViewOf<W>, public CTovOkHost, public CTovControlEvents {
 public:
    using CTovViewOf<W>::CTovViewOf;

    int EnableOkButton() override { return EnableOkOfForm(*this, *this); }
    int OnEnableOkButton(int /*quiet*/) override { return 1; }

    int OnCommand(WPARAM wParam, LPARAM lParam) override {
        HWND const self = this->GetSafeHwnd();
        int const result = CTovViewOf<W>::OnCommand(wParam, lParam);
        if (IsWindow(self)) OnControlNotice(wParam, lParam);
        return result;
    }
};

}  // namespace tov
