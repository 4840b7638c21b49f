// Frames, tool bars, keys and the gripper, as a user meets them.
#include "support/files.h"
#include "support/temporary_folder.h"
#include "support/widgets.h"

#include <tov310/accelerator_keys.h>
#include <tov310/cmd_ui.h>
#include <tov310/dialog.h>
#include <tov310/messages.h>
#include <tov310/size_gripper.h>
#include <tov310/tool_bar.h>
#include <tov310/tov_frame.h>

#include <gtest/gtest.h>

#include <filesystem>

namespace tov {
namespace {

// A target that notes its commands. Those from 1 to 9 it does, while it is on.
template <class Window>
struct Noting : Window {
    using Window::Window;
    std::vector<unsigned> done;
    unsigned first = 1, last = 9;
    bool isOn = true;

    int OnCmdMsg(unsigned id, int code, void* extra, CTovCommandInfo* info) override {
        if (id < first || id > last) return Window::OnCmdMsg(id, code, extra, info);
        if (code == CN_UPDATE_COMMAND_UI) {
            static_cast<CCmdUI*>(extra)->Enable(isOn);
            static_cast<CCmdUI*>(extra)->SetCheck(isOn);
        } else if (info == nullptr) {
            done.push_back(id);
        }
        return 1;
    }
};
using View = Noting<CWndOn<QTextEdit, CView>>;
using Ids = std::vector<unsigned>;

struct Frame : Noting<CTovFrameWnd> {
    using Noting::Noting;
    void GetMessageString(unsigned id, CString& text) const override {
        text = std::to_string(id).insert(0, "words ");
    }
    void GetToolTipString(unsigned id, CString& text) const override {
        text = std::to_string(id).insert(0, "name ");
    }
};

std::unique_ptr<CMenu> MenuOf(std::initializer_list<unsigned> commands) {
    auto menu = std::make_unique<CMenu>(), popup = std::make_unique<CMenu>();
    for (unsigned const command : commands)
        popup->AppendMenu(MF_STRING, command, std::to_string(command).insert(0, 1, '&').c_str());
    menu->AppendMenu(MF_POPUP, std::move(popup), "&File");
    menu->AppendMenu(MF_STRING, 3, "&Now");
    return menu;
}

// Lets the program run until it has nothing to do.
void Idle() {
    QEventLoop loop;
    QTimer::singleShot(20, &loop, &QEventLoop::quit);
    loop.exec();
}

TEST(Frames, MenusAndToolBarsCommandTheViewThatHasTheFocus) {
    Frame frame;
    View left, right;
    QSplitter& middle = *new QSplitter;
    QLineEdit edit;
    middle.addWidget(&left), middle.addWidget(&right), middle.addWidget(&edit);
    frame.setCentralWidget(&middle);
    left.last = 2;
    right.first = 2, right.last = 2;
    frame.first = 3, frame.last = 3;
    frame.SetMenu(MenuOf({1, 2, 4}));
    CTovToolBar bar;
    unsigned const buttons[] = {1, 0, 3, 4};
    bar.SetButtons(buttons);
    frame.addToolBar(&bar);
    frame.statusBar();
    frame.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&frame));
    left.setFocus();
    EXPECT_EQ(frame.GetActiveView(), &left);

    auto const pressInBar = [&](int position) {
        QMenuBar& menus = *frame.menuBar();
        QTest::mouseClick(&menus, Qt::LeftButton, {},
                          menus.actionGeometry(menus.actions().at(position)).center());
    };
    auto const choose = [&](Qt::Key key) {
        pressInBar(0);
        QWidget* const open = QApplication::activePopupWidget();
        ASSERT_NE(open, nullptr);
        QTest::keyClick(open, key);
        if (QApplication::activePopupWidget() != nullptr) QTest::keyClick(open, Qt::Key_Escape);  // disabled
        QCoreApplication::processEvents();
    };
    choose(Qt::Key_1);
    choose(Qt::Key_4);  // nobody does it
    EXPECT_EQ(left.done, Ids{1});
    right.setFocus();
    choose(Qt::Key_1);
    choose(Qt::Key_2);
    edit.setFocus();  // no view, so the last one stays
    choose(Qt::Key_2);
    EXPECT_EQ(left.done, Ids{1});
    EXPECT_EQ(right.done, (Ids{2, 2}));

    QAction* const one = bar.ButtonOf(1);
    QAction* const three = bar.ButtonOf(3);
    ASSERT_TRUE(one != nullptr && three != nullptr && bar.ButtonOf(0) == nullptr &&
                bar.ButtonOf(7) == nullptr);
    EXPECT_EQ(bar.actions().size(), 4);
    EXPECT_FALSE(one->isEnabled()) << "the view on the right does not know it";
    EXPECT_TRUE(three->isEnabled() && three->isChecked());
    EXPECT_FALSE(bar.ButtonOf(4)->isEnabled());
    EXPECT_EQ(three->toolTip(), "name 3");
    left.setFocus();
    Idle();
    EXPECT_TRUE(one->isEnabled());
    frame.isOn = false;
    Idle();
    EXPECT_FALSE(three->isEnabled() || three->isChecked());
    frame.isOn = true;
    Idle();
    QWidget* const button = bar.widgetForAction(three);
    QTest::mouseMove(button);
    Idle();
    EXPECT_EQ(frame.statusBar()->currentMessage(), "words 3");
    QTest::mouseClick(button, Qt::LeftButton);
    QCoreApplication::processEvents();
    pressInBar(1);
    QCoreApplication::processEvents();
    EXPECT_EQ(frame.done, (Ids{3, 3}));

    // What the command does to the frame finds Qt through with the click.
    frame.SetMenu(nullptr);
    EXPECT_TRUE(frame.menuBar()->actions().isEmpty());
    EXPECT_EQ(frame.LoadMenu(nullptr, 1), 0);
    EXPECT_EQ(frame.LoadMenu(nullptr, 26269), 1);
    bar.setParent(nullptr), left.setParent(nullptr), right.setParent(nullptr), edit.setParent(nullptr);
}

// The resource has pictures for its buttons, or none, and a bar takes pictures for the buttons that lack one.
TEST(Frames, ToolBarsComeFromResources) {
    test::TemporaryFolder const folder;
    test::PutFile(folder.File("strings.json"), "{}");
    for (char const* const name : {"toolbars", "bitmaps"})
        std::filesystem::create_directory(folder.path() / name);
    test::PutFile(folder.File("toolbars/7.json"), R"({"width": 4, "height": 4, "items": [1, 0, 2]})");
    test::PutFile(folder.File("toolbars/8.json"), R"({"width": 4, "height": 4, "items": [3, 1]})");
    QImage strip(8, 4, QImage::Format_ARGB32);
    strip.fill(Qt::blue);
    QPainter(&strip).fillRect(0, 0, 4, 4, Qt::red);
    ASSERT_TRUE(strip.save(QString::fromStdString(folder.File("bitmaps/7.png"))));
    HINSTANCE const module = TovLoadResourceModule(folder.path().c_str());
    auto const color = [](QAction const* button) {
        return button->icon().isNull() ? QColor() : button->icon().pixmap(4, 4).toImage().pixelColor(2, 2);
    };
    CTovToolBar bar;
    EXPECT_EQ(bar.LoadToolBar(module, 9), 0);
    EXPECT_EQ(bar.LoadToolBar(module, 8), 1);
    EXPECT_EQ(bar.actions().size(), 2);
    EXPECT_EQ(bar.LoadBitmap(module, 8), 0);
    EXPECT_EQ(bar.LoadBitmap(module, 7), 1);
    EXPECT_EQ(color(bar.ButtonOf(1)), QColor(Qt::red));
    EXPECT_EQ(color(bar.ButtonOf(3)), QColor()) << "the pictures know no such command";
    EXPECT_EQ(bar.AddBitmap(2, module, 9) + bar.AddBitmap(4000, module, 7), -2);
    EXPECT_EQ(bar.AddBitmap(2, module, 7), 1);
    EXPECT_EQ(color(bar.ButtonOf(3)), QColor(Qt::red));
    EXPECT_EQ(bar.LoadToolBar(module, 7), 1);
    EXPECT_TRUE(bar.actions().at(1)->isSeparator());
    EXPECT_EQ(color(bar.ButtonOf(2)), QColor(Qt::blue));
}

TEST(Frames, KeysAreCommandsUnlessAnEditUsesThem) {
    Noting<CTovFrameWnd> frame;
    QLineEdit edit;
    frame.setCentralWidget(&edit);
    HACCEL keys;
    EXPECT_EQ(CTovAcceleratorHelper::AddTovAccelerators(keys), 1);
    for (ACCEL const& key :
         {ACCEL{ACCEL::eControl, 'O', 1}, ACCEL{0, 0x74, 2}, ACCEL{ACCEL::eControl, 'C', 3},
          ACCEL{ACCEL::eShift | ACCEL::eAlt, 0x25, 4}, ACCEL{ACCEL::eControl, 0x61, 5}})
        keys.Add(key);
    TovSetAccelerators(&frame, keys);
    frame.first = 1, frame.last = 0xFFFF;
    frame.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&frame));
    edit.setFocus();
    auto const press = [&] {
        frame.done.clear();
        QTest::keyClick(&edit, Qt::Key_O, Qt::ControlModifier);
        QTest::keyClick(&edit, Qt::Key_O, Qt::ControlModifier | Qt::ShiftModifier);  // another key
        QTest::keyClick(&edit, Qt::Key_F5);
        QTest::keyClick(&edit, Qt::Key_Return, Qt::AltModifier);
        QTest::keyClick(&edit, Qt::Key_Enter, Qt::AltModifier | Qt::KeypadModifier);
        QTest::keyClick(&edit, Qt::Key_C, Qt::ControlModifier);  // the edit's
        QTest::keyClick(&edit, Qt::Key_Left, Qt::AltModifier | Qt::ShiftModifier);
        QTest::keyClick(&edit, Qt::Key_1, Qt::ControlModifier | Qt::KeypadModifier);
    };
    press();
    EXPECT_EQ(frame.done, (Ids{1, 2, WM_TOV_PROPERTIES, WM_TOV_PROPERTIES, 4, 5}));
    frame.isOn = false;
    press();
    EXPECT_EQ(frame.done, Ids{});
    frame.isOn = true;
    TovSetAccelerators(&frame, {});
    press();
    EXPECT_EQ(frame.done, Ids{});
    edit.setParent(nullptr);
}

TEST(Frames, FramesStandInAFrame) {
    Noting<CTovMDIFrameWnd> outer;
    outer.first = 3, outer.last = 3;
    std::vector<CTovMDIChildWnd*> inner;
    std::vector<View*> views;
    for (std::size_t i = 0; i < 2; ++i) {
        inner.push_back(new CTovMDIChildWnd);
        views.push_back(new View);
        inner[i]->setWidget(views[i]);
        outer.MdiArea()->addSubWindow(inner[i]);
        inner[i]->SetWindowText(i == 0 ? "a" : "b");
    }
    outer.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&outer));
    for (std::size_t const i : {0U, 1U, 0U}) {
        inner[i]->ActivateFrame();
        views[i]->setFocus();
        EXPECT_EQ(outer.MDIGetActive(), inner[i]);
        EXPECT_EQ(outer.GetActiveFrame(), inner[i]);
        EXPECT_EQ(inner[i]->GetActiveView(), views[i]);
        EXPECT_EQ(inner[i]->GetParentFrame(), static_cast<CFrameWnd*>(&outer));
        for (unsigned const id : {1U, 3U})
            TovSendMessage(outer.GetSafeHwnd(), WM_COMMAND, TovCommandParam(id, 0));
    }
    EXPECT_EQ(inner[1]->GetWindowText(), "b");
    EXPECT_EQ(views[0]->done, (Ids{1, 1}));
    EXPECT_EQ(views[1]->done, Ids{1});
    outer.MDIActivate(inner[1]);
    EXPECT_EQ(outer.MdiArea()->activeSubWindow(), inner[1]);
    delete inner[1];
    delete inner[0];
    EXPECT_EQ(outer.MDIGetActive(), nullptr);
    TovSendMessage(outer.GetSafeHwnd(), WM_COMMAND, TovCommandParam(3, 0));
    EXPECT_EQ(outer.done, (Ids{3, 3, 3, 3}));
    // It ends on the screen, and frames with it.
    for (int i = 0; i < 2; ++i)
        outer.MdiArea()->addSubWindow(new CTovMDIChildWnd)->show();
}

TEST(Frames, TheGripperKeepsToItsCorner) {
    QWidget form, other;
    auto* const gripper = new CTovSizeGripper(&form);
    for (QWidget* const parent : {&form, &other}) {
        gripper->setParent(parent);
        parent->show();
        for (QSize const size : {QSize(300, 200), QSize(120, 340)}) {
            parent->resize(size);
            EXPECT_EQ(gripper->geometry().bottomRight(), parent->rect().bottomRight());
        }
    }
    form.resize(200, 200);
    EXPECT_EQ(gripper->geometry().bottomRight(), other.rect().bottomRight());
}

}  // namespace
}  // namespace tov
