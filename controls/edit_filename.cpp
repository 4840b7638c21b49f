#include <tov310/edit_filename.h>
#include <tov310/file.h>
#include <tov310/path.h>
#include <tov310/text.h>

#include "controls/edit_angle_text.h"
#include "controls/edit_messages.h"
#include "frame/resource_module.h"
#include "util/trim.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tov {
namespace {

using State = CTovInputControl::eState;

constexpr unsigned okButtonText = 26006;
constexpr unsigned allFilesFilter = 26099;

// By eType.
struct FilenameTexts {
    unsigned title;
    unsigned prompt;
    unsigned filter;
};
constexpr FilenameTexts filenameTexts[] = {
    {26063, 26064, 26099}, {26057, 26058, 26096}, {26059, 26060, 26097},
    {26061, 26062, 26098}, {26055, 26056, 0},
};

constexpr CTovSwitchedEdit switchedEdits[] = {
    {eTovSwitchedString, "CTovEditString", -1},
    {eTovSwitchedFilename, "CTovEditFilename", -1},
    {eTovSwitchedShort, "CTovEditInteger", 0},
    {eTovSwitchedUshort, "CTovEditInteger", 1},
    {eTovSwitchedLong, "CTovEditInteger", 2},
    {eTovSwitchedUlong, "CTovEditInteger", 3},
    {eTovSwitchedInt, "CTovEditInteger", 4},
    {eTovSwitchedUint, "CTovEditInteger", 5},
    {eTovSwitchedFloat, "CTovEditFloating", 0},
    {eTovSwitchedDouble, "CTovEditFloating", 1},
    {eTovSwitchedDistance, "CTovEditValueDistance", -1},
    {eTovSwitchedAngle, "CTovEditValueAngle", -1},
    {eTovSwitchedLatitude, "CTovEditLatitude", -1},
    {eTovSwitchedLongitude, "CTovEditLongitude", -1},
};

ITovBrowseForFile*& BrowseForAll() {
    static ITovBrowseForFile* browse = nullptr;
    return browse;
}

State FailWith(unsigned id, CString* message) {
    if (message != nullptr) *message = LibraryString(id);
    return CTovInputControl::eStateInvalid;
}

State CheckExistence(bool exists, int mustExist, CString* message) {
    constexpr unsigned mustExistText = 26086;
    constexpr unsigned mustNotExistText = 26091;
    if (exists == (mustExist != 0)) return CTovInputControl::eStateValid;
    return FailWith(mustExist != 0 ? mustExistText : mustNotExistText, message);
}

CString FolderOf(CString const& path) {
    CString drive;
    CString directory;
    CString name;
    CString extension;
    TovSplitPath(path.c_str(), drive, directory, name, extension);
    CString folder = drive + directory;
    TovRemoveTrailingBackslash(folder);
    return folder;
}

std::string_view TakeUpTo(char end, std::string_view& rest) {
    std::string_view const part = rest.substr(0, rest.find(end));
    rest.remove_prefix(std::min(part.size() + 1, rest.size()));
    return part;
}

// The folder itself, or the nearest above it that is there.
CString NearestFolder(CString folder) {
    while (!folder.empty() && TovDirectoryExist(folder.c_str()) == 0) {
        CString above = FolderOf(folder);
        if (above.size() >= folder.size()) return {};
        folder = std::move(above);
    }
    return folder;
}

}  // namespace

State TovValidateString(char const* text, unsigned minChars, unsigned maxChars, int emptyAllowed,
                        CString* message) {
    constexpr unsigned emptyText = 26079;
    constexpr unsigned tooShortText = 26080;
    constexpr unsigned tooLongText = 26081;
    if (message != nullptr) message->clear();
    auto const count = static_cast<unsigned>(CountCharacters(text != nullptr ? text : ""));
    if (count == 0) {
        if (emptyAllowed != 0) return CTovInputControl::eStateValid;
        FailWith(emptyText, message);
        return CTovInputControl::eStateEmpty;
    }
    if (count >= minChars && count <= maxChars) return CTovInputControl::eStateValid;
    bool const isShort = count < minChars;
    if (message != nullptr)
        *message = CountMessage(isShort ? tooShortText : tooLongText, count, isShort ? minChars : maxChars);
    return CTovInputControl::eStateInvalid;
}

ITovBrowseForFile::~ITovBrowseForFile() = default;

std::vector<CTovFileFilter> TovFileFilters(CTovBrowseRequest const& request) {
    CString const allFiles = request.addAllFiles ? LibraryString(allFilesFilter) : CString();
    std::vector<CTovFileFilter> filters;
    for (std::string_view rest : {std::string_view(request.filter), std::string_view(allFiles)}) {
        while (!rest.empty()) {
            std::string_view const words = TakeUpTo('|', rest);
            std::string_view patterns = TakeUpTo('|', rest);
            CTovFileFilter line{CString(TrimBlanks(words.substr(0, words.find('(')))), {}};
            while (!patterns.empty()) {
                std::string_view const pattern = TrimBlanks(TakeUpTo(';', patterns));
                if (!pattern.empty()) line.patterns.emplace_back(pattern);
            }
            if (!line.patterns.empty()) filters.push_back(std::move(line));
        }
    }
    return filters;
}

ITovBrowseForFile* TovGetBrowseForFile() {
    return BrowseForAll();
}

ITovBrowseForFile* TovSetBrowseForFile(ITovBrowseForFile* browse) {
    return std::exchange(BrowseForAll(), browse);
}

CTovEditFilenameHost::~CTovEditFilenameHost() = default;

State CTovEditFilenameHost::CheckFileExistence(char const* name, int mustExist, CString* message) {
    // A link that leads nowhere takes its name, and yet there is no file.
    bool const isFound = TovFileFind(name) != 0 && (mustExist == 0 || TovPathExists(name) != 0);
    return CheckExistence(isFound, mustExist, message);
}

State CTovEditFilenameHost::CheckDirectoryExistence(char const* name, int mustExist, CString* message) {
    return CheckExistence(TovDirectoryExist(name) != 0, mustExist, message);
}

void CTovEditFilenameHost::TrimString(CString& name) {
    std::string_view trimmed = TrimBlanks(name);
    if (trimmed.size() > 1 && trimmed.front() == '"' && trimmed.find('"', 1) == trimmed.size() - 1)
        trimmed = TrimBlanks(trimmed.substr(1, trimmed.size() - 2));
    name = CString(trimmed);
}

int CTovEditFilenameHost::PathIsValid(char const* name, int noRemovable, int* removable) {
    return TovPathIsValid(name, noRemovable, removable);
}

void CTovFilenameRules::Reset(eType type, eExistence existence, int singleName) {
    m_type = type;
    m_existence = existence;
    m_singleName = singleName;
    m_nameWithoutPath = 0;
    m_noRemovableDrive = 0;
    OwnNames({});
    Texts({}, {}, {}, {});
}

std::vector<CString> CTovFilenameRules::Names(char const* text) const {
    std::vector<CString> names;
    CString const all = text != nullptr ? text : "";
    if (m_singleName == 0 && all.find('"') != CString::npos) {
        TovExtractTokens(all.c_str(), names);
        if (names.empty()) names = m_ownNames;
    } else if (!TrimBlanks(all).empty()) {
        names.push_back(all);
    }
    for (CString& name : names)
        m_host.TrimString(name);
    return names;
}

CString CTovFilenameRules::TextOf(std::vector<CString> const& names) const {
    if (names.empty()) return {};
    if (names.size() == 1 || m_singleName != 0) return names.front();
    CString text;
    for (CString const& name : names)
        text.append(text.empty() ? "\"" : " \"").append(name).append("\"");
    return text;
}

State CTovFilenameRules::InternalValidate(char const* text, CString* message) const {
    if (message != nullptr) message->clear();
    CString const all = text != nullptr ? text : "";
    if (TrimBlanks(all).empty()) return CTovInputControl::eStateValid;
    std::vector<CString> const names = Names(text);
    if (names.empty()) return CTovInputControl::eStateEmpty;
    if (m_existence == eExistence::eExistenceNoTest) return CTovInputControl::eStateValid;
    // What all names are is wrong before what one of them stands for.
    for (auto const check :
         {&CTovFilenameRules::CheckForm, &CTovFilenameRules::CheckPresence, &CTovFilenameRules::CheckKind}) {
        for (CString const& name : names) {
            State const state = (this->*check)(name, message);
            if (state != CTovInputControl::eStateValid) return state;
        }
    }
    return CTovInputControl::eStateValid;
}

State CTovFilenameRules::CheckForm(CString const& name, CString* message) const {
    constexpr unsigned noPathText = 26083;
    constexpr unsigned removableText = 26084;
    constexpr unsigned noNameText = 26090;
    int removable = 0;
    if (m_nameWithoutPath != 0) {
        if (TovFilenameIsValid(name.c_str()) == 0) return FailWith(noNameText, message);
    } else if (m_host.PathIsValid(name.c_str(), m_noRemovableDrive, &removable) == 0) {
        return FailWith(removable != 0 ? removableText : noPathText, message);
    }
    return CTovInputControl::eStateValid;
}

State CTovFilenameRules::CheckPresence(CString const& name, CString* message) const {
    int const mustExist = m_existence == eExistence::eExistenceMust;
    return m_type == eType::eTypeDirectory ? m_host.CheckDirectoryExistence(name.c_str(), mustExist, message)
                                           : m_host.CheckFileExistence(name.c_str(), mustExist, message);
}

State CTovFilenameRules::CheckKind(CString const& name, CString* message) const {
    constexpr State state = CTovInputControl::eStateValid;
    if (m_existence != eExistence::eExistenceMust) return state;
    constexpr unsigned noExecutableText = 26087;
    constexpr unsigned noProgramText = 26088;
    constexpr unsigned noLibraryText = 26089;
    CString found = name;
    switch (m_type) {
        case eType::eTypeExecutable:
            return TovFileIsExecutable(found) != 0 ? state : FailWith(noExecutableText, message);
        case eType::eTypeProgram:
            return TovFileIsEXE(found) != 0 ? state : FailWith(noProgramText, message);
        case eType::eTypeLibrary:
            return TovFileIsDLL(found) != 0 ? state : FailWith(noLibraryText, message);
        default:
            return state;
    }
}

void CTovFilenameRules::Texts(CString title, CString prompt, CString filter, CString okText) {
    m_title = std::move(title);
    m_prompt = std::move(prompt);
    m_filter = std::move(filter);
    m_okText = std::move(okText);
}

CTovBrowseRequest CTovFilenameRules::Request(char const* text) const {
    auto const index = static_cast<std::size_t>(m_type);
    FilenameTexts const& ids = filenameTexts[index < std::size(filenameTexts) ? index : 0];
    auto const orLibrary = [](CString const& own, unsigned id) {
        return !own.empty() ? own : id != 0 ? LibraryString(id) : CString();
    };
    CTovBrowseRequest request;
    request.directory = m_type == eType::eTypeDirectory;
    request.multiple = m_singleName == 0 && !request.directory;
    request.mustExist = m_existence == eExistence::eExistenceMust;
    request.title = orLibrary(m_title, ids.title);
    request.prompt = orLibrary(m_prompt, ids.prompt);
    request.filter = orLibrary(m_filter, ids.filter);
    request.addAllFiles = m_filter.empty() && ids.filter != 0 && ids.filter != allFilesFilter;
    request.okText = orLibrary(m_okText, okButtonText);
    request.names = Names(text);
    if (!request.names.empty()) {
        CString const& first = request.names.front();
        request.folder = NearestFolder(request.directory ? first : FolderOf(first));
    }
    return request;
}

int CTovFilenameRules::Select(ITovBrowseForFile* browse, HWND owner, char const* text,
                              CString& chosen) const {
    if (browse == nullptr) browse = TovGetBrowseForFile();
    if (browse == nullptr) return 0;
    CTovBrowseRequest request = Request(text);
    request.owner = owner;
    std::vector<CString> names;
    if (!browse->Browse(request, names) || names.empty()) return 0;
    if (m_nameWithoutPath != 0) {
        for (CString& name : names)
            name.erase(0, name.find_last_of("/\\") + 1);
    }
    chosen = TextOf(names);
    return 1;
}

CTovSwitchedEdit const* TovSwitchedEdit(int type) {
    auto const found = std::find_if(std::begin(switchedEdits), std::end(switchedEdits),
                                    [type](CTovSwitchedEdit const& edit) { return edit.type == type; });
    return found != std::end(switchedEdits) ? found : nullptr;
}

}  // namespace tov
