// Hosts in one another on the screen: OK is true to all that stands in them, a click on it while it is
// disabled shows what is missing, and a host of Qt's own gets the same in three lines.
#include "support/dialogs_module.h"
#include "support/faults.h"
#include "support/host_model.h"
#include "support/widgets.h"

#include <tov310/announce.h>
#include <tov310/messages.h>
#include <tov310/qt_values.h>
#include <tov310/system.h>
#include <tov310/ui.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QSignalSpy>

#include <map>
#include <string_view>

namespace tov {
namespace {

using test::HostField;
using test::HostNode;
using testing::ElementsAre;

struct Listener : ITovAnnounce {
    Listener() { TovSetAnnounce(this); }
    ~Listener() override { TovSetAnnounce(nullptr); }
    void Announce(HWND, char const* text) override { said.emplace_back(text); }
    std::vector<std::string> said;
};

// Wrong while it says so.
struct Word : CTovEditString {
    using CTovEditString::CTovEditString;
    eState InternalValidate(char const* text, CString* message) override {
        if (std::string_view(text) != "wrong") return CTovEditString::InternalValidate(text, message);
        if (message != nullptr) *message = "it is wrong";
        return eStateInvalid;
    }
};

struct Tree;

struct FormHost : CTovFormViewCV {
    FormHost(Tree& tree, HostNode const& node);
};

template <class Base>
struct Host : Base {
    Host(Tree& owner, HostNode const& model) : tree(owner), node(model) {
        this->ExchangeChildDialogId(50, 1);
        for (std::size_t i = 0; i < node.children.size(); ++i)
            this->AddChildDialog(test::DialogsModule(), 2000);
    }
    int OnInitDialog() override;
    std::unique_ptr<CDialog> MakePlainDialog() override {
        HostNode const& child = *node.children.at(made++);
        if (child.guards) return std::make_unique<Host<CTovDialogCV>>(tree, child);
        return std::make_unique<Host<CTovDialog>>(tree, child);
    }

    Tree& tree;
    HostNode const& node;
    std::size_t made = 0;
};

struct Tree {
    explicit Tree(HostNode const& model) : root(*this, model) {
        auto* const box = new QDialogButtonBox(
            QDialogButtonBox::Ok | QDialogButtonBox::Apply | QDialogButtonBox::Cancel, &root);
        root.show();
        root.layout()->addWidget(box);
        EXPECT_TRUE(QTest::qWaitForWindowActive(&root));
        QCoreApplication::processEvents();
    }

    void Fill(QWidget& around, HostNode const& node) {
        auto* const layout = new QVBoxLayout(&around);
        for (HostField const& field : node.fields) {
            auto* const edit = fields[field.number] = new Word(&around);
            edit->setProperty(tovIdProperty, 100 + field.number);
            layout->addWidget(edit);
        }
        for (auto const& form : node.forms) {
            layout->addWidget(new FormHost(*this, *form));
        }
        auto* const placeholder = new QLabel(&around);
        placeholder->setProperty(tovIdProperty, 50);
        layout->insertWidget(static_cast<int>(node.fields.size()), placeholder);
        if (node.isForm) placeholder->hide();
    }

    void SetField(HostField const& wanted) {
        Word& field = *fields.at(wanted.number);
        field.SetString(wanted.isEmpty ? "" : "right");
        field.SetReadOnlyMode(wanted.isReadOnly);
        field.SetEmptyAllowed(wanted.mayBeEmpty);
        field.setVisible(!wanted.isHidden);
    }
    void Switch(HostNode const& dialog, unsigned child) {
        EXPECT_EQ(dialogs.at(dialog.number)->SwitchChildDialog(child, 0), 1);
    }
    static void Settle() { QCoreApplication::processEvents(); }
    QWidget& Button(int id) { return *TovWidget(root.GetDlgItem(id)); }
    bool IsEnabled(int id) { return Button(id).isEnabled(); }
    int NumberOf(QWidget const* edit) const {
        for (auto const& [number, field] : fields) {
            if (field == edit) return number;
        }
        return -1;
    }
    int Focus() { return NumberOf(TovWidget(root.GetWndTopmostFocus())); }
    int ClickOnDisabled(int id) {
        listener.said.clear();
        QTest::mouseClick(&Button(id), Qt::LeftButton);
        EXPECT_THAT(listener.said, ElementsAre("字段不能为空"));
        int const shown = NumberOf(QApplication::focusWidget());
        if (shown < 0) return shown;
        QWidget const& field = *fields.at(shown);
        // At its left bottom corner, or where the screen leaves it.
        for (QWidget const* const top : QApplication::topLevelWidgets()) {
            if (dynamic_cast<CTovWndToolTip const*>(top) == nullptr || !top->isVisible()) continue;
            EXPECT_EQ(top->geometry().left(), field.mapToGlobal(QPoint()).x());
            static_cast<CTovWndToolTip*>(const_cast<QWidget*>(top))->Hide();
        }
        return shown;
    }

    Listener listener;
    std::map<int, Word*> fields;
    std::map<int, CTovDialogExtensions*> dialogs;
    Host<CTovDialogCV> root;
};

FormHost::FormHost(Tree& tree, HostNode const& node) {
    tree.Fill(*Form(), node);
}

template <class Base>
int Host<Base>::OnInitDialog() {
    tree.dialogs[node.number] = this;
    tree.Fill(*this, node);
    return Base::OnInitDialog();
}

TEST(HostTree, OkIsAsTheModelSaysAfterEveryStep) {
    for (unsigned seed = 1; seed <= 25 && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        test::HostScript script(seed);
        Tree tree(script.Root());
        script.Run(tree, 40);
    }
}

// The guards of the dialog around see all that happens in the one within, and leave it to that.
TEST(HostTree, AWrongFieldOfAChildDialogKeepsTheFocus) {
    HostNode root;
    root.fields = {{.number = 0}};
    root.children.push_back(std::make_unique<HostNode>());
    root.children[0]->number = 1;
    root.children[0]->fields = {{.number = 1}, {.number = 2}};
    Tree tree(root);
    for (int i = 0; i < 3; ++i)
        tree.SetField({.number = i});
    Word& word = *tree.fields[1];
    auto const focus = [&] { return tree.NumberOf(QApplication::focusWidget()); };
    auto const click = [&](int field) { QTest::mouseClick(tree.fields[field], Qt::LeftButton, {}, {3, 5}); };
    click(0);
    QTest::keyClick(tree.fields[0], Qt::Key_Tab);
    // Where the placeholder was, at the button of the template.
    EXPECT_EQ(QApplication::focusWidget(), TovWidget(tree.root.CurrentChildDialog()->GetDlgItem(700)));
    click(1);
    word.selectAll();
    QTest::keyClicks(&word, "wrong");
    for (int const other : {2, 0}) {
        click(other);
        EXPECT_EQ(focus(), 1) << other;
        EXPECT_EQ(tree.listener.said.size(), 1u);
        word.setCursorPosition(3);
        click(1);
        EXPECT_EQ(word.cursorPosition(), 0) << other;
        QTest::keyClick(&word, Qt::Key_Space);  // the words go with the first change
        QTest::keyClick(&word, Qt::Key_Backspace);
        tree.listener.said.clear();
    }
    QTest::mouseClick(&tree.Button(IDOK), Qt::LeftButton);
    EXPECT_TRUE(tree.root.isVisible());
    EXPECT_THAT(tree.listener.said, ElementsAre("it is wrong"));
    QTest::keyClick(&word, Qt::Key_Delete);
    click(2);
    EXPECT_EQ(focus(), 2);
    QTest::mouseClick(&tree.Button(IDOK), Qt::LeftButton);
    EXPECT_FALSE(tree.root.isVisible());
}

// A dialog of a host that knows Qt only.
struct MyDialog : QDialog {
    MyDialog() {
        auto* const layout = new QVBoxLayout(this);
        layout->addWidget(&name);
        layout->addWidget(&zone);
        layout->addWidget(&box);
        connect(&box, &QDialogButtonBox::accepted, this, &QDialog::accept);
        zone.SetRange(1, 60);
        m_guard.Begin();
    }
    void accept() override {
        if (m_guard.ValidateCommand(1)) QDialog::accept();
    }

    CTovEditString name;
    CTovEditInteger zone;
    QDialogButtonBox box{QDialogButtonBox::Ok | QDialogButtonBox::Cancel};
    CTovFormGuard m_guard{this};
};

TEST(FormGuard, ServesADialogOfQtsOwn) {
    Listener listener;
    MyDialog dialog;
    QSignalSpy const emptied(&dialog.m_guard, &CTovFormGuard::emptyFieldsChanged);
    QPushButton& ok = *dialog.box.button(QDialogButtonBox::Ok);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    EXPECT_FALSE(ok.isEnabled());
    QTest::mouseClick(&ok, Qt::LeftButton);
    EXPECT_EQ(QApplication::focusWidget(), &dialog.name);
    QTest::keyClicks(&dialog.name, "Kunming");
    EXPECT_FALSE(ok.isEnabled());
    QTest::keyClick(&dialog.name, Qt::Key_Tab);
    QTest::keyClicks(&dialog.zone, "61");
    EXPECT_TRUE(ok.isEnabled());
    EXPECT_EQ(emptied.count(), 1);
    QTest::mouseClick(&dialog.name, Qt::LeftButton);
    EXPECT_EQ(QApplication::focusWidget(), &dialog.zone);
    QTest::mouseClick(&ok, Qt::LeftButton);
    QTest::keyClick(&dialog.zone, Qt::Key_Return);
    dialog.accept();
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(listener.said.size(), 2u);
    QTest::keyClick(&dialog.zone, Qt::Key_Backspace);
    QTest::keyClick(&dialog.zone, Qt::Key_Return);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

}  // namespace
}  // namespace tov
