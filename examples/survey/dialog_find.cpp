// The search runs in this thread: its callbacks keep the dialog of progress alive and ask it whether the user
// wants an end.
#include "dialog_find.h"

#include "dialog_progress.h"
#include "find.h"
#include "window_ids.h"

#include <tov310/file_list.h>
#include <tov310/messages.h>
#include <tov310/qt_values.h>
#include <tov310/system_error.h>
#include <tov310/window_messages.h>

namespace survey {
namespace {

enum FindControl { kFolderEdit = 1701, kPatternEdit, kFilesList, kStateLabel, kOpenButton };

// What the callbacks of a search have in hand.
struct SearchState {
    tov::CTovFileList& list;
    SearchProgress& progress;
    tov::CString pattern;
    int folders = 1;  // that in which the search begins is not told
    bool isAborted = false;

    void Show(char const* path) {
        progress.Tell(static_cast<std::size_t>(folders), list.Size(), pattern);
        progress.Comment(path, 1, 1);
        if (!isAborted && progress.CheckAbort() != 0) {
            isAborted = true;
            list.Abort();
        }
    }
    static SearchState& Of(unsigned long user) { return *reinterpret_cast<SearchState*>(user); }

    // First all folders are found, nobody knows how many; then each is looked into.
    static void NoteFolder(unsigned long user, int count, char const* path) {
        Of(user).folders = count + 1;
        Of(user).Show(path);
    }
    static void NoteLook(unsigned long user, int count, char const* path) {
        SearchState& state = Of(user);
        if (count == 1) {
            state.progress.RestartOnOverflow(0);
            state.progress.Steps(state.folders);
        }
        state.Show(path);
    }
};

}  // namespace

tov::CTovInputControl::eState PatternEdit::InternalValidate(char const* text, tov::CString* message) {
    eState const state = CTovEditString::InternalValidate(text, message);
    if (state != eStateValid || std::string_view(text).find_first_of("/\\") == std::string_view::npos)
        return state;
    if (message != nullptr) *message = Words(textNoPattern).toStdString();
    return eStateInvalid;
}

FindDialog::FindDialog(std::string folder, QWidget* parent)
    : CTovDialogCV(tov::TovGetResourceHandle(), dialogFind, parent), m_folder(std::move(folder)) {}

int FindDialog::OnInitDialog() {
    CTovDialogCV::OnInitDialog();
    m_directory.SubclassDlgItem(kFolderEdit, this);
    m_pattern.SubclassDlgItem(kPatternEdit, this);
    m_files = qobject_cast<QListWidget*>(tov::TovWidget(GetDlgItem(kFilesList)));
    m_state = qobject_cast<QLabel*>(tov::TovWidget(GetDlgItem(kStateLabel)));
    m_directory.SetString(m_folder);
    m_pattern.SetString(tov::CString("*.tab"));
    QWidget* const open = tov::TovWidget(GetDlgItem(kOpenButton));
    connect(m_files, &QListWidget::currentRowChanged, open, [open](int row) { open->setEnabled(row >= 0); });
    connect(m_files, &QListWidget::itemDoubleClicked, this, [this] { Open(); });
    return 1;
}

void FindDialog::OnOK() {
    Search();
}

int FindDialog::OnCommand(tov::WPARAM wParam, tov::LPARAM lParam) {
    if (tov::TovCommandOf(wParam) != kOpenButton) return CTovDialogCV::OnCommand(wParam, lParam);
    Open();
    return 1;
}

void FindDialog::Search() {
    m_files->clear();
    m_state->clear();
    tov::CString const pattern = m_pattern.GetStringTrimmed();
    tov::CTovFileList list(SearchTexts(m_directory.GetStringTrimmed(), {pattern}), 1, 0, 0);
    list.Sort(tov::CTovFileList::eSortFullFilename);
    SearchProgress progress(SearchProgress::eStyleRoom33, this);
    constexpr int someSteps = 100;
    progress.Steps(someSteps);
    progress.RestartOnOverflow(1);
    SearchState state{list, progress, pattern};
    static_assert(sizeof(unsigned long) >= sizeof(&state));
    auto const user = reinterpret_cast<unsigned long>(&state);
    list.SetCallbackSearchDirectory(SearchState::NoteFolder, user);
    list.SetCallbackSearchInDirectory(SearchState::NoteLook, user);
    list.DoIt();
    progress.Destroy();
    if (state.isAborted) {
        m_state->setText(Words(textSearchAborted));
    } else if (list.Failed() != 0) {
        unsigned long const code = list.GetLastError();
        m_state->setText(Words(textFailure).arg(code).arg(tov::TovQString(tov::TovSystemErrorText(code))));
    } else {
        for (unsigned i = 0; i < list.Size(); ++i)
            m_files->addItem(tov::TovQString(list[i]->GetFullFilename()));
        m_state->setText(Words(textFilesFound).arg(list.Size()));
    }
}

void FindDialog::Open() {
    QListWidgetItem const* const item = m_files->currentItem();
    if (item == nullptr) return;
    m_chosen = item->text().toStdString();
    EndDialog(tov::IDOK);
}

}  // namespace survey
