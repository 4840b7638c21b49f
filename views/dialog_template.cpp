#include <tov310/dialog_template.h>

#include "frame/json_words.h"
#include "frame/resource_module.h"
#include "views/dialog_resource.h"

#include <tov310/styles.h>
#include <tov310/window.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <set>
#include <utility>

namespace tov {
namespace {

using DialogJson = nlohmann::json;

constexpr int deepestInDialog = 4;  // a style within a control within the list of controls
constexpr int largestUnit = 0x7FFF;
constexpr unsigned lastControlId = 0xFFFF;  // commands travel in half a word

// What the classes of controls have beside their place.
struct ControlClass {
    char const* name;
    bool takesKeys;
    bool hasText;
    bool hasItems;
    unsigned long style;  // where no kind is given
};
constexpr ControlClass controlClasses[] = {
    {"Static", false, true, false, SS_LEFT},
    {"Edit", true, true, false, 0},
    {"Button", true, true, false, BS_PUSHBUTTON},
    {"ComboBox", true, true, true, CBS_DROPDOWN},
    {"ListBox", true, false, true, 0},
    {"List", true, false, false, 0},
    {"Tree", true, false, false, 0},
    {"Spin", true, false, false, 0},
    {"Progress", false, false, false, 0},
    {"Slider", true, false, false, 0},
    {"Tab", true, false, true, 0},
    {"DateTime", true, false, false, 0},
    {"ScrollBar", false, false, false, 0},
};
constexpr ControlClass otherClass{"", true, true, true, 0};

struct StyleWord {
    char const* className;  // empty: of all classes
    char const* word;
    unsigned long bits;
    bool takesAway = false;
};
constexpr StyleWord kindWords[] = {
    {"Static", "text", SS_LEFT},
    {"Static", "image", SS_ICON},
    {"Static", "rule", SS_ETCHEDHORZ},
    {"Button", "push", BS_PUSHBUTTON},
    {"Button", "default", BS_DEFPUSHBUTTON},
    {"Button", "check", BS_AUTOCHECKBOX},
    {"Button", "check3", BS_AUTO3STATE},
    {"Button", "radio", BS_AUTORADIOBUTTON},
    {"Button", "group", BS_GROUPBOX},
    {"ComboBox", "drop", CBS_DROPDOWN},
    {"ComboBox", "list", CBS_DROPDOWNLIST},
};
// A class that is not a common one may be made of any: it takes the first row that has the word.
constexpr StyleWord styleWords[] = {
    {"", "disabled", WS_DISABLED},
    {"", "hidden", WS_VISIBLE, true},
    {"", "group", WS_GROUP},
    {"", "tabstop", WS_TABSTOP},
    {"", "notabstop", WS_TABSTOP, true},
    {"", "border", WS_BORDER},
    {"Edit", "noborder", WS_BORDER, true},
    {"Edit", "center", ES_CENTER},
    {"Edit", "right", ES_RIGHT},
    {"Edit", "readonly", ES_READONLY},
    {"Edit", "password", ES_PASSWORD},
    {"Edit", "number", ES_NUMBER},
    {"Edit", "multiline", ES_MULTILINE},
    {"Edit", "autohscroll", ES_AUTOHSCROLL},
    {"Edit", "autovscroll", ES_AUTOVSCROLL},
    {"Edit", "hscroll", WS_HSCROLL},
    {"Edit", "vscroll", WS_VSCROLL},
    {"Static", "center", SS_CENTER},
    {"Static", "right", SS_RIGHT},
    {"Static", "middle", SS_CENTERIMAGE},
    {"Static", "noprefix", SS_NOPREFIX},
    {"Button", "pushlike", BS_PUSHLIKE},
    {"ComboBox", "sort", CBS_SORT},
    {"ListBox", "sort", LBS_SORT},
    {"ListBox", "multiple", LBS_EXTENDEDSEL},
    {"ListBox", "vscroll", WS_VSCROLL},
    {"Slider", "vertical", TBS_VERT},
    {"ScrollBar", "vertical", SBS_VERT},
    {"Progress", "vertical", PBS_VERTICAL},
};
constexpr StyleWord dialogWords[] = {
    {"", "child", WS_CHILD},          {"", "visible", WS_VISIBLE},   {"", "disabled", WS_DISABLED},
    {"", "border", WS_BORDER},        {"", "resize", WS_THICKFRAME}, {"", "minimize", WS_MINIMIZEBOX},
    {"", "maximize", WS_MAXIMIZEBOX}, {"", "center", DS_CENTER},     {"", "help", DS_CONTEXTHELP},
};

std::string InQuotes(std::string_view text) {
    std::string quoted = "\"";
    quoted += text;
    quoted += '"';
    return quoted;
}

// Reads the members of one object, which is the dialog itself or one of its controls, and tells what is wrong
// with them. Members that were never asked for are wrong too.
class MemberReader {
 public:
    MemberReader(DialogJson const& object, TextsById& texts, std::string where,
                 std::vector<std::string>& faults)
        : m_object(object), m_texts(texts), m_where(std::move(where)), m_faults(faults) {}

    void SetWhere(std::string where) { m_where = std::move(where); }

    void Tell(char const* key, std::string const& what) {
        std::string line = m_where + ": ";
        if (key != nullptr) line += InQuotes(key) + " ";
        m_faults.push_back(line + what);
    }

    DialogJson const* Find(char const* key) {
        m_known.insert(key);
        auto const found = m_object.find(key);
        return found != m_object.end() ? &*found : nullptr;
    }

    // A whole number of the range, or `missing`; without that the member must be there.
    int Number(char const* key, int least, int most, int const* missing = nullptr) {
        DialogJson const* const member = Find(key);
        if (member == nullptr) {
            if (missing == nullptr) Tell(key, "is missing");
            return missing != nullptr ? *missing : 0;
        }
        if (member->is_number_integer() && *member >= least && *member <= most) return member->get<int>();
        Tell(key, "is not a whole number from " + std::to_string(least) + " to " + std::to_string(most));
        return 0;
    }

    // A text; "@26006" stands for that text of the module.
    CString Text(char const* key) {
        DialogJson const* const member = Find(key);
        return member != nullptr ? TextOf(key, *member) : CString();
    }

    std::vector<CString> Texts(char const* key) {
        std::vector<CString> texts;
        DialogJson const* const member = Find(key);
        if (member == nullptr) return texts;
        if (!member->is_array()) Tell(key, "is not a list of texts");
        if (member->is_array()) {
            for (DialogJson const& text : *member)
                texts.push_back(TextOf(key, text));
        }
        return texts;
    }

    // The one word of a kind; 0 with a fault for another.
    unsigned long Kind(char const* className, unsigned long usual) {
        DialogJson const* const member = Find("kind");
        if (member == nullptr) return usual;
        auto const* const word = member->get_ptr<std::string const*>();
        for (StyleWord const& row : kindWords) {
            if (word != nullptr && *word == row.word && std::string_view(className) == row.className)
                return row.bits;
        }
        Tell("kind", word != nullptr ? InQuotes(*word) + " is none of this class" : "is not a word");
        return usual;
    }

    // A list of words, each once, upon what the style is without them.
    template <class IsOurs>
    unsigned long Style(unsigned long style, std::span<StyleWord const> words, IsOurs const& isOurs) {
        DialogJson const* const member = Find("style");
        if (member == nullptr) return style;
        if (!member->is_array()) {
            Tell("style", "is not a list of words");
            return style;
        }
        std::set<std::string> seen;
        for (DialogJson const& element : *member) {
            auto const* const word = element.get_ptr<std::string const*>();
            if (word == nullptr) {
                Tell("style", "holds something that is not a word");
                continue;
            }
            auto const row = std::find_if(words.begin(), words.end(), [&](StyleWord const& known) {
                return *word == known.word && isOurs(known.className);
            });
            if (row == words.end())
                Tell("style", "knows no word " + InQuotes(*word) + " here");
            else if (!seen.insert(*word).second)
                Tell("style", "holds the word " + InQuotes(*word) + " twice");
            else
                style = row->takesAway ? style & ~row->bits : style | row->bits;
        }
        return style;
    }

    void TellOfUnknown() {
        for (auto const& [key, value] : m_object.items()) {
            if (!m_known.contains(key)) Tell(key.c_str(), "is not known here");
        }
    }

 private:
    CString TextOf(char const* key, DialogJson const& json) {
        auto const* const text = json.get_ptr<std::string const*>();
        if (text == nullptr || text->find('\0') != text->npos) {
            Tell(key, text == nullptr ? "is not a text" : "holds a zero");
            return {};
        }
        unsigned id = 0;
        char const* const end = text->data() + text->size();
        if (!text->starts_with('@')) return *text;
        auto const [stop, failure] = std::from_chars(text->data() + 1, end, id);
        if (failure != std::errc() || stop != end) return *text;
        std::string const& meant = m_texts.Find(id);
        if (meant.empty()) Tell(key, "names the text " + std::to_string(id) + ", which there is not");
        return meant;
    }

    DialogJson const& m_object;
    TextsById& m_texts;
    std::string m_where;
    std::vector<std::string>& m_faults;
    std::set<std::string> m_known;
};

ControlClass const& ClassNamed(std::string_view name) {
    auto const found = std::find_if(std::begin(controlClasses), std::end(controlClasses),
                                    [name](ControlClass const& known) { return name == known.name; });
    return found != std::end(controlClasses) ? *found : otherClass;
}

CRect ReadPlace(MemberReader& reader, int left, int top) {
    int const cx = reader.Number("cx", 0, largestUnit);
    int const cy = reader.Number("cy", 0, largestUnit);
    return {left, top, left + cx, top + cy};
}

void ReadControl(MemberReader& reader, std::string const& where, CTovControlTemplate& control) {
    constexpr int none = 0;
    DialogJson const* const named = reader.Find("class");
    if (named == nullptr || !named->is_string() || named->get_ref<std::string const&>().empty())
        reader.Tell("class", named == nullptr ? "is missing" : "is not a name");
    else
        control.className = named->get<std::string>();
    control.id = static_cast<unsigned>(reader.Number("id", 1, lastControlId, &none));
    std::string who = control.className;
    if (control.id != 0) who.append(who.empty() ? "" : " ").append(std::to_string(control.id));
    if (!who.empty()) reader.SetWhere(where + " (" + who + ")");

    ControlClass const& kind = ClassNamed(control.className);
    control.text = reader.Text("text");
    if (!control.text.empty() && !kind.hasText) reader.Tell("text", "is not shown by this class");
    control.items = reader.Texts("items");
    if (!control.items.empty() && !kind.hasItems) reader.Tell("items", "are not shown by this class");
    int const left = reader.Number("x", -largestUnit, largestUnit);
    int const top = reader.Number("y", -largestUnit, largestUnit);
    control.rect = ReadPlace(reader, left, top);
    unsigned long style = WS_CHILD | WS_VISIBLE;
    unsigned long const type = reader.Kind(kind.name, kind.style);
    bool const isGroupBox = control.className == "Button" && type == BS_GROUPBOX;
    if (kind.takesKeys && !isGroupBox) style |= WS_TABSTOP;
    if (control.className == "Edit") style |= WS_BORDER;
    control.style = reader.Style(style | type, styleWords, [&kind](std::string_view className) {
        return className.empty() || kind.name == otherClass.name || className == kind.name;
    });
    reader.TellOfUnknown();
}

// What the controls must be together.
void TellOfTwice(CTovDialogTemplate const& dialog, std::vector<std::string>& faults) {
    std::set<unsigned> ids;
    int defaults = 0;
    for (CTovControlTemplate const& control : dialog.controls) {
        if (control.id != 0 && !ids.insert(control.id).second)
            faults.push_back(dialog.name + ": the id " + std::to_string(control.id) + " stands twice");
        defaults += control.className == "Button" && (control.style & BS_TYPEMASK) == BS_DEFPUSHBUTTON;
    }
    if (defaults > 1) faults.push_back(dialog.name + ": two buttons are the default one");
}

void ReadFont(MemberReader& reader, CTovDialogTemplate& dialog, TextsById& texts,
              std::vector<std::string>& faults) {
    DialogJson const* const font = reader.Find("font");
    if (font == nullptr) return;
    if (!font->is_object()) {
        reader.Tell("font", "is not an object");
        return;
    }
    MemberReader members(*font, texts, dialog.name + ": \"font\"", faults);
    dialog.fontFamily = members.Text("family");
    if (DialogJson const* const size = members.Find("size")) {
        dialog.fontSize = size->is_number() ? size->get<double>() : 0;
        if (!(dialog.fontSize >= 1 && dialog.fontSize <= 200))
            members.Tell("size", "is not a number of points from 1 to 200");
    }
    members.TellOfUnknown();
}

void ReadDialog(DialogJson const& json, TextsById& texts, CTovDialogTemplate& dialog,
                std::vector<std::string>& faults) {
    MemberReader reader(json, texts, dialog.name, faults);
    dialog.title = reader.Text("title");
    dialog.hasPlace = json.contains("x") || json.contains("y");
    constexpr int none = 0;
    int const left = reader.Number("x", -largestUnit, largestUnit, dialog.hasPlace ? nullptr : &none);
    int const top = reader.Number("y", -largestUnit, largestUnit, dialog.hasPlace ? nullptr : &none);
    dialog.rect = ReadPlace(reader, left, top);
    dialog.style = reader.Style(0, dialogWords, [](std::string_view) { return true; });
    if ((dialog.style & WS_CHILD) == 0) dialog.style |= WS_POPUP | WS_CAPTION;
    ReadFont(reader, dialog, texts, faults);
    DialogJson const* const controls = reader.Find("controls");
    if (controls == nullptr || !controls->is_array()) {
        reader.Tell("controls", controls == nullptr ? "is missing" : "is not a list");
    } else {
        for (DialogJson const& control : *controls) {
            std::string const where = dialog.name + ": control " + std::to_string(dialog.controls.size() + 1);
            MemberReader members(control, texts, where, faults);
            CTovControlTemplate& made = dialog.controls.emplace_back();
            if (control.is_object())
                ReadControl(members, where, made);
            else
                members.Tell(nullptr, "is not an object");
        }
    }
    reader.TellOfUnknown();
    TellOfTwice(dialog, faults);
}

}  // namespace

std::string const& TextsById::Find(unsigned id) {
    return m_found.emplace_back(id, Of(id)).second;
}

bool TextsById::AreTheSame() const {
    return std::ranges::all_of(m_found, [this](auto const& one) { return Of(one.first) == one.second; });
}

std::string const& TextsById::Of(unsigned id) const {
    std::string const* const found = m_module != nullptr ? m_module->FindString(id) : nullptr;
    return found != nullptr ? *found : LibraryString(id);
}

bool ParseDialogTemplate(std::string_view json, TextsById& texts, CTovDialogTemplate& dialog,
                         std::vector<std::string>& faults) {
    // What lies too deep, or stands twice in an object, is told while it is read; the tree knows no longer.
    int controls = 0;
    std::vector<std::set<std::string>> keys;
    auto const tell = [&](std::string const& what) {
        std::string line = dialog.name;
        if (keys.size() > 1 && controls != 0) line += ": control " + std::to_string(controls);
        faults.push_back(line + ": " + what);
    };
    bool tooDeep = false;
    auto const look = [&](int depth, DialogJson::parse_event_t event, DialogJson& parsed) {
        using Event = DialogJson::parse_event_t;
        bool const begins = event == Event::object_start || event == Event::array_start;
        if (begins && depth > deepestInDialog && !std::exchange(tooDeep, true))
            tell("lists and objects lie too deep in one another");
        if (event == Event::object_start) {
            controls += depth == 2;
            keys.emplace_back();
        } else if (event == Event::object_end) {
            keys.pop_back();
        } else if (event == Event::key && !keys.back().insert(parsed.get<std::string>()).second) {
            tell(InQuotes(parsed.get_ref<std::string const&>()) + " stands twice");
        }
        return !tooDeep;
    };
    std::size_t const before = faults.size();
    try {
        DialogJson const tree = DialogJson::parse(json, look);
        if (faults.size() == before && !tree.is_object())
            tell("is not an object");
        else if (faults.size() == before)
            ReadDialog(tree, texts, dialog, faults);
    } catch (DialogJson::parse_error const& fault) {
        tell(WordsOfParser(fault.what()));
    } catch (DialogJson::out_of_range const&) {
        tell("a number is beyond all bounds");
    }
    return faults.size() == before;
}

bool ParseDialogTemplate(std::string_view json, HINSTANCE module, CTovDialogTemplate& dialog,
                         std::vector<std::string>& faults) {
    TextsById texts(module);
    return ParseDialogTemplate(json, texts, dialog, faults);
}

}  // namespace tov
