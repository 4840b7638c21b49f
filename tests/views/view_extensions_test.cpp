#include <tov310/application.h>
#include <tov310/cmd_ui.h>
#include <tov310/dialog.h>
#include <tov310/menu.h>
#include <tov310/view_extensions.h>

#include "support/fake_device.h"
#include "support/tip_desk.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>

namespace tov {
namespace {

using namespace test;
using Document = CTovPtrSmart<CTovDocument>;

using Desk = TipDesk;
constexpr unsigned command = 40000;

template <class W>
struct ViewOf : Placed<FakeWindowOf<CTovViewOf<W>>> {
    using Base = Placed<FakeWindowOf<CTovViewOf<W>>>;
    using Base::AddItemToArrange;
    using Base::ArrangeItems;
    using Base::Base;

    CRect GetClientRect() const override { return {0, 0, 100, 50}; }
    CPoint GetScrollPosition() const override { return scrolled; }
    int SubclassDlgItem(unsigned id, CWnd* around) override {
        HWND const placeholder = around->GetDlgItem(static_cast<int>(id));
        if (!placeholder) return 0;
        this->SetDlgCtrlID(static_cast<int>(id));
        this->parent = around->GetSafeHwnd();
        std::ranges::replace(dynamic_cast<FakeFamily&>(*around).children, placeholder, this->GetSafeHwnd());
        return 1;
    }
    int OnCmdMsg(unsigned id, int code, void* extra, CTovCommandInfo* info) override {
        ++asked;
        return Base::OnCmdMsg(id, code, extra, info);
    }
    LRESULT DefWindowProc(unsigned message, WPARAM, LPARAM) override {
        return message == WM_MOUSEACTIVATE ? allowed : 0;
    }
    void OnDraw(CDC*) override { told += "draw "; }
    void OnPostInitialUpdate() override { told += "update "; }
    void OnPostSetFocus() override { told += "focus "; }
    void OnPostActivateView(int activate, CView* view) override {
        told += std::to_string(activate) + (view == this ? "me " : view == nullptr ? "none " : "other ");
    }
    void OnSlowDoubleClick(WPARAM keys, CPoint const& place) override {
        told += "slow" + std::to_string(keys) + "," + std::to_string(place.x) + " ";
    }
    void OnSetViewDocument() override { told += "set "; }
    void OnUnsetViewDocument() override {
        EXPECT_TRUE(this->GetViewDocument());
        told += "unset ";
    }
    CString Told() { return std::exchange(told, ""); }

    CPoint scrolled;
    LRESULT allowed = 0;
    int asked = 0;
    CString told;
};
using View = ViewOf<CView>;

template <class W>
std::unique_ptr<CWnd> Make(FakeDesk& desk, CWnd* around) {
    return std::make_unique<FakeWindowOf<W>>(desk, around);
}

TEST(ViewExtensions, WalksOfRandomParentsAgreeWithAPlainModel) {
    enum Kind { kFrame, kMDIChild, kDialog, kForm, kNested, kPlainView, kPlain, kKinds };
    std::mt19937 random(61);
    Desk desk;
    for (int round = 0; round < 2000; ++round) {
        std::vector<std::unique_ptr<CWnd>> chain;
        std::vector<Kind> kinds;
        for (auto i = random() % 6; i-- > 0;) {
            CWnd* const around = chain.empty() ? nullptr : chain.back().get();
            kinds.push_back(static_cast<Kind>(random() % kKinds));
            static constexpr std::unique_ptr<CWnd> (*makers[])(FakeDesk&, CWnd*) = {
                Make<CFrameWnd>,      Make<CMDIChildWnd>, Make<CDialog>, Make<CFormView>,
                Make<CTovNestedView>, Make<CView>,        Make<CWnd>};
            chain.push_back(makers[kinds.back()](desk, around));
        }
        View view(desk, chain.empty() ? nullptr : chain.back().get());
        // The first window outwards of the wanted kinds, if nothing of the others is before it.
        auto const first = [&](std::vector<Kind> wanted, std::vector<Kind> stops) -> CWnd* {
            for (std::size_t i = chain.size(); i-- > 0;) {
                if (std::ranges::count(wanted, kinds[i]) != 0) return chain[i].get();
                if (std::ranges::count(stops, kinds[i]) != 0) return nullptr;
            }
            return nullptr;
        };
        auto const direct = [&](Kind kind) -> CWnd* {
            return !kinds.empty() && kinds.back() == kind ? chain.back().get() : nullptr;
        };
        CWnd* topmost = &view;
        for (std::size_t i = chain.size(); i-- > 0 && kinds[i] > kDialog;) {
            if (kinds[i] != kPlain) topmost = chain[i].get();
        }
        std::vector<std::pair<CWnd*, CWnd*>> const pairs = {
            {view.GetDirectParentDialog(), direct(kDialog)},
            {view.GetDirectParentMDIChildWnd(), direct(kMDIChild)},
            {view.GetDirectParentSDIFrameWnd(), direct(kFrame)},
            {view.GetDirectParentFormView(), direct(kForm)},
            {view.GetParentDialog(), first({kDialog}, {kFrame, kMDIChild})},
            {view.GetParentMDIChildWnd(), first({kMDIChild}, {kFrame, kDialog})},
            {view.GetParentSDIFrameWnd(), first({kFrame}, {kMDIChild, kDialog})},
            {view.GetParentNestedView(), first({kNested}, {kDialog})},
            {view.GetParentFormView(), first({kForm}, {kDialog})},
            {view.GetTopmostView(), topmost}};
        for (std::size_t i = 0; i < pairs.size(); ++i)
            ASSERT_EQ(pairs[i].first, pairs[i].second) << "walk " << i << " in round " << round;
        ASSERT_EQ(view.ParentIsSDIFrameWnd() != 0, view.GetParentSDIFrameWnd() != nullptr);
        if (view.GetParentFormView() != nullptr) {
            view.DestroyWindow();
            ASSERT_EQ(view.GetParentFormView(), nullptr) << "a dead view stands in nothing";
        }
        while (!chain.empty())
            chain.pop_back();
    }
}

TEST(ViewExtensions, CastFindsThePartOfAView) {
    Desk desk;
    View view(desk);
    ViewOf<CFormView> form(desk);
    FakeWindowOf<CView> bare(desk);
    EXPECT_EQ(CTovViewExtensions::CastObjectSafe(nullptr), nullptr);
    EXPECT_EQ(CTovViewExtensions::CastObjectSafe(&bare), nullptr);
    EXPECT_EQ(CTovViewExtensions::CastObjectSafe(&view), &view);
    EXPECT_EQ(CTovViewExtensions::CastObjectSafe(&form)->GetView(), &form);
    EXPECT_EQ(CTovViewExtensions::SetWndViewDocument(&bare, Document(new CTovDocument)), 0);
    EXPECT_EQ(CTovViewExtensions::UnsetWndViewDocument(nullptr), 0);
    EXPECT_FALSE(CTovViewExtensions::GetWndViewDocument(&bare));
}

TEST(ViewExtensions, DocumentsComeAndGoAtRandom) {
    std::mt19937 random(7);
    Desk desk;
    CDocTemplate kind;
    std::vector<Document> documents;
    for (int i = 0; i < 3; ++i) {
        documents.push_back(Document(new CTovDocument));
        kind.AddDocument(documents.back().Get());
    }
    FakeWindowOf<CFrameWnd> frame(desk);
    View topmost(desk, &frame);
    View nested(desk, &topmost);
    View alone(desk);
    View* const views[] = {&topmost, &nested, &alone};
    Document held[3];
    for (int round = 0; round < 5000; ++round) {
        std::size_t const which = random() % 3;
        Document const wanted = random() % 4 == 0 ? Document() : documents[random() % 3];
        bool const changes = held[which].Get() != wanted.Get();
        CString expected = changes && held[which] ? "unset " : "";
        if (changes && wanted) expected += "set ";
        if (wanted || random() % 2 == 0)
            views[which]->SetViewDocument(wanted);
        else
            views[which]->UnsetViewDocument();
        held[which] = wanted;
        ASSERT_EQ(views[which]->Told(), expected) << round;
        ASSERT_EQ(views[which]->GetViewDocument().Get(), wanted.Get());
        ASSERT_EQ(topmost.GetDocument(), held[0].Get());
        ASSERT_EQ(alone.GetDocument(), nullptr) << "it stands in no frame";
        ASSERT_TRUE(which != 1 || !changes || nested.GetDocument() == topmost.GetDocument());
        for (Document const& document : documents) {
            bool const isShown = document.Get() == held[0].Get();
            ASSERT_EQ(document->GetViews().size(), isShown ? 1u : 0u) << "only the topmost one is a view";
        }
    }
    topmost.SetViewDocument(documents[0]);
    nested.SetViewDocument(documents[1]);
    topmost.UnsetViewDocument();
    EXPECT_EQ(documents[0]->GetDocTemplate(), nullptr) << "a document without a view leaves its template";
    topmost.SetViewDocument(documents[0]);
    EXPECT_EQ(documents[0]->GetDocTemplate(), &kind);
    nested.SetViewDocument(documents[2]);
    documents.clear();
    held[0] = held[1] = held[2] = {};
    alone.UnsetViewDocument();
    topmost.UnsetViewDocument();
    EXPECT_EQ(nested.GetDocument(), nullptr) << "what it looked at is gone";
}

TEST(ViewExtensions, AViewJoinsItsDocumentWhenItGetsIntoAFrame) {
    Desk desk;
    View view(desk);
    Document const document(new CTovDocument);
    view.SetViewDocument(document);
    EXPECT_EQ(view.GetDocument(), nullptr);
    FakeWindowOf<CFrameWnd> frame(desk);
    view.parent = frame.GetSafeHwnd();
    view.OnInitialUpdate();
    EXPECT_EQ(view.GetDocument(), document.Get());
    EXPECT_EQ(view.Told(), "set ");
    TovDispatchPosts();
    EXPECT_EQ(view.Told(), "update ");
}

struct Handler : CTovDocument {
    CTovCommandTable const* GetCommandTable() const override {
        static constexpr CTovCommandHandler handlers[] = {TovCommand<Handler, &Handler::Do>(command)};
        static CTovCommandTable const table{nullptr, handlers};
        return &table;
    }
    void Do() { by = CView::GetRoutingView(); }
    CView* by = nullptr;
};

TEST(ViewExtensions, CommandsGoRoundOnceAndThenToTheDocument) {
    Desk desk;
    FakeWindowOf<CFrameWnd> frame(desk);
    View a(desk, &frame), b(desk, &frame);
    auto c = std::make_unique<View>(desk, &frame);
    EXPECT_EQ(a.RouteCmdMsg(command, CN_COMMAND, nullptr, nullptr), 0);
    auto* const handler = new Handler;
    Document const document(handler);
    a.SetViewExtRouteTo(&b);
    b.SetViewExtRouteTo(c.get());
    c->SetViewExtRouteTo(&a);
    auto const run = [&] {
        a.asked = b.asked = 0;
        int const result = a.OnCmdMsg(command, CN_COMMAND, nullptr, nullptr);
        return std::tuple(result, a.asked, b.asked);
    };
    EXPECT_EQ(run(), (std::tuple(0, 1, 1)));
    EXPECT_EQ(c->asked, 1);
    c->SetViewDocument(document);
    EXPECT_EQ(run(), (std::tuple(1, 1, 1)));
    EXPECT_EQ(handler->by, c.get());
    EXPECT_EQ(CView::GetRoutingView(), nullptr);
    EXPECT_EQ(a.HandleCmdMsg(command, CN_COMMAND, nullptr, nullptr, &a), 0);
    c.reset();
    EXPECT_EQ(run(), (std::tuple(0, 1, 1))) << "a dead target is forgotten";
    a.SetViewExtRouteTo(&a);
    EXPECT_EQ(run(), (std::tuple(0, 1, 0)));
}

TEST(ViewExtensions, SlowDoubleClicksByTheClock) {
    Desk desk;
    View view(desk);
    HWND const self = view.GetSafeHwnd();
    auto const up = [&](int x) { TovSendMessage(self, WM_LBUTTONUP, MK_CONTROL, TovPackPoint({x, 2})); };
    up(1);
    EXPECT_EQ(desk.timers, (std::map<WPARAM, unsigned>{{2, 1200}}));
    up(3);
    EXPECT_EQ(view.Told(), "slow8,3 ");
    EXPECT_TRUE(desk.timers.empty());
    up(1);
    TovSendMessage(self, WM_TIMER, 2);
    EXPECT_TRUE(desk.timers.empty());
    up(1);
    TovSendMessage(self, WM_LBUTTONDBLCLK);
    up(1);
    EXPECT_EQ(view.Told(), "") << "too late, and a double click";
    view.DblClickSlowAllowed(0);
    up(1);
    EXPECT_EQ(view.Told(), "");
    view.DestroyWindow();
    EXPECT_TRUE(desk.timers.empty());
}

TEST(ViewExtensions, WhatFollowsIsToldWhenAllHaveHeard) {
    Desk desk;
    FakeWindow around(desk);
    View view(desk, &around), other(desk, &around);
    HWND const self = view.GetSafeHwnd();
    TovSendMessage(self, WM_SHOWWINDOW, 1);
    TovSendMessage(self, WM_SETFOCUS);
    TovSendMessage(self, WM_SHOWWINDOW, 1);
    for (int activate : {1, 1, 0, 1})
        view.OnActivateView(activate, activate != 0 ? &view : &other, &other);
    view.OnActivateView(0, nullptr, &view);
    EXPECT_EQ(view.Told(), "");
    TovDispatchPosts();
    EXPECT_EQ(view.Told(), "update focus 1me 0other 1me 0none ");
    EXPECT_EQ(std::ranges::count(around.log, WM_TOV_POST_ACTIVATECHILDVIEW), 4);
    view.OnActivateView(1, &other, nullptr);
    other.DestroyWindow();
    TovDispatchPosts();
    EXPECT_EQ(view.Told(), "1none ") << "a view that is dead by then";
}

TEST(ViewExtensions, AViewTakesThePlaceOfAControl) {
    Document const document(new CTovDocument);
    struct {
        unsigned long clip;
        unsigned id;
        int update;
        unsigned long tab;
        int result;
        CString told;
    } const cases[] = {{0, 7, 1, 0, 0, ""},
                       {WS_CLIPCHILDREN, 8, 1, 0, 0, ""},
                       {WS_CLIPCHILDREN, 7, 0, 0, 1, "set "},
                       {WS_CLIPCHILDREN, 7, 1, WS_TABSTOP, 1, "set update "}};
    for (auto const& c : cases) {
        Desk desk;
        FakeWindowOf<CDialog> dialog(desk);
        FakeWindow placeholder(desk, &dialog, 7);
        dialog.ModifyStyle(0, c.clip);
        placeholder.ModifyStyle(0, c.tab);
        View view(desk);
        View inner(desk, &view);
        view.ModifyStyle(WS_VISIBLE, WS_TABSTOP);
        EXPECT_EQ(view.ExchangeDlgItem(&dialog, c.id, c.update, SW_SHOW, document), c.result);
        TovSendMessage(view.GetSafeHwnd(), WM_SHOWWINDOW, 1);
        dialog.log.clear();
        inner.Told();
        TovDispatchPosts();
        if (c.result == 0) continue;
        EXPECT_EQ(view.Told(), c.told);
        EXPECT_EQ(inner.Told(), c.update != 0 ? "update " : "");
        EXPECT_EQ(view.GetStyle(), WS_CHILD | WS_VISIBLE | WS_BORDER | c.tab);
        EXPECT_EQ(dialog.GetDlgItem(7), view.GetSafeHwnd());
        EXPECT_EQ(dialog.log, std::vector{WM_TOV_VIEW_DLGITEM_EXCHANGED});
        EXPECT_EQ(view.GetTopmostView(), &view);
    }
    Desk desk;
    View view(desk);
    EXPECT_EQ(view.ExchangeDlgItem(static_cast<CDialog*>(nullptr), 7, 1, SW_SHOW, document), 0);
}

TEST(ViewExtensions, ControlsKeepTheirPlaceOnTheScrolledPage) {
    Desk desk;
    View view(desk);
    Placed<FakeWindow> control(desk, &view, 5);
    control.rect = {10, 10, 30, 20};
    view.scrolled = {0, 100};  // it stands at 110 of the page
    view.AddItemToArrange(ARRANGE_MOVE_X | ARRANGE_SIZE_Y, 5);
    view.AddItemToArrange(100, 0, 0, 0, 6);  // there is none
    view.ArrangeItems({150, 60}, {100, 50}, {});
    EXPECT_EQ(control.rect, (CRect{60, 10, 80, 30}));
    view.scrolled = {4, 90};
    view.ArrangeItems({10, 10}, {100, 50}, {100, 50});
    EXPECT_EQ(control.rect, (CRect{6, 20, 26, 30}));
}

TEST(ViewExtensions, UpdatesStopOnceAndContinueOnce) {
    Desk desk;
    View view(desk);
    FakeDevice device(100, 50);
    EXPECT_EQ(view.StopWindowUpdate(), 0);
    EXPECT_EQ(view.StopWindowUpdate(), 1);
    TovSendMessage(view.GetSafeHwnd(), WM_PRINTCLIENT, reinterpret_cast<WPARAM>(static_cast<CDC*>(&device)),
                   PRF_ERASEBKGND);
    EXPECT_EQ(view.Told(), "draw ");
    view.ContinueWindowUpdate(0);
    EXPECT_EQ(std::exchange(view.redrawn, 0), RDW_INVALIDATE | RDW_NOERASE);
    view.ContinueWindowUpdate(1);
    EXPECT_EQ(view.redrawn, 0u);
    EXPECT_EQ(std::ranges::count(view.log, WM_SETREDRAW), 2);
}

TEST(ViewExtensions, PressesTurnTheFrameOrTheFocusToTheView) {
    enum Focus { kElsewhere, kInView };
    struct {
        bool inFrame, ofThatFrame;
        unsigned message;
        LRESULT allowed;
        Focus focus;
        bool activates, takesFocus;
    } const cases[] = {{true, true, WM_LBUTTONDOWN, 1, kElsewhere, true, false},
                       {true, true, WM_MOUSEWHEEL, 1, kElsewhere, false, false},
                       {true, true, WM_LBUTTONDOWN, 0, kElsewhere, false, false},
                       {true, false, WM_LBUTTONDOWN, 1, kElsewhere, false, true},
                       {false, false, WM_RBUTTONDOWN, 2, kElsewhere, false, true},
                       {false, false, WM_RBUTTONDOWN, 3, kElsewhere, false, false},
                       {false, false, WM_MBUTTONDOWN, 1, kInView, false, false},
                       {false, false, 0, 1, kElsewhere, false, false}};
    for (auto const& c : cases) {
        Desk desk;
        FakeWindowOf<CFrameWnd> frame(desk);
        FakeWindowOf<CDialog> dialog(desk);
        View view(desk, c.inFrame ? static_cast<CWnd*>(&frame) : &dialog);
        FakeWindow child(desk, &view), elsewhere(desk);
        view.allowed = c.allowed;
        HWND const focus = (c.focus == kInView ? child : elsewhere).GetSafeHwnd();
        desk.focus = focus;
        HWND const top = c.ofThatFrame ? frame.GetSafeHwnd() : dialog.GetSafeHwnd();
        auto const message = static_cast<LPARAM>(c.message);
        EXPECT_EQ(TovSendMessage(view.GetSafeHwnd(), WM_MOUSEACTIVATE, top.id, message), c.allowed);
        EXPECT_EQ(frame.GetActiveView() == &view, c.activates);
        EXPECT_EQ(desk.focus, c.takesFocus ? view.GetSafeHwnd() : focus);
    }
}

TEST(ViewExtensions, PopupsAreHiddenAndRestored) {
    Desk desk;
    CWinApp app;
    FakeWindow main(desk), popup(desk), edit(desk);
    app.SetMainWnd(main.GetSafeHwnd());
    auto const isShown = [&] { return (popup.GetStyle() & WS_VISIBLE) != 0; };
    desk.focus = edit.GetSafeHwnd();
    CTovViewExtensions::HidePopupWnd(nullptr);
    CTovViewExtensions::HidePopupWnd(&popup);
    EXPECT_FALSE(isShown());
    main.ModifyStyle(0, WS_MINIMIZE);
    CTovViewExtensions::RestorePopupWnd(&popup, 1);
    EXPECT_FALSE(isShown());
    main.ModifyStyle(WS_MINIMIZE, 0);
    CTovViewExtensions::RestorePopupWnd(&popup, 0);
    EXPECT_TRUE(isShown());
    EXPECT_EQ(desk.focus, edit.GetSafeHwnd());
    CTovViewExtensions::RestorePopupWnd(&popup, 1);
    EXPECT_EQ(desk.focus, edit.GetSafeHwnd()) << "it was shown already";
    CTovViewExtensions::HidePopupWnd(&popup);
    CTovViewExtensions::RestorePopupWnd(&popup, 1);
    EXPECT_EQ(desk.focus, popup.GetSafeHwnd());
}

struct MenuOwner : FakeWindow {
    using FakeWindow::FakeWindow;
    int OnCmdMsg(unsigned id, int code, void* extra, CTovCommandInfo*) override {
        if (code != CN_UPDATE_COMMAND_UI) return 0;
        asked.push_back(id);
        auto& state = *static_cast<CCmdUI*>(extra);
        if (id == 3) menu.DeleteMenu(3, MF_BYCOMMAND);
        if (id != 5) return 0;
        state.Enable();
        state.SetCheck();
        return 1;
    }
    CMenu menu;
    std::vector<unsigned> asked;
};

TEST(ViewExtensions, PopupsAskForStatesAlsoWhileTheyShrink) {
    Desk desk;
    MenuOwner owner(desk);
    auto popup = std::make_unique<CMenu>();
    popup->AppendMenu(MF_STRING, 20, "first");
    popup->AppendMenu(MF_STRING, 21, "second");
    auto empty = std::make_unique<CMenu>();
    empty->AppendMenu(MF_SEPARATOR);
    for (unsigned id : {2u, 0u, 3u, 4u, 5u, 0xF010u})
        owner.menu.AppendMenu(id != 0 ? MF_STRING : MF_SEPARATOR, id, "entry");
    owner.menu.AppendMenu(MF_POPUP, std::move(popup), "popup");
    owner.menu.AppendMenu(MF_POPUP, std::move(empty), "separator first");
    CTovViewExtensions::InitMenuPopupFix(&owner, &owner.menu, 0, 1);
    EXPECT_TRUE(owner.asked.empty());
    CTovViewExtensions::InitMenuPopupFix(&owner, &owner.menu, 0, 0);
    EXPECT_EQ(owner.asked, (std::vector<unsigned>{2, 3, 4, 5, 0xF010, 20}));
    auto const state = [&](unsigned id) { return owner.menu.GetMenuState(id, MF_BYCOMMAND) & 0xFu; };
    EXPECT_EQ(state(2), MF_GRAYED | MF_DISABLED);
    EXPECT_EQ(state(5), MF_CHECKED);
    EXPECT_EQ(state(0xF010), 0u) << "the system's own";
    EXPECT_EQ(state(20), 0u);
}

}  // namespace
}  // namespace tov
