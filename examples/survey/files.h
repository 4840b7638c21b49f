// Where the program's files are, and reading one.
#pragma once

#include <filesystem>
#include <string>

namespace survey {

// A table of places that comes with the program, and a folder of texts in another language. They are looked
// for beside the program, as it is built, and where they are installed. A path is given in any case.
std::filesystem::path DataFile(std::string const& name);
std::filesystem::path LanguageFolder(std::string const& language);

// Reads a whole file. Answers why it could not be read, in the language of the library; empty when it was.
std::string ReadFile(std::filesystem::path const& path, std::string& bytes);

}  // namespace survey
