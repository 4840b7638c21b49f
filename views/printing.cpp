#include <tov310/printing.h>

#include <tov310/application.h>
#include <tov310/device_context.h>
#include <tov310/document.h>
#include <tov310/system.h>
#include <tov310/view_extensions.h>

#include "frame/resource_module.h"
#include "util/seam.h"

#include <algorithm>
#include <utility>

namespace tov {
namespace {

class PrintsNothing final : public ITovPrinting {};

constinit Seam<ITovPrinting, PrintsNothing> printingSeam;

CString& DirectPrinter() {
    static CString& name = *std::make_unique<CString>().release();
    return name;
}

constexpr unsigned stringPage = 61507;
constexpr unsigned stringFailed = 61702;
constexpr unsigned anyPage = 0xFFFF;

void TellOfFailure() {
    TovGetPrinting()->ShowMessage(LibraryString(stringFailed).c_str());
}

// The main window takes nothing while a job runs.
class MainWindowDisabled {
 public:
    MainWindowDisabled() {
        CWinApp const* const app = TovGetApp();
        CWnd* const main = CWnd::FromHandlePermanent(app != nullptr ? app->GetMainWnd() : HWND{});
        m_focus = TovGetFocus();
        if (main != nullptr && main->EnableWindow(0) != 0) m_window = main->GetSafeHwnd();
    }
    MainWindowDisabled(MainWindowDisabled const&) = delete;
    MainWindowDisabled& operator=(MainWindowDisabled const&) = delete;
    ~MainWindowDisabled() { End(); }

    void End() {
        CWnd* const main = CWnd::FromHandlePermanent(std::exchange(m_window, {}));
        if (main == nullptr) return;
        main->EnableWindow(1);
        if (TovGetFocus()) return;
        if (CWnd* const focus = CWnd::FromHandlePermanent(m_focus)) focus->SetFocus();
    }

 private:
    HWND m_window;
    HWND m_focus;  // a window that takes nothing loses it
};

CString DocumentName(CView const& view) {
    CString name = view.GetDocument() != nullptr ? view.GetDocument()->GetTitle() : CString();
    if (!name.empty()) return name;
    CWnd const* const frame = view.GetParentFrame();
    return frame != nullptr ? frame->GetWindowText() : name;
}

CString TitleOfFile(CString const& path) {
    std::size_t const separator = path.find_last_of("/\\");
    return separator == path.npos ? path : path.substr(separator + 1);
}

// "Page %u" with the number.
CString PageText(unsigned page) {
    CString text = LibraryString(stringPage);
    std::size_t const place = text.find("%u");
    if (place != text.npos) text.replace(place, 2, std::to_string(page));
    return text;
}

class PrintJob {
 public:
    PrintJob(CView& view, CPrintInfo& job, ITovPrinter& printer, CDC& dc)
        : m_view(view), m_self(view.GetSafeHwnd()), m_job(job), m_printer(printer), m_dc(dc) {}

    // Answers whether all pages were printed.
    bool Run(ITovPrintProgress* progress) {
        if (m_job.m_bDocObject != 0) {
            m_view.OnPrepareDC(&m_dc, &m_job);
            if (IsAlive()) m_view.OnPrint(&m_dc, &m_job);
            return IsAlive();
        }
        auto const within = [this](unsigned page) {
            return std::clamp(page, m_job.m_nMinPage, std::max(m_job.m_nMinPage, m_job.m_nMaxPage));
        };
        unsigned const from = within(m_job.m_nFromPage);
        unsigned const to = within(m_job.m_nToPage);
        unsigned const step = from > to ? ~0u : 1u;
        unsigned const end = to == anyPage ? anyPage : to + step;
        for (m_job.m_nCurPage = from; m_job.m_nCurPage != end; m_job.m_nCurPage += step) {
            m_view.OnPrepareDC(&m_dc, &m_job);
            if (!IsAlive()) return false;
            if (m_job.m_bContinuePrinting == 0) break;
            if (progress != nullptr) progress->ShowPage(PageText(m_job.m_nCurPage).c_str());
            m_job.m_rectDraw = {0, 0, m_dc.GetDeviceCaps(HORZRES), m_dc.GetDeviceCaps(VERTRES)};
            if (m_printer.StartPage() < 0) return false;
            m_view.OnPrepareDC(&m_dc, &m_job);
            if (IsAlive()) m_view.OnPrint(&m_dc, &m_job);
            if (!IsAlive() || !PageWasPrinted()) return false;
            if (progress != nullptr && progress->GoesOn() == 0) {
                m_isEndedByUser = true;
                return false;
            }
            if (!IsAlive()) return false;
        }
        return true;
    }

    // A view without a screen that was never born has no handle to be asked by.
    bool IsAlive() const { return !m_self || IsWindow(m_self); }
    bool IsEndedByUser() const { return m_isEndedByUser; }

 private:
    bool PageWasPrinted() const {
        if (m_printer.EndPage() >= 0) return true;
        unsigned long status = 0;
        return m_printer.GetLastError() != 0 && m_printer.GetJobStatus(status) != 0 &&
               (status & JOB_STATUS_RESTART) != 0;
    }

    CView& m_view;
    HWND m_self;
    CPrintInfo& m_job;
    ITovPrinter& m_printer;
    CDC& m_dc;
    bool m_isEndedByUser = false;
};

}  // namespace

ITovPrinter::~ITovPrinter() = default;
ITovPrintProgress::~ITovPrintProgress() = default;
ITovPrinting::~ITovPrinting() = default;

std::unique_ptr<ITovPrinter> ITovPrinting::CreatePrinter(char const*) {
    return nullptr;
}

int ITovPrinting::AskForJob(CView&, CPrintInfo&, std::unique_ptr<ITovPrinter>&) {
    return 0;
}

int ITovPrinting::AskForFile(CView&, CString&) {
    return 0;
}

std::unique_ptr<ITovPrintProgress> ITovPrinting::ShowProgress(char const*, char const*, char const*) {
    return nullptr;
}

int ITovPrinting::Preview(CView&) {
    return 0;
}

void ITovPrinting::ShowMessage(char const*) {}

ITovPrinting* TovGetPrinting() {
    return printingSeam.Get();
}

ITovPrinting* TovSetPrinting(ITovPrinting* printing) {
    return printingSeam.Set(printing);
}

void TovSetDefaultPrinting(ITovPrinting* printing) {
    printingSeam.SetDefault(printing);
}

void TovSetDirectPrinter(char const* name) {
    DirectPrinter() = name != nullptr ? name : "";
}

int TovPreparePrinting(CView* view, CPrintInfo* job) {
    if (view == nullptr || job == nullptr) return 0;
    if (job->m_pPrinter != nullptr) return 1;  // of a preview, or of whoever prints by himself
    if (job->m_pAsked == nullptr) return 0;
    std::unique_ptr<ITovPrinter>& printer = *job->m_pAsked;
    if (job->m_bDirect != 0)
        printer = TovGetPrinting()->CreatePrinter(nullptr);
    else if (TovGetPrinting()->AskForJob(*view, *job, printer) == 0)
        return 0;
    job->m_pPrinter = printer.get();
    if (printer != nullptr) job->m_pDevMode = printer->GetDevMode();
    return printer != nullptr;
}

int TovPrintPages(CView& view, CPrintInfo& job, ITovPrinter& printer, int* failed) {
    if (failed != nullptr) *failed = 1;
    CString const name = DocumentName(view);
    CString port = TitleOfFile(job.m_strOutput);
    if (port.empty()) port = printer.GetPort();
    CDC* const dc = printer.Open(name.c_str(), job.m_strOutput.c_str());
    if (dc == nullptr) return 0;
    job.m_pPrinter = &printer;
    PrintJob run(view, job, printer, *dc);
    view.OnBeginPrinting(dc, &job);
    if (!run.IsAlive()) return 0;
    bool const isPreview = job.m_bPreview != 0;
    bool isPrinted = job.m_bDocObject != 0;
    {
        std::unique_ptr<MainWindowDisabled> disabled;
        std::unique_ptr<ITovPrintProgress> progress;
        if (!isPreview) {
            disabled = std::make_unique<MainWindowDisabled>();
            progress = TovGetPrinting()->ShowProgress(name.c_str(), printer.GetName().c_str(), port.c_str());
        }
        bool const isStarted = job.m_bDocObject != 0 || printer.StartDoc() >= 0;
        if (isStarted) {
            isPrinted = run.Run(progress.get());
            if (job.m_bDocObject == 0) {
                if (!isPrinted)
                    printer.AbortDoc();
                else
                    isPrinted = printer.EndDoc() >= 0;
            }
        }
        disabled.reset();
        if (run.IsAlive()) view.OnEndPrinting(dc, &job);
    }
    if (failed != nullptr) *failed = !isPrinted && !run.IsEndedByUser();
    return isPrinted;
}

int CTovViewExtensions::OnFilePrint(CView* view, unsigned command) {
    if (view == nullptr) return 0;
    if (command == ID_FILE_PRINT_PREVIEW) return TovGetPrinting()->Preview(*view);
    std::unique_ptr<ITovPrinter> printer;
    CPrintInfo job;
    job.m_pAsked = &printer;
    if (command == ID_FILE_PRINT_DIRECT) {
        job.m_bDirect = 1;
        if (!DirectPrinter().empty()) {
            printer = TovGetPrinting()->CreatePrinter(DirectPrinter().c_str());
            if (printer == nullptr) {
                TellOfFailure();
                return 0;
            }
            job.m_pPrinter = printer.get();
            job.m_pDevMode = printer->GetDevMode();
        }
    }
    HWND const self = view->GetSafeHwnd();
    auto const isGone = [self] { return self && !IsWindow(self); };
    if (view->OnPreparePrinting(&job) == 0 || isGone() || job.m_pPrinter == nullptr) return 0;
    if (job.m_bPrintToFile != 0 && job.m_bDocObject == 0 && job.m_strOutput.empty() &&
        (TovGetPrinting()->AskForFile(*view, job.m_strOutput) == 0 || isGone()))
        return 0;
    int failed = 0;
    int const isPrinted = TovPrintPages(*view, job, *job.m_pPrinter, &failed);
    if (failed != 0) TellOfFailure();
    return isPrinted;
}

}  // namespace tov
