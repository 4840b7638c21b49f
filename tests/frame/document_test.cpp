#include <tov310/application.h>
#include <tov310/document.h>
#include <tov310/messages.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tov {
namespace {

std::string told;  // what happened, in order

struct Frame : CFrameWnd {
    explicit Frame(char letter) : name(letter) { Attach(); }
    void ActivateFrame() override { told += std::string("activate ") + name + ' '; }
    int DestroyWindow() override {
        told += std::string("destroy ") + name + ' ';
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
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        EXPECT_EQ(lParam, 0);
        if (message == WM_TOV_DOCUMENT_CLOSE) {
            closing.push_back(reinterpret_cast<CTovDocument*>(wParam));
            told += "close ";
            if (atClose) atClose();
        }
        return 0;
    }
    std::vector<CTovDocument*> closing;
    std::function<void()> atClose;
};

class DocumentTest : public testing::Test {
 protected:
    DocumentTest() { told.clear(); }
};

TEST_F(DocumentTest, ViewsAndDocumentsLeaveEachOther) {
    auto document = std::make_unique<Document>();
    Document other;
    View first;
    {
        View second;
        document->AddView(&first);
        document->AddView(&second);
        document->AddView(&first);
        document->AddView(nullptr);
        EXPECT_EQ(document->GetViews(), (std::vector<CView*>{&first, &second}));
        EXPECT_EQ(second.GetDocument(), document.get());
    }
    EXPECT_EQ(document->GetViews(), std::vector<CView*>{&first});
    EXPECT_EQ(document->changes, 3);
    other.AddView(&first);
    EXPECT_TRUE(document->GetViews().empty());
    EXPECT_EQ(first.GetDocument(), &other);
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
        kind->AddDocument(&first);
        kind->AddDocument(&second);
        kind->AddDocument(&second);
        kind->AddDocument(nullptr);
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
    EXPECT_EQ(document.ActivateFirstView(), 0);
    Frame frame('A');
    View nested;
    document.AddView(&nested);
    EXPECT_EQ(document.ActivateFirstView(), 0);
    {
        View view(&frame);
        document.AddView(&view);
        EXPECT_EQ(document.ActivateFirstView(), 1);
        EXPECT_EQ(frame.GetActiveView(), &view);
    }
    EXPECT_EQ(told, "activate A ");
    EXPECT_EQ(frame.GetActiveView(), nullptr) << "the view is gone";
    frame.SetActiveView(&nested);
    frame.SetActiveView(nullptr);
    EXPECT_EQ(frame.GetActiveView(), nullptr);
}

TEST_F(DocumentTest, ClosingTellsTheMainWindowAndEndsTheFrames) {
    for (bool const hasApp : {false, true}) {
        for (bool const hasMain : {false, true}) {
            for (bool const hasFrame : {false, true}) {
                told.clear();
                std::unique_ptr<CWinApp> const app(hasApp ? new CWinApp : nullptr);
                MainWindow main;
                if (hasApp && hasMain) app->SetMainWnd(main.GetSafeHwnd());
                Frame a('A');
                Frame b('B');
                View nested;
                View first(hasFrame ? &a : nullptr);
                View second(hasFrame ? &b : nullptr);
                CDocTemplate kind;
                Document document;
                kind.AddDocument(&document);
                for (View* const view : {&nested, &first, &second})
                    document.AddView(view);
                document.OnCloseDocument();
                bool const tells = hasApp && hasMain && hasFrame;
                EXPECT_EQ(told,
                          std::string(tells ? "close " : "") + (hasFrame ? "destroy A destroy B " : ""));
                EXPECT_EQ(main.closing, std::vector<CTovDocument*>(tells ? 1 : 0, &document));
                EXPECT_TRUE(document.GetViews().empty());
                EXPECT_TRUE(kind.GetDocuments().empty());
            }
        }
    }
}

TEST_F(DocumentTest, TheLastPointerMayGoWhileTheDocumentCloses) {
    for (bool const byMainWindow : {false, true}) {
        told.clear();
        CWinApp app;
        MainWindow main;
        app.SetMainWnd(main.GetSafeHwnd());
        Frame a('A');
        Frame b('B');
        View first(&a);
        View second(&b);
        CTovPtrSmart<CTovDocument> document(new Document);
        document->AddView(&first);
        document->AddView(&second);
        auto const release = [&document] { document = CTovPtrSmart<CTovDocument>(); };
        (byMainWindow ? main.atClose : a.atDestroy) = release;
        document.Get()->OnCloseDocument();
        EXPECT_EQ(told, byMainWindow ? "close gone " : "close destroy A gone ");
        EXPECT_EQ(second.GetDocument(), nullptr);
    }
}

TEST_F(DocumentTest, AViewThatDiesWithItsFrameIsNotMissed) {
    Document document;
    auto frame = std::make_unique<Frame>('A');
    auto first = std::make_unique<View>(frame.get());
    auto second = std::make_unique<View>(frame.get());
    document.AddView(first.get());
    document.AddView(second.get());
    frame->atDestroy = [&] {
        first.reset();
        second.reset();
    };
    document.OnCloseDocument();
    EXPECT_EQ(told, "destroy A ");
}

}  // namespace
}  // namespace tov
