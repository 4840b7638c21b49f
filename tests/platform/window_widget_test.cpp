// Windows made of widgets: which stand in which, when they live, and what reaches them.
#include "support/widgets.h"

#include <tov310/dialog.h>
#include <tov310/hooks.h>
#include <tov310/messages.h>
#include <tov310/qt_values.h>
#include <tov310/styles.h>
#include <tov310/system.h>
#include <tov310/view.h>
#include <tov310/wnd_on.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <set>
#include <thread>

namespace tov {
namespace {

// Notes what it hears; does with it what it is told to.
struct Hook : CTovSubclassWnd {
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        heard.push_back(message);
        if (atMessage) {
            if (std::optional<LRESULT> const answer = atMessage(message, wParam, lParam)) return *answer;
        }
        LRESULT const result = CTovSubclassWnd::WindowProc(message, wParam, lParam);
        if (afterMessage) afterMessage(message);
        return result;
    }
    long Count(unsigned message) const { return std::ranges::count(heard, message); }

    std::vector<unsigned> heard;
    std::function<std::optional<LRESULT>(unsigned, WPARAM, LPARAM)> atMessage;
    std::function<void(unsigned)> afterMessage;
};

struct Plain : CWndOn<QWidget, CView> {
    using Base = CWndOn<QWidget, CView>;
    using Base::Base;
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        heard.push_back(message);
        if (atMessage) atMessage(message);
        return Base::WindowProc(message, wParam, lParam);
    }
    std::vector<unsigned> heard;
    std::function<void(unsigned)> atMessage;
};

std::vector<QWidget*> Widgets(std::vector<HWND> const& windows) {
    std::vector<QWidget*> widgets;
    for (HWND const window : windows)
        widgets.push_back(TovWidget(window));
    return widgets;
}

TEST(WindowTree, PassesThroughWhatOnlyGroups) {
    QDialog dialog;
    auto* const layout = new QVBoxLayout(&dialog);
    auto* const first = new QLineEdit;
    layout->addWidget(first);
    auto* const group = new QGroupBox("group");
    auto* const inGroup = new QLineEdit(group);
    layout->addWidget(group);
    auto* const tabs = new QTabWidget;
    auto* const page = new QWidget;
    auto* const inPage = new QSpinBox(page);
    auto* const backPage = new QWidget;
    auto* const onBackPage = new QLineEdit(backPage);
    tabs->addTab(page, "1");
    tabs->addTab(backPage, "2");
    layout->addWidget(tabs);
    auto* const area = new QScrollArea;
    auto* const inArea = new QComboBox;
    inArea->setEditable(true);
    area->setWidget(new QFrame);
    inArea->setParent(area->widget());
    layout->addWidget(area);
    auto* const list = new QListWidget;
    layout->addWidget(list);
    auto* const box = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel |
                                           QDialogButtonBox::Apply | QDialogButtonBox::Help);
    layout->addWidget(box);
    dialog.show();

    std::vector<QWidget*> const children = Widgets(TovWnd(&dialog)->GetChildren());
    for (QWidget* const control :
         std::initializer_list<QWidget*>{first, inGroup, inPage, onBackPage, inArea, list, tabs->tabBar(),
                                         box->button(QDialogButtonBox::Ok)}) {
        EXPECT_EQ(std::ranges::count(children, control), 1) << control->metaObject()->className();
        EXPECT_EQ(TovWidget(TovWnd(control)->GetParent()), &dialog);
    }
    EXPECT_EQ(children.size(), 11u) << "the scroll bars are the areas'";
    EXPECT_LT(std::ranges::find(children, first) - children.begin(),
              std::ranges::find(children, inGroup) - children.begin());
    // What stands in a control of several parts is that control's.
    std::vector<QWidget*> const parts = Widgets(TovWnd(inArea)->GetChildren());
    EXPECT_EQ(std::ranges::count(parts, inArea->lineEdit()), 1);
    EXPECT_EQ(TovWnd(list->viewport()), TovWnd(list));

    int const numbers[] = {IDOK, IDCANCEL, ID_APPLY_NOW, IDHELP};
    QDialogButtonBox::StandardButton const buttons[] = {QDialogButtonBox::Ok, QDialogButtonBox::Cancel,
                                                        QDialogButtonBox::Apply, QDialogButtonBox::Help};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(TovWnd(box->button(buttons[i]))->GetDlgCtrlID(), numbers[i]);
        EXPECT_EQ(TovWnd(&dialog)->GetDlgItem(numbers[i]), TovHandle(box->button(buttons[i])));
    }
    inGroup->setProperty(tovIdProperty, 77);
    std::set<int> ids;
    for (QWidget* const child : children)
        ids.insert(TovWnd(child)->GetDlgCtrlID());
    EXPECT_EQ(ids.size(), children.size());
    EXPECT_TRUE(ids.contains(77));

    auto const isVisible = [](QWidget* w) { return (TovWnd(w)->GetStyle() & WS_VISIBLE) != 0; };
    EXPECT_TRUE(isVisible(onBackPage)) << "the user can turn to it";
    TovWnd(onBackPage)->SetFocus();
    EXPECT_EQ(tabs->currentWidget(), backPage);
    group->hide();
    EXPECT_FALSE(isVisible(inGroup));
    // Another order of the focus is another order of the windows.
    QWidget::setTabOrder(list, first);
    std::vector<QWidget*> const reordered = Widgets(TovWnd(&dialog)->GetChildren());
    EXPECT_LT(std::ranges::find(reordered, list) - reordered.begin(),
              std::ranges::find(reordered, first) - reordered.begin());
}

TEST(WindowLife, BeginsWithTheFirstShowOrQuestionAndEndsWithTheWidget) {
    HWND handle;
    {
        Plain window;
        EXPECT_FALSE(window.GetSafeHwnd());
        auto* const child = new Plain(&window);
        EXPECT_FALSE(child->GetSafeHwnd());
        window.show();
        handle = window.GetSafeHwnd();
        EXPECT_TRUE(handle);
        EXPECT_TRUE(child->GetSafeHwnd());
        EXPECT_EQ(child->GetParent(), &window);
        EXPECT_EQ(TovWidget(handle), &window);
    }
    EXPECT_FALSE(IsWindow(handle));

    auto edit = std::make_unique<QLineEdit>();
    handle = TovHandle(edit.get());
    EXPECT_EQ(TovHandle(edit.get()), handle);
    Hook hook;
    hook.HookWindow(handle);
    edit.reset();
    EXPECT_FALSE(IsWindow(handle));
    EXPECT_FALSE(hook.IsHooked());
}

TEST(WindowLife, EndsFromTheOutsideInWhileAllAreWhole) {
    auto* const window = new Plain;
    window->setAttribute(Qt::WA_DeleteOnClose);
    auto* const child = new Plain(window);
    auto* const edit = new QLineEdit(child);
    Hook hook;
    hook.HookWindow(TovHandle(edit));
    std::vector<char> order;
    window->atMessage = [&](unsigned m) { m == WM_DESTROY ? order.push_back('w') : void(); };
    child->atMessage = [&](unsigned m) {
        if (m != WM_DESTROY) return;
        order.push_back('c');
        EXPECT_TRUE(window->GetSafeHwnd() && edit->parent() == child);
    };
    hook.atMessage = [&](unsigned m, WPARAM, LPARAM) -> std::optional<LRESULT> {
        if (m == WM_DESTROY) order.push_back('e');
        return std::nullopt;
    };
    QPointer<QWidget> const alive(window);
    window->show();
    HWND const handle = window->GetSafeHwnd();
    window->close();
    EXPECT_EQ(std::string(order.begin(), order.end()), "wce");
    EXPECT_FALSE(IsWindow(handle));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(alive.isNull());

    Plain again;
    again.show();
    again.DestroyWindow();
    EXPECT_TRUE(again.isHidden());
    again.show();
    EXPECT_TRUE(TovHandle(&again));
}

TEST(WindowLife, EndsOnceWhoeverAsksAndComesBackWhole) {
    Plain window;
    auto* const child = new Plain(&window);
    int told = 0;
    window.atMessage = [&](unsigned message) {
        if (message != WM_DESTROY) return;
        ++told;
        window.DestroyWindow();
    };
    child->atMessage = [&](unsigned message) {
        if (message == WM_DESTROY) window.DestroyWindow();
    };
    window.show();
    HWND const first = window.GetSafeHwnd();
    window.DestroyWindow();
    EXPECT_EQ(told, 1);
    EXPECT_FALSE(child->GetSafeHwnd());
    window.show();
    EXPECT_TRUE(window.GetSafeHwnd());
    EXPECT_NE(window.GetSafeHwnd(), first);
    EXPECT_EQ(window.GetChildren().size(), 1u);
    EXPECT_TRUE(child->isVisible());

    // A dialog of the toolkit's own with a view of the library in it.
    auto* const dialog = new QDialog;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    auto* const view = new Plain(dialog);
    int ended = 0;
    view->atMessage = [&](unsigned message) { ended += message == WM_DESTROY; };
    TovHandle(dialog);
    dialog->show();
    dialog->close();
    EXPECT_EQ(ended, 1);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

TEST(WindowTree, FollowsOwnersClassesAndParents) {
    struct Canvas : QWidget {
        using QWidget::QWidget;
    };
    QWidget owner;
    QDialog dialog(&owner);
    auto* const canvas = new Canvas(&dialog);
    auto* const edit = new QLineEdit(canvas);
    dialog.show();
    EXPECT_NE(TovWnd(&dialog)->GetStyle() & WS_VISIBLE, 0u) << "whatever its owner is";
    EXPECT_EQ(TovWidget(TovWnd(edit)->GetParent()), canvas)
        << "a class of a host is a window, with signals or not";

    QDialog other;
    auto* const there = new QLineEdit(&other);
    auto* const here = new QLineEdit(&dialog);
    EXPECT_NE(TovWnd(there)->GetDlgCtrlID(), 0);
    EXPECT_NE(TovWnd(here)->GetDlgCtrlID(), 0);
    here->setParent(&other);
    EXPECT_NE(TovWnd(there)->GetDlgCtrlID(), TovWnd(here)->GetDlgCtrlID());

    QToolBox box;
    auto* const back = new QLineEdit;
    box.addItem(new QLabel("front"), "1");
    box.addItem(back, "2");
    box.show();
    EXPECT_NE(TovWnd(back)->GetStyle() & WS_VISIBLE, 0u);
    TovWnd(back)->SetFocus();
    EXPECT_EQ(box.currentIndex(), 1);

    CWndOn<QMainWindow, CFrameWnd> frame;
    Plain view;
    frame.SetActiveView(&view);
    EXPECT_EQ(frame.GetActiveView(), &view) << "born by that";
}

// Own and foreign widgets alike.
template <class Edit>
void HearsWhatHappens() {
    Edit edit;
    edit.resize(200, 30);
    Hook hook;
    hook.HookWindow(TovHandle(&edit));
    edit.show();
    edit.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&edit));
    edit.setFocus();
    EXPECT_EQ(hook.Count(WM_SETFOCUS), 1);
    QTest::keyClicks(&edit, "a");
    EXPECT_EQ(edit.text(), "a");

    // Swallowed keys are not typed, and do not go on to the widgets around.
    hook.atMessage = [](unsigned message, WPARAM wParam, LPARAM) -> std::optional<LRESULT> {
        if (message == WM_KEYDOWN && wParam == 'B') return 0;
        return std::nullopt;
    };
    QTest::keyClicks(&edit, "bc");
    EXPECT_EQ(edit.text(), "ac");

    CPoint pressed;
    hook.atMessage = [&](unsigned message, WPARAM, LPARAM lParam) -> std::optional<LRESULT> {
        if (message == WM_LBUTTONDOWN) pressed = TovPointOf(lParam);
        return std::nullopt;
    };
    QTest::mouseClick(edit.windowHandle(), Qt::LeftButton, {}, {5, 7});
    EXPECT_EQ(pressed, CPoint(5, 7));
    EXPECT_EQ(edit.cursorPosition(), 0) << "the press went on to the widget";

    // A window that is not to close stays.
    hook.atMessage = [](unsigned message, WPARAM, LPARAM) -> std::optional<LRESULT> {
        if (message == WM_CLOSE) return 0;
        return std::nullopt;
    };
    edit.close();
    EXPECT_TRUE(edit.isVisible());
    hook.atMessage = nullptr;
    edit.setEnabled(false);
    EXPECT_EQ(hook.Count(WM_ENABLE), 1);
    edit.close();
    EXPECT_FALSE(edit.isVisible());
}

TEST(WindowEvents, OfOwnWidgets) {
    HearsWhatHappens<CWndOn<QLineEdit, CWnd>>();
}
TEST(WindowEvents, OfForeignWidgets) {
    HearsWhatHappens<QLineEdit>();
}

TEST(WindowEvents, OfAViewportAreTheAreas) {
    auto const expect = [](QListWidget& list) {
        list.addItems({"one", "two", "three"});
        list.resize(200, 100);
        Hook hook;
        hook.HookWindow(TovHandle(&list));
        list.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&list));
        EXPECT_GE(hook.Count(WM_PAINT), 1);
        QPoint const place = list.visualItemRect(list.item(1)).center();
        QTest::mouseClick(list.windowHandle(), Qt::LeftButton, {}, list.viewport()->mapTo(&list, place));
        EXPECT_EQ(hook.Count(WM_LBUTTONDOWN), 1);
        EXPECT_EQ(list.currentRow(), 1);
        hook.atMessage = [](unsigned message, WPARAM, LPARAM) -> std::optional<LRESULT> {
            if (message == WM_LBUTTONDOWN) return 0;
            return std::nullopt;
        };
        QTest::mouseClick(list.windowHandle(), Qt::LeftButton, {},
                          list.viewport()->mapTo(&list, list.visualItemRect(list.item(2)).center()));
        EXPECT_EQ(list.currentRow(), 1) << "swallowed";
    };
    QListWidget foreign;
    expect(foreign);
    CWndOn<QListWidget, CWnd> own;
    expect(own);
}

TEST(WindowEvents, OfAnotherViewportAndOfTheKeyboard) {
    QListWidget list;
    Hook hook;
    hook.HookWindow(TovHandle(&list));
    list.setViewport(new QWidget);
    list.resize(200, 100);
    list.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&list));
    hook.heard.clear();
    QTest::mouseClick(list.windowHandle(), Qt::LeftButton, {}, {50, 50});
    EXPECT_EQ(hook.Count(WM_LBUTTONDOWN), 1);
    CPoint place;
    hook.atMessage = [&](unsigned message, WPARAM, LPARAM lParam) -> std::optional<LRESULT> {
        if (message == WM_CONTEXTMENU) place = TovPointOf(lParam);
        return std::nullopt;
    };
    QContextMenuEvent menu(QContextMenuEvent::Keyboard, {5, 5}, list.mapToGlobal(QPoint(5, 5)));
    QCoreApplication::sendEvent(&list, &menu);
    EXPECT_EQ(place, CPoint(-1, -1));
}

TEST(WindowEvents, OfDisabledControlsAreTheirParentsOnce) {
    Plain form;
    form.resize(200, 100);
    QPushButton button(&form);
    QLineEdit edit(&form);
    QSpinBox spin(&form);
    int y = 0;
    for (QWidget* const w : std::initializer_list<QWidget*>{&button, &edit, &spin}) {
        w->setGeometry(0, y, 100, 25);
        w->setEnabled(false);
        y += 30;
    }
    form.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&form));
    for (QWidget* const w : std::initializer_list<QWidget*>{&button, &edit, &spin}) {
        form.heard.clear();
        QTest::mouseClick(form.windowHandle(), Qt::LeftButton, {}, w->geometry().center());
        EXPECT_EQ(std::ranges::count(form.heard, WM_LBUTTONDOWN), 1) << w->metaObject()->className();
    }
}

TEST(WindowEvents, RunTheHandlersBeforeCodeThatComesAfter) {
    QLineEdit edit;
    Hook hook;
    hook.HookWindow(TovHandle(&edit));
    QString seen;
    hook.afterMessage = [&](unsigned message) {
        if (message == WM_KEYDOWN) seen = edit.text();
    };
    QTest::keyClicks(&edit, "x");
    EXPECT_EQ(seen, "") << "left to the toolkit, which comes later";
    hook.SetRunsAfter(1);
    QTest::keyClicks(&edit, "y");
    EXPECT_EQ(seen, "xy");
    EXPECT_EQ(edit.text(), "xy") << "once";
}

TEST(WindowEvents, SurviveTheDeathOfTheirWindow) {
    for (bool const runsAfter : {false, true}) {
        auto* edit = new QLineEdit;
        Hook hook;
        hook.HookWindow(TovHandle(edit));
        hook.SetRunsAfter(runsAfter);
        hook.atMessage = [&](unsigned message, WPARAM, LPARAM) -> std::optional<LRESULT> {
            if (message == WM_KEYDOWN) delete std::exchange(edit, nullptr);
            return std::nullopt;
        };
        QKeyEvent press(QEvent::KeyPress, Qt::Key_A, {}, "a");
        QCoreApplication::sendEvent(edit, &press);
        EXPECT_EQ(edit, nullptr);
    }
    auto* own = new Plain;
    TovHandle(own);
    own->atMessage = [&](unsigned message) {
        if (message == WM_KEYDOWN) own->DestroyWindow();
    };
    QKeyEvent press(QEvent::KeyPress, Qt::Key_A, {}, "a");
    QCoreApplication::sendEvent(own, &press);
    EXPECT_FALSE(own->GetSafeHwnd());
    delete own;
}

TEST(WindowPosts, ComeInTheMainLoopAndDropTheDead) {
    Plain window;
    auto child = std::make_unique<Plain>(&window);
    HWND const handle = TovHandle(&window);
    HWND const childHandle = TovHandle(child.get());
    std::vector<std::jthread> threads;
    for (int t = 0; t < 8; ++t) {
        threads.emplace_back([=] {
            for (int i = 0; i < 2000; ++i) {
                TovPostMessage(childHandle, WM_TOV_PROPERTIES);
                TovPostMessage(handle, WM_TOV_PROPERTIES);
            }
        });
    }
    auto const count = [&window] { return std::ranges::count(window.heard, WM_TOV_PROPERTIES); };
    EXPECT_TRUE(QTest::qWaitFor([&] { return count() > 1000; }, 10000));
    child.reset();
    EXPECT_TRUE(QTest::qWaitFor([&] { return count() == 16000; }, 10000));
    // A window that posts to itself does not hold up the rest.
    int timersRun = 0;
    QTimer::singleShot(0, [&] { ++timersRun; });
    window.atMessage = [&](unsigned message) {
        if (message == WM_TOV_PROPERTIES && timersRun == 0) TovPostMessage(handle, message);
    };
    TovPostMessage(handle, WM_TOV_PROPERTIES);
    EXPECT_TRUE(QTest::qWaitFor([&] { return timersRun == 1; }, 5000));
}

TEST(WindowTimers, RunUntilTheyAreKilledOrTheWindowDies) {
    auto window = std::make_unique<Plain>();
    EXPECT_EQ(window->SetTimer(7, 1), 0) << "not born";
    TovHandle(window.get());
    EXPECT_EQ(window->SetTimer(7, 1), 1);
    EXPECT_EQ(window->SetTimer(7, 2), 1);
    auto const count = [&] { return std::ranges::count(window->heard, WM_TIMER); };
    EXPECT_TRUE(QTest::qWaitFor([&] { return count() >= 3; }, 5000));
    EXPECT_EQ(window->KillTimer(7), 1);
    EXPECT_EQ(window->KillTimer(7), 0);
    auto const before = count();
    QTest::qWait(20);
    EXPECT_EQ(count(), before);
    window->SetTimer(8, 1);
    window.reset();
    QTest::qWait(10);
}

TEST(WindowState, IsThatOfTheWidget) {
    QDialog dialog;
    auto* const group = new QGroupBox(&dialog);
    group->setGeometry(10, 20, 300, 200);
    auto* const edit = new QLineEdit(group);
    CWnd& window = *TovWnd(edit);
    window.MoveWindow({40, 50, 140, 80});
    EXPECT_EQ(edit->geometry(), QRect(30, 30, 100, 30));
    EXPECT_EQ(window.GetClientRect(), (CRect{0, 0, 100, 30}));
    window.SetWindowText("度 gon");
    EXPECT_EQ(edit->text(), "度 gon");
    EXPECT_EQ(window.GetWindowText(), "度 gon");
    EXPECT_EQ(window.ScreenToClient(window.ClientToScreen({3, 4})), CPoint(3, 4));

    unsigned long const bits[] = {WS_DISABLED, WS_VISIBLE, WS_TABSTOP, ES_READONLY, ES_PASSWORD, ES_RIGHT};
    for (unsigned long const bit : bits) {
        unsigned long const before = window.GetStyle();
        EXPECT_EQ(window.ModifyStyle(before & bit, ~before & bit), 1) << bit;
        EXPECT_EQ(window.GetStyle(), before ^ bit) << bit;
        window.ModifyStyle(~before & bit, before & bit);
        EXPECT_EQ(window.GetStyle(), before) << bit;
    }
    EXPECT_EQ(window.GetClassName(), "Edit");
    QFont font = edit->font();
    font.setPointSize(31);
    window.SetFont(TovFont(font));
    EXPECT_EQ(edit->font().pointSize(), 31);
    EXPECT_EQ(window.GetFont(), TovFont(edit->font()));
}

TEST(WindowCursor, IsTheOneThatWasAskedForLastByWhomever) {
    Plain window;
    std::thread([] { TovGetSystem()->SetCursor(IDC_WAIT); }).join();
    TovGetSystem()->RefreshCursor();
    QCoreApplication::processEvents();
    EXPECT_EQ(QApplication::overrideCursor(), nullptr) << "what another thread asked for before is over";
    std::thread([] { TovGetSystem()->RefreshCursor(); }).join();
    TovGetSystem()->SetCursor(IDC_WAIT);
    QCoreApplication::processEvents();
    ASSERT_NE(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    TovGetSystem()->RefreshCursor();
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

}  // namespace
}  // namespace tov
