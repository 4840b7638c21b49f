// What the controls of a dialog or a form tell of themselves, by name instead of by WM_COMMAND.
#pragma once

#include <tov310/export.h>
#include <tov310/window.h>

namespace tov {

class TOV_CORE_API CTovControlEvents {
 protected:
    ~CTovControlEvents() = default;

    // A control tells of itself: another item is selected, the text has been changed.
    virtual void OnComboBoxSelChange(unsigned /*id*/) {}
    virtual void OnComboBoxEditChange(unsigned /*id*/) {}
    virtual void OnListBoxSelChange(unsigned /*id*/) {}

    // The parameters of a WM_COMMAND that the window has dealt with: calls the one of these that it is.
    void OnControlNotice(WPARAM wParam, LPARAM lParam);
};

}  // namespace tov
