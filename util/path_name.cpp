// Which names files can have.
#include <tov310/path.h>

#include "util/file_facts.h"
#include "util/name_pattern.h"
#include "vesk/volume.h"

#include <algorithm>
#include <string_view>

namespace tov {
namespace {

constexpr std::size_t longestName = 255;
constexpr char plainReplacement = '_';

bool IsForbidden(char32_t character) {
    return character < 0x20 || character >= strayByte ||
           (character < 0x80 &&
            std::string_view("/\\:*?\"<>|").find(static_cast<char>(character)) != std::string_view::npos);
}

bool CannotEndName(char c) {
    return c == '.' || c == ' ';
}

// Names that foreign systems keep for devices, up to the first dot, blanks before it left out.
bool IsDeviceName(std::string_view name) {
    name = name.substr(0, name.find('.'));
    name = name.substr(0, name.find_last_not_of(' ') + 1);
    for (char const* const device : {"con", "prn", "aux", "nul", "conin$", "conout$"}) {
        if (IsSameName(name, device)) return true;
    }
    if (name.size() < 4 || (!IsSameName(name.substr(0, 3), "com") && !IsSameName(name.substr(0, 3), "lpt")))
        return false;
    std::string_view const number = name.substr(3);
    return (number.size() == 1 && number[0] >= '1' && number[0] <= '9') || number == "\u00B9" ||
           number == "\u00B2" || number == "\u00B3";
}

}  // namespace

int TovFilenameIsValid(char const* name) {
    std::string_view const whole = name != nullptr ? name : "";
    if (whole.empty() || whole.size() > longestName || CannotEndName(whole.back()) || IsDeviceName(whole))
        return 0;
    for (std::string_view rest = whole; !rest.empty();) {
        if (IsForbidden(TakeFolded(rest))) return 0;
    }
    return 1;
}

int TovPathIsValid(char const* path, int noRemovable, int* removable) {
    if (removable != nullptr) *removable = 0;
    std::string const system = SystemPath(path);
    if (system.empty()) return 0;
    std::size_t begin = 0;
    bool isThere = true;
    while (begin < system.size()) {
        std::size_t const end = std::min(system.find('/', begin), system.size());
        if (end != begin) {
            EntryFacts facts;
            isThere = isThere && !FactsOfPath(system.substr(0, end).c_str(), true, facts);
            // Behind a file nothing can be.
            if (isThere && facts.kind != EntryKind::kDirectory && end != system.size()) return 0;
            if (!isThere && TovFilenameIsValid(system.substr(begin, end - begin).c_str()) == 0) return 0;
        }
        begin = end + 1;
    }
    if (noRemovable == 0 || !IsOnRemovableVolume(system)) return 1;
    if (removable != nullptr) *removable = 1;
    return 0;
}

unsigned int TovReplaceInvalidFilenameCharacters(CString& name, char replacement) {
    if (name.empty()) return 0;
    auto const byte = static_cast<unsigned char>(replacement);
    char const valid = byte >= 0x80 || IsForbidden(byte) ? plainReplacement : replacement;
    CString clean;
    CString replaced;  // as long as the clean name: which of its bytes are replacements
    for (std::string_view rest = name; !rest.empty();) {
        std::string_view const before = rest;
        if (IsForbidden(TakeFolded(rest))) {
            clean += valid;
            replaced += '1';
        } else {
            clean += before.substr(0, before.size() - rest.size());
            replaced.resize(clean.size(), '0');
        }
    }
    char const validEnd = CannotEndName(valid) ? plainReplacement : valid;
    if (CannotEndName(clean.back())) {
        clean.back() = validEnd;
        replaced.back() = '1';
    }
    if (IsDeviceName(clean)) {
        // The last character of the device's name goes.
        std::size_t const end = clean.find_last_not_of(' ', std::min(clean.find('.'), clean.size()) - 1) + 1;
        std::size_t begin = end - 1;
        while ((static_cast<unsigned char>(clean[begin]) & 0xC0) == 0x80)
            --begin;
        CString const head = clean.substr(0, begin);
        CString const tail = clean.substr(end);
        clean = head + validEnd + tail;
        if (IsDeviceName(clean)) clean = head + plainReplacement + tail;
        replaced.replace(begin, end - begin, 1, '1');
    }
    auto const count = static_cast<unsigned int>(std::ranges::count(replaced, '1'));
    name = clean;
    return count;
}

}  // namespace tov
