// What the program shows on a display.
#pragma once

#include "commands.h"

#include <span>

namespace survey {

// Whether somebody may see a window: a display is named, or a way to do without one.
bool HasDisplay();

// Opens the first window, as a call without any argument does. Answers the exit code, or kNoDisplay when the
// display cannot be reached; nothing was shown then.
inline constexpr int kNoDisplay = -1;
int RunFirstWindow();

// The commands "gallery", "window" and "shots".
std::span<Command const> WindowCommands();

}  // namespace survey
