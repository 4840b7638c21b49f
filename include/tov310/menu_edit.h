// The context menu of edits.
#pragma once

#include <tov310/export.h>
#include <tov310/menu_popup.h>
#include <tov310/types.h>

#include <vector>

namespace tov {

class CTovEditHost;

// Turns the tokens of a menu ("%UNDO", "%PASTE" ...; the resource 26269 has
// them all) into commands with their texts and states: what changes the text is
// left out for a read-only edit, and what cannot be done now is greyed.
// "%INSERT" becomes a popup with the values that were entered last.
class TOV_CORE_API CTovMenuPopUpEdit : public CTovMenuPopUp {
    TOV_DYNCREATE(CTovMenuPopUpEdit, CTovMenuPopUp)
 public:
    // Both are borrowed as long as the menu is not customised, and may be null:
    // without an edit everything is enabled, without values there is no
    // "%INSERT".
    explicit CTovMenuPopUpEdit(CTovEditHost* edit = nullptr, std::vector<CString>* lastItems = nullptr);
    ~CTovMenuPopUpEdit() override;

    void CustomizeMenu() override;

 private:
    bool CustomizeInsert(unsigned position);

    CTovEditHost* m_edit;
    std::vector<CString>* m_lastItems;
};

}  // namespace tov
