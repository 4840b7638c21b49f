// Work in a process of its own, where it may be killed.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

namespace tov::test {

// The work answers whether it went well.
template <class Work>
pid_t StartChild(Work work) {
    pid_t const child = ::fork();
    if (child == 0) ::_exit(work() ? 0 : 1);
    return child;
}

// Waits for its end; 0 where the work went well.
inline int EndChild(pid_t child) {
    int status = -1;
    ::waitpid(child, &status, 0);
    return status;
}

}  // namespace tov::test
