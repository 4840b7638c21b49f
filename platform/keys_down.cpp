#include "platform/keys_down.h"

#include "platform/native_messages.h"

#include <QKeyEvent>

#include <bitset>

namespace tov {
namespace {

std::bitset<256> keysDown;  // by virtual key

}  // namespace

void NoteKey(QKeyEvent const& event) {
    if (event.isAutoRepeat()) return;
    int const key = VirtualKeyOf(event.key(), event.modifiers().testFlag(Qt::KeypadModifier));
    keysDown.set(static_cast<std::size_t>(key), event.type() == QEvent::KeyPress);
}

void ForgetKeys() {
    keysDown.reset();
}

bool IsKeyNoted(int virtualKey) {
    return virtualKey > 0 && virtualKey < 256 && keysDown.test(static_cast<std::size_t>(virtualKey));
}

}  // namespace tov
