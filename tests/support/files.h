// Whole files in one line.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace tov::test {

inline void PutFile(std::filesystem::path const& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary).write(bytes.data(), std::ssize(bytes));
}

inline std::string GetFile(std::filesystem::path const& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace tov::test
