// Dialog templates in bytes, written as older programs have them.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace tov::test {

// A number of a resource or a text; 16-bit units.
using DlgName = std::variant<std::u16string, std::uint16_t>;

struct DlgControl {
    DlgName className{};
    DlgName title{};
    std::uint32_t id = 0;
    std::uint32_t style = 0x50000000;
    std::int16_t x = 0, y = 0, cx = 0, cy = 0;
    std::uint32_t exStyle = 0;
    std::string extra{};  // of the class's own
};

struct DlgDialog {
    std::u16string title{};
    std::uint32_t style = 0;
    std::int16_t x = 0, y = 0, cx = 0, cy = 0;
    std::uint32_t exStyle = 0;
    DlgName menu{}, className{};
    std::uint16_t fontSize = 8;
    std::u16string face{};  // empty: no font
    std::vector<DlgControl> controls{};
};

class DlgWriter {
 public:
    DlgWriter(DlgDialog const& dialog, bool isEx) : m_isEx(isEx) {
        std::uint32_t const style = dialog.face.empty() ? dialog.style : dialog.style | 0x40;
        if (isEx) Number(0xFFFF0001u, 4);
        Head(style, dialog.exStyle);
        Number(dialog.controls.size(), 2);
        Place(dialog);
        Name(dialog.menu);
        Name(dialog.className);
        Name(dialog.title);
        if (!dialog.face.empty()) {
            Number(dialog.fontSize, 2);
            if (isEx) Number(0x01000190u, 4);
            Name(dialog.face);
        }
        for (DlgControl const& control : dialog.controls) {
            Align();
            offsets.push_back(bytes.size());
            Head(control.style, control.exStyle);
            Place(control);
            Number(control.id, isEx ? 4 : 2);
            Name(control.className);
            Name(control.title);
            Number(control.extra.size(), 2);
            bytes += control.extra;
        }
        Align();
    }

    std::string bytes;
    std::vector<std::size_t> offsets;  // of the controls

 private:
    void Number(std::uint64_t number, int size) {
        for (int i = 0; i < size; ++i)
            bytes += static_cast<char>(number >> (8 * i) & 0xFF);
    }
    void Head(std::uint32_t style, std::uint32_t exStyle) {
        if (m_isEx) Number(77, 4);
        Number(m_isEx ? exStyle : style, 4);
        Number(m_isEx ? style : exStyle, 4);
    }
    void Place(auto const& record) {
        for (std::int16_t const value : {record.x, record.y, record.cx, record.cy})
            Number(static_cast<std::uint16_t>(value), 2);
    }
    void Name(DlgName const& name) {
        if (auto const* const number = std::get_if<std::uint16_t>(&name)) {
            Number(0xFFFF | static_cast<std::uint32_t>(*number) << 16, 4);
            return;
        }
        for (char16_t const unit : std::get<std::u16string>(name))
            Number(unit, 2);
        Number(0, 2);
    }
    void Align() { bytes.resize((bytes.size() + 3) / 4 * 4); }

    bool const m_isEx;
};

// One entry of the words for lists.
inline std::string DlgWords(std::uint16_t id, std::uint16_t what, std::string const& words) {
    std::uint32_t const size = static_cast<std::uint32_t>(words.size()) + 1;
    std::string entry;
    for (std::uint32_t const half : {std::uint32_t{id}, std::uint32_t{what}, size & 0xFFFF, size >> 16}) {
        entry += static_cast<char>(half & 0xFF);
        entry += static_cast<char>(half >> 8);
    }
    return entry + words + '\0';
}

}  // namespace tov::test
