#include "controls/toolkit_browse.h"

#include <tov310/qt_values.h>
#include <tov310/wnd_on.h>

#include <QFileDialog>

namespace tov {
namespace {

class FileDialogBrowse : public ITovBrowseForFile {
 public:
    bool Browse(CTovBrowseRequest const& request, std::vector<CString>& names) override {
        QFileDialog dialog(TovWidget(request.owner), TovQString(request.title));
        dialog.setLabelText(QFileDialog::Accept, TovQString(request.okText));
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
        QPointer<QFileDialog> const alive(&dialog);
        if (dialog.exec() != QDialog::Accepted || !alive) return false;
        for (QString const& file : dialog.selectedFiles())
            names.push_back(TovText(file));
        return true;
    }

 private:
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
