// Edits as their users meet them: keys, the mouse, the clipboard, input methods, the focus.
#include "support/widgets.h"

#include <tov310/menu.h>
#include <tov310/menu_popup.h>
#include <tov310/messages.h>
#include <tov310/number_edits.h>
#include <tov310/qt_values.h>
#include <tov310/string_edits.h>
#include <tov310/styles.h>

#include <gtest/gtest.h>

#include <memory>
#include <random>

namespace tov {
namespace {

// A form with one edit, and another to go to.
template <class Edit>
struct EditForm : QWidget {
    EditForm() {
        auto* const layout = new QVBoxLayout(this);
        layout->addWidget(&edit);
        layout->addWidget(&other);
        resize(300, 120);
        show();
        activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(this));
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
    QInputMethodEvent commit;
    commit.setCommitString(QString::fromUtf8("中x国b"));
    QCoreApplication::sendEvent(&form.edit, &commit);
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

TEST(EditWidget, PaintsInTheColoursOfItsState) {
    TextForm form;
    auto const base = [&] { return form.edit.palette().color(QPalette::Base); };
    QColor const usual = base();
    form.edit.SetColorBk(0x00FFEEDD);
    EXPECT_EQ(base(), QColor(0xDD, 0xEE, 0xFF));
    form.edit.SetColorBkReadOnly(0x000000FF);
    form.edit.ReadOnlyKeepsFocus(1);
    form.edit.SetReadOnlyMode(1);
    EXPECT_EQ(base(), QColor(0xFF, 0, 0));
    form.edit.SetReadOnlyMode(0);
    form.edit.SetColorBk(tovPlatformColor);
    EXPECT_EQ(base(), usual);
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

TEST(NumberEditWidget, IsNotChangedByLooking) {
    NumberForm form;
    form.edit.SetInputFormat(6);
    form.edit.SetDisplayFormat("%.2f m");
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> numbers(-1e6, 1e6);
    for (int i = 0; i < 200; ++i) {
        double const value = numbers(random);
        form.edit.SetDouble(value);
        form.other.setFocus();
        ASSERT_TRUE(form.edit.text().endsWith(" m"));
        form.edit.setFocus();
        ASSERT_FALSE(form.edit.text().endsWith("m"));
        ASSERT_EQ(form.edit.Validate(nullptr), CTovInputControl::eStateValid);
        form.other.setFocus();
        ASSERT_EQ(form.edit.GetDouble(), value);
    }
}

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
    QTest::mouseClick(form.windowHandle(), Qt::LeftButton, {}, spin.mapTo(&form, QPoint(4, 2)));
    EXPECT_EQ(form.edit.GetLong(), 5);
    EXPECT_TRUE(form.edit.hasFocus());
    QTest::mouseClick(form.windowHandle(), Qt::LeftButton, {}, spin.mapTo(&form, QPoint(4, 2)));
    EXPECT_EQ(form.edit.GetLong(), 0) << "round the range";
    QWheelEvent wheel({4, 2}, spin.mapToGlobal(QPointF(4, 2)), {}, {0, 240}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&spin, &wheel);
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
    QTest::mouseClick(form.windowHandle(), Qt::LeftButton, {}, form.edit.mapTo(&form, place.center()));
    EXPECT_EQ(form.edit.text(), "1234.5");
    EXPECT_EQ(form.edit.cursorPosition(), 2);
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
    QTest::mouseClick(form.windowHandle(), Qt::LeftButton, {}, button.mapTo(&form, button.rect().center()));
    EXPECT_EQ(form.edit.clicked, 1);
    form.edit.setFixedWidth(150);
    QCoreApplication::processEvents();
    EXPECT_EQ(button.geometry().right(), 149);
    form.edit.DeleteEditButton();
    EXPECT_EQ(form.edit.GetMinWidth(), 0);
}

}  // namespace
}  // namespace tov
