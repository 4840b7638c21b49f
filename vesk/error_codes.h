// From the platform's error numbers to the codes that the library documents.
#pragma once

namespace tov {

// What was being done: a few numbers of the platform mean different codes then.
enum class VeskOperation {
    kFile,    // opening, reading, writing
    kCreate,  // making a directory or a mutex, moving something
    kPath,    // reaching a directory
};

// The code of an errno; 0 for 0. Numbers without a code of their own give TOV_ERROR_SYSTEM_BASE plus the
// number.
unsigned long VeskErrorCode(int systemError, VeskOperation operation = VeskOperation::kFile);

// The platform's words for one of its errors; null for a number that it does not know.
char const* VeskSystemErrorWords(int systemError);

}  // namespace tov
