// A name that one process at a time can hold, and the folder for such names.
#pragma once

#include <string>
#include <string_view>
#include <system_error>

namespace tov {

// The folder for what lives as long as the user is logged in, ready for use: Tov310 in $XDG_RUNTIME_DIR where
// that is a folder of the user's, else a folder in the temporary directory that only the user can enter.
std::error_code UserRuntimeFolder(std::string& folder);

// A file name for any text: what is not a letter, digit, "-" or "_" is escaped, and a long text ends in its
// hash. Different texts have different names; hashes are 64 bits.
std::string EscapedFileName(std::string_view text);

// A lock that ends with its holder, however that ends. Processes forked from the holder share it until it is
// given back.
class LockFile {
 public:
    LockFile() = default;
    LockFile(LockFile const&) = delete;
    LockFile& operator=(LockFile const&) = delete;
    ~LockFile() { Release(); }

    // Takes the lock without waiting: `file_exists` while somebody else holds it, also in this process.
    std::error_code Take(std::string const& path);
    void Release();
    bool IsTaken() const { return m_descriptor >= 0; }

 private:
    std::string m_path;
    int m_descriptor = -1;
    int m_process = 0;
};

}  // namespace tov
