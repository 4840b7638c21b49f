// Printing with the toolkit's printers and dialogs.
#pragma once

#include <tov310/printing.h>

namespace tov {

class PrintingOnScreen final : public ITovPrinting {
 public:
    ~PrintingOnScreen() override = default;

    std::unique_ptr<ITovPrinter> CreatePrinter(char const* name) override;
    int AskForJob(CView& view, CPrintInfo& job, std::unique_ptr<ITovPrinter>& printer) override;
    int AskForFile(CView& view, CString& path) override;
    std::unique_ptr<ITovPrintProgress> ShowProgress(char const* document, char const* printer,
                                                    char const* port) override;
    int Preview(CView& view) override;
    void ShowMessage(char const* text) override;
};

}  // namespace tov
