// The list of recent documents in the profile. last_documents_menu.cpp shows it.
#include <tov310/last_documents.h>

#include <tov310/profile.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace tov {
namespace {

constexpr char breakCharacter = ';';
constexpr unsigned int defaultCapacity = 4;
constexpr std::string_view lineFeedMark = "\xC2\xB0";  // U+00B0

// An entry as it was read: other programs may have written it without the break.
CString EntryForm(CString text) {
    if (!text.empty() && text.find(breakCharacter) == CString::npos) text += breakCharacter;
    return text;
}

// The text as the list keeps it.
CString StoredForm(std::string_view text) {
    CString form;
    form.reserve(text.size() + 1);
    for (char const c : text) {
        if (c == '\n') {
            form += lineFeedMark;
        } else {
            form += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
        }
    }
    return EntryForm(std::move(form));
}

std::string_view Identity(std::string_view document) {
    return document.substr(0, document.find(breakCharacter));
}

bool WouldLoseItsEnds(std::string_view text) {
    auto const isBlank = [](char c) { return c == ' ' || c == '\t'; };
    if (text.empty()) return false;
    return isBlank(text.front()) || isBlank(text.back()) ||
           ((text.front() == '"' || text.front() == '\'') && text.front() == text.back());
}

}  // namespace

CTovLastDocuments::CTovLastDocuments(char const* storePath, unsigned int capacity)
    : m_capacity(capacity != 0 ? capacity : defaultCapacity),
      m_storePath(storePath != nullptr && *storePath != '\0' ? storePath : TovGetProfilePath()),
      m_entry(CTovProfileEntries::LastDocumentsEntry()) {}

CTovLastDocuments::~CTovLastDocuments() = default;

void CTovLastDocuments::IniFile(char const* storePath) {
    m_storePath = storePath != nullptr && *storePath != '\0' ? storePath : TovGetProfilePath();
}

void CTovLastDocuments::Section(char const* section) {
    m_section = section != nullptr ? section : "";
}

CString const& CTovLastDocuments::Section() {
    if (m_section.empty()) m_section = GetRuntimeClass()->m_lpszClassName;
    return m_section;
}

void CTovLastDocuments::Entry(char const* prefix) {
    m_entry = prefix != nullptr ? prefix : "";
}

int CTovLastDocuments::AddDocument(char const* document) {
    if (document == nullptr || *document == '\0') return 0;
    auto const added = StoredForm(document);
    std::vector<CString> before;
    std::vector<CString> after{added};
    for (unsigned int number = 1;; ++number) {
        before.push_back(GetProfileStringA(static_cast<int>(number)));
        if (number == m_capacity || before.back().empty()) break;
        auto entry = EntryForm(before.back());
        if (Identity(entry) == Identity(added)) break;
        after.push_back(std::move(entry));
    }
    return Write(before, after, true);
}

int CTovLastDocuments::RemoveDocument(char const* document, int compareFirstPartOnly) {
    if (document == nullptr || *document == '\0') return 0;
    auto const removed = StoredForm(document);
    auto const before = ReadAll();
    auto const end = std::ranges::find_if(before, &CString::empty);
    std::vector<CString> after;
    for (auto entry = before.begin(); entry != before.end(); ++entry) {
        auto const form = EntryForm(*entry);
        bool const goes = entry < end &&
                          (compareFirstPartOnly != 0 ? Identity(form) == Identity(removed) : form == removed);
        if (!goes && !entry->empty()) after.push_back(*entry);
    }
    bool const found = std::ranges::count_if(before, [](CString const& entry) { return !entry.empty(); }) !=
                       static_cast<std::ptrdiff_t>(after.size());
    after.resize(before.size());
    return Write(before, after, false) && found;
}

int CTovLastDocuments::RemoveAllDocuments() {
    auto const before = ReadAll();
    return Write(before, std::vector<CString>(before.size()), true);
}

CString& CTovLastDocuments::GetDocument(unsigned int number) {
    bool const exists = number >= 1 && number <= m_capacity;
    m_text = exists ? GetProfileStringA(static_cast<int>(number)) : CString();
    return m_text;
}

CString CTovLastDocuments::GetProfileStringA(int number) {
    return CTovProfileEntries::ReadProfileString(m_storePath.c_str(), Section().c_str(),
                                                 (m_entry + std::to_string(number)).c_str(), "");
}

int CTovLastDocuments::WriteProfileStringA(int number, char const* text) {
    CString const value = text != nullptr ? text : "";
    auto const write = [&](CString const& form) {
        return CTovProfileEntries::WriteProfileStringA(
            m_storePath.c_str(), Section().c_str(), (m_entry + std::to_string(number)).c_str(), form.c_str());
    };
    if (!write(value)) return 0;
    if (!WouldLoseItsEnds(value) || GetProfileStringA(number) == value) return 1;
    return write('"' + value + '"');
}

std::vector<CString> CTovLastDocuments::ReadAll() {
    std::vector<CString> entries;
    for (unsigned int number = 1; number <= m_capacity; ++number)
        entries.push_back(GetProfileStringA(static_cast<int>(number)));
    return entries;
}

// The documents as they are offered: up to the first gap.
std::vector<CString> CTovLastDocuments::Documents() {
    std::vector<CString> documents;
    for (unsigned int number = 1; number <= m_capacity; ++number) {
        auto entry = GetProfileStringA(static_cast<int>(number));
        if (entry.empty()) break;
        documents.push_back(std::move(entry));
    }
    return documents;
}

// Replaces the first entries. The order is chosen so that a process which dies in the middle leaves a
// document twice and none lost; where a write fails, what was written is taken back.
int CTovLastDocuments::Write(std::vector<CString> const& before, std::vector<CString> const& after,
                             bool lastFirst) {
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < after.size(); ++i) {
        if (before[i] != after[i]) order.push_back(i);
    }
    if (lastFirst) std::ranges::reverse(order);
    for (auto place = order.begin(); place != order.end(); ++place) {
        if (WriteProfileStringA(static_cast<int>(*place) + 1, after[*place].c_str())) continue;
        while (place != order.begin()) {
            --place;
            WriteProfileStringA(static_cast<int>(*place) + 1, before[*place].c_str());
        }
        return 0;
    }
    return 1;
}

}  // namespace tov
