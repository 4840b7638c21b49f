// The text of an initialisation file: what can be read from it, and what it becomes by a write. No files
// here.
//
// A text is a row of lines, each closed by LF or CR LF (the last one perhaps by nothing):
//
//   [section]     opens a section; text behind the "]" means nothing, a missing "]" stands at the line's end
//   name=value    an entry; blanks around name and value do not belong to them
//   ; comment     like an empty line, for people only
//   anything else is a bare line: no entry, but given out with the list of its section
//
// Lines above the first section belong to nobody. Where a section, or an entry in it, stands twice, the first
// one counts. A line is read up to its first zero byte. A byte order mark of UTF-8 is passed over; a text in
// UTF-16 is left alone altogether.
//
// An edit gives the bytes of the new text. It changes only the lines that it is about; new lines end as their
// neighbours do, in a text without any line with CR LF, which every reader of such files takes.
#pragma once

#include "util/profile_text.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tov {

class IniText {
 public:
    explicit IniText(std::string bytes = {});
    IniText(IniText const&) = delete;
    IniText& operator=(IniText const&) = delete;

    std::string const& Bytes() const { return m_bytes; }

    // False for a text in UTF-16. It has no sections, and editing it would destroy it.
    bool IsReadable() const { return m_readable; }

    bool HasSection(std::string_view section) const { return FindSection(section) != nullptr; }

    // The value as it stands, with its quotes, or nothing. The view lives as long as the text.
    std::optional<std::string_view> Value(std::string_view section, std::string_view entry) const;

    // Calls visit(name, hasValue, value) for the entries and bare lines of a section, until it answers false.
    template <class Visit>
    void ForEachLine(std::string_view section, Visit visit) const {
        Section const* const s = FindSection(section);
        if (s == nullptr) return;
        for (Line const& line : LinesOf(*s)) {
            bool const has = line.kind == Kind::Entry;
            if ((has || line.kind == Kind::Bare) && !visit(NameOf(line), has, ValueOf(line))) return;
        }
    }

    // Every name once, in the order of the text; a section without a name is left out.
    std::vector<std::string> SectionNames() const;

    // The edits. Names must be writable; a missing section or entry is added, and what is to be taken away
    // may be missing. WithoutEntry and WithoutSection take away every one of the name, so that afterwards
    // none is read. WithLines replaces the entries and bare lines of a section and keeps its comments.
    std::string WithValue(std::string_view section, std::string_view entry, std::string_view value) const;
    std::string WithLines(std::string_view section, std::span<std::string_view const> lines) const;
    std::string WithoutEntry(std::string_view section, std::string_view entry) const;
    std::string WithoutSection(std::string_view section) const;

    // Whether a name or text would be read back as what it is.
    static bool IsWritableSection(std::string_view name);
    static bool IsWritableEntry(std::string_view name);
    static bool IsWritableValue(std::string_view value);
    static bool IsWritableLine(std::string_view line);

 private:
    enum class Kind { Blank, Comment, Header, Entry, Bare };

    // Offsets into the bytes. Blank lines and comments have neither name nor value.
    struct Line {
        Kind kind = Kind::Blank;
        std::size_t begin = 0, end = 0, next = 0;  // the text without its line end, and the following line
        std::size_t name = 0, nameSize = 0;
        std::size_t value = 0, valueSize = 0;
    };

    struct Section {
        std::size_t header = 0;  // index of its line
        std::size_t end = 0;     // one past its last line
    };

    struct EntryKey {
        std::size_t section;  // index of its header line
        std::string_view name;
    };
    struct EntryHash {
        std::size_t operator()(EntryKey const& key) const noexcept {
            return FoldedHash{}(key.name) ^ (key.section * std::size_t{0x9E3779B97F4A7C15});
        }
    };
    struct EntryEqual {
        bool operator()(EntryKey const& a, EntryKey const& b) const noexcept {
            return a.section == b.section && FoldedEqual{}(a.name, b.name);
        }
    };

    Line ParseLine(std::size_t begin) const;
    std::size_t OffsetOf(std::string_view part) const {
        return static_cast<std::size_t>(part.data() - m_bytes.data());
    }
    std::string_view Cut(std::size_t begin, std::size_t end) const {
        return std::string_view(m_bytes).substr(begin, end - begin);
    }
    std::string_view NameOf(Line const& line) const { return Cut(line.name, line.name + line.nameSize); }
    std::string_view ValueOf(Line const& line) const { return Cut(line.value, line.value + line.valueSize); }
    Section const* FindSection(std::string_view name) const;
    std::span<Line const> LinesOf(Section const& section) const;
    std::string_view LineEndBehind(Line const* line) const;
    std::string WithInserted(Line const* behind, std::span<std::string const> lines) const;

    std::string const m_bytes;
    bool m_readable = true;
    std::vector<Line> m_lines;
    std::vector<Section> m_sections;  // all, in the order of the text
    // The first section of each name, by index; and the lines of its entries, the first of each name.
    std::unordered_map<std::string_view, std::size_t, FoldedHash, FoldedEqual> m_byName;
    std::unordered_map<EntryKey, std::size_t, EntryHash, EntryEqual> m_entries;
};

}  // namespace tov
