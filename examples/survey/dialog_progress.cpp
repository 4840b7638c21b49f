#include "dialog_progress.h"

#include "window_ids.h"

#include <tov310/resources.h>

#include <string>

namespace survey {
namespace {

enum RoomControl { kFoldersLabel = 1801, kFilesLabel, kPatternLabel };

}  // namespace

SearchProgress::SearchProgress(eStyles style, QWidget* parent) : CTovDialogProgress(tov::TovWnd(parent)) {
    ProgressStyle(style);
    if (style != eStylePlain)
        AddChildDialog(tov::TovGetResourceHandle(), dialogRoom + static_cast<unsigned>(style) - 1);
    View(0, nullptr, Words(textSearching).toUtf8().constData(), &m_stop);
}

// The button lets go of the event first.
SearchProgress::~SearchProgress() {
    Destroy();
}

void SearchProgress::Tell(std::size_t folders, std::size_t files, tov::CString const& pattern) {
    tov::CDialog const* const room = CurrentChildDialog();
    if (room == nullptr) return;
    for (auto const& [id, words] : {std::pair(kFoldersLabel, std::to_string(folders)),
                                    {kFilesLabel, std::to_string(files)},
                                    {kPatternLabel, pattern}}) {
        CWnd* const label = FromHandlePermanent(room->GetDlgItem(id));
        if (label != nullptr) label->SetWindowText(words.c_str());
    }
}

}  // namespace survey
