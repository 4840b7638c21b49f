// A flag that a thread can wait for.
#pragma once

#include <tov310/export.h>
#include <tov310/object.h>

#include <condition_variable>
#include <mutex>

namespace tov {

inline constexpr unsigned INFINITE = 0xFFFFFFFF;  // milliseconds: without a limit

// Set by one thread and waited for by others. One that is not reset by hand lets one waiter through for every
// time it is set. Any thread may call any of it.
class TOV_CORE_API CEvent : public CObject {
    TOV_DYNCREATE(CEvent, CObject)
 public:
    explicit CEvent(int isSet = 0, int resetByHand = 0) : m_isSet(isSet != 0), m_byHand(resetByHand != 0) {}
    CEvent(CEvent const&) = delete;
    CEvent& operator=(CEvent const&) = delete;

    // Answer 1.
    int SetEvent();
    int ResetEvent();

    // Waits until it is set, at most so many milliseconds. 1, or 0 when that time is over; 0 milliseconds
    // only ask.
    int Lock(unsigned milliseconds = INFINITE);

 private:
    std::mutex m_guard;
    std::condition_variable m_changed;
    bool m_isSet;
    bool const m_byHand;
};

}  // namespace tov
