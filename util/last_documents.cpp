// The list of recent documents in the profile. last_documents_menu.cpp shows it.
#include <tov310/last_documents.h>

#include <tov310/profile.h>

#include "util/profile_text.h"

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
    return Write(before, after);
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
    return Write(before, after) && found;
}

int CTovLastDocuments::RemoveAllDocuments() {
    auto const before = ReadAll();
    return Write(before, std::vector<CString>(before.size()));
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
    CString value = text != nullptr ? text : "";
    if (NamesProfileFile(m_storePath) && WouldLoseItsEnds(value)) value = '"' + value + '"';
    auto const entry = m_entry + std::to_string(number);
    if (!m_change) {
        return CTovProfileEntries::WriteProfileStringA(m_storePath.c_str(), Section().c_str(), entry.c_str(),
                                                       value.c_str());
    }
    m_change->emplace_back(entry, std::move(value));
    return 1;
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

// Replaces the first entries, with one write.
int CTovLastDocuments::Write(std::vector<CString> const& before, std::vector<CString> const& after) {
    m_change.emplace();
    struct Collecting {
        ~Collecting() { change.reset(); }
        decltype(m_change)& change;
    } const collecting{m_change};
    for (std::size_t i = 0; i < after.size(); ++i) {
        bool const changes = before[i] != after[i];
        if (changes && !WriteProfileStringA(static_cast<int>(i) + 1, after[i].c_str())) return 0;
    }
    return CTovProfileEntries::WriteProfileStrings(m_storePath.c_str(), Section().c_str(), *m_change);
}

}  // namespace tov
