#include <tov310/requirements.h>
#include <tov310/system_error.h>

#include "frame/resource_module.h"

#include <array>
#include <iterator>
#include <string_view>
#include <utility>

namespace tov {
namespace {

constexpr std::uint32_t Version(unsigned majorPart, unsigned minorPart) {
    return majorPart << 16 | minorPart;
}
constexpr unsigned Major(std::uint32_t version) {
    return version >> 16;
}
constexpr unsigned Minor(std::uint32_t version) {
    return version & 0xFFFF;
}

constexpr std::uint32_t newerControlClasses = 0xC000;

constexpr bool SameName(std::string_view a, std::string_view b) {
    constexpr auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (lower(a[i]) != lower(b[i])) return false;
    }
    return true;
}

// The levels at which the layers of this library stand in for the named ones.
class OwnLayers final : public ITovVersionSource {
 public:
    unsigned long Load(char const* file, tagVS_FIXEDFILEINFO& record) override {
        static constexpr std::pair<std::string_view, std::uint32_t> levels[] = {
            {"ComCtl32.Dll", Version(6, 0)}, {"Shell32.Dll", Version(6, 0)}, {"ShFolder.Dll", Version(6, 0)},
            {"Shlwapi.Dll", Version(6, 0)},  {"Mfc90.Dll", Version(9, 0)},
        };
        for (auto const& [name, level] : levels) {
            if (!SameName(name, file)) continue;
            record.dwSignature = 0xFEEF04BD;
            record.dwStrucVersion = Version(1, 0);
            record.dwFileVersionMS = record.dwProductVersionMS = level;
            return TOV_ERROR_NONE;
        }
        return TOV_ERROR_NOT_FOUND;
    }

    // The controls are the toolkit's, which has every class.
    bool HasControlClasses(std::uint32_t) override { return true; }
};

ITovVersionSource& DefaultSource() {
    static OwnLayers layers;
    return layers;
}

struct CachedRecord {
    char const* file;
    bool tried = false;
    bool loaded = false;
    unsigned long error = TOV_ERROR_NONE;
    tagVS_FIXEDFILEINFO record{};
};

ITovVersionSource* replacedSource = nullptr;
CachedRecord comCtl32{"ComCtl32.Dll"};
CachedRecord shell32{"Shell32.Dll"};
CachedRecord shFolder{"ShFolder.Dll"};
CachedRecord shlwapi{"Shlwapi.Dll"};
CachedRecord mfc{"Mfc90.Dll"};

ITovVersionSource& Source() {
    return replacedSource != nullptr ? *replacedSource : DefaultSource();
}

int Answer(CachedRecord& cached, tagVS_FIXEDFILEINFO& record, unsigned long* error, CString* message) {
    if (message != nullptr) message->clear();
    if (!cached.tried) {
        cached.tried = true;
        cached.loaded = TovLoadFixedFileInfo(cached.record, cached.file, &cached.error, message) != 0;
    }
    if (error != nullptr) *error = cached.error;
    record = cached.record;
    return cached.loaded;
}

CString TooOld(unsigned textId, std::uint32_t found, std::uint32_t needed) {
    std::string const& text = LibraryString(textId);
    CString out;
    unsigned const numbers[] = {Major(found), Minor(found), Major(needed), Minor(needed)};
    std::size_t next = 0;
    // The text may be a host's translation, so only its "%d" are conversions.
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text.compare(i, 2, "%d") == 0 && next < std::size(numbers)) {
            out += std::to_string(numbers[next++]);
            ++i;
        } else {
            out += text[i];
        }
    }
    return out;
}

// A version that could not be read: the name and the system's text.
CString Unreadable(char const* name, unsigned long error, CString const& text) {
    return CString(name) + ": " + (text.empty() ? TovSystemErrorText(error) : text);
}

int Check(CachedRecord& layer, char const* name, std::uint32_t needed, unsigned textId, CString& message) {
    tagVS_FIXEDFILEINFO record;
    unsigned long error = TOV_ERROR_NONE;
    CString text;
    if (Answer(layer, record, &error, &text) == 0) {
        message = Unreadable(name, error, text);
        return 0;
    }
    bool const met = record.dwProductVersionMS >= needed;
    message = met ? CString() : TooOld(textId, record.dwProductVersionMS, needed);
    return met;
}

}  // namespace

ITovVersionSource::~ITovVersionSource() = default;

void TovSetVersionSource(ITovVersionSource* source) {
    replacedSource = source;
    for (CachedRecord* cached : {&comCtl32, &shell32, &shFolder, &shlwapi, &mfc}) {
        *cached = CachedRecord{cached->file};
    }
}

int TovLoadFixedFileInfo(tagVS_FIXEDFILEINFO& record, char const* file, unsigned long* error,
                         CString* message) {
    record = {};
    if (error != nullptr) *error = TOV_ERROR_NONE;
    if (message != nullptr) message->clear();
    unsigned long const code = file != nullptr ? Source().Load(file, record) : TOV_ERROR_INVALID_PARAMETER;
    if (code == TOV_ERROR_NONE) return 1;
    record = {};
    if (error != nullptr) *error = code;
    if (message != nullptr) *message = TovSystemErrorText(code);
    return 0;
}

int TovFixedFileInfoComCtl32(tagVS_FIXEDFILEINFO& record, unsigned long* error, CString* message) {
    return Answer(comCtl32, record, error, message);
}

int TovFixedFileInfoShell32(tagVS_FIXEDFILEINFO& record, unsigned long* error, CString* message) {
    return Answer(shell32, record, error, message);
}

int TovFixedFileInfoShFolder(tagVS_FIXEDFILEINFO& record, unsigned long* error, CString* message) {
    return Answer(shFolder, record, error, message);
}

int TovFixedFileInfoShlwapi(tagVS_FIXEDFILEINFO& record, unsigned long* error, CString* message) {
    return Answer(shlwapi, record, error, message);
}

int TovFixedFileInfoMfc(tagVS_FIXEDFILEINFO& record, unsigned long* error, CString* message) {
    return Answer(mfc, record, error, message);
}

int TovCheckComCtl32Version(CString& message) {
    return Check(comCtl32, "ComCtl32.dll", Version(4, 71), 26000, message);
}

int TovCheckShell32Version(CString& message) {
    if (Check(shell32, "Shell32.dll", Version(4, 71), 26001, message) != 0) return 1;
    // An older one is good enough with ShFolder beside it; one that cannot be read fails there too.
    return TovCheckShFolderVersion(message);
}

int TovCheckShFolderVersion(CString& message) {
    // Both must be there, but it is the version of Shell32 that counts.
    constexpr std::uint32_t any = 0;
    return Check(shell32, "Shell32.dll", any, 26001, message) &&
           Check(shFolder, "ShFolder.dll", any, 26001, message) &&
           Check(shell32, "Shell32.dll", Version(4, 0), 26001, message);
}

int TovCheckShlwapiVersion(CString& message) {
    return Check(shlwapi, "Shlwapi.dll", Version(4, 71), 26002, message);
}

int TovCheckMfcVersion(CString& message) {
    return Check(mfc, "Mfc90.dll", Version(9, 0), 26573, message);
}

int TovCheckAllRequirements(eTovRequirements& failed, CString& message) {
    static constexpr std::pair<eTovRequirements, int (*)(CString&)> checks[] = {
        {eTovRequirementsComCtl32, TovCheckComCtl32Version},
        {eTovRequirementsShell32, TovCheckShell32Version},
        {eTovRequirementsShlwapi, TovCheckShlwapiVersion},
        {eTovRequirementsMfc, TovCheckMfcVersion},
    };
    for (auto const& [requirement, check] : checks) {
        if (check(message) == 0) {
            failed = requirement;
            return 0;
        }
    }
    failed = eTovRequirementsMet;
    message.clear();
    return 1;
}

int TovIsComCtlXP() {
    return Source().HasControlClasses(newerControlClasses);
}

}  // namespace tov
