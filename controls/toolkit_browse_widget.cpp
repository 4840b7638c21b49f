#include "controls/toolkit_browse.h"

#include <tov310/qt_values.h>
#include <tov310/resources.h>
#include <tov310/wnd_on.h>

#include <QFileDialog>
#include <QPointer>

#include <memory>

namespace tov {
namespace {

class FileDialogBrowse : public ITovBrowseForFile {
 public:
    bool Browse(CTovBrowseRequest const& request, std::vector<CString>& names) override {
        // The edit may go while it is open, and takes it along.
        QPointer<QFileDialog> const dialog(
            std::make_unique<QFileDialog>(TovWidget(request.owner), TovQString(request.title)).release());
        SetUp(*dialog, request);
        bool const isAccepted = dialog->exec() == QDialog::Accepted;
        std::unique_ptr<QFileDialog> const end(dialog.data());
        if (!isAccepted || !end) return false;
        for (QString const& file : end->selectedFiles())
            names.push_back(TovText(file));
        return true;
    }

 private:
    static void SetUp(QFileDialog& dialog, CTovBrowseRequest const& request) {
        constexpr unsigned cancelText = 26101;
        CString cancel;
        TovLoadResourceString(TovGetTovResourceHandle(), cancelText, cancel);
        dialog.setLabelText(QFileDialog::Accept, TovQString(request.okText));
        dialog.setLabelText(QFileDialog::Reject, TovQString(cancel));
        if (!request.mustExist) dialog.setLabelText(QFileDialog::FileName, TovQString(request.prompt));
        if (request.directory) {
            dialog.setFileMode(QFileDialog::Directory);
            dialog.setOption(QFileDialog::ShowDirsOnly);
        } else {
            dialog.setFileMode(request.multiple    ? QFileDialog::ExistingFiles
                               : request.mustExist ? QFileDialog::ExistingFile
                                                   : QFileDialog::AnyFile);
            dialog.setNameFilters(FiltersOf(request));
        }
        if (!request.folder.empty()) dialog.setDirectory(TovQString(request.folder));
        for (CString const& name : request.names)
            dialog.selectFile(TovQString(name));
    }

    static QStringList FiltersOf(CTovBrowseRequest const& request) {
        QStringList filters;
        for (CTovFileFilter const& filter : TovFileFilters(request)) {
            QStringList patterns;
            // What "*.*" means elsewhere.
            for (CString const& pattern : filter.patterns)
                patterns << (pattern == "*.*" ? QStringLiteral("*") : TovQString(pattern));
            filters << QStringLiteral("%1 (%2)").arg(TovQString(filter.text), patterns.join(' '));
        }
        return filters;
    }
};

}  // namespace

ITovBrowseForFile& ToolkitBrowse() {
    static FileDialogBrowse browse;
    return browse;
}

}  // namespace tov
