// Edits for texts, and for names of files and directories.
//
//   auto* const table = new tov::CTovEditFilename(tov::CTovEditFilename::eTypeFile,
//                                                 tov::CTovEditFilename::eExistenceMust, 1, this);
//
// edit_filename.h says which texts and names they take.
#pragma once

#include <tov310/edit.h>
#include <tov310/edit_filename.h>

#include <vector>

namespace tov {

class TOV_UI_API CTovEditString : public CTovEdit {
    TOV_DYNCREATE(CTovEditString, CTovEdit)
 public:
    using CTovInputControl::operator=;
    using CTovInputControl::SetString;
    explicit CTovEditString(QWidget* parent = nullptr) : CTovEdit(parent) {}

    // The content as it will be without the focus, and a new one, which the user can undo.
    CString GetString() override;
    int SetString(CString const& text) override;

    eState InternalValidate(char const* text, CString* message) override;
};

// White space at the ends does not belong to a name, so both trims are on. The button "..." lets the user
// choose; files that are dropped on the edit are its names.
class TOV_UI_API CTovEditFilename : public CTovEditString, public CTovEditFilenameHost {
    TOV_DYNCREATE(CTovEditFilename, CTovEditString)
 public:
    using CTovEditFilenameHost::TrimString;
    using CTovEditString::TrimString;
    using CTovInputControl::operator=;
    explicit CTovEditFilename(QWidget* parent = nullptr);
    explicit CTovEditFilename(eType type, eExistence existence = eExistenceNoTest, int singleName = 1,
                              QWidget* parent = nullptr);

    // What the edit is for, further conditions, and texts of the dialog.
    CTovFilenameRules& Rules() { return m_rules; }
    std::vector<CString> GetNames() { return m_rules.Names(GetString().c_str()); }

    // Who lets the user choose for this edit; it stays the caller's. Null for the one for all edits, and
    // where there is none either, for the toolkit's.
    void BrowseWith(ITovBrowseForFile* browse) { m_browse = browse; }

    int ResetAttributes() override;  // what the constructor was given stays
    void InitializeEdit() override;
    eState InternalValidate(char const* text, CString* message) override;
    void OnButtonClicked() override;

 protected:
    // Let the user choose and put the names in, as if he had typed them.
    virtual void SelectDirectory();
    virtual void SelectFile();

    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

 private:
    void SelectWith(ITovBrowseForFile* browse);

    eType const m_type;
    eExistence const m_existence;
    int const m_singleName;
    CTovFilenameRules m_rules;
    ITovBrowseForFile* m_browse = nullptr;
};

}  // namespace tov
