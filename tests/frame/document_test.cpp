#include <tov310/application.h>
#include <tov310/document.h>
#include <tov310/messages.h>

#include <gtest/gtest.h>

#include <functional>

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
    void OnChangedViewList() override {
        ++changes;
        if (atChange) atChange();
    }
    int changes = 0;
    std::function<void()> atChange;
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

// Views of a document, or documents of a template.
template <class Owner, class Item, class Add, class Remove, class List, class OwnerOf>
void LeaveEachOther(Add add, Remove remove, List list, OwnerOf ownerOf) {
    auto owner = std::make_unique<Owner>();
    Owner other;
    Item first;
    {
        Item second;
        for (Item* const item : {&first, &second, &first, static_cast<Item*>(nullptr)})
            std::invoke(add, *owner, item);
        EXPECT_EQ(std::invoke(list, *owner).size(), 2u);
        EXPECT_EQ(std::invoke(list, *owner).back(), &second);
    }
    ASSERT_EQ(std::invoke(list, *owner).size(), 1u);
    EXPECT_EQ(std::invoke(list, *owner).front(), &first);
    std::invoke(add, other, &first);
    EXPECT_TRUE(std::invoke(list, *owner).empty());
    std::invoke(remove, *owner, &first);
    EXPECT_EQ(std::invoke(ownerOf, first), &other) << "it was none of the owner's";
    std::invoke(add, *owner, &first);
    if constexpr (requires { owner->changes; }) {
        EXPECT_EQ(owner->changes, 5);
    }
    owner.reset();
    EXPECT_EQ(std::invoke(ownerOf, first), nullptr);
}

TEST_F(DocumentTest, ViewsDocumentsAndTemplatesLeaveEachOther) {
    LeaveEachOther<Document, View>(&CDocument::AddView, &CDocument::RemoveView, &CDocument::GetViews,
                                   &CView::GetDocument);
    LeaveEachOther<CDocTemplate, Document>(&CDocTemplate::AddDocument, &CDocTemplate::RemoveDocument,
                                           &CDocTemplate::GetDocuments, &CDocument::GetDocTemplate);
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
    std::vector<std::unique_ptr<View>> views;
    for (int i = 0; i < 2; ++i)
        document.AddView(views.emplace_back(std::make_unique<View>(&a)).get());
    a.atDestroy = [&] { views.clear(); };
    document.OnCloseDocument();
    EXPECT_EQ(told, "destroy A ");

    View last(&b);
    document.AddView(&last);
    document.atChange = [&] { b.DestroyWindow(); };
    document.OnCloseDocument();
    EXPECT_EQ(told, "destroy A destroy B ") << "nor a frame that dies with its view";
}

}  // namespace
}  // namespace tov
