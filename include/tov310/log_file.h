// A log for hosts. The library itself writes nothing to it.
#pragma once

#include <tov310/export.h>

namespace tov {

class TOV_CORE_API CTovLogfile {
 public:
    // Where to write: the file with the name, which is opened for each line and made where it is missing;
    // without a name (null or empty) or when the file cannot be opened, the handle. That is a file descriptor
    // open for writing in the shape of a pointer, reinterpret_cast<void*>(std::intptr_t{fd}); null and -1 are
    // none. It stays the caller's. The name is copied.
    static void SetLogfile(void* handle, char const* name);

    // Prints the text as std::printf does, but with a decimal point and UTF-8 whatever the locale of the
    // process, and appends the result; a line end is the text's own. Answers 1 when all of it is written,
    // through to the disk where the file has a name, and 0 when nothing is. Lines of several threads and
    // processes never mix. 0 for null and for a text that cannot be printed.
    [[gnu::format(printf, 1, 2)]] static int WriteLogfile(char const* text, ...);
};

}  // namespace tov
