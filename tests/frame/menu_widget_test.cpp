// Menus on the screen, driven by keys and the mouse.
#include "support/widgets.h"

#include <tov310/menu_popup.h>
#include <tov310/messages.h>
#include <tov310/tov_frame.h>

#include <gtest/gtest.h>

#include <functional>

namespace tov {
namespace {

// Notes what it hears.
struct Owner : CTovFrameWnd {
    std::vector<unsigned> commands;
    std::vector<CMenu*> opened;
    std::function<void(CMenu*)> onOpen = [](CMenu*) {};
    std::function<void(unsigned)> onCommand = [](unsigned) {};
    bool menuWasOpen = false;

    int OnCmdMsg(unsigned id, int code, void* extra, CTovCommandInfo* info) override {
        if (code == CN_UPDATE_COMMAND_UI) {
            auto& state = *static_cast<CCmdUI*>(extra);
            if (id == 2) state.Enable(0);
            if (id == 3) state.SetCheck(1);
            if (id == 4) state.SetRadio(1);
            return 1;
        }
        if (info != nullptr) return 1;
        commands.push_back(id);
        menuWasOpen = QApplication::activePopupWidget() != nullptr;
        onCommand(id);
        return 1;
    }
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_INITMENUPOPUP) {
            opened.push_back(reinterpret_cast<CMenu*>(wParam));
            std::weak_ptr<void const> const life = opened.back()->Life();
            onOpen(opened.back());
            if (life.expired()) return 0;
        }
        return CTovFrameWnd::WindowProc(message, wParam, lParam);
    }
    void GetMessageString(unsigned id, CString& text) const override {
        text = std::to_string(id).insert(0, "does ");
    }
};

struct Drawn : CMenu {
    int painted = 0;
    bool hilited = false;
    void MeasureItem(MEASUREITEMSTRUCT* item) override { item->itemWidth = 70, item->itemHeight = 40; }
    void DrawItem(DRAWITEMSTRUCT* item) override {
        ++painted;
        hilited = (item->itemState & MF_HILITE) != 0;
        TovGetMenuPort()->FillRect(item->hDC, item->rcItem, 0x0000FF);  // red
    }
};

class MenuOnScreen : public testing::Test {
 protected:
    void SetUp() override {
        auto popup = std::make_unique<CMenu>();
        popup->AppendMenu(MF_STRING, 5, "Fi&ve");
        popup->AppendMenu(MF_STRING, 6, "Six");
        m_popup = popup.get();
        m_menu.AppendMenu(MF_STRING, 1, "&One\tCtrl+1");
        m_menu.AppendMenu(MF_SEPARATOR);
        m_menu.AppendMenu(MF_STRING, 2, "Two");
        m_menu.AppendMenu(MF_STRING, 3, "Three");
        m_menu.AppendMenu(MF_STRING, 4, "Four");
        m_menu.AppendMenu(MF_POPUP, std::move(popup), "&More");
        m_owner.resize(300, 200);
        m_owner.show();
        TovHandle(&m_owner);
    }

    // Shows the menu while the steps are done, each in a round of the main loop of its own.
    int Track(unsigned flags, std::vector<std::function<void(QMenu&)>> steps, QPoint at = {200, 200}) {
        for (std::size_t i = 0; i < steps.size(); ++i) {
            QTimer::singleShot(static_cast<int>(i) * 30, &m_owner, [step = steps[i]] {
                if (auto* const open = qobject_cast<QMenu*>(QApplication::activePopupWidget())) step(*open);
            });
        }
        // A menu that stays open must not hold up all tests.
        QTimer::singleShot(5000, &m_owner, [] {
            while (QWidget* const open = QApplication::activePopupWidget())
                open->close();
        });
        POINT const point{at.x(), at.y()};
        return TovGetMenuPort()->Track(m_menu, point, flags, m_owner);
    }
    static std::function<void(QMenu&)> Key(Qt::Key key) {
        return [key](QMenu& menu) { QTest::keyClick(&menu, key); };
    }

    CMenu m_menu;
    CMenu* m_popup = nullptr;
    Owner m_owner;
};

TEST_F(MenuOnScreen, LooksAsItIsAndAsksForStatesWhenItOpens) {
    int width = 0, left = 0;
    auto const look = [&](QMenu& menu) {
        auto const entries = menu.actions();
        ASSERT_EQ(entries.size(), 6);
        EXPECT_EQ(entries[0]->text(), "&One\tCtrl+1");
        EXPECT_EQ(entries[0]->statusTip(), "does 1");
        EXPECT_TRUE(entries[1]->isSeparator());
        EXPECT_TRUE(entries[0]->isEnabled() && !entries[2]->isEnabled());
        EXPECT_TRUE(!entries[0]->isCheckable() && entries[3]->isChecked() && entries[4]->isChecked());
        EXPECT_TRUE(!entries[3]->actionGroup() && entries[4]->actionGroup());
        width = menu.sizeHint().width();
        left = menu.x();
        menu.close();
    };
    EXPECT_EQ(Track(0, {look}), 1);
    EXPECT_EQ(left, 200);
    Track(TPM_RIGHTALIGN, {look}, {400, 200});
    EXPECT_EQ(left, 400 - width);
    Track(TPM_CENTERALIGN, {look}, {400, 200});
    EXPECT_EQ(left, 400 - width / 2);
    EXPECT_EQ(m_owner.opened, std::vector<CMenu*>(3, &m_menu)) << "popups that stayed closed are not asked";
    EXPECT_TRUE(m_owner.commands.empty());
}

TEST_F(MenuOnScreen, KeysAndMouseChoose) {
    struct Row {
        unsigned flags;
        std::vector<std::function<void(QMenu&)>> steps;
        int answer;
        std::vector<unsigned> commands;
    };
    auto const press = [](Qt::MouseButton button) {
        return [button](QMenu& menu) {
            QTest::mouseClick(&menu, button, {}, menu.actionGeometry(menu.actions().at(3)).center());
        };
    };
    Row const rows[] = {
        {0, {Key(Qt::Key_Down), Key(Qt::Key_Return)}, 1, {1}},
        {0, {Key(Qt::Key_O)}, 1, {1}},  // by its letter
        {0, {Key(Qt::Key_M), Key(Qt::Key_V)}, 1, {5}},
        {0, {Key(Qt::Key_Up), Key(Qt::Key_Right), Key(Qt::Key_Down), Key(Qt::Key_Return)}, 1, {6}},
        {TPM_RETURNCMD, {Key(Qt::Key_O)}, 1, {}},
        {TPM_RETURNCMD, {Key(Qt::Key_M), Key(Qt::Key_V)}, 5, {}},
        {TPM_RETURNCMD, {Key(Qt::Key_Escape)}, 0, {}},
        {TPM_NONOTIFY, {Key(Qt::Key_O)}, 1, {}},
        {0, {Key(Qt::Key_Escape)}, 1, {}},
        {0, {press(Qt::LeftButton)}, 1, {3}},
        {0, {press(Qt::RightButton), Key(Qt::Key_Escape)}, 1, {}},
        {TPM_RIGHTBUTTON, {press(Qt::RightButton), Key(Qt::Key_Escape)}, 1, {3}},
    };
    for (Row const& row : rows) {
        m_owner.commands.clear();
        EXPECT_EQ(Track(row.flags, row.steps), row.answer) << &row - rows;
        EXPECT_EQ(m_owner.commands, row.commands) << &row - rows;
        EXPECT_FALSE(m_owner.menuWasOpen);
    }
}

TEST_F(MenuOnScreen, EntriesMayDrawThemselves) {
    auto drawn = std::make_unique<Drawn>();
    Drawn& slides = *drawn;
    slides.AppendMenu(MF_OWNERDRAW, 8);
    slides.AppendMenu(MF_OWNERDRAW, 9);
    m_menu.InsertMenu(0, MF_BYPOSITION | MF_POPUP, std::move(drawn), "&Slides");
    QImage picture;
    auto const look = [&](QMenu& menu) {
        EXPECT_GE(menu.actionGeometry(menu.actions().at(1)).width(), 70);
        EXPECT_EQ(menu.actionGeometry(menu.actions().at(1)).height(), 40);
        picture = menu.grab(menu.actionGeometry(menu.actions().at(1))).toImage();
    };
    EXPECT_EQ(Track(TPM_RETURNCMD, {Key(Qt::Key_S), Key(Qt::Key_Down), look, Key(Qt::Key_Return)}), 9);
    ASSERT_FALSE(picture.isNull());
    EXPECT_EQ(picture.pixelColor(picture.rect().center()), QColor(Qt::red));
    EXPECT_NE(picture.pixelColor(0, 0), QColor(Qt::red)) << "the keys' place shows no mark";
    EXPECT_TRUE(slides.painted > 1 && slides.hilited);
    auto const press = [](QMenu& menu) {
        QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(menu.actions().at(0)).center());
    };
    EXPECT_EQ(Track(TPM_RETURNCMD, {Key(Qt::Key_S), press}), 8);
}

// Each row does something to the menu while it opens, or when it is open.
TEST_F(MenuOnScreen, WhatBecomesOfMenuAndWindowDoesNoHarm) {
    auto const grow = [&](CMenu* menu) {
        if (menu == m_popup) m_popup->InsertMenu(0, MF_BYPOSITION, 7, "&Added");
    };
    m_owner.onOpen = grow;
    EXPECT_EQ(Track(TPM_RETURNCMD, {Key(Qt::Key_M), Key(Qt::Key_A)}), 7);

    m_owner.onOpen = [&](CMenu* menu) {
        if (menu == m_popup) m_menu.DeleteMenu(m_menu.GetMenuItemCount() - 1, MF_BYPOSITION);
    };
    EXPECT_EQ(Track(TPM_RETURNCMD, {Key(Qt::Key_M), Key(Qt::Key_Escape), Key(Qt::Key_Escape)}), 0);
    EXPECT_EQ(m_menu.GetMenuItemCount(), 5U);

    m_owner.onOpen = [](CMenu*) {};
    EXPECT_EQ(Track(0, {[&](QMenu&) { m_menu.DestroyMenu(); }, Key(Qt::Key_O)}), 1);
    EXPECT_EQ(m_owner.commands, std::vector<unsigned>{1});
    EXPECT_EQ(Track(TPM_RETURNCMD, {}), 0) << "an empty menu is not shown";

    m_menu.AppendMenu(MF_STRING, 1, "&One");
    EXPECT_EQ(Track(TPM_RETURNCMD, {[&](QMenu&) { m_owner.DestroyWindow(); }}), 0);
    EXPECT_FALSE(IsWindow(m_owner.GetSafeHwnd()));
    EXPECT_EQ(Track(TPM_RETURNCMD, {}), 0) << "no window, no menu";

    auto* const gone = std::make_unique<Owner>().release();
    TovHandle(gone);
    QTimer::singleShot(30, qApp, [gone] { delete gone; });
    EXPECT_EQ(TovGetMenuPort()->Track(m_menu, {0, 0}, TPM_RETURNCMD, *gone), 0);

    // A menu of the library's that its command ends.
    struct PopUp : CTovMenuPopUp {
        explicit PopUp(CMenu const& menu, CWnd& window) { LoadMenu(menu), SetWindow(&window); }
    };
    Owner other;
    TovHandle(&other);
    auto popup = std::make_unique<PopUp>(m_menu, other);
    other.onCommand = [&](unsigned) { popup.reset(); };
    QTimer::singleShot(30, qApp, [] { QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_O); });
    EXPECT_EQ(popup->Activate(CPoint(10, 10), 0), 1);
    EXPECT_EQ(popup, nullptr);
}

}  // namespace
}  // namespace tov
