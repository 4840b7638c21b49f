// Dialog templates of bytes as the same model that the text form is read into.
#include "util/code_points.h"
#include "vesk/code_page.h"
#include "views/dialog_resource.h"
#include "views/dlg_records.h"

#include <tov310/styles.h>

#include <algorithm>
#include <utility>

namespace tov {
namespace {

constexpr char const* numberedClasses[] = {"Button", "Edit", "Static", "ListBox", "ScrollBar", "ComboBox"};
constexpr std::uint16_t firstNumberedClass = 0x80;

// Names of classes in small letters, and what does the same here.
constexpr std::pair<std::string_view, char const*> namedClasses[] = {
    {"button", "Button"},
    {"edit", "Edit"},
    {"static", "Static"},
    {"listbox", "ListBox"},
    {"scrollbar", "ScrollBar"},
    {"combobox", "ComboBox"},
    {"comboboxex32", "ComboBox"},
    {"msctls_updown32", "Spin"},
    {"msctls_progress32", "Progress"},
    {"msctls_trackbar32", "Slider"},
    {"msctls_hotkey32", "Edit"},
    {"syslistview32", "List"},
    {"systreeview32", "Tree"},
    {"systabcontrol32", "Tab"},
    {"sysdatetimepick32", "DateTime"},
    {"sysipaddress32", "Edit"},
    {"richedit", "Edit"},
    {"richedit20a", "Edit"},
    {"richedit20w", "Edit"},
    {"richedit50w", "Edit"},
};

// Fonts that stand for that of the system.
constexpr std::string_view systemFaces[] = {"MS Shell Dlg", "MS Shell Dlg 2"};

constexpr std::uint32_t exStyleSunken = 0x200;       // WS_EX_CLIENTEDGE
constexpr std::uint32_t exStyleHelp = 0x400;         // WS_EX_CONTEXTHELP
constexpr std::uint32_t dialogPlaceIsScreens = 0x1;  // DS_ABSALIGN
constexpr int usualPlace = -0x8000;
constexpr int fieldHeight = 14;  // of a combo box, in dialog units

CString ClassOf(DlgText const& name) {
    if (name.isNumber) {
        unsigned const place = name.number - firstNumberedClass;
        return place < std::size(numberedClasses) ? numberedClasses[place] : CString();
    }
    CString const given = name.Utf8();
    CString small = given;
    std::transform(small.begin(), small.end(), small.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    for (auto const& [known, ours] : namedClasses) {
        if (small == known) return ours;
    }
    return given;
}

int WithinUnits(int value) {
    return std::max(value, -0x7FFF);
}

template <class Record>
CRect PlaceOf(Record const& record, int cy) {
    int const left = WithinUnits(record.x);
    int const top = WithinUnits(record.y);
    return {left, top, left + std::max<int>(record.cx, 0), top + std::max(cy, 0)};
}

// What draws itself, or is checked by the host, is what comes next to it.
unsigned long ButtonStyle(unsigned long style) {
    constexpr unsigned long types[16] = {
        BS_PUSHBUTTON,      BS_DEFPUSHBUTTON,   BS_AUTOCHECKBOX, BS_AUTOCHECKBOX,
        BS_AUTORADIOBUTTON, BS_AUTO3STATE,      BS_AUTO3STATE,   BS_GROUPBOX,
        BS_PUSHBUTTON,      BS_AUTORADIOBUTTON, BS_PUSHBUTTON,   BS_PUSHBUTTON,
        BS_PUSHBUTTON,      BS_DEFPUSHBUTTON,   BS_PUSHBUTTON,   BS_DEFPUSHBUTTON,
    };
    return (style & ~BS_TYPEMASK) | types[style & BS_TYPEMASK];
}

void ReadStatic(DlgItem const& item, CTovControlTemplate& control) {
    unsigned long const type = item.style & SS_TYPEMASK;
    unsigned long ours = type;
    if ((type >= 4 && type <= 9) || type == 0x12) {
        // Frames and panels lie behind what stands in them, as group boxes do.
        control.className = "Button";
        control.text.clear();
        control.style = (control.style & (WS_CHILD | WS_VISIBLE | WS_DISABLED | WS_GROUP)) | BS_GROUPBOX;
        return;
    }
    if (type == 0xE || type == 0xF)
        ours = SS_ICON;
    else if (type == 0x11)
        ours = SS_ETCHEDHORZ;  // upright where it is higher than wide
    else if (type > SS_ICON && type != SS_ETCHEDHORZ)
        ours = SS_LEFT;
    control.style = (control.style & ~SS_TYPEMASK) | ours;
}

void ReadByClass(DlgItem const& item, CTovControlTemplate& control) {
    if (control.className == "Static") {
        ReadStatic(item, control);
    } else if (control.className == "Button") {
        control.style = ButtonStyle(control.style);
    } else if (control.className == "ComboBox") {
        constexpr unsigned long typeMask = 3;
        bool const isList = (control.style & typeMask) == CBS_DROPDOWNLIST;
        control.style = (control.style & ~typeMask) | (isList ? CBS_DROPDOWNLIST : CBS_DROPDOWN);
        // They tell the height with the list pulled down.
        control.rect.bottom = std::min(control.rect.bottom, control.rect.top + fieldHeight);
    } else if (control.className == "ListBox") {
        constexpr unsigned long severalAtOnce = 8;  // LBS_MULTIPLESEL
        if ((control.style & severalAtOnce) != 0) control.style |= LBS_EXTENDEDSEL;
    }
    bool const isField = control.className == "Edit" || control.className == "ListBox";
    if (isField && (item.exStyle & exStyleSunken) != 0) control.style |= WS_BORDER;
}

void ReadFontOf(DlgHeader const& header, CTovDialogTemplate& dialog) {
    CString const face = header.face.Utf8();
    if (face.empty() ||
        std::find(std::begin(systemFaces), std::end(systemFaces), face) != std::end(systemFaces))
        return;
    dialog.fontFamily = face;
    if (header.fontSize >= 1 && header.fontSize <= 200) dialog.fontSize = header.fontSize;
}

void ReadFrameOf(DlgHeader const& header, CTovDialogTemplate& dialog) {
    dialog.title = header.title.Utf8();
    dialog.style = header.style;
    if ((dialog.style & WS_CHILD) == 0) dialog.style |= WS_POPUP;
    if ((header.exStyle & exStyleHelp) != 0) dialog.style |= DS_CONTEXTHELP;
    bool const isUsual = header.x == usualPlace || (header.style & DS_CENTER) != 0 ||
                         (header.x == 0 && header.y == 0 && (header.style & dialogPlaceIsScreens) == 0);
    dialog.hasPlace = !isUsual;
    dialog.rect = PlaceOf(header, header.cy);
    if (header.x == usualPlace) dialog.rect = {0, 0, dialog.rect.Width(), dialog.rect.Height()};
    ReadFontOf(header, dialog);
}

// Words for the lists: the control, what to do, a length and so many bytes; a control 0 ends it.
class InitReader {
 public:
    InitReader(std::string_view bytes, CTovDialogTemplate& dialog) : m_bytes(bytes), m_dialog(dialog) {}

    // Whether it was whole.
    bool Read() {
        while (m_bytes.size() >= 2 && DlgWord(m_bytes, 0) != 0) {
            if (m_bytes.size() < 8) return false;
            std::size_t const length = DlgWord(m_bytes, 4) | static_cast<std::size_t>(DlgWord(m_bytes, 6))
                                                                 << 16;
            if (m_bytes.size() - 8 < length) return false;
            if (AddsWords(DlgWord(m_bytes, 2))) Add(DlgWord(m_bytes, 0), m_bytes.substr(8, length));
            m_bytes.remove_prefix(8 + length);
        }
        return m_bytes.size() != 1;
    }

 private:
    // Words for list boxes and the two kinds of combo boxes, by their old numbers and by those since. Others
    // are the states of controls that nobody makes here.
    static bool AddsWords(std::uint16_t what) {
        return what == 0x401 || what == 0x403 || what == 0x1234 || what == 0x180 || what == 0x143;
    }
    void Add(std::uint16_t id, std::string_view words) {
        words = words.substr(0, words.find('\0'));
        for (CTovControlTemplate& control : m_dialog.controls) {
            bool const hasItems = control.className == "ListBox" || control.className == "ComboBox";
            if (control.id != id || !hasItems) continue;
            control.items.push_back(IsUtf8(words) ? CString(words) : VeskFromCodePage(words, "GB18030"));
            return;
        }
    }
    static bool IsUtf8(std::string_view text) {
        while (!text.empty()) {
            bool const isWritten = text.starts_with("\uFFFD");
            if (TakeCharacter(text) == U'\uFFFD' && !isWritten) return false;
        }
        return true;
    }

    std::string_view m_bytes;
    CTovDialogTemplate& m_dialog;
};

}  // namespace

bool ParseDlgTemplate(std::string_view bytes, std::string_view init, CTovDialogTemplate& dialog,
                      std::vector<std::string>& faults) {
    std::size_t const before = faults.size();
    auto const tell = [&](std::string const& what) { faults.push_back(dialog.name + ": " + what); };
    DlgHeader header;
    std::size_t at = ReadDlgHeader(bytes, IsExtendedDlg(bytes), header);
    if (at == 0) {
        tell("ends within the dialog");
        return false;
    }
    ReadFrameOf(header, dialog);
    for (unsigned i = 0; i < header.count; ++i) {
        std::string const where = "control " + std::to_string(i + 1);
        DlgItem item;
        std::size_t const length = ReadDlgItem(bytes.substr(at), header.isEx, item);
        if (length == 0) {
            tell("ends within " + where);
            return false;
        }
        at += length;
        CTovControlTemplate& control = dialog.controls.emplace_back();
        control.className = ClassOf(item.className);
        if (control.className.empty()) tell(where + ": has no class");
        constexpr std::uint32_t lastId = 0xFFFF;  // and nobody's; commands travel in half a word
        if (item.id > lastId && item.id != 0xFFFFFFFF)
            tell(where + ": the id " + std::to_string(item.id) + " is beyond 65535");
        else if (item.id < lastId)
            control.id = item.id;
        control.text = item.title.Utf8();
        control.style = item.style | WS_CHILD;
        control.rect = PlaceOf(item, item.cy);
        ReadByClass(item, control);
    }
    if (!InitReader(init, dialog).Read()) tell("the words for its lists end too soon");
    return faults.size() == before;
}

}  // namespace tov
