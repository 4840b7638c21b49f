// Edits for angles and distances as their users meet them.
#include "support/comma_locale.h"
#include "support/widgets.h"

#include <tov310/input_control_container.h>
#include <tov310/messages.h>
#include <tov310/qt_values.h>
#include <tov310/switched_edit.h>
#include <tov310/value_edits.h>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <iterator>
#include <memory>
#include <random>
#include <utility>
#include <vector>

namespace tov {
namespace {

using test::Activate;
using test::ClickOn;
using test::Commit;

constexpr double degree = 0.017453292519943295;

template <class Edit, class Settings = CTovUnitSettingsAngle>
struct ValueForm : QDialog {
    explicit ValueForm(long unit) {
        settings.Unit(unit);
        auto* const layout = new QVBoxLayout(this);
        layout->addWidget(&before);
        layout->addWidget(&edit);
        layout->addWidget(&after);
        resize(400, 160);
        EXPECT_TRUE(Activate(*this));
    }
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    void Type(char const* text) { QTest::keyClicks(QApplication::focusWidget(), text); }
    CTovEdit& Field(eTovAngleField field) { return *edit.FieldEdit(field); }

    Settings settings;
    QLineEdit before, after;
    Edit edit{&settings};
};
using AngleForm = ValueForm<CTovEditValueAngle>;

TEST(AngleEditWidget, LaysItsFieldsOverTheDigitsOfTheMask) {
    for (long const unit : {12L, 15L}) {
        for (int const pixels : {10, 13, 31}) {
            AngleForm form(unit);
            QFont font = form.edit.font();
            font.setPixelSize(pixels);
            form.edit.setFont(font);
            form.adjustSize();
            QCoreApplication::processEvents();
            QString const mask = form.edit.text();
            ASSERT_FALSE(mask.isEmpty());
            QFontMetrics const metrics(form.edit.font());
            // Where the edit itself would show the mask; the toolkit's rectangle of the caret begins 5 before
            // it.
            form.edit.setCursorPosition(0);
            int const begin = form.edit.inputMethodQuery(Qt::ImCursorRectangle).toRectF().toRect().left() + 5;
            int at = 0;
            for (eTovAngleField const field : {eTovFieldDegrees, eTovFieldMinutes, eTovFieldSeconds}) {
                CTovEdit& child = form.Field(field);
                auto const digits = QRegularExpression("[-0-9.]+").match(mask, at);
                at = static_cast<int>(digits.capturedEnd());
                int const right = begin + metrics.horizontalAdvance(mask, at);
                EXPECT_EQ(child.geometry().right() + 1, right + 2) << unit << ' ' << pixels << ' ' << field;
                EXPECT_TRUE(form.edit.rect().contains(child.geometry()));
                // Its digits stand where those of the mask would, to the pixel.
                child.QLineEdit::setText(digits.captured().replace('-', '0'));
                child.setCursorPosition(static_cast<int>(child.text().size()));
                child.grab();  // the toolkit scrolls as it paints
                int const end = child.inputMethodQuery(Qt::ImCursorRectangle).toRectF().toRect().left() + 5;
                EXPECT_NEAR(child.x() + end, right, 1);
            }
        }
    }
}

TEST(AngleEditWidget, TakesAnAngleFieldByField) {
    AngleForm form(12);
    form.before.setFocus();
    QTest::keyClick(form.windowHandle(), Qt::Key_Tab);
    ASSERT_EQ(QApplication::focusWidget(), &form.Field(eTovFieldDegrees));
    form.Type("-12");
    QTest::keyClick(form.windowHandle(), Qt::Key_Tab);
    form.Type("34");
    QTest::keyClick(form.windowHandle(), Qt::Key_Tab);
    form.Type("30.5");
    QTest::keyClick(form.windowHandle(), Qt::Key_Tab);
    EXPECT_TRUE(QTest::qWaitFor([&] { return form.after.hasFocus(); }, 1000));
    EXPECT_NEAR(form.edit.GetValue(), -(12 + 34 / 60.0 + 30.5 / 3600) * degree, 1e-12);
    QTest::keyClick(form.windowHandle(), Qt::Key_Tab, Qt::ShiftModifier);
    EXPECT_EQ(QApplication::focusWidget(), &form.Field(eTovFieldSeconds)) << "from behind into the last";
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(form.windowHandle(), Qt::Key_Tab, Qt::ShiftModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return form.before.hasFocus(); }, 1000));
}

TEST(AngleEditWidget, IsOneTextForTheCaretAndTheClipboard) {
    AngleForm form(12);
    form.edit.SetValue((12 + 34 / 60.0 + 56.7 / 3600) * degree);
    form.Field(eTovFieldDegrees).setFocus();
    form.Key(Qt::Key_End);
    EXPECT_EQ(QApplication::focusWidget(), &form.Field(eTovFieldSeconds));
    form.Key(Qt::Key_Home);
    EXPECT_EQ(QApplication::focusWidget(), &form.Field(eTovFieldDegrees));
    int steps = 0;
    while (QApplication::focusWidget() != &form.Field(eTovFieldMinutes) && ++steps < 10)
        form.Key(Qt::Key_Right);
    EXPECT_LT(steps, 10);
    form.Key(Qt::Key_Left);
    EXPECT_EQ(QApplication::focusWidget(), &form.Field(eTovFieldDegrees));

    form.Key(Qt::Key_Home);
    form.Key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(QApplication::clipboard()->text().contains(QString::fromUtf8("34'")));
    struct {
        char const* text;
        double degrees;
    } const pasted[] = {{"1°2'3.5\"", 1 + 2 / 60.0 + 3.5 / 3600},
                        {"-10-20-30", -(10 + 20 / 60.0 + 30 / 3600.0)},
                        {"12.5823", 12.5823},
                        {"13.9803 gon", 13.9803 * 0.9}};
    for (auto const& [text, degrees] : pasted) {
        QApplication::clipboard()->setText(QString::fromUtf8(text));
        form.Key(Qt::Key_V, Qt::ControlModifier);
        EXPECT_NEAR(form.edit.GetValue(), degrees * degree, 1e-9) << text;
    }
}

TEST(AngleEditWidget, GivesTheFocusToTheNearestField) {
    AngleForm form(12);
    ClickOn(form.edit, {form.edit.width() - 3, form.edit.height() / 2});
    EXPECT_EQ(QApplication::focusWidget(), &form.Field(eTovFieldSeconds));
    ClickOn(form.edit, form.Field(eTovFieldMinutes).geometry().center());
    EXPECT_EQ(QApplication::focusWidget(), &form.Field(eTovFieldMinutes));
}

TEST(AngleEditWidget, KeepsTheFocusWhileItsFieldsChange) {
    AngleForm form(12);
    int done = 0;
    QObject::connect(&form.edit, &CTovEdit::editingDone, [&] { ++done; });
    form.Field(eTovFieldMinutes).setFocus();
    form.Type("7");
    for (unsigned const unit : {11u, 15u, 12u}) {
        form.edit.SetUnit(unit);
        QWidget* const wanted = unit == 11 ? &form.edit : &form.Field(eTovFieldDegrees);
        EXPECT_EQ(QApplication::focusWidget(), wanted) << unit;
    }
    form.edit.SetSignType(eSignNorthSouth);
    EXPECT_EQ(QApplication::focusWidget(), &form.Field(eTovFieldDegrees));
    form.Field(eTovFieldMinutes).setFocus();
    form.edit.SetSecOnly(1);
    EXPECT_EQ(QApplication::focusWidget(), &form.edit);
    EXPECT_EQ(done, 0) << "the focus never left";
    form.after.setFocus();
    EXPECT_EQ(done, 1);
    form.edit.SetSecOnly(0);
    EXPECT_TRUE(form.after.hasFocus());
}

TEST(AngleEditWidget, StandsBeforeItsButtonForTab) {
    AngleForm form(12);
    form.edit.CreateEditButton("...");
    CTovEditButton* const button = form.edit.GetEditButton();
    for (int round = 0; round < 2; ++round) {
        form.Field(eTovFieldSeconds).setFocus();
        form.Key(Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget(), button);
        form.Key(Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget(), &form.after);
        form.Key(Qt::Key_Tab, Qt::ShiftModifier);
        EXPECT_EQ(QApplication::focusWidget(), button);
        form.Key(Qt::Key_Tab, Qt::ShiftModifier);
        EXPECT_EQ(QApplication::focusWidget(), &form.Field(eTovFieldSeconds));
        form.edit.SetUnit(15);
    }
}

TEST(AngleEditWidget, SpinsTheFieldThatIsActive) {
    AngleForm form(12);
    form.edit.SetSignType(eSignNorthSouth);
    form.edit.CreateSpinButton();
    CTovEditSpin& spin = *form.edit.GetEditSpin();
    form.edit.setFixedWidth(form.edit.minimumSizeHint().width());
    QCoreApplication::processEvents();
    EXPECT_FALSE(spin.geometry().intersects(form.Field(eTovFieldSign).geometry()));
    form.edit.SetValue(10 * degree);
    form.before.setFocus();
    ClickOn(spin, {3, 3});
    EXPECT_NEAR(form.edit.GetValue(), 11 * degree, 1e-12);
    form.Field(eTovFieldMinutes).setFocus();
    ClickOn(spin, {3, 3});
    EXPECT_NEAR(form.edit.GetValue(), (11 + 1 / 60.0) * degree, 1e-12);
}

TEST(AngleEditWidget, ShowsWhichFieldIsWrong) {
    AngleForm form(12);
    struct Hooks : CTovInputControlContainer {
        using CTovInputControlContainer::CTovInputControlContainer;
        using CTovInputControlContainer::HookAllDlgCtrls, CTovInputControlContainer::HookContainer;
    } hooks(TovWnd(&form));
    hooks.HookContainer();
    hooks.HookAllDlgCtrls(nullptr);
    form.Field(eTovFieldDegrees).setFocus();
    form.Type("400");
    form.Field(eTovFieldSeconds).setFocus();
    form.Key(Qt::Key_Tab);
    EXPECT_TRUE(QTest::qWaitFor([&] { return form.Field(eTovFieldDegrees).hasFocus(); }, 1000));
    form.Key(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), &form.Field(eTovFieldMinutes));
}

TEST(AngleEditWidget, HandsOnWhatIsSetBeforeItIsBorn) {
    CTovUnitSettingsAngle settings;
    settings.Unit(12);
    QDialog form;
    CTovEditValueAngle edit(&settings, &form);
    QLabel name("&Angle", &form);
    name.setBuddy(&edit);
    edit.ReadOnlyKeepsFocus(1);
    edit.SetReadOnlyMode(1);
    ASSERT_TRUE(Activate(form));
    EXPECT_TRUE(edit.FieldEdit(eTovFieldDegrees)->isReadOnly());
    edit.SetReadOnlyMode(0);
    EXPECT_FALSE(edit.FieldEdit(eTovFieldDegrees)->isReadOnly());
    edit.SetValue(12.5 * degree);
    QTest::keyClick(&form, Qt::Key_A, Qt::AltModifier);
    EXPECT_EQ(edit.FieldEdit(eTovFieldDegrees)->selectedText(), "12");
    QAccessibleInterface* const whole = QAccessible::queryAccessibleInterface(&edit);
    ASSERT_NE(whole, nullptr);
    EXPECT_EQ(whole->role(), QAccessible::Grouping);
    EXPECT_EQ(whole->text(QAccessible::Name), "Angle");
    EXPECT_EQ(whole->text(QAccessible::Value), edit.valueText());
    EXPECT_TRUE(edit.valueText().startsWith(QString::fromUtf8("12° 30'"))) << edit.valueText().toStdString();
    QAccessibleInterface* const minutes =
        QAccessible::queryAccessibleInterface(edit.FieldEdit(eTovFieldMinutes));
    EXPECT_EQ(minutes->text(QAccessible::Name), "Angle '");
    EXPECT_EQ(minutes->text(QAccessible::Value), "30");
    edit.SetUnit(15);
    EXPECT_EQ(
        QAccessible::queryAccessibleInterface(edit.FieldEdit(eTovFieldSeconds))->text(QAccessible::Name),
        "Angle cc");
}

TEST(AngleEditWidget, MayBeDeletedWhileAFieldIsTyped) {
    std::function<void(CTovEdit&)> const acts[] = {
        [](CTovEdit& field) { QTest::keyClick(&field, Qt::Key_7); },
        [](CTovEdit& field) { QTest::keyClick(&field, Qt::Key_Backspace); },
        [](CTovEdit& field) { QTest::keyClick(&field, Qt::Key_Up); },
        [](CTovEdit& field) { QTest::keyClick(&field, Qt::Key_V, Qt::ControlModifier); },
        [](CTovEdit& field) { Commit(field, "4"); }};
    QApplication::clipboard()->setText(QString::fromUtf8("12°34'56.5\""));
    for (auto const& act : acts) {
        for (bool const changesUnit : {false, true}) {
            for (bool const isSwitched : {false, true}) {
                AngleForm form(11);
                QPointer<QWidget> alive;
                QPointer<CTovEditValueAngle> edit;
                if (isSwitched) {
                    auto* const place =
                        std::make_unique<CTovEditSwitched>(eTovSwitchedAngle, &form).release();
                    alive = place;
                    edit = static_cast<CTovEditValueAngle*>(&place->GetEdit());
                } else {
                    edit = std::make_unique<CTovEditValueAngle>(&form.settings, &form).release();
                    alive = edit;
                }
                alive->show();
                edit->SetUnit(12);
                edit->SetValue(1.25);
                edit->FieldEdit(eTovFieldSeconds)->setFocus();
                QObject::connect(edit, &CTovEdit::valueChanged, [&] {
                    if (changesUnit) edit->SetUnit(13);
                    delete alive;
                });
                act(*edit->FieldEdit(eTovFieldSeconds));
                EXPECT_FALSE(alive);
                QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            }
        }
    }
}

TEST(AngleEditWidget, TakesAndGivesDecimalCommas) {
    test::CommaLocale const locale;
    if (!locale.IsThere()) GTEST_SKIP() << "no locale with a decimal comma";
    AngleForm form(12);
    CTovEdit& seconds = form.Field(eTovFieldSeconds);
    form.edit.SetValue(degree);
    for (char const* const typed : {"30,5", "30.5"}) {
        seconds.setFocus();
        form.Key(Qt::Key_A, Qt::ControlModifier);
        form.Type(typed);
        EXPECT_EQ(seconds.text(), "30,5");
        EXPECT_NEAR(form.edit.GetValue(), (1 + 30.5 / 3600) * degree, 1e-14);
    }
    form.Key(Qt::Key_Up);
    EXPECT_EQ(seconds.text(), "31,50000");
    QApplication::clipboard()->clear();
    form.Key(Qt::Key_C, Qt::ControlModifier);
    form.edit.Empty();
    form.Key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(seconds.text(), "31,50000");
    EXPECT_NEAR(form.edit.GetValue(), (1 + 31.5 / 3600) * degree, 1e-14);
    form.after.setFocus();
    EXPECT_EQ(seconds.text(), "31,50000");
}

TEST(AngleEditWidget, KeepsEveryBitAcrossUnitsAndLooking) {
    AngleForm form(12);
    std::mt19937_64 random(3);
    std::uniform_real_distribution<double> angles(-6, 6);
    for (int i = 0; i < 40; ++i) {
        double const value = angles(random);
        form.edit.SetValue(value);
        double const held = form.edit.GetValue();
        for (long const unit : {12L, 11L, 15L, 18L, 13L, 12L}) {
            form.settings.Unit(unit);
            TovSendMessage(TovHandle(&form.edit), WM_TOV_UNIT_CHANGED_ANGLE);
            EXPECT_EQ(form.edit.FieldEdit(eTovFieldDegrees) != nullptr, unit == 12 || unit == 15);
            form.edit.setFocus();
            form.after.setFocus();
            ASSERT_EQ(form.edit.GetValue(), held) << unit;
        }
    }
}

TEST(AngleEditWidget, KeepsItsValueAcrossItsBirth) {
    for (int const* unit = CTovUnitSettingsAngle::Units(); *unit != -1; ++unit) {
        CTovUnitSettingsAngle settings(*unit, nullptr);
        CTovEditValueAngle edit(&settings);
        double const value = -0.1234567890123;
        edit.SetRange(-1, 1);
        edit.SetValue(value);
        QString const before = edit.valueText();
        edit.show();
        EXPECT_EQ(edit.valueText(), before) << *unit;
        EXPECT_EQ(edit.GetValue(), value) << *unit;
        EXPECT_EQ(edit.IsEmpty(), 0) << *unit;
        EXPECT_EQ(edit.GetChangedByUser(), 0) << *unit;
        edit.SetValue(2);
        EXPECT_EQ(edit.Validate(nullptr), CTovInputControl::eStateInvalid) << *unit;
    }
}

TEST(LatitudeEditWidget, KnowsItsHemispheres) {
    QDialog form;
    CTovEditLatitude edit(&form);
    ASSERT_TRUE(Activate(form));
    edit.SetUnit(12);
    edit.SetValue(-0.5 * degree);
    ASSERT_NE(edit.FieldEdit(eTovFieldSign), nullptr);
    EXPECT_EQ(edit.FieldEdit(eTovFieldSign)->text(), "S");
    edit.FieldEdit(eTovFieldSign)->setFocus();
    for (char const* const letter : {"n", "s"})
        QTest::keyClicks(edit.FieldEdit(eTovFieldSign), letter);
    EXPECT_EQ(edit.FieldEdit(eTovFieldSign)->text(), "S") << "in place of the other";
    QInputMethodEvent commit;
    commit.setCommitString(QString::fromUtf8("北"));
    edit.FieldEdit(eTovFieldMinutes)->setFocus();
    QCoreApplication::sendEvent(edit.FieldEdit(eTovFieldMinutes), &commit);
    EXPECT_NEAR(edit.GetValue(), 0.5 * degree, 1e-12);
    edit.SetValue(-0.5 * degree);
    edit.FieldEdit(eTovFieldSign)->setFocus();
    QTest::keyClick(edit.FieldEdit(eTovFieldSign), Qt::Key_Up);
    EXPECT_NEAR(edit.GetValue(), 0.5 * degree, 1e-12);
    edit.FieldEdit(eTovFieldDegrees)->setText("91");
    CString message;
    EXPECT_EQ(edit.Validate(&message), CTovInputControl::eStateInvalid);
    EXPECT_NE(message, "");
    // What is no angle goes into no field, and a letter alone is no angle either.
    for (eTovAngleField const field : {eTovFieldSign, eTovFieldDegrees, eTovFieldSeconds}) {
        edit.SetValue(0.5);
        QString const shown = edit.valueText();
        edit.FieldEdit(field)->setFocus();
        QApplication::clipboard()->setText("48 12 30.5 S 99");
        QTest::keyClick(edit.FieldEdit(field), Qt::Key_V, Qt::ControlModifier);
        EXPECT_EQ(edit.valueText(), shown) << field;
    }
    edit.Empty();
    edit.FieldEdit(eTovFieldDegrees)->setFocus();
    QTest::keyClicks(edit.FieldEdit(eTovFieldDegrees), "s");
    EXPECT_EQ(edit.Validate(nullptr), CTovInputControl::eStateEmpty);
    QTest::keyClicks(edit.FieldEdit(eTovFieldDegrees), "481230");
    EXPECT_EQ(edit.FieldEdit(eTovFieldDegrees)->text(), "481") << "as many as are seen";
}

TEST(AngleEditWidget, TellsOneExactValueHoweverItChanges) {
    for (long const unit : {12L, 13L}) {
        AngleForm form(unit);
        std::vector<double> told;
        int done = 0;
        QObject::connect(&form.edit, &CTovEdit::valueChanged, [&](double value) {
            told.push_back(value);
            if (value > 2) form.edit.SetValue(2);  // ends
        });
        QObject::connect(&form.edit, &CTovEdit::editingDone, [&] { ++done; });
        auto const take = [&] { return std::exchange(told, {}); };
        double const value = 0.876543219876;
        form.edit.SetValue(value);
        EXPECT_EQ(take(), std::vector{value}) << unit;
        form.edit.SetValue(value);
        form.edit.SetUnit(unit == 12 ? 15 : 11);
        form.edit.SetUnit(static_cast<unsigned>(unit));
        form.edit.setFocus();
        form.after.setFocus();
        EXPECT_EQ(take(), std::vector<double>()) << "nothing has changed";
        EXPECT_EQ(done, 0);
        form.edit.SetValue(3);
        EXPECT_EQ(take(), (std::vector<double>{3, 2}));
        EXPECT_EQ(form.edit.GetValue(), 2);
        form.edit.Empty();
        EXPECT_EQ(take(), std::vector{0.0});
        form.edit.SetValue(value);
        take();
        form.edit.setFocus();
        form.Key(Qt::Key_Up);
        ASSERT_EQ(told.size(), 1u);
        EXPECT_EQ(take()[0], form.edit.GetValue());
        form.after.setFocus();
        EXPECT_EQ(done, 1) << "a step is a change";
    }
}

TEST(AngleEditWidget, HasWhatItGotBeforeItsWindow) {
    for (unsigned const unit : {11u, 12u, 15u}) {
        CTovEditLatitude edit;
        edit.SetUnit(unit);
        edit.SetRange(-0.95, 0.95);
        edit.SetValue(0.9123456789);
        edit.show();
        // And while it is split, no text but its mask.
        QString const text = edit.text();
        if (unit == 11) continue;
        edit.SetWindowText("5");
        edit.QLineEdit::setText("7");
        edit.clear();
        EXPECT_EQ(edit.text(), text);
        EXPECT_EQ(edit.GetValue(), 0.9123456789);
        edit.SetLimitToCircle(1);
        edit.DestroyWindow();
        EXPECT_EQ(edit.ResetAttributes(), 1);
        EXPECT_EQ(edit.FieldEdit(eTovFieldDegrees), nullptr);
        EXPECT_EQ(edit.GetLimitToCircle(), 0);
        EXPECT_EQ(edit.GetSignType(), eSignNorthSouth);
        edit.SetValue(0.5);
        edit.show();
        EXPECT_EQ(edit.GetValue(), 0.5);
        EXPECT_NE(edit.FieldEdit(eTovFieldSign), nullptr);
    }
}

TEST(AngleEditWidget, PastesAndTakesBackAllFieldsAtOnce) {
    AngleForm form(12);
    double const before = (1 + 2 / 60.0 + 3.123456789 / 3600) * degree;
    double const pasted = (12 + 34 / 60.0 + 56.5 / 3600) * degree;
    form.edit.SetValue(before);
    std::vector<double> told;
    QObject::connect(&form.edit, &CTovEdit::valueChanged, [&](double value) { told.push_back(value); });
    CTovEdit& minutes = form.Field(eTovFieldMinutes);
    minutes.setFocus();
    QApplication::clipboard()->setText(QString::fromUtf8("12°34'56.5\""));
    minutes.paste();
    QCoreApplication::processEvents();
    ASSERT_EQ(told.size(), 1u);
    EXPECT_NEAR(told[0], pasted, 1e-12);
    for (int i = 0; i < 3; ++i) {
        form.Key(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(form.edit.GetValue(), before);
        form.Key(Qt::Key_Y, Qt::ControlModifier);
        EXPECT_NEAR(form.edit.GetValue(), pasted, 1e-12);
    }
    EXPECT_EQ(told.size(), 7u);
    form.Key(Qt::Key_A, Qt::ControlModifier);
    form.Key(Qt::Key_X, Qt::ControlModifier);
    EXPECT_TRUE(QApplication::clipboard()->text().contains("56.5"));
    EXPECT_EQ(minutes.text(), "");
    // Whoever is told may change the unit in the middle of it, or delete the edit.
    QObject::connect(&form.edit, &CTovEdit::valueChanged, [&] { form.edit.SetUnit(13); });
    form.Key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(form.edit.FieldEdit(eTovFieldMinutes), nullptr);
    EXPECT_NEAR(form.edit.GetValue(), pasted, 1e-12);
}

TEST(AngleEditWidget, TellsWhetherItIsEmptyAndOfItsUnit) {
    struct Edit : CTovEditValueAngle {
        using CTovEditValueAngle::CTovEditValueAngle;
        void OnUnitChangedAngle() override {
            ++changes;
            CTovEditValueAngle::OnUnitChangedAngle();
        }
        void AddAdditionalEditFields(CTovEdit* edit, unsigned long style) override {
            CTovEditValueAngle::AddAdditionalEditFields(edit, style);
            edit->SetColorText(0x000000FF);
        }
        int changes = 0;
    };
    ValueForm<Edit> form(12);
    form.edit.SetUnit(15);
    form.edit.SetUnit(12);
    EXPECT_EQ(form.Field(eTovFieldMinutes).palette().color(QPalette::Text), QColor(Qt::red)) << "the host's";
    std::vector<bool> told;
    QObject::connect(&form.edit, &CTovEdit::emptyChanged, [&](bool empty) { told.push_back(empty); });
    form.edit.FieldEdit(eTovFieldDegrees)->setFocus();
    form.Type("51");
    form.Key(Qt::Key_Backspace);
    form.Key(Qt::Key_Backspace);
    form.Type("5");
    EXPECT_EQ(told, (std::vector{false, true, false}));
    form.settings.Unit(13);
    TovSendMessage(TovHandle(&form.edit), WM_TOV_UNIT_CHANGED_ANGLE);
    EXPECT_EQ(form.edit.changes, 1);
    EXPECT_NEAR(form.edit.GetValue(), 5 * degree, 1e-12) << "typed in fields, kept in one piece";
    EXPECT_NE(form.edit.text(), "");
}

// Whatever is done: text, number and marks go together, and what is valid lies within the range.
struct Quiet : CTovEditLatitude {
    void AddCurrentToLastItems() override {}
};

TEST(LatitudeEditWidget, StandsWhateverIsDone) {
    QDialog form;
    QVBoxLayout layout(&form);
    Quiet edit;
    QLineEdit other;
    layout.addWidget(&edit);
    layout.addWidget(&other);
    ASSERT_TRUE(Activate(form));
    edit.SetRange(-1, 1.2);
    double told = 0;
    QObject::connect(&edit, &CTovEdit::valueChanged, [&](double value) { told = value; });
    std::mt19937 random(11);
    auto const below = [&](std::size_t n) { return random() % n; };
    constexpr Qt::Key keys[] = {Qt::Key_Left,   Qt::Key_Right, Qt::Key_Home, Qt::Key_End, Qt::Key_Backspace,
                                Qt::Key_Delete, Qt::Key_Up,    Qt::Key_Down, Qt::Key_Tab, Qt::Key_Backtab};
    constexpr Qt::Key controls[] = {Qt::Key_A, Qt::Key_C, Qt::Key_X, Qt::Key_V, Qt::Key_Z, Qt::Key_Y};
    constexpr char const* texts[] = {"12°34'56.7\"", "-5", "1e3", "0.5 rad", "12,5",
                                     "９９ S",       "北", "-",   "",        "59.99999999"};
    constexpr unsigned units[] = {11, 12, 13, 15, 16, 18};
    for (int i = 0; i < 6000; ++i) {
        QWidget* const focus = QApplication::focusWidget();
        bool const inside = focus != nullptr && edit.ControlOrChildHasFocus() != 0;
        switch (inside ? below(12) : 9) {
            default:
                QTest::keyClick(focus, "0123456789-+.,e ':nswN"[below(22)]);
                break;
            case 4:
                QTest::keyClick(focus, keys[below(std::size(keys))]);
                break;
            case 5:
                QTest::keyClick(focus, controls[below(std::size(controls))], Qt::ControlModifier);
                break;
            case 6:
                QApplication::clipboard()->setText(QString::fromUtf8(texts[below(std::size(texts))]));
                break;
            case 7: {
                Commit(*focus, texts[below(std::size(texts))]);
                break;
            }
            case 8:
                below(2) != 0 ? other.setFocus() : edit.setVisible(!edit.isVisible());
                break;
            case 9:
                edit.show();
                edit.setFocus();
                break;
            case 10:
                edit.SetUnit(units[below(std::size(units))]);
                break;
            case 11:
                below(2) != 0 ? edit.SetSecOnly(static_cast<int>(below(2)))
                              : edit.SetSignType(static_cast<eSignType>(below(3)));
                break;
        }
        if (i % 7 == 0) QCoreApplication::processEvents();
        bool const isSplit = edit.FieldEdit(eTovFieldDegrees) != nullptr;
        ASSERT_TRUE(!isSplit || edit.text() == TovQString(edit.Mask().MaskText())) << i;
        double const value = edit.GetValue();
        ASSERT_EQ(value, told) << i;
        CString message;
        if (!edit.isVisible()) continue;  // nothing is wrong with what nobody sees
        if (edit.Validate(&message) == CTovInputControl::eStateValid) {
            ASSERT_TRUE(value >= -1 && value <= 1.2) << i << ' ' << value;
        } else {
            ASSERT_TRUE(!message.empty() || edit.IsEmpty() != 0) << i;
        }
    }
}

TEST(DistanceEditWidget, ReadsTextsWithAUnit) {
    struct {
        long unit;
        char const* text;
        char const* shown;  // null where it is refused
    } const cases[] = {
        {21, "12.5 ft", "3.81"},        {21, "12.5m", "12.5"},    {21, "1,250.5 mm", "1.2505"},
        {21, "-3937 US ft", "-1200.0"}, {21, "2 千米", "2000.0"}, {23, "3.048 m", "10.0"},
        {22, "12.5 fts", "12.5"},       {21, "12.5", "12.5"},     {21, "12.5 kg", nullptr},
        {21, "12.5 m2", nullptr},       {21, "12' 6\"", nullptr}, {21, "12.5.6", nullptr},
        {21, "0x10", nullptr},          {11, "100 gon", "90.0"},  {11, "48\u00b030'", "48.5"},
        {11, "48 30 S", "-48.5"},       {11, "12.5 ft", nullptr}, {18, "180\u00b0", "3.141593"},
        {11, "12.5e1", "125.0"},
    };
    ValueForm<CTovEditValueDistance, CTovUnitSettingsDistance> distance(21);
    AngleForm angle(11);
    auto const paste = [](auto& form, auto const& c) {
        ASSERT_TRUE(Activate(form));
        form.edit.SetUnit(static_cast<unsigned>(c.unit));
        form.edit.Empty();
        form.edit.setFocus();
        QApplication::clipboard()->setText(c.text);
        form.Key(Qt::Key_V, Qt::ControlModifier);
        form.after.setFocus();
        EXPECT_EQ(form.edit.text(), QString(c.shown)) << c.unit << ' ' << c.text;
        double const value = form.edit.GetValue();
        form.edit.SetUnit(99999);
        EXPECT_EQ(form.edit.GetValue(), value);
        EXPECT_EQ(form.settings.Unit(), c.unit);
    };
    for (auto const& c : cases)
        c.unit > 20 ? paste(distance, c) : paste(angle, c);
}

TEST(DistanceEditWidget, HidesItsLabelWithItself) {
    QWidget form;
    QLabel label(&form);
    CTovEditValueDistance edit(&form);
    edit.UnitAbbreviation(TovHandle(&label));
    edit.hide();
    form.show();
    EXPECT_FALSE(label.isVisible());
    edit.show();
    EXPECT_TRUE(label.isVisible());
    form.hide();
    edit.hide();
    form.show();
    EXPECT_FALSE(label.isVisible());
}

TEST(DistanceEditWidget, FollowsTheUnitOfItsSettings) {
    CTovUnitSettingsDistance settings;
    settings.Unit(21);
    CTovEditValueDistance edit(&settings);
    edit.show();
    edit.SetValue(1234.5678);
    EXPECT_EQ(edit.GetDouble(), 1234.5678);
    settings.Unit(22);
    TovSendMessage(TovHandle(&edit), WM_TOV_UNIT_CHANGED_DISTANCE);
    EXPECT_NEAR(edit.GetDouble(), 1234.5678 / 0.3048, 0.01);
    EXPECT_EQ(edit.GetValue(), 1234.5678);
    EXPECT_FALSE(edit.valueText().isEmpty());
}

}  // namespace
}  // namespace tov
