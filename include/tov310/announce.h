// What is said to those who have the screen read to them. The layer of the toolkit answers it; a test puts
// its own in the place.
#pragma once

#include <tov310/export.h>
#include <tov310/types.h>

namespace tov {

class TOV_CORE_API ITovAnnounce {
 public:
    // Says a text now, as something that the window tells of itself. Nobody hears it without a screen reader,
    // nor as this class does it. On the user-interface thread.
    virtual void Announce(HWND window, char const* text);

 protected:
    ITovAnnounce() = default;
    ITovAnnounce(ITovAnnounce const&) = default;
    ITovAnnounce& operator=(ITovAnnounce const&) = default;
    virtual ~ITovAnnounce();
};

// The one in force, never null.
TOV_CORE_API ITovAnnounce* TovGetAnnounce();

// Puts another in its place and answers the one before. Null brings the default back. It stays the caller's
// and must live until it is replaced.
TOV_CORE_API ITovAnnounce* TovSetAnnounce(ITovAnnounce* announce);

// For the layer of the toolkit: what answers where nobody has put his own in the place. Null: nothing does.
TOV_CORE_API void TovSetDefaultAnnounce(ITovAnnounce* announce);

}  // namespace tov
