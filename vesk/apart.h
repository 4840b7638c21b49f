// Work in a process of its own, for what cannot be trusted not to crash, to hang or to swallow memory.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>

namespace tov {

// One end of the pipe between the two processes.
class ApartPipe {
 public:
    using Clock = std::chrono::steady_clock;

    ApartPipe(int descriptor, Clock::time_point end) : m_descriptor(descriptor), m_end(end) {}

    // All of it or false: the other side is gone, or the time is over.
    bool Write(void const* bytes, std::size_t count);
    bool Read(void* bytes, std::size_t count);

 private:
    int m_descriptor;
    Clock::time_point m_end;
};

struct ApartLimits {
    std::uint64_t memory = 0;      // bytes on top of what this process has reserved already
    std::chrono::seconds time{0};  // of the processor as well as by the clock
};

// Runs `work` in a copy of this process and meanwhile `take` in this one, which reads what the other writes;
// answers what `take` answers, and false where there could be no copy. The copy holds only the calling thread
// and ends behind `work`, when a limit is reached, when nobody reads any more or when this process has ended,
// whatever state it is in.
//
// The copy has no file of this process open but the pipe, no memory that it could write to but what is shared
// between processes, and standard input and output lead nowhere. No file grows by it. It keeps the rights of
// this process, though, and could empty or remove files that these reach: it is a shelter from faults, and no
// prison for a program that somebody has taken over.
bool VeskRunApart(ApartLimits const& limits, std::function<void(ApartPipe&)> const& work,
                  std::function<bool(ApartPipe&)> const& take);

}  // namespace tov
