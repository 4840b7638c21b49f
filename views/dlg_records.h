// The records of a dialog template in bytes. All numbers are little-endian, texts are UTF-16.
#pragma once

#include <tov310/types.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tov {

// A text or, in its place, the number of a resource.
struct DlgText {
    std::string_view units;  // two bytes each, without the zero at the end
    std::uint16_t number = 0;
    bool isNumber = false;

    // What is no character becomes U+FFFD.
    CString Utf8() const;
};

struct DlgHeader {
    bool isEx = false;
    std::uint32_t style = 0;
    std::uint32_t exStyle = 0;
    std::uint16_t count = 0;
    std::int16_t x = 0, y = 0, cx = 0, cy = 0;
    DlgText menu, className, title;
    std::uint16_t fontSize = 0;  // points; 0 where the template has no font
    DlgText face;
};

struct DlgItem {
    std::uint32_t style = 0;
    std::uint32_t exStyle = 0;
    std::uint32_t id = 0;
    std::int16_t x = 0, y = 0, cx = 0, cy = 0;
    DlgText className, title;
};

constexpr std::uint16_t DlgWord(std::string_view bytes, std::size_t at) {
    return static_cast<std::uint16_t>(static_cast<unsigned char>(bytes[at]) |
                                      static_cast<unsigned char>(bytes[at + 1]) << 8);
}

// Where the style of a dialog stands.
constexpr std::size_t DlgStyleOffset(bool isEx) {
    return isEx ? 12 : 0;
}

// Whether the template is of the extended form.
bool IsExtendedDlg(std::string_view dialog);

// Read the record at the beginning of the bytes. Answer where the next one begins, which is no farther than
// their end, or 0 where they end within the record.
std::size_t ReadDlgHeader(std::string_view dialog, bool isEx, DlgHeader& header);
std::size_t ReadDlgItem(std::string_view item, bool isEx, DlgItem& read);

}  // namespace tov
