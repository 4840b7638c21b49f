// What edits with integers and with floating numbers do alike.
#pragma once

#include <tov310/edit_host.h>
#include <tov310/edit_text.h>
#include <tov310/types.h>

#include "frame/handle_of.h"
#include "util/code_points.h"
#include "util/letters.h"

#include <algorithm>
#include <string_view>

namespace tov {

inline constexpr unsigned numberRangeText = 26082;

// The text with the first of its signs at its beginning and without the others, so that a sign can be typed
// anywhere; a sign right behind the exponent's letter of a number stays. A single character stays what it is.
inline CString SignInFront(std::string_view text, bool hasExponent) {
    CString digits;
    char sign = '\0';
    for (char const c : TrimmedSpaces(text, true, true)) {
        bool const isExponents = hasExponent && digits.size() > 1 && (digits.back() | 0x20) == 'e';
        if ((c == '+' || c == '-') && !isExponents) {
            if (sign == '\0') sign = c;
        } else {
            digits += c;
        }
    }
    if (sign != '\0') digits.insert(0, 1, sign);
    return digits;
}

// Where in what is typed a character of what is displayed stands: what the display has in front counts as its
// beginning.
inline void SkipDisplayPrefix(std::string_view display, std::string_view input, int& position) {
    if (input.empty()) return;
    std::string_view rest = input;
    TakeCharacter(rest);
    std::size_t const at = display.find(input.substr(0, input.size() - rest.size()));
    if (at == display.npos) return;
    position = std::max(0, position - static_cast<int>(CharacterCount(display.substr(0, at))));
}

// Without the focus the content is the text that the number has.
inline void ShowAsContent(CTovEditText& text, CString const& shown) {
    if (shown == text.GetRawString()) return;
    CTovInputControl& control = text.Host().InputControl();
    CTovInputControl::CTovNotifyEmptyChanged const scope(control);
    text.SetRawString(shown);
    if (IsWindow(HandleOf(control.GetWnd()))) text.Host().ShowValue();
    text.RefreshUndoRedoItem();
}

// A number by the program: it is shown and cannot be undone.
inline void ShowNewNumber(CTovEditText& text, CString const& shown) {
    text.SetRawString(shown);
    text.Host().InputControl().SetChangedByUser(0);
    text.Host().ShowValue();
    text.ForgetUndoRedo();
}

// After a step of the spin.
inline void MarkSpun(CTovEditText& text) {
    text.Host().SelectAll();
    text.Host().InputControl().SetChangedByUser(1);
}

}  // namespace tov
