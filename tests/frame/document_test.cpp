#include <tov310/application.h>
#include <tov310/document.h>
#include <tov310/messages.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tov {
namespace {

std::string told;  // what happened, in order

struct Frame : CFrameWnd {
    explicit Frame(char letter) : name(letter) { Attach(); }
    void ActivateFrame() override { told.append("activate ") += name; }
    int DestroyWindow() override {
        (told.append("destroy ") += name) += ' ';
        if (atDestroy) atDestroy();
        return CFrameWnd::DestroyWindow();
    }
    char name;
    std::function<void()> atDestroy;
};

struct View : CView {
    explicit View(CFrameWnd* parent = nullptr) : frame(parent) { Attach(); }
    CFrameWnd* GetParentFrame() const override { return frame; }
    CFrameWnd* frame;
};

struct Document : CTovDocument {
    TOV_DYNCREATE(Document, CTovDocument)
    ~Document() override { told += "gone "; }
    void OnChangedViewList() override { ++changes; }
    int changes = 0;
};

struct MainWindow : CTovMessageWindow {
    MainWindow() { Create(); }
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM) override {
        if (message == WM_TOV_DOCUMENT_CLOSE) {
            closing = reinterpret_cast<CTovDocument*>(wParam);
            told += "close ";
            if (atClose) atClose();
        }
        return 0;
    }
    CTovDocument* closing = nullptr;
    std::function<void()> atClose;
};

struct DocumentTest : testing::Test {
    DocumentTest() { told.clear(); }
    Frame a{'A'}, b{'B'};
};

TEST_F(DocumentTest, ViewsAndDocumentsLeaveEachOther) {
    auto document = std::make_unique<Document>();
    Document other;
    View first;
    {
        View second;
        for (View* const view : {&first, &second, &first, static_cast<View*>(nullptr)})
            document->AddView(view);
        EXPECT_EQ(document->GetViews(), (std::vector<CView*>{&first, &second}));
    }
    EXPECT_EQ(document->GetViews(), std::vector<CView*>{&first});
    EXPECT_EQ(document->changes, 3);
    other.AddView(&first);
    EXPECT_TRUE(document->GetViews().empty());
    document->RemoveView(&first);
    EXPECT_EQ(first.GetDocument(), &other) << "it was no view of the document";
    document->AddView(&first);
    document.reset();
    EXPECT_EQ(first.GetDocument(), nullptr);
}

TEST_F(DocumentTest, DocumentsAndTemplatesLeaveEachOther) {
    auto kind = std::make_unique<CDocTemplate>();
    CDocTemplate other;
    Document first;
    {
        Document second;
        for (Document* const document : {&first, &second, &second, static_cast<Document*>(nullptr)})
            kind->AddDocument(document);
        EXPECT_EQ(kind->GetDocuments(), (std::vector<CDocument*>{&first, &second}));
    }
    EXPECT_EQ(kind->GetDocuments(), std::vector<CDocument*>{&first});
    other.AddDocument(&first);
    EXPECT_TRUE(kind->GetDocuments().empty());
    kind->RemoveDocument(&first);
    EXPECT_EQ(first.GetDocTemplate(), &other);
    kind->AddDocument(&first);
    kind.reset();
    EXPECT_EQ(first.GetDocTemplate(), nullptr);
}

TEST_F(DocumentTest, TheFirstViewWithAFrameIsActivated) {
    Document document;
    View nested;
    document.AddView(&nested);
    EXPECT_EQ(document.ActivateFirstView(), 0);
    {
        View view(&a);
        document.AddView(&view);
        EXPECT_EQ(document.ActivateFirstView(), 1);
        EXPECT_EQ(a.GetActiveView(), &view);
    }
    EXPECT_EQ(told, "activate A");
    EXPECT_EQ(a.GetActiveView(), nullptr) << "the view is gone";
}

TEST_F(DocumentTest, ClosingTellsTheMainWindowAndEndsTheFrames) {
    for (unsigned bits = 0; bits < 8; ++bits) {
        bool const hasApp = bits & 1, hasMain = bits & 2, hasFrame = bits & 4;
        told.clear();
        std::unique_ptr<CWinApp> const app(hasApp ? new CWinApp : nullptr);
        MainWindow main;
        if (hasApp && hasMain) app->SetMainWnd(main.GetSafeHwnd());
        View nested, first(hasFrame ? &a : nullptr), second(hasFrame ? &b : nullptr);
        CDocTemplate kind;
        Document document;
        kind.AddDocument(&document);
        for (View* const view : {&nested, &first, &second})
            document.AddView(view);
        document.OnCloseDocument();
        EXPECT_EQ(told, !hasFrame ? "" : bits == 7 ? "close destroy A destroy B " : "destroy A destroy B ");
        EXPECT_EQ(main.closing, bits == 7 ? &document : nullptr);
        EXPECT_TRUE(document.GetViews().empty() && kind.GetDocuments().empty());
    }
}

TEST_F(DocumentTest, TheLastPointerMayGoWhileTheDocumentCloses) {
    CWinApp app;
    for (bool const byMainWindow : {false, true}) {
        told.clear();
        MainWindow main;
        app.SetMainWnd(main.GetSafeHwnd());
        View first(&a), second(&b);
        CTovPtrSmart<CTovDocument> document(new Document);
        document->AddView(&first);
        document->AddView(&second);
        (byMainWindow ? main.atClose : a.atDestroy) = [&] { document = CTovPtrSmart<CTovDocument>(); };
        document.Get()->OnCloseDocument();
        EXPECT_EQ(told, byMainWindow ? "close gone " : "close destroy A gone ");
        EXPECT_EQ(second.GetDocument(), nullptr);
    }
}

TEST_F(DocumentTest, AViewThatDiesWithItsFrameIsNotMissed) {
    Document document;
    auto first = std::make_unique<View>(&a);
    auto second = std::make_unique<View>(&a);
    document.AddView(first.get());
    document.AddView(second.get());
    a.atDestroy = [&] { first.reset(), second.reset(); };
    document.OnCloseDocument();
    EXPECT_EQ(told, "destroy A ");
}

}  // namespace
}  // namespace tov
