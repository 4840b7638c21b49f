// Reading and editing the text of an initialisation file. The rules stand in the header.
#include "util/ini_text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tov {
namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view newLineEnd = "\r\n";

}  // namespace

IniText::IniText(std::string bytes) : m_bytes(std::move(bytes)) {
    m_readable = !m_bytes.starts_with("\xFF\xFE") && !m_bytes.starts_with("\xFE\xFF");
    if (!m_readable) return;
    std::size_t at = m_bytes.starts_with(utf8Mark) ? utf8Mark.size() : 0;
    std::size_t index = 0;
    for (; at < m_bytes.size(); at = m_lines[index++].next) {
        Line const& line = m_lines.emplace_back(ParseLine(at));
        if (line.kind == Kind::Header) {
            if (!m_sections.empty()) m_sections.back().end = index;
            m_sections.push_back({index, index});
            m_byName.try_emplace(NameOf(line), m_sections.size() - 1);
        } else if (line.kind == Kind::Entry && !m_sections.empty()) {
            m_entries.try_emplace({m_sections.back().header, NameOf(line)}, index);
        }
    }
    if (!m_sections.empty()) m_sections.back().end = index;
}

IniText::Line IniText::ParseLine(std::size_t begin) const {
    Line line;
    line.begin = begin;
    auto const feed = m_bytes.find('\n', begin);
    if (feed == std::string::npos) {
        line.end = line.next = m_bytes.size();
    } else {
        line.next = feed + 1;
        line.end = feed > begin && m_bytes[feed - 1] == '\r' ? feed - 1 : feed;
    }

    auto const setName = [&](std::string_view name) {
        name = TrimBlanks(name);
        line.name = OffsetOf(name);
        line.nameSize = name.size();
    };
    std::string_view text = Cut(line.begin, line.end);
    text = TrimBlanks(text.substr(0, text.find('\0')));
    if (text.empty()) return line;
    if (text.front() == ';') {
        line.kind = Kind::Comment;
    } else if (text.front() == '[') {
        line.kind = Kind::Header;
        text.remove_prefix(1);
        setName(text.substr(0, text.find(']')));
    } else if (auto const equals = text.find('='); equals != std::string_view::npos) {
        line.kind = Kind::Entry;
        setName(text.substr(0, equals));
        auto const value = TrimBlanks(text.substr(equals + 1));
        line.value = OffsetOf(value);
        line.valueSize = value.size();
    } else {
        line.kind = Kind::Bare;
        setName(text);
    }
    return line;
}

IniText::Section const* IniText::FindSection(std::string_view name) const {
    auto const found = m_byName.find(TrimBlanks(name));
    return found != m_byName.end() ? &m_sections[found->second] : nullptr;
}

std::span<IniText::Line const> IniText::LinesOf(Section const& section) const {
    return std::span(m_lines).subspan(section.header + 1, section.end - section.header - 1);
}

std::optional<std::string_view> IniText::Value(std::string_view section, std::string_view entry) const {
    Section const* const s = FindSection(section);
    if (s == nullptr) return std::nullopt;
    auto const found = m_entries.find({s->header, TrimBlanks(entry)});
    if (found == m_entries.end()) return std::nullopt;
    return ValueOf(m_lines[found->second]);
}

std::vector<std::string> IniText::SectionNames() const {
    std::vector<std::string> names;
    for (Section const& section : m_sections) {
        auto const name = NameOf(m_lines[section.header]);
        if (!name.empty() && FindSection(name) == &section) names.emplace_back(name);
    }
    return names;
}

std::string_view IniText::LineEndBehind(Line const* line) const {
    if (line != nullptr && line->next > line->end) return Cut(line->end, line->next);
    if (!m_lines.empty() && m_lines.front().next > m_lines.front().end) {
        return Cut(m_lines.front().end, m_lines.front().next);
    }
    return newLineEnd;
}

// A text that ends without a line end does so afterwards.
std::string IniText::WithInserted(Line const* behind, std::span<std::string const> lines) const {
    auto const lineEnd = LineEndBehind(behind);
    bool const open = behind != nullptr && behind->next == behind->end;
    std::size_t const at = behind != nullptr ? behind->next : m_bytes.size();
    std::string text(Cut(0, at));
    for (std::string const& line : lines) {
        if (open) text += lineEnd;
        text += line;
        if (!open) text += lineEnd;
    }
    return text += Cut(at, m_bytes.size());
}

std::string IniText::WithValue(std::string_view section, std::string_view entry,
                               std::string_view value) const {
    entry = TrimBlanks(entry);
    std::string line(entry);
    line += '=';
    line += value;
    Section const* const s = FindSection(section);
    if (s == nullptr) {
        std::array const added{'[' + std::string(TrimBlanks(section)) + ']', std::move(line)};
        return WithInserted(m_lines.empty() ? nullptr : &m_lines.back(), added);
    }
    if (auto const found = m_entries.find({s->header, entry}); found != m_entries.end()) {
        Line const& old = m_lines[found->second];
        std::string text(Cut(0, old.value));
        text += value;
        return text += Cut(old.end, m_bytes.size());
    }
    // Behind the last line that says something: the blank line and the comment above the next section stay
    // there.
    Line const* behind = &m_lines[s->header];
    for (Line const& l : LinesOf(*s)) {
        if (l.kind == Kind::Entry || l.kind == Kind::Bare) behind = &l;
    }
    return WithInserted(behind, {&line, 1});
}

std::string IniText::WithLines(std::string_view section, std::span<std::string_view const> lines) const {
    Section const* const s = FindSection(section);
    if (s == nullptr) {
        std::vector<std::string> added{'[' + std::string(TrimBlanks(section)) + ']'};
        added.insert(added.end(), lines.begin(), lines.end());
        return WithInserted(m_lines.empty() ? nullptr : &m_lines.back(), added);
    }
    Line const& header = m_lines[s->header];
    auto const lineEnd = LineEndBehind(&header);
    std::string text(Cut(0, header.next));
    bool written = false;
    auto const write = [&] {
        if (std::exchange(written, true)) return;
        for (std::string_view const line : lines) {
            if (!text.ends_with('\n')) text += lineEnd;
            text += line;
            text += lineEnd;
        }
    };
    auto const old = LinesOf(*s);
    bool const hasOld = std::ranges::any_of(
        old, [](Line const& line) { return line.kind == Kind::Entry || line.kind == Kind::Bare; });
    if (!hasOld) write();
    for (Line const& line : old) {
        if (line.kind == Kind::Entry || line.kind == Kind::Bare) {
            write();
        } else {
            text += Cut(line.begin, line.next);
        }
    }
    std::size_t const end = m_lines[s->end - 1].next;
    if (end == m_bytes.size() && !m_bytes.ends_with('\n') && text.ends_with(lineEnd)) {
        text.resize(text.size() - lineEnd.size());
    }
    return text += Cut(end, m_bytes.size());
}

std::string IniText::WithoutEntry(std::string_view section, std::string_view entry) const {
    Section const* const s = FindSection(section);
    entry = TrimBlanks(entry);
    if (s == nullptr || !m_entries.contains({s->header, entry})) return m_bytes;
    std::string text;
    std::size_t kept = 0;
    for (Line const& line : LinesOf(*s)) {
        if (line.kind != Kind::Entry || !FoldedEqual{}(NameOf(line), entry)) continue;
        text += Cut(kept, line.begin);
        kept = line.next;
    }
    return text += Cut(kept, m_bytes.size());
}

std::string IniText::WithoutSection(std::string_view section) const {
    section = TrimBlanks(section);
    std::string text;
    std::size_t kept = 0;
    for (Section const& s : m_sections) {
        if (!FoldedEqual{}(NameOf(m_lines[s.header]), section)) continue;
        text += Cut(kept, m_lines[s.header].begin);
        kept = m_lines[s.end - 1].next;
    }
    return text += Cut(kept, m_bytes.size());
}

bool IniText::IsWritableSection(std::string_view name) {
    return !HasLineEnd(name) && name.find(']') == std::string_view::npos;
}

bool IniText::IsWritableEntry(std::string_view name) {
    if (HasLineEnd(name)) return false;
    name = TrimBlanks(name);
    return name.find('=') == std::string_view::npos && !name.starts_with(';') && !name.starts_with('[');
}

bool IniText::IsWritableValue(std::string_view value) {
    return !HasLineEnd(value);
}

bool IniText::IsWritableLine(std::string_view line) {
    if (HasLineEnd(line)) return false;
    line = TrimBlanks(line);
    return !line.empty() && !line.starts_with(';') && !line.starts_with('[');
}

}  // namespace tov
