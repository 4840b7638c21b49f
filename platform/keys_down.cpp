#include "platform/keys_down.h"

#include "platform/native_messages.h"

#include <tov310/window_messages.h>

#include <QKeyEvent>

#include <bitset>

namespace tov {
namespace {

std::bitset<256> keysDown;  // by virtual key

}  // namespace

void NoteKey(QKeyEvent const& event) {
    if (event.isAutoRepeat()) return;
    Qt::KeyboardModifiers const modifiers = event.modifiers();
    int const key = VirtualKeyOf(event.key(), modifiers.testFlag(Qt::KeypadModifier));
    // Modifiers may have gone down elsewhere.
    keysDown.set(VK_SHIFT, modifiers.testFlag(Qt::ShiftModifier));
    keysDown.set(VK_CONTROL, modifiers.testFlag(Qt::ControlModifier));
    keysDown.set(VK_MENU, modifiers.testFlag(Qt::AltModifier));
    keysDown.set(static_cast<std::size_t>(key), event.type() == QEvent::KeyPress);
}

void ForgetKeys() {
    keysDown.reset();
}

bool IsKeyNoted(int virtualKey) {
    return virtualKey > 0 && virtualKey < 256 && keysDown.test(static_cast<std::size_t>(virtualKey));
}

}  // namespace tov
