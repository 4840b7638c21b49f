// Events of the toolkit as messages.
#pragma once

#include <tov310/types.h>

#include <QEvent>
#include <QWidget>

#include <optional>

namespace tov {

struct NativeMessage {
    unsigned message = 0;
    WPARAM wParam = 0;
    LPARAM lParam = 0;
};

// The message that tells of the event; none for events that no message tells of. What happens on the viewport
// of a scroll area is taken from there only, everything else from the area.
std::optional<NativeMessage> MessageOf(QWidget const& widget, bool ofViewport, QEvent const& event);

// The number of a key; 0 for one that has none.
int VirtualKeyOf(int qtKey, bool onKeypad);

}  // namespace tov
