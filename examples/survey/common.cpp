#include "common.h"

#include "clocks.h"
#include "files.h"
#include "recent.h"
#include "settings.h"

#include <tov310/resources.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace survey {
namespace {

// The name of a folder, and never a way out of the one where the languages are.
std::string ReadLanguage(std::string_view name) {
    bool const good = !name.empty() && std::ranges::all_of(name, [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
    });
    if (!good) throw UsageError("--lang: a language such as en or zh_CN, not " + Quoted(name));
    return std::string(name);
}

}  // namespace

bool TakeCommon(Arguments& arguments, CommonOptions& options) {
    std::string_view const name = arguments.Name();
    if (arguments.IsFile()) return false;
    if (name == "--lang") {
        options.language = ReadLanguage(arguments.Value());
    } else if (name == "--profile") {
        options.profile = arguments.Text();
    } else if (name == "--reset") {
        options.reset = arguments.Flag();
    } else if (name == "--help" || name == "-h") {
        options.help = arguments.Flag();
    } else {
        return false;
    }
    return true;
}

void LoadLanguage(std::string const& language) {
    if (language.empty() || language == "zh_CN") return;
    std::filesystem::path const folder = LanguageFolder(language);
    std::error_code unknown;
    if (!std::filesystem::exists(folder, unknown))
        throw UsageError("there are no texts in the language " + language);
    tov::CString why;
    tov::HINSTANCE const module = tov::TovLoadResourceModule(folder.c_str(), nullptr, &why);
    if (module == nullptr) throw UsageError("the texts in the language " + language + " are faulty: " + why);
    tov::TovSetTovResourceHandle(module);
}

std::string OpenProfile(CommonOptions const& options) {
    std::string const place = OpenProfile(options.profile);
    if (options.reset) {
        ForgetSettings();
        ForgetRecentTables();
        ForgetLeapSeconds();
    }
    return place;
}

}  // namespace survey
