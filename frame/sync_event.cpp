#include <tov310/sync_event.h>

#include <chrono>

namespace tov {

int CEvent::SetEvent() {
    // Told under the lock: whoever was waiting may end the event at once.
    std::scoped_lock const lock(m_guard);
    m_isSet = true;
    m_changed.notify_all();
    return 1;
}

int CEvent::ResetEvent() {
    std::scoped_lock const lock(m_guard);
    m_isSet = false;
    return 1;
}

int CEvent::Lock(unsigned milliseconds) {
    std::unique_lock lock(m_guard);
    auto const isSet = [this] { return m_isSet; };
    if (milliseconds == INFINITE)
        m_changed.wait(lock, isSet);
    else if (!m_changed.wait_for(lock, std::chrono::milliseconds(milliseconds), isSet))
        return 0;
    if (!m_byHand) m_isSet = false;
    return 1;
}

}  // namespace tov
