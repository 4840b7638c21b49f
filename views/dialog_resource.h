// The forms of a dialog in a resource module.
#pragma once

#include <tov310/dialog_template.h>

#include <string>
#include <string_view>
#include <vector>

namespace tov {

// Reads the form that docs/resources.md tells. Texts that are given by id come from the module, and from the
// library where it lacks them. Every fault is a line of its own that begins with dialog.name; with any the
// dialog is of no use.
bool ParseDialogTemplate(std::string_view json, HINSTANCE texts, CTovDialogTemplate& dialog,
                         std::vector<std::string>& faults);

// Reads the bytes of a dialog template (dlg_template.h) and the lists of words beside it, which may be empty.
// Faults as above.
bool ParseDlgTemplate(std::string_view bytes, std::string_view init, CTovDialogTemplate& dialog,
                      std::vector<std::string>& faults);

}  // namespace tov
