#include <tov310/dlg_template.h>

#include "views/dlg_records.h"

#include <functional>

namespace tov {
namespace {

template <class Record>
std::string_view DlgBytes(Record const* record, std::size_t size) {
    return record != nullptr ? std::string_view(reinterpret_cast<char const*>(record), size)
                             : std::string_view();
}

DLGITEMTEMPLATE const* DlgItemAt(std::string_view bytes, std::size_t offset, bool isEx) {
    std::size_t const leastSize = isEx ? 24 : 18;
    if (offset == 0 || bytes.size() - offset < leastSize) return nullptr;
    return reinterpret_cast<DLGITEMTEMPLATE const*>(bytes.data() + offset);
}

}  // namespace

int CTovDlgTemplate::IsDialogEx(DLGTEMPLATE const* dialog, std::size_t size) {
    return IsExtendedDlg(DlgBytes(dialog, size));
}

unsigned CTovDlgTemplate::GetTemplateItemCount(DLGTEMPLATE const* dialog, std::size_t size) {
    std::string_view const bytes = DlgBytes(dialog, size);
    std::size_t const offset = IsExtendedDlg(bytes) ? 16 : 8;
    return bytes.size() >= offset + 2 ? DlgWord(bytes, offset) : 0;
}

std::size_t CTovDlgTemplate::GetTemplateSize(DLGTEMPLATE const* dialog, std::size_t size) {
    std::string_view const bytes = DlgBytes(dialog, size);
    DlgHeader header;
    std::size_t whole = ReadDlgHeader(bytes, IsExtendedDlg(bytes), header);
    for (unsigned i = 0; whole != 0 && i < header.count; ++i) {
        DlgItem item;
        std::size_t const length = ReadDlgItem(bytes.substr(whole), header.isEx, item);
        whole = length != 0 ? whole + length : 0;
    }
    return whole;
}

DLGITEMTEMPLATE const* CTovDlgTemplate::FindFirstDlgItem(DLGTEMPLATE const* dialog, int isEx,
                                                         std::size_t size) {
    std::string_view const bytes = DlgBytes(dialog, size);
    DlgHeader header;
    std::size_t const offset = ReadDlgHeader(bytes, isEx != 0, header);
    return header.count != 0 ? DlgItemAt(bytes, offset, isEx != 0) : nullptr;
}

DLGITEMTEMPLATE const* CTovDlgTemplate::FindNextDlgItem(DLGITEMTEMPLATE const* item, int isEx,
                                                        std::size_t size) {
    std::string_view const bytes = DlgBytes(item, size);
    DlgItem passed;
    return DlgItemAt(bytes, ReadDlgItem(bytes, isEx != 0, passed), isEx != 0);
}

void CTovDlgTemplate::SetTemplate(DLGTEMPLATE const* dialog, std::size_t size) {
    m_dialog = dialog;
    m_size = dialog != nullptr ? size : 0;
    m_copy.clear();
}

void CTovDlgTemplate::SetTemplate(std::string_view bytes) {
    SetTemplate(reinterpret_cast<DLGTEMPLATE const*>(bytes.data()), bytes.size());
}

DLGTEMPLATE* CTovDlgTemplate::CopyTemplate() {
    m_copy = DlgBytes(m_dialog, GetTemplateSize());
    return m_copy.empty() ? nullptr : reinterpret_cast<DLGTEMPLATE*>(m_copy.data());
}

unsigned long CTovDlgTemplate::CopyStyle() const {
    if (m_copy.empty()) return 0;
    std::size_t const offset = DlgStyleOffset(IsExtendedDlg(m_copy));
    return DlgWord(m_copy, offset) | static_cast<unsigned long>(DlgWord(m_copy, offset + 2)) << 16;
}

void CTovDlgTemplate::CopyStyle(unsigned long style) {
    if (m_copy.empty()) return;
    std::size_t const offset = DlgStyleOffset(IsExtendedDlg(m_copy));
    for (std::size_t i = 0; i < 4; ++i)
        m_copy[offset + i] = static_cast<char>(style >> (8 * i) & 0xFF);
}

DLGITEMTEMPLATE const* CTovDlgTemplate::FindFirstDlgItem() const {
    return FindFirstDlgItem(m_dialog, IsDialogEx(m_dialog, m_size), m_size);
}

DLGITEMTEMPLATE const* CTovDlgTemplate::FindNextDlgItem(DLGITEMTEMPLATE const* item) const {
    std::string_view const bytes = DlgBytes(m_dialog, m_size);
    auto const* const at = reinterpret_cast<char const*>(item);
    std::less<char const*> const before;
    if (item == nullptr || before(at, bytes.data()) || !before(at, bytes.data() + bytes.size()))
        return nullptr;
    return FindNextDlgItem(item, IsDialogEx(m_dialog, m_size),
                           static_cast<std::size_t>(bytes.data() + bytes.size() - at));
}

}  // namespace tov
