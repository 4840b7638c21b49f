// The dialogs of the sample host, used as a user does: through the menu, keys and clicks.
#include "support/files.h"
#include "support/temporary_folder.h"
#include "support/widgets.h"

#include "settings.h"
#include "window_frame.h"
#include "window_ids.h"
#include "window_shots.h"

#include <tov310/qt_values.h>
#include <tov310/ui.h>
#include <tov310/window_messages.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <numbers>

namespace survey {
namespace {

constexpr double degree = std::numbers::pi / 180;

class Dialogs : public testing::Test {
 protected:
    Dialogs() {
        UseLanguage("en");
        OpenProfile(folder.File("Survey.ini"));
        tov::test::PutFile(folder.File("t.tab"), "DE\t+5230+01322\tBerlin\nAT\t+4813+01620\tWien\tcapital\n");
        frame = std::make_unique<SurveyFrame>();
        EXPECT_EQ(frame->Open(folder.File("t.tab")), 1);
        frame->show();
        frame->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(frame.get()));
    }

    // Runs a command of the menu, which opens a dialog, and uses that.
    template <class Dialog = QDialog>
    void Command(unsigned id, std::function<void(Dialog&)> const& use) {
        Open([this, id] { tov::TovSendMessage(frame->GetSafeHwnd(), tov::WM_COMMAND, id); }, use);
    }
    template <class Dialog>
    static void Open(std::function<void()> const& open, std::function<void(Dialog&)> const& use) {
        bool isUsed = false;
        QTimer::singleShot(0, qApp, [&] {
            auto* const dialog = dynamic_cast<Dialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
            QTest::qWait(1);  // what was posted
            use(*dialog);
            isUsed = true;
        });
        open();
        EXPECT_TRUE(isUsed);
    }
    static void Click(QWidget& widget) {
        QTest::mouseClick(widget.window()->windowHandle(), Qt::LeftButton, {},
                          widget.mapTo(widget.window(), widget.rect().center()));
    }
    static QWidget& Item(tov::CWnd& host, int id) { return *tov::TovWidget(host.GetDlgItem(id)); }
    static void Type(char const* keys) { QTest::keyClicks(QApplication::focusWidget(), keys); }
    static void Press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }
    // The caret walks through the fields.
    static void TypeAngle(char const* degrees, char const* minutes, char const* seconds) {
        Type(degrees);
        Press(Qt::Key_Right);
        Type(minutes);
        Press(Qt::Key_Right);
        Type(seconds);
    }
    QString Cell(int row, int column) const {
        QAbstractItemModel const& model = *frame->View().model();
        return model.index(row, column).data().toString().simplified();
    }
    std::vector<Place> const& Places() const {
        return static_cast<PlacesDocument*>(frame->View().GetDocument())->Places();
    }

    tov::test::TemporaryFolder const folder;
    SurveyApp app;
    std::unique_ptr<SurveyFrame> frame;
};

TEST_F(Dialogs, AddAndEditPlacesAndRefuseWhatIsWrong) {
    Command<tov::CTovDialogCV>(idAdd, [&](tov::CTovDialogCV& dialog) {
        QWidget& ok = Item(dialog, tov::IDOK);
        EXPECT_FALSE(ok.isEnabled());
        Type("Wien");
        Click(ok);
        EXPECT_TRUE(dialog.isVisible() && !ok.isEnabled()) << "there is one";
        Press(Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget(), &Item(dialog, 1001)) << "a wrong name is not left";
        Type("er Neustadt");
        Press(Qt::Key_Tab);
        TypeAngle("47", "48", "50");
        EXPECT_FALSE(ok.isEnabled()) << "no longitude yet";
        Click(ok);
        TypeAngle("16", "14", "30");
        EXPECT_TRUE(ok.isEnabled());
        Item(dialog, 1004).setFocus();
        Type("9001");
        EXPECT_FALSE(ok.isEnabled()) << "higher than any ground";
        Press(Qt::Key_Escape);
    });
    EXPECT_EQ(Places().size(), 2U);
    Command<tov::CTovDialogCV>(idAdd, [&](tov::CTovDialogCV& dialog) {
        Type("Wiener Neustadt");
        Press(Qt::Key_Tab);
        TypeAngle("47", "48", "50");
        Item(dialog, 1003).setFocus();
        TypeAngle("16", "14", "30");
        Item(dialog, 1004).setFocus();
        Type("265");
        Press(Qt::Key_Return);
    });
    ASSERT_EQ(Places().size(), 3U);
    EXPECT_NEAR(Places()[2].latitude.GetDouble(), (47 + 48 / 60.0 + 50 / 3600.0) * degree, 1e-15);
    EXPECT_NEAR(Places()[2].longitude.GetDouble(), (16 + 14 / 60.0 + 30 / 3600.0) * degree, 1e-15);
    EXPECT_EQ(Cell(2, PlacesModel::kHeight), "265.0");
    EXPECT_EQ(frame->View().currentIndex().row(), 2);

    // Enter and a double click open it too; what is not touched stays to the last bit.
    double const before = Places()[1].latitude.GetDouble();
    frame->View().SelectPlace(1);
    Open<tov::CTovDialogCV>([&] { QTest::keyClick(&frame->View(), Qt::Key_Return); },
                            [&](tov::CTovDialogCV& dialog) {
                                Type("Vindobona");
                                Click(Item(dialog, tov::IDOK));
                            });
    EXPECT_EQ(Places()[1].name, "Vindobona");
    EXPECT_EQ(Places()[1].countries, "AT");
    EXPECT_EQ(Places()[1].latitude.GetDouble(), before);
    EXPECT_EQ(Places().size(), 3U);
    QPoint const place = frame->View().visualRect(frame->View().model()->index(0, 0)).center();
    QTest::mouseClick(frame->View().viewport(), Qt::LeftButton, {}, place);
    Open<tov::CTovDialogCV>([&] { QTest::mouseDClick(frame->View().viewport(), Qt::LeftButton, {}, place); },
                            [](tov::CTovDialogCV& dialog) {
                                EXPECT_EQ(dialog.findChild<tov::CTovEditString*>()->text(), "Berlin");
                                Press(Qt::Key_Escape);
                            });
}

TEST_F(Dialogs, ApplyOptionsToTheTable) {
    Command<tov::CTovPropSheetCV>(idOptions, [&](tov::CTovPropSheetCV& sheet) {
        QPushButton& apply = *sheet.GetButton(tov::ID_APPLY_NOW);
        EXPECT_FALSE(apply.isEnabled());
        auto& unit = dynamic_cast<QComboBox&>(Item(*sheet.GetPage(0), 1101));
        unit.setCurrentIndex(3);
        EXPECT_TRUE(apply.isEnabled());
        EXPECT_EQ(Cell(0, PlacesModel::kLatitude), "52° 30' 00.0\" N");
        Click(apply);
        EXPECT_FALSE(apply.isEnabled());
        EXPECT_EQ(Cell(0, PlacesModel::kLatitude), "58.33333 N");
        Item(*sheet.GetPage(0), 1102).setFocus();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_A, Qt::ControlModifier);
        Press(Qt::Key_Delete);
        EXPECT_FALSE(sheet.GetButton(tov::IDOK)->isEnabled()) << "no digits";
        Type("2");
        EXPECT_TRUE(sheet.GetButton(tov::IDOK)->isEnabled());
        sheet.SetActivePage(2);
        dynamic_cast<QComboBox&>(Item(*sheet.GetPage(2), 1101)).setCurrentIndex(0);
        Click(*sheet.GetButton(tov::IDOK));
    });
    EXPECT_EQ(Cell(0, PlacesModel::kLatitude), "58.33 北");
    EXPECT_EQ(frame->menuBar()->actions().first()->text(), "文件(&F)");
    EXPECT_EQ(frame->View().model()->headerData(0, Qt::Horizontal).toString(), "地点");
    EXPECT_EQ(RememberedLanguage(), "zh_CN");
    frame->FixLanguage();
    Command<tov::CTovPropSheetCV>(idOptions, [&](tov::CTovPropSheetCV& sheet) {
        EXPECT_FALSE(sheet.GetTabWidget()->isTabVisible(2));
        sheet.reject();
    });
}

TEST_F(Dialogs, ImportPlacesPageByPage) {
    tov::test::PutFile(folder.File("empty.txt"), "\n\n");
    tov::test::PutFile(folder.File("p.csv"),
                       "Name;Lat;Lon;Height\nGraz;47 4 15;15 26 22;353\nBerlin;52;13;34\nPole;91;0;0\n");
    Command<tov::CTovPropSheetCV>(idImport, [&](tov::CTovPropSheetCV& wizard) {
        QPushButton& next = *wizard.GetButton(tov::ID_WIZNEXT);
        Click(next);
        EXPECT_EQ(wizard.GetActiveIndex(), 0) << "no file yet";
        auto& file = dynamic_cast<tov::CTovEdit&>(Item(*wizard.GetPage(0), 1401));
        for (char const* const bad : {"none.csv", "empty.txt"}) {
            file.setText(QString::fromStdString(folder.File(bad)));
            Click(next);
            EXPECT_EQ(wizard.GetActiveIndex(), 0) << bad;
        }
        file.setText(QString::fromStdString(folder.File("p.csv")));
        Click(next);
        ASSERT_EQ(wizard.GetActiveIndex(), 1);
        auto& height = dynamic_cast<tov::CTovEditInteger&>(Item(*wizard.GetPage(1), 1506));
        EXPECT_EQ(height.GetInt(), 4);
        height.SetInt(3);
        Click(next);
        EXPECT_EQ(wizard.GetActiveIndex(), 1) << "two columns are one";
        height.SetInt(4);
        Click(next);
        ASSERT_EQ(wizard.GetActiveIndex(), 2);
        EXPECT_EQ(dynamic_cast<QTreeWidget&>(Item(*wizard.GetPage(2), 1601)).topLevelItemCount(), 1);
        auto& skipped = dynamic_cast<QComboBox&>(Item(*wizard.GetPage(2), 1603));
        EXPECT_EQ(skipped.itemText(0), "Line 3: the name is taken");
        EXPECT_EQ(skipped.itemText(1), "Line 4: no latitude in this unit");
        // In degrees and with another separator nothing is left to be read.
        Click(*wizard.GetButton(tov::ID_WIZBACK));
        dynamic_cast<QComboBox&>(Item(*wizard.GetPage(1), 1501)).setCurrentIndex(0);
        Click(next);
        EXPECT_FALSE(wizard.GetButton(tov::ID_WIZFINISH)->isEnabled());
        Click(*wizard.GetButton(tov::ID_WIZBACK));
        dynamic_cast<QComboBox&>(Item(*wizard.GetPage(1), 1501)).setCurrentIndex(1);
        Click(next);
        Click(*wizard.GetButton(tov::ID_WIZFINISH));
    });
    ASSERT_EQ(Places().size(), 3U);
    EXPECT_EQ(Places()[2].name, "Graz");
    EXPECT_EQ(Cell(2, PlacesModel::kHeight), "353.0");
    EXPECT_EQ(frame->View().currentIndex().row(), 2);
}

TEST_F(Dialogs, FindFilesUntilTheUserAborts) {
    constexpr int folders = 40;
    for (int i = 0; i < folders; ++i) {
        std::filesystem::create_directory(folder.path() / std::to_string(i));
        tov::test::PutFile(folder.path() / std::to_string(i) / "x.tab", "DE\t+5230+01322\tBerlin\n");
    }
    Command<tov::CTovDialogCV>(idFind, [&](tov::CTovDialogCV& dialog) {
        auto const& files = dynamic_cast<QListWidget&>(Item(dialog, 1703));
        auto const& state = dynamic_cast<QLabel&>(Item(dialog, 1704));
        auto& pattern = dynamic_cast<tov::CTovEdit&>(Item(dialog, 1702));
        pattern.setText("a/b");
        Click(Item(dialog, tov::IDOK));
        EXPECT_EQ(files.count(), 0) << "a pattern is no way";
        pattern.setText("x.*");
        bool isAsked = false;
        QObject const guard;
        QObject::connect(qApp, &QApplication::focusWindowChanged, &guard, [&isAsked] {
            for (QWidget* const window : QApplication::topLevelWidgets()) {
                auto* const progress = dynamic_cast<tov::CTovDialogProgress*>(window);
                if (progress == nullptr || isAsked) continue;
                isAsked = true;
                progress->reject();
            }
        });
        Click(Item(dialog, tov::IDOK));
        EXPECT_TRUE(isAsked);
        EXPECT_EQ(state.text(), "The search was aborted.");
        EXPECT_EQ(files.count(), 0);
        Click(Item(dialog, tov::IDOK));
        EXPECT_EQ(state.text(), "Files found: 40");
        EXPECT_EQ(files.count(), folders);
        EXPECT_FALSE(Item(dialog, 1705).isEnabled());
        QTest::mouseClick(files.viewport(), Qt::LeftButton, {}, files.visualItemRect(files.item(0)).center());
        Click(Item(dialog, 1705));
    });
    EXPECT_EQ(Places().size(), 1U) << "the file is open";
}

}  // namespace
}  // namespace survey
