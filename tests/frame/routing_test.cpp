// The way of commands through views, documents, frames and the application, and who has the attention.
#include <tov310/application.h>
#include <tov310/cmd_ui.h>
#include <tov310/dialog.h>
#include <tov310/document.h>
#include <tov310/menu.h>
#include <tov310/messages.h>

#include "support/fake_window.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace tov {
namespace {

std::string told;

// One that does the commands it is told to do, and notes who was asked.
template <class Base>
struct Asked : Base {
    using Base::Base;
    int OnCmdMsg(unsigned id, int code, void* extra, CTovCommandInfo* info) override {
        told += name;
        if (does == id) {
            told += '!';
            return 1;
        }
        return Base::OnCmdMsg(id, code, extra, info);
    }
    char name = '?';
    unsigned does = 0;
};

struct Born : CFrameWnd {
    Born() { Attach(); }
};
struct BornMdi : CMDIFrameWnd {
    BornMdi() { Attach(); }
};
struct BornChild : CMDIChildWnd {
    BornChild() { Attach(); }
};
struct BornView : CView {
    BornView() { Attach(); }
    void OnActivateView(int activate, CView* activated, CView* deactivated) override {
        told += activate != 0 ? "+" : "-";
        told += activated == this ? "me" : activated != nullptr ? "other" : "none";
        told += deactivated == this ? "/me " : deactivated != nullptr ? "/other " : "/none ";
        if (auto const act = std::exchange(atActivate, nullptr)) act();
    }
    std::function<void()> atActivate;
};

TEST(Routing, AsksFromTheInsideOutUntilSomebodyDoesIt) {
    Asked<CWinApp> app;
    Asked<BornMdi> frame;
    Asked<BornChild> child;
    Asked<BornView> view;
    Asked<CDocument> document;
    Asked<CDocTemplate> documents;
    app.name = 'a', frame.name = 'f', child.name = 'c', view.name = 'v', document.name = 'd',
    documents.name = 't';
    documents.AddDocument(&document);
    document.AddView(&view);
    child.SetActiveView(&view);
    frame.MDIActivate(&child);
    EXPECT_EQ(frame.GetActiveFrame(), &child);

    auto const send = [&frame](unsigned id) {
        told.clear();
        return TovSendMessage(frame.GetSafeHwnd(), WM_COMMAND, id);
    };
    EXPECT_EQ(send(0x8001), 0);
    EXPECT_EQ(told, "fcvdtaa");  // both frames end with the application
    struct {
        unsigned& does;
        char const* way;
    } const doers[] = {{app.does, "fcvdta!"}, {documents.does, "fcvdt!"}, {document.does, "fcvd!"},
                       {view.does, "fcv!"},   {child.does, "fc!"},        {frame.does, "f!"}};
    for (auto const& [does, way] : doers) {
        does = 0x8001;
        EXPECT_EQ(send(0x8001), 1);
        EXPECT_EQ(told, way);
    }
    // What a control tells of itself is no command.
    told.clear();
    EXPECT_EQ(TovSendMessage(frame.GetSafeHwnd(), WM_COMMAND, TovCommandParam(0x8001, EN_CHANGE)), 0);
    EXPECT_EQ(told, "");
}

TEST(Routing, DialogsKeepTheirSmallNumbers) {
    test::FakeDesk desk;
    Asked<CWinApp> app;
    Asked<test::FakeWindowOf<CWnd>> owner(desk);
    test::FakeWindowOf<CDialog> dialog(desk, &owner);
    app.name = 'a', owner.name = 'o';
    told.clear();
    TovSendMessage(dialog.GetSafeHwnd(), WM_COMMAND, 0x7FFF);
    EXPECT_EQ(told, "");
    TovSendMessage(dialog.GetSafeHwnd(), WM_COMMAND, 0x8000);
    EXPECT_EQ(told, "oa");
}

TEST(Routing, TellsViewsWhoHasTheAttention) {
    Born frame;
    BornView one;
    told.clear();
    {
        BornView two;
        frame.SetActiveView(&one);
        frame.SetActiveView(&one);
        frame.SetActiveView(&two);
        EXPECT_EQ(told, "+me/none -other/me +me/other ");
        frame.SetActiveView(&one, 0);
        EXPECT_EQ(frame.GetActiveView(), &one);
        told.clear();
        // Who is left makes another the active one: that holds.
        one.atActivate = [&] { frame.SetActiveView(&two); };
        frame.SetActiveView(nullptr);
        EXPECT_EQ(frame.GetActiveView(), &two);
        EXPECT_EQ(told, "-none/me +me/none ");
    }
    EXPECT_EQ(frame.GetActiveView(), nullptr);
    frame.SetActiveView(&one);
    EXPECT_EQ(frame.GetActiveView(), &one);
}

struct Stateful : Born {
    CTovCommandTable const* GetCommandTable() const override {
        static constexpr CTovCommandHandler handlers[] = {
            TovCommand<Stateful, &Stateful::Do, &Stateful::Update>(0x8001),
            TovCommand<Stateful, &Stateful::Do>(0x8002)};
        static CTovCommandTable const table{Born::GetCommandTable(), handlers};
        return &table;
    }
    void Do() {}
    void Update(CCmdUI* state) { state->SetCheck(1); }
};

TEST(Routing, AsksForTheStatesOfAMenuBeforeItOpens) {
    Stateful frame;
    CMenu menu;
    for (unsigned id = 0x8001; id <= 0x8003; ++id)
        menu.AppendMenu(MF_STRING, id, "x");
    menu.AppendMenu(MF_SEPARATOR);
    TovSendMessage(frame.GetSafeHwnd(), WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(&menu));
    EXPECT_EQ(menu.GetMenuState(0, MF_BYPOSITION), MF_CHECKED);
    EXPECT_EQ(menu.GetMenuState(1, MF_BYPOSITION), 0u);
    EXPECT_EQ(menu.GetMenuState(2, MF_BYPOSITION), MF_DISABLED | MF_GRAYED) << "nobody would do it";
}

// Ends the menu that is being asked for, or puts something else in the entry's place.
struct Changing : Born {
    CTovCommandTable const* GetCommandTable() const override {
        static constexpr CTovCommandHandler handlers[] = {
            TovCommand<Changing, nullptr, &Changing::Update>(0x8001)};
        static CTovCommandTable const table{Born::GetCommandTable(), handlers};
        return &table;
    }
    void Update(CCmdUI* state) {
        change();
        state->SetCheck(1);
        state->SetText("written");
    }
    std::function<void()> change;
};

TEST(Routing, WritesNothingIntoAMenuThatHasChangedMeanwhile) {
    Changing frame;
    auto menu = std::make_unique<CMenu>();
    menu->AppendMenu(MF_STRING, 0x8001, "x");
    frame.change = [&] { menu->InsertMenu(0, MF_BYPOSITION, 0x8002, "other"); };
    CCmdUI state;
    state.m_nID = 0x8001;
    state.m_pMenu = menu.get();
    state.DoUpdate(&frame, 1);
    CString text;
    menu->GetMenuString(0, text, MF_BYPOSITION);
    EXPECT_EQ(text, "other");
    EXPECT_EQ(menu->GetMenuState(0, MF_BYPOSITION), 0u);
    menu->DeleteMenu(0, MF_BYPOSITION);
    frame.change = [&] { menu.reset(); };
    EXPECT_EQ(state.DoUpdate(&frame, 1), 1);
    EXPECT_EQ(menu, nullptr);
}

}  // namespace
}  // namespace tov
