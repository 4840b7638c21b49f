// A folder of its own for a test, gone with everything in it at the end.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace tov::test {

class TemporaryFolder {
 public:
    TemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "tov-test-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
        m_path = pattern;
    }
    TemporaryFolder(TemporaryFolder const&) = delete;
    TemporaryFolder& operator=(TemporaryFolder const&) = delete;
    ~TemporaryFolder() {
        std::error_code failure;
        std::filesystem::remove_all(m_path, failure);
    }

    std::filesystem::path const& path() const { return m_path; }
    std::string File(std::string const& name) const { return (m_path / name).string(); }

 private:
    std::filesystem::path m_path;
};

}  // namespace tov::test
