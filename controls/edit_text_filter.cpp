// Which characters come into an edit, and how many.
#include <tov310/edit_text.h>

#include <tov310/edit_host.h>

#include "controls/message_text.h"
#include "controls/one_line.h"
#include "frame/resource_module.h"
#include "util/code_points.h"
#include "util/letters.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace tov {
namespace {

constexpr unsigned tooShortText = 26080;
constexpr unsigned tooLongText = 26081;

bool HoldsCharacter(std::string_view text, char32_t character) {
    if (character < 0x80) return text.find(static_cast<char>(character)) != text.npos;
    CString wanted;
    AppendCharacter(wanted, character);
    return text.find(wanted) != text.npos;
}

// Lets `change` change each character and say whether it stays.
template <typename Change>
void Rewrite(CString& text, Change change) {
    CString written;
    bool differs = false;
    for (std::string_view rest = text; !rest.empty();) {
        std::size_t const begin = text.size() - rest.size();
        char32_t const character = TakeCharacter(rest);
        char32_t other = character;
        bool const stays = change(other);
        if (!differs && (!stays || other != character)) {
            written.assign(text, 0, begin);  // what was as it shall be, until here
            differs = true;
        }
        if (!differs || !stays) continue;
        if (other == character) {
            written.append(text, begin, text.size() - rest.size() - begin);
        } else {
            AppendCharacter(written, other);
        }
    }
    if (differs) text = std::move(written);
}

}  // namespace

void CTovEditText::Convert(CString& text) const {
    if (settings.conversion == tovConvertNone) return;
    Rewrite(text, [this](char32_t& character) {
        m_host.Convert(character);
        return true;
    });
}

void CTovEditText::Convert(char32_t& character) const {
    if (settings.conversion == tovConvertToUpper) character = ToUpperCase(character);
    if (settings.conversion == tovConvertToLower) character = ToLowerCase(character);
}

bool CTovEditText::CharAllowed(char32_t character) const {
    if (HoldsCharacter(settings.notAllowedChars, character)) return false;
    switch (settings.allowedChars) {
        case eAllowedCharsAlpha:
            return IsLetter(character);
        case eAllowedCharsDigits:
            return character >= '0' && character <= '9';
        case eAllowedCharsAlphaNumeric:
            return IsLetter(character) || IsDecimalDigit(character);
        case eAllowedCharsCustom:
            return HoldsCharacter(settings.customChars, character);
        default:
            return true;
    }
}

void CTovEditText::RemoveNotAllowedChars(CString& text) const {
    Rewrite(text, [this](char32_t character) { return m_host.CharAllowed(character) != 0; });
}

int CTovEditText::TrimString(CString& text, int trim) const {
    CString const before = text;
    m_host.Convert(text);
    m_host.RemoveNotAllowedChars(text);
    if (trim != 0) text = CString(TrimmedSpaces(text, m_host.GetTrimLeft() != 0, m_host.GetTrimRight() != 0));
    return text != before;
}

int CTovEditText::OnChar(char32_t& character) const {
    if (character < ' ' || character == 0x7F) return 0;
    CString typed;
    AppendCharacter(typed, character);
    m_host.ReadInput(typed);
    std::string_view rest = typed;
    if (!rest.empty()) character = TakeCharacter(rest);
    m_host.Convert(character);
    if (m_host.CharAllowed(character) != 0) return 1;
    m_host.Beep();
    return 0;
}

int CTovEditText::AcceptInput(CString& text, int& caret) {
    if (m_host.IgnoreEditChanged() != 0 || m_settingInternally != 0 || text == m_shown) {
        m_shown = text;
        return 1;
    }
    // What stands behind the caret is old, and so is what the texts begin with.
    std::size_t const typed = CharacterOffset(text, static_cast<std::size_t>(std::max(caret, 0)));
    std::string_view tail = std::string_view(text).substr(typed);
    if (!m_shown.ends_with(tail)) tail = {};
    std::string_view proposed = std::string_view(text).substr(0, text.size() - tail.size());
    std::string_view const old = std::string_view(m_shown).substr(0, m_shown.size() - tail.size());
    auto same = static_cast<std::size_t>(std::ranges::mismatch(proposed, old).in1 - proposed.begin());
    while (same > 0 && same < proposed.size() && (static_cast<unsigned char>(proposed[same]) & 0xC0) == 0x80)
        --same;
    std::string_view const head = proposed.substr(0, same);

    CString added(proposed.substr(same));
    bool const adds = !added.empty();
    MakeOneLine(added);
    bool const isTaken = CharacterCount(added) > 1 && m_host.TakeInput(added) != 0;
    bool const loses = FilterInput(added);
    std::size_t const kept = CharacterCount(head) + CharacterCount(tail);
    std::size_t const most = m_host.GetMaxChars();
    if (kept + CharacterCount(added) > most)
        added = CString(Characters(added, 0, most > kept ? most - kept : 0));

    bool const refused = isTaken || (adds && added.empty()) || m_host.InputControl().GetReadOnlyMode() != 0;
    caret = static_cast<int>(refused ? CharacterCount(old) : CharacterCount(head) + CharacterCount(added));
    text = refused ? m_shown : CString(head).append(added).append(tail);
    if (loses && !refused) m_host.OnInputLost();
    return !refused;
}

// What comes in as one text, as far as the edit takes it; the room is not considered. Answers whether more
// than white space was left out.
bool CTovEditText::FilterInput(CString& text) const {
    m_host.ReadInput(text);
    CString const read = text;
    m_host.TrimString(text, 0);
    auto const isBlank = [](char c) { return c == ' '; };
    auto const blanks = std::ranges::count_if(read, isBlank) - std::ranges::count_if(text, isBlank);
    return CharacterCount(read) - static_cast<std::size_t>(blanks) != CharacterCount(text);
}

CTovInputControl::eState CTovEditText::InternalValidate(char const* text, CString* message) const {
    if (message != nullptr) message->clear();
    if (text == nullptr || *text == '\0') {
        return m_host.InputControl().GetEmptyAllowed() != 0 ? CTovInputControl::eStateValid
                                                            : CTovInputControl::eStateEmpty;
    }
    std::size_t const length = CharacterCount(text);
    bool const tooShort = length < m_host.GetMinChars();
    if (!tooShort && length <= m_host.GetMaxChars()) return CTovInputControl::eStateValid;
    if (message != nullptr) {
        *message = LibraryString(tooShort ? tooShortText : tooLongText);
        for (std::size_t const number :
             {length, std::size_t{tooShort ? m_host.GetMinChars() : m_host.GetMaxChars()}})
            ReplaceFirst(*message, "%d", std::to_string(number));
    }
    return CTovInputControl::eStateInvalid;
}

}  // namespace tov
