// Keys that are down. The toolkit tells of modifiers only, so the others are noted as they go by.
#pragma once

class QKeyEvent;

namespace tov {

void NoteKey(QKeyEvent const& event);
void ForgetKeys();  // they may be released where nobody sees it
bool IsKeyNoted(int virtualKey);

}  // namespace tov
