// Edits for texts and file names, and those that become others, in a form that keeps the focus on what is
// wrong.
#include "support/temporary_folder.h"
#include "support/widgets.h"

#include <tov310/hooks.h>
#include <tov310/input_control_container.h>
#include <tov310/messages.h>
#include <tov310/qt_values.h>
#include <tov310/switched_edit.h>

#include <gtest/gtest.h>

#include <fstream>
#include <random>

namespace tov {
namespace {

constexpr int idEdit = 77;

struct Container : CTovInputControlContainer {
    using CTovInputControlContainer::CTovInputControlContainer;
    using CTovInputControlContainer::HookAllDlgCtrls;
    using CTovInputControlContainer::HookContainer;
    void OnShowValidationText(HWND, unsigned, unsigned long, CString* message) override { shown = *message; }
    void OnEmptyFieldsChanged(int empty) override { told.push_back(empty); }
    CString shown;
    std::vector<int> told;
};

// An edit between two others, with a label for its unit behind.
template <class Edit, auto... arguments>
struct Form : QDialog {
    Form() {
        auto* const layout = new QVBoxLayout(this);
        for (QWidget* const row : {static_cast<QWidget*>(&before), static_cast<QWidget*>(&edit),
                                   static_cast<QWidget*>(&behind), static_cast<QWidget*>(&unit)})
            layout->addWidget(row);
        edit.SetDlgCtrlID(idEdit);
        unit.setProperty(tovIdProperty, idEdit + 1);
        container.HookContainer();
        EXPECT_TRUE(test::Activate(*this));
        container.HookAllDlgCtrls(nullptr);
        setTabOrder(&before, &edit);
        edit.SetFocusInputControl();
    }

    QLineEdit before, behind;
    QLabel unit;
    Edit edit{arguments...};
    Container container{TovWnd(this)};
};

TEST(StringEdit, ValidatesWhatWillStandThere) {
    Form<CTovEditString> form;
    form.edit.SetTrimLeft(1);
    form.edit.SetMinChars(2);
    form.edit.SetMaxChars(3);
    struct Row {
        char const* text;
        int emptyAllowed, state;
        char const* message;
    };
    for (Row const& row : {Row{"", 1, 0, ""},
                           {"  ", 1, 0, ""},
                           {"  ", 0, 1, "字段不能为空"},
                           {"测量", 0, 0, ""},
                           {" 测", 1, 2, "字段包含 1 字符， 最小字符数为2字符"},
                           {"abcd", 0, 2, "字段包含 4 字符， 最大值是 3 字符"}}) {
        form.edit.SetEmptyAllowed(row.emptyAllowed);
        form.edit.SetString(row.text);
        CString message;
        EXPECT_EQ(form.edit.Validate(&message), row.state) << row.text;
        EXPECT_EQ(message, row.message) << row.text;
    }
}

using FilenameForm =
    Form<CTovEditFilename, CTovEditFilename::eTypeExecutable, CTovEditFilename::eExistenceMust, 0>;

TEST(FilenameEdit, LetsTheUserChooseInTheToolkitsDialog) {
    test::TemporaryFolder const folder;
    for (char const* const name : {"测 量.exe", "b.dll"})
        std::ofstream(folder.File(name)) << "x";
    FilenameForm form;
    form.edit.SetString(folder.File("none"));
    form.behind.setFocus();
    EXPECT_TRUE(form.edit.ControlOrChildHasFocus()) << "what is wrong keeps the focus";
    EXPECT_EQ(form.container.shown, "路径/文件必须存在");

    QStringList filters;
    QTimer::singleShot(0, [&] {
        auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->windowTitle(), "选择可执行文件");
        EXPECT_EQ(dialog->directory().path(), QString(folder.path().c_str()));
        filters = dialog->nameFilters();
        auto* const name = dialog->findChild<QLineEdit*>();
        name->setText("\"测 量.exe\" \"b.dll\"");
        static_cast<QDialog*>(dialog)->accept();
    });
    QWidget& button = *form.edit.GetEditButton();
    EXPECT_EQ(static_cast<QPushButton&>(button).text(), "...");
    test::ClickOn(button, {4, 4});
    EXPECT_EQ(filters, (QStringList{"可执行文件 (*.exe *.dll)", "程序 (*.exe)", "动态链接库 (*.dll)",
                                    "所有文件 (*)"}));
    CString both;
    both.append("\"")
        .append(folder.File("测 量.exe"))
        .append("\" \"")
        .append(folder.File("b.dll"))
        .append("\"");
    EXPECT_EQ(form.edit.GetString(), both);
    EXPECT_EQ(form.edit.GetChangedByUser(), 1);
    EXPECT_EQ(form.edit.GetNames().size(), 2u);
    ASSERT_TRUE(test::Activate(form));
    form.behind.setFocus();
    EXPECT_TRUE(form.behind.hasFocus());
    form.edit.setFocus();
    QTest::keyClick(&form.edit, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(form.edit.GetString(), folder.File("none"));

    // Dropped, by the same rules.
    form.edit.Rules().NameWithoutPath(1);
    QMimeData data;
    data.setUrls({QUrl("https://example.org/x"), QUrl::fromLocalFile(folder.File("b.dll").c_str())});
    QDragEnterEvent enter({3, 3}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&form.edit, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(3, 3), Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&form.edit, &drop);
    EXPECT_EQ(form.edit.text(), "b.dll");

    // A host's own, in vain and while the edit dies.
    struct Deadly : ITovBrowseForFile {
        bool Browse(CTovBrowseRequest const& request, std::vector<CString>&) override {
            owner = request.owner;
            edit.reset();
            return true;
        }
        std::unique_ptr<CTovEditFilename> edit = std::make_unique<CTovEditFilename>();
        HWND owner;
    } browse;
    HWND const window = TovHandle(browse.edit.get());
    browse.edit->BrowseWith(&browse);
    static_cast<CTovEditHost&>(*browse.edit).DispatchButtonClicked();
    EXPECT_EQ(browse.owner, window);
    auto dying = std::make_unique<CTovEditFilename>(CTovEditFilename::eTypeDirectory);
    dying->show();
    QTimer::singleShot(0, [&] { dying.reset(); });
    static_cast<CTovEditHost&>(*dying).DispatchButtonClicked();
    EXPECT_EQ(dying, nullptr);
}

TEST(SwitchedEdit, IsOneControlOfTheFormWhateverItBecomes) {
    Form<CTovEditSwitched> form;
    form.edit.UnitAbbreviation(idEdit + 1);
    form.edit.SetString("x");
    form.edit.SetString("");
    EXPECT_EQ(form.container.told, std::vector<int>{1});
    int done = 0;
    QObject::connect(&form.edit, &CTovEditSwitched::editingDone, [&] { ++done; });
    std::mt19937 random(5);
    for (int round = 0; round < 150; ++round) {
        int const type = 1 + static_cast<int>(random() % 14);
        bool const isSame = type == form.edit.GetType();
        CString const before = form.edit.GetRawString();
        ASSERT_EQ(form.edit.Switch(static_cast<eTovSwitchedType>(type)), 1);
        CTovEdit& edit = form.edit.GetEdit();
        SCOPED_TRACE(edit.GetRuntimeClass()->m_lpszClassName);
        EXPECT_STREQ(edit.GetRuntimeClass()->m_lpszClassName, TovSwitchedEdit(type)->className);
        ASSERT_NE(edit.ControlOrChildHasFocus(), 0) << "the focus stays";
        EXPECT_EQ(edit.geometry(), form.edit.rect());
        EXPECT_EQ(edit.GetDlgCtrlID(), idEdit);
        EXPECT_EQ(TovWnd(&form)->GetDlgItem(idEdit), form.edit.GetSafeHwnd());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_EQ(form.edit.findChildren<CTovEdit*>(Qt::FindDirectChildrenOnly).size(), 1);
        EXPECT_EQ(form.edit.GetEditInteger() != nullptr, type >= 3 && type <= 8);
        EXPECT_EQ(form.edit.GetEditFloating() != nullptr, type >= 9);
        EXPECT_EQ(form.unit.text() == "m", type == eTovSwitchedDistance);
        EXPECT_TRUE(!isSame || form.edit.GetRawString() == before);
        if (random() % 2 != 0) {
            form.edit.SetInt(1);
            form.edit.SetString("1");
        }
        for (auto keys = random() % 3; keys > 0; --keys)
            QTest::keyClick(QApplication::focusWidget(), "19-x/"[random() % 5]);
        EXPECT_EQ(form.container.told.back(), form.edit.ValidateEmpty()) << "the form knows what is empty";
        bool const isWrong = form.edit.Validate(nullptr) == CTovInputControl::eStateInvalid;
        form.container.shown.clear();
        form.before.setFocus();
        EXPECT_EQ(form.before.hasFocus(), !isWrong);
        EXPECT_EQ(form.container.shown.empty(), !isWrong);
        if (isWrong) edit.Empty();
        form.before.setFocus();
        ASSERT_TRUE(form.before.hasFocus());
        QTest::keyClick(&form.before, Qt::Key_Tab);
        ASSERT_NE(edit.ControlOrChildHasFocus(), 0) << "its turn is that of the place";
        form.behind.setFocus();
        QTest::keyClick(&form.behind, Qt::Key_Backtab, Qt::ShiftModifier);
        ASSERT_NE(edit.ControlOrChildHasFocus(), 0) << "also from behind";
    }
    EXPECT_GT(done, 10);
    EXPECT_EQ(form.edit.Switch(static_cast<eTovSwitchedType>(15)), 0);

    // What holds for the place, not for the value.
    form.edit.Switch(eTovSwitchedInt);
    form.edit.SetEmptyAllowed(1);
    form.edit.SetReadOnlyMode(1);
    form.edit.Switch(eTovSwitchedDouble);
    EXPECT_EQ(form.edit.GetEmptyAllowed(), 1);
    EXPECT_EQ(form.edit.GetReadOnlyMode(), 1);
    EXPECT_FALSE(form.edit.GetEdit().isEnabled());
    EXPECT_EQ(form.edit.ResetAttributes(), 0) << "hooked";
}

// Over a cell Tab goes to the next one, out of an angle's fields past the last of them.
TEST(SwitchedEdit, LeavesTheCellByTab) {
    struct Cell : Container {
        using Container::Container;
        int OnNextDlgCtl(int previous) override {
            left += previous != 0 ? 'p' : 'n';
            return 1;
        }
        std::string left;
    };
    for (eTovSwitchedType const type : {eTovSwitchedInt, eTovSwitchedLatitude}) {
        QDialog form;
        Cell cell(TovWnd(&form));
        cell.SetHandleTabKey(1);
        cell.HookContainer();
        CTovEditSwitched edit(type);
        edit.CreateInline(0, {5, 5, 300, 30}, TovWnd(&form), idEdit, nullptr);
        bool const isAngle = type == eTovSwitchedLatitude;
        if (isAngle) static_cast<CTovEditLatitude&>(edit.GetEdit()).SetUnit(12);
        ASSERT_TRUE(test::Activate(form));
        cell.HookAllDlgCtrls(nullptr);
        edit.SetFocusInputControl();
        for (Qt::Key const key : {Qt::Key_Tab, Qt::Key_Backtab}) {
            for (int fields = isAngle ? 4 : 1; fields > 0; --fields) {
                EXPECT_EQ(cell.left, key == Qt::Key_Tab ? "" : "n");
                QTest::keyClick(QApplication::focusWidget(), key,
                                key == Qt::Key_Tab ? Qt::NoModifier : Qt::ShiftModifier);
                QCoreApplication::processEvents();
                EXPECT_NE(edit.GetEdit().ControlOrChildHasFocus(), 0);
            }
        }
        EXPECT_EQ(cell.left, "np");
    }
}

}  // namespace
}  // namespace tov
