// Controls of plain Qt do the same with hooks on all of them as without.
#include "support/widgets.h"

#include <tov310/input_control_container.h>
#include <tov310/wnd_on.h>

#include <gtest/gtest.h>

namespace tov {
namespace {

struct Controls : QDialog {
    Controls() {
        auto* const layout = new QVBoxLayout(this);
        combo.addItems({"one", "two", "three"});
        editable.setEditable(true);
        editable.addItems({"alpha", "beta"});
        completed.setCompleter(new QCompleter(QStringList{"berlin", "bergen", "bonn"}, this));
        date.setDateTime(QDateTime(QDate(2026, 11, 21), QTime(12, 30)));
        list.addItems({"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l"});
        list.setFixedHeight(60);
        auto* const top = new QTreeWidgetItem(&tree, {"top"});
        new QTreeWidgetItem(top, {"below"});
        tree.setFixedHeight(70);
        text.setFixedHeight(50);
        for (QWidget* const w : std::initializer_list<QWidget*>{&combo, &editable, &completed, &date, &spin,
                                                                &list, &tree, &text, &slider, &bar, &tabs})
            layout->addWidget(w);
        tabs.addTab("1");
        tabs.addTab("2");
        show();
        activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(this));
    }
    void Click(QWidget& target, QPoint place) {
        QTest::mouseClick(windowHandle(), Qt::LeftButton, {}, target.mapTo(this, place));
    }
    QPoint SubControl(QStyle::SubControl control, QStyle::ComplexControl kind, QStyleOptionComplex& option,
                      QWidget& of) {
        option.initFrom(&of);
        option.subControls = QStyle::SC_All;
        return of.style()->subControlRect(kind, &option, control, &of).center();
    }

    // Works with all of them and says what came of it.
    QStringList Use() {
        Click(combo, combo.rect().center());
        QTest::keyClick(combo.view(), Qt::Key_Down);
        QTest::keyClick(combo.view(), Qt::Key_Return);
        editable.setFocus();
        QTest::keyClicks(&editable, "x");
        completed.setFocus();
        QTest::keyClicks(&completed, "be");
        QWidget* const popup = completed.completer()->popup();
        bool const offers = QTest::qWaitFor([&] { return popup->isVisible(); }, 2000);
        QTest::keyClick(popup, Qt::Key_Down);
        QTest::keyClick(popup, Qt::Key_Return);
        Click(spin, spin.rect().center());
        QStyleOptionSpinBox spinOption;
        spinOption.buttonSymbols = QAbstractSpinBox::UpDownArrows;
        spinOption.frame = true;
        spinOption.stepEnabled = QAbstractSpinBox::StepUpEnabled;
        Click(spin, SubControl(QStyle::SC_SpinBoxUp, QStyle::CC_SpinBox, spinOption, spin));
        QTest::keyClick(&spin, Qt::Key_PageUp);
        date.setFocus();
        date.setSelectedSection(QDateTimeEdit::MonthSection);
        QTest::keyClick(&date, Qt::Key_Down);
        Click(*list.viewport(), list.visualItemRect(list.item(1)).center());
        QTest::keyClick(&list, Qt::Key_Down, Qt::ShiftModifier);
        QScrollBar& listBar = *list.verticalScrollBar();
        Click(listBar, {listBar.width() / 2, listBar.height() - 3});
        Click(*tree.viewport(), tree.visualItemRect(tree.topLevelItem(0)).center());
        QTest::keyClick(&tree, Qt::Key_Right);
        QTest::keyClick(&tree, Qt::Key_Down);
        Click(*text.viewport(), {5, 5});
        QTest::keyClicks(&text, "lines");
        QTest::keyClick(&text, Qt::Key_Return);
        QTest::keyClicks(&text, "of text");
        Click(slider, {slider.width() - 4, slider.height() / 2});
        Click(bar, {bar.width() - 3, bar.height() / 2});
        Click(tabs, tabs.tabRect(1).center());
        return {combo.currentText(),
                editable.currentText(),
                QString::number(offers),
                completed.text(),
                QString::number(spin.value()),
                date.dateTime().toString(Qt::ISODate),
                QString::number(list.currentRow()),
                QString::number(list.selectedItems().size()),
                QString::number(listBar.value()),
                tree.currentItem() != nullptr ? tree.currentItem()->text(0) : "",
                text.toPlainText(),
                QString::number(slider.value()),
                QString::number(bar.value()),
                QString::number(tabs.currentIndex())};
    }

    QComboBox combo, editable;
    QLineEdit completed;
    QDateTimeEdit date;
    QSpinBox spin;
    QListWidget list;
    QTreeWidget tree;
    QPlainTextEdit text;
    QSlider slider{Qt::Horizontal};
    QScrollBar bar{Qt::Horizontal};
    QTabBar tabs;
};

struct Hooked : Controls {
    struct Container : CTovInputControlContainer {
        explicit Container(CWnd* window) : CTovInputControlContainer(window) {
            HookContainer();
            HookAllDlgCtrls(nullptr);
        }
    } container{TovWnd(this)};
};

TEST(PlainControls, DoTheSameWithHooksAsWithout) {
    QStringList plain;
    {
        Controls form;
        plain = form.Use();
    }
    EXPECT_EQ(plain.value(0), "two");
    EXPECT_EQ(plain.value(3), "berlin");
    EXPECT_EQ(plain.value(9), "below");
    EXPECT_NE(plain.value(11), "0");
    Hooked form;
    QStringList const hooked = form.Use();
    for (qsizetype i = 0; i < plain.size(); ++i)
        EXPECT_EQ(hooked[i].toStdString(), plain[i].toStdString()) << i;
}

}  // namespace
}  // namespace tov
