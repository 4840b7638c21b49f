// Profile entries: the choice of the store, and what either store does at each operation.
#include <tov310/profile.h>

#include <tov310/application.h>
#include <tov310/path.h>

#include "util/ini_store.h"
#include "util/profile_text.h"
#include "util/registry_store.h"
#include "vesk/file.h"
#include "vesk/immortal.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <utility>

namespace tov {
namespace {

constexpr std::size_t mostFileText = 4095;      // bytes of a text read from a file
constexpr std::size_t mostRegistryData = 8192;  // bytes of a listed text with its zero
constexpr std::size_t mostRegistryName = 260;   // characters of a listed name

using ProfileTexts = std::vector<std::pair<CString, CString>>;

CString& ProfilePath() {
    static Immortal<CString> path;
    return *path;
}

HKEY& ProfileRoot() {
    static HKEY root = HKEY_CURRENT_USER;
    return root;
}

CString DefaultProfilePath() {
    return TovMakePath(nullptr, UserConfigFolder().c_str(), "Tov310", ".INI");
}

constexpr char const* OrEmpty(char const* text) {
    return text != nullptr ? text : "";
}

// Nothing leaves the operations, whatever happens inside (in practice: no memory).
template <class Result, class Action>
Result WithoutExceptions(Result failed, Action action) noexcept {
    try {
        return action();
    } catch (...) {
        return failed;
    }
}

// The file of a path that names one. The usual path is taken as it is, without a copy.
class ProfileFile {
 public:
    explicit ProfileFile(char const* path) : m_path(path) {
        std::string_view const view(path);
        bool const bare = std::ranges::none_of(view, IsProfileSeparator);
        if (!bare && view.find('\\') == std::string_view::npos) return;
        if (bare) m_text = UserConfigFolder() + '/';
        m_text += view;
        std::ranges::replace(m_text, '\\', '/');
        m_path = m_text.c_str();
    }
    ProfileFile(ProfileFile const&) = delete;
    ProfileFile& operator=(ProfileFile const&) = delete;
    char const* Path() const { return m_path; }

 private:
    std::string m_text;
    char const* m_path;
};

std::string_view WithoutQuotes(std::string_view value) {
    bool const quoted =
        value.size() > 1 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
    return quoted ? value.substr(1, value.size() - 2) : value;
}

std::string RegistryBranch(std::string_view path) {
    if (path.empty()) path = TovGetProfilePath();
    return "software\\" + std::string(path);
}

std::string RegistrySection(char const* path, char const* section) {
    return RegistryBranch(path) + '\\' + section;
}

// Zero-closed texts in a caller's buffer, never beyond its end.
class TextList {
 public:
    TextList(char* buffer, std::size_t size) : m_buffer(buffer), m_size(buffer != nullptr ? size : 0) {
        for (std::size_t i = 0; i < std::min<std::size_t>(m_size, 2); ++i)
            m_buffer[i] = '\0';
    }

    bool Add(std::initializer_list<std::string_view> parts) {
        std::size_t length = 1;
        for (auto const part : parts)
            length += part.size();
        if (m_used + length + 1 > m_size) {
            m_complete = false;
            return false;
        }
        for (auto const part : parts)
            m_used += part.copy(m_buffer + m_used, part.size());
        m_buffer[m_used++] = '\0';
        m_buffer[m_used] = '\0';
        return true;
    }

    int Answer() const {
        return static_cast<int>(m_complete ? m_used : std::max<std::size_t>(m_size, 2) - 2);
    }

 private:
    char* m_buffer;
    std::size_t m_size;
    std::size_t m_used = 0;
    bool m_complete = true;
};

std::size_t CharacterCount(std::string_view text) {
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

int ListFileSection(char const* path, char const* section, char* buffer, std::size_t size) {
    return IniStore::Instance().Read(ProfileFile(path).Path(), [&](IniText const* text) {
        TextList list(buffer, size);
        if (text == nullptr) return 0;
        text->ForEachLine(section, [&](std::string_view name, bool hasValue, std::string_view value) {
            return hasValue ? list.Add({name, "=", value}) : list.Add({name});
        });
        return list.Answer();
    });
}

int ListRegistrySection(char const* path, char const* section, char* buffer, std::size_t size) {
    TextList list(buffer, size);
    auto const add = [&](std::string_view name, RegistryValue const& value) {
        if (name.empty()) return false;
        if (value.text.size() >= mostRegistryData || CharacterCount(name) > mostRegistryName) return true;
        if (value.type == registryText) return list.Add({name, "=", value.text});
        return list.Add({name, "=", ProfileNumberText(value.number)});
    };
    bool const listed =
        RegistryStore::Instance().ForEachValue(ProfileRoot(), RegistrySection(path, section), add);
    return listed ? list.Answer() : 0;
}

int WriteFileSection(char const* path, char const* section, char const* buffer) {
    std::vector<std::string_view> lines;
    for (; *buffer != '\0'; buffer += lines.back().size() + 1)
        lines.emplace_back(buffer);
    if (!IniText::IsWritableSection(section) || !std::ranges::all_of(lines, IniText::IsWritableLine))
        return 0;
    return IniStore::Instance().Edit(ProfileFile(path).Path(), true,
                                     [&](IniText const& text) { return text.WithLines(section, lines); });
}

int WriteRegistrySection(char const* path, char const* section, char const* buffer) {
    auto const key = RegistrySection(path, section);
    std::string_view text;
    for (; *buffer != '\0'; buffer += text.size() + 1) {
        text = buffer;
        auto const equals = text.find('=');
        if (equals == std::string_view::npos) continue;
        if (HasLineEnd(text)) return 0;
        RegistryValue const value{registryText, 0, std::string(text.substr(equals + 1))};
        if (!RegistryStore::Instance().Write(ProfileRoot(), key, text.substr(0, equals), value)) return 0;
    }
    return 1;
}

int WriteFileString(char const* path, char const* section, char const* entry, char const* value) {
    if (!IniText::IsWritableSection(section) || (entry != nullptr && !IniText::IsWritableEntry(entry)) ||
        (entry != nullptr && value != nullptr && !IniText::IsWritableValue(value))) {
        return 0;
    }
    bool const creates = entry != nullptr && value != nullptr;
    return IniStore::Instance().Edit(ProfileFile(path).Path(), creates, [&](IniText const& text) {
        if (entry == nullptr) return text.WithoutSection(section);
        return value == nullptr ? text.WithoutEntry(section, entry) : text.WithValue(section, entry, value);
    });
}

int WriteRegistryString(char const* path, char const* section, char const* entry, char const* value) {
    // What a file could not hold is refused here too, so that a list of entries stays one.
    if (HasLineEnd(section) || (entry != nullptr && HasLineEnd(entry)) ||
        (value != nullptr && HasLineEnd(value))) {
        return 0;
    }
    auto& store = RegistryStore::Instance();
    auto const key = RegistrySection(path, section);
    if (entry == nullptr) return store.DeleteKey(ProfileRoot(), key);
    if (value == nullptr) return store.DeleteValue(ProfileRoot(), key, entry);
    return store.Write(ProfileRoot(), key, entry, {registryText, 0, value});
}

bool HasZero(std::string_view text) {
    return text.find('\0') != std::string_view::npos;
}

int WriteFileStrings(char const* path, char const* section, ProfileTexts const& entries) {
    auto const writable = [](auto const& entry) {
        return IniText::IsWritableEntry(entry.first) && IniText::IsWritableValue(entry.second);
    };
    if (!IniText::IsWritableSection(section) || !std::ranges::all_of(entries, writable)) return 0;
    return IniStore::Instance().Edit(ProfileFile(path).Path(), true, [&](IniText const& text) {
        auto changed = text.Bytes();
        for (auto const& [name, value] : entries) {
            IniText const now(std::move(changed));
            bool const isThere = now.Value(section, name) == value;
            changed = isThere ? now.Bytes() : now.WithValue(section, name, value);
        }
        return changed;
    });
}

int WriteRegistryStrings(char const* path, char const* section, ProfileTexts const& entries) {
    auto const hasLineEnd = [](auto const& entry) {
        return HasLineEnd(entry.first) || HasLineEnd(entry.second);
    };
    if (HasLineEnd(section) || std::ranges::any_of(entries, hasLineEnd)) return 0;
    return RegistryStore::Instance().WriteTexts(ProfileRoot(), RegistrySection(path, section), entries);
}

}  // namespace

void TovSetProfilePath(char const* path) {
    CString text = OrEmpty(path);  // first, since it may be the text that is replaced here
    TovRemoveTrailingBackslash(text);
    ProfilePath() = std::move(text);
}

char const* TovGetProfilePath() {
    if (ProfilePath().empty()) ProfilePath() = DefaultProfilePath();
    return ProfilePath().c_str();
}

void TovSetProfilePrefix(char const* prefix) {
    auto path = DefaultProfilePath();
    if (*OrEmpty(prefix) != '\0') {
        CString drive;
        CString directory;
        CString name;
        CString extension;
        TovSplitPath(path.c_str(), drive, directory, name, extension);
        name = CString(prefix) + '.' + name;
        path = TovMakePath(drive.c_str(), directory.c_str(), name.c_str(), extension.c_str());
    }
    ProfilePath() = std::move(path);
}

void TovSetRegistryProfileRoot(HKEY root) {
    if (root == HKEY_CURRENT_USER || root == HKEY_LOCAL_MACHINE) ProfileRoot() = root;
}

HKEY TovGetRegistryProfileRoot() {
    return ProfileRoot();
}

int CTovProfileEntries::ReadProfileSection(char const* path, char const* section, char* buffer,
                                           unsigned long size) {
    return WithoutExceptions(0, [&] {
        auto const list = NamesProfileFile(OrEmpty(path)) ? ListFileSection : ListRegistrySection;
        return list(OrEmpty(path), OrEmpty(section), buffer, size);
    });
}

int CTovProfileEntries::WriteProfileSectionA(char const* path, char const* section, char const* buffer) {
    return WithoutExceptions(0, [&] {
        auto const write = NamesProfileFile(OrEmpty(path)) ? WriteFileSection : WriteRegistrySection;
        return write(OrEmpty(path), OrEmpty(section), OrEmpty(buffer));
    });
}

unsigned int CTovProfileEntries::ReadProfileInt(char const* path, char const* section, char const* entry,
                                                int defaultValue) {
    return static_cast<unsigned int>(WithoutExceptions(defaultValue, [&] {
        if (NamesProfileFile(OrEmpty(path))) {
            return IniStore::Instance().Read(ProfileFile(path).Path(), [&](IniText const* text) {
                auto const value =
                    text != nullptr ? text->Value(OrEmpty(section), OrEmpty(entry)) : std::nullopt;
                return value ? ProfileNumber(WithoutQuotes(*value)) : defaultValue;
            });
        }
        auto const value = RegistryStore::Instance().Read(
            ProfileRoot(), RegistrySection(OrEmpty(path), OrEmpty(section)), OrEmpty(entry));
        if (value && value->type == registryNumber) return int{value->number};
        return value && value->type == registryText ? ProfileNumber(value->text) : defaultValue;
    }));
}

int CTovProfileEntries::WriteProfileInt(char const* path, char const* section, char const* entry, int value) {
    return WithoutExceptions(0, [&]() -> int {
        if (NamesProfileFile(OrEmpty(path))) {
            return WriteFileString(path, OrEmpty(section), OrEmpty(entry), ProfileNumberText(value).c_str());
        }
        if (HasLineEnd(OrEmpty(section)) || HasLineEnd(OrEmpty(entry))) return 0;
        return RegistryStore::Instance().Write(ProfileRoot(),
                                               RegistrySection(OrEmpty(path), OrEmpty(section)),
                                               OrEmpty(entry), {registryNumber, value, {}});
    });
}

CString CTovProfileEntries::ReadProfileString(char const* path, char const* section, char const* entry,
                                              char const* defaultValue) {
    defaultValue = OrEmpty(defaultValue);
    return WithoutExceptions(CString(), [&] {
        if (NamesProfileFile(OrEmpty(path))) {
            return IniStore::Instance().Read(ProfileFile(path).Path(), [&](IniText const* text) {
                auto const value =
                    text != nullptr ? text->Value(OrEmpty(section), OrEmpty(entry)) : std::nullopt;
                return CString(CutProfileText(value ? WithoutQuotes(*value) : defaultValue, mostFileText));
            });
        }
        auto value = RegistryStore::Instance().Read(
            ProfileRoot(), RegistrySection(OrEmpty(path), OrEmpty(section)), OrEmpty(entry));
        if (value && value->type == registryText) return std::move(value->text);
        return value && value->type == registryNumber ? ProfileNumberText(value->number)
                                                      : CString(defaultValue);
    });
}

int CTovProfileEntries::WriteProfileStringA(char const* path, char const* section, char const* entry,
                                            char const* value) {
    return WithoutExceptions(0, [&] {
        auto const write = NamesProfileFile(OrEmpty(path)) ? WriteFileString : WriteRegistryString;
        return write(OrEmpty(path), OrEmpty(section), entry, value);
    });
}

int CTovProfileEntries::WriteProfileStrings(char const* path, char const* section,
                                            std::vector<std::pair<CString, CString>> const& entries) {
    return WithoutExceptions(0, [&] {
        auto const hasZero = [](auto const& entry) { return HasZero(entry.first) || HasZero(entry.second); };
        if (std::ranges::any_of(entries, hasZero)) return 0;
        if (entries.empty()) return 1;
        auto const write = NamesProfileFile(OrEmpty(path)) ? WriteFileStrings : WriteRegistryStrings;
        return write(OrEmpty(path), OrEmpty(section), entries);
    });
}

void CTovProfileEntries::ReadProfileIntVector(char const* path, char const* section, char const* entry,
                                              std::vector<int>& values) {
    values.clear();
    WithoutExceptions(0, [&] {
        ParseProfileVector(ReadProfileString(path, section, entry, ""), values);
        return 1;
    });
}

int CTovProfileEntries::WriteProfileIntVector(char const* path, char const* section, char const* entry,
                                              std::vector<int> const& values) {
    return WithoutExceptions(0, [&] {
        return WriteProfileStringA(path, section, OrEmpty(entry), ProfileVectorText(values).c_str());
    });
}

void CTovProfileEntries::ReadProfileIntVector(CWinApp& app, char const* section, char const* entry,
                                              std::vector<int>& values) {
    values.clear();
    WithoutExceptions(0, [&] {
        ParseProfileVector(app.GetProfileString(section, entry, ""), values);
        return 1;
    });
}

int CTovProfileEntries::WriteProfileIntVector(CWinApp& app, char const* section, char const* entry,
                                              std::vector<int> const& values) {
    return WithoutExceptions(0, [&] {
        return app.WriteProfileString(section, OrEmpty(entry), ProfileVectorText(values).c_str());
    });
}

int CTovProfileEntries::ReadSectionNames(char const* path, std::vector<CString>& names) {
    names.clear();
    return WithoutExceptions(0, [&]() -> int {
        if (!NamesProfileFile(OrEmpty(path))) {
            bool const read =
                RegistryStore::Instance().SubKeys(ProfileRoot(), RegistryBranch(OrEmpty(path)), names);
            if (!read) names.clear();
            return read;
        }
        return IniStore::Instance().Read(ProfileFile(path).Path(), [&](IniText const* text) {
            if (text != nullptr) names = text->SectionNames();
            return text != nullptr;
        });
    });
}

int CTovProfileEntries::ReadProfileSection(char const* path, char const* section,
                                           std::map<CString, CString>& entries) {
    entries.clear();
    return WithoutExceptions(0, [&]() -> int {
        auto const add = [&](std::string_view name, RegistryValue const& value) {
            bool const isText = value.type == registryText;
            entries.insert_or_assign(CString(name), isText ? value.text : ProfileNumberText(value.number));
            return true;
        };
        bool const read = RegistryStore::Instance().ForEachValue(
            ProfileRoot(), RegistrySection(OrEmpty(path), OrEmpty(section)), add);
        if (!read) entries.clear();
        return read;
    });
}

int CTovProfileEntries::ReadTovSectionNames(std::vector<CString>& names) {
    return ReadSectionNames(TovGetProfilePath(), names);
}

int CTovProfileEntries::ReadTovProfileSection(char const* section, char* buffer, unsigned long size) {
    return ReadProfileSection(TovGetProfilePath(), section, buffer, size);
}

int CTovProfileEntries::ReadTovProfileSection(char const* section, std::map<CString, CString>& entries) {
    return ReadProfileSection(TovGetProfilePath(), section, entries);
}

int CTovProfileEntries::WriteTovProfileSection(char const* section, char const* buffer) {
    return WriteProfileSectionA(TovGetProfilePath(), section, buffer);
}

unsigned int CTovProfileEntries::ReadTovProfileInt(char const* section, char const* entry, int defaultValue) {
    return ReadProfileInt(TovGetProfilePath(), section, entry, defaultValue);
}

int CTovProfileEntries::WriteTovProfileInt(char const* section, char const* entry, int value) {
    return WriteProfileInt(TovGetProfilePath(), section, entry, value);
}

CString CTovProfileEntries::ReadTovProfileString(char const* section, char const* entry,
                                                 char const* defaultValue) {
    return ReadProfileString(TovGetProfilePath(), section, entry, defaultValue);
}

int CTovProfileEntries::WriteTovProfileString(char const* section, char const* entry, char const* value) {
    return WriteProfileStringA(TovGetProfilePath(), section, entry, value);
}

int CTovProfileEntries::WriteTovProfileStrings(char const* section,
                                               std::vector<std::pair<CString, CString>> const& entries) {
    return WriteProfileStrings(TovGetProfilePath(), section, entries);
}

void CTovProfileEntries::ReadTovProfileIntVector(char const* section, char const* entry,
                                                 std::vector<int>& values) {
    ReadProfileIntVector(TovGetProfilePath(), section, entry, values);
}

int CTovProfileEntries::WriteTovProfileIntVector(char const* section, char const* entry,
                                                 std::vector<int> const& values) {
    return WriteProfileIntVector(TovGetProfilePath(), section, entry, values);
}

}  // namespace tov
