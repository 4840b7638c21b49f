#include <tov310/file_list.h>

#include "util/file_facts.h"

#include <algorithm>

namespace tov {

void FillFindData(std::string_view name, bool isLink, EntryFacts const& facts, WIN32_FIND_DATAA& data) {
    unsigned long attributes = 0;
    if (facts.isReadOnly) attributes |= TOV_ATTRIBUTE_READONLY;
    if (name.starts_with('.')) attributes |= TOV_ATTRIBUTE_HIDDEN;
    if (facts.kind == EntryKind::kDirectory) attributes |= TOV_ATTRIBUTE_DIRECTORY;
    if (isLink) attributes |= TOV_ATTRIBUTE_LINK;
    data.dwFileAttributes = attributes != 0 ? attributes : TOV_ATTRIBUTE_NORMAL;
    data.ftCreationTime = {facts.created};
    data.ftLastAccessTime = {facts.accessed};
    data.ftLastWriteTime = {facts.written};
    data.nFileSizeHigh = static_cast<std::uint32_t>(facts.size >> 32);
    data.nFileSizeLow = static_cast<std::uint32_t>(facts.size);
    data.cFileName = name;
    data.cAlternateFileName = name;
}

std::string SystemPath(char const* path) {
    std::string system = path != nullptr ? path : "";
    std::replace(system.begin(), system.end(), '\\', '/');
    return system;
}

CTovFindData::CTovFindData(CTovFileList const* owner)
    : m_sortMode(owner != nullptr ? owner->SortMode() : CTovFileList::eSortFilename) {}

CTovFindData::~CTovFindData() = default;

int CTovFindData::operator<(CTovFindData const& other) const {
    switch (m_sortMode) {
        case CTovFileList::eSortNone:
            return 0;
        case CTovFileList::eSortFullFilename:
            return m_fullFilename < other.m_fullFilename;
        case CTovFileList::eSortAlternateFilename:
            return other.cAlternateFileName < cAlternateFileName;
        case CTovFileList::eSortCreationTime:
            return ftCreationTime < other.ftCreationTime;
        case CTovFileList::eSortLastWriteTime:
            return ftLastWriteTime < other.ftLastWriteTime;
        case CTovFileList::eSortLastAccessTime:
            return ftLastAccessTime < other.ftLastAccessTime;
        case CTovFileList::eSortSize:
            return FileSize() < other.FileSize();
        default:
            return other.cFileName < cFileName;
    }
}

}  // namespace tov
