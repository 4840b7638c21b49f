// A resource module from inside: what the library's own code asks of it.
#pragma once

#include <tov310/resources.h>

#include "frame/string_table.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace tov {

class CTovResourceModule {
 public:
    // Null, with code and reason, when strings.json is faulty.
    static std::unique_ptr<CTovResourceModule> FromTable(TovResourceTable const& table, std::string& reason);

    // Null, with code and reason, when the folder cannot be read or its strings.json is faulty.
    static std::unique_ptr<CTovResourceModule> FromFolder(std::string const& folder, unsigned long& error,
                                                          std::string& reason);

    // Null where the module lacks the text.
    std::string const* FindString(unsigned id) const {
        auto const found = m_strings.find(id);
        return found != m_strings.end() ? &found->second : nullptr;
    }

    // The folder or the file that it was loaded from; empty for the built-in one.
    std::string const& Path() const { return m_path; }
    void SetPath(std::string path) { m_path = std::move(path); }

    // Empty data where the module lacks the file.
    std::string_view FindFile(std::string_view name) const;

 private:
    std::string m_path;
    StringTable m_strings;
    std::map<std::string, std::string_view, std::less<>> m_files;
    std::map<std::string, std::string> m_contents;  // of the files that came from disk
};

// A text of the library: from the module that the host set, else from the built-in one; empty where neither
// has it. Costs a look-up, may be called from every thread, and leaves the save slot alone.
std::string const& LibraryString(unsigned id);

}  // namespace tov
