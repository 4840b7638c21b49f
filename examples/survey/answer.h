// How the program answers.
#pragma once

#include <iostream>

namespace survey {

enum ExitCode {
    kFine = 0,
    kNotAll = 1,  // lines were skipped, or nothing was found
    kUsage = 2,
    kUnreadable = 3,
    kAborted = 130,  // as shells tell the end by an interrupt
};

inline std::ostream& Complain() {
    return std::cerr << "survey: ";
}

}  // namespace survey
