#include "support/widgets.h"

#include <tov310/styles.h>
#include <tov310/ui.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QSignalSpy>

#include <functional>

namespace tov {
namespace {

using Edit = CWndOn<QLineEdit, CWnd>;
using Button = CWndOn<QPushButton, CWnd>;
using Radio = CWndOn<QRadioButton, CWnd>;

// A form with a control before the placeholder and one behind it; what it stands in is made by each case.
struct Form : QWidget {
    Form() {
        outer.addWidget(&first);
        outer.addWidget(&room);
        outer.addWidget(&last);
        first.setProperty(tovIdProperty, 1);
        last.setProperty(tovIdProperty, 3);
    }
    template <class Widget>
    Widget* Placeholder() {
        auto* const made = std::make_unique<Widget>(&room).release();
        made->setProperty(tovIdProperty, 2);
        made->setObjectName("name");
        made->setMaximumWidth(70);
        made->setToolTip("tip");
        return made;
    }
    // The focus chain by object, without what only groups or scrolls.
    std::vector<int> Chain() {
        std::vector<int> ids;
        for (HWND const child : TovWnd(this)->GetChildren())
            ids.push_back(CWnd::FromHandlePermanent(child)->GetDlgCtrlID());
        return ids;
    }

    QVBoxLayout outer{this};
    QLineEdit first;
    QWidget room;
    QSpinBox last;  // of more than one widget
};

// The control stands where the placeholder stood, in whatever holds it.
TEST(Placeholder, GivesItsPlaceInWhateverItStands) {
    struct Case {
        char const* name;
        std::function<void(QWidget& room, QWidget* widget)> put;
        std::function<bool(QWidget& room, QWidget* widget)> isThere;
    };
    auto const none = [](QWidget&, QWidget*) {};
    Case const cases[] = {
        {"geometry", [](QWidget&, QWidget* w) { w->setGeometry(3, 4, 50, 20); },
         [](QWidget&, QWidget* w) { return w->geometry() == QRect(3, 4, 50, 20); }},
        {"grid",
         [](QWidget& room, QWidget* w) {
             auto* const grid = new QGridLayout(&room);
             grid->addWidget(w, 1, 2, 3, 2, Qt::AlignRight);
             grid->addWidget(new QLabel("corner"), 0, 0);
         },
         [](QWidget& room, QWidget* w) {
             auto* const grid = qobject_cast<QGridLayout*>(room.layout());
             int place[4] = {};
             grid->getItemPosition(grid->indexOf(w), &place[0], &place[1], &place[2], &place[3]);
             return std::equal(std::begin(place), std::end(place), std::begin({1, 2, 3, 2})) &&
                    grid->itemAtPosition(2, 3)->alignment() == Qt::AlignRight;
         }},
        {"form", [](QWidget& room, QWidget* w) { (new QFormLayout(&room))->addRow("&Label", w); },
         [](QWidget& room, QWidget* w) {
             auto* const form = qobject_cast<QFormLayout*>(room.layout());
             auto* const label = qobject_cast<QLabel*>(form->labelForField(w));
             return label != nullptr && label->buddy() == w;
         }},
        {"nested layouts",
         [](QWidget& room, QWidget* w) {
             auto* const row = new QHBoxLayout;
             (new QVBoxLayout(&room))->addLayout(row);
             row->addStretch();
             row->addWidget(w, 5);
         },
         [](QWidget& room, QWidget* w) {
             auto* const row = qobject_cast<QHBoxLayout*>(room.layout()->itemAt(0)->layout());
             return row->indexOf(w) == 1 && row->stretch(1) == 5 && row->count() == 2;
         }},
        {"splitter",
         [](QWidget& room, QWidget* w) {
             auto* const splitter = new QSplitter(&room);
             splitter->addWidget(new QLabel("left"));
             splitter->addWidget(w);
         },
         [](QWidget& room, QWidget* w) { return room.findChild<QSplitter*>()->indexOf(w) == 1; }},
        {"tab",
         [](QWidget& room, QWidget* w) {
             auto* const tabs = new QTabWidget(&room);
             tabs->addTab(new QLabel, "A");
             tabs->addTab(w, "B");
             tabs->addTab(new QLabel, "C");
         },
         [](QWidget& room, QWidget* w) {
             auto* const tabs = room.findChild<QTabWidget*>();
             return tabs->indexOf(w) == 1 && tabs->tabText(1) == "B" && tabs->currentIndex() == 0 &&
                    !w->isVisible();
         }},
        {"scroll area", [](QWidget& room, QWidget* w) { (new QScrollArea(&room))->setWidget(w); },
         [](QWidget& room, QWidget* w) { return room.findChild<QScrollArea*>()->widget() == w; }},
        {"first in the chain", none, [](QWidget&, QWidget*) { return true; }},
    };
    for (bool const isShown : {false, true}) {
        for (Case const& c : cases) {
            SCOPED_TRACE(c.name);
            Form form;
            auto* const placeholder = form.Placeholder<QLineEdit>();
            placeholder->setText("stated");
            placeholder->setReadOnly(true);
            c.put(form.room, placeholder);
            if (c.name == std::string("first in the chain")) QWidget::setTabOrder(placeholder, &form.first);
            if (isShown) form.show();
            std::vector<int> const before = form.Chain();
            QPointer<QWidget> const gone(placeholder);
            Edit edit;
            edit.setMaxLength(9);
            ASSERT_EQ(edit.SubclassDlgItem(2, TovWnd(&form)), 1);
            EXPECT_TRUE(gone.isNull());
            EXPECT_TRUE(c.isThere(form.room, &edit));
            EXPECT_EQ(form.Chain(), before);
            EXPECT_EQ(TovWnd(&form)->GetDlgItem(2), edit.GetSafeHwnd());
            EXPECT_EQ(edit.objectName(), "name");
            EXPECT_EQ(edit.toolTip(), "tip");
            EXPECT_EQ(edit.maximumWidth(), 70);
            EXPECT_EQ(edit.text(), "stated");
            EXPECT_TRUE(edit.isReadOnly());
            EXPECT_EQ(edit.maxLength(), 9);  // the form says nothing of it
            EXPECT_EQ(edit.isVisible(), isShown && c.name != std::string("tab"));
        }
    }
}

TEST(Placeholder, GivesItsStates) {
    QDialog form;
    QGridLayout grid(&form);
    QButtonGroup group;
    QRadioButton other("other", &form);
    auto* const radio = new QRadioButton("&radio", &form);
    auto* const push = new QPushButton("push", &form);
    auto* const hidden = new QLineEdit(&form);
    auto* const combo = new QComboBox(&form);
    auto* const label = new QLabel("view", &form);
    QWidget* const all[] = {&other, radio, push, hidden, combo, label};
    for (int id = 0; id < 6; ++id) {
        all[id]->setProperty(tovIdProperty, id + 1);
        grid.addWidget(all[id], id, 0);
    }
    group.addButton(&other, 70);
    group.addButton(radio, 71);
    radio->setChecked(true);
    push->setDefault(true);
    hidden->hide();
    hidden->setEnabled(false);
    combo->addItem("a", 1);
    combo->addItem("b", 2);
    combo->setCurrentIndex(1);
    form.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    combo->setFocus();

    CWnd* const window = TovWnd(&form);
    Radio ownRadio;
    Button ownPush;
    Edit ownEdit;
    CWndOn<QComboBox, CWnd> ownCombo;
    CWndOn<QTreeWidget, CWnd> view;
    CWnd* const own[] = {&ownRadio, &ownPush, &ownEdit, &ownCombo, &view};
    for (unsigned id = 2; id < 7; ++id)
        ASSERT_EQ(own[id - 2]->SubclassDlgItem(id, window), 1) << id;
    EXPECT_EQ(ownRadio.text(), "&radio");
    EXPECT_TRUE(ownRadio.isChecked());
    EXPECT_EQ(group.id(&ownRadio), 71);
    other.click();
    EXPECT_FALSE(ownRadio.isChecked());
    QSignalSpy const clicked(&ownPush, &QPushButton::clicked);
    QTest::keyClick(&ownEdit, Qt::Key_Return);
    EXPECT_TRUE(ownPush.isDefault());
    EXPECT_EQ(clicked.count(), 1);
    EXPECT_TRUE(ownEdit.isHidden());
    EXPECT_FALSE(ownEdit.isEnabled());
    EXPECT_EQ(ownCombo.currentData(), 2);
    EXPECT_TRUE(ownCombo.hasFocus());
    EXPECT_NE(view.focusPolicy() & Qt::TabFocus, 0);
    EXPECT_TRUE(view.isVisible());

    Edit late;
    EXPECT_EQ(late.SubclassDlgItem(99, window), 0);
    EXPECT_EQ(late.SubclassDlgItem(2, nullptr), 0);
    EXPECT_FALSE(late.GetSafeHwnd());
}

}  // namespace
}  // namespace tov
