// The focus stays with a control that is wrong, whatever the user does, and nothing of the control is lost.
#include "support/widgets.h"

#include <tov310/hooks.h>
#include <tov310/input_control.h>
#include <tov310/input_control_container.h>
#include <tov310/messages.h>
#include <tov310/qt_values.h>
#include <tov310/wnd_on.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>

namespace tov {
namespace {

using test::Activate;
using test::ClickOn;
using test::Wheel;

// Wrong while its text begins with "bad".
struct Field : CWndOn<QLineEdit, CWnd>, CTovInputControl {
    explicit Field(QWidget* parent = nullptr) : CWndOn(parent) {}
    using CTovInputControl::operator=;
    CWnd* GetWnd() override { return this; }
    void PreSubclassWindow() override { HookControl(); }
    int IsEmpty() override { return text().isEmpty(); }
    int SetReadOnlyMode(int on) override { return CTovInputControl::SetReadOnlyMode(on); }
    eState OnValidate(CString* message) override {
        if (!text().startsWith("bad")) return eStateValid;
        if (message != nullptr) *message = "wrong: " + TovText(text());
        return eStateInvalid;
    }
};

// A dialog of a host that knows Qt only.
struct Form : QDialog {
    struct Container : CTovInputControlContainer {
        using CTovInputControlContainer::CTovInputControlContainer;
        void Guard() {
            HookContainer();
            HookAllDlgCtrls(nullptr);
        }
        void OnShowValidationText(HWND window, unsigned, unsigned long, CString* message) override {
            shown.push_back(*message);
            at = TovWidget(window);
        }
        void OnHideValidationText() override { ++hidden; }
        std::vector<CString> shown;
        QWidget* at = nullptr;
        int hidden = 0;
    };

    Form() {
        auto* const layout = new QVBoxLayout(this);
        auto* const label = new QLabel("&Second");
        label->setBuddy(&second);
        tool.setFocusPolicy(Qt::NoFocus);
        spin.setFocusPolicy(Qt::WheelFocus);
        combo.addItems({"one", "two"});
        list.addItems({"one", "two", "three"});
        calculate.setAutoDefault(true);
        for (QWidget* const w : std::initializer_list<QWidget*>{&first, label, &second, &tool, &spin, &combo,
                                                                &list, &check, &calculate, &box})
            layout->addWidget(w);
        connect(&box, &QDialogButtonBox::accepted, this, &QDialog::accept);
        connect(&box, &QDialogButtonBox::rejected, this, &QDialog::reject);
        connect(&tool, &QToolButton::clicked, this, [this] { ++tooled; });
        connect(&calculate, &QPushButton::clicked, this, [this] { ++calculated; });
        connect(box.button(QDialogButtonBox::Help), &QPushButton::clicked, this, [this] { ++helped; });
        connect(&first, &QLineEdit::editingFinished, this, [this] { ++finished; });
        box.button(QDialogButtonBox::Ok)->setDefault(true);
        EXPECT_TRUE(Activate(*this));
        first.setFocus();
        container.Guard();
    }
    void accept() override {
        if (container.ValidateCommand(IDOK) != 0) QDialog::accept();
    }

    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(windowHandle(), key, modifiers);
    }

    Field first, second;
    QToolButton tool;
    QSpinBox spin;
    QComboBox combo;
    QListWidget list;
    QCheckBox check{"Chec&k"};
    QPushButton calculate{"C&alculate"};
    QDialogButtonBox box{QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Help};
    int tooled = 0, calculated = 0, helped = 0, finished = 0;
    Container container{TovWnd(this)};
};

struct FocusGuardOnWidgets : testing::Test {
    void BeWrong() {
        form.first.setText("bad one");
        form.first.setFocus();
        form.first.setSelection(4, 3);
        form.finished = 0;
        form.container.shown.clear();
    }
    // Nothing has moved and nothing is lost.
    void ExpectRefused(char const* what, std::function<void()> const& act) {
        SCOPED_TRACE(what);
        BeWrong();
        int const value = form.spin.value();
        act();
        EXPECT_EQ(QApplication::focusWidget(), &form.first);
        EXPECT_EQ(form.first.text(), "bad one");
        EXPECT_EQ(form.first.selectedText(), "one");
        EXPECT_EQ(form.finished, 0);
        EXPECT_EQ(form.container.shown, std::vector<CString>{"wrong: bad one"});
        EXPECT_EQ(form.container.at, &form.first);
        EXPECT_TRUE(form.isVisible());
        EXPECT_EQ(form.tooled + form.calculated + form.helped, 0);
        EXPECT_EQ(form.spin.value(), value);
        EXPECT_FALSE(form.check.isChecked());
        EXPECT_FALSE(form.list.currentItem() != nullptr && form.list.currentItem()->isSelected());
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
        EXPECT_EQ(form.container.FocusIsBlocked(), 1);
    }
    Form form;
};

TEST_F(FocusGuardOnWidgets, RefusesEveryWayOut) {
    ExpectRefused("Tab", [&] { form.Key(Qt::Key_Tab); });
    ExpectRefused("Shift+Tab", [&] { form.Key(Qt::Key_Tab, Qt::ShiftModifier); });
    ExpectRefused("click on another field", [&] { ClickOn(form.second); });
    ExpectRefused("click on a control without focus", [&] { ClickOn(form.tool); });
    ExpectRefused("click in a list", [&] { ClickOn(*form.list.viewport(), {20, 5}); });
    ExpectRefused("click on a check box", [&] { ClickOn(form.check, {8, 8}); });
    ExpectRefused("click on a combo box", [&] { ClickOn(form.combo); });
    ExpectRefused("click on a button", [&] { ClickOn(form.calculate); });
    ExpectRefused("double click", [&] {
        QTest::mouseDClick(form.windowHandle(), Qt::LeftButton, {}, form.second.mapTo(&form, QPoint(5, 5)));
        form.container.shown.resize(1);  // once for each press of the two
    });
    ExpectRefused("wheel on a spin box", [&] { Wheel(form.spin, 120); });
    ExpectRefused("mnemonic of a label", [&] { form.Key(Qt::Key_S, Qt::AltModifier); });
    ExpectRefused("mnemonic of a button", [&] { form.Key(Qt::Key_A, Qt::AltModifier); });
    ExpectRefused("mnemonic of a check box", [&] { form.Key(Qt::Key_K, Qt::AltModifier); });
    ExpectRefused("code", [&] { form.second.setFocus(); });
    ExpectRefused("Enter", [&] {
        form.Key(Qt::Key_Return);
        form.finished = 0;  // whoever presses it has finished
    });
    ExpectRefused("OK", [&] { ClickOn(*form.box.button(QDialogButtonBox::Ok)); });
}

TEST_F(FocusGuardOnWidgets, LetsHelpCancelAndClosingThrough) {
    BeWrong();
    ClickOn(*form.box.button(QDialogButtonBox::Help));
    EXPECT_EQ(form.helped, 1);
    EXPECT_EQ(QApplication::focusWidget(), &form.first);
    EXPECT_EQ(form.first.selectedText(), "one");
    ClickOn(*form.box.button(QDialogButtonBox::Cancel));
    EXPECT_FALSE(form.isVisible());

    form.show();
    BeWrong();
    form.Key(Qt::Key_Escape);
    EXPECT_FALSE(form.isVisible());

    form.show();
    BeWrong();
    form.close();
    EXPECT_FALSE(form.isVisible());
}

TEST_F(FocusGuardOnWidgets, FollowsTheFocusOfValidControls) {
    form.first.setText("fine");
    form.Key(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), &form.second);
    EXPECT_EQ(form.container.GetWndTopmostFocus(), TovHandle(&form.second));
    EXPECT_EQ(form.finished, 1);
    ClickOn(form.tool);
    EXPECT_EQ(form.tooled, 1);
    ClickOn(form.check, {8, 8});
    EXPECT_TRUE(form.check.isChecked());
    Wheel(form.spin, 120);
    EXPECT_EQ(form.container.FocusIsBlocked(), 0);
    ClickOn(*form.list.viewport(), {20, 5});
    EXPECT_TRUE(form.list.item(0)->isSelected());
    ClickOn(form.calculate);
    EXPECT_EQ(form.calculated, 1);
    EXPECT_TRUE(form.container.shown.empty());
    ClickOn(form.combo);
    EXPECT_NE(QApplication::activePopupWidget(), nullptr);
    QTest::keyClick(form.combo.view(), Qt::Key_Down);
    QTest::keyClick(form.combo.view(), Qt::Key_Return);
    EXPECT_EQ(form.combo.currentIndex(), 1);
    form.first.setFocus();
    form.Key(Qt::Key_Return);
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(form.result(), QDialog::Accepted) << "the extra button is not the default one";
}

TEST_F(FocusGuardOnWidgets, FreesTheUserFromWhatCannotTakeTheFocusBack) {
    for (auto const& take : std::initializer_list<std::function<void()>>{
             [&] { form.first.hide(); }, [&] { form.first.setEnabled(false); },
             [&] { form.first.SetReadOnlyMode(1); }, [&] { form.first.setText("good"); }}) {
        form.first.show();
        form.first.setEnabled(true);
        form.first.SetReadOnlyMode(0);
        BeWrong();
        take();
        ClickOn(form.second);
        EXPECT_EQ(QApplication::focusWidget(), &form.second);
        EXPECT_EQ(form.container.FocusIsBlocked(), 0);
    }
}

TEST_F(FocusGuardOnWidgets, HidesTheTextAsSoonAsTheUserTypes) {
    BeWrong();
    form.Key(Qt::Key_Tab);
    form.container.hidden = 0;
    QTest::keyClicks(&form.first, "x");
    EXPECT_EQ(form.container.hidden, 1);
    EXPECT_EQ(form.first.text(), "bad x");
}

TEST_F(FocusGuardOnWidgets, LeavesOtherWindowsAlone) {
    BeWrong();
    QDialog other;
    QLineEdit elsewhere(&other);
    ASSERT_TRUE(Activate(other));
    elsewhere.setFocus();
    EXPECT_EQ(QApplication::focusWidget(), &elsewhere);
    EXPECT_TRUE(form.container.shown.empty());
    ASSERT_TRUE(Activate(form));
    EXPECT_EQ(QApplication::focusWidget(), &form.first);
    ExpectRefused("Tab", [&] { form.Key(Qt::Key_Tab); });
}

TEST_F(FocusGuardOnWidgets, GivesTheFocusBackToWhoIsWrong) {
    BeWrong();
    form.box.button(QDialogButtonBox::Cancel)->setFocus();
    EXPECT_TRUE(form.box.button(QDialogButtonBox::Cancel)->hasFocus());
    form.second.setFocus();
    EXPECT_EQ(QApplication::focusWidget(), &form.first);
}

TEST_F(FocusGuardOnWidgets, AnswersInALoopOfItsOwn) {
    // Whoever shows the text may run a loop, in which another form is guarded as well.
    struct Talking : Form::Container {
        using Container::Container;
        void OnShowValidationText(HWND window, unsigned id, unsigned long data, CString* message) override {
            Container::OnShowValidationText(window, id, data, message);
            if (atShow) std::exchange(atShow, nullptr)();
        }
        std::function<void()> atShow;
    };
    QDialog outer;
    Field wrong(&outer), other(&outer);
    QVBoxLayout layout(&outer);
    layout.addWidget(&wrong);
    layout.addWidget(&other);
    Talking container(TovWnd(&outer));
    ASSERT_TRUE(Activate(outer));
    wrong.setFocus();
    container.Guard();
    wrong.setText("bad outer");
    container.atShow = [&] {
        ASSERT_TRUE(Activate(form));
        ExpectRefused("Tab within the loop", [&] { form.second.setFocus(); });
        ASSERT_TRUE(Activate(outer));
    };
    other.setFocus();
    EXPECT_EQ(container.shown.size(), 1u);
    EXPECT_EQ(outer.focusWidget(), &wrong);
}

TEST_F(FocusGuardOnWidgets, TakesANumberOfHelpForNothingElse) {
    form.second.setProperty(tovIdProperty, IDHELP);
    ExpectRefused("click on a field with the number of help", [&] { ClickOn(form.second); });
    form.first.setText("fine");
    ClickOn(form.second);
    EXPECT_EQ(QApplication::focusWidget(), &form.second);
}

TEST_F(FocusGuardOnWidgets, SurvivesTheEndOfWhatItGuards) {
    struct Ending : Form::Container {
        using Container::Container;
        void OnPrepareShowValidationText(HWND, unsigned, unsigned long, CString*) override { ended.reset(); }
        std::unique_ptr<Ending>& ended;
        Ending(CWnd* window, std::unique_ptr<Ending>& owner) : Container(window), ended(owner) {}
    };
    QDialog dialog;
    Field field(&dialog), other(&dialog);
    dialog.show();
    std::unique_ptr<Ending> container;
    container = std::make_unique<Ending>(TovWnd(&dialog), container);
    ASSERT_TRUE(Activate(dialog));
    field.setFocus();
    container->Guard();
    field.setText("bad");
    other.setFocus();
    EXPECT_EQ(container, nullptr);

    auto doomed = std::make_unique<QDialog>();
    auto* const button = new QPushButton("x", doomed.get());
    button->resize(50, 30);
    struct Hook : CTovSubclassWnd {
        LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
            if (message != WM_MOUSEACTIVATE) return CTovSubclassWnd::WindowProc(message, wParam, lParam);
            window->reset();
            return 0;
        }
        std::unique_ptr<QDialog>* window = nullptr;
    } hook;
    hook.window = &doomed;
    hook.HookWindow(TovHandle(button));
    doomed->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(doomed.get()));
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(5, 5), button->mapToGlobal(QPointF(5, 5)),
                      Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(doomed->windowHandle(), &press);
    EXPECT_EQ(doomed, nullptr);
}

// A form that scrolls, in a page of a larger window.
TEST(FocusGuardOnPages, GuardsAPlainWidgetAndTheGroundOfIt) {
    QMainWindow window;
    auto* const page = new QWidget;
    window.setCentralWidget(page);
    auto* const layout = new QVBoxLayout(page);
    auto* const area = new QScrollArea;
    auto* const inner = new QWidget;
    auto* const innerLayout = new QVBoxLayout(inner);
    auto* const group = new QGroupBox("group");
    group->setCheckable(true);
    auto* const field = new Field;
    auto* const combo = new QComboBox;
    combo->setEditable(true);
    innerLayout->addWidget(field);
    innerLayout->addWidget(group);
    innerLayout->addWidget(combo);
    area->setWidget(inner);
    layout->addWidget(area);
    window.resize(400, 400);
    ASSERT_TRUE(Activate(window));
    Form::Container container(TovWnd(page));
    field->setFocus();
    container.Guard();
    EXPECT_EQ(TovWidget(container.GetWndTopmostFocus()), field);
    field->setText("bad");
    auto const click = [&](QWidget& on, QPoint place) {
        container.shown.clear();
        ClickOn(on, place);
        EXPECT_EQ(QApplication::focusWidget(), field);
        EXPECT_EQ(container.shown.size(), 1u);
    };
    click(*area->viewport(), {area->viewport()->width() - 3, area->viewport()->height() - 3});
    click(*group, {12, 8});
    EXPECT_TRUE(group->isChecked());
    QTest::keyClick(window.windowHandle(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), field);
    field->setText("fine");
    combo->setFocus();
    container.hidden = 0;
    QTest::keyClicks(combo, "x");
    EXPECT_GE(container.hidden, 1);
}

// A page in whatever a host puts it: nothing leads out of what is wrong there, and everything out of what is
// right.
struct Place {
    Place() {
        auto* const layout = new QVBoxLayout(page);
        tool->setFocusPolicy(Qt::NoFocus);
        for (QWidget* const w : std::initializer_list<QWidget*>{field, other, tool, spin})
            layout->addWidget(w);
        QObject::connect(tool, &QToolButton::clicked, [this] { ++tooled; });
        main.setCentralWidget(new QWidget);
        main.resize(500, 400);
        main.setDockOptions({});
    }
    void Guard(QWidget& around) {
        around.window()->show();
        container = std::make_unique<Form::Container>(TovWnd(&around));
        container->Guard();
    }
    // Everything that a user may do there, and more that he may do in this place.
    void ExpectGuarded(char const* where, std::function<void()> const& more = {}) {
        SCOPED_TRACE(where);
        QWidget& top = *page->window();
        ASSERT_TRUE(Activate(top));
        std::function<void()> const ways[] = {[&] { QTest::keyClick(top.windowHandle(), Qt::Key_Tab); },
                                              [this] { ClickOn(*other); },
                                              [this] { ClickOn(*tool); },
                                              [this] { other->setFocus(); },
                                              [this] { Wheel(*spin, 120); },
                                              more};
        for (std::size_t way = 0; way < std::size(ways); ++way) {
            if (!ways[way]) continue;
            SCOPED_TRACE(way);
            field->setText("bad");
            field->setFocus();
            container->shown.clear();
            ways[way]();
            EXPECT_EQ(QApplication::focusWidget(), field);
            EXPECT_TRUE(field->isVisible());
            EXPECT_EQ(container->shown.size(), 1u);
            EXPECT_EQ(tooled + spin->value(), 0);
            field->setText("fine");
            ClickOn(*other);
            EXPECT_EQ(QApplication::focusWidget(), other);
        }
    }

    QMainWindow main;
    QWidget* const page = new QWidget(&main);
    Field* const field = new Field(page);
    Field* const other = new Field(page);
    QToolButton* const tool = new QToolButton(page);
    QSpinBox* const spin = new QSpinBox(page);
    int tooled = 0;
    std::unique_ptr<Form::Container> container;
};

TEST(FocusGuardInPlaces, HoldsInADockAtItsPlaceAndFloating) {
    for (bool const isOfPage : {true, false}) {
        Place place;
        QDockWidget dock;
        dock.setWidget(place.page);
        place.main.addDockWidget(Qt::LeftDockWidgetArea, &dock);
        place.main.show();
        place.Guard(isOfPage ? *place.page : dock);
        for (int round = 0; round < 2; ++round) {
            place.ExpectGuarded("docked");
            dock.setFloating(true);
            place.ExpectGuarded("floating");
            dock.setFloating(false);
        }
    }
}

TEST(FocusGuardInPlaces, HoldsInAToolWindow) {
    Place place;
    QWidget tools(&place.main, Qt::Tool);
    QVBoxLayout layout(&tools);
    layout.addWidget(place.page);
    place.main.show();
    place.Guard(tools);
    place.ExpectGuarded("tool window");
}

TEST(FocusGuardInPlaces, HoldsInASubwindow) {
    for (bool const isOfPage : {true, false}) {
        Place place;
        auto* const area = new QMdiArea;
        place.main.setCentralWidget(area);
        QMdiSubWindow* const sub = area->addSubWindow(place.page);
        QMdiSubWindow* const second = area->addSubWindow(new QLineEdit);
        place.main.show();
        place.Guard(isOfPage ? *place.page : *sub);
        for (int round = 0; round < 2; ++round) {
            area->setActiveSubWindow(second);
            area->setActiveSubWindow(sub);
            place.ExpectGuarded("subwindow");
        }
    }
}

TEST(FocusGuardInPlaces, HoldsOnATab) {
    Place place;
    auto* const tabs = new QTabWidget;
    place.main.setCentralWidget(tabs);
    tabs->addTab(place.page, "page");
    tabs->addTab(new QLineEdit, "next");
    place.main.show();
    place.Guard(place.main);
    QTabBar const& bar = *tabs->tabBar();
    place.ExpectGuarded("click on a tab", [&] { ClickOn(bar, bar.tabRect(1).center()); });
    place.ExpectGuarded("key for the next tab", [&] {
        QTest::keyClick(place.main.windowHandle(), Qt::Key_Tab, Qt::ControlModifier);
    });
}

// A form that is used at random. What a user may rely on is asked after every step.
struct Walk {
    struct Fields : QDialog {
        Fields() {
            auto* const layout = new QHBoxLayout(this);
            for (auto& field : fields)
                layout->addWidget(field = new Field);
            layout->addWidget(&ok);
            layout->addWidget(&cancel);
            ok.setProperty(tovIdProperty, IDOK);
            cancel.setProperty(tovIdProperty, IDCANCEL);
            connect(&ok, &QPushButton::clicked, this,
                    [this] { accepted += container.ValidateCommand(IDOK); });
            connect(&cancel, &QPushButton::clicked, this, [this] { ++cancelled; });
        }
        QPointer<Field> fields[3];
        QPushButton ok{"OK"}, cancel{"Cancel"};
        int accepted = 0, cancelled = 0;
        Form::Container container{TovWnd(this)};
    };

    static bool Fails(Field const* field) {
        return field != nullptr && field->text().startsWith("bad") && !field->isHidden() &&
               field->GetReadOnlyMode() == 0;
    }

    void Run(unsigned seed, int steps) {
        std::mt19937 random(seed);
        Fields form;
        ASSERT_TRUE(Activate(form));
        form.fields[0]->setFocus();
        form.container.Guard();
        QWidget* const buttons[] = {&form.ok, &form.cancel};
        for (int step = 0; step < steps; ++step) {
            auto* const held = dynamic_cast<Field*>(QApplication::focusWidget());
            bool const holds = Fails(held) && held->isEnabled();
            auto const* const last = dynamic_cast<Field*>(TovWidget(form.container.GetWndTopmostFocus()));
            bool const lastHolds = Fails(last) && last->isEnabled();
            bool const isRight = std::ranges::none_of(form.fields, [](auto const& f) { return Fails(f); });
            QString const selected = held != nullptr ? held->selectedText() : QString();
            int const accepted = form.accepted, cancelled = form.cancelled;
            QPointer<Field> const field = form.fields[static_cast<unsigned>(random()) % 3];
            unsigned const what = static_cast<unsigned>(random()) % 12;
            QWidget* pressed = nullptr;
            bool mayFree = false;  // the step itself may end what was wrong, or leave by Cancel
            switch (what) {
                case 0:
                case 1:
                    QTest::keyClick(form.windowHandle(), Qt::Key_Tab,
                                    what == 0 ? Qt::NoModifier : Qt::ShiftModifier);
                    mayFree = QApplication::focusWidget() == &form.cancel;
                    break;
                case 2:
                case 3:
                case 4:
                    if (held == nullptr || held->isReadOnly()) break;
                    mayFree = true;
                    held->setText(what == 2 ? "fine" : "bad text");
                    held->setSelection(4, 2);
                    break;
                case 5:
                case 6:
                case 7:
                    if (field == nullptr || field->isHidden()) break;
                    pressed = field;
                    break;
                case 8:
                    pressed = buttons[random() % 2];
                    mayFree = pressed == &form.cancel;
                    break;
                case 9:
                    if (field == nullptr) break;
                    mayFree = field == held;
                    field->setVisible(field->isHidden());
                    break;
                case 10:
                    if (field == nullptr) break;
                    mayFree = field == held;
                    random() % 2 == 0 ? field->setEnabled(!field->isEnabled())
                                      : void(field->SetReadOnlyMode(!field->GetReadOnlyMode()));
                    break;
                default:
                    if (field == nullptr || random() % 20 != 0) break;
                    mayFree = field == held;
                    delete field;
            }
            if (pressed != nullptr) ClickOn(*pressed);
            SCOPED_TRACE(testing::Message() << "seed " << seed << " step " << step << " what " << what);
            if (holds && !mayFree) {
                ASSERT_EQ(QApplication::focusWidget(), held);
                ASSERT_TRUE(pressed == held || held->selectedText() == selected);
            }
            if (pressed == &form.ok) {
                ASSERT_EQ(form.accepted, accepted + isRight);
            }
            if (pressed == &form.cancel) {
                ASSERT_EQ(form.cancelled, cancelled + 1);
            }
            if (pressed != nullptr && pressed->isEnabled() && !lastHolds && pressed != &form.ok) {
                ASSERT_EQ(QApplication::focusWidget(), pressed) << "nothing is wrong there";
            }
            if (std::ranges::all_of(form.fields, [](auto const& f) { return f == nullptr; })) return;
        }
    }
};

TEST(FocusWalk, HoldsWhatIsWrongAndNothingElse) {
    for (unsigned seed = 0; seed < 20; ++seed)
        Walk().Run(seed, 500);
}

TEST(DisplayFocusWalk, HoldsWhatIsWrongAndNothingElse) {
    for (unsigned seed = 100; seed < 103; ++seed)
        Walk().Run(seed, 300);
}

}  // namespace
}  // namespace tov
