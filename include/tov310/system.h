// What the library asks of the screen. The layer of the toolkit answers it; a test puts its own in the place.
#pragma once

#include <tov310/export.h>

namespace tov {

// Each operation does nothing where it is not overridden: without a screen there is nothing to do. Operations
// may be called from every thread, one at a time, and must not come back into what called them.
class TOV_CORE_API ITovSystem {
 public:
    // Shows a cursor at once, wherever the mouse is.
    virtual void SetCursor(unsigned int cursor);

    // Has the window under the mouse choose the cursor again.
    virtual void RefreshCursor();

 protected:
    ITovSystem() = default;
    ITovSystem(ITovSystem const&) = default;
    ITovSystem& operator=(ITovSystem const&) = default;
    virtual ~ITovSystem();
};

// Cursors by number.
inline constexpr unsigned int IDC_ARROW = 32512;
inline constexpr unsigned int IDC_WAIT = 32514;

// The one in force, never null.
TOV_CORE_API ITovSystem* TovGetSystem();

// Puts another in its place and answers the one before. Null brings the default back. It stays the caller's
// and must live until it is replaced.
TOV_CORE_API ITovSystem* TovSetSystem(ITovSystem* system);

}  // namespace tov
