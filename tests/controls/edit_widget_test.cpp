// Edits as their users meet them: keys, the mouse, the clipboard, input methods, the focus.
#include "support/comma_locale.h"
#include "support/widgets.h"

#include <tov310/menu.h>
#include <tov310/menu_popup.h>
#include <tov310/messages.h>
#include <tov310/number_edits.h>
#include <tov310/qt_values.h>
#include <tov310/string_edits.h>
#include <tov310/styles.h>
#include <tov310/value_edits.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace tov {
namespace {

using test::Activate;
using test::ClickOn;
using test::Commit;

// A form with one edit, and another to go to.
template <class Edit>
struct EditForm : QWidget {
    EditForm() {
        auto* const layout = new QVBoxLayout(this);
        layout->addWidget(&edit);
        layout->addWidget(&other);
        resize(300, 120);
        EXPECT_TRUE(Activate(*this));
        edit.setFocus();
    }
    void Type(char const* text) { QTest::keyClicks(&edit, text); }
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(&edit, key, modifiers); }
    void Control(Qt::Key key) { Key(key, Qt::ControlModifier); }

    Edit edit;
    QLineEdit other;
};

using TextForm = EditForm<CTovEditString>;

TEST(EditWidget, FiltersWhateverWayTextComesIn) {
    TextForm form;
    CString const allowed = "ABC中";
    CString characters = allowed;
    form.edit.SetAllowedChars(eAllowedCharsCustom, &characters);
    form.edit.SetConversion(tovConvertToUpper);
    form.edit.SetMaxChars(5);
    form.Type("axbyc");
    EXPECT_EQ(form.edit.text(), "ABC");
    QApplication::clipboard()->setText("zz中a\nb中c");
    form.Control(Qt::Key_V);
    EXPECT_EQ(form.edit.text(), QString::fromUtf8("ABC中A")) << "cut where it is full, by characters";
    form.Type("a");
    EXPECT_EQ(form.edit.text(), QString::fromUtf8("ABC中A"));
    form.Control(Qt::Key_A);
    Commit(form.edit, "中x国b");
    EXPECT_EQ(form.edit.text(), QString::fromUtf8("中B"));
    EXPECT_EQ(form.edit.GetRawString(), "中B");
    EXPECT_EQ(form.edit.GetChangedByUser(), 1);
}

TEST(EditWidget, UndoesWithTheSelectionThatWasThere) {
    TextForm form;
    form.Type("one two");
    form.edit.setSelection(4, 3);
    form.Type("3");
    EXPECT_EQ(form.edit.text(), "one 3");
    form.Control(Qt::Key_Z);
    EXPECT_EQ(form.edit.text(), "one two");
    form.Control(Qt::Key_Y);
    EXPECT_EQ(form.edit.text(), "one 3");
    form.edit.SetString("new");
    form.Control(Qt::Key_Z);
    EXPECT_EQ(form.edit.text(), "one 3");
    form.Control(Qt::Key_A);
    form.Control(Qt::Key_X);
    EXPECT_EQ(form.edit.text(), "");
    EXPECT_EQ(QApplication::clipboard()->text(), "one 3");
    form.Control(Qt::Key_F7);
    EXPECT_EQ(form.edit.text(), "one 3") << "F7 pastes as V does";
    form.Key(Qt::Key_Backspace);
    form.Key(Qt::Key_Home);
    form.Key(Qt::Key_Delete);
    EXPECT_EQ(form.edit.text(), "ne ");
}

TEST(EditWidget, TrimsAndTellsWhenTheFocusLeaves) {
    TextForm form;
    int done = 0;
    QObject::connect(&form.edit, &CTovEdit::editingDone, [&] { ++done; });
    form.Type("  x ");
    form.other.setFocus();
    EXPECT_EQ(form.edit.text(), "x");
    EXPECT_EQ(done, 1);
    form.edit.setFocus();
    form.other.setFocus();
    EXPECT_EQ(done, 1) << "nothing was changed";
}

TEST(EditWidget, TellsWhatIsWrongWhileTheUserTypes) {
    TextForm form;
    std::vector<std::pair<int, QString>> told;
    QObject::connect(&form.edit, &CTovEdit::validityChanged,
                     [&](int state, QString const& message) { told.emplace_back(state, message); });
    form.edit.SetMinChars(2);
    form.Type("a");
    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0].first, CTovInputControl::eStateInvalid);
    EXPECT_EQ(told[0].second, QString::fromUtf8("字段包含 1 字符， 最小字符数为2字符"));
    EXPECT_EQ(form.edit.accessibleDescription(), told[0].second);
    form.Type("b");
    ASSERT_EQ(told.size(), 2u);
    EXPECT_EQ(told[1].first, CTovInputControl::eStateValid);
}

TEST(EditWidget, IsDisabledWhenReadOnlyUnlessTheHostWantsTheFocus) {
    TextForm form;
    form.edit.SetString("fixed");
    form.edit.CreateSpinButton();
    form.edit.SetReadOnlyMode(1);
    EXPECT_FALSE(form.edit.isEnabled());
    EXPECT_TRUE(form.edit.isReadOnly());
    EXPECT_FALSE(form.edit.GetEditSpin()->isEnabled());
    form.edit.SetReadOnlyMode(0);
    EXPECT_TRUE(form.edit.isEnabled());
    form.edit.ReadOnlyKeepsFocus(1);
    form.edit.SetReadOnlyMode(1);
    EXPECT_TRUE(form.edit.isEnabled());
    form.edit.setFocus();
    form.Type("x");
    EXPECT_EQ(form.edit.text(), "fixed");
    form.Control(Qt::Key_A);
    form.Control(Qt::Key_C);
    EXPECT_EQ(QApplication::clipboard()->text(), "fixed");
}

TEST(EditWidget, KeepsItsContentAcrossItsBirth) {
    CTovEditFloating edit;
    edit.SetInputFormat(2);
    double const value = 12.3456789;
    edit.SetDouble(value);
    edit.show();
    EXPECT_EQ(edit.text(), "12.35");
    EXPECT_EQ(edit.GetDouble(), value);
    CTovEditString text;
    text.SetString("before");
    text.show();
    EXPECT_EQ(text.GetRawString(), "before");
}

using NumberForm = EditForm<CTovEditFloating>;

TEST(NumberEditWidget, SteppsByKeysArrowsAndWheel) {
    EditForm<CTovEditInteger> form;
    form.edit.SetRange(0, 5);
    form.edit.SetLong(3);
    std::vector<double> told;
    QObject::connect(&form.edit, &CTovEdit::valueChanged, [&](double value) { told.push_back(value); });
    form.Key(Qt::Key_Up);
    EXPECT_EQ(form.edit.GetLong(), 4) << "up without a spin";
    EXPECT_EQ(told.back(), 4);
    EXPECT_EQ(form.edit.selectedText(), "4");
    form.edit.CreateSpinButton();
    CTovEditSpin& spin = *form.edit.GetEditSpin();
    EXPECT_GE(spin.x() + spin.width(), form.edit.width() - 4);
    ClickOn(spin, {4, 2});
    EXPECT_EQ(form.edit.GetLong(), 5);
    EXPECT_TRUE(form.edit.hasFocus());
    ClickOn(spin, {4, 2});
    EXPECT_EQ(form.edit.GetLong(), 0) << "round the range";
    test::Wheel(spin, 240);
    EXPECT_EQ(form.edit.GetLong(), 2);
    QTest::mousePress(form.windowHandle(), Qt::LeftButton, {}, spin.mapTo(&form, QPoint(4, 2)));
    EXPECT_TRUE(QTest::qWaitFor([&] { return form.edit.GetLong() == 5; }, 2000)) << "again while it lasts";
    QTest::mouseRelease(form.windowHandle(), Qt::LeftButton, {}, spin.mapTo(&form, QPoint(4, 2)));
}

TEST(NumberEditWidget, PutsTheCaretWhereThePressMeansIt) {
    NumberForm form;
    form.edit.SetInputFormat(1);
    form.edit.SetDisplayFormat("about %.1f m");
    form.edit.SetDouble(1234.5);
    form.other.setFocus();
    ASSERT_EQ(form.edit.text(), "about 1234.5 m");
    // Behind the 2 as it is shown without the focus.
    form.edit.setCursorPosition(8);
    QRect const place = form.edit.inputMethodQuery(Qt::ImCursorRectangle).toRect();
    ClickOn(form.edit, place.center());
    EXPECT_EQ(form.edit.text(), "1234.5");
    EXPECT_EQ(form.edit.cursorPosition(), 2);
}

TEST(NumberEditWidget, ReadsNumbersAsOthersWriteThem) {
    NumberForm form;
    struct {
        char const* text;
        double number;
    } const pasted[] = {{"12,5", 12.5},      {"\u22125.5", -5.5}, {"１２．５", 12.5},
                        {"-1.5e3 m", -1500}, {"1 234.5", 1234.5}, {"1,234,567", 1234567}};
    for (auto const& [text, number] : pasted) {
        for (bool const byToolkit : {false, true}) {
            form.edit.Empty();
            QApplication::clipboard()->setText(QString::fromUtf8(text));
            byToolkit ? form.edit.paste() : form.edit.Paste();
            EXPECT_EQ(form.edit.GetDouble(), number) << text << byToolkit;
        }
    }
    form.edit.Empty();
    form.Type("-2,25");
    EXPECT_EQ(form.edit.GetDouble(), -2.25);
}

TEST(NumberEditWidget, TakesAndGivesDecimalCommas) {
    test::CommaLocale const locale;
    if (!locale.IsThere()) GTEST_SKIP() << "no locale with a decimal comma";
    NumberForm form;
    form.edit.SetRange(0, 100);
    form.edit.RemoveAllLastItems();
    form.edit.SetSpinDeltaFloating(0.5);
    form.edit.SetDisplayFormat("%.2f m");
    for (char const* const typed : {"12,5", "12.5"}) {
        form.edit.Empty();
        form.edit.setFocus();
        form.Type(typed);
        EXPECT_EQ(form.edit.GetDouble(), 12.5);
        form.other.setFocus();
        EXPECT_EQ(form.edit.text(), "12,50 m");
        EXPECT_EQ(form.edit.GetLastItem(0), "12,5");
        EXPECT_EQ(form.edit.GetAllLastItems().size(), 1u);
    }
    form.edit.setFocus();
    form.Key(Qt::Key_Up);
    EXPECT_EQ(form.edit.text(), "13,0");
    form.edit.Text().DoCommand(tovFirstInsertCommand);
    EXPECT_EQ(form.edit.GetDouble(), 12.5);
    form.Control(Qt::Key_A);
    QApplication::clipboard()->setText("1.234,5");
    form.Control(Qt::Key_V);
    EXPECT_EQ(form.edit.text(), "1234,5");
    CString message;
    EXPECT_EQ(form.edit.Validate(&message), CTovInputControl::eStateInvalid);
    EXPECT_EQ(message, "有效的范围是从 0,00 m 到 100,00 m");
    std::setlocale(LC_NUMERIC, "C");
    EXPECT_EQ(form.edit.GetDouble(), 1234.5) << "whatever becomes of the process";
}

TEST(NumberEditWidget, TellsWhatIsNewOnce) {
    NumberForm form;
    CTovEditFloating twin;
    std::vector<double> told;
    QObject::connect(&form.edit, &CTovEdit::valueChanged, &twin,
                     [&](double value) { twin.SetDouble(value); });
    QObject::connect(&twin, &CTovEdit::valueChanged, &form.edit, [&](double value) {
        told.push_back(value);
        form.edit.SetDouble(value);
    });
    form.edit.SetInputFormat(2);
    form.edit.SetDouble(1.23456);
    form.edit.SetDouble(1.23456);
    form.edit.Empty();
    form.edit.Empty();
    EXPECT_EQ(told, (std::vector{1.23456, 0.0}));
    QObject::disconnect(&form.edit, &CTovEdit::valueChanged, nullptr, nullptr);
    form.edit.SetDouble(1.23456);
    form.Type("7");
    QObject::connect(&form.edit, &CTovEdit::valueChanged, [&](double value) { told.push_back(value); });
    told.clear();
    form.Control(Qt::Key_Z);
    EXPECT_EQ(told, std::vector{1.23456}) << "not as it is shown";
}

TEST(NumberEditWidget, MayBeDeletedByWhomItTells) {
    using Signal = std::function<void(CTovEditInteger&, std::function<void()>)>;
    Signal const signals_[] = {
        [](CTovEditInteger& edit, auto call) { QObject::connect(&edit, &CTovEdit::valueChanged, call); },
        [](CTovEditInteger& edit, auto call) { QObject::connect(&edit, &CTovEdit::validityChanged, call); },
        [](CTovEditInteger& edit, auto call) { QObject::connect(&edit, &CTovEdit::emptyChanged, call); },
        [](CTovEditInteger& edit, auto call) { QObject::connect(&edit, &CTovEdit::editingDone, call); }};
    std::function<void(CTovEditInteger&, QWidget&)> const acts[] = {
        [](CTovEditInteger& edit, QWidget&) { QTest::keyClick(&edit, Qt::Key_7); },
        [](CTovEditInteger& edit, QWidget&) { QTest::keyClick(&edit, Qt::Key_Up); },
        [](CTovEditInteger& edit, QWidget& other) {
            edit.SetRange(100, 200);
            other.setFocus();
        },
        [](CTovEditInteger& edit, QWidget&) { edit.Empty(); },
        [](CTovEditInteger& edit, QWidget&) { test::Wheel(*edit.GetEditSpin(), 360); }};
    int deleted = 0;
    for (auto const& connect : signals_) {
        for (auto const& act : acts) {
            EditForm<QLineEdit> form;
            auto* const edit = std::make_unique<CTovEditInteger>(&form).release();
            edit->show();
            edit->CreateSpinButton();
            edit->setFocus();
            edit->SetLong(5);
            QPointer<QWidget> alive(edit);
            QTest::keyClicks(edit, "6");
            connect(*edit, [edit] { delete edit; });
            act(*edit, form.other);
            deleted += !alive;
        }
    }
    EXPECT_GE(deleted, 6);
    EditForm<CTovEditInteger> form;
    form.edit.CreateSpinButton();
    form.edit.CreateEditButton("...");
    delete form.edit.GetEditSpin();
    delete form.edit.GetEditButton();
    form.edit.DeleteSpinButton();
    form.edit.DeleteEditButton();
    EXPECT_EQ(form.edit.GetEditSpin(), nullptr);
    EXPECT_EQ(form.edit.GetMinWidth(), 0);
}

TEST(NumberEditWidget, StepsByWhoeverHasTheFocus) {
    struct Steps : CTovEditInteger {
        void OnSpinDeltapos(int up, int delta) override { told.emplace_back(up != 0, delta); }
        std::vector<std::pair<bool, int>> told;
    };
    EditForm<Steps> form;
    form.edit.SetSpinDelta(3);
    form.edit.CreateSpinButton();
    CTovEditSpin& spin = *form.edit.GetEditSpin();
    form.Key(Qt::Key_Up);
    form.Key(Qt::Key_Down);
    test::Wheel(spin, 120);
    form.other.setFocus();
    test::Wheel(spin, 120);
    EXPECT_EQ(form.edit.told, (std::vector<std::pair<bool, int>>{{true, -3}, {false, 3}, {true, -3}}));
}

TEST(EditWidget, KeepsTheFocusWhileAMenuIsOpen) {
    NumberForm form;
    form.edit.SetDisplayFormat("%.1f m");
    int done = 0;
    QObject::connect(&form.edit, &CTovEdit::editingDone, [&] { ++done; });
    form.Type("12");
    form.edit.setSelection(0, 1);
    for (QEvent::Type const type : {QEvent::FocusOut, QEvent::FocusIn}) {
        QFocusEvent event(type, Qt::PopupFocusReason);
        QCoreApplication::sendEvent(&form.edit, &event);
        EXPECT_EQ(form.edit.text(), "12");
        EXPECT_EQ(form.edit.selectedText(), "1");
    }
    EXPECT_EQ(done, 0);
    form.other.setFocus();
    EXPECT_EQ(form.edit.text(), "12.0 m");
    EXPECT_EQ(done, 1);
}

TEST(EditWidget, LeavesToTheToolkitWhatAPressSelects) {
    TextForm form;
    form.edit.setText("one two three");
    auto const at = [&](int position) {
        form.edit.setCursorPosition(position);
        return form.edit.mapTo(&form, form.edit.inputMethodQuery(Qt::ImCursorRectangle).toRect().center());
    };
    QPoint const two = at(5);
    QTest::mouseDClick(form.windowHandle(), Qt::LeftButton, {}, two);
    EXPECT_EQ(form.edit.selectedText().trimmed(), "two");
    QTest::mousePress(form.windowHandle(), Qt::LeftButton, {}, two);
    EXPECT_EQ(form.edit.selectedText(), "one two three") << "a third click";
    QTest::mouseRelease(form.windowHandle(), Qt::LeftButton, {}, two);
    // A press of another button brings the focus and means no place.
    form.other.setFocus();
    QTest::mousePress(form.windowHandle(), Qt::MiddleButton, {}, two);
    QTest::mouseRelease(form.windowHandle(), Qt::MiddleButton, {}, two);
    form.edit.setFocus();
    form.edit.setCursorPosition(0);
    form.other.setFocus();
    form.edit.setFocus();
    EXPECT_EQ(form.edit.cursorPosition(), 0);
}

TEST(NumberEditWidget, IsSelectedByItsMnemonic) {
    NumberForm form;
    form.edit.SetDisplayFormat("%.1f m");
    form.edit.SetDouble(7);
    QLabel label("&Number", &form);
    label.setBuddy(&form.edit);
    label.show();
    form.other.setFocus();
    QTest::keyClick(&form, Qt::Key_N, Qt::AltModifier);
    EXPECT_TRUE(form.edit.hasFocus());
    EXPECT_FALSE(form.edit.selectedText().isEmpty());
    EXPECT_EQ(form.edit.selectedText(), form.edit.text());
}

TEST(EditWidget, FollowsReadOnlyInWhateverWayItIsSet) {
    CTovEditString born;
    born.SetReadOnlyMode(1);
    born.show();
    EXPECT_TRUE(born.isReadOnly());
    EXPECT_FALSE(born.isEnabled());
    born.ReadOnlyKeepsFocus(1);
    EXPECT_TRUE(born.isEnabled());
    born.ReadOnlyKeepsFocus(0);
    EXPECT_FALSE(born.isEnabled());
    born.QLineEdit::setReadOnly(false);
    EXPECT_EQ(born.GetReadOnlyMode(), 0);
    EXPECT_TRUE(born.isEnabled());
    born.QLineEdit::setReadOnly(true);
    EXPECT_EQ(born.GetReadOnlyMode(), 1);
    born.SetReadOnlyMode(0);
    born.setEnabled(false);
    born.SetReadOnlyMode(1);
    born.SetReadOnlyMode(0);
    EXPECT_FALSE(born.isEnabled()) << "disabled by the host";
}

TEST(EditWidget, KeepsWhatTheHostGaveItsWidget) {
    TextForm form;
    QPalette host;
    host.setColor(QPalette::Base, Qt::yellow);
    host.setColor(QPalette::Text, Qt::blue);
    form.edit.setPalette(host);
    form.edit.SetReadOnlyMode(1);
    form.edit.SetReadOnlyMode(0);
    auto const color = [&](QPalette::ColorRole role) { return form.edit.palette().color(role); };
    EXPECT_EQ(color(QPalette::Base), QColor(Qt::yellow));
    form.edit.SetColorBk(0x000000FF);
    EXPECT_EQ(color(QPalette::Base), QColor(255, 0, 0));
    EXPECT_EQ(color(QPalette::Text), QColor(Qt::blue));
    form.edit.SetColorBkReadOnly(0x00FFEEDD);
    form.edit.ReadOnlyKeepsFocus(1);
    form.edit.SetReadOnlyMode(1);
    EXPECT_EQ(color(QPalette::Base), QColor(0xDD, 0xEE, 0xFF));
    form.edit.SetReadOnlyMode(0);
    form.edit.SetColorBk(tovPlatformColor);
    EXPECT_EQ(color(QPalette::Base), QColor(Qt::yellow));

    form.edit.setAccessibleDescription("a name");
    form.edit.SetEmptyAllowed(0);
    form.edit.setFocus();
    form.Type("a");
    EXPECT_EQ(form.edit.accessibleDescription(), "a name");
    form.Key(Qt::Key_Backspace);
    EXPECT_EQ(form.edit.accessibleDescription(), QString::fromUtf8("字段不能为空"));
    form.Type("b");
    EXPECT_EQ(form.edit.accessibleDescription(), "a name");
}

TEST(EditWidget, IsReadAsTheTextThatItShows) {
    EditForm<CTovEditInteger> form;
    form.edit.SetRange(0, 500);
    form.edit.setAccessibleName("Count");
    QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(&form.edit);
    ASSERT_NE(seen, nullptr);
    EXPECT_EQ(seen->role(), QAccessible::EditableText);
    form.edit.CreateSpinButton();
    EXPECT_EQ(seen->role(), QAccessible::SpinBox);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(form.edit.GetEditSpin())->text(QAccessible::Name),
              "Count");
    QAccessibleTextInterface* const text = seen->textInterface();
    QAccessibleEditableTextInterface* const editable = seen->editableTextInterface();
    ASSERT_TRUE(text != nullptr && editable != nullptr);
    editable->replaceText(0, text->characterCount(), "1x2");
    EXPECT_EQ(form.edit.GetLong(), 12) << "filtered";
    EXPECT_EQ(seen->text(QAccessible::Value), "12");
    text->setSelection(0, 1, 2);
    int start = 0;
    int end = 0;
    text->selection(0, &start, &end);
    EXPECT_EQ(text->text(start, end), "2");
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(text->offsetAtPoint(text->characterRect(i).center() - QPoint(2, 0)), i);
    form.edit.QLineEdit::setReadOnly(true);
    EXPECT_EQ(seen->editableTextInterface(), nullptr);
}

template <class Edit>
void ExpectSpunNumber(Edit& edit, QVariantList const& range, QVariant const& step, QVariant const& next) {
    QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(&edit);
    EXPECT_EQ(seen->valueInterface(), nullptr) << "without a spin it is a text";
    edit.CreateSpinButton();
    QAccessibleValueInterface* const number = seen->valueInterface();
    ASSERT_NE(number, nullptr);
    EXPECT_EQ((QVariantList{number->minimumValue(), number->maximumValue()}), range);
    EXPECT_EQ(number->minimumStepSize(), step);
    number->setCurrentValue(next);
    EXPECT_EQ(number->currentValue(), next);
    EXPECT_EQ(edit.GetChangedByUser(), 1);
    edit.ReadOnlyKeepsFocus(1);
    edit.SetReadOnlyMode(1);
    number->setCurrentValue(range[0]);
    EXPECT_EQ(number->currentValue(), next);
}

TEST(NumberEditWidget, IsReadAsTheNumberOfItsSpin) {
    EditForm<CTovEditInteger> integer;
    integer.edit.SetRange(-5, 500);
    integer.edit.SetSpinDelta(2);
    ExpectSpunNumber(integer.edit, {-5, 500}, 2, 12);
    NumberForm floating;
    floating.edit.SetRange(-1, 1);
    ExpectSpunNumber(floating.edit, {-1.0, 1.0}, 0.1, 0.123456789012);
    EditForm<CTovEditValueDistance> distance;
    distance.edit.SetUnit(23);
    distance.edit.SetRange(0, 3.048);
    ExpectSpunNumber(distance.edit, {0.0, 10.0}, 1.0, 5.5);
    EXPECT_EQ(distance.edit.GetValue(), 5.5 * 0.3048);
}

TEST(EditWidget, OffersNothingOfASecret) {
    TextForm form;
    form.edit.setEchoMode(QLineEdit::Password);
    form.Type("word");
    form.Control(Qt::Key_A);
    EXPECT_EQ(form.edit.CanCopy(), 0);
    form.other.setFocus();
    EXPECT_NE(form.edit.GetLastItem(0), "word");
    CTovEditString cell;
    EXPECT_EQ(cell.CreateInline(ES_PASSWORD | ES_READONLY, {5, 5, 60, 25}, TovWnd(&form), 77, nullptr), 1);
    EXPECT_EQ(cell.GetReadOnlyMode(), 1);
    EXPECT_EQ(cell.Text().IsPassword(), 1);
    EXPECT_TRUE(cell.isVisible());
}

TEST(EditWidget, StandsWithItsButtonInItsOwnRectangle) {
    struct WithButton : CTovEdit {
        void OnButtonClicked() override { ++clicked; }
        int clicked = 0;
    };
    EditForm<WithButton> form;
    form.edit.CreateEditButton("...");
    CTovEditButton& button = *form.edit.GetEditButton();
    EXPECT_EQ(button.geometry().right(), form.edit.width() - 1);
    EXPECT_EQ(form.edit.GetMinWidth(), button.width());
    EXPECT_EQ(TovWnd(&button)->GetParent(), &form.edit);
    ClickOn(button);
    EXPECT_EQ(form.edit.clicked, 1);
    form.edit.setFixedWidth(150);
    QCoreApplication::processEvents();
    EXPECT_EQ(button.geometry().right(), 149);
    form.edit.DeleteEditButton();
    EXPECT_EQ(form.edit.GetMinWidth(), 0);
}

}  // namespace
}  // namespace tov
