// How a window stays alive while the user-interface thread is at work, and everything else waits.
#pragma once

#include <tov310/export.h>
#include <tov310/types.h>

namespace tov {

// A long work calls Pump every now and then; the abort button of a progress dialog answers as fast as that.
// The layer of the toolkit does it; a test puts its own in the place.
class TOV_CORE_API ITovPump {
 public:
    // Deals with what the user has done to this window and to those that stand in it, paints it and those
    // around it, and comes back at once. What the user does elsewhere is kept, and happens in its order as
    // soon as the main loop has its turn again; until then the library delivers no posts and runs no timers.
    // What the host itself has queued with the toolkit may run.
    //
    // Nothing happens for a dead window, off the user-interface thread, and without a toolkit.
    virtual void Pump(HWND window);

 protected:
    ITovPump() = default;
    ITovPump(ITovPump const&) = default;
    ITovPump& operator=(ITovPump const&) = default;
    virtual ~ITovPump();
};

// The one in force, never null.
TOV_CORE_API ITovPump* TovGetPump();

// Puts another in its place and answers the one before. Null brings the default back. It stays the caller's
// and must live until it is replaced.
TOV_CORE_API ITovPump* TovSetPump(ITovPump* pump);

// For the layer of the toolkit: what answers where nobody has put his own in the place. Null: nothing does.
TOV_CORE_API void TovSetDefaultPump(ITovPump* pump);

// Keeps posts in their queue for the length of a block: TovDispatchPosts delivers nothing. Blocks nest. On
// the user-interface thread.
class TOV_CORE_API CTovPostHold {
 public:
    CTovPostHold();
    CTovPostHold(CTovPostHold const&) = delete;
    CTovPostHold& operator=(CTovPostHold const&) = delete;
    ~CTovPostHold();

    static int IsHeld();
};

}  // namespace tov
