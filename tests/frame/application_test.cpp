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

TEST(Application, TheFirstLivingOneStandsForTheProcessAndALivingWindowForIt) {
    EXPECT_EQ(TovGetApp(), nullptr);
    auto first = std::make_unique<CWinApp>();
    CWinApp second;
    EXPECT_EQ(TovGetApp(), first.get());
    {
        CTovMessageWindow window;
        window.Create();
        first->SetMainWnd(window.GetSafeHwnd());
        EXPECT_EQ(first->GetMainWnd(), window.GetSafeHwnd());
    }
    EXPECT_EQ(first->GetMainWnd(), HWND{}) << "the window has died";
    first.reset();
    EXPECT_EQ(TovGetApp(), &second);
}

TEST(HelpApp, RequestsGoToTheOneThatWasSetElseToTheApplication) {
    EXPECT_EQ(CTovHelpApp::ShowHelp(1), 0) << "there is no application";
    App app;
    {
        App help;
        for (unsigned long topic = 2; topic <= 3; ++topic) {
            TovSetHelpApp(topic == 2 ? &help : nullptr);
            EXPECT_EQ(CTovHelpApp::ShowHelp(topic), 1);
        }
        TovSetHelpApp(&help);
        EXPECT_EQ(help.topics, (std::vector<unsigned long>{2}));
    }
    EXPECT_EQ(CTovHelpApp::ShowHelp(4), 1) << "the one that was set has died";
    EXPECT_EQ(app.topics, (std::vector<unsigned long>{3, 4}));
}

TEST(Accelerators, TheTableOfAnApplicationKeepsItsKeysAndGetsTheLibrarysOnce) {
    HACCEL const library = CTovAcceleratorHelper::GetTovAccelerators();
    EXPECT_EQ(library.Command(ACCEL::eAlt, 13), WM_TOV_PROPERTIES);
    EXPECT_EQ(library.Command(ACCEL::eAlt | ACCEL::eShift, 13), 0u);
    HACCEL own;
    EXPECT_EQ(own.Add({ACCEL::eControl, 'F', 7}), 1);
    EXPECT_EQ(own.Add({ACCEL::eControl, 'F', 8}), 0);
    EXPECT_EQ(own.Add({0, 'F', 0}), 0);
    HACCEL merged = own;
    merged.Add({ACCEL::eAlt, 13, 99});
    auto const added = static_cast<int>(library.Entries().size()) - 1;
    EXPECT_EQ(CTovAcceleratorHelper::AddTovAccelerators(merged), added);
    EXPECT_EQ(CTovAcceleratorHelper::AddTovAccelerators(merged), 0);
    EXPECT_EQ(merged.Command(ACCEL::eControl, 'F'), 7u);
    EXPECT_EQ(merged.Command(ACCEL::eAlt, 13), 99u) << "taken before";
    EXPECT_EQ(own.Entries().size(), 1u) << "a copy is independent";
}

}  // namespace
}  // namespace tov
