// The counting of a bar of progress.
#pragma once

#include <algorithm>

namespace tov {

struct ProgressSteps {
    int steps = 0;
    int current = 0;   // steps made
    int position = 0;  // of the bar, 0 to steps
    bool restarts = false;

    void Begin(int count) {
        steps = std::max(count, 0);
        current = 0;
        position = 0;
    }

    // Behind the last step the bar begins again, or stays where it is.
    void Step() {
        if (steps == 0 || (!restarts && current >= steps)) return;
        position = position >= steps ? 1 : position + 1;
        ++current;
    }
};

}  // namespace tov
