// The edits of a dialog that can become others.
#include <tov310/dialog_extensions.h>
#include <tov310/switched_edit.h>

#include <QCoreApplication>
#include <QPointer>

#include <map>
#include <memory>

namespace tov {

class CTovDialogExtensions::Edits {
 public:
    Edits() = default;
    Edits(Edits const&) = delete;
    Edits& operator=(Edits const&) = delete;
    ~Edits() {
        for (auto const& [id, edit] : m_edits)
            delete edit.data();
    }

    CTovEditSwitched* Find(unsigned id) const {
        auto const found = m_edits.find(id);
        return found != m_edits.end() ? found->second.data() : nullptr;
    }

    // One whose window has ended with the dialog's comes back with it.
    CTovEditSwitched* Add(unsigned id, eEditType type, CWnd& dialog) {
        CTovEditSwitched* const present = Find(id);
        if (present != nullptr && present->GetSafeHwnd()) return present;
        std::unique_ptr<CTovEditSwitched> made;
        if (present == nullptr) made = std::make_unique<CTovEditSwitched>(type);
        CTovEditSwitched* const edit = present != nullptr ? present : made.get();
        if (edit->SubclassDlgItem(id, &dialog) == 0) return nullptr;
        if (made != nullptr) m_edits[id] = made.release();
        return edit;
    }

 private:
    std::map<unsigned, QPointer<CTovEditSwitched>> m_edits;  // the parent may delete them
};

CTovEditSwitched* CTovDialogExtensions::AddEdit(unsigned id, eEditType type, int readOnly) {
    if (m_dialog == nullptr) return nullptr;
    if (m_edits == nullptr) m_edits = std::make_shared<Edits>();
    CTovEditSwitched* const edit = m_edits->Add(id, type, *m_dialog);
    if (edit != nullptr && readOnly != 0) edit->SetReadOnlyMode(1);
    return edit;
}

CTovEditSwitched* CTovDialogExtensions::AddEdit(unsigned id, long least, long most, int readOnly) {
    CTovEditSwitched* const edit = AddEdit(id, eTovSwitchedLong, readOnly);
    CTovEditInteger* const number = edit != nullptr ? edit->GetEditInteger() : nullptr;
    if (number != nullptr) number->SetRange(least, most);
    return edit;
}

CTovEditSwitched* CTovDialogExtensions::AddEdit(unsigned id, double least, double most, int readOnly) {
    CTovEditSwitched* const edit = AddEdit(id, eTovSwitchedDouble, readOnly);
    CTovEditFloating* const number = edit != nullptr ? edit->GetEditFloating() : nullptr;
    if (number != nullptr) number->SetRange(least, most);
    return edit;
}

CTovEditSwitched& CTovDialogExtensions::Edit(unsigned id) {
    CTovEditSwitched* const edit = m_edits != nullptr ? m_edits->Find(id) : nullptr;
    if (edit != nullptr) return *edit;
    // Of the application, as all widgets are.
    static QPointer<CTovEditSwitched> nowhere;
    if (nowhere == nullptr) {
        nowhere = std::make_unique<CTovEditSwitched>().release();
        qAddPostRoutine([] { delete nowhere.data(); });
    }
    return *nowhere;
}

}  // namespace tov
