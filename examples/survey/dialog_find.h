// Searches folders for files, as the command "find" does.
#pragma once

#include <tov310/string_edits.h>
#include <tov310/tov_dialog.h>

#include <QLabel>
#include <QListWidget>

#include <string>

namespace survey {

// The names of the files that are wanted, never a way into another folder.
class PatternEdit : public tov::CTovEditString {
 protected:
    eState InternalValidate(char const* text, tov::CString* message) override;
};

// Search fills the list and leaves the dialog open; it ends with IDOK when a file of the list is to be
// opened.
class FindDialog : public tov::CTovDialogCV {
 public:
    explicit FindDialog(std::string folder, QWidget* parent = nullptr);

    std::string const& ChosenFile() const { return m_chosen; }

 protected:
    int OnInitDialog() override;
    void OnOK() override;
    int OnCommand(tov::WPARAM wParam, tov::LPARAM lParam) override;

 private:
    void Search();
    void Open();

    std::string m_folder;
    std::string m_chosen;
    tov::CTovEditFilename m_directory{tov::CTovEditFilename::eTypeDirectory,
                                      tov::CTovEditFilename::eExistenceMust};
    PatternEdit m_pattern;
    QListWidget* m_files = nullptr;
    QLabel* m_state = nullptr;
};

}  // namespace survey
