// What the library puts in place as soon as there is a widget of it.
#pragma once

namespace tov {

// Answers the library's questions about the screen, delivers its posts and runs its timers, as long as the
// application object lives. Calls after the first one do nothing.
void StartPlatform();

}  // namespace tov
