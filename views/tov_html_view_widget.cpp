#include <tov310/tov_html_view.h>

#include "views/view_signals.h"

#include <QFile>
#include <QSaveFile>
#include <QTemporaryDir>
#include <QUrl>

namespace tov {
namespace {

// Not in the folder that all users share, where others could lay files of these names.
CString WritePage(CString const& name, CString const& page) {
    static QTemporaryDir folder;
    if (!folder.isValid()) return {};
    QString const path = folder.filePath(TovQString(name).append(QStringLiteral(".html")));
    if (QFile::exists(path)) return TovText(path);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) return {};
    file.write(page.data(), static_cast<qint64>(page.size()));
    return file.commit() ? TovText(path) : CString();
}

}  // namespace

CTovHtmlView::CTovHtmlView(QWidget* parent) : CTovViewOn(parent) {}

void CTovHtmlView::Navigate(char const* address) {
    setSource(QUrl::fromUserInput(TovQString(address)), QTextDocument::HtmlResource);
}

CPoint CTovHtmlView::GetScrollPosition() const {
    return ScrolledBy(*this);
}

CString CTovHtmlView::BuildHtmlFile(char const* path, int centered, unsigned long const* backColor) {
    return WritePage(BuildHtmlFilename(path, centered, backColor),
                     BuildHtmlString(path, centered, backColor));
}

CString CTovHtmlView::BuildHtmlFileEmpty(unsigned long const* backColor) {
    return WritePage(BuildHtmlFilename(nullptr, 0, backColor), BuildHtmlStringEmpty(backColor));
}

int CTovHtmlView::ShowGraphic(char const* path, int centered, unsigned long const* backColor) {
    bool const isEmpty = path == nullptr || *path == 0;
    CString const file = isEmpty ? BuildHtmlFileEmpty(backColor) : BuildHtmlFile(path, centered, backColor);
    if (file.empty()) return 0;
    setSource(QUrl::fromLocalFile(TovQString(file)), QTextDocument::HtmlResource);
    return 1;
}

void CTovHtmlView::OnNotice(eTovViewNotice notice) {
    EmitViewNotice(*this, notice);
}

void CTovHtmlView::OnSlowDoubleClick(WPARAM, CPoint const& place) {
    Q_EMIT slowDoubleClicked(TovQPoint(place));
}

}  // namespace tov
