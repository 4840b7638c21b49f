// Edits for texts.
#pragma once

#include <tov310/edit.h>

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
};

}  // namespace tov
