// The forms of a dialog in a resource module.
#pragma once

#include <tov310/dialog_template.h>

#include <deque>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tov {

// The texts that a dialog gives by id, from the module or else from the library, and what was found for them.
class TextsById {
 public:
    explicit TextsById(HINSTANCE module) : m_module(module) {}

    std::string const& Find(unsigned id);  // empty where there is none
    bool AreTheSame() const;               // as when they were found

 private:
    std::string const& Of(unsigned id) const;

    HINSTANCE m_module;
    std::deque<std::pair<unsigned, std::string>> m_found;
};

// Reads the form that docs/resources.md tells. Every fault is a line of its own that begins with dialog.name;
// with any the dialog is of no use.
bool ParseDialogTemplate(std::string_view json, TextsById& texts, CTovDialogTemplate& dialog,
                         std::vector<std::string>& faults);
bool ParseDialogTemplate(std::string_view json, HINSTANCE module, CTovDialogTemplate& dialog,
                         std::vector<std::string>& faults);

// Reads the bytes of a dialog template (dlg_template.h) and the lists of words beside it, which may be empty.
// Faults as above.
bool ParseDlgTemplate(std::string_view bytes, std::string_view init, CTovDialogTemplate& dialog,
                      std::vector<std::string>& faults);

}  // namespace tov
