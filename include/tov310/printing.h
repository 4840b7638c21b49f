// Print jobs: which pages of a view go to a printer, in which order, and what becomes of it when that fails.
//
// A view takes part through CView: OnPreparePrinting says how many pages there are and calls
// TovPreparePrinting; OnBeginPrinting, OnPrepareDC and OnPrint for each page, and OnEndPrinting follow.
//
//   int MyView::OnPreparePrinting(tov::CPrintInfo* job) {
//       job->m_nMaxPage = pages;
//       return tov::TovPreparePrinting(this, job);
//   }
#pragma once

#include <tov310/export.h>
#include <tov310/paper.h>
#include <tov310/types.h>

#include <memory>

namespace tov {

class CDC;
class CView;

// Commands of hosts.
inline constexpr unsigned ID_FILE_PRINT = 0xE107;
inline constexpr unsigned ID_FILE_PRINT_DIRECT = 0xE108;  // on the usual printer, without asking
inline constexpr unsigned ID_FILE_PRINT_PREVIEW = 0xE109;

inline constexpr unsigned long JOB_STATUS_RESTART = 0x800;  // the printer does the job again by itself

// A printer with one job, which begins with Open and ends with EndDoc or AbortDoc.
class TOV_CORE_API ITovPrinter {
 public:
    virtual ~ITovPrinter();

    virtual CString GetName() const = 0;
    virtual CString GetPort() const { return {}; }  // where it stands; empty where that is not known

    // What it is set to; null where that is not known.
    virtual DEVMODE const* GetDevMode() const { return nullptr; }

    // Sets the job's name and the file that it goes to (empty: to the printer), and answers what its pages
    // are drawn on, which lives as long as the printer. Null: there is no such thing.
    virtual CDC* Open(char const* document, char const* output) = 0;

    // Each answers a number below 0 where it fails.
    virtual int StartDoc() = 0;
    virtual int StartPage() = 0;
    virtual int EndPage() = 0;
    virtual int EndDoc() = 0;

    // Leaves nothing of the job.
    virtual void AbortDoc() = 0;

    // Why EndPage has failed; 0 where that is not known.
    virtual unsigned long GetLastError() const { return 0; }

    // How the job stands, JOB_STATUS_ bits. Answers 1, or 0 where that is not known.
    virtual int GetJobStatus(unsigned long& status) const {
        status = 0;
        return 0;
    }

 protected:
    ITovPrinter() = default;
    ITovPrinter(ITovPrinter const&) = default;
    ITovPrinter& operator=(ITovPrinter const&) = default;
};

// The small window that shows how far a job is.
class TOV_CORE_API ITovPrintProgress {
 public:
    virtual ~ITovPrintProgress();
    virtual void ShowPage(char const* page) = 0;

    // Lets the user reach it, and answers 0 once he wants the job to end.
    virtual int GoesOn() = 0;

 protected:
    ITovPrintProgress() = default;
    ITovPrintProgress(ITovPrintProgress const&) = default;
    ITovPrintProgress& operator=(ITovPrintProgress const&) = default;
};

// What printing asks of the screen. Each operation does nothing, or answers that there is nothing, where it
// is not overridden.
class TOV_CORE_API ITovPrinting {
 public:
    // The printer of that name, or the usual one for an empty one; null for none.
    virtual std::unique_ptr<ITovPrinter> CreatePrinter(char const* name);

    // Lets the user choose printer and pages, and sets both in the job. 0: he does not want to print.
    virtual int AskForJob(CView& view, CPrintInfo& job, std::unique_ptr<ITovPrinter>& printer);

    // Asks for the file that a job goes to. 0: the user does not want to print.
    virtual int AskForFile(CView& view, CString& path);

    // Shows the window of a job until it is deleted; null for none.
    virtual std::unique_ptr<ITovPrintProgress> ShowProgress(char const* document, char const* printer,
                                                            char const* port);

    // Shows what TovPrintPages prints in place of a printer.
    virtual int Preview(CView& view);

    virtual void ShowMessage(char const* text);

 protected:
    ITovPrinting() = default;
    ITovPrinting(ITovPrinting const&) = default;
    ITovPrinting& operator=(ITovPrinting const&) = default;
    virtual ~ITovPrinting();
};

// The one in force, never null. Setting puts another in its place, which stays the caller's and must live
// until it is replaced, and answers the one before; null brings the default back. The default is that of the
// layer of the toolkit.
TOV_CORE_API ITovPrinting* TovGetPrinting();
TOV_CORE_API ITovPrinting* TovSetPrinting(ITovPrinting* printing);
TOV_CORE_API void TovSetDefaultPrinting(ITovPrinting* printing);

// For OnPreparePrinting: gives the job a printer, asking the user unless the job is direct or a preview.
// Pages that he does not choose are those of the job. Answers 1, or 0: there is nothing to be printed on.
TOV_CORE_API int TovPreparePrinting(CView* view, CPrintInfo* job);

// The printer that direct jobs go to from now on, as the command line of an application may name it; null or
// empty is the usual one. Where there is no such printer the user is told.
TOV_CORE_API void TovSetDirectPrinter(char const* name);

// Prints the pages of a view on a printer: all of a job that is set up, from OnBeginPrinting to
// OnEndPrinting. Pages go from the first to the last one of the job, downwards where the first is the larger;
// both are kept between the least and the largest page there is. The job stops in front of a page when the
// view says so (m_bContinuePrinting), and after one when the user or the printer does. Answers 1, or 0 where
// it was not printed to its end; `failed` (may be null) is 1 where that was not the user's will.
TOV_CORE_API int TovPrintPages(CView& view, CPrintInfo& job, ITovPrinter& printer, int* failed = nullptr);

}  // namespace tov
