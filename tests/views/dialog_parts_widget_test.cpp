// Tool bars in dialogs, the sizes of controls and the dialog of a long work.
#include "support/dialogs_module.h"
#include "support/files.h"
#include "support/temporary_folder.h"
#include "support/widgets.h"
#include "views/progress_steps.h"
#include "views/tool_bar_place.h"

#include <tov310/dialog_metrics.h>
#include <tov310/messages.h>
#include <tov310/system.h>
#include <tov310/ui.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QSignalSpy>

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

namespace tov {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

TEST(DialogMetrics, AreTheSizesOfControlsInDialogs) {
    TovSetFaultHandler([](char const*) {});  // words that are cut are of no matter here
    CTovDialogTemplate dialog;
    ASSERT_EQ(TovLoadDialogTemplate(nullptr, 26255, dialog), 1);
    QFont const usual = QApplication::font();
    for (int const points : {8, 9, 17}) {
        QFont font = usual;
        font.setPointSize(points);
        QApplication::setFont(font);
        QWidget form;
        form.setFont(font);
        ASSERT_EQ(TovFillDialog(&form, dialog), 1);
        CSize const sizes[] = {CTovDialogMetrics::Static(),    CTovDialogMetrics::Edit(),
                               CTovDialogMetrics::Checkbox(),  CTovDialogMetrics::Radiobutton(),
                               CTovDialogMetrics::Combobox(),  CTovDialogMetrics::Spin(),
                               CTovDialogMetrics::Slider(),    CTovDialogMetrics::DateTime(),
                               CTovDialogMetrics::IpAddress(), CTovDialogMetrics::ComboboxEx()};
        for (int i = 0; i < 10; ++i)
            EXPECT_EQ(TovQSize(sizes[i]), TovWidget(TovWnd(&form)->GetDlgItem(26539 + i))->size()) << i;
        EXPECT_EQ(CTovDialogMetrics::Margin(), TovWidget(TovWnd(&form)->GetDlgItem(26539))->x());
        EXPECT_EQ(TovQFont(CTovDialogMetrics::Font()), font);
    }
    QApplication::setFont(usual);
    struct NoScreen : ITovSystem {
    } none;
    ITovSystem* const screen = TovSetSystem(&none);
    EXPECT_EQ(CTovDialogMetrics::Edit(), CSize());
    EXPECT_EQ(CTovDialogMetrics::Font(), nullptr);
    EXPECT_EQ(CTovDialogMetrics::CharSet(), 0);
    TovSetSystem(screen);
}

struct HostsOwnClass : ITovControlFactory {
    HostsOwnClass() { TovAddControlFactory(this); }
    ~HostsOwnClass() { TovRemoveControlFactory(this); }
    CWnd* CreateControl(char const* name, unsigned long, CRect const&, CWnd* parent) override {
        if (std::string_view(name) != "HostsOwn") return nullptr;
        return TovWnd(std::make_unique<QSpinBox>(TovWidget(parent)).release());
    }
};

TEST(DlgTemplate, MakesDialogsAsTheTextFormDoes) {
    TovSetFaultHandler([](char const*) {});  // some words have no room
    HostsOwnClass const known;
    CTovDialog dialog(CString("extended"));
    dialog.AutoDelete(0);
    ASSERT_EQ(dialog.Create(test::DialogsModule()), 1);
    auto const item = [&dialog](int id) { return TovWidget(dialog.GetDlgItem(id)); };
    EXPECT_EQ(dialog.windowTitle(), "新建");
    EXPECT_EQ(dialog.size(), TovMapDialogRect(dialog.font(), {0, 0, 170, 62}).size());
    EXPECT_EQ(dynamic_cast<QLineEdit&>(*item(1001)).text(), "📍站");
    EXPECT_TRUE(dynamic_cast<QPushButton&>(*item(IDOK)).isDefault());
    EXPECT_EQ(dynamic_cast<QComboBox&>(*item(1007)).itemText(0), "中");
    EXPECT_EQ(dynamic_cast<QListWidget&>(*item(1008)).item(0)->text(), "one");
    EXPECT_EQ(dynamic_cast<QSlider&>(*item(1009)).orientation(), Qt::Vertical);
    EXPECT_NE(dynamic_cast<QSpinBox*>(item(1011)), nullptr);
}

struct BarHost : CTovDialog {
    using CTovDialog::CTovDialog;
    int OnCommand(WPARAM wParam, LPARAM lParam) override {
        commands.push_back(TovCommandOf(wParam));
        if (commands.back() == 1203) Bar().Destroy();
        return CTovDialog::OnCommand(wParam, lParam);
    }
    CTovDlgToolBar& Bar() { return *m_toolbar; }
    std::vector<unsigned> commands;
};

TEST(DlgToolBar, StandsAtAnEdgeAndSendsItsCommandsToTheDialog) {
    test::TemporaryFolder const folder;
    std::filesystem::create_directory(folder.path() / "toolbars");
    test::PutFile(folder.path() / "strings.json", R"({"1201": "Opens a table\nOpen", "1202": "Close"})");
    test::PutFile(folder.path() / "toolbars/7.json",
                  R"({"width": 16, "height": 15, "items": [1201, 0, 1202, 1203]})");
    test::PutFile(folder.path() / "toolbars/8.json", R"({"width": 16, "height": 15, "items": [0]})");
    HINSTANCE const module = TovLoadResourceModule(folder.path().c_str());
    BarHost host;
    EXPECT_EQ(host.CreateToolbar(module, 7, 1000, 0), 0) << "no window yet";
    host.resize(400, 300);
    host.show();
    EXPECT_EQ(host.CreateToolbar(module, 8, 1000, 0), 0) << "no button";
    EXPECT_EQ(host.CreateToolbar(module, 9, 1000, 0), 0) << "no tool bar";
    ASSERT_EQ(host.CreateToolbar(module, 7, 1000, CTovDlgToolBar::eTop | CTovDlgToolBar::eLeft), 1);
    EXPECT_EQ(host.CreateToolbar(module, 7, 1001, 0), 0) << "one already";
    QToolBar& bar = *host.Bar().ToolBar();
    int const margin = CTovDialogMetrics::Margin();
    EXPECT_EQ(TovWidget(host.GetDlgItem(1000)), &bar);
    EXPECT_EQ(bar.pos(), QPoint(margin, margin - 2));
    EXPECT_EQ(bar.height(), 15 + 7 + 2);
    host.Bar().ArrangeToolbar(0);
    EXPECT_EQ(bar.geometry().bottomRight(), QPoint(400 - margin, 299 - margin));

    QWidget const& words = *bar.widgetForAction(host.Bar().ButtonOf(1201));
    EXPECT_GE(words.width(), words.fontMetrics().horizontalAdvance("Open")) << "there is no picture";
    EXPECT_EQ(host.Bar().ButtonOf(1201)->toolTip(), "Open");
    EXPECT_EQ(host.Bar().ButtonOf(1202)->toolTip(), "Close");
    EXPECT_EQ(host.Bar().EnableButton(1202, 0), 1);
    EXPECT_EQ(host.Bar().EnableButton(1204, 1), 0);
    for (unsigned const command : {1201u, 1202u, 1203u}) {
        QTest::mouseClick(bar.widgetForAction(host.Bar().ButtonOf(command)), Qt::LeftButton);
        QCoreApplication::processEvents();
    }
    EXPECT_THAT(host.commands, ElementsAre(1201u, 1203u));
    EXPECT_EQ(host.Bar().ToolBar(), nullptr) << "ended by its own button";
    EXPECT_FALSE(host.GetDlgItem(1000));
    EXPECT_EQ(host.CreateToolbar(module, 7, 1000, 0), 1) << "another";

    CTovPropPage page;
    CTovPropSheet sheet("s");
    sheet.AddPage(&page);
    EXPECT_EQ(sheet.IsToolbarEnabled(), 0);
    ASSERT_EQ(sheet.Create(), 1);
    ASSERT_EQ(sheet.CreateToolbar(module, 7, 1000, 0), 1);
    EXPECT_EQ(sheet.IsToolbarEnabled(), 1);
    sheet.show();
    for (int const height : {400, 300}) {
        sheet.resize(500, height);
        QCoreApplication::processEvents();
        QPoint const cancel = sheet.GetButton(IDCANCEL)->mapTo(&sheet, QPoint());
        EXPECT_EQ(TovWidget(sheet.GetDlgItem(1000))->pos(),
                  QPoint(page.mapTo(&sheet, QPoint()).x() - 4, cancel.y() - 2));
    }
}

TEST(DlgToolBar, HasItsPlaceInADialogInADialogAndInASheet) {
    CRect const client{0, 0, 200, 100};
    CSize const bar{50, 24};
    EXPECT_EQ(ToolBarPlaceInDialog(client, bar, 10, true, true), (CPoint{10, 8}));
    EXPECT_EQ(ToolBarPlaceInDialog(client, bar, 10, false, false), (CPoint{141, 66}));
    EXPECT_EQ(ToolBarPlaceInSheet(client, bar, 11, 70, 9), (CPoint{5, 68}));
    EXPECT_EQ(ToolBarPlaceInSheet(client, bar, 11, {}, {}), (CPoint{5, 71}));
}

TEST(DialogProgress, CountsToItsEndOrRoundAndRound) {
    struct Case {
        int steps;
        bool restarts;
        int calls;
        int current;
        int position;
    };
    Case const cases[] = {{3, false, 2, 2, 2}, {3, false, 5, 3, 3}, {3, true, 3, 3, 3},  {3, true, 4, 4, 1},
                          {3, true, 8, 8, 2},  {0, true, 5, 0, 0},  {-4, false, 1, 0, 0}};
    for (Case const& c : cases) {
        CTovDialogProgress progress;
        ASSERT_EQ(progress.View(1, nullptr, "t", nullptr, nullptr, 0), 1);
        progress.RestartOnOverflow(c.restarts);
        progress.Steps(c.steps);
        for (int i = 0; i < c.calls; ++i)
            progress.StepIt();
        EXPECT_EQ(progress.CurrentStep(), c.current);
        EXPECT_EQ(progress.findChild<QProgressBar*>()->value(), c.position);
        EXPECT_FALSE(progress.isVisible());
    }
}

TEST(DialogProgress, IsAbortedWithinATenthOfASecondWhileOthersWait) {
    QPushButton other("other");
    other.setGeometry(600, 600, 100, 50);
    int clicks = 0;
    QObject::connect(&other, &QPushButton::clicked, [&] { ++clicks; });
    other.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&other));
    // By each of the calls that keep it alive.
    std::function<void(CTovDialogProgress&)> const works[] = {
        [](CTovDialogProgress& progress) { progress.CheckAbort(); },
        [](CTovDialogProgress& progress) { progress.StepIt(); },
        [](CTovDialogProgress& progress) { progress.Comment("words"); },
    };
    for (auto const& work : works) {
        CEvent event(0, 1);
        CTovDialogProgress progress(&other);
        QSignalSpy const told(&progress, &CTovDialogProgress::abortRequested);
        ASSERT_EQ(progress.View(1000, nullptr, "Search", &event), 1);
        EXPECT_TRUE(progress.isVisible());
        EXPECT_EQ(progress.CheckAbort(), 0);
        QWidget const& abort = *TovWidget(progress.GetDlgItem(26506));
        std::atomic<int> calls{0};  // one each 50 milliseconds where the machine has time
        int waited = 0;
        std::atomic<bool> isDone{false};
        std::thread user([&] {
            std::this_thread::sleep_for(120ms);
            test::Press(other);
            test::Release(other);
            std::this_thread::sleep_for(30ms);
            int const start = calls;
            test::Press(abort);
            event.Lock(5000);
            waited = calls - start;
            test::Release(abort);
            isDone = true;
        });
        int const before = clicks;
        while (!isDone) {
            std::this_thread::sleep_for(50ms);
            ++calls;
            work(progress);
        }
        user.join();
        EXPECT_LE(waited, 2);
        EXPECT_EQ(progress.CheckAbort(), 1);
        EXPECT_EQ(told.count(), 1);
        EXPECT_EQ(clicks, before) << "the other window waits";
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
        EXPECT_EQ(clicks, before + 1);

        // Another work with the same window; Escape and the closing of the window are aborts too.
        ASSERT_EQ(progress.View(5, nullptr, "", &event), 1);
        EXPECT_EQ(progress.windowTitle(), "Search");
        EXPECT_EQ(progress.CheckAbort(), 0);
        progress.close();
        EXPECT_EQ(progress.CheckAbort(), 1);
        EXPECT_TRUE(progress.isVisible());
        progress.Destroy();
        EXPECT_FALSE(IsWindow(progress.GetSafeHwnd()));
    }
}

TEST(DialogProgress, IsMadeByItsStyleInTheMiddleAndOutlivesItsParent) {
    int const units[] = {57, 90, 101, 109, 57};  // high
    for (int const style : {0, 1, 2, 3, 7}) {
        for (bool const hasEvent : {false, true}) {
            auto around = std::make_unique<QWidget>();
            around->setGeometry(200, 100, 400, 400);
            around->show();
            ASSERT_TRUE(QTest::qWaitForWindowExposed(around.get()));
            CEvent event;
            CTovDialogProgress progress(around.get());
            progress.ProgressStyle(static_cast<CTovDialogProgress::eStyles>(style));
            ASSERT_EQ(progress.View(10, nullptr, "t", hasEvent ? &event : nullptr), 1);
            QWidget const& abort = *TovWidget(progress.GetDlgItem(26506));
            EXPECT_EQ(abort.isVisible(), hasEvent);
            QRect const whole = TovMapDialogRect(progress.font(), {0, 0, 221, units[std::min(style, 4)]});
            EXPECT_EQ(progress.height(), whole.height() - (hasEvent ? 0 : abort.height() + 1));
            QPoint const off = progress.frameGeometry().center() - around->frameGeometry().center();
            EXPECT_LE(off.manhattanLength(), 2);
            QWidget const* const place = TovWidget(progress.GetDlgItem(26524));
            EXPECT_TRUE(place == nullptr || !place->isVisible()) << "it is the host's";
            progress.close();
            EXPECT_EQ(progress.CheckAbort(), hasEvent);
            EXPECT_TRUE(progress.isVisible()) << "the work goes on";
            progress.Comment(std::string(500, 'x').c_str(), 1, 1);
            auto const& label = dynamic_cast<QLabel&>(*TovWidget(progress.GetDlgItem(26500)));
            EXPECT_TRUE(label.text().endsWith("..."));
            EXPECT_LE(label.sizeHint().width(), progress.CommentWidth());
            around.reset();
            progress.StepIt();
            EXPECT_EQ(progress.CurrentStep(), 2);
        }
    }
}

}  // namespace
}  // namespace tov
