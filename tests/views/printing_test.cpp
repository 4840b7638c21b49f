#include <tov310/application.h>
#include <tov310/device_context.h>
#include <tov310/printing.h>
#include <tov310/view_extensions.h>

#include "support/fake_window.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <vector>

namespace tov {
namespace {

using namespace test;

// What happens to a job, in its order.
std::vector<std::string> happened;

struct Sheet : CDC {
    int GetDeviceCaps(int index) const override {
        return index == HORZRES ? 210 : index == VERTRES ? 297 : 0;
    }
};

struct Faults {
    bool open = false, start = false, startPage = false, endPage = false, endDoc = false;
    unsigned failingPage = 2;
    unsigned long lastError = 0;
    int statusKnown = 0;
    unsigned long status = 0;
    unsigned cancelledPage = 0;
};

struct Printer : ITovPrinter {
    explicit Printer(Faults const& f) : faults(f) {}
    CString GetName() const override { return "laser"; }
    CString GetPort() const override { return "room 1"; }
    CDC* Open(char const* document, char const* output) override {
        happened.push_back(CString("open ") + document + ">" + output);
        return faults.open ? nullptr : &sheet;
    }
    int StartDoc() override { return Note("start", faults.start); }
    int StartPage() override {
        ++page;
        return Note("page", faults.startPage && page == faults.failingPage);
    }
    int EndPage() override { return Note("sent", faults.endPage && page == faults.failingPage); }
    int EndDoc() override { return Note("done", faults.endDoc); }
    void AbortDoc() override { Note("aborted", false); }
    unsigned long GetLastError() const override { return faults.lastError; }
    int GetJobStatus(unsigned long& status) const override {
        status = faults.status;
        return faults.statusKnown;
    }
    static int Note(char const* what, bool fails) {
        happened.push_back(what);
        return fails ? -1 : 1;
    }

    Faults faults;
    Sheet sheet;
    unsigned page = 0;
};

struct Progress : ITovPrintProgress {
    explicit Progress(unsigned cancelled) : left(cancelled) {}
    ~Progress() override { happened.push_back("window gone"); }
    void ShowPage(char const* page) override { shown = page; }
    int GoesOn() override { return --left != 0; }

    unsigned left;
    CString shown;
};

struct Printing : ITovPrinting {
    Printing() : before(TovSetPrinting(this)) { happened.clear(); }
    ~Printing() override { TovSetPrinting(before); }

    std::unique_ptr<ITovPrinter> CreatePrinter(char const* name) override {
        if (name != nullptr && CString(name) == "none") return nullptr;
        return std::make_unique<Printer>(faults);
    }
    int AskForJob(CView&, CPrintInfo& job, std::unique_ptr<ITovPrinter>& printer) override {
        job.m_nFromPage = from;
        job.m_nToPage = to;
        job.m_bPrintToFile = toFile;
        printer = std::make_unique<Printer>(faults);
        return answer;
    }
    int AskForFile(CView& view, CString& path) override {
        if (viewDies) view.DestroyWindow();
        path = "/out/plan.pdf";
        return answerOfFile;
    }
    std::unique_ptr<ITovPrintProgress> ShowProgress(char const* document, char const* printer,
                                                    char const* port) override {
        happened.push_back(CString("window ") + document + "," + printer + "," + port);
        return std::make_unique<Progress>(faults.cancelledPage);
    }
    void ShowMessage(char const*) override { happened.push_back("message"); }

    ITovPrinting* before;
    Faults faults;
    unsigned from = 1, to = 2;
    int toFile = 0, answer = 1, answerOfFile = 1;
    bool viewDies = false;
};

struct View : FakeWindowOf<CTovViewOf<CView>> {
    using FakeWindowOf::FakeWindowOf;
    int OnPreparePrinting(CPrintInfo* job) override {
        job->m_nMinPage = least;
        job->m_nMaxPage = most;
        return TovPreparePrinting(this, job);
    }
    void OnBeginPrinting(CDC*, CPrintInfo*) override { happened.push_back("begin"); }
    void OnPrepareDC(CDC*, CPrintInfo* job) override {
        if (job->m_nCurPage > lastPage) job->m_bContinuePrinting = 0;
    }
    void OnPrint(CDC*, CPrintInfo* job) override {
        EXPECT_EQ(job->m_rectDraw, (CRect{0, 0, 210, 297}));
        happened.push_back(std::to_string(job->m_nCurPage));
        if (dies) DestroyWindow();
    }
    void OnEndPrinting(CDC*, CPrintInfo*) override {
        CWnd const* const main = CWnd::FromHandlePermanent(TovGetApp()->GetMainWnd());
        happened.push_back((main->GetStyle() & WS_DISABLED) != 0 ? "end while disabled" : "end");
    }

    unsigned least = 1, most = 5, lastPage = 0xFFFF;
    bool dies = false;
};

struct PrintingTest : testing::Test {
    PrintingTest() {
        main.ModifyStyle(0, WS_VISIBLE);
        app.SetMainWnd(main.GetSafeHwnd());
    }

    FakeDesk desk;
    CWinApp app;
    FakeWindow main{desk};
    Printing printing;
    View view{desk};

    using Steps = std::vector<std::string>;
    Steps Run(int result, unsigned command = ID_FILE_PRINT) {
        happened.clear();
        EXPECT_EQ(CTovViewExtensions::OnFilePrint(&view, command), result);
        EXPECT_EQ(main.GetStyle() & WS_DISABLED, 0u);
        return happened;
    }
};

TEST_F(PrintingTest, EveryFaultCleansUpInOrder) {
    Steps const opening = {"open >", "begin", "window ,laser,room 1", "start"};
    Steps const failed = {"end", "window gone", "message"};
    Steps const both = {"page", "1", "sent", "page", "2", "sent", "done"};
    Steps const lost = {"page", "1", "sent", "aborted"};
    Steps const over = {"end", "window gone"};
    // A page that is not sent is forgiven only where the printer tells of the error and begins the job anew.
    struct {
        Faults faults;
        int result;
        Steps pages, closing;
    } const cases[] = {
        {{}, 1, both, over},
        {{.start = true}, 0, {}, failed},
        {{.startPage = true}, 0, {"page", "1", "sent", "page", "aborted"}, failed},
        {{.endPage = true, .failingPage = 1}, 0, lost, failed},
        {{.endPage = true, .failingPage = 1, .lastError = 5, .status = 0x800}, 0, lost, failed},
        {{.endPage = true, .failingPage = 1, .lastError = 5, .statusKnown = 1, .status = 0x400},
         0,
         lost,
         failed},
        {{.endPage = true, .failingPage = 1, .statusKnown = 1, .status = 0x800}, 0, lost, failed},
        {{.endPage = true, .lastError = 5, .statusKnown = 1, .status = 0x801}, 1, both, over},
        {{.endDoc = true}, 0, both, failed},
        {{.cancelledPage = 1}, 0, lost, over}};
    for (auto const& c : cases) {
        printing.faults = c.faults;
        Steps expected = opening;
        expected.insert(expected.end(), c.pages.begin(), c.pages.end());
        expected.insert(expected.end(), c.closing.begin(), c.closing.end());
        EXPECT_EQ(Run(c.result), expected) << &c - cases;
    }
    printing.faults = {.open = true};
    EXPECT_EQ(Run(0), (Steps{"open >", "message"}));
    printing.faults = {};
    view.dies = true;
    EXPECT_EQ(Run(0).back(), "message") << "a view that dies is not told of the end";
}

TEST_F(PrintingTest, NothingIsBegunThatNobodyWants) {
    printing.answer = 0;
    EXPECT_EQ(Run(0), Steps());
    printing.answer = 1;
    printing.toFile = 1;
    printing.answerOfFile = 0;
    EXPECT_EQ(Run(0), Steps());
    printing.answerOfFile = 1;
    Steps const steps = Run(1);
    EXPECT_EQ(steps[0], "open >/out/plan.pdf");
    EXPECT_EQ(steps[2], "window ,laser,plan.pdf");
    TovSetDirectPrinter("none");
    EXPECT_EQ(Run(0, ID_FILE_PRINT_DIRECT), Steps{"message"});
    TovSetDirectPrinter(nullptr);
    view.most = 1;
    EXPECT_EQ(Run(1, ID_FILE_PRINT_DIRECT)[0], "open >") << "without asking";
    EXPECT_EQ(CTovViewExtensions::OnFilePrint(nullptr, ID_FILE_PRINT), 0);
    printing.viewDies = true;
    EXPECT_EQ(Run(0), Steps()) << "gone while its file was asked for";
}

TEST_F(PrintingTest, PagesOfRandomRangesInBothDirections) {
    std::mt19937 random(3);
    auto const pick = [&random](unsigned low, unsigned high) {
        return low + static_cast<unsigned>(random() % (high - low + 1));
    };
    for (int round = 0; round < 500; ++round) {
        view.least = pick(1, 4);
        view.most = random() % 5 == 0 ? 0xFFFF : pick(view.least, 9);
        view.lastPage = pick(0, 12);
        printing.from = pick(0, 10);
        printing.to = random() % 5 == 0 ? 0xFFFF : pick(0, 10);
        int const from = static_cast<int>(std::clamp(printing.from, view.least, view.most));
        int const to = static_cast<int>(std::clamp(printing.to, view.least, view.most));
        Steps expected;
        for (int page = from; page <= static_cast<int>(view.lastPage); page += from > to ? -1 : 1) {
            expected.push_back(std::to_string(page));
            if (page == to) break;
        }
        Steps pages;
        for (std::string const& step : Run(1)) {
            if (isdigit(static_cast<unsigned char>(step[0]))) pages.push_back(step);
        }
        ASSERT_EQ(pages, expected) << view.least << ".." << view.most << " from " << from << " to " << to;
    }
}

}  // namespace
}  // namespace tov
