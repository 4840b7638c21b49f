#include "platform/printing.h"

#include <tov310/messages.h>
#include <tov310/painter_dc.h>
#include <tov310/pump.h>
#include <tov310/qt_values.h>
#include <tov310/resources.h>
#include <tov310/styles.h>
#include <tov310/tov_dialog.h>
#include <tov310/tov_printer.h>
#include <tov310/view.h>

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPaintEngine>
#include <QPointer>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QTemporaryFile>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace tov {
namespace {

constexpr unsigned dialogPrinting = 30722;
constexpr int itemDocument = 201;
constexpr int itemPrinter = 202;
constexpr int itemPort = 203;
constexpr int itemPage = 204;
constexpr unsigned stringFileTitle = 61509;
constexpr unsigned stringFileExtension = 61510;
constexpr unsigned stringFileFilter = 61511;
constexpr unsigned stringFileName = 61512;

QString TextOfLibrary(unsigned id) {
    CString text;
    TovLoadResourceString(TovGetTovResourceHandle(), id, text);
    return TovQString(text);
}

// A written page file ends so; what a full disk has cut does not.
bool IsWholePdf(QString const& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return false;
    constexpr qint64 tail = 16;
    file.seek(std::max<qint64>(0, file.size() - tail));
    return file.readAll().trimmed().endsWith("%%EOF");
}

// Files are written beside their place and moved there when they are whole.
class PrinterOfToolkit final : public ITovPrinter {
 public:
    explicit PrinterOfToolkit(std::unique_ptr<QPrinter> printer)
        : m_own(std::move(printer)), m_printer(*m_own) {}
    explicit PrinterOfToolkit(QPrinter& printer, bool isPreview = false)
        : m_printer(printer), m_isPreview(isPreview) {}
    ~PrinterOfToolkit() override {
        EndPainting();
        RemoveFile();
    }

    QPrinter& Native() { return m_printer; }

    CString GetName() const override { return TovText(m_printer.printerName()); }
    CString GetPort() const override {
        return TovText(QPrinterInfo::printerInfo(m_printer.printerName()).location());
    }

    DEVMODE const* GetDevMode() const override {
        QSizeF const size = m_printer.pageLayout().fullRect(QPageLayout::Millimeter).size();
        auto const tenths = [](double millimetres) {
            return static_cast<std::int16_t>(std::min(3276.0, millimetres) * 10 + 0.5);
        };
        m_mode.dmFields = DM_PAPERLENGTH | DM_PAPERWIDTH;
        m_mode.dmPaperLength = tenths(size.height());
        m_mode.dmPaperWidth = tenths(size.width());
        return &m_mode;
    }

    CDC* Open(char const* document, char const* output) override {
        m_printer.setDocName(TovQString(document));
        if (!m_isPreview) m_target = TovQString(output);
        if (m_target.isEmpty() && !m_isPreview) m_target = m_printer.outputFileName();
        if (!m_target.isEmpty()) {
            m_written = NameBeside(m_target);
            m_printer.setOutputFormat(QPrinter::PdfFormat);
            m_printer.setOutputFileName(m_written);
        }
        // Without a place to write to the pages are drawn nowhere.
        m_dc = m_target.isEmpty() || !m_written.isEmpty()
                   ? std::make_unique<CTovPainterDC>(static_cast<QPaintDevice&>(m_printer))
                   : std::make_unique<CTovPainterDC>(m_nowhere);
        return m_dc.get();
    }

    int StartDoc() override { return IsOpen() ? 1 : -1; }
    int StartPage() override {
        if (std::exchange(m_isFirstPage, false)) return IsOpen() ? 1 : -1;
        return m_printer.newPage() ? 1 : -1;
    }
    int EndPage() override {
        QPrinter::PrinterState const state = m_printer.printerState();
        return IsOpen() && state != QPrinter::Error && state != QPrinter::Aborted ? 1 : -1;
    }
    int EndDoc() override {
        bool const isEnded = EndPainting() && m_printer.printerState() != QPrinter::Error;
        if (m_written.isEmpty()) return isEnded ? 1 : -1;
        if (isEnded && IsWholePdf(m_written)) {
            QFileInfo const before(m_target);
            if (before.exists()) QFile::setPermissions(m_written, before.permissions());
            std::error_code error;
            std::filesystem::rename(QFileInfo(m_written).filesystemFilePath(), before.filesystemFilePath(),
                                    error);
            if (!error) {
                m_written.clear();
                return 1;
            }
        }
        RemoveFile();
        return -1;
    }
    void AbortDoc() override {
        m_printer.abort();
        EndPainting();
        RemoveFile();
    }

 private:
    bool IsOpen() const { return m_dc != nullptr && m_dc->Native().isActive(); }
    bool EndPainting() { return IsOpen() && m_dc->Native().end(); }

    // Empty where nothing can be written there. The file itself is made anew by who writes it, with the
    // rights of any new file.
    static QString NameBeside(QString const& path) {
        QTemporaryFile file(path + QStringLiteral(".XXXXXX"));
        return file.open() ? file.fileName() : QString();
    }

    void RemoveFile() {
        if (!m_written.isEmpty()) QFile::remove(std::exchange(m_written, {}));
    }

    std::unique_ptr<QPrinter> m_own;
    QPrinter& m_printer;
    bool m_isPreview = false;
    QPainter m_nowhere;
    std::unique_ptr<CTovPainterDC> m_dc;
    QString m_target;
    QString m_written;
    bool m_isFirstPage = true;
    mutable DEVMODE m_mode;
};

// Shows the job and has a button that ends it.
class CTovPrintingDialog final : public CTovDialog, public ITovPrintProgress {
 public:
    CTovPrintingDialog() : CTovDialog(dialogPrinting) { AutoDelete(0); }
    ~CTovPrintingDialog() override = default;

    void Show(char const* document, char const* printer, char const* port) {
        CWnd* const owner = TovWnd(QApplication::activeWindow());
        if (Create(TovGetTovResourceHandle(), owner) != 1) return;
        // An owner that dies meanwhile takes its children along; this one belongs to whoever prints.
        if (parentWidget() != nullptr) {
            connect(parentWidget(), &QObject::destroyed, this, [this] { setParent(nullptr, windowFlags()); });
        }
        SetWindowText(TovText(QApplication::applicationDisplayName()).c_str());
        SetItem(itemDocument, document);
        SetItem(itemPrinter, printer);
        SetItem(itemPort, port);
        ShowWindow(SW_SHOW);
        setEnabled(true);  // unlike the main window, which it belongs to
    }

    void ShowPage(char const* page) override { SetItem(itemPage, page); }
    int GoesOn() override {
        TovGetPump()->Pump(GetSafeHwnd());
        return m_goesOn;
    }

 protected:
    void OnOK() override {}
    void OnCancel() override { m_goesOn = 0; }

 private:
    void SetItem(int id, char const* text) {
        if (CWnd* const item = CWnd::FromHandlePermanent(GetDlgItem(id))) item->SetWindowText(text);
    }

    int m_goesOn = 1;
};

// A dialog of the toolkit, which the window that it belongs to may take along when that ends meanwhile.
template <class Dialog>
class Asking {
 public:
    template <class... Arguments>
    explicit Asking(Arguments&&... arguments)
        : m_dialog(std::make_unique<Dialog>(std::forward<Arguments>(arguments)...).release()) {}
    Asking(Asking const&) = delete;
    Asking& operator=(Asking const&) = delete;
    ~Asking() { delete m_dialog.data(); }

    Dialog* operator->() const { return m_dialog.data(); }

    // Whether the user has accepted, and the dialog is still there.
    bool IsAccepted() { return m_dialog->exec() == QDialog::Accepted && m_dialog; }

 private:
    QPointer<Dialog> m_dialog;
};

QWidget* WindowOf(CView const& view) {
    QWidget* const widget = TovWidget(&view);
    return widget != nullptr ? widget->window() : QApplication::activeWindow();
}

std::unique_ptr<QPrinter> NewPrinter(QPrinterInfo const& info) {
    return info.isNull() ? std::make_unique<QPrinter>(QPrinter::HighResolution)
                         : std::make_unique<QPrinter>(info, QPrinter::HighResolution);
}

}  // namespace

std::unique_ptr<ITovPrinter> TovPrinterOn(QPrinter& printer) {
    return std::make_unique<PrinterOfToolkit>(printer);
}

std::unique_ptr<ITovPrinter> TovPdfPrinter() {
    auto printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    printer->setOutputFormat(QPrinter::PdfFormat);
    printer->setPageSize(QPageSize(QPageSize::A4));
    return std::make_unique<PrinterOfToolkit>(std::move(printer));
}

std::unique_ptr<ITovPrinter> PrintingOnScreen::CreatePrinter(char const* name) {
    QString const wanted = TovQString(name);
    QPrinterInfo const info =
        wanted.isEmpty() ? QPrinterInfo::defaultPrinter() : QPrinterInfo::printerInfo(wanted);
    if (info.isNull()) return nullptr;
    return std::make_unique<PrinterOfToolkit>(NewPrinter(info));
}

int PrintingOnScreen::AskForJob(CView& view, CPrintInfo& job, std::unique_ptr<ITovPrinter>& printer) {
    auto made = std::make_unique<PrinterOfToolkit>(NewPrinter(QPrinterInfo::defaultPrinter()));
    QPrinter& native = made->Native();
    Asking<QPrintDialog> dialog(&native, WindowOf(view));
    constexpr unsigned unknown = 0xFFFF;
    dialog->setMinMax(static_cast<int>(job.m_nMinPage), static_cast<int>(job.m_nMaxPage));
    if (job.m_nMaxPage != unknown)
        dialog->setFromTo(static_cast<int>(job.m_nMinPage), static_cast<int>(job.m_nMaxPage));
    QPointer<QWidget> const alive(TovWidget(&view));
    if (!dialog.IsAccepted() || !alive) return 0;
    if (native.printRange() == QPrinter::PageRange && native.fromPage() > 0) {
        job.m_nFromPage = static_cast<unsigned>(native.fromPage());
        job.m_nToPage = static_cast<unsigned>(std::max(native.fromPage(), native.toPage()));
    }
    if (native.pageOrder() == QPrinter::LastPageFirst && std::min(job.m_nToPage, job.m_nMaxPage) != unknown) {
        job.m_nToPage = std::min(job.m_nToPage, job.m_nMaxPage);
        std::swap(job.m_nFromPage, job.m_nToPage);
    }
    job.m_bPrintToFile = native.outputFormat() == QPrinter::PdfFormat;
    job.m_strOutput = TovText(native.outputFileName());
    printer = std::move(made);
    return 1;
}

int PrintingOnScreen::AskForFile(CView& view, CString& path) {
    Asking<QFileDialog> dialog(WindowOf(view), TextOfLibrary(stringFileTitle), TextOfLibrary(stringFileName),
                               TextOfLibrary(stringFileFilter));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(TextOfLibrary(stringFileExtension));
    if (!dialog.IsAccepted() || dialog->selectedFiles().isEmpty()) return 0;
    path = TovText(dialog->selectedFiles().constFirst());
    return 1;
}

std::unique_ptr<ITovPrintProgress> PrintingOnScreen::ShowProgress(char const* document, char const* printer,
                                                                  char const* port) {
    auto dialog = std::make_unique<CTovPrintingDialog>();
    dialog->Show(document, printer, port);
    return dialog;
}

int PrintingOnScreen::Preview(CView& view) {
    QPointer<QWidget> const alive(TovWidget(&view));
    QPrinter sheet(QPrinter::HighResolution);
    Asking<QPrintPreviewDialog> dialog(&sheet, WindowOf(view));
    int isShown = 0;
    QObject::connect(dialog.operator->(), &QPrintPreviewDialog::paintRequested, dialog.operator->(),
                     [&](QPrinter* native) {
                         if (!alive) return;
                         // Its button to print asks in the same way, but for what is drawn on.
                         bool const isPreview = native->paintEngine()->type() == QPaintEngine::Picture;
                         PrinterOfToolkit printer(*native, isPreview);
                         CPrintInfo job;
                         job.m_bPreview = isPreview;
                         job.m_pPrinter = &printer;
                         job.m_pDevMode = printer.GetDevMode();
                         if (view.OnPreparePrinting(&job) != 0 && alive)
                             isShown = TovPrintPages(view, job, printer);
                     });
    dialog.IsAccepted();
    return isShown;
}

void PrintingOnScreen::ShowMessage(char const* text) {
    QMessageBox::warning(QApplication::activeWindow(), QApplication::applicationDisplayName(),
                         TovQString(text));
}

}  // namespace tov
