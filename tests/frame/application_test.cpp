#include <tov310/accelerator.h>
#include <tov310/application.h>
#include <tov310/help_app.h>
#include <tov310/messages.h>

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

namespace tov {
namespace {

struct App : CWinApp {
    int WinHelp(unsigned long topic) override {
        topics.push_back(topic);
        return 1;
    }
    std::vector<unsigned long> topics;
};

TEST(Application, TheFirstLivingOneStandsForTheProcess) {
    EXPECT_EQ(TovGetApp(), nullptr);
    auto first = std::make_unique<CWinApp>();
    CWinApp second;
    EXPECT_EQ(TovGetApp(), first.get());
    first.reset();
    EXPECT_EQ(TovGetApp(), &second);
}

TEST(Application, AMainWindowThatDiedIsNone) {
    CWinApp app;
    EXPECT_EQ(app.GetMainWnd(), HWND{});
    {
        CTovMessageWindow window;
        window.Create();
        app.SetMainWnd(window.GetSafeHwnd());
        EXPECT_EQ(app.GetMainWnd(), window.GetSafeHwnd());
    }
    EXPECT_EQ(app.GetMainWnd(), HWND{});
}

TEST(HelpApp, RequestsGoToTheOneThatWasSetElseToTheApplication) {
    EXPECT_EQ(CTovHelpApp::ShowHelp(1), 0) << "there is no application";
    App app;
    {
        App help;
        TovSetHelpApp(&help);
        EXPECT_EQ(CTovHelpApp::ShowHelp(2), 1);
        EXPECT_EQ(help.topics, (std::vector<unsigned long>{2}));
        TovSetHelpApp(nullptr);
        EXPECT_EQ(CTovHelpApp::ShowHelp(3), 1);
        TovSetHelpApp(&help);
    }
    EXPECT_EQ(CTovHelpApp::ShowHelp(4), 1) << "the one that was set has died";
    EXPECT_EQ(app.topics, (std::vector<unsigned long>{3, 4}));
}

TEST(Accelerators, TheTableOfAnApplicationKeepsItsKeysAndGetsTheLibrarysOnce) {
    HACCEL const library = CTovAcceleratorHelper::GetTovAccelerators();
    EXPECT_EQ(library.Command(ACCEL::eAlt, 13), WM_TOV_PROPERTIES);
    EXPECT_EQ(library.Command(ACCEL::eAlt | ACCEL::eShift, 13), 0u);
    HACCEL own;
    EXPECT_FALSE(own);
    EXPECT_EQ(own.Add({ACCEL::eControl, 'F', 7}), 1);
    EXPECT_EQ(own.Add({ACCEL::eControl, 'F', 8}), 0);
    EXPECT_EQ(own.Add({0, 'F', 0}), 0);
    HACCEL merged = own;
    EXPECT_EQ(CTovAcceleratorHelper::AddTovAccelerators(merged), static_cast<int>(library.Entries().size()));
    EXPECT_EQ(CTovAcceleratorHelper::AddTovAccelerators(merged), 0);
    EXPECT_EQ(merged.Entries().size(), own.Entries().size() + library.Entries().size());
    EXPECT_EQ(merged.Command(ACCEL::eControl, 'F'), 7u);
    HACCEL taken;
    taken.Add({ACCEL::eAlt, 13, 99});
    CTovAcceleratorHelper::AddTovAccelerators(taken);
    EXPECT_EQ(taken.Command(ACCEL::eAlt, 13), 99u);
    EXPECT_EQ(own.Entries().size(), 1u) << "a copy is independent";
}

}  // namespace
}  // namespace tov
