#include <tov310/string_edits.h>

#include <tov310/qt_values.h>

#include "controls/toolkit_browse.h"

#include <QDropEvent>
#include <QMimeData>
#include <QUrl>

namespace tov {
namespace {

// The files that a drop brings; there is nothing to ask the user.
class DroppedFiles : public ITovBrowseForFile {
 public:
    explicit DroppedFiles(QMimeData const& data) {
        for (QUrl const& url : data.urls()) {
            if (url.isLocalFile()) m_names.push_back(TovText(url.toLocalFile()));
        }
    }

    bool HasAny() const { return !m_names.empty(); }
    bool Browse(CTovBrowseRequest const&, std::vector<CString>& names) override {
        names = m_names;
        return true;
    }

 private:
    std::vector<CString> m_names;
};

}  // namespace

CString CTovEditString::GetString() {
    CString text = GetRawString();
    TrimString(text, 1);
    return text;
}

int CTovEditString::SetString(CString const& text) {
    Text().SetString(text);
    TellContent();
    return 1;
}

CTovInputControl::eState CTovEditString::InternalValidate(char const* text, CString* message) {
    return TovValidateString(text, GetMinChars(), GetMaxChars(), GetEmptyAllowed(), message);
}

CTovEditFilename::CTovEditFilename(QWidget* parent) : CTovEditFilename(eTypeFile, {}, 1, parent) {}

CTovEditFilename::CTovEditFilename(eType type, eExistence existence, int singleName, QWidget* parent)
    : CTovEditString(parent),
      m_type(type),
      m_existence(existence),
      m_singleName(singleName),
      m_rules(*this, type, existence, singleName) {
    SetTrimLeft(1);
    SetTrimRight(1);
}

int CTovEditFilename::ResetAttributes() {
    if (CTovEditString::ResetAttributes() == 0) return 0;
    SetTrimLeft(1);
    SetTrimRight(1);
    m_rules.Reset(m_type, m_existence, m_singleName);
    m_browse = nullptr;
    return 1;
}

void CTovEditFilename::InitializeEdit() {
    CTovEditString::InitializeEdit();
    CreateEditButton("...");
}

CTovInputControl::eState CTovEditFilename::InternalValidate(char const* text, CString* message) {
    eState const state = CTovEditString::InternalValidate(text, message);
    return state != eStateValid ? state : m_rules.InternalValidate(text, message);
}

void CTovEditFilename::OnButtonClicked() {
    if (m_rules.Type() == eTypeDirectory)
        SelectDirectory();
    else
        SelectFile();
}

void CTovEditFilename::SelectDirectory() {
    SelectWith(m_browse);
}

void CTovEditFilename::SelectFile() {
    SelectWith(m_browse);
}

void CTovEditFilename::SelectWith(ITovBrowseForFile* browse) {
    if (browse == nullptr) browse = TovGetBrowseForFile();
    if (browse == nullptr) browse = &ToolkitBrowse();
    QPointer<CTovEditFilename> const alive(this);
    CString chosen;
    SetInlineControlContainerDialogBoxPending(1);
    int const isChosen = m_rules.Select(browse, GetSafeHwnd(), GetString().c_str(), chosen);
    if (!alive) return;
    SetInlineControlContainerDialogBoxPending(0);
    if (isChosen == 0 || GetReadOnlyMode() != 0) return;
    SetFocusInputControl();
    SetEditText(chosen);
    SelectAll();
}

void CTovEditFilename::dragEnterEvent(QDragEnterEvent* event) {
    if (GetReadOnlyMode() == 0 && DroppedFiles(*event->mimeData()).HasAny())
        event->acceptProposedAction();
    else
        CTovEditString::dragEnterEvent(event);
}

void CTovEditFilename::dropEvent(QDropEvent* event) {
    DroppedFiles files(*event->mimeData());
    if (GetReadOnlyMode() != 0 || !files.HasAny()) return CTovEditString::dropEvent(event);
    event->acceptProposedAction();
    SelectWith(&files);
}

}  // namespace tov
