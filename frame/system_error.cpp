#include <tov310/system_error.h>

#include "frame/resource_module.h"
#include "vesk/error_codes.h"
#include "vesk/module.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string_view>

namespace tov {
namespace {

// The library's own sentences stand in the string table at this distance from their codes.
constexpr unsigned sentenceBase = 28000;
constexpr unsigned long lastSentence = 1999;

constexpr unsigned long firstNetworkCode = 2100;
constexpr unsigned long lastNetworkCode = 2999;

// A folder or module "netmsg" beside the library; looked for once.
HINSTANCE NetworkMessages() {
    static HINSTANCE const module = []() -> HINSTANCE {
        static char const here = 0;
        CString const library = VeskModulePath(&here);
        if (library.empty()) return nullptr;
        std::filesystem::path const folder = std::filesystem::path(library).parent_path();
        for (char const* name : {"netmsg", "netmsg.so"}) {
            std::filesystem::path const candidate = folder / name;
            std::error_code failure;
            if (!std::filesystem::exists(candidate, failure)) continue;
            if (HINSTANCE found = TovLoadResourceModule(candidate.string().c_str())) return found;
        }
        return nullptr;
    }();
    return module;
}

std::string_view Words(unsigned long code) {
    if (code >= firstNetworkCode && code <= lastNetworkCode) {
        HINSTANCE const module = NetworkMessages();
        std::string const* const text =
            module != nullptr ? module->FindString(static_cast<unsigned>(code)) : nullptr;
        return text != nullptr ? std::string_view(*text) : std::string_view();
    }
    if (code != TOV_ERROR_NONE && code <= lastSentence) {
        return LibraryString(sentenceBase + static_cast<unsigned>(code));
    }
    if (code >= TOV_ERROR_SYSTEM_BASE && code - TOV_ERROR_SYSTEM_BASE <= 0xFFFF) {
        char const* const words = VeskSystemErrorWords(static_cast<int>(code - TOV_ERROR_SYSTEM_BASE));
        return words != nullptr ? std::string_view(words) : std::string_view();
    }
    return {};
}

}  // namespace

unsigned long TovFormatSystemError(unsigned long code, char* buffer, unsigned long size) {
    if (buffer == nullptr || size == 0) return 0;
    std::string_view words = Words(code);
    words = words.substr(0, words.find_first_of("\r\n"));
    if (words.size() >= size) {
        std::size_t cut = size - 1;
        while (cut > 0 && (static_cast<unsigned char>(words[cut]) & 0xC0) == 0x80)
            --cut;
        words = words.substr(0, cut);
    }
    std::copy(words.begin(), words.end(), buffer);
    buffer[words.size()] = '\0';
    return words.size();
}

CString TovSystemErrorText(unsigned long code) {
    char buffer[260];
    return {buffer, TovFormatSystemError(code, buffer, sizeof buffer)};
}

}  // namespace tov
