// Print jobs (printing.h) on a printer of the toolkit that a host has set up by itself:
//
//   QPrinter printer;
//   printer.setOutputFileName(path);
//   tov::CPrintInfo job;
//   job.m_nMaxPage = pages;
//   tov::TovPrintPages(view, job, *tov::TovPrinterOn(printer));
#pragma once

#include <tov310/export.h>
#include <tov310/printing.h>

#include <memory>

class QPrinter;

namespace tov {

// One job on that printer, which must outlive it. A file (PDF) is written beside its place, and takes it when
// it is whole: a job that fails or is ended leaves what was there before.
TOV_UI_API std::unique_ptr<ITovPrinter> TovPrinterOn(QPrinter& printer);

// The same without a printer: a job for the file that the job names (PDF, on A4).
//
//   job.m_strOutput = path;
//   tov::TovPrintPages(view, job, *tov::TovPdfPrinter());
TOV_UI_API std::unique_ptr<ITovPrinter> TovPdfPrinter();

}  // namespace tov
