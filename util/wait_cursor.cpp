#include <tov310/wait_cursor.h>

#include <tov310/system.h>

#include "util/system_guard.h"

#include <atomic>

namespace tov {
namespace {

// The count, the flag and the cursor change together: a wait that begins on one thread while the last one
// ends on another must not be left with an arrow. The guard of the system serves for that.
long waitCount = 0;
std::atomic<int> waitActive{0};

}  // namespace

CTovWaitCursor::CTovWaitCursor(unsigned int id) : m_id(id) {
    std::scoped_lock const lock(systemGuard);
    ++waitCount;
    waitActive = 1;
    TovGetSystem()->SetCursor(IDC_WAIT);
}

CTovWaitCursor::~CTovWaitCursor() {
    std::scoped_lock const lock(systemGuard);
    if (--waitCount > 0) return;
    waitActive = 0;
    TovGetSystem()->RefreshCursor();
}

int CTovWaitCursor::Active() {
    return waitActive;
}

void CTovWaitCursor::Active(int active) {
    waitActive = active;
}

}  // namespace tov
