// Recent documents in menus.
#include <tov310/last_documents.h>

#include <tov310/messages.h>

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

namespace tov {
namespace {

constexpr std::string_view ellipsis = "...";

constexpr bool IsContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

std::size_t CodePoints(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count_if(text, [](char c) { return !IsContinuation(c); }));
}

std::string_view FirstCodePoints(std::string_view text, std::size_t count) {
    std::size_t end = 0;
    while (end < text.size() && (count > 0 || IsContinuation(text[end]))) {
        if (!IsContinuation(text[end])) --count;
        ++end;
    }
    return text.substr(0, end);
}

std::string_view LastCodePoints(std::string_view text, std::size_t count) {
    std::size_t begin = text.size();
    while (begin > 0 && count > 0) {
        if (!IsContinuation(text[--begin])) --count;
    }
    return text.substr(begin);
}

// At most so many characters: the beginning, dots, and the name of the file; of a name that is too long by
// itself its end.
CString Shortened(std::string_view text, std::size_t most) {
    if (CodePoints(text) <= most) return CString(text);
    if (most <= ellipsis.size()) return CString(LastCodePoints(text, most));
    std::size_t const room = most - ellipsis.size();
    auto const separator = text.substr(0, text.size() - 1).find_last_of("/\\");
    auto const name = separator != std::string_view::npos ? text.substr(separator) : text;
    auto const length = CodePoints(name);
    auto const tail = length <= room ? name : LastCodePoints(text, room);
    return CString(FirstCodePoints(text, room - CodePoints(tail))).append(ellipsis).append(tail);
}

CString WithoutMnemonics(std::string_view text) {
    CString result;
    for (char const c : text) {
        if (c == '&') result += '&';
        result += static_cast<unsigned char>(c) < ' ' ? ' ' : c;  // a tab would begin the column of keys
    }
    return result;
}

CString const* PromptOf(std::vector<CString> const& prompts, unsigned int number) {
    if (number < prompts.size() && !prompts[number].empty()) return &prompts[number];
    return prompts.empty() ? nullptr : &prompts.front();
}

void SetPrompt(std::vector<CString>& prompts, unsigned int number, char const* text, unsigned int most) {
    if (number > most) return;  // there is no such item
    if (number == 0) prompts.clear();
    if (number >= prompts.size()) prompts.resize(std::size_t{number} + 1);
    prompts[number] = text != nullptr ? text : "";
}

}  // namespace

CString CTovLastDocuments::MenuText(unsigned int number, CString const& document) const {
    CString text;
    if (m_itemStyle == eItemNumbered) {
        text = std::to_string(number);
        // Ten keys are all there are.
        if (number <= 10) text.insert(text.size() - 1, 1, '&');
        text.append(m_tab, ' ');
    }
    auto const name = std::string_view(document).substr(0, document.find(';'));
    text += GetMenuPromptPrefix(number);
    text += WithoutMnemonics(Shortened(name, m_itemLength));
    text += GetMenuPromptSuffix(number);
    return text;
}

int CTovLastDocuments::GetCurrentDocument(unsigned int command, CString& document, CString* rest) const {
    document.clear();
    if (rest != nullptr) rest->clear();
    auto const item = std::ranges::find(m_items, command, &CLastDocItem::command);
    if (item == m_items.end()) return 0;
    auto const end = item->document.find(';');
    document = item->document.substr(0, end);
    if (rest != nullptr && end != CString::npos) *rest = item->document.substr(end + 1);
    return 1;
}

int CTovLastDocuments::GetCurrentDocument(tagMSG const& message, CString& document, CString* rest) const {
    constexpr WPARAM commandBits = 0xFFFF;  // the rest is 0 for a menu
    bool const isChoice =
        message.message == WM_COMMAND && message.wParam <= commandBits && message.lParam == 0;
    return GetCurrentDocument(isChoice ? static_cast<unsigned int>(message.wParam) : 0, document, rest);
}

void CTovLastDocuments::Remember(unsigned int command, std::vector<CString> const& documents) {
    std::erase_if(m_items, [&](CLastDocItem const& item) {
        return item.command >= command && item.command - command < m_capacity;
    });
    for (CString const& document : documents)
        m_items.push_back({command++, document});
}

int CTovLastDocuments::CreateLastDocItem(int* command, CMenu* menu, unsigned int position) {
    if (command == nullptr || *command <= 0 || menu == nullptr) return 0;
    auto const first = static_cast<unsigned int>(*command);
    auto const documents = Documents();
    position = std::min(position, menu->GetMenuItemCount());
    unsigned int number = 0;
    for (CString const& document : documents) {
        ++number;
        menu->InsertMenu(position++, MF_BYPOSITION | MF_STRING, first + number - 1,
                         MenuText(number, document).c_str());
    }
    Remember(first, documents);
    *command += static_cast<int>(m_capacity);
    return static_cast<int>(documents.size());
}

int CTovLastDocuments::CreateLastDocMenu(int* command, CMenu* menu, char const* text, unsigned int position) {
    if (menu == nullptr) return 0;
    auto popup = std::make_unique<CMenu>();
    int const count = CreateLastDocItem(command, popup.get());
    if (count == 0) return 0;
    menu->InsertMenu(std::min(position, menu->GetMenuItemCount()), MF_BYPOSITION | MF_POPUP, std::move(popup),
                     text);
    return count;
}

int CTovLastDocuments::CreateLastDocMenu(HINSTANCE module, unsigned int textId, int* command, CMenu* menu,
                                         unsigned int position) {
    CString text;
    return TovLoadResourceString(module, textId, text)
               ? CreateLastDocMenu(command, menu, text.c_str(), position)
               : 0;
}

int CTovLastDocuments::ModifyLastDocItem(unsigned int command, CMenu* menu) {
    if (menu == nullptr || command == 0 || command == tovNoMenuItem) return 0;
    auto const documents = Documents();
    if (!Refresh(command, *menu, documents)) return 0;
    Remember(command, documents);
    return static_cast<int>(documents.size());
}

// Does it in the menu or popup that has the first of the commands; false where none has.
bool CTovLastDocuments::Refresh(unsigned int command, CMenu& menu, std::vector<CString> const& documents) {
    unsigned int position = 0;
    for (; menu.GetMenuItemID(position) != command; ++position) {
        if (position >= menu.GetMenuItemCount()) return false;
        CMenu* const popup = menu.GetSubMenu(position);
        if (popup != nullptr && Refresh(command, *popup, documents)) return true;
    }
    unsigned int number = 0;
    for (CString const& document : documents) {
        auto const text = MenuText(++number, document);
        if (menu.GetMenuItemID(position) == command) {
            ModifyMenuA(&menu, position, MF_BYPOSITION, command, text.c_str());
        } else {
            menu.InsertMenu(position, MF_BYPOSITION | MF_STRING, command, text.c_str());
        }
        ++position;
        ++command;
    }
    for (unsigned int left = m_capacity - number; left > 0 && menu.GetMenuItemID(position) == command;
         --left) {
        menu.DeleteMenu(position, MF_BYPOSITION);
        ++command;
    }
    return true;
}

int CTovLastDocuments::ModifyMenuA(CMenu* menu, unsigned int place, unsigned int flags, unsigned int command,
                                   char const* text) {
    return menu != nullptr ? menu->ModifyMenu(place, flags | MF_STRING, command, text) : 0;
}

void CTovLastDocuments::SetMenuPrompt(char const* prefix, char const* suffix) {
    SetMenuPrompt(0, prefix, suffix);
}

void CTovLastDocuments::SetMenuPrompt(unsigned int number, char const* prefix, char const* suffix) {
    SetMenuPromptPrefix(number, prefix);
    SetMenuPromptSuffix(number, suffix);
}

void CTovLastDocuments::SetMenuPrompt(HINSTANCE module, unsigned int prefixId, unsigned int suffixId) {
    CString prefix;
    CString suffix;
    TovLoadResourceString(module, prefixId, prefix);
    TovLoadResourceString(module, suffixId, suffix);
    SetMenuPrompt(0, prefix.c_str(), suffix.c_str());
}

CString CTovLastDocuments::GetMenuPromptPrefix(unsigned int number) const {
    CString const* const prompt = PromptOf(m_promptPrefixes, number);
    return prompt != nullptr ? *prompt : CString();
}

void CTovLastDocuments::SetMenuPromptPrefix(unsigned int number, char const* prefix) {
    SetPrompt(m_promptPrefixes, number, prefix, m_capacity);
}

CString CTovLastDocuments::GetMenuPromptSuffix(unsigned int number) const {
    CString const* const prompt = PromptOf(m_promptSuffixes, number);
    return prompt != nullptr ? *prompt : CString();
}

void CTovLastDocuments::SetMenuPromptSuffix(unsigned int number, char const* suffix) {
    SetPrompt(m_promptSuffixes, number, suffix, m_capacity);
}

unsigned int CTovLastDocuments::SetMenuItemLength(unsigned int characters) {
    return std::exchange(m_itemLength, characters);
}

void CTovLastDocuments::SetTab(unsigned int blanks) {
    m_tab = blanks;
}

unsigned int CTovLastDocuments::GetTab() const {
    return m_tab;
}

void CTovLastDocuments::SetItemStyle(eItemStyle style) {
    m_itemStyle = style;
}

}  // namespace tov
