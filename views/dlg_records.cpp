#include "views/dlg_records.h"

#include "util/code_points.h"

#include <algorithm>

namespace tov {
namespace {

constexpr std::uint16_t numberMark = 0xFFFF;   // a number follows in place of a text
constexpr std::uint32_t dialogHasFont = 0x40;  // bit of the style

// Takes what the records are made of, and remembers whether it was all there.
class DlgCursor {
 public:
    explicit DlgCursor(std::string_view bytes) : m_bytes(bytes) {}

    std::uint16_t Word() {
        if (!Has(2)) return 0;
        m_at += 2;
        return DlgWord(m_bytes, m_at - 2);
    }
    std::int16_t Short() { return static_cast<std::int16_t>(Word()); }
    std::uint32_t Double() {
        std::uint32_t const low = Word();
        return low | static_cast<std::uint32_t>(Word()) << 16;
    }
    void Skip(std::size_t count) {
        if (Has(count)) m_at += count;
    }

    DlgText Text() {
        DlgText text;
        std::size_t const start = m_at;
        while (Word() != 0) {
        }
        if (m_isWhole) text.units = m_bytes.substr(start, m_at - 2 - start);
        return text;
    }
    DlgText TextOrNumber() {
        if (m_bytes.size() - m_at < 4 || DlgWord(m_bytes, m_at) != numberMark) return Text();
        Skip(2);
        DlgText text;
        text.number = Word();
        text.isNumber = true;
        return text;
    }

    // Records begin at multiples of four bytes; nothing need follow the last one.
    std::size_t Next() const { return m_isWhole ? std::min((m_at + 3) / 4 * 4, m_bytes.size()) : 0; }

 private:
    bool Has(std::size_t count) {
        m_isWhole = m_isWhole && m_bytes.size() - m_at >= count;
        return m_isWhole;
    }

    std::string_view m_bytes;
    std::size_t m_at = 0;
    bool m_isWhole = true;
};

template <class Record>
void ReadDlgPlace(DlgCursor& cursor, Record& record) {
    record.x = cursor.Short();
    record.y = cursor.Short();
    record.cx = cursor.Short();
    record.cy = cursor.Short();
}

}  // namespace

CString DlgText::Utf8() const {
    CString text;
    auto const isSurrogate = [](char32_t unit) { return unit >= 0xD800 && unit <= 0xDFFF; };
    for (std::size_t i = 0; i + 1 < units.size(); i += 2) {
        char32_t character = DlgWord(units, i);
        char32_t const next = i + 3 < units.size() ? DlgWord(units, i + 2) : 0;
        if (character < 0xDC00 && isSurrogate(character) && next >= 0xDC00 && isSurrogate(next)) {
            character = 0x10000 + ((character - 0xD800) << 10) + (next - 0xDC00);
            i += 2;
        }
        AppendCharacter(text, isSurrogate(character) ? U'\uFFFD' : character);
    }
    return text;
}

bool IsExtendedDlg(std::string_view dialog) {
    return dialog.size() >= 4 && DlgWord(dialog, 2) == 0xFFFF;
}

std::size_t ReadDlgHeader(std::string_view dialog, bool isEx, DlgHeader& header) {
    DlgCursor cursor(dialog);
    header.isEx = isEx;
    if (isEx) {
        cursor.Skip(8);  // the version, the mark and a number for help
        header.exStyle = cursor.Double();
        header.style = cursor.Double();
    } else {
        header.style = cursor.Double();
        header.exStyle = cursor.Double();
    }
    header.count = cursor.Word();
    ReadDlgPlace(cursor, header);
    header.menu = cursor.TextOrNumber();
    header.className = cursor.TextOrNumber();
    header.title = cursor.Text();
    if ((header.style & dialogHasFont) != 0) {
        header.fontSize = cursor.Word();
        if (isEx) cursor.Skip(4);  // weight, slant and set of characters
        header.face = cursor.Text();
    }
    return cursor.Next();
}

std::size_t ReadDlgItem(std::string_view item, bool isEx, DlgItem& read) {
    DlgCursor cursor(item);
    if (isEx) {
        cursor.Skip(4);  // a number for help
        read.exStyle = cursor.Double();
        read.style = cursor.Double();
    } else {
        read.style = cursor.Double();
        read.exStyle = cursor.Double();
    }
    ReadDlgPlace(cursor, read);
    read.id = isEx ? cursor.Double() : cursor.Word();
    read.className = cursor.TextOrNumber();
    read.title = cursor.TextOrNumber();
    cursor.Skip(cursor.Word());  // of the class's own
    return cursor.Next();
}

}  // namespace tov
