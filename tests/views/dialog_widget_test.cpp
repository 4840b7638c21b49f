#include "support/dialogs_module.h"
#include "support/faults.h"
#include "support/widgets.h"

#include <tov310/application.h>
#include <tov310/cmd_ui.h>
#include <tov310/hooks.h>
#include <tov310/messages.h>
#include <tov310/qt_values.h>
#include <tov310/styles.h>
#include <tov310/system.h>
#include <tov310/ui.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QSignalSpy>

#include <functional>

namespace tov {
namespace {

using testing::ElementsAre;

// Notes what its handlers are called for, and lets a test answer.
struct Station : CTovDialog {
    explicit Station(QWidget* parent = nullptr, char const* name = "1000")
        : CTovDialog(CString(name), parent) {
        AutoDelete(0);
    }

    int OnInitDialog() override {
        wasShownAtInit = isVisible();
        int const result = CTovDialog::OnInitDialog();
        return onInit ? onInit() : result;
    }
    int OnCommand(WPARAM wParam, LPARAM lParam) override {
        commands.push_back(static_cast<int>(TovCommandOf(wParam)));
        if (onCommand && onCommand(commands.back())) return 1;
        return CTovDialog::OnCommand(wParam, lParam);
    }
    QWidget& Item(int id) { return *TovWidget(GetDlgItem(id)); }

    std::vector<int> commands;
    bool wasShownAtInit = true;
    std::function<int()> onInit;
    std::function<bool(int)> onCommand;
};

// A window counts as active for the toolkit's own wait as soon as the one that it belongs to is.
bool IsActivated(QWidget& window) {
    return QTest::qWaitFor([&] { return QApplication::activeWindow() == &window; });
}

class Dialog : public testing::Test {
    void SetUp() override { TovSetFaultHandler(test::Faults::Note); }
    void TearDown() override { EXPECT_THAT(test::TakeFaults(), ElementsAre()); }

 protected:
    // Shows it modally and drives it as soon as it is active.
    static int Run(CTovDialog& dialog, std::function<void()> const& drive, bool withTemplate = true) {
        QTimer::singleShot(0, &dialog, [&] {
            EXPECT_TRUE(IsActivated(dialog));
            drive();
        });
        return withTemplate ? dialog.DoModal(test::DialogsModule()) : dialog.exec();
    }
    static int FocusId() {
        CWnd const* const window = CWnd::FromHandlePermanent(TovGetFocus());
        return window != nullptr ? window->GetDlgCtrlID() : 0;
    }
};

TEST_F(Dialog, HasItsControlsInPlaceAndInTheOrderOfTab) {
    Station dialog;
    EXPECT_EQ(
        Run(dialog,
            [&] {
                EXPECT_EQ(dialog.windowTitle(), QStringLiteral("新建测站"));
                CRect const frame{0, 0, 230, 134};
                EXPECT_EQ(dialog.size(), TovMapDialogRect(dialog.font(), frame).size());
                EXPECT_EQ(dialog.minimumSize(), dialog.maximumSize());
                EXPECT_EQ(dialog.Item(1030).geometry(), TovMapDialogRect(dialog.font(), {137, 7, 223, 67}));
                EXPECT_EQ(dynamic_cast<QComboBox&>(dialog.Item(1002)).currentText(), "09");
                EXPECT_EQ(dynamic_cast<QComboBox&>(dialog.Item(1002)).itemText(0), "08");
                EXPECT_EQ(dynamic_cast<QPushButton&>(dialog.Item(1)).text(), QStringLiteral("确定(&O)"));
                EXPECT_FALSE(dialog.Item(1020).isEnabled());
                EXPECT_FALSE(dialog.Item(1021).isVisible());
                std::string const kinds[] = {"Edit", "ComboBox", "Button", "ListBox"};
                int const ids[] = {1001, 1002, 1010, 1030};
                for (std::size_t i = 0; i < 4; ++i)
                    EXPECT_EQ(TovWnd(&dialog.Item(ids[i]))->GetClassName(), kinds[i]);
                EXPECT_EQ(TovWnd(&dialog.Item(1010))->GetStyle() & BS_TYPEMASK, BS_GROUPBOX);
                EXPECT_EQ(dialog.childAt(dialog.Item(1011).geometry().center()),
                          &dialog.Item(1011));  // not its box

                // One of each group, whatever becomes of the other.
                for (int const id : {1011, 1013, 1012})
                    dynamic_cast<QRadioButton&>(dialog.Item(id)).click();
                EXPECT_FALSE(dynamic_cast<QRadioButton&>(dialog.Item(1011)).isChecked());
                EXPECT_TRUE(dynamic_cast<QRadioButton&>(dialog.Item(1013)).isChecked());

                std::vector<int> stops{FocusId()};
                EXPECT_EQ(dynamic_cast<QLineEdit&>(dialog.Item(1001)).selectedText(), "P1");
                for (int i = 0; i < 7; ++i) {
                    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
                    stops.push_back(FocusId());
                }
                EXPECT_THAT(stops, ElementsAre(1001, 1002, 1012, 1013, 1030, 1, 2, 1001));
                std::pair<Qt::Key, int> const letters[] = {
                    {Qt::Key_I, 1012}, {Qt::Key_N, 1001}, {Qt::Key_G, 1012}};
                for (auto const& [key, id] : letters) {
                    QTest::keyClick(&dialog, key, Qt::AltModifier);
                    EXPECT_EQ(FocusId(), id);
                }
                auto const labels = dialog.findChildren<QLabel*>();
                EXPECT_EQ(labels.at(1)->text(), "A && B:");
                EXPECT_EQ(labels.at(1)->buddy(), &dialog.Item(1002));

                dialog.commands.clear();
                dynamic_cast<QListWidget&>(dialog.Item(1030)).setCurrentRow(1);
                QTest::keyClicks(&dialog.Item(1001), "x");
                EXPECT_THAT(dialog.commands, ElementsAre(1030, 1001));
                dialog.EndDialog(77);
            }),
        77);
    EXPECT_FALSE(dialog.wasShownAtInit);
}

struct Swallower : CTovSubclassWnd {
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        if (message != WM_COMMAND || TovCommandOf(wParam) > 2)
            return CTovSubclassWnd::WindowProc(message, wParam, lParam);
        seen.push_back(static_cast<int>(TovCommandOf(wParam)));
        return seen.size() == 1 ? 1 : CTovSubclassWnd::WindowProc(message, wParam, lParam);
    }
    std::vector<int> seen;
};

// Every way to end it is one command, which a hook can keep from it, and which a disabled button does not
// give.
TEST_F(Dialog, EndsByOneRoad) {
    struct Case {
        char const* name;
        int command;
        std::function<void(Station&)> act;
    };
    auto const key = [](int id, Qt::Key pressed) {
        return [=](Station& d) {
            d.Item(id).setFocus();
            QTest::keyClick(&d.Item(id), pressed);
        };
    };
    Case const cases[] = {
        {"enter in an edit", IDOK, key(1001, Qt::Key_Return)},
        {"enter on a radio button", IDOK, key(1011, Qt::Key_Enter)},
        {"enter on OK", IDOK, key(IDOK, Qt::Key_Return)},
        {"click on OK", IDOK, [](Station& d) { QTest::mouseClick(&d.Item(IDOK), Qt::LeftButton); }},
        {"accept", IDOK, [](Station& d) { d.accept(); }},
        {"enter on Cancel", IDCANCEL, key(IDCANCEL, Qt::Key_Return)},
        {"escape", IDCANCEL, key(1001, Qt::Key_Escape)},
        {"close", IDCANCEL, [](Station& d) { d.close(); }},
        {"click on Cancel", IDCANCEL,
         [](Station& d) { QTest::mouseClick(&d.Item(IDCANCEL), Qt::LeftButton); }},
        {"reject", IDCANCEL, [](Station& d) { d.reject(); }},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.name);
        Station dialog;
        Swallower hook;
        QSignalSpy const accepted(&dialog, &QDialog::accepted);
        QSignalSpy const rejected(&dialog, &QDialog::rejected);
        int const result = Run(dialog, [&] {
            hook.HookWindow(dialog.GetSafeHwnd());
            dialog.Item(c.command).setEnabled(false);
            if (c.name != std::string("enter on Cancel")) c.act(dialog);  // a disabled one has no focus
            EXPECT_THAT(hook.seen, ElementsAre());
            dialog.Item(c.command).setEnabled(true);
            c.act(dialog);
            EXPECT_TRUE(dialog.isVisible());
            c.act(dialog);
            EXPECT_FALSE(dialog.isVisible());
        });
        EXPECT_EQ(result, c.command);
        EXPECT_THAT(hook.seen, ElementsAre(c.command, c.command));
        EXPECT_EQ(accepted.count(), c.command == IDOK);
        EXPECT_EQ(rejected.count(), c.command == IDCANCEL);
    }
}

TEST_F(Dialog, IsNotShownWithAFault) {
    Station dialog(nullptr, "faulty");
    EXPECT_EQ(dialog.DoModal(test::DialogsModule()), -1);
    EXPECT_EQ(dialog.Create(test::DialogsModule()), 0);
    dialog.show();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_TRUE(dialog.findChildren<QWidget*>().isEmpty());
    EXPECT_EQ(dialog.GetSafeHwnd(), HWND{});
    std::string const fault = R"(dialogs/faulty.json: control 2 (Edti 5): there is no class "Edti")";
    EXPECT_THAT(test::TakeFaults(), ElementsAre(fault, fault, fault));
}

// A host's own member in the place of a control comes back with each showing.
TEST_F(Dialog, IsShownAgainAndAgainAndInOneAnother) {
    QWidget main;
    QLineEdit edit(&main);
    main.show();
    ASSERT_TRUE(IsActivated(main));
    edit.setFocus();
    Station outer(&main);
    CWndOn<QLineEdit, CWnd> own;
    outer.onInit = [&] {
        EXPECT_EQ(own.SubclassDlgItem(1001, &outer), 1);
        EXPECT_EQ(own.SubclassDlgItem(1001, &outer), 0);
        EXPECT_EQ(own.text(), "P1");
        outer.Item(1030).setFocus();
        return 0;
    };
    Station inner(&outer);
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(Run(outer,
                      [&] {
                          EXPECT_EQ(FocusId(), 1030);
                          EXPECT_EQ(outer.GetDlgItem(1001), own.GetSafeHwnd());
                          EXPECT_TRUE(own.isVisible());
                          own.setText("changed");
                          EXPECT_EQ(Run(inner,
                                        [&] {
                                            EXPECT_EQ(outer.DoModal(test::DialogsModule()), -1);
                                            EXPECT_EQ(test::TakeFaults().size(), 1u);
                                            inner.accept();
                                        }),
                                    IDOK);
                          EXPECT_TRUE(IsActivated(outer));
                          outer.reject();
                      }),
                  IDCANCEL);
        EXPECT_FALSE(own.GetSafeHwnd());
        EXPECT_TRUE(IsActivated(main));
        EXPECT_TRUE(edit.hasFocus());
    }
}

TEST_F(Dialog, OutlivesWhatItStandsOn) {
    auto main = std::make_unique<QWidget>();
    auto* const child = std::make_unique<QWidget>(main.get()).release();
    Station dialog(child);
    main->show();
    ASSERT_TRUE(IsActivated(*main));
    EXPECT_EQ(Run(dialog, [&] { main.reset(); }), IDCANCEL);
    EXPECT_EQ(dialog.parentWidget(), nullptr);
    QWidget other;  // without one, this screen would not tell that the dialog is active again
    other.show();
    ASSERT_TRUE(IsActivated(other));
    EXPECT_EQ(Run(dialog, [&] { dialog.accept(); }), IDOK);
    // Its own end, by a button of it.
    dialog.onCommand = [&](int id) { return id == 1012 && dialog.DestroyWindow(); };
    EXPECT_EQ(Run(dialog, [&] { dynamic_cast<QRadioButton&>(dialog.Item(1012)).click(); }), IDCANCEL);
    // Ended before it is shown; with its object, modally; and modelessly with a second life.
    dialog.onInit = [&] { return dialog.EndDialog(5), 1; };
    EXPECT_EQ(dialog.DoModal(test::DialogsModule()), 5);
    auto* const lost = std::make_unique<Station>().release();
    lost->onCommand = [&](int) { return lost->EndDialog(6), delete lost, true; };
    EXPECT_EQ(Run(*lost, [&] { lost->accept(); }), 6);
    Station modeless;
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(modeless.Create(test::DialogsModule()), 1);
        EXPECT_EQ(modeless.Create(test::DialogsModule()), 0);
        modeless.ShowWindow(1);
        EXPECT_TRUE(IsActivated(modeless));
        QTest::mouseClick(&modeless.Item(IDOK), Qt::LeftButton);
        EXPECT_FALSE(modeless.GetSafeHwnd());
    }
}

TEST_F(Dialog, BesideOthersDeletesItselfWhenItEnds) {
    CTovDialog without;
    EXPECT_EQ(without.Create(test::DialogsModule()), -1);
    for (int const autoDelete : {1, 0}) {
        auto* const dialog = std::make_unique<Station>().release();
        QPointer<Station> const alive(dialog);
        dialog->AutoDelete(autoDelete);
        EXPECT_EQ(dialog->Create(test::DialogsModule()), 1);
        EXPECT_EQ(dialog->Modeless(), 1);
        dialog->show();
        // In its own handler, which goes on.
        dialog->onCommand = [dialog](int) {
            EXPECT_EQ(dialog->DestroyWindow(), 1);
            EXPECT_EQ(dialog->DestroyWindow(), 0);
            return !dialog->isVisible();
        };
        dynamic_cast<QRadioButton&>(dialog->Item(1012)).click();
        EXPECT_TRUE(alive);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_EQ(alive.isNull(), autoDelete != 0);
        delete alive.data();
    }
    Station owner;
    EXPECT_EQ(owner.Create(test::DialogsModule()), 1);
    auto* const owned = std::make_unique<CTovDialog>("1000").release();
    QPointer<CTovDialog> const alive(owned);
    EXPECT_EQ(owned->Create(test::DialogsModule(), &owner), 1);
    owner.DestroyWindow();
    EXPECT_FALSE(owned->GetSafeHwnd());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(alive.isNull());
}

// By dialogs that belong to it and have buttons of their own, and by what its host deletes.
TEST_F(Dialog, IsNotConfusedByWhatComesAndGoes) {
    struct Form : CTovDialogCV {
        explicit Form(QWidget* parent = nullptr) : CTovDialogCV(parent), column(this) {
            auto* const place = new QLabel(group);  // the group's
            place->setProperty(tovIdProperty, 500);
            (new QVBoxLayout(group))->addWidget(place);
            for (QWidget* const widget : {group, static_cast<QWidget*>(field), static_cast<QWidget*>(other),
                                          static_cast<QWidget*>(box)})
                column.addWidget(widget);
            connect(box, &QDialogButtonBox::accepted, this, &QDialog::accept);
            ExchangeChildDialogId(500, 1);
            AddChildDialog(nullptr, 26255);
        }
        QVBoxLayout column;
        QWidget* const group = new QWidget(this);
        CTovEditString* const field = new CTovEditString(this);
        QPushButton* const other = new QPushButton(this);
        QDialogButtonBox* const box = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    } form;
    Form inner(&form);
    inner.field->SetString("x");
    form.show();
    inner.show();
    EXPECT_TRUE(QTest::qWaitFor([&] { return inner.box->button(QDialogButtonBox::Ok)->isDefault(); }));
    QPushButton const* const ok = form.box->button(QDialogButtonBox::Ok);
    QCoreApplication::processEvents();
    EXPECT_FALSE(ok->isEnabled());
    delete form.field;
    delete form.group;  // and the cell of the child dialog
    QCoreApplication::processEvents();
    EXPECT_TRUE(ok->isEnabled());
    // One that comes late counts, as long as it is there and is not hidden with what it stands in.
    auto* const late = new QWidget(&form);
    auto* const more = new CTovEditString(late);
    form.column.addWidget(late);
    for (bool const isShown : {true, false, true}) {
        late->setVisible(isShown);
        QCoreApplication::processEvents();
        EXPECT_EQ(ok->isEnabled(), !isShown);
    }
    more->hide();
    EXPECT_TRUE(ok->isEnabled());
    more->show();
    EXPECT_FALSE(ok->isEnabled());
    delete more;
    QCoreApplication::processEvents();
    EXPECT_TRUE(ok->isEnabled());
    QTest::keyClick(form.other, Qt::Key_Return);  // which is never the default button
    EXPECT_FALSE(form.isVisible());
    EXPECT_TRUE(inner.isVisible());
}

TEST_F(Dialog, TakesOverKeysAndEditsAndTellsWhenItStands) {
    CWinApp app;
    CTovFrameWnd main;
    HACCEL keys;
    keys.Add({ACCEL::eControl, 'K', 40001});
    TovSetAccelerators(&main, keys);
    EXPECT_EQ(TovGetAccelerators(&main), keys);
    app.SetMainWnd(TovHandle(&main));
    Station dialog;
    QSignalSpy const initialized(&dialog, &CTovDialog::initialized);
    dialog.UseInheritedAccelerators(1);
    CTovEditSwitched* edit = nullptr;
    dialog.onInit = [&] {
        edit = dialog.AddEdit(1001, 1L, 60L);
        EXPECT_EQ(dialog.AddEdit(1001, eTovSwitchedString), edit);
        EXPECT_EQ(dialog.AddEdit(4040, 1.0, 2.0), nullptr);
        return 1;
    };
    for (int round = 1; round < 3; ++round) {
        Run(dialog, [&] {
            QCoreApplication::processEvents();
            EXPECT_EQ(initialized.count(), round);
            EXPECT_EQ(&dialog.Edit(1001), edit);
            EXPECT_EQ(edit->GetType(), eTovSwitchedLong);
            EXPECT_EQ(TovWidget(dialog.GetDlgItem(1001)), edit);
            edit->GetEdit().setText("61");
            EXPECT_EQ(edit->Validate(nullptr), CTovInputControl::eStateInvalid);
            dialog.Edit(4040).SetInt(3);  // stands nowhere
            dialog.commands.clear();
            QTest::keyClick(&dialog, Qt::Key_K, Qt::ControlModifier);
            EXPECT_THAT(dialog.commands, ElementsAre(40001));
            dialog.reject();
        });
    }
}

TEST_F(Dialog, OfPlainCodeIsAskedOnce) {
    for (bool const isConnected : {false, true}) {
        struct Plain : CTovDialog {
            void OnOK() override { ++asked; }
            int asked = 0;
        } dialog;
        QDialogButtonBox box(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
        if (isConnected) QObject::connect(&box, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
        for (int round = 1; round < 3; ++round) {
            EXPECT_EQ(Run(
                          dialog,
                          [&] {
                              box.button(QDialogButtonBox::Ok)->click();
                              EXPECT_EQ(dialog.asked, round);
                              box.button(QDialogButtonBox::Cancel)->click();
                          },
                          false),
                      QDialog::Rejected);
        }
        EXPECT_EQ(dialog.result(), IDCANCEL);
        EXPECT_EQ(dialog.DoModal(test::DialogsModule()), -1);
    }
}

TEST_F(Dialog, IsGuardedFromItsConstructorOn) {
    struct Form : CTovDialog, CTovInputControlContainer {
        Form() : CTovInputControlContainer(this) {
            layout.addWidget(&name);
            layout.addWidget(&box);
            HookContainer();
            HookAllDlgCtrls(nullptr);
        }
        void OnShowValidationText(HWND at, unsigned, unsigned long, CString*) override {
            refused += TovWidget(at) == &name;
        }
        QVBoxLayout layout{this};
        CTovEditString name;
        QDialogButtonBox box{QDialogButtonBox::Ok};
        int refused = 0;
    } form;
    EXPECT_EQ(Run(
                  form,
                  [&] {
                      form.box.button(QDialogButtonBox::Ok)->click();
                      EXPECT_TRUE(form.refused == 1 && form.isVisible());
                      form.name.SetString("A 12");
                      form.box.button(QDialogButtonBox::Ok)->click();
                  },
                  false),
              QDialog::Accepted);

    // One that has no window would take everything.
    struct Nothing : CTovInputControlContainer {
        Nothing() : CTovInputControlContainer(nullptr) { HookContainer(); }
    } const nothing;
    EXPECT_EQ(test::TakeFaults().size(), 1u);
}

struct Sliders : ITovControlFactory {
    CWnd* CreateControl(char const* name, unsigned long, CRect const&, CWnd* parent) override {
        return std::string("Odometer") == name ? TovWnd(new QSlider(TovWidget(parent))) : nullptr;
    }
};

TEST_F(Dialog, FillsAnyWidgetAndTellsOfCutTexts) {
    CTovDialogTemplate dialog;
    dialog.name = "d";
    dialog.rect = {0, 0, 100, 50};
    unsigned long const style = WS_CHILD | WS_VISIBLE | WS_TABSTOP;
    dialog.controls = {
        {"Odometer", 5, style, "", {}, {0, 0, 40, 10}},
        {"Button", 6, style | BS_AUTOCHECKBOX, "much longer than that", {}, {0, 10, 20, 20}},
        {"Static", 0, WS_CHILD | WS_VISIBLE, "in three lines it would fit", {}, {0, 20, 60, 50}}};
    Sliders factory;
    TovAddControlFactory(&factory);
    QWidget window;
    QLineEdit before(&window);
    QWidget host(&window);
    QLineEdit after(&window);
    EXPECT_EQ(TovFillDialog(&host, dialog), 1);
    TovRemoveControlFactory(&factory);
    EXPECT_THAT(test::TakeFaults(),
                ElementsAre(testing::StartsWith("d: control 2 (Button 6): the text needs ")));
    HWND const slider = TovWnd(&host)->GetDlgItem(5);
    EXPECT_EQ(TovWidget(slider)->metaObject()->className(), std::string("QSlider"));
    EXPECT_EQ(before.nextInFocusChain()->nextInFocusChain(), TovWidget(slider));
    CString message;
    EXPECT_EQ(TovFillDialog(&window, dialog, &message), 0);
    EXPECT_THAT(test::TakeFaults(), ElementsAre(message));
}

}  // namespace
}  // namespace tov
