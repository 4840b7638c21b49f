// Documents, their views and their templates. All of it belongs to the user-interface thread.
#pragma once

#include <tov310/smart_ptr.h>
#include <tov310/view.h>

#include <memory>
#include <vector>

namespace tov {

class CDocTemplate;

// What a host edits, without anything to see. It owns neither its views nor its template; whoever of them
// goes first leaves the other.
class TOV_CORE_API CDocument : public CCmdTarget {
    TOV_DYNCREATE(CDocument, CCmdTarget)
 public:
    CDocument() = default;
    ~CDocument() override;

    CString const& GetTitle() const { return m_title; }
    virtual void SetTitle(char const* title);

    // The template that the document was added to; null for none.
    CDocTemplate* GetDocTemplate() const { return m_template; }

    // A view has one document: adding it takes it away from another. Null and what is there already (or not)
    // change nothing.
    void AddView(CView* view);
    void RemoveView(CView* view);
    std::vector<CView*> const& GetViews() const { return m_views; }  // in the order in which they were added

    // Has the view look at this document, or at none for null, without being one of the document's views.
    static void LendTo(CView* view, CDocument* document);

    // Closes the document: destroys the frames of its views and takes the document out of its template. The
    // object stays unless its owner ends it meanwhile, which he may at any moment.
    virtual void OnCloseDocument();

    // Told when a view came or went.
    virtual void OnChangedViewList();

    // Commands go to the document and then to its template.
    int OnCmdMsg(unsigned id, int code, void* extra, CTovCommandInfo* info) override;

 protected:
    // Expires with the document: tells in the middle of an operation whether it has died of what it called.
    std::weak_ptr<void const> Life() const { return m_life; }

 private:
    friend class CDocTemplate;

    CString m_title;
    CDocTemplate* m_template = nullptr;
    std::vector<CView*> m_views;
    std::vector<CView*> m_guests;  // look at it and are not its views
    std::shared_ptr<void const> m_life = std::make_shared<char>();
};

// A kind of documents: the list of those that are open. It does not own them.
class TOV_CORE_API CDocTemplate : public CCmdTarget {
    TOV_DYNCREATE(CDocTemplate, CCmdTarget)
 public:
    CDocTemplate() = default;
    ~CDocTemplate() override;

    // A document has one template: adding it takes it away from another. Null and what is there already (or
    // not) change nothing.
    virtual void AddDocument(CDocument* document);
    virtual void RemoveDocument(CDocument* document);
    std::vector<CDocument*> const& GetDocuments() const { return m_documents; }

    // Expires with the template.
    std::weak_ptr<void const> Life() const { return m_life; }

 private:
    std::vector<CDocument*> m_documents;
    std::shared_ptr<void const> m_life = std::make_shared<char>();
};

// The document of views and dialogs that change it at run time. It is shared through
// CTovPtrSmart<CTovDocument>, so it must come from new.
class TOV_CORE_API CTovDocument : public CDocument {
    TOV_DYNCREATE(CTovDocument, CDocument)
 public:
    CTovDocument() = default;

    // 1 when the other one is the same document. Here that is the same object; a host whose documents stand
    // for something (a file, a record) compares that.
    virtual int Compare(CTovDocument* other);

    // Brings the first view that has a frame to the front, and answers 1; 0 when there is none.
    virtual int ActivateFirstView() const;

    // Sends WM_TOV_DOCUMENT_CLOSE with this CTovDocument* as wParam to the main window of the application, if
    // there is one and a view of the document has a frame; then closes.
    void OnCloseDocument() override;

    void RemoveView(CView* view) { CDocument::RemoveView(view); }
};

}  // namespace tov
